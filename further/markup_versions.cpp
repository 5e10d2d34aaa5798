// markup_versions.cpp - versions of HTML, XML and SVG.
//
// HTML tells its version by the public identifier of its document type, XML by its declaration. Both stand at the
// beginning and are ASCII, in UTF-16 with a zero byte at each character: they are looked for in the first 1,024 bytes
// without their zero bytes. SVG tells it by an attribute of its outermost element, behind any comments.
#include "further/markup_versions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "further/version_reading.h"
#include "reader/ascii_case.h"

namespace {

constexpr std::size_t prologBytes = 1024;
using FIProlog = std::array<char, prologBytes>;

// XML's white space with the form feed and the vertical tab, which HTML of any origin has.
constexpr bool FIIsMarkupSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }

// The prolog is the file's own bytes, mostly: only with zero bytes among them it is copied.
std::string_view FITakeProlog(const FILook& look, FIProlog& prolog) {
    const std::string_view bytes = FIStartText(look, 0, prologBytes);
    if (bytes.find('\0') == std::string_view::npos) return bytes;
    const auto end = std::ranges::copy_if(bytes, prolog.begin(), [](char byte) { return byte != '\0'; }).out;
    return {prolog.data(), static_cast<std::size_t>(end - prolog.begin())};
}

// Passes over white space. Returns whether there was any.
bool FIPassSpace(std::string_view& text) {
    const std::size_t size = text.size();
    while (!text.empty() && FIIsMarkupSpace(text.front())) text.remove_prefix(1);
    return text.size() < size;
}

// Passes over a word, which is given in small letters, in any case.
bool FIPassWord(std::string_view& text, std::string_view word) {
    const std::string_view start = text.substr(0, word.size());
    const auto lower = [](char character) { return FILowerAscii(character); };
    if (!std::ranges::equal(start, word, {}, lower)) return false;
    text.remove_prefix(word.size());
    return true;
}

bool FIPassQuote(std::string_view& text) {
    if (text.empty() || (text.front() != '"' && text.front() != '\'')) return false;
    text.remove_prefix(1);
    return true;
}

// Takes a value and its quotation marks, which are both of the same sort.
bool FITakeQuoted(std::string_view& text, std::string_view& value) {
    const char mark = text.empty() ? '\0' : text.front();
    if (!FIPassQuote(text)) return false;
    const std::size_t end = text.find(mark);
    if (end == std::string_view::npos) return false;
    value = text.substr(0, end);
    text.remove_prefix(end + 1);
    return true;
}

constexpr FIVersion htmlWithoutVersion = {"", "fmt/96"};
constexpr FIVersion html5 = {"5", "fmt/471"};
constexpr FINamedVersion htmlVersions[] = {
    {"2.0", {"2.0", "fmt/97"}},
    {"3.2", {"3.2", "fmt/98"}},
    {"4.0", {"4.0", "fmt/99"}},
    {"4.01", {"4.01", "fmt/100"}},
};
constexpr FINamedVersion xhtmlVersions[] = {
    {"1.0", {"XHTML 1.0", "fmt/102"}},
    {"1.1", {"XHTML 1.1", "fmt/103"}},
};

// The language that a public identifier names: "-//W3C//DTD XHTML 1.0 Strict//EN".
struct FIHtmlLanguage {
    bool extensible;
    std::string_view number;  // digit, full stop, digits; may be empty
};

// Behind "<!doctype html", from white space on: PUBLIC and the identifier.
bool FITakePublicIdentifier(std::string_view text, FIHtmlLanguage& language) {
    if (!FIPassSpace(text) || !FIPassWord(text, "public") || !FIPassSpace(text)) return false;
    if (!FIPassQuote(text) || !FIPassWord(text, "-//")) return false;
    text.remove_prefix(std::min(text.find_first_of("/\"'"), text.size()));  // the owner
    if (!FIPassWord(text, "//dtd") || !FIPassSpace(text)) return false;
    language.extensible = FIPassWord(text, "x");
    if (!FIPassWord(text, "html")) return false;
    FIPassSpace(text);
    language.number = {};
    if (text.size() < 3 || !FIIsDigit(text[0]) || text[1] != '.' || !FIIsDigit(text[2])) return true;
    std::size_t size = 3;
    while (size < text.size() && FIIsDigit(text[size])) ++size;
    language.number = text.substr(0, size);
    return true;
}

