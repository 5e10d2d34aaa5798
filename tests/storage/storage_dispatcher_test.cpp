// The dispatcher of storages without a class identifier: the order of the names, the follow-up of each, the test for
// encrypted packages; and the rows of the signature table that decide by class identifier.
#include "storage/storage_dispatcher.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "catalogue/format_not_known.h"
#include "storage/sub_objects.h"
#include "support/case_name.h"

namespace {

using ::PrintTo;

FIID Dispatch(FIReader& reader) { return FIProbeStorage(reader, ""); }

constexpr const char* summaryName = "\005SummaryInformation";

// ---- The order of the names ---------------------------------------------------------------------------------------

// The names in the order in which they are tried; the first that opens ends the walk. The bytes are such that the
// answer is not 0.
struct NameRow {
    const char* name;
    std::uint32_t kind;
    const char* bytes;
    FIID answer;
    const char* followUp;  // the name that is asked for behind this one, or null
};

const NameRow nameRows[] = {
    // clang-format off
    {"PP40",                    IOSUB_STREAM,  "",                  1538, nullptr},
    {"EncryptedPackage",        IOSUB_STREAM,  "",                  1819, "WordDocument"},
    {"PP97_DUALSTORAGE",        IOSUB_STORAGE, "",                  1592, nullptr},
    {"PowerPoint Document",     IOSUB_STREAM,  "03 00",             1543, nullptr},
    {"WordDocument",            IOSUB_STREAM,  "EC A5 69 00",       1082, nullptr},
    {"NOVELL_MAIN",             IOSUB_STREAM,  "",                  1433, nullptr},
    {"PerfectOffice_MAIN",      IOSUB_STREAM,  "00 00 02 00 07 10", 1444, nullptr},
    {"Book",                    IOSUB_STREAM,  "",                  1424, nullptr},
    {"BOOK",                    IOSUB_STREAM,  "",                  1424, nullptr},
    {"Workbook",                IOSUB_STREAM,  "00*12",             1446, "Workbook"},
    {"NativeContent_MAIN",      IOSUB_STREAM,  "00*8",              1445, nullptr},
    {"FileHeader",              IOSUB_STREAM,  R"("HWP Docu")",     1180, nullptr},
    {"MN0",                     IOSUB_STREAM,  "",                  1105, nullptr},
    {"__properties_version1.0", IOSUB_STREAM,  "",                  1143, nullptr},
    // clang-format on
};
constexpr std::size_t nameRowCount = std::size(nameRows);
constexpr std::size_t encryptedRow = 1;
constexpr std::size_t wordRow = 4;
constexpr FIID encryptedWordAnswer = 1313;

void Add(TestHandle& storage, const NameRow& row) {
    (row.kind == IOSUB_STORAGE ? storage.storages : storage.streams)[row.name] = FIBytes(row.bytes);
}

// The names that are asked for when the row with this index is the first that opens.
std::vector<std::string> NamesUpTo(std::size_t index) {
    std::vector<std::string> names;
    for (std::size_t row = 0; row <= index; ++row) names.emplace_back(nameRows[row].name);
    if (nameRows[index].followUp != nullptr) names.emplace_back(nameRows[index].followUp);
    return names;
}

std::vector<std::string> AllNames() {
    std::vector<std::string> names;
    for (const NameRow& row : nameRows) names.emplace_back(row.name);
    return names;
}

TEST(StorageNames, AreFourteen) { EXPECT_EQ(nameRowCount, 14U); }

TEST(StorageNames, EachAloneGivesItsAnswerAndNoLaterNameIsAskedFor) {
    for (std::size_t index = 0; index < nameRowCount; ++index) {
        SCOPED_TRACE(nameRows[index].name);
        const auto storage = FIMakeStorage({});
        Add(*storage, nameRows[index]);
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), nameRows[index].answer);
        EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), NamesUpTo(index));
    }
}

TEST(StorageNames, TheFirstOfAnyTwoWinsAndTheOtherIsNotAskedFor) {
    for (std::size_t first = 0; first < nameRowCount; ++first) {
        for (std::size_t second = first + 1; second < nameRowCount; ++second) {
            SCOPED_TRACE(std::string(nameRows[first].name) + " and " + nameRows[second].name);
            const auto storage = FIMakeStorage({});
            Add(*storage, nameRows[first]);
            Add(*storage, nameRows[second]);
            const bool encryptedWord = first == encryptedRow && second == wordRow;
            EXPECT_EQ(FIStorageAnswer(Dispatch, *storage),
                      encryptedWord ? encryptedWordAnswer : nameRows[first].answer);
            EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), NamesUpTo(first));
        }
    }
}

TEST(StorageNames, TheFirstOfAllWins) {
    const auto storage = FIMakeStorage({});
    for (const NameRow& row : nameRows) Add(*storage, row);
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 1538);
    EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), std::vector<std::string>{"PP40"});
}

TEST(StorageNames, AnAnswerOf0EndsTheWalkToo) {
    for (const std::size_t first : {3U, 4U, 6U, 10U, 11U}) {  // the names whose stream must hold something
        for (std::size_t second = first + 1; second < nameRowCount; ++second) {
            SCOPED_TRACE(std::string(nameRows[first].name) + " and " + nameRows[second].name);
            const auto storage = FIMakeStorage({{nameRows[first].name, ""}});
            Add(*storage, nameRows[second]);
            EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0);
            EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), NamesUpTo(first));
        }
    }
}

