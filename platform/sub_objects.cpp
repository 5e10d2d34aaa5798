// sub_objects.cpp - IOOpenSub: which function opens which kind.
#include "platform/sub_objects.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/handle.h"
#include "platform/range.h"
#include "platform/storage/compound_storage.h"
#include "platform/zip/archive.h"

namespace {

// Notes what was opened for those who explain, if there are any.
void UTNoteOpened(UTHandle& object, std::uint32_t kind, const void* specification) {
    UTOpened* const opened = UTOutermost(object).opened;
    if (opened == nullptr || (kind != IOSUB_STREAM && kind != IOSUB_STORAGE)) return;
    const char* const name = static_cast<const IOSubSpec*>(specification)->name;
    static_assert(sizeof(opened->stream) == sizeof(opened->storage));
    static_assert(sizeof(opened->stream) == sizeof(IOSubSpec::name));
    char* const note = kind == IOSUB_STREAM ? opened->stream : opened->storage;
    const std::size_t length = strnlen(name, sizeof(opened->stream) - 1);
    std::copy_n(name, length, note);
    note[length] = '\0';
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
