// Block structures: a header with a block number, a table of entries, a list of blocks, and records with mirrored
// lengths.
#include "wordproc/block_structures.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/case_name.h"
#include "support/failing_seeks.h"
#include "support/ordinary_files.h"
#include "support/probe_case.h"
#include "support/whole_file.h"

namespace {

using ::PrintTo;

// Puts bytes into a file at an offset; the file grows with zeros.
void Put(std::string& file, std::size_t offset, std::string_view notation) {
    const std::string bytes = FIBytes(notation);
    if (file.size() < offset + bytes.size()) file.resize(offset + bytes.size());
    file.replace(offset, bytes.size(), bytes);
}

// A change to a file that is accepted, and the answer behind it.
struct ChangeCase {
    const char* name;
    std::size_t offset;
    const char* bytes;
    FIID answer;
};

std::string Changed(std::string file, const ChangeCase& change) {
    Put(file, change.offset, change.bytes);
    return file;
}

// ---- The header with a block number --------------------------------------------------------------------------------

FIID HeaderAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeBlockHeader, bytes); }

// Block 2 with the marker at 1,026, zeros at 420 and 467, 1 at 508.
std::string Header1006() {
    std::string file;
    Put(file, 508, "01");
    Put(file, 512, "02");
    Put(file, 1026, "FF 03 B3");
    return file;
}

std::string Header1007() {
    std::string file = Header1006();
    Put(file, 467, "41");
    return file;
}

// The word 3 at 512 and the marker at 1,538.
std::string Header1039() {
    std::string file;
    Put(file, 511, "04 03 00");
    Put(file, 1538, "FF 03 B3");
    return file;
}

TEST(BlockHeader, TellsThreeFormats) {
    EXPECT_EQ(HeaderAnswer(Header1006()), 1006);
    EXPECT_EQ(HeaderAnswer(Header1007()), 1007);
    EXPECT_EQ(HeaderAnswer(Header1039()), 1039);
    EXPECT_EQ(HeaderAnswer(""), 0);
    EXPECT_EQ(HeaderAnswer(std::string(4096, '\0')), 0);
}

class Header1006Change : public testing::TestWithParam<ChangeCase> {};

TEST_P(Header1006Change, Answers) { EXPECT_EQ(HeaderAnswer(Changed(Header1006(), GetParam())), GetParam().answer); }

