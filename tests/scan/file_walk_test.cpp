// Walks over file systems that tell no kinds of entries, and over directories that fail. The linker wraps readdir and
// lstat (see CMakeLists.txt).
#include "scan/file_walk.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string_view>

#include "scan/interrupt.h"
#include "support/temporary_directory.h"

namespace {

bool kindsAreUnknown = false;
bool lstatFails = false;
bool readdirFails = false;
int lstatCalls = 0;

}  // namespace

extern "C" {

dirent* __real_readdir(DIR* directory);
int __real_lstat(const char* path, struct stat* status);

dirent* __wrap_readdir(DIR* directory) {
    dirent* const entry = __real_readdir(directory);
    if (entry == nullptr && readdirFails) errno = EIO;
    if (entry != nullptr && kindsAreUnknown) entry->d_type = DT_UNKNOWN;
    return entry;
}
int __wrap_lstat(const char* path, struct stat* status) {
    ++lstatCalls;
    if (!lstatFails) return __real_lstat(path, status);
    errno = EACCES;
    return -1;
}

}  // extern "C"

namespace {

class FileWalk : public testing::Test {
 protected:
    FileWalk() {
        mkdir(directory_.At("d").c_str(), 0700);
        mkdir(directory_.At("d/inner").c_str(), 0700);
        directory_.Write("d/a", "GIF89a");
        directory_.Write("d/inner/b", "GIF89a");
        mkfifo(directory_.At("d/fifo").c_str(), 0600);
        Link("a", "d/link");
        Link("fifo", "d/link_to_fifo");
        Link("inner", "d/link_to_inner");
        Link("nowhere", "d/link_to_nothing");
    }
    ~FileWalk() override { kindsAreUnknown = lstatFails = readdirFails = false; }

    void Link(const char* target, const char* name) const {
        if (symlink(target, directory_.At(name).c_str()) != 0) ADD_FAILURE() << name;
    }
    // All visits in their order, as "file d/a", each with a line end.
    std::string Walk(const std::string& path) const {
        const std::string top = directory_.At("");
        std::string visits;
        const auto note = [&](const char* kind, std::string_view visited, const std::string& reason) {
            if (visited.starts_with(top)) visited.remove_prefix(top.size());
            visits += std::string(kind) + " " + std::string(visited) + reason + "\n";
        };
        const auto named = [&](const std::string& visited) {
            struct stat status = {};
            const bool known = stat(visited.c_str(), &status) == 0;
            if (known && S_ISDIR(status.st_mode)) return false;
            note(known && S_ISFIFO(status.st_mode) ? "fifo" : "file", visited, "");
            return true;
        };
        WalkPath(path, {named, [&](const std::string& visited) { note("file", visited, ""); },
                        [&](const std::string& visited, const std::string& reason) {
                            note("failure", visited, ": " + reason);
                        }});
        return visits;
    }

    TemporaryDirectory directory_;
};

constexpr const char* allOfD =
    "file d/a\n"
    "failure d/fifo: is a FIFO, not a file\n"
    "file d/inner/b\n"
    "file d/link\n"
    "failure d/link_to_fifo: is a FIFO, not a file\n"
    "file d/link_to_nothing\n";

TEST_F(FileWalk, TakesTheKindFromTheEntry) {
    lstatCalls = 0;
    EXPECT_EQ(Walk(directory_.At("d")), allOfD);
    EXPECT_EQ(lstatCalls, 0);
}

TEST_F(FileWalk, LooksWhereTheEntryTellsNoKind) {
    kindsAreUnknown = true;
    lstatCalls = 0;
    EXPECT_EQ(Walk(directory_.At("d")), allOfD);
    EXPECT_GT(lstatCalls, 0);
}

TEST_F(FileWalk, EntryOfUnknownKindThatCantBeLookedAtIsAFile) {
    kindsAreUnknown = true;
    lstatFails = true;
    EXPECT_EQ(Walk(directory_.At("d")),
              "file d/a\nfile d/fifo\nfile d/inner\nfile d/link\nfile d/link_to_fifo\nfile d/link_to_inner\n"
              "file d/link_to_nothing\n");
}

TEST_F(FileWalk, DirectoryThatFailsTellsWhatCameBefore) {
    readdirFails = true;
    EXPECT_EQ(Walk(directory_.At("d/inner")), "failure d/inner: Input/output error\nfile d/inner/b\n");
}

TEST_F(FileWalk, NamedPaths) {
    EXPECT_EQ(Walk(directory_.At("d/a")), "file d/a\n");
    EXPECT_EQ(Walk(directory_.At("d/fifo")), "fifo d/fifo\n");
    EXPECT_EQ(Walk(directory_.At("d/link_to_fifo")), "fifo d/link_to_fifo\n");
    EXPECT_EQ(Walk(directory_.At("d/link_to_inner")), "file d/link_to_inner/b\n");
    EXPECT_EQ(Walk(directory_.At("d/inner/")), "file d/inner/b\n");
    EXPECT_EQ(Walk(directory_.At("missing")), "file missing\n");
}

TEST_F(FileWalk, NamesAreInTheOrderOfTheirBytes) {
    mkdir(directory_.At("names").c_str(), 0700);
    for (const char* const name : {"names/\xC3\xA9", "names/z", "names/a"}) directory_.Write(name, "");
    EXPECT_EQ(Walk(directory_.At("names")), "file names/a\nfile names/z\nfile names/\xC3\xA9\n");
}

TEST_F(FileWalk, EndsWithASignal) {
    EXPECT_EXIT(
        {
            CatchInterrupts();
            int files = 0;
            WalkPath(directory_.At("d"), {[](const std::string&) { return false; },
                                          [&](const std::string&) {
                                              ++files;
                                              raise(SIGTERM);
                                          },
                                          [](const std::string&, const std::string&) { _exit(3); }});
            _exit(files == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FileWalk, PathWithNulIsAFailureOf4096BytesAtMost) {
    const std::string reason = ": a path can't hold a NUL byte; -0 reads a list that is separated by them\n";
    const std::string path("a\0b", 3);
    EXPECT_EQ(Walk(path), "failure " + path + reason);
    const std::string longest = path + std::string(4093, 'x');
    EXPECT_EQ(Walk(longest), "failure " + longest + reason);
    EXPECT_EQ(Walk(longest + "y"), "failure " + longest + reason);
}

TEST_F(FileWalk, LeavesNoDescriptorOpen) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    Walk(directory_.At("d"));
    readdirFails = true;
    Walk(directory_.At("d"));
    EXPECT_EQ(CountOpenDescriptors(), before);
}

}  // namespace
