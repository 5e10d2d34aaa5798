// source.cpp - handles over sources, read through windows (read_windows.h).
//
// A call may cost a request to another machine, and so may each kilobyte. So less is read ahead at a new place than of a
// file, and more where the reads go on.
#include "platform/source.h"

#include <algorithm>
#include <bit>
#include <cerrno>

#include "platform/byte_objects.h"
#include "platform/read_windows.h"

namespace {

struct UTSource {
    UTHandle handle;
    UTSourceSpec specification;
    std::int32_t failure;
    UTReadWindows windows;
};

std::int32_t UTReadSourceOnce(void* object, std::uint64_t offset, std::uint8_t* destination, std::uint32_t size,
                              std::uint32_t& came) {
    auto& source = *static_cast<UTSource*>(object);
    const UTSourceSpec& specification = source.specification;
    const std::uint32_t wanted = std::min(size, largestSourceRead);
    std::uint32_t count = 0;
    std::int32_t status = specification.readAt(specification.context, offset, destination, wanted, &count);
    if (status == 0 && count > wanted) status = sourceLies;
    if (status == 0) came = count;
    if (source.failure == 0) source.failure = status;
    return status;
}

std::int32_t UTReadSource(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                          std::uint32_t& count) {
    return UTReadThroughWindows(UTRecordOf<UTSource>(handle).windows, offset, destination, size, count);
}

std::uint64_t UTSourceSize(UTHandle& handle) { return UTRecordOf<UTSource>(handle).windows.object.size; }

void UTReleaseSource(UTHandle& handle) { UTEndWindows(UTRecordOf<UTSource>(handle).windows); }

bool UTSourceHead(UTHandle& handle, UTHead& head) {
    return UTHeadOfWindows(UTRecordOf<UTSource>(handle).windows, head);
}

UTReadCost UTSourceCost(UTHandle& handle) { return UTRecordOf<UTSource>(handle).windows.cost; }

constexpr UTHandleKind sourceKind = {UTReadSource, UTSourceSize, UTReleaseSource, UTSourceHead, true, UTSourceCost};

std::uint32_t UTBlockOf(std::uint32_t preferred) {
    return std::bit_ceil(std::clamp(preferred, smallestSourceBlock, largestSourceRead));
}

// A source that ends in its head, in spite of the size that it told, is as long as what came.
void UTReadSourceHead(UTReadWindows& windows) {
    UTHead head = {};
    if (UTHeadOfWindows(windows, head) || !windows.windowRead || windows.windowFailed) return;
    windows.object.size = windows.windowFilled;
}

}  // namespace

UTHandle* UTOpenSource(const UTSourceSpec& specification) {
    auto* const source = UTNewHandleRecord<UTSource>(sourceKind, nullptr);
    if (source == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    source->specification = specification;
    source->failure = 0;
    const std::uint32_t block = UTBlockOf(specification.preferredBlock);
    UTStartWindows(source->windows,
                   {UTReadSourceOnce, source, specification.size, true, block, largestSourceRead, block});
    UTSetNarrowName(source->handle, specification.name);
    UTReadSourceHead(source->windows);
    return &source->handle;
}

std::int32_t UTSourceFailure(const UTHandle& handle) {
    return handle.kind == &sourceKind ? reinterpret_cast<const UTSource&>(handle).failure : 0;
}
