// head.cpp - taking the head from a handle, and its masks.
#include "reader/head.h"

#include <cstring>

#include "platform/base_utility.h"

// A base utility library without it is as good: no handle has a head there.
extern "C" __attribute__((weak)) std::int16_t UTGetHead(HIOFILE handle, UTHead* head);

bool FITakeHead(HIOFILE file, FIHead& head) {
    UTHead start;
    if (UTGetHead == nullptr || UTGetHead(file, &start) != 0) return false;
    head.bytes = start.bytes;
    head.size = std::min(start.size, largestHead);
    head.fileSize = start.objectSize;
    head.maskedBytes = 0;
    return true;
}

void FIMaskHead(FIHead& head, std::uint32_t bytes) {
    bytes = std::min(bytes, head.size);
    while (head.maskedBytes < bytes) {
        const std::uint32_t start = head.maskedBytes;
        const std::uint32_t left = head.size - start;
        if (left >= byteMaskSpan) {
            head.masks[start / byteMaskSpan] = FIMakeByteMasks(head.bytes + start);
        } else {
            std::array<std::uint8_t, byteMaskSpan> rest;
            rest.fill(' ');
            std::memcpy(rest.data(), head.bytes + start, left);
            head.masks[start / byteMaskSpan] = FIMakeByteMasks(rest.data());
        }
        head.maskedBytes += byteMaskSpan;
    }
}
