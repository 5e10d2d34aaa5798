// Archives without a magic number at their start: tar by its fields and sums, ZIP and LHA data behind a program.
#include "media/archives.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "support/case_name.h"
#include "support/decided_case.h"
#include "support/failing_seeks.h"
#include "support/probe_case.h"

namespace {

using ::PrintTo;

// ---- tar: a header writer of the tests' own -------------------------------------------------------------------------
//
//   Offset  Size  Field                Text
//        0   100  name                 any, filled up with NUL
//      100     8  mode                 octal
//      108     8  owner                octal
//      116     8  group                octal
//      124    12  size                 octal
//      136    12  modification time    octal
//      148     8  checksum             octal: the sum of all 512 bytes, the checksum's own counted as blanks
//      156   356  type, link, and what later formats added

constexpr std::size_t tarBlock = 512;
constexpr std::size_t tarFields = 100;  // the five octal fields that are tested byte by byte
constexpr std::size_t tarChecksum = 148;
constexpr std::size_t tarChecksumSize = 8;
constexpr std::size_t tarFill = 510;  // a word in the fill that the tests use to set the sum of words

// A header without a checksum: the rows of the tests change what they are about.
std::string FIMakeTarHeader(const std::string& name = "notes.txt") {
    std::string block = name;
    block.resize(tarFields, '\0');
    block += FIBytes(R"("0000644" 00 "0001750" 00 "0001750" 00 "00000000012" 00 "14371573621" 00)");
    block += std::string(tarChecksumSize, ' ');
    block += '0';
    block.resize(tarBlock, '\0');
    return block;
}

std::uint8_t FIByteAt(const std::string& bytes, std::size_t offset) { return static_cast<std::uint8_t>(bytes[offset]); }

std::int32_t FISignedByteAt(const std::string& bytes, std::size_t offset) {
    const std::int32_t value = FIByteAt(bytes, offset);
    return value < 128 ? value : value - 256;
}

// The sum that a header's checksum field holds, of bytes from 0 to 255.
std::int32_t FISumUnsigned(std::string block) {
    block.replace(tarChecksum, tarChecksumSize, tarChecksumSize, ' ');
    std::int32_t sum = 0;
    for (std::size_t offset = 0; offset < tarBlock; ++offset) sum += FIByteAt(block, offset);
    return sum;
}

// The same of bytes from -128 to 127, as some old writers had it.
std::int32_t FISumSigned(std::string block) {
    block.replace(tarChecksum, tarChecksumSize, tarChecksumSize, ' ');
    std::int32_t sum = 0;
    for (std::size_t offset = 0; offset < tarBlock; ++offset) sum += FISignedByteAt(block, offset);
    return sum;
}

// A number as octal text of so many digits.
std::string FIOctal(std::int32_t number, std::size_t digits) {
    std::string text(digits, '0');
    for (std::size_t place = digits; place > 0; --place) {
        text[place - 1] = static_cast<char>('0' + number % 8);
        number /= 8;
    }
    return text;
}

std::string FIWithChecksum(std::string block, std::string_view field) {
    return block.replace(tarChecksum, tarChecksumSize, field);
}

// The usual form: six digits, a NUL and a blank.
std::string FIWithSum(const std::string& block, std::int32_t sum) {
    return FIWithChecksum(block, FIOctal(sum, 6) + std::string("\0 ", 2));
}

std::string FIFinished(const std::string& block) { return FIWithSum(block, FISumUnsigned(block)); }

// A checksum that no block has: the largest sum is 512 times 255, which is 376,400 octal at most.
const std::string wrongChecksum = "7777777 ";

// The sum of the block's 256 words, first byte high, both bytes signed, in 16 bits.
std::uint16_t FISumWords(const std::string& block) {
    std::int32_t sum = 0;
    for (std::size_t offset = 0; offset < tarBlock; offset += 2) {
        sum += FISignedByteAt(block, offset) * 256 + FISignedByteAt(block, offset + 1);
    }
    return static_cast<std::uint16_t>(sum & 0xFFFF);
}

// The block with its last word set so that the sum of words is this.
std::string FIWithWordSum(std::string block, std::uint16_t wanted) {
    block[tarFill] = '\0';
    block[tarFill + 1] = '\0';
    const std::int32_t missing = wanted - FISumWords(block);
    block[tarFill + 1] = static_cast<char>(missing & 0xFF);
    block[tarFill] = static_cast<char>((missing - FISignedByteAt(block, tarFill + 1)) / 256 & 0xFF);
    EXPECT_EQ(FISumWords(block), wanted);
    return block;
}

bool FIIsTar(const std::string& block) {
    EXPECT_EQ(block.size(), tarBlock);
    const std::string before = block;
    const bool isTar = FICheckTarHeader(reinterpret_cast<const std::uint8_t*>(block.data())) == 0;
    EXPECT_EQ(block, before) << "the block was changed";
    return isTar;
}

// The sums are taken eight bytes at a time; here a byte at a time.
TEST(Tar, SumsOfRandomBlocksAgreeWithThoseOfTheirBytes) {
    std::mt19937 engine(20261121);
    std::uint32_t accepted = 0;
    for (std::uint32_t round = 0; round < 3000; ++round) {
        std::string block = FIMakeTarHeader();
        for (std::size_t offset = 0; offset < tarBlock; ++offset) {
            const bool free = offset < tarFields || offset >= tarChecksum + tarChecksumSize;
            if (free && engine() % 3 != 0) block[offset] = static_cast<char>(engine());
        }
        const std::int32_t sums[] = {FISumUnsigned(block), FISumSigned(block), FISumUnsigned(block) + 1};
        const std::int32_t checksum = std::max(sums[engine() % 3], 1);
        block = FIWithSum(block, checksum);
        if (round % 5 == 0)
            block = FIWithWordSum(FIWithChecksum(block, wrongChecksum), static_cast<std::uint16_t>(engine() % 2));
        const std::int32_t told = round % 5 == 0 ? 07777777 : checksum;
        const bool expected = told == FISumUnsigned(block) || told == FISumSigned(block) || FISumWords(block) == 0;
        ASSERT_EQ(FIIsTar(block), expected) << round;
        accepted += expected ? 1 : 0;
    }
    EXPECT_GT(accepted, 1000U);
    EXPECT_LT(accepted, 2500U);
}

// ---- tar: the fields ------------------------------------------------------------------------------------------------

bool FIIsOctalText(std::uint32_t byte) { return (byte >= '0' && byte <= '7') || byte == 0 || byte == ' '; }

TEST(Tar, EveryByteOfTheFiveFieldsIsOctalTextBlankOrNul) {
    for (std::size_t offset = tarFields; offset < tarChecksum; ++offset) {
        for (std::uint32_t byte = 0; byte <= 0xFF; ++byte) {
            std::string block = FIMakeTarHeader();
            block[offset] = static_cast<char>(byte);
            EXPECT_EQ(FIIsTar(FIFinished(block)), FIIsOctalText(byte)) << offset << ": " << byte;
        }
    }
}

TEST(Tar, AWrongByteInAFieldCantBeMadeUpForByTheWordSum) {
    for (std::size_t offset = tarFields; offset < tarChecksum; ++offset) {
        std::string block = FIWithChecksum(FIMakeTarHeader(), wrongChecksum);
        EXPECT_TRUE(FIIsTar(FIWithWordSum(block, 0)));
        block[offset] = '8';
        EXPECT_FALSE(FIIsTar(FIWithWordSum(block, 0))) << offset;
    }
}

TEST(Tar, BytesAroundTheFieldsAreFree) {
    for (const std::size_t offset : {0U, 1U, 50U, 99U, 156U, 157U, 257U, 300U, 511U}) {
        for (std::uint32_t byte = 0; byte <= 0xFF; ++byte) {
            std::string block = FIMakeTarHeader();
            block[offset] = static_cast<char>(byte);
            EXPECT_TRUE(FIIsTar(FIFinished(block))) << offset << ": " << byte;
        }
    }
}

TEST(Tar, BlanksAndNulsInPlaceOfDigits) {
    std::string blanks = FIMakeTarHeader();
    blanks.replace(tarFields, tarChecksum - tarFields, tarChecksum - tarFields, ' ');
    EXPECT_TRUE(FIIsTar(FIFinished(blanks)));
    std::string nuls = FIMakeTarHeader();
    nuls.replace(tarFields, tarChecksum - tarFields, tarChecksum - tarFields, '\0');
    EXPECT_TRUE(FIIsTar(FIFinished(nuls)));
    std::string mixed = FIMakeTarHeader();
    mixed.replace(tarFields, 8, std::string(" 6\0 44 \0", 8));
    EXPECT_TRUE(FIIsTar(FIFinished(mixed)));
}

// ---- tar: the checksum ----------------------------------------------------------------------------------------------

TEST(Tar, ChecksumIsTheSum) {
    const std::string block = FIMakeTarHeader();
    const std::int32_t sum = FISumUnsigned(block);
    EXPECT_EQ(FISumSigned(block), sum) << "no byte above 127";
    EXPECT_TRUE(FIIsTar(FIWithSum(block, sum)));
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum + 1)));
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum - 1)));
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum - 256))) << "the field's blanks count";
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum + 65536))) << "the sum has more than 16 bits";
}

