// versions.cpp - which rule reads the version of which format.
#include "further/versions.h"

bool FIReadVersion(FILook&, std::uint16_t, FIVersion&) { return false; }
