// Lists of paths: their entries, their failures, and what stays open behind them.
#include "scan/path_list.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <vector>

#include "scan/interrupt.h"
#include "support/temporary_directory.h"

namespace {

using Paths = std::vector<std::string>;

class ListOfPaths : public testing::Test {
 protected:
    Paths Read(const std::string& bytes, bool nulSeparated) const {
        directory_.Write("list", bytes);
        PathList list(directory_.At("list"), nulSeparated);
        EXPECT_EQ(list.TotalBytes(), bytes.size());
        Paths paths;
        while (std::optional<std::string> path = list.Next()) paths.push_back(*std::move(path));
        EXPECT_EQ(list.Failure(), std::nullopt);
        EXPECT_EQ(list.BytesRead(), bytes.size());
        EXPECT_EQ(list.Next(), std::nullopt);
        return paths;
    }
    std::optional<std::string> FailureOf(const std::string& name) const {
        PathList list(directory_.At(name), false);
        EXPECT_EQ(list.Next(), std::nullopt);
        EXPECT_EQ(list.Next(), std::nullopt);
        return list.Failure();
    }

    TemporaryDirectory directory_;
};

TEST_F(ListOfPaths, EntriesEndAtTheSeparatorOrTheEnd) {
    EXPECT_EQ(Read("", false), Paths());
    EXPECT_EQ(Read("\n\n", false), Paths());
    EXPECT_EQ(Read("a b\n\nc", false), (Paths{"a b", "c"}));
    EXPECT_EQ(Read("a\nb\n", false), (Paths{"a", "b"}));
    EXPECT_EQ(Read(std::string("a\nb\0\0c\0", 7), true), (Paths{"a\nb", "c"}));
}

TEST_F(ListOfPaths, NulBytesStayInALine) {
    EXPECT_EQ(Read(std::string("a\0b\0\nc\n", 7), false), (Paths{std::string("a\0b\0", 4), "c"}));
}

TEST_F(ListOfPaths, EntryMayLieAcrossBlocks) {
    const std::string path(65535, 'x');
    EXPECT_EQ(Read(path + "\n" + path + "\n" + path, false), Paths(3, path));
}

TEST_F(ListOfPaths, EntryIsCutBehindTheLongestPath) {
    const std::string longest(65536, 'x');
    const std::string cut(65537, 'x');
    const std::string rest(200000, 'x');
    EXPECT_EQ(Read(longest + "\n" + longest, false), (Paths{longest, longest}));
    EXPECT_EQ(Read(cut + "\na\n" + cut, false), (Paths{cut, "a", cut}));
    EXPECT_EQ(Read(cut + "y\na\n", false), (Paths{cut, "a"}));
    EXPECT_EQ(Read(cut + rest + "\n\nb\n" + cut + rest, false), (Paths{cut, "b", cut}));
    EXPECT_EQ(Read(cut + rest + std::string(1, '\0') + "b", true), (Paths{cut, "b"}));
}

TEST_F(ListOfPaths, FailuresAreTold) {
    EXPECT_EQ(FailureOf("missing"), "No such file or directory");
    EXPECT_EQ(FailureOf(""), "Is a directory");
}

TEST_F(ListOfPaths, StandardInputIsReadFromWhereItIs) {
    EXPECT_EXIT(
        {
            directory_.Write("list", "a\nbc\nd");
            const bool isOpen = std::freopen(directory_.At("list").c_str(), "r", stdin) != nullptr;
            lseek(STDIN_FILENO, 2, SEEK_SET);
            PathList list("-", false);
            const bool rightSize = list.TotalBytes() == 4U && list.BytesRead() == 0;
            const bool first = list.Next() == "bc" && list.BytesRead() == 3;
            const bool second = list.Next() == "d" && list.BytesRead() == 4 && !list.Next().has_value();
            _exit(isOpen && rightSize && first && second ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ListOfPaths, ClosedStandardInputIsAFailure) {
    EXPECT_EXIT(
        {
            close(STDIN_FILENO);
            PathList list("-", false);
            _exit(!list.Next().has_value() && list.Failure() == "standard input is closed" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ListOfPaths, PathComesBeforeTheNextIsWritten) {
    const std::string fifo = directory_.At("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int writer = open(fifo.c_str(), O_RDWR | O_CLOEXEC);
    PathList list(fifo, false);
    EXPECT_EQ(list.TotalBytes(), std::nullopt);
    ASSERT_EQ(write(writer, "a\n\nb\nc", 6), 6);
    EXPECT_EQ(list.Next(), "a");
    EXPECT_EQ(list.Next(), "b");
    ASSERT_EQ(write(writer, "d\n", 2), 2);
    EXPECT_EQ(list.Next(), "cd");
    EXPECT_EQ(list.BytesRead(), 8U);
    ASSERT_EQ(write(writer, "e", 1), 1);
    close(writer);
    EXPECT_EQ(list.Next(), "e");
    EXPECT_EQ(list.Next(), std::nullopt);
    EXPECT_EQ(list.Failure(), std::nullopt);
}

TEST_F(ListOfPaths, SignalEndsIt) {
    directory_.Write("list", "a\nb\nc");
    EXPECT_EXIT(
        {
            CatchInterrupts();
            PathList list(directory_.At("list"), false);
            const bool began = list.Next() == "a";
            raise(SIGTERM);
            _exit(began && !list.Next().has_value() && !list.Failure().has_value() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ListOfPaths, NoDescriptorStaysOpen) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    Read("a\nb\n", false);
    FailureOf("missing");
    FailureOf("");
    EXPECT_EQ(CountOpenDescriptors(), before);
}

TEST_F(ListOfPaths, PathsComeOneByOneThroughAPipe) {
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
