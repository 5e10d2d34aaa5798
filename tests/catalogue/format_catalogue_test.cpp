// The catalogue of formats: which identifiers it holds, and that its columns keep to their form and agree with PRONOM.
#include "catalogue/format_catalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/case_name.h"

namespace {

using ::PrintTo;

struct IdentifierRange {
    std::uint16_t first;
    std::uint16_t last;  // included
};

// Every identifier that an identification can answer, in runs without a gap.
constexpr IdentifierRange identifierRanges[] = {
    // clang-format off
    // word processors, mail and other documents
    {1000, 1025}, {1028, 1041}, {1043, 1051}, {1053, 1054}, {1056, 1069}, {1073, 1083}, {1085, 1089}, {1091, 1095},
    {1097, 1098}, {1101, 1102}, {1105, 1108}, {1124, 1126}, {1128, 1132}, {1134, 1141}, {1143, 1151}, {1165, 1168},
    {1177, 1177}, {1179, 1182}, {1184, 1189}, {1191, 1198},
    // databases
    {1200, 1210}, {1212, 1224},
    // further documents and data
    {1301, 1303}, {1306, 1306}, {1309, 1309}, {1311, 1313},
    // spreadsheets
    {1400, 1426}, {1428, 1457},
    // graphics, drawing and presentation
    {1500, 1518}, {1520, 1583}, {1585, 1608}, {1610, 1624}, {1626, 1627}, {1629, 1641}, {1650, 1652},
    // multimedia
    {1700, 1715},
    // archives, executables and code
    {1800, 1800}, {1802, 1817}, {1819, 1820},
    // not known
    {1999, 1999},
    // XML documents told by their namespace
    {2001, 2007},
    // text
    {4005, 4005}, {4022, 4022}, {4025, 4025}, {4050, 4057},
    // two metafile and picture forms
    {5000, 5000}, {5004, 5004},
    // clang-format on
};

std::set<std::uint16_t> FIListedIdentifiers() {
    std::set<std::uint16_t> identifiers;
    for (const IdentifierRange& range : identifierRanges) {
        for (std::uint16_t fiid = range.first; fiid <= range.last; ++fiid) identifiers.insert(fiid);
    }
    return identifiers;
}

std::vector<std::string> FISplit(std::string_view text, std::string_view separators) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (separators.find(character) != std::string_view::npos) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

// The members of a list with one space between two. The empty list has none; a space too many makes an empty member.
std::vector<std::string> FIMembers(const char* list) {
    return *list == '\0' ? std::vector<std::string>() : FISplit(list, " ");
}

std::string FILower(std::string_view text) {
    std::string lower(text);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return lower;
}

bool FIHoldsOnly(std::string_view text, std::string_view allowed) {
    return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
}

constexpr std::string_view smallAlphanumeric = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::string_view extensionCharacters = "abcdefghijklmnopqrstuvwxyz0123456789_-";
constexpr std::string_view mediaTypeCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.+-_";

// The media types of each entry in the extract of the registry, in lower case; many entries have none. The columns are
// identifier, name, version, media types and extensions; commas part media types, and a semicolon precedes a parameter.
std::map<std::string, std::vector<std::string>> FIReadRegistryExtract() {
    constexpr std::size_t mediaTypeColumn = 3;
    constexpr std::size_t columnCount = 5;
    std::map<std::string, std::vector<std::string>> entries;
    std::ifstream file(FIID_TEST_DATA_DIR "/pronom_extract.tsv");
    EXPECT_TRUE(file.is_open());
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(line, "puid\tname\tversion\tmime\textensions");
    while (std::getline(file, line)) {
        const std::vector<std::string> columns = FISplit(line, "\t");
        EXPECT_EQ(columns.size(), columnCount) << line;
        if (columns.size() != columnCount) continue;
        std::vector<std::string> mediaTypes;
        for (const std::string& part : FISplit(columns[mediaTypeColumn], ", ;")) {
            if (part.find('/') != std::string::npos) mediaTypes.push_back(FILower(part));
        }
        const bool isNew = entries.emplace(columns[0], mediaTypes).second;
        EXPECT_TRUE(isNew) << columns[0];
    }
    return entries;
}

// Entries whose media type in the registry is a misprint.
const std::set<std::string> misprintedEntries = {
    "fmt/497",  // image/vnd-wap-wbmp, registered as image/vnd.wap.wbmp
};

// Entries that stand in a record of another media type: the record's is right for the most part of its files.
const std::set<std::pair<std::uint16_t, std::string>> entriesOfOtherTypes = {
    {1101, "fmt/102"},    // application/xhtml+xml; XHTML 1.0 that is delivered as text/html
    {1101, "fmt/103"},    // likewise, XHTML 1.1
    {1198, "x-fmt/429"},  // multipart/related, the type of the body inside the message
    {1202, "x-fmt/10"},   // application/dbase, not registered with IANA; application/vnd.dbf is
    {1501, "fmt/1943"},   // image/dng, a TIFF file by its structure; the earlier DNG entries have both types
    {1574, "fmt/935"},    // image/apng, which shows as PNG where animation is not known
    {1636, "fmt/657"},    // application/oxps, for the standardised form of XPS
    {1704, "fmt/107"},    // application/x-shockwave-flash, not registered with IANA; the record's is
    {1704, "fmt/108"},    // likewise
    {1704, "fmt/109"},    // likewise
    {1704, "fmt/110"},    // likewise
};

// Two byte orders of one version: one format to the registry, two identifiers here.
const std::set<std::pair<std::uint16_t, std::uint16_t>> sharedNames = {{1620, 1622}, {1621, 1623}};

TEST(FormatCatalogue, HoldsEveryIdentifierAndNoOther) {
    std::set<std::uint16_t> held;
    for (const FIFormatRecord& record : FIFormatRecords()) held.insert(record.fiid);
    EXPECT_EQ(held, FIListedIdentifiers());
    EXPECT_EQ(FIFormatRecords().size(), 427U);
}

TEST(FormatCatalogue, StandsInTheOrderOfTheIdentifiers) {
    std::uint16_t previous = 0;
    for (const FIFormatRecord& record : FIFormatRecords()) {
        EXPECT_GT(record.fiid, previous);
        previous = record.fiid;
    }
}

TEST(FormatCatalogue, HasNoNullString) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        EXPECT_NE(record.name, nullptr) << record.fiid;
        EXPECT_NE(record.mime, nullptr) << record.fiid;
        EXPECT_NE(record.puids, nullptr) << record.fiid;
        EXPECT_NE(record.extensions, nullptr) << record.fiid;
    }
}

