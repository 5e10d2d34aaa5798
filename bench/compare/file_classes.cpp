// file_classes.cpp - the class of a file, from its handle, its answer and the row that gave it.
#include "bench/compare/file_classes.h"

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "catalogue/format_not_known.h"
#include "core/driver.h"
#include "platform/base_utility.h"
#include "signatures/sheet_rows.h"
#include "signatures/table.h"

namespace {

constexpr std::uint16_t packageRoutine = 1802;
constexpr std::uint16_t markupRoutine = 1190;
constexpr std::uint16_t mailRoutine = 1187;
constexpr std::uint16_t encodedTextRoutine = 4050;
// The rows in front of those of sheets, which stand at the end of the table.
constexpr std::uint16_t lastEarlyRow = signatureRowCount - std::size(sheetRows);

// As the driver sees it: a storage whose class identifier can't be had counts as a plain file.
bool IsStorage(HIOFILE handle) {
    std::uint8_t classId[IOClassIdBytes];
    return handle->operations.IOGetInfo(handle, IOInfoIsStorage, nullptr) == 0 &&
           handle->operations.IOGetInfo(handle, IOInfoClassId, classId) == 0;
}

const char* ClassOfRow(std::uint16_t row) {
    const FISignatureRow& signature = *FIFindSignatureRow(row);
    if (signature.result.opcode == FIOpcode::Call) {
        if (signature.result.number == packageRoutine) return "package";
        if (signature.result.number == markupRoutine) return "markup";
        if (signature.result.number == mailRoutine) return "text";
        if (signature.result.number == encodedTextRoutine) return "text";
    }
    if (signature.signature.find("xmlns ") != std::string_view::npos) return "markup";
    return row <= lastEarlyRow ? "early row" : "later row";
}

const char* ClassOf(bool storage, const FIVerdict& verdict) {
    const bool known = verdict.fiid != formatNotKnown;
    if (storage) return known ? "storage" : "unclaimed storage";
    if (!known) return "unknown";
    return verdict.row == 0 ? "text" : ClassOfRow(verdict.row);
}

}  // namespace

void PrintClass(const std::string& path) {
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, IOSpecNarrow, path.c_str(), IOOpenRead) != 0) return;
    const bool storage = IsStorage(handle);
    FIVerdict verdict = {0, 0};
    FIIdHandleWithRow(handle, FIFlagExtendedText, verdict);
    handle->operations.IOClose(handle);
    std::printf("%s\t%u\t%u\t%s\n", ClassOf(storage, verdict), unsigned{verdict.row}, unsigned{verdict.fiid},
                path.c_str());
}
