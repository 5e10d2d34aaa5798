// The program with a store: what is looked at again, what is kept, what ends a run, and questions to it.
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "support/program_directory.h"

namespace {

using Json = nlohmann::json;

// Standard error of a scan: "fiid: s: 3 files, 3 new, 0 changed, 0 gone, 0 unreadable".
constexpr char closingLine[] = "fiid: s: ";

class Store : public ProgramDirectory {
 protected:
    void MakeFiles() const {
        Run("mkdir -p d/low; printf GIF89a > d/a.gif; printf %%PDF-1.4 > d/b.doc; printf GIF89a > d/low/c; touch -d "
            "@981173106 d/a.gif d/b.doc d/low/c");
    }
    // What the store holds of all files: their paths with one field each.
    std::map<std::string, std::string> Held(const std::string& field) const {
        std::map<std::string, std::string> held;
        for (const std::string& line : PartsOf(Run("$FIID --store s --query files --format ndjson").output)) {
            const Json json = Json::parse(line);
            held[json["path"]] = json.contains(field) ? json[field].dump() : "";
        }
        return held;
    }
    // The closing line of a run, without its beginning.
    std::string Closing(const std::string& arguments) const {
        const ProgramRun run = Run("$FIID --store s " + arguments);
        EXPECT_EQ(run.output, "") << arguments;
        EXPECT_EQ(run.exitStatus, 0) << arguments << run.messages;
        EXPECT_EQ(run.messages.substr(0, sizeof(closingLine) - 1), closingLine) << arguments;
        return run.messages.substr(std::min(run.messages.size(), sizeof(closingLine) - 1));
    }
};

// ---- Again and again ------------------------------------------------------------------------------------------------

TEST_F(Store, SecondRunFindsNothingNew) {
    MakeFiles();
    EXPECT_EQ(Closing("d"), "3 files, 3 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Closing("d"), "3 files, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Held("fiid"),
              (std::map<std::string, std::string>{{"d/a.gif", "1503"}, {"d/b.doc", "1557"}, {"d/low/c", "1503"}}));
}

TEST_F(Store, ChangesAreFoundBySizeAndTime) {
    MakeFiles();
    Closing("d");
    Run("printf 'plain text' > d/a.gif; touch -d @1000000000 d/b.doc; printf GIF89a > d/low/new");
    EXPECT_EQ(Closing("d"), "4 files, 1 new, 2 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Held("fiid"), (std::map<std::string, std::string>{
                                {"d/a.gif", "4022"}, {"d/b.doc", "1557"}, {"d/low/c", "1503"}, {"d/low/new", "1503"}}));
    EXPECT_EQ(Held("mtime")["d/b.doc"], "\"2001-09-09T01:46:40Z\"");
    EXPECT_EQ(Held("size")["d/a.gif"], "10");
    // Replaced by another file of the same size and time.
    Run("printf %%PDF-1 > new; touch -d @981173106 new; mv new d/low/c");
    EXPECT_EQ(Closing("d"), "4 files, 0 new, 1 changed, 0 gone, 0 unreadable\n");
    EXPECT_NE(Held("fiid")["d/low/c"], "1503");
}

