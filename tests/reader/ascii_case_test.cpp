// Small letters for ASCII capitals, capitals for small letters, and nothing else.
#include "reader/ascii_case.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/reader.h"

namespace {

constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view smallLetters = "abcdefghijklmnopqrstuvwxyz";

TEST(LowerAscii, LowersTheCapitalsAmongTheBytes) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        const std::size_t letter = capitals.find(character);
        EXPECT_EQ(FILowerAscii(character), letter != std::string_view::npos ? smallLetters[letter] : character) << byte;
    }
}

TEST(LowerAscii, LowersTheCapitalsAmongThe16BitValues) {
    for (std::uint32_t value = 0; value <= 0xFFFF; ++value) {
        const auto character = static_cast<std::uint16_t>(value);
        const bool capital = value >= 0x41 && value <= 0x5A;
        EXPECT_EQ(FILowerAscii(character), capital ? value + 0x20 : value);
    }
}

TEST(LowerAscii, KeepsTheEndOfTheFile) { EXPECT_EQ(FILowerAscii(endOfFile), endOfFile); }

TEST(UpperAscii, RaisesTheSmallLettersAmongTheBytes) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        const std::size_t letter = smallLetters.find(character);
        EXPECT_EQ(FIUpperAscii(character), letter != std::string_view::npos ? capitals[letter] : character) << byte;
    }
}

static_assert(FILowerAscii('A') == 'a');
static_assert(FIUpperAscii('z') == 'Z');
static_assert(FILowerAscii(std::uint16_t{'Z'}) == 'z');

}  // namespace
