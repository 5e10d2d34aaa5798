// database.h - SQLite's connections and statements, closed by themselves, and its failures in plain words.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

// A prepared statement. Columns count from 0, parameters from 1. A failure of a binding shows in the next step.
class Statement {
 public:
    Statement() = default;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement() { sqlite3_finalize(statement_); }

    bool Prepare(sqlite3* connection, const char* sql);
    sqlite3* Connection() const { return sqlite3_db_handle(statement_); }

    // Texts and blobs are not copied: they must stay until Reset.
    void Bind(int parameter, std::int64_t number);
    void BindText(int parameter, std::string_view text);
    void BindBlob(int parameter, std::string_view bytes);
    void BindNull(int parameter);

    int Step();  // SQLITE_ROW, SQLITE_DONE or a failure
    void Reset();
    bool Run();  // Step to the end and Reset, for what delivers no rows

    bool IsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }
    std::int64_t Number(int column) const { return sqlite3_column_int64(statement_, column); }
    std::string_view Text(int column) const;   // until the next Step or Reset; "" for NULL
    std::string_view Bytes(int column) const;  // likewise, of a blob

 private:
    void Note(int status);

    sqlite3_stmt* statement_ = nullptr;
    int bindingStatus_ = SQLITE_OK;
};

// One connection, for one thread at a time.
class Database {
 public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database() { Close(); }

    // flags are those of sqlite3_open_v2. Statements wait 10 seconds for locks of others.
    bool Open(const std::string& file, int flags);
    void Close();

    bool Run(const char* sql);
    // The first column of the first row; 0 where there is none.
    bool ReadNumber(const char* sql, std::int64_t& number);

    sqlite3* Connection() const { return connection_; }
    // What failed last, in words that follow the name of the file: "FILE is damaged (...)".
    std::string Mistake(const std::string& file) const;
    int Status() const { return sqlite3_errcode(connection_); }

 private:
    sqlite3* connection_ = nullptr;
};