// Behind "<!doctype html": nothing else, or the one system identifier that HTML 5 has for programs that must write one.
bool FIIsHtml5(std::string_view text) {
    const bool space = FIPassSpace(text);
    if (FIPassWord(text, ">")) return true;
    return space && FIPassWord(text, "system") && FIPassSpace(text) && FIPassQuote(text) &&
           FIPassWord(text, "about:legacy-compat") && FIPassQuote(text);
}

constexpr FIVersion xmlVersions[] = {{"1.0", "fmt/101"}, {"1.1", "fmt/1776"}};

void FIPassByteOrderMark(std::string_view& text) {
    constexpr std::string_view marks[] = {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"};
    for (const std::string_view mark : marks) {
        if (!text.starts_with(mark)) continue;
        text.remove_prefix(mark.size());
        return;
    }
}

constexpr FIVersion svgVersions[] = {{"1.0", "fmt/91"}, {"1.1", "fmt/92"}, {"1.2", "fmt/413"}};

// The attributes of the first element svg: from the white space behind its name to the first ">". Returns false when the
// text ends in front of that; what there is of them is given all the same.
bool FITakeSvgAttributes(std::string_view text, std::string_view& attributes) {
    constexpr std::string_view name = "<svg";
    attributes = {};
    for (std::size_t place = text.find(name); place < text.size(); place = text.find(name, place + 1)) {
        const std::string_view rest = text.substr(place + name.size());
        if (rest.empty() || !FIIsMarkupSpace(rest.front())) continue;
        const std::size_t end = rest.find('>');
        attributes = rest.substr(0, end);
        return end != std::string_view::npos;
    }
    return false;
}

// Takes the next attribute's name and value. A value without quotation marks ends at white space and is none.
bool FITakeAttribute(std::string_view& text, std::string_view& name, std::string_view& value) {
    FIPassSpace(text);
    if (text.empty()) return false;
    std::size_t size = 0;
    while (size < text.size() && text[size] != '=' && !FIIsMarkupSpace(text[size])) ++size;
    name = text.substr(0, size);
    value = {};
    text.remove_prefix(size);
    FIPassSpace(text);
    if (!FIPassWord(text, "=")) return true;
    FIPassSpace(text);
    if (FITakeQuoted(text, value)) return true;
    while (!text.empty() && !FIIsMarkupSpace(text.front())) text.remove_prefix(1);
    return true;
}

}  // namespace

bool FIReadHtmlVersion(FILook& look, FIVersion& version) {
    FIProlog prolog;
    const std::string_view text = FITakeProlog(look, prolog);
    version = htmlWithoutVersion;
    constexpr std::string_view declaration = "<!";
    for (std::size_t place = text.find(declaration); place < text.size(); place = text.find(declaration, place + 1)) {
        std::string_view rest = text.substr(place);
        if (!FIPassWord(rest, "<!doctype") || !FIPassSpace(rest) || !FIPassWord(rest, "html")) continue;
        FIHtmlLanguage language;
        if (FITakePublicIdentifier(rest, language)) {
            version = htmlWithoutVersion;
            if (language.number.empty()) return true;
            return language.extensible ? FITakeVersion(xhtmlVersions, language.number, version)
                                       : FITakeVersion(htmlVersions, language.number, version);
        }
        if (FIIsHtml5(rest)) version = html5;  // unless a public identifier follows
    }
    return true;
}

bool FIReadXmlVersion(FILook& look, FIVersion& version) {
    FIProlog prolog;
    std::string_view text = FITakeProlog(look, prolog);
    FIPassByteOrderMark(text);
    FIPassSpace(text);
    // Without a declaration a text is XML 1.0.
    if (!text.starts_with("<?xml")) return FITakeVersion(xmlVersions, "1.0", version);
    text.remove_prefix(std::string_view("<?xml").size());
    if (!FIPassSpace(text)) return FITakeVersion(xmlVersions, "1.0", version);
    if (!text.starts_with("version")) return false;
    text.remove_prefix(std::string_view("version").size());
    FIPassSpace(text);
    if (!FIPassWord(text, "=")) return false;
    FIPassSpace(text);
    std::string_view value;
    return FITakeQuoted(text, value) && FITakeVersion(xmlVersions, value, version);
}

bool FIReadSvgVersion(FILook& look, FIVersion& version) {
    std::string_view attributes;
    if (!FITakeSvgAttributes(FITextOf(FILookAtStart(look)), attributes) && !FIStartIsWhole(look)) {
        FITakeSvgAttributes(FITextOf(FILookAtHead(look)), attributes);
    }
    std::string_view name;
    std::string_view value;
    while (FITakeAttribute(attributes, name, value)) {
        if (name == "version") return FITakeVersion(svgVersions, value, version);
    }
    return false;
}
