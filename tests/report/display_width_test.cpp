// Columns of characters, and where texts are cut.
#include "report/display_width.h"

#include <gtest/gtest.h>
#include <locale.h>

#include "support/case_name.h"

namespace {

using ::PrintTo;

constexpr TerminalText utf8 = TerminalText::Utf8;
constexpr TerminalText bytes = TerminalText::Bytes;

TEST(DisplayWidth, CountsColumnsOfUtf8) {
    EXPECT_EQ(DisplayWidth("", utf8), 0U);
    EXPECT_EQ(DisplayWidth("abc", utf8), 3U);
    EXPECT_EQ(DisplayWidth("\xC3\xA4", utf8), 1U);                  // a letter with its dots
    EXPECT_EQ(DisplayWidth("a\xCC\x88", utf8), 1U);                 // a letter, and dots over it
    EXPECT_EQ(DisplayWidth("\xE6\x96\x87\xE4\xBB\xB6", utf8), 4U);  // two characters of Chinese
    EXPECT_EQ(DisplayWidth("\xF0\x9F\x93\x81", utf8), 2U);          // a picture of a folder
    EXPECT_EQ(DisplayWidth("\xEF\xBD\xB1", utf8), 1U);              // halfwidth katakana
}

TEST(DisplayWidth, CountsAColumnForEachByteThatIsNoUtf8) {
    EXPECT_EQ(DisplayWidth("\xFF", utf8), 1U);
    EXPECT_EQ(DisplayWidth("a\xE6\x96", utf8), 3U);  // cut off
    EXPECT_EQ(DisplayWidth("\xE6\x96z", utf8), 3U);
    EXPECT_EQ(DisplayWidth("\xC0\x80", utf8), 2U);
}

TEST(DisplayWidth, CountsAColumnForEachByteElsewhere) {
    EXPECT_EQ(DisplayWidth("\xE6\x96\x87", bytes), 3U);
    EXPECT_EQ(DisplayWidth("\xFF"
                           "a",
                           bytes),
              2U);
}

struct CutCase {
    const char* name;
    const char* text;
    std::size_t columns;
    TerminalText kind;
    const char* front;
    const char* end;
};

const CutCase cutCases[] = {
    // clang-format off
    {"Fits",                 "abcdef",                        6, utf8,  "abcdef",                    "abcdef"},
    {"OneTooMany",           "abcdef",                        5, utf8,  "\u2026cdef",                "abcd\u2026"},
    {"OneColumn",            "abcdef",                        1, utf8,  "\u2026",                    "\u2026"},
    {"NoColumn",             "abcdef",                        0, utf8,  "",                          ""},
    {"NothingInNoColumn",    "",                              0, utf8,  "",                          ""},
    {"WideFits",             "\u6587\u4EF6\u5939",            6, utf8,  "\u6587\u4EF6\u5939",        "\u6587\u4EF6\u5939"},
    {"WideOneTooMany",       "\u6587\u4EF6\u5939",            5, utf8,  "\u2026\u4EF6\u5939",        "\u6587\u4EF6\u2026"},
    {"WideDoesNotFitHalf",   "\u6587\u4EF6\u5939",            4, utf8,  "\u2026\u5939",              "\u6587\u2026"},
    {"WideInOneColumn",      "\u6587",                        1, utf8,  "\u2026",                    "\u2026"},
    {"MoreBytesThanColumns", "\u00E4\u00F6\u00FC",            3, utf8,  "\u00E4\u00F6\u00FC",        "\u00E4\u00F6\u00FC"},
    {"MarksGoWithTheirs",    "xa\u0308b\u0308" "c",           3, utf8,  "\u2026b\u0308" "c",         "xa\u0308\u2026"},
    {"NoUtf8",               "ab\xFF\xFF" "cd",               4, utf8,  "\u2026\xFF" "cd",           "ab\xFF\u2026"},
    {"BytesFit",             "abcdef",                        6, bytes, "abcdef",                    "abcdef"},
    {"BytesOneTooMany",      "abcdef",                        5, bytes, "...ef",                     "ab..."},
    {"BytesThreeColumns",    "abcdef",                        3, bytes, "...",                       "..."},
    {"BytesTwoColumns",      "abcdef",                        2, bytes, "..",                        ".."},
    {"BytesNoColumn",        "abcdef",                        0, bytes, "",                          ""},
    // clang-format on
};

class CutToWidth : public testing::TestWithParam<CutCase> {};

TEST_P(CutToWidth, Appends) {
    const CutCase& test = GetParam();
    std::string text = "> ";
    AppendCutToWidth(text, test.text, test.columns, CutSide::Front, test.kind);
    EXPECT_EQ(text, std::string("> ") + test.front);
    text = "> ";
    AppendCutToWidth(text, test.text, test.columns, CutSide::End, test.kind);
    EXPECT_EQ(text, std::string("> ") + test.end);
    EXPECT_LE(DisplayWidth(text, test.kind), test.columns + 2);
}

INSTANTIATE_TEST_SUITE_P(Texts, CutToWidth, testing::ValuesIn(cutCases), FICaseName);

// What the program has as its locale stays its own.
TEST(DisplayWidth, LeavesTheLocaleAsItIs) {
    const locale_t before = uselocale(nullptr);
    EXPECT_EQ(DisplayWidth("\u6587", utf8), 2U);
    EXPECT_EQ(uselocale(nullptr), before);
}

}  // namespace
