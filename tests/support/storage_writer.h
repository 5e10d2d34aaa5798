// storage_writer.h - compound files (MS-CFB) for tests: whole ones of every layout, with their places told so that a
// test can damage them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// How the siblings of a storage hang together.
enum class StorageTree : std::uint8_t {
    Balanced,
    LeftChain,   // each entry's left sibling is the next one
    RightChain,  // its right sibling is
};

struct StorageLayout {
    std::uint16_t majorVersion = 3;
    std::uint16_t sectorShift = 9;
    std::uint32_t miniStreamCutoff = 4096;
    StorageTree tree = StorageTree::Balanced;
    bool scattered = false;  // no sector of a chain lies behind the one in front of it
};

// A compound file and where its parts lie. Entries are numbered as they were added, from 1; 0 is the root.
struct WrittenStorage {
    std::string bytes;
    StorageLayout layout;
    std::vector<std::uint32_t> fat;  // sectors of the FAT, in its order; the others likewise
    std::vector<std::uint32_t> difat;
    std::vector<std::uint32_t> directory;
    std::vector<std::uint32_t> miniFat;
    std::vector<std::uint32_t> miniStream;
    std::vector<std::vector<std::uint32_t>> streams;  // by entry: its sectors, or its mini sectors when it is small

    // Offsets in bytes.
    std::size_t SectorOffset(std::uint32_t sector) const;
    std::size_t MiniSectorOffset(std::uint32_t miniSector) const;
    std::size_t EntryOffset(std::uint32_t entry) const;
    std::size_t FatOffset(std::uint32_t sector) const;  // of the number that tells the next of a sector
    std::size_t MiniFatOffset(std::uint32_t miniSector) const;

    // Overwrites bytes, least significant first.
    void Put16(std::size_t offset, std::uint16_t value);
    void Put32(std::size_t offset, std::uint32_t value);
    void Put64(std::size_t offset, std::uint64_t value);
};

// Fields of the header and of an entry, for damage.
namespace storage_offsets {
inline constexpr std::size_t majorVersion = 26;
inline constexpr std::size_t byteOrder = 28;
inline constexpr std::size_t sectorShift = 30;
inline constexpr std::size_t miniSectorShift = 32;
inline constexpr std::size_t fatCount = 44;
inline constexpr std::size_t firstDirectorySector = 48;
inline constexpr std::size_t miniStreamCutoff = 56;
inline constexpr std::size_t firstMiniFatSector = 60;
inline constexpr std::size_t miniFatCount = 64;
inline constexpr std::size_t firstDifatSector = 68;
inline constexpr std::size_t difatCount = 72;
inline constexpr std::size_t fatSectors = 76;

inline constexpr std::size_t nameLength = 64;
inline constexpr std::size_t type = 66;
inline constexpr std::size_t left = 68;
inline constexpr std::size_t right = 72;
inline constexpr std::size_t child = 76;
inline constexpr std::size_t classId = 80;
inline constexpr std::size_t firstSector = 116;
inline constexpr std::size_t size = 120;
}  // namespace storage_offsets

inline constexpr std::uint32_t storageEndOfChain = 0xFFFFFFFE;
inline constexpr std::uint32_t storageNone = 0xFFFFFFFF;  // a free sector, or no entry

class StorageWriter {
 public:
    explicit StorageWriter(const StorageLayout& layout = {});

    // Add a child of a storage; return its entry's number. A name has at most 32 units.
    std::uint32_t AddStream(std::u16string_view name, std::string bytes, std::uint32_t parent = 0);
    std::uint32_t AddStorage(std::u16string_view name, std::uint32_t parent = 0);

    // Sets the class identifier of the root or of a storage, 16 bytes.
    void SetClassId(std::string_view classId, std::uint32_t entry = 0);

    WrittenStorage Write() const;

 private:
    struct Entry {
        std::u16string name;
        std::uint8_t type;
        std::string bytes;
        std::string classId;
        std::vector<std::uint32_t> children;
    };

    std::uint32_t Add(std::u16string_view name, std::uint8_t type, std::string bytes, std::uint32_t parent);

    StorageLayout layout_;
    std::vector<Entry> entries_;

    friend class StorageImage;
};

// The 8-bit characters of a text as 16-bit units.
std::u16string FIWiden(std::string_view text);
