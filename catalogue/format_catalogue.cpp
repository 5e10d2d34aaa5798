// format_catalogue.cpp - the catalogue of formats: one table, in the order of the identifiers.
//
//   Column      Holds
//   identifier  they go by number: documents from 1000, databases from 1200, and so on
//   family      what the format is for, by the rules of catalogue/family.h
//   name        what the files are; of a format without a known name its mark. In names, bytes are in hexadecimal and
//               offsets in decimal
//   media type  the one registered with IANA, or else the one in general use
//   PRONOM      the entries of The National Archives' registry whose files get the identifier
//   extensions  the most usual first
//
// An identifier says no more than its files have in common, and several roads may lead to it, so each column must be
// right for practically all of its files. That is why some columns are empty where one would look for an entry:
//
//   1000        documents of Word for DOS and of Write, which have different media types
//   1181        HTML and XHTML alike, and the registry's XHTML entries have another media type
//   1196        vCalendar and iCalendar, which have different media types
//   1611        PDF data under the extension of Illustrator: the media type of either is half right
//   1800        DOS, 16-bit, 32-bit and 64-bit executables; only the last two have a registered media type
//   MacBinary   files that come out only inside that wrapper: the types of what it holds are not those of the file
//
// Entries of narrower kinds stand beside the format's where their files get its identifier: PDF/A and its like in
// 1557, Digital Negative in 1501, broadcast WAVE in 1700, XHTML in 1101. Such a kind may have a media type of its own.
//
// Templates, and in Office Open XML also macro-enabled files, cannot be told from documents. They share the record of
// the documents, with the documents' media type; fmt/189 is the registry's entry for any Office Open XML file.
#include "catalogue/format_catalogue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace {

// Media types and lists of PRONOM identifiers that are long or stand in several rows.
constexpr const char* wordPerfectType = "application/vnd.wordperfect";
constexpr const char* docxType = "application/vnd.openxmlformats-officedocument.wordprocessingml.document";
constexpr const char* xlsxType = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet";
constexpr const char* pptxType = "application/vnd.openxmlformats-officedocument.presentationml.presentation";
constexpr const char* xlsbType = "application/vnd.ms-excel.sheet.binary.macroEnabled.12";
constexpr const char* odsType = "application/vnd.oasis.opendocument.spreadsheet";
constexpr const char* odgType = "application/vnd.oasis.opendocument.graphics";
constexpr const char* odpType = "application/vnd.oasis.opendocument.presentation";
constexpr const char* corelDrawType = "application/vnd.corel-draw";
constexpr const char* quarkXPressType = "application/vnd.Quark.QuarkXPress";
constexpr const char* wordOrWritePuids = "fmt/1688 x-fmt/4 x-fmt/12 x-fmt/274 x-fmt/275 x-fmt/276";
constexpr const char* wordForDosPuids = "fmt/1688 x-fmt/274 x-fmt/275 x-fmt/276";
constexpr const char* word97Puids = "fmt/40 fmt/609 fmt/754 fmt/755 x-fmt/45";
constexpr const char* rtfPuids = "fmt/45 fmt/50 fmt/52 fmt/53 fmt/355 fmt/969";
constexpr const char* htmlPuids = "fmt/96 fmt/97 fmt/98 fmt/99 fmt/100 fmt/471 fmt/102 fmt/103";
constexpr const char* xmlPuids = "fmt/101 fmt/1776";
constexpr const char* excel97Puids = "fmt/61 x-fmt/17";
constexpr const char* powerPoint97Puids = "fmt/126 x-fmt/84 x-fmt/87";
constexpr const char* accessPuids =
    "fmt/1258 fmt/1805 fmt/1806 fmt/1807 fmt/1808 fmt/1809 x-fmt/66 x-fmt/238 x-fmt/239 x-fmt/240 x-fmt/241";
constexpr const char* binderPuids = "fmt/237 fmt/238 fmt/239 fmt/240 fmt/241 fmt/242";
constexpr const char* tiffPuids =
    "fmt/153 fmt/154 fmt/155 fmt/156 fmt/353 x-fmt/387 x-fmt/388 x-fmt/399 fmt/152 fmt/730 fmt/1841 fmt/1842 fmt/1943";
constexpr const char* jpegPuids =
    "fmt/41 fmt/42 fmt/43 fmt/44 fmt/112 fmt/113 fmt/645 fmt/1507 x-fmt/390 x-fmt/391 x-fmt/398";
constexpr const char* dxfTextPuids =
    "fmt/63 fmt/64 fmt/65 fmt/66 fmt/67 fmt/68 fmt/69 fmt/70 fmt/71 fmt/72 fmt/73 fmt/74 fmt/75 fmt/76 fmt/77 fmt/78 "
    "fmt/79 fmt/433 fmt/435 fmt/532 fmt/1389";
constexpr const char* dxfBinaryPuids =
    "fmt/1394 fmt/80 fmt/81 fmt/82 fmt/83 fmt/84 fmt/85 fmt/1390 fmt/1391 fmt/1392 fmt/1393";
constexpr const char* pdfPuids =
    "fmt/14 fmt/15 fmt/16 fmt/17 fmt/18 fmt/19 fmt/20 fmt/276 fmt/1129 fmt/95 fmt/144 fmt/145 fmt/146 fmt/147 fmt/148 "
    "fmt/157 fmt/158 fmt/354 fmt/476 fmt/477 fmt/478 fmt/479 fmt/480 fmt/481 fmt/488 fmt/489 fmt/490 fmt/491 fmt/492 "
    "fmt/493 fmt/1451 fmt/1910 fmt/1911 fmt/1912 fmt/2050 fmt/2052";
constexpr const char* illustratorPuids =
    "fmt/558 fmt/559 fmt/560 fmt/561 fmt/562 fmt/563 fmt/564 fmt/565 fmt/1862 fmt/1863 fmt/1864";
constexpr const char* postScriptPuids =
    "fmt/122 fmt/123 fmt/124 fmt/501 fmt/1884 x-fmt/91 x-fmt/406 x-fmt/407 x-fmt/408";
constexpr const char* postScriptOrIllustratorPuids =
    "fmt/122 fmt/123 fmt/124 fmt/501 fmt/1884 x-fmt/20 fmt/417 fmt/418 fmt/419 fmt/420 fmt/422 fmt/423 fmt/557 "
    "x-fmt/91 x-fmt/406 x-fmt/407 x-fmt/408";
constexpr const char* paintShopProPuids = "fmt/348 fmt/349 x-fmt/233 x-fmt/234 x-fmt/297 x-fmt/298 x-fmt/376 x-fmt/377";
constexpr const char* wavePuids =
    "fmt/6 fmt/141 fmt/142 fmt/143 fmt/1 fmt/2 fmt/527 fmt/703 fmt/704 fmt/705 fmt/706 fmt/707 fmt/708 fmt/709 "
    "fmt/710 fmt/711 x-fmt/389 x-fmt/396 x-fmt/397";

