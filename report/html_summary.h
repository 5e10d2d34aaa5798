// html_summary.h - what an HTML report shows above its table, and without a script: totals and charts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// How many files there are of something, and their size together.
struct Share {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;

    void Add(const Share& other) {
        files += other.files;
        bytes += other.bytes;
    }
};

// The files of one answer.
struct AnswerShare {
    std::uint16_t format = 0;  // the most precise identifier, 0 for files that have none
    std::string name;
    std::string family;
    Share share;
};

struct PageTotals {
    Share all;
    std::uint64_t unreadable = 0;
    std::uint64_t unusualNames = 0;
    std::uint64_t cut = 0;  // files that end in front of what they tell of
};

// Appends the totals and the charts of files by format, family and size. Several answers may be of one format.
void AppendHtmlSummary(std::string& out, const PageTotals& totals, const std::vector<AnswerShare>& answers);
