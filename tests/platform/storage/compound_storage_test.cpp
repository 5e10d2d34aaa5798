// Compound storages: which files are one, class identifiers, the look-up of names, sub-storages, and what handles own.
#include "platform/storage/compound_storage.h"

#include <functional>

#include "platform/handle.h"
#include "support/case_name.h"
#include "support/open_handle.h"
#include "support/probe_case.h"
#include "support/storage_writer.h"

namespace {

using ::PrintTo;

const std::string classIdOfRoot = FIBytes("01 23 45 67 89 AB CD EF FE DC BA 98 76 54 32 10");

// A small storage: a stream in the mini stream, a large one, and a sub-storage with a stream.
struct Sample {
    WrittenStorage written;
    std::uint32_t small;
    std::uint32_t large;
    std::uint32_t sub;
};

const std::string smallBytes = FIBytes(R"("small" 00*95)");
const std::string largeBytes = FIBytes(R"("large" 5A*5000)");

Sample MakeSample(const StorageLayout& layout = {}) {
    StorageWriter writer(layout);
    writer.SetClassId(classIdOfRoot);
    Sample sample;
    sample.small = writer.AddStream(u"Small", smallBytes);
    sample.large = writer.AddStream(u"Large", largeBytes);
    sample.sub = writer.AddStorage(u"Sub");
    writer.SetClassId(FIBytes("C1*16"), sample.sub);
    static_cast<void>(writer.AddStream(u"Inner", "inner bytes", sample.sub));
    sample.written = writer.Write();
    return sample;
}

// ---- Which files are storages --------------------------------------------------------------------------------------

TEST(CompoundStorage, EitherVersionTakesEitherSectorSize) {
    for (const std::uint16_t majorVersion : {std::uint16_t{3}, std::uint16_t{4}}) {
        for (const std::uint16_t sectorShift : {std::uint16_t{9}, std::uint16_t{12}}) {
            SCOPED_TRACE(testing::Message() << "version " << majorVersion << ", shift " << sectorShift);
            StorageLayout layout;
            layout.majorVersion = majorVersion;
            layout.sectorShift = sectorShift;
            const Sample sample = MakeSample(layout);
            const OpenHandle storage = FIOpenBytes(sample.written.bytes);
            EXPECT_TRUE(storage.IsStorage());
            EXPECT_EQ(storage.ClassId(), classIdOfRoot);
            EXPECT_EQ(storage.Stream("Small").ReadToEnd(), smallBytes);
            EXPECT_EQ(storage.Stream("Large").ReadToEnd(), largeBytes);
        }
    }
}

struct HeaderCase {
    const char* name;
    std::function<void(Sample&)> damage;
    bool isStorage;
};

std::function<void(Sample&)> Put16At(std::size_t offset, std::uint16_t value) {
    return [=](Sample& sample) { sample.written.Put16(offset, value); };
}

std::function<void(Sample&)> Put32At(std::size_t offset, std::uint32_t value) {
    return [=](Sample& sample) { sample.written.Put32(offset, value); };
}

std::function<void(Sample&)> PutRootType(char type) {
    return [=](Sample& sample) { sample.written.bytes[sample.written.EntryOffset(0) + storage_offsets::type] = type; };
}

// Cuts the file behind so many bytes of the root entry.
std::function<void(Sample&)> CutBehindRoot(std::size_t bytes) {
    return [=](Sample& sample) { sample.written.bytes.resize(sample.written.EntryOffset(0) + bytes); };
}

const HeaderCase headerCases[] = {
    // clang-format off
    {"Undamaged",                       [](Sample&) {},                                                  true},
    {"FirstByteOfTheSignature",         [](Sample& s) { s.written.bytes[0] = '\x0E'; },                  false},
    {"LastByteOfTheSignature",          [](Sample& s) { s.written.bytes[7] = '\xE0'; },                  false},
    {"ByteOrderFEFF",                   Put16At(storage_offsets::byteOrder, 0xFEFF),                     false},
    {"ByteOrder0",                      Put16At(storage_offsets::byteOrder, 0),                          false},
    {"Version2",                        Put16At(storage_offsets::majorVersion, 2),                       false},
    {"Version5",                        Put16At(storage_offsets::majorVersion, 5),                       false},
    {"SectorShift8",                    Put16At(storage_offsets::sectorShift, 8),                        false},
    {"SectorShift10",                   Put16At(storage_offsets::sectorShift, 10),                       false},
    {"SectorShift11",                   Put16At(storage_offsets::sectorShift, 11),                       false},
    {"SectorShift13",                   Put16At(storage_offsets::sectorShift, 13),                       false},
    {"SectorShift0",                    Put16At(storage_offsets::sectorShift, 0),                        false},
    {"SectorShift64",                   Put16At(storage_offsets::sectorShift, 64),                       false},
    {"SectorShift265",                  Put16At(storage_offsets::sectorShift, 0x109),                    false},
    {"SectorShiftFFFF",                 Put16At(storage_offsets::sectorShift, 0xFFFF),                   false},
    {"MiniSectorShift5",                Put16At(storage_offsets::miniSectorShift, 5),                    false},
    {"MiniSectorShift7",                Put16At(storage_offsets::miniSectorShift, 7),                    false},
    {"MinorVersionIsNotLookedAt",       Put16At(24, 0xABCD),                                             true},
    {"ClassIdOfTheHeaderIsNotLookedAt", Put32At(8, 0xABCDABCD),                                          true},
    {"CountOfFatSectors0",              Put32At(storage_offsets::fatCount, 0),                           true},
    {"CountOfFatSectorsHuge",           Put32At(storage_offsets::fatCount, 0xFFFFFFFF),                  true},
    {"CountOfMiniFatSectorsHuge",       Put32At(storage_offsets::miniFatCount, 0xFFFFFFFF),              true},
    {"CountOfDifatSectorsHuge",         Put32At(storage_offsets::difatCount, 0xFFFFFFFF),                true},
    {"FatOutsideTheFile",               Put32At(storage_offsets::fatSectors, 0x00FFFFFF),                true},
    {"DirectoryOutsideTheFile",         Put32At(storage_offsets::firstDirectorySector, 0x00FFFFFF),      false},
    {"DirectoryAtEndOfChain",           Put32At(storage_offsets::firstDirectorySector, 0xFFFFFFFE),      false},
    {"DirectoryAtFreeSector",           Put32At(storage_offsets::firstDirectorySector, 0xFFFFFFFF),      false},
    {"DirectoryAtLastNumber",           Put32At(storage_offsets::firstDirectorySector, 0xFFFFFFF9),      false},
    {"RootOfType0",                     PutRootType(0),                                                  false},
    {"RootOfType1",                     PutRootType(1),                                                  false},
    {"RootOfType2",                     PutRootType(2),                                                  false},
    {"RootOfType6",                     PutRootType(6),                                                  false},
    {"FileEndsBehindTheRoot",           CutBehindRoot(128),                                              true},
    {"FileEndsInsideTheRoot",           CutBehindRoot(127),                                              false},
    {"FileEndsInFrontOfTheRoot",        CutBehindRoot(0),                                                false},
    {"FileEndsBehindTheHeader",         [](Sample& s) { s.written.bytes.resize(512); },                  false},
    {"FileEndsInsideTheHeader",         [](Sample& s) { s.written.bytes.resize(511); },                  false},
    {"FileIsTheSignature",              [](Sample& s) { s.written.bytes.resize(8); },                    false},
    {"FileEndsInsideTheSignature",      [](Sample& s) { s.written.bytes.resize(7); },                    false},
    {"FileIsEmpty",                     [](Sample& s) { s.written.bytes.clear(); },                      false},
    // clang-format on
};

class CompoundStorageHeader : public testing::TestWithParam<HeaderCase> {};

TEST_P(CompoundStorageHeader, DecidesWhetherTheFileIsAStorage) {
    Sample sample = MakeSample();
    GetParam().damage(sample);
    const OpenHandle file = FIOpenBytes(sample.written.bytes);
    EXPECT_EQ(file.IsStorage(), GetParam().isStorage);
    EXPECT_EQ(file.IsStorage(), GetParam().isStorage) << "another answer when asked again";
    EXPECT_EQ(file.ClassId(), GetParam().isStorage ? classIdOfRoot : "");
    if (!GetParam().isStorage) {
        EXPECT_FALSE(file.Stream("Small"));
        EXPECT_FALSE(file.Storage("Sub"));
    }
    EXPECT_EQ(file.ReadToEnd(), sample.written.bytes) << "the file's own bytes are to be had either way";
}

INSTANTIATE_TEST_SUITE_P(Files, CompoundStorageHeader, testing::ValuesIn(headerCases), FICaseName);

TEST(CompoundStorage, AStorageReadsSeeksAndTellsLikeAPlainFile) {
    const Sample sample = MakeSample();
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    ASSERT_TRUE(storage.IsStorage());
    EXPECT_EQ(storage.Seek(2, -5), 0);
    EXPECT_EQ(storage.Tell(), sample.written.bytes.size() - 5);
    EXPECT_EQ(storage.Read(10), sample.written.bytes.substr(sample.written.bytes.size() - 5));
    const OpenHandle stream = storage.Stream("Large");
    EXPECT_EQ(stream.Read(100), largeBytes.substr(0, 100));
    EXPECT_EQ(storage.Tell(), sample.written.bytes.size()) << "looking into the storage moved its handle";
}

TEST(CompoundStorage, IsFoundInAStretchOfAFileAndInAStreamOfAnother) {
    const Sample inner = MakeSample();
    StorageWriter writer;
    static_cast<void>(writer.AddStream(u"Nested", inner.written.bytes));
    const std::string outer = "in front" + writer.Write().bytes;
    const OpenHandle file = FIOpenBytes(outer);
    EXPECT_FALSE(file.IsStorage());
    const IOSubRangeSpec stretch = {file.File(), 8, static_cast<std::uint32_t>(outer.size())};
    HIOFILE out = nullptr;
    ASSERT_EQ(file.File()->operations.IOOpenSub(&out, IOSUB_RANGE, &stretch, 1), 0);
    const OpenHandle range(out);
    ASSERT_TRUE(range.IsStorage());
    const OpenHandle nested = range.Stream("Nested");
    ASSERT_TRUE(nested.IsStorage());
    EXPECT_EQ(nested.ClassId(), classIdOfRoot);
    EXPECT_EQ(nested.Storage("Sub").Stream("Inner").ReadToEnd(), "inner bytes");
    EXPECT_EQ(nested.ReadToEnd(), inner.written.bytes);
}

TEST(CompoundStorage, ClassIdOfZerosIsAClassId) {
    const std::string bytes = StorageWriter().Write().bytes;
    EXPECT_EQ(FIOpenBytes(bytes).ClassId(), std::string(16, '\0'));
}

// ---- Names ---------------------------------------------------------------------------------------------------------

struct NameCase {
    const char* name;
    std::u16string entryName;
    std::string lookedUp;
    bool found;
};

const NameCase nameCases[] = {
    // clang-format off
    {"TheWholeName",            u"WordDocument",             "WordDocument",           true},
    {"AnotherCase",             u"WordDocument",             "wordDocument",           false},
    {"UpperCase",               u"Book",                     "BOOK",                   false},
    {"ShorterName",             u"WordDocument",             "WordDocumen",            false},
    {"LongerName",              u"WordDocument",             "WordDocuments",          false},
    {"NoName",                  u"WordDocument",             "",                       false},
    {"ControlCharacter",        u"\005SummaryInformation",   "\005SummaryInformation", true},
    {"WithoutControlCharacter", u"\005SummaryInformation",   "SummaryInformation",     false},
    {"HighCharacterIsWidened",  u"Caf\u00E9",                "Caf\xE9",                true},
    {"Utf8IsNotDecoded",        u"Caf\u00E9",                "Caf\xC3\xA9",            false},
    {"UnitWithTheSameLowByte",  u"\u0142ook",                "Book",                   false},
    {"OneCharacter",            u"A",                        "A",                      true},
    {"Units31",                 std::u16string(31, u'n'),    std::string(31, 'n'),     true},
    {"Units32WithoutNul",       std::u16string(32, u'n'),    std::string(32, 'n'),     true},
    {"Units32LookedUpWith31",   std::u16string(32, u'n'),    std::string(31, 'n'),     false},
    {"Units32LookedUpWith33",   std::u16string(32, u'n'),    std::string(33, 'n'),     false},
    {"Units31LookedUpWith32",   std::u16string(31, u'n'),    std::string(32, 'n'),     false},
    {"Characters263",           std::u16string(32, u'n'),    std::string(263, 'n'),    false},
    // clang-format on
};

class CompoundStorageName : public testing::TestWithParam<NameCase> {};

TEST_P(CompoundStorageName, IsComparedWhole) {
    for (const bool isStorage : {false, true}) {
        StorageWriter writer;
        if (isStorage) {
            static_cast<void>(writer.AddStorage(GetParam().entryName));
        } else {
            static_cast<void>(writer.AddStream(GetParam().entryName, "x"));
        }
        const WrittenStorage written = writer.Write();
        const OpenHandle storage = FIOpenBytes(written.bytes);
        EXPECT_EQ(static_cast<bool>(storage.Stream(GetParam().lookedUp)), GetParam().found && !isStorage);
        EXPECT_EQ(static_cast<bool>(storage.Storage(GetParam().lookedUp)), GetParam().found && isStorage);
    }
}

INSTANTIATE_TEST_SUITE_P(Names, CompoundStorageName, testing::ValuesIn(nameCases), FICaseName);

struct NameLengthCase {
    const char* name;
    std::uint16_t lengthField;
    const char* readAs;
};

// The entry's units are "Workbook" and zeros.
const NameLengthCase nameLengthCases[] = {
    // clang-format off
    {"LengthWithTheNul",       18,     "Workbook"},
    {"LengthWithoutTheNul",    16,     "Workbook"},
    {"LengthIsTooLong",        40,     "Workbook"},
    {"LengthIsAbsurd",         0xFFFF, "Workbook"},
    {"LengthEndsTheName",      8,      "Work"},
    {"OddLengthIsRoundedDown", 9,      "Work"},
    {"LengthOfOneUnit",        2,      "W"},
    {"LengthOfOneByte",        1,      ""},
    {"Length0",                0,      ""},
    // clang-format on
};

TEST(CompoundStorage, ANameEndsAtItsLengthOrAtItsFirstNul) {
    for (const NameLengthCase& lengthCase : nameLengthCases) {
        SCOPED_TRACE(lengthCase.name);
        StorageWriter writer;
        const std::uint32_t entry = writer.AddStream(u"Workbook", "x");
        WrittenStorage written = writer.Write();
        written.Put16(written.EntryOffset(entry) + storage_offsets::nameLength, lengthCase.lengthField);
        const OpenHandle storage = FIOpenBytes(written.bytes);
        for (const char* const name : {"Workbook", "Work", "Wor", "W", ""}) {
            EXPECT_EQ(static_cast<bool>(storage.Stream(name)), std::string(name) == lengthCase.readAs) << name;
        }
    }
}

TEST(CompoundStorage, OnlyDirectChildrenAreFound) {
    const Sample sample = MakeSample();
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    EXPECT_FALSE(storage.Stream("Inner"));
    EXPECT_FALSE(storage.Stream("Sub/Inner"));
    EXPECT_FALSE(storage.Storage("Root Entry"));
    EXPECT_FALSE(storage.Stream("Root Entry"));
    EXPECT_FALSE(storage.Storage("Sub").Stream("Small"));
    EXPECT_FALSE(storage.Storage("Sub").Storage("Sub"));
    EXPECT_TRUE(storage.Storage("Sub").Stream("Inner"));
}

TEST(CompoundStorage, AStreamAndAStorageOfOneNameAreBothFound) {
    for (const bool storageFirst : {false, true}) {
        StorageWriter writer;
        if (storageFirst) static_cast<void>(writer.AddStorage(u"Same"));
        static_cast<void>(writer.AddStream(u"Same", "stream"));
        if (!storageFirst) static_cast<void>(writer.AddStorage(u"Same"));
        const WrittenStorage written = writer.Write();
        const OpenHandle storage = FIOpenBytes(written.bytes);
        EXPECT_EQ(storage.Stream("Same").ReadToEnd(), "stream");
        EXPECT_TRUE(storage.Storage("Same").IsStorage());
    }
}

// ---- Trees ---------------------------------------------------------------------------------------------------------

// Seven streams "s1" to "s7", the entries 1 to 7, each holding its own name; the tests hang them together as they like.
struct Tree {
    WrittenStorage written;

