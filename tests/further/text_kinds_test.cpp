// Clean texts, Unicode, tables and extensions: both sides of every limit, and how much is read for them.
#include <gtest/gtest.h>

#include <string>

#include "further/clean_text.h"
#include "further/csv_text.h"
#include "further/text_extensions.h"
#include "support/bytes.h"
#include "support/opened_look.h"

namespace {

using namespace std::string_literals;

bool IsClean(const std::string& bytes) {
    const bool isClean = FIAskLook(FITellBinary, bytes) == 0;
    OpenedLook opened(bytes);
    EXPECT_EQ(FIIsCleanText(opened.look), isClean);
    EXPECT_EQ(FIIsCleanText(opened.look), isClean) << "asked again";
    return isClean;
}

// A text of 1,000 bytes which may hold three stray bytes, with so many of one kind.
std::string Stray(char byte, std::size_t count) { return std::string(1000 - count, 'x') + std::string(count, byte); }

TEST(CleanText, HoldsTextBytesAndFewOthers) {
    for (std::uint32_t value = 0; value <= 0xFF; ++value) {
        const bool isText = (value >= 0x07 && value <= 0x0D) || value == 0x1B || (value >= 0x20 && value != 0x7F);
        EXPECT_EQ(IsClean(Stray(static_cast<char>(value), 4)), isText) << value;
        EXPECT_EQ(IsClean(Stray(static_cast<char>(value), 3)), value != 0) << value;
        EXPECT_EQ(IsClean(std::string(1, static_cast<char>(value))), isText) << value;
    }
    EXPECT_TRUE(IsClean(""));
}

TEST(CleanText, CountsStrayBytesByTheWholeHead) {
    struct Limit {
        std::size_t size;
        std::size_t most;
    };
    for (const Limit limit : {Limit{333, 0}, Limit{334, 1}, Limit{666, 1}, Limit{667, 2}, Limit{8192, 24},
                              Limit{8193, 24}, Limit{65536, 196}, Limit{70000, 196}}) {
        for (const std::size_t place : {std::size_t{0}, std::min<std::size_t>(limit.size, 65536) - limit.most - 1}) {
            std::string text(limit.size, 'x');
            text.replace(place, limit.most, limit.most, '\x01');
            EXPECT_TRUE(IsClean(text)) << limit.size << " at " << place;
            text.replace(place, limit.most + 1, limit.most + 1, '\x01');
            EXPECT_FALSE(IsClean(text)) << limit.size << " at " << place;
        }
    }
    EXPECT_TRUE(IsClean(std::string(65536, 'x') + std::string(300, '\0'))) << "behind the head";
    EXPECT_FALSE(IsClean(std::string(65535, 'x') + "\0"s));
}

TEST(CleanText, LeavesOutEndMarks) {
    EXPECT_TRUE(IsClean("text\r\n\x1A"));
    EXPECT_TRUE(IsClean("text\n" + std::string(127, '\x1A')));
    EXPECT_TRUE(IsClean("text\r\x1A"));
    EXPECT_FALSE(IsClean("text\x1A"));
    EXPECT_FALSE(IsClean("\x1A"));
    EXPECT_FALSE(IsClean("text\n\x1A\n"));
    EXPECT_FALSE(IsClean("te\n\x1Axt\n\x1A"));
    EXPECT_FALSE(IsClean("text\n\x1A\x01")) << "not at the end";
    EXPECT_TRUE(IsClean(std::string(65235, 'x') + "\n" + std::string(300, '\x1A')));
    EXPECT_FALSE(IsClean(std::string(65235, 'x') + "\n" + std::string(300, '\x1A') + "x"));
    // They count for the size.
    EXPECT_TRUE(IsClean("\x01\n" + std::string(332, '\x1A')));
    EXPECT_FALSE(IsClean("\x01\n" + std::string(331, '\x1A')));
}

TEST(CleanText, LeavesOutShiftsWhereACharacterSetIsDesignated) {
    EXPECT_TRUE(IsClean("\x1B$)C\x0E!!\x0F text"));
    EXPECT_TRUE(IsClean("\x0E!!\x0F text\x1B$)"));
    EXPECT_FALSE(IsClean("\x1B$(C\x0E!!\x0F text"));
    EXPECT_FALSE(IsClean("\x1B$)C\x0E!!\x0F te\x10xt"));
    EXPECT_TRUE(IsClean(std::string(8190, '\x0F') + "\x1B$)" + std::string(100, 'x'))) << "across the end of the start";
    EXPECT_FALSE(IsClean(std::string(65534, '\x0F') + "\x1B$)")) << "across the end of the head";
}

TEST(CleanText, ReadsNoMoreThanItMust) {
    struct Reading {
        std::string bytes;
        std::uint32_t reads;
    };
    const Reading cases[] = {
        {std::string(8192, 'x'), 0},
        {std::string(8193, 'x'), 1},
        {std::string(200000, 'x'), 1},
        {"\0"s + std::string(200000, 'x'), 0},
        {std::string(197, '\x01') + std::string(200000, 'x'), 0},
        {std::string(196, '\x01') + std::string(200000, 'x'), 1},
    };
    for (const Reading& one : cases) {
        OpenedLook opened(one.bytes, "a.md");
        FITellByExtension(opened.look);
        FITellUtf8Text(opened.look);
        FITellBinary(opened.look);
        EXPECT_EQ(OpenedLook::reads, one.reads) << one.bytes.size();
    }
}

TEST(CleanText, IsToldByWhatCanBeRead) {
    const std::string text = std::string(10, '\x01') + std::string(9000, 'x');
    OpenedLook opened(text);
    OpenedLook::failReads = true;
    EXPECT_TRUE(FIIsCleanText(opened.look)) << "10 stray bytes in 8,192";
}

TEST(Utf8Text, IsCleanAndHasOtherCharacters) {
    struct Case {
        std::string bytes;
        FIID answer;
    };
    const std::string almost(65535, 'x');
    const Case cases[] = {
        {"\xC3\xA4", 20338},
        {"text", 0},
        {"", 0},
        {"\xE4", 0},
        {"\xC3\xA4\x01", 0},
        {"text \xC3", 0},
        {almost + "\xC3\xA4", 20338},  // the head has half of it
        {almost + "\xC3 ", 20338},     // the rest is not looked at
        {almost + "\xC3", 0},
        {almost + "\xA4 ", 0},
        {almost + "x\xC3\xA4", 0},  // behind the head
    };
    for (const Case& one : cases) EXPECT_EQ(FIAskLook(FITellUtf8Text, one.bytes), one.answer) << one.bytes.size();
}

struct NotationCase {
    const char* bytes;
    FIID answer;
};

TEST(Utf16Text, IsMostlyOfUsualCharacters) {
    constexpr NotationCase cases[] = {
        {"FF FE 41 00", 20337},
        {"FE FF 00 41", 20337},
        {"FF FE 00 41", 20337},  // one of the Chinese characters
        {"FF FE", 0},
        {"FF FE 41", 0},
        {"FF FE 41 00 42", 0},
        {"41 00 42 00", 0},
        {"FF FF 41 00", 0},
        {"FE FE 41 00", 0},
        {"FF FE 09 00 0A 00 0C 00 0D 00", 20337},
        {"FF FE 41 00 08 00", 0},
        {"FF FE 41 00 0B 00", 0},
        {"FF FE 41 00 1F 00", 0},
        {"FF FE 41 00 00 00", 0},
        {"FF FE 20 00", 20337},
        {"FF FE 4F 02", 20337},
        {"FF FE 50 02", 0},
        {"FF FE FF 03", 0},
        {"FF FE 00 04", 20337},
        {"FF FE FF 06", 20337},
        {"FF FE 00 07", 0},
        {"FF FE FF 2F", 0},
        {"FF FE 00 30", 20337},
        {"FF FE FF 9F", 20337},
        {"FF FE 00 A0", 0},
        {"FF FE (41 00)*7 (50 02)*3", 0},
        {"FF FE (41 00)*71 (50 02)*29", 20337},
        {"FF FE (41 00)*3 3D D8 00 DE", 20337},  // a pair is one character
        {"FF FE (41 00)*2 3D D8 00 DE", 0},
        {"FE FF (00 41)*3 D8 3D DE 00", 20337},
        {"FF FE (41 00)*9 3D D8", 0},
        {"FF FE (41 00)*9 3D D8 41 00", 0},
        {"FF FE (41 00)*9 00 DE", 0},
    };
    for (const NotationCase& one : cases) {
        EXPECT_EQ(FIAskLook(FITellUtf16Text, FIBytes(one.bytes)), one.answer) << one.bytes;
    }
}

TEST(Utf16Text, MayBeCutByTheHead) {
    const std::string almost = FIBytes("FF FE (41 00)*32766");
    ASSERT_EQ(almost.size(), 65534U);
    EXPECT_EQ(FIAskLook(FITellUtf16Text, almost + FIBytes("3D D8 00 DE")), 20337);
    EXPECT_EQ(FIAskLook(FITellUtf16Text, almost + FIBytes("3D D8")), 0);
    EXPECT_EQ(FIAskLook(FITellUtf16Text, almost + FIBytes("41 00 00 DE")), 20337) << "behind the head";
    EXPECT_EQ(FIAskLook(FITellUtf16Text, almost + FIBytes("41 00 42")), 0) << "of an odd size";
}

// A line of so many bytes with its end.
std::string Line(std::size_t size) { return "a," + std::string(size - 3, 'b') + "\n"; }

TEST(Csv, IsRecordsOfTheSameNumberOfFields) {
    struct Case {
        std::string text;
        bool isCsv;
    };
    const Case cases[] = {
        {"a,b\nc,d\n", true},
        {"a;b\nc;d", true},
        {"a\tb\nc\td\n", true},
        {"a|b\rc|d\r", true},
        {"a,b\r\nc,d\r\n", true},
        {"a:b\nc:d\n", false},
        {"a,b\n", false},
        {"a\nb\n", false},
        {"", false},
        {"a,b\nc\n", false},
        {"a,b\nc,d,e\n", false},
        {"a,b;c\nd,e\n", true},
        {"\n\n\r\na,b\n\nc,d\n\n", true},
        {"a,b\n \nc,d\n", false},  // a blank is a field
        {",\n,\n", true},
        {"\"a,\nb\",c\nd,e\n", true},
        {"a\"b,c\"\nd,e\n", true},  // no quoted field
        {"a \"b\",c\nd,e\n", true},
        {" \"b,c\"\nd,e,f\n", false},
        {"\"a\"\"b,\",c\nd,e\n", true},
        {"\"a\"x,\"c\"\nd,e\n", true},   // behind the closing mark
        {"\"a\"x\"y,c\nd,e\n", true},    // which opens nothing again
        {"a,b\nc,\"d\ne,f,g\nh", true},  // never closed
        {"a,b\n\"c,d\ne,f\n", false},
        {FIRepeat("a,b\n", 20) + "c\n", true},
        {FIRepeat("a,b\n", 19) + "c\n", false},
        {FIRepeat("a,b\n\n", 20) + "c\n", true},
        {"a,b\nc,d\n\x1A", true},
        {"a,b\nc,d\x1A", false},  // a stray byte in eight
        {"a,b\nc,d\n\0"s, false},
        // The 20,000th byte is the last that is looked at.
        {"a,b\n" + std::string(19996, 'x'), false},
        {Line(100) + "a," + std::string(19898, 'x'), true},         // at the end of the file
        {Line(100) + "a," + std::string(19898, 'x') + "y", false},  // cut: one record is left
        {FIRepeat(Line(1000), 19) + "x" + std::string(100, 'x') + "\n", false},
        {FIRepeat(Line(1000), 20) + "x\n", true},
        {FIRepeat(Line(1200), 16) + std::string(799, 'x') + "\n", false},
        {FIRepeat(Line(1200), 16) + std::string(799, 'x') + "\ny", false},  // closed by the last byte
        {FIRepeat(Line(1200), 16) + std::string(800, 'x') + "\n", true},    // cut, and left out
        {FIRepeat(Line(1200), 16) + std::string(800, 'x'), false},
    };
    for (const Case& one : cases) {
        OpenedLook opened(one.text);
        EXPECT_EQ(FIIsCsv(opened.look), one.isCsv) << one.text.size() << ": " << one.text.substr(0, 40);
    }
}

TEST(TextExtensions, TellTheLanguage) {
    struct Case {
        const char* name;
        FIID answer;
    };
    constexpr Case cases[] = {
        {"a.csv", 20308},  {"a.md", 20309},   {"a.markdown", 20309},
        {"a.java", 20310}, {"a.c", 20311},    {"a.h", 20312},
        {"a.hpp", 20312},  {"a.hxx", 20312},  {"a.hh", 20312},
        {"a.cpp", 20313},  {"a.cc", 20313},   {"a.cxx", 20313},
        {"a.cs", 20314},   {"a.py", 20315},   {"a.js", 20316},
        {"a.mjs", 20316},  {"a.ts", 20317},   {"a.tsx", 20317},
        {"a.go", 20318},   {"a.rs", 20319},   {"a.pl", 20320},
        {"a.pm", 20320},   {"a.t", 20320},    {"a.rb", 20321},
        {"a.sql", 20322},  {"a.css", 20323},  {"a.sh", 20324},
        {"a.ini", 20326},  {"a.yaml", 20327}, {"a.yml", 20327},
        {"a.tsv", 20328},  {"a.tab", 20328},  {"a.log", 20329},
        {"a.m4", 20330},   {"a.rst", 20331},  {"A.B.MD", 20309},
        {".md", 20309},    {"md", 0},         {"a.", 0},
        {"a.md~", 0},      {"a.txt", 0},      {"a", 0},
        {"a.markdow", 0},  {"a.aaa", 0},      {"a.zzz", 0},
        {"", 0},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(FIAskLook(FITellByExtension, "a,b\nc,d\n", one.name), one.answer) << one.name;
        EXPECT_EQ(FIAskLook(FITellByExtension, "a,b\nc,d\n\x01", one.name), 0) << one.name;
    }
    EXPECT_EQ(FIAskLook(FITellByExtension, "a,b\n", "a.csv"), 0);
    EXPECT_EQ(FIAskLook(FITellByExtension, "", "a.c"), 20311);
}

}  // namespace
