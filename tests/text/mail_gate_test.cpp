// The mail probe, which leaves most lines as they are, and its gate, against the scoring of every line.
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "reader/ascii_case.h"
#include "reader/header_line.h"
#include "support/bytes.h"
#include "support/head_input.h"
#include "support/ordinary_files.h"
#include "support/random_numbers.h"
#include "support/routine_run.h"
#include "text/mail.h"

namespace {

using namespace std::string_literals;

// ---- Every line, normalised ---------------------------------------------------------------------------------------

struct PlainRow {
    std::string_view keyword;
    std::size_t headerClass;
    std::uint32_t mimePoints;
    std::uint32_t addressPoints;
};

constexpr std::size_t contentType = 1;
constexpr std::size_t newsgroups = 4;

constexpr PlainRow plainRows[] = {
    {"mime-version", 0, 2, 0},
    {"content-type", contentType, 1, 0},
    {"content-description", 2, 1, 0},
    {"content-transfer-encoding", 3, 1, 0},
    {"newsgroups", newsgroups, 1, 0},
    {"message-id", 5, 1, 1},
    {"article-i.d.", 5, 1, 0},
    {"from", 6, 0, 1},
    {"to", 7, 0, 1},
};

struct PlainScores {
    std::uint32_t mime = 0;
    std::uint32_t address = 0;
    std::array<bool, 8> seen = {};
    bool envelope = false;
    bool html = false;
    bool related = false;
};

std::string Normalised(const std::string& line) {
    std::string kept;
    bool inBrackets = false;
    for (const char character : line) {
        if (inBrackets) {
            inBrackets = character != ')';
        } else if (character == '(') {
            inBrackets = true;
        } else {
            kept += FILowerAscii(character);
        }
    }
    return kept;
}

void ScoreRow(PlainScores& scores, const PlainRow& row, const std::string& line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) return;
    if (row.headerClass == 0 && line.find("1.0", colon) == std::string::npos) return;
    scores.seen[row.headerClass] = true;
    scores.mime += row.mimePoints;
    scores.address += row.addressPoints;
    if (row.headerClass != contentType) return;
    if (line.find("text/html", colon) != std::string::npos) {
        scores.html = true;
    } else if (line.find("multipart/related", colon) != std::string::npos) {
        scores.related = true;
    }
}

void ScoreLine(PlainScores& scores, bool isFirst, const std::string& line) {
    if (isFirst) scores.envelope = line.starts_with("from ");
    if (scores.related && !line.starts_with(' ') && !line.starts_with('\t')) scores.related = false;
    if (scores.related && line.find("text/html") != std::string::npos) scores.html = true;
    for (const PlainRow& row : plainRows) {
        if (scores.seen[row.headerClass] || !line.starts_with(row.keyword)) continue;
        ScoreRow(scores, row, line);
        return;
    }
}

FIID DecidePlainly(const PlainScores& scores, std::string_view extension) {
    const bool addressed = scores.address >= 2;
    if (scores.mime < 2) return !addressed ? FIID{0} : scores.envelope ? FIID{1817} : FIID{1132};
    if (scores.seen[newsgroups]) return extension == "NWS" ? 1194 : 1193;
    if (addressed) return extension == "EML" ? FIID{1195} : scores.envelope ? FIID{1817} : FIID{1192};
    if (extension == "MHT") return 1198;
    return scores.envelope ? FIID{1817} : scores.html ? FIID{1198} : FIID{1187};
}

FIID ProbePlainly(FIReader& reader, const char* extension) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    PlainScores scores;
    std::array<char, headerLineBufferSize> buffer;
    for (std::uint32_t index = 0; index < 300; ++index) {
        const std::string line(buffer.data(), FIReadHeaderLine(buffer.data(), headerLineCapacity, reader));
        if (line.empty() || line.find('\0') != std::string::npos) break;
        ScoreLine(scores, index == 0, Normalised(line));
    }
    return DecidePlainly(scores, extension);
}

// ---- Inputs -------------------------------------------------------------------------------------------------------

