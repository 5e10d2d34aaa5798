// What an identification of a plain file asks of the operating system. The linker wraps the calls (see CMakeLists.txt).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fstream>

#include "fiid.h"
#include "platform/base_utility.h"
#include "support/bytes.h"
#include "support/case_name.h"

namespace {

// Never destroyed: when coverage is measured, the counters are written, with these calls, behind all else.
std::string& calls = *new std::string;
mode_t pretendedType = 0;  // what fstat tells of each file, if not 0

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

}  // namespace
