// range.cpp - a stretch of another handle.
#include "platform/range.h"

#include <algorithm>

namespace {

struct UTRange {
    UTHandle handle;  // first
    std::uint64_t start;
    std::uint64_t size;
};

UTRange& UTRangeOf(UTHandle& handle) { return reinterpret_cast<UTRange&>(handle); }  // handle is the first member

std::int32_t UTReadRange(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                         std::uint32_t& count) {
    const UTRange& range = UTRangeOf(handle);
    count = 0;
    if (offset >= range.size) return 0;
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, range.size - offset));
    return UTReadAt(*handle.parent, range.start + offset, destination, wanted, count);
}

std::uint64_t UTRangeSize(UTHandle& handle) { return UTRangeOf(handle).size; }

void UTReleaseRange(UTHandle&) {}

constexpr UTHandleKind rangeKind = {UTReadRange, UTRangeSize, UTReleaseRange};

}  // namespace

UTHandle* UTOpenRange(UTHandle& parent, std::uint32_t start, std::uint32_t end) {
    UTHandle* const handle = UTNewHandle(rangeKind, sizeof(UTRange), &parent);
    if (handle == nullptr) return nullptr;
    const std::uint64_t last = std::min<std::uint64_t>(end, UTGetSize(parent));
    UTRangeOf(*handle).start = start;
    UTRangeOf(*handle).size = last > start ? last - start : 0;
    return handle;
}