TEST(StorageNames, AreAllAskedForWhenNoneIsThereEachWithItsKind) {
    const auto storage = FIMakeStorage({{"Contents", "00*64"}, {summaryName, "00*64"}});
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0);
    EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), AllNames());
    SubObjectWatch watch;
    static_cast<void>(FIStorageAnswer(Dispatch, *storage, watch));
    ASSERT_EQ(watch.openings.size(), nameRowCount);
    for (std::size_t index = 0; index < nameRowCount; ++index) {
        EXPECT_EQ(watch.openings[index].kind, nameRows[index].kind) << nameRows[index].name;
    }
}

TEST(StorageNames, AreNotFoundAsTheOtherKind) {
    for (const NameRow& row : nameRows) {
        SCOPED_TRACE(row.name);
        const auto storage = FIMakeStorage({});
        (row.kind == IOSUB_STORAGE ? storage->streams : storage->storages)[row.name] = FIBytes(row.bytes);
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0);
        EXPECT_EQ(FINamesAskedFor(Dispatch, *storage), AllNames());
    }
}

TEST(StorageNames, OtherNamesAreNotLookedAt) {
    for (const char* const name : {"PP4", "PP400", "PP97", "EncryptedPackages", "Document", "1Table", "Contents", "MN1",
                                   "__properties_version1.1", "CONTENTS", "VisioDocument", "DesignerDoc"}) {
        EXPECT_EQ(FIStorageAnswer(Dispatch, {{name, "03 00 6A 00*60"}}), 0) << name;
    }
}

TEST(StorageNames, AreNotAskedForWhenTheHandleIsNoStorage) {
    for (const NameRow& row : nameRows) {
        SCOPED_TRACE(row.name);
        const auto handle = FIMakeStorage({});
        Add(*handle, row);
        handle->isStorage = false;
        EXPECT_EQ(FIStorageAnswer(Dispatch, *handle), 0);
        EXPECT_TRUE(handle->opened.empty());
    }
}

TEST(StorageNames, OnlyTheEncryptedPackageHasASecondStreamOpenBesideIt) {
    const auto storage = FIMakeStorage({});
    for (const NameRow& row : nameRows) {
        storage->streams.clear();
        storage->storages.clear();
        Add(*storage, row);
        SubObjectWatch watch;
        static_cast<void>(FIStorageAnswer(Dispatch, *storage, watch));
        for (const SubObjectOpening& opening : watch.openings) {
            const bool second = std::string(row.name) == "EncryptedPackage" && opening.name == "WordDocument";
            EXPECT_EQ(opening.siblingsOpen, second ? 1U : 0U) << row.name << ": " << opening.name;
        }
        storage->position = 0;
    }
}

TEST(StorageNames, SomeAnswerWithoutAReadOfTheirStream) {
    for (const char* const name :
         {"PP40", "EncryptedPackage", "NOVELL_MAIN", "Book", "BOOK", "MN0", "__properties_version1.0"}) {
        SCOPED_TRACE(name);
        const auto storage = FIMakeStorage({{name, "00*64"}});
        SubObjectWatch watch;
        EXPECT_NE(FIStorageAnswer(Dispatch, *storage, watch), 0);
        ASSERT_EQ(watch.closings.size(), 1U);
        EXPECT_EQ(watch.closings.front().name, name);
        EXPECT_EQ(watch.closings.front().reads, 0U);
    }
}

TEST(StorageNames, TheSubStorageIsClosedUnread) {
    const auto storage = FIMakeStorage({});
    storage->storages["PP97_DUALSTORAGE"] = "";
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), 1592);
    ASSERT_EQ(watch.closings.size(), 1U);
    EXPECT_EQ(watch.closings.front().reads, 0U);
}

TEST(StorageNames, TheWorkbookIsClosedUnreadBeforeItsOwnProbeOpensIt) {
    const auto storage = FIMakeStorage({{"Workbook", "00*12"}});
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), 1446);
    ASSERT_EQ(watch.closings.size(), 2U);
    EXPECT_EQ(watch.closings.front().reads, 0U);
    EXPECT_EQ(watch.openings.back().siblingsOpen, 0U);
}

// ---- The follow-ups -----------------------------------------------------------------------------------------------

class StorageFollowUps : public testing::TestWithParam<StorageCase> {};

TEST_P(StorageFollowUps, Answer) { EXPECT_EQ(FIStorageAnswer(Dispatch, GetParam().streams), GetParam().answer); }

const StorageCase presentationCases[] = {
    // clang-format off
    {"Empty",                   {{"PowerPoint Document", ""}},             0},
    {"OneByte",                 {{"PowerPoint Document", "03"}},           0},
    {"Word3",                   {{"PowerPoint Document", "03 00"}},     1543},
    {"Word3AndMore",            {{"PowerPoint Document", "03 00 FF*9"}}, 1543},
    {"Word2",                   {{"PowerPoint Document", "02 00"}},     1600},
    {"Word4",                   {{"PowerPoint Document", "04 00"}},     1600},
    {"Word0",                   {{"PowerPoint Document", "00 00"}},     1600},
    {"HighByteCounts",          {{"PowerPoint Document", "03 01"}},     1600},
    {"LowByteComesFirst",       {{"PowerPoint Document", "00 03"}},     1600},
    {"WordFFFF",                {{"PowerPoint Document", "FF FF"}},     1600},
    {"AnyRecordHeader",         {{"PowerPoint Document", "0F 00 E8 03"}}, 1600},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Presentation, StorageFollowUps, testing::ValuesIn(presentationCases), FICaseName);

