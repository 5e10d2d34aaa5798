// The program over trees: order, numbers of threads, awkward names, depth, loops, and what is no file.
#include <fcntl.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/program_directory.h"

namespace {

using Json = nlohmann::json;
using Walking = ProgramDirectory;

// Paths below a directory as a walk tells them: each name in the order of its bytes, what a directory holds at its place.
void AddPathsBelow(const std::string& directory, const std::string& told, std::vector<std::string>& paths) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) names.push_back(entry.path().filename());
    for (const std::string& name : Sorted(names)) {
        if (std::filesystem::is_directory(directory + "/" + name)) {
            AddPathsBelow(directory + "/" + name, told + "/" + name, paths);
        } else {
            paths.push_back(told + "/" + name);
        }
    }
}

// Some hundred files of several formats and names: "d/00" to "d/11" with 40 each, every other one in a directory below.
void MakeTree(const std::string& directory) {
    const std::string contents[] = {"GIF89a", "%PDF-1.4", "plain text\n", "", std::string("\x01\x02\x00\x03", 4)};
    const std::string names[] = {"-", "--help", "a b", "a\nb", "\xff\xfe", "\xc3\xa9", "..x", "Z", "z"};
    for (int group = 0; group < 12; ++group) {
        const std::string low = directory + "/d/" + std::to_string(group / 10) + std::to_string(group % 10);
        std::filesystem::create_directories(low + "/below");
        for (int index = 0; index < 40; ++index) {
            const std::string name = names[index % 9] + std::to_string(index) + (index % 3 == 0 ? ".gif" : "");
            std::ofstream(low + (index % 2 == 0 ? "/" : "/below/") + name) << contents[index % 5];
        }
    }
}

// ---- Order ----------------------------------------------------------------------------------------------------------

