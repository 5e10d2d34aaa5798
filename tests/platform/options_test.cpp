// Start and end, options, strings, comparison.
#include <gtest/gtest.h>

#include <cstring>

#include "platform/base_utility.h"

namespace {

std::int16_t SetText(std::uint32_t value) {
    return UTSetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, sizeof(value));
}

TEST(Options, SetExistsBetweenInitAndDeInit) {
    EXPECT_EQ(UTGetGlobalOptionSet(), nullptr);
    EXPECT_EQ(UTDeInit(nullptr), -1) << "without a start";
    EXPECT_EQ(UTInit(nullptr), 0);
    EXPECT_NE(UTGetGlobalOptionSet(), nullptr);
    EXPECT_EQ(UTInit(nullptr), 0);
    EXPECT_EQ(UTDeInit(nullptr), 0);
    EXPECT_NE(UTGetGlobalOptionSet(), nullptr) << "starts nest";
    EXPECT_EQ(UTDeInit(nullptr), 0);
    EXPECT_EQ(UTGetGlobalOptionSet(), nullptr);
}

TEST(Options, ValueIsKeptUntilTheEnd) {
    ASSERT_EQ(UTInit(nullptr), 0);
    std::uint32_t value = 77;
    std::uint32_t size = sizeof(value);
    EXPECT_EQ(UTGetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, &size), -1) << "not set yet";
    EXPECT_EQ(value, 77U);
    EXPECT_EQ(SetText(3), 0);
    EXPECT_EQ(UTGetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, &size), 0);
    EXPECT_EQ(value, 3U);
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(UTDeInit(nullptr), 0);
    ASSERT_EQ(UTInit(nullptr), 0);
    EXPECT_EQ(UTGetOption(UTGetGlobalOptionSet(), UTOptionTextIdentification, &value, &size), -1);
    EXPECT_EQ(UTDeInit(nullptr), 0);
}

TEST(Options, UnknownOptionsAndWrongSizesAreRefused) {
    ASSERT_EQ(UTInit(nullptr), 0);
    UTOptionSet* const set = UTGetGlobalOptionSet();
    std::uint64_t value = 1;
    EXPECT_EQ(UTSetOption(set, 338487, &value, 4), -1);
    EXPECT_EQ(UTSetOption(set, UTOptionTextIdentification, &value, 2), -1);
    EXPECT_EQ(UTSetOption(set, UTOptionTextIdentification, &value, 8), -1);
    EXPECT_EQ(UTSetOption(nullptr, UTOptionTextIdentification, &value, 4), -1);
    EXPECT_EQ(SetText(1), 0);
    std::uint32_t room = 3;
    EXPECT_EQ(UTGetOption(set, UTOptionTextIdentification, &value, &room), -1);
    room = 8;
    EXPECT_EQ(UTGetOption(set, UTOptionTextIdentification, &value, &room), 0);
    EXPECT_EQ(room, 4U);
    room = 4;
    EXPECT_EQ(UTGetOption(set, 1, &value, &room), -1);
    EXPECT_EQ(UTGetOption(nullptr, UTOptionTextIdentification, &value, &room), -1);
    EXPECT_EQ(UTDeInit(nullptr), 0);
}

TEST(Strings, NameIsCutToTheBuffer) {
    char name[200] = "";
    ASSERT_EQ(UTGetString(UTStringKeyFormat | 1999, name, sizeof(name), 0), 0);
    const std::string whole = name;
    ASSERT_GT(whole.size(), 3U);
    char small[4] = "##";
    EXPECT_EQ(UTGetString(UTStringKeyFormat | 1999, small, sizeof(small), 0), 0);
    EXPECT_EQ(small, whole.substr(0, 3));
    EXPECT_EQ(UTGetString(UTStringKeyFormat | 1999, small, 1, 0), 0);
    EXPECT_STREQ(small, "");
}

TEST(Strings, KeysWithoutAStringLeaveTheBuffer) {
    char name[16] = "as was";
    for (const std::uint32_t key : {0U, 1999U, UTStringKeyFormat | 0U, UTStringKeyFormat | 1026U, 0x20000U | 1999U}) {
        EXPECT_NE(UTGetString(key, name, sizeof(name), 0), 0) << key;
    }
    EXPECT_NE(UTGetString(UTStringKeyFormat | 1026, nullptr, 0, 0), 0);
    EXPECT_STREQ(name, "as was");
}

TEST(Strings, KeyWithAStringIsToldWithoutRoomForIt) {
    char name[16] = "as was";
    EXPECT_EQ(UTGetString(UTStringKeyFormat | 1999, nullptr, 16, 0), 0);
    EXPECT_EQ(UTGetString(UTStringKeyFormat | 1999, nullptr, 0, 0), 0);
    EXPECT_EQ(UTGetString(UTStringKeyFormat | 1999, name, 0, 0), 0);
    EXPECT_STREQ(name, "as was");
}

TEST(Strings, CatalogueListsTheSameIdentifiersWithoutABuffer) {
    char name[200] = "";
    std::uint16_t cursor = 0;
    std::uint16_t bare = 0;
    FIID fiid = 0;
    FIID bareFiid = 0;
    std::int16_t found = FIGetFirstId(&cursor, &fiid, name, sizeof(name));
    EXPECT_EQ(FIGetFirstId(&bare, &bareFiid, nullptr, 0), found);
    std::uint32_t listed = 0;
    for (; found == 1; ++listed) {
        ASSERT_EQ(bareFiid, fiid);
        found = FIGetNextId(&cursor, &fiid, name, sizeof(name));
        ASSERT_EQ(FIGetNextId(&bare, &bareFiid, nullptr, 0), found);
    }
    EXPECT_GT(listed, 400U);
    EXPECT_EQ(bare, 9999U);
}

TEST(Compare, HasNoRegardToTheCaseOfAsciiLetters) {
    EXPECT_EQ(lstrcmpiA("", ""), 0);
    EXPECT_EQ(lstrcmpiA("aBcZ", "AbCz"), 0);
    EXPECT_NE(lstrcmpiA("abc", "abcd"), 0);
    EXPECT_NE(lstrcmpiA("abc", ""), 0);
    EXPECT_NE(lstrcmpiA("[", "{"), 0);
    EXPECT_NE(lstrcmpiA("@", "`"), 0);
    EXPECT_NE(lstrcmpiA("\xC4", "\xE4"), 0) << "a letter in some code pages, not in ASCII";
    EXPECT_LT(lstrcmpiA("a", "B"), 0);
    EXPECT_GT(lstrcmpiA("b", "A"), 0);
    EXPECT_LT(lstrcmpiA("a", "\xE4"), 0);
}

}  // namespace
