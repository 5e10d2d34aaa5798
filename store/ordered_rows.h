// ordered_rows.h - rows of a statement in the order of a sorted walk, without sorting them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "scan/record.h"
#include "store/database.h"

// Trees of SQLite have paths in the order of their bytes. A walk's order differs in one point (store/walk_order.h): a
// slash comes in front of the 46 bytes below it, so "a/b" stands in front of "a-b" and "a.txt". A collation of our own
// in the schema would shut other programs out, and sorting a million rows takes seconds and memory. So rows are read in
// the order of their bytes, and where one goes on behind the name of a directory with one of those bytes, the rows of
// that directory are fetched first, and passed over where they come. Whether there is such a directory mostly shows in
// the next row: if that does not begin like this one up to the byte, it has none.
//
// The statement must be within a transaction, so that the rows stay the same. It selects path and path_hex as its
// columns 0 and 1, in the order of the bytes of one of them, from its parameter ?1 on and in front of ?2.
class OrderedRows {
 public:
    enum class Key { Text, Hex };
    // Fills a record from the row where the statement stands; false where it can't.
    using Read = std::function<bool(const Statement& row, Record& record)>;

    OrderedRows(Statement& rows, Key key, Read read) : rows_(rows), key_(key), read_(std::move(read)) {}

    // SQLITE_ROW with a record in Current(), SQLITE_DONE at the end, or a failure.
    int Next();
    const Record& Current() const { return current_; }
    Record& Current() { return current_; }

 private:
    // A directory whose rows are read in front of their place.
    struct Directory {
        std::string path;  // without the slash at its end
        std::string row;   // of the row that is to be gone on with behind it
        bool hasRows;
    };

    int Start();
    void Seek(std::string from);
    void GoBack();
    bool PassOver();
    std::string NextPath() const;
    std::size_t FirstDirectory(const std::string& next) const;

    Statement& rows_;
    Key key_;
    Read read_;
    Record current_ = {};
    int status_ = SQLITE_OK;  // of the statement, which stands one row behind current_
    std::string from_;        // what ?1 and ?2 are bound to
    std::string before_;
    std::string previous_;                // the path of the row in front, or "" where that is another directory's
    std::size_t looked_ = 0;              // of the row that comes: up to where it was looked for directories
    std::vector<Directory> directories_;  // one within the other
    std::vector<std::string>
        passed_;  // paths of directories that were fetched, and whose place comes; the next one last
};

// The rows of two statements in one order: one has the paths that are text, one all others.
class MergedRows {
 public:
    MergedRows(Statement& texts, Statement& others, const OrderedRows::Read& read)
        : texts_(texts, OrderedRows::Key::Text, read), others_(others, OrderedRows::Key::Hex, read) {}

    // As OrderedRows::Next. The record stays until the next call.
    int Next(Record*& record);

 private:
    OrderedRows texts_;
    OrderedRows others_;
    int textStatus_ = SQLITE_OK;  // SQLITE_OK: the next row is to be fetched
    int otherStatus_ = SQLITE_OK;
};
