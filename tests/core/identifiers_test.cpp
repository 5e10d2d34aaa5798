// The three entries of the catalogue, over a string service of the test's own.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "fiid.h"
#include "platform/base_utility.h"

namespace {

std::map<std::uint32_t, std::string> strings;
std::uint32_t calls = 0;
std::uint32_t lastReserved = 77;

void SetStrings(std::map<std::uint32_t, std::string> newStrings) {
    strings = std::move(newStrings);
    calls = 0;
}

}  // namespace

// Takes the place of the platform's string service.
extern "C" std::int16_t UTGetString(std::uint32_t key, char* buffer, std::uint16_t size, std::uint32_t reserved) {
    ++calls;
    lastReserved = reserved;
    const auto found = strings.find(key);
    if (found == strings.end()) return 5;
    std::strncpy(buffer, found->second.c_str(), size);
    return 0;
}

namespace {

struct Step {
    std::int16_t result;
    std::uint16_t cursor;
    FIID fiid;
    std::string name;

    bool operator==(const Step&) const = default;
};

Step First() {
    Step step = {77, 7, 7, ""};
    char name[32] = "as was";
    step.result = FIGetFirstId(&step.cursor, &step.fiid, name, sizeof(name));
    step.name = name;
    return step;
}

Step Next(std::uint16_t cursor) {
    Step step = {77, cursor, 7, ""};
    char name[32] = "as was";
    step.result = FIGetNextId(&step.cursor, &step.fiid, name, sizeof(name));
    step.name = name;
    return step;
}

TEST(Catalogue, WithoutNamesAsks9000TimesAndEnds) {
    SetStrings({});
    EXPECT_EQ(First(), (Step{0, 9999, 9999, "as was"}));
    EXPECT_EQ(calls, 9000U);
    EXPECT_EQ(lastReserved, 0U);
}

TEST(Catalogue, ListsANameAt1000AtOnce) {
    SetStrings({{0x103E8, "one"}});
    EXPECT_EQ(First(), (Step{1, 1000, 1000, "one"}));
    EXPECT_EQ(calls, 1U);
    EXPECT_EQ(Next(1000), (Step{0, 9999, 9999, "as was"}));
}

TEST(Catalogue, GoesOnFromTheCursor) {
    SetStrings({{0x10000 | 1000, "one"}, {0x10000 | 1002, "two"}, {0x10000 | 9998, "last"}});
    EXPECT_EQ(Next(1000), (Step{1, 1002, 1002, "two"}));
    EXPECT_EQ(Next(1002), (Step{1, 9998, 9998, "last"}));
    EXPECT_EQ(Next(9998), (Step{0, 9999, 9999, "as was"}));
}

TEST(Catalogue, DoesNotReportANameAt9999) {
    SetStrings({{0x10000 | 9999, "end"}});
    EXPECT_EQ(First(), (Step{0, 9999, 9999, "end"})) << "the buffer holds what the last call left";
}

TEST(Catalogue, RunsOnUpwardsBehindTheEnd) {
    SetStrings({{0x10000 | 10001, "beyond"}});
    EXPECT_EQ(Next(9999), (Step{1, 10001, 10001, "beyond"}));
    SetStrings({{0x10000 | 5, "low"}});
    EXPECT_EQ(Next(9999), (Step{1, 5, 5, "low"})) << "wraps through 65535";
    SetStrings({});
    EXPECT_EQ(Next(9999), (Step{0, 9999, 9999, "as was"})) << "once around";
    EXPECT_EQ(calls, 65536U);
}

TEST(Catalogue, NamesIdentifiersFrom1000To5015) {
    SetStrings({{0x10000 | 999, "x"}, {0x10000 | 1000, "first"}, {0x10000 | 5015, "last"}, {0x10000 | 5016, "x"}});
    char name[32] = "as was";
    EXPECT_EQ(FIGetIDString(1000, name, sizeof(name)), 5);
    EXPECT_STREQ(name, "first");
    EXPECT_EQ(FIGetIDString(5015, name, sizeof(name)), 4);
    EXPECT_STREQ(name, "last");
    calls = 0;
    for (const FIID fiid : {FIID{0}, FIID{999}, FIID{5016}, FIID{65535}}) {
        std::strcpy(name, "as was");
        EXPECT_EQ(FIGetIDString(fiid, name, sizeof(name)), 0) << fiid;
        EXPECT_STREQ(name, "");
    }
    EXPECT_EQ(calls, 0U);
}

TEST(Catalogue, NamelessIdentifierLeavesTheBuffer) {
    SetStrings({});
    char name[32] = "as was";
    EXPECT_EQ(FIGetIDString(1500, name, sizeof(name)), 6);
    EXPECT_STREQ(name, "as was");
}

TEST(Catalogue, NullBufferIs0WithoutACall) {
    SetStrings({{0x10000 | 1000, "first"}});
    EXPECT_EQ(FIGetIDString(1000, nullptr, 32), 0);
    EXPECT_EQ(calls, 0U);
}

}  // namespace
