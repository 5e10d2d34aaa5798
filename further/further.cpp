// further.cpp - walking the second table.
#include "further/further.h"

#include <bit>

#include "core/interpreter.h"
#include "further/routines.h"
#include "further/table.h"
#include "reader/reader.h"

namespace {

struct FILookCalls {
    FIFurtherCalls calls;
    FILook* look;
};

FIID FICallFurtherRoutine(FIFurtherCalls& calls, std::uint16_t number) {
    const FIFurtherRoutine* const routine = FIFindFurtherRoutine(number);
    return routine != nullptr ? routine->tell(*reinterpret_cast<FILookCalls&>(calls).look) : FIID{0};
}

FIFurtherVerdict FIWalkRows(const FIFurtherRowSet& rows, FILook& look, FIReader& reader, FIRequest& request) {
    const FIFilterBytes bytes = {look.start.bytes, look.start.size};
    const FIFurtherRowSet selected = FISelectFurtherRows(rows, bytes, request.hasClassId);
    const FIFurtherFarNeeds& farNeeds = FIFurtherFarNeedsOfRows();
    for (std::size_t word = 0; word < selected.size(); ++word) {
        for (std::uint64_t bits = selected[word]; bits != 0; bits &= bits - 1) {
            const std::size_t index = word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
            if (!FIFarByteFits(farNeeds[index], bytes)) continue;
            const auto row = static_cast<std::uint16_t>(index + 1);
            const FIID further = FIRunSignature(FIFurtherEntry(row), reader, request);
            if (further != 0) return {further, row};
        }
    }
    return {0, 0};
}

}  // namespace

FIFurtherVerdict FITellFurther(FILook& look) {
    const FIFurtherRowSet& rows = FIFurtherRowsOver(look.fiid);
    bool none = true;
    for (const std::uint64_t word : rows) none = none && word == 0;
    if (none) return {0, 0};
    FILookCalls calls = {{FICallFurtherRoutine}, &look};
    const HIOFILE file = UTHandleFile(*look.file);
    FIRequest request;
    request.extension[0] = '\0';
    request.xmlNamespace[0] = xmlNamespaceNotScanned;
    request.hasClassId = file->operations.IOGetInfo(file, IOInfoIsStorage, nullptr) == 0 &&
                         file->operations.IOGetInfo(file, IOInfoClassId, request.classId) == 0;
    request.head = &look.start;
    request.calls = &calls.calls;
    FIReader* const reader = FIReaderNew(file, &look.start);
    if (reader == nullptr) {
        look.outOfMemory = true;
        return {0, 0};
    }
    const FIFurtherVerdict verdict = FIWalkRows(rows, look, *reader, request);
    static_cast<void>(FIReaderFree(*reader));
    return verdict;
}
