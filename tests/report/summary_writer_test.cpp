// What a summary looks like in each format, and in terminals of any width.
#include "report/summary_writer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "report/display_width.h"
#include "support/json_schema.h"

namespace {

using json_schema::Check;
using json_schema::Json;

std::string Written(Summary& summary, const SummaryOptions& options) {
    std::string text;
    WriteSummary(summary, options, [&](std::string_view piece) { text += piece; });
    EXPECT_EQ(summary.Failure(), "");
    return text;
}

constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;

std::unique_ptr<Summary> Formats() {
    auto summary = std::make_unique<Summary>(SummaryKey::Format);
    summary->AddGroup({"JPEG image", 1501, "fmt/43", {6000, 123456789}});
    summary->AddGroup({"Text of 7-bit characters", 4022, "", {1, 0}});
    summary->AddGroup({"Portable Document Format", 1600, "fmt/18 fmt/20", {12345, 3 * gibibyte}});
    summary->AddGroup({"JPEG XL image, codestream", 20100, "fmt/1484", {500, 1023}});
    summary->AddTotals({{20000, 4 * gibibyte}, {1100, 7000000}, 54, {321, 1536}});
    return summary;
}

std::string FormatsText(std::uint32_t columns, bool utf8) {
    return "\n" + Written(*Formats(), {OutputFormat::Text, columns, utf8});
}

// ---- Text -------------------------------------------------------------------------------------------------------------

TEST(SummaryText, OutsideOfATerminalHasNoBarsAndIsNotCut) {
    const std::string text = R"(
 Files   Share      Size  Format
12,345   61.7%   3.0 GiB  Portable Document Format [1600] fmt/18 fmt/20
 6,000   30.0%   118 MiB  JPEG image [1501] fmt/43
   500    2.5%    1023 B  JPEG XL image, codestream [20100] fmt/1484
     1    0.0%       0 B  Text of 7-bit characters [4022]

 1,100    5.5%   6.7 MiB  unknown format
    54    0.3%         -  unreadable
   321    1.6%   1.5 KiB  unusual name
20,000  100.0%   4.0 GiB  in all
)";
    EXPECT_EQ(FormatsText(0, true), text);
    EXPECT_EQ(FormatsText(0, false), text);
}

TEST(SummaryText, FitsInto20Columns) {
    EXPECT_EQ(FormatsText(20, true), R"(
 Files  Format
12,345  Portable Do…
 6,000  JPEG image …
   500  JPEG XL ima…
     1  Text of 7-b…

 1,100  unknown for…
    54  unreadable
   321  unusual name
20,000  in all
)");
    EXPECT_EQ(FormatsText(20, false), R"(
 Files  Format
12,345  Portable ...
 6,000  JPEG imag...
   500  JPEG XL i...
     1  Text of 7...

 1,100  unknown f...
    54  unreadable
   321  unusual name
20,000  in all
)");
}

TEST(SummaryText, FitsInto40Columns) {
    EXPECT_EQ(FormatsText(40, true), R"(
 Files   Share  Format
12,345   61.7%  Portable Document Forma…
 6,000   30.0%  JPEG image [1501] fmt/43
   500    2.5%  JPEG XL image, codestre…
     1    0.0%  Text of 7-bit character…

 1,100    5.5%  unknown format
    54    0.3%  unreadable
   321    1.6%  unusual name
20,000  100.0%  in all
)");
    EXPECT_EQ(FormatsText(40, false), R"(
 Files   Share  Format
12,345   61.7%  Portable Document For...
 6,000   30.0%  JPEG image [1501] fmt/43
   500    2.5%  JPEG XL image, codest...
     1    0.0%  Text of 7-bit charact...

 1,100    5.5%  unknown format
    54    0.3%  unreadable
   321    1.6%  unusual name
20,000  100.0%  in all
)");
}

