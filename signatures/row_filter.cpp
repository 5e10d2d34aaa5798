// row_filter.cpp - the bit sets of the row filter, made by the compiler from the rows' bytecode.
#include "signatures/row_filter.h"

#include <algorithm>
#include <bit>

#include "signatures/class_rows.h"
#include "signatures/document_rows.h"
#include "signatures/media_rows.h"
#include "signatures/row_needs.h"
#include "signatures/sheet_rows.h"

namespace {

// One evaluation per family, as for the table itself.
template <const auto& rows>
consteval auto FINeedsOfRows() {
    std::array<FIRowNeeds, std::size(rows)> needs;
    for (std::size_t index = 0; index < needs.size(); ++index) needs[index] = FINeedsOfRow(rows[index]);
    return needs;
}

constexpr auto classNeeds = FINeedsOfRows<classRows>();
constexpr auto documentNeeds = FINeedsOfRows<documentRows>();
constexpr auto mediaNeeds = FINeedsOfRows<mediaRows>();
constexpr auto sheetNeeds = FINeedsOfRows<sheetRows>();

// Calls visit(index, needs) for all rows, index 0 being row 1.
template <typename Visit>
constexpr void FIVisitNeeds(Visit visit) {
    std::size_t index = 0;
    const auto visitFamily = [&](const auto& family) {
        for (const FIRowNeeds& needs : family) visit(index++, needs);
    };
    visitFamily(classNeeds);
    visitFamily(documentNeeds);
    visitFamily(mediaNeeds);
    visitFamily(sheetNeeds);
}

constexpr void FIAddRow(FIRowSet& set, std::size_t index) { set[index / 64] |= std::uint64_t{1} << index % 64; }

using FIOffsetSets = std::array<FIRowSet, byteValues>;

// For each value at an offset, the rows that allow it. Rows that allow all are entered once and copied.
consteval FIOffsetSets FIMakeOffsetSets(std::size_t offset) {
    FIRowSet unconcerned = {};
    FIVisitNeeds([&](std::size_t index, const FIRowNeeds& needs) {
        if (needs.first[offset] == FIAllValues()) FIAddRow(unconcerned, index);
    });
    FIOffsetSets sets = {};
    for (FIRowSet& set : sets) set = unconcerned;
    FIVisitNeeds([&](std::size_t index, const FIRowNeeds& needs) {
        if (needs.first[offset] == FIAllValues()) return;
        for (std::size_t word = 0; word < needs.first[offset].words.size(); ++word) {
            for (std::uint64_t bits = needs.first[offset].words[word]; bits != 0; bits &= bits - 1) {
                FIAddRow(sets[word * 64 + static_cast<std::size_t>(std::countr_zero(bits))], index);
            }
        }
    });
    return sets;
}

constexpr FIOffsetSets setsOfOffset0 = FIMakeOffsetSets(0);
constexpr FIOffsetSets setsOfOffset1 = FIMakeOffsetSets(1);
constexpr FIOffsetSets setsOfOffset2 = FIMakeOffsetSets(2);
constexpr FIOffsetSets setsOfOffset3 = FIMakeOffsetSets(3);
static_assert(firstOffsets == 4);

consteval FIRowSet FIMakeClassRows() {
    FIRowSet rows = {};
    FIVisitNeeds([&](std::size_t index, const FIRowNeeds& needs) {
        if (needs.needsClassId) FIAddRow(rows, index);
    });
    return rows;
}

constexpr FIRowSet rowsOfClasses = FIMakeClassRows();

consteval std::array<FIFarNeed, signatureRowCount> FIMakeFarNeeds() {
    std::array<FIFarNeed, signatureRowCount> farNeeds = {};
    FIVisitNeeds([&](std::size_t index, const FIRowNeeds& needs) { farNeeds[index] = needs.far; });
    return farNeeds;
}

constexpr std::array<FIFarNeed, signatureRowCount> farNeeds = FIMakeFarNeeds();
static_assert(std::ranges::all_of(farNeeds, [](const FIFarNeed& need) { return need.offset < leastFilterBytes; }));

std::uint16_t FIValueAt(const FIFilterBytes& head, std::uint32_t offset) {
    return offset < head.size ? head.bytes[offset] : pastEnd;
}

}  // namespace

FIRowSet FISelectRows(const FIFilterBytes& head, bool hasClassId) {
    const FIRowSet& of0 = setsOfOffset0[FIValueAt(head, 0)];
    const FIRowSet& of1 = setsOfOffset1[FIValueAt(head, 1)];
    const FIRowSet& of2 = setsOfOffset2[FIValueAt(head, 2)];
    const FIRowSet& of3 = setsOfOffset3[FIValueAt(head, 3)];
    FIRowSet rows;
    for (std::size_t word = 0; word < rows.size(); ++word) {
        rows[word] = of0[word] & of1[word] & of2[word] & of3[word];
        if (!hasClassId) rows[word] &= ~rowsOfClasses[word];
    }
    return rows;
}

bool FIFarByteFits(std::uint16_t row, const FIFilterBytes& head) {
    const FIFarNeed& need = farNeeds[row - 1U];
    if (need.offset == 0) return true;
    return need.offset < head.size && head.bytes[need.offset] >= need.low && head.bytes[need.offset] <= need.high;
}
