// benchmarks.h - what the benchmark program measures.
#pragma once

#include <string>
#include <vector>

// Registers, for each family of the files below the directories, two benchmarks: floor/FAMILY opens, asks for the
// status, reads 4 KiB and closes each file; identify/FAMILY identifies each. The ratio of the two is what
// identification costs.
void RegisterFamilies(const std::vector<std::string>& directories);

// Prints, for each family, the median over its files of the ratio of identification to floor, each file by itself.
void PrintFileRatios(const std::vector<std::string>& directories);

// Registers a benchmark for each special routine and for the whole walk over files in memory that nothing claims.
void RegisterRoutines();