    Tree() {
        StorageWriter writer;
        for (char digit = '1'; digit <= '7'; ++digit) {
            static_cast<void>(writer.AddStream(FIWiden(std::string("s") + digit), std::string("s") + digit));
        }
        written = writer.Write();
        for (std::uint32_t entry = 0; entry <= 7; ++entry) Link(entry, storageNone, storageNone);
    }

    void Put(std::uint32_t entry, std::size_t field, std::uint32_t value) {
        written.Put32(written.EntryOffset(entry) + field, value);
    }
    void Link(std::uint32_t entry, std::uint32_t left, std::uint32_t right) {
        Put(entry, storage_offsets::left, left);
        Put(entry, storage_offsets::right, right);
    }
    void SetTop(std::uint32_t entry) { Put(0, storage_offsets::child, entry); }
    void SetType(std::uint32_t entry, char type) {
        written.bytes[written.EntryOffset(entry) + storage_offsets::type] = type;
    }
    void Rename(std::uint32_t entry, char digit) { written.bytes[written.EntryOffset(entry) + 2] = digit; }

    // The digits of the streams that are found, in their order.
    std::string Found() const {
        const OpenHandle storage = FIOpenBytes(written.bytes);
        std::string found;
        for (char digit = '1'; digit <= '7'; ++digit) {
            if (storage.Stream(std::string("s") + digit)) found += digit;
        }
        return found;
    }
};

TEST(CompoundStorageTree, ChainToTheLeft) {
    Tree tree;
    tree.SetTop(7);
    for (std::uint32_t entry = 7; entry > 1; --entry) tree.Link(entry, entry - 1, storageNone);
    EXPECT_EQ(tree.Found(), "1234567");
}

TEST(CompoundStorageTree, ChainToTheRight) {
    Tree tree;
    tree.SetTop(7);
    for (std::uint32_t entry = 7; entry > 1; --entry) tree.Link(entry, storageNone, entry - 1);
    EXPECT_EQ(tree.Found(), "1234567");
}

TEST(CompoundStorageTree, AgainstTheOrderOfNames) {
    Tree tree;
    tree.SetTop(4);
    tree.Link(4, 6, 2);
    tree.Link(6, 7, 5);
    tree.Link(2, 3, 1);
    EXPECT_EQ(tree.Found(), "1234567");
}

TEST(CompoundStorageTree, LoopsEndTheWalk) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 2, 3);
    tree.Link(2, 1, 2);
    tree.Link(3, 4, 1);
    tree.Link(4, 3, 5);
    EXPECT_EQ(tree.Found(), "12345");
}

