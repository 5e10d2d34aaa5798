// evidence.cpp - looking up what decided.
#include "detect/evidence.h"

#include "core/routine_facts.h"
#include "further/routines.h"
#include "further/table.h"
#include "signatures/table.h"

namespace {

constexpr const char textRoutine[] = "FIExtTextID";

}  // namespace

FIEvidence FIEvidenceOf(const FIVerdict& verdict) {
    const FIBasis basis = FIBasisOfVerdict(verdict);
    const FISignatureRow* const row = FIFindSignatureRow(verdict.row);
    if (row == nullptr) return {basis, "", basis == FIBasis::Text ? textRoutine : ""};
    const FIRoutineFacts* const facts = FIFactsOfRow(*row);
    // Signatures are string literals: a NUL follows them.
    return {basis, row->signature.data(), facts != nullptr ? facts->name : ""};
}

FIEvidence FIEvidenceOf(const FIFurtherVerdict& verdict) {
    const FIFurtherRow* const row = FIFindFurtherRow(verdict.row);
    if (row == nullptr) return {FIBasis::None, "", ""};
    const FIFurtherRoutine* const routine =
        row->result.opcode == FIOpcode::Call ? FIFindFurtherRoutine(row->result.number) : nullptr;
    const FIBasis basis = routine != nullptr ? routine->basis : FIBasis::Signature;
    return {FIBasisOfSignature(row->signature, basis), row->signature.data(), routine != nullptr ? routine->name : ""};
}
