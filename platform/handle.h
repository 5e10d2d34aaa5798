// handle.h - the handles of the platform layer: one record and one table of operations for objects of every kind.
//
// What differs between a file, a block of memory, a stream of a storage or a member of an archive is told by a
// UTHandleKind; positions, names, the guard against endless reading and the sub-objects are the same for all.
//
// This is the ground that the kinds and the storages stand on, and it knows none of them. A handle made here reads,
// seeks, tells and has a name; operations.h gives it what builds on the kinds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "fiid.h"
#include "platform/base_utility.h"
#include "platform/zip/zip_entry.h"

struct UTHandle;

// Bytes of an object that UTGetHead hands out, when it has as many: all that the routines look at near the start.
inline constexpr std::uint32_t UTHeadBytes = 8192;

// What reading an object has cost so far.
struct UTReadCost {
    std::uint64_t calls;  // of the system, or of whoever delivers the bytes
    std::uint64_t bytes;  // that they delivered
};

// What an object can do. One constant per kind.
struct UTHandleKind {
    // Reads size bytes at an offset, which may lie behind the end. count receives what came: fewer where the object
    // ends, or in front of bytes that can't be read. Returns 0, or another status when nothing could be read.
    std::int32_t (*readAt)(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count);
    // The object's size in bytes.
    std::uint64_t (*size)(UTHandle& handle);
    // Gives back what the kind's own record holds, null when that is nothing. The record itself is freed by its caller.
    void (*release)(UTHandle& handle);
    // Hands out the object's start as UTGetHead does; null for a kind that has none.
    bool (*head)(UTHandle& handle, UTHead& head) = nullptr;
    // Whether nobody sees how the object is read, so that reads may be left out, joined and made ahead. Of a host's own
    // handle the host does, and so it does of all that is opened in it: see UTIsUnseen.
    bool unseen = false;
    // What its reads have cost; null for a kind that does not count, or costs nothing.
    UTReadCost (*cost)(UTHandle& handle) = nullptr;
};

// Something found in an object's bytes that is kept with the handle and ends with it. Its maker's record is one.
struct UTAttachment {
    void (*end)(UTAttachment& attachment);
};

// A stream or a sub-storage that was opened in an object, at whatever depth. The name is as it was asked for; storages have
// none of more than 31 characters.
struct UTOpenedObject {
    std::uint32_t kind;  // IOSUB_STREAM or IOSUB_STORAGE
    char name[64];
};

// The first few of them, each once, for those who explain an object's answer.
struct UTOpened {
    std::uint32_t count;
    UTOpenedObject objects[6];
};

// The name that a handle reports: 8-bit characters, or 16-bit units when wide.
struct UTHandleName {
    bool wide;
    union {
        char narrow[IONameBytes];
        std::uint16_t units[IONameBytes / sizeof(std::uint16_t)];
    };
};

// The start of every handle's record; a kind's own record begins with it. Records come from the process heap and hold
// nothing that needs a destructor.
struct UTHandle {
    IOFile file;  // first: a UTHandle is an HIOFILE
    const UTHandleKind* kind;
    std::uint64_t position;
    std::uint32_t vainReads;  // reads in a row that delivered nothing
    bool storageLooked;       // whether storage tells the truth
    UTAttachment* storage;    // the compound storage that the object is, once looked for; null when it is none
    ZASearch archiveSearch;   // of the archive that the object is, if nobody sees how it is read
    ZADirectory archive;      // its directory, when that was found
    UTOpened* opened;         // of an outermost handle: where to note what is opened, somebody else's; mostly null
    UTHandle* parent;         // the handle that this one was opened in, or null
    UTHandle* firstChild;     // sub-objects that are still open
    UTHandle* previousSibling;
    UTHandle* nextSibling;
    UTHandleName name;
};

// A new record of recordSize bytes, which starts with a UTHandle, or null when memory is exhausted. The rest of the
// record is not cleared. The new handle stands at 0, has an empty name, and is a child of parent (may be null), whose
// operations it has.
UTHandle* UTNewHandle(const UTHandleKind& kind, std::size_t recordSize, UTHandle* parent);

// A kind's own record behind a handle of the kind. The record's first member is the handle, named so.
template <typename Record>
Record& UTRecordOf(UTHandle& handle) {
    static_assert(std::is_standard_layout_v<Record> && offsetof(Record, handle) == 0);
    return reinterpret_cast<Record&>(handle);
}

// A new handle with a kind's own record: UTNewHandle for its size.
template <typename Record>
Record* UTNewHandleRecord(const UTHandleKind& kind, UTHandle* parent) {
    UTHandle* const handle = UTNewHandle(kind, sizeof(Record), parent);
    return handle != nullptr ? &UTRecordOf<Record>(*handle) : nullptr;
}

// Ends a handle, after the sub-objects that nobody closed. So a caller that forgets a sub-object loses nothing once it
// closes the file.
void UTCloseHandle(UTHandle& handle);

// The handle that all others around this one were opened in.
UTHandle& UTOutermost(UTHandle& handle);

// Whether nobody sees how the object is read, which the outermost one that it was opened in tells.
bool UTIsUnseen(const UTHandle& handle);

// The handle of this layer behind an HIOFILE, or null for null and for a host's own handle.
UTHandle* UTFindHandle(HIOFILE file);

inline HIOFILE UTHandleFile(UTHandle& handle) { return &handle.file; }

// Reads at an offset without moving the handle, as UTHandleKind::readAt does.
inline std::int32_t UTReadAt(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                             std::uint32_t& count) {
    return handle.kind->readAt(handle, offset, destination, size, count);
}

// The same for size bytes that are all wanted. Returns false when they are not all there.
inline bool UTReadFully(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size) {
    std::uint32_t count = 0;
    return UTReadAt(handle, offset, destination, size, count) == 0 && count == size;
}

inline std::uint64_t UTGetSize(UTHandle& handle) { return handle.kind->size(handle); }

inline UTReadCost UTGetCost(UTHandle& handle) {
    return handle.kind->cost != nullptr ? handle.kind->cost(handle) : UTReadCost{0, 0};
}

// IOGetInfo for the name and its type, which all handles have; any other selector fails.
std::int32_t UTGetNameInfo(HIOFILE file, std::uint32_t selector, void* value);

// Sets the name from a path or a plain name: what stands behind the last slash, its last 255 bytes. Null is no name.
void UTSetNarrowName(UTHandle& handle, const char* path);

// The same for 16-bit units: the last 127 units.
void UTSetWideName(UTHandle& handle, const std::uint16_t* path);