TEST_F(Walking, OrderIsThatOfTheBytesOfTheNames) {
    MakeTree(directory_);
    std::vector<std::string> paths;
    AddPathsBelow(directory_ + "/d", "d", paths);
    ASSERT_EQ(paths.size(), 480U);
    const ProgramRun run = Run("$FIID --print0 d");
    EXPECT_EQ(PartsOf(run.output, '\0'), paths);
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(Walking, OutputIsTheSameForEveryNumberOfJobs) {
    MakeTree(directory_);
    MakeSocket("d/03/socket");
    Run("mkdir d/04/closed; chmod 0 d/04/closed; ln -s nowhere d/05/broken; head -c 5000000 /dev/zero > d/00/large");
    const std::string program = WithoutPrivileges() + "$FIID ";
    for (const char* options :
         {"", "--format ndjson", "--format json", "--format csv", "--format tsv", "--format path", "--print0", "--mime",
          "--format droid", "--format siegfried --explain", "--format tsv --hash sha256", "--unsorted --verbose",
          "--summary", "--by directory --format csv", "--format tsv --match image,unknown",
          "--format path --glob '*.gif' --exclude below"}) {
        const std::string run = program + "missing d d/03/socket d/01 " + options + " -j ";
        const ProgramRun compared = Run(run + "1 > one 2> messages; echo $?; for jobs in 2 3 8; do " + run +
                                        "$jobs > out 2> told; echo $?; cmp out one; cmp told messages; done");
        EXPECT_EQ(compared.output, "1\n1\n1\n1\n") << options;
        EXPECT_EQ(compared.messages, "") << options;
        EXPECT_NE(Run("cat one").output, "") << options;
        const std::string messages = Run("cat messages").output;
        for (const char* path : {"missing: ", "d/04/closed: ", "d/03/socket: "}) {
            EXPECT_NE(messages.find(std::string("fiid: ") + path), std::string::npos) << options << path;
        }
    }
}

TEST_F(Walking, PageIsTheSameForEveryNumberOfJobsButForItsTime) {
    MakeTree(directory_);
    const ProgramRun compared = Run(
        "for jobs in 1 2 3 8; do $FIID --format html missing d -j $jobs 2> told | tr -d 0-9 > page$jobs; cmp page$jobs "
        "page1; done; wc -l < told");
    EXPECT_EQ(compared.output, "1\n");
}

TEST_F(Walking, UnsortedHasTheSameFilesAndThoseOfADirectoryFirst) {
    MakeTree(directory_);
    const std::vector<std::string> sorted = PartsOf(Run("$FIID --print0 d").output, '\0');
    const std::vector<std::string> paths = PartsOf(Run("$FIID --unsorted --print0 d").output, '\0');
    ASSERT_EQ(paths.size(), 480U);
    EXPECT_EQ(Sorted(paths), Sorted(sorted));
    std::string directory;
    bool below = false;
    for (const std::string& path : paths) {
        if (path.substr(0, 4) != directory) below = false;
        directory = path.substr(0, 4);
        const bool isBelow = path.find("/below/") != std::string::npos;
        EXPECT_FALSE(below && !isBelow) << path;
        below = isBelow;
    }
}

TEST_F(Walking, JobsAreFrom1To1024) {
    Write("a.gif", "GIF89a");
    for (const char* jobs : {"1", "2", "1024"}) {
        EXPECT_EQ(Run(std::string("$FIID --format path a.gif --jobs ") + jobs).output, "a.gif\n") << jobs;
    }
    for (const char* jobs : {"0", "-1", "1025", "two", "''", "2x", "99999999999999999999"}) {
        const ProgramRun run = Run(std::string("$FIID a.gif -j ") + jobs);
        EXPECT_EQ(run.exitStatus, 2) << jobs;
        EXPECT_EQ(run.output, "") << jobs;
        EXPECT_NE(run.messages, "") << jobs;
    }
}

// ---- Names ----------------------------------------------------------------------------------------------------------

TEST_F(Walking, NamesOfAnyBytesAreTold) {
    MakeDirectory("d");
    const std::vector<std::string> names = {"\n", " ", "--", "-n", "\\", "\x7f", "\xc3\xa9", "\xed\xa0\x80", "\xff"};
    std::string expected;
    for (const std::string& name : names) {
        Write("d/" + name, "GIF89a");
        expected += "d/" + name + '\0';
    }
    EXPECT_EQ(Run("$FIID --print0 d").output, expected);
    EXPECT_EQ(Run("$FIID --print0 d | $FIID -0 --files-from - --print0 -j 4").output, expected);
    EXPECT_EQ(Run("cd d; printf '%s\\0' * | $FIID -0 --files-from - --format tsv | cut -f 2 | uniq -c | sed 's/^ *//'")
                  .output,
              "1 fiid\n9 1503\n");
    EXPECT_EQ(Run("cd d; $FIID --print0 -- --").output, std::string("--\0", 3));
}

// ---- Depth ----------------------------------------------------------------------------------------------------------

// Directories below each other with a file in each, whose names stand behind the directory's: a walk meets them on its
// way up. The system takes paths of 4,096 bytes; these have up to 60,000.
class DeepTree : public ProgramDirectory {
 protected:
    static constexpr int levels = 300;
    DeepTree() {
        int directory = open(directory_.c_str(), O_PATH | O_CLOEXEC);
        std::string path = "top";
        std::string name = "top";
        for (int level = 0; level < levels; ++level) {
            EXPECT_EQ(mkdirat(directory, name.c_str(), 0700), 0);
            const int below = openat(directory, name.c_str(), O_PATH | O_CLOEXEC);
            close(directory);
            directory = below;
            if (level % 5 == 4) {
                const int file = openat(directory, "z.gif", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
                EXPECT_EQ(write(file, "GIF89a", 6), 6);
                close(file);
                paths_.insert(paths_.begin(), path + "/z.gif");
            }
            name = std::string(199, static_cast<char>('a' + level % 25)) + std::to_string(level % 10);
            path += "/" + name;
        }
        close(directory);
    }
    std::vector<std::string> paths_;
};

TEST_F(DeepTree, IsWalkedDownAndUpAgain) {
    const ProgramRun run = Run("$FIID --print0 top -j 3");
    EXPECT_TRUE(PartsOf(run.output, '\0') == paths_) << run.output.size();
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_TRUE(Sorted(PartsOf(Run("$FIID --unsorted --print0 top").output, '\0')) == Sorted(paths_));
}

TEST_F(DeepTree, FilesAreAnsweredWithFewDescriptors) {
    const ProgramRun run = Run("ulimit -n 128; $FIID --format tsv --hash xxh3 top -j 4 | cut -f 2,11 | uniq -c");
    EXPECT_EQ(run.output, "      1 fiid\tsize\n     60 1503\t6\n");
    EXPECT_EQ(run.messages, "");
}

TEST_F(DeepTree, EndsWhereAskedTo) {
    const ProgramRun run = Run("$FIID --print0 --max-depth 285 top");
    EXPECT_EQ(PartsOf(run.output, '\0').size(), 57U);
    EXPECT_EQ(PartsOf(Run("$FIID --print0 --max-depth 284 top").output, '\0').size(), 56U);
}

TEST_F(Walking, MaxDepthCountsFromTheNamedDirectory) {
    Run("mkdir -p d/e/f; for file in top d/1 d/e/2 d/e/f/3; do printf GIF89a > $file; done");
    const struct {
        const char* depth;
        const char* paths;
    } cases[] = {{"0", "top\n"},
                 {"1", "top\nd/1\n"},
                 {"2", "top\nd/1\nd/e/2\n"},
                 {"3", "top\nd/1\nd/e/2\nd/e/f/3\n"},
                 {"4", "top\nd/1\nd/e/2\nd/e/f/3\n"}};
    for (const auto& [depth, paths] : cases) {
        const ProgramRun run = Run(std::string("$FIID --format path top d --max-depth ") + depth);
        EXPECT_EQ(run.output, paths) << depth;
        EXPECT_EQ(run.messages, "") << depth;
        EXPECT_EQ(run.exitStatus, 0) << depth;
    }
    EXPECT_EQ(Run("$FIID --format path --max-depth 1 d/e").output, "d/e/2\n");
    for (const char* depth : {"-1", "x", "''", "1.5"}) {
        EXPECT_EQ(Run(std::string("$FIID d --max-depth ") + depth).exitStatus, 2) << depth;
    }
}

// ---- Links, loops, file systems -------------------------------------------------------------------------------------

TEST_F(Walking, LoopsOfLinksArePassedOver) {
    Run("mkdir -p d/e; printf GIF89a > d/e/a; ln -s .. d/e/up; ln -s self d/self; ln -s two d/one; ln -s one d/two; "
        "ln -s ../d d/again");
    const ProgramRun run = Run("$FIID --format path d");
    EXPECT_EQ(run.output, "d/e/a\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
    const ProgramRun named = Run("$FIID --format path d/self d/e/up");
    EXPECT_EQ(named.output, "d/e/up/e/a\n");
    EXPECT_EQ(named.messages.substr(0, 14), "fiid: d/self: ");
    EXPECT_EQ(named.exitStatus, 1);
}

TEST_F(Walking, LinksToFilesAreLookedAt) {
    Run("mkdir d; printf GIF89a > a; ln -s ../a d/link; ln -s link d/second");
    EXPECT_EQ(Run("$FIID --format tsv d | cut -f 1,2").output, "path\tfiid\nd/link\t1503\nd/second\t1503\n");
}

TEST_F(Walking, OtherFileSystemsAreLeftOutWhenAskedTo) {
    Run("mkdir -p d/other; printf GIF89a > d/a; printf GIF89a > d/other/b");
    EXPECT_EQ(Run("$FIID --format path --one-file-system d").output, "d/a\nd/other/b\n");
    // Where a test may mount: what lies under the mount is another file system's.
    const std::string mounted = "unshare -m sh -c 'mount -t tmpfs none d/other && printf GIF89a > d/other/c && ";
    if (Run(mounted + "true'").exitStatus != 0) return;
    EXPECT_EQ(Run(mounted + "\"$0\" --format path d' $FIID").output, "d/a\nd/other/c\n");
    const ProgramRun run = Run(mounted + "\"$0\" --format path --one-file-system d d/other' $FIID");
    EXPECT_EQ(run.output, "d/a\nd/other/c\n") << "a named path is walked on its own file system";
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(Walking, DirectoryThatIsItsOwnAncestorIsAFailure) {
    Run("mkdir -p d/e/loop; printf GIF89a > d/e/a; printf GIF89a > d/z");
    const std::string mounted = "unshare -m sh -c 'mount --bind d d/e/loop && ";
    if (Run(mounted + "true'").exitStatus != 0) return;
    const ProgramRun run = Run(mounted + "\"$0\" --format path d' $FIID");
    EXPECT_EQ(run.output, "d/e/a\nd/z\n");
    EXPECT_NE(run.messages.find("fiid: d/e/loop: is a loop: "), std::string::npos);
    EXPECT_EQ(run.exitStatus, 1);
}

// ---- What is no file ------------------------------------------------------------------------------------------------

TEST_F(Walking, WhatIsNoFileIsPassedOverBelowADirectory) {
    Run("mkdir d; printf GIF89a > d/a.gif; mkfifo d/fifo; ln -s nowhere d/broken; ln -s fifo d/to_fifo");
    MakeSocket("d/socket");
    for (const char* format : {"path", "tsv --fields path", "json", "droid", "siegfried"}) {
        const ProgramRun run = Run(std::string("$FIID d --format ") + format);
        EXPECT_NE(run.output.find("a.gif"), std::string::npos) << format;
        for (const char* name : {"fifo", "broken", "socket"}) {
            EXPECT_EQ(run.output.find(name), std::string::npos) << format << name;
        }
        EXPECT_EQ(run.messages, "") << format;
    }
    EXPECT_EQ(Run("$FIID d").exitStatus, 0);
    const ProgramRun verbose = Run("$FIID --format path --verbose d");
    EXPECT_EQ(verbose.output, "d/a.gif\n");
    EXPECT_EQ(verbose.exitStatus, 0);
    for (const char* path : {"d/fifo", "d/broken", "d/socket", "d/to_fifo"}) {
        EXPECT_NE(verbose.messages.find(path), std::string::npos) << path;
    }
    EXPECT_EQ(verbose.messages.find("a.gif"), std::string::npos);
    EXPECT_EQ(Run("$FIID --format path -v d").messages, verbose.messages);
}

TEST_F(Walking, WhatIsNoFileIsAFailureWhereItIsNamed) {
    Run("ln -s nowhere broken; printf GIF89a > a.gif");
    MakeSocket("socket");
    for (const char* path : {"broken", "socket", "/dev/null", "missing", "a.gif/b"}) {
        const ProgramRun run = Run("$FIID --format path " + std::string(path) + " a.gif");
        EXPECT_EQ(run.output, "a.gif\n") << path;
        EXPECT_EQ(run.messages.substr(0, 6 + std::string(path).size() + 2), "fiid: " + std::string(path) + ": ");
        EXPECT_EQ(run.exitStatus, 1) << path;
        const ProgramRun listed =
            Run("printf '%s\\na.gif\\n' " + std::string(path) + " | $FIID --files-from - --print0");
        EXPECT_EQ(listed.output, std::string("a.gif\0", 6)) << path;
        EXPECT_EQ(listed.messages, run.messages) << path;
    }
}

TEST_F(Walking, NamedFifoIsReadToItsEndByEveryNumberOfJobs) {
    Run("mkfifo fifo; printf GIF89a > a.gif");
    for (const char* jobs : {"1", "4"}) {
        const ProgramRun run =
            Run("timeout 20 bash -c '{ printf %%PDF-; printf 1.4; } > fifo' & $FIID --format tsv a.gif fifo a.gif -j " +
                std::string(jobs) + " | cut -f 1,2,11");
        EXPECT_EQ(run.output, "path\tfiid\tsize\na.gif\t1503\t6\nfifo\t1557\t8\na.gif\t1503\t6\n");
    }
}

TEST_F(Walking, UnreadableDirectoryIsAFailureAndTheOthersGetTheirAnswers) {
    Run("mkdir -p d/a d/closed d/z; for file in d/a/1 d/closed/2 d/secret d/z/3; do printf GIF89a > $file; done; "
        "chmod 0 d/closed d/secret");
    const ProgramRun run = Run(WithoutPrivileges() + "$FIID --format path d");
    EXPECT_EQ(run.output, "d/a/1\nd/z/3\n");
    EXPECT_EQ(run.messages, "fiid: d/closed: Permission denied\nfiid: d/secret: Permission denied\n");
    EXPECT_EQ(run.exitStatus, 1);
    // A directory whose names may be read, but not what lies behind them.
    Run("chmod 400 d/closed");
    const ProgramRun listed = Run(WithoutPrivileges() + "$FIID --format tsv d | cut -f 1,6");
    EXPECT_EQ(listed.output,
              "path\terror\nd/a/1\t\nd/closed/2\tPermission denied\nd/secret\tPermission denied\nd/z/3\t\n");
}

TEST_F(Walking, ChangingTreesLoseNothingThatStays) {
    Run("mkdir -p d/stay; for index in {1..60}; do printf GIF89a > d/stay/$index; printf GIF89a > d/$index.z; done");
    const ProgramRun run = Run(
        "{ while :; do mkdir -p d/come/below; for index in {1..40}; do : > d/come/$index; : > d/come/below/$index; "
        "done;"
        " rm -rf d/come; done; } 2> /dev/null & for turn in 1 2 3 4 5 6; do $FIID --format tsv d 2> /dev/null > out; "
        "status=$?; [ $status -le 1 ] || echo status $status; grep -c 1503 out; grep -v come out | wc -l; done; kill "
        "$!");
    std::string expected;
    for (int turn = 0; turn < 6; ++turn) expected += "120\n121\n";
    EXPECT_EQ(run.output, expected);
}

// ---- Lists ----------------------------------------------------------------------------------------------------------

TEST_F(Walking, ListsHoldDirectoriesAndFilesInTheirOrder) {
    Run("mkdir d; printf GIF89a > d/2; printf GIF89a > d/1; printf GIF89a > $'z\\ny'; printf "
        "'d\\0missing\\0z\\ny\\0d/2' > list");
    for (const char* jobs : {"1", "2", "8"}) {
        const ProgramRun run = Run("$FIID -0 --files-from list --print0 d/1 -j " + std::string(jobs));
        EXPECT_EQ(Sorted(PartsOf(run.output, '\0')), (std::vector<std::string>{"d/1", "d/1", "d/2", "d/2", "z\ny"}));
        const std::vector<std::string> paths = PartsOf(run.output, '\0');
        const std::vector<std::string> listed = {"d/1", "d/2", "z\ny", "d/2"};
        EXPECT_NE(std::search(paths.begin(), paths.end(), listed.begin(), listed.end()), paths.end());
        EXPECT_EQ(run.messages, "fiid: missing: No such file or directory\n");
        EXPECT_EQ(run.exitStatus, 1);
    }
}

TEST_F(Walking, ProgramThatWritesAPathGetsItsRecordWithManyJobs) {
    Run("mkdir d; printf GIF89a > d/a.gif; printf %%PDF-1.4 > b.pdf; mkfifo fifo");
    // read gives up after a minute, where it would wait for ever.
    const ProgramRun run = Run(
        "coproc $FIID --format tsv --fields path,fiid,error --files-from - -j 4; IFS= read -t 60 -r -u ${COPROC[0]} "
        "line; for path in d b.pdf missing d/a.gif b.pdf; do echo $path >&${COPROC[1]}; IFS= read -t 60 -r -u "
        "${COPROC[0]} line || break; echo \"$line\"; done; kill $!");
    EXPECT_EQ(run.output,
              "d/a.gif\t1503\t\nb.pdf\t1557\t\nmissing\t\tNo such file or directory\nd/a.gif\t1503\t\nb.pdf\t1557\t\n");
}

TEST_F(Walking, FirstRecordsOfAWalkWaitForNoOthers) {
    Run("mkdir d; for index in {1..5}; do printf GIF89a > d/$index; done; mkfifo z");
    // Nobody writes into the FIFO before the records in front of it are there.
    const ProgramRun run =
        Run("$FIID --format path d missing z -j 4 > out & for turn in {1..6000}; do [ $(wc -l < out) = 5 ] && break; "
            "sleep 0.01; "
            "done; cat out; timeout 20 bash -c 'printf GIF89a > z'; wait $!; tail -n 1 out");
    EXPECT_EQ(run.output, "d/1\nd/2\nd/3\nd/4\nd/5\nz\n");
}

}  // namespace
