// format_not_known.h - the identifier of files that nothing recognised, for the core and all who ask it.
#pragma once

#include "fiid.h"

// Format identifier of a file that nothing recognised. The catalogue has a name for it too.
inline constexpr FIID formatNotKnown = 1999;
