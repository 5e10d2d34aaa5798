// compound_storage.cpp - storages and the handles of their streams and sub-storages.
#include "platform/storage/compound_storage.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "platform/heap_allocator.h"
#include "platform/storage/storage_directory.h"
#include "platform/storage/storage_sectors.h"

namespace {

// What the storages of one file share.
struct CFVolume {
    CFSectors sectors;
    CFChain directory;
};

}  // namespace

struct CFStorage : UTAttachment {
    CFVolume* volume;
    bool ownsVolume;  // the storage of the whole file does; it outlives those inside it
    std::uint8_t classId[IOClassIdBytes];
    CFChildren children;
};

namespace {

// Runs a function that may meet the end of the heap; then the answer is that of an object which is not there.
template <typename Function>
auto CFWithoutThrowing(decltype(std::declval<Function>()()) notThere, Function function) noexcept {
    try {
        return function();
    } catch (const std::exception&) {
        return notThere;
    }
}

// Ends a storage. The handles opened in it were closed before.
void CFEndStorage(UTAttachment& attachment) {
    CFStorage& storage = static_cast<CFStorage&>(attachment);
    if (storage.ownsVolume) UTDeleteRecord(*storage.volume);
    UTDeleteRecord(storage);
}

// A storage over a volume; the storage owns it if ownsVolume is true. Returns null when the heap is exhausted.
CFStorage* CFNewStorage(CFVolume& volume, bool ownsVolume, const CFEntry& entry) {
    auto* const storage = UTNewRecord<CFStorage>();
    if (storage == nullptr) return nullptr;
    storage->end = CFEndStorage;
    storage->volume = &volume;
    storage->ownsVolume = false;
    std::copy(std::begin(entry.classId), std::end(entry.classId), storage->classId);
    const bool started = CFWithoutThrowing(false, [&] {
        CFStartChildren(storage->children, entry.child);
        return true;
    });
    if (!started) {
        UTDeleteRecord(*storage);
        return nullptr;
    }
    storage->ownsVolume = ownsVolume;
    return storage;
}

// Reads the root entry, which tells where the mini stream starts.
bool CFReadRoot(CFVolume& volume, CFEntry& root) {
    if (!CFReadEntry(volume.sectors, volume.directory, rootEntryNumber, root) || root.type != CFEntryType::Root) {
        return false;
    }
    volume.sectors.miniStream.first = root.firstSector;
    return true;
}

// The storage in the bytes of an object, or null when they are something else.
CFStorage* CFOpenStorage(UTHandle& bytes) {
    CFHeader header;
    if (!CFReadHeader(bytes, header)) return nullptr;
    auto* const volume = UTNewRecord<CFVolume>();
    if (volume == nullptr) return nullptr;
    CFStartSectors(volume->sectors, bytes, header);
    volume->directory.first = header.firstDirectorySector;
    CFEntry root;
    CFStorage* storage = nullptr;
    if (CFWithoutThrowing(false, [&] { return CFReadRoot(*volume, root); }))
        storage = CFNewStorage(*volume, true, root);
    if (storage == nullptr) UTDeleteRecord(*volume);
    return storage;
}

// ---- Streams -------------------------------------------------------------------------------------------------------

struct CFStream {
    UTHandle handle;
    CFSectors* sectors;
    std::uint64_t size;
    CFChain* chain;
};

std::int32_t CFReadStream(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    const CFStream& stream = UTRecordOf<CFStream>(handle);
    count = 0;
    if (offset >= stream.size) return 0;
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, stream.size - offset));
    return CFWithoutThrowing(-1, [&] {
        return CFReadChain(*stream.sectors, *stream.chain, offset, static_cast<std::uint8_t*>(destination), wanted,
                           count);
    });
}

std::uint64_t CFStreamSize(UTHandle& handle) { return UTRecordOf<CFStream>(handle).size; }

void CFReleaseStream(UTHandle& handle) { UTDeleteRecord(*UTRecordOf<CFStream>(handle).chain); }

constexpr UTHandleKind streamKind = {CFReadStream, CFStreamSize, CFReleaseStream};

UTHandle* CFOpenStreamEntry(UTHandle& parent, CFVolume& volume, const CFEntry& entry) {
    auto* const chain = UTNewRecord<CFChain>();
    if (chain == nullptr) return nullptr;
    auto* const stream = UTNewHandleRecord<CFStream>(streamKind, &parent);
    if (stream == nullptr) {
        UTDeleteRecord(*chain);
        return nullptr;
    }
    chain->table = entry.size < volume.sectors.header.miniStreamCutoff ? CFTable::MiniFat : CFTable::Fat;
    chain->first = entry.firstSector;
    stream->sectors = &volume.sectors;
    stream->size = entry.size;
    stream->chain = chain;
    return &stream->handle;
}

