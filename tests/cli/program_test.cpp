// The program: paths, directories, lists, standard input, output formats, exit statuses.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <vector>

#include "fiid/detect.h"
#include "support/run_program.h"

namespace {

using Json = nlohmann::json;

class Program : public testing::Test {
 protected:
    Program() {
        std::string pattern = testing::TempDir() + "fiid-program-" + std::string(6, 'X');
        base_ = mkdtemp(pattern.data());
        directory_ = base_ + "/files";
        mkdir(directory_.c_str(), 0700);
    }
    ~Program() override {
        static_cast<void>(std::system(("chmod -R u+rwx '" + base_ + "'; rm -rf '" + base_ + "'").c_str()));
    }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(directory_ + "/" + name, std::ios::binary) << bytes;
    }
    ProgramRun Run(const std::string& command) const { return RunShell(directory_, command); }
    // Gives the files of the directory a time: 2001-02-03T04:05:06Z.
    void SetTimes() const { Run("touch -d @981173106 -- *"); }

    std::string base_;
    std::string directory_;
};

std::string NameOf(const std::string& fiid) {
    const ProgramRun run = RunShell(".", "$FIID --formats --format ndjson");
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
        const Json json = Json::parse(line);
        if (std::to_string(json["fiid"].get<int>()) == fiid) return json["name"];
    }
    return "no such format";
}

// ---- Paths ----------------------------------------------------------------------------------------------------------

