// storage_sectors.h - the sectors of a compound file: its header, its allocation tables, and the chains of sectors.
//
// A compound file (MS-CFB) is cut into sectors of 512 or 4,096 bytes; sector n lies at (n + 1) times the sector size,
// behind the header. What belongs together is a chain: an allocation table tells for each sector which one follows.
//
//   Table     Tells the next of  Found through
//   FAT       sectors            109 sector numbers in the header, further ones in the DIFAT
//   DIFAT     its own sectors    the last number in each of its sectors
//   mini FAT  mini sectors       a chain of the FAT; the mini sectors, 64 bytes each, fill the mini stream
//
// Nothing here is read before it is needed, and nothing is believed: a number that names no sector of the file, a
// sector that the chain has met already and a table that can't be read end a chain in front of it; the file's last
// sector, when the file ends inside it, ends a chain behind its bytes.
//
// Memory follows what was looked at: a chain costs 8 bytes for each run of neighbouring sectors in it and a bit for
// each sector, and takes in a sector only once however it is moved about in. All functions throw std::bad_alloc when
// the heap is exhausted; then what could not be noted is not there.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/handle.h"
#include "platform/heap_allocator.h"
#include "platform/storage/number_set.h"

// Numbers from here on name no sector: they mark ends, free sectors and sectors of the tables.
inline constexpr std::uint32_t firstReservedSector = 0xFFFFFFFA;

inline constexpr std::size_t headerFatSectors = 109;

// What the header tells. Its counts of sectors are left alone: they are often wrong and never needed.
struct CFHeader {
    std::uint16_t majorVersion;  // 3 or 4
    std::uint16_t sectorShift;   // 9 or 12: sectors of 512 or 4,096 bytes, with either version
    std::uint32_t firstDirectorySector;
    std::uint32_t miniStreamCutoff;  // a stream of fewer bytes lies in the mini stream
    std::uint32_t firstMiniFatSector;
    std::uint32_t firstDifatSector;
    std::uint32_t fatSectors[headerFatSectors];
};

// The table that links the sectors of a chain.
enum class CFTable : std::uint8_t { Fat, Difat, MiniFat };

// Neighbouring sectors of a chain that are neighbours in the file too. The run ends where the next one starts.
struct CFRun {
    std::uint32_t position;  // the place of the first sector in the chain, counted from 0
    std::uint32_t sector;
};

// The sectors of a chain in their order, as far as they were asked for.
struct CFChain {
    CFTable table = CFTable::Fat;
    std::uint32_t first = firstReservedSector;  // the first sector, as the file tells it
    std::uint32_t length = 0;                   // sectors known
    bool complete = false;                      // whether those are all
    UTVector<CFRun> runs;
    UTNumberSet seen;
};

// A piece of the file that was read last; the tables and the directory are looked at through a few of them.
struct CFBlock {
    static constexpr std::uint32_t size = 4096;
    static constexpr std::uint64_t none = ~std::uint64_t{0};

    std::uint64_t number = none;  // the piece's offset in units of size
    std::uint64_t lastUse = 0;
    std::uint32_t filled = 0;
    std::uint8_t bytes[size];
};

// The sectors of one file.
struct CFSectors {
    UTHandle* file;
    std::uint64_t fileSize;
    CFHeader header;
    CFChain difat;
    CFChain miniFat;
    CFChain miniStream;
    std::uint64_t uses = 0;
    CFBlock blocks[8];
};

// A piece of a chain that lies in one piece.
struct CFStretch {
    std::uint32_t sector;  // its first sector
    std::uint64_t count;   // sectors, at least 1
};

// Reads the header of a compound file. Returns false when the object's bytes are something else, or a kind of compound
// file that is not known.
bool CFReadHeader(UTHandle& file, CFHeader& header);

// Makes the sectors of a file ready. The mini stream's first sector stands in the root entry; the caller sets it.
void CFStartSectors(CFSectors& sectors, UTHandle& file, const CFHeader& header);

// The offset of a sector in the file, which may end in front of it.
inline std::uint64_t CFSectorOffset(const CFSectors& sectors, std::uint32_t sector) {
    return (std::uint64_t{sector} + 1) << sectors.header.sectorShift;
}

// Looks at size bytes of the file. They must not cross a multiple of CFBlock::size, and stay as they are until the next
// call of any function here. Returns null when the file ends in front of the last of them or can't be read.
const std::uint8_t* CFViewFile(CFSectors& sectors, std::uint64_t offset, std::uint32_t size);

// Finds the sector at a position of a chain, counted from 0, with up to wanted (at least 1) sectors that follow it in
// the chain and in the file. Returns false when the chain ends in front of the position.
bool CFFindStretch(CFSectors& sectors, CFChain& chain, std::uint64_t position, std::uint64_t wanted,
                   CFStretch& stretch);

// Reads up to size bytes at an offset into the chain's bytes; count receives what came before the chain or the file
// ended. Returns 0, or another status when the file could not be read and nothing came.
std::int32_t CFReadChain(CFSectors& sectors, CFChain& chain, std::uint64_t offset, std::uint8_t* destination,
                         std::uint32_t size, std::uint32_t& count);
