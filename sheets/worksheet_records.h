// worksheet_records.h - worksheets that are a stream of records and open with one of type 0 and length 2.
#pragma once

#include "fiid.h"

// Routine 1416: 1416 or 0. The reader must stand at offset 4, behind the type and length of the opening record: this is
// the only routine that depends on where its row left the reader.
FIID FIProbeWorksheetRecords(FIReader& reader);
