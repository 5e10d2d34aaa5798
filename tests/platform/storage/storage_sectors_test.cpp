// The sectors of compound files: streams of every size and layout, chains that break, and what a look-up costs.
#include "platform/storage/storage_sectors.h"

#include <algorithm>
#include <functional>
#include <map>

#include "platform/handle.h"
#include "platform/operations.h"
#include "platform/storage/compound_storage.h"
#include "support/naive_storage.h"
#include "support/open_handle.h"
#include "support/probe_case.h"
#include "support/storage_writer.h"

namespace {

// Bytes that tell where they stand. Those that were made once are kept: the tests ask for the same ones again and again.
std::string Pattern(std::size_t size, std::uint32_t seed = 1) {
    static std::map<std::uint32_t, std::string> made;
    std::string& bytes = made[seed];
    std::size_t index = bytes.size();
    bytes.resize(std::max(index, size));
    for (char* const data = bytes.data(); index < size; ++index) {
        data[index] = static_cast<char>((index * 2654435761U + seed * 40503U) >> 13 & 0xFF);
    }
    return bytes.substr(0, size);
}

// A generator of numbers that is the same on every machine.
struct Numbers {
    std::uint64_t state;

    std::uint32_t Next() {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state >> 33);
    }
    std::uint32_t Below(std::uint32_t bound) { return Next() % bound; }
};

std::vector<StorageLayout> AllLayouts() {
    std::vector<StorageLayout> layouts;
    for (const std::uint32_t combination : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        StorageLayout layout;
        layout.majorVersion = (combination & 1) != 0 ? 4 : 3;
        layout.sectorShift = (combination & 2) != 0 ? 12 : 9;
        layout.scattered = (combination & 4) != 0;
        layouts.push_back(layout);
    }
    return layouts;
}

std::string LayoutName(const StorageLayout& layout) {
    return "version " + std::to_string(layout.majorVersion) + ", shift " + std::to_string(layout.sectorShift) +
           (layout.scattered ? ", scattered" : "");
}

// ---- Streams of every size -----------------------------------------------------------------------------------------

const std::size_t streamSizes[] = {0,    1,    63,   64,   65,   511,  512,  513,  1023,  1024,
                                   4032, 4095, 4096, 4097, 4608, 8191, 8192, 8193, 65536, 100001};

TEST(StorageStream, DeliversItsBytesInEveryLayout) {
    for (const StorageLayout& layout : AllLayouts()) {
        SCOPED_TRACE(LayoutName(layout));
        StorageWriter writer(layout);
        for (const std::size_t size : streamSizes) {
            static_cast<void>(writer.AddStream(FIWiden(std::to_string(size)), Pattern(size)));
        }
        const WrittenStorage written = writer.Write();
        const OpenHandle storage = FIOpenBytes(written.bytes);
        for (const std::size_t size : streamSizes) {
            SCOPED_TRACE(size);
            const OpenHandle stream = storage.Stream(std::to_string(size));
            ASSERT_TRUE(stream);
            EXPECT_EQ(stream.ReadToEnd(200000), Pattern(size));
            for (const std::uint32_t piece : {1U, 63U, 100U, 512U, 4097U}) {
                if (piece == 1 && size > 10000) continue;
                ASSERT_EQ(stream.Seek(0, 0), 0);
                EXPECT_EQ(stream.ReadToEnd(piece), Pattern(size)) << piece;
            }
            EXPECT_EQ(stream.Tell(), size);
            EXPECT_EQ(stream.Read(10), "");
        }
    }
}

TEST(StorageStream, SeeksAndTellsLikeAFile) {
    for (const StorageLayout& layout : AllLayouts()) {
        for (const std::size_t size : {std::size_t{3000}, std::size_t{70000}}) {
            SCOPED_TRACE(LayoutName(layout) + ", size " + std::to_string(size));
            const std::string bytes = Pattern(size);
            StorageWriter writer(layout);
            static_cast<void>(writer.AddStream(u"before", Pattern(700, 2)));
            static_cast<void>(writer.AddStream(u"stream", bytes));
            const WrittenStorage written = writer.Write();
            const OpenHandle storage = FIOpenBytes(written.bytes);
            const OpenHandle stream = storage.Stream("stream");
            Numbers numbers = {size};
            for (std::uint32_t round = 0; round < 300; ++round) {
                const std::uint32_t target = numbers.Below(static_cast<std::uint32_t>(size) + 100);
                switch (round % 3) {
                    case 0:
                        ASSERT_EQ(stream.Seek(0, target), 0);
                        break;
                    case 1:
                        ASSERT_EQ(stream.Seek(1, std::int64_t{target} - stream.Tell()), 0);
                        break;
                    default:
                        ASSERT_EQ(stream.Seek(2, std::int64_t{target} - static_cast<std::int64_t>(size)), 0);
                }
                EXPECT_EQ(stream.Tell(), target);
                const std::uint32_t count = numbers.Below(3000);
                EXPECT_EQ(stream.Read(count), target < size ? bytes.substr(target, count) : "");
            }
            EXPECT_EQ(stream.Seek(0, 0), 0);
            EXPECT_EQ(stream.Seek(1, -1), -1);
            EXPECT_EQ(stream.Seek(3, 0), -1);
            EXPECT_EQ(stream.Tell(), 0U);
            EXPECT_EQ(stream.Seek(0, 0x80000000), -1) << "a wrapped target";
            EXPECT_EQ(stream.Seek(0, 0x7FFFFFFF), 0);
            EXPECT_EQ(stream.Read(1), "");
        }
    }
}

