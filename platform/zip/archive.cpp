// archive.cpp - handles over ZIP archives and their members.
//
// Nothing of an archive is kept but the place of its directory, and nothing of a member but the place of its data and,
// if it is packed, the state of the unpacker. Stored members are stretches of the file, as long as the directory's
// packed size tells.
#include "platform/zip/archive.h"

#include <algorithm>
#include <cstdint>

#include "platform/zip/unpacker.h"
#include "platform/zip/zip_directory.h"

namespace {

constexpr std::uint16_t encryptedFlag = 1;
constexpr std::uint16_t storedMethod = 0;
constexpr std::uint16_t deflatedMethod = 8;

// An archive and a stored member hold nothing but their record.
void UTReleaseNothing(UTHandle&) {}

struct UTArchive {
    UTHandle handle;  // first
    ZADirectory directory;
};

// A record's handle is its first member.
UTArchive& UTArchiveOf(UTHandle& handle) { return reinterpret_cast<UTArchive&>(handle); }

std::int32_t UTReadArchive(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count) {
    return UTReadAt(*handle.parent, offset, destination, size, count);
}

std::uint64_t UTArchiveSize(UTHandle& handle) { return UTGetSize(*handle.parent); }

constexpr UTHandleKind archiveKind = {UTReadArchive, UTArchiveSize, UTReleaseNothing};

// ---- Stored members ------------------------------------------------------------------------------------------------

struct UTStoredMember {
    UTHandle handle;  // first
    std::uint64_t start;
    std::uint64_t size;       // the packed one
    std::uint64_t available;  // bytes of it that the file has
};

UTStoredMember& UTStoredOf(UTHandle& handle) { return reinterpret_cast<UTStoredMember&>(handle); }

std::int32_t UTReadStored(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    const UTStoredMember& member = UTStoredOf(handle);
    count = 0;
    if (size == 0 || offset >= member.size) return 0;
    if (offset >= member.available) return -1;  // the file was cut
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, member.available - offset));
    return UTReadAt(*handle.parent, member.start + offset, destination, wanted, count);
}

std::uint64_t UTStoredSize(UTHandle& handle) { return UTStoredOf(handle).size; }

constexpr UTHandleKind storedKind = {UTReadStored, UTStoredSize, UTReleaseNothing};

UTHandle* UTOpenStored(UTHandle& archive, const ZAEntry& entry, std::uint64_t dataOffset) {
    UTHandle* const handle = UTNewHandle(storedKind, sizeof(UTStoredMember), &archive);
    if (handle == nullptr) return nullptr;
    const std::uint64_t fileSize = UTGetSize(archive);
    UTStoredMember& member = UTStoredOf(*handle);
    member.start = dataOffset;
    member.size = entry.packedSize;
    member.available = dataOffset < fileSize ? std::min(entry.packedSize, fileSize - dataOffset) : 0;
    return handle;
}

// ---- Deflated members ----------------------------------------------------------------------------------------------

struct UTPackedMember {
    UTHandle handle;  // first
    std::uint64_t sizeTold;
    ZAUnpacker unpacker;
};

UTPackedMember& UTPackedOf(UTHandle& handle) { return reinterpret_cast<UTPackedMember&>(handle); }

std::int32_t UTReadPacked(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    return ZAReadUnpacked(UTPackedOf(handle).unpacker, offset, destination, size, count);
}

std::uint64_t UTPackedSize(UTHandle& handle) { return UTPackedOf(handle).sizeTold; }

void UTReleasePacked(UTHandle& handle) { ZAStopUnpacker(UTPackedOf(handle).unpacker); }

constexpr UTHandleKind packedKind = {UTReadPacked, UTPackedSize, UTReleasePacked};

UTHandle* UTOpenPacked(UTHandle& archive, const ZAEntry& entry, std::uint64_t dataOffset) {
    UTHandle* const handle = UTNewHandle(packedKind, sizeof(UTPackedMember), &archive);
    if (handle == nullptr) return nullptr;
    UTPackedMember& member = UTPackedOf(*handle);
    member.sizeTold = entry.size;
    if (ZAStartUnpacker(member.unpacker, archive, entry, dataOffset) == 0) return handle;
    UTCloseHandle(*handle);
    return nullptr;
}

// ---- Finding a member ----------------------------------------------------------------------------------------------

UTHandle* UTOpenEntry(UTHandle& archive, const ZAEntry& entry) {
    std::uint64_t dataOffset = 0;
    if ((entry.flags & encryptedFlag) != 0) return nullptr;
    if (!ZAFindData(archive, UTArchiveOf(archive).directory, entry, dataOffset)) return nullptr;
    switch (entry.method) {
        case storedMethod:
            return UTOpenStored(archive, entry, dataOffset);
        case deflatedMethod:
            return UTOpenPacked(archive, entry, dataOffset);
        default:
            return nullptr;
    }
}

// The name without its directories, at most what a handle can hold.
void UTNameMember(UTHandle& member, std::string_view name) {
    const std::size_t slash = name.rfind('/');
    if (slash != std::string_view::npos) name.remove_prefix(slash + 1);
    if (name.size() >= handleNameBytes) name.remove_prefix(name.size() - (handleNameBytes - 1));
    std::copy(name.begin(), name.end(), member.name.narrow);
    member.name.narrow[name.size()] = '\0';
}

UTHandle* UTOpenNamed(UTHandle& archive, std::string_view name, bool anyCase) {
    if (!UTIsArchive(archive)) return nullptr;
    ZAEntry entry;
    if (!ZAFindEntry(archive, UTArchiveOf(archive).directory, name, anyCase, entry)) return nullptr;
    UTHandle* const member = UTOpenEntry(archive, entry);
    if (member != nullptr) UTNameMember(*member, name);
    return member;
}

}  // namespace

UTHandle* UTOpenArchive(UTHandle& parent) {
    ZADirectory directory;
    if (!ZAFindDirectory(parent, directory)) return nullptr;
    // The package routine leaves this handle open on one path, where its setting is refused. It is a child of the
    // file's handle, which frees it when it is closed.
    UTHandle* const handle = UTNewHandle(archiveKind, sizeof(UTArchive), &parent);
    if (handle == nullptr) return nullptr;
    UTArchiveOf(*handle).directory = directory;
    handle->name = parent.name;
    return handle;
}

bool UTIsArchive(const UTHandle& handle) { return handle.kind == &archiveKind; }

bool UTHasMember(UTHandle& archive, std::string_view name) {
    ZAEntry entry;
    return UTIsArchive(archive) && ZAFindEntry(archive, UTArchiveOf(archive).directory, name, true, entry);
}

UTHandle* UTOpenMember(UTHandle& archive, const char* name) { return UTOpenNamed(archive, name, false); }

UTHandle* UTOpenMemberAnyCase(UTHandle& archive, std::string_view name) { return UTOpenNamed(archive, name, true); }
