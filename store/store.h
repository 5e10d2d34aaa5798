// store.h - a scan kept in one file of SQLite. docs/store.md tells its tables to those who bring their own tools.
//
// One process at a time scans into a store (Store), with a reader for each of its threads (StoreReader); any number of
// processes may read it meanwhile (StoreQuery, and other programs). A store has one row for each path, whatever the
// number of runs; paths are kept without "." among their parts and without slashes that say nothing, else as they were
// given.
//
// What survives: records are written in transactions of less than a second, in SQLite's write-ahead log and
// synchronous. So a run that is killed, or whose machine loses its power, loses what it did in its last second, and the
// next run looks at that again. What was put is there as a whole or not at all, and never twice.
//
// No function throws, but when memory is exhausted. Mistakes are words for people that begin with the store's name.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fiid/detect.h"
#include "scan/hash.h"
#include "scan/record.h"

struct FileRow;    // store/file_rows.h
struct PathRange;  // store/prune.cpp

// Whether this fiid was built with SQLite. Without it opening fails, in words.
bool HasStore();

// What a run is asked for.
struct StoreRun {
    std::string arguments = "[]";  // the command line's options and paths, as an array of JSON
    std::string directory;         // the working directory, which relative paths start from
    std::uint32_t flags = 0;  // of fiid_options; those that change what is told: FIID_NO_TEXT, FIID_NO_FURTHER, and
                              // FIID_EXPLAIN, for the text of which files are looked at again that have none
    HashKind hash = HashKind::None;
    bool rescan = false;   // look at every file again; rows stay until they are, so that changes show
    bool refresh = false;  // look at files again that were told by other tables, where these may answer otherwise
    std::string tables = fiid_tables_version();
};

// How a run ended. A run that tells no end was killed.
enum class RunEnd { Complete, Interrupted, Failed };

// What a run did. A path that it comes to twice counts once if it was put, and each time if it was found unchanged.
struct StoreCounts {
    std::uint64_t fresh = 0;       // paths that the store did not have
    std::uint64_t changed = 0;     // another size, time, inode, hash, answer or error than before
    std::uint64_t unchanged = 0;   // found as they were, or looked at again with the same result
    std::uint64_t gone = 0;        // taken out by Prune
    std::uint64_t unreadable = 0;  // of the first three: those that could not be read
    std::uint64_t older =
        0;  // of those unchanged: told by other tables than the run's, which may answer otherwise about
            // them; always 0 with refresh

    std::uint64_t Files() const { return fresh + changed + unchanged; }
};

// Finds files that need no second look. For one thread; it must not outlive its Store, and its records' texts live as
// long as it does.
class StoreReader {
 public:
    ~StoreReader();

    // The record that the store has of a path, if a look at the file would tell the same. It is so if
    // - size, time of modification (to the nanosecond) and inode are what they were. The device's number is not
    //   compared: it may be another one after each start of the machine. A file that was written to and given back its
    //   old time is taken for unchanged.
    // - it had been modified more than two seconds before it was looked at. Within the grain of a file system's clock,
    //   which is up to two seconds, it may have been written to behind the look without a change of its time.
    // - it could be read, was told with the same flags, and the run's hash is there.
    // - under `refresh`: the run's tables can't answer otherwise.
    // Its path is that given; its hash is there if the run asks for one, and its explanation likewise. A failure is no
    // record: the file is looked at then.
    std::optional<Record> Find(const std::string& path, const FileState& now);

    struct Parts;
    explicit StoreReader(std::unique_ptr<Parts> parts);

 private:
    std::unique_ptr<Parts> parts_;
};

// The one who writes. For one thread.
class Store {
 public:
    // Opens a store or makes it. Null and a mistake for what is no store or that of a later fiid, for one that another
    // process scans into, and for what can't be read or written.
    static std::unique_ptr<Store> Create(const std::string& file, std::string& mistake);
    ~Store();  // what was not committed is lost, and a run that was not ended is told as killed

    // Begins a run; one at a time. False and a mistake if that fails, or the store has relative paths that start from
    // another working directory.
    bool BeginRun(const StoreRun& run, std::string& mistake);

    // For a thread of the run that was begun. Null and a mistake if that fails. Any thread may call it.
    std::unique_ptr<StoreReader> OpenReader(std::string& mistake) const;