TEST(StorageStream, TheCutoffOfTheHeaderDecidesWhereItLies) {
    for (const std::uint32_t cutoff : {0U, 1U, 100U, 101U, 5000U, 1000000U}) {
        SCOPED_TRACE(cutoff);
        StorageLayout layout;
        layout.miniStreamCutoff = cutoff;
        StorageWriter writer(layout);
        const std::uint32_t entry = writer.AddStream(u"stream", Pattern(100));
        static_cast<void>(writer.AddStream(u"other", Pattern(20000)));
        const WrittenStorage written = writer.Write();
        EXPECT_EQ(written.streams[entry].size(), cutoff > 100 ? 2U : 1U) << "two mini sectors or one sector";
        const OpenHandle storage = FIOpenBytes(written.bytes);
        EXPECT_EQ(storage.Stream("stream").ReadToEnd(), Pattern(100));
        EXPECT_EQ(storage.Stream("other").ReadToEnd(), Pattern(20000));
    }
}

TEST(StorageStream, OnVersion3TheHighHalfOfItsSizeIsIgnored) {
    for (const StorageLayout& layout : AllLayouts()) {
        SCOPED_TRACE(LayoutName(layout));
        StorageWriter writer(layout);
        const std::uint32_t small = writer.AddStream(u"small", Pattern(100));
        const std::uint32_t large = writer.AddStream(u"large", Pattern(5000));
        WrittenStorage written = writer.Write();
        written.Put32(written.EntryOffset(small) + storage_offsets::size + 4, 0xFFFFFFFF);
        written.Put32(written.EntryOffset(large) + storage_offsets::size + 4, 0xFFFFFFFF);
        const OpenHandle storage = FIOpenBytes(written.bytes);
        const OpenHandle stream = storage.Stream("large");
        const std::string came = stream.ReadToEnd();
        EXPECT_EQ(stream.Seek(2, 0), 0);
        if (layout.majorVersion == 3) {
            EXPECT_EQ(came, Pattern(5000));
            EXPECT_EQ(stream.Tell(), 5000U);
            EXPECT_EQ(storage.Stream("small").ReadToEnd(), Pattern(100));
        } else {
            EXPECT_EQ(came.substr(0, 5000), Pattern(5000));
            EXPECT_EQ(came.size(), written.streams[large].size() << layout.sectorShift) << "all of its sectors";
            EXPECT_EQ(stream.Tell(), 0xFFFFFFFF);
        }
    }
}

TEST(StorageStream, TheSizeOfTheRootDoesNotBoundTheMiniStream) {
    for (const std::uint32_t size : {0U, 1U, 64U, 0xFFFFFFFFU}) {
        StorageWriter writer;
        static_cast<void>(writer.AddStream(u"first", Pattern(300)));
        static_cast<void>(writer.AddStream(u"second", Pattern(1000, 2)));
        WrittenStorage written = writer.Write();
        written.Put32(written.EntryOffset(0) + storage_offsets::size, size);
        const OpenHandle storage = FIOpenBytes(written.bytes);
        EXPECT_EQ(storage.Stream("first").ReadToEnd(), Pattern(300)) << size;
        EXPECT_EQ(storage.Stream("second").ReadToEnd(), Pattern(1000, 2)) << size;
    }
}

// A file of a large stream and a small one. 109 sectors of the FAT in the header reach 7 MB; these take more than 236 and
// so two sectors of the DIFAT.
struct LargeFile {
    std::string stream;
    WrittenStorage written;
};

LargeFile MakeLargeFile(bool scattered) {
    StorageLayout layout;
    layout.scattered = scattered;
    StorageWriter writer(layout);
    LargeFile file = {Pattern(15600000), {}};
    static_cast<void>(writer.AddStream(u"large", file.stream));
    static_cast<void>(writer.AddStream(u"small", "small"));
    file.written = writer.Write();
    return file;
}

// Made once for all tests.
const LargeFile& LargeFileOf(bool scattered) {
    static const LargeFile files[] = {MakeLargeFile(false), MakeLargeFile(true)};
    return files[scattered ? 1 : 0];
}

TEST(StorageStream, FarSectorsAreFoundThroughTheDifat) {
    for (const bool scattered : {false, true}) {
        const auto& [bytes, written] = LargeFileOf(scattered);
        ASSERT_GE(written.difat.size(), 2U);
        const OpenHandle storage = FIOpenBytes(written.bytes);
        EXPECT_EQ(storage.Stream("small").ReadToEnd(), "small");
        const OpenHandle stream = storage.Stream("large");
        ASSERT_EQ(stream.Seek(2, -1000), 0);
        EXPECT_EQ(stream.ReadToEnd(), bytes.substr(bytes.size() - 1000));
        ASSERT_EQ(stream.Seek(0, 0), 0);
        EXPECT_TRUE(stream.ReadToEnd(1 << 20) == bytes);
    }
}

// ---- Files of more than 4 GiB --------------------------------------------------------------------------------------

