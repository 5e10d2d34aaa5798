// What a look at a path says about what a store tells of it.
#include "store/gone.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/temporary_directory.h"

namespace {

TEST(PresenceOf, TellsWhatAWalkWouldMeet) {
    const TemporaryDirectory directory;
    directory.Write("file", "");
    ASSERT_EQ(mkfifo(directory.At("fifo").c_str(), 0600), 0);
    ASSERT_EQ(symlink("file", directory.At("link").c_str()), 0);
    ASSERT_EQ(symlink("nothing", directory.At("broken").c_str()), 0);
    ASSERT_EQ(symlink("loop", directory.At("loop").c_str()), 0);
    EXPECT_EQ(PresenceOf(directory.At("file")), Presence::File);
    EXPECT_EQ(PresenceOf(directory.At("link")), Presence::File);
    EXPECT_EQ(PresenceOf(directory.At("")), Presence::Directory);
    for (const char* const name : {"fifo", "broken", "loop", "nothing", "nothing/x", "file/x"}) {
        EXPECT_EQ(PresenceOf(directory.At(name)), Presence::Nothing) << name;
    }
    EXPECT_EQ(PresenceOf(directory.At(std::string("a\0b", 3))), Presence::Nothing);
}

// A name that is too long can't be looked at; what can't be looked at is not gone.
TEST(PresenceOf, LeavesWhatItCantTell) {
    const TemporaryDirectory directory;
    EXPECT_EQ(PresenceOf(directory.At(std::string(300, 'x'))), Presence::File);
    EXPECT_EQ(PresenceOf(std::string(5000, 'x')), Presence::File);
}

TEST(PresenceOf, LooksAtPathsOfAnyLength) {
    const TemporaryDirectory directory;
    const std::string name(200, 'd');
    std::string path = directory.At("");
    path.pop_back();
    int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; depth < 45; ++depth) {
        ASSERT_EQ(mkdirat(descriptor, name.c_str(), 0700), 0);
        const int below = openat(descriptor, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(descriptor);
        descriptor = below;
        path += '/' + name;
    }
    close(openat(descriptor, "file", O_WRONLY | O_CREAT, 0600));
    close(descriptor);
    ASSERT_GT(path.size(), 9000U);
    EXPECT_EQ(PresenceOf(path), Presence::Directory);
    EXPECT_EQ(PresenceOf(path + "/file"), Presence::File);
    EXPECT_EQ(PresenceOf(path + "/other"), Presence::Nothing);
    EXPECT_EQ(PresenceOf(path + "/file/x"), Presence::Nothing);
}

}  // namespace