TEST(SummaryText, FitsInto80Columns) {
    EXPECT_EQ(FormatsText(80, true), R"(
 Files   Share      Size                      Format
12,345   61.7%   3.0 GiB  ██████████████████  Portable Document Format [1600] f…
 6,000   30.0%   118 MiB  ████████▊           JPEG image [1501] fmt/43
   500    2.5%    1023 B  ▊                   JPEG XL image, codestream [20100]…
     1    0.0%       0 B  ▏                   Text of 7-bit characters [4022]

 1,100    5.5%   6.7 MiB                      unknown format
    54    0.3%         -                      unreadable
   321    1.6%   1.5 KiB                      unusual name
20,000  100.0%   4.0 GiB                      in all
)");
    EXPECT_EQ(FormatsText(80, false), R"(
 Files   Share      Size                      Format
12,345   61.7%   3.0 GiB  ##################  Portable Document Format [1600]...
 6,000   30.0%   118 MiB  #########           JPEG image [1501] fmt/43
   500    2.5%    1023 B  #                   JPEG XL image, codestream [2010...
     1    0.0%       0 B  #                   Text of 7-bit characters [4022]

 1,100    5.5%   6.7 MiB                      unknown format
    54    0.3%         -                      unreadable
   321    1.6%   1.5 KiB                      unusual name
20,000  100.0%   4.0 GiB                      in all
)");
}

TEST(SummaryText, FitsInto200Columns) {
    EXPECT_EQ(FormatsText(200, true), R"(
 Files   Share      Size                                            Format
12,345   61.7%   3.0 GiB  ████████████████████████████████████████  Portable Document Format [1600] fmt/18 fmt/20
 6,000   30.0%   118 MiB  ███████████████████▌                      JPEG image [1501] fmt/43
   500    2.5%    1023 B  █▋                                        JPEG XL image, codestream [20100] fmt/1484
     1    0.0%       0 B  ▏                                         Text of 7-bit characters [4022]

 1,100    5.5%   6.7 MiB                                            unknown format
    54    0.3%         -                                            unreadable
   321    1.6%   1.5 KiB                                            unusual name
20,000  100.0%   4.0 GiB                                            in all
)");
    EXPECT_EQ(FormatsText(200, false), R"(
 Files   Share      Size                                            Format
12,345   61.7%   3.0 GiB  ########################################  Portable Document Format [1600] fmt/18 fmt/20
 6,000   30.0%   118 MiB  ###################                       JPEG image [1501] fmt/43
   500    2.5%    1023 B  ##                                        JPEG XL image, codestream [20100] fmt/1484
     1    0.0%       0 B  #                                         Text of 7-bit characters [4022]

 1,100    5.5%   6.7 MiB                                            unknown format
    54    0.3%         -                                            unreadable
   321    1.6%   1.5 KiB                                            unusual name
20,000  100.0%   4.0 GiB                                            in all
)");
}

// Where shares, sizes and bars begin to have room, and names to have any.
TEST(SummaryText, LeavesColumnsOutWhereRoomIsShort) {
    const auto firstLine = [](std::uint32_t columns) {
        const std::string text = FormatsText(columns, false);
        const std::size_t begin = text.find("12,345");
        return text.substr(begin, text.find('\n', begin) - begin);
    };
    EXPECT_EQ(firstLine(1), "12,345");
    EXPECT_EQ(firstLine(8), "12,345");
    EXPECT_EQ(firstLine(9), "12,345  .");
    EXPECT_EQ(firstLine(12), "12,345  P...");
    EXPECT_EQ(firstLine(35), "12,345  Portable Document Format...");
    EXPECT_EQ(firstLine(36), "12,345   61.7%  Portable Document...");
    EXPECT_EQ(firstLine(45), "12,345   61.7%  Portable Document Format [...");
    EXPECT_EQ(firstLine(46), "12,345   61.7%   3.0 GiB  Portable Document...");
    EXPECT_EQ(firstLine(51), "12,345   61.7%   3.0 GiB  Portable Document Form...");
    EXPECT_EQ(firstLine(52), "12,345   61.7%   3.0 GiB  ####  Portable Document...");
    EXPECT_EQ(firstLine(53), "12,345   61.7%   3.0 GiB  #####  Portable Document...");
    EXPECT_EQ(firstLine(146),
              "12,345   61.7%   3.0 GiB  " + std::string(40, '#') + "  Portable Document Format [1600] fmt/18 fmt/20");
    EXPECT_EQ(firstLine(145),
              "12,345   61.7%   3.0 GiB  " + std::string(39, '#') + "  Portable Document Format [1600] fmt/18 fmt/20");
}

