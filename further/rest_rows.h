// rest_rows.h - rows of the second table: what is left: text by its characters, and what is none.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherRestRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 FF FE)",  Call(20337)},  // UTF-16 text with a byte order mark
    {FIOver::TextOrUnknown, R"(>0 FE FF)",  Call(20337)},
    {FIOver::TextOrUnknown, R"((always))",  Call(20338)},  // UTF-8 text without a byte order mark
    {FIOver::TextOrUnknown, R"((always))",  Call(20339)},  // Binary data, not known (withdraws the answer text)
    // clang-format on
};
