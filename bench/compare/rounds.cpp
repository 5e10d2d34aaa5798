// rounds.cpp - rounds of laps, in an order drawn anew for each lap, so that no contestant has the quiet moments.
#include "bench/compare/rounds.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

constexpr const char* formats[] = {"text", "ndjson"};
constexpr int looksForCost = 5;

// One that takes its turn: a contestant in this process, or the program with an output format.
struct Turn {
    const Contestant* contestant;
    const char* format;
};

std::vector<Turn> AllTurns(bool withProgram) {
    std::vector<Turn> turns;
    for (const Contestant* contestant : StartContestants()) turns.push_back({contestant, nullptr});
    if (!withProgram) return turns;
    for (const char* format : formats) turns.push_back({nullptr, format});
    return turns;
}

Cost TakeTurn(const Turn& turn, const std::string& program, const Lap& lap) {
    if (turn.contestant != nullptr) return TimeLap(*turn.contestant, lap.paths);
    return TimeProgram(program.c_str(), turn.format, lap.list.c_str());
}

void Print(int round, const Lap& lap, const Turn& turn, const Cost& cost) {
    const char* const name = turn.contestant != nullptr ? turn.contestant->name : turn.format;
    std::printf("%d\t%s\t%s\t%lld\t%lld\n", round, lap.name.c_str(), name, static_cast<long long>(cost.cpuNanoseconds),
                static_cast<long long>(cost.wallNanoseconds));
}

std::int64_t ShortestLook(const Contestant& contestant, const Paths& path) {
    std::int64_t shortest = TimeLap(contestant, path).cpuNanoseconds;
    for (int look = 1; look < looksForCost; ++look) {
        shortest = std::min(shortest, TimeLap(contestant, path).cpuNanoseconds);
    }
    return shortest;
}

}  // namespace

std::vector<const Contestant*> StartContestants() {
    std::vector<const Contestant*> started;
    for (const Contestant* contestant : {&floorContestant, &libraryContestant, &libmagicContestant, &glibContestant}) {
        if (contestant->start == nullptr) {
            std::fprintf(stderr, "%s was not built in\n", contestant->name);
        } else if (contestant->start() != 0) {
            std::fprintf(stderr, "%s does not start\n", contestant->name);
        } else {
            started.push_back(contestant);
        }
    }
    return started;
}

void RunRounds(int rounds, const std::string& program, const std::vector<Lap>& laps) {
    std::mt19937 random(1);
    std::vector<Turn> turns = AllTurns(!program.empty());
    for (int round = 0; round <= rounds; ++round) {
        std::fprintf(stderr, "round %d of %d\n", round, rounds);
        for (const Lap& lap : laps) {
            std::shuffle(turns.begin(), turns.end(), random);
            for (const Turn& turn : turns) {
                const Cost cost = TakeTurn(turn, program, lap);
                if (round > 0) Print(round, lap, turn, cost);
            }
        }
    }
}

void PrintCosts(const Paths& paths) {
    for (const std::string& path : paths) {
        const Paths one = {path};
        const std::int64_t library = ShortestLook(libraryContestant, one);
        const std::int64_t floor = ShortestLook(floorContestant, one);
        std::printf("%lld\t%lld\t%s\n", static_cast<long long>(library), static_cast<long long>(floor), path.c_str());
    }
}
