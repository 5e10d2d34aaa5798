// json_kinds.h - JSON texts: what they are, and which kinds their outermost object names.
#pragma once

#include "fiid.h"
#include "further/look.h"

// GeoJSON 20294, a Jupyter notebook 20295, JSON lines 20297 or any other JSON text 20298, of which a text is never two but
// in this order; 0 if it is none. Reads the whole file up to 4 MiB, once for a look, unless the start shows that it is
// none: a file whose first character is neither { nor [ costs nothing. A longer file can only be JSON lines.
FIID FITellJsonKind(FILook& look);