TEST(CompoundStorageTree, AnEntryThatIsItsOwnSibling) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 1, 1);
    EXPECT_EQ(tree.Found(), "1");
}

TEST(CompoundStorageTree, TheRootAsASiblingIsNoChildButLeadsOn) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 0, 2);
    tree.Link(0, 5, 6);
    EXPECT_EQ(tree.Found(), "1256");
}

TEST(CompoundStorageTree, NumbersThatNameNoEntryEndABranch) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 8, 2);
    tree.Link(2, 0x00FFFFFF, 3);
    tree.Link(3, 0xFFFFFFF9, 4);
    tree.Link(4, 0xFFFFFFFA, 5);
    tree.Link(5, 0xFFFFFFFE, 6);
    EXPECT_EQ(tree.Found(), "123456");
}

TEST(CompoundStorageTree, EntriesNotInUseLeadToTheirSiblings) {
    for (const char type : {'\0', '\3', '\4', '\5', '\6', '\177'}) {
        SCOPED_TRACE(static_cast<int>(type));
        Tree tree;
        tree.SetTop(1);
        tree.Link(1, 2, 3);
        tree.Link(2, 4, 5);
        tree.SetType(2, type);
        EXPECT_EQ(tree.Found(), "1345");
    }
}

TEST(CompoundStorageTree, NoChildren) {
    Tree tree;
    for (const std::uint32_t none : {storageNone, 0xFFFFFFFAU, 0x7FFFFFFFU, 8U}) {
        tree.SetTop(none);
        EXPECT_EQ(tree.Found(), "") << none;
    }
}

