// Fields and members by their bytes.
#include "report/value_text.h"

#include <gtest/gtest.h>

namespace {

std::string FieldOf(const Value& value, const LineForm& form) {
    std::string out = "a";
    AppendField(out, value, form);
    return out;
}

std::string JsonOf(const Value& value) {
    std::string out;
    JsonObject object(out);
    object.Add("a", nothing);
    object.Add("b", value);
    object.Add("c", Number(1));
    object.End();
    return out;
}

TEST(Values, InCsv) {
    EXPECT_EQ(FieldOf(nothing, csvForm), "a");
    EXPECT_EQ(FieldOf(Number(18446744073709551615U), csvForm), "a18446744073709551615");
    EXPECT_EQ(FieldOf(Text(""), csvForm), "a");
    EXPECT_EQ(FieldOf(Text("b\tc"), csvForm), "ab\tc");
    EXPECT_EQ(FieldOf(Text("b,\"c\"\r\n"), csvForm), "a\"b,\"\"c\"\"\r\n\"");
    EXPECT_EQ(FieldOf(Hex("\xFF\x01"), csvForm), "aff01");
    EXPECT_EQ(FieldOf(Words("fmt/3 fmt/4"), csvForm), "afmt/3 fmt/4");
    EXPECT_EQ(FieldOf(Time(0), csvForm), "a1970-01-01T00:00:00Z");
}

TEST(Values, InTsv) {
    EXPECT_EQ(FieldOf(Text("b,\"c\""), tsvForm), "ab,\"c\"");
    EXPECT_EQ(FieldOf(Text("\t\n\r\\"), tsvForm), "a\\t\\n\\r\\\\");
}

TEST(Values, InJson) {
    EXPECT_EQ(JsonOf(nothing), R"({"c":1})");
    EXPECT_EQ(JsonOf(Number(0)), R"({"b":0,"c":1})");
    EXPECT_EQ(JsonOf(Text("\"")), R"({"b":"\"","c":1})");
    EXPECT_EQ(JsonOf(Hex("\xFF\x01")), R"({"b":"ff01","c":1})");
    EXPECT_EQ(JsonOf(Words("")), R"({"b":[],"c":1})");
    EXPECT_EQ(JsonOf(Words("fmt/3 fmt/4")), R"({"b":["fmt/3","fmt/4"],"c":1})");
    EXPECT_EQ(JsonOf(Time(-1)), R"({"b":"1969-12-31T23:59:59Z","c":1})");
    std::string out;
    JsonObject(out).End();
    EXPECT_EQ(out, "{}");
}

TEST(Values, QuotedWhateverTheyAre) {
    std::string out;
    AppendQuotedCsvText(out, "");
    AppendQuotedCsvText(out, "a\"b");
    EXPECT_EQ(out, R"("""a""b")");
}

TEST(Values, TimesOfTheYears0To9999) {
    EXPECT_FALSE(TimeHasAForm(-62167219201));
    EXPECT_TRUE(TimeHasAForm(-62167219200));
    EXPECT_TRUE(TimeHasAForm(253402300799));
    EXPECT_FALSE(TimeHasAForm(253402300800));
    std::string out;
    AppendTimeWithoutZone(out, -62167219200);
    AppendTimeWithoutZone(out, 253402300799);
    EXPECT_EQ(out, "0000-01-01T00:00:009999-12-31T23:59:59");
}

}  // namespace
