// The versions of a Word document in a storage: by the application name of the summary stream, by the build value, and
// by the file-format number when there is no summary stream.
#include "storage/word_storage.h"

#include <cstddef>
#include <iterator>

#include "storage/sub_objects.h"
#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

constexpr const char* summaryName = "\005SummaryInformation";
constexpr const char* wordName = "WordDocument";
constexpr const char* wordClass = "{00020906-0000-0000-C000-000000000046}";
constexpr std::uint16_t wordRow = 4_row;

// ---- Summary streams ----------------------------------------------------------------------------------------------

constexpr std::uint32_t applicationName = 18;  // property ID
constexpr std::uint32_t title = 2;
constexpr std::uint32_t stringType = 30;

struct Property {
    std::uint32_t id;
    std::uint32_t valueOffset;  // from the start of the section
};

// A property set with one section.
//
//   Offset  Size  Field
//        0     4  byte order and format version
//       44     4  offset of the section, S
//        S     4  size of the section in bytes
//      S+4     4  count of properties
//      S+8  8 each  property ID, value offset from S
//
// A value is 4 bytes of type, 4 bytes of length, and the text.
struct Summary {
    std::uint32_t mark = 0x0000FFFE;
    std::uint32_t sectionOffset = 48;
    std::uint32_t sectionSize = 0;
    std::vector<Property> properties;
};

std::string DWord(std::uint32_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF),
            static_cast<char>(value >> 16 & 0xFF), static_cast<char>(value >> 24)};
}

std::string Bytes(const Summary& summary) {
    std::string bytes = DWord(summary.mark);
    bytes.resize(44, '\0');
    bytes += DWord(summary.sectionOffset);
    bytes.resize(summary.sectionOffset, '\0');
    bytes += DWord(summary.sectionSize) + DWord(static_cast<std::uint32_t>(summary.properties.size()));
    for (const Property& property : summary.properties) bytes += DWord(property.id) + DWord(property.valueOffset);
    return bytes;
}

// The stream with a text as the value at an offset from the section's start.
std::string WithText(std::string bytes, const Summary& summary, std::uint32_t valueOffset, const std::string& text) {
    const std::string value = DWord(stringType) + DWord(static_cast<std::uint32_t>(text.size())) + text;
    const std::size_t start = std::size_t{summary.sectionOffset} + valueOffset;
    if (bytes.size() < start + value.size()) bytes.resize(start + value.size(), '\0');
    return bytes.replace(start, value.size(), value);
}

// The usual form: one property in front of the application name, and the name's text at the end of the stream.
std::string SummaryOf(const std::string& text) {
    constexpr std::uint32_t valueOffset = 8 + 2 * 8;
    Summary summary;
    summary.properties = {{title, valueOffset}, {applicationName, valueOffset}};
    summary.sectionSize = valueOffset + 8 + static_cast<std::uint32_t>(text.size());
    return WithText(Bytes(summary), summary, valueOffset, text);
}

// An application name whose characters from 15 on are these.
std::string NameWith(const std::string& version) { return "Microsoft Word " + version; }

std::unique_ptr<TestHandle> StorageWith(const std::string& summary, const std::string& wordDocument) {
    auto storage = FIMakeStorage({});
    storage->streams[summaryName] = summary;
    storage->streams[wordName] = wordDocument;
    return storage;
}

FIID AnswerFor(const std::string& summary, const std::string& wordDocument) {
    const auto storage = StorageWith(summary, wordDocument);
    return FIStorageAnswer(FIProbeWordStorage, *storage);
}

// The answer for a storage that has a summary stream and no WordDocument.
FIID AnswerForSummaryAlone(const std::string& summary) {
    const auto storage = FIMakeStorage({});
    storage->streams[summaryName] = summary;
    return FIStorageAnswer(FIProbeWordStorage, *storage);
}

// A WordDocument with this build value.
std::string WithBuild(std::uint32_t build) {
    return FIBytes("EC A5 C1 00") + static_cast<char>(build & 0xFF) + static_cast<char>(build >> 8 & 0xFF) +
           std::string(8, '\0');
}

const std::string build4000 = WithBuild(0x4000);  // answers 1185 when it is asked

// ---- Without a summary stream -------------------------------------------------------------------------------------

class WordWithoutSummary : public testing::TestWithParam<StorageCase> {};