// A file of 6 GiB that is made as it is read: 4,096-byte sectors on version 4, and one stream of 1.5 million of them.
// Each of its sectors opens with its own number; the FAT, the DIFAT and the directory lie behind.
struct VirtualFile {
    static constexpr std::uint32_t shift = 12;
    static constexpr std::uint32_t perSector = 1024;  // numbers in a sector
    static constexpr std::uint32_t streamSectors = 1500000;
    static constexpr std::uint32_t firstFat = streamSectors;
    static constexpr std::uint32_t fatSectors = 1467;
    static constexpr std::uint32_t firstDifat = firstFat + fatSectors;
    static constexpr std::uint32_t difatSectors = 2;
    static constexpr std::uint32_t directory = firstDifat + difatSectors;
    static constexpr std::uint64_t size = (std::uint64_t{directory} + 2) << shift;
    static constexpr std::uint64_t streamSize = (std::uint64_t{streamSectors} << shift) - 96;
};

void PutNumberAt(std::string& bytes, std::size_t place, std::uint32_t number) {
    char* const at = bytes.data() + place;
    for (std::uint32_t index = 0; index < 4; ++index) at[index] = static_cast<char>(number >> (8 * index) & 0xFF);
}

std::uint32_t VirtualNumber(std::uint32_t sector, std::uint32_t place) {
    using File = VirtualFile;
    if (sector < File::streamSectors) return place == 0 ? sector : 0;
    if (sector < File::firstDifat) {
        const std::uint32_t told = (sector - File::firstFat) * File::perSector + place;
        return told + 1 < File::streamSectors ? told + 1 : storageEndOfChain;
    }
    const std::uint32_t difat = sector - File::firstDifat;
    if (place == File::perSector - 1) return difat + 1 < File::difatSectors ? sector + 1 : storageEndOfChain;
    const std::uint32_t fat = 109 + difat * (File::perSector - 1) + place;
    return fat < File::fatSectors ? File::firstFat + fat : storageNone;
}

std::string VirtualSector(std::uint64_t number) {
    using File = VirtualFile;
    if (number == 0 || number == File::directory + 1) {
        // The header and the directory of a small file with the same stream, led to the right places.
        StorageLayout layout;
        layout.majorVersion = 4;
        layout.sectorShift = File::shift;
        StorageWriter writer(layout);
        const std::uint32_t entry = writer.AddStream(u"large", std::string(5000, 'x'));
        WrittenStorage written = writer.Write();
        written.Put32(storage_offsets::firstDirectorySector, File::directory);
        written.Put32(storage_offsets::firstDifatSector, File::firstDifat);
        for (std::uint32_t index = 0; index < 109; ++index) {
            written.Put32(storage_offsets::fatSectors + 4 * index, File::firstFat + index);
        }
        written.Put32(written.EntryOffset(entry) + storage_offsets::firstSector, 0);
        written.Put64(written.EntryOffset(entry) + storage_offsets::size, File::streamSize);
        return written.bytes.substr(number == 0 ? 0 : written.EntryOffset(0), std::size_t{1} << File::shift);
    }
    std::string bytes(std::size_t{1} << File::shift, '\0');
    const auto sector = static_cast<std::uint32_t>(number - 1);
    for (std::uint32_t place = 0; place < File::perSector; ++place) {
        PutNumberAt(bytes, std::size_t{4} * place, VirtualNumber(sector, place));
    }
    return bytes;
}

std::int32_t ReadVirtual(UTHandle&, std::uint64_t offset, void* destination, std::uint32_t size, std::uint32_t& count) {
    const std::uint64_t end = std::min<std::uint64_t>(offset + size, VirtualFile::size);
    for (count = 0; offset + count < end;) {
        const std::uint64_t at = offset + count;
        const std::uint64_t within = at & ((1U << VirtualFile::shift) - 1);
        const std::string bytes = VirtualSector(at >> VirtualFile::shift).substr(within, end - at);
        std::copy(bytes.begin(), bytes.end(), static_cast<char*>(destination) + count);
        count += static_cast<std::uint32_t>(bytes.size());
    }
    return 0;
}

std::uint64_t VirtualSize(UTHandle&) { return VirtualFile::size; }
constexpr UTHandleKind virtualKind = {ReadVirtual, VirtualSize, nullptr};

TEST(StorageStream, MayBeLargerThan4GiB) {
    UTHandle* const handle = UTNewHandle(virtualKind, sizeof(UTHandle), nullptr);
    ASSERT_NE(handle, nullptr);
    UTGiveOperations(*handle);
    const OpenHandle storage(UTHandleFile(*handle));
    ASSERT_TRUE(storage.IsStorage());
    const OpenHandle stream = storage.Stream("large");
    ASSERT_TRUE(stream);
    std::string expected(4000, '\0');
    PutNumberAt(expected, 0, VirtualFile::streamSectors - 1);
    ASSERT_EQ(stream.Seek(2, -4000), 0);
    EXPECT_EQ(stream.Tell(), 0xFFFFFFFF);
    EXPECT_EQ(stream.ReadToEnd(), expected);
    ASSERT_EQ(stream.Seek(2, 0), 0);
    ASSERT_EQ(stream.Seek(1, -4000), 0);
    EXPECT_EQ(stream.ReadToEnd(), expected);
    ASSERT_EQ(stream.Seek(0, 0xFFFFF000), 0) << "inside a stream of this size";
    EXPECT_EQ(stream.Tell(), 0xFFFFF000);
    std::string crossing(4100, '\0');
    PutNumberAt(crossing, 0, 0xFFFFF);
    PutNumberAt(crossing, 4096, 0x100000);
    EXPECT_EQ(stream.Read(4100), crossing);
}

