// explanation.h - what was looked at for an answer, in plain words.
#pragma once

#include "fiid/detect.h"
#include "further/look.h"

// Writes the explanation of the answer that the result holds.
void FIExplain(FILook& look, fiid_result& result);
