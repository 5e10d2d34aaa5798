// routine_numbers.h - the numbers of the special routines, by which rows call them.
#pragma once

#include <cstdint>

// The numbers of all routines, in ascending order.
inline constexpr std::uint16_t routineNumbers[] = {
    1003, 1007, 1010, 1018, 1019, 1020, 1021, 1023, 1025, 1034, 1041, 1057, 1077, 1082, 1108, 1132,
    1141, 1146, 1168, 1187, 1190, 1201, 1206, 1210, 1212, 1213, 1416, 1445, 1446, 1447, 1450, 1453,
    1504, 1505, 1515, 1518, 1528, 1535, 1544, 1557, 1569, 1570, 1571, 1572, 1575, 1579, 1580, 1588,
    1597, 1598, 1601, 1631, 1705, 1708, 1709, 1710, 1802, 1803, 1807, 1814, 1999, 4050,
};