TEST_P(WordWithoutSummary, Answers) {
    const auto storage = FIMakeStorage(GetParam().streams);
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), GetParam().answer);
    EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage), (std::vector<std::string>{summaryName, wordName}));
}

const StorageCase withoutSummaryCases[] = {
    // clang-format off
    {"NoStreams",                  {},                                                1146},
    {"OtherStreamsOnly",           {{"SummaryInformation", "00"}, {"Book", "00"}},    1146},
    {"DocumentSummaryIsAnother",   {{"\005DocumentSummaryInformation", "00"}},        1146},
    {"Empty",                      {{wordName, ""}},                                  1146},
    {"Bytes1",                     {{wordName, "DC"}},                                1146},
    {"Bytes2",                     {{wordName, "DC A5"}},                             1146},
    {"Bytes3",                     {{wordName, "DC A5 67"}},                          1146},
    {"Number103In4Bytes",          {{wordName, "DC A5 67 00"}},                       1102},
    {"Number100",                  {{wordName, "DC A5 w:100 00*8"}},                  1146},
    {"Number101",                  {{wordName, "DC A5 w:101 00*8"}},                  1102},
    {"Number102",                  {{wordName, "DC A5 w:102 00*8"}},                  1102},
    {"Number103",                  {{wordName, "DC A5 w:103 00*8"}},                  1102},
    {"Number104",                  {{wordName, "DC A5 w:104 00*8"}},                  1102},
    {"Number105",                  {{wordName, "DC A5 w:105 00*8"}},                  1102},
    {"Number106",                  {{wordName, "DC A5 w:106 00*8"}},                  1146},
    {"Number0",                    {{wordName, "DC A5 w:0 00*8"}},                    1146},
    {"Number193",                  {{wordName, "EC A5 w:193 00*8"}},                  1146},
    {"NumberFFFF",                 {{wordName, "EC A5 w:65535 00*8"}},                1146},
    {"NumberHasAHighByte",         {{wordName, "DC A5 67 01 00*8"}},                  1146},
    {"NumberIsLowByteFirst",       {{wordName, "DC A5 00 67 00*8"}},                  1146},
    {"FirstWordIsIgnored",         {{wordName, "00 00 67 00"}},                       1102},
    {"FirstWordMayBeFFFF",         {{wordName, "FF FF 67 00"}},                       1102},
    {"BuildIsNotLookedAt",         {{wordName, "EC A5 C1 00 00 60"}},                 1146},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Word, WordWithoutSummary, testing::ValuesIn(withoutSummaryCases), FICaseName);

// Opens a stream of which the first read fails and the others work.
decltype(IOOperations::IOOpenSub) plainOpenSub = nullptr;

std::int32_t OpenWithOneFailure(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags) {
    const std::int32_t status = plainOpenSub(out, kind, specification, flags);
    if (status == 0) reinterpret_cast<TestHandle*>(*out)->failRead = 0;
    return status;
}

TEST(WordNumber, IsNotTakenFromBehindAReadThatFails) {
    const auto storage = FIMakeTestHandle("");
    storage->isStorage = true;
    storage->streams[wordName] = FIBytes("00 67 00 00 00");  // 103, if the byte that failed to come had been there
    plainOpenSub = storage->file.operations.IOOpenSub;
    storage->file.operations.IOOpenSub = OpenWithOneFailure;
    EXPECT_EQ(FIAnswerOver(FIProbeWordStorage, *storage), 1146);
}

TEST(WordStorage, IsNotAskedForNamesWhenTheHandleIsNoStorage) {
    const auto handle = StorageWith(SummaryOf(NameWith("11.0")), WithBuild(0));
    handle->isStorage = false;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *handle), 1146);
    EXPECT_TRUE(handle->opened.empty());
}

TEST(WordStorage, HasNoSummaryInASubStorageOfThatName) {
    const auto storage = FIMakeStorage({{wordName, "DC A5 67 00"}});
    storage->storages[summaryName] = "";
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), 1102);
}

TEST(WordStorage, OpensStreamsOnly) {
    const auto storage = StorageWith(SummaryOf(NameWith("7.0")), build4000);
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage, watch), 1185);
    for (const SubObjectOpening& opening : watch.openings) {
        EXPECT_EQ(opening.kind, static_cast<std::uint32_t>(IOSUB_STREAM));
    }
}

