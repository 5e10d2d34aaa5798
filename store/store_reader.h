// store_reader.h - what a reader stands on.
#pragma once

#include <atomic>

#include "store/answers.h"
#include "store/database.h"
#include "store/store.h"

// Longer ago than this, in seconds, a file must have been modified when it was looked at: the coarsest clock of file
// systems (that of FAT) goes on by two seconds.
inline constexpr std::int64_t coarsestClock = 2;

struct StoreReader::Parts {
    StoreRun run;
    std::atomic<std::uint64_t>* older = nullptr;  // the store's count
    bool findsNothing = false;  // no file is in the store, or all are to be looked at: nothing is open then
    Database database;          // goes behind the statements
    AnswerTexts answers;
    Statement find;
};

// Opens a reader of the store at a resolved path. False and a mistake after a failure.
bool OpenReaderParts(const std::string& file, StoreReader::Parts& parts, std::string& mistake);

// The bytes of a hash of a kind; 0 for None.
std::size_t HashSize(HashKind kind);

// The flags of a run that change an answer, and so are kept with it.
std::uint32_t AnswerFlags(std::uint32_t flags);
