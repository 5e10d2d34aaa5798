// storage_fuzz.cpp - fuzz target: the storage reader, and the identification of storages.
//
// The input is a file. Its class identifier is asked for, all names of the routines are looked up, streams and
// sub-storages are listed, opened and read, also in storages that lie in streams of others, and the file is identified.
// On the way these laws are asserted:
//
//   - The same question has the same answer twice, an identification also when every row is run in full.
//   - A stream delivers no more bytes than its entry tells and the file holds, and the same ones whether they are
//     read from the start on or from a place in the middle.
//   - A sub-storage delivers the bytes of the file.
//   - After an identification the handle stands at 0.
//   - An identification reads a bounded number of bytes.
//
// Run: scripts/fuzz storage_fuzz, or storage_fuzz -max_len=16384 CORPUS fuzz/seeds/storage
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fiid.h"
#include "fuzz/laws.h"
#include "platform/base_utility.h"
#include "platform/handle.h"
#include "platform/storage/compound_storage.h"

namespace {

// How much is looked at in one input; what hangs together in a damaged file can be endless.
constexpr std::uint32_t deepestStorage = 4;
constexpr std::uint32_t mostObjects = 200;

// An identification may look at a file's bytes for many rows of the table, but not for each byte of the file.
constexpr std::uint64_t readingAllowance = 16 << 20;
constexpr std::uint64_t readingsOfEachByte = 64;

const char* const names[] = {
    "PP40",
    "EncryptedPackage",
    "PP97_DUALSTORAGE",
    "PowerPoint Document",
    "WordDocument",
    "NOVELL_MAIN",
    "PerfectOffice_MAIN",
    "Book",
    "BOOK",
    "Workbook",
    "MN0",
    "NativeContent_MAIN",
    "FileHeader",
    "__properties_version1.0",
    "\005SummaryInformation",
    "DesignerDoc",
    "VisioDocument",
    "",
    "Root Entry",
};

void Require(bool law, const char* broken) {
    if (law) return;
    std::fprintf(stderr, "broken law: %s\n", broken);
    std::abort();
}

// ---- A host's handle that counts what is read ----------------------------------------------------------------------

struct CountingHandle {
    IOFile file;  // first
    const std::uint8_t* data;
    std::uint64_t size;
    std::uint64_t position;
    std::uint64_t delivered;
};

CountingHandle& CountingOf(HIOFILE file) { return *reinterpret_cast<CountingHandle*>(file); }

std::int32_t CountingRead(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    CountingHandle& handle = CountingOf(file);
    const std::uint64_t left = handle.position < handle.size ? handle.size - handle.position : 0;
    *count = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, left));
    if (*count > 0) std::memcpy(destination, handle.data + handle.position, *count);
    handle.position += *count;
    handle.delivered += *count;
    return 0;
}

std::int32_t CountingSeek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    CountingHandle& handle = CountingOf(file);
    const std::uint64_t base = origin == IOOriginStart ? 0 : origin == IOOriginCurrent ? handle.position : handle.size;
    const std::int64_t step = origin == IOOriginStart ? static_cast<std::uint32_t>(offset) : std::int64_t{offset};
    if (step < 0 && static_cast<std::uint64_t>(-step) > base) return -1;
    handle.position = base + static_cast<std::uint64_t>(step);
    return 0;
}

std::int32_t CountingTell(HIOFILE file, std::uint32_t* position) {
    *position = static_cast<std::uint32_t>(CountingOf(file).position);
    return 0;
}

constexpr IOOperations countingOperations = {
    [](HIOFILE) { return std::int32_t{0}; },
    CountingRead,
    [](HIOFILE, const void*, std::uint32_t, std::uint32_t*) { return std::int32_t{-1}; },
    CountingSeek,
    CountingTell,
    [](HIOFILE, std::uint32_t, void*) { return std::int32_t{-1}; },
    [](HIOFILE*, std::uint32_t, const void*, std::uint32_t) { return std::int32_t{-1}; },
};

// ---- Looking at everything -----------------------------------------------------------------------------------------

struct Walk {
    std::uint64_t fileSize;
    std::uint32_t objectsLeft;
    std::uint32_t places;  // places in streams, made of the input
    bool everything;       // ask each question twice, and look for storages in streams
};

std::uint32_t NextPlace(Walk& walk) {
    walk.places = walk.places * 1664525 + 1013904223;
    return walk.places >> 8;
}

void CheckStream(HIOFILE stream, Walk& walk, std::uint64_t size) {
    std::string bytes;
    char buffer[2048];
    while (true) {
        std::uint32_t count = 0;
        Require(stream->operations.IORead(stream, buffer, sizeof(buffer), &count) == 0,
                "a stream in memory can be read");
        if (count == 0) break;
        bytes.append(buffer, count);
        Require(bytes.size() <= size && bytes.size() <= walk.fileSize,
                "a stream delivers what its entry and the file hold");
    }
    for (std::uint32_t round = 0; round < 4; ++round) {
        const auto place = NextPlace(walk) % static_cast<std::uint32_t>(bytes.size() + 70);
        const std::uint32_t wanted = NextPlace(walk) % sizeof(buffer);
        std::uint32_t count = 0;
        Require(stream->operations.IOSeek(stream, IOOriginStart, static_cast<std::int32_t>(place)) == 0,
                "a seek works");
        Require(stream->operations.IORead(stream, buffer, wanted, &count) == 0, "a stream in memory can be read");
        const std::string expected = place < bytes.size() ? bytes.substr(place, wanted) : "";
        Require(std::string(buffer, count) == expected, "a stream delivers the same bytes from a place in the middle");
    }
}