// ---- The version in the application name --------------------------------------------------------------------------

struct VersionCase {
    const char* name;
    const char* version;  // the characters from 15 on
    FIID answer;          // with a WordDocument whose build value answers 1185
};

class WordVersionText : public testing::TestWithParam<VersionCase> {};

TEST_P(WordVersionText, Decides) {
    const auto storage = StorageWith(SummaryOf(NameWith(GetParam().version)), build4000);
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), GetParam().answer);
    EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage), std::vector<std::string>{summaryName});
}

const VersionCase decidingVersions[] = {
    // clang-format off
    {"Version6",                       "6.0",              1082},
    {"Version8",                       "8.0",              1126},
    {"Version9",                       "9.0",              1146},
    {"Version10",                      "10.0",             1185},
    {"Version11",                      "11.0",             1186},
    {"Version10WithoutMinor",          "10.",              1185},
    {"Version11WithoutMinor",          "11.",              1186},
    {"Version11Point9",                "11.9",             1186},
    {"Version6WithMore",               "6.0c and more",    1082},
    {"ForWindows95",                   "for Windows 95",   1082},
    {"ForAnything95",                  "for12345678995",   1082},
    {"ForWindows95AndMore",            "for Windows 95a",  1082},
    {"ForWindows97",                   "for Windows 97",   1146},
    {"ForWindows85",                   "for Windows 85",   1146},
    {"ForWindows59",                   "for Windows 59",   1146},
    {"ForWindows9",                    "for Windows 9",    1146},
    {"ForAlone",                       "for",              1146},
    {"For95OneCharacterEarly",         "for Window 95",    1146},
    {"For95OneCharacterLate",          "for Windows  95",  1146},
    {"FortyIsForToo",                  "forty",            1146},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Deciding, WordVersionText, testing::ValuesIn(decidingVersions), FICaseName);

class WordOtherText : public testing::TestWithParam<VersionCase> {};

TEST_P(WordOtherText, LeavesItToTheBuild) {
    const auto storage = StorageWith(SummaryOf(NameWith(GetParam().version)), build4000);
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), GetParam().answer);
    EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage), (std::vector<std::string>{summaryName, wordName}));
}

const VersionCase otherVersions[] = {
    // clang-format off
    {"Version7",                  "7.0",              1185},
    {"Version5",                  "5.0",              1185},
    {"Version12",                 "12.0",             1185},
    {"Version16",                 "16.0",             1185},
    {"Version6Point1",            "6.1",              1185},
    {"Version8Point1",            "8.1",              1185},
    {"Version9Point1",            "9.1",              1185},
    {"Version6WithAComma",        "6,0",              1185},
    {"Version8WithAComma",        "8,0",              1185},
    {"Version9WithAComma",        "9,0",              1185},
    {"Version10WithAComma",       "10,0",             1185},
    {"Version11WithAComma",       "11,0",             1185},
    {"Version10WithoutAPoint",    "10",               1185},
    {"Version11WithoutAPoint",    "11 ",              1185},
    {"Version6WithoutMinor",      "6.",               1185},
    {"Version8WithoutMinor",      "8.",               1185},
    {"Version9WithoutMinor",      "9.",               1185},
    {"OneCharacter",              "6",                1185},
    {"Nothing",                   "",                 1185},
    {"OneBlankInFront",           " 6.0",             1185},
    {"PointInFront",              ".0",               1185},
    {"ForInCapitals",             "FOR Windows 95",   1185},
    {"ForWithACapital",           "For Windows 95",   1185},
    {"Fox",                       "fox Windows 95",   1185},
    {"Fo",                        "fo",               1185},
    {"Office",                    "Office",           1185},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Others, WordOtherText, testing::ValuesIn(otherVersions), FICaseName);

TEST(WordVersion, StandsAtCharacter15AndNowhereElse) {
    for (std::size_t place = 12; place <= 18; ++place) {
        const std::string text = std::string(place, 'x') + "8.0 xxxxxxxx";
        EXPECT_EQ(AnswerFor(SummaryOf(text), build4000), place == 15 ? 1126 : 1185) << "at character " << place;
    }
}

