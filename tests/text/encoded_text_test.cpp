// uuencode, xxencode, yEnc and BinHex 4.0: the line tests, bare runs of lines, headers, and the limits of the scan.
//
// The encoders here know the alphabets from the formats' descriptions (BinHex: RFC 1741), not from the probe's tables.
#include "text/encoded_text.h"

#include <string>
#include <string_view>
#include <vector>

#include "support/case_name.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

using namespace std::string_literals;

// ---- Encoders -----------------------------------------------------------------------------------------------------

constexpr std::string_view xxAlphabet = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view binHexAlphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";

std::string UuAlphabet() {
    std::string alphabet = "`";
    for (char character = '!'; character <= '_'; ++character) alphabet += character;
    return alphabet;
}

// Three bytes become four characters; a short last group is filled up with zeros.
std::string EncodeSixBits(std::string_view data, std::string_view alphabet) {
    std::string characters;
    for (std::size_t start = 0; start < data.size(); start += 3) {
        std::uint32_t group = 0;
        for (std::size_t index = start; index < start + 3; ++index) {
            group = group << 8 | (index < data.size() ? static_cast<std::uint8_t>(data[index]) : 0U);
        }
        for (std::uint32_t shift = 24; shift > 0; shift -= 6) characters += alphabet[group >> (shift - 6) & 63];
    }
    return characters;
}

std::string EncodeUuLine(std::string_view data) {
    return UuAlphabet()[data.size()] + EncodeSixBits(data, UuAlphabet());
}

std::string EncodeXxLine(std::string_view data) { return xxAlphabet[data.size()] + EncodeSixBits(data, xxAlphabet); }

// The body of a BinHex file between its colons, in lines of 64 characters.
std::string EncodeBinHex(std::string_view data) {
    const std::string body = ":" + EncodeSixBits(data, binHexAlphabet) + ":";
    std::string lines;
    for (std::size_t start = 0; start < body.size(); start += 64) lines += body.substr(start, 64) + "\n";
    return lines;
}

std::string EncodeYEnc(std::string_view data) {
    std::string line;
    for (const char byte : data) {
        const auto moved = static_cast<std::uint8_t>(static_cast<std::uint8_t>(byte) + 42);
        const bool critical = moved == 0 || moved == '\n' || moved == '\r' || moved == '=';
        if (critical) line += '=';
        line += static_cast<char>(critical ? static_cast<std::uint8_t>(moved + 64) : moved);
    }
    return line;
}

// The check character of a uuencoded line: the sum of its characters, as six bits.
char UuCheckOf(std::string_view line) {
    std::uint32_t sum = 0;
    for (const char character : line.substr(1)) sum += static_cast<std::uint8_t>(character) - 32U;
    return static_cast<char>(32 + sum % 64);
}

std::string SomeData(std::size_t size) {
    std::string data;
    for (std::size_t index = 0; index < size; ++index) data += static_cast<char>(index * 37 + 11);
    return data;
}

// ---- Lines of a wanted shape --------------------------------------------------------------------------------------

// A uuencoded line that claims count bytes, a multiple of 3. The dot is no BinHex and no xxencode character.
std::string UuOf(std::uint32_t count) { return static_cast<char>(32 + count) + std::string(count / 3 * 4, '.'); }

// An xxencoded line that claims count bytes, a multiple of 3. The letter z is no BinHex and no uuencode character.
std::string XxOf(std::uint32_t count) { return xxAlphabet[count] + std::string(count / 3 * 4, 'z'); }

// A BinHex line of that many bytes; it is no uuencoded and no xxencoded one.
std::string HexOf(std::size_t size) { return std::string(size, '!'); }

const std::string uu = UuOf(45);  // a full line: 61 bytes
const std::string xx = XxOf(45);
const std::string hex = HexOf(64);
const std::string text = "plain text";
const std::string notice = "(This file must be converted with BinHex 4.0)";
const std::string begin = "begin 644 a.txt";

std::string Lines(const std::vector<std::string>& lines, const std::string& lineEnd = "\n") {
    std::string all;
    for (const std::string& line : lines) all += line + lineEnd;
    return all;
}

std::string Times(std::size_t count, const std::string& line, const std::string& lineEnd = "\n") {
    return FIRepeat(line + lineEnd, count);
}

// ---- The encoders and the line tests agree ------------------------------------------------------------------------

bool IsUu(std::string line, std::uint16_t expectedLetter = 0) { return FIIsUuLine(line.data(), expectedLetter); }
bool IsXx(const std::string& line) { return FIIsXxLine(line.c_str()); }
bool IsHex(const std::string& line) { return FIIsBinHexLine(line.c_str()); }

TEST(LineTests, AcceptWhatTheEncodersMake) {
    for (std::size_t count = 0; count <= 45; count += 3) {
        EXPECT_TRUE(IsUu(EncodeUuLine(SomeData(count)))) << count;
        EXPECT_TRUE(IsXx(EncodeXxLine(SomeData(count)))) << count;
    }
    EXPECT_TRUE(IsHex(HexOf(10) + EncodeSixBits(SomeData(39), binHexAlphabet)));
}

TEST(LineTests, TheShapedLinesAreOfOneKindEach) {
    for (const std::uint32_t count : {30U, 33U, 45U}) {
        EXPECT_TRUE(IsUu(UuOf(count)) && !IsXx(UuOf(count)) && !IsHex(UuOf(count))) << count;
        EXPECT_TRUE(!IsUu(XxOf(count)) && IsXx(XxOf(count)) && !IsHex(XxOf(count))) << count;
    }
    for (const std::size_t size : {46U, 61U, 64U, 65U}) {
        EXPECT_TRUE(!IsUu(HexOf(size)) && !IsXx(HexOf(size)) && IsHex(HexOf(size))) << size;
    }
    for (const std::string& line : {text, notice, begin, "end"s, "END"s, "_=_x"s}) {
        EXPECT_TRUE(!IsUu(line) && !IsXx(line) && !IsHex(line)) << line;
    }
}

// An encoder's last line may claim any count. Quirk: only multiples of 3 make a line here.
TEST(UuLine, CountThatIsNoMultipleOf3) {
    for (std::size_t count = 0; count <= 45; ++count) {
        EXPECT_EQ(IsUu(EncodeUuLine(SomeData(count))), count % 3 == 0) << count;
    }
}

TEST(XxLine, CountThatIsNoMultipleOf3) {
    for (std::size_t count = 0; count <= 45; ++count) {
        EXPECT_EQ(IsXx(EncodeXxLine(SomeData(count))), count % 3 == 0) << count;
    }
}

// Every count byte with every number of characters behind it. Without a check character that fits (the fill is '!', of
// value 1) only lines of four characters for three bytes pass, and a full line with any one byte more.
TEST(UuLine, EveryCountWithEveryLength) {
    for (std::uint32_t first = 1; first < 256; ++first) {
        for (std::uint32_t behind = 0; behind <= 80; ++behind) {
            const std::uint32_t count = first == '`' ? 0 : first - 32;
            const bool inAlphabet = first >= 32 && first <= 96;
            const bool fits = behind <= 60 && behind % 4 == 0 && count == behind / 4 * 3;
            const bool sequenceLetter = first == 'M' && behind == 61;
            EXPECT_EQ(IsUu(static_cast<char>(first) + std::string(behind, '!')), (inAlphabet && fits) || sequenceLetter)
                << "first byte " << first << ", " << behind << " behind it";
        }
    }
}

TEST(XxLine, EveryCountWithEveryLength) {
    for (std::uint32_t first = 1; first < 256; ++first) {
        const std::size_t count = xxAlphabet.find(static_cast<char>(first));
        for (std::uint32_t behind = 0; behind <= 80; ++behind) {
            const bool fits = behind <= 60 && behind % 4 == 0 && count == behind / 4 * 3;
            EXPECT_EQ(IsXx(static_cast<char>(first) + std::string(behind, '-')), fits)
                << "first byte " << first << ", " << behind << " behind it";
        }
    }
}

// The byte stands in the middle and at the end of a full line. Bytes of 128 and above are none.
TEST(UuLine, EveryByteInALine) {
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        const bool member = byte >= 32 && byte <= 96;
        std::string line = uu;
        line[30] = static_cast<char>(byte);
        EXPECT_EQ(IsUu(line), member) << byte;
        line = uu;
        line[60] = static_cast<char>(byte);
        EXPECT_EQ(IsUu(line), member) << byte;
    }
}

// Quirk: bytes are signed indices, so A0 to E0 are looked up in the uuencode table, as 20 to 60, and pass.
TEST(XxLine, EveryByteInALine) {
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        const bool member = xxAlphabet.find(static_cast<char>(byte)) != std::string_view::npos;
        const bool passes = member || (byte >= 0xA0 && byte <= 0xE0);
        std::string line = xx;
        line[30] = static_cast<char>(byte);
        EXPECT_EQ(IsXx(line), passes) << byte;
        line = xx;
        line[60] = static_cast<char>(byte);
        EXPECT_EQ(IsXx(line), passes) << byte;
    }
}

