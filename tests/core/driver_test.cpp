// The entries and the walk: names and extensions, storages, options, statuses, and the state of the handle afterwards.
#include "core/driver.h"

#include <gtest/gtest.h>

#include "catalogue/format_not_known.h"
#include "fiid.h"
#include "platform/base_utility.h"
#include "support/case_name.h"
#include "support/probe_case.h"
#include "support/process_heap.h"
#include "support/row_number.h"
#include "support/test_handle.h"

namespace {

using ::PrintTo;

FIID Identify(TestHandle& handle, std::uint32_t flags = 0) {
    FIID fiid = 77;
    EXPECT_EQ(FIIdHandle(FIFileOf(handle), flags, &fiid), 0);
    return fiid;
}

// ---- The extension --------------------------------------------------------------------------------------------------

// 1522 is HP-GL, told by the extension PGL alone.
constexpr FIID byExtension = 1522;

struct NameCase {
    const char* name;
    const char* fileName;
    FIID answer;
};

const NameCase nameCases[] = {
    // clang-format off
    {"Plain",                      "a.PGL",         byExtension},
    {"LowerCase",                  "a.pgl",         byExtension},
    {"MixedCase",                  "a.pGl",         byExtension},
    {"LeadingDotCounts",           ".pgl",          byExtension},
    {"LastDotCounts",              "a.b.pgl",       byExtension},
    {"OtherThenLastDot",           "a.pgl.b",       formatNotKnown},
    {"NoDot",                      "pgl",           formatNotKnown},
    {"DotAtTheEnd",                "pgl.",          formatNotKnown},
    {"Empty",                      "",              formatNotKnown},
    {"LongerExtension",            "a.pglx",        byExtension},
    {"CutAfterFourCharacters",     "a.PGLDOCUMENT", byExtension},
    {"ShorterExtension",           "a.pg",          formatNotKnown},
    {"DirectoryAndNoDotInTheName", "d.pgl/a",       byExtension},
    {"HighByteIsKept",             "a.pg\xCC",      formatNotKnown},
    // clang-format on
};

class FileName : public testing::TestWithParam<NameCase> {};

TEST_P(FileName, GivesItsExtension) {
    const auto handle = FIMakeTestHandle("", GetParam().fileName);
    EXPECT_EQ(Identify(*handle), GetParam().answer);
}

TEST_P(FileName, GivesItsExtensionInWideUnits) {
    const auto handle = FIMakeTestHandle("");
    for (const char* byte = GetParam().fileName; *byte != '\0'; ++byte) {
        handle->wideName += static_cast<char16_t>(static_cast<std::uint8_t>(*byte));
    }
    EXPECT_EQ(Identify(*handle), GetParam().answer);
}

INSTANTIATE_TEST_SUITE_P(Driver, FileName, testing::ValuesIn(nameCases), FICaseName);

TEST(Driver, WideCharacterCountsByItsLowByte) {
    const auto handle = FIMakeTestHandle("");
    handle->wideName = u"a.PG\u014C";  // 4C is L
    EXPECT_EQ(Identify(*handle), byExtension);
}

TEST(Driver, WideDotIsComparedInAllBits) {
    const auto handle = FIMakeTestHandle("");
    handle->wideName = u"a\u012EPGL";  // 2E is a dot, 012E is none
    EXPECT_EQ(Identify(*handle), formatNotKnown);
}

TEST(Driver, RoutineGetsTheExtensionCutToFourCharacters) {
    // What the routine for news articles takes for its own is NWS2, not NWS2X.
    const auto handle = FIMakeTestHandle("Newsgroups: a\nMessage-ID: b\n", "report.nws2x");
    EXPECT_EQ(Identify(*handle), 1194);
}

// What a host's handle answers when it is asked for its name; its type is told apart.
std::string toldName;
std::uint32_t toldNameType = IONameNarrow;
bool roomWasReady = false;

std::int32_t TellName(HIOFILE, std::uint32_t selector, void* value) {
    if (selector == IOInfoNameType) {
        *static_cast<std::uint32_t*>(value) = toldNameType;
        return 0;
    }
    if (selector != IOInfoName) return -1;
    auto* const room = static_cast<char*>(value);
    roomWasReady = room[0] == '\0' && room[1] == '\0';
    toldName.copy(room, toldName.size());
    return toldName.empty() ? -1 : 0;
}

FIID IdentifyNamed(std::string name, std::uint32_t type) {
    const auto handle = FIMakeTestHandle("", "a.pgl");
    handle->file.operations.IOGetInfo = TellName;
    toldName = std::move(name);
    toldNameType = type;
    roomWasReady = false;
    const FIID answer = Identify(*handle);
    EXPECT_TRUE(roomWasReady) << "the first two bytes are zeroed";
    return answer;
}

std::string Widen(const std::string& narrow) {
    std::string bytes;
    for (const char character : narrow) bytes += {character, '\0'};
    return bytes;
}

TEST(Driver, NameWithoutATerminatorEndsWithItsRoom) {
    EXPECT_EQ(IdentifyNamed(std::string(252, 'n') + ".pgl", IONameNarrow), byExtension);
    EXPECT_EQ(IdentifyNamed(std::string(253, 'n') + ".pg", IONameNarrow), formatNotKnown);
    EXPECT_EQ(IdentifyNamed(Widen(std::string(124, 'n') + ".pgl"), IONameWide), byExtension);
    EXPECT_EQ(IdentifyNamed(Widen(std::string(125, 'n') + ".pg"), IONameWide), formatNotKnown);
    EXPECT_EQ(IdentifyNamed(std::string(256, 'n'), IONameNarrow), formatNotKnown);
    EXPECT_EQ(IdentifyNamed(std::string(256, 'n'), IONameWide), formatNotKnown);
}

TEST(Driver, NameThatCannotBeToldIsEmpty) {
    for (const std::uint32_t type : {IONameNarrow, IONameWide}) EXPECT_EQ(IdentifyNamed("", type), formatNotKnown);
}

TEST(Driver, NameOfATypeThatIsNotKnownIsNarrow) {
    for (const std::uint32_t type : {0U, 1U, 3U, 5U, 0xFFFFFFFFU}) {
        EXPECT_EQ(IdentifyNamed(std::string("a.pgl") + '\0', type), byExtension) << type;
    }
}

// ---- The walk -------------------------------------------------------------------------------------------------------

TEST(Driver, FirstRowWithAResultDecides) {
    std::uint16_t row = 0;
    EXPECT_EQ(FIIdentifyBytes("%PDF-1.4", "a.ai", 0, &row), 1611);
    EXPECT_EQ(row, 99_row);
    EXPECT_EQ(FIIdentifyBytes("%PDF-1.4", "a.pdf", 0, &row), 1557);
    EXPECT_EQ(row, 101_row);
}

TEST(Driver, HandleStandsAtTheStartAfterwards) {
    for (const char* bytes : {"GIF89a", "", "plain text"}) {
        const auto handle = FIMakeTestHandle(bytes);
        Identify(*handle, FIFlagExtendedText);
        char byte = 0;
        std::uint32_t count = 0;
        EXPECT_EQ(handle->file.operations.IORead(FIFileOf(*handle), &byte, 1, &count), 0);
        EXPECT_EQ(count, bytes[0] == '\0' ? 0U : 1U);
        EXPECT_EQ(byte, bytes[0]);
    }
}

TEST(Driver, UnreadableFileComesOutThroughTheExtensionOrAsText) {
    const auto handle = FIMakeTestHandle("GIF89a", "a.gif");
    handle->failReadsFrom = 0;
    EXPECT_EQ(Identify(*handle), formatNotKnown);
    handle->name = "a.pgl";
    EXPECT_EQ(Identify(*handle), byExtension);
}

// A handle whose reads fail tells its size all the same. The size decides which answer text of no bytes comes to.
TEST(Driver, UnreadableFileIsTextOfOneKindOrAnotherByItsSize) {
    struct SizeCase {
        std::size_t size;
        FIID answer;
    };
    for (const SizeCase& sizeCase : {SizeCase{0, 4022}, {1, 4022}, {2, 4005}, {3, 4005}, {6, 4005}}) {
        const auto handle = FIMakeTestHandle(std::string("GIF89a").substr(0, sizeCase.size), "a.gif");
        handle->failReadsFrom = 0;
        EXPECT_EQ(Identify(*handle, FIFlagExtendedText), sizeCase.answer) << sizeCase.size;
        EXPECT_EQ(Identify(*handle), formatNotKnown) << sizeCase.size;
        EXPECT_EQ(handle->bytesDelivered, 0U);
        handle->name = "a.pgl";
        EXPECT_EQ(Identify(*handle, FIFlagExtendedText), byExtension) << "the extension comes first";
    }
}

// Every read is full, so a count that is cut to what was asked for is the true one.
TEST(Driver, HandleThatClaimsMoreThanItWasAskedForIsReadAsFarAsItWasAsked) {
    const std::string zeros(10000, '\0');
    const std::string text(10000, 'x');
    const std::string starts[] = {
        "",        "GIF89a", "#define a_width 1\n", "PK\3\4", "<?xml version=\"1.0\"?><a>", "S      1", "MZ",
        "{\\rtf1", "x-lh5-", "\x1\x80\x1\x80"};
    for (const std::string& start : starts) {
        for (const std::string& rest : {zeros, text}) {
            const auto handle = FIMakeTestHandle(start + rest, "a.b");
            const FIID answer = Identify(*handle, FIFlagExtendedText);
            for (const std::uint32_t beyond : {1U, 63U, 0x7000U, 0xF000U, 0xFFFF0000U}) {
                handle->claimBeyond = beyond;
                EXPECT_EQ(Identify(*handle, FIFlagExtendedText), answer) << start << " " << beyond;
                EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), 4050), 0);
            }
        }
    }
}