constexpr FIFormatRecord formatRecords[] = {
    // clang-format off
    // word processors, mail and other documents
    {1000, FIFamily::Document,     "Word for DOS or Write document, version byte 0",                        "",                                    wordOrWritePuids,                     "doc wri"},
    {1001, FIFamily::Document,     "Word for DOS document, version byte 3 to 7",                            "application/msword",                  wordForDosPuids,                      "doc"},
    {1002, FIFamily::Document,     "WordStar for DOS document, version 5.0 or 5.5",                         "",                                    "x-fmt/205 x-fmt/236",                "ws"},
    {1003, FIFamily::Document,     "Text with the top bit set where words end (WordStar style)",            "",                                    "",                                   ""},
    {1004, FIFamily::Document,     "WordStar 2000 document",                                                "",                                    "fmt/882",                            ""},
    {1005, FIFamily::Document,     "WordPerfect document, version 5.0",                                     wordPerfectType,                       "x-fmt/393",                          "wpd wp wp5 w50"},
    {1006, FIFamily::Document,     "Document in 512-byte blocks (marker FF 03 B3), zero at 420 and 467",    "",                                    "",                                   ""},
    {1007, FIFamily::Document,     "Document in 512-byte blocks (marker FF 03 B3), mark at 420 or 467",     "",                                    "",                                   ""},
    {1008, FIFamily::Document,     "Revisable-form text (DCA-RFT)",                                         "application/dca-rft",                 "x-fmt/11 x-fmt/148",                 "rft dca"},
    {1009, FIFamily::Document,     "Document, signature 80 00 00 09 20 00 O{J] 02",                         "",                                    "",                                   ""},
    {1010, FIFamily::Document,     "Document with a checksum, signature 53 04 02 01",                       "",                                    "",                                   ""},
    {1011, FIFamily::Document,     "Word processor document, signature 1A 53",                              "",                                    "",                                   ""},
    {1012, FIFamily::Document,     "Document with the tag WRD PC at 640",                                   "",                                    "",                                   ""},
    {1013, FIFamily::Document,     "Document with the tag WRD PC or TYPE 2 at 640, version 2.00",           "",                                    "",                                   ""},
    {1014, FIFamily::Document,     "Document with the tag TYPE 3 at 640",                                   "",                                    "",                                   ""},
    {1015, FIFamily::Document,     "Document with the tag TYPE 4 at 640",                                   "",                                    "",                                   ""},
    {1016, FIFamily::Document,     "Document with the tag IBM at 640",                                      "",                                    "",                                   ""},
    {1017, FIFamily::Document,     "PFS:First Choice document, tag GERBILDOC",                              "",                                    "fmt/1282",                           "doc"},
    {1018, FIFamily::Document,     "Document in records with their length at both ends",                    "",                                    "",                                   ""},
    {1019, FIFamily::Document,     "Document that starts with the sequence ESC [ 1$K",                      "",                                    "",                                   ""},
    {1020, FIFamily::Document,     "Document with a LAYOUT 000 trailer, variant 0 to 2",                    "",                                    "",                                   ""},
    {1021, FIFamily::Document,     "Document with pipe codes N and O from 120, header 74 00",               "",                                    "",                                   ""},
    {1022, FIFamily::Document,     "DOS word processor text with three-byte line ends",                     "",                                    "",                                   ""},
    {1023, FIFamily::Document,     "WordPerfect document, version 4",                                       wordPerfectType,                       "fmt/949",                            "wp wp4 wpd"},
    {1024, FIFamily::Document,     "Document with a LAYOUT 000 trailer, variant 3 or more",                 "",                                    "",                                   ""},
    {1025, FIFamily::Document,     "Document with a block list at 256, blocks marked by 86",                "",                                    "",                                   ""},
    {1028, FIFamily::Document,     "Rich text (RTF)",                                                       "application/rtf",                     rtfPuids,                             "rtf"},
    {1029, FIFamily::Document,     "Word for Macintosh document, header FE 34 (version 3)",                 "application/msword",                  "x-fmt/1",                            "mcw"},
    {1030, FIFamily::Document,     "Word for Macintosh document, header FE 37 (version 4 or 5)",            "application/msword",                  "x-fmt/64 x-fmt/65",                  "mcw"},
    {1031, FIFamily::Document,     "Document, signature 5A 00, with C9 00 at 92 and 296",                   "",                                    "",                                   ""},
    {1032, FIFamily::Document,     "MacWrite II document",                                                  "application/macwriteii",              "",                                   ""},
    {1033, FIFamily::Document,     "Text with two-letter commands behind the byte AE (XyWrite style)",      "",                                    "",                                   ""},
    {1034, FIFamily::Document,     "DOS word processor text with codes behind plus signs",                  "",                                    "",                                   ""},
    {1035, FIFamily::Document,     "WordPerfect for Macintosh document, type WPD0",                         wordPerfectType,                       "",                                   ""},
    {1036, FIFamily::Document,     "Document, signature 80 00 00 09 20 00 O{J] 18, zero at 27",             "",                                    "",                                   ""},
    {1037, FIFamily::Document,     "Document with 1C at 92, 1D at 295 and 05 81 at 498",                    "",                                    "",                                   ""},
    {1038, FIFamily::Document,     "WordPerfect document, version 5.1 or 5.2",                              wordPerfectType,                       "x-fmt/203 x-fmt/394",                "wpd wp wp5 w51 w52"},
    {1039, FIFamily::Document,     "Document in 512-byte blocks (marker FF 03 B3), 4 at 511",               "",                                    "",                                   ""},
    {1040, FIFamily::Document,     "Q&A word processor document",                                           "",                                    "fmt/1045",                           ""},
    {1041, FIFamily::Document,     "Document with a table of 14-byte entries, data marked by B3",           "",                                    "",                                   ""},
    {1043, FIFamily::Document,     "Document, signature PCF:dB or PCF+3",                                   "",                                    "",                                   ""},
    {1044, FIFamily::Document,     "Document, signature *R1",                                               "",                                    "",                                   ""},
    {1045, FIFamily::Document,     "Document, signature *R2",                                               "",                                    "",                                   ""},
    {1046, FIFamily::Document,     "Document, signature 81 CD AB",                                          "",                                    "",                                   ""},
    {1047, FIFamily::Document,     "Windows Write document",                                                "application/x-mswrite",               "x-fmt/4 x-fmt/12",                   "wri"},
    {1048, FIFamily::Document,     "Document, signature 01 FE 00",                                          "",                                    "",                                   ""},
    {1049, FIFamily::Document,     "Document, signature 01 FE 01",                                          "",                                    "",                                   ""},
    {1050, FIFamily::Document,     "WordStar for DOS document, version 6",                                  "",                                    "x-fmt/237",                          "ws"},
    {1051, FIFamily::Document,     "Document with version text 4.0 to 6.0, blocks marked by B3",            "",                                    "",                                   ""},
    {1053, FIFamily::Document,     "Document, signature 80 00 00 09 20 00 O{J] 18, not zero at 27",         "",                                    "",                                   ""},
    {1054, FIFamily::Document,     "Word for Windows document, header 9B A5 (version 1)",                   "application/msword",                  "fmt/37",                             "doc"},
    {1056, FIFamily::Document,     "Ami Pro document, other version",                                       "application/vnd.lotus-wordpro",       "x-fmt/191",                          "sam"},
    {1057, FIFamily::Document,     "Ami Pro document",                                                      "application/vnd.lotus-wordpro",       "x-fmt/191",                          "sam"},
    {1058, FIFamily::Document,     "PFS:First Choice document, tag GERBILDOC3",                             "",                                    "fmt/1283",                           "doc"},
    {1059, FIFamily::Document,     "WordPerfect for Macintosh document, version 2",                         wordPerfectType,                       "fmt/1220",                           ""},
    {1060, FIFamily::Document,     "Macintosh word processor document, type AWWP",                          "",                                    "",                                   ""},
    {1061, FIFamily::Document,     "Document in Ami Pro style with the extension PWP",                      "",                                    "",                                   "pwp"},
    {1062, FIFamily::Document,     "Document, signature # VE # 4.00",                                       "",                                    "",                                   ""},
    {1063, FIFamily::Document,     "Document with the trailer 30 02 FE FC FE 01 00",                        "",                                    "",                                   ""},
    {1064, FIFamily::Document,     "Document, signature # VV # 5.00",                                       "",                                    "",                                   ""},
    {1065, FIFamily::Document,     "Word for Windows document, header DB A5 (version 2)",                   "application/msword",                  "fmt/38",                             "doc"},
    {1066, FIFamily::Document,     "Document, signature FFFFIIII, version 0 to 2",                          "",                                    "",                                   ""},
    {1067, FIFamily::Document,     "WordStar for DOS document, version 7",                                  "",                                    "x-fmt/261",                          "ws"},
    {1068, FIFamily::Document,     "Document, signature 01 FE, byte 40 to 5F at 3",                         "",                                    "",                                   ""},
    {1069, FIFamily::Document,     "Document, signature FFFFIIII, version above 6",                         "",                                    "",                                   ""},
    {1073, FIFamily::Document,     "Word for Macintosh document, header FE 37 00 23 (version 5)",           "application/msword",                  "x-fmt/65",                           "mcw"},
    {1074, FIFamily::Document,     "Document, signature 81 CD AB, byte 40 to 46 at 5",                      "",                                    "",                                   ""},
    {1075, FIFamily::Document,     "WordPerfect document, format version 2.0 (6.0)",                        wordPerfectType,                       "x-fmt/44",                           "wpd wp wp6 w60 w61 w62"},
    {1076, FIFamily::Document,     "Word for DOS document, version byte 8 or 9",                            "application/msword",                  wordForDosPuids,                      "doc"},
    {1077, FIFamily::Document,     "Document with pipe codes N and O from 118",                             "",                                    "",                                   ""},
    {1078, FIFamily::Document,     "WordPerfect family file, encrypted",                                    "",                                    "",                                   ""},
    {1079, FIFamily::Document,     "Document, signature FFFFIIII, version 8",                               "",                                    "",                                   ""},
    {1080, FIFamily::Document,     "WordPerfect for Macintosh document, version 3",                         wordPerfectType,                       "fmt/1221 fmt/1222",                  ""},
    {1081, FIFamily::Document,     "Document that starts with four zeros, with 02 0A at 6 and 06 at 512",   "",                                    "",                                   ""},
    {1082, FIFamily::Document,     "Word document, version 6.0 or 95",                                      "application/msword",                  "fmt/39 fmt/609",                     "doc dot"},
    {1083, FIFamily::Document,     "WordPerfect family file, file type 3A",                                 "",                                    "",                                   ""},
    {1085, FIFamily::Document,     "Document, signature DOC, version 2 or 3",                               "",                                    "",                                   ""},
    {1086, FIFamily::Document,     "Document, signature 91 A6 22 00",                                       "",                                    "",                                   ""},
    {1087, FIFamily::Document,     "Word document, header 94 A6 2E 00",                                     "application/msword",                  "",                                   "doc"},
    {1088, FIFamily::Document,     "Document, signature 1A 4D 02 01",                                       "",                                    "",                                   ""},
    {1089, FIFamily::Document,     "Document, signature 00 4D 01 02",                                       "",                                    "",                                   ""},
    {1091, FIFamily::Document,     "Rich text (RTF), Japanese",                                             "application/rtf",                     "",                                   "rtf"},
    {1092, FIFamily::Document,     "Text document that starts with .** 1 or .** 2",                         "",                                    "",                                   ""},
    {1093, FIFamily::Document,     "Microsoft Works word processor document, class 00021302",               "application/vnd.ms-works",            "fmt/233",                            "wps"},
    {1094, FIFamily::Document,     "WordPad document in a compound storage",                                "",                                    "",                                   "doc"},
    {1095, FIFamily::Document,     "WordPerfect family file, other kind",                                   "",                                    "",                                   ""},
    {1097, FIFamily::Document,     "WordPerfect document, format version 2.1 (6.1 or later)",               wordPerfectType,                       "x-fmt/44",                           "wpd wp wp6 w60 w61 w62"},
    {1098, FIFamily::Document,     "Document that starts with the control sequence CSI 11h",                "",                                    "",                                   ""},
    {1101, FIFamily::Document,     "HTML text",                                                             "text/html",                           htmlPuids,                            "html htm"},
    {1102, FIFamily::Document,     "Word document, file-format number 101 to 105 (6.0 or 95)",              "application/msword",                  "fmt/39 fmt/609",                     "doc dot"},
    {1105, FIFamily::Document,     "Microsoft Works word processor document, class 28CDDBC2 or stream MN0", "application/vnd.ms-works",            "fmt/233",                            "wps"},
    {1106, FIFamily::Document,     "WordPerfect family file, product 25, file type 0A to 0E",               "",                                    "",                                   ""},
    {1107, FIFamily::Document,     "WordPerfect document, format version 2.2 to 2.4, or storage",           wordPerfectType,                       "fmt/892 x-fmt/44",                   "wpd wp w60 w61 w62 wp6"},
    {1108, FIFamily::Document,     "Lotus Word Pro document, format version up to 10",                      "application/vnd.lotus-wordpro",       "fmt/340 x-fmt/340",                  "lwp"},
    {1124, FIFamily::Document,     "Document, signature 48 42 D1 07",                                       "",                                    "",                                   ""},
    {1125, FIFamily::Document,     "Word 6 for Macintosh document, MacBinary type W6BN",                    "",                                    "",                                   ""},
    {1126, FIFamily::Document,     "Word document, version 97, or with a damaged summary",                  "application/msword",                  word97Puids,                          "doc dot"},
    {1128, FIFamily::Document,     "Interleaf text document, version line closed at once",                  "",                                    "x-fmt/329",                          ""},
    {1129, FIFamily::Document,     "FrameMaker interchange text (MIF), version 3",                          "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1130, FIFamily::Document,     "FrameMaker interchange text (MIF), version 4",                          "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1131, FIFamily::Document,     "FrameMaker interchange text (MIF), version 5",                          "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1132, FIFamily::Mail,         "Mail or memo text with address lines",                                  "",                                    "",                                   ""},
    {1134, FIFamily::Document,     "Interleaf text document, version line with more text",                  "",                                    "x-fmt/329",                          ""},
    {1135, FIFamily::Document,     "FrameMaker interchange text (MIF), Japanese, version 3",                "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1136, FIFamily::Document,     "FrameMaker interchange text (MIF), Japanese, version 4",                "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1137, FIFamily::Document,     "FrameMaker interchange text (MIF), Japanese, version 5",                "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1138, FIFamily::Document,     "FrameMaker interchange text (MIF), version 5.5",                        "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1139, FIFamily::Document,     "WordPerfect document in a compound storage, class 519873FF",            wordPerfectType,                       "fmt/892",                            "wpd wp w60 wp6"},
    {1140, FIFamily::Document,     "Document in a compound storage, class 78597001",                        "",                                    "",                                   ""},
    {1141, FIFamily::Mail,         "vCard",                                                                 "text/vcard",                          "fmt/395 fmt/1879 fmt/1880 fmt/1881", "vcf vcard"},
    {1143, FIFamily::Mail,         "Outlook item (MSG)",                                                    "application/vnd.ms-outlook",          "x-fmt/430",                          "msg"},
    {1144, FIFamily::Document,     "Pocket Word document, form pwd",                                        "application/x-pocket-word",           "x-fmt/94 x-fmt/96",                  "pwd pwt"},
    {1145, FIFamily::Document,     "Lotus Word Pro document, format version above 10",                      "application/vnd.lotus-wordpro",       "fmt/340 x-fmt/340",                  "lwp"},
    {1146, FIFamily::Document,     "Word document, version 2000 or not determined",                         "application/msword",                  word97Puids,                          "doc dot"},
    {1147, FIFamily::Document,     "HTML text exported by Word",                                            "text/html",                           "fmt/96",                             "htm html"},
    {1148, FIFamily::Document,     "HTML text exported by Excel",                                           "text/html",                           "fmt/96",                             "htm html"},
    {1149, FIFamily::Document,     "HTML text exported by PowerPoint",                                      "text/html",                           "fmt/96",                             "htm html"},
    {1150, FIFamily::Text,         "XML text",                                                              "application/xml",                     xmlPuids,                             "xml"},
    {1151, FIFamily::Document,     "WML text",                                                              "text/vnd.wap.wml",                    "fmt/1796",                           "wml"},
    {1165, FIFamily::Document,     "StarOffice Writer document, version 5",                                 "application/vnd.stardivision.writer", "x-fmt/400",                          "sdw vor"},
    {1166, FIFamily::Document,     "FrameMaker interchange text (MIF), version 6",                          "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1167, FIFamily::Document,     "FrameMaker interchange text (MIF), Japanese, version 6",                "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1168, FIFamily::Document,     "FrameMaker interchange text (MIF), other version",                      "application/vnd.mif",                 "x-fmt/162",                          "mif"},
    {1177, FIFamily::Document,     "Pocket Word document, form pwi",                                        "application/x-pocket-word",           "x-fmt/94 x-fmt/95",                  "psw pwi"},
    {1179, FIFamily::Document,     "Hangul word processor document (HWP), plain file",                      "application/x-hwp",                   "fmt/1083",                           "hwp"},
    {1180, FIFamily::Document,     "Hangul word processor document (HWP), compound storage",                "application/x-hwp",                   "fmt/1084",                           "hwp"},
    {1181, FIFamily::Document,     "HTML text in 16-bit characters",                                        "text/html",                           "",                                   "html htm"},
    {1182, FIFamily::Document,     "XML text with the document type html",                                  "",                                    "",                                   ""},
    {1184, FIFamily::Text,         "EBCDIC text",                                                           "",                                    "",                                   ""},
    {1185, FIFamily::Document,     "Word document, version 2002",                                           "application/msword",                  word97Puids,                          "doc dot"},
    {1186, FIFamily::Document,     "Word document, version 2003 or later",                                  "application/msword",                  word97Puids,                          "doc dot"},
    {1187, FIFamily::Mail,         "MIME message without address lines",                                    "message/rfc822",                      "fmt/950",                            "eml"},
    {1188, FIFamily::Document,     "OpenOffice.org 1 text document (SXW)",                                  "application/vnd.sun.xml.writer",      "fmt/128",                            "sxw stw"},
    {1189, FIFamily::Mail,         "Outlook personal or offline folders, ANSI (PST, OST)",                  "application/vnd.ms-outlook",          "x-fmt/248",                          "pst ost"},
    {1191, FIFamily::Document,     "Microsoft Works word processor document, class 0EA45AB2",               "application/vnd.ms-works",            "",                                   "wps"},
    {1192, FIFamily::Mail,         "MIME mail message",                                                     "message/rfc822",                      "fmt/278 fmt/950",                    "eml"},
    {1193, FIFamily::Mail,         "News article",                                                          "message/rfc822",                      "",                                   ""},
    {1194, FIFamily::Mail,         "News article with the extension NWS",                                   "message/rfc822",                      "",                                   "nws"},
    {1195, FIFamily::Mail,         "MIME mail message with the extension EML",                              "message/rfc822",                      "fmt/278 fmt/950",                    "eml"},
    {1196, FIFamily::Mail,         "vCalendar or iCalendar",                                                "",                                    "fmt/387 fmt/388",                    "ics vcs"},
    {1197, FIFamily::Mail,         "TNEF mail attachment container",                                        "application/vnd.ms-tnef",             "",                                   "dat tnef"},
    {1198, FIFamily::Mail,         "HTML mail or web archive (MHT)",                                        "message/rfc822",                      "x-fmt/429",                          "mht mhtml"},
    // databases
    {1200, FIFamily::Database,     "Database, signature 53 04 03 31 E0 03",                         "",                           "",                                    ""},
    {1201, FIFamily::Database,     "dBASE table, version byte 03 or 83 (dBASE III)",                "application/vnd.dbf",        "x-fmt/9 x-fmt/271",                   "dbf"},
    {1202, FIFamily::Database,     "dBASE table, version byte 8B, 8E, 63 or F5 (dBASE IV, FoxPro)", "application/vnd.dbf",        "x-fmt/10",                            "dbf"},
    {1203, FIFamily::Database,     "Database with ED FB at 6",                                      "",                           "",                                    ""},
    {1204, FIFamily::Database,     "Microsoft Works database, header 20 54, zeros at 10",           "application/vnd.ms-works",   "",                                    "wdb"},
    {1205, FIFamily::Database,     "Database, signature 17 00, with bytes 01 or 02 at 31",          "",                           "",                                    ""},
    {1206, FIFamily::Database,     "Paradox table, early header of another size",                   "",                           "fmt/350 fmt/351",                     "db"},
    {1207, FIFamily::Database,     "Paradox table, early header of 2048 bytes",                     "",                           "fmt/350 fmt/351",                     "db"},
    {1208, FIFamily::Database,     "Database with the text SYMANTEC TOUCHBA",                       "",                           "",                                    ""},
    {1209, FIFamily::Database,     "Reflex 2 database",                                             "",                           "",                                    ""},
    {1210, FIFamily::Database,     "RBF database of linked records",                                "",                           "",                                    "rbf"},
    {1212, FIFamily::Database,     "Database, signature 37 FF, with a repeated name",               "",                           "",                                    ""},
    {1213, FIFamily::Database,     "RBF database in slots of 12 bytes",                             "",                           "",                                    "rbf"},
    {1214, FIFamily::Database,     "PFS:First Choice database, tag GERBILDB",                       "",                           "fmt/1284",                            "fol"},
    {1215, FIFamily::Database,     "Macintosh database, type AWDB",                                 "",                           "",                                    ""},
    {1216, FIFamily::Database,     "Microsoft Works database, header 20 54, letter D to G at 11",   "application/vnd.ms-works",   "",                                    "wdb"},
    {1217, FIFamily::Database,     "Paradox table, later header",                                   "",                           "fmt/351 fmt/352 x-fmt/147",           "db"},
    {1218, FIFamily::Database,     "Database with the text Rich at 1030",                           "",                           "",                                    ""},
    {1219, FIFamily::Database,     "Database with 00 00 02 00 00 80 at 8",                          "",                           "",                                    ""},
    {1220, FIFamily::Database,     "Microsoft Works database, class 00021303",                      "application/vnd.ms-works",   "",                                    "wdb"},
    {1221, FIFamily::Database,     "Microsoft Works database, class 28CDDBC3",                      "application/vnd.ms-works",   "",                                    "wdb"},
    {1222, FIFamily::Database,     "Access database (Jet)",                                         "application/vnd.ms-access",  accessPuids,                           "mdb mda mde mdw mdt"},
    {1223, FIFamily::Database,     "Database in a compound storage, class 72FD3320",                "",                           "",                                    ""},
    {1224, FIFamily::Database,     "Microsoft Project plan",                                        "application/vnd.ms-project", "fmt/440 fmt/725 x-fmt/245 x-fmt/247", "mpp mpt"},
    // further documents and data
    {1301, FIFamily::Text,         "Veloxine XML document, namespace pst_fields",             "application/xml",                         xmlPuids,                                    "xml"},
    {1302, FIFamily::Mail,         "Outlook personal or offline folders, Unicode (PST, OST)", "application/vnd.ms-outlook",              "x-fmt/249",                                 "pst ost"},
    {1303, FIFamily::Mail,         "Outlook personal address book (PAB)",                     "",                                        "x-fmt/75",                                  "pab"},
    {1306, FIFamily::Unknown,      "Data file with the extension DAT, byte 3F to 4F at 3",    "",                                        "",                                          "dat"},
    {1309, FIFamily::Document,     "OpenDocument text (ODT)",                                 "application/vnd.oasis.opendocument.text", "fmt/136 fmt/290 fmt/291 fmt/1756 fmt/2044", "odt ott"},
    {1311, FIFamily::Mail,         "Outlook item template (OFT)",                             "application/vnd.ms-outlook",              "x-fmt/430",                                 "oft"},
    {1312, FIFamily::Document,     "Office Open XML text document (DOCX)",                    docxType,                                  "fmt/189 fmt/412",                           "docx docm dotx dotm"},
    {1313, FIFamily::Document,     "Encrypted Office Open XML text document",                 "",                                        "fmt/494",                                   "docx docm dotx dotm"},
    // spreadsheets
    {1400, FIFamily::Spreadsheet,  "Lotus Symphony worksheet, version word 0405",                        "",                                  "",                                          "wrk"},
    {1401, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (WKS)",                                        "application/vnd.lotus-1-2-3",       "x-fmt/117 fmt/166",                         "wks"},
    {1402, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (WK1)",                                        "application/vnd.lotus-1-2-3",       "x-fmt/114",                                 "wk1 wk2"},
    {1403, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (WK3)",                                        "application/vnd.lotus-1-2-3",       "x-fmt/115",                                 "wk3"},
    {1404, FIFamily::Spreadsheet,  "Spreadsheet, signature 53 04 01 01 14",                              "",                                  "",                                          ""},
    {1405, FIFamily::Spreadsheet,  "Excel 2 worksheet",                                                  "application/vnd.ms-excel",          "fmt/55",                                    "xls"},
    {1406, FIFamily::Spreadsheet,  "Spreadsheet, signature 02 CD AB",                                    "",                                  "",                                          ""},
    {1407, FIFamily::Spreadsheet,  "Microsoft Works spreadsheet, header 00 00, zeros at 10",             "application/vnd.ms-works",          "",                                          "wks"},
    {1408, FIFamily::Spreadsheet,  "1-2-3 style worksheet, version word 0404, with record F3",           "",                                  "",                                          ""},
    {1409, FIFamily::Spreadsheet,  "1-2-3 style worksheet, version word 2207 to 2209",                   "",                                  "",                                          ""},
    {1410, FIFamily::Spreadsheet,  "SuperCalc spreadsheet, text SuperCalc90b",                           "",                                  "",                                          "cal"},
    {1411, FIFamily::Spreadsheet,  "Quattro Pro for DOS spreadsheet (WQ1)",                              "application/x-quattropro",          "x-fmt/121",                                 "wq1 wkq"},
    {1412, FIFamily::Spreadsheet,  "1-2-3 style worksheet, version word 0A0B",                           "",                                  "",                                          ""},
    {1413, FIFamily::Spreadsheet,  "Spreadsheet with the text Dolph 1.0",                                "",                                  "",                                          ""},
    {1414, FIFamily::Spreadsheet,  "Spreadsheet with the tag JED at 8",                                  "",                                  "",                                          ""},
    {1415, FIFamily::Spreadsheet,  "Excel 3 worksheet",                                                  "application/vnd.ms-excel",          "fmt/56",                                    "xls"},
    {1416, FIFamily::Spreadsheet,  "1-2-3 style worksheet, told by its records",                         "",                                  "",                                          ""},
    {1417, FIFamily::Spreadsheet,  "Macintosh spreadsheet, type AWSS",                                   "",                                  "",                                          ""},
    {1418, FIFamily::Spreadsheet,  "Microsoft Works spreadsheet, header 00 00, letter D to G at 11",     "application/vnd.ms-works",          "",                                          "wks"},
    {1419, FIFamily::Spreadsheet,  "Excel 4 worksheet",                                                  "application/vnd.ms-excel",          "fmt/57",                                    "xls"},
    {1420, FIFamily::Spreadsheet,  "Quattro Pro for Windows spreadsheet (WB1)",                          "application/x-quattropro",          "fmt/834",                                   "wb1"},
    {1421, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (WK4)",                                        "application/vnd.lotus-1-2-3",       "x-fmt/116",                                 "wk4"},
    {1422, FIFamily::Spreadsheet,  "1-2-3 style worksheet, version word 1101",                           "",                                  "",                                          ""},
    {1423, FIFamily::Spreadsheet,  "Spreadsheet, signature 01 C2, with FF FF at 1312",                   "",                                  "",                                          ""},
    {1424, FIFamily::Spreadsheet,  "Excel workbook, version 5.0 or 95",                                  "application/vnd.ms-excel",          "fmt/59 fmt/1858",                           "xls xlt"},
    {1425, FIFamily::Spreadsheet,  "Spreadsheet, signature 0C EF 4D 50",                                 "",                                  "",                                          ""},
    {1426, FIFamily::Spreadsheet,  "Microsoft Works spreadsheet, header FF 00, letter M or N at 11",     "application/vnd.ms-works",          "fmt/166",                                   "wks"},
    {1428, FIFamily::Spreadsheet,  "Quattro Pro for DOS spreadsheet (WQ2)",                              "application/x-quattropro",          "x-fmt/122",                                 "wq2 wkq"},
    {1429, FIFamily::Spreadsheet,  "Quattro Pro for Windows spreadsheet (WB2)",                          "application/x-quattropro",          "fmt/835",                                   "wb2"},
    {1430, FIFamily::Spreadsheet,  "Lotus 1-2-3/G worksheet (DEBR, tag 123G)",                           "",                                  "",                                          ""},
    {1431, FIFamily::Spreadsheet,  "DEBR container with the tag GRPH",                                   "",                                  "",                                          ""},
    {1432, FIFamily::Spreadsheet,  "Microsoft Works spreadsheet, header FF 00, letter S at 11",          "application/vnd.ms-works",          "fmt/166",                                   "wks"},
    {1433, FIFamily::Spreadsheet,  "Quattro Pro notebook in a compound storage (WB3)",                   "application/x-quattropro",          "fmt/836",                                   "wb3"},
    {1434, FIFamily::Spreadsheet,  "Spreadsheet in a compound storage, class 0002B401",                  "",                                  "",                                          ""},
    {1435, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (123), version word 1003",                     "application/vnd.lotus-1-2-3",       "fmt/1452",                                  "123"},
    {1436, FIFamily::Spreadsheet,  "Excel 4 worksheet for Macintosh, MacBinary type XLS4",               "",                                  "",                                          ""},
    {1437, FIFamily::Spreadsheet,  "Excel 5 workbook for Macintosh, MacBinary type XLS5",                "",                                  "",                                          ""},
    {1438, FIFamily::Spreadsheet,  "Excel workbook, version 97, or without a readable build",            "application/vnd.ms-excel",          excel97Puids,                                "xls xlt"},
    {1439, FIFamily::Spreadsheet,  "Excel 3 workspace, record type 0100",                                "application/vnd.ms-excel",          "",                                          "xlw"},
    {1440, FIFamily::Spreadsheet,  "Excel 4 workbook, record type 0100",                                 "application/vnd.ms-excel",          "fmt/58",                                    "xlw"},
    {1441, FIFamily::Spreadsheet,  "Excel 4 workbook for Macintosh, MacBinary type BINA",                "",                                  "",                                          ""},
    {1442, FIFamily::Spreadsheet,  "Excel 4 workbook, record type 0100, further version byte",           "application/vnd.ms-excel",          "fmt/58",                                    "xlw"},
    {1443, FIFamily::Spreadsheet,  "Lotus 1-2-3 worksheet (123), version word 1005",                     "application/vnd.lotus-1-2-3",       "fmt/1453",                                  "123"},
    {1444, FIFamily::Spreadsheet,  "Quattro Pro notebook (stream PerfectOffice_MAIN)",                   "application/x-quattropro",          "fmt/836",                                   "wb3"},
    {1445, FIFamily::Spreadsheet,  "Quattro Pro notebook (stream NativeContent_MAIN)",                   "application/x-quattropro",          "fmt/837",                                   "qpw"},
    {1446, FIFamily::Spreadsheet,  "Excel workbook, version 97 to 2003, other build",                    "application/vnd.ms-excel",          "fmt/61 x-fmt/17 fmt/901",                   "xls xlt"},
    {1447, FIFamily::Spreadsheet,  "Spreadsheet in a compound storage, class AC515490",                  "",                                  "",                                          ""},
    {1448, FIFamily::Spreadsheet,  "Excel workbook, version 97 to 2003, build 6111, 6214, 7106 or 8124", "application/vnd.ms-excel",          excel97Puids,                                "xls xlt"},
    {1449, FIFamily::Spreadsheet,  "StarOffice Calc spreadsheet, version 5",                             "application/vnd.stardivision.calc", "x-fmt/359",                                 "sdc vor"},
    {1450, FIFamily::Spreadsheet,  "Quattro Pro notebook, class 69E7CEAB or EB626F5C",                   "application/x-quattropro",          "fmt/836 fmt/837",                           "qpw wb3"},
    {1451, FIFamily::Spreadsheet,  "Excel workbook, version 97 to 2003, build 5110 or 5612",             "application/vnd.ms-excel",          excel97Puids,                                "xls xlt"},
    {1452, FIFamily::Spreadsheet,  "OpenOffice.org 1 spreadsheet (SXC)",                                 "application/vnd.sun.xml.calc",      "fmt/129",                                   "sxc stc"},
    {1453, FIFamily::Spreadsheet,  "Spreadsheet in a compound storage, class 9D582C41",                  "",                                  "",                                          ""},
    {1454, FIFamily::Spreadsheet,  "OpenDocument spreadsheet (ODS)",                                     odsType,                             "fmt/137 fmt/294 fmt/295 fmt/1755 fmt/2045", "ods ots"},
    {1455, FIFamily::Spreadsheet,  "Office Open XML workbook (XLSX)",                                    xlsxType,                            "fmt/189 fmt/214",                           "xlsx xlsm xltx xltm xlam"},
    {1456, FIFamily::Spreadsheet,  "Encrypted Office Open XML workbook",                                 "",                                  "fmt/494",                                   "xlsx xlsm xltx xltm"},
    {1457, FIFamily::Spreadsheet,  "Excel binary workbook (XLSB)",                                       xlsbType,                            "fmt/595",                                   "xlsb"},
    // graphics, drawing and presentation
    {1500, FIFamily::Image,        "Windows bitmap, version 3 (40-byte header)",                     "image/bmp",                            "fmt/116 fmt/117 x-fmt/270",                 "bmp dib"},
    {1501, FIFamily::Image,        "TIFF image",                                                     "image/tiff",                           tiffPuids,                                   "tif tiff cog tfx"},
    {1502, FIFamily::Image,        "PCX image",                                                      "image/vnd.zbrush.pcx",                 "fmt/86 fmt/87 fmt/88 fmt/89 fmt/90",        "pcx pcc"},
    {1503, FIFamily::Image,        "GIF image",                                                      "image/gif",                            "fmt/3 fmt/4",                               "gif"},
    {1504, FIFamily::Drawing,      "Encapsulated PostScript with a TIFF preview",                    "application/postscript",               "fmt/122 fmt/123 fmt/124 fmt/1884",          "eps epsf"},
    {1505, FIFamily::Image,        "Fax data without a header (Group 3, one-dimensional)",           "",                                     "",                                          ""},
    {1506, FIFamily::Drawing,      "PICT picture, version 2",                                        "image/x-pict",                         "fmt/341",                                   "pct pic pict"},
    {1507, FIFamily::Drawing,      "WordPerfect graphics (WPG), version 1",                          "application/x-wpg",                    "x-fmt/395",                                 "wpg"},
    {1508, FIFamily::Drawing,      "Windows metafile with a placeable header",                       "image/wmf",                            "x-fmt/119",                                 "wmf"},
    {1509, FIFamily::Spreadsheet,  "Lotus 1-2-3 graph (PIC)",                                        "",                                     "x-fmt/82",                                  "pic"},
    {1510, FIFamily::Drawing,      "PICT picture, version 1",                                        "image/x-pict",                         "x-fmt/80",                                  "pct pict"},
    {1511, FIFamily::Image,        "Graphics file, signature SM",                                    "",                                     "",                                          ""},
    {1512, FIFamily::Image,        "Targa image, by its extension",                                  "image/x-tga",                          "fmt/402 x-fmt/367",                         "tga afi bpx icb vda vst"},
    {1513, FIFamily::Image,        "GEM image (IMG)",                                                "",                                     "x-fmt/159",                                 "img"},
    {1514, FIFamily::Image,        "OS/2 or Windows bitmap (12-byte header)",                        "image/bmp",                            "fmt/115 x-fmt/25",                          "bmp dib"},
    {1515, FIFamily::Image,        "Windows icon",                                                   "image/vnd.microsoft.icon",             "x-fmt/418",                                 "ico"},
    {1516, FIFamily::Image,        "Windows cursor",                                                 "image/x-win-bitmap",                   "fmt/385",                                   "cur"},
    {1517, FIFamily::Drawing,      "Micrografx drawing, signature 01 FF",                            "",                                     "x-fmt/47 x-fmt/294 x-fmt/295 fmt/1481",     "drw"},
    {1518, FIFamily::Image,        "MacPaint image",                                                 "image/x-macpaint",                     "fmt/1429 x-fmt/161",                        "mac pnt pntg"},
    {1520, FIFamily::Drawing,      "CorelDRAW drawing, version 1 or 2",                              corelDrawType,                          "fmt/466 fmt/467",                           "cdr"},
    {1521, FIFamily::Drawing,      "CorelDRAW drawing, version 3",                                   corelDrawType,                          "x-fmt/379",                                 "cdr"},
    {1522, FIFamily::Drawing,      "HP-GL plotter file, by its extension",                           "application/vnd.hp-HPGL",              "fmt/1174 x-fmt/293",                        "hgl hpg hpgl pgl"},
    {1523, FIFamily::Image,        "Graphics file, signature HGB3",                                  "",                                     "",                                          ""},
    {1524, FIFamily::Image,        "Graphics file, signature Falc",                                  "",                                     "",                                          ""},
    {1525, FIFamily::Image,        "Graphics file, signature HGB1",                                  "",                                     "",                                          ""},
    {1526, FIFamily::Drawing,      "DEBR container with another tag",                                "",                                     "",                                          ""},
    {1527, FIFamily::Drawing,      "WordPerfect graphics (WPG), version 2",                          "application/x-wpg",                    "fmt/1042",                                  "wpg"},
    {1528, FIFamily::Drawing,      "Computer Graphics Metafile, binary (CGM)",                       "image/cgm",                            "fmt/303 fmt/304 fmt/305 fmt/306",           "cgm"},
    {1529, FIFamily::Spreadsheet,  "Excel 2 chart",                                                  "application/vnd.ms-excel",             "fmt/553",                                   "xlc"},
    {1530, FIFamily::Spreadsheet,  "Excel 3 chart",                                                  "application/vnd.ms-excel",             "fmt/554",                                   "xlc"},
    {1531, FIFamily::Spreadsheet,  "Excel 4 chart",                                                  "application/vnd.ms-excel",             "x-fmt/126",                                 "xlc"},
    {1532, FIFamily::Drawing,      "C4CAD drawing",                                                  "",                                     "",                                          ""},
    {1533, FIFamily::Image,        "Graphics file, signature 09 06 00 44",                           "",                                     "",                                          ""},
    {1534, FIFamily::Image,        "Graphics file, signature DOC, with the extension JSH",           "",                                     "",                                          "jsh"},
    {1535, FIFamily::Image,        "JPEG image",                                                     "image/jpeg",                           jpegPuids,                                   "jpg jpeg jpe jfif jfi jif spf"},
    {1536, FIFamily::Spreadsheet,  "Excel chart, version 5.0 or 95, in a compound storage",          "application/vnd.ms-excel",             "",                                          "xlc"},
    {1537, FIFamily::Drawing,      "CorelDRAW drawing, version 4",                                   corelDrawType,                          "fmt/465",                                   "cdr"},
    {1538, FIFamily::Presentation, "PowerPoint 4 presentation (stream PP40)",                        "application/vnd.ms-powerpoint",        "fmt/179 x-fmt/88",                          "ppt"},
    {1539, FIFamily::Image,        "DCX multi-page image",                                           "image/x-dcx",                          "x-fmt/348",                                 "dcx"},
    {1540, FIFamily::Presentation, "PowerPoint presentation, little-endian header, version 3",       "application/vnd.ms-powerpoint",        "fmt/1748",                                  "ppt"},
    {1541, FIFamily::Drawing,      "CorelDRAW drawing, version 5",                                   corelDrawType,                          "fmt/464",                                   "cdr"},
    {1542, FIFamily::Drawing,      "OS/2 metafile (MET)",                                            "",                                     "x-fmt/67",                                  "met"},
    {1543, FIFamily::Presentation, "PowerPoint 95 presentation",                                     "application/vnd.ms-powerpoint",        "fmt/125",                                   "ppt"},
    {1544, FIFamily::Drawing,      "AutoCAD DXF text",                                               "image/vnd.dxf",                        dxfTextPuids,                                "dxf"},
    {1545, FIFamily::Drawing,      "AutoCAD DXF, binary",                                            "image/vnd.dxf",                        dxfBinaryPuids,                              "dxf"},
    {1546, FIFamily::Drawing,      "AutoCAD DXB",                                                    "",                                     "fmt/54",                                    "dxb"},
    {1547, FIFamily::Presentation, "Freelance presentation, text FREELANCE at 4",                    "application/vnd.lotus-freelance",      "fmt/1216",                                  "pre"},
    {1548, FIFamily::Presentation, "PowerPoint presentation, big-endian header, version 3",          "application/vnd.ms-powerpoint",        "fmt/1867",                                  "ppt"},
    {1549, FIFamily::Presentation, "PowerPoint 4 presentation, class 00044851",                      "application/vnd.ms-powerpoint",        "fmt/179 x-fmt/88",                          "ppt"},
    {1550, FIFamily::Presentation, "WordPerfect family file, product 0F, file type 0F or 10",        "",                                     "",                                          ""},
    {1551, FIFamily::Image,        "Bitmap at offset 102 (12-byte header)",                          "",                                     "",                                          ""},
    {1552, FIFamily::Drawing,      "AutoCAD drawing, AC1009 (release 11 or 12)",                     "image/vnd.dwg",                        "fmt/32",                                    "dwg"},
    {1553, FIFamily::Drawing,      "AutoCAD drawing, AC1012 (release 13)",                           "image/vnd.dwg",                        "fmt/33",                                    "dwg"},
    {1554, FIFamily::Document,     "PostScript with the Adobe comment",                              "application/postscript",               postScriptPuids,                             "ps eps"},
    {1555, FIFamily::Presentation, "Presentations slide show or other WordPerfect family storage",   "",                                     "fmt/877",                                   "shw"},
    {1556, FIFamily::Drawing,      "WordPerfect family graphics in a compound storage",              "",                                     "",                                          ""},
    {1557, FIFamily::Document,     "PDF document",                                                   "application/pdf",                      pdfPuids,                                    "pdf"},
    {1558, FIFamily::Drawing,      "Vector graphics with the text MakerVector",                      "",                                     "",                                          ""},
    {1559, FIFamily::Image,        "Sun raster image",                                               "image/x-sun-raster",                   "x-fmt/184",                                 "ras sun"},
    {1560, FIFamily::Image,        "AutoShade rendering slide",                                      "",                                     "fmt/1044",                                  "rnd"},
    {1561, FIFamily::Image,        "Kodak Photo CD image",                                           "",                                     "fmt/211",                                   ""},
    {1562, FIFamily::Presentation, "PowerPoint presentation, little-endian header, version 4",       "application/vnd.ms-powerpoint",        "",                                          "ppt"},
    {1563, FIFamily::Presentation, "PowerPoint presentation, big-endian header, version 4",          "application/vnd.ms-powerpoint",        "",                                          "ppt"},
    {1564, FIFamily::Drawing,      "Windows enhanced metafile (EMF)",                                "image/emf",                            "fmt/344 fmt/345 x-fmt/153",                 "emf"},
    {1565, FIFamily::Drawing,      "GEM metafile",                                                   "",                                     "x-fmt/215 fmt/542 fmt/543",                 "gem"},
    {1566, FIFamily::Presentation, "PowerPoint presentation for Macintosh, MacBinary type SLD3",     "",                                     "",                                          ""},
    {1567, FIFamily::Presentation, "PowerPoint file for Macintosh, MacBinary type SLD3, other data", "",                                     "",                                          ""},
    {1568, FIFamily::Image,        "Graphics file, signature DC FE D2 01 or DC FE 18 02",            "",                                     "",                                          ""},
    {1569, FIFamily::Drawing,      "IGES drawing",                                                   "model/iges",                           "x-fmt/158",                                 "igs iges"},
    {1570, FIFamily::Drawing,      "Graphics in marked records, group codes 7E and 7F",              "",                                     "",                                          ""},
    {1571, FIFamily::Image,        "X bitmap (XBM)",                                                 "image/x-xbitmap",                      "x-fmt/207 x-fmt/299",                       "xbm"},
    {1572, FIFamily::Image,        "X pixmap (XPM)",                                                 "image/x-xpixmap",                      "x-fmt/208",                                 "xpm"},
    {1573, FIFamily::Image,        "CALS raster image",                                              "",                                     "x-fmt/28",                                  "cal cals"},
    {1574, FIFamily::Image,        "PNG image",                                                      "image/png",                            "fmt/11 fmt/12 fmt/13 fmt/935",              "png"},
    {1575, FIFamily::Image,        "X window dump (XWD)",                                            "image/x-xwindowdump",                  "fmt/401",                                   "xwd xdm"},
    {1576, FIFamily::Drawing,      "Corel metafile exchange image (CMX)",                            "image/x-cmx",                          "x-fmt/34 x-fmt/35",                         "cmx"},
    {1577, FIFamily::Image,        "Graphics file that starts with the sequence ESC *t1gW",          "",                                     "",                                          ""},
    {1578, FIFamily::Image,        "Graphics file, 01 12 and 04 at 3, or 01 0A and 02 at 3",         "",                                     "",                                          ""},
    {1579, FIFamily::Drawing,      "Designer drawing in a compound storage",                         "",                                     "",                                          ""},
    {1580, FIFamily::Document,     "PostScript",                                                     "application/postscript",               postScriptOrIllustratorPuids,                "ps eps"},
    {1581, FIFamily::Presentation, "PowerPoint presentation, version 97 to 2003",                    "application/vnd.ms-powerpoint",        powerPoint97Puids,                           "ppt pps pot"},
    {1582, FIFamily::Drawing,      "CorelDRAW drawing, version 6",                                   corelDrawType,                          "x-fmt/29",                                  "cdr"},
    {1583, FIFamily::Drawing,      "CorelDRAW drawing, version 7",                                   corelDrawType,                          "x-fmt/291",                                 "cdr"},
    {1585, FIFamily::Drawing,      "AutoCAD drawing, other AC10 version",                            "image/vnd.dwg",                        "",                                          "dwg"},
    {1586, FIFamily::Drawing,      "Visio drawing, version 4",                                       "application/vnd.visio",                "fmt/1510",                                  "vsd vss vst vsw"},
    {1587, FIFamily::Drawing,      "AutoCAD drawing, AC1013 or AC1014 (release 13 or 14)",           "image/vnd.dwg",                        "fmt/33 fmt/34",                             "dwg"},
    {1588, FIFamily::Image,        "Portable bitmap (PBM)",                                          "image/x-portable-bitmap",              "fmt/409 x-fmt/164",                         "pbm pbmb pnm"},
    {1589, FIFamily::Image,        "Portable graymap (PGM)",                                         "image/x-portable-graymap",             "fmt/406 fmt/407",                           "pgm pgma pgmb"},
    {1590, FIFamily::Image,        "Portable pixmap (PPM)",                                          "image/x-portable-pixmap",              "fmt/408 x-fmt/178",                         "ppm ppmb"},
    {1591, FIFamily::Image,        "Adobe Photoshop image",                                          "image/vnd.adobe.photoshop",            "fmt/996 x-fmt/92",                          "psd psb pdd"},
    {1592, FIFamily::Presentation, "PowerPoint 95 and 97 presentation (dual storage)",               "application/vnd.ms-powerpoint",        "fmt/125 fmt/126",                           "ppt"},
    {1593, FIFamily::Image,        "Paint Shop Pro image",                                           "",                                     paintShopProPuids,                           "psp pspimage"},
    {1594, FIFamily::Image,        "FlashPix image",                                                 "image/vnd.fpx",                        "x-fmt/56",                                  "fpx"},
    {1595, FIFamily::Drawing,      "Visio drawing, version 5",                                       "application/vnd.visio",                "x-fmt/113",                                 "vsd vss vst"},
    {1596, FIFamily::Drawing,      "CorelDRAW drawing, version 8",                                   corelDrawType,                          "fmt/1924 x-fmt/292",                        "cdr"},
    {1597, FIFamily::Drawing,      "Visio drawing, version 2000 or 2002",                            "application/vnd.visio",                "x-fmt/258",                                 "vsd vss vst"},
    {1598, FIFamily::Drawing,      "CorelDRAW drawing, version 9",                                   corelDrawType,                          "x-fmt/374",                                 "cdr"},
    {1599, FIFamily::Image,        "JPEG image, progressive",                                        "image/jpeg",                           jpegPuids,                                   "jpg jpeg jpe jfif jfi jif spf"},
    {1600, FIFamily::Presentation, "PowerPoint presentation, version 97 to 2003, without a class",   "application/vnd.ms-powerpoint",        powerPoint97Puids,                           "ppt pps pot"},
    {1601, FIFamily::Drawing,      "Graphics in records of the classes 8, 9 and 10",                 "",                                     "",                                          ""},
    {1602, FIFamily::Image,        "Windows bitmap, version 5 (124-byte header)",                    "image/bmp",                            "fmt/119",                                   "bmp dib"},
    {1603, FIFamily::Image,        "Wireless bitmap (WBMP)",                                         "image/vnd.wap.wbmp",                   "fmt/497",                                   "wbmp"},
    {1604, FIFamily::Drawing,      "Graphics text that opens with a Frame tag",                      "",                                     "",                                          ""},
    {1605, FIFamily::Presentation, "PowerPoint presentation, little-endian header, version 2",       "application/vnd.ms-powerpoint",        "fmt/1747",                                  "ppt"},
    {1606, FIFamily::Drawing,      "Graphics in a compound storage, class A25250C4",                 "",                                     "",                                          ""},
    {1607, FIFamily::Drawing,      "Visio drawing, version 3 or earlier",                            "application/vnd.visio",                "fmt/1508 fmt/1509",                         "vsd vss vst"},
    {1608, FIFamily::Drawing,      "Designer drawing in a compound storage, other version",          "",                                     "",                                          ""},
    {1610, FIFamily::Presentation, "StarOffice Impress presentation, version 5",                     "application/vnd.stardivision.impress", "x-fmt/360",                                 "sdd vor"},
    {1611, FIFamily::Drawing,      "Adobe Illustrator file in PDF form",                             "",                                     illustratorPuids,                            "ai"},
    {1612, FIFamily::Drawing,      "AutoCAD drawing, AC1015 (2000)",                                 "image/vnd.dwg",                        "fmt/35",                                    "dwg"},
    {1613, FIFamily::Drawing,      "AutoCAD drawing, AC1002 (version 2.5)",                          "image/vnd.dwg",                        "fmt/28",                                    "dwg"},
    {1614, FIFamily::Drawing,      "AutoCAD drawing, AC1003 (version 2.6)",                          "image/vnd.dwg",                        "fmt/29",                                    "dwg"},
    {1615, FIFamily::Drawing,      "AutoCAD drawing, AC1004 (release 9)",                            "image/vnd.dwg",                        "fmt/30",                                    "dwg"},
    {1616, FIFamily::Drawing,      "AutoCAD drawing, AC1006 (release 10)",                           "image/vnd.dwg",                        "fmt/31",                                    "dwg"},
    {1617, FIFamily::Document,     "QuarkXPress document, version 3.0",                              "",                                     "fmt/1443",                                  ""},
    {1618, FIFamily::Document,     "QuarkXPress document, version 3.1 (big-endian)",                 quarkXPressType,                        "fmt/1317",                                  "qxd"},
    {1619, FIFamily::Document,     "QuarkXPress document, version 3.2",                              quarkXPressType,                        "fmt/1444",                                  "qxd"},
    {1620, FIFamily::Document,     "QuarkXPress document, version 3.3",                              quarkXPressType,                        "fmt/1318",                                  "qxd"},
    {1621, FIFamily::Document,     "QuarkXPress document, version 4",                                quarkXPressType,                        "fmt/1319",                                  "qxd"},
    {1622, FIFamily::Document,     "QuarkXPress document, version 3.3",                              quarkXPressType,                        "fmt/1318",                                  "qxd"},
    {1623, FIFamily::Document,     "QuarkXPress document, version 4",                                quarkXPressType,                        "fmt/1319",                                  "qxd"},
    {1624, FIFamily::Document,     "QuarkXPress document, version 5",                                quarkXPressType,                        "fmt/1320",                                  "qxd"},
    {1626, FIFamily::Drawing,      "OpenOffice.org 1 drawing (SXD)",                                 "application/vnd.sun.xml.draw",         "fmt/127",                                   "sxd std"},
    {1627, FIFamily::Presentation, "OpenOffice.org 1 presentation (SXI)",                            "application/vnd.sun.xml.impress",      "fmt/130",                                   "sxi sti"},
    {1629, FIFamily::Drawing,      "CorelDRAW drawing, version 10",                                  corelDrawType,                          "x-fmt/375",                                 "cdr"},
    {1630, FIFamily::Drawing,      "CorelDRAW drawing, version 11",                                  corelDrawType,                          "x-fmt/378",                                 "cdr"},
    {1631, FIFamily::Drawing,      "Visio drawing, version 2003 to 2010",                            "application/vnd.visio",                "fmt/443",                                   "vsd vss vst"},
    {1632, FIFamily::Drawing,      "OpenDocument drawing (ODG)",                                     odgType,                                "fmt/139 fmt/296 fmt/297 fmt/1753 fmt/2048", "odg otg"},
    {1633, FIFamily::Presentation, "OpenDocument presentation (ODP)",                                odpType,                                "fmt/138 fmt/292 fmt/293 fmt/1754 fmt/2046", "odp otp"},
    {1634, FIFamily::Drawing,      "AutoCAD drawing, AC1018 (2004)",                                 "image/vnd.dwg",                        "fmt/36",                                    "dwg"},
    {1635, FIFamily::Presentation, "Office Open XML presentation (PPTX)",                            pptxType,                               "fmt/189 fmt/215",                           "pptx pptm ppsx ppsm potx potm"},
    {1636, FIFamily::Document,     "XPS document",                                                   "application/vnd.ms-xpsdocument",       "fmt/657",                                   "xps"},
    {1637, FIFamily::Presentation, "Encrypted Office Open XML presentation",                         "",                                     "fmt/494",                                   "pptx pptm ppsx potx"},
    {1638, FIFamily::Drawing,      "AutoCAD drawing, AC1021 (2007)",                                 "image/vnd.dwg",                        "x-fmt/455",                                 "dwg"},
    {1639, FIFamily::Image,        "OS/2 bitmap, version 2 (64-byte header)",                        "image/bmp",                            "x-fmt/270",                                 "bmp"},
    {1640, FIFamily::Drawing,      "StarView metafile (SVM)",                                        "",                                     "",                                          "svm"},
    {1641, FIFamily::Image,        "Graphics file, signature DC FE, with FF FF at 8 and 14",         "",                                     "",                                          ""},
    {1650, FIFamily::Drawing,      "WordPerfect family file, product 15, file type 0A or 0C",        "",                                     "",                                          ""},
    {1651, FIFamily::Image,        "Graphics file, signature 00 01 90 81 8E 93, 01 or 03 at 26",     "",                                     "",                                          ""},
    {1652, FIFamily::Image,        "Graphics file, signature 00 01 90 81 8E 93, 00 at 26",           "",                                     "",                                          ""},
    // multimedia
    {1700, FIFamily::Audio,        "WAVE audio",                                  "audio/x-wav",                       wavePuids,                         "wav wave"},
    {1701, FIFamily::Video,        "AVI video",                                   "video/x-msvideo",                   "fmt/5",                           "avi"},
    {1702, FIFamily::Audio,        "MIDI file",                                   "audio/midi",                        "x-fmt/230",                       "mid midi"},
    {1703, FIFamily::Video,        "Director movie, compressed (RIFX form FGDM)", "application/x-director",            "fmt/486",                         "dcr"},
    {1704, FIFamily::Video,        "Flash movie, version 4 to 7",                 "application/vnd.adobe.flash.movie", "fmt/107 fmt/108 fmt/109 fmt/110", "swf"},
    {1705, FIFamily::Video,        "QuickTime movie",                             "video/quicktime",                   "x-fmt/384 fmt/797",               "mov qt qtm"},
    {1706, FIFamily::Audio,        "MP3 audio with an ID3 version 1 tag",         "audio/mpeg",                        "fmt/134",                         "mp3"},
    {1707, FIFamily::Audio,        "MP3 audio with an ID3 version 2 tag",         "audio/mpeg",                        "fmt/134",                         "mp3"},
    {1708, FIFamily::Audio,        "File with an ID3 version 1 tag, other audio", "",                                  "",                                ""},
    {1709, FIFamily::Audio,        "File with an ID3 version 2 tag, other audio", "",                                  "",                                ""},
    {1710, FIFamily::Audio,        "MPEG-1 audio, layer 3",                       "audio/mpeg",                        "fmt/134",                         "mp3"},
    {1711, FIFamily::Audio,        "MPEG-1 audio, layer 1",                       "audio/mpeg",                        "fmt/347",                         "mp1"},
    {1712, FIFamily::Audio,        "MPEG-1 audio, layer 2",                       "audio/mpeg",                        "fmt/198",                         "mp2 mpa mpw"},
    {1713, FIFamily::Audio,        "MPEG-2 audio, layer 1",                       "audio/mpeg",                        "fmt/347",                         "mp1"},
    {1714, FIFamily::Audio,        "MPEG-2 audio, layer 2",                       "audio/mpeg",                        "fmt/198",                         "mp2 mpa"},
    {1715, FIFamily::Audio,        "MPEG-2 audio, layer 3",                       "audio/mpeg",                        "fmt/134",                         "mp3"},
    // archives, executables and code
    {1800, FIFamily::System,       "DOS or Windows executable",                         "",                                  "fmt/899 fmt/900 x-fmt/409 x-fmt/410 x-fmt/411", "exe dll sys"},
    {1802, FIFamily::Archive,      "ZIP archive",                                       "application/zip",                   "x-fmt/263",                                     "zip"},
    {1803, FIFamily::Archive,      "ZIP archive, self-extracting",                      "",                                  "",                                              "exe"},
    {1804, FIFamily::Archive,      "ARC archive",                                       "application/x-arc",                 "",                                              "arc"},
    {1805, FIFamily::Document,     "Microsoft Office binder",                           "application/x-msbinder",            binderPuids,                                     "obd obt obz"},
    {1806, FIFamily::Archive,      "UNIX compressed file (compress)",                   "application/x-compress",            "fmt/1671",                                      "z"},
    {1807, FIFamily::Archive,      "tar archive",                                       "application/x-tar",                 "x-fmt/265",                                     "tar"},
    {1808, FIFamily::Document,     "Envoy document, version 1",                         "",                                  "fmt/1286",                                      ""},
    {1809, FIFamily::Document,     "WordPerfect family file, file type 1D, version 0B", "",                                  "",                                              ""},
    {1810, FIFamily::Unknown,      "File with the signature 50 C3",                     "",                                  "",                                              ""},
    {1811, FIFamily::Document,     "Envoy document, version 7",                         "",                                  "fmt/1287",                                      ""},
    {1812, FIFamily::Archive,      "StuffIt archive",                                   "application/x-stuffit",             "fmt/1459 fmt/1460",                             "sit"},
    {1813, FIFamily::Archive,      "LHA archive",                                       "application/x-lha",                 "fmt/626",                                       "lzh lha"},
    {1814, FIFamily::Archive,      "LHA archive, self-extracting",                      "",                                  "",                                              "exe"},
    {1815, FIFamily::Archive,      "gzip file",                                         "application/gzip",                  "x-fmt/266",                                     "gz tgz"},
    {1816, FIFamily::System,       "Java class file",                                   "application/java-vm",               "x-fmt/415",                                     "class"},
    {1817, FIFamily::Mail,         "Mailbox file (mbox)",                               "application/mbox",                  "fmt/720",                                       "mbox"},
    {1819, FIFamily::Document,     "Encrypted Office Open XML file",                    "",                                  "fmt/494",                                       ""},
    {1820, FIFamily::Archive,      "Microsoft Cabinet archive",                         "application/vnd.ms-cab-compressed", "x-fmt/414",                                     "cab"},
    // not known
    {1999, FIFamily::Unknown,      "Unknown format", "", "", ""},
    // XML documents told by their namespace
    {2001, FIFamily::Text,         "Veloxine XML document, namespace veloxine",    "application/xml", xmlPuids,          "xml"},
    {2002, FIFamily::Text,         "Veloxine XML document, namespace veloxine2",   "application/xml", xmlPuids,          "xml"},
    {2003, FIFamily::Text,         "Veloxine XML document, namespace veloxine3",   "application/xml", xmlPuids,          "xml"},
    {2004, FIFamily::Text,         "Veloxine XML document, namespace veloxine4",   "application/xml", xmlPuids,          "xml"},
    {2005, FIFamily::Text,         "Veloxine XML document, namespace veloxine5",   "application/xml", xmlPuids,          "xml"},
    {2006, FIFamily::Text,         "Veloxine XML document, namespace veloxine5_1", "application/xml", xmlPuids,          "xml"},
    {2007, FIFamily::Database,     "Lotus DXL document",                           "application/xml", "fmt/571 fmt/572", "dxl"},
    // text
    {4005, FIFamily::Text,         "Text of 8-bit characters",              "text/plain",               "",                   "txt"},
    {4022, FIFamily::Text,         "Text of 7-bit characters",              "text/plain",               "x-fmt/22 x-fmt/111", "txt"},
    {4025, FIFamily::Text,         "UTF-8 text with a byte order mark",     "text/plain",               "x-fmt/16",           "txt"},
    {4050, FIFamily::Archive,      "Uuencoded file",                        "text/x-uuencode",          "fmt/1102",           "uue uu"},
    {4051, FIFamily::Archive,      "Uuencoded lines without a header",      "",                         "",                   "uue uu"},
    {4052, FIFamily::Archive,      "Xxencoded file",                        "",                         "",                   "xxe"},
    {4053, FIFamily::Archive,      "Xxencoded lines without a header",      "",                         "",                   "xxe"},
    {4054, FIFamily::Archive,      "yEnc file, one part",                   "",                         "fmt/1100",           "yenc ync"},
    {4055, FIFamily::Archive,      "yEnc file, a later part of several",    "",                         "fmt/1100",           "yenc ync"},
    {4056, FIFamily::Archive,      "BinHex 4.0 file",                       "application/mac-binhex40", "x-fmt/416",          "hqx"},
    {4057, FIFamily::Archive,      "BinHex 4.0 lines without the notice",   "",                         "",                   "hqx"},
    // two metafile and picture forms
    {5000, FIFamily::Drawing,      "Windows metafile without a placeable header",          "image/wmf",    "x-fmt/119", "wmf"},
    {5004, FIFamily::Drawing,      "PICT picture, version 2, without the 512-byte header", "image/x-pict", "fmt/341",   "pct pict"},
    // clang-format on
};

constexpr std::size_t formatCount = std::size(formatRecords);

// The checks return the identifier of the first record that breaks the rule, 0 when none does, so that the compiler's
// message names the record.

constexpr std::uint16_t FIFirstRecordOutOfOrder() {
    for (std::size_t i = 1; i < formatCount; ++i) {
        if (formatRecords[i - 1].fiid >= formatRecords[i].fiid) return formatRecords[i].fiid;
    }
    return 0;
}

constexpr bool FIIsPlainName(std::string_view name) {
    if (name.empty() || name.size() > longestFormatName || name.front() == ' ' || name.back() == ' ') return false;
    for (const char character : name) {
        if (character < ' ' || character > '~') return false;
    }
    return true;
}

constexpr std::uint16_t FIFirstRecordWithoutPlainName() {
    for (const FIFormatRecord& record : formatRecords) {
        if (!FIIsPlainName(record.name)) return record.fiid;
    }
    return 0;
}

// FNV-1a, 64 bits: comparing sums costs the compiler far less than comparing names.
constexpr std::uint64_t FIHashName(std::string_view name) {
    constexpr std::uint64_t offsetBasis = 0xCBF29CE484222325U;
    constexpr std::uint64_t prime = 0x100000001B3U;
    std::uint64_t hash = offsetBasis;
    for (const char character : name) {
        hash = (hash ^ static_cast<std::uint8_t>(character)) * prime;
    }
    return hash;
}

constexpr std::array<std::uint64_t, formatCount> FIHashNames() {
    std::array<std::uint64_t, formatCount> hashes{};
    for (std::size_t i = 0; i < formatCount; ++i) hashes[i] = FIHashName(formatRecords[i].name);
    return hashes;
}

constexpr std::array<std::uint64_t, formatCount> nameHashes = FIHashNames();

// Two byte orders of one version of QuarkXPress: the registry knows them as one format.
constexpr bool FIShareName(std::uint16_t bigEndian, std::uint16_t littleEndian) {
    return (bigEndian == 1620 && littleEndian == 1622) || (bigEndian == 1621 && littleEndian == 1623);
}

constexpr std::uint16_t FIFirstRecordWithUsedName() {
    const std::uint64_t* const hashes = nameHashes.data();
    for (std::size_t i = 1; i < formatCount; ++i) {
        for (std::size_t earlier = 0; earlier < i; ++earlier) {
            if (hashes[earlier] != hashes[i]) continue;
            if (!FIShareName(formatRecords[earlier].fiid, formatRecords[i].fiid)) return formatRecords[i].fiid;
        }
    }
    return 0;
}

static_assert(FIFirstRecordOutOfOrder() == 0, "the records stand in the order of their identifiers");
static_assert(FIFirstRecordWithoutPlainName() == 0, "a name is 1 to longestFormatName printable ASCII characters");
static_assert(FIFirstRecordWithUsedName() == 0, "no two formats have one name, but for byte orders");

}  // namespace

std::span<const FIFormatRecord> FIFormatRecords() { return formatRecords; }

const FIFormatRecord* FIFindFormatRecord(std::uint16_t fiid) {
    const auto* const found = std::ranges::lower_bound(formatRecords, fiid, {}, &FIFormatRecord::fiid);
    return found != std::end(formatRecords) && found->fiid == fiid ? found : nullptr;
}
