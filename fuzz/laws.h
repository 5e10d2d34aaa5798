// laws.h - what must hold for every routine and every input, for the fuzz targets of the routine families.
//
// - A routine's answer is 0 or one of its own.
// - It is the same over short reads and over a handle of the platform layer, unless the routine reads the handle itself
//   in blocks.
// - It is the same over a reader that takes its bytes from the file's head.
// - A routine is delivered no more bytes than its bound.
// - A routine whose gate is closed answers 0.
// - A whole identification gives the same answer twice, never 0, and leaves the handle at offset 0.
// - It gives the same answer, by the same row, when every row is run in full, and over a host's handle.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

#include "core/driver.h"
#include "fiid.h"

inline constexpr std::uint64_t fuzzUnbounded = UINT64_MAX;

enum class FuzzReading : std::uint8_t { throughReader, inBlocks };

struct FuzzRoutine {
    const char* name;
    FIID (*probe)(FIReader& reader, const char* extension);
    std::uint32_t start;  // where the row that calls it leaves the reader
    FuzzReading reading;
    std::uint64_t mostBytes;  // delivered by a handle that gives what is asked for; the reader asks for 2,048
    std::initializer_list<FIID> answers;
};

// An input: the file's bytes, its name, and the extension that the driver would cut out of the name.
struct FuzzFile {
    std::string_view bytes;
    const char* name = "";
    const char* extension = "";
};

// Stops the run, with a name and the law that is broken, so that the fuzzer keeps the input.
void FuzzRequire(bool holds, const char* name, const char* law);

// A handle over an input's bytes. At their end it delivers a line feed after 512 empty reads, so that the routine for
// FrameMaker text, which knows no end of file, comes back soon.
struct FuzzHandle {
    IOFile file;  // first: a FuzzHandle is an HIOFILE
    std::string_view bytes;
    std::uint32_t bytesPerRead;
    std::uint64_t position;
    std::uint32_t emptyReads;
    std::uint64_t delivered;  // bytes of all reads
    const char* name;
};

FuzzHandle FuzzMakeHandle(std::string_view bytes, std::uint32_t bytesPerRead = UINT32_MAX, const char* name = "");

// A number made of an input's bytes, by which a target chooses what it tries with it: a finding comes again.
std::uint32_t FuzzHash(std::string_view bytes);

// Runs all routines over the file. The laws that cost more are tried for a part of the inputs, chosen by their bytes.
void FuzzCheckRoutines(std::span<const FuzzRoutine> routines, const FuzzFile& file);

// Runs the routines whose gates are closed for the file, and tells its text with its head and without.
void FuzzCheckGates(const FuzzFile& file);

// Runs a whole identification of a handle of the platform layer by its head, again, and in full.
FIVerdict FuzzIdentifyBothWays(HIOFILE handle);

// The same over the file in memory and over a handle of the target's own.
void FuzzCheckIdentification(const FuzzFile& file);