TEST(CompoundStorageTree, OfEqualNamesTheFirstInTheWalkIsMeant) {
    // The walk: 4, its left 2 with 1 and 3, its right 6 with 5 and 7.
    const std::uint32_t walk[] = {4, 2, 1, 3, 6, 5, 7};
    for (std::size_t first = 0; first < 7; ++first) {
        for (std::size_t second = first + 1; second < 7; ++second) {
            Tree tree;
            tree.SetTop(4);
            tree.Link(4, 2, 6);
            tree.Link(2, 1, 3);
            tree.Link(6, 5, 7);
            tree.Rename(walk[first], 'X');
            tree.Rename(walk[second], 'X');
            const OpenHandle storage = FIOpenBytes(tree.written.bytes);
            EXPECT_EQ(storage.Stream("sX").ReadToEnd(), "s" + std::to_string(walk[first])) << walk[second];
            EXPECT_EQ(storage.Stream("sX").ReadToEnd(), "s" + std::to_string(walk[first])) << "asked again";
        }
    }
}

TEST(CompoundStorageTree, TheDirectoryMayBreakOff) {
    // Four entries to a sector: 0 to 3, 4 to 7.
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 7, 2);
    tree.Link(7, storageNone, 3);
    tree.written.Put32(tree.written.FatOffset(tree.written.directory[0]), storageEndOfChain);
    EXPECT_EQ(tree.Found(), "12");
}

TEST(CompoundStorageTree, ADirectoryThatLoopsHoldsEachSectorOnce) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 7, 10);  // 10 would be entry 2 of a second round
    tree.written.Put32(tree.written.FatOffset(tree.written.directory[1]), tree.written.directory[0]);
    EXPECT_EQ(tree.Found(), "17");
}

TEST(CompoundStorageTree, WithoutItsTablesTheDirectoryIsItsFirstSector) {
    Tree tree;
    tree.SetTop(1);
    tree.Link(1, 7, 2);
    tree.written.Put32(storage_offsets::fatSectors, 0x00FFFFFF);
    EXPECT_EQ(tree.Found(), "12");
}

