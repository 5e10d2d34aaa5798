// The memo routine's gate, against the routine.
#include <string>
#include <vector>

#include "reader/reader.h"
#include "support/head_input.h"
#include "support/ordinary_files.h"
#include "text/memo_headers.h"

namespace {

using namespace std::string_literals;

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

FIID MemoAnswer(const std::string& file) {
    const auto handle = FIMakeTestHandle(file);
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    return FIProbeMemoHeader(reader);
}

TEST(MemoGate, RulesOutNoMemo) {
    RandomNumbers random(5);
    std::uint32_t closed = 0;
    std::uint32_t memos = 0;
    for (std::uint32_t round = 0; round < 100000 && !HasFailure(); ++round) {
        const std::string file = SomeMemo(random);
        closed += FIExpectGateHolds(FIMayBeMemo, MemoAnswer, file, random);
        if (file.size() > largestHead) continue;
        const FIID answer = MemoAnswer(file);
        EXPECT_EQ(FIAskGate(FIMayBeMemo, file, largestHead), answer != 0) << testing::PrintToString(file);
        memos += answer != 0 ? 1U : 0U;
    }
    EXPECT_GT(closed, 5000U);
    EXPECT_GT(memos, 2000U);
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
