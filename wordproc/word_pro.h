// word_pro.h - FIProbeWordPro: the two generations of WordPro files.
#pragma once

#include "fiid.h"

// Routine 1108, for files that start with "WordPro". Returns 1108 or 1145 by the version field; 1999 when the body is
// stored in a transformed form that the handle can't undo; 0 when a seek fails.
FIID FIProbeWordPro(FIReader& reader);
