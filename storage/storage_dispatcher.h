// storage_dispatcher.h - FIProbeStorage: a compound storage without a class identifier, by the names of its streams.
#pragma once

#include "fiid.h"

// Routine 1999. The storage is the reader's handle; the reader isn't moved. extension is the file's, upper case, at
// most 4 characters, NUL-terminated. Returns an identifier, or 0 when the handle is no storage or its streams don't
// decide; never 1999.
FIID FIProbeStorage(FIReader& reader, const char* extension);
