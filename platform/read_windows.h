// read_windows.h - bytes of an object held and read ahead, so that many small reads cost few calls.
//
// The object's head is kept in a window. An identification makes many small reads near the start; they cost one call
// between them, so that a file which is decided there costs open, fstat, one pread and close.
//
// Behind the head two more windows serve the small reads of an object that tells its size: one its tail, one the place that
// was read last, which grows while the reads go on from there. They are nothing but bytes read ahead. What they do not
// hold, or could not get, is read for itself, so that each read delivers and fails as if there were none.
#pragma once

#include <cstdint>

#include "platform/handle.h"

// The far windows' own memory. Routines that look far into a file look at places close together, and at the last few
// kilobytes.
inline constexpr std::uint32_t farWindowBytes = 8192;

// A stretch of the file behind its head that was read ahead.
struct UTFarWindow {
    std::uint64_t start;
    std::uint32_t filled;  // 0: it holds nothing
    std::uint8_t* bytes;
};

// Reads once: up to size bytes at an offset, and tells how many came. Returns 0, or another status for a failure.
using UTReadOnce = std::int32_t (*)(void* object, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                                    std::uint32_t& came);

// An object as its windows see it.
struct UTReadObject {
    UTReadOnce readOnce;
    void* object;
    std::uint64_t size;
    bool sizeKnown;             // false for files that tell no size but may hold bytes, as under /proc
    std::uint32_t firstStep;    // bytes that are read ahead at a new place; a power of two
    std::uint32_t largestStep;  // what they grow to, by doubling, while reads go on there; at least farWindowBytes
    std::uint32_t largeRead;    // a read of at least as many bytes goes straight to where the caller wants them
};

// An object that is read, and what of it is held.
struct UTReadWindows {
    UTReadObject object;
    UTReadCost cost;  // of the reads so far
    bool windowRead;
    bool windowFailed;  // whether the window ends in front of bytes that could not be read
    std::uint32_t windowFilled;
    UTFarWindow place;        // where was read last; its bytes are placeBytes, or a block of the heap once it has grown
    UTFarWindow tail;         // ends with the file
    std::uint32_t placeStep;  // bytes that were wanted for the place's window
    std::uint64_t behindLast;  // where the read before this one ended
    std::uint8_t window[UTHeadBytes];
    std::uint8_t placeBytes[farWindowBytes];
    std::uint8_t tailBytes[farWindowBytes];
};

// Nothing is held at first.
void UTStartWindows(UTReadWindows& file, const UTReadObject& object);

void UTEndWindows(const UTReadWindows& file);

// Reads as UTHandleKind::readAt does.
std::int32_t UTReadThroughWindows(UTReadWindows& file, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count);

// Hands out the head as UTHandleKind::head does.
bool UTHeadOfWindows(UTReadWindows& file, UTHead& head);
