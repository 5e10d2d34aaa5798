// The gates of costly routines: where a gate is closed, the routine returns 0. Each is tried over files that are made of
// the words that its routine looks for, so that both sides come up often. (Those of text, and of raw fax, have tests with
// their routines.)
#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/routines.h"
#include "reader/head.h"
#include "reader/reader.h"
#include "support/case_name.h"
#include "support/open_file.h"
#include "support/ordinary_files.h"

namespace {

using namespace std::string_literals;
using ::PrintTo;

struct GateCase {
    const char* name;
    std::uint16_t routine;
    std::vector<std::string> words;    // put in now and then
    std::vector<std::size_t> lengths;  // of files, a few bytes more or less
    double filler;                     // how often a piece is plain text
    bool answersSometimes = true;      // whether the routine answers for some of them
    std::string start = "";            // of half of the files
};

// Files of one case.
class FileMaker {
 public:
    explicit FileMaker(const GateCase& gateCase) : gateCase_(gateCase) {}

    std::string Make() {
        const std::size_t length = Near(gateCase_.lengths[Below(gateCase_.lengths.size())]);
        const bool oneWord = Below(2) == 0;
        const std::string word = Word();
        std::string bytes = Below(2) == 0 ? gateCase_.start : "";
        while (bytes.size() < length) {
            if (Fraction() < gateCase_.filler) {
                bytes += Filler();
            } else {
                bytes += oneWord ? word : Word();
            }
        }
        bytes.resize(length);
        for (std::size_t count = Below(4); count > 0 && length > 0; --count) {
            bytes[Below(length)] = static_cast<char>(Below(256));
        }
        return bytes;
    }

 private:
    std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(engine_); }
    double Fraction() { return std::uniform_real_distribution<double>(0, 1)(engine_); }
    std::size_t Near(std::size_t length) {
        const std::size_t spread = Below(7);
        return length + spread >= 3 ? length + spread - 3 : 0;
    }
    const std::string& Word() { return gateCase_.words[Below(gateCase_.words.size())]; }
    std::string Filler() {
        constexpr std::string_view text =
            "The ferry left the island at seven, and nobody + nobody minded. 50%-like\r\n";
        const std::size_t start = Below(text.size());
        return std::string(text.substr(start, 1 + Below(40)));
    }

    const GateCase& gateCase_;
    std::mt19937 engine_{20261121};
};

struct GateTally {
    std::uint32_t closed = 0;
    std::uint32_t open = 0;
    std::uint32_t answered = 0;
};

bool GateIsOpen(const FIRoutine& routine, HIOFILE file) {
    FIHead head;
    EXPECT_TRUE(FITakeHead(file, head));
    return routine.gate(head);
}

// Runs the routine without a head, as it runs over a host's handle.
FIID Answer(const FIRoutine& routine, HIOFILE file) {
    FIReader* const reader = FIReaderNew(file);
    const FIID answer = FIRunRoutine(routine, *reader, "");
    static_cast<void>(FIReaderFree(*reader));
    return answer;
}

void TryFile(const FIRoutine& routine, const std::string& bytes, GateTally& tally) {
    const OpenFile file(bytes);
    const bool open = GateIsOpen(routine, file.File());
    const FIID answer = Answer(routine, file.File());
    ++(open ? tally.open : tally.closed);
    if (answer != 0) ++tally.answered;
    ASSERT_TRUE(open || answer == 0) << "closed, but " << answer << " for " << bytes.size()
                                     << " bytes: " << testing::PrintToString(bytes.substr(0, 200));
}

const std::string tarFields =
    "0000644\0"
    "0000765\0"
    "0000024\0"
    "00000000005\0"
    "14371573011\0"s;

std::string TarHeader() {
    std::string header = "name" + std::string(96, '\0') + tarFields + "        0";
    header.resize(512);
    std::uint32_t sum = 0;
    for (const char byte : header) sum += static_cast<std::uint8_t>(byte);
    std::string digits(6, '0');
    for (std::size_t place = 6; place > 0; sum /= 8) digits[--place] = static_cast<char>('0' + sum % 8);
    return header.replace(148, 6, digits);
}