TEST(Tar, ChecksumOfSignedOrOfUnsignedBytes) {
    const std::string block = FIMakeTarHeader("r\xE9sum\xE9.txt");
    const std::int32_t sum = FISumUnsigned(block);
    EXPECT_EQ(FISumSigned(block), sum - 512);
    EXPECT_TRUE(FIIsTar(FIWithSum(block, sum)));
    EXPECT_TRUE(FIIsTar(FIWithSum(block, sum - 512)));
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum - 256))) << "one byte signed and the other not";
}

TEST(Tar, SumsAreWide) {
    // 456 bytes of 255 give a sum above 16 bits.
    std::string block = FIMakeTarHeader();
    block.replace(0, tarFields, tarFields, '\xFF');
    block.replace(156, 356, 356, '\xFF');
    const std::int32_t sum = FISumUnsigned(block);
    EXPECT_GT(sum, 0xFFFF);
    EXPECT_TRUE(FIIsTar(FIWithSum(block, sum)));
    EXPECT_FALSE(FIIsTar(FIWithSum(block, sum & 0xFFFF)));
}

struct ChecksumForm {
    const char* name;
    // Each 'd' is a digit of the sum, from the left with zeros in front; other characters stand as they are, '_' is a
    // blank and '.' a NUL.
    const char* pattern;
    bool isTar;
};

const ChecksumForm checksumForms[] = {
    // clang-format off
    {"SixDigitsNulBlank",      "dddddd._", true},
    {"SixDigitsBlankNul",      "dddddd_.", true},
    {"SevenDigitsNul",         "ddddddd.", true},
    {"EightDigits",            "dddddddd", true},
    {"BlanksInFront",          "__dddddd", true},
    {"NulsInFront",            "..dddddd", true},
    {"BlanksAllOver",          "d_dd_ddd", true},
    {"NulsAllOver",            "dd.ddd.d", true},
    {"FiveDigits",             "ddddd...", true},
    {"FiveDigitsBlanks",       "___ddddd", true},
    {"AnEightBehindTheDigits", "dddddd8.", false},
    {"ALetterInTheLastPlace",  "dddddd_x", false},
    {"AMinusInFront",          "-dddddd.", false},
    {"ALetterInFront",         "xdddddd.", false},
    {"ATabInFront",            "\tdddddd.", false},
    {"ALineFeedBehind",        "dddddd.\n", false},
    {"AHighByteBehind",        "dddddd.\xB0", false},
    // clang-format on
};

class TarChecksum : public testing::TestWithParam<ChecksumForm> {};

TEST_P(TarChecksum, IsReadAsOctalText) {
    const std::string block = FIMakeTarHeader();
    const std::string pattern = GetParam().pattern;
    std::size_t digits = 0;
    for (const char sign : pattern) digits += sign == 'd' ? 1 : 0;
    const std::string sum = FIOctal(FISumUnsigned(block), digits);
    std::string field;
    std::size_t digit = 0;
    for (const char sign : pattern) {
        if (sign == 'd') {
            field += sum[digit++];
        } else {
            field += sign == '_' ? ' ' : sign == '.' ? '\0' : sign;
        }
    }
    EXPECT_EQ(FIIsTar(FIWithChecksum(block, field)), GetParam().isTar);
}

INSTANTIATE_TEST_SUITE_P(Fields, TarChecksum, testing::ValuesIn(checksumForms), FICaseName);

// ---- tar: the sum of words ------------------------------------------------------------------------------------------
//
// A header whose checksum is wrong is still one when its 256 words add up to 0 in 16 bits.

