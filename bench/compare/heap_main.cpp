// heap_main.cpp - counts the heap blocks of the library: fiid_heap LIST prints files, blocks and bytes of a lap.
#include <cstdio>

#include "bench/compare/heap_counter.h"
#include "bench/compare/laps.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: fiid_heap LIST; scripts/bench compare runs it\n");
        return 2;
    }
    const Paths paths = ReadList(argv[1]);
    if (libraryContestant.start() != 0) return 1;
    RunLap(libraryContestant, paths);
    const unsigned long long blocks = BlocksTaken();
    const unsigned long long bytes = BytesTaken();
    const std::size_t failures = RunLap(libraryContestant, paths);
    std::printf("%zu\t%llu\t%llu\n", paths.size(), BlocksTaken() - blocks, BytesTaken() - bytes);
    libraryContestant.end();
    return failures == 0 ? 0 : 1;
}
