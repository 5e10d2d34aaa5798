// data_versions.h - versions of data sets, archives, compiled code, fonts and messages.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadPythonVersion(FILook& look, FIVersion& version);
bool FIReadSasDataVersion(FILook& look, FIVersion& version);
bool FIReadSasCatalogueVersion(FILook& look, FIVersion& version);
bool FIReadStataVersion(FILook& look, FIVersion& version);
bool FIReadProgramDatabaseVersion(FILook& look, FIVersion& version);
bool FIReadRarVersion(FILook& look, FIVersion& version);
bool FIReadRpmVersion(FILook& look, FIVersion& version);
bool FIReadArcVersion(FILook& look, FIVersion& version);  // the web archive
bool FIReadOutlookExpressVersion(FILook& look, FIVersion& version);
bool FIReadEmbeddedFontVersion(FILook& look, FIVersion& version);
