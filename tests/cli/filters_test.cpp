// The program's choice of files: by format, by unusual extension, by name and by size.
#include <nlohmann/json.hpp>

#include "support/program_directory.h"

namespace {

using Json = nlohmann::json;

void WriteFile(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string LinesOf(const std::vector<std::string>& texts) {
    std::string lines;
    for (const std::string& text : texts) lines += text + "\n";
    return lines;
}

// ---- Formats --------------------------------------------------------------------------------------------------------

// A file of each of six kinds. Of a.gif the version (89a) leaves one PRONOM identifier, of b.pdf (1.4) too.
class FormatFilters : public ProgramDirectory {
 protected:
    FormatFilters() {
        MakeDirectory("d");
        Write("d/a.gif", "GIF89a");
        Write("d/b.pdf", "%PDF-1.4\n");
        Write("d/c.txt", "plain text\n");
        Run("echo x | gzip -n > d/d.gz");
        Write("d/empty", "");
        Write("d/unknown", std::string("\x01\x02\x00\x03\xff\x00", 6));
    }
};

struct FormatCase {
    const char* options;
    std::vector<std::string> names;
};

TEST_F(FormatFilters, TakeAndLeaveOut) {
    const std::vector<std::string> all = {"a.gif", "b.pdf", "c.txt", "d.gz", "empty", "unknown"};
    const FormatCase cases[] = {
        // clang-format off
        {"--match 1503",                                    {"a.gif"}},
        {"--match 1557",                                    {"b.pdf"}},
        {"--match 4022",                                    {"c.txt", "empty", "unknown"}},  // what the signature table says
        {"--match 20000",                                   {"empty"}},           // what the further table says
        {"--match 20339",                                   {"unknown"}},
        {"--match 1999 --no-text --no-further",             {"c.txt", "empty", "unknown"}},
        {"--match 1504",                                    {}},
        {"--match fmt/4",                                   {"a.gif"}},
        {"--match fmt/3",                                   {}},
        {"--match fmt/3 --no-further",                      {"a.gif"}},           // one of the two that are possible
        {"--match fmt/18",                                  {"b.pdf"}},
        {"--match x-fmt/266",                               {"d.gz"}},
        {"--match image/gif",                               {"a.gif"}},
        {"--match 'image/*'",                               {"a.gif"}},
        {"--match 'IMAGE/GIF'",                             {"a.gif"}},
        {"--match 'image/?if'",                             {"a.gif"}},
        {"--match 'image/?i?'",                             {"a.gif"}},
        {"--match '*/pdf'",                                 {"b.pdf"}},
        {"--match 'application/*' --min-size 1",            {"b.pdf", "d.gz", "unknown"}},
        {"--match application/octet-stream --min-size 1",   {"unknown"}},
        {"--match image",                                   {"a.gif"}},
        {"--match document",                                {"b.pdf"}},
        {"--match archive",                                 {"d.gz"}},
        {"--match unknown",                                 {"empty", "unknown"}},  // of no family, as 20000 is
        {"--match audio",                                   {}},
        {"--match image,1557",                              {"a.gif", "b.pdf"}},
        {"--match image --match fmt/18,archive",            {"a.gif", "b.pdf", "d.gz"}},
        {"--exclude-format image",                          {"b.pdf", "c.txt", "d.gz", "empty", "unknown"}},
        {"--exclude-format 'image/*,1557' --exclude-format unknown", {"c.txt", "d.gz"}},
        {"--match image,document --exclude-format fmt/4",   {"b.pdf"}},
        {"--exclude-format image --match image",            {}},
        {"",                                                all},
        // clang-format on
    };
    for (const auto& [options, names] : cases) {
        const ProgramRun run = Run(std::string("cd d; $FIID --format path * ") + options);
        EXPECT_EQ(run.output, LinesOf(names)) << options;
        EXPECT_EQ(run.messages, "") << options;
        EXPECT_EQ(run.exitStatus, 0) << options;
    }
}

TEST_F(FormatFilters, EveryFamilyIsAWord) {
    for (const char* family : {"document", "spreadsheet", "presentation", "database", "image", "drawing", "audio",
                               "video", "archive", "mail", "text", "code", "system", "unknown"}) {
        EXPECT_EQ(Run(std::string("$FIID d --match ") + family).exitStatus, 0) << family;
    }
    const Json json = Json::parse(Run("$FIID --format json --fields family d").output);
    EXPECT_EQ(json[0]["family"], "image");
    EXPECT_EQ(json[1]["family"], "document");
    EXPECT_EQ(json[3]["family"], "archive");
    EXPECT_EQ(json[5]["family"], "unknown");
}

TEST_F(FormatFilters, WhatNoFormatHasIsWrongUsage) {
    for (const char* option : {"--match", "--exclude-format"}) {
        for (const char* pattern : {"picture", "Imagery", "12", "19999", "65536", "99999999999999999999", "fmt/999999",
                                    "x-fmt/0", "''", "image,picture"}) {
            const ProgramRun run = Run(std::string("$FIID d ") + option + " " + pattern);
            EXPECT_EQ(run.exitStatus, 2) << option << " " << pattern;
            EXPECT_EQ(run.output, "") << option << " " << pattern;
            EXPECT_NE(run.messages, "") << option << " " << pattern;
        }
    }
    EXPECT_NE(Run("$FIID d --match picture").messages.find("presentation"), std::string::npos) << "families are told";
}

TEST_F(FormatFilters, FailuresStayFailures) {
    MakeSocket("socket");
    for (const char* options : {"--match audio", "--exclude-format unknown", "--match unknown", "--mismatch"}) {
        const ProgramRun run = Run(std::string("$FIID --format tsv --fields path,error missing socket ") + options);
        EXPECT_EQ(run.output, "path\terror\nmissing\tNo such file or directory\nsocket\tis a socket, not a file\n")
            << options;
        EXPECT_EQ(run.messages, "fiid: missing: No such file or directory\nfiid: socket: is a socket, not a file\n");
        EXPECT_EQ(run.exitStatus, 1) << options;
    }
}

TEST_F(FormatFilters, MismatchHasTheUsualExtensions) {
    Run("mkdir e; cp d/a.gif e/a.doc; cp d/a.gif e/b.gif; cp d/b.pdf e/c.GIF; cp d/b.pdf e/d.PDF; cp d/unknown "
        "e/e.xyz");
    EXPECT_EQ(Run("$FIID --mismatch --format path e").output, "e/a.doc\ne/c.GIF\n");
    const Json json = Json::parse(Run("$FIID --mismatch --format json e").output);
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["path"], "e/a.doc");
    EXPECT_EQ(json[0]["fiid"], 1503);
    const Json gif = json[0]["extensions"];
    EXPECT_NE(std::find(gif.begin(), gif.end(), "gif"), gif.end());
    const Json pdf = json[1]["extensions"];
    EXPECT_NE(std::find(pdf.begin(), pdf.end(), "pdf"), pdf.end());
    const auto rows = CsvRowsOf(Run("$FIID --mismatch --format csv e").output);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].back(), "extensions");
    EXPECT_NE((" " + rows[1].back() + " ").find(" gif "), std::string::npos);
    EXPECT_NE(Run("$FIID --mismatch --format csv e").output.find(",mtime,extensions"), std::string::npos);
    EXPECT_EQ(Run("$FIID --mismatch --match document --format path e").output, "e/c.GIF\n");
}

