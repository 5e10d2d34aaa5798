// Packed members: what they deliver when their data are damaged, at every place and read in every way.
#include "platform/zip/unpacker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "platform/base_utility.h"
#include "support/open_file.h"
#include "support/test_handle.h"
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

// The first read of a member that nothing was read of, so that its end is not known yet.
std::int32_t FirstReadAt(const std::string& packed, std::int32_t offset, std::uint32_t size, std::uint32_t& count) {
    const OpenFile file(Archive(packed, 20000));
    const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
    EXPECT_EQ(member->operations.IOSeek(member, 0, offset), 0);
    char byte = 0;
    return member->operations.IORead(member, &byte, size, &count);
}

TEST(Unpacker, FirstReadMayLieBehindTheEnd) {
    const std::string front = FIStoredBlock(Words(10000));
    const std::string sound = front + std::string("\x03\x00", 2);
    for (const std::int32_t offset : {10000, 10001, 15000, 20000}) {
        for (const std::string& packed : {sound, front + "\x07", front}) {  // sound, damaged, cut
            std::uint32_t count = 77;
            EXPECT_EQ(FirstReadAt(packed, offset, 1, count), packed == sound ? 0 : -1) << offset;
            EXPECT_EQ(count, 0U) << offset;
        }
    }
}

TEST(Unpacker, ReadOfNothingAtTheEndOfDamagedDataSucceeds) {
    const OpenFile file(Archive(FIStoredBlock(Words(100)) + "\x07", 20000));
    const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
    EXPECT_TRUE(FIReadAll(member).failed);
    char byte = 0;
    std::uint32_t count = 77;
    EXPECT_EQ(member->operations.IORead(member, &byte, 0, &count), 0);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(member->operations.IORead(member, &byte, 1, &count), -1);
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

TEST(Unpacker, DataThatReachBackBehindTheirStartAreDamaged) {
    const std::string front = FIStoredBlock("0123456789");
    const std::string tenBack = front + std::string("\x03\xB2\x00\x00", 4);  // three bytes from ten bytes back
    const std::string elevenBack = front + std::string("\x03\x32\x01\x00", 4);
    EXPECT_EQ(Expected(tenBack), (ReadResult{"0123456789012", false}));
    EXPECT_EQ(Expected(elevenBack), (ReadResult{"0123456789", true}));
    for (const std::string& packed : {tenBack, elevenBack}) {
        ExpectAllReads(packed, 13, "once");
        const OpenFile file(Archive(packed, 13));
        const HIOFILE member = FIOpenMember(FIOpenArchive(file.File()), "m");
        for (int round = 0; round < 3; ++round) {  // nothing of an earlier round is there to be reached
            EXPECT_EQ(member->operations.IOSeek(member, 0, 0), 0);
            EXPECT_EQ(FIReadAll(member), Expected(packed));
        }
    }
}

TEST(Unpacker, DataMayReachBackAsFarAsTheFormatAllows) {
    std::string text = Words(32768);
    text += text + text;
    const std::string packed = FIDeflate(text);
    EXPECT_EQ(Expected(packed), (ReadResult{text, false}));
    ExpectAllReads(packed, text.size(), "far");
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

// ---- Over a handle that counts and fails ----------------------------------------------------------------------------

class UnpackerOverHost : public testing::Test {
 protected:
    void Open(const std::string& packed, std::uint64_t size) {
        if (file_ != nullptr) FICloseFile(file_);
        host_ = FIMakeTestHandle(Archive(packed, size));
        ASSERT_EQ(IOOpen(&file_, IOSpecHandle, FIFileOf(*host_), IOOpenRead), 0);
        member_ = FIOpenMember(FIOpenArchive(file_), "m");
        ASSERT_NE(member_, nullptr);
        host_->bytesDelivered = 0;
        host_->reads = 0;
    }

    ReadResult ReadFrom(std::int32_t offset, std::uint32_t portion = 2048) {
        EXPECT_EQ(member_->operations.IOSeek(member_, 0, offset), 0);
        return FIReadAll(member_, portion);
    }

    void TearDown() override { FICloseFile(file_); }

    std::unique_ptr<TestHandle> host_;
    HIOFILE file_ = nullptr;
    HIOFILE member_ = nullptr;
};

TEST_F(UnpackerOverHost, ReadsEveryPackedByteOnce) {
    const std::string text = Words(60000);
    const std::string packed = FIStoredBlock(text) + std::string("\x03\x00", 2);
    Open(packed, text.size());
    EXPECT_EQ(ReadFrom(0), (ReadResult{text, false}));
    EXPECT_EQ(host_->bytesDelivered, packed.size());
    EXPECT_EQ(host_->reads, 8U);  // through a buffer of 8 KiB
    EXPECT_EQ(ReadFrom(static_cast<std::int32_t>(text.size())), (ReadResult{"", false}));
    EXPECT_EQ(host_->bytesDelivered, packed.size());
    EXPECT_EQ(ReadFrom(0, 10), (ReadResult{text, false}));
    EXPECT_EQ(host_->bytesDelivered, 2 * packed.size());
}

TEST_F(UnpackerOverHost, ReadsNothingBehindTheEndOfTheData) {
    const std::string text = Words(5000);
    Open(FIDeflate(text) + std::string(100000, 'x'), text.size());
    EXPECT_EQ(ReadFrom(0), (ReadResult{text, false}));
    EXPECT_LE(host_->bytesDelivered, 8192U);
}

TEST_F(UnpackerOverHost, AsksForNothingBehindDataThatEndTooEarly) {
    const std::string text = Words(20000);
    Open(FIStoredBlock(text), text.size());
    EXPECT_EQ(ReadFrom(0), (ReadResult{text, true}));
    EXPECT_EQ(host_->reads, 3U);
    EXPECT_EQ(ReadFrom(10000), (ReadResult{text.substr(10000), true}));
    EXPECT_EQ(host_->reads, 6U);
}

TEST_F(UnpackerOverHost, TakesPackedBytesOneByOne) {
    const std::string text = Words(5000);
    Open(FIDeflate(text), text.size());
    host_->bytesPerRead = 1;
    EXPECT_EQ(ReadFrom(0), (ReadResult{text, false}));
    EXPECT_EQ(ReadFrom(4990), (ReadResult{text.substr(4990), false}));
}

TEST_F(UnpackerOverHost, DeliversWhatCameInFrontOfAFailure) {
    const std::string text = Words(5000);
    const std::string packed = FIDeflate(text);
    for (std::uint32_t reads = 0; reads < packed.size(); reads += 50) {
        Open(packed, text.size());
        host_->bytesPerRead = 1;
        host_->failReadsFrom = reads;
        EXPECT_EQ(ReadFrom(0), Expected(packed.substr(0, reads))) << reads;
        char byte = 0;
        std::uint32_t count = 1;
        EXPECT_EQ(member_->operations.IORead(member_, &byte, 1, &count), -1);
        EXPECT_EQ(count, 0U);
        host_->failReadsFrom = testNever;  // what was not there once is not there later
        EXPECT_EQ(ReadFrom(0), Expected(packed.substr(0, reads))) << reads;
    }
}

TEST_F(UnpackerOverHost, SeeksForwardWithoutStartingOver) {
    const std::string text = Words(60000);
    const std::string packed = FIStoredBlock(text) + std::string("\x03\x00", 2);
    Open(packed, text.size());
    for (const std::int32_t offset : {0, 10000, 14096, 20000, 59999, 60000, 70000}) {
        EXPECT_EQ(member_->operations.IOSeek(member_, 0, offset), 0);
        char byte = 0;
        std::uint32_t count = 0;
        EXPECT_EQ(member_->operations.IORead(member_, &byte, 1, &count), 0);
        const auto place = static_cast<std::size_t>(offset);
        EXPECT_EQ(std::string(&byte, count), text.substr(std::min(place, text.size()), 1));
    }
    EXPECT_EQ(host_->bytesDelivered, packed.size());
}

}  // namespace
