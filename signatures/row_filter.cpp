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
}  // namespace

FIRowSet FISelectRows(const FIFilterBytes& head, bool hasClassId) {
    return FISelectRows(FIFilterOf<needs>, head, hasClassId);
}

bool FIFarByteFits(std::uint16_t row, const FIFilterBytes& head) {
    return FIFarByteFits(FIFilterOf<needs>.farNeeds[row - 1U], head);
}