TEST_F(FormatFilters, NoFilterChangesAnAnswer) {
    const std::vector<std::string> all = PartsOf(Run("$FIID --format tsv d").output);
    const std::vector<std::string> some = PartsOf(Run("$FIID --format tsv d --match image,unknown -j 3").output);
    ASSERT_EQ(some.size(), 4U);
    EXPECT_EQ(some, (std::vector<std::string>{all[0], all[1], all[5], all[6]}));
    EXPECT_EQ(Run("$FIID --format json d --match audio").output, "[]\n");
}

// ---- Names ----------------------------------------------------------------------------------------------------------

class NameFilters : public ProgramDirectory {
 protected:
    NameFilters() {
        Run("mkdir -p d/.git d/build d/src/build d/src/deep");
        for (const std::string& name : all) WriteFile(directory_ + "/d/" + name, "GIF89a");
    }
    const std::vector<std::string> all = {".git/config",    ".h.gif",         "[x].gif",  "a.gif",
                                          "b.txt",          "build/o.gif",    "c.GIF",    "src/build/p.gif",
                                          "src/deep/a.gif", "src/deep/k.doc", "src/x.txt"};
};

struct NameCase {
    const char* options;
    std::vector<std::string> names;
};

TEST_F(NameFilters, TakeAndLeaveOut) {
    const NameCase cases[] = {
        // clang-format off
        {"",                                  all},
        {"--glob a.gif",                      {"a.gif", "src/deep/a.gif"}},
        {"--glob /a.gif",                     {"a.gif"}},
        {"--glob '*.gif'",                    {".h.gif", "[x].gif", "a.gif", "build/o.gif", "src/build/p.gif",
                                               "src/deep/a.gif"}},
        {"--glob '?.gif'",                    {"a.gif", "build/o.gif", "src/build/p.gif", "src/deep/a.gif"}},
        {"--glob '[ab].*'",                   {"a.gif", "b.txt", "src/deep/a.gif"}},
        {"--glob '[a-c].*'",                  {"a.gif", "b.txt", "c.GIF", "src/deep/a.gif"}},
        {"--glob '[!a].gif'",                 {"build/o.gif", "src/build/p.gif"}},
        {"--glob '*.[gG][iI][fF]' --exclude src --exclude build --exclude '.*'", {"[x].gif", "a.gif", "c.GIF"}},
        {"--glob '\\[x\\].gif'",              {"[x].gif"}},
        {"--glob '*.{doc,txt}'",              {"b.txt", "src/deep/k.doc", "src/x.txt"}},
        {"--glob '{a,b}.{gif,txt}'",          {"a.gif", "b.txt", "src/deep/a.gif"}},
        {"--glob 'src/*.txt'",                {"src/x.txt"}},
        {"--glob '/src/*'",                   {"src/x.txt"}},
        {"--glob '*/*.gif'",                  {"build/o.gif"}},
        {"--glob 'src/?eep/a.gif'",           {"src/deep/a.gif"}},
        {"--glob 'src?x.txt'",                {}},
        {"--glob 'src/**'",                   {"src/build/p.gif", "src/deep/a.gif", "src/deep/k.doc", "src/x.txt"}},
        {"--glob '**/deep/*'",                {"src/deep/a.gif", "src/deep/k.doc"}},
        {"--glob '**/a.gif'",                 {"a.gif", "src/deep/a.gif"}},
        {"--glob 'src/**/x.txt'",             {"src/x.txt"}},
        {"--glob 'src/**/a.gif'",             {"src/deep/a.gif"}},
        {"--glob '*.gif' --glob '!a.gif'",    {".h.gif", "[x].gif", "build/o.gif", "src/build/p.gif"}},
        {"--glob '!a.gif' --glob '*.gif' --glob '!.h.gif' --glob '![[]*'",
                                              {"a.gif", "build/o.gif", "src/build/p.gif", "src/deep/a.gif"}},
        {"--glob '!*.gif'",                   {".git/config", "b.txt", "c.GIF", "src/deep/k.doc", "src/x.txt"}},
        {"--glob '*.doc' --glob b.txt",       {"b.txt", "src/deep/k.doc"}},
        {"--exclude '*.gif'",                 {".git/config", "b.txt", "c.GIF", "src/deep/k.doc", "src/x.txt"}},
        {"--exclude src --exclude '[.[]*'",   {"a.gif", "b.txt", "build/o.gif", "c.GIF"}},
        {"--exclude build --exclude '[.[]*'", {"a.gif", "b.txt", "c.GIF", "src/deep/a.gif", "src/deep/k.doc",
                                               "src/x.txt"}},
        {"--exclude /build --glob '?.gif'",   {"a.gif", "src/build/p.gif", "src/deep/a.gif"}},
        {"--exclude build/ --glob '?.gif'",   {"a.gif", "src/deep/a.gif"}},
        {"--exclude a.gif/ --glob '?.gif'",   {"a.gif", "build/o.gif", "src/build/p.gif", "src/deep/a.gif"}},
        {"--exclude src/deep --glob 'src/**'", {"src/build/p.gif", "src/x.txt"}},
        {"--exclude 'src/**' --glob '?.gif'", {"a.gif", "build/o.gif"}},
        {"--glob '*.txt' --exclude b.txt",    {"src/x.txt"}},
        {"--exclude b.txt --glob b.txt",      {}},
        {"--no-hidden --glob '*.gif'",        {"[x].gif", "a.gif", "build/o.gif", "src/build/p.gif", "src/deep/a.gif"}},
        {"--no-hidden --exclude src",         {"[x].gif", "a.gif", "b.txt", "build/o.gif", "c.GIF"}},
        {"--hidden",                          all},
        {"--no-hidden --hidden",              all},
        {"--hidden --no-hidden --max-depth 1", {"[x].gif", "a.gif", "b.txt", "c.GIF"}},
        // clang-format on
    };
    for (const auto& [options, names] : cases) {
        std::vector<std::string> paths;
        for (const std::string& name : names) paths.push_back("d/" + name);
        const ProgramRun run = Run(std::string("$FIID --format path d ") + options);
        EXPECT_EQ(run.output, LinesOf(paths)) << options;
        EXPECT_EQ(run.messages, "") << options;
        EXPECT_EQ(run.exitStatus, 0) << options;
    }
}