constexpr std::uint8_t passingHighBytes[] = {
    0x81, 0x82, 0x83, 0x87, 0x89, 0x8D, 0x92, 0x93, 0x97, 0x98, 0x9A, 0x9B, 0x9C, 0xA0, 0xA9, 0xAB, 0xAF, 0xB1,
    0xB5, 0xB7, 0xBB, 0xBD, 0xC1, 0xC2, 0xC7, 0xC9, 0xCD, 0xCE, 0xD3, 0xD5, 0xD9, 0xDB, 0xDF, 0xE5, 0xE6, 0xE7,
    0xE9, 0xEA, 0xEC, 0xED, 0xEE, 0xF0, 0xF1, 0xF2, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,
};

// Quirk: bytes are signed indices, so those of 128 and above are looked up in the tail of the signature table.
bool PassesForBinHex(std::uint32_t byte) {
    for (const std::uint8_t passing : passingHighBytes) {
        if (passing == byte) return true;
    }
    return byte < 128 && binHexAlphabet.find(static_cast<char>(byte)) != std::string_view::npos;
}

TEST(BinHexLine, EveryByteInALine) {
    for (std::uint32_t byte = 1; byte < 256; ++byte) {
        for (const std::size_t place : {0U, 30U, 62U}) {
            std::string line = hex;
            line[place] = static_cast<char>(byte);
            EXPECT_EQ(IsHex(line), PassesForBinHex(byte)) << byte << " at " << place;
        }
        EXPECT_TRUE(IsHex(HexOf(63) + static_cast<char>(byte))) << "the last byte is not looked at, " << byte;
    }
}

TEST(BinHexLine, EveryLength) {
    for (std::size_t size = 0; size <= 100; ++size) {
        EXPECT_EQ(IsHex(HexOf(size)), size >= 46 && size <= 65) << size;
        EXPECT_EQ(IsHex(HexOf(size) + ":"), size + 1 >= 3 && size + 1 <= 65) << size << " and a colon";
    }
}

TEST(BinHexLine, AColonInsideIsNoMember) {
    EXPECT_FALSE(IsHex(":" + HexOf(63)));
    EXPECT_FALSE(IsHex(HexOf(62) + "::"));
    EXPECT_FALSE(IsHex("::"));
    EXPECT_FALSE(IsHex(":"));
}

struct UuCase {
    const char* name;
    std::string line;
    std::uint16_t expectedLetter;
    bool answer;
    std::string lineAfterwards;
};

class UuLineCases : public testing::TestWithParam<UuCase> {};

TEST_P(UuLineCases, Answers) {
    std::string line = GetParam().line;
    EXPECT_EQ(FIIsUuLine(line.data(), GetParam().expectedLetter), GetParam().answer);
    EXPECT_EQ(line, GetParam().lineAfterwards);
}

const std::string uuCheck = uu + UuCheckOf(uu);  // a full line and its check character
const std::string uuBlank = "M" + std::string(30, ' ') + std::string(30, '.');
const std::string uuGrave = "M" + std::string(30, '`') + std::string(30, '.');
const std::string uu33 = UuOf(33);

// expectedLetter and the byte behind a full line; then check characters of other lines.
const UuCase uuCases[] = {
    // clang-format off
    {"Empty",                              "",                     0,   false, ""},
    {"GraveAlone",                         "`",                    0,   true,  "`"},
    {"BlankAlone",                         " ",                    0,   true,  " "},
    {"FirstByte128",                       "\x80",                 0,   false, "\x80"},
    {"FirstByte128Full",                   "\xCD" + uu.substr(1),  0,   false, "\xCD" + uu.substr(1)},
    {"BlanksStayWithoutALetter",           uuBlank,                0,   true,  uuBlank},
    {"AnyLetterAtTheStart",                uu + "q",               0,   true,  uu + "q"},
    {"AnyByteAtTheStart",                  uu + "\xE9",            0,   true,  uu + "\xE9"},
    {"ExpectedLetter",                     uu + "z",               'z', true,  uu + "z"},
    {"OtherLetter",                        uu + "y",               'z', false, uu + "y"},
    {"ExpectedLetterOfNoLetter",           uu,                     'z', true,  uu},
    {"LetterReplacesTheBlanks",            uuBlank + "z",          'z', true,  uuGrave + "z"},
    {"BlankAsTheLetterIsReplacedToo",      uuBlank + " ",          0,   true,  uuGrave + "`"},
    {"BlanksStayWhenTheLetterIsNotExpected", uuBlank + "y",        'z', false, uuBlank + "y"},
    {"BlanksAreReplacedBeforeTheOtherTests", "M " + std::string(59, 'a') + "z", 'z', false, "M`" + std::string(59, 'a') + "z"},
    {"CheckCharacterOfAFullLine",          uuCheck,                'z', true,  uuCheck},
    {"WrongCheckCharacterOfAFullLine",     uu + "5",               'z', false, uu + "5"},
    {"CheckCharacterIsALetterAtTheStart",  uu + "5",               0,   true,  uu + "5"},
    {"CheckCharacterOfAShorterLine",       uu33 + UuCheckOf(uu33), 0,   true,  uu33 + UuCheckOf(uu33)},
    {"WrongCheckCharacterOfAShorterLine",  uu33 + "5",             0,   false, uu33 + "5"},
    {"LetterBehindAShorterLine",           uu33 + "z",             'z', false, uu33 + "z"},
    {"CheckCharacterOfAnEmptyLine",        "` ",                   0,   true,  "` "},
    {"GraveAsTheCheckCharacterOf0",        "``",                   0,   false, "``"},
    {"WrongCheckBehindGraves",                   "#``!! ",               0,   false, "#``!! "},
    {"GravesCount0InTheSum",                      "#``!!\"",              0,   true,  "#``!!\""},
    {"OddSum",                             "#``!`!",               0,   true,  "#``!`!"},
    {"OddSumEvenCheckCharacter",           "#``!` ",               0,   false, "#``!` "},
    {"SumWraps",                           "#____\\",              0,   true,  "#____\\"},
    {"TwoBytesMore",                       uu + "zz",              0,   false, uu + "zz"},
    {"ThreeBytesMore",                     uu + "zzz",             0,   false, uu + "zzz"},
    {"OneByteLess",                        uu.substr(0, 60),       0,   false, uu.substr(0, 60)},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Text, UuLineCases, testing::ValuesIn(uuCases), FICaseName);

// ---- FIIsAsciiRun -------------------------------------------------------------------------------------------------

TEST(AsciiRun, BytesFrom1To127) {
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const char run[] = {'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(FIIsAsciiRun(run, 3), byte >= 1 && byte <= 127) << byte;
        EXPECT_TRUE(FIIsAsciiRun(run, 1)) << "bytes behind the count are not looked at";
    }
}

TEST(AsciiRun, NoBytes) {
    EXPECT_TRUE(FIIsAsciiRun("\0", 0));
    EXPECT_TRUE(FIIsAsciiRun("\xFF", 0));
}

// ---- The routine --------------------------------------------------------------------------------------------------

// The bytes are made when a case runs: some hundred strings made at the start would take the compiler minutes.
struct EncodedCase {
    const char* name;
    std::string (*bytes)();
    FIID answer;
};

class ProbeEncodedText : public testing::TestWithParam<EncodedCase> {};

TEST_P(ProbeEncodedText, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeEncodedText, GetParam().bytes()), GetParam().answer); }

TEST_P(ProbeEncodedText, AnswersThroughItsOwnEntry) {
    const auto handle = FIMakeTestHandle(GetParam().bytes());
    EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), 4050), GetParam().answer);
}

