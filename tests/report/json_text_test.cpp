// Strings of JSON, against those of a JSON library, which replaces what is no UTF-8 in the same way.
#include "report/json_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>

namespace {

using Json = nlohmann::json;

void ExpectAsTheLibraryWrites(const std::string& bytes) {
    std::string text = "in front";
    AppendJsonText(text, bytes);
    ASSERT_EQ(text, "in front" + Json(bytes).dump(-1, ' ', false, Json::error_handler_t::replace));
    bool isUtf8 = true;
    try {
        static_cast<void>(Json(bytes).dump());
    } catch (const Json::exception&) {
        isUtf8 = false;
    }
    ASSERT_EQ(IsUtf8(bytes), isUtf8) << text;
}

TEST(JsonText, EveryByteAndEveryPairIsAsTheLibraryWritesIt) {
    ExpectAsTheLibraryWrites("");
    for (int first = 0; first < 256; ++first) {
        ExpectAsTheLibraryWrites({static_cast<char>(first)});
        for (int second = 0; second < 256; ++second) {
            ExpectAsTheLibraryWrites({static_cast<char>(first), static_cast<char>(second)});
        }
    }
}

// Both sides of each limit of UTF-8 and of the escapes.
constexpr std::uint8_t limits[] = {0x00, 0x1F, 0x22, 0x41, 0x5C, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC1,
                                   0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5};
constexpr std::uint8_t thirdAndFourthBytes[] = {0x7F, 0x80, 0xBF, 0xC0};

TEST(JsonText, EveryLimitIsAsTheLibraryTakesIt) {
    for (const std::uint8_t first : limits) {
        if (first < 0xE0) continue;  // no longer than a pair
        for (const std::uint8_t second : limits) {
            for (const std::uint8_t third : thirdAndFourthBytes) {
                for (const std::uint8_t fourth : thirdAndFourthBytes) {
                    std::string bytes;
                    for (const std::uint8_t byte : {first, second, third, fourth}) bytes += static_cast<char>(byte);
                    ExpectAsTheLibraryWrites(bytes);
                    ExpectAsTheLibraryWrites(bytes.substr(0, 3));
                }
            }
        }
    }
}

TEST(JsonText, LongTextsAreAsTheLibraryWritesThem) {
    std::mt19937 random(7);
    for (int turn = 0; turn < 2000; ++turn) {
        std::string bytes;
        while (bytes.size() < 5U + random() % 40) bytes += static_cast<char>(limits[random() % std::size(limits)]);
        ExpectAsTheLibraryWrites(bytes);
    }
}

TEST(JsonText, ReplacesTheLongestStartOfACharacter) {
    std::string text;
    AppendJsonText(text,
                   "\xE2\x82"
                   "A\xF0\x9F\x98\xE0\x80\xF5\xC3");
    EXPECT_EQ(text, "\"\uFFFDA\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\"");
}

}  // namespace
