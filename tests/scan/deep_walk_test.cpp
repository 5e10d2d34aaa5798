// Walks down long roads: paths beyond what the system takes, few descriptors, and directories that move meanwhile.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <vector>

#include "scan/descriptors.h"
#include "scan/walk.h"
#include "support/temporary_directory.h"

namespace {

// A directory, and in it another one of the same name, and so on. Each level that is a multiple of filesAt has the file
// "f", in front of the next level, and the directory "z" with a file "g", behind it.
class DeepTree {
 public:
    DeepTree(std::string top, std::string name, int levels, int filesAt)
        : top_(std::move(top)), name_(std::move(name)), levels_(levels) {
        mkdir(top_.c_str(), 0700);
        int directory = open(top_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int level = 1; level <= levels; ++level) {
            mkdirat(directory, name_.c_str(), 0700);
            const int below = openat(directory, name_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            close(directory);
            directory = below;
            if (level % filesAt == 0) MakeFiles(directory);
        }
        close(directory);
    }
    DeepTree(const DeepTree&) = delete;
    DeepTree& operator=(const DeepTree&) = delete;
    // From below: the paths are longer than other functions take.
    ~DeepTree() {
        int directory = open(top_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        int level = 0;
        for (; level < levels_; ++level) {
            const int below = openat(directory, name_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (below < 0) break;
            close(directory);
            directory = below;
        }
        for (; level >= 0; --level) {
            unlinkat(directory, name_.c_str(), AT_REMOVEDIR);
            unlinkat(directory, "f", 0);
            unlinkat(directory, "z/g", 0);
            unlinkat(directory, "z", AT_REMOVEDIR);
            const int above = openat(directory, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            close(directory);
            directory = above;
        }
        close(directory);
    }

    std::string PathOf(int level) const {
        std::string path = top_;
        for (int turn = 0; turn < level; ++turn) path += "/" + name_;
        return path;
    }

 private:
    static void MakeFiles(int directory) {
        close(openat(directory, "f", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        mkdirat(directory, "z", 0700);
        close(openat(directory, "z/g", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    }

    std::string top_;
    std::string name_;
    int levels_;
};

bool CanBeOpened(const WalkItem& item) {
    const char* const name = item.path.c_str() + item.nameStart;
    const OwnedDescriptor file(openat(item.directory->Descriptor(), name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    return file.Number() >= 0;
}

std::vector<std::string> PathsOf(Walk& walk) {
    std::vector<std::string> paths;
    for (WalkItem item; walk.Next(item);) {
        EXPECT_TRUE(item.met == Met::File && CanBeOpened(item)) << item.reason;
        paths.push_back(item.path);
    }
    return paths;
}

class DeepWalk : public testing::Test {
 protected:
    DeepWalk() { getrlimit(RLIMIT_NOFILE, &limit_); }
    ~DeepWalk() override { setrlimit(RLIMIT_NOFILE, &limit_); }

    static void LimitDescriptors(rlim_t count) {
        rlimit limit = {};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = count;
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    }

    TemporaryDirectory directory_{QuickDirectory()};
    rlimit limit_ = {};
};

TEST_F(DeepWalk, PathsMayBeLongerThanAMegabyte) {
    constexpr int levels = 5200;
    const std::string name(255, 'n');
    const DeepTree tree(directory_.At("top"), name, levels, 1300);
    for (const bool sorted : {true, false}) {
        WalkOptions options;
        options.sorted = sorted;
        Walk walk(options);
        walk.Start(directory_.At("top"));
        std::vector<std::string> paths = PathsOf(walk);
        std::vector<std::string> expected;
        for (int level = 1300; level <= levels; level += 1300) expected.push_back(tree.PathOf(level) + "/f");
        for (int level = levels; level > 0; level -= 1300) expected.push_back(tree.PathOf(level) + "/z/g");
        EXPECT_GT(expected[3].size(), 1300000U);
        if (!sorted) {  // which of the two directories comes first is not told
            std::ranges::sort(paths);
            std::ranges::sort(expected);
        }
        EXPECT_TRUE(paths == expected);
    }
}

TEST_F(DeepWalk, FewDirectoriesOfALongRoadAreOpen) {
    const DeepTree tree(directory_.At("top"), "n", 300, 1);
    const std::ptrdiff_t before = CountOpenDescriptors();
    Walk walk({});
    walk.Start(directory_.At("top"));
    std::ptrdiff_t most = 0;
    int files = 0;
    for (WalkItem item; walk.Next(item); ++files) most = std::max(most, CountOpenDescriptors() - before);
    EXPECT_EQ(files, 600);
    EXPECT_LE(most, 64 + 2);
    EXPECT_EQ(CountOpenDescriptors(), before);
}

// The limit is a part of what the process may have, and items that are still under way hold some: here all of them, or,
// where a path of 16 names is too long already, the last hundred.
TEST_F(DeepWalk, HundredDescriptorsAreEnoughForAnyDepth) {
    for (const auto& [name, held] : {std::pair(std::string("n"), 600U), std::pair(std::string(255, 'n'), 100U)}) {
        const DeepTree tree(directory_.At("top"), name, 300, 1);
        LimitDescriptors(100);
        const std::ptrdiff_t before = CountOpenDescriptors();
        Walk walk({});
        walk.Start(directory_.At("top"));
        std::deque<WalkItem> items;
        std::ptrdiff_t most = 0;
        int files = 0;
        for (WalkItem item; walk.Next(item); ++files) {
            items.push_back(std::move(item));
            most = std::max(most, CountOpenDescriptors() - before);
            EXPECT_TRUE(CanBeOpened(items.front()) && CanBeOpened(items.back()));
            if (items.size() > held) items.pop_front();
        }
        EXPECT_EQ(files, 600);
        EXPECT_LE(most, 80);
        EXPECT_TRUE(std::ranges::all_of(items, CanBeOpened));
        setrlimit(RLIMIT_NOFILE, &limit_);
    }
}

// So are they where each item has a directory of its own beside the road.
TEST_F(DeepWalk, ManyDirectoriesAreNotHeldByTheirItems) {
    mkdir(directory_.At("wide").c_str(), 0700);
    for (int number = 100; number < 400; ++number) {
        mkdir(directory_.At("wide/" + std::to_string(number)).c_str(), 0700);
        directory_.Write("wide/" + std::to_string(number) + "/f", "");
    }
    LimitDescriptors(100);
    const std::ptrdiff_t before = CountOpenDescriptors();
    Walk walk({});
    walk.Start(directory_.At("wide"));
    std::vector<WalkItem> items;
    for (WalkItem item; walk.Next(item);) items.push_back(item);
    EXPECT_EQ(items.size(), 300U);
    EXPECT_LE(CountOpenDescriptors() - before, 52);
    EXPECT_TRUE(std::ranges::all_of(items, CanBeOpened));
    EXPECT_EQ(items.front().path.substr(items.front().nameStart), "f");
    EXPECT_EQ(items.back().path.substr(items.back().nameStart), "399/f");
    items.clear();
    EXPECT_EQ(CountOpenDescriptors(), before);
}

TEST_F(DeepWalk, DescriptorsThatRunOutAreTakenFromTheRoad) {
    const DeepTree tree(directory_.At("top"), "n", 100, 1);
    Walk walk({});
    walk.Start(directory_.At("top"));
    WalkItem item;
    ASSERT_TRUE(walk.Next(item));
    LimitDescriptors(static_cast<rlim_t>(CountOpenDescriptors()) + 5);
    int files = 1;
    for (; walk.Next(item); ++files) EXPECT_EQ(item.met, Met::File) << item.reason;
    EXPECT_EQ(files, 200);
}

TEST_F(DeepWalk, WithoutAnyDescriptorLeftADirectoryIsAFailure) {
    const DeepTree tree(directory_.At("top"), "n", 3, 1);
    Walk walk({});
    LimitDescriptors(3);
    walk.Start(directory_.At("top"));
    WalkItem item;
    ASSERT_TRUE(walk.Next(item));
    EXPECT_EQ(item.met, Met::Failure);
    EXPECT_EQ(item.reason, "Too many open files");
    EXPECT_FALSE(walk.Next(item));
}

// ---- Directories that move while the walk is far below --------------------------------------------------------------

// Walks 100 levels down, to the file at the bottom; all but the named directory and the lowest 64 are then closed.
class MovingWalk : public DeepWalk {
 protected:
    MovingWalk() : tree_(directory_.At("top"), "n", 100, 5) {
        walk_.Start(directory_.At("top"));
        for (WalkItem item; walk_.Next(item) && item.path != tree_.PathOf(100) + "/f";) continue;
    }
    void Move(const std::string& from, const std::string& to) {
        ASSERT_EQ(rename(from.c_str(), to.c_str()), 0);
        moved_.emplace_back(to, from);
    }
    ~MovingWalk() override {  // back again, for the tree to be removed
        for (auto move = moved_.rbegin(); move != moved_.rend(); ++move) {
            rmdir(move->second.c_str());
            rename(move->first.c_str(), move->second.c_str());
        }
    }
    // What comes of the rest: the levels of "z/g", and failures.
    std::string Rest() {
        std::string rest;
        for (WalkItem item; walk_.Next(item);) {
            if (item.met == Met::File) {
                EXPECT_EQ(item.path.substr(item.path.size() - 4), "/z/g");
                rest +=
                    std::to_string(std::ranges::count(item.path.substr(directory_.At("top").size()), '/') - 2) + " ";
            } else {
                EXPECT_EQ(item.met, Met::Failure);
                rest += "level " +
                        std::to_string(std::ranges::count(item.path.substr(directory_.At("top").size()), '/')) + " " +
                        item.reason + " ";
            }
        }
        return rest;
    }
    static std::string Levels(int from, int to) {
        std::string levels;
        for (int level = from; level >= to; level -= 5) levels += std::to_string(level) + " ";
        return levels;
    }

    DeepTree tree_;
    Walk walk_ = Walk({});
    std::vector<std::pair<std::string, std::string>> moved_;
};

TEST_F(MovingWalk, WithoutMovesAllComes) { EXPECT_EQ(Rest(), Levels(100, 5)); }

TEST_F(MovingWalk, DirectoryBelowThatMovedAwayIsLeftFromTheTop) {
    Move(tree_.PathOf(21), directory_.At("away"));
    EXPECT_EQ(Rest(), Levels(100, 5));
}

TEST_F(MovingWalk, OpenDirectoriesMayMove) {
    Move(tree_.PathOf(90), directory_.At("away"));
    EXPECT_EQ(Rest(), Levels(100, 5));
}

TEST_F(MovingWalk, DirectoryThatIsReplacedLosesItsRest) {
    Move(tree_.PathOf(21), directory_.At("away"));
    Move(tree_.PathOf(18), directory_.At("elsewhere"));
    mkdir(tree_.PathOf(18).c_str(), 0700);
    EXPECT_EQ(Rest(), Levels(100, 25) +
                          "level 20 can't be opened again, and some of it was not looked at: another directory is in "
                          "its place " +
                          Levels(15, 5));
}

TEST_F(MovingWalk, DirectoryThatIsGoneLosesItsRest) {
    Move(tree_.PathOf(21), directory_.At("away"));
    Move(tree_.PathOf(8), directory_.At("elsewhere"));
    const std::string reason = " can't be opened again, and some of it was not looked at: No such file or directory ";
    EXPECT_EQ(Rest(), Levels(100, 25) + "level 20" + reason + "level 15" + reason + "level 10" + reason + Levels(5, 5));
}

}  // namespace
