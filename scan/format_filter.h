// format_filter.h - which answers are told: --match, --exclude-format and --mismatch.
//
// Patterns for formats; capitals and small letters are the same, and blanks around a pattern do not count:
//
//   1650                a number: the identifier of either table
//   fmt/40, x-fmt/*     a PRONOM identifier: one of those of the answer
//   image/png, text/*   anything else with a slash: a media type. As --mime tells it, that of an empty file is
//                       inode/x-empty, whatever its name says, and that of another file without one is
//                       application/octet-stream
//   image               a word: the family
//
// In PRONOM identifiers and media types * stands for any characters, or none, and ? for one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fiid/detect.h"

struct FormatPattern {
    enum class Kind { Identifier, Puid, MediaType, Family };

    Kind kind;
    std::uint16_t identifier;  // 0 but for Identifier
    std::string text;          // in small letters
};

class FormatFilter {
 public:
    // Takes the argument of one --match or --exclude-format: patterns with a comma between two. Returns "", or the
    // first pattern that no format can match, with the reason, and then nothing has changed. A PRONOM identifier or
    // media type, also one with wildcards, is refused when no format of either table has it.
    std::string AddMatch(std::string_view patterns);
    std::string AddExclude(std::string_view patterns);

    // Takes only files whose extension is not usual for their format.
    void OnlyMismatch() { onlyMismatch_ = true; }

    // Whether the answer about a file that could be read is told: it matches a pattern of any AddMatch, or there are
    // none, and no pattern of any AddExclude. Any number of threads may ask.
    bool Takes(const fiid_result& answer) const;

 private:
    std::vector<FormatPattern> matches_;
    std::vector<FormatPattern> excludes_;
    bool onlyMismatch_ = false;
};