TEST(CompoundStorageTree, EveryShapeOfALargeDirectory) {
    for (const StorageTree shape : {StorageTree::Balanced, StorageTree::LeftChain, StorageTree::RightChain}) {
        for (const bool scattered : {false, true}) {
            StorageLayout layout;
            layout.tree = shape;
            layout.scattered = scattered;
            StorageWriter writer(layout);
            for (std::uint32_t index = 0; index < 3000; ++index) {
                static_cast<void>(writer.AddStream(FIWiden("stream " + std::to_string(index)), std::to_string(index)));
            }
            const WrittenStorage written = writer.Write();
            const OpenHandle storage = FIOpenBytes(written.bytes);
            EXPECT_FALSE(storage.Stream("stream 3000"));
            for (std::uint32_t index = 0; index < 3000; index += 37) {
                EXPECT_EQ(storage.Stream("stream " + std::to_string(index)).ReadToEnd(), std::to_string(index));
            }
        }
    }
}

// ---- The limit of a walk -------------------------------------------------------------------------------------------

// A compound file that is made as it is read, of sectors of 4,096 bytes: the FAT from sector 0 on, the directory from 64
// on. Each entry's right sibling is the next one; the first child of the root is entry 1.
constexpr std::uint32_t firstDirectorySector = 64;
constexpr std::uint32_t entriesPerSector = 32;
constexpr std::uint32_t walkLimit = 1048576;
constexpr std::uint32_t lastDirectorySector = firstDirectorySector + (walkLimit + 9) / entriesPerSector;
constexpr std::uint32_t numbersPerSector = 1024;

struct EndlessDirectory {
    UTHandle handle;
    char (*typeOf)(std::uint32_t entry);
    std::uint32_t childOf2To20;  // of the last entry within the limit
};

void Put32In(std::string& bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) bytes[offset + index] = static_cast<char>(value >> 8 * index);
}

std::string MakeHeaderSector() {
    std::string sector(4096, '\0');
    sector.replace(0, 8, FIBytes("D0 CF 11 E0 A1 B1 1A E1"));
    sector.replace(storage_offsets::majorVersion, 8, FIBytes("04 00 FE FF 0C 00 06 00"));
    Put32In(sector, storage_offsets::firstDirectorySector, firstDirectorySector);
    for (std::uint32_t index = 0; index < firstDirectorySector; ++index) {
        Put32In(sector, storage_offsets::fatSectors + 4 * index, index);
    }
    return sector;
}

std::string MakeFatSector(std::uint32_t sectorNumber) {
    std::string sector(4096, '\0');
    for (std::uint32_t index = 0; index < numbersPerSector; ++index) {
        const std::uint32_t number = sectorNumber * numbersPerSector + index;
        Put32In(sector, 4 * index, number < lastDirectorySector ? number + 1 : storageEndOfChain);
    }
    return sector;
}

// The entries 2^20 and behind it have their distance from 2^20 as a digit for a name; all others have none.
std::string MakeDirectorySector(const EndlessDirectory& directory, std::uint32_t firstEntry) {
    std::string sector(4096, '\0');
    for (std::uint32_t index = 0; index < entriesPerSector; ++index) {
        const std::uint32_t entry = firstEntry + index;
        const std::size_t offset = std::size_t{128} * index;
        if (entry >= walkLimit) {
            sector[offset] = static_cast<char>('0' + (entry - walkLimit));
            sector[offset + storage_offsets::nameLength] = 4;
        }
        sector[offset + storage_offsets::type] = entry == 0 ? '\5' : directory.typeOf(entry);
        Put32In(sector, offset + storage_offsets::left, storageNone);
        Put32In(sector, offset + storage_offsets::right, entry + 1);
        const std::uint32_t child = entry == 0 ? 1 : entry == walkLimit ? directory.childOf2To20 : storageNone;
        Put32In(sector, offset + storage_offsets::child, child);
        Put32In(sector, offset + storage_offsets::size, entry);
    }
    return sector;
}

std::int32_t ReadEndlessDirectory(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count) {
    const auto place = static_cast<std::uint32_t>(offset / 4096);  // 0 is the header, 1 is sector 0
    std::string sector;
    if (place == 0) {
        sector = MakeHeaderSector();
    } else if (place - 1 < firstDirectorySector) {
        sector = MakeFatSector(place - 1);
    } else {
        sector = MakeDirectorySector(UTRecordOf<EndlessDirectory>(handle),
                                     (place - 1 - firstDirectorySector) * entriesPerSector);
    }
    EXPECT_LE(offset % 4096 + size, 4096U);
    count = static_cast<std::uint32_t>(sector.copy(static_cast<char*>(destination), size, offset % 4096));
    return 0;
}

std::uint64_t SizeOfEndlessDirectory(UTHandle&) { return (std::uint64_t{lastDirectorySector} + 2) * 4096; }

constexpr UTHandleKind endlessDirectoryKind = {ReadEndlessDirectory, SizeOfEndlessDirectory, nullptr};

EndlessDirectory& OpenEndlessDirectory(char (*typeOf)(std::uint32_t entry), std::uint32_t childOf2To20) {
    EndlessDirectory& directory = *UTNewHandleRecord<EndlessDirectory>(endlessDirectoryKind, nullptr);
    directory.typeOf = typeOf;
    directory.childOf2To20 = childOf2To20;
    return directory;
}

