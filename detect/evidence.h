// evidence.h - what an answer of either table stands on.
#pragma once

#include "core/basis.h"
#include "core/driver.h"
#include "further/further.h"

// All strings are static, NUL-terminated, and "" where there is nothing to tell.
struct FIEvidence {
    FIBasis basis;
    const char* signature;  // the deciding row's, in its notation
    const char* routine;    // the name of the routine that decided, where no pattern did
};

FIEvidence FIEvidenceOf(const FIVerdict& verdict);
FIEvidence FIEvidenceOf(const FIFurtherVerdict& verdict);
