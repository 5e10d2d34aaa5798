// compound_storage.h - compound storages (MS-CFB): finding one in an object's bytes, and opening its streams and
// sub-storages as handles.
//
// No function here throws: exhausted memory means that an object is not there.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/handle.h"

// A storage: the whole file's, or one inside it. It belongs to a handle and ends with it.
struct CFStorage;

// The compound storage that an object is, or null. A sub-storage is the one that it was opened as; in any other object
// it is looked for in the bytes, once, and read through UTReadAt.
CFStorage* CFFindStorage(UTHandle& handle);

// Writes the class identifier, 16 bytes as they lie in the file. Returns 0.
std::int32_t CFGetClassId(const CFStorage& storage, std::uint8_t* classId);

// Opens a stream among the direct children of the storage that the parent is. The name is compared whole and with case,
// each character with one 16-bit unit of the entry's name. Returns null when the parent is no storage or has no such
// stream. The new handle is a child of the parent and has the entry's name. A stream whose sectors break off delivers the
// bytes in front of the break; its size is the one that its entry tells.
UTHandle* UTOpenStream(UTHandle& parent, const char* name);

// The same for a sub-storage. Its handle is a storage itself; read as bytes it delivers those of the file, like the
// handle of the file's own storage.
UTHandle* UTOpenSubStorage(UTHandle& parent, const char* name);

// A stream or a sub-storage of a storage, as a list of them tells it.
struct CFChild {
    std::uint16_t name[32];    // not NUL-terminated
    std::uint32_t nameLength;  // in units, 0 to 32
    bool isStorage;
    std::uint64_t size;  // of a stream, in bytes, as its entry tells it
};

// Lists the direct children of the storage that the parent is: tells the one at a place, counted from 0. Returns false
// behind the last one, and when the parent is no storage.
bool CFGetChild(UTHandle& parent, std::size_t place, CFChild& child);

// Opens the child at a place, also one whose name can't be told in 8-bit characters or is hidden behind an equal one.
UTHandle* UTOpenChild(UTHandle& parent, std::size_t place);
