// drawing_versions.h - versions of AutoCAD drawings, DXF, SketchUp models and Blender files.
#pragma once

#include "further/look.h"
#include "further/versions.h"

// Each as FIReadVersion, for one format.
bool FIReadDrawingVersion(FILook& look, FIVersion& version);  // AC1012 to AC1014
bool FIReadEarlyDrawingVersion(FILook& look, FIVersion& version);
bool FIReadDxfVersion(FILook& look, FIVersion& version);
bool FIReadBinaryDxfVersion(FILook& look, FIVersion& version);
bool FIReadSketchUpVersion(FILook& look, FIVersion& version);
bool FIReadBlenderVersion(FILook& look, FIVersion& version);
