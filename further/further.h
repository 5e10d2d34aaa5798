// further.h - the second table: formats that the signature table does not know, kinds of those that it knows, and the
// answer "text" taken back where a file is none.
//
// It is asked behind the signature table, whose answer it never changes, and only over some of its answers: not known,
// plain text, ZIP archives and packages.
#pragma once

#include <cstdint>

#include "fiid.h"
#include "further/look.h"

// The more precise answer and the row of the second table that gave it; both 0 when there is none.
struct FIFurtherVerdict {
    FIID further;
    std::uint16_t row;
};

FIFurtherVerdict FITellFurther(FILook& look);
