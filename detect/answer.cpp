// answer.cpp - one identification over both tables.
#include "detect/answer.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>

#include "catalogue/format_catalogue.h"
#include "catalogue/format_not_known.h"
#include "core/driver.h"
#include "core/routine_facts.h"
#include "detect/cut_files.h"
#include "detect/evidence.h"
#include "detect/explanation.h"
#include "further/formats.h"
#include "further/further.h"
#include "further/versions.h"
#include "platform/byte_objects.h"
#include "platform/source.h"

static_assert(unknownSize == FIID_SIZE_UNKNOWN);

namespace {

// Told as such: what is no bit of fiid_options.flags is refused in front of this.
std::uint32_t FITextFlag(std::uint32_t flags) { return (flags & FIID_NO_TEXT) == 0 ? FIFlagExtendedText : 0; }

void FIFillNames(const FIFormatRecord* format, fiid_result& result) {
    if (format == nullptr) return;
    result.name = format->name;
    result.mime = format->mime;
    result.puids = format->puids;
    result.extensions = format->extensions;
    result.family = FIWordOf(format->family);
}

// What can't be read at its start is a failure and no empty file.
bool FICanBeRead(UTHandle& file, fiid_result& result) {
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    errno = 0;
    if (UTReadAt(file, 0, &byte, 1, count) == 0) return true;
    result.system_error = UTSourceFailure(file) == 0 ? errno : 0;
    return false;
}

void FIFillVersion(FILook& look, std::uint16_t identifier, fiid_result& result) {
    FIVersion version = {"", ""};
    if (!FIReadVersion(look, identifier, version)) return;
    result.version = version.version;
    if (version.puids[0] != '\0') result.puids = version.puids;
}

bool FIIsUnusual(const FILook& look, const fiid_result& result) {
    return look.extensionSize > 0 && !look.isHidden && result.extensions[0] != '\0' &&
           !FIHoldsWord(result.extensions, FIExtensionOf(look));
}

void FIFillWarnings(const FILook& look, fiid_result& result) {
    if (FIIsUnusual(look, result)) result.warnings |= FIID_WARN_EXTENSION;
    if (look.size != unknownSize && FIIsCut(*look.file, look.start, look.size, static_cast<FIBasis>(result.basis))) {
        result.warnings |= FIID_WARN_CUT;
    }
}

void FIFillEvidence(const FIEvidence& evidence, fiid_result& result) {
    result.basis = static_cast<std::int32_t>(evidence.basis);
    result.routine = evidence.routine;
}

// What the further table has to say, over the signature table's answer in the result. Returns false when memory is
// exhausted: the answer would lack what it is about.
bool FILookFurther(FILook& look, std::uint32_t flags, fiid_result& result) {
    FIFurtherVerdict further = {0, 0};
    if ((flags & FIID_NO_FURTHER) == 0) {
        further = FITellFurther(look);
        result.further = further.further;
        if (further.further != 0) {
            const FIEvidence evidence = FIEvidenceOf(further);
            result.further_row = further.row;
            result.further_signature = evidence.signature;
            FIFillNames(FIFindFurtherFormat(further.further), result);
            FIFillEvidence(evidence, result);
        }
        FIFillVersion(look, further.further != 0 ? further.further : result.fiid, result);
    }
    result.size = look.size;
    FIFillWarnings(look, result);
    if ((flags & FIID_EXPLAIN) != 0) FIExplain(look, result);
    return !look.outOfMemory;
}

std::int32_t FIIdentify(UTHandle& file, std::uint32_t flags, fiid_result& result) {
    UTOpened opened;
    opened.count = 0;
    if ((flags & FIID_EXPLAIN) != 0) file.opened = &opened;
    FIVerdict verdict = {0, 0};
    if (FIIdHandleWithRow(UTHandleFile(file), FITextFlag(flags), verdict) != 0) return FIID_ERROR_MEMORY;
    const FIEvidence evidence = FIEvidenceOf(verdict);
    result.fiid = verdict.fiid;
    result.row = verdict.row;
    result.signature = evidence.signature;
    FIFillNames(FIFindFormatRecord(verdict.fiid), result);
    FIFillEvidence(evidence, result);
    FILook look;  // filled when it starts
    if (FIStartLook(look, file, verdict.fiid, verdict.row)) {
        const bool told = FILookFurther(look, flags, result);
        FIEndLook(look);
        if (!told) return FIID_ERROR_MEMORY;
    }
    if (std::string_view(result.puids).find(' ') != std::string_view::npos) result.warnings |= FIID_WARN_SEVERAL;
    return FIID_OK;
}

// A failed call tells nothing but what the file is like from outside.
void FIForgetAnswer(fiid_result& result) {
    const fiid_result failed = result;
    FIClearResult(result);
    result.size = failed.size;
    result.modified_seconds = failed.modified_seconds;
    result.modified_nanoseconds = failed.modified_nanoseconds;
    result.modified_known = failed.modified_known;
    result.system_error = failed.system_error;
}

void FIFillCost(UTHandle& file, fiid_result& result) {
    const UTReadCost cost = UTGetCost(file);
    result.bytes_read = cost.bytes;
    result.calls = cost.calls;
    result.source_error = UTSourceFailure(file);
}

}  // namespace

void FIClearResult(fiid_result& result) {
    result = {};
    result.size = FIID_SIZE_UNKNOWN;
    for (const char** text : {&result.name, &result.mime, &result.version, &result.puids, &result.extensions,
                              &result.signature, &result.further_signature, &result.routine, &result.family}) {
        *text = "";
    }
    std::ranges::fill(result.reserved_texts, "");
}

std::int32_t FIAnswerHandle(UTHandle& file, std::uint32_t flags, fiid_result& result) {
    const std::uint64_t size = UTGetSize(file);
    if (size > 0) result.size = size;
    result.modified_known = UTTellModified(file, result.modified_seconds, result.modified_nanoseconds) ? 1 : 0;
    const std::int32_t status = FICanBeRead(file, result) ? FIIdentify(file, flags, result) : FIID_ERROR_READ;
    file.opened = nullptr;
    if (status != FIID_OK) FIForgetAnswer(result);
    FIFillCost(file, result);
    return status;
}
