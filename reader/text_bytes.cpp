// text_bytes.cpp - the bytes of texts, 16 at a time where the machine can.
#include "reader/text_bytes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

// Bytes are counted by spans, and whether they are a text's is looked at behind each.
constexpr std::size_t spanSize = 64;

constexpr std::uint8_t endMark = 0x1A;
constexpr std::uint8_t firstShift = 0x0E;  // the other is the next
constexpr std::uint8_t escape = 0x1B;
constexpr std::uint8_t firstSoft = 0x07;  // 07 to 0D: BEL, BS, HT, LF, VT, FF and CR
constexpr std::uint8_t softCount = 7;
constexpr std::uint8_t lastLow = 0x1F;
constexpr std::uint8_t deleteByte = 0x7F;
constexpr std::uint8_t firstHigh = 0x80;

// Counts span by span. The last one is filled up with blanks, which count as nothing.
template <typename CountSpan>
bool FICountBySpans(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray, FITextByteCounts& counts,
                    CountSpan countSpan) {
    for (; size >= spanSize; bytes += spanSize, size -= spanSize) {
        if (!countSpan(bytes, counts) || counts.stray > mostStray) return false;
    }
    if (size == 0) return true;
    std::array<std::uint8_t, spanSize> rest;
    rest.fill(' ');
    std::memcpy(rest.data(), bytes, size);
    return countSpan(rest.data(), counts) && counts.stray <= mostStray;
}

bool FICountSpanPortable(const std::uint8_t* bytes, FITextByteCounts& counts) {
    std::uint8_t highest = 0;
    for (std::size_t index = 0; index < spanSize; ++index) {
        const std::uint8_t byte = bytes[index];
        highest |= byte;
        if (FIIsTextByte(byte)) continue;
        if (byte == 0) return false;
        const bool isShift = (byte & ~1) == firstShift;
        ++(isShift ? counts.shifts : byte == endMark ? counts.endMarks : counts.stray);
    }
    counts.hasHigh |= highest >= firstHigh;
    return true;
}

// The bytes that may follow a byte: the second ones differ where a character would be longer than need be (E0, F0), a
// surrogate (ED) or too high (F4).
struct FISequence {
    std::size_t size;  // 0: no character begins so
    std::uint8_t firstSecond;
    std::uint8_t lastSecond;
};

FISequence FISequenceFrom(std::uint8_t lead) {
    constexpr std::uint8_t first = 0x80;
    constexpr std::uint8_t last = 0xBF;
    if (lead < firstHigh) return {1, first, last};
    if (lead < 0xC2) return {0, first, last};
    if (lead < 0xE0) return {2, first, last};
    if (lead < 0xF0) return {3, lead == 0xE0 ? std::uint8_t{0xA0} : first, lead == 0xED ? std::uint8_t{0x9F} : last};
    if (lead < 0xF5) return {4, lead == 0xF0 ? std::uint8_t{0x90} : first, lead == 0xF4 ? std::uint8_t{0x8F} : last};
    return {0, first, last};
}

constexpr bool FIIsContinuation(std::uint8_t byte) { return (byte & 0xC0) == 0x80; }

// How many of the sequence's bytes are there and right, up to its size.
std::size_t FIRightBytes(const FISequence& sequence, const std::uint8_t* bytes, std::size_t size) {
    if (sequence.size < 2 || size < 2) return std::min<std::size_t>(sequence.size, 1);
    if (bytes[1] < sequence.firstSecond || bytes[1] > sequence.lastSecond) return 1;
    std::size_t right = 2;
    while (right < sequence.size && right < size && FIIsContinuation(bytes[right])) ++right;
    return right;
}

}  // namespace

bool FICountTextBytesPortable(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray,
                              FITextByteCounts& counts) {
    return FICountBySpans(bytes, size, mostStray, counts, FICountSpanPortable);
}

bool FIIsUtf8Portable(const std::uint8_t* bytes, std::size_t size, bool mayBeCut) {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t place = 0;
    while (place < size) {
        std::uint64_t eight;
        if (size - place >= sizeof(eight)) {
            std::memcpy(&eight, bytes + place, sizeof(eight));
            if ((eight & highBits) == 0) {
                place += sizeof(eight);
                continue;
            }
        }
        const FISequence sequence = FISequenceFrom(bytes[place]);
        const std::size_t right = FIRightBytes(sequence, bytes + place, size - place);
        if (right == 0) return false;
        if (right < sequence.size) return mayBeCut && place + right == size;
        place += right;
    }
    return true;
}

const std::uint8_t* FIPassStringBytesPortable(const std::uint8_t* bytes, const std::uint8_t* end) {
    while (bytes != end && *bytes != '"' && *bytes != '\\' && *bytes > lastLow) ++bytes;
    return bytes;
}

#ifdef __SSE2__

namespace {

constexpr std::size_t vectorSize = 16;

__m128i FILoad(const std::uint8_t* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }

__m128i FIFill(std::uint8_t value) { return _mm_set1_epi8(static_cast<char>(value)); }

__m128i FIEqual(__m128i bytes, std::uint8_t value) { return _mm_cmpeq_epi8(bytes, FIFill(value)); }

__m128i FIAtMost(__m128i bytes, std::uint8_t limit) {
    return _mm_cmpeq_epi8(_mm_min_epu8(bytes, FIFill(limit)), bytes);
}

std::uint32_t FIBits(__m128i bytes) { return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes)); }