const ChangeCase header1006Changes[] = {
    // clang-format off
    {"At419IsFree",            419, "FF",                1006},
    {"At420IsOne",             420, "01",                1007},
    {"At420Is255",             420, "FF",                1007},
    {"At421IsFree",            421, "FF",                1006},
    {"At439IsFree",            439, "FF",                1006},
    {"At440Is1",               440, "01",                1006},
    {"At440Is9",               440, "09",                1006},
    {"At440Is10",              440, "0A",                   0},
    {"At440Is128",             440, "80",                   0},
    {"At440Is255",             440, "FF",                   0},
    {"At441Is1",               441, "01",                   0},
    {"At441Is255",             441, "FF",                   0},
    {"At442IsFree",            442, "FF",                1006},
    {"At466IsFree",            466, "FF",                1006},
    {"At467IsA",               467, "41",                1007},
    {"At467IsM",               467, "4D",                1007},
    {"At467IsZ",               467, "5A",                1007},
    {"At467IsBelowA",          467, "40",                   0},
    {"At467IsAboveZ",          467, "5B",                   0},
    {"At467IsASmallLetter",    467, "61",                   0},
    {"At467Is1",               467, "01",                   0},
    {"At467Is255",             467, "FF",                   0},
    {"At467IsAWithTopBit",     467, "C1",                   0},
    {"At468Is1",               468, "01",                   0},
    {"At469Is1",               469, "01",                   0},
    {"At470Is1",               470, "01",                   0},
    {"At471Is1",               471, "01",                   0},
    {"At471Is255",             471, "FF",                   0},
    {"At472IsFree",            472, "FF",                1006},
    {"At498IsFree",            498, "FF",                1006},
    {"At499Is1",               499, "01",                   0},
    {"At500Is1",               500, "01",                   0},
    {"At500Is255",             500, "FF",                   0},
    {"At501IsFree",            501, "FF",                1006},
    {"At507IsFree",            507, "FF",                1006},
    {"At508Is0",               508, "00",                   0},
    {"At508Is2",               508, "02",                1006},
    {"At508Is254",             508, "FE",                1006},
    {"At508Is255",             508, "FF",                   0},
    {"At509IsFree",            509, "FF FF",             1006},
    {"At511Is1",               511, "01",                   0},
    {"At511Is3",               511, "03",                   0},
    {"At511Is5",               511, "05",                   0},
    {"At511Is255",             511, "FF",                   0},
    {"At511Is4AndTheWordIs2",  511, "04 02 00",          1039},
    {"At513IsFree",            513, "FF",                1006},
    {"At1025IsFree",          1025, "FF",                1006},
    {"MarkerFirstByte",       1026, "FE",                   0},
    {"MarkerSecondByte",      1027, "02",                   0},
    {"MarkerThirdByte",       1028, "B2",                   0},
    {"At1029IsFree",          1029, "FF",                1006},
    {"Block0",                 512, "00",                   0},
    {"Block1",                 512, "01",                   0},
    {"Block3WithoutItsMarker", 512, "03",                   0},
    {"At420And467",            420, "01 >47 41",         1007},
    {"At420And468",            420, "01 >48 01",            0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Header1006, Header1006Change, testing::ValuesIn(header1006Changes), FICaseName);

class Header1007Change : public testing::TestWithParam<ChangeCase> {};

TEST_P(Header1007Change, Answers) { EXPECT_EQ(HeaderAnswer(Changed(Header1007(), GetParam())), GetParam().answer); }

const ChangeCase header1007Changes[] = {
    // clang-format off
    {"At420IsOne",             420, "01",                1007},
    {"At440Is9",               440, "09",                1007},
    {"At440Is10",              440, "0A",                   0},
    {"At441Is1",               441, "01",                   0},
    {"At468Is1",               468, "01",                   0},
    {"At471Is1",               471, "01",                   0},
    {"At499Is1",               499, "01",                   0},
    {"At500Is1",               500, "01",                   0},
    {"At508Is0",               508, "00",                   0},
    {"At508Is254",             508, "FE",                1007},
    {"At508Is255",             508, "FF",                   0},
    {"At511Is1",               511, "01",                   0},
    {"At511Is4AndTheWordIs2",  511, "04 02 00",          1039},
    {"Block1",                 512, "01",                   0},
    {"MarkerThirdByte",       1028, "B2",                   0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Header1007, Header1007Change, testing::ValuesIn(header1007Changes), FICaseName);

class Header1039Change : public testing::TestWithParam<ChangeCase> {};

TEST_P(Header1039Change, Answers) { EXPECT_EQ(HeaderAnswer(Changed(Header1039(), GetParam())), GetParam().answer); }

const ChangeCase header1039Changes[] = {
    // clang-format off
    {"At420Is1",               420, "01",                1039},
    {"At440Is9",               440, "09",                1039},
    {"At440Is10",              440, "0A",                   0},
    {"At441Is1",               441, "01",                   0},
    {"At467IsA",               467, "41",                1039},
    {"At467IsASmallLetter",    467, "61",                   0},
    {"At420And467",            420, "01 >47 41",         1039},
    {"At468To471AreFree",      468, "01 FF 80 7F",       1039},
    {"At499Is1",               499, "01",                   0},
    {"At500Is1",               500, "01",                   0},
    {"At508Is1",               508, "01",                1039},
    {"At508Is254",             508, "FE",                1039},
    {"At508Is255",             508, "FF",                1039},
    {"At511Is0",               511, "00",                   0},
    {"At511Is0AndAt508Is1",    508, "01 00 00 00",       1006},
    {"At511Is3",               511, "03",                   0},
    {"At511Is5",               511, "05",                   0},
    {"At511Is255",             511, "FF",                   0},
    {"MarkerFirstByte",       1538, "FE",                   0},
    {"MarkerSecondByte",      1539, "04",                   0},
    {"MarkerThirdByte",       1540, "33",                   0},
    {"Block0",                 512, "00 00",                0},
    {"Block1",                 512, "01 00",                0},
    {"Block2WithoutItsMarker", 512, "02 00",                0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Header1039, Header1039Change, testing::ValuesIn(header1039Changes), FICaseName);

// The answer for a block number of one byte with the marker at an offset.
FIID AnswerOfByteBlock(std::string file, std::size_t block, std::size_t marker) {
    file.resize(1026);
    file[512] = static_cast<char>(block);
    Put(file, marker, "FF 03 B3");
    if (file.size() < 70000) file.resize(70000);
    return HeaderAnswer(file);
}

TEST(BlockHeader, FollowsBlocks2To63) {
    for (const std::size_t block : {2U, 3U, 4U, 31U, 62U, 63U}) {
        EXPECT_EQ(AnswerOfByteBlock(Header1006(), block, block * 512 + 2), 1006) << block;
        EXPECT_EQ(AnswerOfByteBlock(Header1007(), block, block * 512 + 2), 1007) << block;
        EXPECT_EQ(AnswerOfByteBlock(Header1006(), block, block * 512 + 1), 0) << block;
        EXPECT_EQ(AnswerOfByteBlock(Header1006(), block, block * 512 + 3), 0) << block;
    }
}

// Quirk: the offset is a signed 16-bit number, so that blocks of 32 KiB and more lie in front of the file.
TEST(BlockHeader, DoesNotReachBlocks64To127) {
    for (const std::size_t block : {64U, 65U, 100U, 126U, 127U}) {
        EXPECT_EQ(AnswerOfByteBlock(Header1006(), block, block * 512 + 2), 0) << block;
        EXPECT_EQ(AnswerOfByteBlock(Header1007(), block, block * 512 + 2), 0) << block;
    }
}

// Quirk: it wraps, so that a byte of 128 or more leads where its low seven bits do.
TEST(BlockHeader, WrapsFromBlock128) {
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 128, 2), 1006);
    EXPECT_EQ(AnswerOfByteBlock(Header1007(), 128, 2), 1007);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 129, 514), 1006);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 130, 1026), 1006);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 191, 63 * 512 + 2), 1006);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 192, 64 * 512 + 2), 0);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 255, 127 * 512 + 2), 0);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 130, 130 * 512 + 2), 0);
}