std::vector<GateCase> MakeCases() {
    return {
        {"HighBitWords",
         1003,
         {"word\xE4 ", "word\xE4\x8D\x8A", "t\xE8 ", "\r\n", "\x8D\x8A", "\r\x8A", "\x1B\xE1\x1C", "\x1E",
          "ab\xF4 cd\xE5 \r\n"},
         {40, 200, 1020, 1026, 2000},
         0.2},
        {"LayoutTrailer",
         1020,
         {std::string(128, '\x1A'), "\x1A\x1ALAYOUT 000\r\n"s,
          "\x1A\x1ALAYOUT 000\r\n"s + std::string(112, '\x1A') + "ab\x01", "x"},
         {128, 256, 257, 1024, 5120, 5121, 5248, 8192, 8320},
         0.3},
        {"FunctionCodes",
         1023,
         {"\xC3x\xC3", "\xC2yy\xC2", "\xD8zz\xD8", "\xE8z\xE8", "\xC3\x01xx\xC3", "\xDC", "\xBC", "\xCC\x01\x02\xCC"},
         {20, 500, 3060, 3072, 3073, 4096, 8192, 9000},
         0.9},
        {"CommandCounts",
         1034,
         {"\x0A\x0B\x52", "\x0E\r\n", "\r\n\x0F", "+\xD1", "+\xD2", "+\xD4", "+\xD3",
          "\xAE"
          "AL",
          "\xAE"
          "TS",
          "\xAE"
          "XX",
          "\xAE"},
         {3, 90, 4090, 4096, 4099, 4102, 8190, 8192, 8300},
         0.97},
        {"Pdf", 1557, {"%PDF-1.", "%PDF-1", "%%PDF-1.4", "%", "PDF-1."}, {7, 60, 1020, 1024, 1030, 8192}, 0.98},
        {"ZipStub", 1803, {"PK\x03\x04", "\0\0"s}, {0, 4, 12780, 12784, 12788, 12790, 15516}, 0.1},
        {"Tar",
         1807,
         {tarFields, "0000644\0"s, std::string(100, '\0'), "name" + std::string(96, '\0') + tarFields, " ", "\0"s},
         {0, 90, 100, 101, 147, 148, 156, 511, 512, 513, 1024},
         0.05,
         true,
         TarHeader()},
        {"LhaStub",
         1814,
         {"ab-lh5-" + std::string(13, 'x') + "\x01", "-lz", "-lh1-", "-", "-l", "\x02"},
         {20, 21, 22, 300, 4090, 4096, 4100, 8192},
         0.9},
    };
}

class Gate : public testing::TestWithParam<GateCase> {};

TEST_P(Gate, IsClosedOnlyWhereTheRoutineSaysNo) {
    const FIRoutine* const routine = FIFindRoutine(GetParam().routine);
    ASSERT_NE(routine, nullptr);
    ASSERT_NE(routine->gate, nullptr);
    FileMaker maker(GetParam());
    GateTally tally;
    for (std::uint32_t round = 0; round < 700; ++round) {
        ASSERT_NO_FATAL_FAILURE(TryFile(*routine, maker.Make(), tally));
    }
    EXPECT_GT(tally.closed, 10U);
    EXPECT_GT(tally.open, 10U);
    EXPECT_EQ(tally.answered > 0, GetParam().answersSometimes);
}

TEST_P(Gate, AgreesOverFilesOfTwoRandomBytesEverywhere) {
    const FIRoutine* const routine = FIFindRoutine(GetParam().routine);
    std::mt19937 engine(7);
    GateTally tally;
    for (std::uint32_t round = 0; round < 200; ++round) {
        const std::string pair = {static_cast<char>(engine()), static_cast<char>(engine())};
        std::string bytes;
        for (std::size_t length = engine() % 3000; bytes.size() < length;) bytes += pair[engine() % 2];
        ASSERT_NO_FATAL_FAILURE(TryFile(*routine, bytes, tally));
    }
}

INSTANTIATE_TEST_SUITE_P(Core, Gate, testing::ValuesIn(MakeCases()), FICaseName);

// What the gates are there for.
TEST(Gates, AreClosedForOrdinaryText) {
    for (const GateCase& gateCase : MakeCases()) {
        const FIRoutine* const routine = FIFindRoutine(gateCase.routine);
        for (const std::string& text : {FIEnglishText("\n"), FIEnglishText("\r\n"), FIProgramSource()}) {
            const OpenFile file(text);
            const bool layout = gateCase.routine == 1020 && text.size() % 128 <= 1;
            EXPECT_EQ(GateIsOpen(*routine, file.File()), layout) << gateCase.name;
        }
    }
}

}  // namespace
