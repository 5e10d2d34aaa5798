// laws.cpp - the laws, and the handle that the routines run over.
#include "fuzz/laws.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/base_utility.h"
#include "reader/reader.h"

namespace {

constexpr std::uint32_t emptyReadLimit = 512;        // more than any routine with a test for the end asks for
constexpr std::uint32_t wrappedOffset = 0x80000000;  // behind the end, from here on a target is a negative one
constexpr std::uint32_t fewBytes = 3;                // a short read

// One input in so many goes through the dearer laws.
constexpr std::uint32_t everySoManyInputs = 16;

FuzzHandle& FuzzFromFile(HIOFILE file) { return *reinterpret_cast<FuzzHandle*>(file); }

std::int32_t FuzzClose(HIOFILE) { return 0; }

std::int32_t FuzzRead(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    FuzzHandle& handle = FuzzFromFile(file);
    const std::uint64_t left = handle.bytes.size() - std::min<std::uint64_t>(handle.position, handle.bytes.size());
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>({left, size, handle.bytesPerRead}));
    if (*count > 0) {
        std::memcpy(destination, handle.bytes.data() + handle.position, *count);
        handle.position += *count;
        handle.delivered += *count;
        handle.emptyReads = 0;
    } else if (size > 0 && ++handle.emptyReads > emptyReadLimit) {
        *static_cast<char*>(destination) = '\n';
        *count = 1;
        handle.emptyReads = 0;
    }
    return 0;
}

std::int32_t FuzzWrite(HIOFILE, const void*, std::uint32_t, std::uint32_t*) { return -1; }

std::int32_t FuzzSeek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    FuzzHandle& handle = FuzzFromFile(file);
    const auto unsignedOffset = static_cast<std::uint32_t>(offset);
    if (origin == 0 && unsignedOffset >= wrappedOffset && unsignedOffset > handle.bytes.size()) return -1;
    if (origin > 2) return -1;
    std::int64_t target = origin == 0 ? std::int64_t{unsignedOffset} : std::int64_t{offset};
    if (origin == 1) target += static_cast<std::int64_t>(handle.position);
    if (origin == 2) target += static_cast<std::int64_t>(handle.bytes.size());
    if (target < 0) return -1;
    handle.position = static_cast<std::uint64_t>(target);
    return 0;
}

std::int32_t FuzzTell(HIOFILE file, std::uint32_t* position) {
    *position = static_cast<std::uint32_t>(std::min<std::uint64_t>(FuzzFromFile(file).position, UINT32_MAX));
    return 0;
}

std::int32_t FuzzGetInfo(HIOFILE, std::uint32_t, void*) { return -1; }

std::int32_t FuzzOpenSub(HIOFILE*, std::uint32_t, const void*, std::uint32_t) { return -1; }

FIID RunOver(const FuzzRoutine& routine, HIOFILE file, const char* extension) {
    FIReader reader;
    FIReaderStart(reader, file);
    for (std::uint32_t taken = 0; taken < routine.start; ++taken) static_cast<void>(FIReaderGetByte(reader));
    return routine.probe(reader, extension);
}

HIOFILE OpenMemory(const FuzzFile& file) {
    const IOMemorySpec specification = {file.bytes.data(), file.bytes.size(), file.name};
    HIOFILE handle = nullptr;
    FuzzRequire(IOOpen(&handle, IOSpecMemory, &specification, IOOpenRead) == 0, "IOOpen", "a block of memory opens");
    return handle;
}

void CheckAwkwardHandles(const FuzzRoutine& routine, const FuzzFile& file, FIID answer) {
    constexpr std::string_view slowOverThePlatform = "MIF";  // it comes back after 65,536 empty reads
    if (routine.name != slowOverThePlatform) {
        const HIOFILE handle = OpenMemory(file);
        FuzzRequire(RunOver(routine, handle, file.extension) == answer, routine.name, "differs over the platform");
        static_cast<void>(handle->operations.IOClose(handle));
    }
    if (routine.reading == FuzzReading::inBlocks) return;
    FuzzHandle slices = FuzzMakeHandle(file.bytes, fewBytes);
    FuzzRequire(RunOver(routine, &slices.file, file.extension) == answer, routine.name, "differs over short reads");
}

}  // namespace

void FuzzRequire(bool holds, const char* name, const char* law) {
    if (holds) return;
    std::fprintf(stderr, "%s: %s\n", name, law);
    std::abort();
}

// FNV-1a.
std::uint32_t FuzzHash(std::string_view bytes) {
    std::uint32_t hash = 2166136261U;
    for (const char byte : bytes) hash = (hash ^ static_cast<std::uint8_t>(byte)) * 16777619U;
    return hash ^ hash >> 16;
}

FuzzHandle FuzzMakeHandle(std::string_view bytes, std::uint32_t bytesPerRead) {
    return {
        {{FuzzClose, FuzzRead, FuzzWrite, FuzzSeek, FuzzTell, FuzzGetInfo, FuzzOpenSub}}, bytes, bytesPerRead, 0, 0, 0};
}

void FuzzCheckRoutines(std::span<const FuzzRoutine> routines, const FuzzFile& file) {
    const std::uint32_t chosen = FuzzHash(file.bytes) % everySoManyInputs;
    for (const FuzzRoutine& routine : routines) {
        FuzzHandle handle = FuzzMakeHandle(file.bytes);
        const FIID answer = RunOver(routine, &handle.file, file.extension);
        FuzzRequire(answer == 0 || std::ranges::find(routine.answers, answer) != routine.answers.end(), routine.name,
                    "an answer that is not its own");
        FuzzRequire(handle.delivered <= routine.mostBytes, routine.name, "more bytes than its bound");
        if (chosen == 0) CheckAwkwardHandles(routine, file, answer);
    }
    if (chosen == 1) FuzzCheckIdentification(file);
}

void FuzzCheckIdentification(const FuzzFile& file) {
    // Over a handle of the target's own for FrameMaker text; see FuzzHandle.
    FuzzHandle own = FuzzMakeHandle(file.bytes);
    const bool slow = file.bytes.starts_with("<MIFFile");
    const HIOFILE handle = slow ? &own.file : OpenMemory(file);
    FIID answers[2] = {0, 0};
    for (FIID& answer : answers) {
        FuzzRequire(FIIdHandle(handle, FIFlagExtendedText, &answer) == 0, "FIIdHandle", "a status of failure");
        std::uint32_t position = 1;
        FuzzRequire(handle->operations.IOTell(handle, &position) == 0 && position == 0, "FIIdHandle", "not back at 0");
    }
    static_cast<void>(handle->operations.IOClose(handle));
    FuzzRequire(answers[0] == answers[1] && answers[0] != 0, "FIIdHandle", "another answer the second time");
}