// The summary stream is empty, which the finer probe answers with 1126: so 1126 tells that the storage was handed on.
const StorageCase wordCases[] = {
    // clang-format off
    {"Empty",                       {{summaryName, ""}, {"WordDocument", ""}},                  0},
    {"OneByte",                     {{summaryName, ""}, {"WordDocument", "EC"}},                0},
    {"TwoBytes",                    {{summaryName, ""}, {"WordDocument", "EC A5"}},             0},
    {"ThreeBytes",                  {{summaryName, ""}, {"WordDocument", "EC A5 6A"}},          0},
    {"ThirdByte69",                 {{summaryName, ""}, {"WordDocument", "EC A5 69 00"}},    1082},
    {"ThirdByte6A",                 {{summaryName, ""}, {"WordDocument", "EC A5 6A 00"}},    1126},
    {"ThirdByte69AndMore",          {{summaryName, ""}, {"WordDocument", "EC A5 69 00 FF*9"}}, 1082},
    {"ThirdByte0",                  {{summaryName, ""}, {"WordDocument", "EC A5 00 00"}},    1082},
    {"ThirdByte80IsUnsigned",       {{summaryName, ""}, {"WordDocument", "00 00 80 00"}},    1126},
    {"ThirdByteFF",                 {{summaryName, ""}, {"WordDocument", "00 00 FF 00"}},    1126},
    {"ThirdByteC1OfTheNewNumber",   {{summaryName, ""}, {"WordDocument", "EC A5 C1 00"}},    1126},
    {"AllZero",                     {{summaryName, ""}, {"WordDocument", "00 00 00 00"}},    1082},
    {"Value69000000",               {{summaryName, ""}, {"WordDocument", "00 00 00 69"}},    1082},
    {"Value69000001",               {{summaryName, ""}, {"WordDocument", "01 00 00 69"}},    1126},
    {"Value69000100",               {{summaryName, ""}, {"WordDocument", "00 01 00 69"}},    1126},
    {"Value69010000",               {{summaryName, ""}, {"WordDocument", "00 00 01 69"}},    1126},
    {"Value6869FFFF",               {{summaryName, ""}, {"WordDocument", "FF FF 69 68"}},    1082},
    {"Value686A0000",               {{summaryName, ""}, {"WordDocument", "00 00 6A 68"}},    1126},
    {"Value68FFFFFF",               {{summaryName, ""}, {"WordDocument", "FF FF FF 68"}},    1126},
    {"Value6A000000",               {{summaryName, ""}, {"WordDocument", "00 00 00 6A"}},    1126},
    {"Value80000000IsUnsigned",     {{summaryName, ""}, {"WordDocument", "00 00 00 80"}},    1126},
    {"ValueFF690000",               {{summaryName, ""}, {"WordDocument", "00 00 69 FF"}},    1126},
    {"ValueFFFFFFFF",               {{summaryName, ""}, {"WordDocument", "FF FF FF FF"}},    1126},
    {"NewNumberWithoutSummary",     {{"WordDocument", "EC A5 6A 00"}},                       1146},
    {"OldNumberWithoutSummary",     {{"WordDocument", "EC A5 69 00"}},                       1082},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Word, StorageFollowUps, testing::ValuesIn(wordCases), FICaseName);

