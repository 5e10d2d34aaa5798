// What an identification of a plain file asks of the operating system. The linker wraps the calls (see CMakeLists.txt).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "fiid.h"
#include "platform/base_utility.h"
#include "support/bytes.h"

namespace {

std::string calls;

}  // namespace

extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_fstat(int descriptor, struct stat* status);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
int __real_close(int descriptor);

int __wrap_open(const char* path, int flags, ...) {
    calls += "open ";
    return __real_open(path, flags);
}
int __wrap_fstat(int descriptor, struct stat* status) {
    calls += "fstat ";
    return __real_fstat(descriptor, status);
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

struct FileCase {
    const char* name;
    const char* bytes;
    const char* extension;
    FIID answer;
};
void PrintTo(const FileCase& fileCase, std::ostream* out) { *out << fileCase.name; }

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

INSTANTIATE_TEST_SUITE_P(Files, SystemCalls, testing::ValuesIn(fileCases),
                         [](const auto& fileCase) { return fileCase.param.name; });

}  // namespace
