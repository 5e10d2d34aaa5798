// sub_objects.cpp - IOOpenSub: which function opens which kind.
#include "platform/sub_objects.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/handle.h"
#include "platform/range.h"
#include "platform/storage/compound_storage.h"
#include "platform/zip/archive.h"

namespace {

bool UTIsNoted(const UTOpened& opened, const UTOpenedObject& object) {
    return std::any_of(opened.objects, opened.objects + opened.count, [&](const UTOpenedObject& noted) {
        return noted.kind == object.kind && std::strcmp(noted.name, object.name) == 0;
    });
}

// Notes what was opened for those who explain, if there are any.
void UTNoteOpened(UTHandle& handle, std::uint32_t kind, const void* specification) {
    UTOpened* const opened = UTOutermost(handle).opened;
    if (opened == nullptr || (kind != IOSUB_STREAM && kind != IOSUB_STORAGE)) return;
    UTOpenedObject object = {kind, ""};
    const char* const name = static_cast<const IOSubSpec*>(specification)->name;
    std::copy_n(name, strnlen(name, sizeof(object.name) - 1), object.name);
    if (opened->count < std::size(opened->objects) && !UTIsNoted(*opened, object)) {
        opened->objects[opened->count++] = object;
    }
}

UTHandle* UTOpenKind(HIOFILE file, std::uint32_t kind, const void* specification) {
    switch (kind) {
        case IOSUB_ARCHIVE: {
            UTHandle* const parent = UTFindHandle(file);
            return parent != nullptr ? UTOpenArchive(*parent) : nullptr;
        }
        case IOSUB_RANGE: {
            const auto& range = *static_cast<const IOSubRangeSpec*>(specification);
            UTHandle* const parent = UTFindHandle(range.parent);
            return parent != nullptr ? UTOpenRange(*parent, range.start, range.end) : nullptr;
        }
        case IOSUB_STREAM:
        case IOSUB_STORAGE: {
            const auto& object = *static_cast<const IOSubSpec*>(specification);
            UTHandle* const parent = UTFindHandle(object.parent);
            if (parent == nullptr) return nullptr;
            return kind == IOSUB_STREAM ? UTOpenStream(*parent, object.name) : UTOpenSubStorage(*parent, object.name);
        }
        case IOSUB_MEMBER: {
            const auto& member = *static_cast<const IOSubMemberSpec*>(specification);
            UTHandle* const parent = UTFindHandle(member.parent);
            return parent != nullptr ? UTOpenMember(*parent, member.name) : nullptr;
        }
        default:  // IOSUB_DERIVED among them: what its methods do to the bytes is not known
            return nullptr;
    }
}

}  // namespace

std::int32_t UTOpenSubObject(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t) {
    const HIOFILE parent = *out;  // counts for an archive only
    *out = nullptr;
    if (specification == nullptr && kind != IOSUB_ARCHIVE) return -1;
    UTHandle* const handle = UTOpenKind(kind == IOSUB_ARCHIVE ? parent : nullptr, kind, specification);
    if (handle == nullptr) return -1;
    UTNoteOpened(*handle, kind, specification);
    *out = UTHandleFile(*handle);
    return 0;
}
