// storage_sectors.cpp - reading the header, following chains, and the pieces of the file kept at hand.
//
// The header, 512 bytes, all numbers little-endian (MS-CFB, section 2.2):
//
//   Offset  Size  Field                    Accepted
//        0     8  signature                D0 CF 11 E0 A1 B1 1A E1
//       26     2  major version            3 or 4
//       28     2  byte order               FFFE
//       30     2  sector shift             9 or 12
//       32     2  mini sector shift        6
//       48     4  first directory sector   any
//       56     4  mini stream cutoff       any
//       60     4  first mini FAT sector    any
//       68     4  first DIFAT sector       any
//       76   436  first 109 FAT sectors    any
#include "platform/storage/storage_sectors.h"

#include <algorithm>

#include "reader/little_endian.h"

namespace {

constexpr std::uint32_t headerBytes = 512;
constexpr std::uint8_t signature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr std::uint16_t littleEndian = 0xFFFE;
constexpr std::uint16_t smallSectorShift = 9;
constexpr std::uint16_t largeSectorShift = 12;
constexpr std::uint16_t miniSectorShift = 6;
constexpr std::uint32_t numberBytes = sizeof(std::uint32_t);
constexpr std::uint32_t numberShift = 2;  // a sector holds its size shifted right by this many numbers

std::uint32_t CFUnitShift(const CFSectors& sectors, CFTable table) {
    return table == CFTable::MiniFat ? miniSectorShift : sectors.header.sectorShift;
}

// The number at an offset of the file.
bool CFReadNumber(CFSectors& sectors, std::uint64_t offset, std::uint32_t& number) {
    const std::uint8_t* const bytes = CFViewFile(sectors, offset, numberBytes);
    if (bytes == nullptr) return false;
    number = FILoadDWordLE(bytes);
    return true;
}

// The number at a place in the sectors of a table, which are a chain themselves.
bool CFReadTable(CFSectors& sectors, CFChain& tableChain, std::uint32_t sectorInChain, std::uint32_t numberInSector,
                 std::uint32_t& number) {
    CFStretch stretch = {};
    if (!CFFindStretch(sectors, tableChain, sectorInChain, 1, stretch)) return false;
    return CFReadNumber(sectors, CFSectorOffset(sectors, stretch.sector) + std::uint64_t{numberInSector} * numberBytes,
                        number);
}

// How many of a sector's bytes the file holds; 0 for a number that names no sector.
std::uint64_t CFBytesOfSector(CFSectors& sectors, CFTable table, std::uint32_t sector) {
    if (sector >= firstReservedSector) return 0;
    std::uint64_t offset = 0;
    if (table == CFTable::MiniFat) {
        const std::uint64_t place = std::uint64_t{sector} << miniSectorShift;
        const std::uint32_t shift = sectors.header.sectorShift;
        CFStretch stretch = {};
        if (!CFFindStretch(sectors, sectors.miniStream, place >> shift, 1, stretch)) return 0;
        offset = CFSectorOffset(sectors, stretch.sector) + (place & ((std::uint64_t{1} << shift) - 1));
    } else {
        offset = CFSectorOffset(sectors, sector);
    }
    if (offset >= sectors.fileSize) return 0;
    return std::min(sectors.fileSize - offset, std::uint64_t{1} << CFUnitShift(sectors, table));
}

bool CFFindFatSector(CFSectors& sectors, std::uint32_t index, std::uint32_t& sector) {
    if (index < headerFatSectors) {
        sector = sectors.header.fatSectors[index];
        return true;
    }
    // The last number in a sector of the DIFAT is not one of the FAT's sectors but the next of the DIFAT's.
    const std::uint32_t numbersPerSector = (1U << (sectors.header.sectorShift - numberShift)) - 1;
    const std::uint32_t further = index - static_cast<std::uint32_t>(headerFatSectors);
    return CFReadTable(sectors, sectors.difat, further / numbersPerSector, further % numbersPerSector, sector);
}

// What a table tells of a sector: the number of the next, or a number that names none. Returns false when the place in
// the table can't be read.
bool CFFindNext(CFSectors& sectors, CFTable table, std::uint32_t sector, std::uint32_t& next) {
    const std::uint32_t placeShift = sectors.header.sectorShift - numberShift;
    const std::uint32_t lastPlace = (1U << placeShift) - 1;
    switch (table) {
        case CFTable::Fat: {
            std::uint32_t fatSector = 0;
            if (!CFFindFatSector(sectors, sector >> placeShift, fatSector)) return false;
            if (CFBytesOfSector(sectors, CFTable::Fat, fatSector) == 0) return false;
            return CFReadNumber(
                sectors, CFSectorOffset(sectors, fatSector) + std::uint64_t{sector & lastPlace} * numberBytes, next);
        }
        case CFTable::Difat:
            return CFReadNumber(sectors, CFSectorOffset(sectors, sector) + std::uint64_t{lastPlace} * numberBytes,
                                next);
        case CFTable::MiniFat:
            return CFReadTable(sectors, sectors.miniFat, sector >> placeShift, sector & lastPlace, next);
    }
    return false;
}

std::uint32_t CFLastSector(const CFChain& chain) {
    const CFRun& run = chain.runs.back();
    return run.sector + (chain.length - 1 - run.position);
}

// Takes in one more sector of a chain. Returns false when there is none.
bool CFExtendChain(CFSectors& sectors, CFChain& chain) {
    if (chain.complete) return false;
    chain.complete = true;  // unless what follows finds another
    std::uint32_t sector = chain.first;
    if (chain.length > 0 && !CFFindNext(sectors, chain.table, CFLastSector(chain), sector)) return false;
    const std::uint64_t bytes = CFBytesOfSector(sectors, chain.table, sector);
    if (bytes == 0 || !chain.seen.Add(sector)) return false;
    if (chain.length == 0 || sector != CFLastSector(chain) + 1) chain.runs.push_back({chain.length, sector});
    ++chain.length;
    chain.complete = bytes >> CFUnitShift(sectors, chain.table) == 0;
    return true;
}

// The run that holds a position which is known.
std::size_t CFFindRun(const CFChain& chain, std::uint64_t position) {
    const std::size_t last = chain.runs.size() - 1;
    if (position >= chain.runs[last].position) return last;
    const auto behind = std::upper_bound(chain.runs.begin(), chain.runs.end(), position,
                                         [](std::uint64_t wanted, const CFRun& run) { return wanted < run.position; });
    return static_cast<std::size_t>(behind - chain.runs.begin()) - 1;
}

// Reads a stretch's bytes, from the file or, when its sectors are mini sectors, from the mini stream.
std::int32_t CFReadStretch(CFSectors& sectors, CFTable table, std::uint32_t sector, std::uint64_t within,
                           std::uint8_t* destination, std::uint32_t size, std::uint32_t& count) {
    if (table == CFTable::MiniFat) {
        const std::uint64_t place = (std::uint64_t{sector} << miniSectorShift) + within;
        return CFReadChain(sectors, sectors.miniStream, place, destination, size, count);
    }
    return UTReadAt(*sectors.file, CFSectorOffset(sectors, sector) + within, destination, size, count);
}

}  // namespace

