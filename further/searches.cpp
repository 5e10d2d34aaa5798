// searches.cpp - looking for values in the head.
#include "further/searches.h"

#include <algorithm>
#include <cstddef>

namespace {

bool FIHoldsFrom(std::span<const std::uint8_t> bytes, std::size_t first, std::size_t last, std::string_view value) {
    const std::size_t end = std::min(bytes.size(), last + value.size());
    if (first >= end) return false;
    const std::string_view range(reinterpret_cast<const char*>(bytes.data()) + first, end - first);
    return range.find(value) != std::string_view::npos;
}

}  // namespace

bool FIHeadHolds(FILook& look, std::uint32_t first, std::uint32_t last, std::string_view value) {
    const std::span<const std::uint8_t> start = FILookAtStart(look);
    if (FIHoldsFrom(start, first, last, value)) return true;
    if (last + value.size() <= start.size() || look.size <= start.size()) return false;
    // What the start has room for was looked for.
    const std::size_t lookedFor = start.size() >= value.size() ? start.size() - value.size() + 1 : 0;
    return FIHoldsFrom(FILookAtHead(look), std::max<std::size_t>(first, lookedFor), last, value);
}
