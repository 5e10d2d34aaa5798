// handle.cpp - the operations that all handles of the platform layer share.
#include "platform/handle.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "platform/base_utility.h"

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t failure = -1;

// After this many reads in a row that delivered nothing, at the end of the object or by a failure, the next one delivers
// a line feed, so that a routine without a test for the end of the file comes back. A reader takes a failure for the end:
// bytes that can't be read are not to hold it longer than an end does.
constexpr std::uint32_t vainReadLimit = 65536;
constexpr std::uint8_t runawayByte = 0x0A;

constexpr std::uint32_t largestPositionTold = 0xFFFFFFFF;
// An offset from the start of at least this much is a negative target that wrapped, unless the object is that large.
constexpr std::uint32_t wrappedOffset = 0x80000000;

static_assert(std::is_standard_layout_v<UTHandle> && offsetof(UTHandle, file) == 0);

UTHandle& UTFromFile(HIOFILE file) { return *reinterpret_cast<UTHandle*>(file); }

std::int32_t UTClose(HIOFILE file) {
    UTCloseHandle(UTFromFile(file));
    return success;
}

std::int32_t UTRead(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    UTHandle& handle = UTFromFile(file);
    *count = 0;
    const std::int32_t status = UTReadAt(handle, handle.position, destination, size, *count);
    if (status != success) *count = 0;
    if (*count > 0) {
        handle.position += *count;
        handle.vainReads = 0;
        return success;
    }
    if (size == 0) return status;
    if (handle.vainReads < vainReadLimit) {
        ++handle.vainReads;
        return status;
    }
    *static_cast<std::uint8_t*>(destination) = runawayByte;
    *count = 1;
    handle.vainReads = 0;
    return success;
}

std::int32_t UTWrite(HIOFILE, const void*, std::uint32_t, std::uint32_t*) { return failure; }

// Moves by a signed offset from a base; a target below 0 fails and the position stays.
std::int32_t UTSeekFrom(UTHandle& handle, std::uint64_t base, std::int32_t offset) {
    if (offset < 0) {
        const auto back = static_cast<std::uint64_t>(-std::int64_t{offset});
        if (back > base) return failure;
        handle.position = base - back;
        return success;
    }
    handle.position = base + static_cast<std::uint64_t>(offset);
    return success;
}

std::int32_t UTSeek(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    UTHandle& handle = UTFromFile(file);
    if (origin == IOOriginStart) {
        const auto target = static_cast<std::uint32_t>(offset);
        if (target >= wrappedOffset && target > UTGetSize(handle)) return failure;
        handle.position = target;
        return success;
    }
    if (origin == IOOriginCurrent) return UTSeekFrom(handle, handle.position, offset);
    if (origin == IOOriginEnd) return UTSeekFrom(handle, UTGetSize(handle), offset);
    return failure;
}

std::int32_t UTTell(HIOFILE file, std::uint32_t* position) {
    *position = static_cast<std::uint32_t>(std::min<std::uint64_t>(UTFromFile(file).position, largestPositionTold));
    return success;
}

std::int32_t UTOpenNothing(HIOFILE* out, std::uint32_t, const void*, std::uint32_t) {
    *out = nullptr;
    return failure;
}

constexpr IOOperations groundOperations = {UTClose, UTRead, UTWrite, UTSeek, UTTell, UTGetNameInfo, UTOpenNothing};

void UTUnlink(UTHandle& handle) {
    if (handle.parent == nullptr) return;
    if (handle.previousSibling != nullptr) {
        handle.previousSibling->nextSibling = handle.nextSibling;
    } else {
        handle.parent->firstChild = handle.nextSibling;
    }
    if (handle.nextSibling != nullptr) handle.nextSibling->previousSibling = handle.previousSibling;
}

}  // namespace

UTHandle* UTNewHandle(const UTHandleKind& kind, std::size_t recordSize, UTHandle* parent) {
    auto* const handle = static_cast<UTHandle*>(HeapAlloc(GetProcessHeap(), 0, recordSize));
    if (handle == nullptr) return nullptr;
    handle->file.operations = parent != nullptr ? parent->file.operations : groundOperations;
    handle->kind = &kind;
    handle->position = 0;
    handle->vainReads = 0;
    handle->storageLooked = false;
    handle->storage = nullptr;
    handle->archiveSearch = ZASearch::NotMade;
    handle->opened = nullptr;
    handle->parent = parent;
    handle->firstChild = nullptr;
    handle->previousSibling = nullptr;
    handle->nextSibling = parent != nullptr ? parent->firstChild : nullptr;
    if (handle->nextSibling != nullptr) handle->nextSibling->previousSibling = handle;
    if (parent != nullptr) parent->firstChild = handle;
    UTSetNarrowName(*handle, nullptr);
    return handle;
}

void UTCloseHandle(UTHandle& handle) {
    while (handle.firstChild != nullptr) UTCloseHandle(*handle.firstChild);
    if (handle.storage != nullptr) handle.storage->end(*handle.storage);
    if (handle.kind->release != nullptr) handle.kind->release(handle);
    UTUnlink(handle);
    HeapFree(GetProcessHeap(), 0, &handle);
}

UTHandle& UTOutermost(UTHandle& handle) {
    UTHandle* outermost = &handle;
    while (outermost->parent != nullptr) outermost = outermost->parent;
    return *outermost;
}

bool UTIsUnseen(const UTHandle& handle) {
    const UTHandle* outermost = &handle;
    while (outermost->parent != nullptr) outermost = outermost->parent;
    return outermost->kind->unseen;
}

UTHandle* UTFindHandle(HIOFILE file) {
    return file != nullptr && file->operations.IORead == UTRead ? &UTFromFile(file) : nullptr;
}

extern "C" std::int16_t UTGetHead(HIOFILE file, UTHead* head) {
    UTHandle* const handle = UTFindHandle(file);
    return handle != nullptr && handle->kind->head != nullptr && handle->kind->head(*handle, *head) ? 0 : -1;
}

std::int32_t UTGetNameInfo(HIOFILE file, std::uint32_t selector, void* value) {
    const UTHandleName& name = UTFromFile(file).name;
    switch (selector) {
        case IOInfoName:
            if (name.wide) {
                std::copy_n(name.units, std::size(name.units), static_cast<std::uint16_t*>(value));
            } else {
                std::strcpy(static_cast<char*>(value), name.narrow);  // at most 255 bytes and the terminator
            }
            return success;
        case IOInfoNameType:
            *static_cast<std::uint32_t*>(value) = name.wide ? IONameWide : IONameNarrow;
            return success;
        default:
            return failure;
    }
}

void UTSetNarrowName(UTHandle& handle, const char* path) {
    handle.name.wide = false;
    handle.name.narrow[0] = '\0';
    if (path == nullptr) return;
    const char* const slash = std::strrchr(path, '/');
    const char* name = slash != nullptr ? slash + 1 : path;
    const std::size_t length = std::strlen(name);
    if (length >= IONameBytes) name += length - (IONameBytes - 1);
    std::strcpy(handle.name.narrow, name);
}

void UTSetWideName(UTHandle& handle, const std::uint16_t* path) {
    handle.name.wide = true;
    const std::uint16_t* name = path;
    const std::uint16_t* end = path;
    for (; *end != 0; ++end) {
        if (*end == '/') name = end + 1;
    }
    constexpr std::ptrdiff_t capacity = std::size(UTHandleName{}.units) - 1;
    if (end - name > capacity) name = end - capacity;
    std::copy(name, end + 1, handle.name.units);
}
