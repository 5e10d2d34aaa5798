// named_streams.h - the probes for class identifiers that stand for several formats: each reads one stream's fields.
//
// For all of them the storage is the reader's handle, and the reader isn't moved. An answer of 0 lets the walk of the
// signature table go on.
#pragma once

#include "fiid.h"

// Routine 1082: 1424 or 1082.
FIID FIProbeBookStorage(FIReader& reader);

// Routine 1579: 1579 or 1608.
FIID FIProbeDesignerStorage(FIReader& reader);

// Routine 1445: 1445 or 0.
FIID FIProbeNativeContentStorage(FIReader& reader);

// Routines 1447, 1450 and 1453: 1433 or the routine's own number; 0 when the handle is no storage.
FIID FIProbePerfectOfficeStorage(FIReader& reader, FIID number);

// Routines 1597 and 1631: 1586, 1595, 1597, 1607, 1631 or 0.
FIID FIProbeVisioStorage(FIReader& reader);
