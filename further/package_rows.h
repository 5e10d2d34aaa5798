// package_rows.h - rows of the second table: kinds of ZIP archives and packages, all of which one routine tells.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherPackageRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::Packages,      R"((always))",  Call(20401)},  // Word document with macros (DOCM), and all other kinds
    // clang-format on
};