TEST(SummaryText, WrapsInNoTerminal) {
    for (const bool utf8 : {false, true}) {
        for (std::uint32_t columns = 6; columns < 250; ++columns) {
            std::istringstream lines(FormatsText(columns, utf8));
            for (std::string line; std::getline(lines, line);) {
                EXPECT_LE(DisplayWidth(line, utf8 ? TerminalText::Utf8 : TerminalText::Bytes), columns) << line;
            }
        }
    }
}

TEST(SummaryText, OfNothing) {
    for (const std::uint32_t columns : {0U, 80U}) {
        Summary summary(SummaryKey::Mime);
        const std::string gap = columns == 0 ? "" : std::string(20, ' ');  // 18 for a bar
        EXPECT_EQ(Written(summary, {OutputFormat::Text, columns, false}),
                  "Files   Share      Size  " + gap + "Media type\n" +  //
                      "    0    0.0%       0 B  " + gap + "unknown format\n" + "    0    0.0%         -  " + gap +
                      "unreadable\n" +  //
                      "    0    0.0%       0 B  " + gap + "unusual name\n" + "    0    0.0%       0 B  " + gap +
                      "in all\n");
    }
}

std::string OneGroup(SummaryKey key, const std::string& name, std::uint32_t columns, bool utf8) {
    Summary summary(key);
    summary.AddGroup({name, 0, "", {1, 0}});
    summary.AddTotals({{1, 0}, {}, 0, {}});
    const std::string text = Written(summary, {OutputFormat::Text, columns, utf8});
    return text.substr(0, text.find("\n\n"));
}

TEST(SummaryText, TellsWhatNamesHoldSafely) {
    EXPECT_EQ(OneGroup(SummaryKey::Extension, "", 0, true),
              "Files   Share      Size  Extension\n    1  100.0%       0 B  (none)");
    EXPECT_EQ(OneGroup(SummaryKey::Extension, "a\x1B[2J\n", 0, true),
              "Files   Share      Size  Extension\n    1  100.0%       0 B  a\\x1B[2J\\x0A");
    EXPECT_EQ(OneGroup(SummaryKey::Directory, "a\xFF\\", 0, true),
              "Files   Share      Size  Directory\n    1  100.0%       0 B  a\xFF\\\\");
    EXPECT_EQ(OneGroup(SummaryKey::Family, "image", 0, true),
              "Files   Share      Size  Family\n    1  100.0%       0 B  image");
}

// Of directories the front is cut, and wide characters are not cut through.
TEST(SummaryText, CutsDirectoriesInFront) {
    const std::string path = "\xE6\x96\x87\xE4\xBB\xB6/2021/invoices";
    EXPECT_EQ(OneGroup(SummaryKey::Directory, path, 24, true),
              "Files  Directory\n    1  \xE2\x80\xA6\xE4\xBB\xB6/2021/invoices");
    EXPECT_EQ(OneGroup(SummaryKey::Directory, path, 23, true), "Files  Directory\n    1  \xE2\x80\xA6/2021/invoices");
    EXPECT_EQ(OneGroup(SummaryKey::Directory, path, 20, false), "Files  Directory\n    1  ...1/invoices");
    EXPECT_EQ(OneGroup(SummaryKey::Extension, path, 20, false),
              "Files  Extension\n    1  \xE6\x96\x87\xE4\xBB\xB6/202...");
}

