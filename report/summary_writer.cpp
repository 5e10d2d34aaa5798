// summary_writer.cpp - tables and objects of groups.
#include "report/summary_writer.h"

#include <algorithm>
#include <array>
#include <string>

#include "report/display_width.h"
#include "report/escape_text.h"
#include "report/json_text.h"
#include "report/readable_numbers.h"
#include "report/value_text.h"

namespace {

using Write = std::function<void(std::string_view)>;

// Identifiers from here on are those of the further table.
constexpr std::uint16_t firstFurther = 20000;

// A part of all files with four digits behind the point: 0.1234.
std::string ShareText(std::uint64_t files, std::uint64_t all) {
    constexpr std::uint32_t steps = 10000;
    const std::uint64_t share = RoundedShare(files, all, steps);
    const std::string digits = std::to_string(share % steps);
    return std::to_string(share / steps) + '.' + std::string(4 - digits.size(), '0') + digits;
}

// What is told behind the groups.
struct TotalLine {
    std::string_view kind;   // for csv and tsv
    std::string_view label;  // for people
    FileCount count;
    bool sized;
};

std::array<TotalLine, 4> TotalLinesOf(const SummaryTotals& totals) {
    return {{
        {"unknown", "unknown format", totals.unknown, true},
        {"unreadable", "unreadable", {totals.unreadable, 0}, false},
        {"unusual", "unusual name", totals.unusual, true},
        {"total", "in all", totals.all, true},
    }};
}

// ---- Text -------------------------------------------------------------------------------------------------------------

constexpr std::size_t gapColumns = 2;
constexpr std::size_t shareColumns = 6;  // 100.0%
constexpr std::size_t sizeColumns = 8;   // 1023 KiB
constexpr std::size_t leastNameColumns = 20;
constexpr std::size_t leastBarColumns = 4;
constexpr std::size_t mostBarColumns = 40;
constexpr std::string_view filesTitle = "Files";

// The columns of a table, left to right; 0 for one that has no room.
struct Layout {
    std::size_t files;
    std::size_t share;
    std::size_t size;
    std::size_t bar;
    std::size_t name;
    bool cutsNames;
};

// Names come last, as they differ most in width. Where room is short, the bar goes first, then sizes, then shares.
Layout LayoutFor(std::uint64_t files, std::uint32_t columns) {
    std::string widest;
    AppendGroupedNumber(widest, files);
    Layout layout = {std::max(widest.size(), filesTitle.size()), shareColumns, sizeColumns, 0, 0, columns != 0};
    if (columns == 0) return layout;
    std::size_t left = columns > layout.files + gapColumns ? columns - layout.files - gapColumns : 0;
    for (std::size_t* const column : {&layout.share, &layout.size}) {
        if (left >= *column + gapColumns + leastNameColumns) {
            left -= *column + gapColumns;
        } else {
            *column = 0;
        }
    }
    if (layout.size != 0 && left >= leastBarColumns + gapColumns + leastNameColumns) {
        layout.bar = std::min({left / 3, left - gapColumns - leastNameColumns, mostBarColumns});
        left -= layout.bar + gapColumns;
    }
    layout.name = left;
    return layout;
}

void AppendRightAligned(std::string& out, std::string_view text, std::size_t columns) {
    out.append(columns - std::min(columns, text.size()), ' ');
    out += text;
}

// A bar for so much of the most, in eighths of a column where there are characters for them. What is there has one that
// can be seen. Filled up with blanks.
void AppendBar(std::string& out, std::uint64_t files, std::uint64_t most, std::size_t columns, bool utf8) {
    constexpr std::string_view eighths[] = {"",
                                            "\xE2\x96\x8F",
                                            "\xE2\x96\x8E",
                                            "\xE2\x96\x8D",
                                            "\xE2\x96\x8C",
                                            "\xE2\x96\x8B",
                                            "\xE2\x96\x8A",
                                            "\xE2\x96\x89"};
    constexpr std::string_view full = "\xE2\x96\x88";
    if (columns == 0) return;
    const std::uint32_t steps = static_cast<std::uint32_t>(columns) * (utf8 ? 8 : 1);
    std::size_t length = static_cast<std::size_t>(RoundedShare(files, most, steps));  // at most `steps`
    if (files > 0) length = std::max<std::size_t>(length, 1);
    const std::size_t whole = utf8 ? length / 8 : length;
    const std::size_t rest = utf8 ? length % 8 : 0;
    for (std::size_t column = 0; column < whole; ++column) out += utf8 ? full : "#";
    out += eighths[rest];
    out.append(columns - whole - (rest != 0 ? 1 : 0), ' ');
}

std::string_view TitleOf(SummaryKey key) {
    switch (key) {
        case SummaryKey::Format:
            return "Format";
        case SummaryKey::Family:
            return "Family";
        case SummaryKey::Mime:
            return "Media type";
        case SummaryKey::Extension:
            return "Extension";
        case SummaryKey::Directory:
            return "Directory";
    }
    return "";
}

class TextTable {
 public:
    TextTable(SummaryKey key, const SummaryTotals& totals, const SummaryOptions& options)
        : key_(key),
          all_(totals.all.files),
          terminal_(options.utf8 ? TerminalText::Utf8 : TerminalText::Bytes),
          layout_(LayoutFor(totals.all.files, options.columns)) {}

