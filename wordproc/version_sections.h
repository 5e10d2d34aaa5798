// version_sections.h - a text that opens with a section of its version and one of its styles.
#pragma once

#include "fiid.h"

// Routine 1057: the sections "[ver]" and "[sty]" at offset 0. Returns 1057, 1056 (another version), or 0.
FIID FIProbeVersionSections(FIReader& reader);
