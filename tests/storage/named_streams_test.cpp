// The small probes of one named stream each, behind class identifiers that stand for several formats.
#include "storage/named_streams.h"

#include <cstddef>
#include <iterator>

#include "catalogue/format_not_known.h"
#include "storage/sub_objects.h"
#include "support/case_name.h"

namespace {

using ::PrintTo;

FIID PerfectOffice1447(FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1447); }
FIID PerfectOffice1450(FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1450); }
FIID PerfectOffice1453(FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1453); }

// ---- What all of them share ---------------------------------------------------------------------------------------

struct SharedCase {
    const char* name;
    FIID (*probe)(FIReader& reader);
    const char* stream;
    const char* bytes;    // a stream with an answer of its own
    FIID answer;          // for that stream
    FIID withoutStorage;  // when the handle is no storage
    FIID withoutStream;   // when the stream is missing, and when there is no memory for a reader
    FIID unreadable;      // when the stream is empty or can't be read
};

class NamedStream : public testing::TestWithParam<SharedCase> {};

TEST_P(NamedStream, IsOpenedAloneAsAStreamAndDecides) {
    const auto storage = FIMakeStorage({{GetParam().stream, GetParam().bytes}});
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage), GetParam().answer);
    SubObjectWatch watch;
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage, watch), GetParam().answer);
    ASSERT_EQ(watch.openings.size(), 1U);
    EXPECT_EQ(watch.openings[0].name, GetParam().stream);
    EXPECT_EQ(watch.openings[0].kind, static_cast<std::uint32_t>(IOSUB_STREAM));
}

TEST_P(NamedStream, IsNotAskedForWhenTheHandleIsNoStorage) {
    const auto handle = FIMakeStorage({{GetParam().stream, GetParam().bytes}});
    handle->isStorage = false;
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *handle), GetParam().withoutStorage);
    EXPECT_TRUE(handle->opened.empty());
}

TEST_P(NamedStream, MayBeMissing) {
    const auto storage = FIMakeStorage({{"Contents", GetParam().bytes}});
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage), GetParam().withoutStream);
    EXPECT_EQ(FINamesAskedFor(GetParam().probe, *storage), std::vector<std::string>{GetParam().stream});
}

TEST_P(NamedStream, IsMissingWhenItIsASubStorage) {
    const auto storage = FIMakeStorage({});
    storage->storages[GetParam().stream] = FIBytes(GetParam().bytes);
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage), GetParam().withoutStream);
}

TEST_P(NamedStream, MayBeEmpty) {
    const auto storage = FIMakeStorage({{GetParam().stream, ""}});
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage), GetParam().unreadable);
}

TEST_P(NamedStream, MayBeUnreadable) {
    const auto storage = FIMakeStorage({{GetParam().stream, GetParam().bytes}});
    SubObjectWatch watch;
    watch.failReadsFrom = 0;
    EXPECT_EQ(FIStorageAnswer(GetParam().probe, *storage, watch), GetParam().unreadable);
}

TEST_P(NamedStream, WithoutMemoryForAReaderCountsAsMissing) {
    const auto storage = FIMakeStorage({{GetParam().stream, GetParam().bytes}});
    const FIStorageProbe probe = [](FIReader& reader) {
        FIFailAllocationsFrom(0);
        const FIID answer = GetParam().probe(reader);
        FIHeapNeverFails();
        return answer;
    };
    EXPECT_EQ(FIStorageAnswer(probe, *storage), GetParam().withoutStream);
}

