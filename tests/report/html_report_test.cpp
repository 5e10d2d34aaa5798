// The page's bytes: what a browser must never take for markup, what streams, and what stands in it without a script.
#include "report/html_report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "report/html/page.h"

namespace {

using Json = nlohmann::json;

fiid_result AnswerOf(std::uint16_t id, std::uint64_t size = 10) {
    fiid_result answer;
    fiid_detect_memory(nullptr, 1, nullptr, nullptr, &answer);  // a failure, which fills it with nothing
    fiid_format format;
    EXPECT_EQ(fiid_format_find(id, &format), FIID_OK) << id;
    (id < 20000 ? answer.fiid : answer.further) = id;
    if (id >= 20000) answer.fiid = 1999;
    answer.name = format.name;
    answer.mime = format.mime;
    answer.puids = format.puids;
    answer.extensions = format.extensions;
    answer.family = format.family;
    answer.basis = FIID_BASIS_SIGNATURE;
    answer.size = size;
    return answer;
}

constexpr std::uint16_t gif = 1503;
constexpr std::uint16_t pdf = 1557;
constexpr std::uint16_t unknown = 1999;

Record RecordOf(std::string path, std::uint16_t id, std::uint64_t size = 10) {
    Record record;
    record.path = std::move(path);
    record.answer = AnswerOf(id, size);
    return record;
}

Record FailureOf(std::string path, std::string error) {
    Record record;
    record.path = std::move(path);
    record.error = std::move(error);
    return record;
}

std::string PageOf(const std::vector<Record>& records, const ReportOptions& options = {}, bool interrupted = false) {
    const std::unique_ptr<ReportWriter> writer = MakeHtmlWriter(options);
    std::string page;
    writer->Begin(page);
    for (const Record& record : records) {
        std::string rendered;
        writer->Render(record, rendered);
        writer->Place(record, rendered, page);
    }
    writer->End(page, interrupted);
    return page;
}

std::size_t CountOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t place = 0; (place = text.find(part, place)) != std::string_view::npos; place += part.size())
        ++count;
    return count;
}

bool Holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

// The contents of each script element that starts so.
std::vector<std::string> ScriptsOf(const std::string& page, const std::string& tag) {
    std::vector<std::string> scripts;
    for (std::size_t place = 0; (place = page.find(tag, place)) != std::string::npos;) {
        place += tag.size();
        scripts.push_back(page.substr(place, page.find("</script", place) - place));
    }
    return scripts;
}

Json AnswersOf(const std::string& page) {
    const std::vector<std::string> scripts = ScriptsOf(page, R"(<script type="application/json" id="answers">)");
    EXPECT_EQ(scripts.size(), 1U);
    return Json::parse(scripts.at(0));
}

// The lines of all blocks, one behind the other.
Json ValuesOf(const std::string& page) {
    Json values = Json::array();
    for (const std::string& block : ScriptsOf(page, R"(<script type="application/json" class="records">)")) {
        for (Json& value : Json::parse(block)) values.push_back(std::move(value));
    }
    return values;
}

// ---- Records -------------------------------------------------------------------------------------------------------

TEST(HtmlReport, TellsARecordInALine) {
    Record record = RecordOf("a/b.gif", gif, 1234);
    record.answer.modified_known = 1;
    record.answer.modified_seconds = 1700000000;
    record.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
    record.answer.version = "89a";
    const std::string page = PageOf({record});
    EXPECT_EQ(ValuesOf(page), Json::parse(R"(["a/b.gif", 1234, 1700000000, 3, 0])"));
    const Json answers = AnswersOf(page);
    EXPECT_EQ(answers["files"], 1);
    EXPECT_EQ(answers["extensions"], false);
    EXPECT_EQ(answers["columns"], Json::parse(R"(["path", "size", "mtime", "warning", "answer"])"));
    EXPECT_EQ(answers["answers"].size(), 1U);
    const Json& answer = answers["answers"][0];
    fiid_format format;
    fiid_format_find(gif, &format);
    EXPECT_EQ(answer, Json({{"fiid", gif},
                            {"further", 0},
                            {"name", format.name},
                            {"version", "89a"},
                            {"mime", format.mime},
                            {"puid", format.puids},
                            {"family", "image"},
                            {"extensions", format.extensions},
                            {"basis", "signature"}}));
}

