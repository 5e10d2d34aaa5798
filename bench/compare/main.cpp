// main.cpp - the program that bench/compare/compare.py measures with:
//   fiid_compare classes LIST                            the class of each file
//   fiid_compare costs LIST                              what each file costs by itself
//   fiid_compare rounds NUMBER PROGRAM NAME=LIST...      rounds of laps; an empty PROGRAM stays out
//   fiid_compare lap floor|library|detect|libmagic|GLib LIST    a lap to warm up and a counted lap
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/compare/file_classes.h"
#include "bench/compare/laps.h"
#include "bench/compare/rounds.h"
#include "fiid.h"

namespace {

int Usage() {
    std::fprintf(stderr, "Usage: fiid_compare classes|costs|rounds|lap ...; scripts/bench compare runs it\n");
    return 2;
}

int Classes(const char* list) {
    FIInit(nullptr);
    for (const std::string& path : ReadList(list)) PrintClass(path);
    FIDeInit(nullptr);
    return 0;
}

int Costs(const char* list) {
    FIInit(nullptr);
    PrintCosts(ReadList(list));
    FIDeInit(nullptr);
    return 0;
}

int Rounds(int rounds, const char* program, int count, char** namedLists) {
    std::vector<Lap> laps;
    for (int index = 0; index < count; ++index) {
        const std::string named = namedLists[index];
        const std::size_t equals = named.find('=');
        if (equals == std::string::npos) return Usage();
        const std::string list = named.substr(equals + 1);
        laps.push_back({named.substr(0, equals), list, ReadList(list.c_str())});
    }
    RunRounds(rounds, program, laps);
    return 0;
}

int CountedLap(std::string_view name, const char* list) {
    const Paths paths = ReadList(list);
    for (const Contestant* contestant :
         {&floorContestant, &libraryContestant, &detectContestant, &libmagicContestant, &glibContestant}) {
        if (contestant->name != name) continue;
        if (contestant->start == nullptr || contestant->start() != 0) return 1;
        RunLap(*contestant, paths);
        const std::size_t failures = RunCountedLap(*contestant, paths);
        contestant->end();
        return failures == 0 ? 0 : 1;
    }
    return Usage();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "classes" && argc == 3) return Classes(argv[2]);
    if (command == "costs" && argc == 3) return Costs(argv[2]);
    if (command == "rounds" && argc > 4) return Rounds(std::atoi(argv[2]), argv[3], argc - 4, argv + 4);
    if (command == "lap" && argc == 4) return CountedLap(argv[2], argv[3]);
    return Usage();
}