    void AppendTitles(std::string& out) const { AppendLine(out, {filesTitle, "Share", "Size", ""}, TitleOf(key_)); }

    // Of one group after the other.
    void AppendGroup(std::string& out, const SummaryGroup& group) {
        most_ = std::max(most_, group.count.files);
        std::string bar;
        AppendBar(bar, group.count.files, most_, layout_.bar, terminal_ == TerminalText::Utf8);
        std::string name;
        if (key_ == SummaryKey::Extension && group.name.empty()) {
            name = "(none)";
        } else {
            AppendEscapedText(name, group.name);
        }
        if (key_ == SummaryKey::Format) {
            name += " [" + std::to_string(group.format) + "]";
            if (!group.puids.empty()) name += " " + group.puids;
        }
        AppendCounted(out, group.count, true, bar, name);
    }

    void AppendTotal(std::string& out, const TotalLine& line) const {
        AppendCounted(out, line.count, line.sized, "", line.label);
    }

 private:
    struct Cells {
        std::string_view files;
        std::string_view share;
        std::string_view size;
        std::string_view bar;  // as wide as its column, or "" for none
    };

    void AppendCounted(std::string& out, const FileCount& count, bool sized, std::string_view bar,
                       std::string_view name) const {
        std::string files;
        AppendGroupedNumber(files, count.files);
        std::string share;
        AppendPercent(share, count.files, all_);
        std::string size;
        if (sized) AppendReadableSize(size, count.bytes);
        AppendLine(out, {files, share, sized ? size : "-", bar}, name);
    }

    void AppendLine(std::string& out, const Cells& cells, std::string_view name) const {
        AppendRightAligned(out, cells.files, layout_.files);
        const auto appendCell = [&](std::string_view text, std::size_t columns) {
            if (columns == 0) return;
            out.append(gapColumns, ' ');
            AppendRightAligned(out, text, columns);
        };
        appendCell(cells.share, layout_.share);
        appendCell(cells.size, layout_.size);
        if (layout_.bar != 0) {
            out.append(gapColumns, ' ');
            out += cells.bar;
            if (cells.bar.empty()) out.append(layout_.bar, ' ');
        }
        if (!layout_.cutsNames || layout_.name > 0) out.append(gapColumns, ' ');
        if (layout_.cutsNames) {
            // Of paths, the end tells most.
            const CutSide side = key_ == SummaryKey::Directory ? CutSide::Front : CutSide::End;
            AppendCutToWidth(out, name, layout_.name, side, terminal_);
        } else {
            out += name;
        }
        out += '\n';
    }

