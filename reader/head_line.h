// head_line.h - the lines of text at the start of a file, found in its head by the masks, without a copy.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>

#include "reader/head.h"

// The offset from start on of the first byte that is picked, or end, which lies in the head.
template <typename Pick>
std::uint32_t FINextInHead(FIHead& head, std::uint32_t start, std::uint32_t end, Pick pick) {
    for (std::uint32_t position = start; position < end; position = (position | (byteMaskSpan - 1)) + 1) {
        if (head.maskedBytes <= position) FIMaskHead(head, position + 1);
        const std::uint64_t bits = pick(head.masks[position / byteMaskSpan]) >> position % byteMaskSpan;
        if (bits != 0) return std::min(end, position + static_cast<std::uint32_t>(std::countr_zero(bits)));
    }
    return end;
}

enum class FIHeadLine : std::uint8_t {
    taken,       // all of it, without its line end; empty at the end of the file too
    holdsNul,    // a NUL byte stands in it
    beyondHead,  // what comes behind the head decides about it
};

// Takes the line at position, which is moved behind it: the one that FIReadHeaderLine reads there with
// headerLineCapacity. Where it is not taken, line and position are of no use.
FIHeadLine FITakeHeadLine(FIHead& head, std::uint32_t& position, std::string_view& line);
