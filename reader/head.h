// head.h - the file's head: its first bytes, which handles of the platform layer hand out, in memory and known once and
// for all.
//
// With a head a request can rule out at once what it need not run: rows that can't pass (signatures/row_filter.h) and
// routines that can't answer (their gates, core/routines.cpp). Readers take their bytes from it. Without one, as over a
// host's own handle, nothing is ruled out, and every row and routine runs. Both walks give the same answers.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "fiid.h"
#include "reader/byte_masks.h"

inline constexpr std::uint32_t largestHead = 8192;

// One per request. The bytes are the handle's, the masks are made when they are first asked for.
struct FIHead {
    const std::uint8_t* bytes;
    std::uint32_t size;      // up to largestHead
    std::uint64_t fileSize;  // UINT64_MAX when it is not known
    std::uint32_t maskedBytes;
    std::array<FIByteMasks, largestHead / byteMaskSpan> masks;
};

// Asks the handle for its head. False when it has none; the head is then of no use. A head of less than largestHead bytes
// is the whole file.
bool FITakeHead(HIOFILE file, FIHead& head);

inline bool FIHeadIsWhole(const FIHead& head) { return head.size == head.fileSize; }

// Makes the masks of the first bytes, or of all if there are fewer. Those of bytes behind the head are of no class.
void FIMaskHead(FIHead& head, std::uint32_t bytes);

// Calls visit(bits, start) for each 64 of the first bytes, with the bits of pick(masks), until it returns true. Returns
// whether it did.
template <typename Pick, typename Visit>
bool FIVisitHead(FIHead& head, std::uint32_t bytes, Pick pick, Visit visit) {
    bytes = std::min(bytes, head.size);
    FIMaskHead(head, bytes);
    for (std::uint32_t start = 0; start < bytes; start += byteMaskSpan) {
        std::uint64_t bits = pick(head.masks[start / byteMaskSpan]);
        if (bytes - start < byteMaskSpan) bits &= (std::uint64_t{1} << (bytes - start)) - 1;
        if (visit(bits, start)) return true;
    }
    return false;
}

// The offset of the first of these bytes that is picked, or how many bytes were looked at.
template <typename Pick>
std::uint32_t FIFirstInHead(FIHead& head, std::uint32_t bytes, Pick pick) {
    std::uint32_t first = std::min(bytes, head.size);
    FIVisitHead(head, bytes, pick, [&first](std::uint64_t bits, std::uint32_t start) {
        if (bits == 0) return false;
        first = start + static_cast<std::uint32_t>(std::countr_zero(bits));
        return true;
    });
    return first;
}

template <typename Pick>
bool FIAnyInHead(FIHead& head, std::uint32_t bytes, Pick pick) {
    return FIVisitHead(head, bytes, pick, [](std::uint64_t bits, std::uint32_t) { return bits != 0; });
}

template <typename Pick>
std::uint32_t FICountInHead(FIHead& head, std::uint32_t bytes, Pick pick) {
    std::uint32_t count = 0;
    FIVisitHead(head, bytes, pick, [&count](std::uint64_t bits, std::uint32_t) {
        count += static_cast<std::uint32_t>(std::popcount(bits));
        return false;
    });
    return count;
}

// Classes to pick. Hard control characters are those that texts hold hardly ever.
inline constexpr auto FIHighBytes = [](const FIByteMasks& masks) { return masks.high; };
inline constexpr auto FIHardControls = [](const FIByteMasks& masks) { return masks.low & ~masks.soft; };
