// The two generations of WordPro files: by the version byte at 48 of a plain file, by the version word at 32 of the
// stream that is derived from a transformed one.
#include "wordproc/word_pro.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "catalogue/format_not_known.h"
#include "storage/sub_objects.h"
#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

constexpr std::uint16_t wordProRow = 150_row;

// ---- Plain files --------------------------------------------------------------------------------------------------

class ProbeWordPro : public testing::TestWithParam<ProbeCase> {};

TEST_P(ProbeWordPro, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeWordPro, FIBytes(GetParam().bytes)), GetParam().answer); }

const ProbeCase plainCases[] = {
    // clang-format off
    {"Byte0",                         R"("WordPro" >48 00 00)",                 1108},
    {"Byte5",                         R"("WordPro" >48 05 00)",                 1108},
    {"Byte10",                        R"("WordPro" >48 0A 00)",                 1108},
    {"Byte11",                        R"("WordPro" >48 0B 00)",                 1145},
    {"Byte7F",                        R"("WordPro" >48 7F 00)",                 1145},
    {"Byte80IsUnsigned",              R"("WordPro" >48 80 00)",                 1145},
    {"ByteFF",                        R"("WordPro" >48 FF 00)",                 1145},
    {"ByteBehindIsDropped",           R"("WordPro" >48 05 FF)",                 1108},
    {"Byte0WithAByte1Behind",         R"("WordPro" >48 00 01)",                 1108},
    {"ByteBehindMayBeMissing",        R"("WordPro" >48 05)",                    1108},
    {"ByteInFrontDoesNotCount",       R"("WordPro" >47 0B 05 00)",              1108},
    {"MuchMayStandBehind",            R"("WordPro" >48 0B FF*5000)",            1145},
    {"Bytes48",                       R"("WordPro" >48)",                       1145},
    {"Bytes47",                       R"("WordPro" >47)",                       1145},
    {"Bytes16",                       R"("WordPro" >16)",                       1145},
    {"Bytes9",                        R"("WordPro" 00 00)",                     1145},
    {"Bytes8",                        R"("WordPro" 00)",                        1145},
    {"Bytes7",                        R"("WordPro")",                           1145},
    {"Bytes0",                        "",                                       1145},
    {"EndsBehindTheByte0D",           R"("WordPro" 0D)",                        1145},
    {"EndsBehindTheByteFB",           R"("WordPro" FB)",                        1145},
    {"Byte0DThenFA",                  R"("WordPro" 0D FA >48 05)",              1108},
    {"Byte0DThenFC",                  R"("WordPro" 0D FC >48 05)",              1108},
    {"Byte0DThen00",                  R"("WordPro" 0D 00 >48 0B)",              1145},
    {"Byte0DThen0A",                  R"("WordPro" 0D 0A >48 05)",              1108},
    {"Byte0CThenFB",                  R"("WordPro" 0C FB >48 05)",              1108},
    {"Byte0EThenFB",                  R"("WordPro" 0E FB >48 0B)",              1145},
    {"BytesSwapped",                  R"("WordPro" FB 0D >48 05)",              1108},
    {"BytesFFFF",                     R"("WordPro" FF FF >48 05)",              1108},
    {"Byte0DFBFartherBehind",         R"("WordPro" 00 0D FB >48 05)",           1108},
    {"AnyFileIsAsked",                R"(>48 0A)",                              1108},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Plain, ProbeWordPro, testing::ValuesIn(plainCases), FICaseName);

TEST(PlainWordPro, AllBytes) {
    for (std::uint32_t version = 0; version <= 0xFF; ++version) {
        const std::string bytes = FIBytes(R"("WordPro" >48)") + static_cast<char>(version) + '\0';
        const auto handle = FIMakeTestHandle(bytes);
        EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), version > 10 ? 1145 : 1108) << version;
    }
}

TEST(PlainWordPro, StartsFromAnyPositionOfTheReader) {
    for (const std::uint32_t start : {0U, 7U, 40U, 60U, 5000U}) {
        EXPECT_EQ(FIAnswerOf(FIProbeWordPro, FIBytes(R"("WordPro" >48 05 00*5000)"), start), 1108) << start;
    }
}

