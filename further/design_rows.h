// design_rows.h - rows of the second table: drawings and models.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherDesignRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 "AC1024")",                                                             Id(20238)},  // AutoCAD drawing, AC1024 (2010)
    {FIOver::TextOrUnknown, R"(>0 "AC1027")",                                                             Id(20239)},  // AutoCAD drawing, AC1027 (2013)
    {FIOver::TextOrUnknown, R"(>0 "AC1032")",                                                             Id(20240)},  // AutoCAD drawing, AC1032 (2018)
    {FIOver::TextOrUnknown, R"(>0 "MC0.0")",                                                              Id(20241)},  // AutoCAD drawing, early (AC1.x, AC2.x, MC0.0)
    {FIOver::TextOrUnknown, R"(>0 "AC1." [32-33])",                                                       Id(20241)},
    {FIOver::TextOrUnknown, R"(>0 "AC1." [34-35] 30)",                                                    Id(20241)},
    {FIOver::TextOrUnknown, R"(>0 "AC2.10")",                                                             Id(20241)},
    {FIOver::TextOrUnknown, R"(>0 "AC2.2" [31-32])",                                                      Id(20241)},
    {FIOver::TextOrUnknown, R"(>0 "(DWF V0")",                                                            Id(20242)},  // Design Web Format (DWF)
    {FIOver::TextOrUnknown, R"(>0 "ISO-10303-21;")",                                                      Id(20244)},  // STEP exchange file
    {FIOver::TextOrUnknown, R"(>0 "solid")",                                                              Call(20245)},  // STL model, text
    {FIOver::TextOrUnknown, R"((always))",                                                                Call(20246)},  // STL model, binary
    {FIOver::TextOrUnknown, R"(>0 "ply" 0A "format ")",                                                   Id(20247)},  // Polygon file (PLY)
    {FIOver::TextOrUnknown, R"(>0 "ply" 0D 0A "format ")",                                                Id(20247)},
    {FIOver::TextOrUnknown, R"(>0 "glTF" [01-02] 00 00 00)",                                              Id(20248)},  // glTF model, binary (GLB)
    {FIOver::TextOrUnknown, R"(>0 "Kaydara FBX Binary")",                                                 Id(20249)},  // FBX model, binary
    {FIOver::TextOrUnknown, R"(>0 "BLENDER" (2D/5F) (56/76))",                                            Id(20250)},  // Blender file
    {FIOver::TextOrUnknown, R"(>0 "BLENDER17")",                                                          Id(20250)},
    {FIOver::TextOrUnknown, R"(>0 "ASTM-E57")",                                                           Id(20251)},  // E57 point cloud
    {FIOver::TextOrUnknown, R"(>0 FF FE FF 0E 53 00 6B 00 65 00 74 00 63 00 68 00 55 00 70 00 20 00 4D 00 6F 00 64 00 65 00 6C 00)", Id(20252)},  // SketchUp model
    // clang-format on
};