const EncodedCase uuRunCases[] = {
    // clang-format off
    {"EmptyFile",                             [] { return ""s; },                                                      0},
    {"OnlyWhiteSpace",                        [] { return " \t\r\n\n\r \n"s; },                                        0},
    {"SixLines",                              [] { return Times(6, uu); },                                         4051},
    {"SixLinesNoLineEndAtTheEnd",             [] { return Times(5, uu) + uu; },                                    4051},
    {"FiveLines",                             [] { return Times(5, uu); },                                            0},
    {"FiveLinesAndText",                      [] { return Times(5, uu) + Lines({text}); },                            0},
    {"SixLinesOfAnEncoder",                   [] { return Times(6, EncodeUuLine(SomeData(45))); },                 4051},
    {"SixLinesCr",                            [] { return Times(6, uu, "\r"); },                                   4051},
    {"SixLinesCrLf",                          [] { return Times(6, uu, "\r\n"); },                                 4051},
    {"SixLinesLfCr",                          [] { return Times(6, uu, "\n\r"); },                                 4051},
    {"EmptyLinesBetween",                     [] { return Times(6, uu, "\n\n\n"); },                               4051},
    {"BlanksAndTabsInFront",                  [] { return Times(6, " \t " + uu); },                                4051},
    {"BlanksBehind",                          [] { return Times(6, uu + " "); },                                   4051},
    {"TwoBlanksBehind",                       [] { return Times(6, uu + "  "); },                                     0},
    {"FirstLineOf45Bytes",                    [] { return Lines({UuOf(33)}) + Times(5, uu); },                     4051},
    {"FirstLineOf41BytesStartsNoRun",         [] { return Lines({UuOf(30)}) + Times(5, uu); },                        0},
    {"FirstLineOf41BytesClosesNothing",       [] { return Lines({UuOf(30)}) + Times(6, uu); },                     4051},
    {"SixLinesOf45Bytes",                     [] { return Times(6, UuOf(33)); },                                   4051},
    {"SixLinesOf41Bytes",                     [] { return Times(6, UuOf(30)); },                                      0},
    {"FirstLineOf46BytesWithItsCheck",        [] { return Times(6, uu33 + UuCheckOf(uu33)); },                     4051},
    {"ShortLinesGoOnWithARun",                [] { return Lines({uu, UuOf(30), "`", "`", "#....", "`"}); },        4051},
    {"ShortLinesGoOnWithARunToFive",          [] { return Lines({uu, UuOf(30), "`", "`", "#...."}); },                0},
    {"OneLineAndEnd",                         [] { return Lines({uu, "end"}); },                                   4051},
    {"TwoLinesAndEnd",                        [] { return Lines({uu, uu, "end"}); },                               4051},
    {"FiveLinesAndEnd",                       [] { return Times(5, uu) + "end"; },                                 4051},
    {"TwoLinesAndEndless",                    [] { return Lines({uu, uu, "endless"}); },                           4051},
    {"TwoLinesAnEmptyLineAndEnd",             [] { return Lines({uu, uu, "", "end"}); },                           4051},
    {"TwoLinesAndEn",                         [] { return Lines({uu, uu, "en"}); },                                   0},
    {"EndWithoutARun",                        [] { return Lines({UuOf(30), "end"}); },                                0},
    {"UpperCaseEndClosesUuencode",            [] { return Lines({uu, uu, uu, "END"}) + Times(6, uu); },               0},
    {"TextClosesUuencode",                    [] { return Lines({uu, text}) + Times(6, uu); },                        0},
    {"TextWithoutARunClosesNothing",          [] { return Lines({text}) + Times(6, uu); },                         4051},
    {"UuencodeClosedXxencodeIsNot",           [] { return Lines({uu, text}) + Times(6, xx); },                     4053},
    {"LastLineOf12Bytes",                     [] { return Times(5, uu) + EncodeUuLine(SomeData(12)); },            4051},
    {"LastLineOf10BytesBreaksTheRun",         [] { return Times(5, uu) + Lines({EncodeUuLine(SomeData(10)), "`", "end"}); }, 0},
    {"LettersInTheirOrder",                   [] { return Lines({uu + "z", uu + "y", uu + "x", uu + "w", uu + "v", uu + "u"}); }, 4051},
    {"LettersInNoOrder",                      [] { return Lines({uu + "q", uu + "z", uu, uu + "q", uu + "b", uu + "5"}); }, 4051},
    {"ByteFfAsALetter",                       [] { return Times(6, uu + "\xFF"); },                                4051},
    {"LettersBehindShorterLines",             [] { return Times(6, uu33 + "z"); },                                    0},
    {"HighByteInALine",                       [] { return Times(6, "M\xA0" + std::string(59, '.')); },                0},
    {"NulBehindTheSixthLine",                 [] { return Times(5, uu) + uu + "\0junk\n"s; },                      4051},
    {"NulBehindTheFifthLine",                 [] { return Times(4, uu) + uu + "\0junk\n"s + Times(2, uu); },          0},
    {"NulBehindEnd",                          [] { return Lines({uu}) + "end\0\n"s; },                             4051},
    {"NulInFrontOfARun",                      [] { return "a\0b\n"s + Times(6, uu); },                                0},
    {"NulAloneInFrontOfARun",                 [] { return "\0\n"s + Times(6, uu); },                                  0},
    {"ElevenIdleLinesInFront",                [] { return Times(11, text) + Times(6, uu); },                       4051},
    {"TwelveIdleLinesInFront",                [] { return Times(12, text) + Times(6, uu); },                          0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(UuRun, ProbeEncodedText, testing::ValuesIn(uuRunCases), FICaseName);

const EncodedCase xxRunCases[] = {
    // clang-format off
    {"SixLines",                              [] { return Times(6, xx); },                                         4053},
    {"SixLinesNoLineEndAtTheEnd",             [] { return Times(5, xx) + xx; },                                    4053},
    {"FiveLines",                             [] { return Times(5, xx); },                                            0},
    {"SixLinesOfAnEncoder",                   [] { return Times(6, EncodeXxLine(SomeData(45))); },                 4053},
    {"SixLinesLfCr",                          [] { return Times(6, xx, "\n\r"); },                                 4053},
    {"EmptyLinesBetween",                     [] { return Times(6, xx, "\r\n\r\n"); },                             4053},
    {"FirstLineOf45Bytes",                    [] { return Lines({XxOf(33)}) + Times(5, xx); },                     4053},
    {"FirstLineOf41BytesStartsNoRun",         [] { return Lines({XxOf(30)}) + Times(5, xx); },                        0},
    {"SixLinesOf41Bytes",                     [] { return Times(6, XxOf(30)); },                                      0},
    {"ShortLinesGoOnWithARun",                [] { return Lines({xx, XxOf(30), "+", "+", "1zzzz", "+"}); },        4053},
    {"ShortLinesGoOnWithARunToFive",          [] { return Lines({xx, XxOf(30), "+", "+", "1zzzz"}); },                0},
    {"OneLineAndEnd",                         [] { return Lines({xx, "end"}); },                                   4053},
    {"TwoLinesAndEndless",                    [] { return Lines({xx, xx, "endless"}); },                           4053},
    {"UpperCaseEndClosesXxencode",            [] { return Lines({xx, xx, xx, "END"}) + Times(6, xx); },               0},
    {"TextClosesXxencode",                    [] { return Lines({xx, text}) + Times(6, xx); },                        0},
    {"XxencodeClosedUuencodeIsNot",           [] { return Lines({xx, text}) + Times(6, uu); },                     4051},
    {"TextWithoutARunClosesNothing",          [] { return Lines({text}) + Times(6, xx); },                         4053},
    {"NoSequenceLetter",                      [] { return Times(6, xx + "z"); },                                      0},
    {"LastLineOf10BytesBreaksTheRun",         [] { return Times(5, xx) + Lines({EncodeXxLine(SomeData(10)), "+", "end"}); }, 0},
    {"HighBytesOfTheUuencodeTable",           [] { return Times(6, "h\xA0\xE0" + std::string(58, 'z')); },         4053},
    {"HighByteBelow",                         [] { return Times(6, "h\x9F" + std::string(59, 'z')); },                0},
    {"HighByteAbove",                         [] { return Times(6, "h\xE1" + std::string(59, 'z')); },                0},
    {"NulBehindTheSixthLine",                 [] { return Times(5, xx) + xx + "\0junk\n"s; },                      4053},
    {"NulBehindTheFifthLine",                 [] { return Times(4, xx) + xx + "\0junk\n"s + Times(2, xx); },          0},
    {"ElevenIdleLinesInFront",                [] { return Times(11, text) + Times(6, xx); },                       4053},
    {"TwelveIdleLinesInFront",                [] { return Times(12, text) + Times(6, xx); },                          0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(XxRun, ProbeEncodedText, testing::ValuesIn(xxRunCases), FICaseName);

const std::string both = "M" + std::string(60, '`');  // a uuencoded line and a BinHex line at once

const EncodedCase binHexRunCases[] = {
    // clang-format off
    {"SixLines",                              [] { return Times(6, hex); },                                        4057},
    {"SixLinesNoLineEndAtTheEnd",             [] { return Times(5, hex) + hex; },                                  4057},
    {"FiveLines",                             [] { return Times(5, hex); },                                           0},
    {"SixLinesCrLfEmptyLinesBetween",         [] { return Times(6, hex, "\r\n\r\n"); },                            4057},
    {"BodyWithoutTheNotice",                  [] { return EncodeBinHex(SomeData(600)); },                          4057},
    {"ShortBodyWithoutTheNotice",             [] { return EncodeBinHex(SomeData(120)); },                          4057},
    {"BodyOfTwoLinesWithoutTheNotice",        [] { return EncodeBinHex(SomeData(60)); },                              0},
    {"SixLinesOf46Bytes",                     [] { return Times(6, HexOf(46)); },                                  4057},
    {"SixLinesOf45Bytes",                     [] { return Times(6, HexOf(45)); },                                     0},
    {"SixLinesOf65Bytes",                     [] { return Times(6, HexOf(65)); },                                  4057},
    {"SixLinesOf66Bytes",                     [] { return Times(6, HexOf(66)); },                                     0},
    {"SecondLineEndsInAColon",                [] { return Lines({hex, HexOf(63) + ":"}); },                        4057},
    {"SecondLineIsShortAndEndsInAColon",      [] { return Lines({hex, "!!:"}); },                                  4057},
    {"SecondLineOf2BytesEndsInAColon",        [] { return Lines({hex, "!:"}); },                                      0},
    {"SecondLineIsAColon",                    [] { return Lines({hex, ":"}); },                                       0},
    {"SecondLineOf65BytesEndsInAColon",       [] { return Lines({hex, HexOf(64) + ":"}); },                        4057},
    {"SecondLineOf66BytesEndsInAColon",       [] { return Lines({hex, HexOf(65) + ":"}); },                           0},
    {"SecondLineOf45BytesBreaksTheRun",       [] { return Lines({hex, HexOf(45), "!!:"}); },                          0},
    {"FirstLineEndsInAColon",                 [] { return Lines({HexOf(63) + ":"}); },                                0},
    {"EveryLineEndsInAColon",                 [] { return Times(6, HexOf(63) + ":"); },                               0},
    {"ColonLineThenARun",                     [] { return Lines({HexOf(63) + ":"}) + Times(6, hex); },             4057},
    {"ShortColonLineStartsNoRun",             [] { return Lines({"!!:", "!!:", "!!:"}); },                            0},
    {"BrokenRunStartsAgain",                  [] { return Times(5, hex) + Lines({text}) + Times(6, hex); },        4057},
    {"BrokenRunDoesNotCount",                 [] { return Times(5, hex) + Lines({text}) + Times(5, hex); },           0},
    {"BrokenRunNeedsAStart",                  [] { return Lines({hex, text, "!!:"}); },                               0},
    {"EndMeansNothing",                       [] { return Lines({hex, hex, "end"}); },                                0},
    {"PassingHighBytes",                      [] { return Times(6, "\x81\x82\x83\xFF" + HexOf(60)); },             4057},
    {"FailingHighByte",                       [] { return Times(6, "\x80" + HexOf(63)); },                            0},
    {"AnyLastByte",                           [] { return Times(6, HexOf(63) + "\x80"); },                         4057},
    {"UuencodeComesFirst",                    [] { return Times(6, both); },                                       4051},
    {"GoesOnWhenUuencodeIsClosed",            [] { return Times(3, both) + Lines({hex}) + Times(2, both); },       4057},
    {"EndOfAUuRunAsWell",                     [] { return Lines({both, "end"}); },                                 4051},
    {"ColonBehindANul",                       [] { return Lines({hex}) + HexOf(50) + "\0:\n"s; },                  4057},
    {"ColonInFrontOfANul",                    [] { return Lines({hex}) + "!!:\0x\n"s; },                              0},
    {"NulBehindTheSixthLine",                 [] { return Times(5, hex) + hex + "\0x\n"s; },                       4057},
    {"NulBehindTheFifthLine",                 [] { return Times(4, hex) + hex + "\0x\n"s + Times(6, hex); },          0},
    {"ElevenIdleLinesInFront",                [] { return Times(11, text) + Times(6, hex); },                      4057},
    {"TwelveIdleLinesInFront",                [] { return Times(12, text) + Times(6, hex); },                         0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(BinHexRun, ProbeEncodedText, testing::ValuesIn(binHexRunCases), FICaseName);

const EncodedCase beginCases[] = {
    // clang-format off
    {"Uuencode",                       [] { return Lines({begin, uu, "`", "end"}); },                              4050},
    {"UuencodeCrLf",                   [] { return Lines({begin, uu, "`", "end"}, "\r\n"); },                      4050},
    {"UuencodeLfCr",                   [] { return Lines({begin, uu, "`", "end"}, "\n\r"); },                      4050},
    {"UuencodeOfAnEncoder",            [] { return Lines({begin, EncodeUuLine(SomeData(45)), EncodeUuLine(SomeData(33))}); }, 4050},
    {"UuencodeAndGrave",               [] { return Lines({begin, uu, "`"}); },                                     4050},
    {"UuencodeAndBlank",               [] { return Lines({begin, uu, " "}); },                                     4050},
    {"UuencodeAndEnd",                 [] { return Lines({begin, uu, "end"}); },                                   4050},
    {"UuencodeAndEndless",             [] { return Lines({begin, uu, "endless"}); },                               4050},
    {"UuencodeAndUpperCaseEnd",        [] { return Lines({begin, uu, "END"}); },                                      0},
    {"UuencodeAndText",                [] { return Lines({begin, uu, text}); },                                       0},
    {"UuencodeAndAnEmptyLine",         [] { return Lines({begin, uu, "", "end"}); },                                  0},
    {"UuencodeAndTheEndOfTheFile",     [] { return Lines({begin, uu}); },                                             0},
    {"UuencodeShortFirstLine",         [] { return Lines({begin, "#....", "`"}); },                                4050},
    {"UuencodeEmptyFirstLine",         [] { return Lines({begin, "`", "end"}); },                                  4050},
    {"UuencodeFirstLineOf10Bytes",     [] { return Lines({begin, EncodeUuLine(SomeData(10)), "`", "end"}); },         0},
    {"UuencodeLettersZAndY",           [] { return Lines({begin, uu + "z", uu + "y"}); },                          4050},
    {"UuencodeLettersZAndZ",           [] { return Lines({begin, uu + "z", uu + "z"}); },                             0},
    {"UuencodeLettersYAndY",           [] { return Lines({begin, uu + "y", uu + "y"}); },                             0},
    {"UuencodeLetterZAndEnd",          [] { return Lines({begin, uu + "z", "end"}); },                             4050},
    {"UuencodeLetterYInTheSecondLine", [] { return Lines({begin, uu, uu + "y"}); },                                4050},
    {"UuencodeCheckCharacters",        [] { return Lines({begin, uuCheck, uuCheck}); },                            4050},
    {"UuencodeWrongFirstCheck",        [] { return Lines({begin, uu + "5", uuCheck}); },                              0},
    {"UuencodeWrongSecondCheck",       [] { return Lines({begin, uuCheck, uu + "5"}); },                              0},
    {"Xxencode",                       [] { return Lines({begin, xx, xx}); },                                      4052},
    {"XxencodeOfAnEncoder",            [] { return Lines({begin, EncodeXxLine(SomeData(45)), EncodeXxLine(SomeData(33))}); }, 4052},
    {"XxencodeAndPlus",                [] { return Lines({begin, xx, "+"}); },                                     4052},
    {"XxencodeAndEnd",                 [] { return Lines({begin, xx, "end"}); },                                   4052},
    {"XxencodeAndUpperCaseEnd",        [] { return Lines({begin, xx, "END"}); },                                      0},
    {"XxencodeAndText",                [] { return Lines({begin, xx, text}); },                                       0},
    {"XxencodeAndUuencode",            [] { return Lines({begin, xx, uu}); },                                         0},
    {"XxencodeAndAnEmptyLine",         [] { return Lines({begin, xx, "", xx}); },                                     0},
    {"XxencodeAndTheEndOfTheFile",     [] { return Lines({begin, xx}); },                                             0},
    {"UuencodeThenTwoLinesOfXxencode", [] { return Lines({begin, uu, xx, xx}); },                                  4052},
    {"UuencodeThenXxencodeAndEnd",     [] { return Lines({begin, uu, xx, "end"}); },                               4052},
    {"UuencodeThenXxencodeAndText",    [] { return Lines({begin, uu, xx, text}); },                                   0},
    {"EndAtOnce",                      [] { return Lines({begin, "end"}); },                                          0},
    {"TextAtOnceEndsTheScan",          [] { return Lines({begin, text}) + Times(6, uu); },                            0},
    {"EmptyLineAtOnce",                [] { return Lines({begin, "", uu, "`"}); },                                    0},
    {"EndOfTheFileAtOnce",             [] { return Lines({begin}); },                                                 0},
    {"IndentedDataIsNone",             [] { return Lines({begin, "\t" + uu, "`"}); },                                 0},
    {"HeaderUpperCase",                [] { return Lines({"BEGIN 644 A.TXT", uu, "`"}); },                         4050},
    {"HeaderMixedCase",                [] { return Lines({"Begin 644 a.txt", uu, "`"}); },                         4050},
    {"HeaderIndented",                 [] { return Lines({" \t" + begin, uu, "`"}); },                             4050},
    {"HeaderBehindEmptyLines",         [] { return "\r\n\n\r" + Lines({begin, uu, "`"}); },                        4050},
    {"HeaderOf11Bytes",                [] { return Lines({"begin 644 a", uu, "`"}); },                             4050},
    {"HeaderOf10Bytes",                [] { return Lines({"begin 644 ", uu, "`"}); },                                 0},
    {"HeaderOf10BytesIsAnIdleLine",    [] { return Lines({"begin 644 ", uu, "`", "end"}); },                       4051},
    {"HeaderOf11BytesWithoutAName",    [] { return Lines({"begin 644  ", uu, "`"}); },                             4050},
    {"HeaderMode000",                  [] { return Lines({"begin 000 a", uu, "`"}); },                             4050},
    {"HeaderMode666",                  [] { return Lines({"begin 666 a", uu, "`"}); },                             4050},
    {"HeaderMode755",                  [] { return Lines({"begin 755 a.txt", uu, "`"}); },                            0},
    {"HeaderMode755ToldByItsLines",    [] { return Lines({"begin 755 a.txt", uu, "`", "end"}); },                  4051},
    {"HeaderMode744",                  [] { return Lines({"begin 744 a", uu, "`"}); },                                0},
    {"HeaderMode674",                  [] { return Lines({"begin 674 a", uu, "`"}); },                                0},
    {"HeaderMode667",                  [] { return Lines({"begin 667 a", uu, "`"}); },                                0},
    {"HeaderModeWithASlash",           [] { return Lines({"begin 6/4 a", uu, "`"}); },                                0},
    {"HeaderModeOf4Digits",            [] { return Lines({"begin 0644 a", uu, "`"}); },                               0},
    {"HeaderModeOf2Digits",            [] { return Lines({"begin 64 a.txt", uu, "`"}); },                             0},
    {"HeaderTabBehindTheMode",         [] { return Lines({"begin 644\ta.txt", uu, "`"}); },                           0},
    {"HeaderTabBehindBegin",           [] { return Lines({"begin\t644 a.txt", uu, "`"}); },                           0},
    {"HeaderTwoBlanksBehindBegin",     [] { return Lines({"begin  644 a.txt", uu, "`"}); },                           0},
    {"HeaderBegins",                   [] { return Lines({"begins 644 a.txt", uu, "`"}); },                           0},
    {"HeaderWithANul",                 [] { return begin + "\0\n"s + Lines({uu, "`"}); },                             0},
    {"HeaderWithHighBytes",            [] { return Lines({"begin 644 \xE9\xFF", uu, "`"}); },                      4050},
    {"HeaderBehindARunOfUuencode",     [] { return Lines({uu, begin, uu, "`"}); },                                 4050},
    {"HeaderOf1021Bytes",              [] { return Lines({"begin 644 " + std::string(1011, 'a'), uu, "`"}); },     4050},
    {"HeaderOf1022BytesIsFollowedByAnEmptyLine", [] { return Lines({"begin 644 " + std::string(1012, 'a'), uu, "`"}); }, 0},
    {"HeaderOf1023BytesIsTwoLines",    [] { return Lines({"begin 644 " + std::string(1013, 'a'), uu, "`"}); },        0},
    {"HeaderOf1023BytesEndsInAGrave",  [] { return Lines({"begin 644 " + std::string(1012, 'a') + "`", "end"}); }, 4050},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Begin, ProbeEncodedText, testing::ValuesIn(beginCases), FICaseName);

const std::string data128(128, 'a');
const std::string yBegin = "=ybegin line=128 size=128 name=a.bin";
const std::string yBeginPart2 = "=ybegin part=2 line=128 size=500 name=a.bin";
const std::string yEnd = "=yend size=128";
const std::string yEndOf128 = "=yend size=128 " + std::string(113, 'x');

const EncodedCase yEncCases[] = {
    // clang-format off
    {"LineOf128Bytes",                  [] { return Lines({yBegin, data128}); },                                   4054},
    {"LineOf129Bytes",                  [] { return Lines({yBegin, data128 + "a"}); },                             4054},
    {"LineOf127Bytes",                  [] { return Lines({yBegin, data128.substr(1), yEnd}); },                      0},
    {"LineOf130Bytes",                  [] { return Lines({yBegin, data128 + "aa", yEnd}); },                         0},
    {"LineOfAnEncoder",                 [] { return Lines({yBegin, EncodeYEnc(std::string(128, 'a'))}); },         4054},
    {"LineWithAnEscapeAtItsEnd",        [] { return Lines({yBegin, EncodeYEnc(std::string(127, 'a') + "\x13"s)}); }, 4054},
    {"LineWithoutALineEnd",             [] { return Lines({yBegin}) + data128; },                                  4054},
    {"LineCrLf",                        [] { return Lines({yBegin, data128}, "\r\n"); },                           4054},
    {"LineOfHighBytes",                 [] { return Lines({yBegin, std::string(128, '\xFF')}); },                  4054},
    {"LineStartsWithABlank",            [] { return Lines({yBegin, " " + data128.substr(1)}); },                   4054},
    {"LineEndsAtItsFirstNul",           [] { return Lines({yBegin, data128 + "\0abc"s}); },                        4054},
    {"LineWithANulTooEarly",            [] { return Lines({yBegin, "a\0"s + data128.substr(2)}); },                   0},
    {"EmptyLine",                       [] { return Lines({yBegin, "", data128}); },                                  0},
    {"EndOfTheFile",                    [] { return Lines({yBegin}); },                                               0},
    {"HeaderUpperCase",                 [] { return Lines({"=YBEGIN LINE=128 SIZE=128 NAME=A.BIN", data128}); },   4054},
    {"HeaderIndented",                  [] { return Lines({"\t" + yBegin, data128}); },                            4054},
    {"HeaderWithoutABlank",             [] { return Lines({"=ybeginline=128 size=128 name=a.bin", data128}); },       0},
    {"HeaderWithATab",                  [] { return Lines({"=ybegin\tline=128 size=128 name=a.bin", data128}); },     0},
    {"HeaderWithHighBytes",             [] { return Lines({yBegin + "\x80", data128}); },                             0},
    {"HeaderWithANul",                  [] { return yBegin + "\0\n"s + Lines({data128}); },                           0},
    {"HeaderWithoutLine",               [] { return Lines({"=ybegin size=128 name=a.bin", data128}); },               0},
    {"HeaderWithoutSize",               [] { return Lines({"=ybegin line=128 name=a.bin", data128}); },               0},
    {"HeaderWithoutName",               [] { return Lines({"=ybegin line=128 size=128", data128}); },                 0},
    {"HeaderWithEmptyNameAndSize",      [] { return Lines({"=ybegin line=128 size= name=", data128}); },           4054},
    {"HeaderSizeBeforeLine",            [] { return Lines({"=ybegin size=128 line=128 name=a.bin", data128}); },      0},
    {"HeaderNameBeforeSize",            [] { return Lines({"=ybegin line=128 name=a.bin size=128", data128}); },      0},
    {"HeaderFieldsAnywhere",            [] { return Lines({"=ybegin xline=128xsize=xname=", data128}); },          4054},
    {"HeaderPartBehindLine",            [] { return Lines({"=ybegin line=128 part=2 size=500 name=a", data128}); },   0},
    {"HeaderPartInTheName",             [] { return Lines({"=ybegin line=128 size=500 name=part=2", data128}); },     0},
    {"HeaderPartBehindLineAndLineAgain", [] { return Lines({"=ybegin line=3 part=2 line=128 size=5 name=a", data128}); }, 4055},
    {"Part2",                           [] { return Lines({yBeginPart2, data128}); },                              4055},
    {"Part2LineOf129Bytes",             [] { return Lines({yBeginPart2, data128 + "a"}); },                        4055},
    {"Part1",                           [] { return Lines({"=ybegin part=1 line=128 size=5 name=a", data128}); },  4054},
    {"PartWithoutANumber",              [] { return Lines({"=ybegin part= line=128 size=5 name=a", data128}); },   4054},
    {"Part9IsRead0",                    [] { return Lines({"=ybegin part=9 line=128 size=5 name=a", data128}); },  4054},
    {"Part10IsRead1",                   [] { return Lines({"=ybegin part=10 line=128 size=5 name=a", data128}); }, 4054},
    {"Part12",                          [] { return Lines({"=ybegin part=12 line=128 size=5 name=a", data128}); }, 4055},
    {"Part8",                           [] { return Lines({"=ybegin part=8 line=128 size=5 name=a", data128}); },  4055},
    {"Part65537WrapsTo1",               [] { return Lines({"=ybegin part=65537 line=128 size=5 name=a", data128}); }, 4054},
    {"Part65538WrapsTo2",               [] { return Lines({"=ybegin part=65538 line=128 size=5 name=a", data128}); }, 4055},
    {"Line100IsRead1",                  [] { return Lines({"=ybegin line=100 size=1 name=a", "x"}); },             4054},
    {"Line100IsRead1AndOneMore",        [] { return Lines({"=ybegin line=100 size=1 name=a", "xy"}); },            4054},
    {"Line100IsNot100",                 [] { return Lines({"=ybegin line=100 size=1 name=a", std::string(100, 'x'), "yend"}); }, 0},
    {"Line90IsRead0",                   [] { return Lines({"=ybegin line=90 size=1 name=a", "x"}); },              4054},
    {"Line90IsRead0TwoBytes",           [] { return Lines({"=ybegin line=90 size=1 name=a", "xy", "x"}); },           0},
    {"Line0AndALineThatStartsWithANul", [] { return Lines({"=ybegin line=0 size=1 name=a", "\0xy"s}); },           4054},
    {"Line65664WrapsTo128",             [] { return Lines({"=ybegin line=65664 size=1 name=a", data128}); },       4054},
    {"Line65535AndOneMoreIsNot0",       [] { return Lines({"=ybegin line=65535 size=1 name=a", "\0xy"s, yEnd}); },    0},
    {"PartLine",                        [] { return Lines({yBeginPart2, "=ypart begin=1 end=128", data128}); },    4055},
    {"PartLineInOnePart",               [] { return Lines({yBegin, "=ypart begin=1 end=128", data128}); },         4054},
    {"PartLineAnywhere",                [] { return Lines({yBeginPart2, "x =ypart begin=1", data128}); },          4055},
    {"PartLineWithoutABlank",           [] { return Lines({yBeginPart2, "=ypart", data128}); },                       0},
    {"PartLineUpperCase",               [] { return Lines({yBeginPart2, "=YPART begin=1", data128}); },               0},
    {"PartLineWithHighBytes",           [] { return Lines({yBeginPart2, "=ypart begin=\xE9", data128}); },            0},
    {"PartLineWithANul",                [] { return Lines({yBeginPart2, "=ypart begin\0"s, data128}); },              0},
    {"PartLineTwice",                   [] { return Lines({yBeginPart2, "=ypart a", "=ypart b", data128}); },         0},
    {"PartLineAndTheEndOfTheFile",      [] { return Lines({yBeginPart2, "=ypart begin=1 end=128"}); },                0},
    {"EndLineShorterThanTheLineLength", [] { return Lines({yBegin, "short", yEnd}); },                                0},
    {"EndLineOfTheLineLength",          [] { return Lines({yBegin, "short", yEndOf128}); },                        4054},
    {"EndLineOneByteShorter",           [] { return Lines({yBegin, "short", yEndOf128.substr(0, 127)}); },            0},
    {"EndLineLonger",                   [] { return Lines({yBegin, "short", yEndOf128 + "x"}); },                  4054},
    {"EndLineHighByteBehindTheLength",  [] { return Lines({yBegin, "short", yEndOf128 + "\xFF"}); },               4054},
    {"EndLineHighByteInTheLength",      [] { return Lines({yBegin, "short", yEndOf128.substr(0, 127) + "\xFF"}); },   0},
    {"EndLinePart2",                    [] { return Lines({yBeginPart2, "short", yEndOf128}); },                   4055},
    {"EndLineOfLine12",                 [] { return Lines({"=ybegin line=12 size=5 name=a", "short", "=yend size=5"}); }, 4054},
    {"EndLineOfLine13",                 [] { return Lines({"=ybegin line=13 size=5 name=a", "short", "=yend size=5"}); },    0},
    {"EndLineUpperCase",                [] { return Lines({"=ybegin line=12 size=5 name=a", "short", "=YEND size=5"}); },    0},
    {"EndLineNotAtTheStart",            [] { return Lines({"=ybegin line=12 size=5 name=a", "short", " =yend size=5"}); },   0},
    {"EndLineWithoutABlank",            [] { return Lines({"=ybegin line=5 size=5 name=a", "sho", "=yend"}); },              0},
    {"EndLineBehindAnEmptyLine",        [] { return Lines({"=ybegin line=12 size=5 name=a", "short", "", "=yend size=5"}); }, 0},
    {"EndLineMissing",                  [] { return Lines({"=ybegin line=12 size=5 name=a", "short"}); },                    0},
    {"EndLineOfNoLength",               [] { return Lines({"=ybegin line=90 size=5 name=a", "short", "=yend "}); },          4054},
    {"EndLineBehindALineOf1122Bytes",   [] { return Lines({"=ybegin line=1122 size=5 name=a", std::string(1122, 'a')}); },   0},
    // A line is cut behind 1,022 bytes; 66556 to 66558 wrap to 1,020 to 1,022.
    {"LongLineIsNot1020Bytes",          [] { return Lines({"=ybegin line=66556 size=5 name=a", std::string(2000, 'a')}); },     0},
    {"LongLineIsOneMoreThan1021Bytes",  [] { return Lines({"=ybegin line=66557 size=5 name=a", std::string(2000, 'a')}); },  4054},
    {"LongLineIs1022Bytes",             [] { return Lines({"=ybegin line=66558 size=5 name=a", std::string(2000, 'a')}); },  4054},
    {"LineOf888Bytes",                  [] { return Lines({"=ybegin line=888 size=5 name=a", std::string(888, 'a')}); },     4054},
    {"HeaderOf1021Bytes",               [] { return Lines({yBegin + std::string(985, 'n'), data128}); },           4054},
    {"HeaderOf1022BytesIsFollowedByAnEmptyLine", [] { return Lines({yBegin + std::string(986, 'n'), data128}); },     0},
    {"FailureEndsTheScan",              [] { return Lines({"=ybegin nothing else"}) + Times(6, uu); },                0},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(YEnc, ProbeEncodedText, testing::ValuesIn(yEncCases), FICaseName);

const std::string ascii64(64, 'x');
const std::string ascii63Colon = std::string(63, 'x') + ":";

const EncodedCase noticeCases[] = {
    // clang-format off
    {"OneLine",                         [] { return Lines({notice, ":" + ascii63Colon}); },                        4056},
    {"OneLineBehindEmptyLines",         [] { return Lines({notice, "", "", ":" + ascii63Colon}); },                4056},
    {"OneLineCr",                       [] { return Lines({notice, "", ":" + ascii63Colon}, "\r"); },              4056},
    {"OneLineCrLf",                     [] { return Lines({notice, "", ":" + ascii63Colon}, "\r\n"); },            4056},
    {"OneLineWithoutALineEnd",          [] { return Lines({notice}) + ":" + ascii63Colon; },                       4056},
    {"AnEncodersBody",                  [] { return Lines({notice, ""}) + EncodeBinHex(SomeData(600)); },          4056},
    {"AnEncodersShortBody",             [] { return Lines({notice, ""}) + EncodeBinHex(SomeData(10)); },           4056},
    {"TwoColons",                       [] { return Lines({notice, "::"}); },                                      4056},
    {"TwoLines",                        [] { return Lines({notice, ":" + ascii64, ascii64}); },                    4056},
    {"TwoLinesOneByteEach",             [] { return Lines({notice, ":x", "y"}); },                                 4056},
    {"ColonAlone",                      [] { return Lines({notice, ":", ascii63Colon}); },                            0},
    {"LineOf65Bytes",                   [] { return Lines({notice, ":" + ascii64 + ":", ascii64}); },                 0},
    {"LineWithAHighByte",               [] { return Lines({notice, ":\x80" + ascii63Colon.substr(1)}); },             0},
    {"LineWithANul",                    [] { return Lines({notice, ":x\0x:"s}); },                                    0},
    {"LineWithAControlByte",            [] { return Lines({notice, ":\x01:"}); },                                  4056},
    {"SecondLineOf65Bytes",             [] { return Lines({notice, ":" + ascii64, ascii64 + "x"}); },                 0},
    {"SecondLineWithAHighByte",         [] { return Lines({notice, ":" + ascii64, "x\xFFx"}); },                      0},
    {"SecondLineWithANul",              [] { return Lines({notice, ":" + ascii64, "x\0x"s}); },                       0},
    {"SecondLineEmpty",                 [] { return Lines({notice, ":" + ascii64, "", ascii64}); },                   0},
    {"SecondLineMissing",               [] { return Lines({notice, ":" + ascii64}); },                                0},
    {"EndOfTheFileBehindTheColon",      [] { return Lines({notice}) + ":"; },                                         0},
    {"EndOfTheFileBehindTheNotice",     [] { return Lines({notice}); },                                               0},
    {"EndOfTheFileInTheNotice",         [] { return notice.substr(0, 44); },                                          0},
    {"NoticeUpperCase",                 [] { return Lines({"(THIS FILE MUST BE CONVERTED WITH BINHEX 4.0)", "::"}); }, 4056},
    {"NoticeLowerCase",                 [] { return Lines({"(this file must be converted with binhex 4.0)", "::"}); }, 4056},
    {"NoticeIndented",                  [] { return Lines({"\t " + notice, "::"}); },                              4056},
    {"NoticeOfAnotherVersion",          [] { return Lines({"(This file must be converted with BinHex 5.0)", "::"}); },   0},
    {"NoticeWithoutTheBracket",         [] { return Lines({notice.substr(0, 44) + " ", "::"}); },                     0},
    {"NoticeOf64Bytes",                 [] { return Lines({notice + std::string(19, '.'), "::"}); },               4056},
    {"NoticeOf65Bytes",                 [] { return Lines({notice + std::string(20, '.'), "::"}); },                  0},
    {"NoticeWithHighBytes",             [] { return Lines({notice + "\xE9\xFF", "::"}); },                         4056},
    {"NoticeWithANul",                  [] { return notice + "\0\n::\n"s; },                                          0},
    {"NoticeInTheMiddle",               [] { return Lines({"x " + notice, "::"}); },                                  0},
    {"OtherByteIsGone",                 [] { return Lines({notice, "x" + begin, uu, "`"}); },                      4050},
    {"BlankIsGone",                     [] { return Lines({notice, " " + begin, uu, "`"}); },                      4050},
    {"BlankBeforeTheColon",             [] { return Lines({notice, " ::"}); },                                        0},
    {"FirstByteOfAHeaderIsGone",        [] { return Lines({notice, begin, uu, "`"}); },                               0},
    {"ScanGoesOnWithARun",              [] { return Lines({notice, "x"}) + Times(6, uu); },                        4051},
    {"ScanGoesOnWithTheNoticeAgain",    [] { return Lines({notice, "x" + notice, "::"}); },                        4056},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Notice, ProbeEncodedText, testing::ValuesIn(noticeCases), FICaseName);

const std::string boundary = "_=_0123456789";
const std::string uuMail = Lines({begin, uu, "`"});

const EncodedCase scanCases[] = {
    // clang-format off
    {"ElevenIdleLines",                       [] { return Times(11, text) + uuMail; },                             4050},
    {"TwelveIdleLines",                       [] { return Times(12, text) + uuMail; },                                0},
    {"ElevenShortIdleLines",                  [] { return Times(11, "x") + uuMail; },                              4050},
    {"TwelveShortIdleLines",                  [] { return Times(12, "x") + uuMail; },                                 0},
    {"ElevenLongIdleLines",                   [] { return Times(11, std::string(500, 'x')) + uuMail; },            4050},
    {"TwelveLongIdleLines",                   [] { return Times(12, std::string(500, 'x')) + uuMail; },               0},
    {"EmptyLinesAreNotIdle",                  [] { return Times(11, text, "\n\n\n") + uuMail; },                   4050},
    {"ElevenIdleLinesAndYEnc",                [] { return Times(11, text) + Lines({yBegin, data128}); },           4054},
    {"TwelveIdleLinesAndYEnc",                [] { return Times(12, text) + Lines({yBegin, data128}); },              0},
    {"ElevenIdleLinesAndTheNotice",           [] { return Times(11, text) + Lines({notice, "::"}); },              4056},
    {"TwelveIdleLinesAndTheNotice",           [] { return Times(12, text) + Lines({notice, "::"}); },                 0},
    {"NoticeCountsAsIdle",                    [] { return Times(10, text) + Lines({notice, "x", uuMail}); },       4050},
    {"NoticeAsTheTwelfthIdleLine",            [] { return Times(11, text) + Lines({notice, "x" + begin, uu, "`"}); }, 0},
    {"TenIdleLinesBehindARunStart",           [] { return Times(11, text) + Lines({uu}) + Times(10, text) + uuMail; },  4050},
    {"ElevenIdleLinesBehindARunStart",        [] { return Times(11, text) + Lines({uu}) + Times(11, text) + uuMail; },     0},
    {"TenIdleLinesBehindAnXxRunStart",        [] { return Times(11, text) + Lines({xx}) + Times(10, text) + uuMail; },  4050},
    {"ElevenIdleLinesBehindAnXxRunStart",     [] { return Times(11, text) + Lines({xx}) + Times(11, text) + uuMail; },     0},
    {"TenIdleLinesBehindABinHexRunStart",     [] { return Times(11, text) + Lines({hex}) + Times(10, text) + uuMail; }, 4050},
    {"ElevenIdleLinesBehindABinHexRunStart",  [] { return Times(11, text) + Lines({hex}) + Times(11, text) + uuMail; },    0},
    {"LinesOfARunAreIdleToo",                 [] { return Lines({uu, uu, uu}) + Times(8, text) + uuMail; },        4050},
    {"LinesOfARunAreIdleTooOneMore",          [] { return Lines({uu, uu, uu}) + Times(9, text) + uuMail; },           0},
    {"LinesThatStartNoRunAreIdle",            [] { return Times(12, UuOf(30)) + uuMail; },                            0},
    {"BoundariesCostNothing",                 [] { return Times(100, boundary) + uuMail; },                        4050},
    {"BoundariesBetweenIdleLines",            [] { return Times(6, text) + Times(20, boundary) + Times(5, text) + uuMail; }, 4050},
    {"BoundariesDoNotReset",                  [] { return Times(6, text) + Times(20, boundary) + Times(6, text) + uuMail; },    0},
    {"BoundaryBehindBlanks",                  [] { return Times(100, "  " + boundary) + uuMail; },                 4050},
    {"BoundaryNotAtTheStart",                 [] { return Times(100, "-" + boundary) + uuMail; },                     0},
    {"BoundaryWithANul",                      [] { return boundary + "\0\n"s + uuMail; },                             0},
    {"ShortestBoundary",                      [] { return Times(100, "_=_") + uuMail; },                           4050},
    {"HeaderOnThe300thLine",                  [] { return Times(299, boundary) + uuMail; },                        4050},
    {"HeaderOnThe301stLine",                  [] { return Times(300, boundary) + uuMail; },                           0},
    {"SixthLineOfARunOnThe300thLine",         [] { return Times(294, boundary) + Times(6, uu); },                  4051},
    {"SixthLineOfARunOnThe301stLine",         [] { return Times(295, boundary) + Times(6, uu); },                     0},
    {"RunsKeepTheScanAliveFor300Lines",       [] { return Times(149, hex + "\n" + text) + Lines({text}) + uuMail; }, 4050},
    {"RunsKeepTheScanAliveForNoMore",         [] { return Times(150, hex + "\n" + text) + uuMail; },                  0},
    {"LineOf1021Bytes",                       [] { return Lines({std::string(1021, 'x')}) + uuMail; },             4050},
    {"LineOf1022Bytes",                       [] { return Lines({std::string(1022, 'x')}) + uuMail; },             4050},
    {"LineOf1023Bytes",                       [] { return Lines({std::string(1023, 'x')}) + uuMail; },             4050},
    {"LineOf1024Bytes",                       [] { return Lines({std::string(1024, 'x')}) + uuMail; },             4050},
    {"HeaderAtByte1021OfALine",               [] { return std::string(1021, 'x') + uuMail; },                         0},
    {"HeaderAtByte1022OfALine",               [] { return std::string(1022, 'x') + uuMail; },                      4050},
    {"HeaderAtByte1023OfALine",               [] { return std::string(1023, 'x') + uuMail; },                         0},
    {"CutLinesAreIdleLines",                  [] { return std::string(std::size_t{1022} * 11, 'x') + uuMail; },    4050},
    {"CutLinesAreIdleLinesOneMore",           [] { return std::string(std::size_t{1022} * 12, 'x') + uuMail; },       0},
    {"WhiteSpaceIsReadWithoutALimit",         [] { return std::string(100000, ' ') + uuMail; },                    4050},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Scan, ProbeEncodedText, testing::ValuesIn(scanCases), FICaseName);

// ---- Truncated files ----------------------------------------------------------------------------------------------

struct TruncatedCase {
    const char* name;
    std::string bytes;
    FIID answer;
    std::size_t bytesNeeded;  // beginnings shorter than that have the answer 0, longer ones the answer
    std::size_t harmlessNul = std::string::npos;  // the one place in front of that where a NUL does not spoil it
};

class TruncatedEncodedText : public testing::TestWithParam<TruncatedCase> {};

TEST_P(TruncatedEncodedText, EveryLength) {
    const std::string& bytes = GetParam().bytes;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const auto handle = FIMakeTestHandle(bytes.substr(0, size));
        const FIID expected = size < GetParam().bytesNeeded ? FIID{0} : GetParam().answer;
        EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *handle), expected) << size << " bytes";
    }
}

// A NUL in the place of every byte. The line tests end at it, and behind a header no test looks further: there a NUL
// may stand in the place of the line end behind the first data line, which takes the second line out.
TEST_P(TruncatedEncodedText, ANulInEveryPlace) {
    const TruncatedCase& truncatedCase = GetParam();
    for (std::size_t place = 0; place < truncatedCase.bytesNeeded; ++place) {
        std::string bytes = truncatedCase.bytes;
        bytes[place] = '\0';
        const FIID expected = place == truncatedCase.harmlessNul ? truncatedCase.answer : FIID{0};
        EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *FIMakeTestHandle(bytes)), expected) << place;
    }
}

const std::string uuFile = Lines({begin, uu, "`", "end"});
const std::string xxFile = Lines({begin, xx, "+", "end"});

const TruncatedCase truncatedCases[] = {
    // clang-format off
    {"UuHeader",     uuFile,                                   4050, uuFile.find('`') + 1, uuFile.find('`') - 1},
    {"UuRun",        Times(7, uu),                             4051, 5 * 62 + 61},
    {"XxHeader",     xxFile,                                   4052, xxFile.find('+') + 1, xxFile.find('+') - 1},
    {"XxRun",        Times(7, xx),                             4053, 5 * 62 + 61},
    {"YEnc",         Lines({yBegin, data128, yEnd}),           4054, yBegin.size() + 1 + 128},
    {"YEncPart2",    Lines({yBeginPart2, "=ypart begin=1", data128, yEnd}), 4055, yBeginPart2.size() + 1 + 15 + 128},
    {"BinHexNotice", Lines({notice, "", ":" + ascii64, ascii64}), 4056, 45 + 2 + 1 + 64 + 1 + 1},
    {"BinHexRun",    Times(7, hex),                            4057, 5 * 65 + 46},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Text, TruncatedEncodedText, testing::ValuesIn(truncatedCases), FICaseName);

// ---- Failures -----------------------------------------------------------------------------------------------------

TEST(ProbeEncodedTextFailure, NoBufferIsNoVerdict) {
    const auto handle = FIMakeTestHandle(Times(6, uu));
    FIFailAllocationsFrom(1);  // the reader is the block with the number 0
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *handle), 0);
    EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), 4050), 0);
    FIHeapNeverFails();
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *handle), 4051);
}

