// schema.cpp - the tables, and the steps to them.
#include "store/schema.h"

namespace {

// Answers are few and files are many, so a file has the number of its answer. What changes with each file of a format
// (its warnings, what reading it cost) stands with the file. Files have no row number: their path is their key, and the
// one tree of them is in the order of walks, which so writes it from one end to the other.
constexpr SchemaStep steps[] = {
    {1, R"sql(
CREATE TABLE runs (
    run            INTEGER PRIMARY KEY,
    started        INTEGER NOT NULL,
    ended          INTEGER,
    state          TEXT NOT NULL,
    arguments      TEXT NOT NULL,
    directory      TEXT NOT NULL,
    flags          INTEGER NOT NULL,
    hash           TEXT,
    rescan         INTEGER NOT NULL,
    refresh        INTEGER NOT NULL,
    fiid_version   TEXT NOT NULL,
    tables_version TEXT NOT NULL,
    new            INTEGER,
    changed        INTEGER,
    unchanged      INTEGER,
    gone           INTEGER,
    unreadable     INTEGER
);
CREATE TABLE answers (
    answer            INTEGER PRIMARY KEY,
    fiid              INTEGER NOT NULL,
    further           INTEGER NOT NULL,
    version           TEXT NOT NULL,
    name              TEXT NOT NULL,
    mime              TEXT NOT NULL,
    puid              TEXT NOT NULL,
    extensions        TEXT NOT NULL,
    family            TEXT NOT NULL,
    basis             TEXT NOT NULL,
    "row"             INTEGER NOT NULL,
    signature         TEXT NOT NULL,
    routine           TEXT NOT NULL,
    further_row       INTEGER NOT NULL,
    further_signature TEXT NOT NULL,
    flags             INTEGER NOT NULL,
    tables_version    TEXT NOT NULL
);
CREATE INDEX answers_by_format ON answers (fiid, further, version);
CREATE TABLE files (
    path       TEXT NOT NULL,
    path_hex   TEXT NOT NULL,
    answer     INTEGER REFERENCES answers,
    error      TEXT,
    warnings   INTEGER NOT NULL,
    size       INTEGER,
    mtime      INTEGER,
    mtime_ns   INTEGER,
    inode      INTEGER,
    device     INTEGER,
    hash       BLOB,
    looked_at  TEXT,
    bytes_read INTEGER,
    calls      INTEGER,
    seen       INTEGER,
    run        INTEGER NOT NULL REFERENCES runs,
    first_run  INTEGER NOT NULL REFERENCES runs,
    PRIMARY KEY (path, path_hex)
) WITHOUT ROWID;
CREATE INDEX files_not_text ON files (path_hex) WHERE path_hex <> '';
CREATE INDEX files_not_read ON files (path) WHERE error IS NOT NULL;
CREATE TABLE changes (
    run           INTEGER NOT NULL REFERENCES runs,
    path          TEXT NOT NULL,
    path_hex      TEXT NOT NULL,
    kind          TEXT NOT NULL,
    answer        INTEGER REFERENCES answers,
    error         TEXT,
    warnings      INTEGER NOT NULL,
    size          INTEGER,
    mtime         INTEGER,
    mtime_ns      INTEGER,
    hash          BLOB,
    answer_before INTEGER REFERENCES answers,
    error_before  TEXT,
    PRIMARY KEY (run, path, path_hex)
) WITHOUT ROWID;
CREATE VIEW records AS
SELECT f.path, nullif(f.path_hex, '') AS path_hex, a.fiid, a.name, nullif(a.mime, '') AS mime,
       nullif(a.puid, '') AS puid, f.error, nullif(a.further, 0) AS further, nullif(a.version, '') AS version,
       nullif(a.basis, '') AS basis,
       nullif(trim(iif(f.warnings & 1, 'extension ', '') || iif(f.warnings & 2, 'cut ', '') ||
                   iif(f.warnings & 4, 'several', '')), '') AS warning,
       f.size, strftime('%Y-%m-%dT%H:%M:%SZ', f.mtime, 'unixepoch') AS mtime, a.family,
       nullif(a.extensions, '') AS extensions,
       iif(length(f.hash) = 32, lower(hex(f.hash)), NULL) AS sha256,
       iif(length(f.hash) = 8, lower(hex(f.hash)), NULL) AS xxh3,
       a."row", nullif(a.signature, '') AS signature, nullif(a.routine, '') AS routine,
       nullif(a.further_row, 0) AS further_row, nullif(a.further_signature, '') AS further_signature,
       f.looked_at, f.bytes_read, f.calls, f.run
FROM files AS f LEFT JOIN answers AS a USING (answer);
)sql"},
};

std::string Pragma(const char* name, std::int64_t value) {
    return std::string("PRAGMA ") + name + " = " + std::to_string(value);
}

// What a database is by its own words.
struct Identity {
    std::int64_t application = 0;
    std::int64_t version = 0;
    std::int64_t tables = 0;
};

bool ReadIdentity(Database& database, Identity& identity) {
    return database.ReadNumber("PRAGMA application_id", identity.application) &&
           database.ReadNumber("PRAGMA user_version", identity.version) &&
           database.ReadNumber("SELECT count(*) FROM sqlite_schema", identity.tables);
}

bool IsEmpty(const Identity& identity) {
    return identity.application == 0 && identity.version == 0 && identity.tables == 0;
}

std::string Refuse(const Identity& identity, std::span<const SchemaStep> taken, const std::string& file) {
    if (identity.application != storeApplicationId) return file + " is a database of another program";
    if (identity.version > taken.back().version) {
        return file + " was made by a later fiid (version " + std::to_string(identity.version) +
               " of the tables; this one knows " + std::to_string(taken.back().version) + ")";
    }
    return {};
}

bool Apply(Database& database, const SchemaStep& step) {
    return database.Run(step.sql) && database.Run(Pragma("user_version", step.version).c_str());
}

}  // namespace

std::span<const SchemaStep> StoreSchema() { return steps; }

std::string BringToSchema(Database& database, std::span<const SchemaStep> taken, const std::string& file) {
    Identity identity;
    if (!ReadIdentity(database, identity)) return database.Mistake(file);
    if (!IsEmpty(identity)) {
        std::string refused = Refuse(identity, taken, file);
        if (!refused.empty() || identity.version == taken.back().version) return refused;
    }
    bool done = database.Run("BEGIN IMMEDIATE") && database.Run(Pragma("application_id", storeApplicationId).c_str());
    for (const SchemaStep& step : taken) done = done && (step.version <= identity.version || Apply(database, step));
    if (done && database.Run("COMMIT")) return {};
    std::string mistake = database.Mistake(file);
    static_cast<void>(database.Run("ROLLBACK"));
    return mistake;
}

std::string CheckSchema(Database& database, std::span<const SchemaStep> taken, const std::string& file) {
    Identity identity;
    if (!ReadIdentity(database, identity)) return database.Mistake(file);
    if (IsEmpty(identity)) return file + " is an empty store: nothing was scanned into it";
    std::string refused = Refuse(identity, taken, file);
    if (!refused.empty() || identity.version == taken.back().version) return refused;
    return file + " was made by an earlier fiid; the next scan into it brings it up to date";
}
