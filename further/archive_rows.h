// archive_rows.h - rows of the second table: archives, packed files, disk images and web archives.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherArchiveRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 "7z" BC AF 27 1C)",                            Id(20128)},  // 7-Zip archive
    {FIOver::TextOrUnknown, R"(>0 FD "7zXZ" 00)",                                Id(20129)},  // xz compressed file
    {FIOver::TextOrUnknown, R"(>0 28 B5 2F FD)",                                 Id(20130)},  // Zstandard compressed file
    {FIOver::TextOrUnknown, R"(>0 [50-5F] "*M" 18 04 00 00 00 +4 28 B5 2F FD)",  Id(20130)},
    {FIOver::TextOrUnknown, R"(>0 04 22 4D 18)",                                 Id(20131)},  // LZ4 compressed file
    {FIOver::TextOrUnknown, R"(>0 02 "!L" 18)",                                  Id(20131)},
    {FIOver::TextOrUnknown, R"(>0 "BZh" [31-39] "1AY&SY")",                      Id(20132)},  // bzip2 compressed file
    {FIOver::TextOrUnknown, R"(>0 "BZh" [31-39] 17 "rE8P" 90)",                  Id(20132)},
    {FIOver::TextOrUnknown, R"(>0 "Rar!" 1A 07 01 00)",                          Id(20133)},  // RAR archive, version 5
    {FIOver::TextOrUnknown, R"(>0 "Rar!" 1A 07 00)",                             Id(20134)},  // RAR archive, version 1.5 to 4
    {FIOver::TextOrUnknown, R"(>0 "LZIP" [00-01])",                              Id(20135)},  // lzip compressed file
    {FIOver::TextOrUnknown, R"(>0 5D 00 00)",                                    Call(20136)},  // LZMA compressed file
    {FIOver::TextOrUnknown, R"(>0 89 "LZO" 00 0D 0A 1A 0A)",                     Id(20137)},  // lzop compressed file
    {FIOver::TextOrUnknown, R"(>0 FF 06 00 00 "sNaPpY")",                        Id(20138)},  // Snappy framed data
    {FIOver::TextOrUnknown, R"(>0 "07070" [31-32])",                             Call(20139)},  // cpio archive, new ASCII (newc, crc)
    {FIOver::TextOrUnknown, R"(>0 "070707")",                                    Call(20140)},  // cpio archive, old ASCII (odc)
    {FIOver::TextOrUnknown, R"(>0 C7 71)",                                       Call(20141)},  // cpio archive, binary
    {FIOver::TextOrUnknown, R"(>0 71 C7)",                                       Call(20141)},
    {FIOver::TextOrUnknown, R"(>0 "!<arch>" 0A "debian-binary")",                Id(20142)},  // Debian package
    {FIOver::TextOrUnknown, R"(>0 "!<arch>" 0A)",                                Id(20143)},  // UNIX ar archive
    {FIOver::TextOrUnknown, R"(>0 ED AB EE DB 03)",                              Id(20144)},  // RPM package, version 3
    {FIOver::TextOrUnknown, R"(>0 ED AB EE DB)",                                 Id(20145)},  // RPM package, other version
    {FIOver::TextOrUnknown, R"((always))",                                       Call(20146)},  // ISO 9660 disk image
    {FIOver::TextOrUnknown, R"((always))",                                       Call(20147)},  // UDF disk image
    {FIOver::TextOrUnknown, R"(>0 60 EA +8 02)",                                 Call(20148)},  // ARJ archive
    {FIOver::TextOrUnknown, R"(>7 "**ACE**")",                                   Id(20149)},  // ACE archive
    {FIOver::TextOrUnknown, R"(>20 DC A7 C4 FD)",                                Id(20150)},  // ZOO archive
    {FIOver::TextOrUnknown, R"(>0 "xar!" 00 1C)",                                Id(20151)},  // XAR archive
    {FIOver::TextOrUnknown, R"((always))",                                       Call(20152)},  // Apple disk image (DMG)
    {FIOver::TextOrUnknown, R"(>0 "SZDD" 88 F0 27 33)",                          Id(20153)},  // Microsoft SZDD compressed file
    {FIOver::TextOrUnknown, R"(>0 "MSWIM")",                                     Id(20154)},  // Windows imaging file (WIM)
    {FIOver::TextOrUnknown, R"(>0 "KDMV" [01-03] 00 00 00)",                     Id(20155)},  // VMware virtual disk, sparse (VMDK)
    {FIOver::TextOrUnknown, R"(>0 "# Disk DescriptorFile")",                     Id(20384)},  // VMware virtual disk descriptor
    {FIOver::TextOrUnknown, R"(>0 "QFI" FB)",                                    Id(20156)},  // QEMU virtual disk (QCOW)
    {FIOver::TextOrUnknown, R"(>0 "conectix")",                                  Id(20157)},  // Virtual PC disk (VHD)
    {FIOver::TextOrUnknown, R"((always))",                                       Call(20157)},
    {FIOver::TextOrUnknown, R"(>0 "vhdxfile")",                                  Id(20158)},  // Hyper-V virtual disk (VHDX)
    {FIOver::TextOrUnknown, R"(>64 7F 10 DA BE)",                                Id(20159)},  // VirtualBox disk (VDI)
    {FIOver::TextOrUnknown, R"(>0 "hsqs" >28 [01-04] 00)",                       Id(20160)},  // SquashFS file system
    {FIOver::TextOrUnknown, R"(>0 "sqsh" >28 00 [01-04])",                       Id(20160)},
    {FIOver::TextOrUnknown, R"(>0 "Cr24" [02-03] 00 00 00)",                     Id(20161)},  // Chrome extension (CRX)
    {FIOver::TextOrUnknown, R"(>0 "StuffIt" (21/3F))",                           Id(20162)},  // StuffIt X archive
    {FIOver::TextOrUnknown, R"(>0 "WARC/1.0" 0D 0A)",                            Id(20164)},  // WARC web archive, version 1.0
    {FIOver::TextOrUnknown, R"(>0 "WARC/1.1" 0D 0A)",                            Id(20165)},  // WARC web archive, version 1.1
    {FIOver::TextOrUnknown, R"(>0 "WARC/")",                                     Call(20166)},  // WARC web archive, other version
    {FIOver::TextOrUnknown, R"(>0 "filedesc://")",                               Id(20167)},  // Internet Archive ARC web archive
    {FIOver::TextOrUnknown, R"(>0 "d8:announce")",                               Id(20168)},  // BitTorrent metainfo
    {FIOver::TextOrUnknown, R"(>0 64 [30-3F])",                                  Call(20168)},
    {FIOver::TextOrUnknown, R"(>0 "EVF" 09 0D 0A FF 00)",                        Id(20169)},  // Expert Witness (EnCase) disk image
    {FIOver::TextOrUnknown, R"(>0 "EVF2" 0D 0A 81 00)",                          Id(20169)},
    {FIOver::TextOrUnknown, R"(>0 "AFF10" 0D 0A 00)",                            Id(20170)},  // Advanced Forensic Format image
    {FIOver::TextOrUnknown, R"(>0 "ADSEGMENTEDFILE")",                           Id(20171)},  // AccessData custom content image
    {FIOver::TextOrUnknown, R"(>0 "ADCRYPT")",                                   Id(20383)},  // AccessData custom content image, encrypted
    {FIOver::TextOrUnknown, R"(>0 "LUKS" BA BE)",                                Id(20172)},  // LUKS encrypted volume
    // clang-format on
};