TEST(ProbeEncodedTextFailure, FailingSeekIsNoVerdict) {
    const auto handle = FIMakeTestHandle(Times(6, uu));
    handle->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *handle), 0);
    EXPECT_EQ(handle->reads, 0U);
}

TEST(ProbeEncodedTextFailure, FailingReadIsTheEndOfTheFile) {
    const auto unreadable = FIMakeTestHandle(Times(6, uu));
    unreadable->failReadsFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *unreadable), 0);

    const std::string bytes = Times(200, boundary) + Times(6, uu);
    const auto torn = FIMakeTestHandle(bytes);
    torn->failReadsFrom = 1;  // the first 2,048 bytes can be read
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *torn), 0);
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *FIMakeTestHandle(bytes)), 4051);
}

TEST(ProbeEncodedTextStart, RewindsTheReader) {
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *FIMakeTestHandle(Times(6, uu)), 62), 4051);
}

TEST(ProbeEncodedTextCost, PlainTextCostsADozenLines) {
    const auto handle = FIMakeTestHandle(Times(100000, text));
    EXPECT_EQ(FIAnswerOver(FIProbeEncodedText, *handle), 0);
    EXPECT_EQ(handle->bytesDelivered, 2048U);
}

TEST(IdSpecial, KnowsNoOtherTest) {
    for (const std::int16_t test :
         {std::int16_t{0}, std::int16_t{-1}, std::int16_t{4049}, std::int16_t{4051}, std::int16_t{1187}}) {
        const auto handle = FIMakeTestHandle(Times(6, uu));
        EXPECT_EQ(FIIdSpecial(FIFileOf(*handle), test), 0) << test;
        EXPECT_EQ(handle->reads + handle->seeks + handle->tells + handle->infos, 0U) << test;
    }
}