// A bit for each byte of a span for which a function gives FF.
template <typename IsMember>
std::uint64_t FISpanBits(const std::uint8_t* bytes, IsMember isMember) {
    std::uint64_t bits = 0;
    for (std::size_t start = 0; start < spanSize; start += vectorSize) {
        bits |= std::uint64_t{FIBits(isMember(FILoad(bytes + start)))} << start;
    }
    return bits;
}

// FF for each byte that is no text byte.
__m128i FINoTextBytes(__m128i bytes) {
    const __m128i soft = FIAtMost(_mm_sub_epi8(bytes, FIFill(firstSoft)), softCount - 1);
    const __m128i low = _mm_andnot_si128(_mm_or_si128(soft, FIEqual(bytes, escape)), FIAtMost(bytes, lastLow));
    return _mm_or_si128(low, FIEqual(bytes, deleteByte));
}

__m128i FILowest(__m128i first, __m128i second, __m128i third, __m128i fourth) {
    return _mm_min_epu8(_mm_min_epu8(first, second), _mm_min_epu8(third, fourth));
}

__m128i FIAny(__m128i first, __m128i second, __m128i third, __m128i fourth) {
    return _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
}

// Counts a span at which a closer look is needed. Returns false when it holds a byte 00.
bool FICountOddSpan(const std::uint8_t* bytes, FITextByteCounts& counts) {
    const std::uint64_t noText = FISpanBits(bytes, FINoTextBytes);
    if (noText == 0) return true;
    if (FISpanBits(bytes, [](__m128i vector) { return FIEqual(vector, 0); }) != 0) return false;
    const auto isShift = [](__m128i vector) { return FIAtMost(_mm_sub_epi8(vector, FIFill(firstShift)), 1); };
    const std::uint64_t shifts = FISpanBits(bytes, isShift);
    const std::uint64_t endMarks = FISpanBits(bytes, [](__m128i vector) { return FIEqual(vector, endMark); });
    const auto count = [](std::uint64_t bits) { return static_cast<std::uint32_t>(std::popcount(bits)); };
    counts.shifts += count(shifts);
    counts.endMarks += count(endMarks);
    counts.stray += count(noText & ~shifts & ~endMarks);
    return true;
}

// Most spans hold none of 00 to 06, 0E to 1F and 7F, which the lowest bytes tell: as they are, and less 0E.
bool FICountSpan(const std::uint8_t* bytes, FITextByteCounts& counts) {
    constexpr std::uint8_t behindSoft = firstSoft + softCount;
    const __m128i first = FILoad(bytes);
    const __m128i second = FILoad(bytes + vectorSize);
    const __m128i third = FILoad(bytes + 2 * vectorSize);
    const __m128i fourth = FILoad(bytes + 3 * vectorSize);
    const auto fromLow = [](__m128i vector) { return _mm_sub_epi8(vector, FIFill(behindSoft)); };
    const auto isDelete = [](__m128i vector) { return FIEqual(vector, deleteByte); };
    const __m128i lowest = FIAtMost(FILowest(first, second, third, fourth), firstSoft - 1);
    const __m128i lowestFromLow =
        FIAtMost(FILowest(fromLow(first), fromLow(second), fromLow(third), fromLow(fourth)), lastLow - behindSoft);
    const __m128i deletes = FIAny(isDelete(first), isDelete(second), isDelete(third), isDelete(fourth));
    counts.hasHigh |= FIBits(FIAny(first, second, third, fourth)) != 0;
    const bool isOdd = FIBits(_mm_or_si128(deletes, _mm_or_si128(lowest, lowestFromLow))) != 0;
    return !isOdd || FICountOddSpan(bytes, counts);
}

// FF or another value but 00 for bytes above a limit.
__m128i FIAbove(__m128i bytes, std::uint8_t limit) { return _mm_subs_epu8(bytes, FIFill(limit)); }

// Signed comparisons: among the bytes from 80 up they order as the unsigned ones do, and all others are greater.
__m128i FIHighBelow(__m128i bytes, std::uint8_t limit) { return _mm_cmplt_epi8(bytes, FIFill(limit)); }
__m128i FIHighAbove(__m128i bytes, std::uint8_t limit) { return _mm_cmpgt_epi8(bytes, FIFill(limit)); }