TEST(CompoundStorageTree, EndsBehind2To20EntriesAlsoWhenTheyAreNotInUse) {
    EndlessDirectory& directory =
        OpenEndlessDirectory([](std::uint32_t entry) { return entry < walkLimit ? '\0' : '\2'; }, storageNone);
    EXPECT_EQ(UTOpenStream(directory.handle, "1"), nullptr) << "the entry behind the limit";
    EXPECT_NE(UTOpenStream(directory.handle, "0"), nullptr) << "the last one within it";
    CFChild child;
    ASSERT_TRUE(CFGetChild(directory.handle, 0, child));
    EXPECT_EQ(child.size, walkLimit);
    EXPECT_FALSE(CFGetChild(directory.handle, 1, child));
    UTCloseHandle(directory.handle);
}

TEST(CompoundStorageTree, EndsBehind2To20EntriesOfWhateverTypeButForEachStorage) {
    EndlessDirectory& directory = OpenEndlessDirectory(
        [](std::uint32_t entry) {
            return entry < walkLimit ? "\1\2\5\0"[entry % 4] : entry == walkLimit ? '\1' : '\2';
        },
        walkLimit + 1);
    CFChild child;
    // Half of the entries in front are children: those of numbers 4n and 4n + 1, without the root's number 0.
    constexpr std::size_t last = walkLimit / 2 - 1;
    EXPECT_FALSE(CFGetChild(directory.handle, last + 1, child));
    ASSERT_TRUE(CFGetChild(directory.handle, last, child));
    EXPECT_TRUE(child.isStorage);
    EXPECT_EQ(child.name[0], '0');
    UTHandle* const sub = UTOpenSubStorage(directory.handle, "0");
    ASSERT_NE(sub, nullptr);
    EXPECT_NE(UTOpenStream(*sub, "1"), nullptr) << "a storage has a count of its own";
    EXPECT_EQ(UTOpenStream(directory.handle, "1"), nullptr);
    UTCloseHandle(directory.handle);
}

// ---- Sub-storages --------------------------------------------------------------------------------------------------

TEST(SubStorage, IsAStorageOfItsOwnWithTheBytesOfTheFile) {
    const Sample sample = MakeSample();
    const std::string& bytes = sample.written.bytes;
    const OpenHandle storage = FIOpenBytes(bytes);
    const OpenHandle sub = storage.Storage("Sub");
    ASSERT_TRUE(sub);
    EXPECT_TRUE(sub.IsStorage());
    EXPECT_EQ(sub.ClassId(), FIBytes("C1*16"));
    EXPECT_EQ(sub.ReadToEnd(), bytes);
    EXPECT_EQ(sub.Seek(IOOriginEnd, 0), 0);
    EXPECT_EQ(sub.Tell(), bytes.size());
    EXPECT_EQ(sub.Read(100), "");
    EXPECT_EQ(sub.Seek(IOOriginEnd, -5), 0);
    EXPECT_EQ(sub.Read(100), bytes.substr(bytes.size() - 5));
    EXPECT_EQ(sub.Seek(IOOriginStart, 1000), 0);
    EXPECT_EQ(sub.Read(100), bytes.substr(1000, 100));
    EXPECT_EQ(storage.Tell(), 0U) << "the file's handle does not move";
    EXPECT_TRUE(sub.IsStorage());
    EXPECT_EQ(sub.ClassId(), FIBytes("C1*16")) << "not the one that its bytes tell";
    EXPECT_FALSE(sub.Stream("Large"));
    EXPECT_EQ(sub.Stream("Inner").ReadToEnd(), "inner bytes");
}

TEST(SubStorage, OfASubStorageHasTheBytesOfTheFileToo) {
    StorageWriter writer;
    const std::uint32_t outer = writer.AddStorage(u"Outer");
    static_cast<void>(writer.AddStorage(u"Inner", outer));
    const WrittenStorage written = writer.Write();
    const auto host = FIMakeTestHandle(written.bytes);
    host->bytesPerRead = 100;
    const OpenHandle storage = FIOpenOver(*host);
    const OpenHandle opened = storage.Storage("Outer");
    const OpenHandle inner = opened.Storage("Inner");
    EXPECT_EQ(inner.ReadToEnd(70), written.bytes);
    EXPECT_EQ(opened.ReadToEnd(), written.bytes);
}

TEST(SubStorage, InAStreamHasTheBytesOfTheStream) {
    const Sample inside = MakeSample();
    StorageWriter writer;
    static_cast<void>(writer.AddStream(u"file", inside.written.bytes));
    const WrittenStorage written = writer.Write();
    const OpenHandle storage = FIOpenBytes(written.bytes);
    const OpenHandle stream = storage.Stream("file");
    const OpenHandle sub = stream.Storage("Sub");
    EXPECT_EQ(sub.ReadToEnd(), inside.written.bytes);
    EXPECT_EQ(sub.Stream("Inner").ReadToEnd(), "inner bytes");
}

// The class identifier of presentations; the identification tells them by it before anything is read.
const std::string presentationClass = FIBytes("10 8D 81 64 9B 4F CF 11 86 EA 00 AA 00 B9 29 E8");
constexpr FIID presentation = 1581;

FIID Identify(const OpenHandle& handle) {
    FIID fiid = 0;
    EXPECT_EQ(FIIdHandle(handle.File(), FIFlagExtendedText, &fiid), 0);
    EXPECT_EQ(handle.Tell(), 0U);
    return fiid;
}

TEST(SubStorage, IsIdentifiedByItsOwnClassAndStreams) {
    StorageWriter writer;
    writer.SetClassId(presentationClass);
    const std::uint32_t sub = writer.AddStorage(u"Sub");
    static_cast<void>(writer.AddStream(u"Book", "", sub));
    const WrittenStorage written = writer.Write();
    const OpenHandle storage = FIOpenBytes(written.bytes);
    EXPECT_EQ(Identify(storage), presentation);
    EXPECT_NE(Identify(storage.Storage("Sub")), presentation) << "the class is the file's";

    StorageWriter other;
    other.SetClassId(presentationClass, other.AddStorage(u"Sub"));
    const WrittenStorage otherWritten = other.Write();
    const OpenHandle otherStorage = FIOpenBytes(otherWritten.bytes);
    EXPECT_NE(Identify(otherStorage), presentation);
    EXPECT_EQ(Identify(otherStorage.Storage("Sub")), presentation);
}