// Quirk: a marker that is found counts for nothing when both formats are out, and the search goes on.
TEST(BlockHeader, PassesOverAMarkerOfBlock1) {
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 1, 514), 0);
    EXPECT_EQ(AnswerOfByteBlock(Header1007(), 1, 514), 0);
    EXPECT_EQ(AnswerOfByteBlock(Header1006(), 0, 2), 0);
}

FIID AnswerOfWordBlock(std::size_t block, std::size_t marker) {
    std::string file = FIBytes(">511 04");
    file += static_cast<char>(block & 0xFF);
    file += static_cast<char>(block >> 8 & 0xFF);
    Put(file, marker, "FF 03 B3");
    if (file.size() < 70000) file.resize(70000);
    return HeaderAnswer(file);
}

TEST(BlockHeader, FollowsAWordFor1039) {
    for (const std::size_t block : {2U, 3U, 62U, 63U}) {
        EXPECT_EQ(AnswerOfWordBlock(block, block * 512 + 2), 1039) << block;
        EXPECT_EQ(AnswerOfWordBlock(block, block * 512 + 1), 0) << block;
        EXPECT_EQ(AnswerOfWordBlock(block, block * 512 + 3), 0) << block;
    }
    for (const std::size_t block : {64U, 100U, 127U}) EXPECT_EQ(AnswerOfWordBlock(block, block * 512 + 2), 0) << block;
    EXPECT_EQ(AnswerOfWordBlock(0, 2), 0);
    EXPECT_EQ(AnswerOfWordBlock(1, 514), 0);
}

// Quirk: the word is signed, and only its low seven bits reach the offset.
TEST(BlockHeader, WrapsTheWordFor1039) {
    EXPECT_EQ(AnswerOfWordBlock(128, 2), 1039);
    EXPECT_EQ(AnswerOfWordBlock(129, 514), 1039);
    EXPECT_EQ(AnswerOfWordBlock(130, 1026), 1039);
    EXPECT_EQ(AnswerOfWordBlock(256, 2), 1039);
    EXPECT_EQ(AnswerOfWordBlock(259, 1538), 1039);
    EXPECT_EQ(AnswerOfWordBlock(0x7F82, 1026), 1039);
    EXPECT_EQ(AnswerOfWordBlock(0x7FBF, 63 * 512 + 2), 1039);
    EXPECT_EQ(AnswerOfWordBlock(0x7FC0, 64 * 512 + 2), 0);
    EXPECT_EQ(AnswerOfWordBlock(0x8002, 1026), 0) << "negative";
    EXPECT_EQ(AnswerOfWordBlock(0xFF82, 1026), 0) << "negative";
}

TEST(BlockHeader, NeedsTheWholeFile) {
    const std::string file1006 = Header1006();
    for (std::size_t size = 0; size < file1006.size(); ++size) {
        if (size > 513 && size < 1026) continue;  // nothing is read there
        EXPECT_EQ(HeaderAnswer(file1006.substr(0, size)), 0) << size;
    }
    const std::string file1039 = Header1039();
    for (const std::size_t size : {511U, 512U, 513U, 514U, 1538U, 1539U, 1540U}) {
        EXPECT_EQ(HeaderAnswer(file1039.substr(0, size)), 0) << size;
    }
}

TEST(BlockHeader, TestsEverySeek) {
    FIExpectEverySeekIsTested(FIProbeBlockHeader, Header1006(), 1006);
    FIExpectEverySeekIsTested(FIProbeBlockHeader, Header1007(), 1007);
    FIExpectEverySeekIsTested(FIProbeBlockHeader, Header1039(), 1039);
}

TEST(BlockHeader, StartsWhereItsFieldsStandWhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeBlockHeader, Header1006(), 700), 1006);
}

TEST(BlockHeader, WorksInTheWholeTable) {
    FIExpectWholeFile(Header1006(), 1006, 84_row);
    FIExpectWholeFile(Header1007(), 1007, 84_row);
    FIExpectWholeFile(Header1039(), 1039, 84_row);
    std::string file = Header1039();
    Put(file, 468, "01 02 03 04");
    FIExpectWholeFile(file, 1039, 84_row);
    file = Header1006();
    Put(file, 420, "01");
    FIExpectWholeFile(file, 1007, 84_row);
    file = Header1006();
    Put(file, 0, R"("Dear")");
    Put(file, 511, "05");
    FIExpectWholeFile(file, 1999, 84_row);
    file = Header1006();
    Put(file, 0, R"("Dear")");
    file.resize(512);
    FIExpectWholeFile(file, 1999, 84_row);
}

// A block number that leads in front of the file makes the handle of the platform layer fail the seek.
TEST(BlockHeader, GetsNoBlockInFrontOfTheFile) {
    std::string file = Header1006();
    Put(file, 0, R"("Dear")");
    Put(file, 512, "40");
    FIExpectWholeFile(file, 1999, 84_row);
}

