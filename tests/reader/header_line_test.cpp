// The line reader of mail and encoded text: line ends, control bytes, a full buffer and the end of the file.
#include "reader/header_line.h"

#include <algorithm>
#include <string>
#include <vector>

#include "reader/reader.h"
#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

constexpr char guard = '\x55';
constexpr std::uint16_t mailCapacity = 1023;  // what the mail and the encoded-text routine pass

// One line. Also checks that it is terminated and that nothing behind the capacity is written.
std::string ReadLine(FIReader& reader, std::uint16_t capacity) {
    const std::size_t room = std::max<std::size_t>(capacity, 1);  // even without a capacity a NUL is stored
    std::vector<char> buffer(room + 16, guard);
    const std::uint16_t count = FIReadHeaderLine(buffer.data(), capacity, reader);
    EXPECT_LT(count, room);
    if (count >= room) return "a count without a meaning";
    EXPECT_EQ(buffer[count], '\0');
    EXPECT_EQ(std::count(buffer.begin() + static_cast<std::ptrdiff_t>(room), buffer.end(), guard), 16);
    return std::string(buffer.data(), count);
}

struct LineCase {
    const char* name;
    std::string bytes;
    std::uint16_t capacity;
    std::vector<std::string> lines;  // behind them only the end of the file is left
};

class HeaderLine : public testing::TestWithParam<LineCase> {
 protected:
    static void ReadAll(std::uint32_t bytesPerRead) {
        const LineCase& lineCase = GetParam();
        const auto handle = FIMakeTestHandle(lineCase.bytes);
        handle->bytesPerRead = bytesPerRead;
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        for (std::size_t index = 0; index < lineCase.lines.size(); ++index) {
            EXPECT_EQ(ReadLine(reader, lineCase.capacity), lineCase.lines[index]) << "line " << index;
        }
        EXPECT_EQ(FIReaderGetByte(reader), endOfFile) << "bytes are left";
        for (std::uint32_t round = 0; round < 3; ++round) EXPECT_EQ(ReadLine(reader, lineCase.capacity), "");
    }
};

const std::string a1020(1020, 'a');

const LineCase lineCases[] = {
    // clang-format off
    {"LineFeed",                           "ab\ncd\n"s,               80, {"ab", "cd"}},
    {"CarriageReturn",                     "ab\rcd\r"s,               80, {"ab", "cd"}},
    {"CarriageReturnLineFeed",             "ab\r\ncd\r\n"s,           80, {"ab", "cd"}},
    {"LineFeedCarriageReturn",             "ab\n\rcd\n\r"s,           80, {"ab", "cd"}},
    {"AllFourMixed",                       "a\nb\rc\r\nd\n\re"s,      80, {"a", "b", "c", "d", "e"}},
    {"NoLineEndAtTheEnd",                  "ab\ncd"s,                 80, {"ab", "cd"}},
    {"EmptyFile",                          ""s,                       80, {}},
    {"OnlyALineFeed",                      "\n"s,                     80, {""}},
    {"OnlyACarriageReturn",                "\r"s,                     80, {""}},
    {"TwoLineFeedsAreTwoLineEnds",         "a\n\nb"s,                 80, {"a", "", "b"}},
    {"TwoCarriageReturnsAreTwoLineEnds",   "a\r\rb"s,                 80, {"a", "", "b"}},
    {"CrLfCrLfIsTwoLineEnds",              "a\r\n\r\nb"s,             80, {"a", "", "b"}},
    {"LfCrLfCrIsTwoLineEnds",              "a\n\r\n\rb"s,             80, {"a", "", "b"}},
    {"LfCrLfIsTwoLineEnds",                "a\n\r\nb"s,               80, {"a", "", "b"}},
    {"CrLfCrIsTwoLineEnds",                "a\r\n\rb"s,               80, {"a", "", "b"}},
    {"CrCrLfIsTwoLineEnds",                "a\r\r\nb"s,               80, {"a", "", "b"}},
    {"LfLfCrIsTwoLineEnds",                "a\n\n\rb"s,               80, {"a", "", "b"}},
    {"LfCrCrLfIsTwoLineEnds",              "a\n\r\r\nb"s,             80, {"a", "", "b"}},
    {"NulIsStored",                        "a\0b\nc"s,                80, {"a\0b"s, "c"}},
    {"OnlyANul",                           "\0"s,                     80, {"\0"s}},
    {"ByteFfIsStored",                     "a\xFF\n\xFF"s,            80, {"a\xFF", "\xFF"}},
    {"BlanksAreKept",                      " \t a \n\tb"s,            80, {" \t a ", "\tb"}},
    {"Capacity2StoresOneByte",             "abc"s,                     2, {"a", "b", "c"}},
    {"Capacity2LineEndComesBackAsALine",   "a\nb"s,                    2, {"a", "", "b"}},
    {"LineBelowTheRoom",                   "abc\nef"s,                 5, {"abc", "ef"}},
    {"LineThatFillsTheRoom",               "abcd\nef"s,                5, {"abcd", "", "ef"}},
    {"LineThatFillsTheRoomCrLf",           "abcd\r\nef"s,              5, {"abcd", "", "ef"}},
    {"LineThatFillsTheRoomAtTheEnd",       "abcd"s,                    5, {"abcd"}},
    {"LineAboveTheRoom",                   "abcde\nf"s,                5, {"abcd", "e", "f"}},
    {"LineOfTwiceTheRoom",                 "abcdefgh\ni"s,             5, {"abcd", "efgh", "", "i"}},
    {"MailLineOf1021Bytes",                a1020 + "b\nnext",          mailCapacity, {a1020 + "b", "next"}},
    {"MailLineOf1022Bytes",                a1020 + "bc\nnext",         mailCapacity, {a1020 + "bc", "", "next"}},
    {"MailLineOf1023Bytes",                a1020 + "bcd\nnext",        mailCapacity, {a1020 + "bc", "d", "next"}},
    {"MailLineOf1024Bytes",                a1020 + "bcde\nnext",       mailCapacity, {a1020 + "bc", "de", "next"}},
    {"CrLfAcrossTheReadersBuffer",         std::string(2047, 'a') + "\r\nb",  4096, {std::string(2047, 'a'), "b"}},
    {"LfCrAcrossTheReadersBuffer",         std::string(2047, 'a') + "\n\rb",  4096, {std::string(2047, 'a'), "b"}},
    {"PutBackAcrossTheReadersBuffer",      std::string(2047, 'a') + "\nbc",   4096, {std::string(2047, 'a'), "bc"}},
    {"LineFeedEndsBufferAndFile",          std::string(2047, 'a') + "\n",     4096, {std::string(2047, 'a')}},
    // clang-format on
};

