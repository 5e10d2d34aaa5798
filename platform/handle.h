// handle.h - the handles of the platform layer: one record and one table of operations for objects of every kind.
//
// What differs between a file, a block of memory, a stream of a storage or a member of an archive is told by a
// UTHandleKind; positions, names, the guard against endless reading and the sub-objects are the same for all.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fiid.h"

struct CFStorage;
struct UTHandle;

// What an object can do. One constant per kind.
struct UTHandleKind {
    // Reads up to size bytes at an offset; offset may lie behind the end. count receives what came, 0 at the end.
    // Returns 0, or another status when nothing could be read.
    std::int32_t (*readAt)(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count);
    // The object's size in bytes.
    std::uint64_t (*size)(UTHandle& handle);
    // Gives back what the kind's own record holds. The record itself is freed by its caller.
    void (*release)(UTHandle& handle);
};

// The capacity of a name, in bytes with its terminator.
inline constexpr std::size_t handleNameBytes = 256;

// The name that a handle reports: 8-bit characters, or 16-bit units when wide.
struct UTHandleName {
    bool wide;
    union {
        char narrow[handleNameBytes];
        std::uint16_t units[handleNameBytes / sizeof(std::uint16_t)];
    };
};

// The start of every handle's record; a kind's own record begins with it. Records come from the process heap and hold
// nothing that needs a destructor.
struct UTHandle {
    IOFile file;  // first: a UTHandle is an HIOFILE
    const UTHandleKind* kind;
    std::uint64_t position;
    std::uint32_t emptyReads;  // reads in a row that found nothing at the end
    bool storageLooked;        // whether storage tells the truth
    CFStorage* storage;        // the compound storage in the object's bytes, once looked for; null when there is none
    UTHandle* parent;          // the handle that this one was opened in, or null
    UTHandle* firstChild;      // sub-objects that are still open
    UTHandle* previousSibling;
    UTHandle* nextSibling;
    UTHandleName name;
};

// A new record of recordSize bytes, which starts with a UTHandle, or null when memory is exhausted. The rest of the
// record is not cleared. The new handle stands at 0, has an empty name, and is a child of parent (may be null).
UTHandle* UTNewHandle(const UTHandleKind& kind, std::size_t recordSize, UTHandle* parent);

// Ends a handle, after the sub-objects that nobody closed. So a caller that forgets a sub-object loses nothing once it
// closes the file.
void UTCloseHandle(UTHandle& handle);

// The handle of this layer behind an HIOFILE, or null for null and for a host's own handle.
UTHandle* UTFindHandle(HIOFILE file);

inline HIOFILE UTHandleFile(UTHandle& handle) { return &handle.file; }

// Reads at an offset without moving the handle, as UTHandleKind::readAt does.
inline std::int32_t UTReadAt(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                             std::uint32_t& count) {
    return handle.kind->readAt(handle, offset, destination, size, count);
}

inline std::uint64_t UTGetSize(UTHandle& handle) { return handle.kind->size(handle); }

// The compound storage in the object's bytes, or null. Looked for once.
CFStorage* UTFindStorage(UTHandle& handle);

// Sets the name from a path or a plain name: what stands behind the last slash, its last 255 bytes. Null is no name.
void UTSetNarrowName(UTHandle& handle, const char* path);

// The same for 16-bit units: the last 127 units.
void UTSetWideName(UTHandle& handle, const std::uint16_t* path);