TEST(TarWordSum, MakesUpForAWrongChecksum) {
    const std::string block = FIWithChecksum(FIMakeTarHeader(), wrongChecksum);
    EXPECT_TRUE(FIIsTar(FIWithWordSum(block, 0)));
    for (const std::uint16_t sum : std::to_array<std::uint16_t>({0x0001, 0x00FF, 0x0100, 0x8000, 0xFF00, 0xFFFF})) {
        EXPECT_FALSE(FIIsTar(FIWithWordSum(block, sum))) << sum;
    }
}

TEST(TarWordSum, CountsEveryByte) {
    const std::string block = FIWithWordSum(FIWithChecksum(FIMakeTarHeader(), wrongChecksum), 0);
    ASSERT_TRUE(FIIsTar(block));
    for (std::size_t offset = 0; offset < tarBlock; ++offset) {
        std::string changed = block;
        changed[offset] = static_cast<char>(changed[offset] ^ 1);  // a digit stays a digit, a NUL becomes a 1
        if (offset >= tarFields && offset < tarChecksum && !FIIsOctalText(FIByteAt(changed, offset))) continue;
        EXPECT_FALSE(FIIsTar(changed)) << offset;
    }
}

TEST(TarWordSum, CountsTheChecksumAsItStands) {
    // Blanks in the checksum's place would give another sum.
    const std::string block = FIWithWordSum(FIWithChecksum(FIMakeTarHeader(), wrongChecksum), 0);
    std::string blanks = block;
    blanks.replace(tarChecksum, tarChecksumSize, tarChecksumSize, ' ');
    EXPECT_NE(FISumWords(blanks), 0);
    EXPECT_TRUE(FIIsTar(block));
    EXPECT_FALSE(FIIsTar(FIWithWordSum(block, static_cast<std::uint16_t>(FISumWords(block) - FISumWords(blanks)))));
}

TEST(TarWordSum, BothBytesOfAWordAreSigned) {
    // Two low bytes above 127 in the name: each takes 256 from the sum that unsigned bytes would give.
    const std::string block = FIWithChecksum(FIMakeTarHeader("a\xE9"
                                                             "b\xE9"
                                                             "c"),
                                             wrongChecksum);
    const std::string balanced = FIWithWordSum(block, 0);
    std::uint32_t unsignedSum = 0;
    for (std::size_t offset = 0; offset < tarBlock; offset += 2) {
        unsignedSum += FIByteAt(balanced, offset) * 256U + FIByteAt(balanced, offset + 1);
    }
    EXPECT_NE(unsignedSum & 0xFFFF, 0U);
    EXPECT_TRUE(FIIsTar(balanced));
    EXPECT_FALSE(FIIsTar(FIWithWordSum(block, static_cast<std::uint16_t>(0 - unsignedSum)))) << "unsigned low bytes";
    // High bytes give the same sum either way.
    EXPECT_TRUE(FIIsTar(FIWithWordSum(FIWithChecksum(FIMakeTarHeader("\xE9t\xE9"), wrongChecksum), 0)));
}

std::string FISwapBytes(std::string block) {
    for (std::size_t offset = 0; offset < tarBlock; offset += 2) std::swap(block[offset], block[offset + 1]);
    return block;
}

TEST(TarWordSum, WordsHaveTheirHighByteFirst) {
    // Words with their low byte first add up to 0 here.
    const std::string block = FIWithChecksum(FIMakeTarHeader(), wrongChecksum);
    const std::string lowFirst = FISwapBytes(FIWithWordSum(FISwapBytes(block), 0));
    EXPECT_NE(FISumWords(lowFirst), 0);
    EXPECT_FALSE(FIIsTar(lowFirst));
    EXPECT_TRUE(FIIsTar(FIWithWordSum(lowFirst, 0)));
}

TEST(TarWordSum, ACutChecksumLeadsHereWithoutALookAtTheSums) {
    // The digits in front of the letter are the right sum, and the words add up.
    const std::string block = FIMakeTarHeader();
    std::string finished = FIWithChecksum(block, FIOctal(FISumUnsigned(block), 6) + "x ");
    EXPECT_FALSE(FIIsTar(finished));
    EXPECT_TRUE(FIIsTar(FIWithWordSum(finished, 0)));
}

// ---- tar: the rule of two zeros -------------------------------------------------------------------------------------
//
// With words that add up to 0, a header is still none when its checksum and its name's first eight bytes both read as
// 0.

struct ZeroRule {
    const char* name;
    const char* fileName;  // in the notation of FIBytes
    const char* checksum;  // likewise, 8 bytes
    bool isTar;
};

const ZeroRule zeroRules[] = {
    // clang-format off
    {"NameOfLettersZeroChecksum",       R"("notes.txt")",       R"("0000000" 00)",     false},
    {"NameOfLettersEmptyChecksum",      R"("notes.txt")",       "00*8",                false},
    {"NameOfLettersBlankChecksum",      R"("notes.txt")",       "20*8",                false},
    {"NameOfLettersLetterChecksum",     R"("notes.txt")",       R"("checksum")",       false},
    {"NameOfLettersZeroThenLetter",     R"("notes.txt")",       R"("000x0001")",       false},
    {"NameOfLettersChecksum1",          R"("notes.txt")",       R"("0000001" 00)",     true},
    {"NameOfLettersOneThenLetter",      R"("notes.txt")",       R"("0001x000")",       true},
    {"NameOfLettersChecksumAtTheEnd",   R"("notes.txt")",       R"("00000001")",       true},
    {"NameOfDigitsZeroChecksum",        R"("0000001")",         R"("0000000" 00)",     true},
    {"NameOfZerosZeroChecksum",         R"("0000000")",         R"("0000000" 00)",     false},
    {"NameStartsWithADigit",            R"("1st.txt")",         R"("0000000" 00)",     true},
    {"NameStartsWithZero",              R"("0th.txt")",         R"("0000000" 00)",     false},
    {"NameStartsWithEight",             R"("8th7777")",         R"("0000000" 00)",     false},
    {"NameWithADigitBehindALetter",     R"("a1111111")",        R"("0000000" 00)",     false},
    {"NameStartsWithABlank",            R"(" 7.txt")",          R"("0000000" 00)",     true},
    {"NameStartsWithNuls",              R"(00 00 00 "7")",      R"("0000000" 00)",     true},
    {"NameWithADigitInTheEighthPlace",  R"("00000001x")",       R"("0000000" 00)",     true},
    {"NameWithADigitInTheNinthPlace",   R"("000000001")",       R"("0000000" 00)",     false},
    {"EmptyNameEmptyChecksum",          "",                     "00*8",                false},
    {"EmptyNameChecksum1",              "",                     R"("0000001" 00)",     true},
    {"NameOfDigitsChecksumOfDigits",    R"("1234567")",         R"("7777777" 00)",     true},
    // clang-format on
};

