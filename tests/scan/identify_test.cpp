// What a path costs in system calls, and what it leads to, in the order in which the program looks. The linker wraps the
// calls (see CMakeLists.txt).
#include "scan/identify.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "support/temporary_directory.h"

namespace {

// Never destroyed: when coverage is measured, the counters are written, with these calls, behind all else.
std::string& calls = *new std::string;
int failedOpen = 0;           // the errno that openat fails with, if not 0
bool pretendsDevice = false;  // files seem to be block devices

void Note(const char* call) { calls += (calls.empty() ? "" : " ") + std::string(call); }

// Of a block device the status tells no size.
void Pretend(struct stat& status) {
    if (!pretendsDevice || !S_ISREG(status.st_mode)) return;
    status.st_mode = S_IFBLK | 0600;
    status.st_size = 0;
}

}  // namespace

extern "C" {

int __real_open(const char* path, int flags, mode_t mode);
int __real_openat(int directory, const char* path, int flags, mode_t mode);
int __real_close(int descriptor);
int __real_fstatat(int directory, const char* path, struct stat* status, int flags);
int __real_fstat(int descriptor, struct stat* status);
int __real_fcntl(int descriptor, int command, long argument);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __real_write(int descriptor, const void* buffer, size_t size);

int __wrap_open(const char* path, int flags, mode_t mode) {
    Note("open");
    return __real_open(path, flags, mode);
}
int __wrap_openat(int directory, const char* path, int flags, mode_t mode) {
    Note("openat");
    if (failedOpen == 0) return __real_openat(directory, path, flags, mode);
    errno = failedOpen;
    return -1;
}
int __wrap_close(int descriptor) {
    Note("close");
    return __real_close(descriptor);
}
int __wrap_fstatat(int directory, const char* path, struct stat* status, int flags) {
    Note((flags & AT_SYMLINK_NOFOLLOW) != 0 ? "lstat" : "stat");
    const int result = __real_fstatat(directory, path, status, flags);
    Pretend(*status);
    return result;
}
int __wrap_fstat(int descriptor, struct stat* status) {
    Note("fstat");
    const int result = __real_fstat(descriptor, status);
    Pretend(*status);
    return result;
}
int __wrap_fcntl(int descriptor, int command, long argument) {
    Note("fcntl");
    return __real_fcntl(descriptor, command, argument);
}
ssize_t __wrap_pread(int descriptor, void* buffer, size_t size, off_t offset) {
    Note("pread");
    return __real_pread(descriptor, buffer, size, offset);
}
ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    Note("read");
    return __real_read(descriptor, buffer, size);
}
ssize_t __wrap_write(int descriptor, const void* buffer, size_t size) {
    Note("write");
    return __real_write(descriptor, buffer, size);
}

}  // extern "C"

