// storage_kinds.cpp - kinds of compound storages that the names under the root tell.
//
//   StarOffice Draw   StarDrawDocument3, of versions 3 to 5; StarDrawDocument, of older ones
//   SolidWorks        SwDocMgrTempStorage, ISolidWorksInformation.xml, SwDocContentMgr, by version
//
// No public specification tells the names; they are those of files.
#include "further/storage_kinds.h"

#include <algorithm>
#include <span>

#include "platform/storage/compound_storage.h"

namespace {

constexpr FIID starDraw = 20334;
constexpr const char* starDrawNames[] = {"StarDrawDocument3", "StarDrawDocument"};

constexpr FIID solidWorks = 20335;
constexpr const char* solidWorksNames[] = {"SwDocMgrTempStorage", "ISolidWorksInformation.xml", "SwDocContentMgr"};

bool FIHasChild(UTHandle& file, const char* name) {
    UTHandle* child = UTOpenStream(file, name);
    if (child == nullptr) child = UTOpenSubStorage(file, name);
    if (child != nullptr) UTCloseHandle(*child);
    return child != nullptr;
}

bool FIHasAnyChild(FILook& look, std::span<const char* const> names) {
    return CFFindStorage(*look.file) != nullptr &&
           std::ranges::any_of(names, [&look](const char* name) { return FIHasChild(*look.file, name); });
}

}  // namespace

FIID FITellStarDraw(FILook& look) { return FIHasAnyChild(look, starDrawNames) ? starDraw : 0; }

FIID FITellSolidWorks(FILook& look) { return FIHasAnyChild(look, solidWorksNames) ? solidWorks : 0; }
