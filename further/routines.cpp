// routines.cpp - the index of the second table's routines.
#include "further/routines.h"

#include <algorithm>

std::span<const FIFurtherRoutine> FIFurtherRoutines() { return {}; }

const FIFurtherRoutine* FIFindFurtherRoutine(std::uint16_t number) {
    const std::span<const FIFurtherRoutine> routines = FIFurtherRoutines();
    const auto place = std::ranges::lower_bound(routines, number, {}, &FIFurtherRoutine::number);
    return place != routines.end() && place->number == number ? &*place : nullptr;
}
