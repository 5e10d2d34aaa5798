// size_text.h - sizes as people write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// The bytes that a text stands for: digits, maybe one of the letters K, M, G, T, P and E for 1,024 bytes, 1,024 of
// these and so on, and behind it maybe B or iB, which say nothing more; capital or small. "100", "64K", "2GiB" and
// "10mb" are sizes. Returns nothing for any other text - with a sign, a point or a blank - and for 2^64 bytes and more.
std::optional<std::uint64_t> ParseSize(std::string_view text);
