// walk_order.h - the order in which a sorted walk comes to paths.
#pragma once

#include <string_view>

// A walk sorts the names of a directory by their bytes, and what lies below a directory follows its name at once. So
// paths are in the order of their bytes, but that a slash comes in front of all others: "a", "a/b", "a-b". Below 0
// where first comes first, above 0 where second does, 0 for equal ones. Paths hold no NUL bytes.
int CompareInWalkOrder(std::string_view first, std::string_view second);
