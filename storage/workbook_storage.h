// workbook_storage.h - FIProbeWorkbookStorage: the versions of spreadsheets in a stream "Workbook".
#pragma once

#include "fiid.h"

// Routine 1446. The storage is the reader's handle; the reader isn't moved. Returns 1438, 1446, 1448 or 1451; 1438 when
// the handle is no storage, has no such stream, or the stream ends early.
FIID FIProbeWorkbookStorage(FIReader& reader);
