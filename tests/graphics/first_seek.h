// first_seek.h - a handle whose first seek fails and whose later ones work, for routines that rewind twice.
#pragma once

#include <cstdint>

#include "support/test_handle.h"

namespace first_seek {

inline decltype(IOOperations::IOSeek) workingSeek = nullptr;
inline bool failedAlready = false;

inline std::int32_t FailOnce(HIOFILE file, std::uint16_t origin, std::int32_t offset) {
    if (!failedAlready) {
        failedAlready = true;
        return -1;
    }
    return workingSeek(file, origin, offset);
}

}  // namespace first_seek

// Makes the first seek of the handle from here on fail; one handle at a time.
inline void FIFailFirstSeek(TestHandle& handle) {
    first_seek::workingSeek = handle.file.operations.IOSeek;
    first_seek::failedAlready = false;
    handle.file.operations.IOSeek = first_seek::FailOnce;
}
