// netpbm.h - the Netpbm family (1588 to 1590), told by its first words.
#pragma once

#include "fiid.h"

// Netpbm: returns 1588 for bitmaps, 1589 for graymaps, 1590 for pixmaps, or 0. Goes through the reader.
FIID FIProbeNetpbm(FIReader& reader);
