// jpeg.h - JPEG (1535 and 1599).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// What FIProbeJpeg returns when a seek to a segment fails. It is no format, but not 0 either, so it ends the walk.
inline constexpr FIID jpegSeekFailed = 0xFFFF;

// JPEG: 1535, or 1599 when progressive, or 0, or jpegSeekFailed. Expects the reader behind FF D8 FF, at offset 3.
FIID FIProbeJpeg(FIReader& reader);