// ---- Names ---------------------------------------------------------------------------------------------------------

std::string NarrowNameOf(const OpenHandle& handle) {
    char name[256] = "#";
    std::uint32_t type = IONameWide;
    EXPECT_EQ(handle.File()->operations.IOGetInfo(handle.File(), IOInfoName, name), 0);
    EXPECT_EQ(handle.File()->operations.IOGetInfo(handle.File(), IOInfoNameType, &type), 0);
    EXPECT_EQ(type, std::uint32_t{IONameNarrow});
    return name;
}

TEST(StorageNames, AreThoseOfTheEntries) {
    const std::u16string longest = u"\x05" + std::u16string(29, u'l') + u"\xFF";
    StorageWriter writer;
    static_cast<void>(writer.AddStream(u"a/b.doc", "x"));
    static_cast<void>(writer.AddStream(longest, "x"));
    static_cast<void>(writer.AddStorage(u"Sub.xls"));
    const WrittenStorage written = writer.Write();
    const IOMemorySpec memory = {written.bytes.data(), written.bytes.size(), "file.ppt"};
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead), 0);
    const OpenHandle storage(file);
    EXPECT_EQ(NarrowNameOf(storage), "file.ppt");
    EXPECT_EQ(NarrowNameOf(storage.Stream("a/b.doc")), "a/b.doc") << "an entry's name has no directories";
    EXPECT_EQ(NarrowNameOf(storage.Storage("Sub.xls")), "Sub.xls");
    const std::string narrow(longest.begin(), longest.end());
    EXPECT_EQ(NarrowNameOf(storage.Stream(narrow)), narrow);
}

TEST(SubStorage, NestsAsDeepAsTheFileTells) {
    constexpr std::uint32_t depth = 500;
    StorageWriter writer;
    std::uint32_t parent = 0;
    for (std::uint32_t level = 0; level < depth; ++level) parent = writer.AddStorage(u"down", parent);
    static_cast<void>(writer.AddStream(u"bottom", "reached", parent));
    const WrittenStorage written = writer.Write();
    std::vector<OpenHandle> open;
    open.push_back(FIOpenBytes(written.bytes));
    for (std::uint32_t level = 0; level < depth; ++level) {
        OpenHandle next = open.back().Storage("down");
        ASSERT_TRUE(next) << level;
        open.push_back(std::move(next));
    }
    EXPECT_EQ(open.back().Stream("bottom").ReadToEnd(), "reached");
    EXPECT_FALSE(open.back().Storage("down"));
    while (!open.empty()) open.pop_back();
}

TEST(SubStorage, MayHoldItself) {
    Sample sample = MakeSample();
    sample.written.Put32(sample.written.EntryOffset(sample.sub) + storage_offsets::child, sample.sub);
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    const OpenHandle sub = storage.Storage("Sub");
    const OpenHandle again = sub.Storage("Sub");
    ASSERT_TRUE(again);
    EXPECT_TRUE(again.Storage("Sub"));
    EXPECT_FALSE(again.Stream("Inner"));
}

TEST(SubStorage, AStreamHasNoChildren) {
    Sample sample = MakeSample();
    sample.written.Put32(sample.written.EntryOffset(sample.small) + storage_offsets::child, sample.large);
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    const OpenHandle stream = storage.Stream("Small");
    EXPECT_FALSE(stream.IsStorage());
    EXPECT_EQ(stream.ClassId(), "");
    EXPECT_FALSE(stream.Stream("Large"));
}

// ---- Listing -------------------------------------------------------------------------------------------------------

std::string NameOf(const CFChild& child) {
    std::string name;
    for (std::uint32_t index = 0; index < child.nameLength; ++index) name += static_cast<char>(child.name[index]);
    return name;
}

OpenHandle OpenPlace(UTHandle& storage, std::size_t place) {
    UTHandle* const child = UTOpenChild(storage, place);
    return OpenHandle(child != nullptr ? UTHandleFile(*child) : nullptr);
}

TEST(StorageList, TellsAndOpensEachChildInTheOrderOfTheWalk) {
    const Sample sample = MakeSample();
    const OpenHandle file = FIOpenBytes(sample.written.bytes);
    UTHandle& storage = *UTFindHandle(file.File());
    struct Expected {
        const char* name;
        bool isStorage;
        std::uint64_t size;
    };
    // By length, then by letters: "Sub", "Large", "Small"; the middle one on top.
    const Expected expected[] = {
        {"Large", false, largeBytes.size()}, {"Sub", true, 0}, {"Small", false, smallBytes.size()}};
    CFChild child;
    for (std::size_t place = 0; place < 3; ++place) {
        ASSERT_TRUE(CFGetChild(storage, place, child));
        EXPECT_EQ(NameOf(child), expected[place].name);
        EXPECT_EQ(child.isStorage, expected[place].isStorage);
        EXPECT_EQ(child.size, expected[place].size);
        EXPECT_EQ(OpenPlace(storage, place).IsStorage(), expected[place].isStorage);
    }
    EXPECT_FALSE(CFGetChild(storage, 3, child));
    EXPECT_FALSE(CFGetChild(storage, SIZE_MAX, child));
    EXPECT_FALSE(OpenPlace(storage, 3));
}