const StorageCase perfectOfficeCases[] = {
    // clang-format off
    {"Empty",                     {{"PerfectOffice_MAIN", ""}},                                     0},
    {"Bytes1",                    {{"PerfectOffice_MAIN", "00"}},                                   0},
    {"Bytes3",                    {{"PerfectOffice_MAIN", "00 00 02"}},                             0},
    {"Bytes4",                    {{"PerfectOffice_MAIN", "00 00 02 00"}},                          0},
    {"Bytes5",                    {{"PerfectOffice_MAIN", "00 00 02 00 07"}},                       0},
    {"Version",                   {{"PerfectOffice_MAIN", "00 00 02 00 07 10"}},                 1444},
    {"VersionAndMore",            {{"PerfectOffice_MAIN", "00 00 02 00 07 10 C9 00 FF FF"}},     1444},
    {"VersionBytesSwapped",       {{"PerfectOffice_MAIN", "00 00 02 00 10 07"}},                    0},
    {"Version1006",               {{"PerfectOffice_MAIN", "00 00 02 00 06 10"}},                    0},
    {"Version1008",               {{"PerfectOffice_MAIN", "00 00 02 00 08 10"}},                    0},
    {"Version1107",               {{"PerfectOffice_MAIN", "00 00 02 00 07 11"}},                    0},
    {"Version0",                  {{"PerfectOffice_MAIN", "00 00 02 00 00 00"}},                    0},
    {"HeaderBytesSwapped",        {{"PerfectOffice_MAIN", "00 02 00 00 07 10"}},                    0},
    {"Header0201",                {{"PerfectOffice_MAIN", "00 00 02 01 07 10"}},                    0},
    {"Header0300",                {{"PerfectOffice_MAIN", "00 00 03 00 07 10"}},                    0},
    {"Header01000200",            {{"PerfectOffice_MAIN", "01 00 02 00 07 10"}},                    0},
    {"Header0",                   {{"PerfectOffice_MAIN", "00*10"}},                                0},
    {"WpcBytes4",                 {{"PerfectOffice_MAIN", R"(FF "WPC")"}},                          0},
    {"WpcBytes5",                 {{"PerfectOffice_MAIN", R"(FF "WPC" 0A)"}},                       0},
    {"WpcBytes6",                 {{"PerfectOffice_MAIN", R"(FF "WPC" 0A*2)"}},                  1555},
    {"WpcBytes7",                 {{"PerfectOffice_MAIN", R"(FF "WPC" 0A*3)"}},                  1555},
    {"WpcBytes8",                 {{"PerfectOffice_MAIN", R"(FF "WPC" 0A*4)"}},                  1555},
    {"WpcBytes9",                 {{"PerfectOffice_MAIN", R"(FF "WPC" 0A*5)"}},                  1555},
    {"WpcByte9Is10",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 0A)"}},               1107},
    {"WpcByte9Is22",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 16)"}},               1556},
    {"WpcByte9Is9",               {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 09)"}},               1555},
    {"WpcByte9Is11",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 0B)"}},               1555},
    {"WpcByte9Is21",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 15)"}},               1555},
    {"WpcByte9Is23",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 17)"}},               1555},
    {"WpcByte9Is0",               {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 00)"}},               1555},
    {"WpcByte9IsFF",              {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 FF)"}},               1555},
    {"WpcByte8And10DoNotCount",   {{"PerfectOffice_MAIN", R"(FF "WPC" 00*4 0A 00 16)"}},         1555},
    {"WpcByte9Is10AndMore",       {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 0A 16*9)"}},          1107},
    {"WpcWithTheVersion1007",     {{"PerfectOffice_MAIN", R"(FF "WPC" 07 10 00*3 16)"}},         1556},
    {"WpdIsNotKnown",             {{"PerfectOffice_MAIN", R"(FF "WPD" 00*5 0A)"}},                  0},
    {"WpcInSmallLetters",         {{"PerfectOffice_MAIN", R"(FF "wpc" 00*5 0A)"}},                  0},
    {"WpcBehind00",               {{"PerfectOffice_MAIN", R"(00 "WPC" 00*5 0A)"}},                  0},
    {"WpcBackwards",              {{"PerfectOffice_MAIN", R"("CPW" FF 00*5 0A)"}},                  0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(PerfectOffice, StorageFollowUps, testing::ValuesIn(perfectOfficeCases), FICaseName);

const StorageCase nativeContentCases[] = {
    // clang-format off
    {"Empty",              {{"NativeContent_MAIN", ""}},                                   0},
    {"Bytes1",             {{"NativeContent_MAIN", "01"}},                                 0},
    {"Bytes4",             {{"NativeContent_MAIN", "01 00 0E 00"}},                        0},
    {"Bytes7",             {{"NativeContent_MAIN", R"(01 00 0E 00 "QPW")"}},               0},
    {"BothValues",         {{"NativeContent_MAIN", R"(01 00 0E 00 "QPW9")"}},           1445},
    {"BothValuesAndMore",  {{"NativeContent_MAIN", R"(01 00 0E 00 "QPW9" 00)"}},        1445},
    {"AnyEightBytes",      {{"NativeContent_MAIN", "DE AD BE EF 12 34 56 78"}},         1445},
    {"EightZeros",         {{"NativeContent_MAIN", "00*8"}},                            1445},
    {"EightTimesFF",       {{"NativeContent_MAIN", "FF*8"}},                            1445},
    {"FirstValueAlone",    {{"NativeContent_MAIN", "01 00 0E 00 00*4"}},                1445},
    {"SecondValueAlone",   {{"NativeContent_MAIN", R"(00*4 "QPW9")"}},                  1445},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(NativeContent, StorageFollowUps, testing::ValuesIn(nativeContentCases), FICaseName);

const StorageCase fileHeaderCases[] = {
    // clang-format off
    {"Text",                 {{"FileHeader", R"("HWP Docu")"}},            1180},
    {"TextAndMore",          {{"FileHeader", R"("HWP Document File")"}},   1180},
    {"SmallD",               {{"FileHeader", R"("HWP docu")"}},               0},
    {"SmallHwp",             {{"FileHeader", R"("hwp Docu")"}},               0},
    {"BytesReversed",        {{"FileHeader", R"(" PWHucoD")"}},               0},
    {"SecondHalfFirst",      {{"FileHeader", R"("DocuHWP ")"}},               0},
    {"BehindAZero",          {{"FileHeader", R"(00 "HWP Docu")"}},            0},
    {"Zeros",                {{"FileHeader", "00*256"}},                      0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(FileHeader, StorageFollowUps, testing::ValuesIn(fileHeaderCases), FICaseName);

TEST(StorageFollowUp, FileHeaderNeedsAllItsEightBytes) {
    const std::string text = "HWP Docu";
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto storage = FIMakeStorage({});
        storage->streams["FileHeader"] = text.substr(0, index);
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0) << index << " bytes";
        std::string changed = text;
        changed[index] = static_cast<char>(changed[index] ^ 0x01);
        storage->streams["FileHeader"] = changed + "ment File";
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0) << "byte " << index << " changed";
    }
}

TEST(StorageFollowUp, PerfectOfficeVersionNeedsAllItsSixBytes) {
    const std::string header = FIBytes("00 00 02 00 07 10");
    for (std::size_t index = 0; index < header.size(); ++index) {
        const auto storage = FIMakeStorage({});
        storage->streams["PerfectOffice_MAIN"] = header.substr(0, index);
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0) << index << " bytes";
        std::string changed = header;
        changed[index] = static_cast<char>(changed[index] ^ 0x80);
        storage->streams["PerfectOffice_MAIN"] = changed + std::string(8, '\n');
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 0) << "byte " << index << " changed";
    }
}

TEST(StorageFollowUp, NativeContentNeedsEightBytesOfAnyKind) {
    for (std::size_t size = 0; size <= 9; ++size) {
        const auto storage = FIMakeStorage({});
        storage->streams["NativeContent_MAIN"] = std::string(size, 'x');
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), size < 8 ? 0 : 1445) << size << " bytes";
    }
}

TEST(StorageFollowUp, AllThirdBytesOfTheWordDocument) {
    for (std::uint32_t third = 0; third <= 0xFF; ++third) {
        const auto storage = FIMakeStorage({{summaryName, ""}});
        storage->streams["WordDocument"] = std::string("\xEC\xA5") + static_cast<char>(third) + '\0';
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), third > 0x69 ? 1126 : 1082) << "third byte " << third;
    }
}

