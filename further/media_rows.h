// media_rows.h - rows of the second table: sound, video and music.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherMediaRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 "fLaC" (00/80) 00 00 22)",                                       Id(20069)},  // FLAC audio
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00 >28 01 "vorbis")",                                     Id(20070)},  // Ogg Vorbis audio
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00 >28 "OpusHead")",                                      Id(20071)},  // Ogg Opus audio
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00 >28 80 "theora")",                                     Id(20072)},  // Ogg Theora video
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00 >28 "Speex   ")",                                      Id(20073)},  // Ogg Speex audio
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00 >28 7F "FLAC")",                                       Id(20074)},  // Ogg FLAC audio
    {FIOver::TextOrUnknown, R"(>0 "OggS" 00)",                                                     Id(20075)},  // Ogg media, other
    {FIOver::TextOrUnknown, R"(>4 "ftypM4" [41-42] 20)",                                           Id(20076)},  // MPEG-4 audio (M4A, M4B, M4P)
    {FIOver::TextOrUnknown, R"(>4 "ftypM4P ")",                                                    Id(20076)},
    {FIOver::TextOrUnknown, R"(>4 "ftypF4" [41-42] 20)",                                           Id(20076)},
    {FIOver::TextOrUnknown, R"(>4 "ftypM4V" (20/48))",                                             Id(20077)},  // MPEG-4 video (M4V)
    {FIOver::TextOrUnknown, R"(>4 "ftypM4VP")",                                                    Id(20077)},
    {FIOver::TextOrUnknown, R"(>4 "ftyp3g" [67-68])",                                              Id(20078)},  // 3GPP media
    {FIOver::TextOrUnknown, R"(>4 "ftyp3g" [72-74])",                                              Id(20078)},
    {FIOver::TextOrUnknown, R"(>4 "ftyp3g" (65/70))",                                              Id(20078)},
    {FIOver::TextOrUnknown, R"(>4 "ftyp3g2")",                                                     Id(20079)},  // 3GPP2 media
    {FIOver::TextOrUnknown, R"(>4 "ftypqt  ")",                                                    Id(20080)},  // QuickTime movie with a file type box
    {FIOver::TextOrUnknown, R"(>4 "ftypiso" [32-36])",                                             Id(20081)},  // MPEG-4 media
    {FIOver::TextOrUnknown, R"(>4 "ftypisom")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypmp4" [31-32])",                                             Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypavc1")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypdash")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypMSNV")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypmp71")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypF4" (50/56) 20)",                                           Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypf4v ")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypNDSC")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypXAVC")",                                                    Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "ftypisc")",                                                     Id(20081)},
    {FIOver::TextOrUnknown, R"(>4 "moov" +4 "mvhd")",                                              Id(20082)},  // QuickTime movie, other first atom
    {FIOver::TextOrUnknown, R"(>4 "moov" +4 "cmov")",                                              Id(20082)},
    {FIOver::TextOrUnknown, R"(>0 [00-1F] +3 "mdat")",                                             Id(20082)},
    {FIOver::TextOrUnknown, R"(>4 "wide" +4 "mdat")",                                              Id(20082)},
    {FIOver::TextOrUnknown, R"(>0 00 +3 "skip")",                                                  Id(20082)},
    {FIOver::TextOrUnknown, R"(>0 00 00 00 14 "pnot")",                                            Id(20082)},
    {FIOver::TextOrUnknown, R"(>0 1A 45 DF A3)",                                                   Call(20083)},  // WebM media
    {FIOver::TextOrUnknown, R"(>0 1A 45 DF A3)",                                                   Call(20084)},  // Matroska media
    {FIOver::TextOrUnknown, R"(>0 "RF64" +4 "WAVE")",                                              Id(20085)},  // Waveform audio, 64-bit (RF64, BW64)
    {FIOver::TextOrUnknown, R"(>0 "BW64" +4 "WAVE")",                                              Id(20085)},
    {FIOver::TextOrUnknown, R"(>0 "FORM" +4 "AIFF")",                                              Id(20086)},  // AIFF audio
    {FIOver::TextOrUnknown, R"(>0 "FORM" +4 "AIFC")",                                              Id(20087)},  // AIFF audio, compressed (AIFC)
    {FIOver::TextOrUnknown, R"(>0 "FORM" +4 "8SVX")",                                              Id(20088)},  // 8SVX audio
    {FIOver::TextOrUnknown, R"(>0 ".snd" >24 "AudacityBlockFile")",                                Id(20381)},  // Audacity audio block
    {FIOver::TextOrUnknown, R"(>0 "dns." >24 "AudacityBlockFile")",                                Id(20381)},
    {FIOver::TextOrUnknown, R"(>0 ".snd" 00 00)",                                                  Id(20089)},  // Sun or NeXT audio (AU)
    {FIOver::TextOrUnknown, R"(>0 "caff" 00 01 00 00)",                                            Id(20090)},  // Apple Core Audio (CAF)
    {FIOver::TextOrUnknown, R"(>0 "MAC " >52 88 13)",                                              Id(20091)},  // Monkey's Audio
    {FIOver::TextOrUnknown, R"(>0 "MAC " >52 A0 0F)",                                              Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " >52 B8 0B)",                                              Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " >52 D0 07)",                                              Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " >52 E8 03)",                                              Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " +2 88 13)",                                               Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " +2 A0 0F)",                                               Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " +2 B8 0B)",                                               Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " +2 D0 07)",                                               Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "MAC " +2 E8 03)",                                               Id(20091)},
    {FIOver::TextOrUnknown, R"(>0 "wvpk" +5 04)",                                                  Id(20092)},  // WavPack audio
    {FIOver::TextOrUnknown, R"(>0 "MPCKS" (48/4F))",                                               Id(20093)},  // Musepack audio, stream version 8
    {FIOver::TextOrUnknown, R"(>0 "MPCKRG")",                                                      Id(20093)},
    {FIOver::TextOrUnknown, R"(>0 "MPCKEI")",                                                      Id(20093)},
    {FIOver::TextOrUnknown, R"(>0 "MPCKAP")",                                                      Id(20093)},
    {FIOver::TextOrUnknown, R"(>0 "MP+" (07/17))",                                                 Id(20094)},  // Musepack audio, stream version 7
    {FIOver::TextOrUnknown, R"(>0 "MP+" (27/37))",                                                 Id(20094)},
    {FIOver::TextOrUnknown, R"(>0 "TTA1" +1 00)",                                                  Id(20095)},  // True Audio, version 1
    {FIOver::TextOrUnknown, R"(>0 "TTA2")",                                                        Id(20096)},  // True Audio, version 2
    {FIOver::TextOrUnknown, R"(>0 "DSD " 1C 00 00 00 00 00 00 00)",                                Id(20097)},  // DSD stream file (DSF)
    {FIOver::TextOrUnknown, R"(>0 "FRM8" +8 "DSD ")",                                              Id(20098)},  // DSD interchange file (DSDIFF)
    {FIOver::TextOrUnknown, R"(>0 "#!AMR" 0A)",                                                    Id(20099)},  // AMR audio
    {FIOver::TextOrUnknown, R"(>0 "#!AMR-WB" 0A)",                                                 Id(20100)},  // AMR wideband audio
    {FIOver::TextOrUnknown, R"(>0 0B 77)",                                                         Call(20101)},  // AC-3 audio
    {FIOver::TextOrUnknown, R"(>0 0B 77)",                                                         Call(20102)},  // Enhanced AC-3 audio
    {FIOver::TextOrUnknown, R"(>0 FF [F0-F1])",                                                    Call(20103)},  // AAC audio, ADTS frames
    {FIOver::TextOrUnknown, R"(>0 FF [F8-F9])",                                                    Call(20103)},
    {FIOver::TextOrUnknown, R"(>0 "Creative Voice File" 1A)",                                      Id(20105)},  // Creative voice audio
    {FIOver::TextOrUnknown, R"(>0 ".RMF" 00 00 00)",                                               Id(20106)},  // RealMedia
    {FIOver::TextOrUnknown, R"(>0 ".ra" FD)",                                                      Id(20107)},  // RealAudio
    {FIOver::TextOrUnknown, R"(>0 30 26 B2 75 8E 66 CF 11 A6 D9 00 AA 00 62 CE 6C)",               Call(20108)},  // Windows Media video
    {FIOver::TextOrUnknown, R"(>0 30 26 B2 75 8E 66 CF 11 A6 D9 00 AA 00 62 CE 6C)",               Call(20109)},  // Windows Media audio
    {FIOver::TextOrUnknown, R"(>0 30 26 B2 75 8E 66 CF 11 A6 D9 00 AA 00 62 CE 6C)",               Id(20110)},  // ASF media, other
    {FIOver::TextOrUnknown, R"(>0 "FLV" 01)",                                                      Id(20111)},  // Flash video (FLV)
    {FIOver::TextOrUnknown, R"(>0 "FWS" [01-03])",                                                 Id(20112)},  // Flash movie, version 1 to 3, or from 8
    {FIOver::TextOrUnknown, R"(>0 "FWS" [0B-0C])",                                                 Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 "FWS" [0E-1F])",                                                 Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 "FWS" 08)",                                                      Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 "FWS" [09-0A] +3 [00-04])",                                      Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 "FWS" [20-2F] +3 [00-04])",                                      Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 "FWS" 0D +3 [00-04])",                                           Id(20112)},
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" [06-08])",                                          Id(20113)},  // Flash movie, compressed
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" [0B-0C])",                                          Id(20113)},
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" [0E-1F])",                                          Id(20113)},
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" [09-0A] +3 [00-04])",                               Id(20113)},
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" [20-3F] +3 [00-04])",                               Id(20113)},
    {FIOver::TextOrUnknown, R"(>0 (43/5A) "WS" 0D +3 [00-04])",                                    Id(20113)},
    {FIOver::TextOrUnknown, R"(>0 00 00 01 BA [40-7F])",                                           Id(20114)},  // MPEG-2 program stream
    {FIOver::TextOrUnknown, R"(>0 00 00 01 BA [20-2F])",                                           Id(20115)},  // MPEG-1 program stream
    {FIOver::TextOrUnknown, R"(>0 00 00 01 B3)",                                                   Call(20116)},  // MPEG-2 video stream
    {FIOver::TextOrUnknown, R"(>0 00 00 01 B3)",                                                   Id(20117)},  // MPEG-1 video stream
    {FIOver::TextOrUnknown, R"(>0 47 >188 47 >376 47 >564 47 >752 47 >940 47 >1128 47 >1316 47)",  Id(20118)},  // MPEG-2 transport stream
    {FIOver::TextOrUnknown, R"(>4 47 >196 47 >388 47 >580 47 >772 47 >964 47 >1156 47 >1348 47)",  Id(20119)},  // MPEG-2 transport stream, 192-byte packets
    {FIOver::TextOrUnknown, R"(>0 06 0E 2B 34 02 05 01 01 0D 01 02 01 01 02)",                     Id(20120)},  // MXF media
    {FIOver::TextOrUnknown, R"(>0 "DKIF" 00 00 20 00)",                                            Id(20121)},  // IVF video
    {FIOver::TextOrUnknown, R"(>4 12 AF)",                                                         Call(20122)},  // FLC animation
    {FIOver::TextOrUnknown, R"(>4 11 AF)",                                                         Call(20123)},  // FLI animation
    {FIOver::TextOrUnknown, R"(>0 "Extended Module: ")",                                           Id(20124)},  // Extended module music (XM)
    {FIOver::TextOrUnknown, R"(>0 "IMPM")",                                                        Id(20125)},  // Impulse Tracker music (IT)
    {FIOver::TextOrUnknown, R"(>28 1A >44 "SCRM")",                                                Id(20126)},  // Scream Tracker 3 music (S3M)
    {FIOver::TextOrUnknown, R"(>1080 "M.K.")",                                                     Id(20127)},  // Protracker music (MOD)
    {FIOver::TextOrUnknown, R"(>1080 "M!K!")",                                                     Id(20127)},
    {FIOver::TextOrUnknown, R"(>1080 "FLT4")",                                                     Id(20127)},
    {FIOver::TextOrUnknown, R"(>1080 (34/36) "CHN")",                                              Id(20127)},
    {FIOver::TextOrUnknown, R"(>1080 "8CHN")",                                                     Id(20127)},
    // clang-format on
};
