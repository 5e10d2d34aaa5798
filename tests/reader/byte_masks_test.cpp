// Classes of 64 bytes: what each class holds, and the form with vector instructions against the one without.
#include "reader/byte_masks.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace {

using Span = std::array<std::uint8_t, byteMaskSpan>;

// Masks as one number of five, to compare and to print them.
std::array<std::uint64_t, 5> All(const FIByteMasks& masks) {
    return {masks.low, masks.soft, masks.lf, masks.cr, masks.high};
}

// What the classes are, told once more.
std::array<std::uint64_t, 5> Expected(const Span& bytes) {
    std::array<std::uint64_t, 5> masks = {};
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const std::uint8_t byte = bytes[index];
        const bool members[] = {byte < 0x20, byte == 8 || byte == 9 || (byte > 9 && byte < 14), byte == 0x0A,
                                byte == 0x0D, byte > 0x7F};
        for (std::size_t mask = 0; mask < masks.size(); ++mask) masks[mask] |= std::uint64_t{members[mask]} << index;
    }
    return masks;
}

void ExpectBothForms(const Span& bytes) {
    const auto expected = Expected(bytes);
    ASSERT_EQ(All(FIMakeByteMasksPortable(bytes.data())), expected);
    ASSERT_EQ(All(FIMakeByteMasks(bytes.data())), expected);
}

TEST(ByteMasks, HaveTheirClassesAtEachLimit) {
    struct Limit {
        std::uint8_t byte;
        std::array<std::uint64_t, 5> masks;  // low, soft, lf, cr, high; of the first bit
    };
    constexpr Limit limits[] = {
        {0x00, {1, 0, 0, 0, 0}}, {0x07, {1, 0, 0, 0, 0}}, {0x08, {1, 1, 0, 0, 0}}, {0x09, {1, 1, 0, 0, 0}},
        {0x0A, {1, 1, 1, 0, 0}}, {0x0B, {1, 1, 0, 0, 0}}, {0x0C, {1, 1, 0, 0, 0}}, {0x0D, {1, 1, 0, 1, 0}},
        {0x0E, {1, 0, 0, 0, 0}}, {0x1F, {1, 0, 0, 0, 0}}, {0x20, {0, 0, 0, 0, 0}}, {0x7E, {0, 0, 0, 0, 0}},
        {0x7F, {0, 0, 0, 0, 0}}, {0x80, {0, 0, 0, 0, 1}}, {0xFE, {0, 0, 0, 0, 1}}, {0xFF, {0, 0, 0, 0, 1}},
    };
    for (const Limit& limit : limits) {
        Span bytes;
        bytes.fill(' ');
        bytes[0] = limit.byte;
        EXPECT_EQ(All(FIMakeByteMasks(bytes.data())), limit.masks) << std::uint32_t{limit.byte};
        EXPECT_EQ(All(FIMakeByteMasksPortable(bytes.data())), limit.masks) << std::uint32_t{limit.byte};
    }
}

// Every value at every place, among bytes of no class, of all low ones and of all high ones.
TEST(ByteMasks, KnowEveryValueAtEveryPlace) {
    for (const std::uint8_t others : {std::uint8_t{' '}, std::uint8_t{'\n'}, std::uint8_t{0xFF}}) {
        for (std::size_t place = 0; place < byteMaskSpan; ++place) {
            for (std::uint32_t value = 0; value <= 0xFF; ++value) {
                Span bytes;
                bytes.fill(others);
                bytes[place] = static_cast<std::uint8_t>(value);
                ExpectBothForms(bytes);
            }
        }
    }
}

TEST(ByteMasks, AreTheSameInBothFormsForRandomBytes) {
    std::mt19937 generator(64);
    for (std::uint32_t round = 0; round < 5000; ++round) {
        const std::uint32_t values = round % 2 == 0 ? 256 : 48;  // all, or mostly those of the classes
        Span bytes;
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator() % values);
        ExpectBothForms(bytes);
    }
}

TEST(ByteMasks, AreOfBytesAtAnyAddress) {
    std::mt19937 generator(65);
    std::array<std::uint8_t, 2 * byteMaskSpan> bytes = {};
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator());
    for (std::size_t start = 0; start < byteMaskSpan; ++start) {
        EXPECT_EQ(All(FIMakeByteMasks(bytes.data() + start)), All(FIMakeByteMasksPortable(bytes.data() + start)));
    }
}

}  // namespace
