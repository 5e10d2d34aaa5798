// text_extensions.h - plain texts whose language nothing in them tells: the file's extension does.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20308 to 20331: the format of the extension, if the head is clean; of "csv" also only if it is a table.
FIID FITellByExtension(FILook& look);
