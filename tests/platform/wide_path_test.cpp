// Wide paths: each character at its limits, compared with an open by the narrow path; and what happens without memory.
#include "platform/wide_path.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

#include "platform/base_utility.h"
#include "support/case_name.h"
#include "support/process_heap.h"

namespace {

bool newThrows = false;

}  // namespace

// Takes the place of the library's: the platform layer has its memory from the process heap alone.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const block = newThrows ? nullptr : std::malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

using ::PrintTo;

const std::uint16_t* UnitsOf(const std::u16string& path) {
    return reinterpret_cast<const std::uint16_t*>(path.c_str());  // both are 16-bit units
}

std::string Narrow(const std::u16string& path) {
    char* const narrow = UTNarrowPath(UnitsOf(path));
    const std::string text = narrow != nullptr ? narrow : "";
    HeapFree(GetProcessHeap(), 0, narrow);
    return text;
}

struct PathCase {
    const char* name;
    std::u16string wide;
    const char* narrow;
};

const PathCase pathCases[] = {
    // clang-format off
    {"Empty",                     u"",               ""},
    {"Ascii",                     u"a.doc",          "a.doc"},
    {"LastOfOneByte",             u"\x7F",           "\x7F"},
    {"FirstOfTwoBytes",           u"\x80",           "\xC2\x80"},
    {"TwoBytes",                  u"\x5A5",          "\xD6\xA5"},
    {"LastOfTwoBytes",            u"\x7FF",          "\xDF\xBF"},
    {"FirstOfThreeBytes",         u"\x800",          "\xE0\xA0\x80"},
    {"ThreeBytes",                u"\x5A5A",         "\xE5\xA9\x9A"},
    {"LastInFrontOfSurrogates",   u"\xD7FF",         "\xED\x9F\xBF"},
    {"LastInFrontOfHighAndLow",   u"\xD7FF\xDC00",   "\xED\x9F\xBF\xED\xB0\x80"},
    {"FirstBehindSurrogates",     u"\xE000",         "\xEE\x80\x80"},
    {"LastOfThreeBytes",          u"\xFFFF",         "\xEF\xBF\xBF"},
    {"FirstPair",                 u"\xD800\xDC00",   "\xF0\x90\x80\x80"},
    {"FirstHighLastLow",          u"\xD800\xDFFF",   "\xF0\x90\x8F\xBF"},
    {"SecondHighFirstLow",        u"\xD801\xDC00",   "\xF0\x90\x90\x80"},
    {"Pair",                      u"\xD96A\xDD5A",   "\xF1\xAA\xA5\x9A"},
    {"LastHighFirstLow",          u"\xDBFF\xDC00",   "\xF4\x8F\xB0\x80"},
    {"LastPair",                  u"\xDBFF\xDFFF",   "\xF4\x8F\xBF\xBF"},
    {"HighAtTheEnd",              u"a\xD800",        "a\xED\xA0\x80"},
    {"LastHighAtTheEnd",          u"a\xDBFF",        "a\xED\xAF\xBF"},
    {"HighAndNoSurrogate",        u"\xD800z",        "\xED\xA0\x80z"},
    {"HighAndLastInFrontOfLow",   u"\xD800\xDBFF",   "\xED\xA0\x80\xED\xAF\xBF"},
    {"HighAndFirstBehindLow",     u"\xD800\xE000",   "\xED\xA0\x80\xEE\x80\x80"},
    {"HighAndPair",               u"\xD800\xD800\xDC00", "\xED\xA0\x80\xF0\x90\x80\x80"},
    {"FirstLowAlone",             u"\xDC00z",        "\xED\xB0\x80z"},
    {"LastLowAlone",              u"\xDFFFz",        "\xED\xBF\xBFz"},
    {"LowAndHigh",                u"\xDC00\xD800",   "\xED\xB0\x80\xED\xA0\x80"},
    {"LowAndLow",                 u"\xDC00\xDFFF",   "\xED\xB0\x80\xED\xBF\xBF"},
    {"PairAndText",               u"\xD83D\xDE00.doc", "\xF0\x9F\x98\x80.doc"},
    // clang-format on
};

class WidePath : public testing::TestWithParam<PathCase> {};

TEST_P(WidePath, BecomesUtf8) { EXPECT_EQ(Narrow(GetParam().wide), GetParam().narrow); }

// The file that the narrow path names is the one that the wide path opens.
TEST_P(WidePath, OpensTheFileOfTheNarrowPath) {
    std::string directory = testing::TempDir() + "fiid-" + std::string(6, 'X');
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    const std::string path = directory + "/f" + GetParam().narrow;
    std::ofstream(path) << "bytes";
    const std::u16string wide = std::u16string(directory.begin(), directory.end()) + u"/f" + GetParam().wide;
    HIOFILE file = nullptr;
    EXPECT_EQ(IOOpen(&file, IOSpecWide, wide.c_str(), IOOpenRead), 0);
    if (file != nullptr) {
        char bytes[8] = "";
        std::uint32_t count = 0;
        EXPECT_EQ(file->operations.IORead(file, bytes, sizeof(bytes), &count), 0);
        EXPECT_STREQ(bytes, "bytes");
        char16_t name[128] = u"#";
        EXPECT_EQ(file->operations.IOGetInfo(file, IOInfoName, name), 0);
        EXPECT_EQ(name, u"f" + GetParam().wide);
        file->operations.IOClose(file);
    }
    static_cast<void>(std::system(("rm -rf '" + directory + "'").c_str()));
}

INSTANTIATE_TEST_SUITE_P(Paths, WidePath, testing::ValuesIn(pathCases), FICaseName);

TEST(WidePathMemory, LongestPathFitsItsBlock) {
    EXPECT_EQ(Narrow(std::u16string(5000, u'\xFFFF')).size(), 15000U);
    EXPECT_EQ(Narrow(std::u16string(5001, u'\xFFFF')).size(), 15003U);
}

TEST(WidePathMemory, ExhaustedHeapIsAFailureAndNothingIsThrown) {
    const std::u16string wide = u"/" + std::u16string(100, u'a') + u".doc";
    const std::size_t blocks = FIHeapBlocks();
    HIOFILE file = nullptr;
    FIFailAllocationsFrom(0);
    newThrows = true;
    errno = 0;
    const std::int32_t status = IOOpen(&file, IOSpecWide, wide.c_str(), IOOpenRead);
    const int reason = errno;
    newThrows = false;
    FIHeapNeverFails();
    EXPECT_EQ(status, -1);
    EXPECT_EQ(reason, ENOMEM);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

TEST(WidePathMemory, NothingIsTakenFromOutsideTheProcessHeap) {
    const std::u16string wide = u"/proc/self/" + std::u16string(100, u'.') + u"/../status";
    const std::size_t blocks = FIHeapBlocks();
    HIOFILE file = nullptr;
    newThrows = true;
    errno = 0;
    const std::int32_t missing = IOOpen(&file, IOSpecWide, wide.c_str(), IOOpenRead);
    const int reason = errno;
    const std::int32_t found = IOOpen(&file, IOSpecWide, u"/proc/self/./././././././status", IOOpenRead);
    newThrows = false;
    EXPECT_EQ(missing, -1);
    EXPECT_EQ(reason, ENOENT) << "the reason of the open, not of what came behind it";
    ASSERT_EQ(found, 0);
    file->operations.IOClose(file);
    EXPECT_EQ(FIHeapBlocks(), blocks);
}

}  // namespace