TEST(WordVersion, MayStandBehindAnyFifteenBytes) {
    EXPECT_EQ(AnswerFor(SummaryOf(std::string(15, '\0') + "8.0"), build4000), 1126);
    EXPECT_EQ(AnswerFor(SummaryOf(std::string(15, '\xFF') + "11."), build4000), 1186);
}

TEST(WordVersion, WinsOverTheBuild) {
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("10.")), WithBuild(0x0000)), 1185);
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("11.")), WithBuild(0x0000)), 1186);
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("9.0")), WithBuild(0x6000)), 1146);
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("8.0")), WithBuild(0x6000)), 1126);
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("6.0")), WithBuild(0x6000)), 1082);
}

TEST(WordVersion, NeedsNoWordDocument) {
    EXPECT_EQ(AnswerForSummaryAlone(SummaryOf(NameWith("11."))), 1186);
    EXPECT_EQ(AnswerForSummaryAlone(SummaryOf(NameWith("for Windows 95"))), 1082);
}

// ---- The build value ----------------------------------------------------------------------------------------------

struct BuildCase {
    const char* name;
    const char* bytes;  // of the WordDocument
    FIID answer;
};

class WordBuild : public testing::TestWithParam<BuildCase> {};

TEST_P(WordBuild, DecidesWhenTheVersionDoesNot) {
    EXPECT_EQ(AnswerFor(SummaryOf(NameWith("7.0")), FIBytes(GetParam().bytes)), GetParam().answer);
}

const BuildCase buildCases[] = {
    // clang-format off
    {"Build0",                   "EC A5 C1 00 w:0x0000",       1126},
    {"Build1FFF",                "EC A5 C1 00 w:0x1FFF",       1126},
    {"Build2000",                "EC A5 C1 00 w:0x2000",       1146},
    {"Build3FFF",                "EC A5 C1 00 w:0x3FFF",       1146},
    {"Build4000",                "EC A5 C1 00 w:0x4000",       1185},
    {"Build5FFF",                "EC A5 C1 00 w:0x5FFF",       1185},
    {"Build6000",                "EC A5 C1 00 w:0x6000",       1186},
    {"Build7FFF",                "EC A5 C1 00 w:0x7FFF",       1186},
    {"Build8000IsUnsigned",      "EC A5 C1 00 w:0x8000",       1186},
    {"BuildFFFF",                "EC A5 C1 00 w:0xFFFF",       1186},
    {"LowByteComesFirst",        "EC A5 C1 00 60 00",          1126},
    {"BytesBehindDoNotCount",    "EC A5 C1 00 00 20 60 60",    1146},
    {"FormatDoesNotCount",       "00 00 67 00 00 20",          1146},
    {"Empty",                    "",                           1186},
    {"Bytes1",                   "00",                         1186},
    {"Bytes3",                   "00*3",                       1186},
    {"Bytes4",                   "00*4",                       1186},
    {"Bytes5",                   "00*5",                       1186},
    {"Bytes6",                   "00*6",                       1126},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Limits, WordBuild, testing::ValuesIn(buildCases), FICaseName);

TEST(WordBuildValue, WithoutAWordDocumentLeaves1146) {
    const auto storage = FIMakeStorage({});
    storage->streams[summaryName] = SummaryOf(NameWith("7.0"));
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), 1146);
    EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage), (std::vector<std::string>{summaryName, wordName}));
}

TEST(WordBuildValue, IsReadWhileTheSummaryIsOpenAndClosedFirst) {
    const auto storage = StorageWith(SummaryOf(NameWith("7.0")), build4000);
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage, watch), 1185);
    ASSERT_EQ(watch.openings.size(), 2U);
    EXPECT_EQ(watch.openings[1].siblingsOpen, 1U);
    ASSERT_EQ(watch.closings.size(), 2U);
    EXPECT_EQ(watch.closings[0].name, wordName);
    EXPECT_EQ(watch.closings[1].name, summaryName);
}

TEST(WordBuildValue, SeekToItIsNotTested) {
    // A handle that can't seek delivers its first bytes: here a build value of 0x4000 in place of 0x6000.
    const auto storage = StorageWith(SummaryOf(NameWith("7.0")), FIBytes("00 40 00 00 00 60"));
    SubObjectWatch watch;
    watch.failSeeksFrom = 0;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage, watch), 1185);
}

// ---- Damaged and unusual summary streams --------------------------------------------------------------------------