// ---- csv and tsv ------------------------------------------------------------------------------------------------------

TEST(SummaryLines, TellKindsOfLines) {
    EXPECT_EQ(Written(*Formats(), {OutputFormat::Csv, 0, false}),
              "kind,fiid,further,name,puid,count,share,bytes\r\n"
              "group,1600,,Portable Document Format,fmt/18 fmt/20,12345,0.6173,3221225472\r\n"
              "group,1501,,JPEG image,fmt/43,6000,0.3000,123456789\r\n"
              "group,,20100,\"JPEG XL image, codestream\",fmt/1484,500,0.0250,1023\r\n"
              "group,4022,,Text of 7-bit characters,,1,0.0001,0\r\n"
              "unknown,,,,,1100,0.0550,7000000\r\n"
              "unreadable,,,,,54,0.0027,\r\n"
              "unusual,,,,,321,0.0161,1536\r\n"
              "total,,,,,20000,1.0000,4294967296\r\n");
    Summary directories(SummaryKey::Directory);
    directories.AddGroup({"a\t\\\xFF", 0, "", {3, 5}});
    directories.AddTotals({{3, 5}, {}, 0, {}});
    EXPECT_EQ(Written(directories, {OutputFormat::Tsv, 0, false}),
              "kind\tdirectory\tcount\tshare\tbytes\n"
              "group\ta\\t\\\\\xFF\t3\t1.0000\t5\n"
              "unknown\t\t0\t0.0000\t0\n"
              "unreadable\t\t0\t0.0000\t\n"
              "unusual\t\t0\t0.0000\t0\n"
              "total\t\t3\t1.0000\t5\n");
}

TEST(SummaryLines, NameTheirKey) {
    for (const SummaryKey key : {SummaryKey::Family, SummaryKey::Mime, SummaryKey::Extension, SummaryKey::Directory}) {
        Summary summary(key);
        const std::string text = Written(summary, {OutputFormat::Csv, 0, false});
        EXPECT_EQ(text.substr(0, text.find('\r')), "kind," + std::string(WordOf(key)) + ",count,share,bytes");
    }
}

// ---- JSON -------------------------------------------------------------------------------------------------------------

TEST(SummaryJson, IsOneObject) {
    const std::string text = Written(*Formats(), {OutputFormat::Json, 0, false});
    EXPECT_EQ(text.substr(0, text.find("\n{\"fiid\":1501")),
              "{\"by\":\"format\",\"files\":20000,\"bytes\":4294967296,\"unknown\":1100,\"unknown_bytes\":7000000,"
              "\"unreadable\":54,\"unusual\":321,\"unusual_bytes\":1536,\"groups\":[\n"
              "{\"fiid\":1600,\"name\":\"Portable Document Format\",\"puid\":[\"fmt/18\",\"fmt/20\"],\"count\":12345,"
              "\"share\":0.6173,\"bytes\":3221225472},");
    const Json json = Json::parse(text);
    EXPECT_EQ(json["groups"].size(), 4U);
    EXPECT_EQ(json["groups"][2], Json::parse(R"({"further":20100,"name":"JPEG XL image, codestream",)"
                                             R"("puid":["fmt/1484"],"count":500,"share":0.025,"bytes":1023})"));
    EXPECT_EQ(json["groups"][3]["puid"], Json::array());
}

TEST(SummaryJson, OfNothingHasNoGroups) {
    Summary summary(SummaryKey::Family);
    EXPECT_EQ(
        Written(summary, {OutputFormat::Json, 0, false}),
        "{\"by\":\"family\",\"files\":0,\"bytes\":0,\"unknown\":0,\"unknown_bytes\":0,\"unreadable\":0,\"unusual\":0,"
        "\"unusual_bytes\":0,\"groups\":[]}\n");
}