TEST(FormatCatalogue, NamesAreUniqueAlsoWithoutRegardToCaseButForTwoPairs) {
    std::map<std::string, std::uint16_t> seen;
    for (const FIFormatRecord& record : FIFormatRecords()) {
        const auto [place, isNew] = seen.emplace(FILower(record.name), record.fiid);
        EXPECT_NE(isNew, sharedNames.contains({place->second, record.fiid}))
            << record.fiid << " and " << place->second << ": " << record.name;
    }
}

// Names go into JSON, CSV and TSV: none of them needs an escape there.
TEST(FormatCatalogue, NamesArePrintableAndNeedNoEscape) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        const std::string_view name = record.name;
        EXPECT_FALSE(name.empty()) << record.fiid;
        EXPECT_LE(name.size(), longestFormatName) << record.fiid;
        EXPECT_TRUE(std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; })) << record.fiid;
        EXPECT_EQ(name.find_first_of("\"'`<>\\|"), std::string_view::npos) << record.fiid;
        EXPECT_EQ(name.find("  "), std::string_view::npos) << record.fiid;
        EXPECT_FALSE(name.starts_with(' ') || name.ends_with(' ')) << record.fiid;
    }
}

// Hosts have buffers of this size: a longer name would reach them cut.
static_assert(longestFormatName + 1 == 101, "a buffer of 101 bytes holds every name and its NUL");

TEST(FormatCatalogue, MediaTypesAreOneTypeAndOneSubtype) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        if (*record.mime == '\0') continue;
        const std::vector<std::string> parts = FISplit(record.mime, "/");
        ASSERT_EQ(parts.size(), 2U) << record.fiid;
        EXPECT_TRUE(FIHoldsOnly(parts[0], smallAlphanumeric)) << record.fiid;
        EXPECT_TRUE(FIHoldsOnly(parts[1], mediaTypeCharacters)) << record.fiid;
    }
}

TEST(FormatCatalogue, ExtensionsAreSmallWordsAndStandOnce) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        const std::vector<std::string> extensions = FIMembers(record.extensions);
        for (const std::string& extension : extensions) {
            EXPECT_TRUE(FIHoldsOnly(extension, extensionCharacters)) << record.fiid << ' ' << extension;
        }
        EXPECT_EQ(std::set(extensions.begin(), extensions.end()).size(), extensions.size()) << record.fiid;
    }
}

