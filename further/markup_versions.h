// markup_versions.h - versions of HTML, XML and SVG.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadHtmlVersion(FILook& look, FIVersion& version);
bool FIReadXmlVersion(FILook& look, FIVersion& version);
bool FIReadSvgVersion(FILook& look, FIVersion& version);
