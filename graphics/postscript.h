// postscript.h - PostScript text and the binary wrapper of encapsulated PostScript (1580).
#pragma once

#include "fiid.h"

// Returns 1580 or 0. Goes through the reader: at most ten lines, from offset 0 or behind a MacBinary header.
FIID FIProbePostScript(FIReader& reader);
