// laws.cpp - the laws, and the handle that the routines run over.
#include "fuzz/laws.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/routines.h"
#include "platform/base_utility.h"
#include "platform/handle.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "text/extended_text.h"

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

std::int32_t FuzzGetInfo(HIOFILE file, std::uint32_t selector, void* value) {
    if (selector != IOInfoName) return -1;
    std::strcpy(static_cast<char*>(value), FuzzFromFile(file).name);
    return 0;
}

std::int32_t FuzzOpenSub(HIOFILE*, std::uint32_t, const void*, std::uint32_t) { return -1; }

FIID RunOver(const FuzzRoutine& routine, FIReader& reader, const char* extension) {
    for (std::uint32_t taken = 0; taken < routine.start; ++taken) static_cast<void>(FIReaderGetByte(reader));
    return routine.probe(reader, extension);
}

FIID RunOver(const FuzzRoutine& routine, HIOFILE file, const char* extension) {
    FIReader reader;
    FIReaderStart(reader, file);
    return RunOver(routine, reader, extension);
}

HIOFILE OpenMemory(const FuzzFile& file) {
    const IOMemorySpec specification = {file.bytes.data(), file.bytes.size(), file.name};
    HIOFILE handle = nullptr;
    FuzzRequire(IOOpen(&handle, IOSpecMemory, &specification, IOOpenRead) == 0, "IOOpen", "a block of memory opens");
    return handle;
}

FIHead TakeHead(HIOFILE handle) {
    FIHead head;
    FuzzRequire(FITakeHead(handle, head), "FITakeHead", "a block of memory has a head");
    return head;
}

constexpr std::string_view slowOverThePlatform = "MIF";  // it comes back after 65,536 empty reads

void CheckWithHead(const FuzzRoutine& routine, const FuzzFile& file, FIID answer) {
    if (routine.name == slowOverThePlatform) return;
    const HIOFILE handle = OpenMemory(file);
    const FIHead head = TakeHead(handle);
    FIReader* const reader = FIReaderNew(handle, &head);
    FuzzRequire(RunOver(routine, *reader, file.extension) == answer, routine.name, "differs over the head");
    static_cast<void>(FIReaderFree(*reader));
    static_cast<void>(handle->operations.IOClose(handle));
}

// The bytes over and over, to some size behind the head's.
std::string Lengthen(std::string_view bytes) {
    if (bytes.empty()) return "";
    const std::size_t size = largestHead + FuzzHash(bytes) % 4096;
    std::string longer;
    while (longer.size() < size) longer += bytes;
    longer.resize(size);
    return longer;
}

bool AreSame(const FIVerdict& one, const FIVerdict& other) { return one.fiid == other.fiid && one.row == other.row; }

FIVerdict Identify(HIOFILE handle, FIWalk walk) {
    FIVerdict verdict = {0, 0};
    FuzzRequire(FIIdHandleWithRow(handle, FIFlagExtendedText, verdict, walk) == 0, "FIIdHandle", "a status of failure");
    std::uint32_t position = 1;
    FuzzRequire(handle->operations.IOTell(handle, &position) == 0 && position == 0, "FIIdHandle", "not back at 0");
    return verdict;
}

void CheckAwkwardHandles(const FuzzRoutine& routine, const FuzzFile& file, FIID answer) {
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

FuzzHandle FuzzMakeHandle(std::string_view bytes, std::uint32_t bytesPerRead, const char* name) {
    constexpr IOOperations operations = {FuzzClose, FuzzRead, FuzzWrite, FuzzSeek, FuzzTell, FuzzGetInfo, FuzzOpenSub};
    return {{operations}, bytes, bytesPerRead, 0, 0, 0, name};
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
        if (chosen % 4 == 3) CheckWithHead(routine, file, answer);
    }
    // Half of them as files that go on behind their head.
    const std::string longer = chosen >= everySoManyInputs / 2 ? Lengthen(file.bytes) : "";
    const FuzzFile tried = {longer.empty() ? file.bytes : longer, file.name, file.extension};
    if (chosen % 4 == 1) FuzzCheckIdentification(tried);
    if (chosen % 4 == 2) FuzzCheckGates(tried);
}

void FuzzCheckGates(const FuzzFile& file) {
    const HIOFILE handle = OpenMemory(file);
    FIHead head = TakeHead(handle);
    for (const FIRoutine& routine : FIAllRoutines()) {
        if (routine.gate == nullptr || routine.gate(head)) continue;
        FIReader reader;
        FIReaderStart(reader, handle);
        const std::string name = "routine " + std::to_string(routine.number);
        FuzzRequire(FIRunRoutine(routine, reader, file.extension) == 0, name.c_str(), "answers with its gate closed");
    }
    FIReader reader;
    FIReaderStart(reader, handle);
    const FIID text = FITellText(reader);
    FIReaderStart(reader, handle);
    FuzzRequire(FITellText(reader, &head) == text, "extended text", "differs with the head");
    static_cast<void>(handle->operations.IOClose(handle));
}

FIVerdict FuzzIdentifyBothWays(HIOFILE handle) {
    const FIVerdict verdict = Identify(handle, FIWalk::byHead);
    FuzzRequire(verdict.fiid != 0, "FIIdHandle", "no answer");
    FuzzRequire(AreSame(Identify(handle, FIWalk::byHead), verdict), "FIIdHandle", "another verdict the second time");
    FuzzRequire(AreSame(Identify(handle, FIWalk::plain), verdict), "FIIdHandle", "another verdict in full");
    return verdict;
}

void FuzzCheckIdentification(const FuzzFile& file) {
    FuzzHandle own = FuzzMakeHandle(file.bytes, UINT32_MAX, file.name);
    // Over a handle of the target's own alone for FrameMaker text; see FuzzHandle.
    const bool slow = file.bytes.starts_with("<MIFFile");
    if (slow) {
        static_cast<void>(FuzzIdentifyBothWays(&own.file));
        return;
    }
    const HIOFILE handle = OpenMemory(file);
    const FIVerdict verdict = FuzzIdentifyBothWays(handle);
    // Bytes that come from the head are no reads: those in vain of a whole walk have to stay far from the line feed.
    constexpr std::uint32_t mostVainReads = 8192;
    FuzzRequire(UTFindHandle(handle)->vainReads < mostVainReads, "FIIdHandle", "reads in vain too often");
    static_cast<void>(handle->operations.IOClose(handle));
    // With the platform's handle around it, which sees storages and archives in the host's.
    HIOFILE over = nullptr;
    FuzzRequire(IOOpen(&over, IOSpecHandle, &own.file, IOOpenRead) == 0, "IOOpen", "a host's handle opens");
    FuzzRequire(AreSame(Identify(over, FIWalk::byHead), verdict), "FIIdHandle", "another verdict over a host's handle");
    static_cast<void>(over->operations.IOClose(over));
}
