// archive.cpp - handles over ZIP archives and their members.
//
// Nothing of an archive is kept but the place of its directory, and nothing of a member but the place of its data and,
// if it is packed, the state of the unpacker. Stored members are stretches of the file, as long as the directory's
// packed size tells.
#include "platform/zip/archive.h"

#include <algorithm>
#include <cstdint>

#include "platform/zip/unpacker.h"

namespace {

constexpr std::uint16_t encryptedFlag = 1;
constexpr std::uint16_t storedMethod = 0;
constexpr std::uint16_t deflatedMethod = 8;

struct UTArchive {
    UTHandle handle;
    ZADirectory directory;
};

std::int32_t UTReadArchive(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                           std::uint32_t& count) {
    return UTReadAt(*handle.parent, offset, destination, size, count);
}

std::uint64_t UTArchiveSize(UTHandle& handle) { return UTGetSize(*handle.parent); }

constexpr UTHandleKind archiveKind = {UTReadArchive, UTArchiveSize, nullptr};

// ---- Stored members ------------------------------------------------------------------------------------------------

struct UTStoredMember {
    UTHandle handle;
    std::uint64_t start;
    std::uint64_t size;       // the packed one
    std::uint64_t available;  // bytes of it that the file has
};

std::int32_t UTReadStored(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    const UTStoredMember& member = UTRecordOf<UTStoredMember>(handle);
    count = 0;
    if (size == 0 || offset >= member.size) return 0;
    if (offset >= member.available) return -1;  // the file was cut
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, member.available - offset));
    return UTReadAt(*handle.parent, member.start + offset, destination, wanted, count);
}

std::uint64_t UTStoredSize(UTHandle& handle) { return UTRecordOf<UTStoredMember>(handle).size; }

constexpr UTHandleKind storedKind = {UTReadStored, UTStoredSize, nullptr};

UTHandle* UTOpenStored(UTHandle& archive, const ZAEntry& entry, std::uint64_t dataOffset) {
    auto* const member = UTNewHandleRecord<UTStoredMember>(storedKind, &archive);
    if (member == nullptr) return nullptr;
    const std::uint64_t fileSize = UTGetSize(archive);
    member->start = dataOffset;
    member->size = entry.packedSize;
    member->available = dataOffset < fileSize ? std::min(entry.packedSize, fileSize - dataOffset) : 0;
    return &member->handle;
}

// ---- Deflated members ----------------------------------------------------------------------------------------------

struct UTPackedMember {
    UTHandle handle;
    std::uint64_t sizeTold;
    ZAUnpacker unpacker;
};

std::int32_t UTReadPacked(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    return ZAReadUnpacked(UTRecordOf<UTPackedMember>(handle).unpacker, offset, destination, size, count);
}

std::uint64_t UTPackedSize(UTHandle& handle) { return UTRecordOf<UTPackedMember>(handle).sizeTold; }

void UTReleasePacked(UTHandle& handle) { ZAStopUnpacker(UTRecordOf<UTPackedMember>(handle).unpacker); }

constexpr UTHandleKind packedKind = {UTReadPacked, UTPackedSize, UTReleasePacked};

UTHandle* UTOpenPacked(UTHandle& archive, const ZAEntry& entry, std::uint64_t dataOffset) {
    auto* const member = UTNewHandleRecord<UTPackedMember>(packedKind, &archive);
    if (member == nullptr) return nullptr;
    member->sizeTold = entry.size;
    if (ZAStartUnpacker(member->unpacker, archive, entry, dataOffset) == 0) return &member->handle;
    UTCloseHandle(member->handle);
    return nullptr;
}

// ---- Finding a member ----------------------------------------------------------------------------------------------

UTHandle* UTOpenEntry(UTHandle& archive, const ZAEntry& entry) {
    std::uint64_t dataOffset = 0;
    if ((entry.flags & encryptedFlag) != 0) return nullptr;
    if (!ZAFindData(archive, UTRecordOf<UTArchive>(archive).directory, entry, dataOffset)) return nullptr;
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
    if (name.size() >= IONameBytes) name.remove_prefix(name.size() - (IONameBytes - 1));
    std::copy(name.begin(), name.end(), member.name.narrow);
    member.name.narrow[name.size()] = '\0';
}

UTHandle* UTOpenNamed(UTHandle& archive, std::string_view name, bool anyCase) {
    if (!UTIsArchive(archive)) return nullptr;
    ZAEntry entry;
    if (!ZAFindEntry(archive, UTRecordOf<UTArchive>(archive).directory, name, anyCase, entry)) return nullptr;
    UTHandle* const member = UTOpenEntry(archive, entry);
    if (member != nullptr) UTNameMember(*member, name);
    return member;
}

// ---- Finding the directory -----------------------------------------------------------------------------------------

// Of an object that nobody sees being read the handle keeps what was found, and what certainly is not there: a package
// that turns out to be another archive is opened twice.
bool UTFindDirectory(UTHandle& file, ZADirectory& directory) {
    if (!UTIsUnseen(file)) return ZAFindDirectory(file, directory);
    if (file.archiveSearch == ZASearch::NotMade || file.archiveSearch == ZASearch::NotThere) {
        file.archiveSearch = ZASearchDirectory(file, file.archive);
    }
    if (file.archiveSearch != ZASearch::Found) return false;
    directory = file.archive;
    return true;
}

}  // namespace

UTHandle* UTOpenArchive(UTHandle& parent) {
    ZADirectory directory;
    if (!UTFindDirectory(parent, directory)) return nullptr;
    // The package routine leaves this handle open on one path, where its setting is refused. It is a child of the
    // file's handle, which frees it when it is closed.
    auto* const archive = UTNewHandleRecord<UTArchive>(archiveKind, &parent);
    if (archive == nullptr) return nullptr;
    archive->directory = directory;
    archive->handle.name = parent.name;
    return &archive->handle;
}

bool UTIsArchive(const UTHandle& handle) { return handle.kind == &archiveKind; }

bool UTHasMember(UTHandle& archive, std::string_view name) {
    ZAEntry entry;
    return UTIsArchive(archive) && ZAFindEntry(archive, UTRecordOf<UTArchive>(archive).directory, name, true, entry);
}

bool UTVisitMembers(UTHandle& archive, ZANameVisitor visit, void* context) {
    return UTIsArchive(archive) && ZAVisitNames(archive, UTRecordOf<UTArchive>(archive).directory, visit, context);
}

UTHandle* UTOpenMember(UTHandle& archive, const char* name) { return UTOpenNamed(archive, name, false); }

UTHandle* UTOpenMemberAnyCase(UTHandle& archive, std::string_view name) { return UTOpenNamed(archive, name, true); }
