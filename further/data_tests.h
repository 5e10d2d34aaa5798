// data_tests.h - programs, data, books and models that a pattern can't tell.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20184: Python bytecode by its magic number, of which each release of the language has one.
FIID FITellPythonBytecode(FILook& look);

// 20191, 20192 and 20195: column stores that end with their mark as they begin with it.
FIID FITellParquet(FILook& look);
FIID FITellOrc(FILook& look);
FIID FITellFeather(FILook& look);

// 20218: a MARC 21 record (ISO 2709): the leader, and the terminators that it leads to.
FIID FITellMarc(FILook& look);

// 20224: an Internet shortcut: its section's name near the start.
FIID FITellInternetShortcut(FILook& look);

// 20382: a book of Multimedia Viewer: a help file with a file of a media database in it.
FIID FITellMediaViewerBook(FILook& look);

// 20245 and 20246: STL models: as text a facet behind the solid, in binary form as many facets as the file has room for.
FIID FITellStlText(FILook& look);
FIID FITellStlBinary(FILook& look);
