// What a path costs in system calls, and what it leads to, in the order in which the program looks. The linker wraps the
// calls (see CMakeLists.txt).
#include "scan/identify.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "scan/file_walk.h"
#include "support/temporary_directory.h"

namespace {

// Never destroyed: when coverage is measured, the counters are written, with these calls, behind all else.
std::string& calls = *new std::string;
int failedOpen = 0;  // the errno that open fails with, if not 0

void Note(const char* call) { calls += (calls.empty() ? "" : " ") + std::string(call); }

}  // namespace

extern "C" {

int __real_open(const char* path, int flags, mode_t mode);
int __real_close(int descriptor);
int __real_stat(const char* path, struct stat* status);
int __real_lstat(const char* path, struct stat* status);
int __real_fstat(int descriptor, struct stat* status);
int __real_fcntl(int descriptor, int command, long argument);
ssize_t __real_pread(int descriptor, void* buffer, size_t size, off_t offset);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __real_write(int descriptor, const void* buffer, size_t size);

int __wrap_open(const char* path, int flags, mode_t mode) {
    Note("open");
    if (failedOpen == 0) return __real_open(path, flags, mode);
    errno = failedOpen;
    return -1;
}
int __wrap_close(int descriptor) {
    Note("close");
    return __real_close(descriptor);
}
int __wrap_stat(const char* path, struct stat* status) {
    Note("stat");
    return __real_stat(path, status);
}
int __wrap_lstat(const char* path, struct stat* status) {
    Note("lstat");
    return __real_lstat(path, status);
}
int __wrap_fstat(int descriptor, struct stat* status) {
    Note("fstat");
    return __real_fstat(descriptor, status);
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

class Identify : public testing::Test {
 protected:
    Identify() {
        directory_.Write("a.gif", "GIF89a");
        mkfifo(directory_.At("fifo").c_str(), 0600);
        mkdir(directory_.At("d").c_str(), 0700);
        Link("a.gif", "link");
        Link("nowhere", "dangling");
        Link("d", "link_to_d");
        calls.clear();
    }
    ~Identify() override { failedOpen = 0; }

    void Link(const char* target, const char* name) const {
        if (symlink(target, directory_.At(name).c_str()) != 0) ADD_FAILURE() << name;
    }
    // The answer or the error of a path that is named, or "directory". No descriptor stays open.
    std::string Named(const std::string& path) const {
        const std::ptrdiff_t before = CountOpenDescriptors();
        calls.clear();
        const std::optional<Record> record = IdentifyNamedPath(path, 0);
        made_ = calls;
        EXPECT_EQ(CountOpenDescriptors(), before);
        if (!record.has_value()) return "directory";
        EXPECT_EQ(record->path, path);
        return record->error.has_value() ? *record->error : std::to_string(record->answer.fiid);
    }

    TemporaryDirectory directory_;
    mutable std::string made_;  // the calls of the last path
};

TEST_F(Identify, FileCostsOpenStatOneReadAndClose) {
    for (const char* const name : {"a.gif", "link"}) {
        EXPECT_EQ(Named(directory_.At(name)), "1503");
        EXPECT_EQ(made_, "open fstat pread close") << name;
    }
    calls.clear();
    EXPECT_EQ(IdentifyPath(directory_.At("a.gif"), 0).answer.fiid, 1503);
    EXPECT_EQ(calls, "open fstat pread close");
}

// The name decides where the bytes say nothing.
TEST_F(Identify, FileHasTheNameOfItsPath) {
    directory_.Write("a.tga", std::string(100, '\0'));
    EXPECT_EQ(Named(directory_.At("a.tga")), "1512");
    EXPECT_EQ(IdentifyPath(directory_.At("a.tga"), 0).answer.fiid, 1512);
}

TEST_F(Identify, DirectoryIsNone) {
    for (const char* const name : {"d", "d/", "link_to_d"}) {
        EXPECT_EQ(Named(directory_.At(name)), "directory");
        EXPECT_EQ(made_, "open fstat close") << name;
    }
    failedOpen = EACCES;
    EXPECT_EQ(Named(directory_.At("d")), "directory");
    EXPECT_EQ(made_, "open stat");
}

TEST_F(Identify, WhatCantBeOpenedIsToldInPlainWords) {
    EXPECT_EQ(Named(""), "No such file or directory");
    EXPECT_EQ(Named(directory_.At("missing")), "No such file or directory");
    EXPECT_EQ(Named(directory_.At("a.gif/")), "Not a directory");
    EXPECT_EQ(Named(directory_.At("dangling")), "is a symbolic link that leads nowhere");
    ASSERT_EQ(mknod(directory_.At("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_EQ(Named(directory_.At("socket")), "is a socket, not a file");
    failedOpen = EMFILE;
    EXPECT_EQ(Named(directory_.At("a.gif")), "Too many open files");
    failedOpen = EACCES;
    EXPECT_EQ(Named(directory_.At("fifo")), "Permission denied");
}

TEST_F(Identify, DeviceIsOpenedOnceAndNotRead) {
    EXPECT_EQ(Named("/dev/null"), "is a character device, not a file");
    EXPECT_EQ(made_, "open fstat fstat stat close");
}

// Its writer keeps the one reader that has come, until all is read.
TEST_F(Identify, FifoIsOpenedOnceAndReadToItsEnd) {
    const int writer = __real_open(directory_.At("fifo").c_str(), O_RDWR | O_CLOEXEC, 0);
    ASSERT_EQ(__real_write(writer, "GIF89a", 6), 6);
    const pid_t child = fork();
    if (child == 0) {
        usleep(50000);  // whatever comes first, the bytes are there
        _exit(0);       // and the last writer is gone
    }
    __real_close(writer);
    EXPECT_EQ(Named(directory_.At("fifo")), "1503");
    EXPECT_EQ(made_.substr(0, 22), "open fstat fstat open ") << "the second one is the copy's";
    EXPECT_NE(made_.find("read write"), std::string::npos) << made_;
    EXPECT_EQ(made_.find(" stat"), std::string::npos) << made_;
}

// A walk knows from the entries of a directory what they are.
TEST_F(Identify, FileBelowADirectoryCostsNoMore) {
    directory_.Write("d/a.gif", "GIF89a");
    calls.clear();
    std::string files;
    WalkPath(directory_.At("d"), {[](const std::string& path) { return IdentifyNamedPath(path, 0).has_value(); },
                                  [&](const std::string& path) {
                                      calls.clear();
                                      files += std::to_string(IdentifyPath(path, 0).answer.fiid) + " " + calls;
                                  },
                                  [](const std::string& path, const std::string&) { ADD_FAILURE() << path; }});
    EXPECT_EQ(files, "1503 open fstat pread close");
}

}  // namespace
