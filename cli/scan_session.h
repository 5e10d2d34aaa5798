// scan_session.h - one run over files: from paths to records, a summary or a store.
#pragma once

#include "cli/options.h"

// Looks at everything the options name, and writes what they ask for. Returns whether all of it could be read and all
// options be followed.
bool RunScan(const Options& options);