// ---- Sub-storages --------------------------------------------------------------------------------------------------

// Whoever reads a sub-storage as bytes means the file, as with the file's own storage.
UTHandle& CFFileOfSubStorage(UTHandle& handle) {
    return *static_cast<CFStorage*>(handle.storage)->volume->sectors.file;
}

std::int32_t CFReadSubStorage(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                              std::uint32_t& count) {
    return UTReadAt(CFFileOfSubStorage(handle), offset, destination, size, count);
}

std::uint64_t CFSubStorageSize(UTHandle& handle) { return UTGetSize(CFFileOfSubStorage(handle)); }

constexpr UTHandleKind subStorageKind = {CFReadSubStorage, CFSubStorageSize, nullptr};

UTHandle* CFOpenStorageEntry(UTHandle& parent, CFVolume& volume, const CFEntry& entry) {
    CFStorage* const storage = CFNewStorage(volume, false, entry);
    if (storage == nullptr) return nullptr;
    UTHandle* const handle = UTNewHandle(subStorageKind, sizeof(UTHandle), &parent);
    if (handle == nullptr) {
        CFEndStorage(*storage);
        return nullptr;
    }
    handle->storageLooked = true;
    handle->storage = storage;
    return handle;
}

// ---- Look-up -------------------------------------------------------------------------------------------------------

// In 8-bit characters when each unit fits into one, as names are looked up; otherwise in 16-bit units.
void CFSetName(UTHandleName& name, const CFEntry& entry) {
    static_assert(entryNameUnits < std::size(UTHandleName{}.units));
    const auto* const end = entry.name + entry.nameLength;
    name.wide = std::any_of(entry.name, end, [](std::uint16_t unit) { return unit > 0xFF; });
    if (name.wide) {
        *std::copy(entry.name, end, name.units) = 0;
    } else {
        *std::transform(entry.name, end, name.narrow, [](std::uint16_t unit) { return static_cast<char>(unit); }) =
            '\0';
    }
}

UTHandle* CFOpenEntry(UTHandle& parent, CFVolume& volume, const CFEntry& entry) {
    UTHandle* const handle = entry.type == CFEntryType::Storage ? CFOpenStorageEntry(parent, volume, entry)
                                                                : CFOpenStreamEntry(parent, volume, entry);
    if (handle != nullptr) CFSetName(handle->name, entry);
    return handle;
}

UTHandle* CFOpenNamed(UTHandle& parent, CFEntryType type, const char* name) {
    CFStorage* const storage = CFFindStorage(parent);
    if (storage == nullptr) return nullptr;
    CFVolume& volume = *storage->volume;
    CFEntry entry;
    const bool found = CFWithoutThrowing(
        false, [&] { return CFFindChild(volume.sectors, volume.directory, storage->children, type, name, entry); });
    return found ? CFOpenEntry(parent, volume, entry) : nullptr;
}

bool CFFindPlace(CFStorage& storage, std::size_t place, CFEntry& entry) {
    return CFWithoutThrowing(false, [&] {
        return CFFindChildAt(storage.volume->sectors, storage.volume->directory, storage.children, place, entry);
    });
}

}  // namespace

CFStorage* CFFindStorage(UTHandle& handle) {
    if (!handle.storageLooked) {
        handle.storageLooked = true;
        handle.storage = CFOpenStorage(handle);
    }
    return static_cast<CFStorage*>(handle.storage);
}

std::int32_t CFGetClassId(const CFStorage& storage, std::uint8_t* classId) {
    std::copy(std::begin(storage.classId), std::end(storage.classId), classId);
    return 0;
}

UTHandle* UTOpenStream(UTHandle& parent, const char* name) { return CFOpenNamed(parent, CFEntryType::Stream, name); }

UTHandle* UTOpenSubStorage(UTHandle& parent, const char* name) {
    return CFOpenNamed(parent, CFEntryType::Storage, name);
}

bool CFGetChild(UTHandle& parent, std::size_t place, CFChild& child) {
    CFStorage* const storage = CFFindStorage(parent);
    CFEntry entry;
    if (storage == nullptr || !CFFindPlace(*storage, place, entry)) return false;
    std::copy_n(entry.name, entry.nameLength, child.name);
    child.nameLength = entry.nameLength;
    child.isStorage = entry.type == CFEntryType::Storage;
    child.size = entry.type == CFEntryType::Stream ? entry.size : 0;
    return true;
}

UTHandle* UTOpenChild(UTHandle& parent, std::size_t place) {
    CFStorage* const storage = CFFindStorage(parent);
    CFEntry entry;
    if (storage == nullptr || !CFFindPlace(*storage, place, entry)) return nullptr;
    return CFOpenEntry(parent, *storage->volume, entry);
}
