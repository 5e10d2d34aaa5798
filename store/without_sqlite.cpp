// without_sqlite.cpp - the store of a program that was built without SQLite: there is none.
#include "store/store.h"

namespace {

constexpr const char* leftOut = ": this fiid was built without SQLite";

}  // namespace

struct StoreReader::Parts {};
struct Store::Parts {};
struct StoreQuery::Parts {};

bool HasStore() { return false; }

StoreReader::StoreReader(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
StoreReader::~StoreReader() = default;
std::optional<Record> StoreReader::Find(const std::string&, const FileState&) { return std::nullopt; }

Store::Store(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
Store::~Store() = default;
std::unique_ptr<Store> Store::Create(const std::string& file, std::string& mistake) {
    mistake = file + leftOut;
    return nullptr;
}
bool Store::BeginRun(const StoreRun&, std::string&) { return false; }
std::unique_ptr<StoreReader> Store::OpenReader(std::string&) const { return nullptr; }
bool Store::IsOwnFile(const FileState&) const { return false; }
bool Store::Put(const Record&, std::int64_t) { return false; }
bool Store::CommitIfDue() { return false; }
bool Store::Commit() { return false; }
bool Store::Prune(const std::vector<std::string>&, const std::function<bool()>&) { return false; }
bool Store::EndRun(RunEnd, StoreCounts&) { return false; }

StoreQuery::StoreQuery(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
StoreQuery::~StoreQuery() = default;
std::unique_ptr<StoreQuery> StoreQuery::Open(const std::string& file, std::string& mistake) {
    mistake = file + leftOut;
    return nullptr;
}
bool StoreQuery::LastRun(StoredRun&) { return false; }
bool StoreQuery::Hash(HashKind&) { return false; }
bool StoreQuery::Files(const Take&) { return false; }
bool StoreQuery::Mismatch(const Take&) { return false; }
bool StoreQuery::Errors(const Take&) { return false; }
bool StoreQuery::Changes(const Take&) { return false; }
bool StoreQuery::Duplicates(const Take&) { return false; }
bool StoreQuery::CountAnswers(const std::function<void(const AnswerCount&)>&) { return false; }
