// row_filter.cpp - the row filter of the signature table.
#include "signatures/row_filter.h"

#include <algorithm>

#include "signatures/class_rows.h"
#include "signatures/document_rows.h"
#include "signatures/media_rows.h"
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

// Index 0 is row 1.
consteval std::array<FIRowNeeds, signatureRowCount> FIJoinNeeds() {
    std::array<FIRowNeeds, signatureRowCount> needs = {};
    std::size_t index = 0;
    const auto put = [&](const auto& family) {
        for (const FIRowNeeds& row : family) needs[index++] = row;
    };
    put(classNeeds);
    put(documentNeeds);
    put(mediaNeeds);
    put(sheetNeeds);
    return needs;
}

constexpr std::array<FIRowNeeds, signatureRowCount> needs = FIJoinNeeds();
constexpr auto setsOfOffset0 = FIMakeOffsetSets(needs, 0);
constexpr auto setsOfOffset1 = FIMakeOffsetSets(needs, 1);
constexpr auto setsOfOffset2 = FIMakeOffsetSets(needs, 2);
constexpr auto setsOfOffset3 = FIMakeOffsetSets(needs, 3);
static_assert(firstOffsets == 4);
constexpr FIRowSet rowsOfClasses = FIMakeClassRows(needs);
constexpr auto farNeeds = FIMakeFarNeeds(needs);

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

bool FIFarByteFits(std::uint16_t row, const FIFilterBytes& head) { return FIFarByteFits(farNeeds[row - 1U], head); }