const SharedCase sharedCases[] = {
    // clang-format off
    {"Native",   FIProbeNativeContentStorage, "NativeContent_MAIN", R"(01 00 0E 00 "QPW9")",   1445,    0,    0,    0},
    {"No1447",   PerfectOffice1447,           "PerfectOffice_MAIN", "00 00 02 00 07 10 C9 00", 1433,    0, 1447, 1447},
    {"No1450",   PerfectOffice1450,           "PerfectOffice_MAIN", "00 00 02 00 07 10 C9 00", 1433,    0, 1450, 1450},
    {"No1453",   PerfectOffice1453,           "PerfectOffice_MAIN", "00 00 02 00 07 10 C9 00", 1433,    0, 1453, 1453},
    {"Book",     FIProbeBookStorage,          "Book",               "09 08 08 00",             1424, 1082, 1082, 1082},
    {"Visio",    FIProbeVisioStorage,         "VisioDocument",      ">24 d:0x00060000",        1597,    0,    0,    0},
    {"Designer", FIProbeDesignerStorage,      "DesignerDoc",        ">13 w:6",                 1608, 1579, 1579, 1579},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(All, NamedStream, testing::ValuesIn(sharedCases), FICaseName);

// Fails unless a stream of these bytes, whole or longer, gives an answer, and cut or changed in any byte gives another.
void ExpectAllBytesCount(FIID (*probe)(FIReader& reader), const char* stream, const std::string& bytes, FIID answer,
                         FIID otherwise) {
    const auto storage = FIMakeStorage({});
    for (const std::string& behind : {std::string(), std::string(1, '\0'), std::string(3000, '\xFF')}) {
        storage->streams[stream] = bytes + behind;
        EXPECT_EQ(FIStorageAnswer(probe, *storage), answer) << behind.size() << " bytes behind";
    }
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        storage->streams[stream] = bytes.substr(0, index);
        EXPECT_EQ(FIStorageAnswer(probe, *storage), otherwise) << index << " bytes";
        for (const std::uint32_t bit : {0x01U, 0x10U, 0x80U}) {
            std::string changed = bytes;
            changed[index] = static_cast<char>(changed[index] ^ static_cast<char>(bit));
            storage->streams[stream] = changed;
            EXPECT_EQ(FIStorageAnswer(probe, *storage), otherwise) << "byte " << index << " changed";
        }
    }
}

// ---- NativeContent_MAIN -------------------------------------------------------------------------------------------

TEST(NativeContent, NeedsBothValuesWhole) {
    ExpectAllBytesCount(FIProbeNativeContentStorage, "NativeContent_MAIN", FIBytes(R"(01 00 0E 00 "QPW9")"), 1445, 0);
}

TEST(NativeContent, OfOneValueIs0) {
    EXPECT_EQ(FIStorageAnswer(FIProbeNativeContentStorage, {{"NativeContent_MAIN", "01 00 0E 00"}}), 0);
    EXPECT_EQ(FIStorageAnswer(FIProbeNativeContentStorage, {{"NativeContent_MAIN", "01 00 0E 00 00*4"}}), 0);
    EXPECT_EQ(FIStorageAnswer(FIProbeNativeContentStorage, {{"NativeContent_MAIN", R"(00*4 "QPW9")"}}), 0);
    EXPECT_EQ(FIStorageAnswer(FIProbeNativeContentStorage, {{"NativeContent_MAIN", R"("QPW9")"}}), 0);
}

TEST(NativeContent, IsLowByteFirst) {
    EXPECT_EQ(FIStorageAnswer(FIProbeNativeContentStorage, {{"NativeContent_MAIN", R"(00 0E 00 01 "9WPQ")"}}), 0);
}

TEST(NativeContent, OfTheClassIsToldByItsOwnRowAndOtherwiseByTheLaterOne) {
    const struct {
        std::vector<NamedBytes> streams;
        FIID answer;
        std::uint16_t row;
    } cases[] = {
        // clang-format off
        {{{"NativeContent_MAIN", R"(01 00 0E 00 "QPW9")"}}, 1445, 21_row},
        {{{"NativeContent_MAIN", R"(01 00 0E 00 "QPW8")"}}, 1433, 25_row},
        {{{"NativeContent_MAIN", "00*8"}},                  1433, 25_row},
        {{{"NativeContent_MAIN", "01 00 0E 00"}},           1433, 25_row},
        {{{"NativeContent_MAIN", ""}},                      1433, 25_row},
        {{{"PerfectOffice_MAIN", R"(01 00 0E 00 "QPW9")"}}, 1433, 25_row},
        {{},                                                1433, 25_row},
        // clang-format on
    };
    for (const auto& each : cases) {
        const auto storage = FIMakeStorage(each.streams, "{0002B400-0000-0000-C000-000000000046}");
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, each.row);
        EXPECT_EQ(storage->opened, std::vector<std::string>{"NativeContent_MAIN"});
        EXPECT_EQ(storage->reads, 0U);
    }
}

TEST(NativeContent, IsToldByItsLengthAloneWithoutTheClass) {
    const auto storage = FIMakeStorage({{"NativeContent_MAIN", "00*8"}});
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1445);
    storage->classId = FIClassId("{0002B400-0000-0000-C000-000000000046}");
    EXPECT_EQ(FIIdentifyHandle(*storage).fiid, 1433);
}

