// The central directory of a ZIP archive: where it is found, and which entry of it is meant.
#include "platform/zip/zip_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

#include "platform/base_utility.h"
#include "support/bytes.h"
#include "support/open_file.h"
#include "support/open_handle.h"
#include "support/process_heap.h"
#include "support/test_handle.h"
#include "support/zip_writer.h"

namespace {

const std::vector<ZipMember> twoMembers = {{"a.txt", "first"}, {"b.txt", "second"}};

struct DirectoryCase {
    const char* name;
    std::string bytes;
    bool readable;
};

void PrintTo(const DirectoryCase& directoryCase, std::ostream* out) { *out << directoryCase.name; }

std::string Changed(std::string bytes, std::size_t offset, char value) {
    bytes.at(offset) = value;
    return bytes;
}

std::size_t DirectoryStart(const std::string& zip) { return zip.find("PK\1\2"); }

// Writes a number into the bytes, least significant byte first.
std::string Told(std::string bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (; size > 0; --size, ++offset, value >>= 8) bytes.at(offset) = static_cast<char>(value & 0xFF);
    return bytes;
}

std::string Inserted(std::string bytes, std::size_t offset, const std::string& more) {
    return bytes.insert(offset, more);
}

const std::string plainZip = FIWriteZip(twoMembers);
const std::string zip64Zip = FIWriteZip(twoMembers, {.zip64 = true});
const std::string emptyZip = FIWriteZip({});
const std::string oneEntryZip = FIWriteZip({{"a", ""}});  // 31 bytes of data, an entry of 47, the end record
const std::string commentedEntryZip = FIWriteZip({{.name = "a", .comment = "c"}});

// An archive that was cut behind a whole archive which one of its members is, and where that one begins in it.
constexpr std::size_t innerStart = 30 + 5 + 5 + 30 + 9;
std::string CutBehind(const std::string& inner) {
    return FIWriteZip({{"front", "bytes"}, {"inner.zip", inner}}).substr(0, innerStart + inner.size());
}

const DirectoryCase directoryCases[] = {
    // clang-format off
    {"APlainArchive", plainZip, true},
    {"AnArchiveWithoutMembers", emptyZip, true},
    {"AnEndRecordThatLacksAByte", emptyZip.substr(0, 21), false},
    {"AnEmptyFile", "", false},
    {"AText", std::string(1000, 'x'), false},
    {"NoEndRecord", plainZip.substr(0, plainZip.size() - 22), false},
    {"BytesInFrontOfAFinishedArchive", std::string(1000, 'x') + plainZip, true},
    {"BytesBehindTheArchive", plainZip + "tail", true},
    {"ACommentOf65535Bytes", FIWriteZip(twoMembers, {.comment = std::string(65535, 'c')}), true},
    {"BytesBehindTheEndRecord65535", plainZip + std::string(65535, 'x'), true},
    {"BytesBehindTheEndRecord65536", plainZip + std::string(65536, 'x'), false},
    {"ACommentThatTheFileCuts", FIWriteZip(twoMembers, {.comment = "ab", .commentLengthTold = 3}), true},
    {"ACommentOfWhichNothingIsThere", FIWriteZip(twoMembers, {.commentLengthTold = 65535}), true},
    {"ACommentShorterThanWhatIsThere", FIWriteZip(twoMembers, {.comment = "ab", .commentLengthTold = 1}), true},
    {"ACountOfNone", FIWriteZip(twoMembers, {.countTold = 0}), true},
    {"ACountOf65535", FIWriteZip(twoMembers, {.countTold = 0xFFFF}), true},
    {"ACountOfFourThousandMillion", FIWriteZip(twoMembers, {.zip64 = true, .countTold = 0xFFFFFFFF}), true},
    {"AWrongOffset", FIWriteZip(twoMembers, {.directoryOffsetTold = 5}), true},
    {"AnOffsetBehindTheFile", FIWriteZip(twoMembers, {.directoryOffsetTold = 0x7FFFFFFF}), true},
    {"ASizeThatIsOneTooSmall", FIWriteZip({{"a", ""}}, {.directorySizeTold = 46}), false},
    {"ASizeThatIsOneTooLarge", FIWriteZip({{"a", ""}}, {.directorySizeTold = 48}), false},
    {"ASizeThatIsRight", FIWriteZip({{"a", ""}}, {.directorySizeTold = 47}), true},
    {"ASizeBeyondTheFile", FIWriteZip(twoMembers, {.directorySizeTold = 0xFFFFFFFF}), false},
    {"NoSizeAtAll", FIWriteZip(twoMembers, {.directorySizeTold = 0}), true},
    {"NoSizeBehindTheEnd", FIWriteZip({}, {.directoryOffsetTold = 1}), true},
    {"AnEntryWithoutItsSignature", Changed(plainZip, DirectoryStart(plainZip), 'Q'), false},
    {"ANameThatLeavesTheDirectory", Changed(plainZip, DirectoryStart(plainZip) + 51 + 28 + 1, 1), false},
    {"AnExtraFieldThatLeavesIt", Changed(plainZip, DirectoryStart(plainZip) + 51 + 30 + 1, 1), false},
    {"ACommentThatLeavesIt", Changed(plainZip, DirectoryStart(plainZip) + 51 + 32 + 1, 1), false},
    {"ASignatureBlockAtItsEnd", FIWriteZip(twoMembers, {.directoryTail = FIBytes(R"("PK" 05 05 03 00 "abc")")}), true},
    {"ASignatureBlockAlone", FIWriteZip({}, {.directoryTail = "PK\5\5"}), true},
    {"ASignatureBlockThatIsCut", FIWriteZip(twoMembers, {.directoryTail = "PK\5"}), false},
    {"AnotherTailOfIt", FIWriteZip(twoMembers, {.directoryTail = "tail"}), false},
    {"APlaceToldThatEndsInFrontOfTheRecord", Inserted(oneEntryZip, 31 + 47, "gap"), true},
    {"APlaceToldWhoseLastCommentIsTheRecord", Told(Changed(oneEntryZip, 31 + 32, 1), 31 + 47 + 12, 48, 4), false},
    {"APlaceToldWhoseLastCommentEndsInFrontOfIt", commentedEntryZip, true},
    {"AZip64Archive", zip64Zip, true},
    {"AZip64ArchiveBehindOtherBytes", std::string(1000, 'x') + zip64Zip, true},
    {"AZip64LocatorWithoutItsSignature", Changed(zip64Zip, zip64Zip.size() - 22 - 20, 'Q'), false},
    {"AZip64EndRecordWithoutItsSignature", Changed(zip64Zip, zip64Zip.size() - 22 - 20 - 56, 'Q'), false},
    {"AZip64LocatorThatLeadsNowhere", Changed(zip64Zip, zip64Zip.size() - 22 - 20 + 15, 1), true},
    {"AZip64LocatorAtTheStart", FIBytes(R"("PK" 06 07 00*16)") + emptyZip, true},
    {"AnEndRecordThatIsNotOneInTheComment", FIWriteZip(twoMembers, {.comment = "PK\5\6" + std::string(18, '\xFF')}), true},
    {"ACutArchiveInFrontOfAWholeOne", plainZip.substr(0, 40) + plainZip, false},
    {"AnArchiveThatGainedBytes", Inserted(plainZip, 33, "gained"), true},
    {"AnArchiveThatLostBytes", plainZip.substr(0, 30) + plainZip.substr(33), true},
    {"AnArchiveThatLostItsStart", plainZip.substr(1), true},
    {"ACutArchiveAroundAWholeOne", CutBehind(plainZip), false},
    {"ACutArchiveAroundAWholeZip64One", CutBehind(zip64Zip), false},
    {"AnotherFileAroundAWholeOne", Changed(CutBehind(plainZip), 3, 5), true},
    {"ACutArchiveAroundOneWithoutItsLocalHeader", Changed(CutBehind(plainZip), innerStart + 3, 5), true},
    {"AZip64RecordInFrontOfOtherData", Inserted(zip64Zip, zip64Zip.size() - 22 - 20, "data"), true},
    {"AZip64LocatorThatLeadsToItself", Told(zip64Zip, zip64Zip.size() - 22 - 20 + 8, zip64Zip.size() - 22 - 20, 8), true},
    // clang-format on
};

class FindDirectory : public testing::TestWithParam<DirectoryCase> {};

TEST_P(FindDirectory, Answers) {
    const std::size_t blocks = FIHeapBlocks();
    OpenFile file(GetParam().bytes);
    ZADirectory directory;
    EXPECT_EQ(ZAFindDirectory(*UTFindHandle(file.File()), directory), GetParam().readable);
    file.Close();
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

std::string CaseName(const testing::TestParamInfo<DirectoryCase>& caseInfo) { return caseInfo.param.name; }

INSTANTIATE_TEST_SUITE_P(Archives, FindDirectory, testing::ValuesIn(directoryCases), CaseName);

// The members' names, as far as they are asked for, of the archive that is found in the bytes.
bool Holds(const std::string& bytes, const char* name) {
    const OpenFile file(bytes);
    UTHandle& handle = *UTFindHandle(file.File());
    ZADirectory directory;
    ZAEntry entry;
    return ZAFindDirectory(handle, directory) && ZAFindEntry(handle, directory, name, false, entry);
}

TEST(DirectorySearch, TheLastEndRecordThatCanBeReadCounts) {
    const std::string first = FIWriteZip({{"first", ""}});
    const std::string second = FIWriteZip({{"second", ""}});
    EXPECT_TRUE(Holds("x" + first + second, "second"));
    EXPECT_FALSE(Holds("x" + first + second, "first"));
    EXPECT_TRUE(Holds("x" + first + Changed(second, DirectoryStart(second), 'Q'), "first"));
    // A file that begins as an archive is not what an archive behind it is.
    EXPECT_TRUE(Holds(first + second, "first"));
    EXPECT_FALSE(Holds(first + second, "second"));
}

TEST(DirectorySearch, AnEndRecordIsFoundWhereverTheWindowsOfTheSearchMeet) {
    for (std::size_t behind = 4070; behind < 4110; ++behind) {
        EXPECT_TRUE(Holds(plainZip + std::string(behind, 'x'), "a.txt")) << behind;
    }
}

TEST(DirectorySearch, TheZip64RecordCountsBeforeThePlainOne) {
    // The plain fields tell a directory of the right size too, but of the other archive.
    std::string zip = FIWriteZip({{"one", ""}, {"two", ""}}, {.zip64 = true});
    const std::size_t end = zip.size() - 22;
    const std::size_t start = DirectoryStart(zip);
    zip[end + 12] = 49;
    zip[end + 13] = zip[end + 14] = zip[end + 15] = 0;
    zip[end + 16] = static_cast<char>(start + 49);
    zip[end + 17] = zip[end + 18] = zip[end + 19] = 0;
    EXPECT_TRUE(Holds(zip, "one"));
    zip[end - 20] = 'Q';  // no locator: the plain fields
    EXPECT_FALSE(Holds(zip, "one"));
    EXPECT_TRUE(Holds(zip, "two"));
}

// A zip64 archive of "one" and "two" of which the zip64 record tells nothing that can be read, and the end record's own
// fields the directory of both.
std::string Zip64RecordOfNothing(std::uint64_t size, std::uint64_t offset) {
    std::string zip = FIWriteZip({{"one", ""}, {"two", ""}}, {.zip64 = true});
    const std::size_t end = zip.size() - 22;
    zip = Told(Told(zip, end - 20 - 56 + 40, size, 8), end - 20 - 56 + 48, offset, 8);
    return Told(Told(zip, end + 12, 98, 4), end + 16, DirectoryStart(zip), 4);
}

TEST(DirectorySearch, ThePlainFieldsCountWhereThePlacesOfTheZip64RecordFail) {
    EXPECT_TRUE(Holds(Zip64RecordOfNothing(97, 66), "two"));
    EXPECT_TRUE(Holds(Zip64RecordOfNothing(~std::uint64_t{0}, 66), "two"));
    EXPECT_TRUE(Holds(Zip64RecordOfNothing(97, ~std::uint64_t{0}), "two"));
    EXPECT_TRUE(Holds(Zip64RecordOfNothing(98, 1), "two"));
}

TEST(DirectorySearch, ThePlainFieldsCountWhereTheLocatorLeadsToNothing) {
    std::string zip = Zip64RecordOfNothing(98, 66);
    const std::size_t locator = zip.size() - 22 - 20;
    zip[locator - 56] = 'Q';
    for (const std::uint64_t place : {std::uint64_t{0}, std::uint64_t{locator - 56}, std::uint64_t{locator},
                                      std::uint64_t{zip.size()}, ~std::uint64_t{0}}) {
        EXPECT_TRUE(Holds(Told(zip, locator + 8, place, 8), "two")) << place;
    }
}

TEST(DirectorySearch, ThePlaceToldComesBeforeTheOneInFrontOfTheRecord) {
    // Two directories of one size stand in front of the record.
    const std::string first = FIWriteZip({{"one", ""}});
    const std::string second = FIWriteZip({{"two", ""}});
    const std::string both = first.substr(0, first.size() - 22) + second.substr(33, 49) + first.substr(33 + 49);
    EXPECT_TRUE(Holds(both, "one"));
    EXPECT_FALSE(Holds(both, "two"));
    const std::string elsewhere = Told(both, both.size() - 22 + 16, 34, 4);
    EXPECT_TRUE(Holds(elsewhere, "two"));
    EXPECT_FALSE(Holds(elsewhere, "one"));
}

TEST(DirectorySearch, AnArchiveInACutOneDoesNotAnswerForIt) {
    // It is found as soon as the file does not begin as an archive, or begins with it.
    const std::string cut = CutBehind(FIWriteZip({{"cell", "1"}}));
    EXPECT_FALSE(Holds(cut, "cell"));
    EXPECT_TRUE(Holds("x" + cut, "cell"));
    EXPECT_TRUE(Holds(cut.substr(innerStart), "cell"));
}

TEST(DirectorySearch, AFileFullOfEndRecordsComesBack) {
    std::string records;
    while (records.size() < 200000) records += "PK\5\6";
    EXPECT_FALSE(Holds(records, "a"));
}

// A directory of 94,000 bytes whose last entry is wrong, an archive with one as large and right, in which "good" is,
// and so many end records that tell the wrong one: each walk is a long one.
std::string FullOfLongWalks(std::uint32_t records) {
    std::vector<ZipMember> members(94, {.name = "a", .comment = std::string(953, 'c')});
    const std::string wrong = FIWriteZip(members, {.directoryOffsetTold = std::uint64_t{0}});
    const std::string end = wrong.substr(wrong.size() - 22);
    members.push_back({"good", ""});
    std::string bytes = wrong.substr(DirectoryStart(wrong), 94 * 1000) + FIWriteZip(members);
    bytes[93 * 1000] = 'Q';
    for (; records > 0; --records) bytes += end;
    return bytes;
}

TEST(DirectorySearch, AllWalksTogetherStayWithin256Mebibytes) {
    const auto host = FIMakeTestHandle(FullOfLongWalks(2900));  // walks of 273 million bytes
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    ZADirectory directory;
    EXPECT_FALSE(ZAFindDirectory(*UTFindHandle(file), directory));
    EXPECT_GT(host->bytesDelivered, largestZipDirectory / 10 * 9);
    EXPECT_LT(host->bytesDelivered, largestZipDirectory + 1000000);  // and the search itself
    FICloseFile(file);
}

TEST(DirectorySearch, APlaceInFrontOfTheRecordThatWasToldIsTriedOnce) {
    const std::vector<ZipMember> members(94, {.name = "a", .comment = std::string(953, 'c')});
    std::string zip = FIWriteZip(members);
    zip[0] = 'Q';  // no archive begins here
    zip[DirectoryStart(zip) + 93 * 1000] = 'Q';
    const auto host = FIMakeTestHandle(zip);
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    ZADirectory directory;
    EXPECT_FALSE(ZAFindDirectory(*UTFindHandle(file), directory));
    EXPECT_GT(host->bytesDelivered, 94000U);
    EXPECT_LT(host->bytesDelivered, 2 * 94000U);  // one walk, and the search of 65,557 bytes
    FICloseFile(file);
}

TEST(DirectorySearch, AnArchiveInFrontOfWalksWithinTheBoundIsFound) {
    EXPECT_TRUE(Holds(FullOfLongWalks(2300), "good"));
}

TEST(DirectorySearch, AFileThatCanNotBeReadHasNone) {
    const auto host = FIMakeTestHandle(plainZip);
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    ZADirectory directory;
    host->failReadsFrom = 0;
    EXPECT_FALSE(ZAFindDirectory(*UTFindHandle(file), directory));
    host->failReadsFrom = testNever;
    host->bytesPerRead = 1;
    EXPECT_TRUE(ZAFindDirectory(*UTFindHandle(file), directory));
    FICloseFile(file);
}

// ---- Where nobody sees the reads -----------------------------------------------------------------------------------

// The directory that is found in the bytes of a host's handle, whose every read the host sees, and in the same bytes in
// memory, where the search reads as it likes: the place, or nothing.
struct Found {
    ZASearch result;
    std::uint64_t start;
    std::uint64_t size;
    std::uint64_t shift;

    bool operator==(const Found&) const = default;
};

Found FoundIn(HIOFILE file) {
    ZADirectory directory = {};
    const ZASearch result = ZASearchDirectory(*UTFindHandle(file), directory);
    if (result != ZASearch::Found) return {result, 0, 0, 0};
    return {result, directory.start, directory.size, directory.shift};
}

Found FoundInBoth(const std::string& bytes) {
    const OpenFile file(bytes);
    const auto host = FIMakeTestHandle(bytes);
    HIOFILE seen = nullptr;
    EXPECT_EQ(IOOpen(&seen, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    EXPECT_TRUE(UTIsUnseen(*UTFindHandle(file.File())));
    EXPECT_FALSE(UTIsUnseen(*UTFindHandle(seen)));
    const Found found = FoundIn(file.File());
    EXPECT_EQ(found, FoundIn(seen));
    FICloseFile(seen);
    return found;
}

TEST(UnseenSearch, FindsWhatTheSeenOneFinds) {
    for (const DirectoryCase& directoryCase : directoryCases) {
        SCOPED_TRACE(directoryCase.name);
        EXPECT_EQ(FoundInBoth(directoryCase.bytes).result == ZASearch::Found, directoryCase.readable);
    }
    for (std::size_t behind = 0; behind < 66000; behind += behind < 9000 ? 1 : 61) {
        const bool inReach = behind <= 65535;
        const char filler = behind % 2 == 0 ? 'P' : 'K';
        EXPECT_EQ(FoundInBoth(plainZip + std::string(behind, filler)).result,
                  inReach ? ZASearch::Found : ZASearch::NoEndRecord)
            << behind;
    }
}

TEST(UnseenSearch, TriesTheRecordsInTheSameOrder) {
    // Archives, wrong records and halves of signatures, one behind another in any order.
    std::uint32_t state = 7;
    const auto random = [&state](std::uint32_t bound) {
        state = state * 1664525 + 1013904223;
        return (state >> 8) % bound;
    };
    for (int round = 0; round < 400; ++round) {
        std::string bytes = round % 2 == 0 ? "x" : "";
        const std::uint32_t pieces = random(60);
        for (std::uint32_t piece = 0; piece < pieces; ++piece) {
            switch (random(5)) {
                case 0:
                    bytes += FIWriteZip({{std::to_string(piece), ""}});
                    break;
                case 1:
                    bytes += Changed(plainZip, DirectoryStart(plainZip), 'Q');
                    break;
                case 2:
                    bytes += std::string("PK\5\6PK\5PKK\5\6").substr(0, random(14));
                    break;
                default:
                    bytes += std::string(random(3000), static_cast<char>(random(256)));
                    break;
            }
        }
        FoundInBoth(bytes);
    }
}

TEST(UnseenSearch, GoesOnInPiecesWhereMemoryIsExhausted) {
    const OpenFile file(plainZip + std::string(50000, 'x'));
    FIFailAllocationsFrom(0);
    const Found found = FoundIn(file.File());
    FIHeapNeverFails();
    EXPECT_EQ(found.result, ZASearch::Found);
}

TEST(UnseenSearch, TellsWhetherAnEndRecordWasMet) {
    EXPECT_EQ(FoundInBoth("").result, ZASearch::NoEndRecord);
    EXPECT_EQ(FoundInBoth(std::string(70000, 'x')).result, ZASearch::NoEndRecord);
    EXPECT_EQ(FoundInBoth(Changed(plainZip, DirectoryStart(plainZip), 'Q')).result, ZASearch::NotThere);
    const auto host = FIMakeTestHandle(std::string(70000, 'x'));
    HIOFILE file = nullptr;
    ASSERT_EQ(IOOpen(&file, IOSpecHandle, FIFileOf(*host), IOOpenRead), 0);
    host->failReadsFrom = 3;
    EXPECT_EQ(FoundIn(file).result, ZASearch::NotThere) << "not all was read";
    FICloseFile(file);
}

// ---- A directory of any size, made as it is read: entries with the longest comments ---------------------------------

constexpr std::uint64_t entrySize = 46 + 65535;

struct Endless {
    UTHandle handle;  // first
    std::uint64_t directorySize;
    std::string tail;  // the end record
};

// Puts the part of a text that lies in a window of a file there; the text begins at a place of the file.
void PutInWindow(std::string_view text, std::uint64_t place, std::uint64_t windowStart, std::span<char> window) {
    const std::uint64_t first = std::max(place, windowStart);
    const std::uint64_t end = std::min(place + text.size(), windowStart + window.size());
    if (first < end) std::ranges::copy(text.substr(first - place, end - first), window.data() + (first - windowStart));
}

std::int32_t ReadEndless(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                         std::uint32_t& count) {
    const auto& endless = reinterpret_cast<Endless&>(handle);
    const std::uint64_t end = endless.directorySize + endless.tail.size();
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, end - std::min(offset, end)));
    const std::span<char> window(static_cast<char*>(destination), count);
    std::memset(destination, 0, count);
    for (std::uint64_t entry = offset / entrySize; entry * entrySize < offset + count; ++entry) {
        if (entry * entrySize >= endless.directorySize) break;
        const std::uint64_t comment = std::min(entrySize, endless.directorySize - entry * entrySize) - 46;
        const char commentLength[] = {static_cast<char>(comment & 0xFF), static_cast<char>(comment >> 8)};
        PutInWindow("PK\1\2", entry * entrySize, offset, window);
        PutInWindow({commentLength, 2}, entry * entrySize + 32, offset, window);
    }
    PutInWindow(endless.tail, endless.directorySize, offset, window);
    return 0;
}

bool LargeDirectoryIsFound(std::uint64_t directorySize) {
    Endless endless = {};
    endless.directorySize = directorySize;
    endless.tail = FIWriteZip({}, {.directorySizeTold = directorySize});
    constexpr UTHandleKind kind = {ReadEndless,
                                   [](UTHandle& handle) {
                                       const auto& record = reinterpret_cast<Endless&>(handle);
                                       return record.directorySize + record.tail.size();
                                   },
                                   [](UTHandle&) {}};
    endless.handle.kind = &kind;
    ZADirectory directory;
    return ZAFindDirectory(endless.handle, directory);
}

TEST(DirectorySearch, ADirectoryOf256MebibytesIsReadAndALargerOneIsNot) {
    EXPECT_TRUE(LargeDirectoryIsFound(entrySize * 3));
    EXPECT_TRUE(LargeDirectoryIsFound(largestZipDirectory));
    EXPECT_FALSE(LargeDirectoryIsFound(largestZipDirectory + 1));
}

// ---- Entries -------------------------------------------------------------------------------------------------------

bool FindEntry(const std::string& bytes, std::string_view name, bool anyCase, ZAEntry& entry) {
    const OpenFile file(bytes);
    UTHandle& handle = *UTFindHandle(file.File());
    ZADirectory directory;
    return ZAFindDirectory(handle, directory) && ZAFindEntry(handle, directory, name, anyCase, entry);
}

TEST(FindEntry, ComparesTheWholeName) {
    const std::string zip = FIWriteZip({{"name", ""}, {std::string("nul\0x", 5), ""}, {"\xC4.xml", ""}, {"", ""}});
    ZAEntry entry;
    EXPECT_TRUE(FindEntry(zip, "name", false, entry));
    EXPECT_FALSE(FindEntry(zip, "nam", false, entry));
    EXPECT_FALSE(FindEntry(zip, "names", false, entry));
    EXPECT_FALSE(FindEntry(zip, "Name", false, entry));
    EXPECT_TRUE(FindEntry(zip, "NaMe", true, entry));
    EXPECT_FALSE(FindEntry(zip, "nul", false, entry));
    EXPECT_TRUE(FindEntry(zip, std::string_view("nul\0x", 5), false, entry));
    EXPECT_FALSE(FindEntry(zip, "\xE4.xml", true, entry));  // ASCII letters alone
    EXPECT_TRUE(FindEntry(zip, "", false, entry));
}

TEST(FindEntry, ComparesNamesLongerThanItsBuffer) {
    std::string name(65535, 'n');
    const std::string zip = FIWriteZip({{name, "long"}});
    ZAEntry entry;
    EXPECT_TRUE(FindEntry(zip, name, false, entry));
    name.back() = 'N';
    EXPECT_FALSE(FindEntry(zip, name, false, entry));
    EXPECT_TRUE(FindEntry(zip, name, true, entry));
}

TEST(FindEntry, OfTwoMembersOfOneNameTheFirstInTheDirectoryIsMeant) {
    const std::vector<ZipMember> members = {{"same", "1"}, {"SAME", "22"}, {"same", "333"}};
    ZAEntry entry;
    ASSERT_TRUE(FindEntry(FIWriteZip(members), "same", false, entry));
    EXPECT_EQ(entry.size, 1U);
    ASSERT_TRUE(FindEntry(FIWriteZip(members, {.directoryOrder = {2, 1, 0}}), "same", false, entry));
    EXPECT_EQ(entry.size, 3U);
    ASSERT_TRUE(FindEntry(FIWriteZip(members, {.directoryOrder = {1, 2, 0}}), "same", true, entry));
    EXPECT_EQ(entry.size, 2U);
    ASSERT_TRUE(FindEntry(FIWriteZip(members, {.directoryOrder = {1, 2, 0}}), "same", false, entry));
    EXPECT_EQ(entry.size, 3U);
}

TEST(FindEntry, TellsTheFieldsOfTheEntry) {
    const std::string zip =
        FIWriteZip({{"x", "front"}, {.name = "name", .bytes = "12345", .method = zipDeflated, .flags = 6}});
    ZAEntry entry;
    ASSERT_TRUE(FindEntry(zip, "name", false, entry));
    EXPECT_EQ(entry.flags, 6U);
    EXPECT_EQ(entry.method, 8U);
    EXPECT_EQ(entry.size, 5U);
    EXPECT_EQ(entry.packedSize, FIDeflate("12345").size());
    EXPECT_EQ(entry.headerOffset, 30U + 1U + 5U);
}

TEST(FindEntry, Zip64NumbersReplaceThoseThatDoNotFit) {
    const ZipMember wide = {
        .name = "name", .bytes = "12345", .zip64 = true, .sizeTold = 0x123456789ABC, .packedSizeTold = 0x23456789ABCD};
    ZAEntry entry;
    ASSERT_TRUE(FindEntry(FIWriteZip({{"x", ""}, wide}), "name", false, entry));
    EXPECT_EQ(entry.size, 0x123456789ABCU);
    EXPECT_EQ(entry.packedSize, 0x23456789ABCDU);
    EXPECT_EQ(entry.headerOffset, 31U);

    ZipMember behindOther = wide;
    behindOther.extra = FIBytes("w:0x7075 w:3 01 02 03");
    ASSERT_TRUE(FindEntry(FIWriteZip({behindOther}), "name", false, entry));
    EXPECT_EQ(entry.size, 0x123456789ABCU);
}

TEST(FindEntry, AZip64BlockHoldsOnlyTheNumbersThatDoNotFit) {
    const ZipMember member = {
        .name = "name", .bytes = "12345", .packedSizeTold = 0xFFFFFFFF, .extra = FIBytes("w:1 w:8 d:7 d:1")};
    ZAEntry entry;
    ASSERT_TRUE(FindEntry(FIWriteZip({member}), "name", false, entry));
    EXPECT_EQ(entry.size, 5U);
    EXPECT_EQ(entry.packedSize, 0x100000007U);
}

TEST(FindEntry, AnExtraFieldThatIsNotWellFormedLeavesTheNumbers) {
    for (const char* const extra : {"01", "w:1 w:8", "w:1 w:7 00*7", "w:2 w:9 00*8 w:1 w:8 00*8", "w:3 w:0"}) {
        const ZipMember member = {
            .name = "name", .bytes = "12345", .packedSizeTold = 0xFFFFFFFF, .extra = FIBytes(extra)};
        ZAEntry entry;
        ASSERT_TRUE(FindEntry(FIWriteZip({member}), "name", false, entry)) << extra;
        EXPECT_EQ(entry.packedSize, 0xFFFFFFFFU) << extra;
    }
}

// The walk that finds a directory notes some names; a look-up of them answers as the walk for them would.
TEST(FindEntry, AnswersFromANoteAsFromTheWalk) {
    const ZipMember wide = {.name = "mimetype", .bytes = "12345", .zip64 = true, .sizeTold = 0x123456789ABC};
    const std::vector<ZipMember> lists[] = {
        {},
        {{"a", ""}},
        {{"_rels/.rels", "1"}},
        {{"a", ""}, {"_RELS/.Rels", "1"}, {"_rels/.rels", "2"}, {"mimetype", "3"}, {"mimetype", "4"}},
        {{"Mimetype", "1"}, {"_rels/.relx", "2"}, {"xmimetyp", "3"}},
        {{"[content_types].XML", "1"},
         {"/_Rels/.rels", "2"},
         {"/[Content_Types].xml", "3"},
         {"[Content_Types].xml", "4"}},
        {{"/[Content_Types].xmm", "1"},
         {"[Content_Types]/xml", "2"},
         {"\\_rels/.rels", "3"},
         {std::string(32, 'a'), ""}},
        {{.name = "_rels/.rels", .bytes = "1", .extra = FIBytes("w:9 w:2 00 00"), .comment = "c"}, wide},
        {{.name = "mimetype", .bytes = "1", .packedSizeTold = 0xFFFFFFFF, .extra = FIBytes("w:1 w:7 00*7")}},
    };
    for (const std::vector<ZipMember>& members : lists) {
        const OpenFile file(FIWriteZip(members));
        UTHandle& handle = *UTFindHandle(file.File());
        ZADirectory noted;
        ASSERT_TRUE(ZAFindDirectory(handle, noted));
        EXPECT_TRUE(noted.noted);
        ZADirectory plain = noted;
        plain.noted = false;
        for (const std::string_view name : {"_rels/.rels", "mimetype", "_RELS/.Rels", "Mimetype", "a", "/_rels/.rels",
                                            "[Content_Types].xml", "/[Content_Types].xml"}) {
            for (const bool anyCase : {false, true}) {
                ZAEntry one = {};
                ZAEntry other = {};
                const bool found = ZAFindEntry(handle, plain, name, anyCase, one);
                ASSERT_EQ(ZAFindEntry(handle, noted, name, anyCase, other), found) << name << anyCase;
                if (!found) continue;
                EXPECT_EQ(one.flags, other.flags);
                EXPECT_EQ(one.method, other.method);
                EXPECT_EQ(one.size, other.size);
                EXPECT_EQ(one.packedSize, other.packedSize);
                EXPECT_EQ(one.headerOffset, other.headerOffset);
            }
        }
    }
}

// ---- Names --------------------------------------------------------------------------------------------------------

struct Names {
    std::vector<std::string> names;
    std::size_t most = SIZE_MAX;  // the walk is ended behind so many
};

bool KeepName(void* context, std::string_view name) {
    auto& kept = *static_cast<Names*>(context);
    kept.names.emplace_back(name);
    return kept.names.size() < kept.most;
}

// The names that a walk over the archive in the bytes visits.
std::vector<std::string> NamesIn(const std::string& bytes, std::size_t most = SIZE_MAX) {
    const OpenFile file(bytes);
    UTHandle& handle = *UTFindHandle(file.File());
    const std::size_t blocks = FIHeapBlocks();
    ZADirectory directory;
    Names kept = {{}, most};
    EXPECT_TRUE(ZAFindDirectory(handle, directory) && ZAVisitNames(handle, directory, KeepName, &kept));
    EXPECT_EQ(FIHeapBlocks(), blocks);
    return kept.names;
}

TEST(VisitNames, GoesThroughAllOfTheDirectoryInItsOrder) {
    const std::string odd("nul\0x", 5);
    const std::vector<ZipMember> members = {
        {"a", "1"}, {.name = odd, .zip64 = true, .extra = "e", .comment = "comment"}, {""}, {"a", "2"}, {"dir/"}};
    EXPECT_EQ(NamesIn(FIWriteZip(members)), (std::vector<std::string>{"a", odd, "", "a", "dir/"}));
    EXPECT_EQ(NamesIn(FIWriteZip(members, {.directoryOrder = {4, 1}})), (std::vector<std::string>{"dir/", odd}));
    EXPECT_EQ(NamesIn(emptyZip), std::vector<std::string>());
    EXPECT_EQ(NamesIn(FIWriteZip(twoMembers, {.directoryTail = FIBytes(R"("PK" 05 05 03 00 "abc")")})).size(), 2U);
}

TEST(VisitNames, EndsWhereItIsTold) {
    EXPECT_EQ(NamesIn(plainZip, 1), std::vector<std::string>{"a.txt"});
    EXPECT_EQ(NamesIn(plainZip, 2).size(), 2U);
}

TEST(VisitNames, ANameIsWholeWhateverItsLength) {
    std::vector<std::string> names;
    std::vector<ZipMember> members;
    for (const std::size_t length : {65535U, 1U, 16383U, 16384U, 16385U, 3U, 40000U, 65535U, 16338U}) {
        names.emplace_back();
        while (names.back().size() < length) names.back() += std::to_string(names.back().size() * length);
        names.back().resize(length);
        members.push_back({.name = names.back(), .comment = std::string(length / 2, 'c')});
    }
    EXPECT_EQ(NamesIn(FIWriteZip(members)), names);
}

TEST(VisitNames, BreaksOffWhereMemoryForALongNameIsExhausted) {
    const OpenFile file(
        FIWriteZip({{"a", ""}, {std::string(16384, 'b'), ""}, {std::string(16385, 'c'), ""}, {"d", ""}}));
    UTHandle& handle = *UTFindHandle(file.File());
    ZADirectory directory;
    ASSERT_TRUE(ZAFindDirectory(handle, directory));
    Names kept;
    FIFailAllocationsFrom(0);
    const bool whole = ZAVisitNames(handle, directory, KeepName, &kept);
    FIHeapNeverFails();
    EXPECT_FALSE(whole);
    EXPECT_EQ(kept.names.size(), 2U);
}

TEST(VisitNames, BreaksOffWhereTheFileFails) {
    const auto host = FIMakeTestHandle(FIWriteZip({{std::string(20000, 'a'), ""}, {"b", ""}, {"c", ""}}));
    const OpenHandle file = FIOpenOver(*host);
    UTHandle& handle = *UTFindHandle(file.File());
    ZADirectory directory;
    ASSERT_TRUE(ZAFindDirectory(handle, directory));
    for (std::uint32_t read = 0; read < 2; ++read) {
        host->failReadsFrom = host->reads + read;
        Names kept;
        EXPECT_FALSE(ZAVisitNames(handle, directory, KeepName, &kept));
        EXPECT_EQ(kept.names.size(), 0U);
    }
    host->failReadsFrom = testNever;
    Names kept;
    EXPECT_TRUE(ZAVisitNames(handle, directory, KeepName, &kept));
    EXPECT_EQ(kept.names.size(), 3U);
}

TEST(VisitNames, ReadsTheDirectoryOnce) {
    std::vector<ZipMember> members(3000, {.name = "member", .comment = "comment"});
    const auto host = FIMakeTestHandle(FIWriteZip(members));
    const OpenHandle file = FIOpenOver(*host);
    UTHandle& handle = *UTFindHandle(file.File());
    ZADirectory directory;
    ASSERT_TRUE(ZAFindDirectory(handle, directory));
    const std::uint64_t before = host->bytesDelivered;
    Names kept;
    EXPECT_TRUE(ZAVisitNames(handle, directory, KeepName, &kept));
    EXPECT_EQ(kept.names.size(), 3000U);
    EXPECT_EQ(host->bytesDelivered - before, directory.size);
}

// ---- Data ----------------------------------------------------------------------------------------------------------

TEST(FindData, StandsBehindTheLocalHeader) {
    const std::string zip = FIWriteZip({{"name", "bytes"}});
    for (const std::size_t front : {std::size_t{0}, std::size_t{100}}) {
        const OpenFile file(std::string(front, 'x') + zip);
        UTHandle& handle = *UTFindHandle(file.File());
        ZADirectory directory;
        ZAEntry entry;
        ASSERT_TRUE(ZAFindDirectory(handle, directory) && ZAFindEntry(handle, directory, "name", false, entry));
        std::uint64_t offset = 0;
        ASSERT_TRUE(ZAFindData(handle, directory, entry, offset));
        EXPECT_EQ(offset, front + 34);
    }
}

TEST(FindData, IsNotThereWithoutALocalHeader) {
    for (const std::uint64_t told :
         {std::uint64_t{1}, std::uint64_t{0x7FFFFFFF}, ~std::uint64_t{0}, ~std::uint64_t{0} - 29}) {
        const std::string zip =
            FIWriteZip({{.name = "name", .bytes = "bytes", .zip64 = true, .headerOffsetTold = told}});
        const OpenFile file(zip);
        UTHandle& handle = *UTFindHandle(file.File());
        ZADirectory directory;
        ZAEntry entry;
        ASSERT_TRUE(ZAFindDirectory(handle, directory) && ZAFindEntry(handle, directory, "name", false, entry));
        std::uint64_t offset = 0;
        EXPECT_FALSE(ZAFindData(handle, directory, entry, offset)) << told;
    }
}

}  // namespace
