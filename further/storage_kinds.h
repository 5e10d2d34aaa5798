// storage_kinds.h - kinds of compound storages (MS-CFB) that the names under the root tell.
#pragma once

#include "further/look.h"

// Each returns its identifier if a stream or a storage of one of the names stands directly under the root, with case, and
// 0 otherwise and for a file that is no storage.
FIID FITellStarDraw(FILook& look);    // 20334: StarOffice Draw
FIID FITellSolidWorks(FILook& look);  // 20335: SolidWorks
