// options.cpp - start, end, and the options that hold for the whole process.
#include <atomic>
#include <cstdint>
#include <cstring>

#include "platform/base_utility.h"

// The one option there is. Atomic, for a host may set it while other threads identify files.
struct UTOptionSet {
    std::atomic<bool> textIdentificationSet;
    std::atomic<std::uint32_t> textIdentification;
};

namespace {

UTOptionSet globalOptions = {};
std::atomic<std::uint32_t> starts = 0;

}  // namespace

extern "C" {

std::int16_t UTInit(void*) {
    ++starts;
    return 0;
}

std::int16_t UTDeInit(void*) {
    std::uint32_t count = starts.load();
    do {
        if (count == 0) return -1;
    } while (!starts.compare_exchange_weak(count, count - 1));
    if (count == 1) globalOptions.textIdentificationSet = false;
    return 0;
}

UTOptionSet* UTGetGlobalOptionSet(void) { return starts.load() > 0 ? &globalOptions : nullptr; }

std::int16_t UTGetOption(UTOptionSet* set, std::uint32_t option, void* value, std::uint32_t* valueSize) {
    if (set == nullptr || option != UTOptionTextIdentification || !set->textIdentificationSet) return -1;
    const std::uint32_t current = set->textIdentification;
    if (*valueSize < sizeof(current)) return -1;
    std::memcpy(value, &current, sizeof(current));
    *valueSize = sizeof(current);
    return 0;
}

std::int16_t UTSetOption(UTOptionSet* set, std::uint32_t option, const void* value, std::uint32_t valueSize) {
    std::uint32_t wanted = 0;
    if (set == nullptr || option != UTOptionTextIdentification || valueSize != sizeof(wanted)) return -1;
    std::memcpy(&wanted, value, sizeof(wanted));
    set->textIdentification = wanted;
    set->textIdentificationSet = true;
    return 0;
}

}  // extern "C"
