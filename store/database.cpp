// database.cpp - calls of SQLite, and what their failures mean to people.
#include "store/database.h"

#include <cstring>

bool Statement::Prepare(sqlite3* connection, const char* sql) {
    return sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) == SQLITE_OK;
}

void Statement::Note(int status) {
    if (bindingStatus_ == SQLITE_OK) bindingStatus_ = status;
}

void Statement::Bind(int parameter, std::int64_t number) { Note(sqlite3_bind_int64(statement_, parameter, number)); }

// A null pointer would be NULL.
void Statement::BindText(int parameter, std::string_view text) {
    Note(sqlite3_bind_text64(statement_, parameter, text.empty() ? "" : text.data(), text.size(), SQLITE_STATIC,
                             SQLITE_UTF8));
}

void Statement::BindBlob(int parameter, std::string_view bytes) {
    Note(sqlite3_bind_blob64(statement_, parameter, bytes.empty() ? "" : bytes.data(), bytes.size(), SQLITE_STATIC));
}

void Statement::BindNull(int parameter) { Note(sqlite3_bind_null(statement_, parameter)); }

int Statement::Step() { return bindingStatus_ != SQLITE_OK ? bindingStatus_ : sqlite3_step(statement_); }

void Statement::Reset() {
    sqlite3_reset(statement_);
    bindingStatus_ = SQLITE_OK;
}

bool Statement::Run() {
    int status = Step();
    while (status == SQLITE_ROW) status = Step();
    Reset();
    return status == SQLITE_DONE;
}

// The text first: asking for the number of bytes first could turn the value into another form.
std::string_view Statement::Text(int column) const {
    const void* const text = sqlite3_column_text(statement_, column);
    if (text == nullptr) return {};
    return {static_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::string_view Statement::Bytes(int column) const {
    const void* const bytes = sqlite3_column_blob(statement_, column);
    if (bytes == nullptr) return {};
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

// Names such as ":memory:" are files here.
bool Database::Open(const std::string& file, int flags) {
    const bool plain = file.starts_with('/') || (flags & SQLITE_OPEN_URI) != 0;
    const std::string name = plain ? file : "./" + file;
    if (sqlite3_open_v2(name.c_str(), &connection_, flags | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK) return false;
    sqlite3_extended_result_codes(connection_, 0);
    return sqlite3_busy_timeout(connection_, 10000) == SQLITE_OK;
}

void Database::Close() {
    sqlite3_close_v2(connection_);
    connection_ = nullptr;
}

bool Database::Run(const char* sql) { return sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

bool Database::ReadNumber(const char* sql, std::int64_t& number) {
    Statement statement;
    if (!statement.Prepare(connection_, sql)) return false;
    const int status = statement.Step();
    number = status == SQLITE_ROW ? statement.Number(0) : 0;
    return status == SQLITE_ROW || status == SQLITE_DONE;
}

std::string Database::Mistake(const std::string& file) const {
    if (connection_ == nullptr) return file + ": memory is exhausted";
    const int system = sqlite3_system_errno(connection_);
    const std::string told = sqlite3_errmsg(connection_);
    switch (sqlite3_errcode(connection_) & 0xFF) {
        case SQLITE_NOTADB:
            return file + " is no store: it is not a database of SQLite";
        case SQLITE_CORRUPT:
            return file + " is damaged (" + told + ")";
        case SQLITE_FULL:
            return file + " can't grow: the disk is full";
        case SQLITE_CANTOPEN:
            return file + " can't be opened" + (system != 0 ? std::string(": ") + std::strerror(system) : "");
        case SQLITE_READONLY:
        case SQLITE_PERM:
            return file + " can't be written: it, or its directory, is read-only";
        case SQLITE_IOERR:
            return file + ": " + told + (system != 0 ? std::string(" (") + std::strerror(system) + ")" : "");
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return file + " is locked by another program";
        case SQLITE_NOMEM:
            return file + ": memory is exhausted";
        default:
            return file + ": " + told;
    }
}
