// head_line.cpp - lines of text found by the masks.
#include "reader/head_line.h"

#include "reader/header_line.h"

namespace {

constexpr std::uint32_t longestLine = headerLineCapacity - 1;

// Line ends, and the control characters among which NUL is.
constexpr auto FILineStops = [](const FIByteMasks& masks) { return masks.lf | masks.cr | FIHardControls(masks); };

// Passes over a line end of one byte or two.
std::uint32_t FIPassLineEnd(const FIHead& head, std::uint32_t position) {
    const std::uint8_t partner = head.bytes[position] == '\n' ? '\r' : '\n';
    ++position;
    return position < head.size && head.bytes[position] == partner ? position + 1 : position;
}

}  // namespace

FIHeadLine FITakeHeadLine(FIHead& head, std::uint32_t& position, std::string_view& line) {
    const std::uint32_t start = position;
    const std::uint32_t limit = std::min(start + longestLine, head.size);
    std::uint32_t end = FINextInHead(head, start, limit, FILineStops);
    while (end < limit && head.bytes[end] != '\n' && head.bytes[end] != '\r') {
        if (head.bytes[end] == 0) return FIHeadLine::holdsNul;
        end = FINextInHead(head, end + 1, limit, FILineStops);
    }
    if (end == limit && end - start < longestLine && !FIHeadIsWhole(head)) return FIHeadLine::beyondHead;
    line = std::string_view(reinterpret_cast<const char*>(head.bytes) + start, end - start);
    position = end < limit ? FIPassLineEnd(head, end) : end;
    return FIHeadLine::taken;
}
