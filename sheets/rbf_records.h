// rbf_records.h - two database formats of files with the extension RBF, told by the file's structure.
#pragma once

#include "fiid.h"

// Routine 1210: follows the links of two records; 1210 when the second links back to the first, otherwise 0.
FIID FIProbeLinkedRecords(FIReader& reader);

// Routine 1213: looks for a marker in the slots of the first 504 bytes; 1213 or 0.
FIID FIProbeSlotMarker(FIReader& reader);
