// scan_flags.h - what options ask of the library.
#pragma once

#include <cstdint>

#include "cli/options.h"
#include "fiid/detect.h"

// The flags of fiid_options.
inline std::uint32_t FlagsOf(const Options& options) {
    std::uint32_t flags = 0;
    if (!options.extendedText) flags |= FIID_NO_TEXT;
    if (!options.further) flags |= FIID_NO_FURTHER;
    if (options.report.explain) flags |= FIID_EXPLAIN;
    return flags;
}
