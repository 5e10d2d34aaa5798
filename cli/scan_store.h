// scan_store.h - the store of a scan: what the options ask of it, and what is told of it at the end.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cli/options.h"
#include "scan/record.h"
#include "store/store.h"

class ScanStore {
 public:
    // Opens the store that the options name and begins a run. Null and a mistake, for people, if that fails. The options
    // must outlive it.
    static std::unique_ptr<ScanStore> Open(const Options& options, std::string& mistake);

    // For a thread; null where a failure is noted.
    std::unique_ptr<StoreReader> OpenReader() const;

    // Whether a file is the store's own, which must not be opened; any thread.
    bool IsOwnFile(const FileState& state) const { return store_->IsOwnFile(state); }

    // Keeps a record; lookedSeconds as for Store::Put. False when that fails, now or before: see Mistake.
    bool Keep(const Record& record, std::int64_t lookedSeconds) { return store_->Put(record, lookedSeconds); }
    void CountUnchanged() { store_->CountUnchanged(); }
    bool CommitIfDue() { return store_->CommitIfDue(); }

    // Takes out what is gone if the options ask for it, ends the run, and returns a line for people that tells what was done, or
    // nothing where records or a summary do.
    std::string End(bool interrupted);

    const std::string& Mistake() const { return store_->Mistake(); }

 private:
    ScanStore(const Options& options, std::unique_ptr<Store> store) : options_(options), store_(std::move(store)) {}

    bool TellsCounts(bool interrupted) const;

    const Options& options_;
    std::unique_ptr<Store> store_;
};
