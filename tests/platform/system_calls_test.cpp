// What an identification of a plain file asks of the operating system. The linker wraps the calls (see CMakeLists.txt).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <utility>

#include "core/driver.h"
#include "fiid.h"
#include "platform/base_utility.h"
#include "platform/package_library.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/zip_writer.h"

namespace {

// Never destroyed: when coverage is measured, the counters are written, with these calls, behind all else.
std::string& calls = *new std::string;
mode_t pretendedType = 0;  // what fstat tells of each file, if not 0

// How awkward pread is.
constexpr off_t never = std::numeric_limits<off_t>::max();
off_t failFrom = never;                                           // bytes from here on can't be read
off_t failUpTo = never;                                           // those from here on can again
std::size_t mostBytes = std::numeric_limits<std::size_t>::max();  // of one call
std::uint32_t interruptions = 0;                                  // in front of each call that does something
std::uint32_t interruptionsLeft = 0;

}  // namespace

extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_fstat(int descriptor, struct stat* status);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
int __real_close(int descriptor);

int __wrap_open(const char* path, int flags, ...) {
    calls += "open ";
    if ((flags & O_CREAT) == 0) return __real_open(path, flags);
    va_list further;
    va_start(further, flags);
    const mode_t mode = va_arg(further, mode_t);
    va_end(further);
    return __real_open(path, flags, mode);
}
int __wrap_fstat(int descriptor, struct stat* status) {
    calls += "fstat ";
    const int result = __real_fstat(descriptor, status);
    if (pretendedType != 0) {
        status->st_mode = (status->st_mode & ~static_cast<mode_t>(S_IFMT)) | pretendedType;
        status->st_size = 0;  // a device tells no size here
    }
    return result;
}
ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
    calls += "pread@" + std::to_string(offset) + " ";
    if (interruptionsLeft > 0) {
        --interruptionsLeft;
        errno = EINTR;
        return -1;
    }
    interruptionsLeft = interruptions;
    if (offset >= failFrom && offset < failUpTo) {
        errno = EIO;
        return -1;
    }
    size = std::min(size, mostBytes);
    if (offset < failFrom) size = std::min(size, static_cast<std::size_t>(failFrom - offset));
    return __real_pread(descriptor, buffer, size, offset);
}
int __wrap_close(int descriptor) {
    calls += "close";
    return __real_close(descriptor);
}

}  // extern "C"