TEST(HtmlReport, TellsWhatIsNotKnownAsNull) {
    Record record = RecordOf("x", unknown, FIID_SIZE_UNKNOWN);
    EXPECT_EQ(ValuesOf(PageOf({record})), Json::parse(R"(["x", null, null, 0, 0])"));
}

TEST(HtmlReport, TellsTimesOfTheYears0To9999) {
    const auto timeOf = [](std::int64_t seconds) {
        Record record = RecordOf("x", gif);
        record.answer.modified_known = 1;
        record.answer.modified_seconds = seconds;
        return ValuesOf(PageOf({record}))[2];
    };
    EXPECT_EQ(timeOf(-62167219201), nullptr);
    EXPECT_EQ(timeOf(-62167219200), -62167219200);
    EXPECT_EQ(timeOf(253402300799), 253402300799);
    EXPECT_EQ(timeOf(253402300800), nullptr);
}

TEST(HtmlReport, TellsAnErrorInPlaceOfAnAnswer) {
    const std::string page = PageOf({FailureOf("x", "</script>Permission denied")});
    EXPECT_EQ(ValuesOf(page), Json::parse(R"(["x", null, null, null, "</script>Permission denied"])"));
    EXPECT_EQ(AnswersOf(page)["answers"], Json::array());
    EXPECT_EQ(CountOf(page, "</script>Permission"), 0U);
}

TEST(HtmlReport, AFailureHasTheSizeAndTimeThatItsDirectoryTells) {
    Record record = FailureOf("x", "no");
    record.state = {true, 77, 1700000000, 0, 1, 1};
    const std::string page = PageOf({record});
    EXPECT_EQ(ValuesOf(page), Json::parse(R"(["x", 77, 1700000000, null, "no"])"));
    EXPECT_TRUE(Holds(page, ">77 B</a>"));
}

TEST(HtmlReport, ARecordWithoutIdentifierIsOfNoFormat) {
    Record record = RecordOf("gone", gif);
    fiid_detect_memory(nullptr, 1, nullptr, nullptr, &record.answer);
    EXPECT_EQ(ValuesOf(PageOf({record})), Json::parse(R"(["gone", null, null, null, null])"));
}

TEST(HtmlReport, TextsThatAreMissingAreEmpty) {
    Record record = RecordOf("x", gif);
    record.answer.name = nullptr;
    record.answer.family = nullptr;
    const Json answer = AnswersOf(PageOf({record}))["answers"][0];
    EXPECT_EQ(answer["name"], "");
    EXPECT_EQ(answer["family"], "unknown");
}

TEST(HtmlReport, EqualAnswersStandOnceInTheOrderOfTheirRecords) {
    Record other = RecordOf("d", gif);
    other.answer.version = "87a";
    const std::string page =
        PageOf({RecordOf("a", pdf), RecordOf("b", gif), RecordOf("c", pdf), other, RecordOf("e", gif)});
    const Json values = ValuesOf(page);
    ASSERT_EQ(values.size(), 25U);
    std::vector<int> indexes;
    for (std::size_t record = 0; record < 5; ++record) indexes.push_back(values[5 * record + 4]);
    EXPECT_EQ(indexes, (std::vector<int>{0, 1, 0, 2, 1}));
    EXPECT_EQ(AnswersOf(page)["answers"].size(), 3U);
    EXPECT_EQ(AnswersOf(page)["answers"][2]["version"], "87a");
}

