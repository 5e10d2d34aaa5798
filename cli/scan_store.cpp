// scan_store.cpp - the store of a scan: what the options ask of it, and what is told of it at the end.
#include "cli/scan_store.h"

#include <filesystem>
#include <utility>

#include "cli/scan_flags.h"
#include "report/json_text.h"
#include "scan/interrupt.h"

namespace {

std::string JsonOf(const std::vector<std::string>& words) {
    std::string json = "[";
    for (const std::string& word : words) {
        if (json.size() > 1) json += ',';
        AppendJsonText(json, word);
    }
    return json + "]";
}

std::string Counted(std::uint64_t number, const char* what) { return ", " + std::to_string(number) + " " + what; }

}  // namespace

std::unique_ptr<ScanStore> ScanStore::Open(const Options& options, std::string& mistake) {
    std::error_code missing;
    const bool looksAtFiles = !options.paths.empty() || options.filesFrom.has_value();
    if (!looksAtFiles && !std::filesystem::exists(*options.store, missing)) {
        mistake = *options.store + ": there is no such store";
        return nullptr;
    }
    std::unique_ptr<Store> store = Store::Create(*options.store, mistake);
    if (store == nullptr) return nullptr;
    std::error_code error;
    StoreRun run;
    run.arguments = JsonOf(options.arguments);
    run.directory = std::filesystem::current_path(error).native();
    run.flags = FlagsOf(options);
    run.hash = options.hash;
    run.rescan = options.rescan;
    run.refresh = options.refresh;
    if (!store->BeginRun(run, mistake)) return nullptr;
    return std::unique_ptr<ScanStore>(new ScanStore(options, std::move(store)));
}

std::unique_ptr<StoreReader> ScanStore::OpenReader() const {
    std::string mistake;
    return store_->OpenReader(mistake);
}

std::string ScanStore::End(bool interrupted) {
    const bool failed = !Mistake().empty();
    if (options_.prune && !interrupted && !failed) store_->Prune(options_.paths, [] { return !Interrupted(); });
    interrupted = interrupted || Interrupted();
    StoreCounts counts;
    store_->EndRun(!Mistake().empty() ? RunEnd::Failed : interrupted ? RunEnd::Interrupted : RunEnd::Complete, counts);
    std::string told;
    if (TellsCounts(interrupted)) {
        told = ": " + std::to_string(counts.Files()) + (counts.Files() == 1 ? " file" : " files") +
               Counted(counts.fresh, "new") + Counted(counts.changed, "changed") + Counted(counts.gone, "gone") +
               Counted(counts.unreadable, "unreadable");
    }
    if (counts.older > 0) {
        told += ": --refresh looks again at " + std::to_string(counts.older) + " that an older fiid told";
    }
    if (interrupted) told += ": interrupted; run it again to go on";
    return told.empty() ? told : *options_.store + told;
}

bool ScanStore::TellsCounts(bool interrupted) const {
    const bool writesNothing = !options_.writesRecords && !options_.summary.has_value();
    return writesNothing || options_.verbose || interrupted;
}
