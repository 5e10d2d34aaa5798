// Families of formats: that every record of both tables has one, and that it is the one that a person would look in.
#include "catalogue/family.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "catalogue/format_catalogue.h"
#include "further/formats.h"
#include "support/golden.h"

namespace {

template <typename Visit>
void VisitRecords(Visit visit) {
    for (const FIFormatRecord& record : FIFormatRecords()) visit(record);
    for (const FIFormatRecord& record : FIFurtherFormats()) visit(record);
}

TEST(Families, HaveAWordEach) {
    const std::set<std::string> words(familyWords.begin(), familyWords.end());
    EXPECT_EQ(words.size(), familyWords.size());
    for (const std::string& word : words) {
        EXPECT_EQ(word.find_first_not_of("abcdefghijklmnopqrstuvwxyz"), std::string::npos) << word;
        EXPECT_FALSE(word.empty());
    }
    EXPECT_STREQ(FIWordOf(FIFamily::Document), "document");
    EXPECT_STREQ(FIWordOf(FIFamily::Drawing), "drawing");
    EXPECT_STREQ(FIWordOf(FIFamily::Mail), "mail");
    EXPECT_STREQ(FIWordOf(FIFamily::Unknown), "unknown");
}

TEST(Families, AreThoseOfEveryRecord) {
    VisitRecords([](const FIFormatRecord& record) {
        EXPECT_LT(static_cast<std::size_t>(record.family), familyWords.size()) << record.fiid;
    });
}

// How many formats of the signature table and of the further table each family has.
TEST(Families, HaveTheirNumberOfFormats) {
    std::map<FIFamily, std::pair<int, int>> counts;
    for (const FIFormatRecord& record : FIFormatRecords()) ++counts[record.family].first;
    for (const FIFormatRecord& record : FIFurtherFormats()) ++counts[record.family].second;
    std::ostringstream line;
    for (std::size_t index = 0; index < familyWords.size(); ++index) {
        const auto [first, further] = counts[static_cast<FIFamily>(index)];
        line << (index > 0 ? " " : "") << familyWords[index] << '=' << first << '+' << further;
    }
    FIExpectGolden("families.txt", {line.str()});
}

struct FamilyCase {
    std::uint16_t identifier;
    const char* word;
};

// Both sides of what may be in doubt, and one of each that is not.
constexpr FamilyCase familyCases[] = {
    // clang-format off
    { 1000, "document"},      // Word for DOS or Write
    { 1028, "document"},      // RTF
    { 1078, "document"},      // an encrypted file of WordPerfect
    { 1101, "document"},      // HTML
    { 1148, "document"},      // HTML exported by Excel
    { 1182, "document"},      // XML text with the document type html
    { 1557, "document"},      // PDF
    { 1580, "document"},      // PostScript
    { 1621, "document"},      // QuarkXPress
    { 1819, "document"},      // encrypted Office Open XML of a kind that is not told
    {20233, "document"},      // compiled HTML help
    {20291, "document"},      // LaTeX
    {20340, "document"},      // EPUB
    {20402, "document"},      // a template of Word
    { 1402, "spreadsheet"},   // WK1
    { 1456, "spreadsheet"},   // an encrypted workbook
    { 1530, "spreadsheet"},   // a chart of Excel
    {20407, "spreadsheet"},   // an add-in of Excel
    { 1543, "presentation"},  // PowerPoint 95
    { 1633, "presentation"},  // ODP
    {20369, "presentation"},  // Keynote
    { 1201, "database"},      // dBASE
    { 1224, "database"},      // Microsoft Project
    {20190, "database"},      // SQLite
    {20209, "database"},      // SPSS
    {20217, "database"},      // shapefile
    {20294, "database"},      // GeoJSON
    {20342, "database"},      // ODB
    { 1501, "image"},         // TIFF
    { 1503, "image"},         // GIF
    { 1511, "image"},         // graphics known by a mark
    { 1515, "image"},         // icon
    {20049, "image"},         // raw photograph
    {20060, "image"},         // DICOM
    { 1504, "drawing"},       // encapsulated PostScript
    { 1506, "drawing"},       // PICT
    { 1508, "drawing"},       // Windows metafile
    { 1544, "drawing"},       // DXF
    { 1611, "drawing"},       // Illustrator in PDF
    { 1631, "drawing"},       // Visio
    {20245, "drawing"},       // STL model
    {20300, "drawing"},       // SVG
    { 1700, "audio"},         // WAVE
    { 1702, "audio"},         // MIDI
    {20127, "audio"},         // MOD
    {20444, "audio"},         // MusicXML
    { 1701, "video"},         // AVI
    {20084, "video"},         // Matroska
    {20113, "video"},         // Flash
    { 1802, "archive"},       // ZIP
    { 1815, "archive"},       // gzip
    { 4056, "archive"},       // BinHex
    {20142, "archive"},       // Debian package
    {20146, "archive"},       // ISO 9660
    {20164, "archive"},       // WARC
    {20365, "archive"},       // JAR
    { 1141, "mail"},          // vCard
    { 1143, "mail"},          // MSG
    { 1196, "mail"},          // calendars
    { 1302, "mail"},          // PST
    { 1817, "mail"},          // mbox
    { 1150, "text"},          // XML
    { 4022, "text"},          // text of 7-bit characters
    { 4025, "text"},          // UTF-8
    {20298, "text"},          // JSON
    {20308, "text"},          // CSV
    {20309, "text"},          // Markdown
    {20281, "code"},          // shell script
    {20322, "code"},          // SQL
    {20323, "code"},          // CSS
    { 1800, "system"},        // executable
    {20175, "system"},        // ELF
    {20223, "system"},        // shortcut
    {20258, "system"},        // TrueType
    {20269, "system"},        // certificate
    { 1999, "unknown"},
    {20000, "unknown"},       // an empty file
    {20253, "unknown"},       // AxCrypt
    {20336, "unknown"},       // another compound storage
    {20339, "unknown"},       // binary data
    // clang-format on
};

TEST(Families, AreWhereAPersonWouldLook) {
    for (const FamilyCase& expected : familyCases) {
        const FIFormatRecord* const first = FIFindFormatRecord(expected.identifier);
        const FIFormatRecord* const record = first != nullptr ? first : FIFindFurtherFormat(expected.identifier);
        ASSERT_NE(record, nullptr) << expected.identifier;
        EXPECT_STREQ(FIWordOf(record->family), expected.word) << expected.identifier << ' ' << record->name;
    }
}

// Media types say the same where they say anything.
TEST(Families, AgreeWithMediaTypes) {
    const std::map<std::string, std::set<std::string>> familiesOfTypes = {
        {"audio", {"audio"}}, {"video", {"video"}},   {"image", {"image", "drawing", "video", "document"}},
        {"font", {"system"}}, {"model", {"drawing"}}, {"message", {"mail"}},
    };
    VisitRecords([&](const FIFormatRecord& record) {
        const std::string mime = record.mime;
        const auto found = familiesOfTypes.find(mime.substr(0, mime.find('/')));
        if (found == familiesOfTypes.end()) return;
        EXPECT_TRUE(found->second.contains(FIWordOf(record.family))) << record.fiid << ' ' << record.name;
    });
}

// The list of words in the public header is that of the families.
TEST(Families, AreThoseThatTheHeaderTells) {
    std::ifstream file(FIID_TEST_DATA_DIR "/../../include/fiid/detect.h");
    ASSERT_TRUE(file.is_open());
    std::stringstream header;
    header << file.rdbuf();
    const std::string text = header.str();
    const std::size_t start = text.find("const char* family; /* \"document\"");
    ASSERT_NE(start, std::string::npos);
    const std::string told = text.substr(start, text.find("; \"\" where", start) - start);
    std::vector<std::string> words;
    for (std::size_t quote = told.find('"'); quote != std::string::npos; quote = told.find('"', quote + 1)) {
        const std::size_t end = told.find('"', quote + 1);
        words.push_back(told.substr(quote + 1, end - quote - 1));
        quote = end;
    }
    EXPECT_EQ(words, std::vector<std::string>(familyWords.begin(), familyWords.end()));
}

}  // namespace
