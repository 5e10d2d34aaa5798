// foreign_handle.cpp - handles over a host's own handle, which may know bytes and no more: with one of these around it,
// storages and archives can be seen in them.
#include <cerrno>
#include <iterator>

#include "platform/byte_objects.h"
#include "platform/repeated_read.h"
#include "reader/read_handle.h"

namespace {

// The operations of a handle reach this far.
constexpr std::uint64_t reachableBytes = 0x100000000;

struct UTForeign {
    UTHandle handle;  // first
    HIOFILE file;
};

HIOFILE UTForeignOf(UTHandle& handle) {
    return reinterpret_cast<UTForeign&>(handle).file;
}  // handle is the first member

std::int32_t UTReadForeign(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count) {
    const HIOFILE file = UTForeignOf(handle);
    count = 0;
    if (offset >= reachableBytes) return 0;
    const auto target = static_cast<std::int32_t>(static_cast<std::uint32_t>(offset));
    if (file->operations.IOSeek(file, IOOriginStart, target) != 0) return -1;
    auto* const bytes = static_cast<std::uint8_t*>(destination);
    return UTRepeatRead(size, count, [=](std::uint32_t at, std::uint32_t wanted, std::uint32_t& came) {
        return FIReadHandle(file, bytes + at, wanted, came);
    });
}

std::uint64_t UTForeignSize(UTHandle& handle) {
    const HIOFILE file = UTForeignOf(handle);
    std::uint32_t size = 0;
    if (file->operations.IOSeek(file, IOOriginEnd, 0) != 0 || file->operations.IOTell(file, &size) != 0) return 0;
    return size;
}

void UTReleaseForeign(UTHandle&) {}

constexpr UTHandleKind foreignKind = {UTReadForeign, UTForeignSize, UTReleaseForeign};

// Cuts a name that its host did not terminate.
void UTEndName(UTHandleName& name) {
    if (name.wide) {
        name.units[std::size(name.units) - 1] = 0;
    } else {
        name.narrow[std::size(name.narrow) - 1] = '\0';
    }
}

}  // namespace

UTHandle* UTOpenForeign(HIOFILE file) {
    UTHandle* const handle = UTNewHandle(foreignKind, sizeof(UTForeign), nullptr);
    if (handle == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    reinterpret_cast<UTForeign&>(*handle).file = file;
    std::uint32_t nameType = IONameNarrow;
    static_cast<void>(file->operations.IOGetInfo(file, IOInfoNameType, &nameType));
    handle->name.units[0] = 0;
    static_cast<void>(file->operations.IOGetInfo(file, IOInfoName, handle->name.narrow));
    handle->name.wide = nameType == IONameWide;
    UTEndName(handle->name);
    return handle;
}
