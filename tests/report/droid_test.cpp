// Rows of DROID's export.
#include "report/droid.h"

#include <gtest/gtest.h>

#include "report/path_parts.h"
#include "support/report_text.h"

namespace {

std::string Header(const std::string& hash) {
    return "\"ID\",\"PARENT_ID\",\"URI\",\"FILE_PATH\",\"NAME\",\"METHOD\",\"STATUS\",\"SIZE\",\"TYPE\",\"EXT\","
           "\"LAST_MODIFIED\",\"EXTENSION_MISMATCH\",\"" +
           hash + "\",\"FORMAT_COUNT\",\"PUID\",\"MIME_TYPE\",\"FORMAT_NAME\",\"FORMAT_VERSION\"\n";
}

// The rows of files in the root.
std::string RowsOf(const std::vector<Record>& records) {
    const std::string report = ReportOf(records, OutputFormat::Droid);
    EXPECT_TRUE(report.starts_with(Header("HASH")));
    return report.substr(Header("HASH").size());
}

Record Picture() {
    Record record = RecordOf("/b.GIF", 1503, "GIF image");
    record.answer.basis = FIID_BASIS_SIGNATURE;
    record.answer.mime = "image/gif";
    record.answer.puids = "fmt/4";
    record.answer.version = "89a";
    record.answer.size = 6;
    record.answer.modified_known = 1;
    record.answer.modified_seconds = 981173106;
    return record;
}

TEST(Droid, TellsFilesAndTheirFolders) {
    Record inside = Picture();
    inside.path = "/s/t/a b/c\xFF.gif";
    ReportOptions options = OptionsFor(OutputFormat::Droid);
    options.hash = HashKind::Sha256;
    options.named = {"/s/t"};
    inside.hash = "0a1b";
    EXPECT_EQ(ReportOf({inside}, options),
              Header("SHA256_HASH") +
                  R"("1","","file:/s/t/","/s/t","t","","Done","","Folder","","","false","","","","","","")"
                  "\n"
                  R"("2","1","file:/s/t/a%20b/","/s/t/a b","a b","","Done","","Folder","","","false","","","","","","")"
                  "\n"
                  R"("3","2","file:/s/t/a%20b/c%FF.gif","/s/t/a b/c)"
                  "\xFF"
                  R"(.gif","c)"
                  "\xFF"
                  R"(.gif","Signature","Done","6","File","gif","2001-02-03T04:05:06","false","0a1b","1","fmt/4",)"
                  "\"image/gif\",\"GIF image\",\"89a\"\n");
}

TEST(Droid, NamesTheHash) {
    ReportOptions options = OptionsFor(OutputFormat::Droid);
    EXPECT_EQ(ReportOf({}, options), Header("HASH"));
    options.hash = HashKind::Xxh3;
    EXPECT_EQ(ReportOf({}, options), Header("XXH3_HASH"));
}

TEST(Droid, TellsRelativePathsFromTheWorkingDirectory) {
    Record record = Picture();
    record.path = "./x/../b.GIF";
    std::string uri;
    AppendFileUri(uri, WorkingDirectory() + "/b.GIF");
    EXPECT_TRUE(
        RowsOf({record}).starts_with("\"1\",\"\",\"" + uri + "\",\"" + WorkingDirectory() + "/b.GIF\",\"b.GIF\","));
}

TEST(Droid, WritesARowForEachIdentifier) {
    Record record = Picture();
    record.path = "/a\"\n\"b.gif";
    record.answer.puids = "fmt/3 fmt/4 x-fmt/1";
    const std::string start =
        "\"1\",\"\",\"file:/a%22%0A%22b.gif\",\"/a\"\"\n\"\"b.gif\",\"a\"\"\n\"\"b.gif\",\"Signature\",\"Done\",\"6\","
        "\"File\",\"gif\",\"2001-02-03T04:05:06\",\"false\",\"\",\"3\",";
    const std::string end = ",\"image/gif\",\"GIF image\",\"89a\"\n";
    const std::string rows = RowsOf({record, Picture()});
    const std::string expected = start + "\"fmt/3\"" + end + start + "\"fmt/4\"" + end + start + "\"x-fmt/1\"" + end;
    EXPECT_EQ(rows.substr(0, expected.size()), expected);
    EXPECT_TRUE(rows.substr(expected.size()).starts_with("\"2\",\"\",\"file:/b.GIF\","));
}