    SummaryKey key_;
    std::uint64_t all_;
    TerminalText terminal_;
    Layout layout_;
    std::uint64_t most_ = 0;  // of the first group, which is the largest
};

void WriteText(Summary& summary, const SummaryOptions& options, const Write& write) {
    TextTable table(summary.Key(), summary.Totals(), options);
    std::string piece;
    table.AppendTitles(piece);
    write(piece);
    SummaryGroup group;
    bool any = false;
    while (summary.Next(group)) {
        piece.clear();
        table.AppendGroup(piece, group);
        write(piece);
        any = true;
    }
    piece = any ? "\n" : "";
    for (const TotalLine& line : TotalLinesOf(summary.Totals())) table.AppendTotal(piece, line);
    write(piece);
}

// ---- The key in lines and objects -------------------------------------------------------------------------------------

struct KeyField {
    std::string_view key;
    Value value;
};

// What names a group. In JSON there is also a key in hexadecimal where the bytes are no UTF-8.
std::vector<KeyField> KeyFieldsOf(SummaryKey key, const SummaryGroup& group) {
    if (key != SummaryKey::Format) return {{WordOf(key), Text(group.name)}};
    const bool further = group.format >= firstFurther;
    return {{"fiid", further ? nothing : NumberIfAny(group.format)},
            {"further", further ? Number(group.format) : nothing},
            {"name", Text(group.name)},
            {"puid", Words(group.puids)}};
}

// ---- JSON -------------------------------------------------------------------------------------------------------------

void AppendJsonGroup(std::string& out, const Summary& summary, const SummaryGroup& group) {
    JsonObject object(out);
    for (const KeyField& field : KeyFieldsOf(summary.Key(), group)) object.Add(field.key, field.value);
    if (!IsUtf8(group.name)) object.Add(std::string(WordOf(summary.Key())) + "_hex", Hex(group.name));
    object.Add("count", Number(group.count.files));
    out += ",\"share\":" + ShareText(group.count.files, summary.Totals().all.files);
    object.Add("bytes", Number(group.count.bytes));
    object.End();
}

// Without the brace at its end.
void AppendJsonTotals(std::string& out, const Summary& summary) {
    const SummaryTotals& totals = summary.Totals();
    JsonObject object(out);
    object.Add("by", Text(WordOf(summary.Key())));
    object.Add("files", Number(totals.all.files));
    object.Add("bytes", Number(totals.all.bytes));
    object.Add("unknown", Number(totals.unknown.files));
    object.Add("unknown_bytes", Number(totals.unknown.bytes));
    object.Add("unreadable", Number(totals.unreadable));
    object.Add("unusual", Number(totals.unusual.files));
    object.Add("unusual_bytes", Number(totals.unusual.bytes));
}

void WriteJson(Summary& summary, const Write& write) {
    std::string piece;
    AppendJsonTotals(piece, summary);
    piece += ",\"groups\":[";
    SummaryGroup group;
    bool any = false;
    while (summary.Next(group)) {
        piece += any ? ",\n" : "\n";
        AppendJsonGroup(piece, summary, group);
        write(piece);
        piece.clear();
        any = true;
    }
    piece += any ? "\n]}\n" : "]}\n";
    write(piece);
}

void WriteNdjson(Summary& summary, const Write& write) {
    std::string line;
    SummaryGroup group;
    while (summary.Next(group)) {
        line.clear();
        AppendJsonGroup(line, summary, group);
        line += '\n';
        write(line);
    }
    line.clear();
    AppendJsonTotals(line, summary);
    line += "}\n";
    write(line);
}

// ---- csv and tsv ------------------------------------------------------------------------------------------------------

void AppendCounts(std::string& out, const FileCount& count, bool sized, std::uint64_t all, const LineForm& form) {
    out += form.separator;
    AppendNumber(out, count.files);
    out += form.separator;
    out += ShareText(count.files, all);
    out += form.separator;
    if (sized) AppendNumber(out, count.bytes);
    out += form.end;
}

void WriteLines(Summary& summary, const LineForm& form, const Write& write) {
    const std::uint64_t all = summary.Totals().all.files;
    SummaryGroup group;
    const std::vector<KeyField> noKey = KeyFieldsOf(summary.Key(), group);
    std::string line = "kind";
    for (const KeyField& field : noKey) (line += form.separator) += field.key;
    for (const std::string_view key : {"count", "share", "bytes"}) (line += form.separator) += key;
    line += form.end;
    write(line);
    while (summary.Next(group)) {
        line = "group";
        for (const KeyField& field : KeyFieldsOf(summary.Key(), group)) {
            line += form.separator;
            AppendField(line, field.value, form);
        }
        AppendCounts(line, group.count, true, all, form);
        write(line);
    }
    for (const TotalLine& total : TotalLinesOf(summary.Totals())) {
        line = total.kind;
        line.append(noKey.size(), form.separator);
        AppendCounts(line, total.count, total.sized, all, form);
        write(line);
    }
}

}  // namespace

std::string_view WordOf(SummaryKey key) {
    constexpr std::string_view words[] = {"format", "family", "mime", "extension", "directory"};
    return words[static_cast<std::size_t>(key)];
}

void WriteSummary(Summary& summary, const SummaryOptions& options, const Write& write) {
    summary.Finish();
    switch (options.format) {
        case OutputFormat::Json:
            return WriteJson(summary, write);
        case OutputFormat::Ndjson:
            return WriteNdjson(summary, write);
        case OutputFormat::Csv:
            return WriteLines(summary, csvForm, write);
        case OutputFormat::Tsv:
            return WriteLines(summary, tsvForm, write);
        default:
            return WriteText(summary, options, write);
    }
}
