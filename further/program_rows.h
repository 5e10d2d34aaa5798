// program_rows.h - rows of the second table: programs and what they are compiled to.
//
// In table order: the first row with a result decides. The notation is told in signatures/notation.h.
#pragma once

#include "further/row.h"

inline constexpr FIFurtherRow furtherProgramRows[] = {
    // clang-format off
    // over, signature, result
    {FIOver::TextOrUnknown, R"(>0 7F "ELF" 01 01 01)",     Id(20173)},  // ELF file, 32-bit, little-endian
    {FIOver::TextOrUnknown, R"(>0 7F "ELF" 01 02 01)",     Id(20174)},  // ELF file, 32-bit, big-endian
    {FIOver::TextOrUnknown, R"(>0 7F "ELF" 02 01 01)",     Id(20175)},  // ELF file, 64-bit, little-endian
    {FIOver::TextOrUnknown, R"(>0 7F "ELF" 02 02 01)",     Id(20176)},  // ELF file, 64-bit, big-endian
    {FIOver::TextOrUnknown, R"(>0 FE ED FA CE)",           Id(20177)},  // Mach-O file, 32-bit
    {FIOver::TextOrUnknown, R"(>0 CE FA ED FE)",           Id(20177)},
    {FIOver::TextOrUnknown, R"(>0 FE ED FA CF)",           Id(20178)},  // Mach-O file, 64-bit
    {FIOver::TextOrUnknown, R"(>0 CF FA ED FE)",           Id(20178)},
    {FIOver::TextOrUnknown, R"(>0 00 "asm" 01 00 00 00)",  Id(20179)},  // WebAssembly module
    {FIOver::TextOrUnknown, R"(>0 "dex" 0A +3 00)",        Id(20180)},  // Dalvik executable (DEX)
    {FIOver::TextOrUnknown, R"(>0 "dey" 0A +3 00)",        Id(20181)},  // Dalvik executable, optimized (ODEX)
    {FIOver::TextOrUnknown, R"(>0 "BC" C0 DE)",            Id(20182)},  // LLVM bitcode
    {FIOver::TextOrUnknown, R"(>0 DE C0 17 0B)",           Id(20182)},
    {FIOver::TextOrUnknown, R"(>0 1B "Lua")",              Id(20183)},  // Lua bytecode
    {FIOver::TextOrUnknown, R"(>2 0D 0A)",                 Call(20184)},  // Python bytecode
    {FIOver::TextOrUnknown, R"(>0 CA FE D0 0D)",           Id(20185)},  // Pack200 compressed Java archive
    {FIOver::TextOrUnknown, R"(>0 FE ED FE ED 00 00 00)",  Id(20186)},  // Java keystore
    {FIOver::TextOrUnknown, R"(>0 DE 12 04 95 00)",        Id(20187)},  // GNU message catalogue (MO)
    {FIOver::TextOrUnknown, R"(>0 95 04 12 DE 00)",        Id(20187)},
    {FIOver::TextOrUnknown, R"(>0 "Microsoft C/C++")",     Id(20188)},  // Microsoft program database (PDB)
    // clang-format on
};