// ---- The table of entries ------------------------------------------------------------------------------------------

FIID TableAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeEntryTable, bytes); }

constexpr std::size_t entrySize = 14;
constexpr std::size_t smallTable = 130;
constexpr std::size_t smallBase = 1824;
constexpr std::size_t largeTable = 256;
constexpr std::size_t largeBase = 3588;

std::size_t EntryAt(std::size_t index) { return 4 + entrySize * index; }

// A table of entries of type 1 up to the place where the data begin.
std::string EmptyTable(std::size_t count) {
    std::string file;
    file += static_cast<char>(count & 0xFF);
    file += static_cast<char>(count >> 8);
    file += "\x55\x66";
    for (std::size_t index = 0; index < count; ++index) file += FIBytes("w:1 FF*12");
    return file;
}

// The same with an entry of type 99, whose data at offset 16 behind the table begin with B3.
std::string TableWithEntry(std::size_t count, std::size_t index) {
    std::string file = EmptyTable(count);
    Put(file, EntryAt(index), "w:99 w:456 FF*4 10 00 00 FF*3");
    Put(file, EntryAt(count) + 16, "B3");
    return file;
}

TEST(EntryTable, HasTwoSizes) {
    EXPECT_EQ(EntryAt(smallTable), smallBase);
    EXPECT_EQ(EntryAt(largeTable), largeBase);
    EXPECT_EQ(TableAnswer(TableWithEntry(smallTable, 0)), 1041);
    EXPECT_EQ(TableAnswer(TableWithEntry(largeTable, 0)), 1041);
    for (const std::size_t count : {0U, 1U, 128U, 129U, 131U, 254U, 255U, 257U, 258U, 386U, 512U}) {
        std::string file = TableWithEntry(count, 0);
        file.resize(std::max(file.size(), largeBase + 17));
        file[smallBase + 16] = '\xB3';
        file[largeBase + 16] = '\xB3';
        EXPECT_EQ(TableAnswer(file), 0) << count;
    }
    EXPECT_EQ(TableAnswer(""), 0);
    EXPECT_EQ(TableAnswer("\x82"), 0);
}

TEST(EntryTable, FindsItsEntryAnywhere) {
    for (const std::size_t index : {1U, 63U, 128U, 129U}) {
        EXPECT_EQ(TableAnswer(TableWithEntry(smallTable, index)), 1041) << index;
    }
    for (const std::size_t index : {1U, 129U, 130U, 254U, 255U}) {
        EXPECT_EQ(TableAnswer(TableWithEntry(largeTable, index)), 1041) << index;
    }
}

TEST(EntryTable, LooksAtNoEntryBehindTheTable) {
    std::string file = EmptyTable(smallTable);
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, smallBase, "w:99 w:456 FF*4 10 00 00 B3 FF FF B3");
    Put(file, smallBase + 16, "B3 00*20");
    EXPECT_EQ(TableAnswer(file), 0);
    file = EmptyTable(largeTable);
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, largeBase, "w:99 w:456 FF*4 10 00 00 B3 FF FF B3");
    Put(file, largeBase + 16, "B3 00*20");
    EXPECT_EQ(TableAnswer(file), 0);
}

class EntryChange : public testing::TestWithParam<ChangeCase> {};

TEST_P(EntryChange, Answers) {
    ChangeCase change = GetParam();
    change.offset += EntryAt(40);
    std::string file = TableWithEntry(smallTable, 40);
    Put(file, smallBase + 0x0201, "B3");
    EXPECT_EQ(TableAnswer(Changed(file, change)), change.answer);
}

const ChangeCase entryChanges[] = {
    // clang-format off
    // name                     offset in the entry
    {"Unchanged",               0, "63",               1041},
    {"Type98",                  0, "w:98",                0},
    {"Type100",                 0, "w:100",               0},
    {"TypeHighByte",            1, "01",                  0},
    {"SubType455",              2, "w:455",               0},
    {"SubType457",              2, "w:457",               0},
    {"SubType200",              2, "w:200",               0},
    {"SubType712",              2, "w:712",               0},
    {"FourBytesAreFree",        4, "00 63 80 7F",      1041},
    {"LastThreeBytesAreFree",  11, "00 63 B3",         1041},
    {"DataOffset15",            8, "0F",                  0},
    {"DataOffset17",            8, "11",                  0},
    {"DataOffset0201",          8, "01 02",            1041},
    {"DataOffset0102",          8, "02 01",               0},
    {"DataOffsetBehindTheFile", 8, "00 00 01",            0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Entry, EntryChange, testing::ValuesIn(entryChanges), FICaseName);

TEST(EntryTable, HasDataOffsetsOf24Bits) {
    std::string file = TableWithEntry(smallTable, 3);
    Put(file, EntryAt(3) + 8, "03 02 01");
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, smallBase + 0x010203, "B3");
    EXPECT_EQ(TableAnswer(file), 1041);
    file[smallBase + 0x010203] = '\xB2';
    EXPECT_EQ(TableAnswer(file), 0);
}

