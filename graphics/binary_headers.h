// binary_headers.h - graphics formats that a few fields of a binary header tell, or a walk over a few records.
//
// Each routine goes through the reader and leaves it where it stopped. Each returns an identifier or 0; FIProbeJpeg has
// one result more.
#pragma once

#include <cstdint>

#include "fiid.h"

// Encapsulated PostScript with a DOS header and a TIFF preview: 1504 or 0.
FIID FIProbeEpsPreview(FIReader& reader);

// Windows icons, 1515, and cursors, 1516, whose first image is an uncompressed bitmap, or 0.
FIID FIProbeIconFile(FIReader& reader);

// What FIProbeJpeg returns when a seek to a segment fails. It is no format, but not 0 either, so it ends the walk.
inline constexpr FIID jpegSeekFailed = 0xFFFF;

// JPEG: 1535, or 1599 when progressive, or 0, or jpegSeekFailed. Expects the reader behind FF D8 FF, at offset 3.
FIID FIProbeJpeg(FIReader& reader);

// X Window Dump: 1575 or 0.
FIID FIProbeXwd(FIReader& reader);

// CorelDRAW in a RIFF form: 1521, 1537, 1541, 1582, 1583, 1596, 1598, 1629 or 1630 by its version, or 0.
FIID FIProbeCorelRiff(FIReader& reader);

// Three records of the classes 8, 9 and 10, in any order: 1601 or 0.
FIID FIProbeClassRecords(FIReader& reader);
