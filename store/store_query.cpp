// store_query.cpp - asks a store.
#include <sys/stat.h>
#include <unistd.h>

#include <compare>
#include <map>
#include <string_view>

#include "store/answers.h"
#include "store/database.h"
#include "store/ordered_rows.h"
#include "store/record_rows.h"
#include "store/schema.h"
#include "store/store.h"
#include "store/store_file.h"
#include "store/walk_order.h"

namespace {

// The columns of a change, as those of a record and three more.
#define FIID_CHANGE_COLUMNS                                                                                \
    "f.path, f.path_hex, f.answer, f.error, f.warnings, f.size, f.mtime, f.mtime_ns, NULL, NULL, f.hash, " \
    "NULL, NULL, NULL, f.kind, f.answer_before, f.error_before"

// The groups first, then their files in the order of the groups. SQLite sorts both in a temporary file if they are
// many.
constexpr const char* duplicatesSql =
    "WITH groups AS MATERIALIZED ("
    " SELECT size, hash, count(*) AS copies, min(path COLLATE walk) AS first FROM files"
    " WHERE hash IS NOT NULL AND size > 0 GROUP BY hash, size HAVING count(*) > 1) "
    "SELECT " FIID_RECORD_COLUMNS
    ", g.copies FROM files AS f CROSS JOIN groups AS g ON g.hash = f.hash AND g.size = f.size "
    "ORDER BY (g.copies - 1) * g.size DESC, g.first COLLATE walk, g.hash, f.path COLLATE walk, f.path_hex";

int CompareTexts(void*, int firstSize, const void* first, int secondSize, const void* second) {
    return CompareInWalkOrder({static_cast<const char*>(first), static_cast<std::size_t>(firstSize)},
                              {static_cast<const char*>(second), static_cast<std::size_t>(secondSize)});
}

// A file as a URI that says that it does not change: SQLite then needs nothing beside it.
std::string UnchangingFile(const std::string& file) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = file.starts_with('/') ? "file:" : "file:./";
    for (const char character : file) {
        const auto byte = static_cast<std::uint8_t>(character);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
        if (plain || byte == '/' || byte == '.' || byte == '-' || byte == '_') {
            uri += character;
        } else {
            uri += '%';
            uri += digits[byte >> 4];
            uri += digits[byte & 0x0F];
        }
    }
    return uri + "?immutable=1";
}

bool HasLog(const std::string& file) {
    struct stat status = {};
    return stat((file + "-wal").c_str(), &status) == 0 && status.st_size != 0;
}

// What files have in common that are counted together.
struct AnswerKind {
    std::int64_t answer = 0;  // 0 for none
    std::int64_t warnings = 0;
    bool isEmpty = false;

    auto operator<=>(const AnswerKind&) const = default;
};

bool FillAnswer(const AnswerKind& kind, AnswerTexts& answers, Record& record) {
    ClearResult(record.answer);
    if (kind.answer == 0) {
        record.error = "can't be read";
        return true;
    }
    const StoredAnswer* const stored = answers.Find(kind.answer);
    if (stored == nullptr) return false;
    FillResult(*stored, record.answer);
    record.answer.warnings = static_cast<std::uint32_t>(kind.warnings);
    if (kind.isEmpty) record.answer.size = 0;
    return true;
}

ChangeKind KindOf(std::string_view word) {
    return word == "new" ? ChangeKind::New : word == "gone" ? ChangeKind::Gone : ChangeKind::Changed;
}

}  // namespace

struct StoreQuery::Parts {
    std::string file;
    Database database;
    AnswerTexts answers;
};

