// Packed members: what they deliver when their data are damaged, at every place and read in every way.
#include "platform/zip/unpacker.h"

#include <gtest/gtest.h>

#include "platform/base_utility.h"
#include "support/open_file.h"
#include "support/zip_writer.h"

namespace {

std::string Words(std::size_t size) {
    std::string text;
    std::uint32_t state = 1;
    while (text.size() < size) {
        state = state * 1103515245 + 12345;
        text += "word" + std::to_string((state >> 16) % 300) + ' ';
    }
    text.resize(size);
    return text;
}

// The archive's only member, "m", with these packed bytes.
std::string Archive(const std::string& packed, std::uint64_t sizeTold) {
    return FIWriteZip({{.name = "m", .bytes = "", .method = zipDeflated, .packed = packed, .sizeTold = sizeTold}});
}

// What the packed bytes hold by a second unpacker, as a read of them all should tell it.
ReadResult Expected(const std::string& packed) {
    ReadResult expected = {"", false};
    expected.failed = !FIInflate(packed, expected.bytes);
    return expected;
}

void ExpectAllReads(const std::string& packed, std::uint64_t sizeTold, const std::string& what) {
    const ReadResult expected = Expected(packed);
    const std::string archive = Archive(packed, sizeTold);
    for (const std::uint32_t portion : {1U, 100U, 2048U, 10000U}) {
        ASSERT_EQ(FIReadMember(archive, "m", portion), expected) << what << " by " << portion;
    }
}

TEST(Unpacker, DamageAtAnyByteLetsAllInFrontOfItThrough) {
    const std::string text = Words(700);
    const std::string packed = FIDeflate(text);
    for (std::size_t place = 0; place < packed.size(); ++place) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string damaged = packed;
            damaged[place] = static_cast<char>(damaged[place] ^ change);
            ExpectAllReads(damaged, text.size(), "byte " + std::to_string(place));
        }
    }
}

TEST(Unpacker, DataCutAtAnyByteLetAllInFrontOfItThroughAndThenFail) {
    const std::string text = Words(700);
    const std::string packed = FIDeflate(text);
    for (std::size_t size = 1; size < packed.size(); ++size) {
        ExpectAllReads(packed.substr(0, size), text.size(), "size " + std::to_string(size));
    }
    EXPECT_EQ(FIReadMember(Archive("", text.size()), "m"), (ReadResult{"", false}));  // nothing packed, nothing held
}

TEST(Unpacker, DamageBehindMuchDataLetsItAllThrough) {
    const std::string text = Words(60000);
    const std::string invalidBlock = "\x07";  // of the type that is none
    for (const std::size_t size : {std::size_t{1}, std::size_t{4095}, std::size_t{4096}, std::size_t{4097},
                                   std::size_t{8191}, std::size_t{8192}, std::size_t{8193}, std::size_t{60000}}) {
        const std::string packed = FIStoredBlock(text.substr(0, size)) + invalidBlock + std::string(20000, 'x');
        EXPECT_EQ(Expected(packed), (ReadResult{text.substr(0, size), true}));
        ExpectAllReads(packed, text.size(), "size " + std::to_string(size));
    }
}

TEST(Unpacker, BytesBehindTheEndOfTheDataCountForNothing) {
    const std::string text = Words(5000);
    EXPECT_EQ(FIReadMember(Archive(FIDeflate(text) + std::string(20000, 'x'), text.size()), "m"),
              (ReadResult{text, false}));
}

TEST(Unpacker, DamageIsWhereItIsHoweverTheReaderSeeks) {
    const std::string text = Words(10000);
    const OpenFile file(Archive(FIStoredBlock(text) + "\x07", 20000));
    const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
    ASSERT_NE(member, nullptr);
    for (const std::int32_t offset : {9999, 0, 10000, 5000, 15000, 9990, 0}) {
        EXPECT_EQ(member->operations.IOSeek(member, 0, offset), 0);
        const auto start = static_cast<std::size_t>(offset);
        const std::string rest = start < text.size() ? text.substr(start) : "";
        EXPECT_EQ(FIReadAll(member), (ReadResult{rest, true})) << offset;
    }
}

TEST(Unpacker, DamageBehindWhatIsReadDoesNotShow) {
    const std::string text = Words(10000);
    const OpenFile file(Archive(FIStoredBlock(text) + "\x07", 20000));
    const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
    std::string bytes(10000, '\0');
    std::uint32_t count = 0;
    EXPECT_EQ(member->operations.IORead(member, bytes.data(), 10000, &count), 0);
    EXPECT_EQ(bytes.substr(0, count), text);
    EXPECT_EQ(member->operations.IORead(member, bytes.data(), 10000, &count), -1);
    EXPECT_EQ(member->operations.IORead(member, bytes.data(), 10000, &count), -1);
    EXPECT_EQ(member->operations.IOSeek(member, 0, 9998), 0);
    EXPECT_EQ(member->operations.IORead(member, bytes.data(), 10000, &count), 0);
    EXPECT_EQ(bytes.substr(0, count), text.substr(9998));
}

TEST(Unpacker, ZipRecordsInTheDataAreData) {
    // Packed bytes full of end records and directory entries lead nobody astray.
    const std::string inner = FIWriteZip({{"x", "inner"}});
    std::string text;
    while (text.size() < 60000) text += inner;
    text.resize(60000);
    std::string packed = FIStoredBlock(text);
    packed[0] = 1;  // the last block
    EXPECT_EQ(FIReadMember(Archive(packed, text.size()), "m"), (ReadResult{text, false}));
}

}  // namespace
