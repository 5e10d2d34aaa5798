// row_filter.h - which rows of a table can pass at all, told by a few bytes of the file's head.
//
// For each of the first four offsets and each value of the byte there (or the end of the file) a bit set tells the rows
// that allow it; the AND of four sets leaves of 404 rows some dozens. Of those, most have one more byte further on that is
// looked at when their turn comes. What is left runs as ever: a row that is left out is one that would have failed.
//
// The sets are made by the compiler from the rows' bytecode, for the signature table here and for a further table where
// that is made.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "signatures/row_needs.h"
#include "signatures/table.h"

// A bit for each row of a table: row n is bit (n - 1) % 64 of word (n - 1) / 64.
template <std::size_t rowCount>
using FIRowBits = std::array<std::uint64_t, (rowCount + 63) / 64>;

using FIRowSet = FIRowBits<signatureRowCount>;

// The file's first bytes: at least as many as the rows ask for, or all that it has.
struct FIFilterBytes {
    const std::uint8_t* bytes;
    std::uint32_t size;
};

// For each value at an offset, the rows that allow it.
template <std::size_t rowCount>
using FIOffsetSets = std::array<FIRowBits<rowCount>, byteValues>;

template <std::size_t words>
constexpr void FIAddRow(std::array<std::uint64_t, words>& set, std::size_t index) {
    set[index / 64] |= std::uint64_t{1} << index % 64;
}

// Rows that allow all values are entered once and copied.
template <std::size_t rowCount>
consteval FIOffsetSets<rowCount> FIMakeOffsetSets(const std::array<FIRowNeeds, rowCount>& needs, std::size_t offset) {
    FIRowBits<rowCount> unconcerned = {};
    for (std::size_t index = 0; index < rowCount; ++index) {
        if (needs[index].first[offset] == FIAllValues()) FIAddRow(unconcerned, index);
    }
    FIOffsetSets<rowCount> sets = {};
    for (FIRowBits<rowCount>& set : sets) set = unconcerned;
    for (std::size_t index = 0; index < rowCount; ++index) {
        const FIByteSet& allowed = needs[index].first[offset];
        if (allowed == FIAllValues()) continue;
        for (std::size_t word = 0; word < allowed.words.size(); ++word) {
            for (std::uint64_t bits = allowed.words[word]; bits != 0; bits &= bits - 1) {
                FIAddRow(sets[word * 64 + static_cast<std::size_t>(std::countr_zero(bits))], index);
            }
        }
    }
    return sets;
}

// Rows of class identifiers.
template <std::size_t rowCount>
consteval FIRowBits<rowCount> FIMakeClassRows(const std::array<FIRowNeeds, rowCount>& needs) {
    FIRowBits<rowCount> rows = {};
    for (std::size_t index = 0; index < rowCount; ++index) {
        if (needs[index].needsClassId) FIAddRow(rows, index);
    }
    return rows;
}

template <std::size_t rowCount>
consteval std::array<FIFarNeed, rowCount> FIMakeFarNeeds(const std::array<FIRowNeeds, rowCount>& needs) {
    std::array<FIFarNeed, rowCount> farNeeds = {};
    for (std::size_t index = 0; index < rowCount; ++index) farNeeds[index] = needs[index].far;
    return farNeeds;
}

// What the rows of a table need, as the filter looks it up.
template <std::size_t rowCount>
struct FIRowFilter {
    std::array<FIOffsetSets<rowCount>, firstOffsets> ofOffset;
    FIRowBits<rowCount> classRows;
    std::array<FIFarNeed, rowCount> farNeeds;
};

// One evaluation for each offset keeps clang within its default limits.
template <const auto& needs, std::size_t offset>
inline constexpr auto FISetsOfOffset = FIMakeOffsetSets(needs, offset);

// The filter of a table's rows: needs are a constant array of FIRowNeeds, index 0 being row 1.
static_assert(firstOffsets == 4);
template <const auto& needs>
inline constexpr FIRowFilter<std::size(needs)> FIFilterOf = {
    {FISetsOfOffset<needs, 0>, FISetsOfOffset<needs, 1>, FISetsOfOffset<needs, 2>, FISetsOfOffset<needs, 3>},
    FIMakeClassRows(needs),
    FIMakeFarNeeds(needs)};

// A byte of the head, or pastEnd.
constexpr std::uint16_t FIValueAt(const FIFilterBytes& head, std::uint32_t offset) {
    return offset < head.size ? head.bytes[offset] : pastEnd;
}

// The rows that the first four bytes let pass; those of class identifiers only if the file has one.
template <std::size_t rowCount>
constexpr FIRowBits<rowCount> FISelectRows(const FIRowFilter<rowCount>& filter, const FIFilterBytes& head,
                                           bool hasClassId) {
    const FIRowBits<rowCount>& of0 = filter.ofOffset[0][FIValueAt(head, 0)];
    const FIRowBits<rowCount>& of1 = filter.ofOffset[1][FIValueAt(head, 1)];
    const FIRowBits<rowCount>& of2 = filter.ofOffset[2][FIValueAt(head, 2)];
    const FIRowBits<rowCount>& of3 = filter.ofOffset[3][FIValueAt(head, 3)];
    FIRowBits<rowCount> rows;
    for (std::size_t word = 0; word < rows.size(); ++word) {
        rows[word] = of0[word] & of1[word] & of2[word] & of3[word];
        if (!hasClassId) rows[word] &= ~filter.classRows[word];
    }
    return rows;
}

// Whether a row's one more byte lets it pass.
constexpr bool FIFarByteFits(const FIFarNeed& need, const FIFilterBytes& head) {
    if (need.offset == 0) return true;
    return need.offset < head.size && head.bytes[need.offset] >= need.low && head.bytes[need.offset] <= need.high;
}

// The same of the signature table.
FIRowSet FISelectRows(const FIFilterBytes& head, bool hasClassId);

// Whether the one more byte of a row of the signature table lets it pass.
bool FIFarByteFits(std::uint16_t row, const FIFilterBytes& head);
