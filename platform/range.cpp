// range.cpp - a stretch of another handle.
#include "platform/range.h"

#include <algorithm>

namespace {

struct UTRange {
    UTHandle handle;
    std::uint64_t start;
    std::uint64_t size;
};

std::int32_t UTReadRange(UTHandle& handle, std::uint64_t offset, void* destination, std::uint32_t size,
                         std::uint32_t& count) {
    const UTRange& range = UTRecordOf<UTRange>(handle);
    count = 0;
    if (offset >= range.size) return 0;
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, range.size - offset));
    return UTReadAt(*handle.parent, range.start + offset, destination, wanted, count);
}

std::uint64_t UTRangeSize(UTHandle& handle) { return UTRecordOf<UTRange>(handle).size; }

constexpr UTHandleKind rangeKind = {UTReadRange, UTRangeSize, nullptr};

}  // namespace

UTHandle* UTOpenRange(UTHandle& parent, std::uint32_t start, std::uint32_t end) {
    auto* const range = UTNewHandleRecord<UTRange>(rangeKind, &parent);
    if (range == nullptr) return nullptr;
    const std::uint64_t last = std::min<std::uint64_t>(end, UTGetSize(parent));
    range->start = start;
    range->size = last > start ? last - start : 0;
    return &range->handle;
}
