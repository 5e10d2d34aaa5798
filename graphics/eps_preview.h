// eps_preview.h - Encapsulated PostScript with a DOS header and a preview (1504).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// Encapsulated PostScript with a DOS header and a TIFF preview: 1504 or 0.
FIID FIProbeEpsPreview(FIReader& reader);
