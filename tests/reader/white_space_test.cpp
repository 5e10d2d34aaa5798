// White space: which characters are, and passing over them.
#include "reader/white_space.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/test_handle.h"

namespace {

TEST(WhiteSpace, IsBlankTabAndTheTwoLineEndsAmongAllValues) {
    for (std::uint32_t value = 0; value <= 0xFFFF; ++value) {
        const bool white = value == 0x09 || value == 0x0A || value == 0x0D || value == 0x20;
        EXPECT_EQ(FIIsWhiteSpace(static_cast<std::uint16_t>(value)), white) << value;
    }
}

TEST(WhiteSpace, IsPassedOverUpToTheFirstOtherByte) {
    for (const std::uint32_t bytesPerRead : {testNever, 1U}) {
        const auto handle = FIMakeTestHandle(" \t\r\n \vx");
        handle->bytesPerRead = bytesPerRead;
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        FISkipWhiteSpace(reader);
        EXPECT_EQ(FIReaderTell(reader), 5U);
        FISkipWhiteSpace(reader);
        EXPECT_EQ(FIReaderTell(reader), 5U) << "there is none";
        EXPECT_EQ(FIReaderGetByte(reader), '\v');
        EXPECT_EQ(FIReaderGetByte(reader), 'x');
    }
}

TEST(WhiteSpace, EndsWithTheFile) {
    const auto handle = FIMakeTestHandle("  ");
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    FISkipWhiteSpace(reader);
    EXPECT_EQ(FIReaderTell(reader), 2U) << "the end of the file is put back";
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
}

}  // namespace
