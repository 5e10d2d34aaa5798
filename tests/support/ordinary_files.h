// ordinary_files.h - files of no word processor's: English text, program source, and bytes without any order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

// A plain text of a few thousand bytes, its lines ended by the given line end.
inline std::string FIEnglishText(std::string_view lineEnd) {
    constexpr std::string_view lines[] = {
        "The ferry left the island at seven, ten minutes late, with nine passengers and",
        "a crate of lemons on deck. Nobody minded: the sea was flat, the coffee was hot,",
        "and the captain told the story of the lighthouse once more. \"It was built twice,\"",
        "she said, \"once by the parish & once by the storm.\"",
        "",
        "    1. Bring a coat; the wind turns at noon.",
        "    2. Pay the return fare (4.50) at the kiosk, not on board.",
        "\t3. Don't feed the gulls - they remember faces.",
        "",
        "To: whoever reads the log next. From the pier it is a mile to the chapel and two",
        "miles + a stile to the north beach. Begin early. [The path is closed in January.]",
        "What costs 100% of the effort at 6 a.m. costs half of it at 9; that is the whole",
        "wisdom of the island, and it is printed on a plate by the harbour wall.",
        "",
    };
    std::string text;
    for (std::uint32_t round = 0; round < 5; ++round) {
        for (const std::string_view line : lines) text.append(line).append(lineEnd);
    }
    return text;
}

// A C++ source of a few thousand bytes.
inline std::string FIProgramSource() {
    constexpr std::string_view source = R"source(// tides.cpp - heights of the tide from four constituents.
#include "tides.h"

#include <cmath>
#include <cstdint>

namespace {

struct Constituent {
    double amplitude;  // in metres
    double speed;      // in degrees per hour
    double phase;
};

constexpr Constituent constituents[] = {
    {1.42, 28.9841042, 112.5}, {0.48, 30.0, 147.25}, {0.11, 15.0410686, 8.0}, {0.09, 13.9430356, 340.75},
};

constexpr std::uint32_t hoursPerDay = 24;

}  // namespace

double TideHeight(std::uint32_t hour) {
    double height = 0;
    for (const auto& [amplitude, speed, phase] : constituents) {
        height += amplitude * std::cos((speed * hour - phase) * 3.14159265358979 / 180);
    }
    return height;
}

bool TideIsRising(std::uint32_t hour) { return TideHeight(hour + 1) > TideHeight(hour); }

/* The first hour of the day at which the path is dry, or hoursPerDay; "dry" is 0.3 m below the mean. */
std::uint32_t FirstDryHour(std::uint32_t day) {
    for (std::uint32_t hour = 0; hour < hoursPerDay; ++hour) {
        if (TideHeight(day * hoursPerDay + hour) < -0.3 && !TideIsRising(hour)) return hour;
    }
    return hoursPerDay;
}
)source";
    std::string text;
    for (std::uint32_t round = 0; round < 3; ++round) text += source;
    return text;
}

// 1 MiB of bytes from a generator with a fixed start, the same on every machine.
inline std::string FIRandomBytes() {
    constexpr std::size_t size = 1024 * 1024;
    std::mt19937 generator(20240229);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(generator() & 0xFF);
    return bytes;
}

// All of them, the text with both line ends.
inline std::vector<std::string> FIOrdinaryFiles() {
    return {FIEnglishText("\n"), FIEnglishText("\r\n"), FIProgramSource(), FIRandomBytes()};
}