// ---- PerfectOffice_MAIN -------------------------------------------------------------------------------------------

TEST(PerfectOffice, NeedsBothValuesWhole) {
    const std::string bytes = FIBytes("00 00 02 00 07 10 C9 00");
    ExpectAllBytesCount(PerfectOffice1447, "PerfectOffice_MAIN", bytes, 1433, 1447);
    ExpectAllBytesCount(PerfectOffice1450, "PerfectOffice_MAIN", bytes, 1433, 1450);
    ExpectAllBytesCount(PerfectOffice1453, "PerfectOffice_MAIN", bytes, 1433, 1453);
}

TEST(PerfectOffice, IsLowByteFirst) {
    const std::vector<NamedBytes> streams = {{"PerfectOffice_MAIN", "00 02 00 00 00 C9 10 07"}};
    EXPECT_EQ(FIStorageAnswer(PerfectOffice1447, streams), 1447);
}

TEST(PerfectOffice, DoesNotKnowTheHeadersThatStoragesWithoutAClassAreToldBy) {
    EXPECT_EQ(FIStorageAnswer(PerfectOffice1447, {{"PerfectOffice_MAIN", R"(FF "WPC" 00*5 0A)"}}), 1447);
    EXPECT_EQ(FIStorageAnswer(PerfectOffice1450, {{"PerfectOffice_MAIN", "00 00 02 00 07 10"}}), 1450);
    EXPECT_EQ(FIStorageAnswer(PerfectOffice1453, {{"PerfectOffice_MAIN", "00 00 02 00 07 10 00 00"}}), 1453);
}

TEST(PerfectOffice, OfTheFourClassesIsToldByItsRow) {
    const struct {
        const char* classId;
        FIID number;
        std::uint16_t row;
    } classes[] = {
        // clang-format off
        {"{AC515490-FD1A-11D4-B6F6-0090271BEFB3}", 1447, 22_row},
        {"{69E7CEAB-FECF-11C0-B34B-1362002C0C03}", 1450, 23_row},
        {"{9D582C41-8AE8-4999-A696-5F36EDC94029}", 1453, 24_row},
        {"{EB626F5C-12A9-4F24-A0FC-01B5C2534C35}", 1450, 27_row},
        // clang-format on
    };
    for (const auto& each : classes) {
        for (const char* const bytes : {"00 00 02 00 07 10 C9 00", "00 00 02 00 07 10 C9 01", "00 00 02 00", ""}) {
            SCOPED_TRACE(testing::Message() << "row " << each.row << ": " << bytes);
            const auto storage = FIMakeStorage({{"PerfectOffice_MAIN", bytes}}, each.classId);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, FIBytes(bytes) == FIBytes("00 00 02 00 07 10 C9 00") ? 1433 : each.number);
            EXPECT_EQ(verdict.row, each.row);
            EXPECT_EQ(storage->opened, std::vector<std::string>{"PerfectOffice_MAIN"});
        }
        const auto empty = FIMakeStorage({}, each.classId);
        EXPECT_EQ(FIIdentifyHandle(*empty).fiid, each.number);
        EXPECT_EQ(FIIdentifyHandle(*empty).row, each.row);
    }
}

// ---- Book ---------------------------------------------------------------------------------------------------------

TEST(Book, NeedsItsValueWhole) { ExpectAllBytesCount(FIProbeBookStorage, "Book", FIBytes("09 08 08 00"), 1424, 1082); }

TEST(Book, InCapitalsIsAnother) {
    const auto storage = FIMakeStorage({{"BOOK", "09 08 08 00"}});
    EXPECT_EQ(FIStorageAnswer(FIProbeBookStorage, *storage), 1082);
    EXPECT_EQ(FINamesAskedFor(FIProbeBookStorage, *storage), std::vector<std::string>{"Book"});
}

TEST(Book, IsLowByteFirst) { EXPECT_EQ(FIStorageAnswer(FIProbeBookStorage, {{"Book", "00 08 08 09"}}), 1082); }

