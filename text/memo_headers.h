// memo_headers.h - memos, told by the lines of their head.
#pragma once

#include "fiid.h"

// Routine 1132: a memo whose first lines hold two that start with "From:" or "To:". Returns 1132 or 0.
FIID FIProbeMemoHeader(FIReader& reader);
