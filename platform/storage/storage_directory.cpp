// storage_directory.cpp - entries of the directory, and the walk over the children of a storage.
//
// An entry, 128 bytes, all numbers little-endian (MS-CFB, section 2.6):
//
//   Offset  Size  Field
//        0    64  name, 16-bit units
//       64     2  bytes of the name, a closing NUL unit included; the name ends there or at its first NUL unit
//       66     1  type: 1 storage, 2 stream, 5 root
//       68     4  left sibling
//       72     4  right sibling
//       76     4  child of a storage
//       80    16  class identifier of a storage
//      116     4  first sector of a stream; of the mini stream in the root
//      120     8  size of a stream; on major version 3 the high half means nothing
#include "platform/storage/storage_directory.h"

#include <algorithm>

#include "reader/little_endian.h"

namespace {

constexpr std::uint32_t entryBytes = 128;
constexpr std::uint32_t entryShift = 7;
// Numbers from here on name no entry.
constexpr std::uint32_t firstReservedEntry = 0xFFFFFFFA;
// Sizes stay below this, so that an offset added to one does not overflow. No file is as large.
constexpr std::uint64_t largestSize = ~std::uint64_t{0} >> 1;

constexpr std::uint32_t hashStart = 2166136261;  // FNV-1a
constexpr std::uint32_t hashFactor = 16777619;

std::uint32_t CFHashUnit(std::uint32_t hash, std::uint16_t unit) { return (hash ^ unit) * hashFactor; }

std::uint32_t CFHashEntry(const CFEntry& entry) {
    std::uint32_t hash = CFHashUnit(hashStart, static_cast<std::uint16_t>(entry.type));
    for (std::uint32_t index = 0; index < entry.nameLength; ++index) hash = CFHashUnit(hash, entry.name[index]);
    return hash;
}

// A name longer than an entry's is hashed as far as an entry's may reach, and one unit on: it equals none.
std::uint32_t CFHashName(CFEntryType type, const char* name) {
    std::uint32_t hash = CFHashUnit(hashStart, static_cast<std::uint16_t>(type));
    for (std::size_t index = 0; index <= entryNameUnits && name[index] != '\0'; ++index) {
        hash = CFHashUnit(hash, static_cast<std::uint8_t>(name[index]));
    }
    return hash;
}

bool CFHasName(const CFEntry& entry, const char* name) {
    for (std::uint32_t index = 0; index < entry.nameLength; ++index) {
        // No unit of an entry's name is 0, so the comparison ends with the shorter name.
        if (static_cast<std::uint8_t>(name[index]) != entry.name[index]) return false;
    }
    return name[entry.nameLength] == '\0';
}

void CFReadEntryName(const std::uint8_t* bytes, CFEntry& entry) {
    const std::uint32_t room = std::min<std::uint32_t>(FILoadWordLE(bytes + 64) / 2, entryNameUnits);
    entry.nameLength = 0;
    while (entry.nameLength < room) {
        const std::uint16_t unit = FILoadWordLE(bytes + std::size_t{entry.nameLength} * 2);
        if (unit == 0) break;
        entry.name[entry.nameLength++] = unit;
    }
}

void CFPushEntry(CFChildren& children, std::uint32_t number) {
    if (number < firstReservedEntry && !children.seen.Holds(number)) children.pending.push_back(number);
}

// Walks one entry further. Returns false at the end of the walk.
bool CFWalkOn(CFSectors& sectors, CFChain& directory, CFChildren& children) {
    if (children.pending.empty() || children.entriesLeft == 0) return false;
    const std::uint32_t number = children.pending.back();
    children.pending.pop_back();
    CFEntry entry;
    if (children.seen.Holds(number) || !CFReadEntry(sectors, directory, number, entry)) return true;
    static_cast<void>(children.seen.Add(number));
    --children.entriesLeft;
    if (entry.type == CFEntryType::Storage || entry.type == CFEntryType::Stream) {
        children.known.push_back({number, CFHashEntry(entry)});
    }
    // An entry that is neither may still lead to its siblings.
    CFPushEntry(children, entry.right);
    CFPushEntry(children, entry.left);
    return true;
}

}  // namespace

bool CFReadEntry(CFSectors& sectors, CFChain& directory, std::uint32_t number, CFEntry& entry) {
    const std::uint32_t placeShift = sectors.header.sectorShift - entryShift;
    const std::uint32_t place = number & ((1U << placeShift) - 1);
    CFStretch stretch = {};
    if (!CFFindStretch(sectors, directory, number >> placeShift, 1, stretch)) return false;
    const std::uint64_t offset = CFSectorOffset(sectors, stretch.sector) + std::uint64_t{place} * entryBytes;
    const std::uint8_t* const bytes = CFViewFile(sectors, offset, entryBytes);
    if (bytes == nullptr) return false;
    CFReadEntryName(bytes, entry);
    entry.type = static_cast<CFEntryType>(bytes[66]);
    entry.left = FILoadDWordLE(bytes + 68);
    entry.right = FILoadDWordLE(bytes + 72);
    entry.child = FILoadDWordLE(bytes + 76);
    std::copy_n(bytes + 80, IOClassIdBytes, entry.classId);
    entry.firstSector = FILoadDWordLE(bytes + 116);
    entry.size = FILoadDWordLE(bytes + 120);
    if (sectors.header.majorVersion > 3) entry.size |= std::uint64_t{FILoadDWordLE(bytes + 124)} << 32;
    entry.size = std::min(entry.size, largestSize);
    return true;
}

void CFStartChildren(CFChildren& children, std::uint32_t child) {
    constexpr std::size_t usualChildren = 16;
    children.pending.reserve(usualChildren);
    children.known.reserve(usualChildren);
    CFPushEntry(children, child);
}

bool CFFindChild(CFSectors& sectors, CFChain& directory, CFChildren& children, CFEntryType type, const char* name,
                 CFEntry& entry) {
    const std::uint32_t hash = CFHashName(type, name);
    std::size_t looked = 0;
    do {
        for (; looked < children.known.size(); ++looked) {
            const CFKnownChild& known = children.known[looked];
            if (known.hash == hash && CFReadEntry(sectors, directory, known.entryNumber, entry) && entry.type == type &&
                CFHasName(entry, name)) {
                return true;
            }
        }
    } while (CFWalkOn(sectors, directory, children));
    return false;
}

bool CFFindChildAt(CFSectors& sectors, CFChain& directory, CFChildren& children, std::size_t place, CFEntry& entry) {
    while (children.known.size() <= place) {
        if (!CFWalkOn(sectors, directory, children)) return false;
    }
    return CFReadEntry(sectors, directory, children.known[place].entryNumber, entry);
}
