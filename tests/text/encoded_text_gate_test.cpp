// The encoded-text probe, which lowers few lines, and its gate, against the lowering of every line.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/ascii_case.h"
#include "reader/header_line.h"
#include "reader/white_space.h"
#include "support/bytes.h"
#include "support/head_input.h"
#include "support/ordinary_files.h"
#include "support/random_numbers.h"
#include "support/routine_run.h"
#include "text/encoded_text.h"

namespace {

using namespace std::string_literals;

// ---- The scan that lowers every line --------------------------------------------------------------------------------

struct PlainScan {
    FIReader& reader;
    std::array<char, headerLineBufferSize> line = {};
    std::uint16_t length = 0;
    bool uuOpen = true;
    bool xxOpen = true;
    std::uint32_t uuRun = 0;
    std::uint32_t xxRun = 0;
    std::uint32_t hexRun = 0;
    std::uint32_t idle = 0;

    bool Next() { return (length = FIReadHeaderLine(line.data(), headerLineCapacity, reader)) != 0; }
    std::string_view Text() const { return line.data(); }
    bool StartsWith(std::string_view word) const { return Text().starts_with(word); }
};

bool ExtendPlainly(PlainScan& scan, std::uint32_t& run) {
    if (run > 0) return ++run > 5;
    if (scan.length > 44) {
        run = 1;
        scan.idle = 0;
    }
    return false;
}

FIID FollowPlainly(PlainScan& scan, bool fits, bool& open, std::uint32_t& run, FIID answer) {
    if (fits) return ExtendPlainly(scan, run) ? answer : FIID{0};
    if (run == 0) return 0;
    if (scan.StartsWith("end")) return answer;
    open = false;
    run = 0;
    return 0;
}

FIID FollowRunsPlainly(PlainScan& scan) {
    if (scan.uuOpen) {
        const FIID answer = FollowPlainly(scan, FIIsUuLine(scan.line.data(), 0), scan.uuOpen, scan.uuRun, 4051);
        if (answer != 0) return answer;
    }
    if (scan.xxOpen) {
        const FIID answer = FollowPlainly(scan, FIIsXxLine(scan.line.data()), scan.xxOpen, scan.xxRun, 4053);
        if (answer != 0) return answer;
    }
    if (!FIIsBinHexLine(scan.line.data())) {
        scan.hexRun = 0;
        return 0;
    }
    const bool closing = scan.line[scan.length - 1U] == ':';
    if (closing && scan.hexRun == 0) return 0;
    return ExtendPlainly(scan, scan.hexRun) || closing ? 4057 : 0;
}

FIID FollowBeginPlainly(PlainScan& scan) {
    if (!scan.Next()) return 0;
    if (FIIsUuLine(scan.line.data(), 'z')) {
        if (!scan.Next()) return 0;
        if (FIIsUuLine(scan.line.data(), 'y') || scan.StartsWith("end")) return 4050;
    }
    if (!FIIsXxLine(scan.line.data()) || !scan.Next()) return 0;
    return FIIsXxLine(scan.line.data()) || scan.StartsWith("end") ? 4052 : 0;
}

std::uint16_t TakeNumberPlainly(std::string_view& text) {
    std::uint16_t value = 0;
    while (!text.empty() && text.front() >= '1' && text.front() <= '8') {
        value = static_cast<std::uint16_t>(value * 10 + (text.front() - '0'));
        text.remove_prefix(1);
    }
    return value;
}

bool SkipPastPlainly(std::string_view& text, std::string_view word) {
    const std::size_t found = text.find(word);
    if (found != std::string_view::npos) text.remove_prefix(found + word.size());
    return found != std::string_view::npos;
}

FIID FollowYEncPlainly(PlainScan& scan) {
    if (!FIIsAsciiRun(scan.line.data(), scan.length)) return 0;
    std::string_view text = scan.Text();
    const std::uint16_t part = SkipPastPlainly(text, "part=") ? TakeNumberPlainly(text) : std::uint16_t{0};
    if (!SkipPastPlainly(text, "line=")) return 0;
    const std::uint16_t lineLength = TakeNumberPlainly(text);
    if (!SkipPastPlainly(text, "size=") || !SkipPastPlainly(text, "name=") || !scan.Next()) return 0;
    if (scan.Text().find("=ypart ") != std::string_view::npos) {
        if (!FIIsAsciiRun(scan.line.data(), scan.length)) return 0;
        static_cast<void>(scan.Next());
    }
    const std::size_t length = scan.Text().size();
    if (length != lineLength && length != lineLength + 1U) {
        static_cast<void>(scan.Next());
        if (!scan.StartsWith("=yend ") || !FIIsAsciiRun(scan.line.data(), lineLength)) return 0;
    }
    return part > 1 ? 4055 : 4054;
}

bool NextBinHexPlainly(PlainScan& scan) {
    return scan.Next() && scan.length <= 64 && FIIsAsciiRun(scan.line.data(), scan.length);
}

std::optional<FIID> TryHeadersPlainly(PlainScan& scan) {
    if (scan.length < 11) return std::nullopt;
    const bool mode = scan.Text().substr(6, 3).find_first_not_of("0123456") == std::string_view::npos;
    if (scan.StartsWith("begin ") && mode && scan.line[9] == ' ') return FollowBeginPlainly(scan);
    if (scan.StartsWith("=ybegin ")) return FollowYEncPlainly(scan);
    if (scan.length > 64 || !scan.StartsWith("(this file must be converted with binhex 4.0)")) return std::nullopt;
    std::uint16_t byte = 0;
    do {
        byte = FIReaderGetByte(scan.reader);
    } while (byte == '\r' || byte == '\n');
    if (byte != ':') return std::nullopt;
    if (!NextBinHexPlainly(scan)) return FIID{0};
    return scan.line[scan.length - 1U] == ':' || NextBinHexPlainly(scan) ? FIID{4056} : FIID{0};
}

FIID ProbePlainly(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    PlainScan scan = {.reader = reader};
    for (std::uint32_t lines = 0; lines < 300; ++lines) {
        FISkipWhiteSpace(reader);
        if (!scan.Next()) return 0;
        const FIID run = FollowRunsPlainly(scan);
        if (run != 0) return run;
        for (std::size_t index = 0; index < scan.length; ++index) {
            if (scan.line[index] == '\0') return 0;
            scan.line[index] = FILowerAscii(scan.line[index]);
        }
        if (scan.StartsWith("_=_")) continue;
        const std::optional<FIID> header = TryHeadersPlainly(scan);
        if (header) return *header;
        if (scan.idle > 10) return 0;
        ++scan.idle;
    }
    return 0;
}

// ---- Inputs -------------------------------------------------------------------------------------------------------

const std::string uu = "M" + std::string(60, '.');
const std::string xx = "h" + std::string(60, 'z');
const std::string hex = std::string(64, '!');
const std::vector<std::string> lines = {
    uu,
    uu,
    uu + "z",
    uu + "y",
    "M" + std::string(60, ' ') + "z",
    "M" + std::string(60, ' '),
    "?" + std::string(40, '.'),
    "B" + std::string(44, '.'),
    "<" + std::string(36, '#'),
    xx,
    xx,
    "c" + std::string(44, 'z'),
    "6" + std::string(12, 'z'),
    hex,
    hex,
    std::string(46, '!'),
    std::string(45, '!'),
    std::string(44, '!') + ":",
    std::string(65, '!'),
    "!!:",
    std::string(66, '!'),
    "end",
    "END",
    "begin 644 a.txt",
    "BEGIN 644 a.txt",
    "begin 755 a.txt",
    "Begin 666 ",
    "=ybegin ",
    "=ybegin line=128 size=123 name=a.bin",
    "=yBegin part=2 line=11 size=1 name=x",
    "=ypart begin=1",
    "=yend size=1",
    "data of 11 b",
    "data of 11b",
    "(This file must be converted with BinHex 4.0)",
    "(this file must",
    ":",
    ":!!!",
    "_=_x",
    "_=_",
    "plain text",
    "x",
    "a line of text that is longer than forty-four characters",
    "# comment",
    "\t",
    "\x80",
    std::string(64, '\xE0'),
    std::string(60, '\xF0'),
    "(This FILE must be converted with BinHex 4.0) and more",
};
const std::vector<std::string> ends = {"\n", "\n", "\r\n", "\r", "\n\r", "\n\n", " \n\t\n", "\r\r\n"};
const std::vector<std::string> rare = {"\0"s, "\0\n"s, "", " ", "\n \0x\n"s};

const std::vector<std::string> encodings = {
    "begin 644 a.txt\n" + uu + "z\n" + uu + "y\nend\n",
    "Begin 600 a.txt\r\n" + uu + "z\r\nend\r\n",
    "begin 644 a.txt\n" + xx + "\n" + xx + "\n",
    "BEGIN 644 A.TXT\r" + xx + "\rend\r",
    "=ybegin line=11 size=11 name=a\ndata of 11 \n=yend size=11\n",
    "=YBegin part=2 line=11 size=11 NAME=a\n=ypart begin=1\ndata of 11 b\n=yend size=11\n",
    "(This file must be converted with BinHex 4.0)\r\n:" + hex + "\r\n" + hex + "\r\n",
};

std::string SomeLines(RandomNumbers& random) {
    std::string file;
    const std::string& often = random.Of(lines);
    for (std::uint32_t count = random.Below(18); count > 0; --count) {
        if (random.OneIn(40)) file += std::string(1018 + random.Below(8), random.OneIn(2) ? 'x' : ' ');
        if (random.OneIn(150)) file += std::string(random.Below(9000), random.OneIn(2) ? 'x' : ' ');
        if (random.OneIn(30)) file += random.Of(encodings);
        file += random.OneIn(2) ? often : random.Of(lines);
        file += random.OneIn(30) ? random.Of(rare) : random.Of(ends);
    }
    if (!file.empty() && random.OneIn(3)) {
        file[random.Below(static_cast<std::uint32_t>(file.size()))] = static_cast<char>(random.Below(256));
    }
    return file;
}

FIID EncodedTextAnswer(const std::string& file) { return FIRunOver(FIProbeEncodedText, file).answer; }

// ---- Tests --------------------------------------------------------------------------------------------------------

TEST(EncodedTextProbe, DoesWhatItDoesWithEveryLineLowered) {
    RandomNumbers random(6);
    std::array<std::uint32_t, 8> answers = {};
    for (std::uint32_t round = 0; round < 12000 && !HasFailure(); ++round) {
        const std::string file = SomeLines(random);
        const RoutineHandle handle = FISomeHandle(random);
        const RoutineRun run = FIRunOver(FIProbeEncodedText, file, handle);
        EXPECT_EQ(run, FIRunOver(ProbePlainly, file, handle)) << testing::PrintToString(file);
        if (run.answer != 0) ++answers.at(run.answer - 4050U);
    }
    for (const std::uint32_t count : answers) EXPECT_GT(count, 3U) << testing::PrintToString(answers);
}

TEST(EncodedTextGate, RulesOutNoEncodedText) {
    RandomNumbers random(7);
    std::uint32_t closed = 0;
    for (std::uint32_t round = 0; round < 16000 && !HasFailure(); ++round) {
        closed += FIExpectGateHolds(FIMayBeEncodedText, EncodedTextAnswer, SomeLines(random), random);
    }
    EXPECT_GT(closed, 200U);
}

// One line of interest among idle ones: the gate must see each, up to the last that the scan looks at.
TEST(EncodedTextGate, SeesEveryLineOfTheScan) {
    RandomNumbers random(8);
    std::uint32_t closed = 0;
    for (std::uint32_t round = 0; round < 12000 && !HasFailure(); ++round) {
        const std::string idle = random.OneIn(20) ? std::string(1022, 'x') : "idle" + random.Of(ends);
        std::string file = FIRepeat(idle, random.Below(14));
        file += random.OneIn(3) ? random.Of(encodings) : random.Of(lines) + random.Of(ends);
        file += FIRepeat(random.Of(lines) + random.Of(ends), random.Below(8));
        file += FIRepeat("idle\n", random.Below(14));
        closed += FIExpectGateHolds(FIMayBeEncodedText, EncodedTextAnswer, file, random);
    }
    EXPECT_GT(closed, 1000U);
}

bool IsClosed(const std::string& file) { return !FIAskGate(FIMayBeEncodedText, file, largestHead); }

TEST(EncodedTextGate, IsClosedForOrdinaryFiles) {
    for (const std::string& file : FIOrdinaryFiles()) EXPECT_TRUE(IsClosed(file));
    EXPECT_TRUE(IsClosed(""));
    EXPECT_TRUE(IsClosed(FIRepeat("x\n", 12) + std::string(largestHead, 'x')));
    EXPECT_FALSE(IsClosed(FIRepeat("x\n", 11) + "begin 644 a.txt\n" + uu + "z\n" + uu + "y\n"));
    EXPECT_TRUE(IsClosed(FIRepeat("x\n", 12) + "begin 644 a.txt\n" + uu + "z\n" + uu + "y\n"));
    EXPECT_FALSE(IsClosed(std::string(largestHead + 1, 'x')));
    EXPECT_FALSE(IsClosed(FIRepeat(uu + "\n", 6)));
}

}  // namespace
