// Bytes of texts many at a time: each form with vector instructions against the one without, and both against plain ones.
#include "reader/text_bytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/random_numbers.h"

namespace {

using namespace std::string_literals;

// A copy in a block of its own, so that the sanitizer sees a look behind it.
struct Block {
    explicit Block(const std::string& text) : bytes(new std::uint8_t[text.size()]), size(text.size()) {
        std::copy(text.begin(), text.end(), bytes.get());
    }
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size;
};

struct Counted {
    bool isText;
    FITextByteCounts counts;
};

Counted PlainCounts(const std::string& text, std::uint32_t mostStray) {
    Counted result = {true, {}};
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte == 0) result.isText = false;
        if (byte == 0x0E || byte == 0x0F) ++result.counts.shifts;
        if (byte == 0x1A) ++result.counts.endMarks;
        const bool isOther = byte == 0x1A || byte == 0x0E || byte == 0x0F || byte == 0x1B;
        if ((byte < 0x07 || (byte > 0x0D && byte < 0x20) || byte == 0x7F) && !isOther) ++result.counts.stray;
        if (byte >= 0x80) result.counts.hasHigh = true;
    }
    result.isText = result.isText && result.counts.stray <= mostStray;
    return result;
}

void ExpectCounts(const std::string& text, std::uint32_t mostStray) {
    const Counted expected = PlainCounts(text, mostStray);
    const Block block(text);
    for (const auto count : {FICountTextBytes, FICountTextBytesPortable}) {
        FITextByteCounts counts = {};
        ASSERT_EQ(count(block.bytes.get(), block.size, mostStray, counts), expected.isText);
        if (!expected.isText) continue;
        EXPECT_EQ(counts.stray, expected.counts.stray);
        EXPECT_EQ(counts.shifts, expected.counts.shifts);
        EXPECT_EQ(counts.endMarks, expected.counts.endMarks);
        EXPECT_EQ(counts.hasHigh, expected.counts.hasHigh);
    }
}

TEST(TextByteCounts, KnowEveryByteAtEveryPlace) {
    for (std::uint32_t value = 0; value <= 0xFF; ++value) {
        for (const std::size_t size : {1U, 64U, 70U}) {
            for (std::size_t place = 0; place < size; place += 7) {
                std::string text(size, 'x');
                text[place] = static_cast<char>(value);
                ExpectCounts(text, 1);
                ExpectCounts(text, 0);
            }
        }
    }
}

TEST(TextByteCounts, AreTheSameForRandomTexts) {
    RandomNumbers random(1);
    const std::string rare = "\x06\x07\x0D\x0E\x0F\x1A\x1B\x1C\x1F\x20\x7E\x7F\x80\xFF"s;
    for (std::uint32_t round = 0; round < 3000; ++round) {
        std::string text(random.Below(300), 'x');
        for (char& character : text) {
            if (random.OneIn(20)) character = random.Of(rare);
        }
        if (!text.empty() && random.OneIn(10)) text[random.Below(static_cast<std::uint32_t>(text.size()))] = '\0';
        ExpectCounts(text, random.Below(10));
    }
}

TEST(TextByteCounts, AddUp) {
    FITextByteCounts counts = {1, 2, 3, true};
    const Block block("\x01\x0E\x1A");
    EXPECT_TRUE(FICountTextBytes(block.bytes.get(), block.size, 2, counts));
    EXPECT_EQ(counts.stray, 2U);
    EXPECT_EQ(counts.shifts, 3U);
    EXPECT_EQ(counts.endMarks, 4U);
    EXPECT_TRUE(counts.hasHigh);
    EXPECT_FALSE(FICountTextBytes(block.bytes.get(), block.size, 2, counts)) << "the third stray byte";
}

struct Utf8Case {
    std::string bytes;
    bool isUtf8;
    bool isUtf8IfCut;
};