TEST(StorageFollowUp, AllFourthBytesOfTheWordDocument) {
    for (std::uint32_t fourth = 0; fourth <= 0xFF; ++fourth) {
        const auto storage = FIMakeStorage({{summaryName, ""}});
        storage->streams["WordDocument"] = std::string("\xEC\xA5\x65") + static_cast<char>(fourth);
        // 0x69 in the highest byte is above 0x69000000 here, as the lower bytes are not 0.
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), fourth >= 0x69 ? 1126 : 1082) << "fourth byte " << fourth;
    }
}

TEST(StorageFollowUp, HandsANewWordDocumentOnWithNothingOpen) {
    const auto storage = FIMakeStorage({{"WordDocument", "EC A5 C1 00"}});
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), 1146);
    std::vector<std::string> names = NamesUpTo(wordRow);
    names.emplace_back(summaryName);
    names.emplace_back("WordDocument");
    EXPECT_EQ(watch.Names(), names);
    for (const SubObjectOpening& opening : watch.openings) EXPECT_EQ(opening.siblingsOpen, 0U) << opening.name;
}

TEST(StorageFollowUp, AStreamThatCannotBeReadIsAnEmptyStream) {
    const struct {
        const char* name;
        const char* bytes;
        FIID answer;
    } cases[] = {
        // clang-format off
        {"PowerPoint Document", "03 00",                  0},
        {"WordDocument",        "EC A5 69 00",            0},
        {"PerfectOffice_MAIN",  "00 00 02 00 07 10",      0},
        {"NativeContent_MAIN",  "00*8",                   0},
        {"FileHeader",          R"("HWP Docu")",          0},
        {"Workbook",            "00*12",               1438},
        {"PP40",                "00",                  1538},
        {"EncryptedPackage",    "00",                  1819},
        {"Book",                "00",                  1424},
        // clang-format on
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const auto storage = FIMakeStorage({{each.name, each.bytes}});
        SubObjectWatch watch;
        watch.failReadsFrom = 0;
        EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), each.answer);
    }
}

TEST(StorageFollowUp, TheSeekInPerfectOfficeIsNotTested) {
    // The seek to 9 stays in the buffer, so a handle that can't seek makes no difference.
    const auto storage = FIMakeStorage({{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 0A)"}});
    SubObjectWatch watch;
    watch.failSeeksFrom = 0;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), 1107);

    // Behind a stream of 8 bytes it leaves the buffer and fails; the stream has no byte there either.
    const auto shorter = FIMakeStorage({{"PerfectOffice_MAIN", R"(FF "WPC" 00*4)"}});
    SubObjectWatch shorterWatch;
    shorterWatch.failSeeksFrom = 0;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *shorter, shorterWatch), 1555);
}

// ---- Encrypted packages -------------------------------------------------------------------------------------------

struct ExtensionCase {
    const char* name;
    const char* extension;
    FIID answer;  // without a stream WordDocument
};

class EncryptedPackages : public testing::TestWithParam<ExtensionCase> {
 protected:
    static FIID Probe(FIReader& reader) { return FIProbeStorage(reader, GetParam().extension); }
};

TEST_P(EncryptedPackages, AreToldByTheExtension) {
    const auto storage = FIMakeStorage({{"EncryptedPackage", "00*64"}});
    EXPECT_EQ(FIStorageAnswer(Probe, *storage), GetParam().answer);
    EXPECT_EQ(FINamesAskedFor(Probe, *storage), NamesUpTo(encryptedRow));
}

TEST_P(EncryptedPackages, AreToldByAWordDocumentWhateverTheExtension) {
    for (const char* const bytes : {"", "EC A5 C1 00", "EC A5 69 00"}) {
        const auto storage = FIMakeStorage({{"EncryptedPackage", "00*64"}, {"WordDocument", bytes}});
        EXPECT_EQ(FIStorageAnswer(Probe, *storage), encryptedWordAnswer);
        EXPECT_EQ(FINamesAskedFor(Probe, *storage), NamesUpTo(encryptedRow));
    }
}

TEST_P(EncryptedPackages, HaveNoWordDocumentInASubStorageOfThatName) {
    const auto storage = FIMakeStorage({{"EncryptedPackage", "00*64"}});
    storage->storages["WordDocument"] = "";
    EXPECT_EQ(FIStorageAnswer(Probe, *storage), GetParam().answer);
}

const ExtensionCase extensionCases[] = {
    // clang-format off
    {"PPTX",                  "PPTX", 1637},
    {"POTX",                  "POTX", 1637},
    {"XLSX",                  "XLSX", 1456},
    {"XLTX",                  "XLTX", 1456},
    {"DOCX",                  "DOCX", 1313},
    {"DOTX",                  "DOTX", 1313},
    {"SmallPptx",             "pptx", 1637},
    {"SmallPotx",             "potx", 1637},
    {"SmallXlsx",             "xlsx", 1456},
    {"SmallXltx",             "xltx", 1456},
    {"SmallDocx",             "docx", 1313},
    {"SmallDotx",             "dotx", 1313},
    {"MixedPpTx",             "PpTx", 1637},
    {"MixedpOTX",             "pOTX", 1637},
    {"MixedXlsX",             "XlsX", 1456},
    {"MixedxLTx",             "xLTx", 1456},
    {"MixedDocX",             "DocX", 1313},
    {"MixeddoTX",             "doTX", 1313},
    {"None",                  "",     1819},
    {"PPT",                   "PPT",  1819},
    {"POT",                   "POT",  1819},
    {"XLS",                   "XLS",  1819},
    {"XLT",                   "XLT",  1819},
    {"DOC",                   "DOC",  1819},
    {"DOT",                   "DOT",  1819},
    {"PPTM",                  "PPTM", 1819},
    {"XLSM",                  "XLSM", 1819},
    {"XLSB",                  "XLSB", 1819},
    {"DOCM",                  "DOCM", 1819},
    {"DOTM",                  "DOTM", 1819},
    {"PPSX",                  "PPSX", 1819},
    {"DOCY",                  "DOCY", 1819},
    {"DOCW",                  "DOCW", 1819},
    {"EOCX",                  "EOCX", 1819},
    {"COCX",                  "COCX", 1819},
    {"X",                     "X",    1819},
    {"OCX",                   "OCX",  1819},
    {"DOCUmentCutToFour",     "DOCU", 1819},
    {"BlankInFront",          " DOC", 1819},
    {"DigitForLetter",        "D0CX", 1819},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Extensions, EncryptedPackages, testing::ValuesIn(extensionCases), FICaseName);