TEST(PlainWordPro, OpensNothing) {
    const auto handle = FIMakeTestHandle(FIBytes(R"("WordPro" 0D FA >48 05 00)"));
    handle->allowRange = true;
    handle->derived = FIBytes(">32 w:11");
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 1108);
    EXPECT_TRUE(handle->opened.empty());
}

TEST(PlainWordPro, IsNotToldWhenTheFirstSeekFails) {
    const auto handle = FIMakeTestHandle(FIBytes(R"("WordPro" >48 05 00)"));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 0);
}

TEST(PlainWordPro, IsNotToldWhenTheSeekToTheVersionFails) {
    const auto handle = FIMakeTestHandle(FIBytes(R"("WordPro" >20)"));
    handle->failSeeksFrom = 1;  // 48 lies behind the buffered bytes
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 0);
}

TEST(PlainWordPro, EndingBefore48IsNotToldWhereAHandleRefusesToGoBehindTheEnd) {
    const auto shorter = FIMakeTestHandle(FIBytes(R"("WordPro" >47)"));
    shorter->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *shorter), 0);
    const auto exact = FIMakeTestHandle(FIBytes(R"("WordPro" >48)"));
    exact->refuseSeekBehindEnd = true;  // 48 is the end itself
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *exact), 1145);
}

TEST(PlainWordPro, ThatCannotBeReadIsOfTheLaterGeneration) {
    const auto handle = FIMakeTestHandle(FIBytes(R"("WordPro" >48 05 00)"));
    handle->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 1145);
}

// ---- Transformed files --------------------------------------------------------------------------------------------

constexpr const char* transformedHeader = R"("WordPro" 0D FB >16)";
constexpr std::uint32_t headerSize = 16;

// A transformed file of this size whose derived stream holds these bytes.
std::unique_ptr<TestHandle> MakeTransformed(const std::string& derived, std::uint32_t size = 100) {
    std::string bytes = FIBytes(transformedHeader);
    for (std::uint32_t offset = headerSize; offset < size; ++offset) bytes += static_cast<char>(offset * 7 & 0xFF);
    auto handle = FIMakeTestHandle(bytes);
    handle->allowRange = true;
    handle->derived = derived;
    return handle;
}

// The answer for a handle, its sub-objects watched.
FIID WatchedAnswer(TestHandle& handle, SubObjectWatch& watch) {
    FIWatchSubObjects(handle, watch);
    const FIID answer = FIAnswerOver(FIProbeWordPro, handle);
    FIStopWatching();
    return answer;
}

struct DerivedCase {
    const char* name;
    const char* bytes;  // of the derived stream
    FIID answer;
};

class TransformedWordPro : public testing::TestWithParam<DerivedCase> {};

TEST_P(TransformedWordPro, IsToldByItsDerivedStream) {
    const auto handle = MakeTransformed(FIBytes(GetParam().bytes));
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), GetParam().answer);
}

TEST_P(TransformedWordPro, IsToldThroughTheTable) {
    const auto handle = MakeTransformed(FIBytes(GetParam().bytes));
    const FIVerdict verdict = FIIdentifyHandle(*handle);
    EXPECT_EQ(verdict.fiid, GetParam().answer);
    EXPECT_EQ(verdict.row, wordProRow);
}

const DerivedCase derivedCases[] = {
    // clang-format off
    {"Word0",                    ">32 w:0",              1108},
    {"Word5",                    ">32 w:5",              1108},
    {"Word10",                   ">32 w:10",             1108},
    {"Word11",                   ">32 w:11",             1145},
    {"Word256HighByteCounts",    ">32 w:256",            1145},
    {"Word261HighByteCounts",    ">32 05 01",            1145},
    {"LowByteComesFirst",        ">32 00 05",            1145},
    {"Word8000IsUnsigned",       ">32 w:0x8000",         1145},
    {"WordFFFF",                 ">32 w:0xFFFF",         1145},
    {"BytesInFrontDoNotCount",   "FF*32 w:10",           1108},
    {"BytesBehindDoNotCount",    ">32 w:10 FF*100",      1108},
    {"OneByteEarly",             ">31 0B 0A 00",         1108},
    {"At48AsInAPlainFile",       ">32 w:10 >48 0B",      1108},
    {"Bytes1",                   "FF",                   1108},
    {"Bytes31",                  "FF*31",                1108},
    {"Bytes32",                  "FF*32",                1108},
    {"Bytes33ByteUpTo10",        ">32 0A",               1108},
    {"Bytes33ByteAbove10",       ">32 0B",               1145},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Derived, TransformedWordPro, testing::ValuesIn(derivedCases), FICaseName);

