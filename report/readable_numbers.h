// readable_numbers.h - counts, sizes and shares as people read them.
#pragma once

#include <cstdint>
#include <string>

// Appends a number with a comma between each three digits: 12,345.
void AppendGroupedNumber(std::string& out, std::uint64_t number);

// Appends a size in bytes, in the largest unit of 1,024 that leaves at least 1 of it, rounded to a tenth below 100 of
// that unit and to a whole number from there on: "1023 B", "1.0 KiB", "99.9 MiB", "100 GiB". At most 8 characters.
void AppendReadableSize(std::string& out, std::uint64_t bytes);

// Appends part of whole in percent, rounded to a tenth: "45.2%". Part is not above whole; of 0 it is 0.0%. At most 6
// characters.
void AppendPercent(std::string& out, std::uint64_t part, std::uint64_t whole);

// How many of steps equal parts of whole part is, rounded; 0 when whole is 0. Part is not above whole, and steps not above
// 100,000.
std::uint64_t RoundedShare(std::uint64_t part, std::uint64_t whole, std::uint32_t steps);