TEST_F(NameFilters, OptionsInFrontOfAPathLeaveItAPath) {
    EXPECT_EQ(Run("$FIID --format path --glob '*.doc' d").output, "d/src/deep/k.doc\n");
    EXPECT_EQ(Run("$FIID --format path --exclude '*.gif' --match image d").output,
              "d/.git/config\nd/b.txt\nd/c.GIF\nd/src/deep/k.doc\nd/src/x.txt\n");
}

TEST_F(NameFilters, GlobsAreHeldAgainstThePathBelowTheNamedDirectory) {
    EXPECT_EQ(Run("$FIID --format path d d/src/deep --glob /a.gif").output, "d/a.gif\nd/src/deep/a.gif\n");
    EXPECT_EQ(Run("$FIID --format path d --glob d/a.gif").output, "");
    EXPECT_EQ(Run("$FIID --format path ./d/src/ --glob 'deep/*.doc'").output.find("k.doc") != std::string::npos, true);
    EXPECT_EQ(Run("echo d/src | $FIID --format path --files-from - --glob '/*'").output, "d/src/x.txt\n");
}

TEST_F(NameFilters, NamedPathsAreNotSubjectToThem) {
    EXPECT_EQ(Run("$FIID --format path d/a.gif --glob '*.pdf'").output, "d/a.gif\n");
    EXPECT_EQ(Run("$FIID --format path d/a.gif d/src/deep --exclude '*.gif' --exclude d").output,
              "d/a.gif\nd/src/deep/k.doc\n");
    EXPECT_EQ(Run("$FIID --format path --no-hidden d/.h.gif d/.git").output, "d/.h.gif\nd/.git/config\n");
    EXPECT_EQ(Run("echo d/.h.gif | $FIID --format path --no-hidden --exclude .h.gif --files-from -").output,
              "d/.h.gif\n");
    EXPECT_EQ(Run("cd d; $FIID --format path . --no-hidden --glob a.gif").output, "./a.gif\n./src/deep/a.gif\n");
}