namespace {

using ::PrintTo;

struct FileCase {
    const char* name;
    const char* bytes;
    const char* extension;
    FIID answer;
};

// Files that are decided by a row or by a routine that reads near the start: small ones, whose end a short read shows,
// and large ones, where the answer comes before anything behind the window is wanted.
const FileCase fileCases[] = {
    // clang-format off
    {"Gif",             R"("GIF89a")",                               "gif", 1503},
    {"LargeGif",        R"("GIF89a" >100000)",                       "gif", 1503},
    {"Pdf",             R"("%PDF-1.4" >100000)",                     "pdf", 1557},
    {"Png",             R"(89 "PNG" 0D 0A 1A 0A >100000)",           "png", 1574},
    {"LargeRtf",        R"("{\rtf1" >100000)",                       "rtf", 1028},
    {"Jpeg",            R"(FF D8 FF E0 00 04 00 00 FF DA >100000)",  "jpg", 1535},
    {"LargeHtml",       R"("<html>" 20*100000)",                     "htm", 1101},
    {"ByExtension",     R"(00*100000)",                              "tga", 1512},
    {"OneBlockOfText",  R"("plain text" 0A)",                        "txt", 4022},
    {"Empty",           "",                                          "txt", 4022},
    // clang-format on
};

class SystemCalls : public testing::TestWithParam<FileCase> {};

TEST_P(SystemCalls, AreOpenStatOneReadAndClose) {
    const std::string path = testing::TempDir() + "fiid-calls-" + std::to_string(getpid()) + "." + GetParam().extension;
    std::ofstream(path, std::ios::binary) << FIBytes(GetParam().bytes);
    FIID fiid = 0;
    calls.clear();
    ASSERT_EQ(FIIdFile(IOSpecNarrow, path.c_str(), FIFlagExtendedText, &fiid), 0);
    const std::string made = calls;
    std::remove(path.c_str());
    EXPECT_EQ(fiid, GetParam().answer);
    EXPECT_EQ(made, "open fstat pread@0 close");
}

INSTANTIATE_TEST_SUITE_P(Files, SystemCalls, testing::ValuesIn(fileCases), FICaseName);

// The calls of one identification of a file of these bytes.
std::string CallsFor(const std::string& bytes, const char* extension, FIID answer) {
    const std::string path = testing::TempDir() + "fiid-calls-" + std::to_string(getpid()) + "." + extension;
    std::ofstream(path, std::ios::binary) << bytes;
    FIID fiid = 0;
    calls.clear();
    EXPECT_EQ(FIIdFile(IOSpecNarrow, path.c_str(), FIFlagExtendedText, &fiid), 0);
    const std::string made = calls;
    std::remove(path.c_str());
    EXPECT_EQ(fiid, answer);
    return made;
}

TEST(SystemCallsForAnArchive, AreOneMoreForItsTail) {
    const std::string filler(100000, 'x');
    EXPECT_EQ(CallsFor(FIWriteZip({{"a", "1"}, {"filler", filler}}), "zip", 1802),
              "open fstat pread@0 pread@91997 close");
    EXPECT_EQ(CallsFor(FIWriteZip({{"a", "1"}}), "zip", 1802), "open fstat pread@0 close");
}

TEST(SystemCallsForAnArchive, AreTwoMoreWhereItHasNoDirectory) {
    EXPECT_EQ(CallsFor("PK\3\4" + std::string(200000, 'x'), "zip", 1802),
              "open fstat pread@0 pread@191812 pread@134447 close")
        << "the tail, and the rest of what an end record may begin in";
}

// Opens a descriptor as if it were one of a block device. Returns null with errno set.
HIOFILE OpenAsBlockDevice(int descriptor) {
    const IODescriptorSpec specification = {descriptor, nullptr};
    HIOFILE file = nullptr;
    pretendedType = S_IFBLK;
    const std::int32_t status = IOOpen(&file, IOSpecDescriptor, &specification, IOOpenRead);
    pretendedType = 0;
    EXPECT_EQ(status == 0, file != nullptr);
    return file;
}

TEST(BlockDevice, HasTheSizeOfItsEnd) {
    const std::string path = testing::TempDir() + "fiid-device-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary) << std::string(9000, 'd') + "end";
    const int descriptor = open(path.c_str(), O_RDONLY);
    std::remove(path.c_str());
    const HIOFILE file = OpenAsBlockDevice(descriptor);
    ASSERT_NE(file, nullptr);
    std::uint32_t position = 0;
    EXPECT_EQ(file->operations.IOSeek(file, IOOriginEnd, 0), 0);
    EXPECT_EQ(file->operations.IOTell(file, &position), 0);
    EXPECT_EQ(position, 9003U);
    char bytes[8] = "";
    std::uint32_t count = 0;
    EXPECT_EQ(file->operations.IOSeek(file, IOOriginEnd, -3), 0);
    EXPECT_EQ(file->operations.IORead(file, bytes, sizeof(bytes), &count), 0);
    EXPECT_STREQ(bytes, "end");
    file->operations.IOClose(file);
    close(descriptor);
}

TEST(BlockDevice, WithoutAnEndIsRefused) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    errno = 0;
    EXPECT_EQ(OpenAsBlockDevice(ends[0]), nullptr);
    EXPECT_EQ(errno, ESPIPE);
    close(ends[0]);
    close(ends[1]);
}

// ---- Reads that fail, are short, or are interrupted ----------------------------------------------------------------

// A file of 20,000 bytes that tell where they stand, open as a descriptor and through it as a handle. pread is as it
// should be until a test says otherwise, and again afterwards.
class AwkwardFile : public testing::Test {
 protected:
    void SetUp() override {
        const std::string path = testing::TempDir() + "fiid-awkward-" + std::to_string(getpid());
        for (std::uint32_t index = 0; index < 20000; ++index) {
            bytes_ += static_cast<char>(index * 2654435761U >> 13 & 0xFF);
        }
        std::ofstream(path, std::ios::binary) << bytes_;
        descriptor_ = open(path.c_str(), O_RDWR);
        std::remove(path.c_str());
    }
    void TearDown() override {
        failFrom = never;
        failUpTo = never;
        mostBytes = std::numeric_limits<std::size_t>::max();
        interruptions = 0;
        interruptionsLeft = 0;
        Close();
        close(descriptor_);
    }

