// What the program writes for others: chosen fields, the columns of DROID and Siegfried, pages, hashes, summaries.
#include <map>
#include <nlohmann/json.hpp>
#include <regex>

#include "support/program_directory.h"

namespace {

using Json = nlohmann::json;

class Output : public ProgramDirectory {
 protected:
    Output() {
        MakeDirectory("d");
        Write("d/a.gif", "GIF89a");
        Write("d/b.doc", "%PDF-1.4\n");
        Write("d/c,d", std::string("\x01\x02\x00\x03\xff\x00", 6));
        Run("touch -d @981173106 d/*");  // 2001-02-03T04:05:06Z
    }
};

// The cell of a row under a heading.
std::string CellOf(const std::vector<std::vector<std::string>>& rows, std::size_t row, const std::string& heading) {
    const auto column = std::find(rows[0].begin(), rows[0].end(), heading);
    const auto index = static_cast<std::size_t>(column - rows[0].begin());
    return index < rows.at(row).size() ? rows[row][index] : "no column " + heading;
}

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST_F(Output, FieldsComeInTheOrderThatWasAskedFor) {
    EXPECT_EQ(Run("$FIID --format csv --fields size,path,fiid d missing").output,
              "size,path,fiid\r\n6,d/a.gif,1503\r\n9,d/b.doc,1557\r\n6,\"d/c,d\",4022\r\n,missing,\r\n");
    EXPECT_EQ(Run("$FIID --format tsv --fields fiid,mtime,path,family d/a.gif").output,
              "fiid\tmtime\tpath\tfamily\n1503\t2001-02-03T04:05:06Z\td/a.gif\timage\n");
    EXPECT_EQ(Run("$FIID --format ndjson --fields size,path,puid d/a.gif").output,
              "{\"size\":6,\"path\":\"d/a.gif\",\"puid\":[\"fmt/4\"]}\n");
    EXPECT_EQ(Run("$FIID --format json --fields fiid,path d/a.gif").output,
              "[\n{\"fiid\":1503,\"path\":\"d/a.gif\"}\n]\n");
    EXPECT_EQ(Run("$FIID --format csv --fields path d/a.gif").output, "path\r\nd/a.gif\r\n");
}

TEST_F(Output, EveryFieldOfARecordMayBeAskedFor) {
    const std::string fields = "mtime,size,warning,basis,version,further,error,puid,mime,name,fiid,path,family";
    const auto chosen = CsvRowsOf(Run("$FIID --format csv d missing --fields " + fields).output);
    const auto all = CsvRowsOf(Run("$FIID --format csv d missing").output);
    ASSERT_EQ(chosen.size(), 5U);
    for (const std::string& field : PartsOf(fields, ',')) {
        if (field == "family") continue;
        for (std::size_t row = 1; row < 5; ++row)
            EXPECT_EQ(CellOf(chosen, row, field), CellOf(all, row, field)) << field;
    }
    for (const std::string& field :
         PartsOf("row,signature,routine,further_row,further_signature,looked_at,bytes_read,calls", ',')) {
        EXPECT_EQ(Run("$FIID --explain --format csv d/a.gif --fields " + field).exitStatus, 0) << field;
        EXPECT_EQ(Run("$FIID --format csv d/a.gif --fields " + field).exitStatus, 2) << field;
    }
}

TEST_F(Output, WrongFieldsAreWrongUsage) {
    for (const char* options :
         {"--fields color", "--fields path,color", "--fields ''", "--fields path,,fiid", "--fields PATH",
          "--fields row", "--fields sha256", "--fields xxh3", "--hash xxh3 --fields sha256",
          "--hash sha256 --fields xxh3", "--fields change", "--fields before", "--fields copies"}) {
        const ProgramRun run = Run(std::string("$FIID --format csv d ") + options);
        EXPECT_EQ(run.exitStatus, 2) << options;
        EXPECT_EQ(run.output, "") << options;
        EXPECT_NE(run.messages, "") << options;
    }
    EXPECT_NE(Run("$FIID --format csv d --fields path,color").messages.find("color"), std::string::npos);
    EXPECT_NE(Run("$FIID --format csv d --fields path,row").messages.find("explain"), std::string::npos);
    EXPECT_NE(Run("$FIID --format csv d --fields sha256").messages.find("--hash"), std::string::npos);
}

TEST_F(Output, WrongFormatsAreWrongUsage) {
    for (const char* options : {"--format xml", "--format DROID", "--format path --mime", "--formats --format html",
                                "--formats --format droid", "--summary --format html", "--summary --format droid",
                                "--summary --format path", "--by color", "--hash md5", "--hash ''", "--hash blake3"}) {
        const ProgramRun run = Run(std::string("$FIID ") + options + (options[8] == 's' ? "" : " d"));
        EXPECT_EQ(run.exitStatus, 2) << options;
        EXPECT_EQ(run.output, "") << options;
    }
}

// ---- Columns of other programs --------------------------------------------------------------------------------------

// DROID (The National Archives) exports a profile as CSV in these columns, as its user guide tells. The column of the hash is
// named after its kind. TYPE is File, Folder or Container; METHOD Signature, Container or Extension; EXTENSION_MISMATCH
// true or false. A file with several possible formats has a row for each in the form "one row per format".
TEST_F(Output, DroidColumns) {
    const auto rows = CsvRowsOf(Run("$FIID --format droid d/a.gif d/b.doc d/c,d").output);
    ASSERT_GE(rows.size(), 4U);
    ASSERT_EQ(rows[0].size(), 18U);
    EXPECT_TRUE(rows[0][12].ends_with("HASH")) << rows[0][12];
    std::vector<std::string> others = rows[0];
    others.erase(others.begin() + 12);
    EXPECT_EQ(others,
              PartsOf("ID,PARENT_ID,URI,FILE_PATH,NAME,METHOD,STATUS,SIZE,TYPE,EXT,LAST_MODIFIED,EXTENSION_MISMATCH,"
                      "FORMAT_COUNT,PUID,MIME_TYPE,FORMAT_NAME,FORMAT_VERSION",
                      ','));
    std::size_t gif = 0;
    std::size_t doc = 0;
    std::size_t unknown = 0;
    for (std::size_t row = 1; row < rows.size(); ++row) {
        EXPECT_EQ(rows[row].size(), 18U);
        if (CellOf(rows, row, "NAME") == "a.gif") gif = row;
        if (CellOf(rows, row, "NAME") == "b.doc") doc = row;
        if (CellOf(rows, row, "NAME") == "c,d") unknown = row;
    }
    ASSERT_TRUE(gif != 0 && doc != 0 && unknown != 0);
    const struct {
        const char* column;
        const char* cell;
    } cells[] = {{"METHOD", "Signature"},
                 {"STATUS", "Done"},
                 {"SIZE", "6"},
                 {"TYPE", "File"},
                 {"EXT", "gif"},
                 {"FORMAT_COUNT", "1"},
                 {"PUID", "fmt/4"},
                 {"MIME_TYPE", "image/gif"},
                 {"FORMAT_VERSION", "89a"},
                 {"EXTENSION_MISMATCH", "false"}};
    for (const auto& [column, cell] : cells) EXPECT_EQ(CellOf(rows, gif, column), cell) << column;
    EXPECT_TRUE(CellOf(rows, gif, "FILE_PATH").ends_with("d/a.gif"));
    EXPECT_TRUE(CellOf(rows, gif, "URI").starts_with("file:/"));
    EXPECT_TRUE(CellOf(rows, gif, "URI").ends_with("/d/a.gif"));
    EXPECT_TRUE(CellOf(rows, gif, "LAST_MODIFIED").starts_with("2001-02-03T04:05:06"));
    EXPECT_EQ(CellOf(rows, doc, "PUID"), "fmt/18");
    EXPECT_EQ(CellOf(rows, doc, "EXTENSION_MISMATCH"), "true");
    EXPECT_EQ(CellOf(rows, unknown, "FORMAT_COUNT"), "0");
    EXPECT_EQ(CellOf(rows, unknown, "PUID"), "");
    const auto hashed = CsvRowsOf(Run("$FIID --format droid --hash sha256 d/a.gif").output);
    EXPECT_EQ(hashed[0][12], "SHA256_HASH");
    EXPECT_EQ(hashed.back()[12], PartsOf(Run("sha256sum d/a.gif").output, ' ')[0]);
}

TEST_F(Output, DroidIdentifiersLeadToTheFolder) {
    Run("mkdir d/low; cp d/a.gif d/low/; cp d/a.gif d/z");
    const auto rows = CsvRowsOf(Run("$FIID --format droid d missing").output);
    std::map<std::string, std::string> pathOf = {{"", ""}};
    for (std::size_t row = 1; row < rows.size(); ++row) {
        const std::string path = CellOf(rows, row, "FILE_PATH");
        const std::string identifier = CellOf(rows, row, "ID");
        EXPECT_TRUE(!pathOf.contains(identifier) || pathOf[identifier] == path) << "an identifier is one path's";
        pathOf[identifier] = path;
        const std::string parent = CellOf(rows, row, "PARENT_ID");
        ASSERT_TRUE(pathOf.contains(parent)) << "the folder stands in front of " << path;
        EXPECT_EQ(parent.empty() ? "" : path.substr(0, path.rfind('/')), pathOf[parent]);
    }
    std::vector<std::string> folders;
    for (std::size_t row = 1; row < rows.size(); ++row) {
        if (CellOf(rows, row, "TYPE") == "Folder") folders.push_back(CellOf(rows, row, "NAME"));
    }
    EXPECT_EQ(folders, (std::vector<std::string>{"d", "low"}));
    EXPECT_EQ(CellOf(rows, rows.size() - 1, "NAME"), "missing");
    EXPECT_NE(CellOf(rows, rows.size() - 1, "STATUS"), "Done");
}

// Siegfried's csv has these columns, as its documentation tells; since 1.10 a column "class" stands in front of "basis".
// "namespace" is the identifier's registry; id is UNKNOWN where none fits.
TEST_F(Output, SiegfriedColumns) {
    const auto rows = CsvRowsOf(Run("$FIID --format siegfried d missing").output);
    ASSERT_EQ(rows.size(), 5U);
    std::vector<std::string> headings = rows[0];
    std::erase(headings, "class");
    EXPECT_EQ(headings,
              PartsOf("filename,filesize,modified,errors,namespace,id,format,version,mime,basis,warning", ','));
    const struct {
        const char* column;
        const char* cell;
    } cells[] = {
        {"filename", "d/a.gif"}, {"filesize", "6"},  {"errors", ""},        {"namespace", "pronom"},
        {"id", "fmt/4"},         {"version", "89a"}, {"mime", "image/gif"}, {"modified", "2001-02-03T04:05:06Z"}};
    for (const auto& [column, cell] : cells) EXPECT_EQ(CellOf(rows, 1, column), cell) << column;
    EXPECT_NE(CellOf(rows, 1, "format"), "");
    EXPECT_EQ(CellOf(rows, 2, "id"), "fmt/18");
    EXPECT_NE(CellOf(rows, 2, "warning").find("extension mismatch"), std::string::npos);
    EXPECT_EQ(CellOf(rows, 3, "filename"), "d/c,d");
    EXPECT_EQ(CellOf(rows, 3, "id"), "UNKNOWN");
    EXPECT_EQ(CellOf(rows, 4, "filename"), "missing");
    EXPECT_NE(CellOf(rows, 4, "errors"), "");
    // A column of its own holds the hash, between errors and namespace.
    const auto hashed = CsvRowsOf(Run("$FIID --format siegfried --hash sha256 d/a.gif").output);
    ASSERT_EQ(hashed[0].size(), rows[0].size() + 1);
    EXPECT_EQ(hashed[0][4], "sha256");
    EXPECT_EQ(hashed[1][4], PartsOf(Run("sha256sum d/a.gif").output, ' ')[0]);
}

// ---- Pages ----------------------------------------------------------------------------------------------------------

TEST_F(Output, PageNeedsNoNetwork) {
    for (int index = 0; index < 137; ++index) Write("d/copy" + std::to_string(index) + ".gif", "GIF89a");
    const ProgramRun run = Run("$FIID --format html d missing");
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_EQ(run.messages, "fiid: missing: No such file or directory\n");
    const std::string& page = run.output;
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>") || page.starts_with("<!doctype html>"));
    EXPECT_NE(page.find("</html>"), std::string::npos);
    for (const char* load : {"(src|srcset|data|poster|action)\\s*=\\s*[\"']?\\s*(https?:)?//", "<link\\b", "@import",
                             "<script[^>]*\\bsrc\\b", "url\\(\\s*[\"']?\\s*(https?:)?//", "fetch\\(", "XMLHttpRequest",
                             "WebSocket", "<base\\b"}) {
        EXPECT_FALSE(std::regex_search(page, std::regex(load, std::regex::icase))) << load;
    }
    for (const char* fact : {"copy136.gif", "b.doc", "missing", "No such file or directory", "138"}) {
        EXPECT_NE(page.find(fact), std::string::npos) << fact;
    }
}

TEST_F(Output, NamesDoNotBecomePartOfThePage) {
    Run("mkdir -p 'd/<'; cp d/a.gif 'd/</script><script>alert(1)<'; cp d/a.gif 'd/<!--<script>'; cp d/a.gif "
        "'d/\"><img src=x onerror=alert(2)>'; cp d/a.gif $'d/\\xff\\n\\xe2\\x80\\xa8'; cp d/a.gif 'd/${alert(3)}`'");
    const std::string page = Run("$FIID --format html d '</title><script>alert(4)</script>'").output;
    for (const char* part : {"<script>alert(", "</script><script>a", "<!--<script>", "<img src=x", "\"><img"}) {
        EXPECT_EQ(page.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(Run("$FIID --format html d > page; iconv -f UTF-8 -t UTF-8 page > /dev/null").exitStatus, 0);
    EXPECT_NE(Run("mkdir none; $FIID --format html none").output.find("</html>"), std::string::npos);
}

// ---- Hashes ---------------------------------------------------------------------------------------------------------

// FIPS 180-4's examples, and what xxHash's own documentation and xxhsum -H3 tell.
TEST_F(Output, HashesAreThoseThatAreKnown) {
    Write("empty", "");
    Write("abc", "abc");
    EXPECT_EQ(Run("$FIID --format csv --hash sha256 --fields sha256,path empty abc").output,
              "sha256,path\r\ne3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855,empty\r\n"
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad,abc\r\n");
    EXPECT_EQ(Run("$FIID --format csv --hash xxh3 --fields path,xxh3 empty abc").output,
              "path,xxh3\r\nempty,2d06800538d394c2\r\nabc,78af5f94892f3950\r\n");
    const Json json = Json::parse(Run("$FIID --format json --hash xxh3 abc missing").output);
    EXPECT_EQ(json[0]["xxh3"], "78af5f94892f3950");
    EXPECT_FALSE(json[1].contains("xxh3"));
    const auto rows = CsvRowsOf(Run("$FIID --format csv --hash sha256 abc").output);
    EXPECT_EQ(CellOf(rows, 1, "sha256").substr(0, 8), "ba7816bf");
    EXPECT_EQ(CellOf(rows, 1, "fiid"), "4022");
}

TEST_F(Output, HashesOfFilesOfManySizesArePlain) {
    Run("mkdir e; for size in 1 55 56 63 64 65 4095 4096 4097 65535 65536 65537 131072 1000000 1048576 1048577 "
        "3000000; do "
        "yes $size | head -c $size > e/$size; done");
    EXPECT_EQ(Run("$FIID --format tsv --hash sha256 --fields sha256,path e -j 3 | tail -n +2 | sed 's/\\t/  /' > ours; "
                  "sort -k 2 ours > sorted; sha256sum e/* | sort -k 2 | cmp - sorted && wc -l < sorted")
                  .output,
              "17\n");
}

TEST_F(Output, HashOfAPipeAndOfWhatCannotBeRead) {
    Run("mkfifo fifo");
    EXPECT_EQ(Run("timeout 20 bash -c 'printf abc > fifo' & $FIID --format tsv --hash xxh3 --fields path,xxh3,size "
                  "fifo | tail -n 1")
                  .output,
              "fifo\t78af5f94892f3950\t3\n");
    EXPECT_EQ(Run("printf abc | $FIID --format tsv --hash xxh3 --fields path,xxh3 - | tail -n 1").output,
              "-\t78af5f94892f3950\n");
    EXPECT_EQ(Run("printf abc > abc; $FIID --format tsv --hash xxh3 --fields path,xxh3 - < abc | tail -n 1").output,
              "-\t78af5f94892f3950\n");
    EXPECT_EQ(Run("$FIID --hash sha256 /proc/self/mem").exitStatus, 1);
}

TEST_F(Output, AnswersAreTheSameWithAHash) {
    const std::string run = "cd '" FIID_SAMPLES_DIR
                            "'; $FIID . --format tsv --fields "
                            "path,fiid,name,mime,puid,error,further,version,basis,warning,size,mtime ";
    const ProgramRun compared =
        Run("(" + run + ") > plain; (" + run + " --hash xxh3) > hashed; cmp plain hashed && wc -l < hashed");
    EXPECT_EQ(compared.messages, "");
    EXPECT_GT(std::stoi("0" + compared.output), 100);
}

// ---- Summaries ------------------------------------------------------------------------------------------------------

// Ten files: three images, two of them with an unusual name, four texts, an empty one, and two that are not known.
class Summaries : public ProgramDirectory {
 protected:
    Summaries() {
        Run("mkdir -p d/low d/high; printf GIF89a > d/a.gif; printf GIF89a > d/b.txt; printf GIF89a > d/low/c.PDF; "
            "for name in 1.txt 2.txt low/3 low/4.TXT; do echo plain text > d/$name; done; : > d/high/empty; "
            "printf '\\1\\2\\0\\3\\377\\0' | tee d/low/x > d/low/y.");
    }
};

TEST_F(Summaries, NumbersAddUpByEveryKey) {
    for (const char* key : {"format", "family", "mime", "extension", "directory"}) {
        const std::string run = std::string("$FIID d missing --by ") + key + " --format ";
        const ProgramRun whole = Run(run + "json");
        EXPECT_EQ(whole.exitStatus, 1) << key;
        EXPECT_EQ(whole.messages, "fiid: missing: No such file or directory\n") << key;
        const Json summary = Json::parse(whole.output);
        EXPECT_EQ(summary["by"], key);
        EXPECT_EQ(summary["files"], 11) << key;
        EXPECT_EQ(summary["bytes"], 74) << key;
        EXPECT_EQ(summary["unreadable"], 1) << key;
        EXPECT_EQ(summary["unusual"], 2) << key;
        EXPECT_EQ(summary["unusual_bytes"], 12) << key;
        int files = summary["unreadable"].get<int>();
        int bytes = 0;
        int last = 11;
        for (const Json& group : summary["groups"]) {
            EXPECT_LE(group["count"].get<int>(), last) << "the largest first";
            last = group["count"].get<int>();
            files += last;
            bytes += group["bytes"].get<int>();
            EXPECT_NEAR(group["share"].get<double>(), last / 11.0, 0.001);
        }
        if (std::string(key) == "format") {
            files += summary["unknown"].get<int>();
            bytes += summary["unknown_bytes"].get<int>();
        }
        EXPECT_EQ(files, 11) << key;
        EXPECT_EQ(bytes, 74) << key;
        const std::vector<std::string> lines = PartsOf(Run(run + "ndjson").output);
        ASSERT_EQ(lines.size(), summary["groups"].size() + 1) << key;
        Json end = summary;
        end.erase("groups");
        EXPECT_EQ(Json::parse(lines.back()), end) << key;
        for (std::size_t index = 0; index + 1 < lines.size(); ++index) {
            EXPECT_EQ(Json::parse(lines[index]), summary["groups"][index]) << key;
        }
    }
}

TEST_F(Summaries, GroupsAreThoseOfTheKey) {
    const struct {
        const char* key;
        const char* field;
        std::vector<std::pair<std::string, int>> counts;  // the largest first, then by name
    } cases[] = {
        {"mime", "mime", {{"text/plain", 4}, {"image/gif", 3}, {"application/octet-stream", 2}, {"inode/x-empty", 1}}},
        {"family", "family", {{"text", 4}, {"image", 3}, {"unknown", 3}}},
        {"extension", "extension", {{"txt", 4}, {"", 4}, {"gif", 1}, {"pdf", 1}}},
        {"directory", "directory", {{"d/low", 5}, {"d", 4}, {"d/high", 1}}},
        {"format", "name", {{"Text of 7-bit characters", 4}, {"GIF image", 3}, {"Empty file", 1}}},
    };
    for (const auto& [key, field, counts] : cases) {
        const Json summary = Json::parse(Run(std::string("$FIID d --format json --summary --by ") + key).output);
        std::map<std::string, int> seen;
        for (const Json& group : summary["groups"]) seen[group[field]] = group["count"];
        EXPECT_EQ(seen, (std::map<std::string, int>(counts.begin(), counts.end()))) << key;
        EXPECT_EQ(summary["groups"][0][field],
                  key == std::string("extension") ? summary["groups"][0][field] : Json(counts[0].first));
    }
}

TEST_F(Summaries, EveryFormatTellsTheSameNumbers) {
    EXPECT_EQ(Run("$FIID --summary d missing").exitStatus, 1);
    const ProgramRun text = Run("$FIID --summary d missing");
    EXPECT_EQ(text.output, Run("$FIID --by format d missing").output);
    for (const char* fact : {"GIF image", "Text of 7-bit characters", "Empty file"}) {
        EXPECT_NE(text.output.find(fact), std::string::npos) << fact;
    }
    EXPECT_EQ(text.output.find('\x1b'), std::string::npos);
    const auto rows = CsvRowsOf(Run("$FIID --summary --format csv d missing").output);
    std::map<std::string, std::string> counts;
    for (std::size_t row = 1; row < rows.size(); ++row) counts[CellOf(rows, row, "name")] = CellOf(rows, row, "count");
    EXPECT_EQ(counts["GIF image"], "3");
    EXPECT_EQ(counts["Text of 7-bit characters"], "4");
    const std::vector<std::string> lines = PartsOf(Run("$FIID --summary --format tsv d missing").output);
    ASSERT_EQ(lines.size(), rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) EXPECT_EQ(PartsOf(lines[row] + "\t", '\t'), rows[row]);
}

TEST_F(Summaries, CountWhatFiltersTake) {
    EXPECT_EQ(Json::parse(Run("$FIID --summary --format json d --match image").output)["files"], 3);
    EXPECT_EQ(Json::parse(Run("$FIID --summary --format json --mismatch d").output)["unusual"], 2);
    EXPECT_EQ(Json::parse(Run("$FIID --summary --format json d --glob '*.txt'").output)["files"], 3);
    EXPECT_EQ(Json::parse(Run("mkdir none; $FIID --summary --format json none").output)["files"], 0);
    EXPECT_EQ(Run("$FIID --summary none").exitStatus, 0);
    EXPECT_EQ(Run("$FIID --summary --fields path d").exitStatus, 2);
}

}  // namespace
