// media_versions.h - versions of Flash movies, WAVE and RealAudio sounds and MXF files.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadFlashVersion(FILook& look, FIVersion& version);
bool FIReadWaveVersion(FILook& look, FIVersion& version);
bool FIReadRealAudioVersion(FILook& look, FIVersion& version);
bool FIReadMxfVersion(FILook& look, FIVersion& version);
