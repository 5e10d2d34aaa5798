// html_report.cpp - the page in the order of its bytes:
//
//   head       policy, style, title and time: known from the start, shown at once
//   records    script elements of some 1 MiB: each an array of JSON, flat, a line for each record
//   answers    a script element: the distinct answers, which records name by their index
//   summary    totals and charts as plain HTML, for readers without scripts too
//   table      its places, which the script fills
//   script
//
// A line of a record holds: path, size, seconds, warnings, the columns asked for, and last the index of its answer, the
// error in words, or null where there is neither. A path that is no UTF-8 is an array of its text and its bytes in
// hexadecimal. What there is not is null.
#include "report/html_report.h"

#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "fiid/detect.h"
#include "report/hex_digits.h"
#include "report/html/page.h"
#include "report/html_summary.h"
#include "report/html_text.h"
#include "report/json_text.h"
#include "report/record_facts.h"
#include "report/value_text.h"

namespace {

// Browsers take a file of many arrays faster, and in less memory, than one of a single array.
constexpr std::size_t blockSize = std::size_t{1} << 20;

// Between the line of a record and its answer, in what Render appends: JSON escapes it.
constexpr char answerMark = '\n';

// Of either sign.
template <typename Integer>
void AppendInteger(std::string& out, Integer number) {
    std::array<char, 24> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

// A string of the library, or of a store, that may be missing.
std::string_view TextOf(const char* text) { return text != nullptr ? text : ""; }

std::string_view FamilyOf(const fiid_result& answer) {
    const std::string_view family = TextOf(answer.family);
    return family.empty() ? "unknown" : family;
}

void AppendPath(std::string& out, std::string_view path) {
    const bool plain = IsUtf8(path);
    if (!plain) out += '[';
    AppendScriptText(out, path);
    if (plain) return;
    out += ",\"";
    for (const char byte : path) AppendHexByte(out, static_cast<std::uint8_t>(byte), lowerHexDigits);
    out += "\"]";
}

// `,` and the text, or null for an empty one.
void AppendTextIfAny(std::string& out, std::string_view text) {
    out += ',';
    if (text.empty()) {
        out += "null";
    } else {
        AppendScriptText(out, text);
    }
}

template <typename Integer>
void AppendIntegerIfAny(std::string& out, std::optional<Integer> number) {
    out += ',';
    if (number.has_value()) {
        AppendInteger(out, *number);
    } else {
        out += "null";
    }
}

template <typename Integer>
void AppendIntegerIf(std::string& out, bool known, Integer number) {
    AppendIntegerIfAny(out, known ? std::optional(number) : std::nullopt);
}

std::uint16_t FormatOf(const fiid_result& answer) { return answer.further != 0 ? answer.further : answer.fiid; }

void AppendKey(std::string& out, std::string_view key) {
    out += ",\"";
    out += key;
    out += "\":";
}

void AppendTextEntry(std::string& out, std::string_view key, std::string_view text) {
    AppendKey(out, key);
    AppendScriptText(out, text);
}

void AppendNumberEntry(std::string& out, std::string_view key, std::uint64_t number) {
    AppendKey(out, key);
    AppendInteger(out, number);
}

// An answer as an object of JSON: what many files have in common. Keys are those of the JSON format.
void AppendAnswer(std::string& out, const fiid_result& answer, bool explain) {
    out += "{\"fiid\":";
    AppendInteger(out, answer.fiid);
    AppendNumberEntry(out, "further", answer.further);
    AppendTextEntry(out, "name", TextOf(answer.name));
    AppendTextEntry(out, "version", TextOf(answer.version));
    AppendTextEntry(out, "mime", TextOf(answer.mime));
    AppendTextEntry(out, "puid", TextOf(answer.puids));
    AppendTextEntry(out, "family", FamilyOf(answer));
    AppendTextEntry(out, "extensions", TextOf(answer.extensions));
    AppendTextEntry(out, "basis", fiid_basis_text(answer.basis));
    if (explain) {
        AppendNumberEntry(out, "row", answer.row);
        AppendTextEntry(out, "signature", TextOf(answer.signature));
        AppendTextEntry(out, "routine", TextOf(answer.routine));
        AppendNumberEntry(out, "further_row", answer.further_row);
        AppendTextEntry(out, "further_signature", TextOf(answer.further_signature));
    }
    out += '}';
}

class HtmlWriter : public ReportWriter {
 public:
    explicit HtmlWriter(const ReportOptions& options) : options_(options) {}

    void Begin(std::string& out) override;
    void Render(const Record& record, std::string& out) const override;
    void Place(const Record& record, std::string_view rendered, std::string& out) override;
    void End(std::string& out, bool interrupted) override;

 private:
    void AppendAskedFor(std::string& out, const Record& record) const;
    void AppendAnswers(std::string& out) const;
    void OpenLine(std::string& out);
    std::size_t IndexOf(std::string_view answer, const Record& record);
    void Count(const Record& record);

    ReportOptions options_;
    PageTotals totals_;
    std::vector<AnswerShare> shares_;
    // The answers as Render appends them. The views are of keys, which stay where they are.
    std::unordered_map<std::string, std::size_t> indexes_;
    std::vector<std::string_view> answers_;
    std::string key_;              // room for looking an answer up
    std::size_t roomInBlock_ = 0;  // bytes that the open block may still take; no block is open at first
    bool blockIsOpen_ = false;
};

void HtmlWriter::Begin(std::string& out) {
    out +=
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '";
    out += pageStyleHash;
    out += "'; script-src '";
    out += pageScriptHash;
    out +=
        "'; base-uri 'none'; form-action 'none'\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"color-scheme\" content=\"light dark\">\n"
        "<meta name=\"referrer\" content=\"no-referrer\">\n"
        "<meta name=\"generator\" content=\"fiid ";
    AppendHtmlText(out, fiid_version());
    out += "\">\n<title>";
    AppendHtmlText(out, options_.title.empty() ? "File formats" : "File formats: " + options_.title);
    out += "</title>\n<style>";
    out += pageStyle;
    out += "</style>\n</head>\n<body>\n<header>\n<h1><span>File formats</span> ";
    AppendHtmlText(out, options_.title);
    out += "</h1>\n<div>";
    AppendHtmlText(out, TellMinute(options_.startedSeconds));
    out += ", fiid ";
    AppendHtmlText(out, fiid_version());
    // Shown by the style as long as no other paragraph follows it, which is until the whole page is there.
    out += "</div>\n</header>\n";
    out +=
        "<p class=\"unfinished\">This report has no end: what wrote it was broken off, or it is still being "
        "read.</p>\n";
}

// The columns that options ask for, in the order in which report.js takes them.
void HtmlWriter::AppendAskedFor(std::string& out, const Record& record) const {
    if (options_.withCopies) AppendIntegerIf(out, record.copies != 0, record.copies);
    if (options_.hash != HashKind::None) AppendTextIfAny(out, record.hash);
    if (options_.withChanges) {
        AppendTextIfAny(out, WordOf(record.change.kind));
        const bool changed = record.change.kind != ChangeKind::None;
        AppendIntegerIf(out, changed, record.change.run);
        AppendIntegerIf(out, changed && TimeHasAForm(record.change.seconds), record.change.seconds);
        AppendTextIfAny(out, record.change.before);
    }
    if (options_.explain) {
        const bool answered = HasAnswer(record);
        AppendTextIfAny(out, answered ? std::string_view(record.answer.explanation) : "");
        AppendIntegerIf(out, answered, answered ? record.answer.bytes_read : 0);
        AppendIntegerIf(out, answered, answered ? record.answer.calls : 0);
    }
}

void HtmlWriter::Render(const Record& record, std::string& out) const {
    AppendPath(out, record.path);
    const bool answered = HasAnswer(record);
    AppendIntegerIfAny(out, SizeOf(record));
    AppendIntegerIfAny(out, ModifiedSecondsOf(record));
    AppendIntegerIf(out, answered, record.answer.warnings);
    AppendAskedFor(out, record);
    if (answered) {
        out += answerMark;
        AppendAnswer(out, record.answer, options_.explain);
    } else {
        AppendTextIfAny(out, record.error.value_or(""));
    }
}

// Appends what stands between two lines, or in front of the first one of a block.
void HtmlWriter::OpenLine(std::string& out) {
    if (blockIsOpen_ && roomInBlock_ == 0) {
        out += "\n]</script>\n";
        blockIsOpen_ = false;
    }
    if (blockIsOpen_) {
        out += ",\n";
        return;
    }
    out += "<script type=\"application/json\" class=\"records\">[\n";
    blockIsOpen_ = true;
    roomInBlock_ = blockSize;
}

std::size_t HtmlWriter::IndexOf(std::string_view answer, const Record& record) {
    key_ = answer;
    const auto [place, isNew] = indexes_.try_emplace(key_, answers_.size());
    if (isNew) {
        answers_.push_back(place->first);
        shares_.push_back({FormatOf(record.answer), std::string(TextOf(record.answer.name)),
                           std::string(FamilyOf(record.answer)), Share{}});
    }
    return place->second;
}

void HtmlWriter::Count(const Record& record) {
    ++totals_.all.files;
    totals_.all.bytes += SizeOf(record).value_or(0);
    if (record.error.has_value()) ++totals_.unreadable;
    if (!HasAnswer(record)) return;
    if ((record.answer.warnings & FIID_WARN_EXTENSION) != 0) ++totals_.unusualNames;
    if ((record.answer.warnings & FIID_WARN_CUT) != 0) ++totals_.cut;
}

void HtmlWriter::Place(const Record& record, std::string_view rendered, std::string& out) {
    Count(record);
    OpenLine(out);
    const std::size_t start = out.size();
    const std::size_t mark = rendered.find(answerMark);
    out += rendered.substr(0, mark);
    if (mark != std::string_view::npos) {
        const std::size_t index = IndexOf(rendered.substr(mark + 1), record);
        shares_[index].share.Add({1, SizeOf(record).value_or(0)});
        out += ',';
        AppendInteger(out, index);
    }
    roomInBlock_ -= std::min(roomInBlock_, out.size() - start);
}

void HtmlWriter::AppendAnswers(std::string& out) const {
    out += "<script type=\"application/json\" id=\"answers\">{\"files\":";
    AppendInteger(out, totals_.all.files);
    out += ",\"columns\":[\"path\",\"size\",\"mtime\",\"warning\"";
    if (options_.withCopies) out += ",\"copies\"";
    if (options_.hash == HashKind::Sha256) out += ",\"sha256\"";
    if (options_.hash == HashKind::Xxh3) out += ",\"xxh3\"";
    if (options_.withChanges) out += ",\"change\",\"run\",\"time\",\"before\"";
    if (options_.explain) out += ",\"looked_at\",\"bytes_read\",\"calls\"";
    out += ",\"answer\"],\"extensions\":";
    out += options_.withExtensions ? "true" : "false";
    out += ",\"answers\":[";
    for (std::size_t index = 0; index < answers_.size(); ++index) {
        out += index != 0 ? ",\n" : "\n";
        out += answers_[index];
    }
    out += "\n]}</script>\n";
}

void HtmlWriter::End(std::string& out, bool interrupted) {
    if (blockIsOpen_) out += "\n]</script>\n";
    AppendAnswers(out);
    out += "<main>\n";
    if (interrupted) {
        out += "<p class=\"banner\">This run was interrupted: the report holds what was done until then.</p>\n";
    }
    AppendHtmlSummary(out, totals_, shares_);
    out +=
        "<noscript><p class=\"banner\">The lists of files need JavaScript, which this browser does not run here.</p>"
        "</noscript>\n"
        "<div id=\"files\"></div>\n</main>\n"
        "<p class=\"end\">This page is all there is: it loads nothing and sends nothing.</p>\n<script>";
    out += pageScript;
    out += "</script>\n</body>\n</html>\n";
}

}  // namespace

std::unique_ptr<ReportWriter> MakeHtmlWriter(const ReportOptions& options) {
    return std::make_unique<HtmlWriter>(options);
}