// ---- The header ----------------------------------------------------------------------------------------------------

TEST(StorageHeader, IsAllThereOrNone) {
    StorageWriter writer;
    static_cast<void>(writer.AddStream(u"stream", "bytes"));
    const std::string whole = writer.Write().bytes;
    for (const std::size_t size : {0U, 8U, 511U, 512U, 513U}) {
        const std::string bytes = whole.substr(0, size);
        const OpenHandle file = FIOpenBytes(bytes);
        CFHeader header;
        EXPECT_EQ(CFReadHeader(*UTFindHandle(file.File()), header), size >= 512) << size;
    }
}

// ---- Chains that break ---------------------------------------------------------------------------------------------

// A stream of ten sectors, another of ten mini sectors, and what is done to them.
struct Broken {
    WrittenStorage written;
    std::uint32_t large;
    std::uint32_t small;

    std::uint32_t Sector(std::size_t place) const { return written.streams[large].at(place); }
    std::uint32_t MiniSector(std::size_t place) const { return written.streams[small].at(place); }
    void SetNext(std::size_t place, std::uint32_t next) { written.Put32(written.FatOffset(Sector(place)), next); }
    void SetNextMini(std::size_t place, std::uint32_t next) {
        written.Put32(written.MiniFatOffset(MiniSector(place)), next);
    }
    void SetFirst(std::uint32_t entry, std::uint32_t first) {
        written.Put32(written.EntryOffset(entry) + storage_offsets::firstSector, first);
    }
};

constexpr std::size_t largeSize = 5100;
constexpr std::size_t smallSize = 620;

Broken MakeBroken() {
    StorageLayout layout;
    Broken broken;
    StorageWriter writer(layout);
    broken.small = writer.AddStream(u"small", Pattern(smallSize, 2));
    broken.large = writer.AddStream(u"large", Pattern(largeSize));
    broken.written = writer.Write();
    return broken;
}

struct BreakCase {
    const char* name;
    std::function<void(Broken&)> damage;
    std::size_t largeBytes;  // what is delivered of each stream
    std::size_t smallBytes;
};

void PrintTo(const BreakCase& breakCase, std::ostream* out) { *out << breakCase.name; }

const BreakCase breakCases[] = {
    // clang-format off
    {"Whole",                    [](Broken&) {},                                                  largeSize, smallSize},
    {"EndsEarly",                [](Broken& b) { b.SetNext(2, storageEndOfChain); },              1536,      smallSize},
    {"FreeSector",               [](Broken& b) { b.SetNext(2, 0xFFFFFFFF); },                     1536,      smallSize},
    {"FatSectorMark",            [](Broken& b) { b.SetNext(2, 0xFFFFFFFD); },                     1536,      smallSize},
    {"FirstReservedNumber",      [](Broken& b) { b.SetNext(2, 0xFFFFFFFA); },                     1536,      smallSize},
    {"LastNumber",               [](Broken& b) { b.SetNext(2, 0xFFFFFFF9); },                     1536,      smallSize},
    {"SectorOutsideTheFile",     [](Broken& b) { b.SetNext(2, 0x00123456); },                     1536,      smallSize},
    {"SectorBehindTheFile",      [](Broken& b) {
        b.SetNext(2, static_cast<std::uint32_t>(b.written.bytes.size() / 512 - 1)); },            1536,      smallSize},
    {"LoopToItself",             [](Broken& b) { b.SetNext(3, b.Sector(3)); },                    2048,      smallSize},
    {"LoopToTheStart",           [](Broken& b) { b.SetNext(3, b.Sector(0)); },                    2048,      smallSize},
    {"LoopToTheMiddle",          [](Broken& b) { b.SetNext(8, b.Sector(4)); },                    4608,      smallSize},
    {"LoopAtTheFirst",           [](Broken& b) { b.SetNext(0, b.Sector(0)); },                    512,       smallSize},
    {"LoopBehindTheSize",        [](Broken& b) { b.SetNext(9, b.Sector(0)); },                    largeSize, smallSize},
    {"FirstSectorOutside",       [](Broken& b) { b.SetFirst(b.large, 0x00123456); },              0,         smallSize},
    {"FirstSectorFree",          [](Broken& b) { b.SetFirst(b.large, storageNone); },             0,         smallSize},
    {"MiniEndsEarly",            [](Broken& b) { b.SetNextMini(4, storageEndOfChain); },          largeSize, 320},
    {"MiniOutsideItsStream",     [](Broken& b) { b.SetNextMini(4, 0x00123456); },                 largeSize, 320},
    {"MiniLastNumber",           [](Broken& b) { b.SetNextMini(4, 0xFFFFFFF9); },                 largeSize, 320},
    {"MiniLoopToItself",         [](Broken& b) { b.SetNextMini(4, b.MiniSector(4)); },            largeSize, 320},
    {"MiniLoopToTheStart",       [](Broken& b) { b.SetNextMini(4, b.MiniSector(0)); },            largeSize, 320},
    {"MiniFirstSectorFree",      [](Broken& b) { b.SetFirst(b.small, storageNone); },             largeSize, 0},
    {"MiniStreamMissing",        [](Broken& b) { b.SetFirst(0, storageEndOfChain); },             largeSize, 0},
    {"MiniStreamBreaksOff",      [](Broken& b) {
        b.written.Put32(b.written.FatOffset(b.written.miniStream[0]), storageEndOfChain); },      largeSize, 512},
    {"MiniStreamLoops",          [](Broken& b) {
        b.written.Put32(b.written.FatOffset(b.written.miniStream[0]), b.written.miniStream[0]); },  largeSize, 512},
    {"MiniFatMissing",           [](Broken& b) {
        b.written.Put32(storage_offsets::firstMiniFatSector, storageEndOfChain); },               largeSize, 64},
    {"MiniFatOutsideTheFile",    [](Broken& b) {
        b.written.Put32(storage_offsets::firstMiniFatSector, 0x00123456); },                      largeSize, 64},
    {"FatMissing",               [](Broken& b) {
        b.written.Put32(storage_offsets::fatSectors, storageNone); },                             512,       512},
    {"FatOutsideTheFile",        [](Broken& b) {
        b.written.Put32(storage_offsets::fatSectors, 0x00123456); },                              512,       512},
    // clang-format on
};