TEST(Book, OfTheClassIsToldByItsRow) {
    const struct {
        std::vector<NamedBytes> streams;
        FIID answer;
    } cases[] = {
        // clang-format off
        {{{"Book", "09 08 08 00"}},                                     1424},
        {{{"Book", "09 08 08 00 00 05 05 00"}},                         1424},
        {{{"Book", "09 08 10 00"}},                                     1082},
        {{{"Book", "09 08 08"}},                                        1082},
        {{{"Book", ""}},                                                1082},
        {{{"BOOK", "09 08 08 00"}},                                     1082},
        {{{"WordDocument", "EC A5 C1 00 00*8"}},                        1082},
        {{{"Book", "09 08 08 00"}, {"WordDocument", "DC A5 65 00"}},    1424},
        {{},                                                            1082},
        // clang-format on
    };
    for (const auto& each : cases) {
        const auto storage = FIMakeStorage(each.streams, "{00020900-0000-0000-C000-000000000046}");
        const FIVerdict verdict = FIIdentifyHandle(*storage);
        EXPECT_EQ(verdict.fiid, each.answer);
        EXPECT_EQ(verdict.row, 5_row);
        EXPECT_EQ(storage->opened, std::vector<std::string>{"Book"});
    }
}

// ---- VisioDocument ------------------------------------------------------------------------------------------------

// The value at 24, whatever stands in front of it.
struct VisioCase {
    const char* name;
    const char* bytes;
    FIID answer;
};

const VisioCase visioCases[] = {
    // clang-format off
    {"Value00030003",            ">24 d:0x00030003",                        1607},
    {"Value00040000",            ">24 d:0x00040000",                        1586},
    {"Value00050000",            ">24 d:0x00050000",                        1595},
    {"Value00060000",            ">24 d:0x00060000",                        1597},
    {"Value000B0000",            ">24 d:0x000B0000",                        1631},
    {"Value00030002",            ">24 d:0x00030002",                           0},
    {"Value00030004",            ">24 d:0x00030004",                           0},
    {"Value00030000",            ">24 d:0x00030000",                           0},
    {"Value0003FFFF",            ">24 d:0x0003FFFF",                           0},
    {"Value00040001",            ">24 d:0x00040001",                           0},
    {"Value0004FFFF",            ">24 d:0x0004FFFF",                           0},
    {"Value00050001",            ">24 d:0x00050001",                           0},
    {"Value0005FFFF",            ">24 d:0x0005FFFF",                           0},
    {"Value00060001",            ">24 d:0x00060001",                           0},
    {"Value00070000",            ">24 d:0x00070000",                           0},
    {"Value000A0000",            ">24 d:0x000A0000",                           0},
    {"Value000AFFFF",            ">24 d:0x000AFFFF",                           0},
    {"Value000B0001",            ">24 d:0x000B0001",                           0},
    {"Value000C0000",            ">24 d:0x000C0000",                           0},
    {"Value00020000",            ">24 d:0x00020000",                           0},
    {"Value01060000",            ">24 d:0x01060000",                           0},
    {"Value00000006",            ">24 d:0x00000006",                           0},
    {"Value0",                   ">24 d:0",                                    0},
    {"ValueFFFFFFFF",            ">24 d:0xFFFFFFFF",                           0},
    {"HighByteFirst",            ">24 D:0x00060000",                           0},
    {"BytesInFront",             "FF*24 d:0x00060000",                      1597},
    {"BytesBehind",              ">24 d:0x00060000 FF*3000",                1597},
    {"OneByteEarly",             ">23 d:0x00060000 00",                        0},
    {"OneByteLate",              ">25 d:0x00060000",                           0},
    {"Bytes0",                   "",                                           0},
    {"Bytes1",                   "00",                                         0},
    {"Bytes23",                  "00*23",                                      0},
    {"Bytes24",                  "00*24",                                      0},
    {"Bytes25",                  ">24 00",                                     0},
    {"Bytes26",                  ">24 00 00",                                  0},
    {"Bytes27",                  ">24 00 00 06",                               0},
    {"Bytes28",                  ">24 00 00 06 00",                         1597},
    // clang-format on
};

TEST(Visio, IsToldByItsValue) {
    for (const VisioCase& each : visioCases) {
        EXPECT_EQ(FIStorageAnswer(FIProbeVisioStorage, {{"VisioDocument", each.bytes}}), each.answer) << each.name;
    }
}

