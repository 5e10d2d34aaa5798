// answers.cpp - rows of the table `answers`.
#include "store/answers.h"

#include <cstring>
#include <string_view>
#include <vector>

namespace {

// The columns of an answer in the order of both statements below, as parameters from 1 and columns from 0.
constexpr const char* findSql =
    "SELECT answer FROM answers WHERE fiid = ?1 AND further = ?2 AND version = ?3 AND name = ?4 AND mime = ?5 AND "
    "puid = ?6 AND extensions = ?7 AND family = ?8 AND basis = ?9 AND \"row\" = ?10 AND signature = ?11 AND "
    "routine = ?12 AND further_row = ?13 AND further_signature = ?14 AND flags = ?15 AND tables_version = ?16";
constexpr const char* addSql =
    "INSERT INTO answers (fiid, further, version, name, mime, puid, extensions, family, basis, \"row\", signature, "
    "routine, further_row, further_signature, flags, tables_version) "
    "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16)";
constexpr const char* readSql =
    "SELECT fiid, further, version, name, mime, puid, extensions, family, basis, \"row\", signature, routine, "
    "further_row, further_signature, flags, tables_version FROM answers WHERE answer = ?1";

void BindAnswer(Statement& statement, const fiid_result& answer, std::uint32_t flags, const std::string& tables) {
    statement.Bind(1, answer.fiid);
    statement.Bind(2, answer.further);
    statement.BindText(3, answer.version);
    statement.BindText(4, answer.name);
    statement.BindText(5, answer.mime);
    statement.BindText(6, answer.puids);
    statement.BindText(7, answer.extensions);
    statement.BindText(8, answer.family);
    statement.BindText(9, fiid_basis_text(answer.basis));
    statement.Bind(10, answer.row);
    statement.BindText(11, answer.signature);
    statement.BindText(12, answer.routine);
    statement.Bind(13, answer.further_row);
    statement.BindText(14, answer.further_signature);
    statement.Bind(15, flags);
    statement.BindText(16, tables);
}

template <typename Number>
void AppendNumber(std::string& key, Number number) {
    key.append(reinterpret_cast<const char*>(&number), sizeof(number));  // only ever compared, in this process
}

void AppendText(std::string& key, std::string_view text) {
    key += text;
    key += '\0';
}

void AppendKey(std::string& key, const fiid_result& answer, std::uint32_t flags, const std::string& tables) {
    AppendNumber(key, answer.fiid);
    AppendNumber(key, answer.further);
    AppendNumber(key, answer.row);
    AppendNumber(key, answer.further_row);
    AppendNumber(key, answer.basis);
    AppendNumber(key, flags);
    for (const char* const text :
         {answer.version, answer.name, answer.mime, answer.puids, answer.extensions, answer.family, answer.signature,
          answer.routine, answer.further_signature, tables.c_str()}) {
        AppendText(key, text);
    }
}

std::int32_t BasisOf(std::string_view word) {
    for (std::int32_t basis = FIID_BASIS_SIGNATURE; *fiid_basis_text(basis) != '\0'; ++basis) {
        if (fiid_basis_text(basis) == word) return basis;
    }
    return FIID_BASIS_NONE;
}

bool HasSeveral(std::string_view words) { return words.find(' ') != std::string_view::npos; }

// The numbers of answers of other tables.
bool ReadOlderAnswers(Database& database, const std::string& tablesVersion, std::vector<std::int64_t>& answers) {
    Statement statement;
    if (!statement.Prepare(database.Connection(), "SELECT answer FROM answers WHERE tables_version <> ?1"))
        return false;
    statement.BindText(1, tablesVersion);
    int status = statement.Step();
    for (; status == SQLITE_ROW; status = statement.Step()) answers.push_back(statement.Number(0));
    return status == SQLITE_DONE;
}

bool RenewAnswer(Statement& renew, std::int64_t answer, const fiid_format& today, const std::string& tablesVersion) {
    renew.Bind(1, answer);
    renew.BindText(2, today.name);
    renew.BindText(3, today.mime);
    renew.BindText(4, today.puids);
    renew.BindText(5, today.family);
    renew.BindText(6, tablesVersion);
    return renew.Run();
}

}  // namespace

bool AnswerIds::Prepare(Database& database) {
    return find_.Prepare(database.Connection(), findSql) && add_.Prepare(database.Connection(), addSql);
}

