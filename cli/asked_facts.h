// asked_facts.h - a store may know more of a file than a run asks for.
#pragma once

#include <cstddef>

#include "report/report_writer.h"
#include "scan/hash.h"
#include "scan/record.h"

// Leaves out of a record what the options do not ask for, so that it is told as a scan without a store tells it: what was
// looked at, and a hash of another kind.
inline void KeepAskedFacts(const ReportOptions& options, Record& record) {
    constexpr std::size_t sha256Digits = 64;
    const HashKind kind = record.hash.size() == sha256Digits ? HashKind::Sha256 : HashKind::Xxh3;
    if (!options.explain) record.answer.explanation[0] = '\0';
    if (kind != options.hash) record.hash.clear();
}