TEST(Visio, OfBothClassesIsToldByItsValueAndOtherwiseByLaterRows) {
    const struct {
        const char* classId;
        std::uint16_t row;
    } classes[] = {
        {"{00021A13-0000-0000-C000-000000000046}", 38_row},
        {"{00021A14-0000-0000-C000-000000000046}", 39_row},
    };
    for (const auto& eachClass : classes) {
        for (const VisioCase& each : visioCases) {
            SCOPED_TRACE(testing::Message() << "row " << eachClass.row << ": " << each.name);
            const auto storage = FIMakeStorage({{"VisioDocument", each.bytes}}, eachClass.classId);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, each.answer != 0 ? each.answer : byteRowAnswer);
            EXPECT_EQ(verdict.row, each.answer != 0 ? eachClass.row : byteRow);
            EXPECT_EQ(storage->opened, std::vector<std::string>{"VisioDocument"});
        }
        const auto empty = FIMakeStorage({}, eachClass.classId);
        empty->bytes = "";
        EXPECT_EQ(FIIdentifyHandle(*empty).fiid, formatNotKnown);
        EXPECT_EQ(FIIdentifyHandle(*empty).row, 0);
    }
}

// ---- DesignerDoc --------------------------------------------------------------------------------------------------

struct DesignerCase {
    const char* name;
    const char* bytes;
    FIID answer;
};

const DesignerCase designerCases[] = {
    // clang-format off
    {"Word5",                ">13 w:5",            1579},
    {"Word4",                ">13 w:4",            1608},
    {"Word6",                ">13 w:6",            1608},
    {"Word0",                ">13 w:0",            1608},
    {"WordFFFF",             ">13 w:65535",        1608},
    {"HighByteCounts",       ">13 05 01",          1608},
    {"HighByteFirst",        ">13 00 05",          1608},
    {"BytesInFront",         "FF*13 w:5",          1579},
    {"BytesBehind",          ">13 w:5 FF*3000",    1579},
    {"OneByteEarly",         ">12 w:5 05",         1608},
    {"OneByteLate",          ">14 w:5",            1608},
    {"Bytes0",               "",                   1579},
    {"Bytes12",              "FF*12",              1579},
    {"Bytes13",              "FF*13",              1579},
    {"Bytes14",              "FF*14",              1579},
    {"Bytes15",              "FF*15",              1608},
    // clang-format on
};

TEST(Designer, IsToldByItsWord) {
    for (const DesignerCase& each : designerCases) {
        EXPECT_EQ(FIStorageAnswer(FIProbeDesignerStorage, {{"DesignerDoc", each.bytes}}), each.answer) << each.name;
    }
}

TEST(Designer, SeekToTheWordIsNotTested) {
    // A handle that can't seek delivers its first bytes.
    for (const bool first5 : {true, false}) {
        const auto storage = FIMakeStorage({{"DesignerDoc", first5 ? "w:5 >13 w:6" : "w:6 >13 w:5"}});
        SubObjectWatch watch;
        watch.failSeeksFrom = 0;
        EXPECT_EQ(FIStorageAnswer(FIProbeDesignerStorage, *storage, watch), first5 ? 1579 : 1608);
    }
}

TEST(Designer, OfItsClassesIsToldByItsRow) {
    const struct {
        const char* classId;
        std::uint16_t row;
    } classes[] = {
        {"{FE05E42F-C8F7-11CF-9A59-0020AF9BF93E}", 29_row},
        {"{B989DFC6-59E1-11D2-868B-00C04FB179F2}", 30_row},
    };
    for (const auto& eachClass : classes) {
        for (const DesignerCase& each : designerCases) {
            SCOPED_TRACE(testing::Message() << "row " << eachClass.row << ": " << each.name);
            const auto storage = FIMakeStorage({{"DesignerDoc", each.bytes}}, eachClass.classId);
            const FIVerdict verdict = FIIdentifyHandle(*storage);
            EXPECT_EQ(verdict.fiid, each.answer);
            EXPECT_EQ(verdict.row, eachClass.row);
            EXPECT_EQ(storage->opened, std::vector<std::string>{"DesignerDoc"});
        }
        const auto empty = FIMakeStorage({}, eachClass.classId);
        EXPECT_EQ(FIIdentifyHandle(*empty).fiid, 1579);
        EXPECT_EQ(FIIdentifyHandle(*empty).row, eachClass.row);
    }
}

TEST(Designer, OfTheClassThatItsRowAnswersIsNotLookedInto) {
    const auto storage = FIMakeStorage({{"DesignerDoc", ">13 w:6"}}, "{07343180-3860-11CE-84B9-0000C0AA2756}");
    const FIVerdict verdict = FIIdentifyHandle(*storage);
    EXPECT_EQ(verdict.fiid, 1579);
    EXPECT_EQ(verdict.row, 28_row);
    EXPECT_TRUE(storage->opened.empty());
}

}  // namespace
