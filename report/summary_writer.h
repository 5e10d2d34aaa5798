// summary_writer.h - the output formats of summaries.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "report/report_writer.h"
#include "report/summary.h"

struct SummaryOptions {
    OutputFormat format = OutputFormat::Text;  // Text, Ndjson, Json, Csv or Tsv
    std::uint32_t columns = 0;  // Text: of the terminal; 0 when it goes elsewhere: no bars, nothing is cut
    bool utf8 = false;          // Text: whether the terminal takes UTF-8, for bars and what is cut
};

// Finishes a summary and writes it: all groups, the largest first, then unknown, unreadable and unusual files, and the
// totals. write takes one piece after the other; each must stay whole.
//
//   Text    columns: files, share of all files, size, a bar, what it is. The bar of the largest group is the longest.
//   Json    one object, as docs/summary.schema.json tells.
//   Ndjson  the object of each group in a line, then the same object without the groups.
//   Csv     a line for each group, unknown, unreadable, unusual and total, as the column kind says.
//   Tsv     the same.
//
// Summary::Failure tells behind it whether groups are missing.
void WriteSummary(Summary& summary, const SummaryOptions& options, const std::function<void(std::string_view)>& write);

// The word for a key on the command line and in "by": "format", "family", "mime", "extension" or "directory".
std::string_view WordOf(SummaryKey key);
