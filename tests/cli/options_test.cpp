// The command line: what stands behind an option, and what does not go together.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "support/run_program.h"

namespace {

class ProgramOptions : public testing::Test {
 protected:
    ProgramOptions() {
        std::string pattern = testing::TempDir() + "fiid-options-" + std::string(6, 'X');
        directory_ = mkdtemp(pattern.data());
        Run("mkdir d; printf GIF89a > d/a.gif; printf GIF89a > d/b.jpg; printf '%%PDF-1.4\\n' > d/c.pdf");
    }
    ~ProgramOptions() override { static_cast<void>(std::system(("rm -rf '" + directory_ + "'").c_str())); }

    ProgramRun Run(const std::string& command) const { return RunShell(directory_, command); }

    // The paths that are told, each in a line.
    std::string PathsOf(const std::string& arguments) const { return Run("$FIID --format path " + arguments).output; }

    // The first line of what is told of wrong usage.
    std::string MistakeOf(const std::string& arguments) const {
        const ProgramRun run = Run("$FIID " + arguments);
        EXPECT_EQ(run.exitStatus, 2) << arguments;
        EXPECT_EQ(run.output, "") << arguments;
        return run.messages.substr(0, run.messages.find('\n'));
    }

    std::string directory_;
};

// A path may stand right behind any option with a text.
TEST_F(ProgramOptions, FiltersTakeOneTextEachTime) {
    EXPECT_EQ(PathsOf("--match image d"), "d/a.gif\nd/b.jpg\n");
    EXPECT_EQ(PathsOf("--match image d --match document"), "d/a.gif\nd/b.jpg\nd/c.pdf\n");
    EXPECT_EQ(PathsOf("--match=image,fmt/18 d/c.pdf d/a.gif"), "d/c.pdf\nd/a.gif\n");
    EXPECT_EQ(PathsOf("--exclude-format image d"), "d/c.pdf\n");
    EXPECT_EQ(PathsOf("--glob '*.gif' d"), "d/a.gif\n");
    EXPECT_EQ(PathsOf("--glob '*.gif' --glob '*.pdf' d"), "d/a.gif\nd/c.pdf\n");
    EXPECT_EQ(PathsOf("--exclude '*.gif' d"), "d/b.jpg\nd/c.pdf\n");
}

TEST_F(ProgramOptions, MistakesNameTheirOptionOnce) {
    EXPECT_EQ(MistakeOf("--format csv --fields row d"), "--fields: row goes with --explain");
    EXPECT_EQ(MistakeOf("--fields path d"), "--fields goes with the formats csv, tsv, json and ndjson");
    EXPECT_EQ(MistakeOf("--match 99999 d"), "--match: 99999: no format has this identifier");
    EXPECT_EQ(MistakeOf("--min-size 1X d"), "--min-size: 1X is no size, as 4096, 10K or 2G are");
}

TEST_F(ProgramOptions, HashesAreOfAKnownKind) {
    EXPECT_EQ(MistakeOf("--hash md5 d"), "--hash: md5 is none of sha256, xxh3");
}

TEST_F(ProgramOptions, QueriesTakeNoOptionsOfAScan) {
    const std::string mistake =
        "--query answers for the whole store: only --match, --exclude-format and --mismatch choose among its files";
    for (const char* option : {"--glob '*.gif'", "--exclude '*.gif'", "--no-hidden", "--max-depth 1", "--min-size 1",
                               "--max-size 1", "--one-file-system", "--no-text", "--no-further", "--unsorted"}) {
        EXPECT_EQ(MistakeOf(std::string("--store s.db --query files ") + option), mistake) << option;
    }
    EXPECT_EQ(MistakeOf("--store s.db --query files d"), "--query takes no paths: it answers from the store");
    EXPECT_EQ(MistakeOf("--store s.db --query summary --format html"),
              "a summary goes with text, json, ndjson, csv and tsv; html has one of its own");
}

}  // namespace
