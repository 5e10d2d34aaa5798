// macpaint.h - MacPaint bitmaps without a wrapper (1518), told by decoding their first scan lines.
#pragma once

#include "fiid.h"

// Returns 1518 or 0. Goes through the reader: 32 bytes at 0, then 11 compressed lines from 512 on.
FIID FIProbeMacPaint(FIReader& reader);