TEST(HtmlReport, AddsTheColumnsAskedFor) {
    ReportOptions options;
    options.hash = HashKind::Sha256;
    options.withChanges = options.withCopies = options.withExtensions = options.explain = true;
    Record record = RecordOf("x", gif);
    record.hash = "abcd";
    record.copies = 3;
    record.change = {ChangeKind::Changed, 7, 1700000000, "PDF <document>"};
    record.answer.bytes_read = 20;
    record.answer.calls = 2;
    record.answer.row = 5;
    record.answer.signature = ">0 \"GIF8\"";
    const std::string page = PageOf({record}, options);
    const Json answers = AnswersOf(page);
    EXPECT_EQ(answers["columns"],
              Json::parse(R"(["path", "size", "mtime", "warning", "copies", "sha256", "change", "run", "time",
        "before", "looked_at", "bytes_read", "calls", "answer"])"));
    EXPECT_EQ(answers["extensions"], true);
    EXPECT_EQ(ValuesOf(page),
              Json::parse(R"(["x", 10, null, 0, 3, "abcd", "changed", 7, 1700000000, "PDF <document>", null, 20, 2,
        0])"));
    EXPECT_EQ(answers["answers"][0]["row"], 5);
    EXPECT_EQ(answers["answers"][0]["signature"], ">0 \"GIF8\"");
}

TEST(HtmlReport, ColumnsOfAFailureAreNull) {
    ReportOptions options;
    options.hash = HashKind::Xxh3;
    options.withChanges = options.withCopies = options.explain = true;
    const std::string page = PageOf({FailureOf("x", "no")}, options);
    EXPECT_EQ(ValuesOf(page),
              Json::parse(R"(["x", null, null, null, null, null, null, null, null, null, null, null, null, "no"])"));
    EXPECT_EQ(AnswersOf(page)["columns"][5], "xxh3");
}

TEST(HtmlReport, TellsEachKindOfChange) {
    ReportOptions options;
    options.withChanges = true;
    const auto wordOf = [&options](ChangeKind kind) {
        Record record = RecordOf("x", gif);
        record.change.kind = kind;
        return ValuesOf(PageOf({record}, options))[4];
    };
    EXPECT_EQ(wordOf(ChangeKind::None), nullptr);
    EXPECT_EQ(wordOf(ChangeKind::New), "new");
    EXPECT_EQ(wordOf(ChangeKind::Changed), "changed");
    EXPECT_EQ(wordOf(ChangeKind::Gone), "gone");
}

TEST(HtmlReport, ATimeThatHasNoFormIsNone) {
    ReportOptions options;
    options.withChanges = true;
    Record record = RecordOf("x", gif);
    record.change = {ChangeKind::New, 1, 253402300800, ""};
    EXPECT_EQ(ValuesOf(PageOf({record}, options))[6], nullptr);
}

// ---- Names that attack ---------------------------------------------------------------------------------------------

TEST(HtmlReport, NoNameEndsItsElement) {
    const std::string names[] = {
        "</script><script>alert(1)</script>", "<!--<script>", "-->", "]]>", "</SCRIPT >", "&lt;"};
    const std::string plain = PageOf({RecordOf("x", gif)});
    for (const std::string& name : names) {
        const std::string page = PageOf({RecordOf(name, gif)});
        EXPECT_EQ(ValuesOf(page)[0], name);
        for (const char* const mark : {"<script", "</script", "</SCRIPT", "<!--", "-->", "&lt;", "]]>"}) {
            EXPECT_EQ(CountOf(page, mark), CountOf(plain, mark)) << name;
        }
    }
}

