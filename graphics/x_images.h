// x_images.h - X bitmaps (1571) and pixmaps (1572), told by their first words.
//
// Each routine reads the reader's handle itself in one block and leaves the reader's own position alone; the handle is
// left behind what was read. A failing seek or read is the answer 0 unless told otherwise.
#pragma once

#include "fiid.h"

// X bitmap: returns 1571 or 0. Reads one block of 4,096 bytes; the status of that read does not count.
FIID FIProbeXbm(FIReader& reader);

// X pixmap: returns 1572 or 0. Reads one block of 4,096 bytes.
FIID FIProbeXpm(FIReader& reader);
