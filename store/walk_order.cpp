// walk_order.cpp - compares paths as a sorted walk comes to them.
#include "store/walk_order.h"

#include <algorithm>
#include <cstdint>

int CompareInWalkOrder(std::string_view first, std::string_view second) {
    const auto [one, other] = std::ranges::mismatch(first, second);
    if (one == first.end()) return other == second.end() ? 0 : -1;
    if (other == second.end()) return 1;
    if (*one == '/') return -1;
    if (*other == '/') return 1;
    return static_cast<std::uint8_t>(*one) < static_cast<std::uint8_t>(*other) ? -1 : 1;
}
