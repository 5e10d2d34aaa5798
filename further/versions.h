// versions.h - versions that stand in a file and are not told by the identifier.
#pragma once

#include <cstdint>

#include "further/look.h"

// What was read. Both strings are static and NUL-terminated.
struct FIVersion {
    const char*
        version;        // "1.7", "JFIF 1.01"; "" where what was read decides among PRONOM identifiers but is no version
    const char* puids;  // the PRONOM identifiers that it leaves, one blank between two: mostly one
};

// Reads the version of a file of a format, which may be one of either table. Returns false when the format has no rule,
// what stands in the file is none of the versions that are listed, or a part of the file's start can't be read: then the
// format's own identifiers stay as they are.
bool FIReadVersion(FILook& look, std::uint16_t identifier, FIVersion& version);

// Whether there is a rule for a format: no version is ever read in files of another one.
bool FIHasVersionRule(std::uint16_t identifier);
