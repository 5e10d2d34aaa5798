// marked_records.h - a chain of marked records (1570).
//
// Reads the reader's handle itself in one block and leaves the reader's own position alone; the handle is left behind
// what was read. A failing seek or read is the answer 0.
#pragma once

#include "fiid.h"

// Returns 1570 or 0. Reads one block of 2,000 bytes.
FIID FIProbeMarkedRecords(FIReader& reader);