TEST(WordProDerived, VersionByte48OfTheFileItselfDoesNotCount) {
    for (const char version : {'\x05', '\xFF'}) {
        const auto handle = MakeTransformed(FIBytes(">32 w:11"));
        handle->bytes[48] = version;
        EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 1145);
    }
}

TEST(WordProDerived, IsAskedForOverAStretchBehindTheHeader) {
    for (const std::uint32_t size : {16U, 17U, 48U, 100U, 2047U, 2048U, 2049U, 2055U, 2056U, 5000U, 70000U}) {
        SCOPED_TRACE(size);
        const auto handle = MakeTransformed(FIBytes(">32 w:11"), size);
        SubObjectWatch watch;
        EXPECT_EQ(WatchedAnswer(*handle, watch), 1145);
        ASSERT_EQ(watch.openings.size(), 2U);

        const SubObjectOpening& range = watch.openings[0];
        EXPECT_EQ(range.kind, static_cast<std::uint32_t>(IOSUB_RANGE));
        EXPECT_EQ(range.flags, 1U);
        EXPECT_EQ(range.range.parent, FIFileOf(*handle));
        EXPECT_EQ(range.range.start, headerSize);
        EXPECT_EQ(range.range.end, size);

        const SubObjectOpening& derived = watch.openings[1];
        EXPECT_EQ(derived.kind, static_cast<std::uint32_t>(IOSUB_DERIVED));
        EXPECT_EQ(derived.flags, 1U);
        EXPECT_EQ(derived.derived.parent, range.child);
        EXPECT_EQ(derived.derived.reserved, 0U);
        EXPECT_EQ(derived.derived.method, 10U);
        EXPECT_TRUE(std::all_of(std::begin(derived.derived.reserved2), std::end(derived.derived.reserved2),
                                [](std::uint8_t byte) { return byte == 0; }));

        ASSERT_EQ(watch.closings.size(), 2U);
        EXPECT_EQ(watch.closings[0].name, "derived");
        EXPECT_EQ(watch.closings[1].name, "range");
        EXPECT_EQ(watch.closings[1].childrenOpen, 0U);
        EXPECT_EQ(watch.closings[1].bytes, handle->bytes.substr(headerSize));
    }
}

TEST(WordProDerived, IsNotReadThroughTheReader) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    SubObjectWatch watch;
    static_cast<void>(WatchedAnswer(*handle, watch));
    ASSERT_EQ(watch.closings.size(), 2U);
    EXPECT_EQ(watch.closings[0].reads, 1U);
    EXPECT_EQ(watch.closings[1].reads, 0U);
}

TEST(WordProDerived, LeavesTheReaderAtOffset16) {
    for (const bool refused : {false, true}) {
        const auto handle = MakeTransformed(refused ? "" : FIBytes(">32 w:11"));
        FIReader* const reader = FIReaderNew(FIFileOf(*handle));
        EXPECT_EQ(FIProbeWordPro(*reader), refused ? formatNotKnown : 1145);
        EXPECT_EQ(FIReaderTell(*reader), headerSize);
        EXPECT_EQ(FIReaderGetByte(*reader), static_cast<std::uint8_t>(handle->bytes[headerSize]));
        EXPECT_EQ(FIReaderFree(*reader), FIFileOf(*handle));
    }
}

// ---- What can fail on the way -------------------------------------------------------------------------------------

TEST(WordProDerived, ThatIsRefusedIs1999WithTheStretchClosed) {
    const auto handle = MakeTransformed("");
    SubObjectWatch watch;
    EXPECT_EQ(WatchedAnswer(*handle, watch), formatNotKnown);
    EXPECT_EQ(watch.Names(), (std::vector<std::string>{"range", "derived"}));
    ASSERT_EQ(watch.closings.size(), 1U);
    EXPECT_EQ(watch.closings[0].name, "range");
    EXPECT_EQ(handle->openChildren, 0U);
}

TEST(WordProDerived, IsNotAskedForWhenTheStretchIsRefused) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    handle->allowRange = false;
    SubObjectWatch watch;
    EXPECT_EQ(WatchedAnswer(*handle, watch), formatNotKnown);
    EXPECT_EQ(watch.Names(), std::vector<std::string>{"range"});
}

