// Lists of paths: their entries, their failures, and what stays open behind them.
#include "scan/path_list.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "scan/interrupt.h"
#include "support/temporary_directory.h"

namespace {

using Paths = std::vector<std::string>;

class PathList : public testing::Test {
 protected:
    Paths Read(const std::string& bytes, bool nulSeparated) const {
        directory_.Write("list", bytes);
        Paths paths;
        const auto failure =
            ReadPathList(directory_.At("list"), nulSeparated, [&](const std::string& path) { paths.push_back(path); });
        EXPECT_EQ(failure, std::nullopt);
        return paths;
    }

    TemporaryDirectory directory_;
};

TEST_F(PathList, EntriesEndAtTheSeparatorOrTheEnd) {
    EXPECT_EQ(Read("", false), Paths());
    EXPECT_EQ(Read("\n\n", false), Paths());
    EXPECT_EQ(Read("a b\n\nc", false), (Paths{"a b", "c"}));
    EXPECT_EQ(Read("a\nb\n", false), (Paths{"a", "b"}));
    EXPECT_EQ(Read(std::string("a\nb\0\0c\0", 7), true), (Paths{"a\nb", "c"}));
}

TEST_F(PathList, NulBytesStayInALine) {
    EXPECT_EQ(Read(std::string("a\0b\0\nc\n", 7), false), (Paths{std::string("a\0b\0", 4), "c"}));
}

TEST_F(PathList, EntryMayLieAcrossBlocks) {
    const std::string path(65535, 'x');
    EXPECT_EQ(Read(path + "\n" + path + "\n" + path, false), Paths(3, path));
}

TEST_F(PathList, EntryIsCutBehindTheLongestPath) {
    const std::string longest(65536, 'x');
    const std::string cut(65537, 'x');
    const std::string rest(200000, 'x');
    EXPECT_EQ(Read(longest + "\n" + longest, false), (Paths{longest, longest}));
    EXPECT_EQ(Read(cut + "\na\n" + cut, false), (Paths{cut, "a", cut}));
    EXPECT_EQ(Read(cut + "y\na\n", false), (Paths{cut, "a"}));
    EXPECT_EQ(Read(cut + rest + "\n\nb\n" + cut + rest, false), (Paths{cut, "b", cut}));
    EXPECT_EQ(Read(cut + rest + std::string(1, '\0') + "b", true), (Paths{cut, "b"}));
}

TEST_F(PathList, FailuresAreTold) {
    const auto visit = [](const std::string& path) { ADD_FAILURE() << path; };
    EXPECT_EQ(ReadPathList(directory_.At("missing"), false, visit), "No such file or directory");
    EXPECT_EQ(ReadPathList(directory_.At(""), false, visit), "Is a directory");
}

TEST_F(PathList, SignalEndsIt) {
    directory_.Write("list", "a\nb\nc\n");
    EXPECT_EXIT(
        {
            CatchInterrupts();
            int paths = 0;
            const auto failure = ReadPathList(directory_.At("list"), false, [&](const std::string&) {
                ++paths;
                raise(SIGTERM);
            });
            _exit(paths == 1 && !failure.has_value() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(PathList, NoDescriptorStaysOpen) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    Read("a\nb\n", false);
    ReadPathList(directory_.At("missing"), false, [](const std::string&) {});
    ReadPathList(directory_.At(""), false, [](const std::string&) {});
    EXPECT_EQ(CountOpenDescriptors(), before);
}

TEST_F(PathList, PathsComeOneByOneThroughAPipe) {
    directory_.Write("list", "a\n");
    mkfifo(directory_.At("fifo").c_str(), 0600);
    EXPECT_FALSE(PathsComeOneByOne(directory_.At("list")));
    EXPECT_FALSE(PathsComeOneByOne(directory_.At("missing")));
    EXPECT_FALSE(PathsComeOneByOne(directory_.At("")));
    EXPECT_TRUE(PathsComeOneByOne(directory_.At("fifo")));
    EXPECT_TRUE(PathsComeOneByOne("/dev/null"));
    ASSERT_EQ(mknod(directory_.At("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_TRUE(PathsComeOneByOne(directory_.At("socket")));
}

}  // namespace
