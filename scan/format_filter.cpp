// format_filter.cpp - which answers are told.
#include "scan/format_filter.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <system_error>

namespace {

constexpr std::string_view families[] = {"document", "spreadsheet", "presentation", "database", "image",
                                         "drawing",  "audio",       "video",        "archive",  "mail",
                                         "text",     "code",        "system",       "unknown"};

constexpr std::string_view typeOfEmptyFile = "inode/x-empty";
constexpr std::string_view typeOfUnknownFile = "application/octet-stream";

// ---- Words ----------------------------------------------------------------------------------------------------------

char LowerCase(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

std::string LowerCaseOf(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), LowerCase);
    return lower;
}

std::string_view WithoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) return {};
    return text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

// Takes what stands in front of the first separator, and that.
std::string_view TakeWord(std::string_view& words, char separator) {
    const std::string_view word = words.substr(0, words.find(separator));
    words.remove_prefix(std::min(word.size() + 1, words.size()));
    return word;
}

// Whether a text is as a pattern in small letters says. What a star stands for grows only while nothing behind it fits,
// and that of an earlier star never again: the first place is as good as any later one.
bool FitsWildcards(std::string_view pattern, std::string_view text) {
    std::size_t place = 0;
    std::size_t behindStar = std::string_view::npos;
    std::size_t retry = 0;
    for (std::size_t index = 0; index < text.size();) {
        if (place < pattern.size() && pattern[place] == '*') {
            behindStar = ++place;
            retry = index;
        } else if (place < pattern.size() && (pattern[place] == '?' || pattern[place] == LowerCase(text[index]))) {
            ++place;
            ++index;
        } else if (behindStar != std::string_view::npos) {
            place = behindStar;
            index = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', place) == std::string_view::npos;
}

// How many letters are to be put in, taken out or exchanged to make one word of the other.
std::size_t EditDistance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> distances(other.size() + 1);  // from what was seen of one to each beginning of other
    std::iota(distances.begin(), distances.end(), std::size_t{0});
    for (const char letter : one) {
        std::size_t diagonal = distances[0]++;
        for (std::size_t index = 1; index <= other.size(); ++index) {
            const std::size_t exchanged = diagonal + (letter != other[index - 1] ? 1 : 0);
            diagonal = distances[index];
            distances[index] = std::min({exchanged, diagonal + 1, distances[index - 1] + 1});
        }
    }
    return distances.back();
}

// ---- Patterns -------------------------------------------------------------------------------------------------------

bool AnyWordFits(std::string_view pattern, std::string_view words) {
    while (!words.empty()) {
        if (FitsWildcards(pattern, TakeWord(words, ' '))) return true;
    }
    return false;
}

std::string_view MediaTypeOf(const fiid_result& answer) {
    if (answer.size == 0) return typeOfEmptyFile;
    const std::string_view mime = answer.mime;
    return mime.empty() ? typeOfUnknownFile : mime;
}

bool Fits(const FormatPattern& pattern, const fiid_result& answer) {
    switch (pattern.kind) {
        case FormatPattern::Kind::Identifier:
            return answer.fiid == pattern.identifier || answer.further == pattern.identifier;
        case FormatPattern::Kind::Puid:
            return AnyWordFits(pattern.text, answer.puids);
        case FormatPattern::Kind::MediaType:
            return FitsWildcards(pattern.text, MediaTypeOf(answer));
        case FormatPattern::Kind::Family:
            return pattern.text == answer.family;
    }
    return false;
}

template <typename Holds>
bool AnyFormat(const Holds& holds) {
    fiid_format format;
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) {
        if (holds(format)) return true;
    }
    return false;
}

bool IsKnownMediaType(std::string_view pattern) {
    return FitsWildcards(pattern, typeOfEmptyFile) || FitsWildcards(pattern, typeOfUnknownFile) ||
           AnyFormat([&](const fiid_format& format) { return FitsWildcards(pattern, format.mime); });
}

bool IsKnownPuid(std::string_view pattern) {
    return AnyFormat([&](const fiid_format& format) { return AnyWordFits(pattern, format.puids); });
}

// Returns 0, which no format has, for a number that none has.
std::uint16_t KnownIdentifier(std::string_view digits) {
    std::uint16_t identifier = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), identifier);
    fiid_format format;
    return failure == std::errc() && fiid_format_find(identifier, &format) == FIID_OK ? identifier : std::uint16_t{0};
}

std::string NoFamily(std::string_view word) {
    std::string failure = "is no family; the families are";
    for (const std::string_view family : families) failure.append(family == families[0] ? " " : ", ").append(family);
    constexpr std::size_t near = 2;
    std::size_t nearest = near + 1;
    std::string_view meant;
    for (const std::string_view family : families) {
        if (word.size() > family.size() + near) continue;  // which may be any length
        const std::size_t distance = EditDistance(word, family);
        if (distance < nearest) meant = family;
        nearest = std::min(nearest, distance);
    }
    return meant.empty() ? failure : failure + "; did you mean " + std::string(meant) + '?';
}

// Makes a pattern of a text in small letters that is not empty. Returns "", or what is wrong.
std::string MakePattern(const std::string& text, FormatPattern& pattern) {
    using Kind = FormatPattern::Kind;
    pattern = {Kind::Family, 0, text};
    if (text.find_first_not_of("0123456789") == std::string::npos) {
        pattern.kind = Kind::Identifier;
        pattern.identifier = KnownIdentifier(text);
        return pattern.identifier != 0 ? "" : "no format has this identifier";
    }
    if (text.starts_with("fmt/") || text.starts_with("x-fmt/")) {
        pattern.kind = Kind::Puid;
        return IsKnownPuid(text) ? "" : "no format has this PRONOM identifier";
    }
    if (text.find('/') != std::string::npos) {
        pattern.kind = Kind::MediaType;
        return IsKnownMediaType(text) ? "" : "no format has this media type";
    }
    return std::ranges::find(families, text) != std::end(families) ? "" : NoFamily(text);
}

std::string AddPatterns(std::string_view list, std::vector<FormatPattern>& patterns) {
    std::vector<FormatPattern> added;
    bool more = true;
    while (more) {
        more = list.find(',') != std::string_view::npos;
        const std::string_view told = WithoutBlanks(TakeWord(list, ','));
        if (told.empty()) return "an empty pattern matches no format";
        const std::string failure = MakePattern(LowerCaseOf(told), added.emplace_back());
        if (!failure.empty()) return std::string(told) + ": " + failure;
    }
    std::ranges::move(added, std::back_inserter(patterns));
    return "";
}

}  // namespace

std::string FormatFilter::AddMatch(std::string_view patterns) { return AddPatterns(patterns, matches_); }

std::string FormatFilter::AddExclude(std::string_view patterns) { return AddPatterns(patterns, excludes_); }

bool FormatFilter::Takes(const fiid_result& answer) const {
    if (onlyMismatch_ && (answer.warnings & FIID_WARN_EXTENSION) == 0) return false;
    const auto fits = [&](const FormatPattern& pattern) { return Fits(pattern, answer); };
    if (std::ranges::any_of(excludes_, fits)) return false;
    return matches_.empty() || std::ranges::any_of(matches_, fits);
}
