// byte_masks.cpp - the classes of bytes, 16 at a time where the machine can.
#include "reader/byte_masks.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr std::uint8_t lastLow = 0x1F;
constexpr std::uint8_t firstSoft = 0x08;
constexpr std::uint8_t softCount = 6;
constexpr std::uint8_t firstHigh = 0x80;

}  // namespace

FIByteMasks FIMakeByteMasksPortable(const std::uint8_t* bytes) {
    FIByteMasks masks = {};
    for (std::uint32_t index = 0; index < byteMaskSpan; ++index) {
        const std::uint8_t byte = bytes[index];
        const auto bit = [index](bool isMember) { return std::uint64_t{isMember} << index; };
        masks.low |= bit(byte <= lastLow);
        masks.soft |= bit(byte >= firstSoft && byte < firstSoft + softCount);
        masks.lf |= bit(byte == '\n');
        masks.cr |= bit(byte == '\r');
        masks.high |= bit(byte >= firstHigh);
    }
    return masks;
}

#ifdef __SSE2__

namespace {

std::uint64_t FIBits(__m128i bytes) { return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes)); }

// Bytes of at most a limit: those that the smaller of the two leaves as they are.
__m128i FIAtMost(__m128i bytes, std::uint8_t limit) {
    return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(static_cast<char>(limit))), bytes);
}

__m128i FIEqual(__m128i bytes, std::uint8_t value) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(value)));
}

}  // namespace

FIByteMasks FIMakeByteMasks(const std::uint8_t* bytes) {
    constexpr std::uint32_t vectorSize = 16;
    FIByteMasks masks = {};
    for (std::uint32_t start = 0; start < byteMaskSpan; start += vectorSize) {
        const __m128i vector = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + start));
        const __m128i fromSoft = _mm_sub_epi8(vector, _mm_set1_epi8(firstSoft));
        masks.low |= FIBits(FIAtMost(vector, lastLow)) << start;
        masks.soft |= FIBits(FIAtMost(fromSoft, softCount - 1)) << start;
        masks.lf |= FIBits(FIEqual(vector, '\n')) << start;
        masks.cr |= FIBits(FIEqual(vector, '\r')) << start;
        masks.high |= FIBits(vector) << start;
    }
    return masks;
}

#else

FIByteMasks FIMakeByteMasks(const std::uint8_t* bytes) { return FIMakeByteMasksPortable(bytes); }

#endif
