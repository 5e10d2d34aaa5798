// The memo routine against one that takes every byte by itself, and its gate.
#include <string>
#include <string_view>
#include <vector>

#include "reader/ascii_case.h"
#include "reader/reader.h"
#include "support/bytes.h"
#include "support/head_input.h"
#include "support/ordinary_files.h"
#include "support/random_numbers.h"
#include "support/routine_run.h"
#include "text/memo_headers.h"

namespace {

using namespace std::string_literals;

// ---- Byte by byte ---------------------------------------------------------------------------------------------------

std::uint32_t TakeHeadByBytes(FIReader& reader, std::string_view head, std::uint32_t& hits) {
    std::uint32_t column = 1;
    while (column < head.size()) {
        if (FILowerAscii(FIReaderGetByte(reader)) != head[column++]) return column;
    }
    ++hits;
    return column;
}

bool TakeLineByBytes(FIReader& reader, std::uint32_t& hits) {
    std::uint32_t column = 0;
    while (column < 1000) {
        const std::uint16_t character = FIReaderGetByte(reader);
        if (character == '\r') return column != 0 && FIReaderGetByte(reader) == '\n';
        if (character == endOfFile || (character < ' ' && character != '\t')) return false;
        const std::uint16_t letter = column == 0 ? FILowerAscii(character) : std::uint16_t{0};
        if (letter == 'f' || letter == 't') {
            column = TakeHeadByBytes(reader, letter == 'f' ? "from:" : "to:", hits);
        } else {
            ++column;
        }
    }
    return true;
}

FIID ProbeByBytes(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    std::uint32_t hits = 0;
    for (std::uint32_t lines = 0; lines < 15 && hits < 2; ++lines) {
        if (!TakeLineByBytes(reader, hits)) return 0;
    }
    return hits == 2 ? 1132 : 0;
}

// ---- Inputs ---------------------------------------------------------------------------------------------------------

const std::vector<std::string> words = {
    "From: a", "from:", "FROM: b", "To: c", "to:",  "TO:",  "T",     "F",          "Fr",     "Fro", "From", "x",
    "text",    "\t",    " ",       "\x80",  "\xFF", "\x7F", "To:\t", "Subject: x", "TTo: b", "T\n", "F\r",  "From\r",
};
const std::vector<std::string> ends = {"\r\n", "\r\n", "\r\n",   "\r\n", "\r\n", "\r\n", "\r\n", "\r\n",
                                       "\n",   "\r",   "\r\r\n", "\f",   "\0"s,  "\x0B", "\b",   ""};

std::string SomeMemo(RandomNumbers& random) {
    std::string file;
    for (std::uint32_t lines = random.Below(18); lines > 0; --lines) {
        for (std::uint32_t count = random.Below(3); count > 0; --count) file += random.Of(words);
        if (random.OneIn(20)) file += std::string(990 + random.Below(16), random.OneIn(3) ? '\t' : 'x');
        if (random.OneIn(100)) file += std::string(random.Below(17000), 'x');
        file += random.OneIn(2) ? ends.front() : "x" + random.Of(ends);
    }
    if (!file.empty() && random.OneIn(4)) {
        file[random.Below(static_cast<std::uint32_t>(file.size()))] = static_cast<char>(random.Below(256));
    }
    return file;
}

FIID MemoAnswer(const std::string& file) { return FIRunOver(FIProbeMemoHeader, file).answer; }

// ---- Tests ----------------------------------------------------------------------------------------------------------

TEST(MemoProbe, DoesWhatItDoesByteByByte) {
    RandomNumbers random(4);
    for (std::uint32_t round = 0; round < 12000 && !HasFailure(); ++round) {
        const std::string file = SomeMemo(random);
        const RoutineHandle handle = FISomeHandle(random);
        EXPECT_EQ(FIRunOver(FIProbeMemoHeader, file, handle), FIRunOver(ProbeByBytes, file, handle))
            << testing::PrintToString(file);
    }
}

TEST(MemoGate, RulesOutNoMemo) {
    RandomNumbers random(5);
    std::uint32_t closed = 0;
    std::uint32_t memos = 0;
    for (std::uint32_t round = 0; round < 20000 && !HasFailure(); ++round) {
        const std::string file = SomeMemo(random);
        closed += FIExpectGateHolds(FIMayBeMemo, MemoAnswer, file, random);
        if (file.size() > largestHead) continue;
        const FIID answer = MemoAnswer(file);
        EXPECT_EQ(FIAskGate(FIMayBeMemo, file, largestHead), answer != 0) << testing::PrintToString(file);
        memos += answer != 0 ? 1U : 0U;
    }
    EXPECT_GT(closed, 1000U);
    EXPECT_GT(memos, 400U);
}

bool IsClosed(const std::string& file) { return !FIAskGate(FIMayBeMemo, file, largestHead); }

TEST(MemoGate, IsClosedForOrdinaryFiles) {
    for (const std::string& file : FIOrdinaryFiles()) EXPECT_TRUE(IsClosed(file));
    EXPECT_TRUE(IsClosed(""));
    EXPECT_TRUE(IsClosed("From: a\nTo: b\n"));
    EXPECT_TRUE(IsClosed(FIRepeat("text\r\n", 15) + std::string(largestHead, 'x')));
    EXPECT_TRUE(IsClosed(std::string(largestHead, 'x')));
    EXPECT_FALSE(IsClosed(std::string(largestHead + 1, 'x')));
    EXPECT_FALSE(IsClosed("From: a\r\nTo: b\r\n"));
}

}  // namespace
