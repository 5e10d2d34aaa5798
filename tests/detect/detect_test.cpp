// fiid/detect.h: what it takes, what it tells of failures, and that each way to a file has the same answer.
#include "fiid/detect.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <thread>

#include "further/table.h"
#include "further/versions.h"
#include "support/bytes.h"
#include "support/process_heap.h"
#include "support/row_number.h"
#include "support/sparse_source.h"
#include "support/temporary_directory.h"

namespace {

fiid_options OptionsWith(std::uint32_t flags) { return {sizeof(fiid_options), flags}; }

fiid_result DetectBytes(const std::string& bytes, const char* name = nullptr, std::uint32_t flags = 0) {
    fiid_result result;
    const fiid_options options = OptionsWith(flags);
    EXPECT_EQ(fiid_detect_memory(bytes.data(), bytes.size(), name, &options, &result), FIID_OK);
    return result;
}

// Fails unless a result is what a failure leaves.
void ExpectNoAnswer(const fiid_result& result) {
    EXPECT_EQ(result.fiid, 0);
    EXPECT_EQ(result.further, 0);
    EXPECT_EQ(result.row, 0);
    EXPECT_EQ(result.further_row, 0);
    EXPECT_EQ(result.basis, FIID_BASIS_NONE);
    EXPECT_EQ(result.warnings, 0U);
    for (const char* const text :
         {result.name, result.mime, result.version, result.puids, result.extensions, result.signature,
          result.further_signature, result.routine, result.family, result.reserved_texts[0], result.reserved_texts[2],
          static_cast<const char*>(result.explanation)}) {
        EXPECT_STREQ(text, "");
    }
}

// ---- Arguments ------------------------------------------------------------------------------------------------------

TEST(Arguments, ThatMakeNoSenseAreRefused) {
    fiid_result result;
    EXPECT_EQ(fiid_detect_path(nullptr, nullptr, &result), FIID_ERROR_ARGUMENT);
    ExpectNoAnswer(result);
    EXPECT_EQ(result.size, FIID_SIZE_UNKNOWN);
    EXPECT_EQ(fiid_detect_path("/", nullptr, nullptr), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(fiid_detect_memory("", 0, nullptr, nullptr, nullptr), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(fiid_detect_descriptor(0, nullptr, nullptr, nullptr), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(fiid_detect_memory(nullptr, 1, nullptr, nullptr, &result), FIID_ERROR_ARGUMENT);
    ExpectNoAnswer(result);
    EXPECT_EQ(fiid_detect_memory(nullptr, 0, nullptr, nullptr, &result), FIID_OK);
    EXPECT_EQ(result.size, 0U);
}

TEST(Options, AreReadAsFarAsTheyGo) {
    struct Larger {
        fiid_options options;
        std::uint32_t more[2];
    };
    fiid_result result;
    const auto detect = [&](std::uint32_t size, std::uint32_t flags, std::uint32_t more) {
        const Larger larger = {{size, flags}, {0, more}};
        return fiid_detect_memory("plain text", 10, nullptr, &larger.options, &result);
    };
    EXPECT_EQ(detect(sizeof(fiid_options), FIID_NO_TEXT | FIID_NO_FURTHER, 0), FIID_OK);
    EXPECT_EQ(result.fiid, 1999);
    EXPECT_EQ(detect(4, FIID_NO_TEXT, 0), FIID_OK) << "of an older caller, whose flags lie behind its size";
    EXPECT_EQ(result.fiid, 4022);
    EXPECT_EQ(detect(3, 0, 0), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(detect(0, 0, 0), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(detect(sizeof(Larger), 0, 0), FIID_OK) << "of a newer caller that asks for nothing new";
    EXPECT_EQ(detect(sizeof(Larger), 0, 1), FIID_ERROR_ARGUMENT);
    ExpectNoAnswer(result);
    EXPECT_EQ(detect(4097, 0, 0), FIID_ERROR_ARGUMENT);
    const std::array<std::uint32_t, 1024> largest = {sizeof(largest)};
    EXPECT_EQ(fiid_detect_memory("x", 1, nullptr, reinterpret_cast<const fiid_options*>(largest.data()), &result),
              FIID_OK);
    EXPECT_EQ(detect(sizeof(fiid_options), 16, 0), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(detect(sizeof(fiid_options), FIID_DESCRIPTOR_IS_READABLE, 0), FIID_ERROR_ARGUMENT);
}

TEST(Options, OfTheTablesAloneLeaveOutWhatIsFurther) {
    for (const char* const bytes : {R"("%PDF-1.7" 0A)", R"(FF 0A 00*100)", R"("{}" 0A)", ""}) {
        const fiid_result result = DetectBytes(FIBytes(bytes), nullptr, FIID_NO_FURTHER);
        fiid_format format;
        ASSERT_EQ(fiid_format_find(result.fiid, &format), FIID_OK);
        EXPECT_EQ(result.further, 0);
        EXPECT_STREQ(result.version, "");
        EXPECT_EQ(result.name, format.name);
        EXPECT_EQ(result.mime, format.mime);
        EXPECT_EQ(result.puids, format.puids);
        EXPECT_EQ(result.extensions, format.extensions);
        EXPECT_EQ(result.family, format.family);
    }
}

// ---- Failures -------------------------------------------------------------------------------------------------------

class Paths : public testing::Test {
 protected:
    std::int32_t StatusOf(const std::string& path) {
        const std::ptrdiff_t before = CountOpenDescriptors();
        const std::int32_t status = fiid_detect_path(path.c_str(), nullptr, &result_);
        EXPECT_EQ(CountOpenDescriptors(), before);
        if (status != FIID_OK) ExpectNoAnswer(result_);
        return status;
    }

    TemporaryDirectory directory_;
    fiid_result result_;
};

TEST_F(Paths, ThatLeadToNoFile) {
    directory_.Write("a.gif", "GIF89a");
    EXPECT_EQ(StatusOf(directory_.At("missing")), FIID_ERROR_NOT_FOUND);
    EXPECT_EQ(result_.system_error, ENOENT);
    EXPECT_EQ(StatusOf(directory_.At("a.gif/x")), FIID_ERROR_NOT_FOUND);
    EXPECT_EQ(result_.system_error, ENOTDIR);
    EXPECT_EQ(StatusOf(""), FIID_ERROR_NOT_FOUND);
    EXPECT_EQ(StatusOf(directory_.At(".")), FIID_ERROR_DIRECTORY);
    EXPECT_EQ(StatusOf("/dev/null"), FIID_ERROR_NOT_A_FILE);
    ASSERT_EQ(mkfifo(directory_.At("fifo").c_str(), 0600), 0);
    EXPECT_EQ(StatusOf(directory_.At("fifo")), FIID_ERROR_NOT_A_FILE);
    ASSERT_EQ(mknod(directory_.At("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_EQ(StatusOf(directory_.At("socket")), FIID_ERROR_NOT_A_FILE);
    EXPECT_EQ(StatusOf(directory_.At(std::string(300, 'x'))), FIID_ERROR_OPEN);
    EXPECT_EQ(result_.system_error, ENAMETOOLONG);
    EXPECT_EQ(StatusOf(directory_.At("a.gif")), FIID_OK);
    EXPECT_EQ(result_.system_error, 0);
}

TEST_F(Paths, ThatCantBeReadAreNoEmptyFiles) {
    EXPECT_EQ(StatusOf("/proc/self/mem"), FIID_ERROR_READ);
    EXPECT_EQ(result_.system_error, EIO);
    EXPECT_EQ(result_.calls, 1U);
    EXPECT_EQ(result_.bytes_read, 0U);
}

TEST_F(Paths, ThatMayNotBeOpened) {
    directory_.Write("a.gif", "GIF89a");
    ASSERT_EQ(chmod(directory_.At("a.gif").c_str(), 0), 0);
    constexpr uid_t nobody = 65534;
    const bool isRoot = geteuid() == 0;  // who may read everything
    if (isRoot) {
        ASSERT_EQ(seteuid(nobody), 0);
    }
    EXPECT_EQ(StatusOf(directory_.At("a.gif")), FIID_ERROR_ACCESS);
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
}

TEST_F(Paths, OfFilesTellTheirSizeAndTime) {
    directory_.Write("a.gif", "GIF89a");
    const timespec times[2] = {{0, 0}, {981173106, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, directory_.At("a.gif").c_str(), times, 0), 0);
    EXPECT_EQ(StatusOf(directory_.At("a.gif")), FIID_OK);
    EXPECT_EQ(result_.size, 6U);
    EXPECT_EQ(result_.modified_known, 1U);
    EXPECT_EQ(result_.modified_seconds, 981173106);
    EXPECT_EQ(result_.modified_nanoseconds, 5U);
    EXPECT_EQ(result_.calls, 1U);
    EXPECT_EQ(result_.bytes_read, 6U);
    EXPECT_EQ(DetectBytes("GIF89a").modified_known, 0U);
}

TEST_F(Paths, OfFilesThatTellNoSize) {
    EXPECT_EQ(StatusOf("/proc/self/status"), FIID_OK);
    EXPECT_EQ(result_.fiid, 4022);
    EXPECT_EQ(result_.size, result_.bytes_read) << "it ends within what is read";
    EXPECT_GT(result_.size, 0U);
    directory_.Write("empty", "");
    EXPECT_EQ(StatusOf(directory_.At("empty")), FIID_OK);
    EXPECT_EQ(result_.size, 0U);
}

TEST(Descriptors, ThatCantBeRead) {
    TemporaryDirectory directory;
    directory.Write("a.gif", "GIF89a");
    const std::string path = directory.At("a.gif");
    fiid_result result;
    EXPECT_EQ(fiid_detect_descriptor(-1, nullptr, nullptr, &result), FIID_ERROR_DESCRIPTOR);
    EXPECT_EQ(result.system_error, EBADF);
    ExpectNoAnswer(result);
    const auto statusOf = [&](const std::string& file, int flags) {
        const int descriptor = open(file.c_str(), flags | O_CLOEXEC);
        EXPECT_GE(descriptor, 0);
        const std::int32_t status = fiid_detect_descriptor(descriptor, "a.gif", nullptr, &result);
        EXPECT_EQ(lseek(descriptor, 0, SEEK_CUR) <= 0, true) << "its position is where it was";
        close(descriptor);
        return status;
    };
    EXPECT_EQ(statusOf(path, O_WRONLY), FIID_ERROR_DESCRIPTOR);
    EXPECT_EQ(statusOf(path, O_PATH), FIID_ERROR_DESCRIPTOR);
    EXPECT_EQ(statusOf(directory.At("."), O_RDONLY), FIID_ERROR_DIRECTORY);
    EXPECT_EQ(statusOf("/dev/null", O_RDONLY), FIID_ERROR_NOT_A_FILE);
    EXPECT_EQ(statusOf(path, O_RDWR), FIID_OK);
    EXPECT_EQ(result.fiid, 1503);
    const fiid_options options = OptionsWith(FIID_DESCRIPTOR_IS_READABLE);
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(fiid_detect_descriptor(descriptor, nullptr, &options, &result), FIID_OK);
    close(descriptor);
    EXPECT_EQ(fiid_detect_descriptor(descriptor, nullptr, &options, &result), FIID_ERROR_DESCRIPTOR);
}

TEST(Memory, ThatRunsOutIsAFailure) {
    const std::size_t blocks = FIHeapBlocks();
    fiid_result result;
    for (std::uint32_t allocation = 0; allocation < 3; ++allocation) {
        FIFailAllocationsFrom(allocation);
        const std::int32_t status = fiid_detect_memory("GIF89a", 6, nullptr, nullptr, &result);
        FIHeapNeverFails();
        EXPECT_EQ(FIHeapBlocks(), blocks);
        EXPECT_EQ(status, allocation < 2 ? FIID_ERROR_MEMORY : FIID_OK) << "the handle, then the reader";
        if (status != FIID_OK) ExpectNoAnswer(result);
    }
}

// ---- Answers --------------------------------------------------------------------------------------------------------

struct AnswerCase {
    const char* name;
    const char* bytes;
    const char* file;
    std::uint16_t fiid;
    std::int32_t basis;
    const char* routine;
    const char* explanation;
};

const AnswerCase answerCases[] = {
    // clang-format off
    {"Row",       R"("GIF89a")",               "a.gif", 1503, FIID_BASIS_SIGNATURE, "",                "bytes at 0"},
    {"Places",    R"(>0 "HWP Document" >24 1A 01 02)", "", 1179, FIID_BASIS_SIGNATURE, "",             "bytes at 0, 24"},
    {"Extension", R"(00*100)",                 "a.tga", 1512, FIID_BASIS_EXTENSION, "",                "extension \"TGA\""},
    {"Text",      R"("plain text" 0A)",        "a.txt", 4022, FIID_BASIS_TEXT,      "FIExtTextID",     "the characters of the first 11 bytes"},
    {"LongText",  R"("plain text"*1000)",      "a.txt", 4022, FIID_BASIS_TEXT,      "FIExtTextID",     "the characters of the first 4096 bytes"},
    {"Structure", R"("BEGIN:VCARD" 0D 0A)",    "a.vcf", 1141, FIID_BASIS_STRUCTURE, "FIProbeVCard",    "the first line, which begins an object"},
    // clang-format on
};

TEST(Answer, TellsWhatItStandsOn) {
    for (const AnswerCase& test : answerCases) {
        const fiid_result result = DetectBytes(FIBytes(test.bytes), test.file, FIID_EXPLAIN | FIID_NO_FURTHER);
        EXPECT_EQ(result.fiid, test.fiid) << test.name;
        EXPECT_EQ(result.basis, test.basis) << test.name;
        EXPECT_STREQ(result.routine, test.routine) << test.name;
        EXPECT_STREQ(result.explanation, test.explanation) << test.name;
        EXPECT_EQ(result.calls, 0U) << "memory is looked at in place";
        EXPECT_EQ(result.bytes_read, 0U);
        EXPECT_STREQ(DetectBytes(FIBytes(test.bytes), test.file).explanation, "") << "nobody asked";
    }
    EXPECT_EQ(DetectBytes("GIF89a").row, 172_row);
    EXPECT_STREQ(DetectBytes("GIF89a").signature, ">0 \"GIF8\" (37/39)");
}

TEST(Answer, WarnsOfAnUnusualExtension) {
    const auto warns = [](const char* name) {
        return (DetectBytes("GIF89a", name).warnings & FIID_WARN_EXTENSION) != 0;
    };
    EXPECT_FALSE(warns(nullptr));
    EXPECT_FALSE(warns("gif"));
    EXPECT_FALSE(warns("a."));
    EXPECT_FALSE(warns("a.gif"));
    EXPECT_FALSE(warns("dir.txt/a.GIF"));
    EXPECT_FALSE(warns("dir/.jpg")) << "a hidden name, not an extension";
    EXPECT_TRUE(warns("a.jpg"));
    EXPECT_TRUE(warns(".a.jpg"));
    EXPECT_FALSE((DetectBytes("SZDD\x88\xF0\x27\x33", "setup.ex_").warnings & FIID_WARN_EXTENSION) != 0)
        << "the last letter of the unpacked file's is left out: any other two stand in front";
    EXPECT_TRUE(warns("a.gif.gi"));
    EXPECT_FALSE((DetectBytes(FIBytes("01 02 00*9000"), "a.xyz", FIID_NO_FURTHER).warnings & FIID_WARN_EXTENSION) != 0)
        << "of a format without usual ones none is unusual";
}

TEST(Answer, TellsTheFamilyOfTheMorePreciseFormat) {
    EXPECT_STREQ(DetectBytes("GIF89a").family, "image");
    EXPECT_STREQ(DetectBytes("plain text\n").family, "text");
    EXPECT_STREQ(DetectBytes(FIBytes("01 02 00*9000"), nullptr, FIID_NO_FURTHER).family, "unknown");
    EXPECT_STREQ(DetectBytes("#!/bin/sh\n").family, "code");
    EXPECT_STREQ(DetectBytes("#!/bin/sh\n", nullptr, FIID_NO_FURTHER).family, "text");
    EXPECT_STREQ(DetectBytes("").family, "unknown");
}

TEST(Answer, MayBeCopied) {
    const auto first = std::make_unique<fiid_result>(DetectBytes("GIF89a", "a.gif"));
    const fiid_result copy = *first;
    std::memset(first.get(), 0xFF, sizeof(*first));
    EXPECT_STREQ(copy.name, "GIF image");
    EXPECT_STREQ(copy.extensions, "gif");
}

// ---- All samples ----------------------------------------------------------------------------------------------------

void ExpectSameAnswer(const fiid_result& one, const fiid_result& other, const std::string& path) {
    EXPECT_EQ(one.fiid, other.fiid) << path;
    EXPECT_EQ(one.further, other.further) << path;
    EXPECT_EQ(one.row, other.row) << path;
    EXPECT_EQ(one.further_row, other.further_row) << path;
    EXPECT_EQ(one.basis, other.basis) << path;
    EXPECT_EQ(one.warnings, other.warnings) << path;
    EXPECT_EQ(one.size, other.size) << path;
    EXPECT_EQ(one.name, other.name) << path;
    EXPECT_EQ(one.mime, other.mime) << path;
    EXPECT_EQ(one.puids, other.puids) << path;
    EXPECT_EQ(one.family, other.family) << path;
    EXPECT_EQ(one.routine, other.routine) << path;
    EXPECT_STREQ(one.version, other.version) << path;
    EXPECT_STREQ(one.explanation, other.explanation) << path;
}

bool IsAscii(const char* text) {
    return std::all_of(text, text + std::strlen(text), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

TEST(Samples, HaveTheSameAnswerOnEachWay) {
    const fiid_options explain = OptionsWith(FIID_EXPLAIN);
    const fiid_options plain = OptionsWith(0);
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FIID_SAMPLES_DIR)) {
        if (!entry.is_regular_file()) continue;
        const std::string path = entry.path().string();
        std::string bytes(entry.file_size(), '\0');
        std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        fiid_result byPath;
        fiid_result result;
        ASSERT_EQ(fiid_detect_path(path.c_str(), &explain, &byPath), FIID_OK) << path;
        ASSERT_EQ(fiid_detect_memory(bytes.data(), bytes.size(), path.c_str(), &explain, &result), FIID_OK) << path;
        ExpectSameAnswer(byPath, result, path);
        const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(fiid_detect_descriptor(descriptor, path.c_str(), &explain, &result), FIID_OK) << path;
        close(descriptor);
        ExpectSameAnswer(byPath, result, path);
        EXPECT_EQ(byPath.calls, result.calls);
        SparseSource source = FISourceOf(bytes, path);
        const fiid_source told = source.Told();
        ASSERT_EQ(fiid_detect_source(&told, &explain, &result), FIID_OK) << path;
        ExpectSameAnswer(byPath, result, path);
        EXPECT_EQ(result.calls, source.calls.size()) << path;
        EXPECT_TRUE(IsAscii(result.explanation)) << path << ": " << result.explanation;
        byPath.explanation[0] = '\0';
        ASSERT_EQ(fiid_detect_path(path.c_str(), &plain, &result), FIID_OK) << path;
        ExpectSameAnswer(byPath, result, path);
        ++count;
    }
    EXPECT_GT(count, 40U);
}

TEST(Threads, IdentifyAtOnce) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([] {
            for (int round = 0; round < 20; ++round) {
                for (const AnswerCase& test : answerCases) {
                    const fiid_result result = DetectBytes(FIBytes(test.bytes), test.file, FIID_EXPLAIN);
                    EXPECT_EQ(result.fiid, test.fiid);
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// ---- Lists ----------------------------------------------------------------------------------------------------------

TEST(Formats, AreListedInAscendingOrder) {
    const std::uint32_t count = fiid_format_count();
    EXPECT_GT(count, 400U);
    std::uint16_t last = 0;
    fiid_format format;
    for (std::uint32_t index = 0; index < count; ++index) {
        ASSERT_EQ(fiid_format_at(index, &format), FIID_OK);
        EXPECT_GT(format.id, last);
        last = format.id;
        EXPECT_STRNE(format.name, "");
        fiid_format found;
        ASSERT_EQ(fiid_format_find(format.id, &found), FIID_OK);
        EXPECT_EQ(found.name, format.name);
        EXPECT_EQ(found.family, format.family);
        EXPECT_EQ(found.flags, format.flags);
        EXPECT_STRNE(format.family, "");
        EXPECT_TRUE(IsAscii(format.name) && IsAscii(format.mime) && IsAscii(format.puids) &&
                    IsAscii(format.extensions));
    }
    EXPECT_EQ(fiid_format_at(count, &format), FIID_ERROR_UNKNOWN_FORMAT);
    EXPECT_EQ(format.id, 0);
    EXPECT_STREQ(format.name, "");
    EXPECT_STREQ(format.family, "");
    EXPECT_EQ(format.flags, 0U);
    EXPECT_EQ(fiid_format_at(UINT32_MAX, &format), FIID_ERROR_UNKNOWN_FORMAT);
    EXPECT_EQ(fiid_format_find(0, &format), FIID_ERROR_UNKNOWN_FORMAT);
    EXPECT_EQ(fiid_format_find(UINT16_MAX, &format), FIID_ERROR_UNKNOWN_FORMAT);
    EXPECT_EQ(fiid_format_at(0, nullptr), FIID_ERROR_ARGUMENT);
    EXPECT_EQ(fiid_format_find(1503, nullptr), FIID_ERROR_ARGUMENT);
}

std::uint32_t FlagsOf(std::uint16_t id) {
    fiid_format format;
    EXPECT_EQ(fiid_format_find(id, &format), FIID_OK) << id;
    return format.flags;
}

// What the rows stand over, as further/row.h tells it.
std::set<std::uint16_t> AnswersUnder(FIOver over) {
    switch (over) {
        case FIOver::TextOrUnknown:
            return {1999, 4005, 4022, 4025};
        case FIOver::Text:
            return {4005, 4022, 4025};
        case FIOver::Packages:
            return {1309, 1312, 1454, 1455, 1632, 1633, 1635, 1802};
    }
    return {};
}

TEST(Formats, AreOpenWhereAnotherVersionMayAnswerOtherwise) {
    std::set<std::uint16_t> open;
    for (std::uint16_t row = 1; row <= furtherRowCount; ++row) open.merge(AnswersUnder(FIFindFurtherRow(row)->over));
    EXPECT_EQ(open.size(), 12U);
    fiid_format format;
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) {
        const bool expected = format.id >= 20000 || open.contains(format.id) || FIHasVersionRule(format.id);
        EXPECT_EQ(format.flags, expected ? std::uint32_t{FIID_FORMAT_IS_OPEN} : 0U) << format.id;
    }
    EXPECT_EQ(FlagsOf(1557), std::uint32_t{FIID_FORMAT_IS_OPEN}) << "the version of PDF is read";
    EXPECT_EQ(FlagsOf(1802), std::uint32_t{FIID_FORMAT_IS_OPEN}) << "a ZIP archive may be a package";
    EXPECT_EQ(FlagsOf(20190), std::uint32_t{FIID_FORMAT_IS_OPEN});
    EXPECT_EQ(FlagsOf(1574), 0U) << "PNG";
    EXPECT_EQ(FlagsOf(1438), 0U) << "Excel";
}

// Only where it is open has an answer more than the signature table's.
TEST(Samples, HaveMoreThanTheirFirstAnswerOnlyWhereItIsOpen) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(FIID_SAMPLES_DIR)) {
        if (!entry.is_regular_file()) continue;
        fiid_result result;
        ASSERT_EQ(fiid_detect_path(entry.path().c_str(), nullptr, &result), FIID_OK) << entry.path();
        const bool hasMore = result.further != 0 || result.version[0] != '\0';
        EXPECT_TRUE(!hasMore || FlagsOf(result.fiid) == FIID_FORMAT_IS_OPEN) << entry.path();
    }
}

TEST(Texts, TellEachNumberApart) {
    std::set<std::string> texts;
    for (std::int32_t status = FIID_OK; status <= FIID_ERROR_UNKNOWN_FORMAT; ++status) {
        EXPECT_TRUE(texts.insert(fiid_error_text(status)).second) << status;
    }
    EXPECT_STREQ(fiid_error_text(-1), "unknown status");
    EXPECT_STREQ(fiid_error_text(FIID_ERROR_UNKNOWN_FORMAT + 1), "unknown status");
    EXPECT_STREQ(fiid_basis_text(FIID_BASIS_NONE), "none");
    EXPECT_STREQ(fiid_basis_text(FIID_BASIS_TEXT), "text");
    EXPECT_STREQ(fiid_basis_text(-1), "");
    EXPECT_STREQ(fiid_basis_text(FIID_BASIS_TEXT + 1), "");
}

TEST(Version, IsThatOfTheHeader) {
    EXPECT_STREQ(fiid_version(), FIID_VERSION);
    EXPECT_EQ(std::to_string(FIID_VERSION_MAJOR) + "." + std::to_string(FIID_VERSION_MINOR) + "." +
                  std::to_string(FIID_VERSION_PATCH),
              FIID_VERSION);
}

// Bindings and older callers rely on it.
TEST(Layout, StaysAsItIs) {
    EXPECT_EQ(sizeof(fiid_options), 8U);
    EXPECT_EQ(offsetof(fiid_result, fiid), 0U);
    EXPECT_EQ(offsetof(fiid_result, basis), 8U);
    EXPECT_EQ(offsetof(fiid_result, size), 16U);
    EXPECT_EQ(offsetof(fiid_result, bytes_read), 40U);
    EXPECT_EQ(offsetof(fiid_result, name), 88U);
    EXPECT_EQ(offsetof(fiid_result, explanation), 88U + 12 * sizeof(void*));
    EXPECT_EQ(sizeof(fiid_result), 600U + 12 * sizeof(void*));
    EXPECT_EQ(sizeof(fiid_format), 8U + 8 * sizeof(void*));
}

}  // namespace
