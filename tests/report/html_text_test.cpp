// Text from outside in HTML and in script elements, and numbers for people.
#include "report/html_text.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

std::string HtmlOf(std::string_view bytes) {
    std::string out;
    AppendHtmlText(out, bytes);
    return out;
}

std::string ScriptOf(std::string_view bytes) {
    std::string out;
    AppendScriptText(out, bytes);
    return out;
}

TEST(HtmlText, MarkupIsEscaped) {
    EXPECT_EQ(HtmlOf(""), "");
    EXPECT_EQ(HtmlOf("plain text"), "plain text");
    EXPECT_EQ(HtmlOf("<a href=\"x\" b='y'>&"), "&#60;a href=&#34;x&#34; b=&#39;y&#39;&#62;&#38;");
}

TEST(HtmlText, WhatSteersIsEscaped) {
    EXPECT_EQ(HtmlOf("a\nb\\c\x7F"), "a\\x0Ab\\\\c\\x7F");
    EXPECT_EQ(HtmlOf("\xE2\x80\xAE<\xC2\x85"), "\\xE2\\x80\\xAE&#60;\\xC2\\x85");
}

TEST(HtmlText, BytesThatAreNoUtf8AreEscaped) {
    EXPECT_EQ(HtmlOf("\xC3\xA4\xE6\x96\x87\xF0\x9F\x93\x84"), "\xC3\xA4\xE6\x96\x87\xF0\x9F\x93\x84");
    EXPECT_EQ(HtmlOf("\xFF\xE4z"), "\\xFF\\xE4z");
    EXPECT_EQ(HtmlOf("\xF0\x9F\x93"), "\\xF0\\x9F\\x93");
    EXPECT_EQ(HtmlOf("\xC0\xBC\xED\xA0\x80"), "\\xC0\\xBC\\xED\\xA0\\x80");  // a long form of <, half of a pair
}

TEST(HtmlText, ScriptElementsCanNotBeEnded) {
    EXPECT_EQ(ScriptOf("</script><!--&"), R"("\u003c/script\u003e\u003c!--\u0026")");
    EXPECT_EQ(ScriptOf("\"\\\n"), R"("\"\\\n")");
    EXPECT_EQ(ScriptOf("\x7F\xC2\x80\xD8\x9C\xE2\x80\xA9\xE2\x81\xA9"), R"("\u007f\u0080\u061c\u2029\u2069")");
    EXPECT_EQ(ScriptOf("\xC3\xA4\xF0\x9F\x93\x84"), "\"\xC3\xA4\xF0\x9F\x93\x84\"");
    EXPECT_EQ(ScriptOf("\xFF<"), "\"\xEF\xBF\xBD\\u003c\"");
}

TEST(HtmlText, GroupsDigits) {
    EXPECT_EQ(GroupDigits(0), "0");
    EXPECT_EQ(GroupDigits(999), "999");
    EXPECT_EQ(GroupDigits(1000), "1,000");
    EXPECT_EQ(GroupDigits(1234567), "1,234,567");
    EXPECT_EQ(GroupDigits(UINT64_MAX), "18,446,744,073,709,551,615");
}

TEST(HtmlText, TellsSizesWithThreeDigits) {
    const std::pair<std::uint64_t, const char*> sizes[] = {
        {0, "0 B"},          {999, "999 B"},       {1000, "1.00 kB"},       {9994, "9.99 kB"},
        {9996, "10.0 kB"},   {99940, "99.9 kB"},   {99960, "100 kB"},       {999499, "999 kB"},
        {999500, "1.00 MB"}, {1234567, "1.23 MB"}, {5000000000, "5.00 GB"}, {UINT64_MAX, "18.4 EB"},
    };
    for (const auto& [size, text] : sizes) EXPECT_EQ(TellSize(size), text) << size;
}

TEST(HtmlText, TellsShares) {
    EXPECT_EQ(TellShare(0, 0), "0%");
    EXPECT_EQ(TellShare(0, 5), "0%");
    EXPECT_EQ(TellShare(1, 1001), "<0.1%");
    EXPECT_EQ(TellShare(1, 1000), "0.1%");
    EXPECT_EQ(TellShare(1, 3), "33.3%");
    EXPECT_EQ(TellShare(5, 5), "100.0%");
}

TEST(HtmlText, TellsMinutes) {
    EXPECT_EQ(TellMinute(0), "1970-01-01 00:00 UTC");
    EXPECT_EQ(TellMinute(-1), "1969-12-31 23:59 UTC");
    EXPECT_EQ(TellMinute(951827640), "2000-02-29 12:34 UTC");
}

}  // namespace