TEST_P(HeaderLine, Lines) { ReadAll(testNever); }
TEST_P(HeaderLine, LinesByteByByte) { ReadAll(1); }
INSTANTIATE_TEST_SUITE_P(Text, HeaderLine, testing::ValuesIn(lineCases), FICaseName);

TEST(HeaderLineBytes, EveryByteButTheTwoLineEndsIsStored) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const std::string line = {'x', static_cast<char>(byte), 'y'};
        const auto handle = FIMakeTestHandle(line + "\nz");
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        const bool isLineEnd = byte == '\n' || byte == '\r';
        EXPECT_EQ(ReadLine(reader, 80), isLineEnd ? "x" : line) << "byte " << byte;
        EXPECT_EQ(ReadLine(reader, 80), isLineEnd ? "y" : "z") << "byte " << byte;
    }
}

TEST(HeaderLineCapacity, BelowTwoNothingIsRead) {
    for (const std::uint16_t capacity : {std::uint16_t{0}, std::uint16_t{1}}) {
        const auto handle = FIMakeTestHandle("abc\n");
        FIReader reader;
        FIReaderStart(reader, FIFileOf(*handle));
        EXPECT_EQ(ReadLine(reader, capacity), "");
        EXPECT_EQ(handle->reads, 0U);
        EXPECT_EQ(FIReaderTell(reader), 0U);
        EXPECT_EQ(ReadLine(reader, 80), "abc");
    }
}

TEST(HeaderLinePosition, StandsBehindTheLineEnd) {
    const auto handle = FIMakeTestHandle("a\nb\r\nc\n");
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    EXPECT_EQ(ReadLine(reader, 80), "a");
    EXPECT_EQ(FIReaderTell(reader), 2U) << "the byte behind a lone line feed is put back";
    EXPECT_EQ(ReadLine(reader, 80), "b");
    EXPECT_EQ(FIReaderTell(reader), 5U);
    EXPECT_EQ(ReadLine(reader, 80), "c");
    EXPECT_EQ(FIReaderTell(reader), 7U) << "the end of the file is put back too";
    EXPECT_EQ(FIReaderGetByte(reader), endOfFile);
}

TEST(HeaderLinePosition, AFullBufferTakesNoFurtherByte) {
    const auto handle = FIMakeTestHandle("abcd\nef");
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    EXPECT_EQ(ReadLine(reader, 5), "abcd");
    EXPECT_EQ(FIReaderTell(reader), 4U);
}

TEST(HeaderLineFailure, AFailingReadIsTheEndOfTheFile) {
    const auto unreadable = FIMakeTestHandle("abc\n");
    unreadable->failReadsFrom = 0;
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*unreadable));
    EXPECT_EQ(ReadLine(reader, 80), "");

    const auto torn = FIMakeTestHandle("x\n" + std::string(3000, 'a') + "\n");
    torn->failReadsFrom = 1;
    FIReaderStart(reader, FIFileOf(*torn));
    EXPECT_EQ(ReadLine(reader, 4096), "x");
    EXPECT_EQ(ReadLine(reader, 4096), std::string(2046, 'a'));
    EXPECT_EQ(ReadLine(reader, 4096), "");
}

}  // namespace
