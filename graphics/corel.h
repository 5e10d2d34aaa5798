// corel.h - CorelDRAW in a RIFF form (1598 and its other versions).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// CorelDRAW in a RIFF form: 1521, 1537, 1541, 1582, 1583, 1596, 1598, 1629 or 1630 by its version, or 0.
FIID FIProbeCorelRiff(FIReader& reader);
