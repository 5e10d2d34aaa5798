// text_headers.h - text formats with a fixed opening that allows free text, blanks or either case between its parts.
#pragma once

#include "fiid.h"

// Routine 1057: the sections "[ver]" and "[sty]" at offset 0. Returns 1057, 1056 (another version), or 0.
FIID FIProbeVersionSections(FIReader& reader);

// Routine 1132: a memo whose first lines hold two that start with "From:" or "To:". Returns 1132 or 0.
FIID FIProbeMemoHeader(FIReader& reader);

// Routine 1141: the "BEGIN:" line of a vCard or vCalendar object. Returns 1141 (vCard), 1196 (vCalendar), or 0.
FIID FIProbeVCard(FIReader& reader);
