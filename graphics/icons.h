// icons.h - Windows icons (1515) and cursors (1516).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// Windows icons, 1515, and cursors, 1516, whose first image is an uncompressed bitmap, or 0.
FIID FIProbeIconFile(FIReader& reader);
