// scan_fuzz.cpp - what people and their files give the program to read: globs, sizes, lists of paths and patterns for
// formats; and what it writes of names that hold anything.
//
// The first byte of the input chooses what is tried; the rest is the text, for globs a path behind the first line feed.
// What is written is undone by decoders of this file's own, which must give the bytes back.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/laws.h"
#include "report/display_width.h"
#include "report/escape_text.h"
#include "report/html_text.h"
#include "report/json_text.h"
#include "report/path_parts.h"
#include "report/value_text.h"
#include "scan/format_filter.h"
#include "scan/globs.h"
#include "scan/name_filter.h"
#include "scan/path_list.h"
#include "scan/size_text.h"

namespace {

bool Has(std::string_view text, std::string_view any) { return text.find_first_of(any) != std::string_view::npos; }

// ---- What is read ----------------------------------------------------------------------------------------------------

// Names with one slash between two, as a walk has them.
bool IsPathBelow(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return false;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view name = path.substr(0, end);
        if (name.empty() || name == "." || name == ".." || end + 1 == path.size()) return false;
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return true;
}

void TryGlob(std::string_view text, std::string_view path) {
    Glob glob;
    const std::string mistake = glob.Compile(text);
    const bool file = glob.MatchesFile(path);
    FuzzRequire(mistake.empty() || !(file || glob.MatchesDirectory(path)), "Glob", "a wrong glob matches nothing");
    FuzzRequire(!file || glob.MatchesDirectory(path), "Glob", "what takes a file takes a directory");

    NameFilter excluding;
    FuzzRequire(excluding.AddExclude(text).empty() == mistake.empty(), "NameFilter", "it takes each right glob");
    FuzzRequire(!file || !excluding.TakesFile(path), "NameFilter", "what is excluded stays out");
    NameFilter including;
    if (text.starts_with('!') || !including.AddGlob(text).empty()) return;
    FuzzRequire(!file || including.TakesFile(path), "NameFilter", "what is asked for stays in");
}

// With a backslash in front of each byte but slashes a path means itself.
void TryEscapedGlob(std::string_view path) {
    if (!IsPathBelow(path)) return;
    std::string text = "/";
    for (const char byte : path) {
        if (byte != '/') text += '\\';
        text += byte;
    }
    Glob glob;
    if (text.size() > longestGlob) return;
    FuzzRequire(glob.Compile(text).empty(), "Glob", "a path with all bytes escaped is a glob");
    FuzzRequire(glob.MatchesFile(path), "Glob", "an escaped path matches itself");
    FuzzRequire(!glob.MatchesFile(std::string(path) + "x"), "Glob", "an escaped path matches nothing longer");
}

void TryGlobs(std::string_view input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view path = input.substr(std::min(end + 1, input.size()));
    TryGlob(input.substr(0, end), path);
    TryEscapedGlob(path);
}

void TrySize(std::string_view input) {
    const std::optional<std::uint64_t> size = ParseSize(input);
    if (size.has_value()) FuzzRequire(!FormatSize(*size).empty(), "FormatSize", "every size has a form");
    const bool isNumber = !input.empty() && input.find_first_not_of("0123456789") == std::string_view::npos;
    if (!isNumber || input.size() > 15) return;
    const std::uint64_t number = std::strtoull(std::string(input).c_str(), nullptr, 10);
    FuzzRequire(size == number, "ParseSize", "digits are their number");
    FuzzRequire(ParseSize(std::string(input) + "KiB") == number * 1024, "ParseSize", "KiB are 1,024 bytes");
}

std::vector<std::string> SplitList(std::string_view text, char separator) {
    std::vector<std::string> entries;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) entries.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return entries;
}

