// table.cpp - the second table, put together from its families of rows.
#include "further/table.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

#include "further/row_families.h"

namespace {

consteval std::size_t FICountRows() {
    std::size_t count = 0;
    FIVisitFurtherFamilies([&count]<const auto & rows>() { count += std::size(rows); });
    return count;
}
static_assert(FICountRows() == furtherRowCount, "furtherRowCount in table.h is the number of rows");

consteval std::array<FIRowNeeds, furtherRowCount> FIJoinFurtherNeeds() {
    std::array<FIRowNeeds, furtherRowCount> needs = {};
    std::size_t index = 0;
    FIVisitFurtherFamilies([&]<const auto & rows>() {
        for (const FIRowNeeds& row : FIFurtherFamily<rows>::needs) needs[index++] = row;
    });
    return needs;
}

constexpr std::array<FIRowNeeds, furtherRowCount> needs = FIJoinFurtherNeeds();
template <typename Picks>
consteval FIFurtherRowSet FIPickRows(Picks picks) {
    FIFurtherRowSet set = {};
    std::size_t index = 0;
    FIVisitFurtherFamilies([&]<const auto & rows>() {
        for (const FIFurtherRow& row : rows) {
            if (picks(row.over)) FIAddRow(set, index);
            ++index;
        }
    });
    return set;
}

constexpr FIFurtherRowSet overNothing = {};
constexpr FIFurtherRowSet overUnknown = FIPickRows([](FIOver over) { return over == FIOver::TextOrUnknown; });
constexpr FIFurtherRowSet overText =
    FIPickRows([](FIOver over) { return over == FIOver::TextOrUnknown || over == FIOver::Text; });
constexpr FIFurtherRowSet overPackages = FIPickRows([](FIOver over) { return over == FIOver::Packages; });

struct FIFurtherPlace {
    const FIFurtherRow* row;
    const std::uint8_t* code;
};

consteval std::array<FIFurtherPlace, furtherRowCount> FIJoinPlaces() {
    std::array<FIFurtherPlace, furtherRowCount> places = {};
    std::size_t entry = 0;
    FIVisitFurtherFamilies([&]<const auto & rows>() {
        for (std::size_t index = 0; index < std::size(rows); ++index) {
            const auto& code = FIFurtherFamily<rows>::code;
            places[entry++] = {&rows[index], code.bytes.data() + code.starts[index]};
        }
    });
    return places;
}

constexpr std::array<FIFurtherPlace, furtherRowCount> places = FIJoinPlaces();

}  // namespace

const FIFurtherRowSet& FIFurtherRowsOver(FIID fiid) {
    switch (fiid) {
        case 1999:
            return overUnknown;
        case 4005:
        case 4022:
        case 4025:
            return overText;
        case 1309:
        case 1312:
        case 1454:
        case 1455:
        case 1632:
        case 1633:
        case 1635:
        case 1802:
            return overPackages;
        default:
            return overNothing;
    }
}

FIFurtherRowSet FISelectFurtherRows(const FIFurtherRowSet& rows, const FIFilterBytes& head, bool hasClassId) {
    FIFurtherRowSet selected = FISelectRows(FIFilterOf<needs>, head, hasClassId);
    for (std::size_t word = 0; word < selected.size(); ++word) selected[word] &= rows[word];
    return selected;
}

const FIFurtherFarNeeds& FIFurtherFarNeedsOfRows() { return FIFilterOf<needs>.farNeeds; }

const std::uint8_t* FIFurtherEntry(std::uint16_t number) { return places[number - 1U].code; }

const FIFurtherRow* FIFindFurtherRow(std::uint16_t number) {
    return number >= 1 && number <= furtherRowCount ? places[number - 1U].row : nullptr;
}
