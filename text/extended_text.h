// extended_text.h - text told by its characters alone, the last resort when no signature row fits.
#pragma once

#include "fiid.h"

struct FIHead;

// FIExtTextID for a reader of the library's own: 4022 (text), 4005 (text with high bytes), 1184 or 1999 (not text). With the
// file's head (may be null) most texts are told without a step for each character.
FIID FITellText(FIReader& reader, FIHead* head = nullptr);