TEST(WordSummary, CutAnywhereInFrontOfTheVersionIsDamaged) {
    Summary summary;
    summary.properties = {{applicationName, 16}};
    summary.sectionSize = 1;
    const std::string bytes = WithText(Bytes(summary), summary, 16, NameWith("6.0"));
    ASSERT_EQ(bytes.size(), 90U);
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const auto storage = StorageWith(bytes.substr(0, size), build4000);
        // Up to the end of the pair the stream is damaged. Behind it only the version is missing: the build decides.
        const FIID answer = size < 64 ? 1126 : size < 90 ? 1185 : 1082;
        EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), answer) << size << " bytes";
        EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage).size(), answer == 1185 ? 2U : 1U) << size << " bytes";
    }
}

TEST(WordSummary, CutBehindForStays1146) {
    const std::string bytes = SummaryOf(NameWith("for Windows 95"));
    const std::size_t endOfFor = bytes.size() - std::string(" Windows 95").size();
    for (std::size_t size = endOfFor; size < bytes.size(); ++size) {
        EXPECT_EQ(AnswerFor(bytes.substr(0, size), build4000), 1146) << size << " bytes";
    }
    EXPECT_EQ(AnswerFor(bytes, build4000), 1082);
    EXPECT_EQ(AnswerFor(bytes.substr(0, endOfFor - 1), build4000), 1185);
}

TEST(WordSummary, OfThreeBytesIsDamaged) {
    EXPECT_EQ(AnswerForSummaryAlone(FIBytes("FE FF 00")), 1126);
    EXPECT_EQ(AnswerForSummaryAlone(FIBytes("00*3")), 1126);
    EXPECT_EQ(AnswerForSummaryAlone(""), 1126);
}

TEST(WordSummary, ThatCannotBeReadIsDamaged) {
    const auto storage = StorageWith(SummaryOf(NameWith("9.0")), build4000);
    SubObjectWatch watch;
    watch.failReadsFrom = 0;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage, watch), 1126);
}

TEST(WordSummary, WithAnotherMarkStays1146) {
    for (const char* const bytes : {"00*100", "00*4", "FF FE 00 00", "00 00 FF FE", "00 00 FE FF", "FE FF 01 00",
                                    "FE FF 00 01", "FF FF 00 00", "FD FF 00 00", "FE FF FF FF", "FE 00 00 00"}) {
        const auto storage = StorageWith(FIBytes(bytes), WithBuild(0));
        EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage), 1146) << bytes;
        EXPECT_EQ(FINamesAskedFor(FIProbeWordStorage, *storage), std::vector<std::string>{summaryName}) << bytes;
    }
    Summary summary;
    summary.mark = 0x0001FFFE;
    summary.properties = {{applicationName, 16}};
    summary.sectionSize = 64;
    EXPECT_EQ(AnswerFor(WithText(Bytes(summary), summary, 16, NameWith("11.")), WithBuild(0)), 1146);
}

TEST(WordSummary, WithASectionSizeOf0Stays1146) {
    Summary summary;
    summary.sectionSize = 0;
    summary.properties = {{applicationName, 16}};
    const std::string bytes = WithText(Bytes(summary), summary, 16, NameWith("11."));
    EXPECT_EQ(AnswerFor(bytes, WithBuild(0)), 1146);
    EXPECT_EQ(AnswerFor(bytes.substr(0, 52), WithBuild(0)), 1146) << "the stream ends behind the size";
    EXPECT_EQ(AnswerFor(bytes.substr(0, 51), WithBuild(0)), 1126) << "the stream ends inside the size";
}

TEST(WordSummary, MayHaveItsSectionAnywhere) {
    for (const std::uint32_t offset : {48U, 49U, 51U, 100U, 2047U, 2048U, 5000U, 70000U}) {
        Summary summary;
        summary.sectionOffset = offset;
        summary.properties = {{applicationName, 16}};
        summary.sectionSize = 64;
        EXPECT_EQ(AnswerFor(WithText(Bytes(summary), summary, 16, NameWith("11.")), build4000), 1186) << offset;
    }
}

