// store_parts.h - what the one who writes stands on.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/answers.h"
#include "store/database.h"
#include "store/path_key.h"
#include "store/store.h"
#include "store/writer_lock.h"

struct Store::Parts {
    std::string file;                 // as it was named
    std::string resolved;             // without symbolic links
    std::vector<FileState> ownFiles;  // the store and what lies beside it
    WriterLock lock;                  // goes last: behind the connection
    Database database;
    AnswerIds answers;
    Statement add;
    Statement replace;
    Statement find;
    Statement note;
    Statement noteGone;
    Statement remove;
    Statement list;         // of all paths
    Statement listNotRead;  // of those that could not be read by an earlier run
    StoreRun run;
    std::int64_t number = 0;    // of the run; 0 where none is begun
    bool notesNew = false;      // new files are changes
    bool findsNothing = false;  // its readers need not look
    bool inTransaction = false;
    std::uint32_t puts = 0;                       // in the transaction
    std::chrono::steady_clock::time_point since;  // of what was put first in the transaction
    std::atomic<std::uint64_t> older = 0;

    bool Prepare();
    // False after a failure of the database; a mistake where the run may not be.
    bool ChecksDirectory(const StoreRun& asked, std::string& mistake);
    bool AddRun();
    void FindOwnFiles();
    bool IsInItsPlace() const;  // its name still leads to the file that is written to
    bool ReadPast();

    // Takes a path out of the store.
    bool TakeOut(const PathKey& key, bool noted);

    // Some paths of a listing (the statements list and listNotRead), in the order of their keys: from one on, up to the
    // end of a range.
    struct Listed {
        PathKey key;
        bool failed;  // could not be read
    };
    bool ReadBatch(Statement& listing, const PathKey& from, const std::optional<std::string>& before,
                   std::vector<Listed>& batch);
};
