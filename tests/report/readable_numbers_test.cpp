// Numbers for people, at both sides of each limit.
#include "report/readable_numbers.h"

#include <gtest/gtest.h>

namespace {

std::string Grouped(std::uint64_t number) {
    std::string text;
    AppendGroupedNumber(text, number);
    return text;
}

std::string Size(std::uint64_t bytes) {
    std::string text;
    AppendReadableSize(text, bytes);
    return text;
}

std::string Percent(std::uint64_t part, std::uint64_t whole) {
    std::string text;
    AppendPercent(text, part, whole);
    return text;
}

TEST(ReadableNumbers, HaveACommaBetweenEachThreeDigits) {
    EXPECT_EQ(Grouped(0), "0");
    EXPECT_EQ(Grouped(999), "999");
    EXPECT_EQ(Grouped(1000), "1,000");
    EXPECT_EQ(Grouped(12345), "12,345");
    EXPECT_EQ(Grouped(999999), "999,999");
    EXPECT_EQ(Grouped(1000000), "1,000,000");
    EXPECT_EQ(Grouped(UINT64_MAX), "18,446,744,073,709,551,615");
}

TEST(ReadableNumbers, AreAppended) {
    std::string text = "12345";
    AppendGroupedNumber(text, 6789);
    AppendReadableSize(text, 5);
    AppendPercent(text, 1, 2);
    EXPECT_EQ(text, "123456,7895 B50.0%");
}

TEST(ReadableSizes, AreToldInTheLargestUnitThatFits) {
    EXPECT_EQ(Size(0), "0 B");
    EXPECT_EQ(Size(1023), "1023 B");
    EXPECT_EQ(Size(1024), "1.0 KiB");
    EXPECT_EQ(Size((1 << 20) - (1 << 9) - 1), "1023 KiB");
    EXPECT_EQ(Size((1 << 20) - (1 << 9)), "1.0 MiB");
    EXPECT_EQ(Size(1 << 20), "1.0 MiB");
    EXPECT_EQ(Size(std::uint64_t{1} << 30), "1.0 GiB");
    EXPECT_EQ(Size(std::uint64_t{1} << 40), "1.0 TiB");
    EXPECT_EQ(Size(std::uint64_t{1} << 50), "1.0 PiB");
    EXPECT_EQ(Size(std::uint64_t{1} << 60), "1.0 EiB");
    EXPECT_EQ(Size((std::uint64_t{1} << 60) - 1), "1.0 EiB");
    EXPECT_EQ(Size(UINT64_MAX), "16.0 EiB");
}

TEST(ReadableSizes, HaveTenthsBelow100) {
    EXPECT_EQ(Size(1075), "1.0 KiB");     // 1.0498
    EXPECT_EQ(Size(1076), "1.1 KiB");     // 1.0508
    EXPECT_EQ(Size(102348), "99.9 KiB");  // 99.949
    EXPECT_EQ(Size(102349), "100 KiB");   // 99.950
    EXPECT_EQ(Size(102911), "100 KiB");   // 100.499
    EXPECT_EQ(Size(102912), "101 KiB");   // 100.5
}

TEST(Percents, AreRoundedToTenths) {
    EXPECT_EQ(Percent(0, 0), "0.0%");
    EXPECT_EQ(Percent(0, 7), "0.0%");
    EXPECT_EQ(Percent(7, 7), "100.0%");
    EXPECT_EQ(Percent(1, 3), "33.3%");
    EXPECT_EQ(Percent(2, 3), "66.7%");
    EXPECT_EQ(Percent(1, 2001), "0.0%");
    EXPECT_EQ(Percent(1, 2000), "0.1%");
    EXPECT_EQ(Percent(1998, 2000), "99.9%");
    EXPECT_EQ(Percent(UINT64_MAX, UINT64_MAX), "100.0%");
}

TEST(Shares, AreRoundedToTheStepsAskedFor) {
    EXPECT_EQ(RoundedShare(1, 3, 10000), 3333U);
    EXPECT_EQ(RoundedShare(2, 3, 10000), 6667U);
    EXPECT_EQ(RoundedShare(0, 0, 10000), 0U);
    EXPECT_EQ(RoundedShare(321, 20000, 10000), 161U);  // a half, which goes up
    constexpr std::uint64_t large = std::uint64_t{1} << 40;
    EXPECT_EQ(RoundedShare(large - 1, large - 1, 100000), 100000U);
    EXPECT_EQ(RoundedShare(large / 2, large, 100000), 50000U);
    EXPECT_EQ(RoundedShare(UINT64_MAX / 4, UINT64_MAX, 100000), 25000U);
}

}  // namespace