class TarZeroRule : public testing::TestWithParam<ZeroRule> {};

TEST_P(TarZeroRule, Decides) {
    const std::string block =
        FIWithChecksum(FIMakeTarHeader(FIBytes(GetParam().fileName)), FIBytes(GetParam().checksum));
    EXPECT_EQ(FIIsTar(FIWithWordSum(block, 0)), GetParam().isTar);
    EXPECT_FALSE(FIIsTar(FIWithWordSum(block, 1))) << "words that do not add up";
}

INSTANTIATE_TEST_SUITE_P(Blocks, TarZeroRule, testing::ValuesIn(zeroRules), FICaseName);

TEST(TarZeroRule, ARightChecksumNeedsNoName) {
    // A block of zeros but for its checksum: eight blanks are 256, and that is 400 octal.
    EXPECT_TRUE(FIIsTar(FIWithChecksum(std::string(tarBlock, '\0'), FIBytes(R"("000400" 00 20)"))));
    EXPECT_FALSE(FIIsTar(FIWithChecksum(std::string(tarBlock, '\0'), FIBytes(R"("000401" 00 20)"))));
    EXPECT_FALSE(FIIsTar(std::string(tarBlock, '\0')));
}

TEST(TarZeroRule, AZeroChecksumThatIsRightIsNoMatterOfTheRule) {
    // The bytes sum up to 0 as signed ones: 32 bytes of -8 make up for the checksum's blanks.
    std::string block(tarBlock, '\0');
    block.replace(200, 32, 32, '\xF8');
    EXPECT_EQ(FISumSigned(block), 0);
    EXPECT_TRUE(FIIsTar(block));
}

// ---- tar: the routine -----------------------------------------------------------------------------------------------

TEST(ProbeTar, ReadsOneBlock) {
    const std::string header = FIFinished(FIMakeTarHeader());
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, header), 1807);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, header + std::string(10240, 'x')), 1807);
    const auto handle = FIMakeTestHandle(header + std::string(10240, 'x'));
    EXPECT_EQ(FIAnswerOver(FIProbeTar, *handle), 1807);
    EXPECT_EQ(handle->reads, 1U);
    EXPECT_EQ(handle->bytesDelivered, tarBlock);
}

TEST(ProbeTar, ReadsFromTheStartWhereverTheReaderStands) {
    const std::string file = FIFinished(FIMakeTarHeader()) + std::string(10240, 'x');
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, file, 5000), 1807);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, std::string(5000, 'x') + file, 5000), 0);
}

TEST(ProbeTar, OtherBlocks) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, ""), 0);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, std::string(tarBlock, '\0')), 0);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, std::string(20, '\0')), 0);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, FIMakeTarHeader()), 0);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, std::string(1, 'x') + FIFinished(FIMakeTarHeader())), 0);
    const std::string wrong = FIWithChecksum(FIMakeTarHeader(), wrongChecksum);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, FIWithWordSum(wrong, 0)), 1807);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, FIWithWordSum(wrong, 1)), 0);
    const std::string accented = FIMakeTarHeader("r\xE9sum\xE9.txt");
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, FIWithSum(accented, FISumSigned(accented))), 1807);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, FIWithSum(accented, FISumUnsigned(accented))), 1807);
}

TEST(ProbeTar, AShortFileIsFilledUpWithZeros) {
    // Type '0' at 156 is the header's last byte that is not zero.
    const std::string header = FIFinished(FIMakeTarHeader());
    for (std::size_t size = 157; size <= tarBlock; ++size) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, header.substr(0, size)), 1807) << size;
    }
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, header.substr(0, 156)), 0) << "the type is missing in the sum";
    std::string untyped = FIMakeTarHeader();
    untyped[156] = '\0';
    untyped = FIFinished(untyped);
    // The checksum ends in a NUL and a blank, and both are passed over.
    for (std::size_t size = 154; size <= 157; ++size) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, untyped.substr(0, size)), 1807) << size;
    }
    for (std::size_t size = 0; size < 154; ++size) {
        EXPECT_EQ(FIAnswerOfBlockReader(FIProbeTar, untyped.substr(0, size)), 0) << size;
    }
}

TEST(ProbeTar, AShortReadIsFilledUpTheSameWay) {
    // One read, and no second one for the rest: the last byte counts as 0.
    std::string header = FIFinished(FIMakeTarHeader());
    header[tarBlock - 1] = 'x';
    const auto whole = FIMakeTestHandle(header);
    EXPECT_EQ(FIAnswerOver(FIProbeTar, *whole), 0);
    const auto cut = FIMakeTestHandle(header);
    cut->bytesPerRead = tarBlock - 1;
    EXPECT_EQ(FIAnswerOver(FIProbeTar, *cut), 1807);
    EXPECT_EQ(cut->reads, 1U);
}

decltype(IOOperations::IORead) readThatWorks = nullptr;

// Delivers the bytes all the same.
std::int32_t FIReadAndReportFailure(HIOFILE file, void* destination, std::uint32_t size, std::uint32_t* count) {
    static_cast<void>(readThatWorks(file, destination, size, count));
    return -1;
}

void FIReportFailedReads(TestHandle& handle) {
    readThatWorks = handle.file.operations.IORead;
    handle.file.operations.IORead = FIReadAndReportFailure;
}

TEST(ProbeTar, FailuresAreANo) {
    const std::string header = FIFinished(FIMakeTarHeader());
    const auto noSeek = FIMakeTestHandle(header);
    noSeek->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeTar, *noSeek), 0);
    const auto noRead = FIMakeTestHandle(header);
    FIReportFailedReads(*noRead);
    EXPECT_EQ(FIAnswerOver(FIProbeTar, *noRead), 0);
}

// ---- 1803: ZIP behind a program -------------------------------------------------------------------------------------
//
//   Step  Looks for "PK" 03 04 at
//      1  12,784
//      2  15,512
//      3  38,426, twice
//      4  the offset in the word at 100
//      5  the local header of the first entry in the directory whose offset the file's last 6 bytes start with

