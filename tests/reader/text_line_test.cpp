// Reading text: the loop under both kinds of lines, and words that must stand there. Line ends and capacities are in
// header_line_test and, with NUL bytes as the end, in graphics/drawings_test.
#include "reader/text_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/reader.h"
#include "support/random_numbers.h"
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

// ---- The line byte by byte ------------------------------------------------------------------------------------------

// What FITakeLine does, without a look into the reader's buffer.
FITakenLine TakeLineByBytes(char* buffer, std::uint16_t capacity, FIReader& reader, FINulByte nul) {
    FITakenLine line;
    while (line.size + 1 < capacity) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == '\n' || byte == '\r') {
            if (FIReaderGetByte(reader) != (byte == '\n' ? '\r' : '\n')) FIReaderPutBack(reader);
            break;
        }
        if (byte == endOfFile || (byte == 0 && nul == FINulByte::endsText)) {
            line.textEnded = true;
            break;
        }
        buffer[line.size++] = static_cast<char>(byte);
    }
    buffer[line.size] = '\0';
    return line;
}

struct ReadText {
    explicit ReadText(const std::string& bytes) : handle(FIMakeTestHandle(bytes)) {
        FIReaderStart(reader, FIFileOf(*handle));
        reader.cursor = reader.buffer;  // undefined until the first refill
    }
    std::unique_ptr<TestHandle> handle;
    FIReader reader;
    std::vector<char> buffer = std::vector<char>(4200, '\x55');  // over the longest capacity
};

void ExpectSameState(const ReadText& one, const ReadText& other) {
    EXPECT_EQ(one.buffer, other.buffer);
    EXPECT_EQ(one.reader.bytesLeft, other.reader.bytesLeft);
    EXPECT_EQ(one.reader.bytesFilled, other.reader.bytesFilled);
    EXPECT_EQ(one.reader.bufferPos, other.reader.bufferPos);
    EXPECT_EQ(one.reader.cursor - one.reader.buffer, other.reader.cursor - other.reader.buffer);
    EXPECT_EQ(one.handle->reads, other.handle->reads);
    EXPECT_EQ(one.handle->seeks, other.handle->seeks);
    EXPECT_EQ(one.handle->tells, other.handle->tells);
}

// Pieces of text between line ends, NUL bytes and their like; some are longer than a buffer.
std::string SomeText(RandomNumbers& random) {
    const std::string ends = "\n\r\0\n\r\t\t\x80\xFF\x0B\x1A\x0E"s;
    std::string text;
    for (std::uint32_t pieces = random.Below(12); pieces > 0; --pieces) {
        text.append(random.OneIn(40) ? random.Below(3000) : random.Below(20), 'a');
        for (std::uint32_t count = random.Below(4); count > 0; --count) text += random.Of(ends);
    }
    return text;
}

TEST(TakeLine, IsTheLineByteByByte) {
    RandomNumbers random(1);
    for (std::uint32_t round = 0; round < 8000 && !HasFailure(); ++round) {
        const std::string text = SomeText(random);
        ReadText fast(text);
        ReadText slow(text);
        const std::uint32_t bytesPerRead = random.OneIn(3) ? testNever : random.Below(random.OneIn(2) ? 8 : 800) + 1;
        const std::uint32_t failReadsFrom = random.OneIn(4) ? random.Below(8) : testNever;
        for (ReadText* const one : {&fast, &slow}) {
            one->handle->bytesPerRead = bytesPerRead;
            one->handle->failReadsFrom = failReadsFrom;
            one->handle->lineFeedAfterEmptyReads = 3;
        }
        const std::uint32_t most = random.OneIn(4) ? 4096 : 40;
        for (std::uint32_t lines = random.Below(16); lines > 0; --lines) {
            const auto capacity = static_cast<std::uint16_t>(random.Below(most));
            const FINulByte nul = random.OneIn(2) ? FINulByte::endsText : FINulByte::isText;
            const FITakenLine line = FITakeLine(fast.buffer.data(), capacity, fast.reader, nul);
            const FITakenLine expected = TakeLineByBytes(slow.buffer.data(), capacity, slow.reader, nul);
            EXPECT_EQ(line.size, expected.size) << "round " << round;
            EXPECT_EQ(line.textEnded, expected.textEnded) << "round " << round;
            ExpectSameState(fast, slow);
        }
    }
}

TEST(PassLine, PassesOverWhatTakeLineReads) {
    RandomNumbers random(10);
    for (std::uint32_t round = 0; round < 8000 && !HasFailure(); ++round) {
        const std::string text = SomeText(random);
        ReadText passed(text);
        ReadText taken(text);
        const std::uint32_t bytesPerRead = random.OneIn(3) ? testNever : random.Below(random.OneIn(2) ? 8 : 800) + 1;
        for (ReadText* const one : {&passed, &taken}) {
            one->handle->bytesPerRead = bytesPerRead;
            one->handle->lineFeedAfterEmptyReads = 3;
        }
        const std::uint32_t most = random.OneIn(4) ? 4096 : 40;
        for (std::uint32_t lines = random.Below(16); lines > 0; --lines) {
            const auto capacity = static_cast<std::uint16_t>(random.Below(most));
            const FIPassedLine line = FIPassLine(capacity, passed.reader);
            const FITakenLine expected =
                TakeLineByBytes(taken.buffer.data(), capacity, taken.reader, FINulByte::isText);
            EXPECT_EQ(line.size, expected.size) << "round " << round;
            const std::string_view bytes(taken.buffer.data(), expected.size);
            EXPECT_EQ(line.holdsNul, bytes.find('\0') != std::string_view::npos) << "round " << round;
            passed.buffer = taken.buffer;
            ExpectSameState(passed, taken);
        }
    }
}

}  // namespace
