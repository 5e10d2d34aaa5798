// data_rows.h - rows of the second table: databases, scientific data, system files, books.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherDataRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 "SQLite format 3" 00 >68 "GPKG")",                                      Id(20189)},  // GeoPackage
    {FIOver::TextOrUnknown, R"(>0 "SQLite format 3" 00 >68 "GP1" [30-31])",                               Id(20189)},
    {FIOver::TextOrUnknown, R"(>0 "SQLite format 3" 00)",                                                 Id(20190)},  // SQLite database, version 3
    {FIOver::TextOrUnknown, R"(>0 "PAR1")",                                                               Call(20191)},  // Apache Parquet
    {FIOver::TextOrUnknown, R"(>0 "ORC")",                                                                Call(20192)},  // Apache ORC
    {FIOver::TextOrUnknown, R"(>0 "Obj" 01)",                                                             Id(20193)},  // Apache Avro
    {FIOver::TextOrUnknown, R"(>0 "ARROW1" 00 00)",                                                       Id(20194)},  // Apache Arrow file
    {FIOver::TextOrUnknown, R"(>0 "FEA1")",                                                               Call(20195)},  // Feather, version 1
    {FIOver::TextOrUnknown, R"(>0 89 "HDF" 0D 0A 1A 0A 00)",                                              Id(20196)},  // HDF5 file, superblock version 0
    {FIOver::TextOrUnknown, R"(>0 89 "HDF" 0D 0A 1A 0A 01)",                                              Id(20197)},  // HDF5 file, superblock version 1
    {FIOver::TextOrUnknown, R"(>0 89 "HDF" 0D 0A 1A 0A [02-03])",                                         Id(20198)},  // HDF5 file, superblock version 2 or 3
    {FIOver::TextOrUnknown, R"(>0 "MATLAB 7.3")",                                                         Id(20199)},  // MATLAB data, level 7.3
    {FIOver::TextOrUnknown, R"(>0 0E 03 13 01)",                                                          Id(20200)},  // HDF4 file
    {FIOver::TextOrUnknown, R"(>0 "CDF" 01)",                                                             Id(20201)},  // NetCDF-3 classic
    {FIOver::TextOrUnknown, R"(>0 "CDF" 02)",                                                             Id(20202)},  // NetCDF-3 64-bit offset
    {FIOver::TextOrUnknown, R"(>0 "CDF" 05)",                                                             Id(20203)},  // NetCDF 64-bit data (CDF-5)
    {FIOver::TextOrUnknown, R"(>0 "GRIB" +3 01)",                                                         Id(20204)},  // GRIB weather data, edition 1
    {FIOver::TextOrUnknown, R"(>0 "GRIB" +3 02)",                                                         Id(20205)},  // GRIB weather data, edition 2
    {FIOver::TextOrUnknown, R"(>0 "MATLAB 5.0")",                                                         Id(20206)},  // MATLAB data, level 5
    {FIOver::TextOrUnknown, R"(>0 00 00 00 00 00 00 00 00 00 00 00 00 C2 EA 81 60 B3 14 11 CF BD 92 08 00 09 C7 31 8C 18 1F 10 11)", Id(20207)},  // SAS data set (SAS7BDAT)
    {FIOver::TextOrUnknown, R"(>0 00 00 00 00 00 00 00 00 00 00 00 00 C2 EA 81 63 B3 14 11 CF BD 92 08 00 09 C7 31 8C 18 1F 10 11)", Id(20380)},  // SAS catalogue (SAS7BCAT)
    {FIOver::TextOrUnknown, R"(>0 "HEADER RECORD*******LIBRARY")",                                        Id(20208)},  // SAS transport file (XPORT)
    {FIOver::TextOrUnknown, R"(>0 "$FL" [32-33] "@(#" 29)",                                               Id(20209)},  // SPSS data file
    {FIOver::TextOrUnknown, R"(>0 "<stata_dta>")",                                                        Id(20210)},  // Stata data file, format 117 or later
    {FIOver::TextOrUnknown, R"(>0 93 "NUMPY")",                                                           Id(20211)},  // NumPy array
    {FIOver::TextOrUnknown, R"(>0 "RDX" [32-33] 0A 58 0A)",                                               Id(20212)},  // R data, uncompressed
    {FIOver::TextOrUnknown, R"(>0 "RDX2" 0A 41 0A)",                                                      Id(20212)},
    {FIOver::TextOrUnknown, R"(>0 00 01 00 00 "Standard ACE DB" 00)",                                     Id(20213)},  // Access database (ACE)
    {FIOver::TextOrUnknown, R"(>12 "b1" 05 00)",                                                          Id(20214)},  // Berkeley DB
    {FIOver::TextOrUnknown, R"(>12 00 05 "1b")",                                                          Id(20214)},
    {FIOver::TextOrUnknown, R"(>12 61 15 06 00)",                                                         Id(20214)},
    {FIOver::TextOrUnknown, R"(>12 00 06 15 61)",                                                         Id(20214)},
    {FIOver::TextOrUnknown, R"(>12 53 22 04 00)",                                                         Id(20214)},
    {FIOver::TextOrUnknown, R"(>12 00 04 22 53)",                                                         Id(20214)},
    {FIOver::TextOrUnknown, R"(>0 [CE-CF] 9A 57 13)",                                                     Id(20215)},  // GNU dbm
    {FIOver::TextOrUnknown, R"(>0 13 57 9A [CE-CF])",                                                     Id(20215)},
    {FIOver::TextOrUnknown, R"(>0 00 00 27 0A 00 00 00 00 >28 E8 03 00 00 >100 00 00 00 01)",             Id(20217)},  // ESRI shapefile
    {FIOver::TextOrUnknown, R"(>0 00 00 27 0A 00 00 00 00 >28 E8 03 00 00 >100 00 00 00 32)",             Id(20379)},  // ESRI shape index
    {FIOver::TextOrUnknown, R"(>0 [30-39]*5 [61-7A] [61-7A] +3 "22" [30-39]*5 +3 "4500")",                Call(20218)},  // MARC 21 record
    {FIOver::TextOrUnknown, R"(>0 "ElfFile" 00)",                                                         Id(20219)},  // Windows event log (EVTX)
    {FIOver::TextOrUnknown, R"(>0 30 00 00 00 "LfLe")",                                                   Id(20220)},  // Windows event log (EVT)
    {FIOver::TextOrUnknown, R"(>0 "regf" >20 01 00 00 00)",                                               Id(20221)},  // Windows registry hive
    {FIOver::TextOrUnknown, R"(>0 "Windows Registry Editor")",                                            Id(20222)},  // Windows registry text
    {FIOver::TextOrUnknown, R"(>0 "REGEDIT4" 0D 0A)",                                                     Id(20222)},
    {FIOver::TextOrUnknown, R"(>0 FF FE 57 00 69 00 6E 00 64 00 6F 00 77 00 73 00 20 00 52 00 65 00 67 00 69)", Id(20222)},
    {FIOver::TextOrUnknown, R"(>0 4C 00 00 00 01 14 02 00 00 00 00 00 C0 00 00 00 00 00 00 46)",          Id(20223)},  // Windows shortcut (LNK)
    {FIOver::TextOrUnknown, R"((always))",                                                                Call(20224)},  // Internet shortcut (URL)
    {FIOver::TextOrUnknown, R"(>0 D4 C3 B2 A1)",                                                          Id(20225)},  // Packet capture (PCAP)
    {FIOver::TextOrUnknown, R"(>0 A1 B2 C3 D4)",                                                          Id(20225)},
    {FIOver::TextOrUnknown, R"(>0 "M<" B2 A1)",                                                           Id(20225)},
    {FIOver::TextOrUnknown, R"(>0 A1 B2 "<M")",                                                           Id(20225)},
    {FIOver::TextOrUnknown, R"(>0 0A 0D 0D 0A +4 1A "+<M")",                                              Id(20226)},  // Packet capture (PCAPNG)
    {FIOver::TextOrUnknown, R"(>0 0A 0D 0D 0A +4 "M<+" 1A)",                                              Id(20226)},
    {FIOver::TextOrUnknown, R"(>0 "snoop" 00 00 00)",                                                     Id(20227)},  // Packet capture (snoop)
    {FIOver::TextOrUnknown, R"(>0 "bplist" [30-31])",                                                     Id(20228)},  // Binary property list
    {FIOver::TextOrUnknown, R"(>0 CF AD 12 FE)",                                                          Id(20229)},  // Outlook Express messages (DBX)
    {FIOver::TextOrUnknown, R"(>4 EF CD AB 89)",                                                          Id(20230)},  // Extensible storage engine database (ESE)
    {FIOver::TextOrUnknown, R"(>0 E4 "R\{" 8C D8 A7 4D AE B1 "Sx" D0 29 96 D3)",                          Id(20231)},  // OneNote section
    {FIOver::TextOrUnknown, R"(>0 A1 2F FF 43 D9 EF "vL" 9E E2 10 EA 57 22 "v_")",                        Id(20232)},  // OneNote table of contents
    {FIOver::TextOrUnknown, R"(>0 "ITSF" 03 00 00 00)",                                                   Id(20233)},  // Compiled HTML help (CHM)
    {FIOver::TextOrUnknown, R"(>0 "ITOLITLS")",                                                           Id(20234)},  // Microsoft Reader e-book (LIT)
    {FIOver::TextOrUnknown, R"(>0 3F 5F 03 00)",                                                          Call(20382)},  // Multimedia Viewer book
    {FIOver::TextOrUnknown, R"(>0 3F 5F 03 00 +4 FF FF FF FF)",                                           Id(20235)},  // Windows help (HLP)
    {FIOver::TextOrUnknown, R"(>60 "BOOKMOBI")",                                                          Id(20236)},  // Mobipocket or Kindle e-book
    {FIOver::TextOrUnknown, R"(>60 "TEXtREAd")",                                                          Id(20237)},  // PalmDOC text
    // clang-format on
};