TEST(WordSummary, MayHaveItsSectionAtTheStart) {
    // The mark itself is then the section's size, and the pairs begin at 8.
    std::string bytes = FIBytes("FE FF 00 00 >8 d:18 d:40 >44 d:0 >63");
    bytes += "11.";  // 40 and 23 bytes further
    EXPECT_EQ(AnswerFor(bytes, build4000), 1186);
}

TEST(WordSummary, WithASectionBehindTheStreamIsDamaged) {
    for (const char* const offset : {"d:48", "d:49", "d:1000", "d:0x7FFFFFFF", "d:0x80000000", "d:0xFFFFFFFF"}) {
        EXPECT_EQ(AnswerFor(FIBytes(std::string("FE FF 00 00 >44 ") + offset), build4000), 1126) << offset;
    }
}

TEST(WordSummary, MayHaveTheValueAnywhere) {
    for (const std::uint32_t offset : {16U, 17U, 100U, 1977U, 1999U, 2000U, 3000U, 70000U}) {
        Summary summary;
        summary.properties = {{applicationName, offset}};
        summary.sectionSize = 64;
        EXPECT_EQ(AnswerFor(WithText(Bytes(summary), summary, offset, NameWith("11.")), build4000), 1186) << offset;
        EXPECT_EQ(AnswerFor(WithText(Bytes(summary), summary, offset, NameWith("for Windows 95")), build4000), 1082)
            << offset;
    }
}

TEST(WordSummary, MayHaveTheValueInFrontOfTheSection) {
    // The value's offset is a 32-bit number and wraps: 48 and 0xFFFFFFD0 make 0, and the version stands at 23.
    std::string bytes = FIBytes("FE FF 00 00 >23") + "11." + std::string(18, '\0');
    bytes += FIBytes("d:48 d:64 d:1 d:18 d:0xFFFFFFD0");
    ASSERT_EQ(bytes.size(), 64U);
    EXPECT_EQ(AnswerFor(bytes, build4000), 1186);
}

TEST(WordSummary, WithAValueBehindTheStreamLeavesItToTheBuild) {
    for (const char* const offset : {"d:16", "d:1000", "d:0x7FFFFF00"}) {
        const std::string notation = std::string("FE FF 00 00 >44 d:48 d:64 d:1 d:18 ") + offset;
        EXPECT_EQ(AnswerFor(FIBytes(notation), build4000), 1185) << offset;
    }
}

// ---- The walk over the properties ---------------------------------------------------------------------------------

// The answer for a section of this size, with so many other properties in front of the application name, which is of
// version 11 and so answers 1186 when it is found. The build value answers 1185.
FIID AnswerForWalk(std::uint32_t sectionSize, std::uint32_t others, bool withName) {
    Summary summary;
    summary.sectionSize = sectionSize;
    const std::uint32_t valueOffset = 8 + 8 * (others + 1);
    std::string bytes = Bytes(summary);
    const std::size_t firstPair = bytes.size();
    bytes.replace(firstPair - 4, 4, DWord(others + (withName ? 1 : 0)));
    bytes.resize(firstPair + std::size_t{8} * others, '\0');
    for (std::size_t pair = firstPair; pair < bytes.size(); pair += 8) bytes[pair] = static_cast<char>(title);
    if (withName) bytes += DWord(applicationName) + DWord(valueOffset);
    if (withName) bytes = WithText(bytes, summary, valueOffset, NameWith("11."));
    return AnswerFor(bytes, build4000);
}

struct WalkCase {
    const char* name;
    std::uint32_t sectionSize;
    std::uint32_t others;  // pairs in front of the application name
    bool withName;
    FIID answer;
};

class WordPropertyWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(WordPropertyWalk, Ends) {
    EXPECT_EQ(AnswerForWalk(GetParam().sectionSize, GetParam().others, GetParam().withName), GetParam().answer);
}