// 00 for each of 16 bytes that may stand there in UTF-8, told with the three bytes in front of them. A byte must continue a
// character exactly where one in front asks for it; the first byte behind some leads has narrower limits.
__m128i FIUtf8Errors(const std::uint8_t* bytes) {
    const __m128i here = FILoad(bytes);
    const __m128i first = FILoad(bytes - 1);
    const __m128i asked = _mm_or_si128(
        FIAbove(first, 0xBF), _mm_or_si128(FIAbove(FILoad(bytes - 2), 0xDF), FIAbove(FILoad(bytes - 3), 0xEF)));
    const __m128i continues = FIHighBelow(here, 0xC0);
    const __m128i notAsked = _mm_cmpeq_epi8(asked, _mm_setzero_si128());
    const __m128i misplaced = _mm_cmpeq_epi8(continues, notAsked);
    const __m128i neverLead = _mm_or_si128(FIEqual(_mm_and_si128(here, FIFill(0xFE)), 0xC0), FIAbove(here, 0xF4));
    const __m128i tooLong = _mm_or_si128(_mm_and_si128(FIEqual(first, 0xE0), FIHighBelow(here, 0xA0)),
                                         _mm_and_si128(FIEqual(first, 0xF0), FIHighBelow(here, 0x90)));
    const __m128i noCharacter = _mm_or_si128(_mm_and_si128(FIEqual(first, 0xED), FIHighAbove(here, 0x9F)),
                                             _mm_and_si128(FIEqual(first, 0xF4), FIHighAbove(here, 0x8F)));
    return _mm_or_si128(_mm_or_si128(misplaced, neverLead), _mm_or_si128(tooLong, noCharacter));
}

bool FIHasUtf8Error(__m128i errors) { return FIBits(_mm_cmpeq_epi8(errors, _mm_setzero_si128())) != 0xFFFF; }

bool FIIsAscii(const std::uint8_t* span) {
    __m128i all = FILoad(span);
    for (std::size_t start = vectorSize; start < spanSize; start += vectorSize) {
        all = _mm_or_si128(all, FILoad(span + start));
    }
    return FIBits(all) == 0;
}

bool FIIsSpanUtf8(const std::uint8_t* span) {
    // Behind a character that is complete a span of ASCII needs no closer look.
    if (span[-1] < firstHigh && FIIsAscii(span)) return true;
    __m128i errors = FIUtf8Errors(span);
    for (std::size_t start = vectorSize; start < spanSize; start += vectorSize) {
        errors = _mm_or_si128(errors, FIUtf8Errors(span + start));
    }
    return !FIHasUtf8Error(errors);
}

constexpr std::size_t longestSequence = 4;

// Where the last character begins if it lacks bytes; size if it does not.
std::size_t FIStartOfCutCharacter(const std::uint8_t* bytes, std::size_t size) {
    for (std::size_t left = 1; left < longestSequence && left <= size; ++left) {
        const std::uint8_t* const last = bytes + size - left;
        if (FIIsContinuation(*last)) continue;
        const FISequence sequence = FISequenceFrom(*last);
        return left < sequence.size && FIRightBytes(sequence, last, left) == left ? size - left : size;
    }
    return size;
}

}  // namespace

bool FICountTextBytes(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray, FITextByteCounts& counts) {
    return FICountBySpans(bytes, size, mostStray, counts, FICountSpan);
}

bool FIIsUtf8(const std::uint8_t* bytes, std::size_t size, bool mayBeCut) {
    constexpr std::size_t before = longestSequence - 1;
    if (mayBeCut) size = FIStartOfCutCharacter(bytes, size);
    if (size == 0) return true;
    // The first vector and the last one, which may be empty, lie among bytes 00: an error behind a character that lacks
    // bytes.
    std::array<std::uint8_t, before + vectorSize> edge = {};
    std::memcpy(edge.data() + before, bytes, std::min(size, vectorSize));
    if (FIHasUtf8Error(FIUtf8Errors(edge.data() + before))) return false;
    if (size < vectorSize) return true;
    std::size_t place = vectorSize;
    for (; size - place >= spanSize; place += spanSize) {
        if (!FIIsSpanUtf8(bytes + place)) return false;
    }
    for (; size - place >= vectorSize; place += vectorSize) {
        if (FIHasUtf8Error(FIUtf8Errors(bytes + place))) return false;
    }
    edge = {};
    std::memcpy(edge.data(), bytes + place - before, before + size - place);
    return !FIHasUtf8Error(FIUtf8Errors(edge.data() + before));
}

const std::uint8_t* FIPassStringBytes(const std::uint8_t* bytes, const std::uint8_t* end) {
    for (; end - bytes >= static_cast<std::ptrdiff_t>(vectorSize); bytes += vectorSize) {
        const __m128i vector = FILoad(bytes);
        const std::uint32_t marks =
            FIBits(_mm_or_si128(FIAtMost(vector, lastLow), _mm_or_si128(FIEqual(vector, '"'), FIEqual(vector, '\\'))));
        if (marks != 0) return bytes + std::countr_zero(marks);
    }
    return FIPassStringBytesPortable(bytes, end);
}

#else

bool FICountTextBytes(const std::uint8_t* bytes, std::size_t size, std::uint32_t mostStray, FITextByteCounts& counts) {
    return FICountTextBytesPortable(bytes, size, mostStray, counts);
}

bool FIIsUtf8(const std::uint8_t* bytes, std::size_t size, bool mayBeCut) {
    return FIIsUtf8Portable(bytes, size, mayBeCut);
}

const std::uint8_t* FIPassStringBytes(const std::uint8_t* bytes, const std::uint8_t* end) {
    return FIPassStringBytesPortable(bytes, end);
}

#endif
