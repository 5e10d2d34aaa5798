// What rows need of a file's bytes: each item of the notation, and what routines need that rows call.
#include "signatures/row_needs.h"

#include <gtest/gtest.h>

#include <string>

#include "signatures/table.h"

namespace {

// A set in words: ranges in hexadecimal, "end" for the end of the file; "all" for all 257 values.
std::string Told(const FIByteSet& set) {
    if (set == FIAllValues()) return "all";
    std::string text;
    char range[16];
    for (std::uint16_t value = 0; value < pastEnd; ++value) {
        if (!set.Holds(value)) continue;
        std::uint16_t last = value;
        while (last + 1 < pastEnd && set.Holds(static_cast<std::uint16_t>(last + 1))) ++last;
        std::snprintf(range, sizeof(range), last == value ? "%02X" : "%02X-%02X", value, last);
        text += (text.empty() ? "" : " ") + std::string(range);
        value = last;
    }
    if (set.Holds(pastEnd)) text += text.empty() ? "end" : " end";
    return text.empty() ? "none" : text;
}

// The needs in words: the four offsets, the far byte, and whether there must be a class identifier.
std::string Told(const FIRowNeeds& needs) {
    std::string text;
    for (const FIByteSet& set : needs.first) text += Told(set) + ", ";
    char far[32] = "nothing far";
    if (needs.far.offset != 0) {
        std::snprintf(far, sizeof(far), "%u: %02X-%02X", unsigned{needs.far.offset}, needs.far.low, needs.far.high);
    }
    return text + far + (needs.needsClassId ? ", class" : "");
}

TEST(ByteSet, HoldsWhatWasAdded) {
    EXPECT_EQ(Told(FIByteRange(0, 0)), "00");
    EXPECT_EQ(Told(FIByteRange(0x3F, 0x40)), "3F-40") << "at both sides of a word";
    EXPECT_EQ(Told(FIByteRange(0, 0xFF)), "00-FF") << "the end of the file is none of them";
    EXPECT_EQ(Told(FIByteRange(0xFF, 0xFF)), "FF");
    FIByteSet set = FIByteRange(7, 7);
    set.Add(pastEnd, pastEnd);
    EXPECT_EQ(Told(set), "07 end");
    set.Add(0, pastEnd);
    EXPECT_TRUE(set == FIAllValues());
}

struct NeedsCase {
    const char* signature;
    const char* needs;
};

const NeedsCase needsCases[] = {
    // clang-format off
    // Places
    {"(always)",                         "all, all, all, all, nothing far"},
    {"41 42",                            "all, all, all, all, nothing far"},  // wherever another row stopped
    {">0",                               "all, all, all, all, nothing far"},
    {">0 41",                            "41, all, all, all, nothing far"},
    {">3 41",                            "all, all, all, 41, nothing far"},
    {">4 41",                            "all, all, all, all, 4: 41-41"},
    {">2047 41",                         "all, all, all, all, 2047: 41-41"},
    {">2048 41",                         "all, all, all, all, nothing far"},
    {">65536 41",                        "all, all, all, all, nothing far"},
    {">2046 41 42 43",                   "all, all, all, all, 2046: 41-41"},
    {">2 41 >0 42",                      "42, all, 41, all, nothing far"},
    {">0 41 >end-4 42",                  "41, all, all, all, nothing far"},
    {">end-4 42 >1 43",                  "all, 43, all, all, nothing far"},
    // Literals
    {">0 00 7F 80 FE",                   "00, 7F, 80, FE, nothing far"},
    {">0 FF 01",                         "FF, 01, all, all, nothing far"},
    {">0 01 FF FF 02",                   "01, FF, FF, 02, nothing far"},
    {R"(>1 "Ab")",                       "all, 41, 62, all, nothing far"},
    {">0 41 42 43 44 45 46",             "41, 42, 43, 44, 4: 45-45"},
    // Ranges
    {">0 [00-1F]",                       "00-1F, all, all, all, nothing far"},
    {">0 [00-FF]",                       "00-FF, all, all, all, nothing far"},
    {">1 [10-20]*2 41",                  "all, 10-20, 10-20, 41, nothing far"},
    {">2 [30-39]*5",                     "all, all, 30-39, 30-39, 4: 30-39"},
    {">5 [30-39]",                       "all, all, all, all, 5: 30-39"},
    // One of two
    {">0 (41/61)",                       "41 61, all, all, all, nothing far"},
    {">0 (61/41)",                       "41 61, all, all, all, nothing far"},
    {">9 (61/41)",                       "all, all, all, all, 9: 41-61"},
    {">9 (41/61)",                       "all, all, all, all, 9: 41-61"},
    // Any but one: the file must go on
    {">0 !00",                           "01-FF, all, all, all, nothing far"},
    {">0 !41",                           "00-40 42-FF, all, all, all, nothing far"},
    {">0 !FF",                           "00-FE, all, all, all, nothing far"},
    {">9 !00",                           "all, all, all, all, 9: 01-FF"},
    {">9 !41",                           "all, all, all, all, 9: 00-FF"},
    {">9 !FF",                           "all, all, all, all, 9: 00-FE"},
    // Words outside a range: the file may end in front of the high half
    {">0 out[0000-0006]",                "00-FF, all, all, all, nothing far"},
    {">0 out[0000-0006] 41",             "00-FF, all, 41, all, nothing far"},
    {">3 out[0000-0006]",                "all, all, all, 00-FF, nothing far"},
    {">4 out[0000-0006]",                "all, all, all, all, 4: 00-FF"},
    // Bytes passed over: the file must have them
    {">0 +2",                            "00-FF, 00-FF, all, all, nothing far"},
    {">0 +6",                            "00-FF, 00-FF, 00-FF, 00-FF, 4: 00-FF"},
    {">0 +1 41",                         "00-FF, 41, all, all, nothing far"},
    {">0 +3 41 42",                      "00-FF, 00-FF, 00-FF, 41, 4: 42-42"},
    // Tests of the same byte narrow each other
    {">0 [00-7F] >0 [41-FF]",            "41-7F, all, all, all, nothing far"},
    {">0 41 >0 42",                      "none, all, all, all, nothing far"},
    {">0 [00-FF] >0 !00 >0 (00/41)",     "41, all, all, all, nothing far"},
    // Of several far places the one with the fewest values, of equals the first
    {">10 [00-40] >20 [00-20] >30 [00-30]", "all, all, all, all, 20: 00-20"},
    {">20 41 >10 42",                    "all, all, all, all, 20: 41-41"},
    {">10 [41-42] >20 43",               "all, all, all, all, 20: 43-43"},
    {">10 +1 >20 !00",                   "all, all, all, all, 20: 01-FF"},
    // No bytes
    {R"(ext "TGA")",                     "all, all, all, all, nothing far"},
    {R"(>0 41 ext "FFFF" 42)",           "41, 42, all, all, nothing far"},
    {"{33221100-5544-7766-8899-AABBCCDDEEFF}",        "all, all, all, all, nothing far, class"},
    {"{FF221100-FFFF-FFFF-8899-AABBCCDDEEFF} >1 41",  "all, 41, all, all, nothing far, class"},
    {">0 noop(FF 0C 00) 41",             "41, all, all, all, nothing far"},
    // An XML declaration in front of a namespace; behind it the place is not known
    {"xmlns H3 /dxl",                    "3C, 3F, 78, 6D, 4: 6C-6C"},
    {">0 +1 xmlns H3 /dxl 41 42 43",     "3C, 3F, 78, 6D, 4: 6C-6C"},
    {"xmlns H3 /dxl >3 6D",              "3C, 3F, 78, 6D, 4: 6C-6C"},
    // clang-format on
};

class RowNeeds : public testing::TestWithParam<NeedsCase> {};

TEST_P(RowNeeds, AreThoseOfTheNotation) {
    EXPECT_EQ(Told(FINeedsOfSignature(GetParam().signature)), GetParam().needs) << GetParam().signature;
}

INSTANTIATE_TEST_SUITE_P(Items, RowNeeds, testing::ValuesIn(needsCases));

// The compiler and the processor work out the same: default member initialisers and the like are not lost.
TEST(RowNeeds, AreTheSameWhenTheCompilerWorksThemOut) {
    constexpr FIRowNeeds needs = FINeedsOfSignature(">0 41 [00-1F] !00 (41/61) >9 !FF");
    EXPECT_EQ(Told(needs), Told(FINeedsOfSignature(">0 41 [00-1F] !00 (41/61) >9 !FF")));
    EXPECT_EQ(Told(needs), "41, 00-1F, 01-FF, 41 61, 9: 00-FE");
}

TEST(RowNeeds, WidenToWhatOneOfTwoWaysAllows) {
    FIRowNeeds needs = FINeedsOfSignature(">0 41 42 >9 41");
    FIWiden(needs, FINeedsOfSignature(">0 43 >2 44"));
    EXPECT_EQ(Told(needs), "41 43, all, all, all, nothing far");
}

// Told beside the routine: 1190 in several ways, 1504 in one.
TEST(RoutineNeeds, AreTheirWaysTogether) {
    EXPECT_EQ(Told(FINeedsOfRoutine(1504)), "C5, D0, D3, C6, nothing far");
    EXPECT_EQ(Told(FINeedsOfRoutine(1190)), "00 09-0A 0D 20 3C EF FE-FF, all, all, all, nothing far");
}

TEST(RowNeeds, OfACallAreThoseOfTheRowAndOfTheRoutine) {
    constexpr FISignatureRow rows[] = {
        {1, ">0 +1 [D0-D4] >9 41", {FIOpcode::Call, 1504}, ""},
        {2, "(always)", {FIOpcode::Call, 1206}, ""},
        {3, ">99 [1E-1F]", {FIOpcode::Call, 1206}, ""},
        {4, ">0 41", {FIOpcode::Id, 1504}, ""},
    };
    EXPECT_EQ(Told(FINeedsOfRow(rows[0])), "C5, D0, D3, C6, 9: 41-41");
    EXPECT_EQ(Told(FINeedsOfRow(rows[1])), "all, all, all, all, 32: 00-00");
    EXPECT_EQ(Told(FINeedsOfRow(rows[2])), "all, all, all, all, 32: 00-00");
    EXPECT_EQ(Told(FINeedsOfRow(rows[3])), "41, all, all, all, nothing far") << "an identifier is no routine's number";
}

// Needs are of the file's bytes alone, and each way starts with a place.
TEST(RoutineNeeds, StartWithAPlace) {
    for (const FIRoutineNeeds& routine : routineNeeds) {
        if (routine.needs == "(always)") continue;
        for (std::string_view ways = routine.needs; !ways.empty();) {
            EXPECT_TRUE(ways.starts_with(">")) << routine.number;
            const std::size_t next = ways.find(" or ");
            ways.remove_prefix(next == std::string_view::npos ? ways.size() : next + 4);
        }
        for (const char* const otherThanBytes : {"ext", "{", "xmlns", ">end"}) {
            EXPECT_EQ(routine.needs.find(otherThanBytes), std::string_view::npos) << routine.number;
        }
    }
}

}  // namespace
