// worker.cpp - processes that run laps on demand.
#include "bench/compare/worker.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

namespace {

// Says that it is there by a first answer; ends when nobody can demand any more, or when the contestant does not start.
[[noreturn]] void Work(const Contestant& contestant, const std::vector<Lap>& laps, int demands, int answers) {
    if (contestant.start() != 0) _exit(1);
    Cost cost = {0, 0};
    int lap = 0;
    while (write(answers, &cost, sizeof(cost)) == sizeof(cost) && read(demands, &lap, sizeof(lap)) == sizeof(lap)) {
        cost = TimeLap(contestant, laps[static_cast<std::size_t>(lap)].paths);
    }
    _exit(0);
}

bool ReadAnswer(const Worker& worker, Cost& cost) { return read(worker.answers, &cost, sizeof(cost)) == sizeof(cost); }

// Returns whether the contestant is there.
bool StartWorker(const Contestant& contestant, const std::vector<Lap>& laps, Worker& worker) {
    int demands[2];
    int answers[2];
    if (pipe(demands) != 0 || pipe(answers) != 0) return false;
    const pid_t process = fork();
    if (process == 0) {
        close(demands[1]);
        close(answers[0]);
        Work(contestant, laps, demands[0], answers[1]);
    }
    close(demands[0]);
    close(answers[1]);
    worker = {&contestant, demands[1], answers[0]};
    Cost ready = {0, 0};
    return process > 0 && ReadAnswer(worker, ready);
}

}  // namespace

std::vector<Worker> StartWorkers(const std::vector<Lap>& laps) {
    std::vector<Worker> workers;
    for (const Contestant* contestant :
         {&floorContestant, &libraryContestant, &detectContestant, &libmagicContestant, &glibContestant}) {
        Worker worker = {};
        if (contestant->start == nullptr) {
            std::fprintf(stderr, "%s was not built in\n", contestant->name);
        } else if (!StartWorker(*contestant, laps, worker)) {
            std::fprintf(stderr, "%s does not start\n", contestant->name);
        } else {
            workers.push_back(worker);
        }
    }
    return workers;
}

Cost RunInWorker(const Worker& worker, int lap) {
    Cost cost = {0, 0};
    if (write(worker.demands, &lap, sizeof(lap)) != sizeof(lap) || !ReadAnswer(worker, cost)) {
        std::fprintf(stderr, "%s ended before its time\n", worker.contestant->name);
        std::exit(2);
    }
    return cost;
}
