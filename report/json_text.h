// json_text.h - bytes from outside, such as paths, as strings of JSON.
#pragma once

#include <string>
#include <string_view>

// Whether bytes are UTF-8. Forms that are longer than needed, halves of surrogate pairs and numbers above U+10FFFF are
// none.
bool IsUtf8(std::string_view bytes);

// Appends bytes as a string of JSON, with its quotation marks. What is no UTF-8 becomes U+FFFD: one for each longest
// start of a character, or for each byte that starts none, as the Unicode standard recommends.
void AppendJsonText(std::string& out, std::string_view bytes);
