// store_reader.cpp - decides which files need no second look.
#include "store/store_reader.h"

#include "store/path_key.h"
#include "store/record_rows.h"

namespace {

constexpr int seenColumn = recordColumnCount;
constexpr int hashColumn = 10;
constexpr int lookedAtColumn = 11;

// How an answer is taken by a run.
enum class Use { No, AsOlder, Yes };

Use UseOf(const StoredAnswer& answer, const StoreRun& run) {
    if (answer.flags != AnswerFlags(run.flags)) return Use::No;
    if (answer.tablesVersion == run.tables || !MayAnswerOtherwise(answer)) return Use::Yes;
    return run.refresh ? Use::No : Use::AsOlder;
}

bool IsAsItWas(const Statement& row, const Record& record, const FileState& now) {
    const FileState& then = record.state;
    return then.known && now.known && !row.IsNull(seenColumn) && then.size == now.size &&
           then.modifiedSeconds == now.modifiedSeconds && then.modifiedNanoseconds == now.modifiedNanoseconds &&
           then.inode == now.inode && then.modifiedSeconds < row.Number(seenColumn) - coarsestClock;
}

bool HasWhatIsAsked(const Statement& row, const StoreRun& run) {
    if (run.hash != HashKind::None && row.Bytes(hashColumn).size() != HashSize(run.hash)) return false;
    return (run.flags & FIID_EXPLAIN) == 0 || !row.IsNull(lookedAtColumn);
}

}  // namespace

std::size_t HashSize(HashKind kind) { return kind == HashKind::Sha256 ? 32 : kind == HashKind::Xxh3 ? 8 : 0; }

std::uint32_t AnswerFlags(std::uint32_t flags) { return flags & (FIID_NO_TEXT | FIID_NO_FURTHER); }

bool OpenReaderParts(const std::string& file, StoreReader::Parts& parts, std::string& mistake) {
    if (parts.database.Open(file, SQLITE_OPEN_READONLY) && parts.database.Run("PRAGMA cache_size = -1024") &&
        parts.answers.Prepare(parts.database) &&
        parts.find.Prepare(parts.database.Connection(), "SELECT " FIID_RECORD_COLUMNS ", f.seen FROM files AS f "
                                                        "WHERE f.path = ?1 AND f.path_hex = ?2 AND f.error IS NULL")) {
        return true;
    }
    mistake = parts.database.Mistake(file);
    return false;
}

StoreReader::StoreReader(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

StoreReader::~StoreReader() = default;

std::optional<Record> StoreReader::Find(const std::string& path, const FileState& now) {
    if (parts_->findsNothing || !now.known) return std::nullopt;
    const PathKey key = KeyOfPath(NormalisedPath(path));
    Statement& row = parts_->find;
    row.BindText(1, key.text);
    row.BindText(2, key.hex);
    std::optional<Record> record;
    if (row.Step() == SQLITE_ROW && HasWhatIsAsked(row, parts_->run)) {
        record.emplace();
        const StoredAnswer* const answer = parts_->answers.Find(row.Number(2));
        const Use use = answer != nullptr ? UseOf(*answer, parts_->run) : Use::No;
        if (use == Use::No || !ReadRecord(row, parts_->answers, *record) || !IsAsItWas(row, *record, now)) {
            record.reset();
        } else if (use == Use::AsOlder) {
            ++*parts_->older;
        }
    }
    row.Reset();
    if (!record) return record;
    record->path = path;
    record->state = now;
    if (parts_->run.hash == HashKind::None) record->hash.clear();
    if ((parts_->run.flags & FIID_EXPLAIN) == 0) record->answer.explanation[0] = '\0';
    return record;
}