TEST_F(NameFilters, LeftOutDirectoriesAreNotOpened) {
    Run("chmod 0 d/src");
    const ProgramRun run = Run(WithoutPrivileges() + "$FIID --format path d --exclude src --glob '?.gif'");
    EXPECT_EQ(run.output, "d/a.gif\nd/build/o.gif\n");
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(NameFilters, BytesCountAndCaseToo) {
    WriteFile(directory_ + "/d/\xff.gif", "GIF89a");
    WriteFile(directory_ + "/d/a\nb.gif", "GIF89a");
    EXPECT_EQ(Run("$FIID --print0 d --glob '/*.gif' --glob '!?.gif' --glob '!.*' --glob '!*[]]*'").output,
              std::string("d/a\nb.gif\0", 10));
    EXPECT_EQ(Run("$FIID --print0 d --glob $'\\xff*'").output, std::string("d/\xff.gif\0", 8));
    EXPECT_EQ(Run("$FIID --format path d --glob '*.Gif'").output, "");
    EXPECT_EQ(Run("$FIID --format path d --glob '*.GIF'").output, "d/c.GIF\n");
}

TEST_F(NameFilters, WrongGlobsAreWrongUsage) {
    for (const char* option : {"--glob", "--exclude"}) {
        for (const char* glob : {"'[a'", "'{a,b'"}) {
            const ProgramRun run = Run(std::string("$FIID d ") + option + " " + glob);
            EXPECT_EQ(run.exitStatus, 2) << option << " " << glob;
            EXPECT_EQ(run.output, "") << option << " " << glob;
            EXPECT_NE(run.messages, "") << option << " " << glob;
        }
    }
}

TEST_F(NameFilters, GlobsMadeToCostTimeEnd) {
    WriteFile(directory_ + "/d/" + std::string(200, 'a'), "GIF89a");
    std::string stars;
    for (int index = 0; index < 60; ++index) stars += "*a";
    EXPECT_EQ(Run("timeout 20 $FIID --format path d --glob '" + stars + "b'").exitStatus, 0);
    std::string braces;
    for (int index = 0; index < 40; ++index) braces += "{a,aa}";
    EXPECT_NE(Run("timeout 20 $FIID --format path d --glob '" + braces + "b'").exitStatus, 124);
}

// ---- Sizes ----------------------------------------------------------------------------------------------------------

TEST_F(ProgramDirectory, SizesAreInclusiveOnBothSides) {
    Run("mkdir d; for size in 0 1 1023 1024 1025 1048575 1048576 1048577; do truncate -s $size d/$size; done; "
        "truncate -s 1G d/G; truncate -s 1T d/T");
    const struct {
        const char* options;
        const char* names;
    } cases[] = {
        // clang-format off
        {"--min-size 1K --max-size 1048575",   "1024 1025 1048575 "},
        {"--max-size 1K",                      "0 1 1023 1024 "},
        {"--min-size 1024 --max-size 1024",    "1024 "},
        {"--min-size 1025 --max-size 1023",    ""},
        {"--min-size 1M --max-size 1048577",   "1048576 1048577 "},
        {"--min-size 1025 --max-size 1M",      "1025 1048575 1048576 "},
        {"--max-size 0",                       "0 "},
        {"--min-size 0 --max-size 1",          "0 1 "},
        {"--min-size 1G",                      "G T "},
        {"--min-size 1048578 --max-size 1G",   "G "},
        {"--min-size 1T",                      "T "},
        {"--min-size 1099511627777",           ""},
        {"--min-size 1024G",                   "T "},
        // clang-format on
    };
    for (const auto& [options, names] : cases) {
        for (const char* paths : {"d", "d/*"}) {  // also for files that are named
            const ProgramRun run = Run(std::string("$FIID --format path ") + options + " " + paths +
                                       " | sed 's/.*\\///' | sort | tr '\\n' ' '");
            EXPECT_EQ(PartsOf(run.output, ' ').size(), PartsOf(names, ' ').size()) << options;
            EXPECT_EQ(Sorted(PartsOf(run.output, ' ')), Sorted(PartsOf(names, ' '))) << options << " " << paths;
        }
    }
    for (const char* size :
         {"''", "-1", "x", "1X", "K", "1KK", "99999999999999999999", "18446744073709551616", "16777216T"}) {
        for (const char* option : {"--min-size", "--max-size"}) {
            const ProgramRun run = Run(std::string("$FIID d ") + option + " " + size);
            EXPECT_EQ(run.exitStatus, 2) << option << " " << size;
            EXPECT_NE(run.messages, "") << option << " " << size;
        }
    }
}

TEST_F(ProgramDirectory, SizesAreNotThoseOfPipes) {
    Run("mkfifo fifo");
    EXPECT_EQ(Run("timeout 20 bash -c 'printf GIF89a > fifo' & $FIID --format path --min-size 1K fifo").output,
              "fifo\n");
    EXPECT_EQ(Run("printf GIF89a | $FIID --format path --min-size 1K -").output, "-\n");
    EXPECT_EQ(Run("$FIID --format path --max-size 1K missing").exitStatus, 1);
}

// ---- Paths for other programs ---------------------------------------------------------------------------------------

TEST_F(FormatFilters, PathsFeedOtherPrograms) {
    Write("d/new\nline.gif", "GIF89a");
    EXPECT_EQ(Run("$FIID --print0 d --match image").output, std::string("d/a.gif\0d/new\nline.gif\0", 23));
    EXPECT_EQ(Run("$FIID --format path d --match image").output, "d/a.gif\nd/new\nline.gif\n");
    EXPECT_EQ(Run("$FIID --print0 d --match image | xargs -0 stat -c %s --").output, "6\n6\n");
    const ProgramRun failed = Run("$FIID --print0 missing d/a.gif");
    EXPECT_EQ(failed.output, std::string("d/a.gif\0", 8));
    EXPECT_EQ(failed.exitStatus, 1);
}

}  // namespace
