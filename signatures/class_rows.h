// class_rows.h - signature rows 1 to 45: compound storages by the class identifier of their root.
//
// In table order: the first row with a result decides. The notation is told in notation.h.
#pragma once

#include "signatures/notation.h"

inline constexpr FISignatureRow classRows[] = {
    // clang-format off
    // row signature, result, format
    {  1, R"({C20CF9D1-85AE-11D1-AAB4-006097DA561A})", Id(1165),   ""},
    {  2, R"({C6A5B861-85D6-11D1-89CB-008029E4B0B1})", Id(1449),   ""},
    {  3, R"({565C7221-85BC-11D1-89D0-008029E4B0B1})", Id(1610),   ""},
    {  4, R"({00020906-0000-0000-C000-000000000046})", Call(1146), "Word document class; FIProbeWordStorage"},
    {  5, R"({00020900-0000-0000-C000-000000000046})", Call(1082), "older Word document class; FIProbeBookStorage"},
    {  6, R"({00020810-0000-0000-C000-000000000046})", Id(1424),   "older Excel worksheet class"},
    {  7, R"({00020811-0000-0000-C000-000000000046})", Id(1536),   "older Excel chart class"},
    {  8, R"({00020820-0000-0000-C000-000000000046})", Call(1446), "Excel workbook class; FIProbeWorkbookStorage"},
    {  9, R"({00021302-0000-0000-C000-000000000046})", Id(1093),   ""},
    { 10, R"({00021303-0000-0000-C000-000000000046})", Id(1220),   ""},
    { 11, R"({00044851-0000-0000-C000-000000000046})", Id(1549),   ""},
    { 12, R"({EA7BAE70-FB3B-11CD-A903-00AA00510EA3})", Id(1543),   "older PowerPoint presentation class"},
    { 13, R"({28CDDBC2-0AE2-11CE-A29A-00AA004A1A72})", Id(1105),   ""},
    { 14, R"({28CDDBC3-0AE2-11CE-A29A-00AA004A1A72})", Id(1221),   ""},
    { 15, R"({73FDDC80-AEA9-101A-98A7-00AA00374959})", Id(1094),   ""},
    { 16, R"({AAE68660-C718-11CE-8D9B-444553540000})", Id(1107),   ""},
    { 17, R"({519873FF-2DAD-0220-1937-0000929679CD})", Id(1139),   ""},
    { 18, R"({402EFE62-1999-101B-99AE-04021C007002})", Id(1555),   ""},
    { 19, R"({402EFE60-1999-101B-99AE-04021C007002})", Id(1556),   ""},
    { 20, R"({A25250C4-50C1-11D3-8EA3-0090271BECDD})", Id(1606),   ""},
    { 21, R"({0002B400-0000-0000-C000-000000000046})", Call(1445), "FIProbeNativeContentStorage"},
    { 22, R"({AC515490-FD1A-11D4-B6F6-0090271BEFB3})", Call(1447), "FIProbePerfectOfficeStorage"},
    { 23, R"({69E7CEAB-FECF-11C0-B34B-1362002C0C03})", Call(1450), "FIProbePerfectOfficeStorage"},
    { 24, R"({9D582C41-8AE8-4999-A696-5F36EDC94029})", Call(1453), "FIProbePerfectOfficeStorage"},
    { 25, R"({0002B400-0000-0000-C000-000000000046})", Id(1433),   ""},
    { 26, R"({0002B401-0000-0000-C000-000000000046})", Id(1434),   ""},
    { 27, R"({EB626F5C-12A9-4F24-A0FC-01B5C2534C35})", Call(1450), "FIProbePerfectOfficeStorage"},
    { 28, R"({07343180-3860-11CE-84B9-0000C0AA2756})", Id(1579),   ""},
    { 29, R"({FE05E42F-C8F7-11CF-9A59-0020AF9BF93E})", Call(1579), "FIProbeDesignerStorage"},
    { 30, R"({B989DFC6-59E1-11D2-868B-00C04FB179F2})", Call(1579), "FIProbeDesignerStorage"},
    { 31, R"({64818D10-4F9B-11CF-86EA-00AA00B929E8})", Id(1581),   "PowerPoint presentation class"},
    { 32, R"({78597001-1D84-11CF-9713-0020AFD806F4})", Id(1140),   ""},
    { 33, R"({72FD3320-9A05-11CF-85A4-00A0C904DE5F})", Id(1223),   ""},
    { 34, R"({74B78F3A-C8C8-11D1-BE11-00C04FB6FAF1})", Id(1224),   ""},
    { 35, R"({00021A01-0000-0000-C000-000000000046})", Id(1607),   ""},
    { 36, R"({00021A11-0000-0000-C000-000000000046})", Id(1586),   ""},
    { 37, R"({00021A12-0000-0000-C000-000000000046})", Id(1595),   ""},
    { 38, R"({00021A13-0000-0000-C000-000000000046})", Call(1597), "FIProbeVisioStorage"},
    { 39, R"({00021A14-0000-0000-C000-000000000046})", Call(1631), "FIProbeVisioStorage"},
    { 40, R"({56616700-C154-11CE-8553-00AA00A1F95B})", Id(1594),   ""},
    { 41, R"({00020D0B-0000-0000-C000-000000000046})", Id(1143),   ""},
    { 42, R"({0006F046-0000-0000-C000-000000000046})", Id(1311),   ""},
    { 43, R"({59850400-6664-101B-B21C-00AA004BA90B})", Id(1805),   ""},
    { 44, R"({0EA45AB2-9E0A-11D1-A407-00C04FB932BA})", Id(1191),   ""},
    { 45, R"({00000000-0000-0000-0000-000000000000})", Call(1999), "FIProbeStorage"},
    // clang-format on
};
