// answers.h - the table of distinct answers, from both of its sides.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "fiid/detect.h"
#include "store/database.h"

// Numbers for answers, for the one who writes. As many are kept in memory as there are distinct ones, which the tables
// of formats and their versions bound: some thousands at most.
class AnswerIds {
 public:
    bool Prepare(Database& database);
    // The number of an answer as told with flags by tables of a version; it is added if there is none. 0 after a
    // failure.
    std::int64_t IdOf(const fiid_result& answer, std::uint32_t flags, const std::string& tablesVersion);

 private:
    Statement find_;
    Statement add_;
    std::string key_;  // of the answer that is looked for; kept for its memory
    std::unordered_map<std::string, std::int64_t> ids_;
};

// One row of the table. The texts belong to the AnswerTexts that it comes from.
struct StoredAnswer {
    std::uint16_t fiid;
    std::uint16_t further;
    std::uint16_t row;
    std::uint16_t furtherRow;
    std::int32_t basis;
    std::uint32_t flags;
    const char* version;
    const char* name;
    const char* mime;
    const char* puids;
    const char* extensions;
    const char* family;
    const char* signature;
    const char* routine;
    const char* furtherSignature;
    const char* tablesVersion;
};

// Answers by their numbers, for those who read. What was asked for once stays in memory.
class AnswerTexts {
 public:
    bool Prepare(Database& database);
    // Null after a failure, and where there is no such number, which is then a damage of the file.
    const StoredAnswer* Find(std::int64_t answer);

 private:
    const char* Keep(std::string_view text);

    Statement find_;
    std::unordered_set<std::string> texts_;  // its strings stay where they are
    std::unordered_map<std::int64_t, StoredAnswer> answers_;
};

// Fills what an answer tells; the other fields are 0, and the size is not known.
void FillResult(const StoredAnswer& answer, fiid_result& result);

// A result with every number 0, every string "" and no size, as it is after a failure.
void ClearResult(fiid_result& result);

// Whether the tables of today may answer otherwise about a file than an answer of other tables does. It is so for what
// they look on at; and a format whose usual extensions, or whether it has several PRONOM identifiers, are others now,
// may have other warnings.
bool MayAnswerOtherwise(const StoredAnswer& answer, const fiid_format& today);
bool MayAnswerOtherwise(const StoredAnswer& answer);  // with the format of this library

// Gives answers of other tables than those of a version, about which these can't answer otherwise, the names, media
// types, PRONOM identifiers, extensions and families of this library.
bool RenewAnswers(Database& database, const std::string& tablesVersion);