TEST(EntryTable, HasDataOffsetsOfAnyBytes) {
    for (const std::size_t offset : {0x0000FFU, 0x00FF00U, 0x00FFFFU, 0xFF0000U, 0xFFFFFFU}) {
        std::string file = TableWithEntry(smallTable, 3);
        for (std::size_t byte = 0; byte < 3; ++byte) {
            file[EntryAt(3) + 8 + byte] = static_cast<char>(offset >> 8 * byte & 0xFF);
        }
        file.resize(smallBase + offset);
        const auto shorter = FIMakeTestHandle(file);
        EXPECT_EQ(FIAnswerOver(FIProbeEntryTable, *shorter), 0) << offset;
        const auto longEnough = FIMakeTestHandle(file + "\xB3");
        EXPECT_EQ(FIAnswerOver(FIProbeEntryTable, *longEnough), 1041) << offset;
    }
}

TEST(EntryTable, MeasuresDataOffsetsFromBehindItsOwnTable) {
    std::string file = TableWithEntry(largeTable, 3);
    file[largeBase + 16] = '\0';
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, smallBase + 16, "B3");
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, EntryAt(3) + 8, "00 00 00");
    EXPECT_EQ(TableAnswer(file), 0);
    Put(file, largeBase, "B3");
    EXPECT_EQ(TableAnswer(file), 1041);
}

TEST(EntryTable, IsDecidedByItsFirstEntryOfType99) {
    std::string file = TableWithEntry(smallTable, 3);
    Put(file, EntryAt(7), "w:99 w:456 FF*4 FF FF FF");
    EXPECT_EQ(TableAnswer(file), 1041) << "the second one leads nowhere";
    file = TableWithEntry(smallTable, 7);
    Put(file, EntryAt(3), "w:99 w:455 FF*4 10 00 00");
    EXPECT_EQ(TableAnswer(file), 0) << "the first one has another sub-type";
    Put(file, EntryAt(3), "w:99 w:456 FF*4 11 00 00");
    EXPECT_EQ(TableAnswer(file), 0) << "the first one leads elsewhere";
    Put(file, EntryAt(3), "w:98 w:456 FF*4 11 00 00");
    EXPECT_EQ(TableAnswer(file), 1041) << "it is not of type 99";
}

TEST(EntryTable, IsNothingWhenTheFileEndsInside) {
    const std::string empty = EmptyTable(smallTable);
    for (std::size_t size = 0; size < empty.size(); ++size) EXPECT_EQ(TableAnswer(empty.substr(0, size)), 0) << size;
    const std::string file = TableWithEntry(smallTable, 100);
    for (std::size_t size = EntryAt(100); size <= EntryAt(101); ++size) {
        EXPECT_EQ(TableAnswer(file.substr(0, size)), 0) << size;
    }
    EXPECT_EQ(TableAnswer(file.substr(0, file.size() - 1)), 0) << "the data are missing";
}

TEST(EntryTable, TestsEverySeek) { FIExpectEverySeekIsTested(FIProbeEntryTable, TableWithEntry(smallTable, 2), 1041); }

TEST(EntryTable, StartsAtOffset0WhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeEntryTable, TableWithEntry(smallTable, 0), 500), 1041);
}

TEST(EntryTable, WorksInTheWholeTable) {
    FIExpectWholeFile(TableWithEntry(smallTable, 0), 1041, 85_row);
    FIExpectWholeFile(TableWithEntry(smallTable, smallTable - 1), 1041, 85_row);
    FIExpectWholeFile(TableWithEntry(largeTable, largeTable - 1), 1041, 85_row);
    FIExpectWholeFile(EmptyTable(smallTable), 1999, 85_row);
    std::string file = TableWithEntry(smallTable, 9);
    Put(file, EntryAt(5), "w:99 w:455");
    FIExpectWholeFile(file, 1999, 85_row);
    FIExpectWholeFile(TableWithEntry(smallTable, 100).substr(0, EntryAt(60) + 5), 1999, 85_row);
}

// ---- The list of blocks --------------------------------------------------------------------------------------------

FIID ListAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeBlockList, bytes); }

// A list of three blocks, 2, 4 and 3, in a file of five.
std::string ThreeBlocks() {
    std::string file;
    Put(file, 256, "w:3 w:0 w:0 w:0 w:0 w:2 w:4 w:3");
    Put(file, 2 * 1024, "86");
    Put(file, 3 * 1024, "86");
    Put(file, 4 * 1024, "86 00*9");
    return file;
}

class BlockListChange : public testing::TestWithParam<ChangeCase> {};

TEST_P(BlockListChange, Answers) { EXPECT_EQ(ListAnswer(Changed(ThreeBlocks(), GetParam())), GetParam().answer); }

