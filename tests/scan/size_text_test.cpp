// Sizes as people write them.
#include "scan/size_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

namespace {

constexpr std::uint64_t largest = UINT64_MAX;

TEST(ParseSize, DigitsAreBytes) {
    EXPECT_EQ(ParseSize("0"), 0U);
    EXPECT_EQ(ParseSize("1"), 1U);
    EXPECT_EQ(ParseSize("0010"), 10U);
    EXPECT_EQ(ParseSize("10B"), 10U);
    EXPECT_EQ(ParseSize("10b"), 10U);
}

TEST(ParseSize, LettersAreSteps1024) {
    EXPECT_EQ(ParseSize("1K"), std::uint64_t{1} << 10);
    EXPECT_EQ(ParseSize("3M"), std::uint64_t{3} << 20);
    EXPECT_EQ(ParseSize("1G"), std::uint64_t{1} << 30);
    EXPECT_EQ(ParseSize("1T"), std::uint64_t{1} << 40);
    EXPECT_EQ(ParseSize("1P"), std::uint64_t{1} << 50);
    EXPECT_EQ(ParseSize("1E"), std::uint64_t{1} << 60);
    EXPECT_EQ(ParseSize("0K"), 0U);
}

TEST(ParseSize, LettersMayBeSmallAndHaveBytesBehindThem) {
    for (const char* text : {"2k", "2K", "2kB", "2KB", "2kb", "2KiB", "2Kib", "2kib", "2KIB"}) {
        EXPECT_EQ(ParseSize(text), 2048U) << text;
    }
    EXPECT_EQ(ParseSize("2gib"), std::uint64_t{2} << 30);
}

TEST(ParseSize, NothingElseIsASize) {
    for (const char* text : {"",      "K",    "B",   "KiB", "-1",  "+1",  " 1",    "1 ", "1 K", "1.5K",
                             "1,000", "0x10", "1KK", "1BK", "1iB", "1Ki", "1KiBs", "1Z", "one", "1\n"}) {
        EXPECT_EQ(ParseSize(text), std::nullopt) << text;
    }
}

TEST(ParseSize, SixtyFourBitsAreTheLimit) {
    EXPECT_EQ(ParseSize("18446744073709551615"), largest);
    EXPECT_EQ(ParseSize("18446744073709551616"), std::nullopt);
    EXPECT_EQ(ParseSize("18446744073709551620"), std::nullopt);
    EXPECT_EQ(ParseSize("99999999999999999999999"), std::nullopt);
    EXPECT_EQ(ParseSize("15E"), std::uint64_t{15} << 60);
    EXPECT_EQ(ParseSize("16E"), std::nullopt);
    EXPECT_EQ(ParseSize("16383P"), std::uint64_t{16383} << 50);
    EXPECT_EQ(ParseSize("16384P"), std::nullopt);
    EXPECT_EQ(ParseSize("18014398509481983K"), largest - 1023);
    EXPECT_EQ(ParseSize("18014398509481984K"), std::nullopt);
}

}  // namespace
