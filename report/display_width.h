// display_width.h - how many columns of a terminal a text takes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What a terminal makes of bytes.
enum class TerminalText {
    Utf8,   // characters of UTF-8; what is none is shown in one column a byte
    Bytes,  // one column a byte
};

// The columns of a text without control characters. Of UTF-8 they are those of wcwidth: two for wide characters of East
// Asia, none for marks that stand over the character in front of them.
std::size_t DisplayWidth(std::string_view text, TerminalText kind);

// Which side of a text goes where there is no room for it.
enum class CutSide { Front, End };

// Appends a text that takes at most so many columns: one that takes more is cut between two characters, with an
// ellipsis in place of what is gone (a character of UTF-8, else three full stops, or as many as there are columns).
void AppendCutToWidth(std::string& out, std::string_view text, std::size_t columns, CutSide side, TerminalText kind);
