// What the tables are called, and that no change of what they hold goes unseen.
#include <gtest/gtest.h>

#include <cstring>

#include "catalogue/format_catalogue.h"
#include "detect/tables_hash.h"
#include "fiid/detect.h"
#include "further/formats.h"
#include "further/row_families.h"
#include "further/table.h"
#include "signatures/character_classes.h"
#include "signatures/table.h"

namespace {

std::uint32_t HashOf(std::string_view bytes) {
    return FIHashBytes(emptyTablesHash, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

TEST(TablesHash, IsFnv1a) {
    EXPECT_EQ(HashOf(""), 0x811C9DC5U);
    EXPECT_EQ(HashOf("a"), 0xE40C292CU);
    EXPECT_EQ(HashOf("foobar"), 0xBF9CF968U);
}

TEST(TablesHash, TellsWhereATextEnds) {
    const auto hashOf = [](const char* one, const char* two) {
        return FIHashText(FIHashText(emptyTablesHash, one), two);
    };
    EXPECT_EQ(hashOf("ab", "c"), HashOf(std::string_view("ab\0c\0", 5)));
    EXPECT_NE(hashOf("ab", "c"), hashOf("a", "bc"));
    EXPECT_NE(hashOf("", "a"), hashOf("a", ""));
}

TEST(TablesHash, ChangesWithEachColumnOfARecord) {
    const FIFormatRecord record = {1503, FIFamily::Image, "GIF image", "image/gif", "fmt/3 fmt/4", "gif"};
    const auto hashOf = [](const FIFormatRecord& one) { return FIHashRecords(emptyTablesHash, {&one, 1}); };
    std::vector<FIFormatRecord> changed(7, record);
    changed[0].fiid = 1504;
    changed[1].fiid = 1503 + 256;
    changed[2].family = FIFamily::Drawing;
    changed[3].name = "GIF picture";
    changed[4].mime = "";
    changed[5].puids = "fmt/3";
    changed[6].extensions = "gif giff";
    for (const FIFormatRecord& other : changed) EXPECT_NE(hashOf(other), hashOf(record)) << other.name << other.fiid;
    EXPECT_EQ(hashOf(FIFormatRecord(record)), hashOf(record));
}

TEST(TablesHash, ChangesWithWhatARowStandsOver) {
    const FIFurtherRow row = {FIOver::Text, "", {}};
    const FIFurtherRow other = {FIOver::TextOrUnknown, "", {}};
    EXPECT_NE(FIHashPlaces(emptyTablesHash, {&row, 1}), FIHashPlaces(emptyTablesHash, {&other, 1}));
}

// Once more, and now of the tables that the library walks and lists.
TEST(TablesVersion, IsTheLibrarysWithAHashOfTheTables) {
    constexpr std::size_t tableEndBytes = 2;
    std::uint32_t hash = FIHashBytes(emptyTablesHash, {FISignatureTable(), FISignatureTableSize() - tableEndBytes});
    hash = FIHashBytes(FIHashBytes(FIHashBytes(hash, binHexClass), uuClass), xxClass);
    std::uint16_t number = 1;
    FIVisitFurtherFamilies([&]<const auto & rows>() {
        hash = FIHashPlaces(hash, rows);
        hash = FIHashBytes(hash, {FIFurtherEntry(number), FIFurtherFamily<rows>::code.bytes.size()});
        number = static_cast<std::uint16_t>(number + std::size(rows));
    });
    hash = FIHashRecords(FIHashRecords(hash, FIFormatRecords()), FIFurtherFormats());
    char expected[32];
    std::snprintf(expected, sizeof(expected), "%s-%08x", FIID_VERSION, hash);
    EXPECT_STREQ(fiid_tables_version(), expected);
    EXPECT_EQ(std::strlen(fiid_tables_version()), std::strlen(FIID_VERSION) + 9);
    EXPECT_EQ(fiid_tables_version(), fiid_tables_version()) << "static";
}

}  // namespace
