// csv_text.h - values separated by commas, semicolons, tabs or bars.
#pragma once

#include "further/look.h"

// Whether a clean text is a table: the first 20,000 bytes give at least two records with one of the four separators, the
// first of them with at least two fields, and the first 20 all with the same number.
bool FIIsCsv(FILook& look);
