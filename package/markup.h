// markup.h - HTML and XML texts that no signature row has claimed.
#pragma once

#include "fiid.h"

// Routine 1190. Joins what the prolog (xml_prolog.h) and the tags (html_tags.h) at the head of a text say. Returns an
// identifier, or 0 for text that is neither. Each of the two rewinds the reader, which is left wherever the second
// stopped.
FIID FIProbeMarkup(FIReader& reader);