// Refuses without a look at *out.
std::int32_t RefuseAll(HIOFILE*, std::uint32_t, const void*, std::uint32_t) { return -1; }

// Says that all is well and delivers nothing.
std::int32_t DeliverNull(HIOFILE* out, std::uint32_t, const void*, std::uint32_t) {
    *out = nullptr;
    return 0;
}

// Opens the stretch, but with the status of a failure.
std::int32_t OpenWithAFailureStatus(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags) {
    static_cast<void>(FIMakeTestHandle("")->file.operations.IOOpenSub(out, kind, specification, flags));
    return -1;
}

TEST(WordProDerived, IsNotAskedForThroughAHandleThatIsNotThere) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    handle->file.operations.IOOpenSub = RefuseAll;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), formatNotKnown);
    handle->file.operations.IOOpenSub = DeliverNull;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), formatNotKnown);
}

TEST(WordProDerived, StatusOfTheStretchIsNotLookedAt) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    handle->file.operations.IOOpenSub = OpenWithAFailureStatus;
    EXPECT_EQ(FIAnswerOver(FIProbeWordPro, *handle), 1145);
}

TEST(WordProDerived, ReadThatFailsLeaves0) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    SubObjectWatch watch;
    watch.failReadsFrom = 0;
    EXPECT_EQ(WatchedAnswer(*handle, watch), 1108);
    EXPECT_EQ(handle->openChildren, 0U);
}

TEST(WordProDerived, SeekThatFailsIsNotLookedAt) {
    for (const bool first11 : {true, false}) {
        const auto handle = MakeTransformed(FIBytes(first11 ? "w:11 >32 w:10" : "w:10 >32 w:11"));
        SubObjectWatch watch;
        watch.failSeeksFrom = 0;
        EXPECT_EQ(WatchedAnswer(*handle, watch), first11 ? 1145 : 1108);
    }
}

TEST(WordProDerived, ReadOfOneByteLeavesTheHighByte0) {
    const auto handle = MakeTransformed(FIBytes(">32 05 01"));
    SubObjectWatch watch;
    watch.bytesPerRead = 1;
    EXPECT_EQ(WatchedAnswer(*handle, watch), 1108);
}

TEST(WordProRange, EndsWhereTheReaderStandsWhenTheSizeCannotBeHad) {
    // Two bytes at 7 have been taken.
    constexpr std::uint32_t readerPosition = 9;
    for (const bool failSeek : {true, false}) {
        const auto handle = MakeTransformed(FIBytes(">32 w:11"));
        handle->failSeekFromEnd = failSeek;
        handle->failTell = !failSeek;
        SubObjectWatch watch;
        EXPECT_EQ(WatchedAnswer(*handle, watch), 1145);
        ASSERT_EQ(watch.openings.size(), 2U);
        EXPECT_EQ(watch.openings[0].range.start, headerSize);
        EXPECT_EQ(watch.openings[0].range.end, readerPosition);
    }
}

TEST(WordProRange, IsNotAskedForWhenTheSeekBehindTheHeaderFails) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"), headerSize);
    handle->failSeeksFrom = 1;  // the first is the one to 7; 16 lies behind the buffered bytes
    SubObjectWatch watch;
    EXPECT_EQ(WatchedAnswer(*handle, watch), 0);
    EXPECT_TRUE(watch.openings.empty());
}

TEST(WordProRange, OfAFileShorterThanItsHeaderIsAskedForWithTheRealSize) {
    for (const std::uint32_t size : {9U, 10U, 15U}) {
        const auto handle = MakeTransformed(FIBytes(">32 w:11"));
        handle->bytes.resize(size);
        SubObjectWatch watch;
        EXPECT_EQ(WatchedAnswer(*handle, watch), 1145);
        ASSERT_EQ(watch.openings.size(), 2U);
        EXPECT_EQ(watch.openings[0].range.start, headerSize);
        EXPECT_EQ(watch.openings[0].range.end, size);
    }
}

TEST(WordProRange, OfAFileShorterThanItsHeaderIsNotAskedForWhereAHandleRefusesToGoBehindTheEnd) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    handle->bytes.resize(15);
    handle->refuseSeekBehindEnd = true;
    SubObjectWatch watch;
    EXPECT_EQ(WatchedAnswer(*handle, watch), 0);
    EXPECT_TRUE(watch.openings.empty());
}

