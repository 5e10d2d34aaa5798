// Rows in siegfried's form.
#include "report/siegfried.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/report_text.h"

namespace {

const std::string header = "filename,filesize,modified,errors,namespace,id,format,version,mime,class,basis,warning\n";

std::string RowsOf(const std::vector<Record>& records) {
    const std::string report = ReportOf(records, OutputFormat::Siegfried);
    EXPECT_TRUE(report.starts_with(header));
    return report.substr(header.size());
}

Record Picture() {
    Record record = RecordOf("d/b.GIF", 1503, "GIF image");
    record.answer.basis = FIID_BASIS_SIGNATURE;
    record.answer.mime = "image/gif";
    record.answer.puids = "fmt/4";
    record.answer.version = "89a";
    record.answer.extensions = "jpg gif";
    record.answer.family = "image";
    record.answer.size = 6;
    record.answer.modified_known = 1;
    record.answer.modified_seconds = 981173106;
    return record;
}

TEST(Siegfried, TellsFiles) {
    Record record = Picture();
    EXPECT_EQ(RowsOf({record}),
              "d/b.GIF,6,2001-02-03T04:05:06Z,,pronom,fmt/4,GIF image,89a,image/gif,Image (Raster),"
              "extension match gif; byte match,\n");
    record.path = "a,\"b\"";
    record.answer.name = "GIF, image";
    EXPECT_EQ(RowsOf({record}),
              "\"a,\"\"b\"\"\",6,2001-02-03T04:05:06Z,,pronom,fmt/4,\"GIF, image\",89a,image/gif,Image (Raster),"
              "byte match,\n");
}

TEST(Siegfried, NamesTheHash) {
    ReportOptions options = OptionsFor(OutputFormat::Siegfried);
    options.hash = HashKind::Sha256;
    Record record = Picture();
    record.hash = "0a1b";
    EXPECT_EQ(ReportOf({record, FailedRecord("x", "is nothing")}, options),
              "filename,filesize,modified,errors,sha256,namespace,id,format,version,mime,class,basis,warning\n"
              "d/b.GIF,6,2001-02-03T04:05:06Z,,0a1b,pronom,fmt/4,GIF image,89a,image/gif,Image (Raster),"
              "extension match gif; byte match,\n"
              "x,0,,is nothing,,,,,,,,,\n");
    options.hash = HashKind::Xxh3;
    EXPECT_TRUE(ReportOf({}, options).starts_with("filename,filesize,modified,errors,xxh3,namespace,"));
}

TEST(Siegfried, WritesARowForEachIdentifier) {
    Record record = Picture();
    record.answer.puids = "fmt/3 fmt/4 x-fmt/1";
    const std::string start = "d/b.GIF,6,2001-02-03T04:05:06Z,,pronom,";
    const std::string end = ",GIF image,89a,image/gif,Image (Raster),extension match gif; byte match,\n";
    EXPECT_EQ(RowsOf({record}), start + "fmt/3" + end + start + "fmt/4" + end + start + "x-fmt/1" + end);
}

TEST(Siegfried, TellsUnknownWherePronomHasNoIdentifier) {
    Record unknown = Picture();
    unknown.answer.basis = FIID_BASIS_NONE;
    unknown.answer.puids = unknown.answer.version = unknown.answer.extensions = "";
    unknown.answer.name = "Binary data, not known";
    unknown.answer.mime = "application/octet-stream";
    Record known = Picture();
    known.answer.puids = "";
    EXPECT_EQ(RowsOf({unknown, known}),
              "d/b.GIF,6,2001-02-03T04:05:06Z,,pronom,UNKNOWN,,,,,,no match\n"
              "d/b.GIF,6,2001-02-03T04:05:06Z,,pronom,UNKNOWN,GIF image,89a,image/gif,,"
              "extension match gif; byte match,no match\n");
}

TEST(Siegfried, TellsErrors) {
    Record failed = FailedRecord("a", "is nothing, \"b\"");
    EXPECT_EQ(RowsOf({failed}), "a,0,,\"is nothing, \"\"b\"\"\",,,,,,,,\n");
    failed.state = {true, 12, 0, 0, 1, 1};
    EXPECT_EQ(RowsOf({failed}), "a,12,1970-01-01T00:00:00Z,\"is nothing, \"\"b\"\"\",,,,,,,,\n");
}

TEST(Siegfried, LeavesOutTimesThatAreNotKnown) {
    Record record = Picture();
    record.answer.modified_known = 0;
    record.answer.size = FIID_SIZE_UNKNOWN;
    EXPECT_TRUE(RowsOf({record}).starts_with("d/b.GIF,0,,,pronom,"));
}

// The columns class, basis and warning.
std::string EndOf(const Record& record) {
    const std::string rows = RowsOf({record});
    const std::string mime = ",image/gif,";
    return rows.substr(rows.find(mime) + mime.size());
}

TEST(Siegfried, TellsTheBasisInItsWords) {
    constexpr const char* words[] = {nullptr,
                                     "byte match,",
                                     "container match (compound storage),",
                                     "container match (package),",
                                     "byte match (structure),",
                                     "byte match (statistics),",
                                     ",match on extension only",
                                     "text match,match on text only"};
    Record record = Picture();
    record.answer.family = "unknown";
    record.path = "a.b";
    for (std::int32_t basis = FIID_BASIS_SIGNATURE; basis <= FIID_BASIS_TEXT; ++basis) {
        record.answer.basis = basis;
        EXPECT_EQ(EndOf(record), "," + std::string(words[basis]) + "\n") << basis;
    }
    record.path = "a.gif";
    record.answer.basis = FIID_BASIS_TEXT;
    EXPECT_EQ(EndOf(record), ",extension match gif; text match,\n");
    record.answer.basis = FIID_BASIS_EXTENSION;
    EXPECT_EQ(EndOf(record), ",extension match gif,match on extension only\n");
}

TEST(Siegfried, TellsWhatWasLookedAt) {
    Record record = Picture();
    std::strcpy(record.answer.explanation, "bytes at 0, 8; stream \"a\"");
    EXPECT_EQ(EndOf(record),
              "Image (Raster),\"extension match gif; byte match; looked at bytes at 0, 8; stream \"\"a\"\"\",\n");
    record.answer.basis = FIID_BASIS_NONE;
    record.answer.extensions = record.answer.puids = "";
    EXPECT_EQ(RowsOf({record}),
              "d/b.GIF,6,2001-02-03T04:05:06Z,,pronom,UNKNOWN,,89a,,,\"looked at bytes at 0, 8; stream \"\"a\"\"\","
              "no match\n");
}

TEST(Siegfried, Warns) {
    Record record = Picture();
    record.answer.warnings = FIID_WARN_EXTENSION;
    record.answer.extensions = "";
    EXPECT_EQ(EndOf(record), "Image (Raster),byte match,extension mismatch\n");
    record.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT | FIID_WARN_SEVERAL;
    EXPECT_EQ(EndOf(record), "Image (Raster),byte match,extension mismatch; file is cut\n");
    record.answer.basis = FIID_BASIS_TEXT;
    EXPECT_EQ(EndOf(record), "Image (Raster),text match,match on text only; extension mismatch; file is cut\n");
    record.answer.warnings = FIID_WARN_SEVERAL;
    EXPECT_EQ(EndOf(record), "Image (Raster),text match,match on text only\n");
}

TEST(Siegfried, TellsTheClassOfSomeFamilies) {
    Record record = Picture();
    const auto classOf = [&](const char* family) {
        record.answer.family = family;
        const std::string end = EndOf(record);
        return end.substr(0, end.find(','));
    };
    EXPECT_EQ(classOf("archive"), "Aggregate");
    EXPECT_EQ(classOf("audio"), "Audio");
    EXPECT_EQ(classOf("database"), "Database");
    EXPECT_EQ(classOf("drawing"), "Image (Vector)");
    EXPECT_EQ(classOf("mail"), "Email");
    EXPECT_EQ(classOf("presentation"), "Presentation");
    EXPECT_EQ(classOf("spreadsheet"), "Spreadsheet");
    EXPECT_EQ(classOf("video"), "Video");
    for (const char* const family : {"document", "text", "code", "system", "unknown", ""}) {
        EXPECT_EQ(classOf(family), "");
    }
}

}  // namespace