class StorageChain : public testing::TestWithParam<BreakCase> {};

TEST_P(StorageChain, DeliversTheBytesInFrontOfTheBreak) {
    Broken broken = MakeBroken();
    GetParam().damage(broken);
    const OpenHandle storage = FIOpenBytes(broken.written.bytes);
    ASSERT_TRUE(storage.IsStorage());
    struct Expected {
        const char* name;
        std::string bytes;
        std::size_t size;
    };
    for (const Expected& expected :
         {Expected{"large", Pattern(largeSize).substr(0, GetParam().largeBytes), largeSize},
          Expected{"small", Pattern(smallSize, 2).substr(0, GetParam().smallBytes), smallSize}}) {
        SCOPED_TRACE(expected.name);
        const OpenHandle stream = storage.Stream(expected.name);
        ASSERT_TRUE(stream) << "the stream is there, whatever can be read of it";
        EXPECT_EQ(stream.ReadToEnd(100), expected.bytes);
        ASSERT_EQ(stream.Seek(0, 0), 0);
        EXPECT_EQ(stream.ReadToEnd(), expected.bytes);
        for (std::size_t offset = expected.bytes.size(); offset < expected.size; offset += 50) {
            ASSERT_EQ(stream.Seek(0, static_cast<std::int64_t>(offset)), 0);
            EXPECT_EQ(stream.Read(64), "") << "something behind the break";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Breaks, StorageChain, testing::ValuesIn(breakCases),
                         [](const testing::TestParamInfo<BreakCase>& parameter) { return parameter.param.name; });

TEST(StorageChains, APartialLastSectorEndsTheChainBehindItsBytes) {
    for (const std::size_t left : {std::size_t{1}, std::size_t{100}, std::size_t{511}}) {
        // The file's last sector becomes the third of the stream, and the FAT tells of more behind it.
        Broken broken = MakeBroken();
        const auto last = static_cast<std::uint32_t>(broken.written.bytes.size() / 512 - 1);
        broken.written.bytes += Pattern(left, 9);
        broken.SetNext(1, last);
        broken.written.Put32(broken.written.FatOffset(last), broken.Sector(4));
        const std::string expected = Pattern(largeSize).substr(0, 1024) + Pattern(left, 9);
        const OpenHandle storage = FIOpenBytes(broken.written.bytes);
        const OpenHandle stream = storage.Stream("large");
        EXPECT_EQ(stream.ReadToEnd(), expected) << left;
        ASSERT_EQ(stream.Seek(0, 1536), 0);
        EXPECT_EQ(stream.Read(100), "") << left;
        ASSERT_EQ(stream.Seek(0, 1500), 0);
        EXPECT_EQ(stream.Read(100), expected.size() > 1500 ? expected.substr(1500) : "");
    }
}

TEST(StorageChains, ADifatThatLoopsEndsWhereItStarted) {
    WrittenStorage written = LargeFileOf(false).written;
    ASSERT_GE(written.difat.size(), 2U);
    // The first sector of the DIFAT leads to itself: 109 and 127 sectors of the FAT are left, 128 sectors to each.
    written.Put32(written.SectorOffset(written.difat[0]) + 508, written.difat[0]);
    // The last of those leads to one sector more, of which nothing is told.
    const OpenHandle storage = FIOpenBytes(written.bytes);
    ASSERT_TRUE(storage.IsStorage());
    const OpenHandle stream = storage.Stream("large");
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream.ReadToEnd(1 << 20).size(), (std::size_t{109 + 127} * 128 + 1) * 512);
}

TEST(StorageChains, TheFileMayEndAnywhere) {
    StorageLayout layout;
    layout.scattered = true;
    StorageWriter writer(layout);
    for (std::uint32_t index = 0; index < 6; ++index) {
        static_cast<void>(writer.AddStream(FIWiden("small " + std::to_string(index)), Pattern(70 * index, index)));
        static_cast<void>(
            writer.AddStream(FIWiden("large " + std::to_string(index)), Pattern(4096 + 700 * index, index)));
    }
    const std::string whole = writer.Write().bytes;
    for (std::size_t size = 0; size <= whole.size(); size += 61) {
        const std::string bytes = whole.substr(0, size);
        const NaiveStorage naive(bytes);
        const OpenHandle storage = FIOpenBytes(bytes);
        ASSERT_EQ(storage.IsStorage(), naive.IsStorage()) << size;
        if (!naive.IsStorage()) continue;
        for (const NaiveObject& object : naive.List()) {
            const std::string name(object.name.begin(), object.name.end());
            EXPECT_EQ(storage.Stream(name).ReadToEnd(1000), object.bytes) << name << ", file of " << size;
        }
    }
}

// ---- Any damage: the reader agrees with an obvious one -------------------------------------------------------------

// Compares all that can be reached in a storage, down to a depth.
void ExpectSameAsNaive(const NaiveStorage& naive, std::uint32_t entry, HIOFILE file, std::uint32_t depth) {
    UTHandle& storage = *UTFindHandle(file);
    const std::vector<NaiveObject> expected = naive.List(entry);
    CFChild child;
    std::size_t place = 0;
    for (const NaiveObject& object : expected) {
        ASSERT_TRUE(CFGetChild(storage, place, child));
        EXPECT_EQ(std::u16string(child.name, child.name + child.nameLength), object.name);
        EXPECT_EQ(child.isStorage, object.isStorage);
        UTHandle* const opened = UTOpenChild(storage, place++);
        ASSERT_NE(opened, nullptr);
        const OpenHandle handle(UTHandleFile(*opened));
        if (!object.isStorage) {
            EXPECT_EQ(child.size, std::min(object.size, std::uint64_t{INT64_MAX}));
            EXPECT_TRUE(handle.ReadToEnd(777) == object.bytes);
            continue;
        }
        EXPECT_EQ(handle.ClassId(), object.classId);
        if (depth > 0) ExpectSameAsNaive(naive, object.entry, handle.File(), depth - 1);
    }
    EXPECT_FALSE(CFGetChild(storage, place, child));
}

// Puts numbers that may mean something in the places that matter.
void Damage(WrittenStorage& written, Numbers& numbers) {
    const auto sectors = static_cast<std::uint32_t>(written.bytes.size() >> written.layout.sectorShift);
    const auto number = [&]() -> std::uint32_t {
        switch (numbers.Below(6)) {
            case 0:
                return 0xFFFFFFF8 + numbers.Below(8);
            case 1:
                return numbers.Next() << 1 | numbers.Below(2);
            default:
                return numbers.Below(sectors + 2);
        }
    };
    const std::size_t entryFields[] = {storage_offsets::left,        storage_offsets::right, storage_offsets::child,
                                       storage_offsets::firstSector, storage_offsets::size,  storage_offsets::size + 4};
    const std::uint32_t times = 1 + numbers.Below(6);
    for (std::uint32_t time = 0; time < times; ++time) {
        const auto entry = numbers.Below(static_cast<std::uint32_t>(written.streams.size()));
        switch (numbers.Below(8)) {
            case 0:
                written.bytes[numbers.Below(static_cast<std::uint32_t>(written.bytes.size()))] ^=
                    static_cast<char>(1 << numbers.Below(8));
                break;
            case 1:
                written.bytes.resize(written.bytes.size() -
                                     numbers.Below(static_cast<std::uint32_t>(written.bytes.size() / 8)));
                return;  // the places are no longer all there
            case 2:
                written.bytes[written.EntryOffset(entry) + storage_offsets::type] = static_cast<char>(numbers.Below(7));
                break;
            case 3:
                written.Put32(written.EntryOffset(entry) + entryFields[numbers.Below(6)], number());
                break;
            case 4:
                if (!written.miniFat.empty()) written.Put32(written.MiniFatOffset(numbers.Below(16)), number());
                break;
            case 5:
                written.Put32(48 + 4 * numbers.Below(10), number());
                break;
            default:
                written.Put32(written.FatOffset(numbers.Below(sectors - 1)), number());
        }
    }
}

TEST(StorageDamage, IsReadAsAnObviousReaderReadsIt) {
    std::uint32_t storages = 0;
    const std::vector<StorageLayout> layouts = AllLayouts();
    for (std::uint32_t round = 0; round < 3000; ++round) {
        SCOPED_TRACE(round);
        Numbers numbers = {round};
        StorageLayout layout = layouts[round % layouts.size()];
        layout.tree = static_cast<StorageTree>(numbers.Below(3));
        StorageWriter writer(layout);
        const std::uint32_t sub = writer.AddStorage(u"sub");
        for (std::uint32_t index = 0; index < 8; ++index) {
            const std::uint32_t size = index % 3 == 0 ? 4096 + numbers.Below(4000) : numbers.Below(400);
            static_cast<void>(writer.AddStream(FIWiden("s" + std::to_string(index)), Pattern(size, index),
                                               numbers.Below(3) == 0 ? sub : 0));
        }
        WrittenStorage written = writer.Write();
        Damage(written, numbers);
        const NaiveStorage naive(written.bytes);
        const OpenHandle storage = FIOpenBytes(written.bytes);
        ASSERT_EQ(storage.IsStorage(), naive.IsStorage());
        if (!naive.IsStorage()) continue;
        ++storages;
        EXPECT_EQ(storage.ClassId(), naive.ClassId());
        ExpectSameAsNaive(naive, 0, storage.File(), 2);
        if (HasFailure()) return;
    }
    EXPECT_GT(storages, 2000U) << "most of the files are still storages";
}

// ---- Awkward handles -----------------------------------------------------------------------------------------------

TEST(StorageOverAHandle, OneByteForEachReadGivesTheSame) {
    const Broken broken = MakeBroken();
    const auto host = FIMakeTestHandle(broken.written.bytes);
    host->bytesPerRead = 1;
    const OpenHandle storage = FIOpenOver(*host);
    ASSERT_TRUE(storage.IsStorage());
    EXPECT_EQ(storage.Stream("large").ReadToEnd(), Pattern(largeSize));
    EXPECT_EQ(storage.Stream("small").ReadToEnd(), Pattern(smallSize, 2));
}

TEST(StorageOverAHandle, ReadsThatFailMeanNotThere) {
    const Broken broken = MakeBroken();
    const std::size_t blocksBefore = FIHeapBlocks();
    bool complete = false;
    for (std::uint32_t failing = 0; !complete; ++failing) {
        ASSERT_LT(failing, 200U);
        const auto host = FIMakeTestHandle(broken.written.bytes);
        host->failReadsFrom = failing;
        {
            const OpenHandle storage = FIOpenOver(*host);
            const OpenHandle small = storage.Stream("small");
            const OpenHandle large = storage.Stream("large");
            char buffer[8192];
            std::uint32_t smallCount = 0;
            std::uint32_t largeCount = 0;
            if (small) small.File()->operations.IORead(small.File(), buffer, sizeof(buffer), &smallCount);
            EXPECT_EQ(std::string(buffer, smallCount), Pattern(smallSize, 2).substr(0, smallCount));
            if (large) large.File()->operations.IORead(large.File(), buffer, sizeof(buffer), &largeCount);
            EXPECT_EQ(std::string(buffer, largeCount), Pattern(largeSize).substr(0, largeCount));
            complete = smallCount == smallSize && largeCount == largeSize;
        }
        EXPECT_EQ(FIHeapBlocks(), blocksBefore);
    }
}

TEST(StorageOverAHandle, AStreamThatCannotBeReadFails) {
    const Broken broken = MakeBroken();
    const auto host = FIMakeTestHandle(broken.written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    const OpenHandle stream = storage.Stream("large");
    ASSERT_EQ(stream.Read(1).size(), 1U);
    host->failReadsFrom = 0;
    char buffer[10];
    std::uint32_t count = 5;
    EXPECT_NE(stream.File()->operations.IORead(stream.File(), buffer, sizeof(buffer), &count), 0);
    EXPECT_EQ(stream.Tell(), 1U);
    host->failReadsFrom = testNever;
    EXPECT_EQ(stream.Read(5), Pattern(largeSize).substr(1, 5));
}

// ---- What it costs -------------------------------------------------------------------------------------------------

// What was done to a host's handle since the last look.
struct Meter {
    TestHandle& host;
    std::uint32_t reads = 0;
    std::uint64_t bytes = 0;

    std::uint32_t Reads() { return host.reads - std::exchange(reads, host.reads); }
    std::uint64_t Bytes() { return host.bytesDelivered - std::exchange(bytes, host.bytesDelivered); }
};

const char* const missingNames[] = {"PP40",
                                    "EncryptedPackage",
                                    "PP97_DUALSTORAGE",
                                    "PowerPoint Document",
                                    "NOVELL_MAIN",
                                    "PerfectOffice_MAIN",
                                    "Book",
                                    "BOOK",
                                    "Workbook",
                                    "NativeContent_MAIN",
                                    "FileHeader",
                                    "MN0",
                                    "WordDocument",
                                    "__properties_version1.0"};

TEST(StorageCost, FourteenMissingNamesTakeOnePassOverTheDirectory) {
    constexpr std::uint32_t entries = 2000;
    StorageWriter writer;
    for (std::uint32_t index = 0; index < entries; ++index) {
        static_cast<void>(writer.AddStream(FIWiden("stream " + std::to_string(index)), ""));
    }
    const WrittenStorage written = writer.Write();
    const auto host = FIMakeTestHandle(written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    Meter meter = {*host};
    EXPECT_FALSE(storage.Stream(missingNames[0]));
    EXPECT_LE(meter.Reads(), entries + 10) << "no entry is read twice";
    for (const char* const name : missingNames) {
        EXPECT_FALSE(storage.Stream(name));
        EXPECT_FALSE(storage.Storage(name));
    }
    EXPECT_EQ(meter.Reads(), 0U) << "a second pass";
}

TEST(StorageCost, ASmallDirectoryIsReadInPiecesAndOnce) {
    const Broken broken = MakeBroken();
    const auto host = FIMakeTestHandle(broken.written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    Meter meter = {*host};
    for (const char* const name : missingNames) EXPECT_FALSE(storage.Stream(name));
    // The header; the directory and the FAT, which lie in one piece of the file or in two neighbours.
    EXPECT_LE(meter.Reads(), 3U);
}

TEST(StorageCost, TheClassIdTakesTheHeaderAndTheRoot) {
    StorageWriter writer;
    static_cast<void>(writer.AddStream(u"large", Pattern(1000000)));
    const WrittenStorage written = writer.Write();
    const auto host = FIMakeTestHandle(written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    Meter meter = {*host};
    ASSERT_TRUE(storage.IsStorage());
    EXPECT_EQ(storage.ClassId().size(), 16U);
    EXPECT_EQ(meter.Reads(), 2U);
}

TEST(StorageCost, APlainFileTakesOneRead) {
    const auto host = FIMakeTestHandle(Pattern(1000000));
    const OpenHandle file = FIOpenOver(*host);
    EXPECT_FALSE(file.IsStorage());
    EXPECT_FALSE(file.Stream("stream"));
    EXPECT_EQ(host->reads, 1U);
    EXPECT_EQ(host->bytesDelivered, 512U);
}

TEST(StorageCost, TheHeadOfALargeStreamTakesItsSectors) {
    const auto host = FIMakeTestHandle(LargeFileOf(false).written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    const OpenHandle stream = storage.Stream("large");
    Meter meter = {*host};
    static_cast<void>(meter.Reads());
    static_cast<void>(meter.Bytes());
    EXPECT_EQ(stream.Read(2048), Pattern(2048));
    EXPECT_LE(meter.Reads(), 2U) << "the piece of the FAT, and the four neighbouring sectors in one";
    EXPECT_LE(meter.Bytes(), CFBlock::size + 2048U);
}

TEST(StorageCost, SeekingToAndFroFollowsTheChainOnce) {
    for (const bool scattered : {false, true}) {
        const auto& [bytes, written] = LargeFileOf(scattered);
        const auto host = FIMakeTestHandle(written.bytes);
        const OpenHandle storage = FIOpenOver(*host);
        const OpenHandle stream = storage.Stream("large");
        Meter meter = {*host};
        ASSERT_EQ(stream.Seek(2, -10), 0);
        EXPECT_EQ(stream.Read(10), bytes.substr(bytes.size() - 10));
        EXPECT_LE(meter.Reads(), written.fat.size() + 100) << "each piece of the FAT once";
        for (std::uint32_t round = 0; round < 1000; ++round) {
            ASSERT_EQ(stream.Seek(0, round), 0);
            EXPECT_EQ(stream.Read(10), bytes.substr(round, 10));
            ASSERT_EQ(stream.Seek(2, -20 - static_cast<std::int64_t>(round)), 0);
            EXPECT_EQ(stream.Read(10), bytes.substr(bytes.size() - 20 - round, 10));
        }
        EXPECT_LE(meter.Reads(), 2 * 2000U) << "the bytes themselves, at most two sectors each";
    }
}

TEST(StorageCost, AStreamOfAbsurdSizeEndsWhereItsChainDoes) {
    StorageLayout layout;
    layout.majorVersion = 4;
    StorageWriter writer(layout);
    const std::uint32_t entry = writer.AddStream(u"large", Pattern(10000));
    WrittenStorage written = writer.Write();
    written.Put64(written.EntryOffset(entry) + storage_offsets::size, 0xFFFFFFFFFFFFFFFF);
    const auto host = FIMakeTestHandle(written.bytes);
    const OpenHandle storage = FIOpenOver(*host);
    const OpenHandle stream = storage.Stream("large");
    EXPECT_EQ(stream.ReadToEnd().size(), 10240U);
    Meter meter = {*host};
    static_cast<void>(meter.Reads());
    for (std::uint32_t round = 0; round < 1000; ++round) {
        ASSERT_EQ(stream.Seek(0, 0xFFFFFFFF - round), 0);
        EXPECT_EQ(stream.Read(10), "");
        ASSERT_EQ(stream.Seek(2, 0x7FFFFFFF), 0);
        EXPECT_EQ(stream.Tell(), 0xFFFFFFFF);
        EXPECT_EQ(stream.Read(10), "");
    }
    EXPECT_EQ(meter.Reads(), 0U);
}

TEST(StorageCost, MemoryFollowsWhatWasLookedAtNotWhatIsClaimed) {
    Broken broken = MakeBroken();
    broken.written.Put32(storage_offsets::fatCount, 0xFFFFFFFF);
    broken.written.Put32(storage_offsets::miniFatCount, 0xFFFFFFFF);
    broken.written.Put32(storage_offsets::difatCount, 0xFFFFFFFF);
    broken.written.Put32(broken.written.EntryOffset(broken.large) + storage_offsets::size, 0xFFFFFFFF);
    broken.written.Put32(broken.written.EntryOffset(0) + storage_offsets::size, 0xFFFFFFFF);
    const std::size_t blocksBefore = FIHeapBlocks();
    {
        const OpenHandle storage = FIOpenBytes(broken.written.bytes);
        const OpenHandle stream = storage.Stream("large");
        EXPECT_EQ(stream.ReadToEnd().size(), 5120U);
        EXPECT_LE(FIHeapBlocks() - blocksBefore, 40U);
    }
    EXPECT_EQ(FIHeapBlocks(), blocksBefore);
}

}  // namespace
