// JSON texts: the grammar, the kinds, lines, and how much of a file is read for them.
#include "further/json_kinds.h"

#include <gtest/gtest.h>

#include <string>

#include "support/bytes.h"
#include "support/opened_look.h"
#include "support/process_heap.h"

namespace {

using namespace std::string_literals;

constexpr FIID geoJson = 20294;
constexpr FIID notebook = 20295;
constexpr FIID lines = 20297;
constexpr FIID json = 20298;
constexpr std::size_t longest = 4 << 20;

struct JsonCase {
    std::string text;
    FIID answer;
};

template <std::size_t count>
void ExpectAnswers(const JsonCase (&cases)[count]) {
    for (const JsonCase& one : cases)
        EXPECT_EQ(FIAskLook(FITellJsonKind, one.text), one.answer) << one.text.substr(0, 99);
}

TEST(Json, IsOneObjectOrArray) {
    const JsonCase cases[] = {
        {"{}", json},
        {"[]", json},
        {" \t\r\n[ ] \t\r\n", json},
        {"\xEF\xBB\xBF {}", json},
        {" \xEF\xBB\xBF{}", 0},
        {"\xEF\xBB\xBF\xEF\xBB\xBF{}", 0},
        {"", 0},
        {" ", 0},
        {"1", 0},
        {"\"a\"", 0},
        {"null", 0},
        {"NaN", 0},
        {"{}{}", 0},
        {"{},", 0},
        {"[]]", 0},
        {"\v{}", 0},
        {"{}\v", 0},
        {"{}\0"s, 0},
        {"{", 0},
        {"[", 0},
        {"[}", 0},
        {"{]", 0},
        {"[1}", 0},
        {"{\"a\":1]", 0},
        {"[1,]", 0},
        {"[,1]", 0},
        {"[1 2]", 0},
        {"[1,,2]", 0},
        {"{\"a\":1,}", 0},
        {"{,}", 0},
        {"{\"a\"}", 0},
        {"{\"a\" 1}", 0},
        {"{\"a\":}", 0},
        {"{a:1}", 0},
        {"{1:1}", 0},
        {"{\"a\" : 1 , \"b\" : [ 1 , { } ] }", json},
        {"[[],{},[{\"a\":[]}],1]", json},
        {"[/**/]", 0},
    };
    ExpectAnswers(cases);
}

TEST(Json, KnowsItsScalars) {
    const char* const right[] = {"0",           "-0",
                                 "10",          "-1.5",
                                 "1e5",         "1E+5",
                                 "1.25e-07",    "true",
                                 "null",        "false",
                                 "NaN",         "\"\"",
                                 "Infinity",    "-Infinity",
                                 "\"\x7F\"",    "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00Ab\"",
                                 "\"\\uD800\"", "\"\xC3\xA4\xF0\x9F\x98\x80\""};
    for (const char* const value : right) EXPECT_EQ(FIAskLook(FITellJsonKind, "["s + value + "]"), json) << value;
    const char* const wrong[] = {
        "00",       "01",       "-",       "-a",          "1.",         ".5",          "1.e5",     "1e",
        "1e+",      "+1",       "0x1",     "1_0",         "tru",        "True",        "nul",      "fals",
        "nan",      "-NaN",     "Infinit", "+Infinity",   "-infinity",  "'a'",         "\"",       "\"\\\"",
        "\"\n\"",   "\"\x1F\"", "\"\\x\"", "\"\\u12G4\"", "\"\\u123\"", "\"\\U1234\"", "\"\xE4\"", "\"\xED\xA0\x80\"",
        "\"\xC3\"", "\xC3\xA4", "truex",   "1a"};
    for (const char* const value : wrong) EXPECT_EQ(FIAskLook(FITellJsonKind, "["s + value + "]"), 0) << value;
    EXPECT_EQ(FIAskLook(FITellJsonKind, "[\"\0\"]"s), 0);
}

// Cut anywhere it is none, and no look behind its end is needed to tell so.
TEST(Json, IsComplete) {
    const std::string text = R"({"type":"Po\u0069nt","a":[-1.5e+7,true,NaN,-Infinity,"\\"],"b":{"c":null}})";
    EXPECT_EQ(FIAskLook(FITellJsonKind, text), json);
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_EQ(FIAskLook(FITellJsonKind, text.substr(0, size)), 0) << size;
    }
}

