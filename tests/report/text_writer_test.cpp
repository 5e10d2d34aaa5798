// Lines for people, and paths.
#include "report/text_writer.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/report_text.h"
#include "support/row_number.h"

namespace {

TEST(TextWriter, TellsNameAndIdentifiers) {
    Record known = RecordOf("a\x1B\\", 1503, "GIF image");
    known.answer.row = 172_row;
    known.answer.signature = ">0 \"GIF8\" (37/39)";
    known.answer.bytes_read = 1;
    known.answer.calls = 2;
    Record precise = RecordOf("\xFF", 1999, "JPEG XL image");
    precise.answer.further = 20017;
    precise.answer.further_row = 17;
    precise.answer.further_signature = ">0 FF 0A";
    precise.answer.routine = "FITell";
    std::strcpy(precise.answer.explanation, "bytes at 0");
    precise.answer.calls = 1;
    const Record failed = FailedRecord("b", "is nothing");
    ReportOptions options = OptionsFor(OutputFormat::Text);
    EXPECT_EQ(ReportOf({known, precise, failed}, options),
              "a\\x1B\\\\: GIF image [1503]\n\xFF: JPEG XL image [1999, 20017]\n");
    options.explain = true;
    EXPECT_EQ(ReportOf({known, precise, failed}, options),
              "a\\x1B\\\\: GIF image [1503] (row 172: >0 \"GIF8\" (37/39); 1 byte in 2 calls)\n"
              "\xFF: JPEG XL image [1999, 20017] (no row; further row 17: >0 FF 0A; FITell; looked at bytes at 0; "
              "0 bytes in 1 call)\n");
}

TEST(TextWriter, TellsWhatWasAskedForBehindThem) {
    Record record = RecordOf("a", 1503, "GIF image");
    record.answer.extensions = "gif giff";
    record.hash = "0a1b";
    record.change = {ChangeKind::Changed, 7, 0, "Text\x1B [4022]"};
    record.copies = 2;
    ReportOptions options = OptionsFor(OutputFormat::Text);
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503]\n");
    options.withExtensions = true;
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (usual extensions: gif giff)\n");
    options.hash = HashKind::Sha256;
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (usual extensions: gif giff) (sha256: 0a1b)\n");
    options.withExtensions = false;
    options.hash = HashKind::Xxh3;
    options.withCopies = true;
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (xxh3: 0a1b) (2 copies)\n");
    record.copies = 1;
    record.hash = "";
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (1 copy)\n");
    options.hash = HashKind::None;
    options.withCopies = false;
    options.withChanges = true;
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (changed in run 7, was Text\\x1B [4022])\n");
    record.change = {ChangeKind::New, 7, 0, ""};
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503] (new in run 7)\n");
    record.change.kind = ChangeKind::None;
    EXPECT_EQ(ReportOf({record}, options), "a: GIF image [1503]\n");
}

TEST(TextWriter, TellsWhatIsGone) {
    Record gone = RecordOf("a", 0, "");
    EXPECT_EQ(ReportOf({gone}, OutputFormat::Text), "");
    gone.change = {ChangeKind::Gone, 2, 0, "GIF image [1503]"};
    EXPECT_EQ(ReportOf({gone}, OutputFormat::Text), "a: gone in run 2, was GIF image [1503]\n");
    gone.change.before = "";
    EXPECT_EQ(ReportOf({gone}, OutputFormat::Text), "a: gone in run 2\n");
    gone.answer = RecordOf("a", 4022, "Plain text").answer;
    gone.change.before = "GIF image";
    EXPECT_EQ(ReportOf({gone}, OutputFormat::Text), "a: gone in run 2, was Plain text [4022]\n");
}

TEST(TextWriter, TellsMediaTypes) {
    Record known = RecordOf("a\x1B", 1503, "");
    known.answer.mime = "image/gif";
    known.answer.row = 172_row;
    known.answer.calls = 2;
    const Record unknown = RecordOf("b", 1999, "");
    Record empty = RecordOf("c", 4022, "");
    empty.answer.mime = "text/plain";
    empty.answer.size = 0;
    const Record failed = FailedRecord("d", "is nothing");
    EXPECT_EQ(ReportOf({known, unknown, empty, failed}, OutputFormat::Mime),
              "a\\x1B: image/gif\nb: application/octet-stream\nc: inode/x-empty\n");
    ReportOptions options = OptionsFor(OutputFormat::Mime);
    options.explain = true;
    EXPECT_EQ(ReportOf({known}, options), "a\\x1B: image/gif (row 172; 0 bytes in 2 calls)\n");
}

TEST(TextWriter, TellsPathsByTheirBytes) {
    const Record record = RecordOf("a\x1B\\\n\xFF", 1503, "");
    const Record failed = FailedRecord("d", "is nothing");
    EXPECT_EQ(ReportOf({record, failed, record}, OutputFormat::Path), "a\x1B\\\n\xFF\na\x1B\\\n\xFF\n");
    ReportOptions options = OptionsFor(OutputFormat::Path);
    options.pathEnd = '\0';
    EXPECT_EQ(ReportOf({record}, options), std::string("a\x1B\\\n\xFF\0", 6));
}

}  // namespace
