// laps.h - laps: one contestant, or the program, looks at all files of a list in a row.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/compare/contestants.h"

using Paths = std::vector<std::string>;

struct Cost {
    std::int64_t cpuNanoseconds;
    std::int64_t wallNanoseconds;
};

// Reads a list of paths, one a line.
Paths ReadList(const char* list);

// Returns how many files could not be looked at.
std::size_t RunLap(const Contestant& contestant, const Paths& paths);

// The same between two system calls that mark it in a trace. It stands in the symbol table under the plain name, so that
// an instrument can be told to count in it alone.
extern "C" std::size_t RunCountedLap(const Contestant& contestant, const Paths& paths);

// What a lap takes, on average of as many as fill some 20 milliseconds: a short one alone is noise. A lap of no files is
// free.
Cost TimeLap(const Contestant& contestant, const Paths& paths);

// Runs the program over a list as a process of its own, its output to /dev/null. What it costs to start is in the time.
Cost TimeProgram(const char* program, const char* format, const char* list);
