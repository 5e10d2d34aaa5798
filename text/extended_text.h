// extended_text.h - text told by its characters alone, the last resort when no signature row fits.
//
// The test is FIExtTextID, one of the library's exported entries: include/fiid.h declares it.
#pragma once

#include "fiid.h"
