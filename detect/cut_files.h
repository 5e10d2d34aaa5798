// cut_files.h - files that end in front of what their own structure tells of, as transfers that broke off leave them.
#pragma once

#include <cstdint>

#include "core/basis.h"
#include "platform/handle.h"
#include "reader/head.h"

// Whether a file of a known size is cut, by what its head says and by what the identification has found out about the
// handle anyway: nothing is read. basis is that of the answer: of a text no mark is taken for one that could be text.
bool FIIsCut(const UTHandle& file, const FIHead& head, std::uint64_t size, FIBasis basis);
