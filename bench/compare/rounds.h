// rounds.h - rounds of laps: all contestants over all lists, interleaved.
#pragma once

#include <string>
#include <vector>

#include "bench/compare/worker.h"

// Runs the laps in a number of rounds, and one more in front that does not count. In each lap of each round all contestants
// take their turn in an order drawn anew, the program too unless it is empty. Prints a line for each: round, lap,
// contestant, CPU time and wall time in nanoseconds, between tabs.
void RunRounds(int rounds, const std::string& program, const std::vector<Lap>& laps);

// Prints for each path the library's CPU time in nanoseconds, many looks in a row, and the path, between tabs.
void PrintCosts(const Paths& paths);
