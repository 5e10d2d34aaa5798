// Numbers out of bytes: each byte counts at its place, the lowest first.
#include "reader/little_endian.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint8_t ascending[] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08};
constexpr std::uint8_t high[] = {0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7};

static_assert(FILoadWordLE(ascending) == 0x0201);
static_assert(FILoadWordLE(high) == 0xF1F0);
static_assert(FILoadDWordLE(ascending) == 0x04030201);
static_assert(FILoadDWordLE(high) == 0xF3F2F1F0);
static_assert(FILoadQWordLE(ascending) == 0x0807060504030201);
static_assert(FILoadQWordLE(high) == 0xF7F6F5F4F3F2F1F0);

TEST(LittleEndian, EachByteCountsAtItsPlace) {
    for (std::uint32_t place = 0; place < 8; ++place) {
        std::uint8_t bytes[8] = {};
        bytes[place] = 0x81;
        const std::uint64_t expected = std::uint64_t{0x81} << 8 * place;
        EXPECT_EQ(FILoadQWordLE(bytes), expected) << place;
        EXPECT_EQ(FILoadDWordLE(bytes), static_cast<std::uint32_t>(expected)) << place;
        EXPECT_EQ(FILoadWordLE(bytes), static_cast<std::uint16_t>(expected)) << place;
    }
}

}  // namespace
