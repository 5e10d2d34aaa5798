// scan_session.cpp - one run over files: from paths to records, a summary or a store.
#include "cli/scan_session.h"

#include <fcntl.h>

#include <atomic>
#include <ctime>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/asked_facts.h"
#include "cli/named_paths.h"
#include "cli/scan_flags.h"
#include "cli/scan_limits.h"
#include "cli/scan_output.h"
#include "cli/scan_store.h"
#include "report/output.h"
#include "scan/file_state.h"
#include "scan/identify.h"
#include "scan/interrupt.h"
#include "scan/ordered_work.h"
#include "scan/walk.h"

namespace {

// A batch takes no more when its paths come to this: far down in a tree they may be of a megabyte each.
constexpr std::size_t batchPathBytes = std::size_t{64} << 10;

constexpr std::size_t longestKeptPath = 512;

// One thing that was met, and what became of it.
struct Task {
    WalkItem item;
    std::int64_t lookedSeconds = 0;  // when the look at it began
    std::optional<Record> record;
    std::string rendered;      // the record's form
    bool isWritten = false;    // the filters take it
    bool isCutShort = false;   // a signal came while it was looked at
    bool isFromStore = false;  // the file was not looked at
};

// What a thread has for itself.
struct Worker {
    StoreReader* stored = nullptr;  // null where there is no store, or not the means for one reader more
};

WalkOptions WalkOptionsOf(const Options& options) {
    WalkOptions walk;
    walk.sorted = options.sorted;
    walk.oneFileSystem = options.oneFileSystem;
    walk.maxDepth = options.maxDepth;
    if (options.filtersNames) {
        walk.takes = [&options](std::string_view path, bool isDirectory) {
            return isDirectory ? options.names.EntersDirectory(path) : options.names.TakesFile(path);
        };
    }
    return walk;
}

Record FailedRecord(const WalkItem& item) {
    Record record = {};
    record.path = item.path;
    record.error = item.reason;
    return record;
}

int DirectoryOf(const WalkItem& item) { return item.directory != nullptr ? item.directory->Descriptor() : AT_FDCWD; }

class ScanSession {
 public:
    ScanSession(const Options& options, ScanStore* store)
        : options_(options),
          store_(store),
          named_(options),
          walk_(WalkOptionsOf(options)),
          output_(options),
          identify_{FlagsOf(options), options.hash, options.minSize, options.maxSize, store != nullptr} {}

    // Returns whether all could be read.
    bool Run() {
        const OrderedSteps<Task, Worker> steps = {
            [this](std::vector<Task>& tasks) { return Take(tasks); },
            [this] { return MakeWorker(); },
            [this](Worker& worker, Task& task) { Work(worker, task); },
            [](const Task& task) { return task.item.path.size(); },
            [this](Task& task) { Settle(task); },
            [this](Task& task) { Deliver(task); },
            [this] { Idle(); },
        };
        output_.Begin();
        if (IsSingleFile()) {
            TellSingleFile();
        } else {
            OrderedWork<Task, Worker>(steps, LimitsOf()).Run();
        }
        const std::optional<std::string> listFailure = named_.ListFailure();
        if (listFailure.has_value()) output_.Complain(*options_.filesFrom + ": " + *listFailure);
        output_.End(Interrupted());
        return output_.AllWasRead();
    }

 private:
    OrderedLimits LimitsOf() const {
        ScanNeeds needs;
        needs.jobs = options_.jobs;
        needs.oneByOne = options_.filesFrom.has_value() && PathsComeOneByOne(*options_.filesFrom);
        needs.readsStore = store_ != nullptr;
        needs.descriptors = DescriptorsOfProcess();
        return LimitsOfScan(needs);
    }

    // One that is told sooner than a thread is started.
    bool IsSingleFile() const {
        if (options_.filesFrom.has_value() || options_.paths.size() != 1 || options_.paths[0] == "-") return false;
        std::error_code error;
        const bool isQuick = options_.hash == HashKind::None && store_ == nullptr;
        return isQuick && std::filesystem::is_regular_file(options_.paths[0], error);
    }

    void TellSingleFile() {
        std::vector<Task> tasks(1);
        Worker worker;
        if (Take(tasks) == 0) return;
        Work(worker, tasks[0]);
        Deliver(tasks[0]);
    }

    std::size_t Take(std::vector<Task>& tasks) {
        std::size_t count = 0;
        for (std::size_t bytes = 0; count < tasks.size() && bytes < batchPathBytes; ++count) {
            if (!TakeOne(tasks[count].item)) break;
            bytes += tasks[count].item.path.size();
        }
        return count;
    }

    bool TakeOne(WalkItem& item) {
        while (!storeFailed_ && !Interrupted() && !walk_.Next(item)) {
            std::optional<NamedPaths::Named> named = named_.Next();
            if (!named.has_value()) return false;
            if (named->isStandardInput) {
                item = {Met::StandardInput, std::move(named->path), nullptr, 0, ""};
                return true;
            }
            walk_.Start(std::move(named->path));
        }
        return !storeFailed_ && !Interrupted();
    }