TEST(EncryptedPackage, StaysOpenUnreadWhileTheWordDocumentIsLookedFor) {
    const auto storage = FIMakeStorage({{"EncryptedPackage", "00*64"}, {"WordDocument", "EC A5 C1 00"}});
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage, watch), encryptedWordAnswer);
    ASSERT_EQ(watch.openings.size(), 3U);
    EXPECT_EQ(watch.openings[2].kind, static_cast<std::uint32_t>(IOSUB_STREAM));
    EXPECT_EQ(watch.openings[2].siblingsOpen, 1U);
    ASSERT_EQ(watch.closings.size(), 2U);
    EXPECT_EQ(watch.closings[0].name, "WordDocument");
    EXPECT_EQ(watch.closings[1].name, "EncryptedPackage");
    for (const SubObjectClosing& closing : watch.closings) EXPECT_EQ(closing.reads, 0U) << closing.name;
}

TEST(EncryptedPackage, IsHiddenByPp40AndHidesBook) {
    EXPECT_EQ(FIStorageAnswer(Dispatch, {{"PP40", ""}, {"EncryptedPackage", ""}}), 1538);
    const auto storage = FIMakeStorage({{"EncryptedPackage", ""}, {"Book", ""}});
    EXPECT_EQ(FIStorageAnswer(Dispatch, *storage), 1819);
    EXPECT_EQ(std::count(storage->opened.begin(), storage->opened.end(), "Book"), 0);
}

// ---- Exhausted memory ---------------------------------------------------------------------------------------------

TEST(StorageWithoutMemory, AnswersZeroWhereAStreamIsToBeRead) {
    for (const std::size_t index : {3U, 4U, 6U, 10U, 11U}) {
        EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 0, {{nameRows[index].name, nameRows[index].bytes}}), 0)
            << nameRows[index].name;
    }
}

TEST(StorageWithoutMemory, AnswersByTheNameWhereNothingIsRead) {
    for (const std::size_t index : {0U, 1U, 5U, 7U, 8U, 12U, 13U}) {
        EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 0, {{nameRows[index].name, ""}}), nameRows[index].answer)
            << nameRows[index].name;
    }
    EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 0, {{"EncryptedPackage", ""}, {"WordDocument", ""}}),
              encryptedWordAnswer);
}

TEST(StorageWithoutMemory, AnswersAsTheWorkbookProbeDoes) {
    EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 0, {{"Workbook", "00*12"}}), 1438);
}

TEST(StorageWithoutMemory, AnswersAsTheWordProbeDoesBehindTheFollowUp) {
    EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 0, {{"WordDocument", "EC A5 C1 00"}, {summaryName, ""}}), 0);
    EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 1, {{"WordDocument", "EC A5 C1 00"}, {summaryName, ""}}), 1146);
    EXPECT_EQ(FIStorageAnswerWithBlocks(Dispatch, 2, {{"WordDocument", "EC A5 C1 00"}, {summaryName, ""}}), 1126);
}

// ---- Through the whole system: storages without a class identifier ------------------------------------------------

// The class identifier decides nothing and no name is looked for: the file is left to its bytes.
void ExpectByteRow(TestHandle& handle) {
    const FIVerdict verdict = FIIdentifyHandle(handle);
    EXPECT_EQ(verdict.fiid, byteRowAnswer);
    EXPECT_EQ(verdict.row, byteRow);
    EXPECT_TRUE(handle.opened.empty());
}

TEST(ZeroClass, LeadsToTheNames) {
    for (std::size_t index = 0; index < nameRowCount; ++index) {
        SCOPED_TRACE(nameRows[index].name);
        const auto storage = FIMakeStorage({});
        Add(*storage, nameRows[index]);
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, nameRows[index].answer);
        EXPECT_EQ(verdict.row, dispatcherRow);
        EXPECT_EQ(storage->opened, NamesUpTo(index));
    }
}

TEST(ZeroClass, ReadsNothingOfTheStorageItself) {
    const auto storage = FIMakeStorage({{"PP40", ""}});
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1538);
    EXPECT_EQ(storage->reads, 0U);
}

TEST(ZeroClass, GoesOnThroughTheTableWhenNoNameDecides) {
    for (const char* const bytes : {byteRowBytes, ""}) {
        for (const char* const name : {"Contents", "PowerPoint Document", "WordDocument", "PerfectOffice_MAIN",
                                       "NativeContent_MAIN", "FileHeader"}) {
            SCOPED_TRACE(name);
            const auto storage = FIMakeStorage({{name, ""}});
            storage->bytes = FIBytes(bytes);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, storage->bytes.empty() ? formatNotKnown : byteRowAnswer);
            EXPECT_EQ(verdict.row, storage->bytes.empty() ? 0 : byteRow);
        }
    }
}

