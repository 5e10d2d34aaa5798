// driver.cpp - the entries of the library and the driver that walks the signature table.
#include "core/driver.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <iterator>

#include "catalogue/format_not_known.h"
#include "core/interpreter.h"
#include "platform/base_utility.h"
#include "reader/ascii_case.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "signatures/row_filter.h"
#include "signatures/table.h"
#include "text/encoded_text.h"
#include "text/extended_text.h"

namespace {

constexpr std::int16_t success = 0;
constexpr std::int16_t failure = -1;
constexpr std::int16_t encodedTextTest = 4050;

// The file's name as the handle gives it, in 8-bit or in 16-bit characters.
union FIFileName {
    char narrow[IONameBytes];
    std::uint16_t wide[IONameBytes / sizeof(std::uint16_t)];
};

// Copies the characters behind the last dot, upper-cased, at most four; the rest is dropped. Directories are not known
// here: a dot in one counts if it is the last. Of a 16-bit unit only the low byte is kept, so U+0144 counts as 'D'.
template <typename Unit>
void FICutExtension(const Unit* name, std::size_t capacity, char (&extension)[extensionLength + 1]) {
    std::size_t end = 0;
    while (end < capacity && name[end] != 0) ++end;
    std::size_t start = end;  // becomes the place behind the last dot
    while (start > 0 && name[start - 1] != '.') --start;
    if (start == 0) return;
    for (std::size_t index = 0; index < extensionLength && start + index < end; ++index) {
        extension[index] = FIUpperAscii(static_cast<char>(name[start + index] & 0xFF));
    }
}

void FIReadExtension(HIOFILE handle, char (&extension)[extensionLength + 1]) {
    std::fill(std::begin(extension), std::end(extension), '\0');
    FIFileName name;
    std::uint32_t nameType = IONameNarrow;
    name.wide[0] = 0;
    static_cast<void>(handle->operations.IOGetInfo(handle, IOInfoName, &name));
    static_cast<void>(handle->operations.IOGetInfo(handle, IOInfoNameType, &nameType));
    if (nameType == IONameWide) {
        FICutExtension(name.wide, IONameBytes / sizeof(std::uint16_t), extension);
    } else {
        FICutExtension(name.narrow, IONameBytes, extension);
    }
}

// A storage whose class identifier can't be had counts as a plain file.
bool FIReadClassId(HIOFILE handle, std::uint8_t (&classId)[classIdSize]) {
    return handle->operations.IOGetInfo(handle, IOInfoIsStorage, nullptr) == 0 &&
           handle->operations.IOGetInfo(handle, IOInfoClassId, classId) == 0;
}

// Tries the rows that the head lets pass, in order. The closing entry fails in any file and is left out.
FIVerdict FIWalkSelectedRows(FIReader& reader, FIRequest& request) {
    const FIFilterBytes bytes = {request.head->bytes, request.head->size};
    const FIRowSet rows = FISelectRows(bytes, request.hasClassId);
    for (std::size_t word = 0; word < rows.size(); ++word) {
        for (std::uint64_t bits = rows[word]; bits != 0; bits &= bits - 1) {
            const auto row =
                static_cast<std::uint16_t>(word * 64 + static_cast<std::size_t>(std::countr_zero(bits)) + 1);
            if (!FIFarByteFits(row, bytes)) continue;
            const FIID fiid = FIRunSignature(FISignatureEntry(row), reader, request);
            if (fiid != 0) return {fiid, row};
        }
    }
    return {0, 0};
}

// Tries the entries in order, the closing one too: it passes over the table's end and fails in what lies behind.
FIVerdict FIWalkTable(FIReader& reader, FIRequest& request) {
    if (request.head != nullptr) return FIWalkSelectedRows(reader, request);
    for (std::uint16_t row = 1; row <= signatureEntryCount; ++row) {
        const FIID fiid = FIRunSignature(FISignatureEntry(row), reader, request);
        if (fiid != 0) return {fiid, row};
    }
    return {0, 0};
}

bool FITextIsAllowed(std::uint32_t flags) {
    if ((flags & FIFlagExtendedText) != 0) return true;
    UTOptionSet* const options = UTGetGlobalOptionSet();
    if (options == nullptr) return false;
    std::uint32_t value = 0;
    std::uint32_t valueSize = sizeof(value);
    return UTGetOption(options, UTOptionTextIdentification, &value, &valueSize) == 0 &&
           (value & FIFlagExtendedText) != 0;
}

}  // namespace

std::int16_t FIIdHandleWithRow(HIOFILE handle, std::uint32_t flags, FIVerdict& verdict, FIWalk walk) {
    verdict = {0, 0};
    FIHead head;        // its masks stay undefined until they are made
    FIRequest request;  // the namespace's further units stay undefined until the scan fills them
    request.xmlNamespace[0] = xmlNamespaceNotScanned;
    request.hasClassId = FIReadClassId(handle, request.classId);
    FIReadExtension(handle, request.extension);
    request.head = walk == FIWalk::byHead && FITakeHead(handle, head) ? &head : nullptr;
    FIReader* const reader = FIReaderNew(handle, request.head);
    if (reader == nullptr) {
        verdict.fiid = formatNotKnown;
        return failure;
    }
    verdict = FIWalkTable(*reader, request);
    if (verdict.fiid == 0) {
        if (FITextIsAllowed(flags) && !request.hasClassId) {
            verdict.fiid = FITellText(*reader, request.head);
        } else {
            verdict.fiid = formatNotKnown;
        }
    }
    static_cast<void>(FIReaderFree(*reader));
    static_cast<void>(handle->operations.IOSeek(handle, IOOriginStart, 0));
    return success;
}

extern "C" {

std::int16_t FIInit(void* context) { return UTInit(context); }

std::int16_t FIDeInit(void* context) { return UTDeInit(context); }

std::int16_t FIIdFile(std::uint32_t specificationType, const void* specification, std::uint32_t flags, FIID* fiid) {
    return FIIdFileEx(specificationType, specification, flags, fiid, nullptr, 0);
}

std::int16_t FIIdFileEx(std::uint32_t specificationType, const void* specification, std::uint32_t flags, FIID* fiid,
                        char* name, std::uint16_t nameSize) {
    *fiid = 0;
    HIOFILE handle = nullptr;
    if (IOOpen(&handle, specificationType, specification, IOOpenRead) != 0) return failure;
    const std::int16_t status = FIIdHandle(handle, flags, fiid);
    static_cast<void>(handle->operations.IOClose(handle));
    if (status == success && name != nullptr) {
        static_cast<void>(UTGetString(*fiid | UTStringKeyFormat, name, nameSize, 0));
    }
    return status;
}

std::int16_t FIIdHandle(HIOFILE handle, std::uint32_t flags, FIID* fiid) {
    FIVerdict verdict;
    const std::int16_t status = FIIdHandleWithRow(handle, flags, verdict);
    *fiid = verdict.fiid;
    return status;
}

FIID FIIdSpecial(HIOFILE handle, std::int16_t test) {
    if (test != encodedTextTest) return 0;
    FIReader* const reader = FIReaderNew(handle);
    if (reader == nullptr) return 0;
    const FIID fiid = FIProbeEncodedText(*reader);
    static_cast<void>(FIReaderFree(*reader));
    return fiid;
}

}  // extern "C"
