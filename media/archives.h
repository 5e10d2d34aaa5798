// archives.h - archives that start with no magic of their own: tar, and ZIP and LHA data behind an executable stub.
#pragma once

#include <cstdint>

#include "fiid.h"

// Routine 1803, ZIP data where self-extractors put it: 1803 or 0.
FIID FIProbeZipStub(FIReader& reader);

// Routine 1807, a tar header at the start of the file: 1807 or 0. Reads the handle, not the reader.
FIID FIProbeTar(FIReader& reader);

// Routine 1814, an LHA header in the first 4,096 bytes: 1814 or 0. Reads the handle, not the reader.
FIID FIProbeLhaStub(FIReader& reader);

// Returns 0 when the 512 bytes of block are a tar header, otherwise 1.
std::int32_t FICheckTarHeader(const std::uint8_t* block);