const ChangeCase blockListChanges[] = {
    // clang-format off
    {"Unchanged",                 3, "FF*253",                         1025},
    {"At0Is1",                    0, "01",                                0},
    {"At1Is1",                    1, "01",                                0},
    {"At2Is255",                  2, "FF",                                0},
    {"At3IsFree",                 3, "FF",                             1025},
    {"CountIs0",                256, "w:0",                               0},
    {"CountIs1",                256, "w:1",                            1025},
    {"CountIs2",                256, "w:2",                            1025},
    {"CountIs4",                256, "w:4",                            1025},
    {"CountIs256",              256, "w:256",                          1025},
    {"CountIs1000",             256, "w:1000",                         1025},
    {"CountIs32767",            256, "w:32767",                        1025},
    {"CountIsNegative",         256, "w:32768",                           0},
    {"CountIsMinus1",           256, "w:65535",                           0},
    {"SecondWordIs1",           258, "w:1",                               0},
    {"SecondWordIs256",         258, "w:256",                             0},
    {"ThirdWordTakes1",         260, "w:1",                            1025},
    {"FourthWordTakes1",        262, "w:1",                            1025},
    {"ThirdAndFourthTake2",     260, "w:1 w:1",                        1025},
    {"FifthWordIs1",            264, "w:1",                               0},
    {"FifthWordIs256",          264, "w:256",                             0},
    {"Count1LessOne",           256, "w:1 w:0 w:1 w:0",                   0},
    {"Count1LessTheOther",      256, "w:1 w:0 w:0 w:1",                   0},
    {"Count1LessTwo",           256, "w:1 w:0 w:1 w:1",                   0},
    {"Count2LessOne",           256, "w:2 w:0 w:1 w:0",                1025},
    {"Count2LessTheOther",      256, "w:2 w:0 w:0 w:1",                1025},
    {"Count2LessTwo",           256, "w:2 w:0 w:1 w:1",                   0},
    {"Count2LessTwoOfHighBytes",256, "w:2 w:0 w:256 w:65280",             0},
    {"Count3LessTwo",           256, "w:3 w:0 w:65535 w:2",            1025},
    {"CountWrapsByOne",         256, "w:32768 w:0 w:1 w:0",            1025},
    {"CountWrapsByTheOther",    256, "w:32768 w:0 w:0 w:1",            1025},
    {"CountWrapsByTwo",         256, "w:32769 w:0 w:1 w:1",            1025},
    {"CountWrapsNotQuite",      256, "w:32769 w:0 w:1 w:0",               0},
    {"FirstBlockIs0",           266, "w:0",                               0},
    {"SecondBlockIs0",          268, "w:0",                               0},
    {"ThirdBlockIs0",           270, "w:0",                               0},
    {"FirstBlockElsewhere",     266, "w:1",                               0},
    {"SecondBlockElsewhere",    268, "w:1",                               0},
    {"ThirdBlockElsewhere",     270, "w:1",                               0},
    {"FirstBlockBehindTheFile", 266, "w:9",                               0},
    {"ThirdBlockBehindTheFile", 270, "w:9",                               0},
    {"ThreeTimesOneBlock",      266, "w:3 w:3 w:3",                    1025},
    {"FourthBlockIsFree",       256, "w:4 w:0 w:0 w:0 w:0 w:2 w:4 w:3 w:0", 1025},
    {"FirstMark",              2048, "87",                                0},
    {"SecondMark",             4096, "85",                                0},
    {"ThirdMark",              3072, "06",                                0},
    {"MarkOneByteEarly",       2047, "86 00",                             0},
    {"MarkOneByteLate",        2048, "00 86",                             0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(List, BlockListChange, testing::ValuesIn(blockListChanges), FICaseName);

// The count tells how many of the three blocks are looked at: the ones behind it may hold anything.
TEST(BlockList, LooksAtAsManyBlocksAsTheCountTells) {
    std::string one = ThreeBlocks();
    Put(one, 268, "w:0 w:1");
    std::string two = ThreeBlocks();
    Put(two, 270, "w:1");
    for (const char* const words : {"w:1 w:0 w:0 w:0", "w:2 w:0 w:1 w:0", "w:2 w:0 w:0 w:1", "w:3 w:0 w:1 w:1"}) {
        EXPECT_EQ(ListAnswer(Changed(one, {"", 256, words, 0})), 1025) << words;
    }
    for (const char* const words : {"w:2 w:0 w:0 w:0", "w:3 w:0 w:1 w:0", "w:3 w:0 w:0 w:1", "w:4 w:0 w:1 w:1"}) {
        EXPECT_EQ(ListAnswer(Changed(one, {"", 256, words, 0})), 0) << words;
        EXPECT_EQ(ListAnswer(Changed(two, {"", 256, words, 0})), 1025) << words;
    }
    for (const char* const words : {"w:3 w:0 w:0 w:0", "w:4 w:0 w:1 w:0", "w:5 w:0 w:1 w:1", "w:1000 w:0 w:0 w:0"}) {
        EXPECT_EQ(ListAnswer(Changed(two, {"", 256, words, 0})), 0) << words;
    }
}

TEST(BlockList, NeedsNoMoreWordsThanTheCountTells) {
    std::string file = FIBytes(">256 w:1 w:0 w:0 w:0 w:0 w:0");
    EXPECT_EQ(ListAnswer(file), 0);
    file = FIBytes(">256 w:1 w:0 w:0 w:0 w:0 w:1 >1024 86");
    EXPECT_EQ(ListAnswer(file), 1025);
    EXPECT_EQ(ListAnswer(file.substr(0, 1024)), 0);
}

TEST(BlockList, HasBlocksOf1024BytesIn32Bits) {
    for (const std::uint32_t block : {1U, 63U, 64U, 65U, 4097U}) {
        std::string file = FIBytes(">256 w:1 w:0 w:0 w:0 w:0");
        file += static_cast<char>(block & 0xFF);
        file += static_cast<char>(block >> 8);
        file.resize(block * 1024);
        EXPECT_EQ(ListAnswer(file), 0) << block;
        EXPECT_EQ(ListAnswer(file + "\x86"), 1025) << block;
    }
}

TEST(BlockList, IsNothingWhenTheFileEndsInTheList) {
    const std::string file = ThreeBlocks();
    for (const std::size_t size : {0U,   1U,   2U,   3U,   256U, 257U, 258U, 259U,  260U,  262U, 264U,
                                   265U, 266U, 267U, 268U, 270U, 271U, 272U, 2048U, 3072U, 4096U}) {
        EXPECT_EQ(ListAnswer(file.substr(0, size)), 0) << size;
    }
    EXPECT_EQ(ListAnswer(file.substr(0, 4097)), 1025);
}

TEST(BlockList, TestsEverySeek) { FIExpectEverySeekIsTested(FIProbeBlockList, ThreeBlocks(), 1025); }

TEST(BlockList, StartsAtOffset0WhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeBlockList, ThreeBlocks(), 500), 1025);
}

