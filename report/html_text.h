// html_text.h - text, numbers and times for people, in HTML.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Appends bytes from outside as text of an element or of an attribute in quotation marks. What could steer the page or
// disguise a line is escaped as in escape_text.h, and so is each byte that is no UTF-8: \x and two hexadecimal digits.
void AppendHtmlText(std::string& out, std::string_view bytes);

// Appends bytes from outside as a string of JSON within a script element: as in json_text.h, but that no character is
// left as it is which could end the element, or steer whoever looks at the source.
void AppendScriptText(std::string& out, std::string_view bytes);

// 1234567 as "1,234,567".
std::string GroupDigits(std::uint64_t number);

// A size in units of 1,000 bytes with three digits: "999 B", "1.23 MB".
std::string TellSize(std::uint64_t bytes);

// The share of a part in a whole, such as "12.3%": "<0.1%" where it is less, "0%" of nothing.
std::string TellShare(std::uint64_t part, std::uint64_t whole);

// Seconds since 1970-01-01, of the years 0 to 9999, as "2026-11-22 01:52 UTC".
std::string TellMinute(std::int64_t seconds);