// Quirk: the section's size in bytes counts as a number of pairs, and the counter has 16 bits, so that it never reaches
// a size above 65,535.
const WalkCase walkCases[] = {
    // clang-format off
    {"Size0IsNoWalk",                              0,          0, true,  1146},
    {"Size1FindsTheFirst",                         1,          0, true,  1186},
    {"Size1DoesNotFindTheSecond",                  1,          1, true,  1146},
    {"Size2FindsTheSecond",                        2,          1, true,  1186},
    {"Size2DoesNotFindTheThird",                   2,          2, true,  1146},
    {"Size64FindsTheFifth",                        64,         4, true,  1186},
    {"Size64FindsThe64th",                         64,        63, true,  1186},
    {"Size64DoesNotFindThe65th",                   64,        64, true,  1146},
    {"Size1WithoutTheName",                        1,          1, false, 1146},
    {"Size2WithOnePairIsDamaged",                  2,          1, false, 1126},
    {"Size5WithFivePairsWithoutTheName",           5,          5, false, 1146},
    {"Size5WithFourPairsIsDamaged",                5,          4, false, 1126},
    {"SizeOfNoPairsIsDamaged",                     8,          0, false, 1126},
    {"Size256FindsThe256th",                       256,      255, true,  1186},
    {"Size256DoesNotFindThe257th",                 256,      256, true,  1146},
    {"Size32767DoesNotFindThe32768th",             32767,  32767, true,  1146},
    {"Size32768FindsThe32768th",                   32768,  32767, true,  1186},
    {"Size32768DoesNotFindThe32769th",             32768,  32768, true,  1146},
    {"Size32769DoesNotFindThe32770th",             32769,  32769, true,  1146},
    {"Size65535FindsThe65535th",                   65535,  65534, true,  1186},
    {"Size65535DoesNotFindThe65536th",             65535,  65535, true,  1146},
    {"Size65536FindsTheFirst",                     65536,      0, true,  1186},
    {"Size65536FindsThe65536th",                   65536,  65535, true,  1186},
    {"Size65536FindsThe65537thAsTheCounterWraps",  65536,  65536, true,  1186},
    {"Size65536FindsThe70000th",                   65536,  69999, true,  1186},
    {"Size65536WithoutTheNameIsDamaged",           65536,  65536, false, 1126},
    {"Size65536With70000OthersIsDamaged",          65536,  70000, false, 1126},
    {"Size65537IsNot1",                            65537,      1, true,  1186},
    {"Size65537FindsThe65538th",                   65537,  65537, true,  1186},
    {"Size65537WithoutTheNameIsDamaged",           65537,      1, false, 1126},
    {"Size80000001IsNot1",                         0x80000001, 1, true,  1186},
    {"SizeFFFFFFFF",                               0xFFFFFFFF, 9, true,  1186},
    {"SizeFFFFFFFFWithoutTheNameIsDamaged",        0xFFFFFFFF, 9, false, 1126},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Sizes, WordPropertyWalk, testing::ValuesIn(walkCases), FICaseName);

TEST(WordProperties, AreComparedInAll32Bits) {
    for (const std::uint32_t id : {17U, 19U, 0x0112U, 0x00010012U, 0x12000000U, 0x80000012U}) {
        Summary summary;
        summary.properties = {{id, 24}, {title, 24}};
        summary.sectionSize = 2;
        EXPECT_EQ(AnswerFor(WithText(Bytes(summary), summary, 24, NameWith("11.")), build4000), 1146) << id;
    }
}

TEST(WordProperties, EndAtTheFirstApplicationName) {
    Summary summary;
    summary.properties = {{applicationName, 32}, {applicationName, 80}};
    summary.sectionSize = 128;
    std::string bytes = WithText(Bytes(summary), summary, 32, NameWith("8.0"));
    bytes = WithText(bytes, summary, 80, NameWith("11."));
    EXPECT_EQ(AnswerFor(bytes, build4000), 1126);
}

TEST(WordProperties, AreReadBehindTheirListInTheValuesToo) {
    // One property by the section's own count, which is not looked at; the values hold what reads like a second pair.
    std::string bytes = FIBytes("FE FF 00 00 >44 d:48 d:64 d:1 d:2 d:16");
    bytes += FIBytes("d:18 d:24");
    Summary summary;
    bytes = WithText(bytes, summary, 24, NameWith("11."));
    EXPECT_EQ(AnswerFor(bytes, build4000), 1186);
}

TEST(WordProperties, AreReadWhateverTheSectionsOwnCount) {
    for (const char* const count : {"d:0", "d:1", "d:2", "d:0xFFFFFFFF"}) {
        std::string bytes = FIBytes(std::string("FE FF 00 00 >44 d:48 d:2 ") + count + " d:2 d:0 d:18 d:24");
        bytes = WithText(bytes, Summary(), 24, NameWith("11."));
        EXPECT_EQ(AnswerFor(bytes, build4000), 1186) << count;
    }
}

