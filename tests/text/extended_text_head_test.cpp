// Texts told by the masks of their head, against the count of every character.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "reader/reader.h"
#include "support/bytes.h"
#include "support/head_input.h"
#include "support/ordinary_files.h"
#include "support/test_handle.h"
#include "text/extended_text.h"

namespace {

using namespace std::string_literals;

const std::vector<std::string> pieces = {
    "text", "a", " ", "@", "@@@@", "@ ", "\x80", "\xFF\xFE", "\n", "\r\n", "\r", "\r\r\n", "\t", "\f", "\b",
};
const std::vector<std::string> rare = {"\r\r", "\r\r\r\n", "\r\r\x01", "\r\rx", "\r\r\x0B", "\x0B",
                                       "\x1A", "\0"s,      "\x1F",     "\x0E",  "\x7F"};

std::string SomeText(RandomNumbers& random) {
    std::string file;
    const std::uint32_t choice = random.Below(12);
    const std::size_t size = choice == 0 ? 4080 + random.Below(40) : random.Below(choice < 4 ? 400 : 40);
    const std::string& often = random.Of(pieces);
    const std::string& alsoOften = random.Of(pieces);
    const bool isPlain = random.OneIn(2);
    while (file.size() < size) {
        if (random.OneIn(isPlain ? 2000 : 20)) file += random.Of(rare);
        file += random.OneIn(3) ? often : random.OneIn(2) ? alsoOften : random.Of(pieces);
        if (random.OneIn(8)) file += FIRepeat(often, random.Below(choice == 0 ? 900 : 40));
    }
    if (random.OneIn(2)) file.resize(size);
    return file;
}

FIID Tell(const std::string& file, FIHead* head, std::uint32_t* operations = nullptr) {
    const auto handle = FIMakeTestHandle(file);
    FIReader reader;
    FIReaderStart(reader, FIFileOf(*handle));
    const FIID answer = FITellText(reader, head);
    if (operations != nullptr) *operations = handle->reads + handle->seeks + handle->tells;
    return answer;
}

TEST(TextByHead, IsTheTextByCount) {
    RandomNumbers random(9);
    std::map<FIID, std::uint32_t> answers;
    std::uint32_t told = 0;
    for (std::uint32_t round = 0; round < 20000 && !HasFailure(); ++round) {
        const std::string file = SomeText(random);
        const std::size_t size = random.OneIn(4) ? random.Below(5000) : largestHead;
        FIHead head = FIHeadOf(file, size);
        std::uint32_t operations = 0;
        const FIID answer = Tell(file, &head, &operations);
        EXPECT_EQ(answer, Tell(file, nullptr)) << size << " bytes of " << testing::PrintToString(file);
        told += operations == 0 ? 1U : 0U;
        ++answers[answer];
    }
    EXPECT_GT(told, 4000U);
    for (const FIID answer : {FIID{4022}, FIID{4005}, FIID{1184}, FIID{1999}})
        EXPECT_GT(answers[answer], 30U) << answer;
}

// Every number of at-signs and high bytes near the limits.
TEST(TextByHead, CountsWhereAtSignsMayDecide) {
    for (std::size_t atSigns = 0; atSigns <= 14; ++atSigns) {
        for (std::size_t others = 0; others <= 3; ++others) {
            for (std::size_t highBytes = 0; highBytes <= 8; ++highBytes) {
                const std::string file =
                    std::string(highBytes, '\x80') + std::string(others, 'x') + std::string(atSigns, '@') + "x";
                FIHead head = FIHeadOf(file);
                EXPECT_EQ(Tell(file, &head), Tell(file, nullptr)) << testing::PrintToString(file);
            }
        }
    }
}

// The last byte of the sample is not looked at, and what lies behind it is none of the sample.
TEST(TextByHead, LooksAtNoMoreThanTheSample) {
    for (const char byte : {'\x01', '\x80', '\x0B', '@', '\r', '\n'}) {
        for (std::size_t place = 4090; place < 4100; ++place) {
            for (const std::size_t size : {4095U, 4096U, 4097U, 5000U, 9000U}) {
                std::string file(size, 'x');
                if (place >= size) continue;
                file[place] = byte;
                FIHead head = FIHeadOf(file);
                EXPECT_EQ(Tell(file, &head), Tell(file, nullptr)) << place << " of " << size;
            }
        }
    }
}

// Pairs of CR across the spans of the masks: the byte behind them is lost, here the only high one.
TEST(TextByHead, SeesCarriageReturnsSideBySide) {
    for (std::size_t place = 0; place < 200; ++place) {
        std::string file(200, 'x');
        file.insert(place, "\r\r\x80");
        file.append(300, 'x');
        FIHead head = FIHeadOf(file);
        EXPECT_EQ(Tell(file, &head), Tell(file, nullptr)) << place;
    }
}

TEST(TextByHead, TellsOrdinaryTextsWithoutTheHandle) {
    for (const std::string& file : {FIEnglishText("\n"), FIEnglishText("\r\n"), FIProgramSource(), "\xC3\xA4"s, ""s}) {
        FIHead head = FIHeadOf(file);
        std::uint32_t operations = 1;
        EXPECT_EQ(Tell(file, &head, &operations), Tell(file, nullptr));
        EXPECT_EQ(operations, 0U);
    }
}

TEST(TextByHead, CountsWhenTheSizeIsNotKnown) {
    const std::string file = "text\n";
    FIHead head = FIHeadOf(file);
    head.fileSize = UINT64_MAX;
    std::uint32_t operations = 0;
    EXPECT_EQ(Tell(file, &head, &operations), 4022);
    EXPECT_GT(operations, 0U);
}

}  // namespace
