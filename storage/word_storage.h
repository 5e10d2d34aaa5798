// word_storage.h - FIProbeWordStorage: the versions of Word documents in compound storages.
#pragma once

#include "fiid.h"

// Routine 1146. The storage is the reader's handle; the reader isn't moved. Returns 1082, 1102, 1126, 1146, 1185 or
// 1186; 1146 when nothing decides, also for a handle that is no storage.
FIID FIProbeWordStorage(FIReader& reader);