const ProbeCase zipStubCases[] = {
    // clang-format off
    {"FirstPlace",                    R"(>12784 "PK" 03 04)",                                                         1803},
    {"FirstPlaceInALongFile",         R"(>12784 "PK" 03 04 >50000)",                                                  1803},
    {"FirstPlaceOneTooEarly",         R"(>12783 "PK" 03 04 >12788)",                                                     0},
    {"FirstPlaceOneTooLate",          R"(>12785 "PK" 03 04)",                                                            0},
    {"FirstPlaceCut",                 R"(>12784 "PK" 03)",                                                               0},
    {"FirstPlaceOtherSignature",      R"(>12784 "PK" 05 06)",                                                            0},
    {"FirstPlaceBytesTurnedRound",    R"(>12784 04 03 "KP")",                                                            0},
    {"FileOf100Bytes",                ">100",                                                                            0},
    {"FileOf12784Bytes",              ">12784",                                                                          0},
    {"SecondPlace",                   R"(>15512 "PK" 03 04)",                                                         1803},
    {"SecondPlaceInALongFile",        R"(>15512 "PK" 03 04 >50000)",                                                  1803},
    {"SecondPlaceOneTooEarly",        R"(>15511 "PK" 03 04 >15516)",                                                     0},
    {"SecondPlaceOneTooLate",         R"(>15513 "PK" 03 04)",                                                            0},
    {"SecondPlaceCut",                R"(>15512 "PK" 03)",                                                               0},
    {"ThirdPlace",                    R"(>38426 "PK" 03 04)",                                                         1803},
    {"ThirdPlaceInALongFile",         R"(>38426 "PK" 03 04 >50000)",                                                  1803},
    {"ThirdPlaceOneTooEarly",         R"(>38425 "PK" 03 04 >38430)",                                                     0},
    {"ThirdPlaceOneTooLate",          R"(>38427 "PK" 03 04)",                                                            0},
    {"ThirdPlaceCut",                 R"(>38426 "PK" 03)",                                                               0},

    {"WordAt100",                     R"(>100 w:200 >200 "PK" 03 04 >15516)",                                         1803},
    {"WordAt100InALongFile",          R"(>100 w:200 >200 "PK" 03 04 >50000)",                                         1803},
    {"WordAt100BehindTheBuffer",      R"(>100 w:16000 >16000 "PK" 03 04)",                                            1803},
    {"WordAt100Is32768",              R"(>100 w:32768 >32768 "PK" 03 04)",                                            1803},
    {"WordAt100Is65535",              R"(>100 w:65535 >65535 "PK" 03 04)",                                            1803},
    {"WordAt100Is0",                  R"("PK" 03 04 >15516)",                                                         1803},
    {"WordAt100Is98",                 R"(>98 "PKb" 00 >15516)",                                                          0},
    {"WordAt100IsLittleEndian",       R"(>100 w:0x1234 >0x1234 "PK" 03 04 >20000)",                                   1803},
    {"WordAt100IsNotBigEndian",       R"(>100 W:0x1234 >0x1234 "PK" 03 04 >20000)",                                      0},
    {"WordAt100OneTooLow",            R"(>100 w:199 >200 "PK" 03 04 >15516)",                                            0},
    {"WordAt100OneTooHigh",           R"(>100 w:201 >200 "PK" 03 04 >15516)",                                            0},
    {"WordAt99",                      R"(>99 C8 00 FF >200 "PK" 03 04 >15516)",                                          0},
    {"WordAt100InAShortFile",         R"(>100 w:200 >200 "PK" 03 04 >15515)",                                            0},

    // The directory at 15,000: the entry's offset field stands 42 bytes on and leads to 16,000.
    {"Directory",                     R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 00 00)",          1803},
    {"DirectoryInALongFile",          R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >69994 d:15000 00 00)",          1803},
    {"DirectoryFarOff",               R"(>100 w:200 >70000 "PK" 03 04 >80042 d:70000 >90000 d:80000 00 00)",          1803},
    {"DirectoryAndLastTwoBytes",      R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 FF FF)",          1803},
    {"DirectoryWithAComment",         R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 04 00 "note")",      0},
    {"DirectoryWithOneByteMore",      R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 00 00 00)",          0},
    {"DirectoryWithOneByteLess",      R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 00)",                0},
    {"DirectoryFieldAt41",            R"(>100 w:200 >15041 d:16000 00 >16000 "PK" 03 04 >19994 d:15000 00 00)",          0},
    {"DirectoryFieldAt43",            R"(>100 w:200 >15043 d:16000 >16000 "PK" 03 04 >19994 d:15000 00 00)",             0},
    {"DirectoryIsLittleEndian",       R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 D:15000 00 00)",             0},
    {"EntryIsLittleEndian",           R"(>100 w:200 >15042 D:16000 >16000 "PK" 03 04 >19994 d:15000 00 00)",             0},
    {"EntryLeadsOneTooFar",           R"(>100 w:200 >15042 d:16001 >16000 "PK" 03 04 >19994 d:15000 00 00)",             0},
    {"EntryLeadsToAnotherSignature",  R"(>100 w:200 >15042 d:16000 >16000 "PK" 01 02 >19994 d:15000 00 00)",             0},
    {"EntryLeadsToOffset0",           R"("PK" 03 04 >100 w:200 >19994 d:15000 00 00)",                                1803},
    {"EntryLeadsBehindTheEnd",        R"(>100 w:200 >15042 d:20000 >19994 d:15000 00 00)",                               0},
    {"EntryLeadsToTheLastThreeBytes", R"(>100 w:200 >15042 d:19999 >19994 d:15000 00 "PK" 03)",                          0},
    {"EntryLeadsTo4GiB",              R"(>100 w:200 >15042 d:0xFFFFFFFF >19994 d:15000 00 00)",                          0},
    {"DirectoryBehindTheEnd",         R"(>100 w:200 >19994 d:20000 00 00)",                                              0},
    {"DirectoryAtTheVeryEnd",         R"(>100 w:200 >19994 d:19955 00 00)",                                              0},
    {"DirectoryOf2GiB",               R"(>100 w:200 >19994 d:0x80000000 00 00)",                                         0},
    // The sum with 42 wraps in 32 bits: FFFFFFD6 leads to offset 0, FFFFFFDA to offset 4.
    {"DirectoryWrapsToOffset0",       R"(d:16000 >100 w:200 >16000 "PK" 03 04 >19994 d:0xFFFFFFD6 00 00)",            1803},
    {"DirectoryWrapsToOffset4",       R"(>4 d:16000 >100 w:200 >16000 "PK" 03 04 >19994 d:0xFFFFFFDA 00 00)",         1803},
    {"DirectoryOneBelowTheWrap",      R"(d:16000 >100 w:200 >16000 "PK" 03 04 >19994 d:0xFFFFFFD5 00 00)",               0},

    // The road to the directory goes past all the steps in front of it.
    {"DirectoryInAFileOf15515Bytes",  R"(>100 w:200 >300 "PK" 03 04 >15042 d:300 >15509 d:15000 00 00)",                 0},
    {"DirectoryInAFileOf15516Bytes",  R"(>100 w:200 >300 "PK" 03 04 >15042 d:300 >15510 d:15000 00 00)",              1803},
    {"DirectoryInAFileOf38429Bytes",  R"(>100 w:200 >300 "PK" 03 04 >15042 d:300 >38423 d:15000 00 00)",              1803},
    {"DirectoryInAFileOf38430Bytes",  R"(>100 w:200 >300 "PK" 03 04 >15042 d:300 >38424 d:15000 00 00)",              1803},
    {"WordAt100ToTheLast4Bytes",      R"(>100 w:19996 >300 "PK" 03 04 >15042 d:300 >19994 d:15000 00 00)",            1803},
    {"WordAt100ToTheLast3Bytes",      R"(>100 w:19997 >300 "PK" 03 04 >15042 d:300 >19994 d:15000 00 00)",               0},
    {"WordAt100BehindTheEnd",         R"(>100 w:40000 >300 "PK" 03 04 >15042 d:300 >19994 d:15000 00 00)",               0},
    {"EmptyFile",                     "",                                                                                0},
    // clang-format on
};