TEST_F(Program, TellsAFile) {
    Write("a.gif", "GIF89a");
    const ProgramRun run = Run("$FIID a.gif");
    EXPECT_EQ(run.output, "a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(Program, WalksDirectoriesInSortedOrder) {
    Run("mkdir -p d/b d/a; for f in d/b.gif d/b/z d/a/y d/B d/.hidden d/_; do printf GIF89a > $f; done");
    const ProgramRun run = Run("$FIID d | sed 's/:.*//'");
    EXPECT_EQ(run.output, "d/.hidden\nd/B\nd/_\nd/a/y\nd/b/z\nd/b.gif\n");
}

TEST_F(Program, FollowsLinksToDirectoriesOnlyWhenNamed) {
    Run("mkdir -p d/e; printf GIF89a > d/e/f; ln -s .. d/e/up; ln -s e/f d/l; ln -s d top");
    EXPECT_EQ(Run("$FIID d | sed 's/:.*//'").output, "d/e/f\nd/l\n");
    EXPECT_EQ(Run("$FIID top | sed 's/:.*//'").output, "top/e/f\ntop/l\n");
}

TEST_F(Program, EmptyDirectoryGivesNothing) {
    Run("mkdir d");
    const ProgramRun run = Run("$FIID d");
    EXPECT_EQ(run.output + run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(Program, EmptyFileIsTextToTheSignatureTable) {
    Write("empty", "");
    EXPECT_EQ(Run("$FIID empty").output, "empty: Empty file [4022, 20000]\n");
    EXPECT_EQ(Run("$FIID --no-text empty").output, "empty: Empty file [1999, 20000]\n");
    EXPECT_EQ(Run("$FIID --no-further empty").output, "empty: " + NameOf("4022") + " [4022]\n");
    EXPECT_EQ(Run("$FIID --no-further --no-text empty").output, "empty: " + NameOf("1999") + " [1999]\n");
}

TEST_F(Program, FileOf5GiBIsIdentified) {
    Run("printf GIF89a > large; truncate -s 5G large; truncate -s 5G zeros");
    EXPECT_EQ(Run("$FIID --format tsv large zeros | cut -f 1,2").output, "path\tfiid\nlarge\t1503\nzeros\t1999\n");
}

// ---- Failures -------------------------------------------------------------------------------------------------------

TEST_F(Program, UnreadablePathsGetAMessageAndTheOthersTheirAnswers) {
    Write("a.gif", "GIF89a");
    Run("ln -s nowhere dangling; mkdir d; mkfifo d/fifo");
    const ProgramRun run = Run("$FIID missing dangling a.gif d /dev/null");
    EXPECT_EQ(run.output, "a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.messages,
              "fiid: missing: No such file or directory\n"
              "fiid: dangling: is a symbolic link that leads nowhere\n"
              "fiid: /dev/null: is a character device, not a file\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, SocketGetsAMessage) {
    ASSERT_EQ(mknod((directory_ + "/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    const ProgramRun run = Run("$FIID --format tsv socket . | cut -f 1,2,6");
    EXPECT_EQ(run.output, "path\tfiid\terror\nsocket\t\tis a socket, not a file\n");
    EXPECT_EQ(run.messages, "fiid: socket: is a socket, not a file\n");
    EXPECT_EQ(Run("$FIID socket").exitStatus, 1);
    EXPECT_EQ(Run("$FIID --files-from socket").messages, "fiid: socket: No such device or address\n");
}

TEST_F(Program, WalkPassesOverWhatIsNoFile) {
    ASSERT_EQ(mknod((directory_ + "/socket").c_str(), S_IFSOCK | 0600, 0), 0);
    Write("a.gif", "GIF89a");
    Run("mkfifo fifo; ln -s fifo link; ln -s nowhere dangling; ln -s /dev/null null");
    const ProgramRun run = Run("$FIID .");
    EXPECT_EQ(run.output, "./a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(Program, FileWithoutPermissionGetsAMessage) {
    if (geteuid() == 0) {
        // Root may read everything; a file whose reads fail tells the same road.
        const ProgramRun run = Run("$FIID --format tsv /proc/self/mem | cut -f 1,2,6");
        EXPECT_EQ(run.output, "path\tfiid\terror\n/proc/self/mem\t\tInput/output error\n");
        EXPECT_EQ(run.messages, "fiid: /proc/self/mem: Input/output error\n");
        return;
    }
    Write("secret", "GIF89a");
    Run("mkdir closed; chmod 0 secret closed");
    const ProgramRun run = Run("$FIID secret closed");
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.messages, "fiid: secret: Permission denied\nfiid: closed: Permission denied\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, WrongUsageIs2) {
    for (const char* arguments : {"", "--nonsense a", "--format xml a", "--formats a", "-0 a", "- -",
                                  "--files-from - -", "--files-from", "--format"}) {
        const ProgramRun run = Run(std::string("$FIID ") + arguments + " < /dev/null");
        EXPECT_EQ(run.exitStatus, 2) << arguments;
        EXPECT_EQ(run.output, "") << arguments;
        EXPECT_NE(run.messages, "") << arguments;
    }
}

TEST_F(Program, HelpAndVersionAre0) {
    const ProgramRun help = Run("$FIID --help");
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_NE(help.output.find("Examples:"), std::string::npos);
    EXPECT_EQ(help.messages, "");
    // What a program that speaks with fiid has to know.
    for (const char* fact :
         {"serve such a program", "text writes failures", "0 to n records", "two seconds", "TMPDIR", "65,536 bytes"}) {
        EXPECT_NE(help.output.find(fact), std::string::npos) << fact;
    }
    const ProgramRun version = Run("$FIID --version");
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_EQ(version.output.substr(0, 5), "fiid ");
}

TEST_F(Program, ClosedPipeEndsItQuietly) {
    Write("list", [] {
        std::string list;
        for (int index = 0; index < 20000; ++index) list += "a.gif\n";
        return list;
    }());
    Write("a.gif", "GIF89a");
    EXPECT_EQ(Run("$FIID --files-from list | head -n 1").messages, "");
    EXPECT_EQ(Run("trap '' PIPE; $FIID --files-from list | head -n 1").messages, "");
}

TEST_F(Program, FullDiskIsAFailure) {
    Write("a.gif", "GIF89a");
    const ProgramRun run = Run("$FIID a.gif > /dev/full");
    EXPECT_EQ(run.messages, "fiid: standard output: No space left on device\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, FullDiskFailsHelpVersionAndFormatsToo) {
    for (const char* option : {"--help", "--version", "--formats", "--formats --format json"}) {
        const ProgramRun run = Run(std::string("$FIID ") + option + " > /dev/full");
        EXPECT_EQ(run.messages, "fiid: standard output: No space left on device\n") << option;
        EXPECT_EQ(run.exitStatus, 1) << option;
    }
}

TEST_F(Program, ClosedStandardInputIsAFailure) {
    const ProgramRun run = Run("$FIID - <&-");
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.messages, "fiid: -: standard input is closed\n");
    EXPECT_EQ(run.exitStatus, 1);
    const ProgramRun list = Run("$FIID --files-from - <&-");
    EXPECT_EQ(list.messages, "fiid: -: standard input is closed\n");
    EXPECT_EQ(list.exitStatus, 1);
    EXPECT_EQ(Run("$FIID - 0> written").messages, "fiid: -: standard input is closed\n");
    EXPECT_EQ(Run("$FIID --format ndjson - <&-").output, "{\"path\":\"-\",\"error\":\"standard input is closed\"}\n");
    EXPECT_EQ(Run("$FIID --files-from - 0> written").messages, "fiid: -: standard input is closed\n");
}

TEST_F(Program, ClosedStandardOutputIsAFailure) {
    Write("a.gif", "GIF89a");
    for (const char* arguments : {"a.gif", "--help", "--version", "--formats"}) {
        const ProgramRun run = Run(std::string("$FIID ") + arguments + " >&-");
        EXPECT_EQ(run.messages, "fiid: standard output is closed\n") << arguments;
        EXPECT_EQ(run.exitStatus, 1) << arguments;
    }
}

TEST_F(Program, ClosedStandardErrorLosesTheMessagesAlone) {
    Write("a.gif", "GIF89a");
    const ProgramRun run = Run("$FIID a.gif missing 2>&-");
    EXPECT_EQ(run.output, "a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(Run("$FIID a.gif <&- >&- 2>&-").exitStatus, 1);
    EXPECT_EQ(ReadWholeFile(directory_ + "/a.gif"), "GIF89a");
}

// ---- Lists and standard input ---------------------------------------------------------------------------------------

TEST_F(Program, ReadsAListOfPaths) {
    Run("mkdir d; printf GIF89a > d/b; printf GIF89a > 'a  b'; printf %%PDF-1.4 > c");
    Write("list", "a  b\n\nd\nc");
    EXPECT_EQ(Run("$FIID --files-from list --format tsv | cut -f 1,2").output,
              "path\tfiid\na  b\t1503\nd/b\t1503\nc\t1557\n");
    EXPECT_EQ(Run("printf 'c\\na  b\\n' | $FIID --files-from - --format tsv | cut -f 1,2").output,
              "path\tfiid\nc\t1557\na  b\t1503\n");
}

TEST_F(Program, ReadsAListSeparatedByNul) {
    Run("printf GIF89a > $'a\\nb'; printf %%PDF-1.4 > c");
    EXPECT_EQ(Run("printf 'a\\nb\\0c\\0' | $FIID -0 --files-from - --format tsv | cut -f 1,2").output,
              "path\tfiid\na\\nb\t1503\nc\t1557\n");
    EXPECT_EQ(Run("find . -type f -print0 | sort -z | $FIID --null --files-from - --format ndjson | wc -l").output,
              "2\n");
}

TEST_F(Program, ListSeparatedByNulNeedsItsOption) {
    Run("printf GIF89a > a; printf GIF89a > b");
    const ProgramRun run = Run("printf 'a\\0b\\0\\na\\n' | $FIID --files-from - --format ndjson");
    std::istringstream lines(run.output);
    std::string line;
    std::getline(lines, line);
    const std::string reason = "a path can't hold a NUL byte; -0 reads a list that is separated by them";
    EXPECT_EQ(Json::parse(line), Json({{"path", std::string("a\0b\0", 4)}, {"error", reason}}));
    std::getline(lines, line);
    EXPECT_EQ(Json::parse(line)["path"], "a");
    EXPECT_EQ(run.messages, "fiid: a\\x00b\\x00: " + reason + "\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, EntryOfAListThatIsTooLongIsAFailureAndTheNextIsRead) {
    Write("a.gif", "GIF89a");
    const std::string longest(65536, 'x');
    Write("list", longest + "\n" + longest + "x\n" + longest + longest + "\na.gif\n" + longest + longest);
    const ProgramRun run = Run("$FIID --format tsv --files-from list | cut -f 1,2,6");
    const std::string tooLong = longest.substr(0, 4096) + "\t\tis too long for a path\n";
    EXPECT_EQ(run.output, "path\tfiid\terror\n" + longest + "\t\tFile name too long\n" + tooLong + tooLong +
                              "a.gif\t1503\t\n" + tooLong);
    EXPECT_EQ(Run("$FIID --files-from list").exitStatus, 1);
}

TEST_F(Program, NulBytesOfAnEntryAreToldBeforeItsLength) {
    Write("list", "a" + std::string(70000, '\0'));
    EXPECT_EQ(Run("$FIID --format ndjson --files-from list | grep -o '\"error\".*'").output,
              "\"error\":\"a path can't hold a NUL byte; -0 reads a list that is separated by them\"}\n");
}

TEST_F(Program, MissingListIsAFailure) {
    Write("a.gif", "GIF89a");
    const ProgramRun run = Run("$FIID --files-from missing a.gif");
    EXPECT_EQ(run.output, "a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.messages, "fiid: missing: No such file or directory\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, ReadsStandardInput) {
    Write("a.gif", "GIF89a");
    EXPECT_EQ(Run("cat a.gif | $FIID -").output, "-: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(Run("cat a.gif | $FIID --format tsv - | cut -f 11,12 | tail -n 1").output, "6\t\n") << "no time";
    EXPECT_EQ(Run("$FIID - < a.gif").output, "-: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(Run("$FIID - < /dev/null").output, "-: Empty file [4022, 20000]\n");
    EXPECT_EQ(Run("cat a.gif | $FIID a.gif - | wc -l").output, "2\n");
}

TEST_F(Program, SpoolsLargeStandardInput) {
    // An ID3v1 tag, 128 bytes before the end of 20 MB.
    const ProgramRun run =
        Run("{ head -c 20000000 /dev/zero; printf TAG; head -c 125 /dev/zero; } | $FIID --format tsv - | cut -f 2");
    EXPECT_EQ(run.output, "fiid\n1708\n");
}

TEST_F(Program, WithoutATemporaryDirectorySaysSo) {
    const ProgramRun run = Run("printf x | TMPDIR=/nonexistent $FIID -");
    EXPECT_EQ(run.messages, "fiid: -: /nonexistent: no temporary file: No such file or directory\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, FileOnStandardInputIsNotCopied) {
    Write("a.gif", "GIF89a");
    Run("printf GIF89a > large; truncate -s 10G large");
    EXPECT_EQ(Run("TMPDIR=/nonexistent $FIID - < a.gif").output, "-: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(Run("TMPDIR=/nonexistent $FIID - < large").output, "-: " + NameOf("1503") + " [1503]\n");
}

TEST_F(Program, FileOnStandardInputIsTakenFromItsStart) {
    Write("a.gif", "GIF89a");
    EXPECT_EQ(Run("{ read -r -N 3; $FIID -; } < a.gif").output, "-: " + NameOf("1503") + " [1503]\n");
}

TEST_F(Program, DirectoryOnStandardInputIsAFailure) {
    const ProgramRun run = Run("$FIID - < .");
    EXPECT_EQ(run.messages, "fiid: -: standard input: Is a directory\n");
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, NamedFifoIsReadToItsEnd) {
    Write("a.gif", "GIF89a");
    Run("mkfifo fifo; ln -s fifo link");
    const std::string answer = ": " + NameOf("1503") + " [1503]\n";
    EXPECT_EQ(Run("cat a.gif > fifo & $FIID fifo").output, "fifo" + answer);
    EXPECT_EQ(Run("cat a.gif > fifo & $FIID link").output, "link" + answer);
    EXPECT_EQ(Run("cat a.gif > fifo & echo fifo > list; $FIID --files-from list").output, "fifo" + answer);
    EXPECT_EQ(Run("$FIID <(cat a.gif) | sed 's/.*: /: /'").output, answer);
    EXPECT_EQ(Run("cat a.gif > fifo & TMPDIR=/nonexistent $FIID fifo; cat fifo > /dev/null & : > fifo; wait").messages,
              "fiid: fifo: /nonexistent: no temporary file: No such file or directory\n");
}

TEST_F(Program, WalkLeavesTheWriterOfAFifoAlone) {
    Run("mkdir d; mkfifo d/fifo");
    const ProgramRun run = Run("printf GIF89a > d/fifo & $FIID d; cat d/fifo; wait");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.output, "GIF89a");
}

TEST_F(Program, FileNamedLikeAnOptionIsReached) {
    Run("printf GIF89a > ./-; printf GIF89a > ./--help");
    EXPECT_EQ(Run("$FIID ./- ./--help -- --help | wc -l").output, "3\n");
}

// ---- Who reads the output, and when ---------------------------------------------------------------------------------

// What each write to standard output held: a socket that keeps the bounds of messages takes the place of a pipe.
std::vector<std::string> WritesOf(const std::string& directory, const std::vector<std::string>& arguments) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return {"no socket"};
    const pid_t child = fork();
    if (child == 0) {
        std::vector<const char*> words = {FIID_PROGRAM};
        for (const std::string& argument : arguments) words.push_back(argument.c_str());
        words.push_back(nullptr);
        const int silence = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (chdir(directory.c_str()) != 0 || dup2(ends[1], STDOUT_FILENO) < 0 || dup2(silence, STDERR_FILENO) < 0)
            _exit(9);
        execv(FIID_PROGRAM, const_cast<char* const*>(words.data()));
        _exit(9);
    }
    close(ends[1]);
    std::vector<std::string> writes;
    std::string block(1 << 20, '\0');
    for (ssize_t came = 0; (came = recv(ends[0], block.data(), block.size(), 0)) > 0;) {
        writes.emplace_back(block, 0, static_cast<std::size_t>(came));
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return writes;
}

std::vector<std::string> PathsOfManyLengths(int count) {
    std::vector<std::string> paths;
    for (int index = 0; index < count; ++index) {
        std::string path;
        for (int steps = index % 100; steps > 0; --steps) path += "./";
        paths.push_back(path + "a.gif");
    }
    return paths;
}

std::string LinesOf(const std::vector<std::string>& paths, const std::string& lineEnd) {
    std::string lines;
    for (const std::string& path : paths) lines += path + lineEnd + "\n";
    return lines;
}

TEST_F(Program, WritesEndBehindWholeRecordsAndFitIntoAPipe) {
    // No failures: their messages would push the records out.
    Write("list", LinesOf(PathsOfManyLengths(1000), ""));
    Write("a.gif", "GIF89a");
    for (const char* format : {"text", "ndjson", "csv", "tsv", "json"}) {
        const std::vector<std::string> writes = WritesOf(directory_, {"--format", format, "--files-from", "list"});
        EXPECT_GT(writes.size(), 10U) << format;
        for (const std::string& text : writes) {
            EXPECT_LE(text.size(), 4096U) << format;
            const bool whole = text.ends_with("\n") || (std::string(format) == "json" && text.ends_with("}"));
            EXPECT_TRUE(whole) << format << ": ..." << text.substr(text.size() > 80 ? text.size() - 80 : 0);
        }
    }
}

TEST_F(Program, RecordLargerThanAPipeTakesGoesInOneWrite) {
    const std::string path(6000, 'x');
    Write("a.gif", "GIF89a");
    const std::vector<std::string> writes = WritesOf(directory_, {"--format", "tsv", "a.gif", path, "a.gif"});
    ASSERT_EQ(writes.size(), 3U);  // a message is preceded by what was gathered, the failed record among what follows
    EXPECT_EQ(writes[1], path + "\t\t\t\t\tFile name too long\t\t\t\t\t\t\n");
}

TEST_F(Program, ProcessesThatShareAnOutputDoNotTearRecords) {
    Write("a.gif", "GIF89a");
    const std::string run = "yes a.gif | head -n 20000 | xargs -n 1000 -P 2 $FIID";
    const std::string count = " | LC_ALL=C sort | uniq -c | sed 's/^ *//'";
    const std::string answer = "20000 a.gif: " + NameOf("1503") + " [1503]\n";
    EXPECT_EQ(Run(run + count).output, answer);
    EXPECT_EQ(Run(run + " > out; cat out" + count).output, answer);
    EXPECT_EQ(Run(run + " >> appended; cat appended" + count).output, answer);
}

TEST_F(Program, AnswersAPathBeforeTheNextIsWritten) {
    Write("a.gif", "GIF89a");
    Write("b.pdf", "%PDF-1.4");
    // read gives up after a minute, where it would wait for ever.
    const std::string talk =
        "{ IFS= read -t 60 -r -u $from line; echo \"$line\"; for path in a.gif b.pdf missing; do echo $path >&$to;"
        " IFS= read -t 60 -r -u $from line || break; echo \"$line\"; done; } > said; cut -f 1,2,6 said";
    const std::string answers =
        "path\tfiid\terror\na.gif\t1503\t\nb.pdf\t1557\t\nmissing\t\tNo such file or directory\n";
    EXPECT_EQ(Run("coproc $FIID --format tsv --files-from -; from=${COPROC[0]}; to=${COPROC[1]}; " + talk + "; kill $!")
                  .output,
              answers);
    EXPECT_EQ(Run("mkfifo paths answers; exec {to}<>paths {from}<>answers; "
                  "$FIID --format tsv --files-from paths > answers & " +
                  talk + "; kill $!")
                  .output,
              answers);
}

TEST_F(Program, SignalEndsBehindAWholeRecordAndIsPassedOn) {
    Write("a.gif", "GIF89a");
    Run("mkfifo paths");
    struct {
        const char* signal;
        int exitStatus;
    } const signals[] = {{"INT", 128 + SIGINT}, {"TERM", 128 + SIGTERM}, {"HUP", 128 + SIGHUP}};
    for (const auto& [signal, exitStatus] : signals) {
        // With job control (set -m) the shell does not let a command in the background ignore SIGINT.
        const std::string wait = "for turn in {1..6000}; do grep -q gif out && break; sleep 0.01; done; kill -" +
                                 std::string(signal) + " $!; wait $!";
        const ProgramRun json =
            Run("set -m; rm -f out; exec 9<>paths; $FIID --format json --files-from - < paths > out & "
                "echo a.gif >&9; " +
                wait + "; status=$?; cat out; exit $status");
        EXPECT_EQ(Json::parse(json.output).size(), 1U) << signal;
        EXPECT_EQ(json.exitStatus, exitStatus) << signal;
        // Waiting for a FIFO: the message in front of it has pushed out the first record.
        const ProgramRun fifo = Run("set -m; rm -f out; exec 9<>paths; $FIID a.gif missing paths a.gif > out & " +
                                    wait + "; status=$?; cat out; exit $status");
        EXPECT_EQ(fifo.output, "a.gif: " + NameOf("1503") + " [1503]\n") << signal;
        EXPECT_EQ(fifo.exitStatus, exitStatus) << signal;
    }
}

// The state of a process as ps tells it: S for one that sleeps until something comes.
char StateOf(pid_t process) {
    const std::string line = ReadWholeFile("/proc/" + std::to_string(process) + "/stat");
    const std::size_t name = line.rfind(") ");
    return name == std::string::npos ? '?' : line[name + 2];
}

bool IsFull(int pipeEnd) {
    pollfd room = {pipeEnd, POLLOUT, 0};
    return poll(&room, 1, 0) == 0;
}

// Looks a hundred times a second, for a minute at most, whether something has come about.
template <typename Condition>
bool ComesAbout(Condition holds) {
    for (int turn = 0; turn < 6000; ++turn) {
        if (holds()) return true;
        usleep(10000);
    }
    return false;
}

// How a process ended; one that does not end is killed.
int EndOf(pid_t process) {
    int status = 0;
    if (!ComesAbout([&] { return waitpid(process, &status, WNOHANG) == process; })) {
        kill(process, SIGKILL);
        waitpid(process, &status, 0);
    }
    return status;
}

std::string ReadToTheEnd(int descriptor) {
    std::string bytes;
    char block[4096];
    for (ssize_t came = 0; (came = read(descriptor, block, sizeof(block))) > 0;) {
        bytes.append(block, static_cast<std::size_t>(came));
    }
    return bytes;
}

TEST_F(Program, OneSignalEndsItBehindAWholeRecordWhenNobodyReads) {
    Write("a.gif", "GIF89a");
    const std::vector<std::string> paths = PathsOfManyLengths(4000);
    const std::string answers = LinesOf(paths, ": " + NameOf("1503") + " [1503]");
    Write("list", LinesOf(paths, ""));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(directory_.c_str()) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) _exit(9);
        execl(FIID_PROGRAM, FIID_PROGRAM, "--files-from", "list", nullptr);
        _exit(9);
    }
    EXPECT_TRUE(ComesAbout([&] { return IsFull(ends[1]) && StateOf(child) == 'S'; }));
    kill(child, SIGTERM);
    const int status = EndOf(child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    close(ends[1]);
    const std::string output = ReadToTheEnd(ends[0]);
    close(ends[0]);
    EXPECT_NE(output, "");
    EXPECT_TRUE(output.ends_with("\n"));
    EXPECT_TRUE(answers.starts_with(output));
}

// ---- Output formats -------------------------------------------------------------------------------------------------

TEST_F(Program, WritesNdjson) {
    Write("a.gif", "GIF89a");
    SetTimes();
    const ProgramRun run = Run("$FIID --no-further --format ndjson a.gif missing");
    std::istringstream lines(run.output);
    std::string first;
    std::string second;
    std::getline(lines, first);
    std::getline(lines, second);
    EXPECT_EQ(Json::parse(first), Json({{"path", "a.gif"},
                                        {"fiid", 1503},
                                        {"name", NameOf("1503")},
                                        {"mime", "image/gif"},
                                        {"puid", {"fmt/3", "fmt/4"}},
                                        {"basis", "signature"},
                                        {"warning", {"several"}},
                                        {"size", 6},
                                        {"mtime", "2001-02-03T04:05:06Z"}}));
    EXPECT_EQ(Json::parse(second), Json({{"path", "missing"}, {"error", "No such file or directory"}}));
    EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(Program, WritesJson) {
    Write("a.gif", "GIF89a");
    const Json json = Json::parse(Run("$FIID --format json a.gif missing a.gif").output);
    ASSERT_EQ(json.size(), 3U);
    EXPECT_EQ(json[0]["fiid"], 1503);
    EXPECT_EQ(json[1]["error"], "No such file or directory");
    EXPECT_EQ(json[2], json[0]);
    Run("mkdir d");
    EXPECT_EQ(Run("$FIID --format json d").output, "[]\n");
}

TEST_F(Program, WritesCsv) {
    Run("printf GIF89a > 'a,b'; printf GIF89a > 'q\"q'");
    SetTimes();
    const std::string rest =
        "1503," + NameOf("1503") + ",image/gif,fmt/3 fmt/4,,,,signature,several,6,2001-02-03T04:05:06Z\r\n";
    const ProgramRun run = Run("$FIID --no-further --format csv 'a,b' 'q\"q' missing");
    EXPECT_EQ(run.output, "path,fiid,name,mime,puid,error,further,version,basis,warning,size,mtime\r\n\"a,b\"," + rest +
                              "\"q\"\"q\"," + rest + "missing,,,,,No such file or directory,,,,,,\r\n");
}

TEST_F(Program, WritesTsv) {
    Run("printf GIF89a > $'a\\tb\\\\c\\rd'");
    SetTimes();
    const ProgramRun run = Run("$FIID --no-further --format tsv a*");
    EXPECT_EQ(run.output,
              "path\tfiid\tname\tmime\tpuid\terror\tfurther\tversion\tbasis\twarning\tsize\tmtime\n"
              "a\\tb\\\\c\\rd\t1503\t" +
                  NameOf("1503") + "\timage/gif\tfmt/3 fmt/4\t\t\t\tsignature\tseveral\t6\t2001-02-03T04:05:06Z\n");
}

TEST_F(Program, RecordsKeepTheirBytesInEveryFormat) {
    Write("a.gif", "GIF89a");
    Write("\xff\xc3\xa9", "GIF89a");
    SetTimes();
    const std::string run = "$FIID --no-further --explain a.gif $'\\xff\\xc3\\xa9' missing --format ";
    const std::string answer =
        R"json("fiid":1503,"name":"GIF image","mime":"image/gif","puid":["fmt/3","fmt/4"],"basis":"signature",)json"
        R"json("warning":["several"],"size":6,"mtime":"2001-02-03T04:05:06Z","row":172,)json"
        R"json("signature":">0 \"GIF8\" (37/39)","looked_at":"bytes at 0","bytes_read":6,"calls":1})json";
    const std::string first = R"json({"path":"a.gif",)json" + answer;
    const std::string second = "{\"path\":\"\xEF\xBF\xBD\xC3\xA9\",\"path_hex\":\"ffc3a9\"," + answer;
    const std::string third = R"json({"path":"missing","error":"No such file or directory"})json";
    EXPECT_EQ(Run(run + "ndjson").output, first + "\n" + second + "\n" + third + "\n");
    EXPECT_EQ(Run(run + "json").output, "[\n" + first + ",\n" + second + ",\n" + third + "\n]\n");
    EXPECT_EQ(
        Run(run + "csv").output,
        "path,fiid,name,mime,puid,error,further,version,basis,warning,size,mtime,row,signature,routine,further_row,"
        "further_signature,looked_at,bytes_read,calls\r\n"
        "a.gif,1503,GIF image,image/gif,fmt/3 fmt/4,,,,signature,several,6,2001-02-03T04:05:06Z,172,"
        "\">0 \"\"GIF8\"\" (37/39)\",,,,bytes at 0,6,1\r\n"
        "\xff\xc3\xa9,1503,GIF image,image/gif,fmt/3 fmt/4,,,,signature,several,6,2001-02-03T04:05:06Z,172,"
        "\">0 \"\"GIF8\"\" (37/39)\",,,,bytes at 0,6,1\r\n"
        "missing,,,,,No such file or directory,,,,,,,,,,,,,,\r\n");
    EXPECT_EQ(Run(run + "tsv | tail -n 2").output,
              "\xff\xc3\xa9\t1503\tGIF image\timage/gif\tfmt/3 fmt/4\t\t\t\tsignature\tseveral\t6\t"
              "2001-02-03T04:05:06Z\t172\t>0 \"GIF8\" (37/39)\t\t\t\tbytes at 0\t6\t1\n"
              "missing\t\t\t\t\tNo such file or directory\t\t\t\t\t\t\t\t\t\t\t\t\t\t\n");
}

TEST_F(Program, ControlsOfAPathAreEscapedInTextAndMessages) {
    // U+202E turns the line round, U+0085 ends it, and 9B starts a control sequence on an eight-bit terminal.
    const std::string name = "$'a\\xE2\\x80\\xAEb\\xC2\\x85c\\x9Bd'";
    const std::string escaped = "a\\xE2\\x80\\xAEb\\xC2\\x85c\\x9Bd";
    EXPECT_EQ(Run("$FIID " + name).messages, "fiid: " + escaped + ": No such file or directory\n");
    EXPECT_EQ(Run("$FIID --files-from " + name).messages, "fiid: " + escaped + ": No such file or directory\n");
    EXPECT_EQ(Run("printf x | TMPDIR=/" + name + " $FIID -").messages,
              "fiid: -: /" + escaped + ": no temporary file: No such file or directory\n");
    EXPECT_EQ(Run("$FIID --format " + name + " a").messages.substr(0, 10 + escaped.size()), "--format: " + escaped);
    EXPECT_NE(Run("$FIID --" + name + " a").messages.find(escaped), std::string::npos);
    EXPECT_EQ(Run("printf GIF89a > " + name + "; $FIID *").output, escaped + ": " + NameOf("1503") + " [1503]\n");
}

TEST_F(Program, PathsOfAnyBytesSurviveEveryFormat) {
    Run("printf GIF89a > $'\\xff\\xc3\\xa9\\n\\x1b[m'");
    EXPECT_EQ(Run("$FIID * | cut -d \" \" -f 1").output, "\xff\xc3\xa9\\x0A\\x1B[m:\n");
    const Json json = Json::parse(Run("$FIID --format ndjson *").output);
    EXPECT_EQ(json["path"], "\xEF\xBF\xBD\xC3\xA9\n\x1B[m");
    EXPECT_EQ(json["path_hex"], "ffc3a90a1b5b6d");
    EXPECT_NE(Run("$FIID --format csv *").output.find("\"\xff\xc3\xa9\n\x1b[m\",1503"), std::string::npos);
    EXPECT_NE(Run("$FIID --format tsv *").output.find("\xff\xc3\xa9\\n\x1b[m\t1503"), std::string::npos);
    EXPECT_FALSE(Json::parse(Run("mv * \xC3\xA9; $FIID --format ndjson *").output).contains("path_hex"));
}

TEST_F(Program, ExplainsTheDecidingRow) {
    Write("a.gif", "GIF89a");
    Write("b.txt", "plain text");
    const ProgramRun text = Run("$FIID --no-further --explain a.gif b.txt");
    EXPECT_EQ(text.output,
              "a.gif: " + NameOf("1503") +
                  " [1503] (row 172: >0 \"GIF8\" (37/39); looked at bytes at 0; 6 bytes in 1 call)\nb.txt: " +
                  NameOf("4022") +
                  " [4022] (no row; FIExtTextID; looked at the characters of the first 10 bytes; 10 bytes in 1 "
                  "call)\n");
    const Json json = Json::parse(Run("$FIID --explain --format ndjson a.gif").output);
    EXPECT_EQ(json["row"], 172);
    EXPECT_EQ(json["signature"], ">0 \"GIF8\" (37/39)");
    EXPECT_EQ(Run("$FIID --explain --format tsv a.gif | cut -f 13,14").output,
              "row\tsignature\n172\t>0 \"GIF8\" (37/39)\n");
}

TEST_F(Program, WritesMediaTypes) {
    Write("a.gif", "GIF89a");
    Write("b", "");
    Run("head -c 100 /dev/zero > zeros");
    EXPECT_EQ(Run("$FIID --mime --no-text a.gif b zeros missing").output,
              "a.gif: image/gif\nb: inode/x-empty\nzeros: application/octet-stream\n");
    EXPECT_EQ(Run("$FIID --mime --format json a.gif").exitStatus, 2);
    EXPECT_EQ(Run("$FIID --mime --formats").exitStatus, 2);
}

TEST_F(Program, WarnsOfUnusualExtensionsAndCutFiles) {
    Run("cp " FIID_SAMPLES_DIR "/xlsx/calc.xlsx a.doc; head -c 2000 a.doc > b.xlsx");
    EXPECT_EQ(Run("$FIID --no-further --format tsv a.doc b.xlsx | cut -f 2,10").output,
              "fiid\twarning\n1455\textension several\n1802\textension cut\n");
}

TEST_F(Program, ListsTheFormatsInEveryOutputFormat) {
    const std::size_t count = fiid_format_count();
    EXPECT_EQ(Run("$FIID --formats | wc -l").output, std::to_string(count) + "\n");
    EXPECT_EQ(Run("$FIID --formats --format ndjson | wc -l").output, std::to_string(count) + "\n");
    EXPECT_EQ(Run("$FIID --formats --format csv | wc -l").output, std::to_string(count + 1) + "\n");
    EXPECT_EQ(Run("$FIID --formats --format tsv | head -n 1").output, "fiid\tname\tmime\tpuid\textensions\tfamily\n");
    const Json json = Json::parse(Run("$FIID --formats --format json").output);
    ASSERT_EQ(json.size(), count);
    EXPECT_EQ(json[0]["fiid"], 1000);
    EXPECT_TRUE(json[0]["extensions"].is_array());
}

}  // namespace