TEST(Driver, ExhaustedMemoryIsAFailureWith1999) {
    const auto handle = FIMakeTestHandle("GIF89a");
    handle->position = 3;
    FIID fiid = 77;
    FIFailAllocationsFrom(0);
    EXPECT_EQ(FIIdHandle(FIFileOf(*handle), 0, &fiid), -1);
    FIHeapNeverFails();
    EXPECT_EQ(fiid, formatNotKnown);
    EXPECT_EQ(handle->position, 3U) << "the handle is not moved on this path";
}

TEST(Driver, NothingIsLeaked) {
    const std::size_t blocks = FIHeapBlocks();
    for (const char* bytes : {"GIF89a", "", "plain text\n", "PK\3\4", "BEGIN:VCARD"}) {
        FIIdentifyBytes(bytes);
        EXPECT_EQ(FIHeapBlocks(), blocks);
    }
}

// ---- Storages -------------------------------------------------------------------------------------------------------

std::unique_ptr<TestHandle> MakeStorage(const char* classId) {
    auto handle = FIMakeTestHandle("\xD0\xCF\x11\xE0 and so on");
    handle->isStorage = true;
    handle->classId = FIBytes(classId);
    return handle;
}

constexpr const char* powerPointClass = "10 8D 81 64 9B 4F CF 11 86 EA 00 AA 00 B9 29 E8";
constexpr const char* unknownClass = "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10";