class ProbeZipStub : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeZipStub, Answers) { EXPECT_EQ(FIAnswerOf(FIProbeZipStub, FIBytes(GetParam().bytes)), GetParam().answer); }
INSTANTIATE_TEST_SUITE_P(Programs, ProbeZipStub, testing::ValuesIn(zipStubCases), FICaseName);

TEST(ZipStub, EveryBitOfTheSignature) {
    for (const std::uint32_t place : {12784U, 15512U, 38426U}) {
        const std::string file = FIBytes(">" + std::to_string(place) + R"( "PK" 03 04 >40000)");
        EXPECT_EQ(FIAnswerOf(FIProbeZipStub, file), 1803) << place;
        for (std::uint32_t bit = 0; bit < 32; ++bit) {
            std::string changed = file;
            changed[place + bit / 8] = static_cast<char>(changed[place + bit / 8] ^ (1 << bit % 8));
            EXPECT_EQ(FIAnswerOf(FIProbeZipStub, changed), 0) << place << ' ' << bit;
        }
    }
}

// A program of 20,000 bytes with an archive behind it, found through its directory.
const char* const programWithDirectory = R"(>100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 00 00)";

TEST(ZipStub, EveryFailedSeekIsANo) {
    // 12,784; 15,512; 38,426 twice; 100; 200; the end less 6, by the handle and by the reader; the entry; the header.
    constexpr std::uint32_t seeks = 10;
    const std::string file = FIBytes(programWithDirectory);
    for (std::uint32_t seek = 0; seek < seeks; ++seek) {
        EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeZipStub, file, seek), 0) << seek;
    }
    EXPECT_EQ(FIAnswerWithFailedSeek(FIProbeZipStub, file, seeks), 1803);
}

TEST(ZipStub, TheDirectoryNeedsTheEndOfTheFile) {
    const auto noSeekFromEnd = FIMakeTestHandle(FIBytes(programWithDirectory));
    noSeekFromEnd->failSeekFromEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *noSeekFromEnd), 0);
    const auto noTell = FIMakeTestHandle(FIBytes(programWithDirectory));
    noTell->failTell = true;
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *noTell), 0);
    // The steps in front of it do without.
    for (const char* const notation : {R"(>12784 "PK" 03 04)", R"(>15512 "PK" 03 04)", R"(>38426 "PK" 03 04)",
                                       R"(>100 w:200 >200 "PK" 03 04 >15516)"}) {
        const auto handle = FIMakeTestHandle(FIBytes(notation));
        handle->failSeekFromEnd = true;
        handle->failTell = true;
        EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *handle), 1803) << notation;
    }
}

TEST(ZipStub, AHandleThatRefusesToSeekBehindTheEnd) {
    // Such a handle has a seek to 38,426 fail in a shorter file.
    const auto shorter = FIMakeTestHandle(FIBytes(programWithDirectory));
    shorter->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *shorter), 0);
    const auto longer = FIMakeTestHandle(FIBytes(R"(>100 w:200 >300 "PK" 03 04 >15042 d:300 >38420 d:15000 00 00)"));
    longer->refuseSeekBehindEnd = true;
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *longer), 1803) << "38,426 is the end";
}

TEST(ZipStub, TheThirdPlaceIsLookedAtTwice) {
    // Quirk: the test stands there twice. Each look at the end of the file costs a read that delivers nothing.
    const auto shorter = FIMakeTestHandle(FIBytes(programWithDirectory));
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *shorter), 1803);
    EXPECT_EQ(shorter->emptyReads, 2U);
    // A read that fails the first time hides the signature from the first look alone.
    const auto flaky = FIMakeTestHandle(FIBytes(R"(>38426 "PK" 03 04)"));
    flaky->failRead = 2;
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *flaky), 1803);
    // The first two places are looked at once, and there a failure is a no.
    for (const char* const notation : {R"(>12784 "PK" 03 04)", R"(>15512 "PK" 03 04)"}) {
        const std::string file = FIBytes(notation);
        const auto once = FIMakeTestHandle(file);
        once->failRead = file.size() == 12788 ? 0 : 1;
        EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *once), 0) << notation;
    }
}

TEST(ZipStub, ReadsNoMoreThanItsPlaces) {
    const auto handle = FIMakeTestHandle(std::string(1 << 20, '\0'));
    EXPECT_EQ(FIAnswerOver(FIProbeZipStub, *handle), 0);
    EXPECT_LE(handle->reads, 9U);
}

// ---- 1814: LHA behind a program -------------------------------------------------------------------------------------
//
// A header at k has "-lz?-" or "-lh?-" at k + 2 and its level, 0 to 2, at k + 20.

constexpr std::size_t lhaBlock = 4096;
constexpr std::size_t lhaHeader = 21;  // bytes from k to the level

