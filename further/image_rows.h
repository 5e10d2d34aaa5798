// image_rows.h - rows of the second table: pictures and raw images.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherImageRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"((always))",                                                              Call(20000)},  // Empty file
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypjp2")",                        Id(20001)},  // JPEG 2000 image (JP2)
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypjpx")",                        Id(20002)},  // JPEG 2000 image, extended (JPX)
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypjpm")",                        Id(20003)},  // JPEG 2000 compound image (JPM)
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypmjp2")",                       Id(20004)},  // Motion JPEG 2000 (MJ2)
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypmj2s")",                       Id(20004)},
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "jP  " 0D 0A 87 0A +4 "ftypjph ")",                       Id(20005)},  // High-throughput JPEG 2000 image (JPH)
    {FIOver::TextOrUnknown, R"(>0 FF 4F FF 51)",                                                        Id(20007)},  // JPEG 2000 codestream
    {FIOver::TextOrUnknown, R"(>0 "RIFF" +4 "WEBPVP8 ")",                                               Id(20008)},  // WebP image, lossy
    {FIOver::TextOrUnknown, R"(>0 "RIFF" +4 "WEBPVP8L")",                                               Id(20009)},  // WebP image, lossless
    {FIOver::TextOrUnknown, R"(>0 "RIFF" +4 "WEBPVP8X")",                                               Id(20010)},  // WebP image, extended
    {FIOver::TextOrUnknown, R"(>4 "ftypavi" (66/73))",                                                  Id(20011)},  // AVIF image
    {FIOver::TextOrUnknown, R"(>4 "ftypmif1")",                                                         Call(20011)},
    {FIOver::TextOrUnknown, R"(>4 "ftyphei" (63/6D))",                                                  Id(20012)},  // HEIF image, HEVC (HEIC)
    {FIOver::TextOrUnknown, R"(>4 "ftyphei" (73/78))",                                                  Id(20012)},
    {FIOver::TextOrUnknown, R"(>4 "ftypmif1")",                                                         Id(20014)},  // HEIF image
    {FIOver::TextOrUnknown, R"(>4 "ftypmsf1")",                                                         Id(20015)},  // HEIF image sequence
    {FIOver::TextOrUnknown, R"(>0 00 00 00 0C "JXL " 0D 0A 87 0A)",                                     Id(20016)},  // JPEG XL image, container
    {FIOver::TextOrUnknown, R"(>0 FF 0A)",                                                              Call(20017)},  // JPEG XL image, codestream
    {FIOver::TextOrUnknown, R"(>0 "II" BC 01)",                                                         Id(20018)},  // JPEG XR image
    {FIOver::TextOrUnknown, R"(>0 "BPG" FB)",                                                           Id(20019)},  // BPG image
    {FIOver::TextOrUnknown, R"(>0 "gimp xcf ")",                                                        Id(20020)},  // GIMP image (XCF)
    {FIOver::TextOrUnknown, R"(>0 "v/1" 01 02)",                                                        Id(20021)},  // OpenEXR image
    {FIOver::TextOrUnknown, R"(>0 "#?RADIANCE")",                                                       Id(20022)},  // Radiance RGBE image
    {FIOver::TextOrUnknown, R"(>0 "#?RGBE")",                                                           Id(20022)},
    {FIOver::TextOrUnknown, R"(>0 "DDS |" 00 00 00)",                                                   Id(20023)},  // DirectDraw surface (DDS)
    {FIOver::TextOrUnknown, R"(>0 AB "KTX 11" BB 0D 0A 1A 0A)",                                         Id(20024)},  // Khronos texture (KTX)
    {FIOver::TextOrUnknown, R"(>0 01 DA [00-01] [01-02] 00 [01-03])",                                   Id(20026)},  // SGI image
    {FIOver::TextOrUnknown, R"(>0 "icns" 00)",                                                          Id(20027)},  // Apple icon image (ICNS)
    {FIOver::TextOrUnknown, R"(>0 "SDPX" +4 "V1.0")",                                                   Id(20028)},  // DPX image, version 1
    {FIOver::TextOrUnknown, R"(>0 "XPDS" +4 "V1.0")",                                                   Id(20028)},
    {FIOver::TextOrUnknown, R"(>0 "SDPX" +4 "V2.0")",                                                   Id(20029)},  // DPX image, version 2
    {FIOver::TextOrUnknown, R"(>0 "XPDS" +4 "V2.0")",                                                   Id(20029)},
    {FIOver::TextOrUnknown, R"(>0 80 2A 5F D7)",                                                        Id(20030)},  // Cineon image
    {FIOver::TextOrUnknown, R"(>0 "SIMPLE  =")",                                                        Id(20031)},  // FITS data
    {FIOver::TextOrUnknown, R"(>0 "id=ImageMagick")",                                                   Id(20032)},  // ImageMagick image (MIFF)
    {FIOver::TextOrUnknown, R"(>0 8A "MNG" 0D 0A 1A 0A)",                                               Id(20033)},  // MNG animation
    {FIOver::TextOrUnknown, R"(>0 8B "JNG" 0D 0A 1A 0A)",                                               Id(20034)},  // JNG image
    {FIOver::TextOrUnknown, R"(>0 "qoif" +8 [03-04] [00-01])",                                          Id(20035)},  // QOI image
    {FIOver::TextOrUnknown, R"(>0 "FLIF" [33-34])",                                                     Id(20036)},  // FLIF image
    {FIOver::TextOrUnknown, R"(>0 "FLIF" [43-44])",                                                     Id(20036)},
    {FIOver::TextOrUnknown, R"(>0 "FLIF" [53-54])",                                                     Id(20036)},
    {FIOver::TextOrUnknown, R"(>0 "FLIF" [63-64])",                                                     Id(20036)},
    {FIOver::TextOrUnknown, R"(>0 "FLIF" (31/41))",                                                     Id(20036)},
    {FIOver::TextOrUnknown, R"(>0 "FLIF" (51/61))",                                                     Id(20036)},
    {FIOver::TextOrUnknown, R"(>0 "farbfeld")",                                                         Id(20037)},  // Farbfeld image
    {FIOver::TextOrUnknown, R"(>0 "AT&TFORM" +4 "DJV")",                                                Id(20038)},  // DjVu document
    {FIOver::TextOrUnknown, R"(>0 "P7 332")",                                                           Id(20040)},  // XV thumbnail
    {FIOver::TextOrUnknown, R"(>0 "P7" 0A)",                                                            Call(20041)},  // Portable arbitrary map (PAM)
    {FIOver::TextOrUnknown, R"(>0 "P7" 0A "WIDTH")",                                                    Id(20041)},
    {FIOver::TextOrUnknown, R"(>0 "P" (46/66) 0A)",                                                     Call(20042)},  // Portable float map (PFM)
    {FIOver::TextOrUnknown, R"(>0 "FUJIFILMCCD-RAW ")",                                                 Id(20043)},  // Fuji raw image (RAF)
    {FIOver::TextOrUnknown, R"(>0 "MMOR" 00 00 00 08)",                                                 Id(20044)},  // Olympus raw image (ORF)
    {FIOver::TextOrUnknown, R"(>0 "IIR" (4F/53) 08 00 00 00)",                                          Id(20044)},
    {FIOver::TextOrUnknown, R"(>0 "IIU" 00)",                                                           Id(20045)},  // Panasonic raw image (RW2)
    {FIOver::TextOrUnknown, R"(>0 "FOVb")",                                                             Id(20046)},  // Sigma raw image (X3F)
    {FIOver::TextOrUnknown, R"(>0 00 "MRM" 00)",                                                        Id(20047)},  // Minolta raw image (MRW)
    {FIOver::TextOrUnknown, R"(>0 "II" 1A 00 00 00 "HEAPCCDR")",                                        Id(20048)},  // Canon raw image, version 1 (CRW)
    {FIOver::TextOrUnknown, R"(>4 "ftypcrx ")",                                                         Id(20049)},  // Canon raw image, version 3 (CR3)
    {FIOver::TextOrUnknown, R"(>8 02 >36 "acsp")",                                                      Id(20050)},  // ICC profile, version 2
    {FIOver::TextOrUnknown, R"(>8 04 >36 "acsp")",                                                      Id(20051)},  // ICC profile, version 4
    {FIOver::TextOrUnknown, R"(>8 05 >36 "acsp")",                                                      Id(20052)},  // ICC profile, version 5 (iccMAX)
    {FIOver::TextOrUnknown, R"(>0 00 00 +2 00 00 00 02 >20 "GIMP")",                                    Id(20053)},  // GIMP brush
    {FIOver::TextOrUnknown, R"(>0 "GIMP Palette")",                                                     Id(20055)},  // GIMP palette
    {FIOver::TextOrUnknown, R"(>0 "GIMP Gradient")",                                                    Id(20056)},  // GIMP gradient
    {FIOver::TextOrUnknown, R"(>0 "BLP" [31-32] +1 00 00 00)",                                          Id(20057)},  // Blizzard picture (BLP)
    {FIOver::TextOrUnknown, R"(>0 "VTF" 00)",                                                           Id(20058)},  // Valve texture (VTF)
    {FIOver::TextOrUnknown, R"(>0 "FORM" +4 "ILBM")",                                                   Id(20059)},  // IFF picture (ILBM, PBM)
    {FIOver::TextOrUnknown, R"(>0 "FORM" +4 "PBM ")",                                                   Id(20059)},
    {FIOver::TextOrUnknown, R"(>128 "DICM")",                                                           Id(20060)},  // DICOM file
    {FIOver::TextOrUnknown, R"(>0 5C 01 00 00 >344 6E (2B/69) 31 00)",                                  Id(20061)},  // NIfTI-1 image
    {FIOver::TextOrUnknown, R"(>0 00 00 01 5C >344 6E (2B/69) 31 00)",                                  Id(20061)},
    {FIOver::TextOrUnknown, R"(>0 1C 02 00 00 6E (2B/69) 32 00 0D 0A 1A 0A)",                           Id(20062)},  // NIfTI-2 image
    {FIOver::TextOrUnknown, R"(>0 00 00 02 1C 6E (2B/69) 32 00 0D 0A 1A 0A)",                           Id(20062)},
    {FIOver::TextOrUnknown, R"(>0 "#FIG " [31-39])",                                                    Id(20063)},  // XFIG drawing (Fig)
    {FIOver::TextOrUnknown, R"(>0 "RIFF" +4 "ACON")",                                                   Id(20064)},  // Windows animated cursor (ANI)
    {FIOver::TextOrUnknown, R"(>0 "BM" >14 6C 00 00 00 +8 01 00)",                                      Id(20066)},  // Windows bitmap, version 4 (108-byte header)
    {FIOver::TextOrUnknown, R"(>0 "II+" 00 08 00 00 00)",                                               Id(20386)},  // BigTIFF image
    {FIOver::TextOrUnknown, R"(>0 "MM" 00 2B 00 08 00 00)",                                             Id(20386)},
    {FIOver::TextOrUnknown, R"(>0 "BM" >14 (34/38) 00 00 00 +8 01 00)",                                 Id(20067)},  // Windows bitmap, 52- or 56-byte header
    {FIOver::TextOrUnknown, R"(>0 06 06 ED F5 D8 1D 46 E5 BD 31 EF E7 FE 74 B7 1D "DOCUMENT")",         Id(20068)},  // InDesign document
    {FIOver::TextOrUnknown, R"(>92 "DOCUMENT" [01-02])",                                                Id(20068)},
    {FIOver::TextOrUnknown, R"(>0 06 06 ED F5 D8 1D 46 E5 BD 31 EF E7 FE 74 B7 1D "BOOKBOOK")",         Id(20377)},  // InDesign book
    {FIOver::TextOrUnknown, R"(>0 06 06 ED F5 D8 1D 46 E5 BD 31 EF E7 FE 74 B7 1D "LIBRARY" (32/34))",  Id(20378)},  // InDesign library
    // clang-format on
};
