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

// The far windows. Routines that look far into a file look at places close together, and at the last few kilobytes.
inline constexpr std::uint32_t UTFarWindowBytes = 8192;

// A stretch of the file behind its head that was read ahead.
struct UTFarWindow {
    std::uint64_t start;
    std::uint32_t filled;  // 0: it holds nothing
    std::uint8_t* bytes;
};

// Reads once: up to size bytes at an offset, and tells how many came. Returns 0, or another status for a failure.
using UTReadOnce = std::int32_t (*)(void* object, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                                    std::uint32_t& came);

// An object that is read, and what of it is held.
struct UTReadWindows {
    UTReadOnce readOnce;
    void* object;
    bool windowRead;
    bool windowFailed;  // whether the window ends in front of bytes that could not be read
    bool sizeKnown;     // false for files that tell no size but may hold bytes, as under /proc
    std::uint64_t size;
    std::uint32_t windowFilled;
    UTFarWindow place;        // where was read last; its bytes are placeBytes, or a block of the heap once it has grown
    UTFarWindow tail;         // ends with the file
    std::uint32_t placeStep;  // bytes that were wanted for the place's window
    std::uint64_t behindLast;  // where the read before this one ended
    std::uint8_t window[UTHeadBytes];
    std::uint8_t placeBytes[UTFarWindowBytes];
    std::uint8_t tailBytes[UTFarWindowBytes];
};

// Nothing is held at first. size is the object's, or 0 when it tells none and may hold bytes all the same.
void UTStartWindows(UTReadWindows& file, UTReadOnce readOnce, void* object, std::uint64_t size);

void UTEndWindows(const UTReadWindows& file);

// Reads as UTHandleKind::readAt does.
std::int32_t UTReadThroughWindows(UTReadWindows& file, std::uint64_t offset, void* destination, std::uint32_t size,
                                  std::uint32_t& count);

// Hands out the head as UTHandleKind::head does.
bool UTHeadOfWindows(UTReadWindows& file, UTHead& head);