    std::unique_ptr<Worker> MakeWorker() {
        auto worker = std::make_unique<Worker>();
        if (store_ == nullptr) return worker;
        std::unique_ptr<StoreReader> reader = store_->OpenReader();
        worker->stored = reader.get();
        const std::lock_guard lock(readersMutex_);
        readers_.push_back(std::move(reader));
        return worker;
    }

    void Work(Worker& worker, Task& task) const {
        task.rendered.clear();
        task.record.reset();
        task.isFromStore = task.isWritten = false;
        task.isCutShort = Interrupted();
        if (task.isCutShort) return;  // the rest of a batch may take longer than the program has left
        task.lookedSeconds = std::time(nullptr);
        task.record = RecordOf(worker, task);
        task.isCutShort = Interrupted();
        task.item.directory.reset();
        if (!task.record.has_value()) return;
        const Record& record = *task.record;
        task.isWritten = record.error.has_value() || options_.formats.Takes(record.answer);
        if (task.isWritten) output_.Render(record, task.rendered);
    }

    // Nothing for what is passed over.
    std::optional<Record> RecordOf(Worker& worker, Task& task) const {
        switch (task.item.met) {
            case Met::Note:
                return std::nullopt;
            case Met::Failure:
                return FailedRecord(task.item);
            case Met::StandardInput:
                return IdentifyStandardInput(identify_);
            case Met::Named:
            case Met::File:
                break;
        }
        if (store_ == nullptr) return LookAt(task.item);
        return LookBehindStore(worker.stored, task);
    }

    std::optional<Record> LookAt(const WalkItem& item) const {
        if (item.met == Met::Named) return IdentifyNamedPath(item.path, identify_);
        return IdentifyEntry(DirectoryOf(item), item.path, item.nameStart, identify_);
    }

    // A look at what the store does not know. Its own files are never opened: that would take its locks away. Without a
    // reader all files are looked at.
    std::optional<Record> LookBehindStore(StoreReader* stored, Task& task) const {
        WalkItem& item = task.item;
        const FileState now = StateOfEntry(DirectoryOf(item), item.path.c_str() + item.nameStart);
        if (!now.known) return LookAt(item);
        if (store_->IsOwnFile(now)) {
            item.met = Met::Note;
            item.reason = "belongs to the store";
            return std::nullopt;
        }
        if (now.size < options_.minSize || now.size > options_.maxSize) return std::nullopt;
        std::optional<Record> record;
        if (stored != nullptr) record = stored->Find(item.path, now);
        task.isFromStore = record.has_value();
        if (!task.isFromStore) return LookAt(item);
        KeepAskedFacts(options_.report, *record);
        return record;
    }

    void Settle(Task& task) {
        if (store_ == nullptr || storeFailed_ || task.isCutShort || !task.record.has_value()) return;
        if (task.item.met == Met::StandardInput) return;
        if (task.isFromStore) {
            store_->CountUnchanged();
        } else if (!store_->Keep(*task.record, task.lookedSeconds)) {
            NoteStoreFailure();
        }
    }

    // Behind a file that a signal cut short nothing more is told: what was done is the beginning of the whole.
    void Deliver(Task& task) {
        wasCutShort_ = wasCutShort_ || task.isCutShort;
        if (!wasCutShort_) Tell(task);
        // Tasks are used again, with the memory of their texts; but not with that of uncommonly long ones, which goes with
        // what they are moved to: an empty text that is assigned leaves it in place.
        if (task.item.path.size() > longestKeptPath) const Task dropped = std::move(task);
    }

    void Tell(const Task& task) {
        if (task.item.met == Met::Note) {
            output_.Note(task.item.path, task.item.reason);
        } else if (task.record.has_value()) {
            output_.Place(*task.record, task.rendered, task.isWritten);
        }
    }

    void Idle() {
        output_.ShowProgress(named_.Done(), named_.Total());
        if (store_ != nullptr && !storeFailed_ && !store_->CommitIfDue()) NoteStoreFailure();
    }

    // A scan that can't be kept is ended: going on would cost hours for nothing.
    void NoteStoreFailure() {
        storeFailed_ = true;
        output_.Complain(store_->Mistake());
    }

    const Options& options_;
    ScanStore* const store_;  // null when there is none
    NamedPaths named_;
    Walk walk_;
    ScanOutput output_;
    const IdentifyOptions identify_;
    std::mutex readersMutex_;
    // The texts of records belong to the readers, and are told behind the end of the threads that read.
    std::vector<std::unique_ptr<StoreReader>> readers_;
    std::atomic<bool> storeFailed_ = false;
    bool wasCutShort_ = false;
};

}  // namespace

bool RunScan(const Options& options) {
    if (!options.store.has_value()) return ScanSession(options, nullptr).Run();
    std::string mistake;
    const std::unique_ptr<ScanStore> store = ScanStore::Open(options, mistake);
    if (store == nullptr) {
        WriteMessage(mistake);
        return false;
    }
    const bool allRead = ScanSession(options, store.get()).Run();
    const bool wasKept = store->Mistake().empty();  // else the session has told it
    const std::string told = store->End(Interrupted());
    const std::string& message = store->Mistake().empty() ? told : store->Mistake();
    if (wasKept && !message.empty()) WriteMessage(message);
    return allRead && store->Mistake().empty();
}