namespace {

std::string AnswerOf(const std::optional<Record>& record) {
    if (!record.has_value()) return "nothing";
    return record->error.has_value() ? *record->error : std::to_string(record->answer.fiid);
}

class Identify : public testing::Test {
 protected:
    Identify() {
        directory_.Write("a.gif", "GIF89a");
        mkfifo(directory_.At("fifo").c_str(), 0600);
        mkdir(directory_.At("d").c_str(), 0700);
        Link("a.gif", "link");
        Link("nowhere", "dangling");
        Link("d", "link_to_d");
        opened_ = __real_open(directory_.At("").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
        calls.clear();
    }
    ~Identify() override {
        __real_close(opened_);
        failedOpen = 0;
        pretendsDevice = false;
    }

    void Link(const char* target, const char* name) const {
        if (symlink(target, directory_.At(name).c_str()) != 0) ADD_FAILURE() << name;
    }
    // The answer or the error of a path that is named, or "nothing". No descriptor stays open.
    std::string Named(const std::string& path) const {
        const std::ptrdiff_t before = CountOpenDescriptors();
        calls.clear();
        const std::optional<Record> record = IdentifyNamedPath(path, options_);
        made_ = calls;
        EXPECT_EQ(CountOpenDescriptors(), before);
        Keep(record, path);
        return AnswerOf(record);
    }
    // The same of an entry of the directory.
    std::string Entry(const std::string& name) const {
        const std::ptrdiff_t before = CountOpenDescriptors();
        const std::string path = "told/as/" + name;
        calls.clear();
        const std::optional<Record> record = IdentifyEntry(opened_, path, 8, options_);
        made_ = calls;
        EXPECT_EQ(CountOpenDescriptors(), before);
        Keep(record, path);
        return AnswerOf(record);
    }
    void Keep(const std::optional<Record>& record, const std::string& path) const {
        state_ = {};
        if (!record.has_value()) return;
        EXPECT_EQ(record->path, path);
        state_ = record->state;
    }
    // Bytes into the FIFO, from a writer who is gone a moment later.
    void Feed(const std::string& bytes) const {
        const int writer = __real_open(directory_.At("fifo").c_str(), O_RDWR | O_CLOEXEC, 0);
        ASSERT_EQ(__real_write(writer, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        if (fork() == 0) {
            usleep(20000);  // whatever comes first, the bytes are there
            _exit(0);       // and the last writer is gone
        }
        __real_close(writer);
    }

    TemporaryDirectory directory_;
    int opened_ = -1;
    IdentifyOptions options_;
    mutable std::string made_;  // the calls of the last path
    mutable FileState state_;   // and what its record tells
};

TEST_F(Identify, FileCostsOpenStatOneReadAndClose) {
    for (const char* const name : {"a.gif", "link"}) {
        EXPECT_EQ(Named(directory_.At(name)), "1503");
        EXPECT_EQ(made_, "openat fstat pread close") << name;
        EXPECT_EQ(Entry(name), "1503");
        EXPECT_EQ(made_, "openat fstat pread close") << name;
    }
}

// The name decides where the bytes say nothing.
TEST_F(Identify, FileHasTheNameOfItsPath) {
    directory_.Write("a.tga", std::string(100, '\0'));
    EXPECT_EQ(Named(directory_.At("a.tga")), "1512");
    EXPECT_EQ(Entry("a.tga"), "1512");
}

TEST_F(Identify, DirectoryIsNoFile) {
    for (const char* const name : {"d", "d/", "link_to_d"}) {
        EXPECT_EQ(Named(directory_.At(name)), "is a directory");
        EXPECT_EQ(made_, "openat fstat fstat close") << name;
        EXPECT_EQ(Entry(name), "is a directory");
    }
    failedOpen = EACCES;
    EXPECT_EQ(Named(directory_.At("d")), "is a directory");
    EXPECT_EQ(made_, "openat stat");
}

TEST_F(Identify, WhatCantBeOpenedIsToldInPlainWords) {
    EXPECT_EQ(Named(""), "No such file or directory");
    EXPECT_EQ(Named("/nowhere/at/all"), "No such file or directory");
    ASSERT_EQ(mknod(directory_.At("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    const auto named = [&](const std::string& name) { return Named(directory_.At(name)); };
    const auto entry = [&](const std::string& name) { return Entry(name); };
    for (const auto& answer : {std::function<std::string(const std::string&)>(named), {entry}}) {
        EXPECT_EQ(answer("missing"), "No such file or directory");
        EXPECT_EQ(answer("a.gif/"), "Not a directory");
        EXPECT_EQ(answer("dangling"), "is a symbolic link that leads nowhere");
        EXPECT_EQ(answer("socket"), "is a socket, not a file");
        failedOpen = EMFILE;
        EXPECT_EQ(answer("a.gif"), "Too many open files");
        failedOpen = EACCES;
        EXPECT_EQ(answer("fifo"), "Permission denied");
        failedOpen = 0;
    }
}

TEST_F(Identify, DeviceIsOpenedOnceAndNotRead) {
    EXPECT_EQ(Named("/dev/null"), "is a character device, not a file");
    EXPECT_EQ(made_, "openat fstat fstat close");
    Link("/dev/null", "null");
    EXPECT_EQ(Entry("null"), "is a character device, not a file");
}

// Its writer keeps the one reader that has come, until all is read.
TEST_F(Identify, FifoIsOpenedOnceAndReadToItsEnd) {
    Feed("GIF89a");
    EXPECT_EQ(Named(directory_.At("fifo")), "1503");
    EXPECT_EQ(made_.substr(0, 24), "openat fstat fstat open ") << "the second one is the copy's";
    EXPECT_NE(made_.find("read write"), std::string::npos) << made_;
    EXPECT_EQ(made_.find(" stat"), std::string::npos) << made_;
}

// One that has taken a file's place since a walk came by. Nobody reads what is written to it.
TEST_F(Identify, FifoIsNoEntry) {
    EXPECT_EQ(Entry("fifo"), "is a FIFO, not a file");
    EXPECT_EQ(made_, "openat fstat fstat close");
    options_.state = true;
    EXPECT_EQ(Entry("fifo"), "is a FIFO, not a file");
    EXPECT_FALSE(state_.known);
}

// ---- State ----------------------------------------------------------------------------------------------------------

TEST_F(Identify, StateCostsOneCallAndIsThatOfTheFile) {
    struct stat status = {};
    ASSERT_EQ(__real_fstatat(opened_, "a.gif", &status, 0), 0);
    options_.state = true;
    for (const char* const name : {"a.gif", "link"}) {
        EXPECT_EQ(Entry(name), "1503");
        EXPECT_EQ(made_, "openat fstat fstat pread close");
        EXPECT_TRUE(state_.known);
        EXPECT_EQ(state_.size, 6U);
        EXPECT_EQ(state_.modifiedSeconds, status.st_mtim.tv_sec);
        EXPECT_EQ(state_.modifiedNanoseconds, status.st_mtim.tv_nsec);
        EXPECT_EQ(state_.inode, status.st_ino);
        EXPECT_EQ(state_.device, status.st_dev);
    }
}

TEST_F(Identify, StateIsNotKnownUnlessWantedOrWithoutAFile) {
    EXPECT_EQ(Entry("a.gif"), "1503");
    EXPECT_FALSE(state_.known);
    options_.state = true;
    EXPECT_EQ(Entry("missing"), "No such file or directory");
    EXPECT_FALSE(state_.known);
    Feed("GIF89a");
    EXPECT_EQ(Named(directory_.At("fifo")), "1503");
    EXPECT_FALSE(state_.known);
}

// ---- Limits of size -------------------------------------------------------------------------------------------------

TEST_F(Identify, LimitsOfSizeCountInAndSpareTheOpening) {
    struct {
        std::uint64_t minSize;
        std::uint64_t maxSize;
        const char* answer;
    } const limits[] = {{0, 6, "1503"},    {6, 6, "1503"},   {6, UINT64_MAX, "1503"}, {7, UINT64_MAX, "nothing"},
                        {0, 5, "nothing"}, {7, 5, "nothing"}};
    for (const auto& [minSize, maxSize, answer] : limits) {
        options_.minSize = minSize;
        options_.maxSize = maxSize;
        for (const char* const name : {"a.gif", "link"}) {
            EXPECT_EQ(Entry(name), answer) << minSize << " to " << maxSize;
            EXPECT_EQ(Named(directory_.At(name)), answer) << minSize << " to " << maxSize;
        }
    }
    EXPECT_EQ(made_, "stat");
    EXPECT_EQ(Entry("dangling"), "is a symbolic link that leads nowhere");
    EXPECT_EQ(Entry("missing"), "No such file or directory");
    EXPECT_EQ(Entry("d"), "is a directory");
}

TEST_F(Identify, LimitsOfSizeSayNothingOfStreams) {
    options_.minSize = 1000;
    Feed("GIF89a");
    EXPECT_EQ(Named(directory_.At("fifo")), "1503");
}

// A device tells its size when it is open.
TEST_F(Identify, LimitsOfSizeCountForDevices) {
    pretendsDevice = true;
    options_.maxSize = 6;
    EXPECT_EQ(Entry("a.gif"), "1503");
    EXPECT_EQ(made_, "stat openat fstat fstat pread close");
    options_.maxSize = 5;
    EXPECT_EQ(Entry("a.gif"), "nothing");
    EXPECT_EQ(made_, "stat openat fstat close");
}

// ---- Standard input -------------------------------------------------------------------------------------------------

class IdentifyStandard : public Identify {
 protected:
    IdentifyStandard() { kept_ = dup(STDIN_FILENO); }
    ~IdentifyStandard() override {
        dup2(kept_, STDIN_FILENO);
        __real_close(kept_);
    }
    // The answer about a file, open in this way, as standard input.
    std::optional<Record> StandardInput(const std::string& path, int flags) {
        const int file = __real_open(path.c_str(), flags | O_CLOEXEC, 0);
        dup2(file, STDIN_FILENO);
        __real_close(file);
        return IdentifyStandardInput(options_);
    }
    int kept_ = -1;
};

TEST_F(IdentifyStandard, FileIsLookedAtWhereItIs) {
    options_.state = true;
    const std::optional<Record> record = StandardInput(directory_.At("a.gif"), O_RDONLY);
    EXPECT_EQ(AnswerOf(record), "1503");
    EXPECT_EQ(record->path, "-");
    EXPECT_EQ(record->state.size, 6U);
    EXPECT_EQ(lseek(STDIN_FILENO, 0, SEEK_CUR), 0);
    options_.minSize = 6;
    EXPECT_EQ(AnswerOf(StandardInput(directory_.At("a.gif"), O_RDONLY)), "1503");
    options_.minSize = 7;
    EXPECT_EQ(AnswerOf(StandardInput(directory_.At("a.gif"), O_RDONLY)), "nothing");
}

TEST_F(IdentifyStandard, StreamIsCopied) {
    Feed("GIF89a");
    options_.state = true;
    options_.maxSize = 1;
    const std::optional<Record> record = StandardInput(directory_.At("fifo"), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(AnswerOf(record), "1503");
    EXPECT_FALSE(record->state.known);
    EXPECT_EQ(record->answer.modified_known, 0U);
}

TEST_F(IdentifyStandard, FailuresAreTold) {
    EXPECT_EQ(AnswerOf(StandardInput(directory_.At("a.gif"), O_WRONLY)), "standard input is closed");
    EXPECT_EQ(AnswerOf(StandardInput(directory_.At("d"), O_RDONLY)), "standard input: Is a directory");
    const std::string direct = "standard input: Invalid argument";  // where a file system has O_DIRECT
    const std::string answer = AnswerOf(StandardInput(directory_.At("a.gif"), O_RDONLY | O_DIRECT));
    EXPECT_TRUE(answer == direct || answer == "standard input is closed") << answer;
}

}  // namespace
