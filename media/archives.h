// archives.h - archives that start with no magic of their own: tar, and ZIP and LHA data behind an executable stub.
#pragma once

#include <cstdint>

#include "fiid.h"

struct FIHead;

// Routine 1803, ZIP data where self-extractors put it: 1803 or 0. Its gate is closed for files that end in front of the
// first place.
FIID FIProbeZipStub(FIReader& reader);
bool FIMayBeZipStub(FIHead& head);

// Routine 1807, a tar header at the start of the file: 1807 or 0. Reads the handle, not the reader. Its gate looks at the
// fields that must be octal text.
FIID FIProbeTar(FIReader& reader);
bool FIMayBeTar(FIHead& head);

// Routine 1814, an LHA header in the first 4,096 bytes: 1814 or 0. Reads the handle, not the reader. Its gate is the same
// search.
FIID FIProbeLhaStub(FIReader& reader);
bool FIMayBeLhaStub(FIHead& head);

// Returns 0 when the 512 bytes of block are a tar header, otherwise 1.
std::int32_t FICheckTarHeader(const std::uint8_t* block);
