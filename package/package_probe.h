// package_probe.h - which document a ZIP file is, if any: routine 1802.
#pragma once

#include "fiid.h"

// Tells a ZIP file by its main part, or by its "mimetype" member when it is no package with relationships. Never
// returns 0: a file that is no document is the plain archive, 1802.
FIID FIProbePackage(FIReader& reader);