TEST(ZeroClass, NeverLeadsToTextIdentification) {
    const auto storage = FIMakeStorage({});
    storage->bytes = "Dear reader, this is a letter.\n";
    const FIVerdict verdict = FIIdentifyHandle(*storage);
    EXPECT_EQ(verdict.fiid, formatNotKnown);
    EXPECT_EQ(verdict.row, 0);
    storage->isStorage = false;  // the same bytes in a plain file
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 4022);
}

TEST(ZeroClass, IsNothingWhenItCannotBeHadOrTheHandleIsNoStorage) {
    for (const bool isStorage : {true, false}) {
        const auto handle = FIMakeStorage({{"PP40", ""}});
        handle->isStorage = isStorage;
        handle->hasClassId = false;
        ExpectByteRow(*handle);
    }
}

TEST(ZeroClass, IsZeroInAllItsBytes) {
    for (std::size_t index = 0; index < 16; ++index) {
        const auto storage = FIMakeStorage({{"PP40", ""}});
        storage->classId[index] = '\x80';
        SCOPED_TRACE(index);
        ExpectByteRow(*storage);
    }
}

TEST(ZeroClass, TakesTheExtensionOfAnEncryptedPackageFromTheName) {
    const struct {
        const char* name;
        FIID answer;
    } cases[] = {
        // clang-format off
        {"slides.pptx",      1637},
        {"slides.POTX",      1637},
        {"sheet.XlsX",       1456},
        {"sheet.xltx",       1456},
        {"letter.docx",      1313},
        {"letter.DOTX",      1313},
        {"a.b.docx",         1313},
        {".docx",            1313},
        {"letter.docxx",     1313},  // an extension is cut to four characters
        {"letter.docx.bak",  1819},
        {"letter.doc",       1819},
        {"letter.docx.",     1819},
        {"docx",             1819},
        {"letter.docm",      1819},
        {"",                 1819},
        // clang-format on
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const auto storage = FIMakeStorage({{"EncryptedPackage", ""}});
        storage->name = each.name;
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, dispatcherRow);
        storage->streams["WordDocument"] = "";
        EXPECT_EQ(FIIdentifyHandle(*storage).fiid, encryptedWordAnswer);
    }
}

TEST(ZeroClass, TakesTheExtensionOfAWideNameToo) {
    const auto storage = FIMakeStorage({{"EncryptedPackage", ""}});
    storage->wideName = u"\u00E4rger.xlsx";
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1456);
}

// ---- Through the whole system: the rows of class identifiers ------------------------------------------------------

// The answer and the deciding row of a storage of each class, without any stream.
struct ClassRow {
    std::uint16_t row;
    const char* classId;
    FIID answer;
    std::uint16_t decidingRow;
    bool looksInside;  // a routine decides
};

const ClassRow classRows[] = {
    // clang-format off
    { 1_row, "{C20CF9D1-85AE-11D1-AAB4-006097DA561A}", 1165,  1_row, false},
    { 2_row, "{C6A5B861-85D6-11D1-89CB-008029E4B0B1}", 1449,  2_row, false},
    { 3_row, "{565C7221-85BC-11D1-89D0-008029E4B0B1}", 1610,  3_row, false},
    { 4_row, "{00020906-0000-0000-C000-000000000046}", 1146,  4_row, true},
    { 5_row, "{00020900-0000-0000-C000-000000000046}", 1082,  5_row, true},
    { 6_row, "{00020810-0000-0000-C000-000000000046}", 1424,  6_row, false},
    { 7_row, "{00020811-0000-0000-C000-000000000046}", 1536,  7_row, false},
    { 8_row, "{00020820-0000-0000-C000-000000000046}", 1438,  8_row, true},
    { 9_row, "{00021302-0000-0000-C000-000000000046}", 1093,  9_row, false},
    {10_row, "{00021303-0000-0000-C000-000000000046}", 1220, 10_row, false},
    {11_row, "{00044851-0000-0000-C000-000000000046}", 1549, 11_row, false},
    {12_row, "{EA7BAE70-FB3B-11CD-A903-00AA00510EA3}", 1543, 12_row, false},
    {13_row, "{28CDDBC2-0AE2-11CE-A29A-00AA004A1A72}", 1105, 13_row, false},
    {14_row, "{28CDDBC3-0AE2-11CE-A29A-00AA004A1A72}", 1221, 14_row, false},
    {15_row, "{73FDDC80-AEA9-101A-98A7-00AA00374959}", 1094, 15_row, false},
    {16_row, "{AAE68660-C718-11CE-8D9B-444553540000}", 1107, 16_row, false},
    {17_row, "{519873FF-2DAD-0220-1937-0000929679CD}", 1139, 17_row, false},
    {18_row, "{402EFE62-1999-101B-99AE-04021C007002}", 1555, 18_row, false},
    {19_row, "{402EFE60-1999-101B-99AE-04021C007002}", 1556, 19_row, false},
    {20_row, "{A25250C4-50C1-11D3-8EA3-0090271BECDD}", 1606, 20_row, false},
    {21_row, "{0002B400-0000-0000-C000-000000000046}", 1433, 25_row, true},
    {22_row, "{AC515490-FD1A-11D4-B6F6-0090271BEFB3}", 1447, 22_row, true},
    {23_row, "{69E7CEAB-FECF-11C0-B34B-1362002C0C03}", 1450, 23_row, true},
    {24_row, "{9D582C41-8AE8-4999-A696-5F36EDC94029}", 1453, 24_row, true},
    {25_row, "{0002B400-0000-0000-C000-000000000046}", 1433, 25_row, true},
    {26_row, "{0002B401-0000-0000-C000-000000000046}", 1434, 26_row, false},
    {27_row, "{EB626F5C-12A9-4F24-A0FC-01B5C2534C35}", 1450, 27_row, true},
    {28_row, "{07343180-3860-11CE-84B9-0000C0AA2756}", 1579, 28_row, false},
    {29_row, "{FE05E42F-C8F7-11CF-9A59-0020AF9BF93E}", 1579, 29_row, true},
    {30_row, "{B989DFC6-59E1-11D2-868B-00C04FB179F2}", 1579, 30_row, true},
    {31_row, "{64818D10-4F9B-11CF-86EA-00AA00B929E8}", 1581, 31_row, false},
    {32_row, "{78597001-1D84-11CF-9713-0020AFD806F4}", 1140, 32_row, false},
    {33_row, "{72FD3320-9A05-11CF-85A4-00A0C904DE5F}", 1223, 33_row, false},
    {34_row, "{74B78F3A-C8C8-11D1-BE11-00C04FB6FAF1}", 1224, 34_row, false},
    {35_row, "{00021A01-0000-0000-C000-000000000046}", 1607, 35_row, false},
    {36_row, "{00021A11-0000-0000-C000-000000000046}", 1586, 36_row, false},
    {37_row, "{00021A12-0000-0000-C000-000000000046}", 1595, 37_row, false},
    {38_row, "{00021A13-0000-0000-C000-000000000046}", byteRowAnswer, byteRow, true},
    {39_row, "{00021A14-0000-0000-C000-000000000046}", byteRowAnswer, byteRow, true},
    {40_row, "{56616700-C154-11CE-8553-00AA00A1F95B}", 1594, 40_row, false},
    {41_row, "{00020D0B-0000-0000-C000-000000000046}", 1143, 41_row, false},
    {42_row, "{0006F046-0000-0000-C000-000000000046}", 1311, 42_row, false},
    {43_row, "{59850400-6664-101B-B21C-00AA004BA90B}", 1805, 43_row, false},
    {44_row, "{0EA45AB2-9E0A-11D1-A407-00C04FB932BA}", 1191, 44_row, false},
    {45_row, "{00000000-0000-0000-0000-000000000000}", byteRowAnswer, byteRow, true},
    // clang-format on
};

