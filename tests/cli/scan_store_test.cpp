// Scans with a store, and what is asked of it, as a user sees them.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "support/run_program.h"

namespace {

class ProgramStore : public testing::Test {
 protected:
    ProgramStore() {
        std::string pattern = testing::TempDir() + "fiid-store-" + std::string(6, 'X');
        directory_ = mkdtemp(pattern.data());
        Run("mkdir d elsewhere; printf GIF89a > d/a.gif; printf GIF89a > d/b.jpg; printf '%%PDF-1.4\\n' > d/c.pdf; "
            ": > d/empty; touch -d 2024-05-06T07:08:09Z d/*");
    }
    ~ProgramStore() override { static_cast<void>(std::system(("rm -rf '" + directory_ + "'").c_str())); }

    ProgramRun Run(const std::string& command) const { return RunShell(directory_, command); }
    std::string Ask(const std::string& query) const { return Run("$FIID --store s.db --query " + query).output; }

    std::string directory_;
};

// What a query tells is what a scan without a store tells.
TEST_F(ProgramStore, SummariesAreThoseOfTheScan) {
    Run("$FIID --store s.db d");
    for (const char* arguments : {"--by format", "--by family", "--by mime", "--by extension", "--by directory",
                                  "--mismatch", "--match inode/x-empty", "--by mime --exclude-format image"}) {
        EXPECT_EQ(Ask(std::string("summary --format csv ") + arguments),
                  Run(std::string("$FIID d --summary --format csv ") + arguments).output)
            << arguments;
    }
    EXPECT_NE(Ask("summary --format csv").find("\r\nunusual,,,,,1,0.2500,6\r\n"), std::string::npos);
}

TEST_F(ProgramStore, ReportsAreThoseOfTheScan) {
    Run("$FIID --store s.db --hash sha256 --explain d");
    for (const char* arguments : {"--format csv", "--format json --explain", "--format ndjson --explain",
                                  "--format siegfried", "--format tsv --mismatch", "--mime",
                                  "--format tsv --fields sha256,path", "--match image --print0 | tr '\\0' '|'"}) {
        const std::string scan = Run(std::string("$FIID d --hash sha256 ") + arguments).output;
        EXPECT_EQ(Ask(std::string("files ") + arguments), scan) << arguments;
        EXPECT_EQ(Run(std::string("$FIID --store s.db --hash sha256 d ") + arguments).output, scan) << arguments;
    }
}

TEST_F(ProgramStore, FactsThatAreNotAskedForAreNotTold) {
    Run("$FIID --store s.db --hash sha256 --explain d");
    for (const char* arguments : {"--format droid", "--format siegfried", "--format csv", "--format text"}) {
        EXPECT_EQ(Run(std::string("$FIID --store s.db d ") + arguments).output,
                  Run(std::string("$FIID d ") + arguments).output)
            << arguments;
    }
}

TEST_F(ProgramStore, ReportsFromElsewhereHaveThePathsOfTheScan) {
    Run("$FIID --store s.db --hash sha256 d");
    const std::string scan = Run("$FIID --format droid --hash sha256 d").output;
    EXPECT_NE(scan.find("\"SHA256_HASH\""), std::string::npos);
    EXPECT_EQ(Run("cd elsewhere; $FIID --store ../s.db --query files --format droid").output, scan);
}

TEST_F(ProgramStore, FieldsMayNameEitherHash) {
    Run("$FIID --store s.db --hash sha256 d/a.gif; $FIID --store s.db --hash xxh3 d/c.pdf");
    EXPECT_EQ(Ask("files --format tsv --fields path,sha256 | cut -c 1-15"),
              "path\tsha256\nd/a.gif\t" + Run("sha256sum d/a.gif | cut -c 1-7").output + "d/c.pdf\t\n");
    EXPECT_EQ(Ask("files --format tsv --fields path,xxh3"),
              "path\txxh3\nd/a.gif\t\n" +
                  Run("$FIID --hash xxh3 --format tsv --fields path,xxh3 d/c.pdf | tail -n 1").output);
}

TEST_F(ProgramStore, DuplicatesHaveTheirHash) {
    Run("$FIID --store s.db --hash sha256 d");
    const std::string hash = Run("sha256sum d/a.gif | cut -d ' ' -f 1 | tr -d '\\n'").output;
    EXPECT_EQ(Ask("duplicates --format csv --fields path,sha256,copies"),
              "path,sha256,copies\r\nd/a.gif," + hash + ",2\r\nd/b.jpg," + hash + ",2\r\n");
    EXPECT_NE(Ask("duplicates --format csv").find(",sha256,copies\r\n"), std::string::npos);
    EXPECT_EQ(Ask("duplicates"), "d/a.gif: GIF image [1503] (sha256: " + hash +
                                     ") (2 copies)\n"
                                     "d/b.jpg: GIF image [1503] (sha256: " +
                                     hash + ") (2 copies)\n");
    EXPECT_EQ(Ask("mismatch"), "d/b.jpg: GIF image [1503] (usual extensions: gif)\n");
}

TEST_F(ProgramStore, ErrorsAreToldInEveryFormat) {
    Run("$FIID --store s.db d nowhere gone");
    EXPECT_EQ(Ask("errors"), "gone: No such file or directory\nnowhere: No such file or directory\n");
    EXPECT_EQ(Ask("errors --print0 | tr '\\0' '|'"), "gone|nowhere|");
    EXPECT_EQ(Ask("errors --format tsv --fields path,error"),
              "path\terror\ngone\tNo such file or directory\nnowhere\tNo such file or directory\n");
    EXPECT_EQ(Ask("files --format path --match audio"), "");
}

}  // namespace