bool CFReadHeader(UTHandle& file, CFHeader& header) {
    std::uint8_t bytes[headerBytes];
    if (!UTReadFully(file, 0, bytes, headerBytes)) return false;
    if (!std::equal(std::begin(signature), std::end(signature), bytes)) return false;
    header.majorVersion = FILoadWordLE(bytes + 26);
    header.sectorShift = FILoadWordLE(bytes + 30);
    header.firstDirectorySector = FILoadDWordLE(bytes + 48);
    header.miniStreamCutoff = FILoadDWordLE(bytes + 56);
    header.firstMiniFatSector = FILoadDWordLE(bytes + 60);
    header.firstDifatSector = FILoadDWordLE(bytes + 68);
    for (std::size_t index = 0; index < headerFatSectors; ++index) {
        header.fatSectors[index] = FILoadDWordLE(bytes + 76 + index * numberBytes);
    }
    return (header.majorVersion == 3 || header.majorVersion == 4) && FILoadWordLE(bytes + 28) == littleEndian &&
           (header.sectorShift == smallSectorShift || header.sectorShift == largeSectorShift) &&
           FILoadWordLE(bytes + 32) == miniSectorShift;
}

void CFStartSectors(CFSectors& sectors, UTHandle& file, const CFHeader& header) {
    sectors.file = &file;
    sectors.fileSize = UTGetSize(file);
    sectors.header = header;
    sectors.difat.table = CFTable::Difat;
    sectors.difat.first = header.firstDifatSector;
    sectors.miniFat.first = header.firstMiniFatSector;
}

const std::uint8_t* CFViewFile(CFSectors& sectors, std::uint64_t offset, std::uint32_t size) {
    const std::uint64_t number = offset / CFBlock::size;
    const auto within = static_cast<std::uint32_t>(offset % CFBlock::size);
    auto block = std::find_if(std::begin(sectors.blocks), std::end(sectors.blocks),
                              [number](const CFBlock& held) { return held.number == number; });
    if (block == std::end(sectors.blocks)) {
        block =
            std::min_element(std::begin(sectors.blocks), std::end(sectors.blocks),
                             [](const CFBlock& left, const CFBlock& right) { return left.lastUse < right.lastUse; });
        block->number = CFBlock::none;
        if (UTReadAt(*sectors.file, number * CFBlock::size, block->bytes, CFBlock::size, block->filled) != 0) {
            return nullptr;
        }
        block->number = number;
    }
    block->lastUse = ++sectors.uses;
    return within + size <= block->filled ? block->bytes + within : nullptr;
}

bool CFFindStretch(CFSectors& sectors, CFChain& chain, std::uint64_t position, std::uint64_t wanted,
                   CFStretch& stretch) {
    while (chain.length <= position) {
        if (!CFExtendChain(sectors, chain)) return false;
    }
    const std::size_t index = CFFindRun(chain, position);
    // The run that the chain ends in so far may go on.
    while (index + 1 == chain.runs.size() && chain.length - position < wanted && CFExtendChain(sectors, chain)) {
    }
    const std::uint32_t end = index + 1 < chain.runs.size() ? chain.runs[index + 1].position : chain.length;
    stretch.sector = chain.runs[index].sector + static_cast<std::uint32_t>(position - chain.runs[index].position);
    stretch.count = end - position;
    return true;
}

std::int32_t CFReadChain(CFSectors& sectors, CFChain& chain, std::uint64_t offset, std::uint8_t* destination,
                         std::uint32_t size, std::uint32_t& count) {
    const std::uint32_t shift = CFUnitShift(sectors, chain.table);
    const std::uint64_t unit = std::uint64_t{1} << shift;
    count = 0;
    while (count < size) {
        const std::uint64_t within = (offset + count) & (unit - 1);
        const std::uint64_t wanted = (within + (size - count) + unit - 1) >> shift;
        CFStretch stretch = {};
        if (!CFFindStretch(sectors, chain, (offset + count) >> shift, wanted, stretch)) return 0;
        const auto there =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(stretch.count * unit - within, size - count));
        std::uint32_t came = 0;
        const std::int32_t status =
            CFReadStretch(sectors, chain.table, stretch.sector, within, destination + count, there, came);
        count += came;
        if (status != 0) return count > 0 ? 0 : status;
        if (came < there) return 0;
    }
    return 0;
}