std::int64_t AnswerIds::IdOf(const fiid_result& answer, std::uint32_t flags, const std::string& tablesVersion) {
    key_.clear();
    AppendKey(key_, answer, flags, tablesVersion);
    const auto known = ids_.find(key_);
    if (known != ids_.end()) return known->second;
    BindAnswer(find_, answer, flags, tablesVersion);
    const int status = find_.Step();
    std::int64_t id = status == SQLITE_ROW ? find_.Number(0) : 0;
    find_.Reset();
    if (status == SQLITE_DONE) {
        BindAnswer(add_, answer, flags, tablesVersion);
        const int added = add_.Step();
        add_.Reset();
        if (added == SQLITE_DONE) id = sqlite3_last_insert_rowid(add_.Connection());
    }
    if (id != 0) ids_.emplace(key_, id);
    return id;
}

bool AnswerTexts::Prepare(Database& database) { return find_.Prepare(database.Connection(), readSql); }

const char* AnswerTexts::Keep(std::string_view text) { return texts_.emplace(text).first->c_str(); }

const StoredAnswer* AnswerTexts::Find(std::int64_t answer) {
    const auto known = answers_.find(answer);
    if (known != answers_.end()) return &known->second;
    find_.Bind(1, answer);
    const bool found = find_.Step() == SQLITE_ROW;
    StoredAnswer read = {};
    if (found) {
        read.fiid = static_cast<std::uint16_t>(find_.Number(0));
        read.further = static_cast<std::uint16_t>(find_.Number(1));
        read.version = Keep(find_.Text(2));
        read.name = Keep(find_.Text(3));
        read.mime = Keep(find_.Text(4));
        read.puids = Keep(find_.Text(5));
        read.extensions = Keep(find_.Text(6));
        read.family = Keep(find_.Text(7));
        read.basis = BasisOf(find_.Text(8));
        read.row = static_cast<std::uint16_t>(find_.Number(9));
        read.signature = Keep(find_.Text(10));
        read.routine = Keep(find_.Text(11));
        read.furtherRow = static_cast<std::uint16_t>(find_.Number(12));
        read.furtherSignature = Keep(find_.Text(13));
        read.flags = static_cast<std::uint32_t>(find_.Number(14));
        read.tablesVersion = Keep(find_.Text(15));
    }
    find_.Reset();
    return found ? &answers_.emplace(answer, read).first->second : nullptr;
}

void ClearResult(fiid_result& result) {
    result = {};
    result.size = FIID_SIZE_UNKNOWN;
    result.name = result.mime = result.version = result.puids = result.extensions = "";
    result.signature = result.further_signature = result.routine = result.family = "";
    for (const char*& text : result.reserved_texts) text = "";
}

void FillResult(const StoredAnswer& answer, fiid_result& result) {
    ClearResult(result);
    result.fiid = answer.fiid;
    result.further = answer.further;
    result.row = answer.row;
    result.further_row = answer.furtherRow;
    result.basis = answer.basis;
    result.name = answer.name;
    result.mime = answer.mime;
    result.version = answer.version;
    result.puids = answer.puids;
    result.extensions = answer.extensions;
    result.family = answer.family;
    result.signature = answer.signature;
    result.routine = answer.routine;
    result.further_signature = answer.furtherSignature;
}

bool MayAnswerOtherwise(const StoredAnswer& answer, const fiid_format& today) {
    if (answer.further != 0 || answer.version[0] != '\0' || today.id != answer.fiid) return true;
    if ((answer.flags & FIID_NO_FURTHER) == 0 && (today.flags & FIID_FORMAT_IS_OPEN) != 0) return true;
    return std::strcmp(answer.extensions, today.extensions) != 0 || HasSeveral(answer.puids) != HasSeveral(today.puids);
}

bool MayAnswerOtherwise(const StoredAnswer& answer) {
    fiid_format today;
    return fiid_format_find(answer.fiid, &today) != FIID_OK || MayAnswerOtherwise(answer, today);
}

bool RenewAnswers(Database& database, const std::string& tablesVersion) {
    std::vector<std::int64_t> older;
    AnswerTexts texts;
    Statement renew;
    if (!ReadOlderAnswers(database, tablesVersion, older) || !texts.Prepare(database) ||
        !renew.Prepare(database.Connection(),
                       "UPDATE answers SET name = ?2, mime = ?3, puid = ?4, family = ?5, tables_version = ?6 "
                       "WHERE answer = ?1")) {
        return false;
    }
    for (const std::int64_t answer : older) {
        const StoredAnswer* const stored = texts.Find(answer);
        if (stored == nullptr) return false;
        fiid_format today;
        if (fiid_format_find(stored->fiid, &today) != FIID_OK || MayAnswerOtherwise(*stored, today)) continue;
        if (!RenewAnswer(renew, answer, today, tablesVersion)) return false;
    }
    return true;
}