TEST(WordProperties, AreNotPairedAtAnOddPlace) {
    // 18 as a value's offset is no property 18.
    const std::string bytes = FIBytes("FE FF 00 00 >44 d:48 d:2 d:2 d:2 d:18 d:3 d:18 00*64");
    EXPECT_EQ(AnswerFor(bytes, build4000), 1146);
}

TEST(WordProperties, OfAWholeSmallStreamAreReadWithoutASeekThatWorks) {
    const auto storage = StorageWith(SummaryOf(NameWith("11.")), build4000);
    SubObjectWatch watch;
    watch.failSeeksFrom = 0;
    EXPECT_EQ(FIStorageAnswer(FIProbeWordStorage, *storage, watch), 1186);
}

// ---- Exhausted memory ---------------------------------------------------------------------------------------------

TEST(WordWithoutMemory, AnswersWhatStandsAtThatPoint) {
    const auto without = FIMakeStorage({{wordName, "DC A5 67 00"}});
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 0, *without), 1146);
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 1, *without), 1102);

    const auto empty = StorageWith("", build4000);
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 0, *empty), 1146);
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 1, *empty), 1126);

    const auto other = StorageWith(SummaryOf(NameWith("7.0")), WithBuild(0x6000));
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 0, *other), 1146);
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 1, *other), 1146)
        << "the reader over the second stream is missing";
    EXPECT_EQ(FIStorageAnswerWithBlocks(FIProbeWordStorage, 2, *other), 1186);
}

// ---- Through the whole system -------------------------------------------------------------------------------------

struct WholeCase {
    const char* name;
    const char* version;       // null: no summary stream
    const char* wordDocument;  // null: none
    FIID answer;
};

const WholeCase wholeCases[] = {
    // clang-format off
    {"NoStreams",      nullptr,           nullptr,              1146},
    {"Format103",      nullptr,           "DC A5 67 00",        1102},
    {"Format193",      nullptr,           "EC A5 C1 00",        1146},
    {"Version6",       "6.0",             "EC A5 C1 00 00 00",  1082},
    {"ForWindows95",   "for Windows 95",  "EC A5 C1 00 00 00",  1082},
    {"Version8",       "8.0",             "EC A5 C1 00 00 60",  1126},
    {"Version9",       "9.0",             "EC A5 C1 00 00 60",  1146},
    {"Version10",      "10.0",            "EC A5 C1 00 00 00",  1185},
    {"Version11",      "11.0",            "EC A5 C1 00 00 00",  1186},
    {"Build1FFF",      "12.0",            "EC A5 C1 00 FF 1F",  1126},
    {"Build2000",      "12.0",            "EC A5 C1 00 00 20",  1146},
    {"Build4000",      "12.0",            "EC A5 C1 00 00 40",  1185},
    {"Build6000",      "12.0",            "EC A5 C1 00 00 60",  1186},
    // clang-format on
};

std::unique_ptr<TestHandle> MakeWhole(const WholeCase& each, const char* classId) {
    auto storage = FIMakeStorage({}, classId);
    if (each.version != nullptr) storage->streams[summaryName] = SummaryOf(NameWith(each.version));
    if (each.wordDocument != nullptr) storage->streams[wordName] = FIBytes(each.wordDocument);
    return storage;
}

TEST(WordClass, LeadsToTheVersions) {
    for (const WholeCase& each : wholeCases) {
        SCOPED_TRACE(each.name);
        const auto storage = MakeWhole(each, wordClass);
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, wordRow);
        EXPECT_EQ(storage->reads, 0U);
    }
}

TEST(WordClass, IsNotNeededForAWordDocumentOfTheNewGeneration) {
    for (const WholeCase& each : wholeCases) {
        if (each.wordDocument == nullptr || each.answer == 1102) continue;  // these are not of the new generation
        SCOPED_TRACE(each.name);
        const auto storage = MakeWhole(each, "{00000000-0000-0000-0000-000000000000}");
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, dispatcherRow);
    }
}

TEST(WordClass, TellsTheVersionWhereTheNamesAloneWouldNot) {
    const auto storage = FIMakeStorage({{wordName, "DC A5 67 00"}});
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1082);
    storage->classId = FIClassId(wordClass);
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1102);
}

}  // namespace
