// further.cpp - walking the second table.
#include "further/further.h"

FIFurtherVerdict FITellFurther(FILook&) { return {0, 0}; }