TEST(SummaryNdjson, HasTheSameInLines) {
    Json whole = Json::parse(Written(*Formats(), {OutputFormat::Json, 0, false}));
    std::istringstream lines(Written(*Formats(), {OutputFormat::Ndjson, 0, false}));
    std::vector<Json> objects;
    for (std::string line; std::getline(lines, line);) objects.push_back(Json::parse(line));
    ASSERT_EQ(objects.size(), 5U);
    for (std::size_t index = 0; index < 4; ++index) EXPECT_EQ(objects[index], whole["groups"][index]);
    whole.erase("groups");
    EXPECT_EQ(objects[4], whole);
}

// ---- docs/summary.schema.json -----------------------------------------------------------------------------------------

Record RecordOf(const std::string& path, const fiid_format& format) {
    Record record = {};
    record.path = path;
    fiid_detect_memory(nullptr, 1, nullptr, nullptr, &record.answer);  // fails: an answer with nothing in it
    record.answer.basis = FIID_BASIS_SIGNATURE;
    (format.id < 20000 ? record.answer.fiid : record.answer.further) = format.id;
    record.answer.name = format.name;
    record.answer.mime = format.mime;
    record.answer.puids = format.puids;
    record.answer.family = format.family[0] != '\0' ? format.family : "unknown";
    return record;
}

Json SummarySchemaFile() {
    std::ifstream file(FIID_SUMMARY_SCHEMA);
    return Json::parse(file);
}

TEST(SummarySchema, AllowsSummariesOfAllFormats) {
    const Json schema = SummarySchemaFile();
    for (const SummaryKey key :
         {SummaryKey::Format, SummaryKey::Family, SummaryKey::Mime, SummaryKey::Extension, SummaryKey::Directory}) {
        for (const OutputFormat format : {OutputFormat::Json, OutputFormat::Ndjson}) {
            Summary summary(key);
            fiid_format told;
            for (std::uint32_t index = 0; fiid_format_at(index, &told) == FIID_OK; ++index) {
                summary.Add(RecordOf("d\xFF/a.\xFE" + std::to_string(index), told));
            }
            const std::string text = Written(summary, {format, 0, false});
            if (format == OutputFormat::Json) {
                EXPECT_EQ(Check(Json::parse(text), schema), "");
            } else {
                EXPECT_EQ(Check(Json::parse(text.substr(text.rfind('\n', text.size() - 2) + 1)), schema), "");
            }
        }
    }
}

TEST(SummarySchema, RefusesWhatIsNoSummary) {
    const Json schema = SummarySchemaFile();
    const Json summary = Json::parse(Written(*Formats(), {OutputFormat::Json, 0, false}));
    EXPECT_EQ(Check(summary, schema), "");
    const auto refused = [&](const Json& change) {
        Json other = summary;
        other.merge_patch(change);
        return !Check(other, schema).empty();
    };
    EXPECT_FALSE(refused({{"files", 1}}));
    EXPECT_TRUE(refused({{"files", nullptr}}));
    EXPECT_TRUE(refused({{"by", "size"}}));
    EXPECT_TRUE(refused({{"unknown", -1}}));
    EXPECT_TRUE(refused({{"other", 1}}));
    EXPECT_TRUE(refused({{"groups", Json::array({Json::object()})}}));
    EXPECT_TRUE(refused({{"groups", Json::array({{{"mime", "a"}, {"count", 1}, {"share", 1}, {"bytes", 1}}})}}));
    EXPECT_FALSE(refused({{"groups", Json::array({{{"mime", "a/b"}, {"count", 1}, {"share", 1}, {"bytes", 1}}})}}));
    EXPECT_TRUE(refused({{"groups", Json::array({{{"mime", "a/b"}, {"count", 1}, {"share", 1.5}, {"bytes", 1}}})}}));
}

}  // namespace
