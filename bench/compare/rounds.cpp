// rounds.cpp - rounds of laps, in an order drawn anew for each lap, so that no contestant has the quiet moments.
#include "bench/compare/rounds.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

constexpr const char* formats[] = {"text", "ndjson"};

// One that takes its turn: a contestant in its process, or the program, started anew, with an output format.
struct Turn {
    Worker worker;
    const char* name;
};

std::vector<Turn> AllTurns(const std::vector<Lap>& laps, bool withProgram) {
    std::vector<Turn> turns;
    for (const Worker& worker : StartWorkers(laps)) turns.push_back({worker, worker.contestant->name});
    if (!withProgram) return turns;
    for (const char* format : formats) turns.push_back({{}, format});
    return turns;
}

Cost TakeTurn(const Turn& turn, const std::string& program, const std::vector<Lap>& laps, std::size_t lap) {
    if (turn.worker.contestant != nullptr) return RunInWorker(turn.worker, static_cast<int>(lap));
    return TimeProgram(program.c_str(), turn.name, laps[lap].list.c_str());
}

void Print(int round, const Lap& lap, const Turn& turn, const Cost& cost) {
    std::printf("%d\t%s\t%s\t%lld\t%lld\n", round, lap.name.c_str(), turn.name,
                static_cast<long long>(cost.cpuNanoseconds), static_cast<long long>(cost.wallNanoseconds));
}

}  // namespace

void RunRounds(int rounds, const std::string& program, const std::vector<Lap>& laps) {
    std::mt19937 random(1);
    std::vector<Turn> turns = AllTurns(laps, !program.empty());
    for (int round = 0; round <= rounds; ++round) {
        std::fprintf(stderr, "round %d of %d\n", round, rounds);
        for (std::size_t lap = 0; lap < laps.size(); ++lap) {
            std::shuffle(turns.begin(), turns.end(), random);
            for (const Turn& turn : turns) {
                const Cost cost = TakeTurn(turn, program, laps, lap);
                if (round > 0) Print(round, laps[lap], turn, cost);
            }
        }
    }
}

void PrintCosts(const Paths& paths) {
    for (const std::string& path : paths) {
        const Cost cost = TimeLap(libraryContestant, {path});
        std::printf("%lld\t%s\n", static_cast<long long>(cost.cpuNanoseconds), path.c_str());
    }
}
