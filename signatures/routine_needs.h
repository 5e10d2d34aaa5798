// routine_needs.h - the numbers of the special routines, by which rows call them, and what each of them needs.
#pragma once

#include <cstdint>
#include <string_view>

// What a routine looks at first, in the notation of rows (signatures/notation.h), several of them with " or " between:
// where none of them passes, the routine's answer is 0. The row filter uses that to leave out rows whose whole test is a
// call. A need is of the file's bytes alone and starts with a place; it says no more than what the routine does anyway.
struct FIRoutineNeeds {
    std::uint16_t number;
    std::string_view needs;
};

// All routines, in ascending order.
inline constexpr FIRoutineNeeds routineNeeds[] = {
    // clang-format off
    {1003, "(always)"},
    {1007, ">440 [00-09] 00 >499 00 00"},
    {1010, "(always)"},
    {1018, ">0 [00-08] +1"},
    {1019, ">0 1B 5B"},
    {1020, "(always)"},
    {1021, "(always)"},
    {1023, "(always)"},
    {1025, ">0 00 00 00 >258 00 00"},
    {1034, "(always)"},
    {1041, ">0 (00/82) (00/01)"},
    {1057, "(always)"},
    {1077, "(always)"},
    {1082, "(always)"},
    {1108, "(always)"},
    {1132, ">0 [09-FF]"},
    {1141, ">0 (42/62) (45/65) (47/67) (49/69) (4E/6E)"},
    {1146, "(always)"},
    {1168, "(always)"},
    {1187, "(always)"},
    {1190, ">0 00 3C 00 3F or >0 [09-0A] or >0 0D or >0 20 or >0 3C or >0 EF or >0 FE FF or >0 FF FE"},
    {1201, ">0 (03/83) +1 [00-0C] [00-1F] or >0 (8B/8E) +1 [00-0C] [00-1F] or >0 (63/F5) +1 [00-0C] [00-1F]"},
    {1206, ">32 00 >62 1F 0F"},
    {1210, "(always)"},
    {1212, ">0 37 FF"},
    {1213, "(always)"},
    {1416, "(always)"},
    {1445, "(always)"},
    {1446, "(always)"},
    {1447, "(always)"},
    {1450, "(always)"},
    {1453, "(always)"},
    {1504, ">0 C5 D0 D3 C6"},
    {1505, "(always)"},
    {1515, ">0 00 00 [01-02] 00"},
    {1518, ">0 00 +1"},
    {1528, ">0 00 [20-3F]"},
    {1535, "(always)"},
    {1544, ">0 [09-0A] or >0 0D or >0 20 or >0 (30/39)"},
    {1557, "(always)"},
    {1569, ">72 (47/53)"},
    {1570, ">0 02"},
    {1571, ">0 (23/2F)"},
    {1572, ">0 2F 2A"},
    {1575, ">7 07"},
    {1579, "(always)"},
    {1580, ">0 00 or >0 09 or >0 20 or >0 25 or >0 C5"},
    {1588, ">0 50 [31-36]"},
    {1597, "(always)"},
    {1598, "(always)"},
    {1601, ">0 +1 [08-0A] or >0 +1 [88-8A]"},
    {1631, "(always)"},
    {1705, ">4 [66-77] [64-72] [61-6F] [65-76]"},
    {1708, "(always)"},
    {1709, "(always)"},
    {1710, ">0 FF [F0-FF] [00-EF]"},
    {1802, "(always)"},
    {1803, "(always)"},
    {1807, "(always)"},
    {1814, "(always)"},
    {1999, "(always)"},
    {4050, "(always)"},
    // clang-format on
};
