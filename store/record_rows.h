// record_rows.h - records as rows of the table `files`.
#pragma once

#include <string>

#include "scan/record.h"
#include "store/answers.h"
#include "store/database.h"

// The columns of a record, of the tables `files AS f`; what a statement selects behind them has numbers from
// recordColumnCount up.
#define FIID_RECORD_COLUMNS                                                                                       \
    "f.path, f.path_hex, f.answer, f.error, f.warnings, f.size, f.mtime, f.mtime_ns, f.inode, f.device, f.hash, " \
    "f.looked_at, f.bytes_read, f.calls"
inline constexpr int recordColumnCount = 14;

// The bytes of the path of the row where a statement stands.
std::string PathOfRow(const Statement& row);

// Fills a record from the row where a statement stands. Returns false for an answer that is not there.
bool ReadRecord(const Statement& row, AnswerTexts& answers, Record& record);

// A size or an inode as SQLite has numbers, which are signed; and back.
std::int64_t ToColumn(std::uint64_t number);
std::uint64_t FromColumn(std::int64_t number);