    void Open() {
        Close();
        const IODescriptorSpec specification = {descriptor_, nullptr};
        ASSERT_EQ(IOOpen(&file_, IOSpecDescriptor, &specification, IOOpenRead), 0);
    }
    // As a file that tells no size.
    void OpenWithoutSize() {
        pretendedType = S_IFREG;
        Open();
        pretendedType = 0;
    }
    void Close() {
        if (file_ != nullptr) file_->operations.IOClose(file_);
        file_ = nullptr;
    }

    // Reads in portions until nothing comes; status_ and errno are those of the last read.
    std::string ReadAll(std::uint32_t portion) {
        std::string all;
        for (;;) {
            std::string bytes(portion, '#');
            std::uint32_t count = 77;
            errno = 0;
            status_ = file_->operations.IORead(file_, bytes.data(), portion, &count);
            if (status_ != 0 || count == 0) return all;
            all += bytes.substr(0, count);
        }
    }

    std::string bytes_;
    int descriptor_ = -1;
    HIOFILE file_ = nullptr;
    std::int32_t status_ = 77;
};

constexpr std::uint32_t portions[] = {1000, 2048, 4096, 20000};

TEST_F(AwkwardFile, TellsAFailureBehindTheBytesInFrontOfIt) {
    for (const bool sizeTold : {true, false}) {
        for (const off_t from : {0, 1, 4096, 8191, 8192, 8193, 12288, 19999}) {
            for (const std::uint32_t portion : portions) {
                SCOPED_TRACE(testing::Message() << sizeTold << " " << from << " " << portion);
                failFrom = from;
                sizeTold ? Open() : OpenWithoutSize();
                EXPECT_EQ(ReadAll(portion), bytes_.substr(0, static_cast<std::size_t>(from)));
                EXPECT_NE(status_, 0);
                EXPECT_EQ(errno, EIO);
                EXPECT_EQ(ReadAll(portion), "");
                EXPECT_NE(status_, 0) << "the next read tells it too";
                EXPECT_EQ(errno, EIO);
            }
        }
    }
}

TEST_F(AwkwardFile, DeliversWhatCanBeReadAgain) {
    for (const bool sizeTold : {true, false}) {
        failFrom = 4096;
        sizeTold ? Open() : OpenWithoutSize();
        EXPECT_EQ(ReadAll(1000), bytes_.substr(0, 4096));
        failFrom = never;
        EXPECT_EQ(ReadAll(1000), bytes_.substr(4096)) << sizeTold;
        EXPECT_EQ(status_, 0);
    }
}

TEST_F(AwkwardFile, EndsWhereItWasCutAfterItWasOpened) {
    for (const std::uint32_t size : {12000U, 8192U, 8191U, 5000U, 1U, 0U}) {
        for (const std::uint32_t portion : portions) {
            SCOPED_TRACE(testing::Message() << size << " " << portion);
            ASSERT_EQ(ftruncate(descriptor_, 0), 0);
            ASSERT_EQ(pwrite(descriptor_, bytes_.data(), bytes_.size(), 0), static_cast<ssize_t>(bytes_.size()));
            Open();
            ASSERT_EQ(ftruncate(descriptor_, size), 0);
            EXPECT_EQ(ReadAll(portion), bytes_.substr(0, size));
            EXPECT_EQ(status_, 0);
        }
    }
}

TEST_F(AwkwardFile, DeliversItsBytesOverShortAndInterruptedReads) {
    for (const bool sizeTold : {true, false}) {
        for (const std::size_t most : {std::size_t{100}, std::size_t{1000}, std::size_t{8192}}) {
            for (const std::uint32_t between : {0U, 1U, 3U}) {
                SCOPED_TRACE(testing::Message() << sizeTold << " " << most << " " << between);
                mostBytes = most;
                interruptions = interruptionsLeft = between;
                sizeTold ? Open() : OpenWithoutSize();
                EXPECT_EQ(ReadAll(2048), bytes_);
                EXPECT_EQ(status_, 0);
            }
        }
    }
}

// The walk through an archive's directory passes over the names that nobody asks for, also over one that can't be read.
TEST_F(AwkwardFile, IsAPackageWithAMemberWhoseNameCantBeRead) {
    constexpr off_t entryHeaderSize = 46;
    const std::string zip = FIWriteZip({{.name = "document", .comment = std::string(6000, 'c')}, {"_rels/.rels", "r"}});
    ASSERT_EQ(ftruncate(descriptor_, 0), 0);
    ASSERT_EQ(pwrite(descriptor_, zip.data(), zip.size(), 0), static_cast<ssize_t>(zip.size()));
    failFrom = static_cast<off_t>(zip.find("PK\1\2")) + entryHeaderSize;
    failUpTo = failFrom + 512;
    Open();
    HPKGPACKAGE package = nullptr;
    EXPECT_EQ(PKGInit(file_, &package), 0);
    PKGDeinit(package);
}

TEST_F(AwkwardFile, AsksOnceForItsHeadWhenItIsSound) {
    calls.clear();
    Open();
    EXPECT_EQ(ReadAll(4096), bytes_);
    EXPECT_EQ(calls, "fstat pread@0 pread@8192 pread@12288 pread@16384 ") << "none looks behind the end";

    ASSERT_EQ(ftruncate(descriptor_, 5000), 0);
    calls.clear();
    Open();
    EXPECT_EQ(ReadAll(4096), bytes_.substr(0, 5000));
    EXPECT_EQ(calls, "fstat pread@0 ");

    calls.clear();
    OpenWithoutSize();
    EXPECT_EQ(ReadAll(4096), bytes_.substr(0, 5000));
    EXPECT_EQ(calls, "fstat pread@0 pread@5000 ") << "the second one finds the end";
}

// ---- The head, which is handed out when it is all that reads would deliver -----------------------------------------

class AwkwardHead : public AwkwardFile {
 protected:
    // The head that the handle hands out now, or a size that no head has.
    UTHead TakeHead() {
        UTHead head = {nullptr, 99999, 99999};
        const std::int16_t status = UTGetHead(file_, &head);
        EXPECT_EQ(status == 0, head.bytes != nullptr);
        if (status == 0) {
            EXPECT_EQ(std::string(reinterpret_cast<const char*>(head.bytes), head.size), bytes_.substr(0, head.size));
        }
        return head;
    }
    void ExpectHead(std::uint32_t size, std::uint64_t objectSize) {
        for (const char* const time : {"first", "second"}) {
            const UTHead head = TakeHead();
            EXPECT_EQ(head.size, size) << time;
            EXPECT_EQ(head.objectSize, objectSize) << time;
        }
    }
    void ExpectNoHead() {
        EXPECT_EQ(TakeHead().bytes, nullptr);
        EXPECT_EQ(TakeHead().bytes, nullptr);
    }
    void Cut(std::uint32_t size) { ASSERT_EQ(ftruncate(descriptor_, size), 0); }
    void Restore() {
        Cut(0);
        ASSERT_EQ(pwrite(descriptor_, bytes_.data(), bytes_.size(), 0), static_cast<ssize_t>(bytes_.size()));
    }
};

TEST_F(AwkwardHead, IsOneReadThatTheReadsShare) {
    calls.clear();
    Open();
    ExpectHead(8192, 20000);
    EXPECT_EQ(calls, "fstat pread@0 ");
    char bytes[2048];
    std::uint32_t count = 0;
    EXPECT_EQ(file_->operations.IORead(file_, bytes, sizeof(bytes), &count), 0);
    EXPECT_EQ(std::string(bytes, count), bytes_.substr(0, 2048)) << "the handle was moved";
    EXPECT_EQ(calls, "fstat pread@0 ");
}

TEST_F(AwkwardHead, IsWholeOverShortAndInterruptedReads) {
    for (const std::size_t most : {std::size_t{100}, std::size_t{8191}}) {
        mostBytes = most;
        interruptions = interruptionsLeft = 2;
        Open();
        ExpectHead(8192, 20000);
        OpenWithoutSize();
        ExpectHead(8192, UINT64_MAX);
    }
}

TEST_F(AwkwardHead, IsNoneWhereItsBytesCantBeRead) {
    for (const off_t from : {0, 1, 4096, 8191}) {
        failFrom = from;
        Open();
        ExpectNoHead();
        OpenWithoutSize();
        ExpectNoHead();
    }
    failFrom = 8192;
    Open();
    ExpectHead(8192, 20000);
    OpenWithoutSize();
    ExpectHead(8192, UINT64_MAX);
}

TEST_F(AwkwardHead, OfAFileThatBecameShorterIsNoneIfItsEndShows) {
    for (const std::uint32_t size : {8191U, 5000U, 1U, 0U}) {
        Restore();
        Open();
        Cut(size);
        ExpectNoHead();
    }
    for (const std::uint32_t size : {8192U, 12000U}) {
        Restore();
        Open();
        Cut(size);
        ExpectHead(8192, 20000);
    }
}

TEST_F(AwkwardHead, OfAFileThatBecameLongerEndsWhereItDid) {
    Cut(5000);
    Open();
    Restore();
    ExpectHead(5000, 5000);
}

TEST_F(AwkwardHead, OfAFileThatTellsNoSizeKnowsItWhenTheEndShows) {
    for (const std::uint32_t size : {0U, 1U, 8191U}) {
        Restore();
        Cut(size);
        OpenWithoutSize();
        ExpectHead(size, size);
    }
    for (const std::uint32_t size : {8192U, 8193U}) {
        Restore();
        Cut(size);
        OpenWithoutSize();
        ExpectHead(8192, UINT64_MAX);
    }
}

// Both walks of the table answer the same where a file changes, fails or tells no size.
TEST_F(AwkwardHead, DoesNotChangeTheAnswer) {
    bytes_ = "GIF89a" + bytes_.substr(6);
    for (const bool sizeTold : {true, false}) {
        for (const off_t from : {off_t{0}, off_t{3}, off_t{4096}, off_t{9000}, never}) {
            for (const std::uint32_t cut : {20000U, 9000U, 5000U, 6U, 5U, 0U}) {
                FIVerdict verdicts[2] = {};
                for (const FIWalk walk : {FIWalk::byHead, FIWalk::plain}) {
                    failFrom = never;
                    Restore();
                    sizeTold ? Open() : OpenWithoutSize();
                    Cut(cut);
                    failFrom = from;
                    FIVerdict& verdict = verdicts[walk == FIWalk::plain];
                    EXPECT_EQ(FIIdHandleWithRow(file_, FIFlagExtendedText, verdict, walk), 0);
                }
                EXPECT_EQ(verdicts[0].fiid, verdicts[1].fiid) << sizeTold << " " << from << " " << cut;
                EXPECT_EQ(verdicts[0].row, verdicts[1].row) << sizeTold << " " << from << " " << cut;
            }
        }
    }
}

// ---- Reads far behind the head -------------------------------------------------------------------------------------

// A file of 200,000 bytes, long enough for the windows behind the head to grow and to lie apart.
class LongFile : public AwkwardFile {
 protected:
    static constexpr std::uint32_t size = 200000;

