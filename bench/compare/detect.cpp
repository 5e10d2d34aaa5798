// detect.cpp - the one-call library as a contestant: both tables, versions, and all that a result tells by default.
#include "fiid/detect.h"

#include "bench/compare/contestants.h"

namespace {

int Start() { return 0; }

int Look(const char* path) {
    fiid_result result;
    return fiid_detect_path(path, nullptr, &result) == FIID_OK ? 0 : -1;
}

void End() {}

}  // namespace

const Contestant detectContestant = {"detect", Start, Look, End};
