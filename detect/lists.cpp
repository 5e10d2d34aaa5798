// lists.cpp - the entries of libfiid-detect that tell what there is: formats, texts, the version.
#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include "catalogue/format_catalogue.h"
#include "core/basis.h"
#include "fiid/detect.h"
#include "further/formats.h"
#include "further/table.h"
#include "further/versions.h"

static_assert(std::string_view(FIID_VERSION) == FIID_PROJECT_VERSION, "the header tells the project's version");

namespace {

// In the order of the statuses.
constexpr const char* errorTexts[] = {
    "no error",
    "the arguments make no sense",
    "there is no such file",
    "may not be opened for reading",
    "is a directory",
    "is a FIFO, a socket or a character device, not a file",
    "the descriptor is not open for reading",
    "can't be opened",
    "can't be read",
    "memory is exhausted",
    "no format has this identifier",
};
static_assert(std::size(errorTexts) == FIID_ERROR_UNKNOWN_FORMAT + 1);

// In the order of the bases.
constexpr const char* basisTexts[] = {
    "none", "signature", "storage", "package", "structure", "statistics", "extension", "text",
};
static_assert(std::size(basisTexts) == FIID_BASIS_TEXT + 1);
static_assert(static_cast<int>(FIBasis::None) == FIID_BASIS_NONE);
static_assert(static_cast<int>(FIBasis::Signature) == FIID_BASIS_SIGNATURE);
static_assert(static_cast<int>(FIBasis::Storage) == FIID_BASIS_STORAGE);
static_assert(static_cast<int>(FIBasis::Package) == FIID_BASIS_PACKAGE);
static_assert(static_cast<int>(FIBasis::Structure) == FIID_BASIS_STRUCTURE);
static_assert(static_cast<int>(FIBasis::Statistics) == FIID_BASIS_STATISTICS);
static_assert(static_cast<int>(FIBasis::Extension) == FIID_BASIS_EXTENSION);
static_assert(static_cast<int>(FIBasis::Text) == FIID_BASIS_TEXT);

// Whether another version of the tables may answer more precisely about files that have this answer now. An answer of the
// further table is open as it is: what stands over the signature table's answer may tell a kind of it, or take it back.
bool FIIsOpen(std::uint16_t id) {
    if (id >= firstFurtherFormat || FIHasVersionRule(id)) return true;
    return std::ranges::any_of(FIFurtherRowsOver(id), [](std::uint64_t word) { return word != 0; });
}

// Fills the format with a record, or with nothing.
std::int32_t FIFillFormat(const FIFormatRecord* record, fiid_format& format) {
    format = {0, 0, 0, "", "", "", "", "", {}};
    std::ranges::fill(format.reserved_texts, "");
    if (record == nullptr) return FIID_ERROR_UNKNOWN_FORMAT;
    format.id = record->fiid;
    format.flags = FIIsOpen(record->fiid) ? std::uint32_t{FIID_FORMAT_IS_OPEN} : 0;
    format.name = record->name;
    format.mime = record->mime;
    format.puids = record->puids;
    format.extensions = record->extensions;
    format.family = FIWordOf(record->family);
    return FIID_OK;
}

template <std::size_t count>
const char* FITextOf(const char* const (&texts)[count], std::int32_t number, const char* otherwise) {
    return number >= 0 && static_cast<std::size_t>(number) < count ? texts[number] : otherwise;
}

}  // namespace

extern "C" {

const char* fiid_version(void) { return FIID_VERSION; }

const char* fiid_error_text(std::int32_t status) { return FITextOf(errorTexts, status, "unknown status"); }

const char* fiid_basis_text(std::int32_t basis) { return FITextOf(basisTexts, basis, ""); }

std::uint32_t fiid_format_count(void) {
    return static_cast<std::uint32_t>(FIFormatRecords().size() + FIFurtherFormats().size());
}

std::int32_t fiid_format_at(std::uint32_t index, fiid_format* format) {
    if (format == nullptr) return FIID_ERROR_ARGUMENT;
    const std::span<const FIFormatRecord> first = FIFormatRecords();
    const std::span<const FIFormatRecord> further = FIFurtherFormats();
    if (index < first.size()) return FIFillFormat(&first[index], *format);
    const std::size_t rest = index - first.size();
    return FIFillFormat(rest < further.size() ? &further[rest] : nullptr, *format);
}

std::int32_t fiid_format_find(std::uint16_t id, fiid_format* format) {
    if (format == nullptr) return FIID_ERROR_ARGUMENT;
    const FIFormatRecord* const record = FIFindFormatRecord(id);
    return FIFillFormat(record != nullptr ? record : FIFindFurtherFormat(id), *format);
}

}  // extern "C"
