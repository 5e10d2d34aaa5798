// open.cpp - IOOpen: which function opens which specification.
#include <cerrno>

#include "platform/base_utility.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"
#include "platform/wide_path.h"

namespace {

UTHandle* UTOpenWidePath(const std::uint16_t* path) {
    char* const narrow = UTNarrowPath(path);
    if (narrow == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    UTHandle* const handle = UTOpenPath(narrow);
    const int reason = errno;
    HeapFree(GetProcessHeap(), 0, narrow);
    errno = reason;
    if (handle != nullptr) UTSetWideName(*handle, path);
    return handle;
}

UTHandle* UTOpenSpecification(std::uint32_t specificationType, const void* specification) {
    switch (specificationType) {
        case IOSpecNarrow:
            return UTOpenPath(static_cast<const char*>(specification));
        case IOSpecWide:
            return UTOpenWidePath(static_cast<const std::uint16_t*>(specification));
        case IOSpecMemory:
            return UTOpenMemory(*static_cast<const IOMemorySpec*>(specification));
        case IOSpecDescriptor:
            return UTOpenDescriptor(*static_cast<const IODescriptorSpec*>(specification));
        case IOSpecHandle:
            // The record is only ever read through its operations, which take it as it was made.
            return UTOpenForeign(static_cast<HIOFILE>(const_cast<void*>(specification)));
        default:
            errno = EINVAL;
            return nullptr;
    }
}

}  // namespace

extern "C" std::int32_t IOOpen(HIOFILE* handle, std::uint32_t specificationType, const void* specification,
                               std::uint32_t) {
    *handle = nullptr;
    if (specification == nullptr) {
        errno = EINVAL;
        return -1;
    }
    UTHandle* const opened = UTOpenSpecification(specificationType, specification);
    if (opened == nullptr) return -1;
    UTGiveOperations(*opened);
    *handle = UTHandleFile(*opened);
    return 0;
}