void TryList(std::string_view input) {
    const int file = memfd_create("list", MFD_CLOEXEC);
    const bool written = write(file, input.data(), input.size()) == static_cast<ssize_t>(input.size());
    FuzzRequire(written, "memfd_create", "a file in memory");
    for (const char separator : {'\n', '\0'}) {
        PathList list("/proc/self/fd/" + std::to_string(file), separator == '\0');
        std::vector<std::string> entries;
        while (std::optional<std::string> entry = list.Next()) entries.push_back(std::move(*entry));
        FuzzRequire(!list.Failure().has_value(), "PathList", "a file in memory can be read");
        FuzzRequire(entries == SplitList(input, separator), "PathList", "entries are what separators part");
        FuzzRequire(list.BytesRead() == input.size(), "PathList", "all was read");
    }
    close(file);
}

void TryFormatPatterns(std::string_view input) {
    FormatFilter matching;
    FormatFilter excluding;
    const bool isRight = matching.AddMatch(input).empty();
    FuzzRequire(excluding.AddExclude(input).empty() == isRight, "FormatFilter", "both options take the same patterns");
    fiid_result answer = {};
    static_cast<void>(fiid_detect_memory(input.data(), input.size(), nullptr, nullptr, &answer));
    if (isRight) FuzzRequire(matching.Takes(answer) != excluding.Takes(answer), "FormatFilter", "one of both takes it");
    if (!isRight) FuzzRequire(matching.Takes(answer) && excluding.Takes(answer), "FormatFilter", "it is unchanged");
}

// ---- What is written -------------------------------------------------------------------------------------------------

bool HasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char byte) { return (byte >= 0 && byte < 0x20) || byte == 0x7F; });
}

std::uint32_t HexOf(std::string_view digits) {
    return static_cast<std::uint32_t>(std::strtoul(std::string(digits).c_str(), nullptr, 16));
}

std::string UndoEscapes(std::string_view text) {
    std::string bytes;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] == '\\' && text.substr(place + 1).starts_with('x')) {
            bytes += static_cast<char>(HexOf(text.substr(place + 2, 2)));
            place += 3;
        } else {
            place += text[place] == '\\' ? 1 : 0;
            bytes += text[place];
        }
    }
    return bytes;
}

std::string UndoTsv(std::string_view text) {
    std::string bytes;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const bool isEscape = text[place] == '\\';
        const char byte = text[place += isEscape ? 1 : 0];
        bytes += !isEscape ? byte : byte == 't' ? '\t' : byte == 'n' ? '\n' : byte == 'r' ? '\r' : byte;
    }
    return bytes;
}

std::string UndoCsv(std::string_view field) {
    if (!field.starts_with('"')) return std::string(field);
    std::string bytes;
    for (std::size_t place = 1; place + 1 < field.size(); ++place) {
        if (field[place] == '"') ++place;  // one of two
        bytes += field[place];
    }
    return bytes;
}

std::string UndoUri(std::string_view uri) {
    std::string bytes;
    for (std::size_t place = 0; place < uri.size(); ++place) {
        if (uri[place] == '%') {
            bytes += static_cast<char>(HexOf(uri.substr(place + 1, 2)));
            place += 2;
        } else {
            bytes += uri[place];
        }
    }
    return bytes;
}

void AppendUtf8(std::string& bytes, std::uint32_t character) {
    if (character >= 0x800) {
        bytes += static_cast<char>(0xE0 | character >> 12);
        bytes += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    } else if (character >= 0x80) {
        bytes += static_cast<char>(0xC0 | character >> 6);
    }
    bytes += static_cast<char>(character < 0x80 ? character : 0x80 | (character & 0x3F));
}

// A string of JSON. Characters beyond U+FFFF are never written as escapes.
std::string UndoJson(std::string_view text) {
    FuzzRequire(text.size() >= 2 && text.front() == '"' && text.back() == '"', "JSON", "a string has its marks");
    text = text.substr(1, text.size() - 2);
    std::string bytes;
    for (std::size_t place = 0; place < text.size(); ++place) {
        FuzzRequire(text[place] != '"' && !(text[place] >= 0 && text[place] < 0x20), "JSON", "a string is one string");
        if (text[place] != '\\') {
            bytes += text[place];
        } else if (text[++place] == 'u') {
            AppendUtf8(bytes, HexOf(text.substr(place + 1, 4)));
            place += 4;
        } else {
            constexpr std::string_view letters = "bfnrt\"\\/";
            constexpr std::string_view meant = "\b\f\n\r\t\"\\/";
            FuzzRequire(letters.find(text[place]) != std::string_view::npos, "JSON", "an escape is one of JSON's");
            bytes += meant[letters.find(text[place])];
        }
    }
    return bytes;
}