// Compares the start and a place in the middle.
void CheckSubStorageBytes(UTHandle& storage, UTHandle& sub, Walk& walk) {
    Require(UTGetSize(sub) == UTGetSize(storage), "a sub-storage is as large as the file");
    char expected[512];
    char bytes[512];
    const std::uint64_t middle = NextPlace(walk) % (UTGetSize(storage) + 70);
    for (const std::uint64_t place : {std::uint64_t{0}, middle}) {
        std::uint32_t wanted = 0;
        std::uint32_t count = 0;
        Require(UTReadAt(storage, place, expected, sizeof(expected), wanted) == 0 &&
                    UTReadAt(sub, place, bytes, sizeof(bytes), count) == 0,
                "a storage in memory can be read");
        Require(count == wanted && std::memcmp(bytes, expected, count) == 0,
                "a sub-storage delivers the bytes of the file");
    }
}

bool GetClassId(HIOFILE file, std::uint8_t (&classId)[IOClassIdBytes]) {
    std::memset(classId, 0, sizeof(classId));
    return file->operations.IOGetInfo(file, IOInfoClassId, classId) == 0;
}

// Looks a name up. Returns whether it is there.
bool LookUp(HIOFILE storage, std::uint32_t kind, const char* name) {
    IOSubSpec specification;
    specification.parent = storage;
    std::strcpy(specification.name, name);
    HIOFILE object = nullptr;
    const bool found = storage->operations.IOOpenSub(&object, kind, &specification, IOSubOpenRead) == 0;
    Require(found == (object != nullptr), "a handle comes with success alone");
    if (found) object->operations.IOClose(object);
    return found;
}

void CheckStorage(HIOFILE file, Walk& walk, std::uint32_t depth) {
    std::uint8_t classId[IOClassIdBytes];
    std::uint8_t again[IOClassIdBytes];
    const bool isStorage = file->operations.IOGetInfo(file, IOInfoIsStorage, nullptr) == 0;
    Require(GetClassId(file, classId) == isStorage, "a storage has a class identifier, anything else has none");
    for (const char* const name : names) {
        for (const std::uint32_t kind : {IOSUB_STREAM, IOSUB_STORAGE}) {
            const bool found = LookUp(file, kind, name);
            Require(isStorage || !found, "a plain file has no streams");
            if (walk.everything) Require(LookUp(file, kind, name) == found, "a name is found twice or not at all");
        }
    }
    Require(GetClassId(file, again) == isStorage && std::memcmp(classId, again, sizeof(classId)) == 0,
            "the class identifier stays the same");
    if (!isStorage || depth == deepestStorage) return;
    UTHandle& storage = *UTFindHandle(file);
    CFChild child;
    for (std::size_t place = 0; walk.objectsLeft > 0 && CFGetChild(storage, place, child); ++place) {
        --walk.objectsLeft;
        UTHandle* const opened = UTOpenChild(storage, place);
        Require(opened != nullptr, "a child that is listed can be opened");
        const HIOFILE object = UTHandleFile(*opened);
        if (child.isStorage) {
            CheckSubStorageBytes(storage, *opened, walk);
        } else {
            CheckStream(object, walk, child.size);
        }
        if (child.isStorage || walk.everything) CheckStorage(object, walk, depth + 1);
        object->operations.IOClose(object);
    }
}

// ---- Identification ------------------------------------------------------------------------------------------------

void CheckIdentification(const std::uint8_t* data, std::size_t size, FIID expected) {
    CountingHandle counting = {{countingOperations}, data, size, 0, 0};
    HIOFILE file = nullptr;
    Require(IOOpen(&file, IOSpecHandle, &counting.file, IOOpenRead) == 0, "a host's handle opens");
    FIID answer = 0;
    Require(FIIdHandle(file, FIFlagExtendedText, &answer) == 0, "an identification has a result");
    Require(answer == expected, "the answer is the same over another handle");
    file->operations.IOClose(file);
    Require(counting.delivered <= readingAllowance + readingsOfEachByte * size,
            "an identification reads a bounded amount");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const IOMemorySpec memory = {data, size, ""};
    HIOFILE file = nullptr;
    Require(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead) == 0, "memory opens");
    // One input in eight is identified, the others are looked through: doing both would leave time for fewer inputs.
    const std::uint32_t chosen = FuzzHash({reinterpret_cast<const char*>(data), size}) % 8;
    if (chosen == 0) {
        CheckIdentification(data, size, FuzzIdentifyBothWays(file).fiid);
    } else {
        Walk walk = {size, mostObjects, size > 0 ? data[size - 1] + static_cast<std::uint32_t>(size) : 0, chosen == 1};
        CheckStorage(file, walk, 0);
    }
    file->operations.IOClose(file);
    return 0;
}
