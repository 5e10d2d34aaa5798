// drawings.h - drawings and pages that start with readable text: DXF (1544), MIF (1168) and PDF (1557).
//
// Each routine goes through the reader, leaves it where it stopped, and returns an identifier or 0.
#pragma once

#include "fiid.h"

struct FIHead;

// The text form of DXF: 1544 or 0.
FIID FIProbeDxf(FIReader& reader);

// The version of FrameMaker interchange text, with the reader behind "<MIFFile": 1129 to 1131, 1135 to 1137, 1166 or
// 1167, and 1168 when no version is found. Never returns 0. Does not come back from a file that ends before the version
// does, unless the handle delivers a line end sooner or later, as those of IOOpen do.
FIID FIProbeMif(FIReader& reader);

// A PDF header of major version 1 within the first kilobyte: 1557 or 0.
FIID FIProbePdf(FIReader& reader);

// Its gate: whether such a header stands in the head.
bool FIMayBePdf(FIHead& head);
