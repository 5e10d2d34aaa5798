// routine_facts.h - what there is to say about an answer of the signature table: what it stands on, and what the routine
// that decided looks at.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/basis.h"
#include "core/driver.h"
#include "signatures/notation.h"

// One special routine, for those who speak about it. The strings are static and NUL-terminated.
struct FIRoutineFacts {
    std::uint16_t number;
    const char* name;     // of its function
    FIBasis basis;        // of its answers
    const char* looksAt;  // in plain words, as the object of "looked at"
};

// All routines, in ascending order of their numbers.
std::span<const FIRoutineFacts> FIAllRoutineFacts();

// The facts of the routine that a row calls; null for a row that names its identifier.
const FIRoutineFacts* FIFactsOfRow(const FISignatureRow& row);

// What the answers of a row stand on whose signature is in the notation of signatures/notation.h, where the row names its
// identifier or calls a routine of this basis.
FIBasis FIBasisOfSignature(std::string_view signature, FIBasis otherwise);

// What an answer stands on.
FIBasis FIBasisOfVerdict(const FIVerdict& verdict);
