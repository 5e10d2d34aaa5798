// zip_entry.h - what is kept of a ZIP archive: the place of its directory, and what an entry of it tells.
#pragma once

#include <cstddef>
#include <cstdint>

// What an entry tells about its member.
struct ZAEntry {
    std::uint16_t flags;
    std::uint16_t method;        // 0: stored; 8: deflated
    std::uint64_t packedSize;    // bytes in the archive
    std::uint64_t size;          // bytes unpacked
    std::uint64_t headerOffset;  // of the local header, as the entry tells it
};

// Names that are noted: see zip_directory.cpp.
inline constexpr std::size_t notedMembers = 5;

// The first entry of a name that is asked for in most archives, noted when the directory was walked.
struct ZANote {
    bool there;
    ZAEntry entry;
};

// Where the directory stands. All offsets in it are told from the archive's start, which is not the file's start when
// something was put in front of a finished archive; shift makes the one of the other.
struct ZADirectory {
    std::uint64_t start;  // of the first entry, in the file
    std::uint64_t size;   // in bytes
    std::uint64_t shift;  // to be added to an offset that an entry tells, with wrap-around
    bool noted;           // whether the notes were made; they are in files whose reads nobody sees
    ZANote notes[notedMembers];
};

// What a look for a directory found, as a handle keeps it.
enum class ZASearch : std::uint8_t {
    NotMade,
    NoEndRecord,  // all bytes in which one could stand were read, and there is none
    NotThere,     // an end record leads to no directory, or something could not be read
    Found,
};
