// operations.cpp - IOGetInfo with the questions about storages, and the table of operations.
#include "platform/operations.h"

#include "platform/storage/compound_storage.h"
#include "platform/sub_objects.h"

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t failure = -1;

std::int32_t UTGetInfo(HIOFILE file, std::uint32_t selector, void* value) {
    if (selector != IOInfoIsStorage && selector != IOInfoClassId) return UTGetNameInfo(file, selector, value);
    const CFStorage* const storage = CFFindStorage(*UTFindHandle(file));
    if (storage == nullptr) return failure;
    return selector == IOInfoClassId ? CFGetClassId(*storage, static_cast<std::uint8_t*>(value)) : success;
}

}  // namespace

void UTGiveOperations(UTHandle& handle) {
    handle.file.operations.IOGetInfo = UTGetInfo;
    handle.file.operations.IOOpenSub = UTOpenSubObject;
}