TEST(Json, HasUpTo1000Levels) {
    const auto nest = [](const char* opening, const char* closing, std::size_t levels) {
        return FIRepeat(opening, levels) + "1" + FIRepeat(closing, levels);
    };
    EXPECT_EQ(FIAskLook(FITellJsonKind, nest("[", "]", 1000)), json);
    EXPECT_EQ(FIAskLook(FITellJsonKind, nest("[", "]", 1001)), 0);
    EXPECT_EQ(FIAskLook(FITellJsonKind, nest("{\"a\":", "}", 1000)), json);
    EXPECT_EQ(FIAskLook(FITellJsonKind, nest("{\"a\":", "}", 1001)), 0);
    EXPECT_EQ(FIAskLook(FITellJsonKind, nest("[{\"a\":", "}]", 500)), json);
    EXPECT_EQ(FIAskLook(FITellJsonKind, "[" + FIRepeat("[],{},", 2000) + "1]"), json) << "not open at a time";
}

TEST(Json, NamesItsKind) {
    const JsonCase cases[] = {
        {R"({"type":"Point","coordinates":[1,2]})", geoJson},
        {R"({"geometry":null,"type":"Feature"})", geoJson},
        {R"({"type":"FeatureCollection","features":[]})", geoJson},
        {R"({"type":"GeometryCollection","geometries":[]})", geoJson},
        {R"({"type":"MultiPoint","coordinates":1})", geoJson},
        {R"({"type":"LineString","coordinates":1})", geoJson},
        {R"({"type":"MultiLineString","coordinates":1})", geoJson},
        {R"({"type":"Polygon","coordinates":1})", geoJson},
        {R"({"type":"MultiPolygon","coordinates":1})", geoJson},
        {R"({"t\u0079pe":"\u0050oint","co\u006Frdinates":[1,2]})", geoJson},
        {R"({"type":"Point"})", json},
        {R"({"type":"point","coordinates":1})", json},
        {R"({"type":"Points","coordinates":1})", json},
        {R"({"type":"FeatureCollectionFeature","coordinates":1})", json},
        {R"({"type":["Point"],"coordinates":1})", json},
        {R"({"type":1,"coordinates":1})", json},
        {R"({"Type":"Point","coordinates":1})", json},
        {R"({"typ\u0065\u0000":"Point","coordinates":1})", json},
        {R"({"typ\\u0065":"Point","coordinates":1})", json},
        {R"({"a":{"type":"Point","coordinates":1}})", json},
        {R"([{"type":"Point","coordinates":1}])", json},
        {R"({"type":"Point","a":{"coordinates":1}})", json},
        {R"({"type":"x","coordinates":1,"type":"Point"})", geoJson},
        {R"({"type":"Point","coordinates":1,"type":"x"})", json},
        {R"({"type":"Point","coordinates":1,"type":{"a":"Point"}})", json},
        {R"({"type":{"b":1},"a":"Point","coordinates":1})", json},
        {R"({"nbformat":4,"cells":[]})", notebook},
        {R"({"worksheets":0,"nbformat":null})", notebook},
        {R"({"nbformat":4})", json},
        {R"({"cells":[]})", json},
        {R"({"nbformat":4,"a":{"cells":[]}})", json},
        {R"({"nbformat":4,"cells":[],"type":"Feature","geometry":1})", geoJson},
    };
    ExpectAnswers(cases);
}

TEST(JsonLines, AreObjects) {
    const JsonCase cases[] = {
        {"{}\n{}", lines},
        {"\xEF\xBB\xBF{}\r\n \t\r\n\n {\"a\":1} \n", lines},
        {"{}\n{\"a\":\n1}", 0},
        {"{}\n", json},
        {"{}\n[]\n", 0},
        {"[]\n{}\n", 0},
        {"{}\n1\n", 0},
        {"{} {}\n{}\n", 0},
        {"{}\r{}", 0},
        {"{}\n\v\n{}", 0},
        {"{}\n\xEF\xBB\xBF{}", 0},
        {"{\"a\":\"\xE4\"}\n{}", 0},
        {FIRepeat("{}\n", 50) + "x", lines},
        {FIRepeat("{}\n", 49) + "x", 0},
        {FIRepeat("{}\n\n", 50) + "x", lines},
        {R"({"type":"Point","coordinates":1})"
         "\n{}",
         lines},
    };
    ExpectAnswers(cases);
}

struct ReadingCase {
    const char* name;
    std::string text;
    FIID answer;
    std::uint32_t reads;
};