// ---- Through the whole system: row 403 calls the routine ----------------------------------------------------------

struct EncodedFileCase {
    const char* name;
    std::string (*bytes)();
    FIID answer;
    std::uint16_t row;
};

class IdentifyEncodedText : public testing::TestWithParam<EncodedFileCase> {};

TEST_P(IdentifyEncodedText, Answers) {
    std::uint16_t row = 1;
    EXPECT_EQ(FIIdentifyBytes(GetParam().bytes(), "a.txt", FIFlagExtendedText, &row), GetParam().answer);
    EXPECT_EQ(row, GetParam().row);
}

constexpr std::uint16_t mailRow = 385_row;
constexpr std::uint16_t encodedRow = 403_row;
constexpr std::uint16_t noRow = 0;

const EncodedFileCase encodedFileCases[] = {
    // clang-format off
    {"UuHeader",               [] { return Lines({begin, uu, "`", "end"}); },                        4050, encodedRow},
    {"UuHeaderMixedCase",      [] { return Lines({"Begin 644 a.txt", uu, "`"}); },                   4050, encodedRow},
    {"UuHeaderLetters",        [] { return Lines({begin, uu + "z", uu + "y"}); },                    4050, encodedRow},
    {"UuMode755",              [] { return Lines({"begin 755 a.txt", uu, "`"}); },                   4022, noRow},
    {"UuMode755ByItsLines",    [] { return Lines({"begin 755 a.txt", uu, uu, uu, uu, uu, uu}); },    4051, encodedRow},
    {"UuHeaderAndText",        [] { return Lines({begin, text}) + Times(6, uu); },                   4022, noRow},
    {"UuRun",                  [] { return Times(6, uu); },                                          4051, encodedRow},
    {"UuRunOfFive",            [] { return Times(5, uu); },                                          4022, noRow},
    {"UuRunAndEnd",            [] { return Lines({uu, uu, "end"}); },                                4051, encodedRow},
    {"UuRunAndUpperCaseEnd",   [] { return Lines({uu, uu, uu, "END"}) + Times(6, uu); },             4022, noRow},
    {"UuRunOfShortLines",      [] { return Times(6, UuOf(30)); },                                    4022, noRow},
    {"XxHeader",               [] { return Lines({begin, xx, xx}); },                                4052, encodedRow},
    {"XxRun",                  [] { return Times(6, xx); },                                          4053, encodedRow},
    {"XxRunAndEnd",            [] { return Lines({xx, xx, "end"}); },                                4053, encodedRow},
    {"YEnc",                   [] { return Lines({yBegin, data128, yEnd}); },                        4054, encodedRow},
    {"YEnc129",                [] { return Lines({yBegin, data128 + "a"}); },                        4054, encodedRow},
    {"YEncHighBytes",          [] { return Lines({yBegin, std::string(128, '\x8B')}); },             4054, encodedRow},
    {"YEncPart2",              [] { return Lines({yBeginPart2, "=ypart begin=1 end=128", data128}); }, 4055, encodedRow},
    {"YEncLineBeforePart",     [] { return Lines({"=ybegin line=128 part=2 size=500 name=a", data128}); }, 4022, noRow},
    {"BinHexNotice",           [] { return Lines({notice, "", ":" + ascii63Colon}); },               4056, encodedRow},
    {"BinHexNoticeOf65Bytes",  [] { return Lines({notice + std::string(20, '.'), "::"}); },          4022, noRow},
    {"BinHexRun",              [] { return Times(6, hex); },                                         4057, encodedRow},
    {"BinHexRunWithAColon",    [] { return Lines({hex, "!!:"}); },                                   4057, encodedRow},
    {"BinHexRunOfShortLines",  [] { return Times(6, HexOf(45)); },                                   4022, noRow},
    {"TwelfthLine",            [] { return Times(11, text) + Lines({begin, uu, "`"}); },             4050, encodedRow},
    {"ThirteenthLine",         [] { return Times(12, text) + Lines({begin, uu, "`"}); },             4022, noRow},
    {"BehindMailHeaders",      [] { return Lines({"From: a", "To: b", "", begin, uu, "`"}); },       1132, mailRow},
    {"NulBehindTheSixthLine",  [] { return Times(5, uu) + uu + "\0x\n"s; },                          4051, encodedRow},
    // clang-format on
};
INSTANTIATE_TEST_SUITE_P(Text, IdentifyEncodedText, testing::ValuesIn(encodedFileCases), FICaseName);

}  // namespace
