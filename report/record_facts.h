// record_facts.h - what a record has to tell.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "scan/record.h"

// Whether there is an answer to tell: not for what could not be read, nor for what is gone and was never told.
bool HasAnswer(const Record& record);

// The file's size in bytes and the time when it was last modified, in seconds since 1970-01-01 UTC, of a year from 0 to
// 9999: from the answer, or else from its directory, for a file that could not be read. Nothing where it is not known.
std::optional<std::uint64_t> SizeOf(const Record& record);
std::optional<std::int64_t> ModifiedSecondsOf(const Record& record);

// "new", "changed", "gone", or "" for None. Static.
std::string_view WordOf(ChangeKind kind);
