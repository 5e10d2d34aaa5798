// file_rows.h - records on their way into the tables `files` and `changes`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "scan/record.h"
#include "store/database.h"
#include "store/path_key.h"

// A record as its row has it.
struct FileRow {
    PathKey key;
    std::int64_t answer = 0;           // its number
    std::optional<std::string> error;  // as text
    std::optional<std::int64_t> size;
    std::optional<std::int64_t> mtime;
    std::uint32_t mtimeNs = 0;
    std::optional<std::int64_t> inode;
    std::string hash;
    bool seenAtRest = false;  // size and time are those of the look
    std::int64_t seen = 0;
};

// All but the answer's number. lookedSeconds as Store::Put has it.
FileRow MakeFileRow(const Record& record, std::int64_t lookedSeconds);

// Parameters 1 to 8 and 11, which files and changes have.
void BindFile(Statement& statement, const Record& record, const FileRow& row);

// Parameters 9, 10 and 12 to 15, which files alone have.
void BindLook(Statement& statement, const Record& record, const FileRow& row);

void BindIfAny(Statement& statement, int parameter, const std::optional<std::int64_t>& number);
void BindTextIfAny(Statement& statement, int parameter, bool any, std::string_view text);

// What the store had of a path.
struct Earlier {
    std::optional<std::int64_t> answer;
    std::string error;
    std::string hash;
    std::int64_t run = 0;
    bool sameState = false;   // as that of the record that comes
    bool sameAnswer = false;  // likewise
    bool hashHolds = false;   // the hash is that of the present contents
};

// The columns that ReadEarlier reads.
inline constexpr const char* earlierSql =
    "SELECT f.answer, f.error, f.size, f.mtime, f.mtime_ns, f.inode, f.hash, f.seen, f.run, a.fiid, a.further, "
    "a.version "
    "FROM files AS f LEFT JOIN answers AS a USING (answer) WHERE f.path = ?1 AND f.path_hex = ?2";

Earlier ReadEarlier(const Statement& row, const Record& record, const FileRow& now);

// Of two failures the words count, and of two answers the file too. Hashes of two kinds can't be compared.
bool IsUnchanged(const Earlier& earlier, const FileRow& now);
