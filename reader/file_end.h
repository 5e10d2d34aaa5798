// file_end.h - places told from the end of the file, which the reader itself has no notion of.
#pragma once

#include <cstdint>

#include "fiid.h"

// Asks the handle for the position that lies offset bytes from the end, 0 for the file's size: a seek from the end,
// and a tell when it succeeds. False when one of the two fails; a handle that fails to tell may have stored anything. A
// reader over the handle keeps its own position and moves the handle back at its next refill.
bool FITellFromEnd(HIOFILE file, std::int32_t offset, std::uint32_t& position);

// Moves the reader to the end of the file and returns where it stands: the file's size, also when the reader's own seek
// there fails. A handle that can't tell its end leaves the reader where it was.
std::uint32_t FIGoToEnd(FIReader& reader);
