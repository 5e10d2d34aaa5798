// Records in memory: their form, their order, and what they are counted as.
#include "scan/record_block.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string RecordsOf(RecordBlock& block) {
    std::string text;
    for (std::string_view record; block.Next(record);) text += std::string(record) + "|";
    return text;
}

std::string FormOf(std::size_t length) {
    std::vector<char> bytes;
    AppendRecord(bytes, std::string(length, 'x'));
    EXPECT_EQ(bytes.size(), RecordBytes(length)) << length;
    return {bytes.data(), bytes.size() - length};
}

TEST(RecordBlock, LengthsTakeSevenBitsOfAByte) {
    EXPECT_EQ(FormOf(0), std::string(1, '\0'));
    EXPECT_EQ(FormOf(127), "\x7F");
    EXPECT_EQ(FormOf(128), "\x80\x01");
    EXPECT_EQ(FormOf(16383), "\xFF\x7F");
    EXPECT_EQ(FormOf(16384), "\x80\x80\x01");
}

TEST(RecordBlock, RecordIsTakenWhereAllOfItIsThere) {
    std::vector<char> bytes;
    AppendRecord(bytes, std::string(200, 'x'));
    std::string_view record;
    for (std::size_t size = 0; size < bytes.size(); ++size) EXPECT_FALSE(TakeRecord({bytes.data(), size}, record));
    EXPECT_TRUE(TakeRecord({bytes.data(), bytes.size()}, record));
    EXPECT_EQ(record, std::string(200, 'x'));
    EXPECT_FALSE(TakeRecord(std::string(20, '\xFF'), record)) << "a length has ten bytes at most";
}

TEST(RecordBlock, ComesAsAdded) {
    RecordBlock block;
    for (const char* const record : {"b", "", "a", "b"}) block.Add(record);
    block.Finish(RecordOrder::AsAdded);
    EXPECT_EQ(RecordsOf(block), "b||a|b|");
    EXPECT_TRUE(block.IsAtEnd());
}

TEST(RecordBlock, SortsByUnsignedBytes) {
    RecordBlock block;
    for (const char* const record : {"b", "\xC3\xA9", "", "ab", "a", "b", "Z"}) block.Add(record);
    block.Add(std::string("a\0", 2));
    block.Finish(RecordOrder::Sorted);
    EXPECT_EQ(RecordsOf(block), std::string("|Z|a|a\0|ab|b|b|\xC3\xA9|", 18));
}

// The keys that it sorts by are eight bytes behind what all records have in common.
TEST(RecordBlock, SortsWhatKeysDoNotTellApart) {
    RecordBlock block;
    const std::string common = "a long beginning ";
    for (const char* const rest : {"12345678b", "12345678", "12345678a", "1234567", "\xFF", "1234567\x01", "2"}) {
        block.Add(common + rest);
    }
    block.Add(common + std::string("1234567\0", 8));
    block.Finish(RecordOrder::Sorted);
    std::string expected;
    for (const std::string& rest :
         {std::string("1234567"), std::string("1234567\0", 8), std::string("1234567\x01"), std::string("12345678"),
          std::string("12345678a"), std::string("12345678b"), std::string("2"), std::string("\xFF")}) {
        expected += common + rest + "|";
    }
    EXPECT_EQ(RecordsOf(block), expected);
}

TEST(RecordBlock, SortsRecordsOfWhichOneIsTheBeginningOfAll) {
    RecordBlock block;
    for (const char* const record : {"nameb", "name", "namea", "name"}) block.Add(record);
    block.Finish(RecordOrder::Sorted);
    EXPECT_EQ(RecordsOf(block), "name|name|namea|nameb|");
}

TEST(RecordBlock, NothingAddedIsNothing) {
    for (const RecordOrder order : {RecordOrder::Sorted, RecordOrder::AsAdded}) {
        RecordBlock block;
        block.Finish(order);
        EXPECT_TRUE(block.IsAtEnd());
        EXPECT_EQ(RecordsOf(block), "");
        EXPECT_EQ(block.Memory(), 0U);
    }
}

// Records around the size of a chunk, 262,144 bytes with three of the length, among small ones.
TEST(RecordBlock, RecordsOfAnyLengthComeBack) {
    std::vector<std::string> records;
    for (const std::size_t length : {1, 262140, 262141, 262142, 2, 131069, 131070, 600000, 3, 100, 262143, 4}) {
        records.emplace_back(length, static_cast<char>('a' + records.size()));
    }
    for (const RecordOrder order : {RecordOrder::AsAdded, RecordOrder::Sorted}) {
        RecordBlock block;
        for (const std::string& record : records) block.Add(record);
        block.Finish(order);
        std::string_view record;
        for (const std::string& expected : records) {
            ASSERT_TRUE(block.Next(record));
            EXPECT_TRUE(record == expected) << expected.size();
        }
        EXPECT_FALSE(block.Next(record));
    }
}

TEST(RecordBlock, GoesBackToAPlace) {
    for (const RecordOrder order : {RecordOrder::AsAdded, RecordOrder::Sorted}) {
        RecordBlock block;
        for (const char* const record : {"a", "b", "c"}) block.Add(record);
        block.Finish(order);
        std::string_view record;
        block.Next(record);
        const RecordBlock::Place place = block.Here();
        EXPECT_EQ(RecordsOf(block), "b|c|");
        block.GoTo(place);
        EXPECT_EQ(RecordsOf(block), "b|c|");
        block.GoTo(0);
        EXPECT_EQ(RecordsOf(block), "a|b|c|");
    }
}

TEST(RecordBlock, CountsTheBytesWithLengthAndIndex) {
    RecordBlock block;
    EXPECT_EQ(block.MemoryWith(10), 15U);
    block.Add("0123456789");
    EXPECT_EQ(block.Memory(), 15U);
    EXPECT_EQ(block.MemoryWith(200), 15U + 206U);
}

}  // namespace
