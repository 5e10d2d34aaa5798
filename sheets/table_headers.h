// table_headers.h - database tables that are told by a header whose fields agree with one another.
#pragma once

#include "fiid.h"

// Routine 1201, the xBase table family (DBF): 1201, 1202 or 0, by the version byte.
FIID FIProbeXBaseTable(FIReader& reader);

// Routine 1206, a table header with a list of field types, in two layouts: 1206, 1207, 1217 or 0.
FIID FIProbeFieldTable(FIReader& reader);

// Routine 1212, a header with an eight-byte name that stands twice: 1212 or 0.
FIID FIProbeRepeatedName(FIReader& reader);
