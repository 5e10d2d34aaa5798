// storage_directory.h - the directory of a compound file: its entries, and the search for a storage's children by name.
//
// The directory is a chain of 128-byte entries, numbered from 0. Entry 0 is the root. A storage's entry names one
// child; each child names a left and a right sibling, so that the children form a binary tree. Its order and its
// colours are of no use here: writers get them wrong, so a search walks the tree whole, each entry before its left and
// its right one. A storage's tree is walked once, as far as the search needs, and what it met is kept: 8 bytes for each
// child. A name that is not there costs one walk, the next one none. The walk ends after mostEntriesOfStorage entries,
// so that what is kept stays below 20 MiB however large the directory is.
//
// All functions throw std::bad_alloc when the heap is exhausted.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/handle.h"
#include "platform/heap_allocator.h"
#include "platform/storage/number_set.h"
#include "platform/storage/storage_sectors.h"

inline constexpr std::uint32_t rootEntryNumber = 0;
inline constexpr std::size_t entryNameUnits = 32;

// The walk over a storage's children looks at so many entries, of whatever type; what lies behind them is not there.
inline constexpr std::uint32_t mostEntriesOfStorage = 1U << 20;

// The types of entries. Other values mark entries that are not in use, or damage.
enum class CFEntryType : std::uint8_t { Storage = 1, Stream = 2, Root = 5 };

// An entry of the directory.
struct CFEntry {
    std::uint16_t name[entryNameUnits];
    std::uint32_t nameLength;  // in units
    CFEntryType type;
    std::uint32_t left;  // numbers of entries, or a number that names none
    std::uint32_t right;
    std::uint32_t child;
    std::uint8_t classId[IOClassIdBytes];  // as it lies in the file
    std::uint32_t firstSector;
    std::uint64_t size;  // of a stream, in bytes
};

// A child that a walk has met.
struct CFKnownChild {
    std::uint32_t entryNumber;
    std::uint32_t hash;  // of its type and name
};

// A walk over a storage's children, which stops where a search was satisfied and goes on with the next.
struct CFChildren {
    UTVector<std::uint32_t> pending;  // entries to walk, the next one last
    UTNumberSet seen;
    std::uint32_t entriesLeft = mostEntriesOfStorage;  // to be looked at
    UTVector<CFKnownChild> known;                      // streams and storages, in the order of the walk
};

// Reads an entry. Returns false when the directory ends in front of it.
bool CFReadEntry(CFSectors& sectors, CFChain& directory, std::uint32_t number, CFEntry& entry);

// Makes the walk over the children of a storage ready; child is what its entry names.
void CFStartChildren(CFChildren& children, std::uint32_t child);

// Finds a child by its whole name, with case, each 8-bit character standing for the 16-bit unit of the same value. Of
// two children of this type and name the first in the walk is meant. Returns false when there is none.
bool CFFindChild(CFSectors& sectors, CFChain& directory, CFChildren& children, CFEntryType type, const char* name,
                 CFEntry& entry);

// Finds a child by its place in the walk, counted from 0 over streams and storages.
bool CFFindChildAt(CFSectors& sectors, CFChain& directory, CFChildren& children, std::size_t place, CFEntry& entry);
