// html_summary.cpp - totals as a list of numbers, charts as tables with a bar in each line. Each number that the page's
// table can show the files of is a link: what stands behind its # is what report.js filters by.
#include "report/html_summary.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <tuple>

#include "report/html_text.h"

namespace {

// The lines of the charts; the table of all formats has the rest.
constexpr std::size_t formatLines = 12;
constexpr std::size_t sizeLines = 6;

// A line of a chart.
struct Line {
    std::string name;
    std::string link;  // behind the #
    Share share;
};

enum class Measure { Files, Bytes };

std::uint64_t Measured(const Share& share, Measure measure) {
    return measure == Measure::Files ? share.files : share.bytes;
}

// Largest first, equal ones by name.
void SortLines(std::vector<Line>& lines, Measure measure) {
    std::sort(lines.begin(), lines.end(), [measure](const Line& left, const Line& right) {
        const std::uint64_t leftMeasure = Measured(left.share, measure);
        const std::uint64_t rightMeasure = Measured(right.share, measure);
        return leftMeasure != rightMeasure ? leftMeasure > rightMeasure
                                           : std::tie(left.name, left.link) < std::tie(right.name, right.link);
    });
}

template <typename Key>
std::vector<Line> LinesOf(std::map<Key, Line>& grouped) {
    std::vector<Line> lines;
    lines.reserve(grouped.size());
    for (auto& [key, line] : grouped) lines.push_back(std::move(line));
    SortLines(lines, Measure::Files);
    return lines;
}

std::vector<Line> LinesByFormat(const std::vector<AnswerShare>& answers) {
    std::map<std::uint16_t, Line> grouped;
    for (const AnswerShare& answer : answers) {
        if (answer.format == 0) continue;
        Line& line = grouped[answer.format];
        line.name = answer.name;
        line.link = "format=" + std::to_string(answer.format);
        line.share.Add(answer.share);
    }
    return LinesOf(grouped);
}

std::vector<Line> LinesByFamily(const std::vector<AnswerShare>& answers) {
    std::map<std::string, Line> grouped;
    for (const AnswerShare& answer : answers) {
        Line& line = grouped[answer.family];
        line.name = answer.family;
        line.link = "family=" + answer.family;
        line.share.Add(answer.share);
    }
    return LinesOf(grouped);
}

void AppendLink(std::string& out, std::string_view link, std::string_view text) {
    out += "<a href=\"#";
    AppendHtmlText(out, link);
    out += "\">";
    AppendHtmlText(out, text);
    out += "</a>";
}

void AppendTotal(std::string& out, std::string_view what, std::string_view link, std::string_view number) {
    out += "<div><dt>";
    out += what;
    out += "</dt><dd>";
    AppendLink(out, link, number);
    out += "</dd></div>\n";
}

// A total that is bad news where it is not 0.
void AppendAlarm(std::string& out, std::string_view what, std::string_view link, std::uint64_t count) {
    out += count != 0 ? "<div class=\"alarm\">" : "<div>";
    out += "<dt>";
    out += what;
    out += "</dt><dd>";
    AppendLink(out, link, GroupDigits(count));
    out += "</dd></div>\n";
}

// A bar of 100 units; what is there at all can be seen.
void AppendBar(std::string& out, std::uint64_t part, std::uint64_t whole) {
    const double width = whole != 0 ? static_cast<double>(part) * 100 / static_cast<double>(whole) : 0;
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.2f", part != 0 ? std::max(width, 0.5) : 0);
    out += "<svg aria-hidden=\"true\" viewBox=\"0 0 100 10\" preserveAspectRatio=\"none\"><rect width=\"";
    out += text.data();
    out += "\" height=\"10\"/></svg>";
}

void AppendCell(std::string& out, std::string_view text) {
    out += "<td>";
    AppendHtmlText(out, text);
    out += "</td>";
}

// The bars are as long as the largest line's leaves them; the shares are those of all files.
void AppendLine(std::string& out, const Line& line, const Share& largest, const Share& all, Measure measure) {
    const std::uint64_t measured = Measured(line.share, measure);
    out += "<tr><th scope=\"row\">";
    AppendLink(out, line.link, line.name);
    out += "</th><td class=\"bar\">";
    AppendBar(out, measured, Measured(largest, measure));
    out += "</td>";
    AppendCell(out, GroupDigits(line.share.files));
    AppendCell(out, TellShare(measured, Measured(all, measure)));
    AppendCell(out, TellSize(line.share.bytes));
    out += "</tr>\n";
}

void AppendLines(std::string& out, std::string_view first, const std::vector<Line>& lines, std::size_t count,
                 const Share& all, Measure measure) {
    out += "<table class=\"chart\"><thead><tr><th scope=\"col\">";
    out += first;
    out +=
        "</th><td></td><th scope=\"col\">Files</th><th scope=\"col\">Share</th><th "
        "scope=\"col\">Size</th></tr></thead>\n"
        "<tbody>\n";
    for (std::size_t index = 0; index < std::min(count, lines.size()); ++index) {
        AppendLine(out, lines[index], lines[0].share, all, measure);
    }
    out += "</tbody></table>\n";
}

void AppendChart(std::string& out, std::string_view title, std::string_view first, const std::vector<Line>& lines,
                 std::size_t count, const Share& all, Measure measure) {
    out += "<section class=\"panel\"><h2>";
    out += title;
    out += "</h2>\n";
    AppendLines(out, first, lines, count, all, measure);
    out += "</section>\n";
}

// Files of which nothing tells what they are for have the family of this name.
bool IsUnknown(const AnswerShare& answer) { return answer.family == "unknown"; }

std::uint64_t CountUnknownFiles(const std::vector<AnswerShare>& answers) {
    std::uint64_t files = 0;
    for (const AnswerShare& answer : answers) files += IsUnknown(answer) ? answer.share.files : 0;
    return files;
}

std::uint64_t CountKnownFormats(const std::vector<AnswerShare>& answers) {
    std::set<std::uint16_t> formats;
    for (const AnswerShare& answer : answers) {
        if (!IsUnknown(answer)) formats.insert(answer.format);
    }
    return formats.size();
}

void AppendTotals(std::string& out, const PageTotals& totals, const std::vector<AnswerShare>& answers) {
    out += "<dl class=\"totals\">\n";
    AppendTotal(out, "Files", "only=", GroupDigits(totals.all.files));
    AppendTotal(out, "Total size", "sort=-size", TellSize(totals.all.bytes));
    AppendTotal(out, "Formats", "sort=format", GroupDigits(CountKnownFormats(answers)));
    AppendAlarm(out, "Unreadable", "only=unreadable", totals.unreadable);
    AppendAlarm(out, "Unusual names", "only=unusual", totals.unusualNames);
    AppendAlarm(out, "Unknown", "only=unknown", CountUnknownFiles(answers));
    if (totals.cut != 0) AppendAlarm(out, "Cut short", "only=cut", totals.cut);
    out += "</dl>\n";
}

}  // namespace

void AppendHtmlSummary(std::string& out, const PageTotals& totals, const std::vector<AnswerShare>& answers) {
    AppendTotals(out, totals, answers);
    const std::vector<Line> formats = LinesByFormat(answers);
    if (formats.empty()) return;
    std::vector<Line> largest = formats;
    SortLines(largest, Measure::Bytes);
    const std::vector<Line> families = LinesByFamily(answers);
    out += "<div class=\"charts\">\n<div>\n";
    AppendChart(out, "Formats", "Format", formats, formatLines, totals.all, Measure::Files);
    AppendChart(out, "Most space", "Format", largest, sizeLines, totals.all, Measure::Bytes);
    out += "</div>\n<div class=\"families\">\n";
    AppendChart(out, "Families", "Family", families, families.size(), totals.all, Measure::Files);
    out += "</div>\n</div>\n";
    if (formats.size() <= formatLines) return;
    out += "<details class=\"panel\"><summary>All formats</summary>\n";
    AppendLines(out, "Format", formats, formats.size(), totals.all, Measure::Files);
    out += "</details>\n";
}