const std::vector<Utf8Case> utf8Cases = {
    {"", true, true},
    {"\x7F", true, true},
    {"\x80", false, false},
    {"\xBF", false, false},
    {"\xC0\x80", false, false},
    {"\xC1\xBF", false, false},
    {"\xC2\x80", true, true},
    {"\xC2", false, true},
    {"\xC2\x7F", false, false},
    {"\xC2\xC0", false, false},
    {"\xDF\xBF", true, true},
    {"\xDF\xBF\x80", false, false},
    {"\xE0\x9F\xBF", false, false},
    {"\xE0\x9F", false, false},
    {"\xE0\xA0\x80", true, true},
    {"\xE0\xA0", false, true},
    {"\xE0", false, true},
    {"\xED\x9F\xBF", true, true},
    {"\xED\xA0\x80", false, false},
    {"\xED\xA0", false, false},
    {"\xEF\xBF\xBF", true, true},
    {"\xEF\xBF\xBF\xBF", false, false},
    {"\xF0\x8F\xBF\xBF", false, false},
    {"\xF0\x8F", false, false},
    {"\xF0\x90\x80\x80", true, true},
    {"\xF0\x90\x80", false, true},
    {"\xF0\x90", false, true},
    {"\xF0", false, true},
    {"\xF0\x90\x41\x80", false, false},
    {"\xF4\x8F\xBF\xBF", true, true},
    {"\xF4\x90\x80\x80", false, false},
    {"\xF4\x90", false, false},
    {"\xF5", false, false},
    {"\xFF", false, false},
    {"\xC2\xE0\xA0\x80", false, false},
};

// At every place of the vectors, between ASCII and between other characters.
TEST(Utf8, IsValidByItsCharacters) {
    for (const Utf8Case& one : utf8Cases) {
        for (const char* filler : {"x", "\xC3\xA4", "\xE2\x82\xAC"}) {
            for (std::size_t before = 0; before < 90; before += before < 19 ? 1 : 13) {
                std::string text;
                while (text.size() < before) text += filler;
                for (const std::string& behind : {""s, std::string(filler), std::string(80, 'x')}) {
                    const Block block(text + one.bytes + behind);
                    const bool mayEnd = behind.empty() ? one.isUtf8IfCut : one.isUtf8;
                    for (const auto isUtf8 : {FIIsUtf8, FIIsUtf8Portable}) {
                        const std::string shown = testing::PrintToString(text + one.bytes + behind);
                        ASSERT_EQ(isUtf8(block.bytes.get(), block.size, false), one.isUtf8) << shown;
                        ASSERT_EQ(isUtf8(block.bytes.get(), block.size, true), mayEnd) << shown;
                    }
                }
            }
        }
    }
}

TEST(Utf8, IsTheSameInBothFormsForRandomBytes) {
    RandomNumbers random(2);
    std::uint32_t valid = 0;
    for (std::uint32_t round = 0; round < 6000; ++round) {
        std::string text;
        while (text.size() < 20 || !random.OneIn(20)) text += random.OneIn(150) ? "\xE0" : random.Of(utf8Cases).bytes;
        if (random.OneIn(2)) {
            text.clear();
            const std::string pieces[] = {"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "x", "\xC2\x80", "\xED\x9F\xBF",
                                          "\xF4\x8F\xBF\xBF"};
            while (text.size() < 20 || !random.OneIn(20)) text += random.Of(pieces);
            if (random.OneIn(2)) text.resize(text.size() - random.Below(4));
            if (random.OneIn(4)) text[random.Below(static_cast<std::uint32_t>(text.size()))] = '\xA0';
        }
        const Block block(text);
        for (const bool mayBeCut : {false, true}) {
            const bool isUtf8 = FIIsUtf8Portable(block.bytes.get(), block.size, mayBeCut);
            ASSERT_EQ(FIIsUtf8(block.bytes.get(), block.size, mayBeCut), isUtf8) << testing::PrintToString(text);
            valid += isUtf8 ? 1U : 0U;
        }
    }
    EXPECT_GT(valid, 1500U);
}

TEST(StringBytes, ArePassedUpToAMark) {
    for (std::size_t size = 0; size < 60; ++size) {
        for (std::size_t place = 0; place <= size; ++place) {
            for (std::uint32_t value = 0; value <= 0xFF; value += value < 0x24 ? 1 : 4) {
                std::string text(size, 'x');
                const bool isMark = place < size && (value < 0x20 || value == '"' || value == '\\');
                if (place < size) text[place] = static_cast<char>(value);
                const Block block(text);
                const std::uint8_t* const end = block.bytes.get() + size;
                for (const auto pass : {FIPassStringBytes, FIPassStringBytesPortable}) {
                    ASSERT_EQ(pass(block.bytes.get(), end) - block.bytes.get(),
                              static_cast<std::ptrdiff_t>(isMark ? place : size));
                }
            }
        }
    }
}

}  // namespace
