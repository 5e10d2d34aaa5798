// row_number.h - numbers of signature rows, marked as such: 172_row. scripts/renumber finds them by the mark.
#pragma once

#include <cstdint>

// Write every number of a row this way in a test, so that the test follows when rows in front come or go.
consteval std::uint16_t operator""_row(unsigned long long number) { return static_cast<std::uint16_t>(number); }
