// cgm.h - Computer Graphics Metafiles in the binary encoding (1528), told by walking their first elements.
#pragma once

#include "fiid.h"

// Returns 1528 or 0. Goes through the reader, from offset 0 to the Metafile Version element.
FIID FIProbeCgm(FIReader& reader);
