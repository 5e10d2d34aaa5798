// vcard.h - vCard and vCalendar objects, told by their first line.
#pragma once

#include "fiid.h"

// Routine 1141: the "BEGIN:" line of a vCard or vCalendar object. Returns 1141 (vCard), 1196 (vCalendar), or 0.
FIID FIProbeVCard(FIReader& reader);