TEST(BlockList, WorksInTheWholeTable) {
    std::string file = ThreeBlocks();
    FIExpectWholeFile(file, 1025, 369_row);
    Put(file, 256, "w:1000");
    FIExpectWholeFile(file, 1025, 369_row);
    Put(file, 256, "w:2 w:0 w:1 w:1");
    FIExpectWholeFile(file, 1999, 369_row);
    Put(file, 256, "w:3 w:0 w:1 w:1");
    FIExpectWholeFile(file, 1025, 369_row);
    Put(file, 2048, "85");
    FIExpectWholeFile(file, 1999, 369_row);
}

// ---- Records with mirrored lengths ---------------------------------------------------------------------------------

FIID ChainAnswer(std::string_view bytes) { return FIAnswerOf(FIProbeMirroredLengths, bytes); }

// A chain of records of these lengths, each at least 4.
std::string Chain(const std::vector<std::size_t>& lengths) {
    std::string file;
    for (const std::size_t length : lengths) {
        file += FIBigEndian(length, 2) + std::string(length - 4, ' ') + FIBigEndian(length, 2);
    }
    return file;
}

TEST(MirroredLengths, AreAChainOfFourRecords) {
    EXPECT_EQ(ChainAnswer(Chain({4, 5, 6, 7})), 1018);
    EXPECT_EQ(ChainAnswer(Chain({10, 300, 4, 1000, 12})), 1018);
    EXPECT_EQ(ChainAnswer(Chain({10, 300, 4})), 0);
    EXPECT_EQ(ChainAnswer(Chain({10, 300, 4}) + FIBytes("0A 00 00 00")), 0);
    EXPECT_EQ(ChainAnswer(""), 0);
    EXPECT_EQ(ChainAnswer(std::string(3000, '\0')), 0);
}

TEST(MirroredLengths, MayShareOneWord) {
    EXPECT_EQ(ChainAnswer(FIBytes("00 02 00 02 00 02 00 02")), 1018);
    EXPECT_EQ(ChainAnswer(FIBytes("00 02 00 02 00 02")), 0);
    EXPECT_EQ(ChainAnswer(FIBytes("00 02 00 02 00 02 00 03")), 0);
    EXPECT_EQ(ChainAnswer(FIBytes("00 02 00 02 00 02 00 01")), 0);
    EXPECT_EQ(ChainAnswer(FIBytes("00 02 00 02 00 02 00 00 00 00")), 0);
    EXPECT_EQ(ChainAnswer(FIBytes("02 00 02 00 02 00 02 00")), 0) << "the high byte comes first";
}

TEST(MirroredLengths, AreTheSameAtBothEnds) {
    const std::string chain = Chain({8, 9, 10, 11});
    for (const std::size_t offset : {6U, 7U, 15U, 16U, 25U, 26U, 36U, 37U}) {
        std::string broken = chain;
        broken[offset] = static_cast<char>(broken[offset] ^ 0x01);
        EXPECT_EQ(ChainAnswer(broken), 0) << offset;
    }
}

TEST(MirroredLengths, AreNothingWhenTheFileEndsInside) {
    const std::string chain = Chain({8, 9, 10, 11});
    for (std::size_t size = 0; size < chain.size(); ++size) EXPECT_EQ(ChainAnswer(chain.substr(0, size)), 0) << size;
}

