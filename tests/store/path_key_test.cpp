// Paths as a store holds them: what is left out of them, and bytes that are no text.
#include "store/path_key.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

TEST(NormalisedPath, LeavesOutWhatSaysNothing) {
    EXPECT_EQ(NormalisedPath("./a//b/./c"), "a/b/c");
    EXPECT_EQ(NormalisedPath("a/"), "a");
    EXPECT_EQ(NormalisedPath("a//"), "a");
    EXPECT_EQ(NormalisedPath("a/."), "a");
    EXPECT_EQ(NormalisedPath("./a"), "a");
    EXPECT_EQ(NormalisedPath("././"), ".");
    EXPECT_EQ(NormalisedPath("./"), ".");
    EXPECT_EQ(NormalisedPath("//"), "/");
    EXPECT_EQ(NormalisedPath("/."), "/");
    EXPECT_EQ(NormalisedPath("/./a"), "/a");
    EXPECT_EQ(NormalisedPath("//a//"), "/a");
}

TEST(NormalisedPath, LeavesTheRestAsItIs) {
    for (const char* const path :
         {"", ".", "/", "a", "/a", "../a", "a/..", "a/../b", "..", ".a", "a.", "...", "a/.b/c.", " "}) {
        EXPECT_EQ(NormalisedPath(path), path);
    }
}

TEST(PathKey, TextIsItself) {
    for (const char* const path : {"", "a/b", "\xC3\xA4", "\xE2\x82\xAC", "\xEF\xBF\xBD", "\xF0\x9F\x98\x80", "a\nb"}) {
        const PathKey key = KeyOfPath(path);
        EXPECT_EQ(key.text, path);
        EXPECT_EQ(key.hex, "");
        EXPECT_EQ(PathOfKey(key.text, key.hex), path);
    }
}

struct NoText {
    std::string path;
    std::string text;
    std::string hex;
};

TEST(PathKey, OtherBytesAreReplacedAndToldInHexadecimal) {
    const NoText cases[] = {
        {"a\xE4/b", "a\xEF\xBF\xBD/b", "61e42f62"},
        {"\xE2\x82", "\xEF\xBF\xBD", "e282"},  // the start of a character
        {"\xE2\x82/", "\xEF\xBF\xBD/", "e2822f"},
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD", "c0af"},  // a long form
        {"\xE0\x9F\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "e09fbf"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "eda080"},  // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "f4908080"},
        {"\xF0\x8F\xBF\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "f08fbfbf"},
        {"\xF5", "\xEF\xBF\xBD", "f5"},
        {"a\0b"s,
         "a\xEF\xBF\xBD"
         "b",
         "610062"},
    };
    for (const NoText& one : cases) {
        const PathKey key = KeyOfPath(one.path);
        EXPECT_EQ(key.text, one.text);
        EXPECT_EQ(key.hex, one.hex);
        EXPECT_EQ(PathOfKey(key.text, key.hex), one.path);
    }
}

TEST(PathKey, NoHexadecimalIsNoBytes) {
    EXPECT_EQ(BytesOfHex("4aFf"), "\x4A\xFF");
    EXPECT_EQ(BytesOfHex("4"), "");
    EXPECT_EQ(BytesOfHex("4g"), "");
    EXPECT_EQ(BytesOfHex("g4"), "");
    EXPECT_EQ(BytesOfHex("/0"), "");
    EXPECT_EQ(BytesOfHex(":0"), "");
}

}  // namespace
