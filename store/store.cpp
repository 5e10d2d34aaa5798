// store.cpp - the one who writes: runs, records, changes, transactions.
#include "store/store.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>

#include "store/file_rows.h"
#include "store/schema.h"
#include "store/store_file.h"
#include "store/store_parts.h"
#include "store/store_reader.h"

namespace {

constexpr auto longestTransaction = std::chrono::milliseconds(750);
// So many files are some tenths of a second's work: a scan that is killed soon, again and again, goes on all the same.
constexpr std::uint32_t largestTransaction = 8192;

constexpr const char* addSql =
    "INSERT INTO files (path, path_hex, answer, error, warnings, size, mtime, mtime_ns, inode, device, hash, "
    "looked_at, "
    "bytes_read, calls, seen, run, first_run) "
    "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?16) ON CONFLICT DO NOTHING";
constexpr const char* replaceSql =
    "UPDATE files SET answer = ?3, error = ?4, warnings = ?5, size = ?6, mtime = ?7, mtime_ns = ?8, inode = ?9, "
    "device = ?10, hash = ?11, looked_at = ?12, bytes_read = ?13, calls = ?14, seen = ?15, run = ?16 "
    "WHERE path = ?1 AND path_hex = ?2";
constexpr const char* noteSql =
    "INSERT INTO changes (run, path, path_hex, kind, answer, error, warnings, size, mtime, mtime_ns, hash, "
    "answer_before, error_before) VALUES (?16, ?1, ?2, ?17, ?3, ?4, ?5, ?6, ?7, ?8, ?11, ?18, ?19) "
    "ON CONFLICT DO UPDATE SET answer = excluded.answer, error = excluded.error, warnings = excluded.warnings, "
    "size = excluded.size, mtime = excluded.mtime, mtime_ns = excluded.mtime_ns, hash = excluded.hash";
constexpr const char* noteGoneSql =
    "INSERT INTO changes (run, path, path_hex, kind, answer, error, warnings, size, mtime, mtime_ns, hash, "
    "answer_before, error_before) SELECT ?3, path, path_hex, 'gone', answer, error, warnings, size, mtime, mtime_ns, "
    "hash, answer, error FROM files WHERE path = ?1 AND path_hex = ?2 ON CONFLICT DO UPDATE SET kind = 'gone'";
constexpr const char* removeSql = "DELETE FROM files WHERE path = ?1 AND path_hex = ?2";
constexpr const char* listSql =
    "SELECT path, path_hex, error IS NOT NULL FROM files WHERE (path, path_hex) >= (?1, ?2) AND path < ?3 AND "
    "run <> ?4 ORDER BY path, path_hex LIMIT 1000";
constexpr const char* listNotReadSql =
    "SELECT path, path_hex, 1 FROM files WHERE (path, path_hex) >= (?1, ?2) AND path < ?3 AND error IS NOT NULL AND "
    "run <> ?4 ORDER BY path, path_hex LIMIT 1000";

const char* HashWord(HashKind kind) { return kind == HashKind::Sha256 ? "sha256" : "xxh3"; }

}  // namespace

bool HasStore() { return true; }

bool Store::Parts::Prepare() {
    sqlite3* const connection = database.Connection();
    return answers.Prepare(database) && add.Prepare(connection, addSql) && replace.Prepare(connection, replaceSql) &&
           find.Prepare(connection, earlierSql) && note.Prepare(connection, noteSql) &&
           noteGone.Prepare(connection, noteGoneSql) && remove.Prepare(connection, removeSql) &&
           list.Prepare(connection, listSql) && listNotRead.Prepare(connection, listNotReadSql);
}

