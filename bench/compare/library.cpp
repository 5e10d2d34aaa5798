// library.cpp - the library as a contestant: one thread, text told by its characters, as the program does by default.
#include "bench/compare/contestants.h"
#include "fiid.h"
#include "platform/base_utility.h"

namespace {

int Start() { return FIInit(nullptr); }

int Look(const char* path) {
    FIID fiid = 0;
    return FIIdFile(IOSpecNarrow, path, FIFlagExtendedText, &fiid);
}

void End() { FIDeInit(nullptr); }

}  // namespace

const Contestant libraryContestant = {"library", Start, Look, End};
