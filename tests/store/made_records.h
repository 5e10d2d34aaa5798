// made_records.h - records and stores for tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "store/store.h"

// Of a time long before it is looked at.
inline constexpr std::int64_t lookedAt = 1'700'000'000;

inline fiid_result MadeAnswer(std::uint16_t fiid, const char* name) {
    fiid_result answer = {};
    answer.fiid = fiid;
    answer.basis = FIID_BASIS_SIGNATURE;
    answer.name = name;
    answer.mime = answer.version = answer.puids = answer.extensions = answer.signature = "";
    answer.further_signature = answer.routine = answer.family = "";
    return answer;
}

// A file of 100 bytes that was modified at a second.
inline Record MadeRecord(const std::string& path, std::int64_t modified = 1'000'000'000) {
    Record record = {};
    record.path = path;
    record.answer = MadeAnswer(1503, "GIF image");
    record.answer.size = 100;
    record.answer.modified_known = 1;
    record.answer.modified_seconds = modified;
    record.state = {true, 100, modified, 0, 7, 9};
    return record;
}

inline Record MadeFailure(const std::string& path, const std::string& error) {
    Record record = {};
    record.path = path;
    record.answer = MadeAnswer(0, "");
    record.answer.size = FIID_SIZE_UNKNOWN;
    record.error = error;
    return record;
}

inline StoreRun RunIn(const std::string& directory) {
    StoreRun run;
    run.directory = directory;
    return run;
}

inline std::unique_ptr<Store> OpenStore(const std::string& file) {
    std::string mistake;
    std::unique_ptr<Store> store = Store::Create(file, mistake);
    EXPECT_EQ(mistake, "");
    return store;
}

inline void Begin(Store& store, const StoreRun& run) {
    std::string mistake;
    EXPECT_TRUE(store.BeginRun(run, mistake)) << mistake;
}

inline StoreCounts End(Store& store, RunEnd end = RunEnd::Complete) {
    StoreCounts counts;
    EXPECT_TRUE(store.EndRun(end, counts)) << store.Mistake();
    return counts;
}

// A whole run that puts records.
inline StoreCounts Scan(Store& store, const std::vector<Record>& records, const StoreRun& run = RunIn("/here")) {
    Begin(store, run);
    for (const Record& record : records) EXPECT_TRUE(store.Put(record, lookedAt)) << store.Mistake();
    return End(store);
}

inline std::unique_ptr<StoreQuery> OpenQuery(const std::string& file) {
    std::string mistake;
    std::unique_ptr<StoreQuery> query = StoreQuery::Open(file, mistake);
    EXPECT_EQ(mistake, "");
    return query;
}

using Question = bool (StoreQuery::*)(const StoreQuery::Take&);

// All records that answer a question; their texts live as long as the query.
inline std::vector<Record> Ask(StoreQuery& query, Question question) {
    std::vector<Record> records;
    EXPECT_TRUE((query.*question)([&](const Record& record) {
        records.push_back(record);
        return true;
    })) << query.Mistake();
    return records;
}

inline std::vector<std::string> PathsOf(const std::vector<Record>& records) {
    std::vector<std::string> paths;
    for (const Record& record : records) paths.push_back(record.path);
    return paths;
}
