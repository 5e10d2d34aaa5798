// class_records.h - three records of three classes (1601).
//
// Goes through the reader and leaves it where it stopped.
#pragma once

#include "fiid.h"

// Three records of the classes 8, 9 and 10, in any order: 1601 or 0.
FIID FIProbeClassRecords(FIReader& reader);
