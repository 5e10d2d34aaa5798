// Records that name entries of the PRONOM registry, told whole: names, media types, entries and extensions are the
// registry's own, as far as it tells them for all files of the identifier.
#include <gtest/gtest.h>

#include "catalogue/format_catalogue.h"

namespace {

constexpr FIFormatRecord registryRecords[] = {
    // clang-format off
    {1000, FIFamily::Document, "Word for DOS or Write document, version byte 0", "",
     "fmt/1688 x-fmt/4 x-fmt/12 x-fmt/274 x-fmt/275 x-fmt/276", "doc wri"},
    {1002, FIFamily::Document, "WordStar for DOS document, version 5.0 or 5.5", "", "x-fmt/205 x-fmt/236", "ws"},
    {1005, FIFamily::Document, "WordPerfect document, version 5.0", "application/vnd.wordperfect", "x-fmt/393", "wpd wp wp5 w50"},
    {1008, FIFamily::Document, "Revisable-form text (DCA-RFT)", "application/dca-rft", "x-fmt/11 x-fmt/148", "rft dca"},
    {1038, FIFamily::Document, "WordPerfect document, version 5.1 or 5.2", "application/vnd.wordperfect",
     "x-fmt/203 x-fmt/394", "wpd wp wp5 w51 w52"},
    {1040, FIFamily::Document, "Q&A word processor document", "", "fmt/1045", ""},
    {1050, FIFamily::Document, "WordStar for DOS document, version 6", "", "x-fmt/237", "ws"},
    {1067, FIFamily::Document, "WordStar for DOS document, version 7", "", "x-fmt/261", "ws"},
    {1075, FIFamily::Document, "WordPerfect document, format version 2.0 (6.0)", "application/vnd.wordperfect",
     "x-fmt/44", "wpd wp wp6 w60 w61 w62"},
    {1082, FIFamily::Document, "Word document, version 6.0 or 95", "application/msword", "fmt/39 fmt/609", "doc dot"},
    {1097, FIFamily::Document, "WordPerfect document, format version 2.1 (6.1 or later)", "application/vnd.wordperfect",
     "x-fmt/44", "wpd wp wp6 w60 w61 w62"},
    {1101, FIFamily::Document, "HTML text", "text/html", "fmt/96 fmt/97 fmt/98 fmt/99 fmt/100 fmt/471 fmt/102 fmt/103", "html htm"},
    {1102, FIFamily::Document, "Word document, file-format number 101 to 105 (6.0 or 95)", "application/msword",
     "fmt/39 fmt/609", "doc dot"},
    {1107, FIFamily::Document, "WordPerfect document, format version 2.2 to 2.4, or storage", "application/vnd.wordperfect",
     "fmt/892 x-fmt/44", "wpd wp w60 w61 w62 wp6"},
    {1139, FIFamily::Document, "WordPerfect document in a compound storage, class 519873FF", "application/vnd.wordperfect",
     "fmt/892", "wpd wp w60 wp6"},
    {1151, FIFamily::Document, "WML text", "text/vnd.wap.wml", "fmt/1796", "wml"},
    {1187, FIFamily::Mail, "MIME message without address lines", "message/rfc822", "fmt/950", "eml"},
    {1198, FIFamily::Mail, "HTML mail or web archive (MHT)", "message/rfc822", "x-fmt/429", "mht mhtml"},
    {1202, FIFamily::Database, "dBASE table, version byte 8B, 8E, 63 or F5 (dBASE IV, FoxPro)", "application/vnd.dbf", "x-fmt/10", "dbf"},
    {1222, FIFamily::Database, "Access database (Jet)", "application/vnd.ms-access",
     "fmt/1258 fmt/1805 fmt/1806 fmt/1807 fmt/1808 fmt/1809 x-fmt/66 x-fmt/238 x-fmt/239 x-fmt/240 x-fmt/241", "mdb mda mde mdw mdt"},
    {1401, FIFamily::Spreadsheet, "Lotus 1-2-3 worksheet (WKS)", "application/vnd.lotus-1-2-3", "x-fmt/117 fmt/166", "wks"},
    {1402, FIFamily::Spreadsheet, "Lotus 1-2-3 worksheet (WK1)", "application/vnd.lotus-1-2-3", "x-fmt/114", "wk1 wk2"},
    {1411, FIFamily::Spreadsheet, "Quattro Pro for DOS spreadsheet (WQ1)", "application/x-quattropro", "x-fmt/121", "wq1 wkq"},
    {1424, FIFamily::Spreadsheet, "Excel workbook, version 5.0 or 95", "application/vnd.ms-excel", "fmt/59 fmt/1858", "xls xlt"},
    {1428, FIFamily::Spreadsheet, "Quattro Pro for DOS spreadsheet (WQ2)", "application/x-quattropro", "x-fmt/122", "wq2 wkq"},
    {1446, FIFamily::Spreadsheet, "Excel workbook, version 97 to 2003, other build", "application/vnd.ms-excel",
     "fmt/61 x-fmt/17 fmt/901", "xls xlt"},
    {1500, FIFamily::Image, "Windows bitmap, version 3 (40-byte header)", "image/bmp", "fmt/116 fmt/117 x-fmt/270", "bmp dib"},
    {1501, FIFamily::Image, "TIFF image", "image/tiff",
     "fmt/153 fmt/154 fmt/155 fmt/156 fmt/353 x-fmt/387 x-fmt/388 x-fmt/399 fmt/152 fmt/730 fmt/1841 fmt/1842 "
     "fmt/1943", "tif tiff cog tfx"},
    {1512, FIFamily::Image, "Targa image, by its extension", "image/x-tga", "fmt/402 x-fmt/367", "tga afi bpx icb vda vst"},
    {1517, FIFamily::Drawing, "Micrografx drawing, signature 01 FF", "", "x-fmt/47 x-fmt/294 x-fmt/295 fmt/1481", "drw"},
    {1535, FIFamily::Image, "JPEG image", "image/jpeg",
     "fmt/41 fmt/42 fmt/43 fmt/44 fmt/112 fmt/113 fmt/645 fmt/1507 x-fmt/390 x-fmt/391 x-fmt/398", "jpg jpeg jpe jfif jfi jif spf"},
    {1544, FIFamily::Drawing, "AutoCAD DXF text", "image/vnd.dxf",
     "fmt/63 fmt/64 fmt/65 fmt/66 fmt/67 fmt/68 fmt/69 fmt/70 fmt/71 fmt/72 fmt/73 fmt/74 fmt/75 fmt/76 fmt/77 "
     "fmt/78 fmt/79 fmt/433 fmt/435 fmt/532 fmt/1389", "dxf"},
    {1545, FIFamily::Drawing, "AutoCAD DXF, binary", "image/vnd.dxf",
     "fmt/1394 fmt/80 fmt/81 fmt/82 fmt/83 fmt/84 fmt/85 fmt/1390 fmt/1391 fmt/1392 fmt/1393", "dxf"},
    {1547, FIFamily::Presentation, "Freelance presentation, text FREELANCE at 4", "application/vnd.lotus-freelance", "fmt/1216", "pre"},
    {1555, FIFamily::Presentation, "Presentations slide show or other WordPerfect family storage", "", "fmt/877", "shw"},
    {1557, FIFamily::Document, "PDF document", "application/pdf",
     "fmt/14 fmt/15 fmt/16 fmt/17 fmt/18 fmt/19 fmt/20 fmt/276 fmt/1129 fmt/95 fmt/144 fmt/145 fmt/146 fmt/147 "
     "fmt/148 fmt/157 fmt/158 fmt/354 fmt/476 fmt/477 fmt/478 fmt/479 fmt/480 fmt/481 fmt/488 fmt/489 fmt/490 "
     "fmt/491 fmt/492 fmt/493 fmt/1451 fmt/1910 fmt/1911 fmt/1912 fmt/2050 fmt/2052", "pdf"},
    {1561, FIFamily::Image, "Kodak Photo CD image", "", "fmt/211", ""},
    {1565, FIFamily::Drawing, "GEM metafile", "", "x-fmt/215 fmt/542 fmt/543", "gem"},
    {1574, FIFamily::Image, "PNG image", "image/png", "fmt/11 fmt/12 fmt/13 fmt/935", "png"},
    {1580, FIFamily::Document, "PostScript", "application/postscript",
     "fmt/122 fmt/123 fmt/124 fmt/501 fmt/1884 x-fmt/20 fmt/417 fmt/418 fmt/419 fmt/420 fmt/422 fmt/423 fmt/557 "
     "x-fmt/91 x-fmt/406 x-fmt/407 x-fmt/408", "ps eps"},
    {1588, FIFamily::Image, "Portable bitmap (PBM)", "image/x-portable-bitmap", "fmt/409 x-fmt/164", "pbm pbmb pnm"},
    {1589, FIFamily::Image, "Portable graymap (PGM)", "image/x-portable-graymap", "fmt/406 fmt/407", "pgm pgma pgmb"},
    {1590, FIFamily::Image, "Portable pixmap (PPM)", "image/x-portable-pixmap", "fmt/408 x-fmt/178", "ppm ppmb"},
    {1593, FIFamily::Image, "Paint Shop Pro image", "",
     "fmt/348 fmt/349 x-fmt/233 x-fmt/234 x-fmt/297 x-fmt/298 x-fmt/376 x-fmt/377", "psp pspimage"},
    {1599, FIFamily::Image, "JPEG image, progressive", "image/jpeg",
     "fmt/41 fmt/42 fmt/43 fmt/44 fmt/112 fmt/113 fmt/645 fmt/1507 x-fmt/390 x-fmt/391 x-fmt/398", "jpg jpeg jpe jfif jfi jif spf"},
    {1617, FIFamily::Document, "QuarkXPress document, version 3.0", "", "fmt/1443", ""},
    {1618, FIFamily::Document, "QuarkXPress document, version 3.1 (big-endian)", "application/vnd.Quark.QuarkXPress", "fmt/1317", "qxd"},
    {1619, FIFamily::Document, "QuarkXPress document, version 3.2", "application/vnd.Quark.QuarkXPress", "fmt/1444", "qxd"},
    {1620, FIFamily::Document, "QuarkXPress document, version 3.3", "application/vnd.Quark.QuarkXPress", "fmt/1318", "qxd"},
    {1621, FIFamily::Document, "QuarkXPress document, version 4", "application/vnd.Quark.QuarkXPress", "fmt/1319", "qxd"},
    {1622, FIFamily::Document, "QuarkXPress document, version 3.3", "application/vnd.Quark.QuarkXPress", "fmt/1318", "qxd"},
    {1623, FIFamily::Document, "QuarkXPress document, version 4", "application/vnd.Quark.QuarkXPress", "fmt/1319", "qxd"},
    {1624, FIFamily::Document, "QuarkXPress document, version 5", "application/vnd.Quark.QuarkXPress", "fmt/1320", "qxd"},
    {1636, FIFamily::Document, "XPS document", "application/vnd.ms-xpsdocument", "fmt/657", "xps"},
    {1700, FIFamily::Audio, "WAVE audio", "audio/x-wav",
     "fmt/6 fmt/141 fmt/142 fmt/143 fmt/1 fmt/2 fmt/527 fmt/703 fmt/704 fmt/705 fmt/706 fmt/707 fmt/708 fmt/709 "
     "fmt/710 fmt/711 x-fmt/389 x-fmt/396 x-fmt/397", "wav wave"},
    {1704, FIFamily::Video, "Flash movie, version 4 to 7", "application/vnd.adobe.flash.movie", "fmt/107 fmt/108 fmt/109 fmt/110", "swf"},
    {1705, FIFamily::Video, "QuickTime movie", "video/quicktime", "x-fmt/384 fmt/797", "mov qt qtm"},
    {1712, FIFamily::Audio, "MPEG-1 audio, layer 2", "audio/mpeg", "fmt/198", "mp2 mpa mpw"},
    {1808, FIFamily::Document, "Envoy document, version 1", "", "fmt/1286", ""},
    {1811, FIFamily::Document, "Envoy document, version 7", "", "fmt/1287", ""},
    // clang-format on
};

TEST(RegistryRecords, AreAsTold) {
    for (const FIFormatRecord& expected : registryRecords) {
        SCOPED_TRACE(expected.fiid);
        const FIFormatRecord* const record = FIFindFormatRecord(expected.fiid);
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->family, expected.family);
        EXPECT_STREQ(record->name, expected.name);
        EXPECT_STREQ(record->mime, expected.mime);
        EXPECT_STREQ(record->puids, expected.puids);
        EXPECT_STREQ(record->extensions, expected.extensions);
    }
}

// A text with the Adobe comment may be a page or a picture; the drawings of Illustrator have the other identifier.
TEST(RegistryRecords, PostScriptWithTheAdobeCommentHasNoIllustratorEntries) {
    const FIFormatRecord* const record = FIFindFormatRecord(1554);
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->puids, "fmt/122 fmt/123 fmt/124 fmt/501 fmt/1884 x-fmt/91 x-fmt/406 x-fmt/407 x-fmt/408");
}

}  // namespace