// What stands in files of all lengths, and in how many reads it is told. None is left in memory.
TEST(Json, IsReadWhereItMayBe) {
    const std::string line = "{\"a\":\"" + std::string(3000, 'x') + "\"}\n";
    const std::string text = "[" + FIRepeat("{\"name\":[1,2,3]},\n", 20000) + "0]";
    const std::string blanks(100000, ' ');
    const ReadingCase cases[] = {
        {"text", std::string(100000, 'x'), 0, 0},
        {"NUL", "\0"s + blanks, 0, 0},
        {"blanks and text", std::string(8000, ' ') + "x" + blanks, 0, 0},
        {"blanks in a head", std::string(9000, ' ') + "x", 0, 1},
        {"blanks and JSON", std::string(9000, ' ') + "{}", json, 1},
        {"long blanks and JSON", blanks + "{}", json, 2},
        {"section", "[section]\n" + blanks, 0, 0},
        {"program", "{ int a; }\n" + blanks, 0, 1},
        {"start", "[" + std::string(8190, ' ') + "]", json, 0},
        {"head", "[" + std::string(8191, ' ') + "]", json, 1},
        {"whole head", "[" + std::string(65534, ' ') + "]", json, 1},
        {"longer", text, json, 1},
        {"longer, cut", text.substr(0, text.size() - 1), 0, 1},
        {"longer, one more", text + "]", 0, 1},
        {"short lines", FIRepeat("{\"a\":1}\n", 20000), lines, 1},
        {"short lines and a long one", FIRepeat("{}\n", 49) + "{\"a\":[" + blanks + "]}\n{}", lines, 2},
        {"the 50th is wrong", FIRepeat("{}\n", 49) + "{\"a\":[" + blanks + "}\n{}", 0, 2},
        {"long lines", FIRepeat(line, 100), lines, 1},
        {"as long as can be", "[" + std::string(longest - 2, ' ') + "]", json, 1},
        {"a byte longer", "[" + std::string(longest - 1, ' ') + "]", 0, 0},
        {"object a byte longer", "{" + std::string(longest - 1, ' ') + "}", 0, 2},
        {"lines of more", FIRepeat("{\"a\":1}\n", longest / 8 + 1), lines, 1},
        {"two lines of more", line + line + blanks + std::string(longest, ' '), lines, 2},
        {"one line and a cut one", line + line.substr(0, 3000) + std::string(longest, 'x') + "\"}\n" + line, 0, 2},
        {"two lines and a cut one", line + line + "x" + std::string(longest, 'x'), lines, 2},
    };
    const std::size_t blocks = FIHeapBlocks();
    for (const ReadingCase& one : cases) {
        {
            OpenedLook opened(one.text);
            EXPECT_EQ(FITellJsonKind(opened.look), one.answer) << one.name;
            EXPECT_EQ(OpenedLook::reads, one.reads) << one.name;
            EXPECT_EQ(FITellJsonKind(opened.look), one.answer) << one.name << ", asked again";
            EXPECT_EQ(OpenedLook::reads, one.reads) << one.name << ", asked again";
        }
        EXPECT_EQ(FIHeapBlocks(), blocks) << one.name;
    }
}

TEST(Json, IsReadFromFilesOfNoKnownSize) {
    const auto ask = [](const std::string& text) {
        OpenedLook opened(text);
        opened.look.size = unknownSize;
        return FITellJsonKind(opened.look);
    };
    EXPECT_EQ(ask("[" + std::string(100000, ' ') + "]"), json);
    EXPECT_EQ(ask("[" + std::string(longest - 2, ' ') + "]"), json);
    EXPECT_EQ(ask("[" + std::string(longest - 1, ' ') + "]"), 0);
    EXPECT_EQ(ask(FIRepeat("{}\n", 30000)), lines);
}

TEST(Json, IsNoneWhereReadingOrMemoryFails) {
    const std::string text = "[" + std::string(100000, ' ') + "]";
    {
        OpenedLook opened(text);
        OpenedLook::failReads = true;
        EXPECT_EQ(FITellJsonKind(opened.look), 0);
    }
    OpenedLook opened(text);
    FIFailAllocationsFrom(0);
    EXPECT_EQ(FITellJsonKind(opened.look), 0);
    FIHeapNeverFails();
    OpenedLook shorter("[" + std::string(10000, ' ') + "]");
    OpenedLook::failReads = true;
    EXPECT_EQ(FITellJsonKind(shorter.look), 0);
}

}  // namespace