TEST(WordProDerived, NeedsNoMemory) {
    const auto handle = MakeTransformed(FIBytes(">32 w:11"));
    const FIProbe probe = [](FIReader& reader) {
        FIFailAllocationsFrom(0);
        const FIID answer = FIProbeWordPro(reader);
        FIHeapNeverFails();
        return answer;
    };
    EXPECT_EQ(FIAnswerOver(probe, *handle), 1145);
}

TEST(WordProDerived, ComesBackWhateverFails) {
    for (std::uint32_t failing = 0; failing < 8; ++failing) {
        for (const bool derived : {true, false}) {
            const auto handle = MakeTransformed(derived ? FIBytes(">32 w:11") : "");
            handle->failSeeksFrom = failing;
            static_cast<void>(FIAnswerOver(FIProbeWordPro, *handle));
            const auto unreadable = MakeTransformed(derived ? FIBytes(">32 w:11") : "");
            unreadable->failReadsFrom = failing;
            static_cast<void>(FIAnswerOver(FIProbeWordPro, *unreadable));
        }
    }
}

// ---- Through the table --------------------------------------------------------------------------------------------

struct WholeCase {
    const char* name;
    const char* bytes;
    FIID answer;
};

const WholeCase wholeCases[] = {
    // clang-format off
    {"Byte5",                    R"("WordPro" >48 05 00)",          1108},
    {"Byte10",                   R"("WordPro" >48 0A 00)",          1108},
    {"Byte11",                   R"("WordPro" >48 0B 00)",          1145},
    {"AnyTwoBytes",              R"("WordPro" 12 34 >48 0B 00)",    1145},
    {"Byte0DFC",                 R"("WordPro" 0D FC >48 05 00)",    1108},
    {"HeaderAlone",              R"("WordPro" >16)",                1145},
    {"EndsBefore48",             R"("WordPro" >48)",                1145},
    {"TransformedIsRefused",     R"("WordPro" 0D FB >48 05 00)",    1999},
    {"TransformedHeaderAlone",   R"("WordPro" 0D FB >16)",          1999},
    // clang-format on
};

TEST(WordProRow, DecidesOverAHandleOfTheLibrary) {
    for (const WholeCase& each : wholeCases) {
        std::uint16_t row = 0;
        EXPECT_EQ(FIIdentifyBytes(FIBytes(each.bytes), "", FIFlagExtendedText, &row), each.answer) << each.name;
        EXPECT_EQ(row, wordProRow) << each.name;
    }
}

TEST(WordProRow, DecidesOverAHandleOfTheHost) {
    for (const WholeCase& each : wholeCases) {
        for (const bool allowRange : {false, true}) {
            const auto handle = FIMakeTestHandle(FIBytes(each.bytes));
            handle->allowRange = allowRange;
            const FIVerdict verdict = FIIdentifyHandle(*handle);
            EXPECT_EQ(verdict.fiid, each.answer) << each.name;
            EXPECT_EQ(verdict.row, wordProRow) << each.name;
        }
    }
}

TEST(WordProRow, EndsTheWalkWith1999SoThatNeitherALaterRowNorTheCharactersDecide) {
    // The extension alone would decide in a row behind this one.
    const auto handle = MakeTransformed("");
    handle->name = "letter.tga";
    const FIVerdict verdict = FIIdentifyHandle(*handle);
    EXPECT_EQ(verdict.fiid, formatNotKnown);
    EXPECT_EQ(verdict.row, wordProRow);
    EXPECT_EQ(handle->openChildren, 0U);
}

TEST(WordProRow, NeedsAllSevenZeros) {
    for (std::size_t index = 9; index < 16; ++index) {
        const auto handle = FIMakeTestHandle(FIBytes(R"("WordPro" >48 05 00)"), "letter.tga");
        handle->bytes[index] = '\x01';
        const FIVerdict verdict = FIIdentifyHandle(*handle);
        EXPECT_EQ(verdict.fiid, 1512) << "byte " << index;  // the extension decides, in row 207
        EXPECT_EQ(verdict.row, 207_row);
    }
    const auto shorter = FIMakeTestHandle(FIBytes(R"("WordPro" >15)"), "letter.tga");
    EXPECT_EQ(FIIdentifyHandle(*shorter).fiid, 1512);
}

}  // namespace