const ProbeCase lhaStubCases[] = {
    // clang-format off
    {"AtTheStart",                 R"(00 00 "-lh5-" 00*13 02)",              1814},
    {"BehindAProgram",             R"("MZ" >100 00 00 "-lh5-" 00*13 01)",    1814},
    {"LevelZero",                  R"(00 00 "-lh5-" 00*13 00)",              1814},
    {"LevelOne",                   R"(00 00 "-lh5-" 00*13 01)",              1814},
    {"LevelThree",                 R"(00 00 "-lh5-" 00*13 03)",                 0},
    {"LevelFF",                    R"(00 00 "-lh5-" 00*13 FF)",                 0},
    {"LevelAsADigit",              R"(00 00 "-lh5-" 00*13 "0")",                0},
    {"LevelOneByteTooEarly",       R"(00 00 "-lh5-" FF*12 00 FF)",              0},
    {"LevelOneByteTooLate",        R"(00 00 "-lh5-" FF*14 00)",                 0},
    {"MethodLz",                   R"(00 00 "-lzs-" 00*13 02)",              1814},
    {"MethodLx",                   R"(00 00 "-lx5-" 00*13 02)",                 0},
    {"MethodLg",                   R"(00 00 "-lg5-" 00*13 02)",                 0},
    {"MethodLi",                   R"(00 00 "-li5-" 00*13 02)",                 0},
    {"MethodInCapitals",           R"(00 00 "-LH5-" 00*13 02)",                 0},
    {"MethodHInCapitals",          R"(00 00 "-lH5-" 00*13 02)",                 0},
    {"MethodDigitIsFree",          R"(00 00 "-lh" FF "-" 00*13 02)",         1814},
    {"MethodDigitOfZero",          R"(00 00 "-lh" 00 "-" 00*13 02)",         1814},
    {"NoFirstMinus",               R"(00 00 "+lh5-" 00*13 02)",                 0},
    {"NoLastMinus",                R"(00 00 "-lh5+" 00*13 02)",                 0},
    {"TwoDigits",                  R"(00 00 "-lh55-" 00*13 02)",                0},
    {"OtherBytesAreFree",          R"(FF FF "-lh5-" FF*13 02)",              1814},
    {"MethodAtOffset1",            R"(00 "-lh5-" 00*14 02)",                    0},
    {"MethodAtOffset3",            R"(00 00 00 "-lh5-" 00*13 02)",           1814},
    {"BytesBehindAreFree",         R"(00 00 "-lh5-" 00*13 02 FF*5000)",      1814},
    {"WrongOneThenRightOne",       R"(00 00 "-lh5-" 00*13 03 "-lh5-" 00*13 02)", 1814},
    {"RightOneThenWrongOne",       R"(00 00 "-lh5-" 00*13 02 "-lh5-" 00*13 03)", 1814},
    {"TwoThatOverlap",             R"(00 00 "-lh5-lh5-" 03*13 02)",     1814},
    {"TwentyBytes",                R"(00 00 "-lh5-" 00*13)",                    0},
    {"TwentyOneBytes",             R"(00 00 "-lh5-" 00*13 00)",              1814},
    {"TwentyOneBytesAtOne",        R"(00 00 00 "-lh5-" 00*13)",                 0},
    {"TwentyTwoBytesAtOne",        R"(00 00 00 "-lh5-" 00*14)",              1814},
    {"MethodAlone",                R"("-lh5-")",                                0},
    {"Zeros",                      "00*5000",                                   0},
    {"AtOffset12000",              R"("MZ" >11998 00 00 "-lh5-" 00*13 02 >20000)", 0},
    {"EmptyFile",                  "",                                          0},
    // clang-format on
};

class ProbeLhaStub : public testing::TestWithParam<ProbeCase> {};
TEST_P(ProbeLhaStub, Answers) {
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeLhaStub, FIBytes(GetParam().bytes)), GetParam().answer);
}
INSTANTIATE_TEST_SUITE_P(Programs, ProbeLhaStub, testing::ValuesIn(lhaStubCases), FICaseName);

// A file of this size with a header at k; what does not fit is cut off.
std::string FIMakeLha(std::size_t size, std::size_t k) {
    std::string bytes = std::string(k, '\xEE') + FIBytes(R"(EE EE "-lh5-" EE*13 02)");
    bytes.resize(size, '\xEE');
    return bytes;
}

TEST(LhaStub, EveryPlaceInTheFirst4096Bytes) {
    for (const std::size_t size : {lhaBlock - 1, lhaBlock, lhaBlock + 1, lhaBlock + 1000}) {
        const std::size_t read = std::min(size, lhaBlock);
        for (std::size_t k = 0; k < size; k += k < 40 || k > 4000 ? 1 : 97) {
            const auto handle = FIMakeTestHandle(FIMakeLha(size, k));
            const FIID answer = k + lhaHeader <= read ? 1814 : 0;
            EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *handle), answer) << k << " of " << size;
        }
    }
}

TEST(LhaStub, EveryPlaceInAShortFile) {
    for (std::size_t size = 0; size <= 64; ++size) {
        for (std::size_t k = 0; k <= size; ++k) {
            const FIID answer = k + lhaHeader <= size ? 1814 : 0;
            EXPECT_EQ(FIAnswerOfBlockReader(FIProbeLhaStub, FIMakeLha(size, k)), answer) << k << " of " << size;
        }
    }
}

TEST(LhaStub, EveryByteOfTheHeader) {
    const std::string file = FIMakeLha(200, 100);
    for (std::size_t place = 0; place < lhaHeader; ++place) {
        for (std::uint32_t byte = 0; byte <= 0xFF; ++byte) {
            std::string changed = file;
            changed[100 + place] = static_cast<char>(byte);
            bool fits = true;
            if (place == 2 || place == 6) fits = byte == '-';
            if (place == 3) fits = byte == 'l';
            if (place == 4) fits = byte == 'h' || byte == 'z';
            if (place == 20) fits = byte <= 2;
            const auto handle = FIMakeTestHandle(changed);
            EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *handle), fits ? 1814 : 0) << place << ": " << byte;
        }
    }
}

TEST(LhaStub, ReadsOneBlockFromTheStart) {
    const std::string file = FIMakeLha(10000, 100);
    const auto handle = FIMakeTestHandle(file);
    EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *handle), 1814);
    EXPECT_EQ(handle->reads, 1U);
    EXPECT_EQ(handle->bytesDelivered, lhaBlock);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeLhaStub, file, 5000), 1814);
    EXPECT_EQ(FIAnswerOfBlockReader(FIProbeLhaStub, FIMakeLha(10000, 5000), 5000), 0);
}

TEST(LhaStub, AShortReadIsAllThatIsLookedAt) {
    for (const std::uint32_t bytesPerRead : {1U, 20U, 21U, 121U, 120U}) {
        const std::size_t k = bytesPerRead < 100 ? 0 : 100;
        const auto handle = FIMakeTestHandle(FIMakeLha(10000, k));
        handle->bytesPerRead = bytesPerRead;
        EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *handle), k + lhaHeader <= bytesPerRead ? 1814 : 0) << bytesPerRead;
        EXPECT_EQ(handle->reads, 1U);
    }
}

