// The versions of a workbook in a storage: by the build number and the year in the first record of the stream Workbook.
#include "storage/workbook_storage.h"

#include <cstddef>

#include "storage/sub_objects.h"

namespace {

constexpr const char* workbookName = "Workbook";
constexpr const char* workbookClass = "{00020820-0000-0000-C000-000000000046}";
constexpr std::uint16_t workbookRow = 8_row;

// The usual start of the stream, up to the build number at 8.
const std::string recordStart = FIBytes("09 08 10 00 00 06 05 00");

std::string Word(std::uint32_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string StreamOf(std::uint32_t build, std::uint32_t year) {
    return recordStart + Word(build) + Word(year) + std::string(8, '\0');
}

FIID AnswerForStream(const std::string& stream) {
    const auto storage = FIMakeStorage({});
    storage->streams[workbookName] = stream;
    return FIStorageAnswer(FIProbeWorkbookStorage, *storage);
}

class WorkbookStream : public testing::TestWithParam<StorageCase> {};

TEST_P(WorkbookStream, Answers) {
    const auto storage = FIMakeStorage(GetParam().streams);
    EXPECT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *storage), GetParam().answer);
    EXPECT_EQ(FINamesAskedFor(FIProbeWorkbookStorage, *storage), std::vector<std::string>{workbookName});
}

const StorageCase streamCases[] = {
    // clang-format off
    {"NoStreams",                         {},                                                       1438},
    {"BookIsAnother",                     {{"Book", ">8 w:6214 w:1997"}},                           1438},
    {"BookInCapitalsIsAnother",           {{"BOOK", ">8 w:6214 w:1997"}},                           1438},
    {"WorkbookInCapitalsIsAnother",       {{"WORKBOOK", ">8 w:6214 w:1997"}},                       1438},
    {"Empty",                             {{workbookName, ""}},                                     1438},
    {"Bytes7",                            {{workbookName, "00*7"}},                                 1438},
    {"Bytes8",                            {{workbookName, "00*8"}},                                 1438},
    {"Bytes9HalfABuild",                  {{workbookName, ">8 DF"}},                                1438},
    {"Bytes10NoYear",                     {{workbookName, ">8 w:6111"}},                            1438},
    {"Bytes11HalfAYear",                  {{workbookName, ">8 w:6111 CD"}},                         1438},
    {"Bytes12",                           {{workbookName, ">8 w:6111 w:1997"}},                     1448},
    {"Bytes12Year1996",                   {{workbookName, ">8 w:6214 w:1996"}},                     1438},
    {"Year1997Build6214",                 {{workbookName, ">8 w:6214 w:1997"}},                     1448},
    {"Year1997Build5612",                 {{workbookName, ">8 w:5612 w:1997"}},                     1451},
    {"Year1997Build9999",                 {{workbookName, ">8 w:9999 w:1997"}},                     1446},
    {"Year0Build0",                       {{workbookName, "00*12"}},                                1446},
    {"AllFF",                             {{workbookName, "FF*12"}},                                1446},
    {"YearIsLowByteFirst",                {{workbookName, ">8 w:6214 W:1996"}},                     1448},
    {"BuildIsLowByteFirst",               {{workbookName, ">8 W:6214 w:1997"}},                     1446},
    {"YearInFrontOfTheBuild",             {{workbookName, ">8 w:1996 w:6214"}},                     1446},
    {"BytesInFrontDoNotCount",            {{workbookName, "FF*8 w:6214 w:1997"}},                   1448},
    {"BytesBehindDoNotCount",             {{workbookName, ">8 w:6214 w:1997 w:1996 w:5110"}},       1448},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Workbook, WorkbookStream, testing::ValuesIn(streamCases), FICaseName);

TEST(WorkbookStorage, IsNotAskedForNamesWhenTheHandleIsNoStorage) {
    const auto handle = FIMakeStorage({{workbookName, ">8 w:6214 w:1997"}});
    handle->isStorage = false;
    EXPECT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *handle), 1438);
    EXPECT_TRUE(handle->opened.empty());
}

TEST(WorkbookStorage, OpensAStreamAndNoSubStorage) {
    const auto storage = FIMakeStorage({});
    storage->storages[workbookName] = "";
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *storage, watch), 1438);
    ASSERT_EQ(watch.openings.size(), 1U);
    EXPECT_EQ(watch.openings[0].kind, static_cast<std::uint32_t>(IOSUB_STREAM));
}

// The whole of what is known about builds.
FIID ExpectedForBuild(std::uint32_t build) {
    switch (build) {
        case 0x13F6:  // 5110
        case 0x15EC:  // 5612
            return 1451;
        case 0x17DF:  // 6111
        case 0x1846:  // 6214
        case 0x1BC2:  // 7106
        case 0x1FBC:  // 8124
            return 1448;
        default:
            return 1446;
    }
}

