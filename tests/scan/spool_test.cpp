// Streams into temporary files, with signals and failures in the way. The linker wraps open, read and
// write (see CMakeLists.txt).
#include "scan/spool.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>

#include "support/temporary_directory.h"

namespace {

// What the next calls on the spooled descriptors fail with, one each; then they succeed.
std::deque<int> readFailures;
std::deque<int> writeFailures;
std::size_t largestWrite = SIZE_MAX;
bool hasUnnamedFiles = true;  // the file system

bool FailsNext(std::deque<int>& failures) {
    if (failures.empty()) return false;
    errno = failures.front();
    failures.pop_front();
    return true;
}

}  // namespace

extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int descriptor, void* buffer, size_t size);
ssize_t __real_write(int descriptor, const void* buffer, size_t size);

int __wrap_open(const char* path, int flags, ...) {
    if (hasUnnamedFiles || (flags & O_TMPFILE) != O_TMPFILE) return __real_open(path, flags, 0600);
    errno = EOPNOTSUPP;
    return -1;
}
ssize_t __wrap_read(int descriptor, void* buffer, size_t size) {
    return FailsNext(readFailures) ? -1 : __real_read(descriptor, buffer, size);
}
ssize_t __wrap_write(int descriptor, const void* buffer, size_t size) {
    if (descriptor <= STDERR_FILENO) return __real_write(descriptor, buffer, size);
    return FailsNext(writeFailures) ? -1 : __real_write(descriptor, buffer, std::min(size, largestWrite));
}

}  // extern "C"

namespace {

class Spool : public testing::Test {
 protected:
    Spool() {
        directory_.Write("source", bytes_);
        source_ = open(directory_.At("source").c_str(), O_RDONLY | O_CLOEXEC);
        setenv("TMPDIR", directory_.At("").c_str(), 1);
    }
    ~Spool() override {
        close(source_);
        unsetenv("TMPDIR");
        readFailures.clear();
        writeFailures.clear();
        largestWrite = SIZE_MAX;
        hasUnnamedFiles = true;
    }
    // The bytes in the temporary file, or the error.
    std::string SpooledFrom(int source) const {
        SpooledInput input;
        std::optional<std::string> error;
        if (!input.Open(source, "source", error)) return error.value_or("failed without a reason");
        if (error.has_value()) return "succeeded with a reason: " + *error;
        std::string bytes(bytes_.size() + 1, '\0');
        const ssize_t came = pread(input.Descriptor(), bytes.data(), bytes.size(), 0);
        bytes.resize(came > 0 ? static_cast<std::size_t>(came) : 0);
        return bytes;
    }

    TemporaryDirectory directory_;
    const std::string bytes_ = "GIF89a and some more";
    int source_ = -1;
};

TEST_F(Spool, CopiesAll) { EXPECT_EQ(SpooledFrom(source_), bytes_); }

TEST_F(Spool, SignalsDuringReadAreReadOver) {
    readFailures = {EINTR, EINTR};
    EXPECT_EQ(SpooledFrom(source_), bytes_);
    EXPECT_TRUE(readFailures.empty());
}

TEST_F(Spool, SourceThatHasNothingYetIsWaitedFor) {
    readFailures = {EAGAIN};
    EXPECT_EQ(SpooledFrom(source_), bytes_);
    EXPECT_TRUE(readFailures.empty());
}

TEST_F(Spool, SignalsDuringWriteAreWrittenOver) {
    writeFailures = {EINTR, EINTR};
    EXPECT_EQ(SpooledFrom(source_), bytes_);
    EXPECT_TRUE(writeFailures.empty());
}

TEST_F(Spool, ShortWritesAreContinued) {
    largestWrite = 3;
    writeFailures = {EINTR};
    EXPECT_EQ(SpooledFrom(source_), bytes_);
}

TEST_F(Spool, FailuresAreTold) {
    readFailures = {EIO};
    EXPECT_EQ(SpooledFrom(source_), "source: Input/output error");
    writeFailures = {ENOSPC};
    EXPECT_EQ(SpooledFrom(source_), directory_.At("") + ": No space left on device");
    setenv("TMPDIR", directory_.At("missing").c_str(), 1);
    EXPECT_EQ(SpooledFrom(source_), directory_.At("missing") + ": no temporary file: No such file or directory");
}

TEST_F(Spool, EmptyNameOfTheDirectoryIsNone) {
    setenv("TMPDIR", "", 1);
    writeFailures = {ENOSPC};
    EXPECT_EQ(SpooledFrom(source_), "/tmp: No space left on device");
}

TEST_F(Spool, FileSystemWithoutUnnamedFilesHasANamedOneThatIsGoneAtOnce) {
    hasUnnamedFiles = false;
    const std::ptrdiff_t before = CountOpenDescriptors();
    EXPECT_EQ(SpooledFrom(source_), bytes_);
    EXPECT_EQ(CountOpenDescriptors(), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.At("")), {}), 1);  // the source
    setenv("TMPDIR", directory_.At("missing").c_str(), 1);
    EXPECT_EQ(SpooledFrom(source_), directory_.At("missing") + ": no temporary file: No such file or directory");
}

TEST_F(Spool, DirectoryIsNoSource) {
    const int descriptor = open("/", O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(SpooledFrom(descriptor), "source: Is a directory");
    close(descriptor);
}

TEST_F(Spool, NothingStaysBehind) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    SpooledFrom(source_);
    readFailures = {EIO};
    SpooledFrom(source_);
    EXPECT_EQ(CountOpenDescriptors(), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.At("")), {}), 1);  // the source
}

}  // namespace
