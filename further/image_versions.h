// image_versions.h - versions of GIF, PCX, JPEG, Photoshop images and metafiles.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadGifVersion(FILook& look, FIVersion& version);
bool FIReadPcxVersion(FILook& look, FIVersion& version);
// JFIF, SPIFF, Exif or the bare stream; also behind a MacBinary header.
bool FIReadJpegVersion(FILook& look, FIVersion& version);
bool FIReadPhotoshopVersion(FILook& look, FIVersion& version);
bool FIReadEnhancedMetafileVersion(FILook& look, FIVersion& version);
bool FIReadCgmVersion(FILook& look, FIVersion& version);
