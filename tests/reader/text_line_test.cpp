// Reading text: the loop under both kinds of lines, and words that must stand there. Line ends and capacities are in
// header_line_test and, with NUL bytes as the end, in graphics/drawings_test.
#include "reader/text_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "reader/reader.h"
#include "support/test_handle.h"

namespace {

using namespace std::string_literals;

class TextLine : public testing::Test {
 protected:
    FIReader& Open(std::string bytes) {
        handle_ = FIMakeTestHandle(std::move(bytes));
        FIReaderStart(reader_, FIFileOf(*handle_));
        return reader_;
    }
    void ExpectLine(FINulByte nul, std::string_view text, bool textEnded) {
        const FITakenLine line = FITakeLine(buffer_, sizeof(buffer_), reader_, nul);
        EXPECT_EQ(std::string_view(buffer_, line.size), text);
        EXPECT_EQ(buffer_[line.size], '\0');
        EXPECT_EQ(line.textEnded, textEnded);
    }
    std::unique_ptr<TestHandle> handle_;
    FIReader reader_;
    char buffer_[5];
};

TEST_F(TextLine, EndsAtANulThatEndsTheText) {
    Open("a\0b\nc"s);
    ExpectLine(FINulByte::endsText, "a", true);
    ExpectLine(FINulByte::endsText, "b", false);
    ExpectLine(FINulByte::endsText, "c", true);
    ExpectLine(FINulByte::endsText, "", true);
}

TEST_F(TextLine, HoldsANulThatIsText) {
    Open("a\0b\nc"s);
    ExpectLine(FINulByte::isText, "a\0b"s, false);
    ExpectLine(FINulByte::isText, "c", true);
    ExpectLine(FINulByte::isText, "", true);
}

TEST_F(TextLine, EndsWithAFullBufferWhateverComesThen) {
    for (const FINulByte nul : {FINulByte::endsText, FINulByte::isText}) {
        Open("abcd");
        ExpectLine(nul, "abcd", false);
        ExpectLine(nul, "", true);
        Open("abcd\r\ne");
        ExpectLine(nul, "abcd", false);
        ExpectLine(nul, "", false);
        ExpectLine(nul, "e", true);
    }
}

TEST_F(TextLine, ReadsNothingWithoutRoom) {
    FIReader& reader = Open("ab");
    for (const std::uint16_t capacity : {std::uint16_t{0}, std::uint16_t{1}}) {
        const FITakenLine line = FITakeLine(buffer_, capacity, reader, FINulByte::endsText);
        EXPECT_EQ(line.size, 0);
        EXPECT_FALSE(line.textEnded);
        EXPECT_EQ(buffer_[0], '\0');
    }
    EXPECT_EQ(handle_->reads, 0U);
}

TEST_F(TextLine, TellsItsEndByAStatus) {
    FIReader& reader = Open("a\nb\0c"s);
    EXPECT_EQ(FIReadTextLine(buffer_, sizeof(buffer_), reader), 1);
    EXPECT_EQ(FIReadTextLine(buffer_, sizeof(buffer_), reader), 0);
    EXPECT_STREQ(buffer_, "b");
}

TEST_F(TextLine, TakesATextThatStandsThere) {
    FIReader& reader = Open("ab\xFF!");
    EXPECT_TRUE(FITakeText(reader, "ab\xFF"));
    EXPECT_EQ(FIReaderTell(reader), 3U);
    EXPECT_TRUE(FITakeText(reader, ""));
    EXPECT_EQ(FIReaderTell(reader), 3U);
}

TEST_F(TextLine, StandsBehindTheFirstByteThatDiffers) {
    FIReader& reader = Open("abcd");
    EXPECT_FALSE(FITakeText(reader, "aBcd"));
    EXPECT_EQ(FIReaderTell(reader), 2U);
}

TEST_F(TextLine, TakesNoTextBehindTheEndOfTheFile) {
    EXPECT_FALSE(FITakeText(Open("ab"), "abc"));
    EXPECT_FALSE(FITakeText(Open("ab"), "ab\xFF")) << "the end of the file is no byte FF";
}

}  // namespace