    void SetUp() override {
        AwkwardFile::SetUp();
        for (std::uint32_t index = 20000; index < size; ++index) {
            bytes_ += static_cast<char>(index * 2654435761U >> 13 & 0xFF);
        }
        ASSERT_EQ(pwrite(descriptor_, bytes_.data(), size, 0), static_cast<ssize_t>(size));
    }

    // One read; what came, and the status in status_.
    std::string ReadAt(std::uint32_t offset, std::uint32_t wanted) {
        std::string bytes(wanted, '#');
        std::uint32_t count = 77;
        errno = 0;
        EXPECT_EQ(file_->operations.IOSeek(file_, IOOriginStart, static_cast<std::int32_t>(offset)), 0);
        status_ = file_->operations.IORead(file_, bytes.data(), wanted, &count);
        return bytes.substr(0, count);
    }

    // Reads and expects what the system delivers when it is asked for these bytes alone.
    void ExpectPlainRead(std::uint32_t offset, std::uint32_t wanted) {
        SCOPED_TRACE(testing::Message() << offset << " " << wanted);
        std::uint32_t end = std::min(offset + wanted, size);
        const bool fails = offset < size && off_t{offset} >= failFrom && off_t{offset} < failUpTo;
        if (off_t{offset} < failFrom) end = static_cast<std::uint32_t>(std::min<off_t>(end, failFrom));
        const std::string expected = fails || offset >= end ? "" : bytes_.substr(offset, end - offset);
        EXPECT_EQ(ReadAt(offset, wanted), expected);
        EXPECT_EQ(status_ != 0, fails);
        EXPECT_TRUE(!fails || errno == EIO);
    }

