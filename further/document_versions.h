// document_versions.h - versions of PDF, RTF, PostScript and InDesign.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadPdfVersion(FILook& look, FIVersion& version);
bool FIReadRtfVersion(FILook& look, FIVersion& version);
bool FIReadPostScriptVersion(FILook& look, FIVersion& version);
// Of PostScript behind a binary header that tells where it begins.
bool FIReadEpsWithPreviewVersion(FILook& look, FIVersion& version);
bool FIReadInDesignVersion(FILook& look, FIVersion& version);
bool FIReadInDesignLibraryVersion(FILook& look, FIVersion& version);