TEST(Droid, CountsNoFormatsWherePronomHasNone) {
    Record unknown = Picture();
    unknown.answer.basis = FIID_BASIS_NONE;
    unknown.answer.puids = unknown.answer.version = "";
    unknown.answer.name = "Binary data, not known";
    unknown.answer.mime = "application/octet-stream";
    Record known = Picture();
    known.answer.puids = "";
    EXPECT_EQ(RowsOf({unknown, known}),
              R"("1","","file:/b.GIF","/b.GIF","b.GIF","","Done","6","File","GIF","2001-02-03T04:05:06","false","",)"
              R"("0","","","","")"
              "\n"
              R"("2","","file:/b.GIF","/b.GIF","b.GIF","","Done","6","File","GIF","2001-02-03T04:05:06",)"
              R"("false","","0","","image/gif","GIF image","89a")"
              "\n");
}

// The fields of a record's only row.
std::vector<std::string> FieldsOf(const Record& record) {
    std::vector<std::string> fields(1);
    const std::string rows = RowsOf({record});
    for (std::size_t index = 0; index + 1 < rows.size(); ++index) {
        if (rows.compare(index, 3, "\",\"") == 0) {
            fields.emplace_back();
            index += 2;
        } else if (index > 0) {
            fields.back() += rows[index];
        }
    }
    fields.back().pop_back();
    EXPECT_EQ(fields.size(), 18U);
    fields.resize(18);
    return fields;
}

enum Column { Name = 4, Method, Status, Size, Type, Extension, Modified, Mismatch, Hash, Count };

TEST(Droid, TellsTheMethodInItsWords) {
    constexpr const char* methods[] = {"",          "Signature", "Container", "Container",
                                       "Signature", "Signature", "Extension", "Signature"};
    Record record = Picture();
    for (std::int32_t basis = FIID_BASIS_NONE; basis <= FIID_BASIS_TEXT; ++basis) {
        record.answer.basis = basis;
        EXPECT_EQ(FieldsOf(record)[Method], methods[basis]) << basis;
    }
}

TEST(Droid, TellsTheStatusOfWhatCouldNotBeRead) {
    const auto statusOf = [](const std::string& error) { return FieldsOf(FailedRecord("/a", error))[Status]; };
    EXPECT_EQ(FieldsOf(Picture())[Status], "Done");
    EXPECT_EQ(statusOf("Permission denied"), "Access denied");
    EXPECT_EQ(statusOf("FIFO: Permission denied"), "Access denied");
    EXPECT_EQ(statusOf("Operation not permitted"), "Access denied");
    EXPECT_EQ(statusOf("No such file or directory"), "Not found");
    EXPECT_EQ(statusOf("is a symbolic link that leads nowhere"), "Not found");
    EXPECT_EQ(statusOf("Input/output error"), "Error");
    Record gone = Picture();
    gone.change.kind = ChangeKind::Gone;
    EXPECT_EQ(FieldsOf(gone)[Status], "Not found");
}

TEST(Droid, TellsOfAFailedFileWhatItsDirectoryKnows) {
    Record record = FailedRecord("/a.doc", "Permission denied");
    record.answer = Picture().answer;
    std::vector<std::string> fields = FieldsOf(record);
    for (const Column column : {Method, Size, Modified, Hash, Count}) EXPECT_EQ(fields[column], "") << column;
    EXPECT_EQ(fields[Type], "File");
    EXPECT_EQ(fields[Extension], "doc");
    EXPECT_EQ(fields[Mismatch], "false");
    record.state = {true, 12, 0, 0, 1, 1};
    fields = FieldsOf(record);
    EXPECT_EQ(fields[Size], "12");
    EXPECT_EQ(fields[Modified], "1970-01-01T00:00:00");
}

TEST(Droid, LeavesOutSizesAndTimesThatAreNotKnown) {
    Record record = Picture();
    record.answer.size = FIID_SIZE_UNKNOWN;
    record.answer.modified_known = 0;
    EXPECT_EQ(FieldsOf(record)[Size], "");
    EXPECT_EQ(FieldsOf(record)[Modified], "");
    record.answer.modified_known = 1;
    record.answer.modified_seconds = 253402300800;
    EXPECT_EQ(FieldsOf(record)[Modified], "");
}

TEST(Droid, TellsUnusualExtensions) {
    Record record = Picture();
    record.answer.warnings = FIID_WARN_CUT;
    EXPECT_EQ(FieldsOf(record)[Mismatch], "false");
    record.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
    EXPECT_EQ(FieldsOf(record)[Mismatch], "true");
}

TEST(Droid, TellsNoPlaceOfStandardInput) {
    Record record = Picture();
    record.path = "-";
    EXPECT_TRUE(RowsOf({record}).starts_with(R"("1","","","-","-","Signature","Done","6","File","",)"));
}

TEST(Droid, NamesTheRoot) {
    ReportOptions options = OptionsFor(OutputFormat::Droid);
    options.named = {"/"};
    EXPECT_NE(ReportOf({Picture()}, options).find("\"1\",\"\",\"file:/\",\"/\",\"/\",\"\",\"Done\",\"\",\"Folder\","),
              std::string::npos);
}

}  // namespace