TEST(LhaStub, NoStatusIsLookedAt) {
    // The handle stands at 0 without the seek.
    const auto noSeek = FIMakeTestHandle(FIMakeLha(200, 100));
    noSeek->failSeeksFrom = 0;
    EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *noSeek), 1814);
    // A read that reports a failure and delivers bytes all the same.
    const auto failedRead = FIMakeTestHandle(FIMakeLha(200, 100));
    FIReportFailedReads(*failedRead);
    EXPECT_EQ(FIAnswerOver(FIProbeLhaStub, *failedRead), 1814);
}

// ---- The whole system -----------------------------------------------------------------------------------------------

const DecidedCase wholeCases[] = {
    // clang-format off
    {"ZipAtTheFirstPlace",         R"("MZ" >12784 "PK" 03 04)",                                            1803, 272_row, "setup.exe"},
    {"ZipAtTheSecondPlace",        R"("MZ" >15512 "PK" 03 04)",                                            1803, 272_row, "setup.exe"},
    {"ZipAtTheThirdPlace",         R"("MZ" >38426 "PK" 03 04)",                                            1803, 272_row, "setup.exe"},
    {"ZipAtTheWordAt100",          R"("MZ" >100 w:200 >200 "PK" 03 04 >15516)",                            1803, 272_row, "setup.exe"},
    {"ZipByItsDirectory",          R"("MZ" >100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 00 00)", 1803, 272_row, "setup.exe"},
    {"ZipWithAComment",            R"("MZ" >100 w:200 >15042 d:16000 >16000 "PK" 03 04 >19994 d:15000 04 00 "note")", 1800, 275_row, "setup.exe"},
    {"ZipInAShortFile",            R"("MZ" >100 w:200 >200 "PK" 03 04 >15515)",                            1800, 275_row, "setup.exe"},
    {"ZipWithoutAProgram",         R"("XY" >12784 "PK" 03 04)",                                            1803, 272_row},
    {"ZipBeforeLha",               R"("MZ" >100 00 00 "-lh5-" 00*13 02 >12784 "PK" 03 04)",                1803, 272_row},
    {"LhaBehindAProgram",          R"("MZ" >100 00 00 "-lh5-" 00*13 02 >400)",                             1814, 274_row, "setup.exe"},
    {"LhaBehindALongProgram",      R"("MZ" >4075 "ab-lh5-" 00*13 02 >6000)",                               1814, 274_row, "setup.exe"},
    {"LhaBehindALongerProgram",    R"("MZ" >4076 "ab-lh5-" 00*13 02 >6000)",                               1800, 275_row, "setup.exe"},
    {"LhaAtOffset12000",           R"("MZ" >11998 "ab-lh5-" 00*13 02 >12500)",                             1800, 275_row, "setup.exe"},
    {"LhaOfLevel3BehindAProgram",  R"("MZ" >100 00 00 "-lh5-" 00*13 03 >400)",                             1800, 275_row, "setup.exe"},
    {"LhaAtTheStart",              R"(22 7A "-lh5-" 81*13 02 81*20)",                                      1813, 273_row, "notes.lzh"},
    {"LhaOfAnyMethodAtTheStart",   R"(22 7A "-lx5-" 81*13 02 81*20)",                                      1813, 273_row, "notes.lzh"},
    {"LhaOfLevel3AtTheStart",      R"(22 7A "-lh5-" 81*13 03 81*20)",                                      1999,   0, "notes.lzh"},
    {"LhaOneByteOn",               R"(22 7A 81 "-lh5-" 81*13 02 81*20)",                                   1814, 274_row, "notes.lzh"},
    {"LhaOf21Bytes",               R"(22 7A "-lh5-" 81*13 02)",                                            1813, 273_row, "notes.lzh"},
    {"LhaOf20Bytes",               R"(22 7A "-lh5-" 81*13)",                                               1999,   0, "notes.lzh"},
    {"ProgramAlone",               R"("MZ" >12788)",                                                       1800, 275_row, "setup.exe"},
    // clang-format on
};

class ArchiveRows : public testing::TestWithParam<DecidedCase> {};
TEST_P(ArchiveRows, AreToldByTheirRow) { FIExpectDecision(GetParam()); }
INSTANTIATE_TEST_SUITE_P(WholeSystem, ArchiveRows, testing::ValuesIn(wholeCases), FICaseName);

constexpr std::uint16_t tarRow = 100_row;

TEST(ArchiveRows, Tar) {
    struct Archive {
        const char* name;
        std::string bytes;
        FIID answer;
        std::uint16_t row;
    };
    const std::string accented = FIMakeTarHeader("r\xE9sum\xE9.txt");
    const std::string wrong = FIWithChecksum(FIMakeTarHeader(), wrongChecksum);
    std::string blanks = FIMakeTarHeader();
    blanks.replace(tarFields, tarChecksum - tarFields, tarChecksum - tarFields, ' ');
    const Archive archives[] = {
        {"right sum", FIFinished(FIMakeTarHeader()) + std::string(1024, 'x'), 1807, tarRow},
        {"signed sum", FIWithSum(accented, FISumSigned(accented)), 1807, tarRow},
        {"unsigned sum", FIWithSum(accented, FISumUnsigned(accented)), 1807, tarRow},
        {"blank fields", FIFinished(blanks), 1807, tarRow},
        {"short file", FIFinished(FIMakeTarHeader()).substr(0, 157), 1807, tarRow},
        {"sum of words", FIWithWordSum(wrong, 0), 1807, tarRow},
        {"wrong sum", FIWithWordSum(wrong, 1), 1999, 0},
        {"zeros", std::string(tarBlock, '\0'), 1999, 0},
        {"a name of letters and no checksum",
         FIWithWordSum(FIWithChecksum(FIMakeTarHeader(), std::string(tarChecksumSize, '\0')), 0), 1999, 0},
        {"a PDF's mark as the name", FIFinished(FIMakeTarHeader("%PDF-1.4")), 1807, tarRow},
        {"empty file", "", 1999, 0},
    };
    for (const Archive& archive : archives) {
        std::uint16_t row = 0;
        EXPECT_EQ(FIIdentifyBytes(archive.bytes, "backup.tar", 0, &row), archive.answer) << archive.name;
        EXPECT_EQ(row, archive.row) << archive.name;
    }
}

}  // namespace
