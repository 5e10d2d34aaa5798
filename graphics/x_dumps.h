// x_dumps.h - X Window Dump (1575).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// X Window Dump: 1575 or 0.
FIID FIProbeXwd(FIReader& reader);
