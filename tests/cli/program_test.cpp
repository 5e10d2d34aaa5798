// The program: paths, directories, lists, standard input, output formats, exit statuses.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "cli/run_program.h"

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

// ---- Paths
// ------------------------------------------------------------------------------------------------------------

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

TEST_F(Program, EmptyFileIsText) {
    Write("empty", "");
    EXPECT_EQ(Run("$FIID empty").output, "empty: " + NameOf("4022") + " [4022]\n");
    EXPECT_EQ(Run("$FIID --no-text empty").output, "empty: " + NameOf("1999") + " [1999]\n");
}

TEST_F(Program, FileOf5GiBIsIdentified) {
    Run("printf GIF89a > large; truncate -s 5G large; truncate -s 5G zeros");
    EXPECT_EQ(Run("$FIID --format tsv large zeros | cut -f 1,2").output, "path\tfiid\nlarge\t1503\nzeros\t1999\n");
}

// ---- Failures
// ---------------------------------------------------------------------------------------------------------

TEST_F(Program, UnreadablePathsGetAMessageAndTheOthersTheirAnswers) {
    Write("a.gif", "GIF89a");
    Run("mkfifo fifo; ln -s nowhere dangling; mkdir d; mkfifo d/fifo");
    const ProgramRun run = Run("$FIID missing fifo dangling a.gif d /dev/null");
    EXPECT_EQ(run.output, "a.gif: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(run.messages,
              "fiid: missing: No such file or directory\n"
              "fiid: fifo: is a FIFO, not a file\n"
              "fiid: dangling: is a symbolic link that leads nowhere\n"
              "fiid: d/fifo: is a FIFO, not a file\n"
              "fiid: /dev/null: is a character device, not a file\n");
    EXPECT_EQ(run.exitStatus, 1);
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

// ---- Lists and standard input
// ------------------------------------------------------------------------------------------

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
    EXPECT_EQ(Run("$FIID - < a.gif").output, "-: " + NameOf("1503") + " [1503]\n");
    EXPECT_EQ(Run("$FIID - < /dev/null").output, "-: " + NameOf("4022") + " [4022]\n");
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

TEST_F(Program, FileNamedLikeAnOptionIsReached) {
    Run("printf GIF89a > ./-; printf GIF89a > ./--help");
    EXPECT_EQ(Run("$FIID ./- ./--help -- --help | wc -l").output, "3\n");
}

// ---- Output formats
// ----------------------------------------------------------------------------------------------------

TEST_F(Program, WritesNdjson) {
    Write("a.gif", "GIF89a");
    const ProgramRun run = Run("$FIID --format ndjson a.gif missing");
    std::istringstream lines(run.output);
    std::string first;
    std::string second;
    std::getline(lines, first);
    std::getline(lines, second);
    EXPECT_EQ(Json::parse(first), Json({{"path", "a.gif"},
                                        {"fiid", 1503},
                                        {"name", NameOf("1503")},
                                        {"mime", "image/gif"},
                                        {"puid", {"fmt/3", "fmt/4"}}}));
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
    const std::string rest = "1503," + NameOf("1503") + ",image/gif,fmt/3 fmt/4,\r\n";
    const ProgramRun run = Run("$FIID --format csv 'a,b' 'q\"q' missing");
    EXPECT_EQ(run.output, "path,fiid,name,mime,puid,error\r\n\"a,b\"," + rest + "\"q\"\"q\"," + rest +
                              "missing,,,,,No such file or directory\r\n");
}

TEST_F(Program, WritesTsv) {
    Run("printf GIF89a > $'a\\tb\\\\c\\rd'");
    const ProgramRun run = Run("$FIID --format tsv a*");
    EXPECT_EQ(run.output, "path\tfiid\tname\tmime\tpuid\terror\na\\tb\\\\c\\rd\t1503\t" + NameOf("1503") +
                              "\timage/gif\tfmt/3 fmt/4\t\n");
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
    const ProgramRun text = Run("$FIID --explain a.gif b.txt");
    EXPECT_EQ(text.output, "a.gif: " + NameOf("1503") + " [1503] (row 172: >0 \"GIF8\" (37/39))\nb.txt: " +
                               NameOf("4022") + " [4022] (no row)\n");
    const Json json = Json::parse(Run("$FIID --explain --format ndjson a.gif").output);
    EXPECT_EQ(json["row"], 172);
    EXPECT_EQ(json["signature"], ">0 \"GIF8\" (37/39)");
    EXPECT_EQ(Run("$FIID --explain --format tsv a.gif | cut -f 7,8").output,
              "row\tsignature\n172\t>0 \"GIF8\" (37/39)\n");
}

TEST_F(Program, ListsTheFormatsInEveryOutputFormat) {
    EXPECT_EQ(Run("$FIID --formats | wc -l").output, "427\n");
    EXPECT_EQ(Run("$FIID --formats --format ndjson | wc -l").output, "427\n");
    EXPECT_EQ(Run("$FIID --formats --format csv | wc -l").output, "428\n");
    EXPECT_EQ(Run("$FIID --formats --format tsv | head -n 1").output, "fiid\tname\tmime\tpuid\textensions\n");
    const Json json = Json::parse(Run("$FIID --formats --format json").output);
    ASSERT_EQ(json.size(), 427U);
    EXPECT_EQ(json[0]["fiid"], 1000);
    EXPECT_TRUE(json[0]["extensions"].is_array());
}

}  // namespace