TEST(Driver, StorageIsToldByItsClassIdentifier) {
    const auto handle = MakeStorage(powerPointClass);
    EXPECT_EQ(Identify(*handle), 1581);
    EXPECT_EQ(handle->bytesDelivered, 0U) << "before anything is read";
}

TEST(Driver, StorageOfUnknownClassIsNotTakenForText) {
    const auto handle = MakeStorage(unknownClass);
    handle->bytes = "plain text";
    EXPECT_EQ(Identify(*handle, FIFlagExtendedText), formatNotKnown);
}

TEST(Driver, StorageOfUnknownClassGoesThroughTheOtherRows) {
    const auto handle = MakeStorage(unknownClass);
    handle->bytes = "GIF89a";
    EXPECT_EQ(Identify(*handle), 1503);
    handle->bytes = "";
    handle->name = "a.pgl";
    EXPECT_EQ(Identify(*handle), byExtension);
}

TEST(Driver, StorageWithoutAClassIdentifierIsAPlainFile) {
    const auto handle = MakeStorage(powerPointClass);
    handle->hasClassId = false;
    handle->bytes = "plain text";
    EXPECT_EQ(Identify(*handle), formatNotKnown);
    EXPECT_EQ(Identify(*handle, FIFlagExtendedText), 4022);
}

// ---- Extended text identification -----------------------------------------------------------------------------------

TEST(Driver, TextIsToldWhenTheFlagIsSet) {
    const auto handle = FIMakeTestHandle("plain text");
    EXPECT_EQ(Identify(*handle, 0), formatNotKnown);
    EXPECT_EQ(Identify(*handle, FIFlagExtendedText), 4022);
    EXPECT_EQ(Identify(*handle, 0xFFFFFFFE), formatNotKnown) << "no other bit has a meaning";
}