TEST(StorageList, ReachesWideNamesAndHiddenOnes) {
    StorageLayout layout;
    layout.tree = StorageTree::RightChain;
    StorageWriter writer(layout);
    static_cast<void>(writer.AddStream(u"\u3800\u4000", "wide"));
    static_cast<void>(writer.AddStream(u"same", "first"));
    static_cast<void>(writer.AddStream(u"same", "second"));
    const WrittenStorage written = writer.Write();
    const OpenHandle file = FIOpenBytes(written.bytes);
    UTHandle& storage = *UTFindHandle(file.File());
    const char* const expected[] = {"wide", "first", "second"};
    for (std::size_t place = 0; place < 3; ++place) EXPECT_EQ(OpenPlace(storage, place).ReadToEnd(), expected[place]);
    const OpenHandle wide = OpenPlace(storage, 0);
    char16_t name[128] = u"#";
    std::uint32_t type = IONameNarrow;
    EXPECT_EQ(wide.File()->operations.IOGetInfo(wide.File(), IOInfoName, name), 0);
    EXPECT_EQ(wide.File()->operations.IOGetInfo(wide.File(), IOInfoNameType, &type), 0);
    EXPECT_EQ(std::u16string(name), u"\u3800\u4000");
    EXPECT_EQ(type, std::uint32_t{IONameWide});
    EXPECT_EQ(file.Stream("same").ReadToEnd(), "first");
}

TEST(StorageList, APlainFileHasNoChildren) {
    const std::string bytes = "plain";
    const OpenHandle file = FIOpenBytes(bytes);
    UTHandle& handle = *UTFindHandle(file.File());
    CFChild child;
    EXPECT_FALSE(CFGetChild(handle, 0, child));
    EXPECT_EQ(UTOpenChild(handle, 0), nullptr);
    EXPECT_EQ(UTOpenStream(handle, "plain"), nullptr);
    EXPECT_EQ(UTOpenSubStorage(handle, "plain"), nullptr);
}

// ---- What handles own ----------------------------------------------------------------------------------------------

TEST(StorageHandles, ClosingAChildLeavesTheParentOpen) {
    const Sample sample = MakeSample();
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    for (std::uint32_t round = 0; round < 3; ++round) {
        EXPECT_EQ(storage.Stream("Large").ReadToEnd(), largeBytes);
        EXPECT_EQ(storage.Storage("Sub").Stream("Inner").ReadToEnd(), "inner bytes");
    }
}

TEST(StorageHandles, TwoStreamsMoveApart) {
    const Sample sample = MakeSample();
    const OpenHandle storage = FIOpenBytes(sample.written.bytes);
    const OpenHandle first = storage.Stream("Large");
    const OpenHandle second = storage.Stream("Large");
    const OpenHandle third = storage.Stream("Small");
    EXPECT_EQ(first.Read(3), "lar");
    EXPECT_EQ(third.Read(3), "sma");
    EXPECT_EQ(second.Read(2), "la");
    EXPECT_EQ(first.Read(2), "ge");
    EXPECT_EQ(third.Read(2), "ll");
    EXPECT_EQ(second.Read(3), "rge");
}

TEST(StorageHandles, ClosingTheFileEndsWhatNobodyClosed) {
    const std::size_t blocksBefore = FIHeapBlocks();
    const Sample sample = MakeSample();
    HIOFILE file = nullptr;
    const IOMemorySpec memory = {sample.written.bytes.data(), sample.written.bytes.size(), ""};
    ASSERT_EQ(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead), 0);
    UTHandle& storage = *UTFindHandle(file);
    ASSERT_NE(UTOpenStream(storage, "Large"), nullptr);
    UTHandle* const sub = UTOpenSubStorage(storage, "Sub");
    ASSERT_NE(sub, nullptr);
    ASSERT_NE(UTOpenStream(*sub, "Inner"), nullptr);
    EXPECT_GT(FIHeapBlocks(), blocksBefore);
    file->operations.IOClose(file);
    EXPECT_EQ(FIHeapBlocks(), blocksBefore);
}

// Everything that can be done with the sample, as far as memory allows. Returns the bytes that came.
std::string UseSample(const std::string& bytes) {
    HIOFILE file = nullptr;
    const IOMemorySpec memory = {bytes.data(), bytes.size(), ""};
    if (IOOpen(&file, IOSpecMemory, &memory, IOOpenRead) != 0) return "";
    const OpenHandle storage(file);
    std::string came = storage.ClassId();
    const auto readStream = [&came](const OpenHandle& stream) {
        if (!stream) return;
        char buffer[6000];
        std::uint32_t count = 0;
        if (stream.File()->operations.IORead(stream.File(), buffer, sizeof(buffer), &count) == 0)
            came.append(buffer, count);
    };
    readStream(storage.Stream("Small"));
    readStream(storage.Stream("Large"));
    const OpenHandle sub = storage.Storage("Sub");
    if (sub) readStream(sub.Stream("Inner"));
    return came;
}

TEST(StorageHandles, ExhaustedMemoryMeansNotThereAndLeaksNothing) {
    StorageLayout layout;
    layout.scattered = true;  // chains of many runs
    const Sample sample = MakeSample(layout);
    const std::size_t blocksBefore = FIHeapBlocks();
    const std::string whole = UseSample(sample.written.bytes);
    EXPECT_EQ(whole, classIdOfRoot + smallBytes + largeBytes + "inner bytes");
    std::uint32_t failing = 0;
    for (std::string came; came != whole; ++failing) {
        ASSERT_LT(failing, 1000U);
        FIFailAllocationsFrom(failing);
        came = UseSample(sample.written.bytes);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocksBefore) << "failing at allocation " << failing;
        EXPECT_LE(came.size(), whole.size());
    }
    EXPECT_GT(failing, 10U);
}

}  // namespace