TEST(MirroredLengths, AreNot0Or1) {
    EXPECT_EQ(ChainAnswer(FIBytes("00 00") + std::string(70000, '\0')), 0);
    EXPECT_EQ(ChainAnswer(FIBytes("00 01") + std::string(70000, '\0')), 0);
    EXPECT_EQ(ChainAnswer(Chain({8, 8, 8}) + FIBytes("00 00 00 00")), 0);
    EXPECT_EQ(ChainAnswer(Chain({8, 8, 8}) + FIBytes("00 01 00 01")), 0);
}

constexpr std::size_t chainLimit = 2048;  // the highest offset of a record's first or last word

TEST(MirroredLengths, EndByOffset2048) {
    EXPECT_EQ(ChainAnswer(Chain({100, 100, 100, chainLimit + 2 - 300})), 1018) << "the last word stands at 2,048";
    EXPECT_EQ(ChainAnswer(Chain({100, 100, 100, chainLimit + 3 - 300})), 0) << "the last word stands at 2,049";
    EXPECT_EQ(ChainAnswer(Chain({chainLimit + 2}) + Chain({8, 8, 8})), 0) << "the second record starts at 2,050";
    EXPECT_EQ(ChainAnswer(Chain({chainLimit + 3}) + Chain({8, 8, 8})), 0);
}

TEST(MirroredLengths, StartByOffset2048) {
    const std::string two = FIBytes("00 02");
    EXPECT_EQ(ChainAnswer(Chain({1000, 1000, chainLimit - 2000}) + two), 1018) << "the fourth starts at 2,048";
    EXPECT_EQ(ChainAnswer(Chain({1000, 1000, chainLimit - 1999}) + two), 0) << "the fourth starts at 2,049";
    EXPECT_EQ(ChainAnswer(Chain({1000, 1000, chainLimit - 2000, 4})), 0) << "it starts there and ends behind";
}

TEST(MirroredLengths, DoNotAskForAFifthRecord) {
    EXPECT_EQ(ChainAnswer(Chain({500, 500, 500, chainLimit + 2 - 1500}) + FIBigEndian(0xFFFF, 2)), 1018);
    EXPECT_EQ(ChainAnswer(Chain({8, 8, 8, 8}) + FIBytes("FF FF")), 1018);
    EXPECT_EQ(ChainAnswer(Chain({8, 8, 8, 8})), 1018);
}

// A record that starts behind 2,048 is refused before its length is looked at, though this one would wrap to offset 20.
TEST(MirroredLengths, StartByOffset2048AlsoWhenTheyWrap) {
    for (const std::size_t start : {chainLimit, chainLimit + 1, chainLimit + 2}) {
        const std::size_t length = 65536 + 22 - start;
        std::string file;
        Put(file, 0, "W:" + std::to_string(start));
        Put(file, start - 2, "W:" + std::to_string(start) + " W:" + std::to_string(length));
        Put(file, 20, "W:" + std::to_string(length) + " W:4 W:4 W:2");
        EXPECT_EQ(ChainAnswer(file), start == chainLimit ? 1018 : 0) << start;
    }
}

// Quirk: positions wrap in 16 bits, so a length near 64 KiB leads back. The second record, at 100, has its last word at
// 10, and the third begins at 12.
TEST(MirroredLengths, WrapIn16Bits) {
    std::string file;
    Put(file, 0, "W:100");
    Put(file, 98, "W:100 W:65448");
    Put(file, 10, "W:65448 W:2 W:2");
    EXPECT_EQ(ChainAnswer(file), 1018);
    Put(file, 14, "W:3");
    EXPECT_EQ(ChainAnswer(file), 0);
}

TEST(MirroredLengths, TestEverySeek) {
    FIExpectEverySeekIsTested(FIProbeMirroredLengths, Chain({8, 9, 10, 11}), 1018);
    FIExpectEverySeekIsTested(FIProbeMirroredLengths, FIBytes("(00 02)*16"), 1018);
}

TEST(MirroredLengths, StartAtOffset0WhereverTheReaderStands) {
    EXPECT_EQ(FIAnswerOf(FIProbeMirroredLengths, Chain({8, 9, 10, 11}), 20), 1018);
}

TEST(MirroredLengths, WorkInTheWholeTable) {
    FIExpectWholeFile(Chain({20, 30, 40, 50}), 1018, 366_row);
    FIExpectWholeFile(FIBytes("00 02 00 02 00 02 00 02"), 1018, 366_row);
    FIExpectWholeFile(Chain({20, 30, 40}) + FIBytes("00 00 00 00"), 1999, 366_row);
    FIExpectWholeFile(Chain({100, 100, 100, chainLimit + 2 - 300}), 1018, 366_row);
    FIExpectWholeFile(Chain({100, 100, 100, chainLimit + 3 - 300}), 1999, 366_row);
}

// ---- Ordinary files ------------------------------------------------------------------------------------------------

TEST(BlockStructures, AreInNoOrdinaryFile) {
    for (const std::string& file : FIOrdinaryFiles()) {
        EXPECT_EQ(HeaderAnswer(file), 0);
        EXPECT_EQ(TableAnswer(file), 0);
        EXPECT_EQ(ListAnswer(file), 0);
        EXPECT_EQ(ChainAnswer(file), 0);
    }
}

}  // namespace