TEST(Driver, TextIsToldWhenTheOptionAllowsIt) {
    const auto handle = FIMakeTestHandle("plain text");
    ASSERT_EQ(FIInit(nullptr), 0);
    EXPECT_EQ(Identify(*handle), formatNotKnown) << "the option is not set";
    std::uint32_t value = 0xFFFFFFFE;
    ASSERT_EQ(UTSetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, sizeof(value)), 0);
    EXPECT_EQ(Identify(*handle), formatNotKnown) << "bit 0 alone counts";
    value = 0x00000001;
    ASSERT_EQ(UTSetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, sizeof(value)), 0);
    EXPECT_EQ(Identify(*handle), 4022);
    ASSERT_EQ(FIDeInit(nullptr), 0);
    EXPECT_EQ(Identify(*handle), formatNotKnown) << "no option set";
}

// ---- Files ----------------------------------------------------------------------------------------------------------

TEST(Driver, FileThatCannotBeOpenedIsAFailureWith0) {
    FIID fiid = 77;
    EXPECT_EQ(FIIdFile(IOSpecNarrow, "/nonexistent/file", 0, &fiid), -1);
    EXPECT_EQ(fiid, 0);
    fiid = 77;
    char name[8] = "as was";
    EXPECT_EQ(FIIdFileEx(IOSpecNarrow, "/nonexistent/file", 0, &fiid, name, sizeof(name)), -1);
    EXPECT_EQ(fiid, 0);
    EXPECT_STREQ(name, "as was");
}

TEST(Driver, FileIsOpenedAndClosed) {
    const std::size_t blocks = FIHeapBlocks();
    const IOMemorySpec memory = {"GIF89a", 6, "a.gif"};
    FIID fiid = 0;
    EXPECT_EQ(FIIdFile(IOSpecMemory, &memory, 0, &fiid), 0);
    EXPECT_EQ(fiid, 1503);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(Driver, FileExWritesTheName) {
    const IOMemorySpec memory = {"GIF89a", 6, "a.gif"};
    FIID fiid = 0;
    char name[100] = "as was";
    EXPECT_EQ(FIIdFileEx(IOSpecMemory, &memory, 0, &fiid, name, sizeof(name)), 0);
    EXPECT_EQ(fiid, 1503);
    char expected[100] = "";
    EXPECT_GT(FIGetIDString(1503, expected, sizeof(expected)), 0);
    EXPECT_STREQ(name, expected);
}

TEST(Driver, FileExWithoutABufferIsFile) {
    const IOMemorySpec memory = {"GIF89a", 6, "a.gif"};
    FIID fiid = 0;
    EXPECT_EQ(FIIdFileEx(IOSpecMemory, &memory, 0, &fiid, nullptr, 100), 0);
    EXPECT_EQ(fiid, 1503);
}

TEST(Driver, FileExNamesAnUnknownFormatToo) {
    const IOMemorySpec memory = {"\1\2\3", 3, nullptr};
    FIID fiid = 0;
    char name[100] = "";
    EXPECT_EQ(FIIdFileEx(IOSpecMemory, &memory, 0, &fiid, name, sizeof(name)), 0);
    EXPECT_EQ(fiid, formatNotKnown);
    EXPECT_STRNE(name, "");
}

// ---- Special tests --------------------------------------------------------------------------------------------------

TEST(Driver, SpecialKnowsOneTest) {
    const auto handle = FIMakeTestHandle("begin 644 a.txt\n");
    for (const std::int16_t test : std::initializer_list<std::int16_t>{0, 1, 4049, 4051, -1}) {
        EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), test), 0);
    }
    EXPECT_EQ(handle->reads + handle->seeks + handle->tells + handle->infos, 0U) << "nothing is touched";
    EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), 4050), 0);
    EXPECT_GT(handle->reads, 0U);
}

TEST(Driver, SpecialWithoutMemoryIs0) {
    const auto handle = FIMakeTestHandle("begin 644 a.txt\n");
    FIFailAllocationsFrom(0);
    EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), 4050), 0);
    FIHeapNeverFails();
}

// The closing entry of the table runs over nine zero bytes; only a file full of zeros gets past the first of them.
TEST(Driver, ClosingEntryNeverAnswers) { EXPECT_EQ(FIIdentifyBytes(std::string(3000, '\0'), "", 0), formatNotKnown); }

}  // namespace
