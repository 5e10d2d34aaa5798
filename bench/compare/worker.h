// worker.h - a process for each contestant, so that none finds the heap and the caches of the library as another left them.
#pragma once

#include <vector>

#include "bench/compare/contestants.h"
#include "bench/compare/laps.h"

struct Lap {
    std::string name;
    std::string list;
    Paths paths;
};

// A process that runs laps on demand and waits in between.
struct Worker {
    const Contestant* contestant;
    int demands;  // write an int here, the index of a lap
    int answers;  // read a Cost here
};

// Starts a process for each contestant that was built in and starts; tells of the others on standard error. The laps
// must stay as they are. The processes end with this one.
std::vector<Worker> StartWorkers(const std::vector<Lap>& laps);

// Has a lap run, and waits for what it costs.
Cost RunInWorker(const Worker& worker, int lap);