    // Whether a file is the store, or one that lies beside it and belongs to it. Such a file must not be opened by this
    // process: POSIX takes all locks that a process has on a file away when it closes any descriptor of it, and those
    // of SQLite are such locks. To be asked behind BeginRun, by any thread, about every file that a walk meets.
    bool IsOwnFile(const FileState& state) const;

    // Keeps a record, in place of an earlier one of its path. lookedSeconds is a time, since 1970-01-01 UTC, that was
    // not behind the look at the file. False after a failure, when nothing more is kept: see Mistake.
    bool Put(const Record& record, std::int64_t lookedSeconds);

    // Counts a record that a reader found. Nothing is written for it.
    void CountUnchanged() { ++counts_.unchanged; }

    // Commits when three quarters of a second have passed since what was put first, or 8,192 records have been put. To be
    // called several times a second.
    bool CommitIfDue();
    bool Commit();

    // Takes out files that are gone: there is no such path any more, it leads to a directory, or to something that a
    // walk passes over. With paths: only those and what lies below them. Each is noted as a change. goOn is asked
    // often, and false ends it early.
    bool Prune(const std::vector<std::string>& below, const std::function<bool()>& goOn);

    // Ends the run and commits. Behind a complete run the failures of directories that can be read by now are taken
    // out. The counts are told also when it fails.
    bool EndRun(RunEnd end, StoreCounts& counts);

    // What failed. "" if nothing has.
    const std::string& Mistake() const { return mistake_; }

    struct Parts;
    explicit Store(std::unique_ptr<Parts> parts);

 private:
    bool Fail();
    bool Begin();
    bool PutAgain(const Record& record, const FileRow& row);
    bool PruneRange(const PathRange& range, const std::function<bool()>& goOn);
    bool ForgetFailures();

    std::unique_ptr<Parts> parts_;
    StoreCounts counts_;
    std::string mistake_;
};

// One run of a store, for those who ask.
struct StoredRun {
    std::int64_t run = 0;  // counted from 1; 0 where there was none
    std::int64_t startedSeconds = 0;
    std::string state;  // "running", "complete", "interrupted", "failed" or "killed"
    std::string arguments;
    std::string directory;
};

// How many files have one answer with the same warnings. Empty files are counted by themselves.
struct AnswerCount {
    Record
        record;  // without a path: its answer, or, for what could not be read, an error. The answer has its warnings;
                 // its size is 0 or not told, its time and cost are not told
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;  // of all of them whose size is known
};

// Asks a store, also while it is scanned into: an answer is that of one moment. For one thread. Memory does not grow
// with the number of files. Each function hands records to a function that takes them until it returns false, and
// returns false itself after a failure alone. The texts of records live as long as the query.
class StoreQuery {
 public:
    using Take = std::function<bool(const Record&)>;

    // Null and a mistake if that fails. A store in a directory that can't be written to can be read if no scan into it
    // is under way or was killed.
    static std::unique_ptr<StoreQuery> Open(const std::string& file, std::string& mistake);
    ~StoreQuery();

    bool LastRun(StoredRun& run);
    bool Hash(HashKind& hash);  // that of the latest run that had one

    // In the order of a sorted walk (store/walk_order.h).
    bool Files(const Take& take);
    bool Mismatch(const Take& take);  // those with FIID_WARN_EXTENSION
    bool Errors(const Take& take);    // those that could not be read

    // What changed in which run, the latest run first, in each in the order of a walk. New files are told of those runs
    // that had a complete one in front of them. A record tells the file as it was behind the change; for one that is
    // gone, as it was last.
    bool Changes(const Take& take);

    // Files of one size and hash, two or more, those first that take most space in vain ((copies - 1) * size), then in
    // the order of a walk. Empty files have no copies. False and a mistake if no file has a hash.
    bool Duplicates(const Take& take);

    // In no order.
    bool CountAnswers(const std::function<void(const AnswerCount&)>& take);

    const std::string& Mistake() const { return mistake_; }

    struct Parts;
    explicit StoreQuery(std::unique_ptr<Parts> parts);

 private:
    bool Fail();
    template <typename Ask>
    bool AtOneMoment(const Ask& ask);
    bool Select(const std::string& condition, const Take& take);

    std::unique_ptr<Parts> parts_;
    std::string mistake_;
};