void TryJson(std::string_view input) {
    std::string json;
    AppendJsonText(json, input);
    std::string script;
    AppendScriptText(script, input);
    FuzzRequire(IsUtf8(json) && IsUtf8(script), "JSON", "it is UTF-8");
    FuzzRequire(!Has(script, "<>&"), "AppendScriptText", "nothing ends the element");
    FuzzRequire(UndoJson(json) == UndoJson(script), "AppendScriptText", "it tells the same as JSON");
    if (IsUtf8(input)) FuzzRequire(UndoJson(json) == input, "AppendJsonText", "UTF-8 comes back");
}

void TryLines(std::string_view input) {
    std::string csv;
    AppendCsvText(csv, input);
    const bool isQuoted = csv.starts_with('"');
    FuzzRequire(isQuoted || !Has(csv, ",\"\r\n"), "AppendCsvText", "it is one field");
    FuzzRequire(UndoCsv(csv) == input, "AppendCsvText", "the bytes come back");
    std::string quoted;
    AppendQuotedCsvText(quoted, input);
    FuzzRequire(UndoCsv(quoted) == input, "AppendQuotedCsvText", "the bytes come back");
    std::string tsv;
    AppendTsvText(tsv, input);
    FuzzRequire(!Has(tsv, "\t\r\n") && UndoTsv(tsv) == input, "AppendTsvText", "the bytes come back");
}

void TryText(std::string_view input) {
    const std::string text = EscapeForText(input);
    FuzzRequire(!HasControl(text), "EscapeForText", "no control character is left");
    FuzzRequire(UndoEscapes(text) == input, "EscapeForText", "the bytes come back");
    std::string html;
    AppendHtmlText(html, input);
    FuzzRequire(IsUtf8(html) && !HasControl(html) && !Has(html, "<>\"'"), "AppendHtmlText", "it is text alone");
    for (const TerminalText kind : {TerminalText::Utf8, TerminalText::Bytes}) {
        const std::size_t columns = FuzzHash(input) % 40;
        std::string cut;
        AppendCutToWidth(cut, text, columns, input.size() % 2 == 0 ? CutSide::Front : CutSide::End, kind);
        FuzzRequire(DisplayWidth(cut, kind) <= columns, "AppendCutToWidth", "there is room for it");
        const bool fits = DisplayWidth(text, kind) <= columns;
        FuzzRequire(!fits || cut == text, "AppendCutToWidth", "what fits is not cut");
    }
}

void TryPath(std::string_view input) {
    const std::string path = AbsolutePath("/a/b", input);
    FuzzRequire(path.empty() || (path.front() == '/' && IsPathBelow(std::string_view(path).substr(1))) ||
                    path.find('\0') != std::string::npos,
                "AbsolutePath", "it is of normal form");
    FuzzRequire(AbsolutePath("/c", path + "/") == path, "AbsolutePath", "a normal form stays as it is");
    std::string uri;
    AppendFileUri(uri, path);
    const bool isPlain = std::all_of(uri.begin(), uri.end(), [](char byte) { return byte > 0x20 && byte < 0x7F; });
    FuzzRequire(isPlain && !Has(uri, "\"<>\\^`{|}?#[]"), "AppendFileUri", "it is a URI");
    FuzzRequire(UndoUri(uri).ends_with(path), "AppendFileUri", "the path comes back");
}

constexpr void (*trials[])(std::string_view) = {TryGlobs, TrySize,  TryList, TryFormatPatterns,
                                                TryJson,  TryLines, TryText, TryPath};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    trials[data[0] % std::size(trials)]({reinterpret_cast<const char*>(data) + 1, size - 1});
    return 0;
}