TEST(FormatCatalogue, PronomIdentifiersStandOnce) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        const std::vector<std::string> puids = FIMembers(record.puids);
        EXPECT_EQ(std::set(puids.begin(), puids.end()).size(), puids.size()) << record.fiid;
    }
}

TEST(FormatCatalogue, PronomIdentifiersAreThoseOfTheRegistry) {
    const auto entries = FIReadRegistryExtract();
    std::set<std::string> used;
    for (const FIFormatRecord& record : FIFormatRecords()) {
        for (const std::string& puid : FIMembers(record.puids)) {
            EXPECT_TRUE(entries.contains(puid)) << record.fiid << ' ' << puid;
            used.insert(puid);
        }
    }
    EXPECT_EQ(used.size(), entries.size()) << "the extract holds the entries in use and no other";
}

// Media types are compared without regard to case, as RFC 2045 has it.
TEST(FormatCatalogue, MediaTypesAreThoseOfTheRegistry) {
    const auto entries = FIReadRegistryExtract();
    for (const FIFormatRecord& record : FIFormatRecords()) {
        if (*record.mime == '\0') continue;
        for (const std::string& puid : FIMembers(record.puids)) {
            const auto entry = entries.find(puid);
            if (entry == entries.end() || entry->second.empty() || misprintedEntries.contains(puid)) continue;
            const bool agrees = std::ranges::find(entry->second, FILower(record.mime)) != entry->second.end();
            EXPECT_NE(agrees, entriesOfOtherTypes.contains({record.fiid, puid}))
                << record.fiid << ": " << puid << " and " << record.mime;
        }
    }
}

TEST(FormatCatalogue, FindsEachRecord) {
    for (const FIFormatRecord& record : FIFormatRecords()) {
        EXPECT_EQ(FIFindFormatRecord(record.fiid), &record) << record.fiid;
    }
}

TEST(FormatCatalogue, FindsNothingForAnyOtherNumber) {
    const std::set<std::uint16_t> listed = FIListedIdentifiers();
    for (std::uint32_t number = 0; number <= 0xFFFF; ++number) {
        const auto fiid = static_cast<std::uint16_t>(number);
        if (!listed.contains(fiid)) {
            EXPECT_EQ(FIFindFormatRecord(fiid), nullptr) << fiid;
        }
    }
}

TEST(FormatCatalogue, FindsNothingForNumbersBesideTheList) {
    constexpr std::uint16_t besideTheList[] = {0, 999, 1026, 1190, 1998, 2000, 2008, 5005, 5015, 65535};
    for (const std::uint16_t fiid : besideTheList) {
        EXPECT_EQ(FIFindFormatRecord(fiid), nullptr) << fiid;
    }
}

struct RecordCase {
    const char* name;
    FIFormatRecord record;
};

// One record of each kind, told whole.
const RecordCase recordCases[] = {
    // clang-format off
    {"SeveralEntriesOfOneType", {1503, FIFamily::Image, "GIF image", "image/gif", "fmt/3 fmt/4", "gif"}},
    {"EntriesWithoutOneType",   {1196, FIFamily::Mail, "vCalendar or iCalendar", "", "fmt/387 fmt/388", "ics vcs"}},
    {"TypeWithoutEntries",      {1181, FIFamily::Document, "HTML text in 16-bit characters", "text/html", "", "html htm"}},
    {"KnownByItsMarkOnly",      {1011, FIFamily::Document, "Word processor document, signature 1A 53", "", "", ""}},
    {"OwnNamespace",            {2006, FIFamily::Text, "Veloxine XML document, namespace veloxine5_1", "application/xml",
                                 "fmt/101 fmt/1776", "xml"}},
    {"NotKnown",                {1999, FIFamily::Unknown, "Unknown format", "", "", ""}},
    // clang-format on
};

class FormatCatalogueRecord : public testing::TestWithParam<RecordCase> {};

TEST_P(FormatCatalogueRecord, IsAsTold) {
    const FIFormatRecord& expected = GetParam().record;
    const FIFormatRecord* const record = FIFindFormatRecord(expected.fiid);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->family, expected.family);
    EXPECT_STREQ(record->name, expected.name);
    EXPECT_STREQ(record->mime, expected.mime);
    EXPECT_STREQ(record->puids, expected.puids);
    EXPECT_STREQ(record->extensions, expected.extensions);
}

INSTANTIATE_TEST_SUITE_P(Records, FormatCatalogueRecord, testing::ValuesIn(recordCases), FICaseName);

}  // namespace
