// text_rows.h - rows of the second table: texts told by how they begin, or by the name.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherTextRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 "WEBVTT")",                            Call(20278)},  // Web video text tracks (WebVTT)
    {FIOver::TextOrUnknown, R"(>0 EF BB BF "WEBVTT")",                   Id(20278)},
    {FIOver::TextOrUnknown, R"(>0 EF BB BF)",                            Call(20279)},  // SubRip subtitles
    {FIOver::TextOrUnknown, R"(>0 [09-0D])",                             Call(20279)},
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20279)},
    {FIOver::TextOrUnknown, R"(>0 [30-39])",                             Call(20279)},
    {FIOver::TextOrUnknown, R"(>0 "#EXTM3U")",                           Id(20280)},  // Extended M3U playlist
    {FIOver::TextOrUnknown, R"(>0 EF BB BF "#EXTM3U")",                  Id(20280)},
    {FIOver::TextOrUnknown, R"(>0 "#!")",                                Call(20281)},  // Shell script (interpreter line)
    {FIOver::TextOrUnknown, R"(>0 "<?php")",                             Id(20290)},  // PHP source
    {FIOver::TextOrUnknown, R"(>0 EF BB BF)",                            Call(20291)},  // LaTeX document
    {FIOver::TextOrUnknown, R"(>0 [09-0A])",                             Call(20291)},
    {FIOver::TextOrUnknown, R"(>0 0D)",                                  Call(20291)},
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20291)},
    {FIOver::TextOrUnknown, R"(>0 (25/5C))",                             Call(20291)},
    {FIOver::TextOrUnknown, R"(>0 "diff --git ")",                       Id(20293)},  // Unified diff
    {FIOver::TextOrUnknown, R"(>0 "Index: ")",                           Call(20293)},
    {FIOver::TextOrUnknown, R"(>0 "--- ")",                              Call(20293)},
    {FIOver::TextOrUnknown, R"(>0 EF BB BF)",                            Call(20294)},  // GeoJSON
    {FIOver::TextOrUnknown, R"(>0 [09-0A])",                             Call(20294)},
    {FIOver::TextOrUnknown, R"(>0 0D)",                                  Call(20294)},
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20294)},
    {FIOver::TextOrUnknown, R"(>0 (5B/7B))",                             Call(20294)},
    {FIOver::TextOrUnknown, R"(>0 EF BB BF)",                            Call(20300)},  // SVG image, no XML declaration
    {FIOver::TextOrUnknown, R"(>0 [09-0A])",                             Call(20300)},
    {FIOver::TextOrUnknown, R"(>0 0D)",                                  Call(20300)},
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20300)},
    {FIOver::TextOrUnknown, R"(>0 3C)",                                  Call(20300)},
    {FIOver::TextOrUnknown, R"(>0 40)",                                  Call(20302)},  // Windows batch file
    {FIOver::TextOrUnknown, R"(>0 (45/65) (43/63) (48/68) (4F/6F) 20)",  Call(20302)},
    {FIOver::TextOrUnknown, R"(>0 EF BB BF)",                            Call(20303)},  // Desktop entry
    {FIOver::TextOrUnknown, R"(>0 [09-0A])",                             Call(20303)},
    {FIOver::TextOrUnknown, R"(>0 0D)",                                  Call(20303)},
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20303)},
    {FIOver::TextOrUnknown, R"(>0 5B)",                                  Call(20303)},
    {FIOver::TextOrUnknown, R"(>0 2E 5C 22)",                            Id(20305)},  // Roff or manual page
    {FIOver::TextOrUnknown, R"(>0 27 5C 22)",                            Id(20305)},
    {FIOver::TextOrUnknown, R"(>0 ".TH ")",                              Id(20305)},
    {FIOver::TextOrUnknown, R"(>0 ".Dd ")",                              Id(20305)},
    {FIOver::TextOrUnknown, R"(>0 [09-0D])",                             Call(20306)},  // Graphviz graph
    {FIOver::TextOrUnknown, R"(>0 20)",                                  Call(20306)},
    {FIOver::TextOrUnknown, R"(>0 (64/73))",                             Call(20306)},
    {FIOver::TextOrUnknown, R"(>0 67)",                                  Call(20306)},
    {FIOver::Text,          R"((always))",                               Call(20308)},  // Comma-separated values
    // clang-format on
};
