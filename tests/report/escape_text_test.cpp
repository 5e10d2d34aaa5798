// What a line of text escapes, at both sides of each limit.
#include "report/escape_text.h"

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"

namespace {

using ::PrintTo;

struct EscapeCase {
    const char* name;
    std::string bytes;
    const char* text;
};

const EscapeCase escapeCases[] = {
    // clang-format off
    {"Nothing",                    "",                          ""},
    {"LastC0AndBlank",             "\x1F ",                     "\\x1F "},
    {"Nul",                        std::string("a\0b", 3),      "a\\x00b"},
    {"TildeAndDelete",             "~\x7F",                     "~\\x7F"},
    {"BackslashIsDoubled",         "\\x1B",                     "\\\\x1B"},
    {"Byte80And9FOutsideOfUtf8",   "\x80\x9F",                  "\\x80\\x9F"},
    {"ByteA0AndFFStay",            "\xA0\xFF",                  "\xA0\xFF"},
    {"U0080",                      "\xC2\x80",                  "\\xC2\\x80"},
    {"U0085IsNextLine",            "\xC2\x85",                  "\\xC2\\x85"},
    {"U009F",                      "\xC2\x9F",                  "\\xC2\\x9F"},
    {"U00A0Stays",                 "\xC2\xA0",                  "\xC2\xA0"},
    {"U00C9StaysThoughItHolds89",  "\xC3\x89",                  "\xC3\x89"},
    {"U061BTo061D",                "\xD8\x9B\xD8\x9C\xD8\x9D",  "\xD8\x9B\\xD8\\x9C\xD8\x9D"},
    {"U200D",                      "\xE2\x80\x8D",              "\xE2\x80\x8D"},
    {"U200E",                      "\xE2\x80\x8E",              "\\xE2\\x80\\x8E"},
    {"U200F",                      "\xE2\x80\x8F",              "\\xE2\\x80\\x8F"},
    {"U2010",                      "\xE2\x80\x90",              "\xE2\x80\x90"},
    {"U2027",                      "\xE2\x80\xA7",              "\xE2\x80\xA7"},
    {"U2028",                      "\xE2\x80\xA8",              "\\xE2\\x80\\xA8"},
    {"U2029",                      "\xE2\x80\xA9",              "\\xE2\\x80\\xA9"},
    {"U202A",                      "\xE2\x80\xAA",              "\\xE2\\x80\\xAA"},
    {"U202E",                      "\xE2\x80\xAE",              "\\xE2\\x80\\xAE"},
    {"U202F",                      "\xE2\x80\xAF",              "\xE2\x80\xAF"},
    {"U2065",                      "\xE2\x81\xA5",              "\xE2\x81\xA5"},
    {"U2066",                      "\xE2\x81\xA6",              "\\xE2\\x81\\xA6"},
    {"U2069",                      "\xE2\x81\xA9",              "\\xE2\\x81\\xA9"},
    {"U206A",                      "\xE2\x81\xAA",              "\xE2\x81\xAA"},
    {"U07FFAndU0800",              "\xDF\xBF\xE0\xA0\x80",      "\xDF\xBF\xE0\xA0\x80"},
    {"U10000AndU10FFFF",           "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    {"U110000IsNoCharacter",       "\xF4\x90\x80\x80",          "\xF4\\x90\\x80\\x80"},
    {"LongFormOf2Bytes",           "\xC1\x9B",                  "\xC1\\x9B"},
    {"LongFormOf3Bytes",           "\xE0\x82\x9B",              "\xE0\\x82\\x9B"},
    {"LongFormOf4Bytes",           "\xF0\x82\x80\xAE",          "\xF0\\x82\\x80\xAE"},
    {"UD7FFAndUE000Stay",          "\xED\x9F\xBF\xEE\x80\x80",  "\xED\x9F\xBF\xEE\x80\x80"},
    {"UD800AndUDFFFAreHalves",     "\xED\xA0\x80\xED\xBF\xBF",  "\xED\xA0\\x80\xED\xBF\xBF"},
    {"LeadF8IsNoLead",             "\xF8\x90\x80\x80",          "\xF8\\x90\\x80\\x80"},
    {"CutOffAtTheEnd",             "\xE2\x80",                  "\xE2\\x80"},
    {"CutOffInTheMiddle",          "\xE2\x80" "A",              "\xE2\\x80" "A"},
    {"ControlBehindALoneLead",     "\xE2\x1B",                  "\xE2\\x1B"},
    // clang-format on
};

class EscapeForTextCases : public testing::TestWithParam<EscapeCase> {};

TEST_P(EscapeForTextCases, Answers) { EXPECT_EQ(EscapeForText(GetParam().bytes), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(Text, EscapeForTextCases, testing::ValuesIn(escapeCases), FICaseName);

}  // namespace