TEST(HtmlReport, NoNameSteersWhoeverReadsTheSource) {
    const std::string name = "a\n\x1B[31m\x7F\xC2\x85\xD8\x9C\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6z";
    const std::string page = PageOf({RecordOf(name, gif)});
    EXPECT_TRUE(Holds(page, R"("a\n\u001b[31m\u007f\u0085\u061c\u2028\u202e\u2066z")"));
    EXPECT_EQ(ValuesOf(page)[0], name);
}

TEST(HtmlReport, OtherCharactersStayAsTheyAre) {
    const std::string name =
        "Gr\xC3\xBC\xC3\x9F"
        "e \xE6\x96\x87 \xF0\x9F\x93\x84 '\"\\.txt";
    const std::string page = PageOf({RecordOf(name, gif)});
    EXPECT_TRUE(Holds(page,
                      "\"Gr\xC3\xBC\xC3\x9F"
                      "e \xE6\x96\x87 \xF0\x9F\x93\x84 '\\\"\\\\.txt\""));
    EXPECT_EQ(ValuesOf(page)[0], name);
}

TEST(HtmlReport, APathThatIsNoUtf8HasItsBytesToo) {
    const std::string page = PageOf({RecordOf("a\xFF<\xE2\x82.txt", gif)});
    EXPECT_EQ(ValuesOf(page)[0], Json::parse(R"(["a\ufffd<\ufffd.txt", "61ff3ce2822e747874"])"));
}

TEST(HtmlReport, EveryByteStaysWithinItsString) {
    std::string name;
    for (int byte = 0; byte < 256; ++byte) name += static_cast<char>(byte);
    const Json values = ValuesOf(PageOf({RecordOf(name, gif), RecordOf("y", gif)}));
    EXPECT_EQ(values.size(), 10U);
    EXPECT_EQ(values[0][1].get<std::string>().substr(0, 8), "00010203");
    EXPECT_EQ(values[5], "y");
}

TEST(HtmlReport, TheTitleIsText) {
    ReportOptions options;
    options.title = "</title><script>alert('&')</script>\"\n\xE2\x80\xAE\xFF\xC3\xA4";
    const std::string page = PageOf({}, options);
    const std::string text =
        "&#60;/title&#62;&#60;script&#62;alert(&#39;&#38;&#39;)&#60;/script&#62;&#34;\\x0A\\xE2\\x80\\xAE\\xFF\xC3\xA4";
    EXPECT_TRUE(Holds(page, "<title>File formats: " + text + "</title>"));
    EXPECT_TRUE(Holds(page, "<h1><span>File formats</span> " + text + "</h1>"));
}

TEST(HtmlReport, NamesOfFormatsAreText) {
    Record record = RecordOf("x", gif);
    record.answer.name = "<b>&</b>";
    const std::string page = PageOf({record});
    EXPECT_TRUE(Holds(page, ">&#60;b&#62;&#38;&#60;/b&#62;</a>"));
    EXPECT_FALSE(Holds(page, "<b>"));
}

// ---- Head and end --------------------------------------------------------------------------------------------------

TEST(HtmlReport, BeginsWithAPolicyThatLetsItsOwnScriptRunAlone) {
    const std::string page = PageOf({});
    EXPECT_EQ(page.rfind("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '",
                         0),
              0U);
    EXPECT_TRUE(
        Holds(page, "script-src '" + std::string(pageScriptHash) + "'; base-uri 'none'; form-action 'none'\">"));
    EXPECT_TRUE(Holds(page, "<style>" + std::string(pageStyle) + "</style>"));
    EXPECT_TRUE(page.ends_with("<script>" + std::string(pageScript) + "</script>\n</body>\n</html>\n"));
    EXPECT_EQ(pageScriptHash.substr(0, 7), "sha256-");
    EXPECT_EQ(pageScriptHash.size(), 7U + 44U);
    EXPECT_EQ(pageStyleHash.size(), 7U + 44U);
    EXPECT_TRUE(pageScriptHash.ends_with("="));
}

TEST(HtmlReport, NamesNoPlaceOutsideOfItself) {
    const std::string page = PageOf({RecordOf("x", gif)});
    for (const char* const mark : {"http:", "https:", "src=", "url(", "@import", " style="}) {
        EXPECT_FALSE(Holds(page, mark)) << mark;
    }
}

TEST(HtmlReport, TellsWhenAndByWhat) {
    ReportOptions options;
    options.startedSeconds = 1700000000;
    EXPECT_TRUE(Holds(PageOf({}, options), "<div>2023-11-14 22:13 UTC, fiid " FIID_VERSION "</div>"));
}

TEST(HtmlReport, TellsThatARunWasInterrupted) {
    const std::string sentence = "This run was interrupted";
    EXPECT_FALSE(Holds(PageOf({RecordOf("x", gif)}), sentence));
    const std::string page = PageOf({RecordOf("x", gif)}, {}, true);
    EXPECT_TRUE(Holds(page, sentence));
    EXPECT_EQ(ValuesOf(page).size(), 5U);
}

TEST(HtmlReport, APageOfNothingIsWhole) {
    const std::string page = PageOf({});
    EXPECT_EQ(ValuesOf(page), Json::array());
    EXPECT_EQ(AnswersOf(page)["files"], 0);
    EXPECT_FALSE(Holds(page, "class=\"chart\""));
}

// ---- Streaming -----------------------------------------------------------------------------------------------------

TEST(HtmlReport, EachRecordLeavesAtOnceAndWhole) {
    const std::unique_ptr<ReportWriter> writer = MakeHtmlWriter({});
    std::string head;
    writer->Begin(head);
    EXPECT_TRUE(head.ends_with("</p>\n"));
    for (int number = 0; number < 3; ++number) {
        const Record record = RecordOf("file" + std::to_string(number), gif);
        std::string rendered;
        std::string placed;
        writer->Render(record, rendered);
        writer->Place(record, rendered, placed);
        const std::string before = number == 0 ? "<script type=\"application/json\" class=\"records\">[\n" : ",\n";
        EXPECT_EQ(placed, before + "\"file" + std::to_string(number) + "\",10,null,0,0");
    }
}

TEST(HtmlReport, BlocksEndBehindOneMebibyte) {
    const std::string longPath(9990, 'x');
    std::vector<Record> records;
    for (int number = 0; number < 250; ++number) records.push_back(RecordOf(longPath, gif));
    const std::string page = PageOf(records);
    const std::vector<std::string> blocks = ScriptsOf(page, R"(<script type="application/json" class="records">)");
    ASSERT_EQ(blocks.size(), 3U);
    EXPECT_EQ(Json::parse(blocks[0]).size(), 105U * 5);  // of 10,005 bytes: the last one goes over the limit
    EXPECT_EQ(Json::parse(blocks[1]).size(), 105U * 5);
    EXPECT_EQ(Json::parse(blocks[2]).size(), 40U * 5);
    EXPECT_EQ(AnswersOf(page)["answers"].size(), 1U);
}

// ---- Without a script ----------------------------------------------------------------------------------------------

std::string TotalOf(const std::string& page, const std::string& what) {
    const std::size_t place = page.find("<dt>" + what + "</dt>");
    if (place == std::string::npos) return "";
    const std::size_t start = page.find('>', page.find("<a href", place)) + 1;
    return page.substr(start, page.find('<', start) - start);
}

TEST(HtmlReport, TellsTotals) {
    std::vector<Record> records;
    for (int number = 0; number < 1234; ++number) records.push_back(RecordOf("x", gif, 1000));
    records.push_back(RecordOf("p", pdf, 5000000));
    records.push_back(RecordOf("u", unknown, FIID_SIZE_UNKNOWN));
    records[0].answer.warnings = FIID_WARN_EXTENSION;
    records[1].answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT | FIID_WARN_SEVERAL;
    records.push_back(FailureOf("f", "no"));
    const std::string page = PageOf(records);
    EXPECT_EQ(TotalOf(page, "Files"), "1,237");
    EXPECT_EQ(TotalOf(page, "Total size"), "6.23 MB");
    EXPECT_EQ(TotalOf(page, "Formats"), "2");
    EXPECT_EQ(TotalOf(page, "Unreadable"), "1");
    EXPECT_EQ(TotalOf(page, "Unusual names"), "2");
    EXPECT_EQ(TotalOf(page, "Unknown"), "1");
    EXPECT_EQ(TotalOf(page, "Cut short"), "1");
    EXPECT_EQ(CountOf(page, "class=\"alarm\""), 4U);
}

TEST(HtmlReport, CutFilesAreToldWhereThereAreSome) {
    const std::string page = PageOf({RecordOf("x", gif)});
    EXPECT_EQ(TotalOf(page, "Cut short"), "");
    EXPECT_EQ(TotalOf(page, "Unreadable"), "0");
    EXPECT_FALSE(Holds(page, "class=\"alarm\""));
}

// The lines of a chart: name, files, share and size.
std::vector<std::string> ChartOf(const std::string& page, const std::string& title) {
    const std::size_t start = page.find("<h2>" + title + "</h2>");
    const std::string chart = page.substr(start, page.find("</table>", start) - start);
    std::vector<std::string> lines;
    for (std::size_t place = chart.find("<tbody>"); (place = chart.find("<tr>", place)) != std::string::npos; ++place) {
        std::string line;
        bool inTag = false;
        const std::string row = chart.substr(place, chart.find("</tr>", place) - place);
        for (const char character : row) {
            if (character == '<' && !line.empty() && line.back() != '|') line += '|';
            if (character == '<') inTag = true;
            if (!inTag) line += character;
            if (character == '>') inTag = false;
        }
        lines.push_back(line);
    }
    return lines;
}

TEST(HtmlReport, ChartsTellLargestFirst) {
    Record otherVersion = RecordOf("b", gif, 100);
    otherVersion.answer.version = "87a";
    const std::string page =
        PageOf({RecordOf("p", pdf, 800), RecordOf("a", gif, 100), otherVersion, FailureOf("f", "no")});
    fiid_format format;
    fiid_format_find(gif, &format);
    const std::string gifName = format.name;
    fiid_format_find(pdf, &format);
    const std::string pdfName = format.name;
    using Lines = std::vector<std::string>;
    EXPECT_EQ(ChartOf(page, "Formats"), (Lines{gifName + "|2|50.0%|200 B|", pdfName + "|1|25.0%|800 B|"}));
    EXPECT_EQ(ChartOf(page, "Families"), (Lines{"image|2|50.0%|200 B|", "document|1|25.0%|800 B|"}));
    EXPECT_EQ(ChartOf(page, "Most space"), (Lines{pdfName + "|1|80.0%|800 B|", gifName + "|2|20.0%|200 B|"}));
    EXPECT_TRUE(Holds(page, "<a href=\"#format=" + std::to_string(gif) + "\">" + gifName + "</a>"));
    EXPECT_TRUE(Holds(page, "<rect width=\"100.00\" height=\"10\"/>"));
    EXPECT_TRUE(Holds(page, "<rect width=\"50.00\" height=\"10\"/>"));
    EXPECT_FALSE(Holds(page, "<details"));
}

TEST(HtmlReport, ChartsAreShortAndATableHasAllFormats) {
    std::vector<Record> records;
    fiid_format format;
    for (std::uint32_t index = 0; index < 12; ++index) {
        fiid_format_at(index, &format);
        records.push_back(RecordOf("x", format.id));
    }
    EXPECT_FALSE(Holds(PageOf(records), "<details"));
    fiid_format_at(12, &format);
    records.push_back(RecordOf("x", format.id));
    const std::string page = PageOf(records);
    EXPECT_EQ(ChartOf(page, "Formats").size(), 12U);
    EXPECT_EQ(ChartOf(page, "Most space").size(), 6U);
    const std::string details = page.substr(page.find("<details"));
    EXPECT_EQ(CountOf(details.substr(0, details.find("</details>")), "#format="), 13U);
}

TEST(HtmlReport, TheMoreExactIdentifierCounts) {
    fiid_format format;
    ASSERT_EQ(fiid_format_at(fiid_format_count() - 1, &format), FIID_OK);
    ASSERT_GE(format.id, 20000);
    EXPECT_TRUE(Holds(PageOf({RecordOf("x", format.id)}), "#format=" + std::to_string(format.id) + "\""));
}

}  // namespace
