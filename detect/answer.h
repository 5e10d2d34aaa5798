// answer.h - from an open handle to a filled result: both tables, the version, the names.
#pragma once

#include <cstdint>

#include "fiid/detect.h"
#include "platform/handle.h"

// A result in which nothing is known yet.
void FIClearResult(fiid_result& result);

// Identifies what an outermost handle with all operations holds, and tells the cost of it. flags are those of
// fiid_options. Returns a status; the handle stays open.
std::int32_t FIAnswerHandle(UTHandle& file, std::uint32_t flags, fiid_result& result);
