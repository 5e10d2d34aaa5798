// store_query.h - answers from a store, without a scan.
#pragma once

#include "cli/options.h"

// Writes what the options ask of the store. Returns whether that could be done.
bool RunStoreQuery(const Options& options);
