// storage_rows.h - rows of the second table: compound storages.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherStorageRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"({00021201-0000-0000-00C0-000000000046})",  Id(20332)},  // Publisher document
    {FIOver::TextOrUnknown, R"({00021201-0000-0000-C000-000000000046})",  Id(20332)},
    {FIOver::TextOrUnknown, R"({000C1084-0000-0000-C000-000000000046})",  Id(20333)},  // Windows installer package (MSI)
    {FIOver::TextOrUnknown, R"({000C1086-0000-0000-C000-000000000046})",  Id(20333)},
    {FIOver::TextOrUnknown, R"({000C1082-0000-0000-C000-000000000046})",  Id(20333)},
    {FIOver::TextOrUnknown, R"(>0 D0 CF 11 E0 A1 B1 1A E1)",              Call(20334)},  // StarOffice Draw drawing
    {FIOver::TextOrUnknown, R"(>0 D0 CF 11 E0 A1 B1 1A E1)",              Call(20335)},  // SolidWorks document
    {FIOver::TextOrUnknown, R"(>0 D0 CF 11 E0 A1 B1 1A E1)",              Id(20336)},  // Compound storage, other
    // clang-format on
};