TEST(ClassIdentifiers, MemoryFormReversesTheFirstThreeGroups) {
    EXPECT_EQ(FIClassId("{00112233-4455-6677-8899-AABBCCDDEEFF}"),
              FIBytes("33 22 11 00 55 44 77 66 88 99 AA BB CC DD EE FF"));
    EXPECT_EQ(FIClassId("{00020906-0000-0000-C000-000000000046}"),
              FIBytes("06 09 02 00 00 00 00 00 C0 00 00 00 00 00 00 46"));
}

TEST(ClassIdentifiers, DecideInStoragesWithoutStreams) {
    ASSERT_EQ(std::size(classRows), 45U);
    for (const ClassRow& each : classRows) {
        SCOPED_TRACE(each.row);
        const auto storage = FIMakeStorage({}, each.classId);
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, each.decidingRow);
        EXPECT_EQ(storage->opened.empty(), !each.looksInside);
        EXPECT_EQ(storage->reads > 0, each.decidingRow == byteRow) << "only the rows behind the classes read the bytes";
    }
}

TEST(ClassIdentifiers, DecideWhateverTheNameAndTheNamesInside) {
    for (const ClassRow& each : classRows) {
        if (each.looksInside) continue;
        SCOPED_TRACE(each.row);
        const auto storage = FIMakeStorage({{"PP40", ""}, {"WordDocument", "00*64"}}, each.classId);
        storage->name = "picture.tga";
        EXPECT_EQ(FIIdentifyHandle(*storage).fiid, each.answer);
        EXPECT_TRUE(storage->opened.empty());
    }
}

TEST(ClassIdentifiers, CountInEachOfTheirBytes) {
    for (const ClassRow& each : classRows) {
        for (std::size_t index = 0; index < 16; ++index) {
            SCOPED_TRACE(testing::Message() << "row " << each.row << ", byte " << index);
            const auto storage = FIMakeStorage({{"PP40", ""}}, each.classId);
            storage->classId[index] = static_cast<char>(storage->classId[index] ^ 0x80);  // makes no other class
            ExpectByteRow(*storage);
        }
    }
}

TEST(ClassIdentifiers, AreNotTakenInRegistryOrder) {
    const auto storage = FIMakeStorage({});
    storage->classId = FIBytes("00 02 08 10 00 00 00 00 C0 00 00 00 00 00 00 46");
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, byteRowAnswer);
}

TEST(ClassIdentifiers, DecideNothingWhenTheyCannotBeHadOrTheHandleIsNoStorage) {
    for (const ClassRow& each : classRows) {
        for (const bool isStorage : {true, false}) {
            SCOPED_TRACE(each.row);
            const auto handle = FIMakeStorage({{"PP40", ""}}, each.classId);
            handle->isStorage = isStorage;
            handle->hasClassId = false;
            ExpectByteRow(*handle);
        }
    }
}

TEST(ClassIdentifiers, ThatNoRowKnowsLeaveTheFileToItsBytesAndNeverToItsCharacters) {
    const auto storage = FIMakeStorage({{"PP40", ""}}, "{12345678-9ABC-DEF0-0123-456789ABCDEF}");
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, byteRowAnswer);
    EXPECT_TRUE(storage->opened.empty());

    storage->bytes = "";
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, formatNotKnown);
    EXPECT_EQ(FIIdentifyHandle(*storage).row, 0);
    storage->name = "picture.tga";  // a row that tests the extension alone
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1512);
    EXPECT_TRUE(storage->opened.empty());

    storage->name = "";
    storage->hasClassId = false;  // without a class it is a plain file, and an empty file is text
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 4022);
}

}  // namespace