Store::Store(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Store::~Store() = default;

std::unique_ptr<Store> Store::Create(const std::string& file, std::string& mistake) {
    mistake = RefuseNoFile(file);
    if (!mistake.empty()) return nullptr;
    auto parts = std::make_unique<Parts>();
    parts->file = file;
    Database& database = parts->database;
    if (!database.Open(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) {
        mistake = database.Mistake(file);
        return nullptr;
    }
    parts->resolved = sqlite3_db_filename(database.Connection(), "main");
    mistake = parts->lock.Take(parts->resolved, file);
    if (mistake.empty()) mistake = BringToSchema(database, StoreSchema(), file);
    if (!mistake.empty()) return nullptr;
    if (!database.Run("PRAGMA trusted_schema = OFF") || !database.Run("PRAGMA journal_mode = WAL") ||
        !database.Run("PRAGMA synchronous = FULL") || !database.Run("PRAGMA cache_size = -16384") ||
        !database.Run("PRAGMA journal_size_limit = 67108864") || !parts->Prepare()) {
        mistake = database.Mistake(file);
        return nullptr;
    }
    return std::make_unique<Store>(std::move(parts));
}

bool Store::Fail() {
    if (mistake_.empty()) mistake_ = parts_->database.Mistake(parts_->file);
    static_cast<void>(parts_->database.Run("ROLLBACK"));
    parts_->inTransaction = false;
    return false;
}

bool Store::Begin() {
    if (!mistake_.empty()) return false;
    if (parts_->inTransaction) return true;
    if (!parts_->database.Run("BEGIN IMMEDIATE")) return Fail();
    parts_->inTransaction = true;
    parts_->puts = 0;
    parts_->since = std::chrono::steady_clock::now();
    return true;
}

bool Store::Commit() {
    if (!mistake_.empty()) return false;
    if (!parts_->inTransaction) return true;
    if (!parts_->database.Run("COMMIT")) return Fail();
    parts_->inTransaction = false;
    if (parts_->IsInItsPlace()) return true;
    mistake_ = parts_->file + " is not there any more: it was moved or removed while it was written";
    return false;
}

bool Store::CommitIfDue() {
    if (!parts_->inTransaction) return mistake_.empty();
    const bool isDue =
        parts_->puts >= largestTransaction || std::chrono::steady_clock::now() - parts_->since >= longestTransaction;
    return !isDue || Commit();
}

// Relative paths all start from the directory of the latest run: this is what keeps it so.
bool Store::Parts::ChecksDirectory(const StoreRun& asked, std::string& mistake) {
    std::int64_t relative = 0;
    Statement last;
    if (!database.ReadNumber("SELECT EXISTS (SELECT 1 FROM files WHERE path < '/') OR "
                             "EXISTS (SELECT 1 FROM files WHERE path >= '0')",
                             relative) ||
        !last.Prepare(database.Connection(), "SELECT directory FROM runs ORDER BY run DESC LIMIT 1")) {
        return false;
    }
    if (relative == 0 || last.Step() != SQLITE_ROW || last.Text(0) == KeyOfPath(asked.directory).text) return true;
    mistake = file + " has paths that start from " + std::string(last.Text(0)) + ": run fiid there";
    return true;
}

bool Store::Parts::AddRun() {
    Statement statement;
    if (!statement.Prepare(database.Connection(),
                           "INSERT INTO runs (started, state, arguments, directory, flags, hash, rescan, refresh, "
                           "fiid_version, tables_version) VALUES (?1, 'running', ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)")) {
        return false;
    }
    const PathKey directory = KeyOfPath(run.directory);
    statement.Bind(1, std::time(nullptr));
    statement.BindText(2, run.arguments);
    statement.BindText(3, directory.text);
    statement.Bind(4, run.flags & ~std::uint32_t{FIID_DESCRIPTOR_IS_READABLE});
    BindTextIfAny(statement, 5, run.hash != HashKind::None, HashWord(run.hash));
    statement.Bind(6, run.rescan ? 1 : 0);
    statement.Bind(7, run.refresh ? 1 : 0);
    statement.BindText(8, fiid_version());
    statement.BindText(9, run.tables);
    if (!statement.Run()) return false;
    number = sqlite3_last_insert_rowid(database.Connection());
    return true;
}

// A run that took out what is gone, and looked at nothing, does not make later files new ones.
bool Store::Parts::ReadPast() {
    std::int64_t complete = 0;
    std::int64_t files = 0;
    if (!database.ReadNumber(
            "SELECT EXISTS (SELECT 1 FROM runs WHERE state = 'complete' AND new + changed + unchanged > 0)",
            complete) ||
        !database.ReadNumber("SELECT EXISTS (SELECT 1 FROM files)", files)) {
        return false;
    }
    notesNew = complete != 0;
    findsNothing = run.rescan || files == 0;
    return true;
}

bool Store::BeginRun(const StoreRun& run, std::string& mistake) {
    parts_->run = run;
    counts_ = {};
    parts_->older = 0;
    bool begun = Commit() && Begin() && (parts_->ChecksDirectory(run, mistake) || Fail());
    if (begun && !mistake.empty()) {
        static_cast<void>(Commit());
        return false;
    }
    begun = begun &&
            ((parts_->database.Run("UPDATE runs SET state = 'killed' WHERE state = 'running'") &&
              (!run.refresh || RenewAnswers(parts_->database, run.tables)) && parts_->ReadPast() && parts_->AddRun()) ||
             Fail());
    if (begun && Commit()) {
        parts_->FindOwnFiles();
        return true;
    }
    mistake = mistake_;
    return false;
}

// They are all there by now: the run was written.
void Store::Parts::FindOwnFiles() {
    ownFiles.clear();
    for (const char* const suffix : {"", "-wal", "-shm", "-lock", "-journal"}) {
        struct stat status = {};
        if (stat((resolved + suffix).c_str(), &status) != 0) continue;
        FileState& state = ownFiles.emplace_back();
        state.inode = status.st_ino;
        state.device = status.st_dev;
    }
}

// SQLite goes on writing into a file that has lost its name.
bool Store::Parts::IsInItsPlace() const {
    struct stat status = {};
    return ownFiles.empty() || (stat(resolved.c_str(), &status) == 0 && status.st_ino == ownFiles.front().inode &&
                                status.st_dev == ownFiles.front().device);
}

bool Store::IsOwnFile(const FileState& state) const {
    return state.known && std::ranges::any_of(parts_->ownFiles, [&](const FileState& own) {
               return own.inode == state.inode && own.device == state.device;
           });
}

std::unique_ptr<StoreReader> Store::OpenReader(std::string& mistake) const {
    auto parts = std::make_unique<StoreReader::Parts>();
    parts->run = parts_->run;
    parts->older = &parts_->older;
    parts->findsNothing = parts_->findsNothing;
    if (!parts->findsNothing && !OpenReaderParts(parts_->resolved, *parts, mistake)) return nullptr;
    return std::make_unique<StoreReader>(std::move(parts));
}

bool Store::Put(const Record& record, std::int64_t lookedSeconds) {
    if (!Begin()) return false;
    ++parts_->puts;
    FileRow row = MakeFileRow(record, lookedSeconds);
    if (!record.error) {
        row.answer = parts_->answers.IdOf(record.answer, AnswerFlags(parts_->run.flags), parts_->run.tables);
        if (row.answer == 0) return Fail();
    }
    Statement& add = parts_->add;
    BindFile(add, record, row);
    BindLook(add, record, row);
    add.Bind(16, parts_->number);
    if (!add.Run()) return Fail();
    if (sqlite3_changes(parts_->database.Connection()) == 0) return PutAgain(record, row) || Fail();
    ++counts_.fresh;
    if (record.error) ++counts_.unreadable;
    if (!parts_->notesNew) return true;
    Statement& note = parts_->note;
    BindFile(note, record, row);
    note.Bind(16, parts_->number);
    note.BindText(17, "new");
    note.BindNull(18);
    note.BindNull(19);
    return note.Run() || Fail();
}

// The path is there already: from an earlier run, or because this run comes to it twice.
bool Store::PutAgain(const Record& record, const FileRow& row) {
    Statement& find = parts_->find;
    find.BindText(1, row.key.text);
    find.BindText(2, row.key.hex);
    const bool found = find.Step() == SQLITE_ROW;
    const Earlier earlier = found ? ReadEarlier(find, record, row) : Earlier();
    find.Reset();
    if (!found) return false;
    FileRow kept = row;
    if (kept.hash.empty() && earlier.hashHolds && !record.error) kept.hash = earlier.hash;
    const bool unchanged = IsUnchanged(earlier, kept);
    if (earlier.run != parts_->number) {
        ++(unchanged ? counts_.unchanged : counts_.changed);
        if (record.error) ++counts_.unreadable;
    }
    Statement& replace = parts_->replace;
    BindFile(replace, record, kept);
    BindLook(replace, record, kept);
    replace.Bind(16, parts_->number);
    if (!replace.Run()) return false;
    if (unchanged) return true;
    Statement& note = parts_->note;
    BindFile(note, record, kept);
    note.Bind(16, parts_->number);
    note.BindText(17, "changed");
    BindIfAny(note, 18, earlier.answer);
    BindTextIfAny(note, 19, !earlier.answer, earlier.error);
    return note.Run();
}