const std::vector<std::string> words = {
    "From",
    "from ",
    "FROM: a",
    "To",
    "to: b",
    "tO:",
    "Total: 5",
    "MIME-Version: 1.0",
    "mime-version",
    "Mime-Version: 2",
    "Content-Type: text/html",
    "content-type:",
    "Content-Type: multipart/related",
    " text/html",
    "\ttext/html",
    "Content-Description: x",
    "Content-Transfer-Encoding: 8bit",
    "Newsgroups: a",
    "Message-ID: <a>",
    "Article-I.D.: a",
    "Content-Disposition: attachment",
    "Subject: x",
    "The cat",
    "from",
    "(",
    ")",
    "(a)",
    "F(a)rom: b",
    "(from)To: x",
    "t(",
    "m(x)ime-version: (1).0 1.0",
    ":",
    "1.0",
    " ",
    "\t",
    "x",
    "\x80",
    "\x0B",
    "\x1A",
    "@",
    "[",
    "`",
    "{",
};
const std::vector<std::string> ends = {"\n", "\r\n", "\r", "\n\r", "\n", "\r\n"};
const std::vector<std::string> rare = {"\n\n", "\r\n\r\n", "\r\r", "\n\r\n", "\n\r\n\r", "\0"s, "\n\0\n"s};

std::string LongPiece(RandomNumbers& random) {
    switch (random.Below(4)) {
        case 0:
            return std::string(1019 + random.Below(7), 'x');
        case 1:
            return std::string(random.Below(9000), 'x');
        case 2:
            return FIRepeat("x" + random.Of(ends), 290 + random.Below(12));
        default:
            return FIRepeat("to" + random.Of(ends), random.Below(2800));
    }
}

std::string SomeMail(RandomNumbers& random) {
    std::string file;
    for (std::uint32_t lines = random.Below(12); lines > 0; --lines) {
        for (std::uint32_t count = random.Below(4); count > 0; --count) file += random.Of(words);
        if (random.OneIn(60)) file += LongPiece(random);
        file += random.OneIn(12) ? random.Of(rare) : random.Of(ends);
    }
    if (!file.empty() && random.OneIn(3)) {
        file[random.Below(static_cast<std::uint32_t>(file.size()))] = static_cast<char>(random.Below(256));
    }
    return file;
}

FIID MailAnswer(const std::string& file) {
    return FIRunOver([](FIReader& reader) { return FIProbeMail(reader, ""); }, file).answer;
}

// ---- Tests --------------------------------------------------------------------------------------------------------

TEST(MailProbe, DoesWhatItDoesByEveryLine) {
    RandomNumbers random(2);
    const std::vector<const char*> extensions = {"", "NWS", "EML", "MHT"};
    std::uint32_t mails = 0;
    for (std::uint32_t round = 0; round < 12000 && !HasFailure(); ++round) {
        const std::string file = SomeMail(random);
        const RoutineHandle handle = FISomeHandle(random);
        const char* const extension = random.Of(extensions);
        const auto probe = [extension](FIReader& reader) { return FIProbeMail(reader, extension); };
        const auto plain = [extension](FIReader& reader) { return ProbePlainly(reader, extension); };
        const RoutineRun run = FIRunOver(probe, file, handle);
        EXPECT_EQ(run, FIRunOver(plain, file, handle)) << testing::PrintToString(file);
        mails += run.answer != 0 ? 1U : 0U;
    }
    EXPECT_GT(mails, 1000U);
}

TEST(MailGate, RulesOutNoMail) {
    RandomNumbers random(3);
    std::uint32_t closed = 0;
    for (std::uint32_t round = 0; round < 12000 && !HasFailure(); ++round) {
        const std::string file = SomeMail(random);
        closed += FIExpectGateHolds(FIMayBeMail, MailAnswer, file, random);
        if (file.size() <= largestHead) {
            EXPECT_EQ(FIAskGate(FIMayBeMail, file, largestHead), MailAnswer(file) != 0) << testing::PrintToString(file);
        }
    }
    EXPECT_GT(closed, 1000U);
}

bool IsClosed(const std::string& file) { return !FIAskGate(FIMayBeMail, file, largestHead); }

TEST(MailGate, IsClosedForOrdinaryFiles) {
    for (const std::string& file : FIOrdinaryFiles()) EXPECT_TRUE(IsClosed(file));
    EXPECT_TRUE(IsClosed(""));
    EXPECT_TRUE(IsClosed("To: a"));
    EXPECT_TRUE(IsClosed("To: a\n\nFrom: b\n"));
    EXPECT_TRUE(IsClosed(FIRepeat("x\n", 300) + std::string(largestHead, 'x'))) << "300 lines";
    EXPECT_FALSE(IsClosed(FIRepeat("x\n", 290) + std::string(largestHead, 'x'))) << "the head ends in line 298";
    EXPECT_FALSE(IsClosed(std::string(largestHead + 1, 'x')));
    EXPECT_TRUE(IsClosed(std::string(largestHead, 'x')));
    EXPECT_FALSE(IsClosed("From: b\nTo: a"));
}

}  // namespace
