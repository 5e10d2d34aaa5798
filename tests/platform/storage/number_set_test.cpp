// The set of numbers that walks over damaged files are kept from looping with.
#include "platform/storage/number_set.h"

#include <gtest/gtest.h>

#include <set>

#include "support/process_heap.h"

namespace {

TEST(NumberSet, HoldsWhatWasAdded) {
    UTNumberSet numbers;
    std::set<std::uint32_t> expected;
    std::uint32_t number = 1;
    for (std::uint32_t round = 0; round < 20000; ++round) {
        number = number * 1664525 + 1013904223;
        const std::uint32_t candidate = round % 3 == 0 ? number : number % 5000;
        EXPECT_EQ(numbers.Holds(candidate), expected.count(candidate) == 1);
        EXPECT_EQ(numbers.Add(candidate), expected.insert(candidate).second);
        EXPECT_TRUE(numbers.Holds(candidate));
    }
}

TEST(NumberSet, TakesTheFirstAndTheLastNumber) {
    UTNumberSet numbers;
    for (const std::uint32_t number : {0U, 511U, 512U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        EXPECT_FALSE(numbers.Holds(number));
        EXPECT_TRUE(numbers.Add(number));
        EXPECT_FALSE(numbers.Add(number));
    }
    EXPECT_FALSE(numbers.Holds(1));
    EXPECT_FALSE(numbers.Holds(0xFFFFFFFD));
}

TEST(NumberSet, TakesNoMemoryForItsFirstPage) {
    const std::size_t blocksBefore = FIHeapBlocks();
    for (const std::uint32_t first : {0U, 511U, 512U, 1000000U, 0xFFFFFFFFU}) {
        UTNumberSet numbers;
        EXPECT_FALSE(numbers.Holds(first));
        FIFailAllocationsFrom(0);
        EXPECT_TRUE(numbers.Add(first));
        EXPECT_TRUE(numbers.Add(first ^ 1));
        FIHeapNeverFails();
        EXPECT_TRUE(numbers.Add(first ^ 512)) << "the neighbouring page";
        EXPECT_TRUE(numbers.Holds(first ^ 1));
        EXPECT_FALSE(numbers.Add(first));
        EXPECT_FALSE(numbers.Holds(first ^ 513));
        EXPECT_TRUE(numbers.Add(first ^ 2));
    }
    EXPECT_EQ(FIHeapBlocks(), blocksBefore);
}

TEST(NumberSet, StaysAsItWasWhenTheHeapIsExhausted) {
    const std::size_t blocksBefore = FIHeapBlocks();
    {
        UTNumberSet numbers;
        EXPECT_TRUE(numbers.Add(7));
        FIFailAllocationsFrom(0);
        EXPECT_THROW(numbers.Add(1000000), std::bad_alloc);
        EXPECT_TRUE(numbers.Add(8)) << "its page is there";
        FIHeapNeverFails();
        EXPECT_TRUE(numbers.Holds(7));
        EXPECT_FALSE(numbers.Holds(1000000));
        EXPECT_TRUE(numbers.Add(1000000));
    }
    EXPECT_EQ(FIHeapBlocks(), blocksBefore);
}

}  // namespace