StoreQuery::StoreQuery(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

StoreQuery::~StoreQuery() = default;

std::unique_ptr<StoreQuery> StoreQuery::Open(const std::string& file, std::string& mistake) {
    mistake = RefuseNoFile(file);
    if (!mistake.empty()) return nullptr;
    auto parts = std::make_unique<Parts>();
    parts->file = file;
    Database& database = parts->database;
    const bool opened = database.Open(file, SQLITE_OPEN_READONLY);
    mistake = opened ? CheckSchema(database, StoreSchema(), file) : database.Mistake(file);
    const int status = database.Status() & 0xFF;
    if (opened && (status == SQLITE_CANTOPEN || status == SQLITE_READONLY)) {
        if (HasLog(file)) {
            mistake = file +
                      " can't be read in a directory that is read-only: beside it is the log of a scan that was killed";
            return nullptr;
        }
        database.Close();
        const bool reopened = database.Open(UnchangingFile(file), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        mistake = reopened ? CheckSchema(database, StoreSchema(), file) : database.Mistake(file);
    }
    if (!mistake.empty()) return nullptr;
    // A store may come from anybody: what its schema says is not to call anything.
    if (!database.Run("PRAGMA cache_size = -8192") || !database.Run("PRAGMA trusted_schema = OFF") ||
        !parts->answers.Prepare(database) ||
        sqlite3_create_collation(database.Connection(), "walk", SQLITE_UTF8, nullptr, CompareTexts) != SQLITE_OK) {
        mistake = database.Mistake(file);
        return nullptr;
    }
    return std::make_unique<StoreQuery>(std::move(parts));
}

bool StoreQuery::Fail() {
    mistake_ = parts_->database.Mistake(parts_->file);
    return false;
}

// Asks within one transaction: what others write meanwhile does not show. A question that returns SQLITE_DONE or
// SQLITE_ROW went well.
template <typename Ask>
bool StoreQuery::AtOneMoment(const Ask& ask) {
    mistake_.clear();
    if (!parts_->database.Run("BEGIN")) return Fail();
    const int status = ask();
    if (status == SQLITE_CORRUPT && parts_->database.Status() != SQLITE_CORRUPT) {
        mistake_ = parts_->file + " is damaged (a file's answer is not there)";
    } else if (status != SQLITE_DONE && status != SQLITE_ROW && mistake_.empty()) {
        Fail();
    }
    static_cast<void>(parts_->database.Run("ROLLBACK"));
    return mistake_.empty();
}

bool StoreQuery::LastRun(StoredRun& run) {
    run = {};
    return AtOneMoment([&] {
        Statement row;
        if (!row.Prepare(parts_->database.Connection(),
                         "SELECT run, started, state, arguments, directory FROM runs ORDER BY run DESC LIMIT 1")) {
            return SQLITE_ERROR;
        }
        const int status = row.Step();
        if (status == SQLITE_ROW) {
            run = {row.Number(0), row.Number(1), std::string(row.Text(2)), std::string(row.Text(3)),
                   std::string(row.Text(4))};
        }
        return status;
    });
}

bool StoreQuery::Hash(HashKind& hash) {
    hash = HashKind::None;
    return AtOneMoment([&] {
        Statement row;
        if (!row.Prepare(parts_->database.Connection(),
                         "SELECT hash FROM runs WHERE hash IS NOT NULL ORDER BY run DESC LIMIT 1")) {
            return SQLITE_ERROR;
        }
        const int status = row.Step();
        if (status == SQLITE_ROW) hash = row.Text(0) == "sha256" ? HashKind::Sha256 : HashKind::Xxh3;
        return status;
    });
}

// condition is empty or begins with AND.
bool StoreQuery::Select(const std::string& condition, const Take& take) {
    const std::string text = "SELECT " FIID_RECORD_COLUMNS
                             " FROM files AS f WHERE f.path >= ?1 AND f.path < ?2 AND f.path_hex = '' " +
                             condition + " ORDER BY f.path";
    const std::string hex = "SELECT " FIID_RECORD_COLUMNS
                            " FROM files AS f WHERE f.path_hex >= ?1 AND f.path_hex < ?2 AND f.path_hex <> '' " +
                            condition + " ORDER BY f.path_hex";
    return AtOneMoment([&] {
        Statement texts;
        Statement others;
        sqlite3* const connection = parts_->database.Connection();
        if (!texts.Prepare(connection, text.c_str()) || !others.Prepare(connection, hex.c_str())) return SQLITE_ERROR;
        const auto read = [&](const Statement& row, Record& record) {
            return ReadRecord(row, parts_->answers, record);
        };
        MergedRows rows(texts, others, read);
        Record* record = nullptr;
        int status = rows.Next(record);
        while (status == SQLITE_ROW && take(*record)) status = rows.Next(record);
        return status;
    });
}

bool StoreQuery::Files(const Take& take) { return Select("", take); }

bool StoreQuery::Mismatch(const Take& take) {
    static_assert(FIID_WARN_EXTENSION == 1);
    return Select("AND f.warnings & 1", take);
}

bool StoreQuery::Errors(const Take& take) { return Select("AND f.error IS NOT NULL", take); }

bool StoreQuery::Changes(const Take& take) {
    constexpr const char* textSql = "SELECT " FIID_CHANGE_COLUMNS
                                    " FROM changes AS f WHERE f.run = ?3 AND f.path >= ?1 AND f.path < ?2 AND "
                                    "f.path_hex = '' ORDER BY f.path";
    constexpr const char* hexSql = "SELECT " FIID_CHANGE_COLUMNS
                                   " FROM changes AS f WHERE f.run = ?3 AND f.path_hex >= ?1 AND f.path_hex < ?2 AND "
                                   "f.path_hex <> '' ORDER BY f.path_hex";
    constexpr const char* runsSql = "SELECT run, started FROM runs ORDER BY run DESC";
    return AtOneMoment([&] {
        sqlite3* const connection = parts_->database.Connection();
        Statement runs;
        if (!runs.Prepare(connection, runsSql)) return SQLITE_ERROR;
        int run = runs.Step();
        for (; run == SQLITE_ROW; run = runs.Step()) {
            Statement texts;
            Statement others;
            if (!texts.Prepare(connection, textSql) || !others.Prepare(connection, hexSql)) return SQLITE_ERROR;
            texts.Bind(3, runs.Number(0));
            others.Bind(3, runs.Number(0));
            const auto read = [&](const Statement& row, Record& record) {
                if (!ReadRecord(row, parts_->answers, record)) return false;
                record.change = {KindOf(row.Text(recordColumnCount)), runs.Number(0), runs.Number(1),
                                 std::string(row.Text(recordColumnCount + 2))};
                if (row.IsNull(recordColumnCount + 1)) return true;
                const StoredAnswer* const before = parts_->answers.Find(row.Number(recordColumnCount + 1));
                if (before != nullptr) record.change.before = before->name;
                return before != nullptr;
            };
            MergedRows rows(texts, others, read);
            Record* record = nullptr;
            int status = rows.Next(record);
            for (; status == SQLITE_ROW; status = rows.Next(record)) {
                if (!take(*record)) return status;
            }
            if (status != SQLITE_DONE) return status;
        }
        return run;
    });
}

bool StoreQuery::Duplicates(const Take& take) {
    return AtOneMoment([&] {
        std::int64_t hashes = 0;
        Statement rows;
        if (!parts_->database.ReadNumber("SELECT EXISTS (SELECT 1 FROM files WHERE hash IS NOT NULL)", hashes) ||
            !rows.Prepare(parts_->database.Connection(), duplicatesSql)) {
            return SQLITE_ERROR;
        }
        if (hashes == 0) {
            mistake_ = parts_->file + " has no hashes; scan with --hash sha256";
            return SQLITE_DONE;
        }
        Record record;
        int status = rows.Step();
        for (; status == SQLITE_ROW; status = rows.Step()) {
            if (!ReadRecord(rows, parts_->answers, record)) return SQLITE_CORRUPT;
            record.copies = FromColumn(rows.Number(recordColumnCount));
            if (!take(record)) break;
        }
        return status;
    });
}

// Counted here: SQL would sort the files by their answers first.
bool StoreQuery::CountAnswers(const std::function<void(const AnswerCount&)>& take) {
    return AtOneMoment([&] {
        Statement rows;
        if (!rows.Prepare(parts_->database.Connection(), "SELECT answer, size, warnings FROM files"))
            return SQLITE_ERROR;
        std::map<AnswerKind, AnswerCount> counts;
        int status = rows.Step();
        for (; status == SQLITE_ROW; status = rows.Step()) {
            const std::uint64_t size = FromColumn(rows.Number(1));
            AnswerCount& count = counts[{rows.Number(0), rows.Number(2), size == 0 && !rows.IsNull(1)}];
            ++count.files;
            count.bytes += size;
        }
        if (status != SQLITE_DONE) return status;
        for (auto& [kind, count] : counts) {
            if (!FillAnswer(kind, parts_->answers, count.record)) return SQLITE_CORRUPT;
            take(count);
        }
        return SQLITE_DONE;
    });
}
