// memo_headers.h - memos, told by the lines of their head.
#pragma once

#include "fiid.h"

struct FIHead;

// Routine 1132: a memo whose first lines hold two that start with "From:" or "To:". Returns 1132 or 0.
FIID FIProbeMemoHeader(FIReader& reader);

// Its gate: whether the lines are a memo's as far as the head tells.
bool FIMayBeMemo(FIHead& head);
