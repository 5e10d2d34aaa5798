// source.h - handles over whatever delivers bytes at an offset by a function: objects in stores, members of archives, files
// in browsers.
#pragma once

#include <cstdint>

#include "platform/handle.h"

// Reads up to size bytes, at most largestSourceRead, at an offset below the size. Stores in count how many came, 0 where
// the source ends in spite of its size, and returns 0; any other value is a failure.
using UTSourceRead = std::int32_t (*)(void* context, std::uint64_t offset, void* buffer, std::uint32_t size,
                                      std::uint32_t* count);

inline constexpr std::uint32_t largestSourceRead = 65536;
inline constexpr std::uint32_t smallestSourceBlock = 4096;

// The failure of a source that tells more bytes than were asked for.
inline constexpr std::int32_t sourceLies = -1;

struct UTSourceSpec {
    void* context;
    UTSourceRead readAt;
    std::uint64_t size;
    const char* name;              // or null
    std::uint32_t preferredBlock;  // bytes that are read ahead at a new place: raised to a power of two in these limits
};

// Opens a source and reads its head. Where it ends in there, that is its size. Returns null with errno set when memory is
// exhausted.
UTHandle* UTOpenSource(const UTSourceSpec& specification);

// What the source's function returned first that was not 0, sourceLies, or 0 when all its reads succeeded.
std::int32_t UTSourceFailure(const UTHandle& handle);