TEST(WorkbookBuild, DecidesInYearsOtherThan1996) {
    for (const std::uint32_t known : {5110U, 5612U, 6111U, 6214U, 7106U, 8124U}) {
        for (const std::uint32_t build :
             {known - 1, known, known + 1, known ^ 0x8000U, known & 0xFFU, known & 0xFF00U}) {
            for (const std::uint32_t year : {0U, 1995U, 1997U, 1998U, 2001U, 0xFFFFU, 1996U ^ 0x8000U, 1996U & 0xFFU}) {
                EXPECT_EQ(AnswerForStream(StreamOf(build, year)), ExpectedForBuild(build)) << build << ", " << year;
            }
        }
    }
}

TEST(WorkbookBuild, DoesNotCountInTheYear1996) {
    for (const std::uint32_t build : {0U, 5110U, 5612U, 6111U, 6214U, 7106U, 8124U, 9999U, 0xFFFFU}) {
        EXPECT_EQ(AnswerForStream(StreamOf(build, 1996)), 1438) << build;
    }
}

TEST(WorkbookBuild, IsComparedInAllItsValues) {
    const auto storage = FIMakeStorage({});
    for (std::uint32_t build = 0; build <= 0xFFFF; ++build) {
        storage->streams[workbookName] = StreamOf(build, 1997);
        SubObjectWatch watch;
        ASSERT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *storage, watch), ExpectedForBuild(build)) << build;
        storage->position = 0;
    }
}

TEST(WorkbookBuild, OfAStreamThatCannotBeReadStays1438) {
    const auto storage = FIMakeStorage({{workbookName, ">8 w:6214 w:1997"}});
    SubObjectWatch watch;
    watch.failReadsFrom = 0;
    EXPECT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *storage, watch), 1438);
}

TEST(WorkbookBuild, SeekToItIsNotTested) {
    // A handle that can't seek delivers its first bytes: here another build of the same year.
    const auto storage = FIMakeStorage({{workbookName, "w:5110 w:1997 >8 w:6214 w:1996"}});
    SubObjectWatch watch;
    watch.failSeeksFrom = 0;
    EXPECT_EQ(FIStorageAnswer(FIProbeWorkbookStorage, *storage, watch), 1451);
}

TEST(WorkbookStorage, WithoutMemoryStays1438) {
    const auto storage = FIMakeStorage({{workbookName, ">8 w:6214 w:1997"}});
    const FIStorageProbe probe = [](FIReader& reader) {
        FIFailAllocationsFrom(0);
        const FIID answer = FIProbeWorkbookStorage(reader);
        FIHeapNeverFails();
        return answer;
    };
    EXPECT_EQ(FIStorageAnswer(probe, *storage), 1438);
}

// ---- Through the whole system -------------------------------------------------------------------------------------

TEST(WorkbookClass, LeadsToTheVersions) {
    for (const std::uint32_t year : {1996U, 1997U}) {
        for (const std::uint32_t build : {0U, 5110U, 5612U, 6111U, 6214U, 7106U, 8124U, 9999U}) {
            const auto storage = FIMakeStorage({}, workbookClass);
            storage->streams[workbookName] = StreamOf(build, year);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, year == 1996 ? 1438 : ExpectedForBuild(build)) << build << ", " << year;
            EXPECT_EQ(verdict.row, workbookRow);
            EXPECT_EQ(storage->opened, std::vector<std::string>{workbookName});
            EXPECT_EQ(storage->reads, 0U);
        }
    }
}

TEST(WorkbookClass, WithoutAWorkbookIs1438) {
    for (const std::vector<NamedBytes>& streams :
         {std::vector<NamedBytes>{}, {{"Book", "09 08 08 00"}}, {{workbookName, "00*11"}}}) {
        const auto storage = FIMakeStorage(streams, workbookClass);
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, 1438);
        EXPECT_EQ(verdict.row, workbookRow);
    }
}

TEST(WorkbookClass, IsNotNeededForAStreamOfThatName) {
    for (const std::uint32_t year : {1996U, 1997U}) {
        for (const std::uint32_t build : {0U, 5110U, 5612U, 6111U, 6214U, 7106U, 8124U, 9999U}) {
            const auto storage = FIMakeStorage({});
            storage->streams[workbookName] = StreamOf(build, year);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, year == 1996 ? 1438 : ExpectedForBuild(build)) << build << ", " << year;
            EXPECT_EQ(verdict.row, dispatcherRow);
        }
    }
}

}  // namespace
