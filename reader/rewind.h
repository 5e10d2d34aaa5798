// rewind.h - the double rewind that some routines start with.
#pragma once

#include "reader/reader.h"

// Moves to offset 0 twice; the first status is not looked at. Returns whether the second one was success.
inline bool FIReaderRewindTwice(FIReader& reader) {
    static_cast<void>(FIReaderSeek(reader, 0));
    return FIReaderSeek(reader, 0) == 0;
}
