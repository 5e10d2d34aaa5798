// escape_text.h - bytes from outside, such as paths, for lines that a terminal shows.
#pragma once

#include <string>
#include <string_view>

// Appends bytes and escapes what could steer a terminal or disguise a line, each byte as \x and two hexadecimal digits: the control
// characters 00 to 1F, 7F and U+0080 to U+009F, line and paragraph separators, the controls of bidirectional text, and
// the bytes 80 to 9F outside of UTF-8, which are controls in eight-bit character sets. A backslash is doubled; all
// other bytes stay as they are, so that the escapes can be undone.
void AppendEscapedText(std::string& out, std::string_view bytes);

// The same as a text of its own.
std::string EscapeForText(std::string_view bytes);