TEST_F(Store, UnchangedFilesAreNotRead) {
    MakeFiles();
    Closing("d");
    // Size, time and inode stay: only who reads it can tell.
    Run("printf %%PDF-1 1<> d/a.gif; touch -d @981173106 d/a.gif");
    EXPECT_EQ(Closing("d"), "3 files, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Held("fiid")["d/a.gif"], "1503");
    const ProgramRun rescan = Run("$FIID --store s --rescan d");
    EXPECT_EQ(rescan.exitStatus, 0);
    EXPECT_EQ(Held("fiid")["d/a.gif"], PartsOf(Run("$FIID --format tsv --fields fiid d/a.gif").output)[1]);
    EXPECT_NE(Held("fiid")["d/a.gif"], "1503");
}

TEST_F(Store, PruneTakesOutWhatIsGoneBelowThePathsThatAreNamed) {
    MakeFiles();
    Run("cp -r d e; mkdir e/f; cp d/a.gif e/f/");
    Closing("d e");
    Run("rm d/a.gif; rm -r e/f e/low");
    Closing("d e");
    EXPECT_TRUE(Held("fiid").contains("d/a.gif")) << "nothing is taken out unasked";
    EXPECT_EQ(Run("$FIID --store s --prune d").exitStatus, 0);
    EXPECT_EQ(Held("fiid").size(), 6U);
    EXPECT_FALSE(Held("fiid").contains("d/a.gif"));
    EXPECT_TRUE(Held("fiid").contains("e/f/a.gif"));
    const ProgramRun prune = Run("$FIID --store s --prune");
    EXPECT_EQ(prune.exitStatus, 0);
    EXPECT_NE(prune.messages.find("2 gone"), std::string::npos) << prune.messages;
    EXPECT_EQ(Held("size"), (std::map<std::string, std::string>{
                                {"d/b.doc", "8"}, {"d/low/c", "6"}, {"e/a.gif", "6"}, {"e/b.doc", "8"}}));
}

TEST_F(Store, PruneIsNotFooledByFiltersAndFailures) {
    MakeFiles();
    Closing("d");
    // What a run does not look at is not gone.
    Run("$FIID --store s --prune --glob '*.gif' d; $FIID --store s --prune --match image d; $FIID --store s --prune "
        "--max-depth 1 d; $FIID --store s --prune --max-size 6 d");
    EXPECT_EQ(Held("fiid").size(), 3U);
    Run("chmod 0 d/low");
    EXPECT_EQ(Run(WithoutPrivileges() + "$FIID --store s --prune d").exitStatus, 1);
    EXPECT_TRUE(Held("fiid").contains("d/low/c")) << "a directory that can't be read hides its files";
}

TEST_F(Store, HashMayBeAskedForLater) {
    MakeFiles();
    Closing("d");
    Closing("--hash sha256 d");
    EXPECT_EQ(Closing("--hash sha256 d"), "3 files, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(
        Run("$FIID --store s --hash sha256 --format tsv --fields sha256,path d | tail -n +2 | sed 's/\\t/  /'").output,
        Run("sha256sum d/a.gif d/b.doc d/low/c").output);
    const ProgramRun run = Run("$FIID --store s --query duplicates --format ndjson");
    std::set<std::string> paths;
    for (const std::string& line : PartsOf(run.output)) {
        paths.insert(Json::parse(line)["path"]);
        EXPECT_EQ(Json::parse(line)["copies"], 2);
    }
    EXPECT_EQ(paths, (std::set<std::string>{"d/a.gif", "d/low/c"}));
}

TEST_F(Store, FailuresAreKeptAndTriedAgain) {
    MakeFiles();
    Run("chmod 0 d/a.gif");
    const std::string run = WithoutPrivileges() + "$FIID --store s d missing";
    const ProgramRun first = Run(run);
    EXPECT_EQ(first.exitStatus, 1);
    EXPECT_NE(first.messages.find("fiid: d/a.gif: Permission denied\nfiid: missing: No such file or directory\n"),
              std::string::npos);
    EXPECT_NE(first.messages.find(", 2 unreadable"), std::string::npos);
    EXPECT_EQ(Run("$FIID --store s --query errors --format tsv --fields path,error").output,
              "path\terror\nd/a.gif\tPermission denied\nmissing\tNo such file or directory\n");
    EXPECT_EQ(Run(run).exitStatus, 1) << "a failure is told again";
    Run("chmod 600 d/a.gif");
    EXPECT_EQ(Run(run).messages.find("d/a.gif"), std::string::npos);
    EXPECT_EQ(Held("fiid")["d/a.gif"], "1503");
}

TEST_F(Store, NamesOfAnyBytesAreKept) {
    Run("mkdir d; printf GIF89a > $'d/\\xff\\n'; printf GIF89a > 'd/\xc3\xa9'; printf GIF89a > 'd/a'\"'\"'b%_'");
    Closing("d");
    EXPECT_EQ(Closing("d"), "3 files, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Sorted(PartsOf(Run("$FIID --store s --query files --print0").output, '\0')),
              (std::vector<std::string>{"d/a'b%_", "d/\xc3\xa9", "d/\xff\n"}));
    Run("rm $'d/\\xff\\n'");
    Closing("--prune d");
    EXPECT_EQ(Held("fiid").size(), 2U);
}

TEST_F(Store, DeepTreesAreKept) {
    const ProgramRun made =
        Run("name=$(printf %0200d 0); for level in {1..60}; do mkdir $name; cd $name; done; printf GIF89a > a.gif");
    ASSERT_EQ(made.exitStatus, 0) << made.messages;
    EXPECT_EQ(Closing("0*"), "1 file, 1 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Closing("0*"), "1 file, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Run("$FIID --store s --query files --format path").output.size(), 60 * 201 + 6U);
    Run("$FIID --store s --prune");
    EXPECT_EQ(Run("$FIID --store s --query files --format path").output.size(), 60 * 201 + 6U) << "it is there";
}

// ---- Output ---------------------------------------------------------------------------------------------------------

TEST_F(Store, OutputIsTheSameAsWithoutAStore) {
    MakeFiles();
    MakeSocket("socket");
    Run("cp d/a.gif $'d/\\xff\\n'; ln -s a.gif d/link; mkfifo d/fifo");
    int number = 0;
    for (const char* options :
         {"--format text --mismatch", "--format json", "--mime", "--print0", "--format droid", "--format siegfried",
          "--format csv --fields size,path,family", "--format tsv --hash sha256", "--format csv --match image",
          "--summary", "--by extension --format json", "--no-further --format csv", "--explain --format tsv",
          "--no-text --format csv"}) {
        const std::string run = "$FIID ./d/ socket d//low missing d -j 2 " + std::string(options);
        const std::string store = " --store s" + std::to_string(number++);
        const ProgramRun compared =
            Run(run + " > plain 2> plain.messages; echo $?; for turn in 1 2; do " + run + store +
                " > out 2> messages; echo $?; cmp out plain; grep -v ^fiid:.s[0-9]*:..*files,.*gone messages | cmp - "
                "plain.messages; done");
        EXPECT_EQ(compared.output, "1\n1\n1\n") << options;
        EXPECT_EQ(compared.messages, "") << options;
    }
    // One store for options that ask for different answers.
    for (const char* options :
         {"--format csv", "--format csv --no-further", "--format csv --no-text", "--format csv"}) {
        const std::string run = "$FIID d " + std::string(options);
        EXPECT_EQ(Run(run + " --store shared").output, Run(run).output) << options;
    }
}

TEST_F(Store, ClosingLineStandsInPlaceOfRecords) {
    MakeFiles();
    EXPECT_EQ(Closing("d"), "3 files, 3 new, 0 changed, 0 gone, 0 unreadable\n");
    EXPECT_EQ(Run("$FIID d --store s --format csv").messages, "");
    EXPECT_EQ(Run("$FIID d --store s --summary").messages, "");
}

TEST_F(Store, StandardInputAndListsGoWithIt) {
    MakeFiles();
    EXPECT_EQ(Run("printf 'd\\0missing\\0' | $FIID -0 --files-from - --store s").exitStatus, 1);
    EXPECT_EQ(Run("$FIID --store s --query files --format path | grep -c d/").output, "3\n");
    EXPECT_EQ(Run("printf 'd\\0' | $FIID -0 --files-from - --store s --format path").output,
              "d/a.gif\nd/b.doc\nd/low/c\n");
}

// ---- Ends -----------------------------------------------------------------------------------------------------------

class ManyFiles : public Store {
 protected:
    static constexpr int files = 1000;
    ManyFiles() {
        for (int group = 0; group < 10; ++group) {
            std::string directory = "d" + std::to_string(group);
            MakeDirectory(directory);
            for (int index = 0; index < files / 10; ++index) {
                Write(directory + "/" + std::to_string(index),
                      "GIF89a" + std::string(static_cast<std::size_t>(index), 'x'));
            }
        }
    }
    void ExpectAllHeldOnce() const {
        const ProgramRun run =
            Run("$FIID d? --store s --format csv > out || exit 1; $FIID d? --format csv | cmp - out; $FIID --store s "
                "--query files "
                "--format csv --fields path,fiid,size | tail -n +2 | sort > held; $FIID d? --format csv --fields "
                "path,fiid,size | "
                "tail -n +2 | sort | cmp - held; wc -l < held; $FIID d? --store s 2> closing");
        EXPECT_EQ(run.output, std::to_string(files) + "\n");
        EXPECT_EQ(ReadWholeFile(directory_ + "/closing"),
                  "fiid: s: 1000 files, 0 new, 0 changed, 0 gone, 0 unreadable\n");
    }
};

TEST_F(ManyFiles, KilledRunsGoOn) {
    Run("for wait in 0 0.005 0.02 0.04 0.08; do $FIID d? --store s --hash sha256 & sleep $wait; kill -KILL $!; wait "
        "$!; "
        "done");
    ExpectAllHeldOnce();
}

TEST_F(ManyFiles, KilledWhileItsRecordsAreReadItGoesOn) {
    // The program waits for its reader, in the middle of its work.
    const ProgramRun run =
        Run("mkfifo pipe; $FIID d? --store s --format csv --explain > pipe & exec 9<> pipe; head -c 20000 <&9 > "
            "/dev/null; kill -KILL "
            "$!; wait $!; echo $?; exec 9<&-");
    EXPECT_EQ(run.output, "137\n");
    ExpectAllHeldOnce();
}

TEST_F(ManyFiles, InterruptedRunEndsBehindAWholeRecordAndGoesOn) {
    // With job control (set -m) the shell does not let a command in the background ignore SIGINT. The list's writer keeps
    // its pipe open.
    const ProgramRun run = Run(
        "set -m; mkfifo list; exec 9<>list; $FIID --files-from list --store s --format csv > out & echo d0 >&9; echo "
        "d1 >&9; for "
        "turn in {1..6000}; do [ $(wc -l < out) -gt 150 ] && break; sleep 0.01; done; kill -INT $!; wait $!; echo $?; "
        "tail -c 1 out | od -An -c");
    EXPECT_EQ(run.output, "130\n  \\n\n");
    const std::string out = ReadWholeFile(directory_ + "/out");
    EXPECT_TRUE(Run("$FIID --format csv d0 d1").output.starts_with(out));
    EXPECT_GT(CsvRowsOf(out).size(), 150U);
    EXPECT_EQ(std::to_string(CsvRowsOf(out).size() - 1) + "\n",
              Run("$FIID --store s --query files --format tsv --fields path | grep -c /").output)
        << "what was told is kept";
    ExpectAllHeldOnce();
}

// ---- Several processes ----------------------------------------------------------------------------------------------

TEST_F(Store, SecondScanIsRefusedAndReadersAreNot) {
    MakeFiles();
    Closing("d");
    const ProgramRun run = Run(
        "mkfifo list; exec 9<>list; $FIID --files-from list --store s --format path > out & echo d/a.gif >&9; for turn "
        "in "
        "{1..6000}; do [ -s out ] && break; sleep 0.01; done; $FIID --store s d > /dev/null 2> refused; echo $?; "
        "$FIID --store s --query files --format path; $FIID --store s --query summary > /dev/null; echo $?; "
        "$FIID --store other d 2> /dev/null; echo $?; kill -TERM $!; wait $!; $FIID --store s d 2> /dev/null; echo $?");
    EXPECT_EQ(run.output, "1\nd/a.gif\nd/b.doc\nd/low/c\n0\n0\n0\n");
    EXPECT_EQ(ReadWholeFile(directory_ + "/refused").substr(0, 7), "fiid: s");
}

TEST_F(Store, ReadersNeedNoPermissionToWrite) {
    MakeFiles();
    Run("mkdir kept; $FIID --store kept/s d; chmod 444 kept/s; chmod 555 kept");
    const ProgramRun run = Run(WithoutPrivileges() + "$FIID --store kept/s --query files --format path");
    EXPECT_EQ(run.output, "d/a.gif\nd/b.doc\nd/low/c\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
    for (const char* store : {"kept/s", "kept/new"}) {
        const ProgramRun scan = Run(WithoutPrivileges() + "$FIID --store " + store + " d");
        EXPECT_EQ(scan.exitStatus, 1) << store;
        EXPECT_EQ(scan.output, "") << store;
        EXPECT_NE(scan.messages.find(store), std::string::npos) << store;
    }
}

TEST_F(Store, RelativePathsFromAnotherDirectoryAreRefused) {
    MakeFiles();
    Closing("d");
    const ProgramRun run = Run("cd d; $FIID --store ../s low");
    EXPECT_NE(run.exitStatus, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.messages, "");
    EXPECT_EQ(Held("fiid").size(), 3U);
    EXPECT_EQ(Run("cd d; $FIID --store ../s --query files --format path | wc -l").output, "3\n")
        << "questions may come from anywhere";
    EXPECT_EQ(Run("$FIID --store absolute $PWD/d; cd d; $FIID --store ../absolute $PWD").exitStatus, 0);
}

// ---- What is no store -----------------------------------------------------------------------------------------------

TEST_F(Store, WhatIsNoStoreIsAFailureAndStaysAsItIs) {
    MakeFiles();
    Write("text", "plain text, and more of it\n");
    Write("long", std::string(100000, 'x'));
    // The first page of an empty database of another program (application identifier 0x0F055112, a Fossil check-out).
    std::string database =
        "SQLite format 3" + std::string(1, '\0') + std::string("\x10\x00\x01\x01\x00\x40\x20\x20", 8);
    database += std::string("\0\0\0\1\0\0\0\1", 8) + std::string(8, '\0') + std::string("\0\0\0\0\0\0\0\4", 8);
    database += std::string(8, '\0') + std::string("\0\0\0\1\0\0\0\0", 8) + std::string(4, '\0') + "\x0F\x05\x51\x12";
    database.resize(100, '\0');
    database += std::string("\x0d\0\0\0\0\x10\0\0", 8);
    database.resize(4096, '\0');
    Write("database", database);
    for (const char* store : {"missing", "text", "long", "database", "d", "d/none/s"}) {
        for (const char* work : {"--query files", "--query summary --format json", "--query duplicates", "--prune"}) {
            if (store == std::string("missing") && work == std::string("--prune")) continue;  // makes an empty one
            const ProgramRun run = Run(std::string("$FIID --store ") + store + " " + work);
            EXPECT_EQ(run.exitStatus, 1) << store << " " << work;
            EXPECT_EQ(run.output, "") << store << " " << work;
            EXPECT_NE(run.messages.find(store), std::string::npos) << store << " " << work;
        }
    }
    EXPECT_NE(Run("ls missing").exitStatus, 0) << "a question makes no store";
    for (const char* store : {"text", "long", "database", "d"}) {
        const ProgramRun run = Run(std::string("$FIID d --store ") + store);
        EXPECT_EQ(run.exitStatus, 1) << store;
        EXPECT_NE(run.messages.find(store), std::string::npos) << store;
    }
    EXPECT_EQ(ReadWholeFile(directory_ + "/text"), "plain text, and more of it\n");
    EXPECT_EQ(ReadWholeFile(directory_ + "/database"), database);
}

TEST_F(Store, DamagedStoresAreFailures) {
    MakeFiles();
    Closing("d");
    Run("head -c 5000 s > cut; { head -c 4096 s; head -c 60000 /dev/urandom; } > noise");
    for (const char* store : {"cut", "noise"}) {
        for (const char* work : {"--query files", "--query summary", "d"}) {
            const ProgramRun run = Run(std::string("$FIID --store ") + store + " " + work);
            EXPECT_EQ(run.exitStatus, 1) << store << " " << work;
            EXPECT_NE(run.messages, "") << store << " " << work;
        }
    }
}

TEST_F(Store, WrongUsage) {
    MakeFiles();
    Closing("d");
    for (const char* options : {"--query files", "--store s --query files d", "--store s --query color", "--store s",
                                "--store s --query ''", "--prune d", "--rescan d", "--refresh d", "--store '' d",
                                "--store s --query files --files-from list", "--store s --query summary --format html",
                                "--store s --query summary --format droid", "--store s --query files -"}) {
        const ProgramRun run = Run(std::string("$FIID ") + options + " < /dev/null");
        EXPECT_EQ(run.exitStatus, 2) << options;
        EXPECT_EQ(run.output, "") << options;
        EXPECT_NE(run.messages, "") << options;
    }
}

// ---- Questions ------------------------------------------------------------------------------------------------------

class Questions : public Store {
 protected:
    // Two runs: between them a file comes, one changes, one goes; one can't be read.
    Questions() {
        MakeFiles();
        Run("printf GIF89a > d/gone; printf GIF89a > d/secret; chmod 0 d/secret; " + WithoutPrivileges() +
            "$FIID --store s --hash sha256 d; printf 'plain text' > d/a.gif; printf '%%PDF-1.4' > d/new.pdf; "
            "rm d/gone; " +
            WithoutPrivileges() + "$FIID --store s --hash sha256 --prune d");
    }
    ProgramRun Ask(const std::string& question) const { return Run("$FIID --store s --query " + question); }
};

TEST_F(Questions, HaveAnswersInEveryFormat) {
    for (const char* query : {"files", "mismatch", "changes", "errors", "duplicates"}) {
        const ProgramRun lines = Ask(std::string(query) + " --format ndjson");
        EXPECT_EQ(lines.exitStatus, 0) << query << lines.messages;
        std::vector<std::string> paths;
        for (const std::string& line : PartsOf(lines.output)) paths.push_back(Json::parse(line)["path"]);
        EXPECT_FALSE(paths.empty()) << query;
        const Json array = Json::parse(Ask(std::string(query) + " --format json").output);
        ASSERT_EQ(array.size(), paths.size()) << query;
        for (const char* format : {"csv", "tsv", "siegfried"}) {
            const ProgramRun run = Ask(std::string(query) + " --format " + format);
            EXPECT_EQ(run.exitStatus, 0) << query << format;
            const std::string text =
                format == std::string("tsv") ? std::regex_replace(run.output, std::regex("\t"), ",") : run.output;
            std::vector<std::string> told;
            for (const auto& row : CsvRowsOf(text)) {
                if (told.empty() || told.back() != row[0]) told.push_back(row[0]);
            }
            std::vector<std::string> expected = {format == std::string("siegfried") ? "filename" : "path"};
            expected.insert(expected.end(), paths.begin(), paths.end());
            expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
            EXPECT_EQ(told, expected) << query << format;
        }
        EXPECT_NE(Ask(std::string(query) + " --format droid").output.find("FILE_PATH"), std::string::npos) << query;
        EXPECT_NE(Ask(std::string(query) + " --format html").output.find("</html>"), std::string::npos) << query;
        EXPECT_EQ(Ask(std::string(query) + " --format text").exitStatus, 0) << query;
    }
}

TEST_F(Questions, FilesAreAllThatTheStoreHolds) {
    EXPECT_EQ(Ask("files --format tsv --fields path,fiid,error").output,
              "path\tfiid\terror\nd/a.gif\t4022\t\nd/b.doc\t1557\t\nd/low/c\t1503\t\nd/new.pdf\t1557\t\nd/"
              "secret\t\tPermission "
              "denied\n");
    EXPECT_EQ(Ask("files --format path --match document").output, "d/b.doc\nd/new.pdf\n");
    EXPECT_EQ(Ask("files --format path --exclude-format document").output, "d/a.gif\nd/low/c\n");
    EXPECT_EQ(Ask("files --print0 --match image").output, std::string("d/low/c\0", 8));
}

TEST_F(Questions, MismatchesHaveTheUsualExtensions) {
    const Json json = Json::parse(Ask("mismatch --format json").output);
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["path"], "d/a.gif");
    EXPECT_EQ(json[0]["extensions"], Json({"txt"}));
    EXPECT_EQ(json[1]["path"], "d/b.doc");
    EXPECT_EQ(json[1]["extensions"], Json({"pdf"}));
}

TEST_F(Questions, ErrorsTellWhy) {
    EXPECT_EQ(Ask("errors --format csv --fields path,error").output, "path,error\r\nd/secret,Permission denied\r\n");
}

TEST_F(Questions, ChangesTellWhatWasBefore) {
    std::map<std::string, Json> last;
    const Json changes = Json::parse(Ask("changes --format json").output);
    for (const Json& change : changes) {
        ASSERT_TRUE(change.contains("path") && change.contains("run")) << change;
        if (!last.contains(change["path"]) || last[change["path"]]["run"].get<int>() <= change["run"].get<int>())
            last[change["path"]] = change;
    }
    ASSERT_TRUE(last.contains("d/a.gif") && last.contains("d/new.pdf") && last.contains("d/gone"));
    EXPECT_EQ(last["d/a.gif"]["change"], "changed");
    EXPECT_EQ(last["d/a.gif"]["fiid"], 4022);
    EXPECT_NE(last["d/a.gif"]["before"].get<std::string>().find("GIF image"), std::string::npos);
    EXPECT_EQ(last["d/new.pdf"]["change"], "new");
    EXPECT_FALSE(last["d/new.pdf"].contains("before"));
    EXPECT_EQ(last["d/gone"]["change"], "gone");
    EXPECT_TRUE(last["d/gone"].contains("run_time"));
    EXPECT_FALSE(last.contains("d/b.doc") && last["d/b.doc"]["change"] != "new");
}

TEST_F(Questions, DuplicatesHaveTheirCopies) {
    Run("mkdir e; cp d/low/c e/1; cp d/low/c e/2; cp d/new.pdf e/3; : > e/4; : > e/5; printf 'of no other' > e/6; "
        "$FIID --store s --hash sha256 e");
    std::map<std::string, std::multiset<std::string>> byHash;
    for (const Json& record : Json::parse(Ask("duplicates --format json").output))
        byHash[record.value("sha256", "no hash")].insert(record["path"]);
    std::set<std::multiset<std::string>> groups;
    for (const auto& [hash, paths] : byHash) groups.insert(paths);
    EXPECT_TRUE(groups.contains({"d/low/c", "e/1", "e/2"}));
    EXPECT_TRUE(groups.contains({"d/b.doc", "d/new.pdf", "e/3"}));
    for (const auto& paths : groups) EXPECT_FALSE(paths.contains("e/6"));
}

TEST_F(Questions, SummaryIsThatOfARun) {
    for (const char* key : {"format", "family", "mime", "extension", "directory"}) {
        for (const char* format : {"text", "json", "ndjson", "csv", "tsv"}) {
            const std::string options = std::string(" --format ") + format + " --by " + key;
            EXPECT_EQ(Ask("summary" + options).output, Run(WithoutPrivileges() + "$FIID d --summary" + options).output)
                << options;
        }
    }
    EXPECT_EQ(Ask("summary").output, Run(WithoutPrivileges() + "$FIID d --summary").output);
    EXPECT_EQ(Json::parse(Ask("summary --format json").output)["files"], 5);
    EXPECT_EQ(Ask("summary --format json --match document").output,
              Run(WithoutPrivileges() + "$FIID d --summary --format json --match document").output);
}

TEST_F(Questions, DuplicatesWithoutHashesSaySo) {
    const ProgramRun run = Run("$FIID --store plain d; $FIID --store plain --query duplicates --format path");
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.messages.find("--hash"), std::string::npos) << run.messages;
}

}  // namespace