    // The calls that a list of reads makes from a fresh handle.
    std::string CallsOf(std::initializer_list<std::pair<std::uint32_t, std::uint32_t>> reads) {
        Open();
        calls.clear();
        for (const auto& [offset, wanted] : reads) ExpectPlainRead(offset, wanted);
        return calls;
    }
};

TEST_F(LongFile, IsAskedOnceForPlacesThatLieTogether) {
    EXPECT_EQ(CallsOf({{12784, 2048}, {15512, 2048}}), "pread@12784 ");
    EXPECT_EQ(CallsOf({{12784, 2048}, {12784 + 8191, 1}}), "pread@12784 ");
    EXPECT_EQ(CallsOf({{12784, 2048}, {12784 + 8192, 1}}), "pread@12784 pread@20976 ");
    EXPECT_EQ(CallsOf({{12784, 2048}, {12783, 1}}), "pread@12784 pread@12783 ");
}

TEST_F(LongFile, IsAskedOnceForItsTail) {
    EXPECT_EQ(CallsOf({{size - 7, 2048}, {size - 128, 2048}, {size - 22, 22}, {size - 8192, 10}}), "pread@191808 ");
    EXPECT_EQ(CallsOf({{size - 4099, 4099}, {size - 22, 22}, {size - 42, 20}}), "pread@191808 ");
    EXPECT_EQ(CallsOf({{size - 8192, 8192}, {size - 1, 1}}), "pread@191808 ");
    EXPECT_EQ(CallsOf({{size - 1, 1}, {size - 8193, 1}, {size - 8193, 8193}}), "pread@191808 pread@183616 ")
        << "what one window does not hold the other does, and in front of the tail it ends there";
    EXPECT_EQ(CallsOf({{size - 1, 1}, {size - 9000, 30}, {size - 16384, 30}}), "pread@191808 pread@183616 ")
        << "in whatever order";
    EXPECT_EQ(CallsOf({{size - 1, 1}, {size - 12288, 12288}}), "pread@191808 pread@187712 ")
        << "a large read has the end of it from the tail";
    EXPECT_EQ(CallsOf({{size - 7, 7}, {12784, 2048}, {size - 128, 128}}), "pread@191808 pread@12784 ")
        << "the tail stays at hand";
}

TEST_F(LongFile, LeavesOutOfTheTailWhatTheHeadHolds) {
    ASSERT_EQ(ftruncate(descriptor_, 10000), 0);
    Open();
    calls.clear();
    EXPECT_EQ(ReadAt(9990, 100), bytes_.substr(9990, 10));
    EXPECT_EQ(ReadAt(8192, 4), bytes_.substr(8192, 4));
    EXPECT_EQ(calls, "pread@8192 ");
}

TEST_F(LongFile, IsAskedForMoreAndMoreWhileSmallReadsGoOn) {
    Open();
    calls.clear();
    EXPECT_EQ(ReadAll(2048), bytes_);
    EXPECT_EQ(calls,
              "pread@0 pread@8192 pread@16384 pread@32768 pread@65536 pread@98304 pread@131072 pread@163840 "
              "pread@196608 ");
}

TEST_F(LongFile, IsAskedForLargeReadsAsTheyAre) {
    EXPECT_EQ(CallsOf({{20000, 4096}, {24096, 4096}, {20000, 4096}, {100000, 50000}}),
              "pread@20000 pread@24096 pread@20000 pread@100000 ");
}

TEST_F(LongFile, FailsWhereABadStretchBegins) {
    for (const std::uint32_t bad :
         {1U, 8191U, 8192U, 12784U, 12785U, 15512U, 20975U, 20976U, 191807U, 191808U, 191809U, 195901U, 199999U}) {
        failFrom = bad;
        for (const std::uint32_t length : {1U, 2000U, size}) {
            SCOPED_TRACE(testing::Message() << "bad " << bad << " " << length);
            failUpTo = bad + length;
            Open();
            for (const std::uint32_t offset : {12784U, 15512U, size - 7, size - 128, size - 4099, 8192U, 8191U}) {
                for (const std::uint32_t wanted : {2048U, 4096U, 1U}) ExpectPlainRead(offset, wanted);
            }
            for (std::uint32_t beside = 0; beside < 3; ++beside) {
                ExpectPlainRead(bad - 1 + beside, 1);
                ExpectPlainRead(bad - 1 + beside, 3000);
            }
        }
    }
}

// Reads of any size at any place, near each other or far apart, deliver what a call for themselves would.
TEST_F(LongFile, DeliversWhateverIsAskedForInAnyOrder) {
    std::uint32_t state = 1;
    const auto random = [&state](std::uint32_t bound) {
        state = state * 1664525 + 1013904223;
        return (state >> 8) % bound;
    };
    for (std::uint32_t round = 0; round < 300; ++round) {
        failFrom = 1 + random(size);
        failUpTo = round % 3 == 0 ? never : failFrom + random(20000);
        if (round % 4 == 0) failFrom = never;
        mostBytes = round % 5 == 0 ? 1000 : std::numeric_limits<std::size_t>::max();
        Open();
        std::uint32_t place = 0;
        for (std::uint32_t read = 0; read < 60; ++read) {
            const std::uint32_t wanted = 1 + (random(4) == 0 ? random(40000) : random(5000));
            ExpectPlainRead(place, wanted);
            if (HasFailure()) return;
            switch (random(4)) {
                case 0:
                    place = random(size + 100);
                    break;
                case 1:
                    place = size - random(10000);
                    break;
                case 2:
                    place = place > 3000 ? place - random(3000) : place;
                    break;
                default:
                    place = std::min(place + wanted, size);
                    break;
            }
        }
    }
}

}  // namespace
