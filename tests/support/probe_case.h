// probe_case.h - rules told as rows of a table: a file's bytes and the answer of a routine, or of the whole system.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "core/driver.h"
#include "fiid.h"
#include "support/bytes.h"
#include "support/case_name.h"
#include "support/process_heap.h"
#include "support/row_number.h"
#include "support/test_handle.h"

// One case. The name is the sentence, in words with capitals: "Length7IsTooLow".
struct ProbeCase {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
    FIID answer;
    const char* extension = "";
};

using FIProbe = FIID (*)(FIReader& reader);
using FIProbeWithExtension = FIID (*)(FIReader& reader, const char* extension);

// The answer of a routine for a file's bytes, its reader standing at start. Also runs the routine over awkward handles:
// one byte per read, where the answer must be the same, and failing at every read, where it must come back with nothing
// leaked; a failure of either fails the test.
FIID FIAnswerOf(FIProbe probe, std::string_view bytes, std::uint32_t start = 0);
FIID FIAnswerOf(FIProbeWithExtension probe, std::string_view bytes, const char* extension);

// The same for routines that read the handle itself in blocks: one byte per read may change their answer.
FIID FIAnswerOfBlockReader(FIProbe probe, std::string_view bytes, std::uint32_t start = 0);

// The answer of a routine over a handle of the test's own making, such as a storage.
FIID FIAnswerOver(FIProbe probe, TestHandle& handle, std::uint32_t start = 0);
FIID FIAnswerOver(FIProbeWithExtension probe, TestHandle& handle, const char* extension);

// The verdict of the whole system for a handle of the platform layer, which stands at 0 afterwards. The table is walked
// both ways, with the file's head and in full: two verdicts that differ fail the test.
FIVerdict FIIdentifyBothWays(HIOFILE handle, std::uint32_t flags = FIFlagExtendedText);

// The answer of the whole system for a file of these bytes and this name, through FIIdHandle over a handle of the
// platform layer in memory; the deciding row through *row if it is not null. Extended text identification is on unless
// flags are 0. Both ways, as above.
FIID FIIdentifyBytes(std::string_view bytes, const char* name = "", std::uint32_t flags = FIFlagExtendedText,
                     std::uint16_t* row = nullptr);
