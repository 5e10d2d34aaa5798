// foreign_handle.cpp - handles over a host's own handle, which may know bytes and no more: with one of these around it,
// storages and archives can be seen in them.
#include <cerrno>
#include <iterator>

#include "platform/byte_objects.h"
#include "platform/repeated_read.h"
#include "reader/handle_block.h"

namespace {

// The operations of a handle reach this far.
constexpr std::uint64_t reachableBytes = 0x100000000;

struct UTForeign {
    UTHandle handle;
    HIOFILE file;
};

std::int32_t UTReadForeign(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count) {
    const HIOFILE file = UTRecordOf<UTForeign>(handle).file;
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
    const HIOFILE file = UTRecordOf<UTForeign>(handle).file;
    std::uint32_t size = 0;
    if (file->operations.IOSeek(file, IOOriginEnd, 0) != 0 || file->operations.IOTell(file, &size) != 0) return 0;
    return size;
}

constexpr UTHandleKind foreignKind = {UTReadForeign, UTForeignSize, nullptr};

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
    auto* const foreign = UTNewHandleRecord<UTForeign>(foreignKind, nullptr);
    if (foreign == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    foreign->file = file;
    UTHandleName& name = foreign->handle.name;
    std::uint32_t nameType = IONameNarrow;
    static_cast<void>(file->operations.IOGetInfo(file, IOInfoNameType, &nameType));
    name.units[0] = 0;
    static_cast<void>(file->operations.IOGetInfo(file, IOInfoName, name.narrow));
    name.wide = nameType == IONameWide;
    UTEndName(name);
    return &foreign->handle;
}
