// Questions to a store, also while it is written.
#include <gtest/gtest.h>

#include <map>

#include "store/database.h"
#include "store/made_records.h"
#include "support/temporary_directory.h"

namespace {

using Paths = std::vector<std::string>;

Record Copy(const std::string& path, std::uint64_t size, char digit) {
    Record record = MadeRecord(path);
    record.answer.size = record.state.size = size;
    record.hash = std::string(64, digit);
    return record;
}

class Query : public testing::Test {
 protected:
    std::vector<Record> Told(const std::vector<Record>& records, Question question) {
        Scan(*store_, records);
        query_ = OpenQuery(file_);
        return Ask(*query_, question);
    }

    TemporaryDirectory directory_;
    std::string file_ = directory_.At("store");
    std::unique_ptr<Store> store_ = OpenStore(file_);
    std::unique_ptr<StoreQuery> query_;
};

TEST_F(Query, MismatchTellsUnusualNames) {
    Record unusual = MadeRecord("b.txt");
    unusual.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
    Record cut = MadeRecord("c");
    cut.answer.warnings = FIID_WARN_CUT | FIID_WARN_SEVERAL;
    Record other = MadeRecord("b\xE4");
    other.answer.warnings = FIID_WARN_EXTENSION;
    EXPECT_EQ(PathsOf(Told({MadeRecord("a"), unusual, cut, other}, &StoreQuery::Mismatch)), (Paths{"b.txt", "b\xE4"}));
}

TEST_F(Query, ErrorsTellFailures) {
    const std::vector<Record> told =
        Told({MadeRecord("a"), MadeFailure("d.x", "No"), MadeFailure("d/x", "Never"), MadeFailure("\xE4", "No")},
             &StoreQuery::Errors);
    EXPECT_EQ(PathsOf(told), (Paths{"d/x", "d.x", "\xE4"}));
    EXPECT_EQ(told[0].error, "Never");
}

TEST_F(Query, DuplicatesComeByTheSpaceThatTheyWaste) {
    const std::vector<Record> told =
        Told({Copy("a", 10, '1'), Copy("b", 10, '1'), Copy("c", 100, '2'), Copy("d.x", 100, '2'), Copy("d/x", 100, '2'),
              Copy("e", 150, '3'), Copy("f", 50, '4'), Copy("g", 50, '4'), Copy("h", 50, '4'), Copy("A", 100, '5'),
              Copy("z", 100, '5')},
             &StoreQuery::Duplicates);
    EXPECT_EQ(PathsOf(told), (Paths{"c", "d/x", "d.x", "A", "z", "f", "g", "h", "a", "b"}));
    EXPECT_EQ(told[0].copies, 3U);
    EXPECT_EQ(told[3].copies, 2U);
    EXPECT_EQ(told[0].hash, std::string(64, '2'));
}

TEST_F(Query, DuplicatesHaveOneSizeAndHash) {
    Record quick = Copy("d", 10, '1');
    quick.hash = std::string(16, '1');
    EXPECT_EQ(PathsOf(Told(
                  {Copy("a", 10, '1'), Copy("b", 11, '1'), Copy("c", 10, '2'), quick, MadeRecord("e"), MadeRecord("f")},
                  &StoreQuery::Duplicates)),
              Paths());
}

TEST_F(Query, EmptyFilesAreNoDuplicates) {
    EXPECT_EQ(PathsOf(Told({Copy("a", 0, '1'), Copy("b", 0, '1'), Copy("c", 1, '2'), Copy("d", 1, '2')},
                           &StoreQuery::Duplicates)),
              (Paths{"c", "d"}));
}

TEST_F(Query, DuplicatesNeedHashes) {
    Scan(*store_, {MadeRecord("a")});
    query_ = OpenQuery(file_);
    EXPECT_FALSE(query_->Duplicates([](const Record&) { return true; }));
    EXPECT_EQ(query_->Mistake(), file_ + " has no hashes; scan with --hash sha256");
    EXPECT_TRUE(query_->Files([](const Record&) { return true; }));
    EXPECT_EQ(query_->Mistake(), "");
}

TEST_F(Query, HashIsThatOfTheLatestRunThatHadOne) {
    HashKind hash = HashKind::Sha256;
    EXPECT_TRUE(OpenQuery(file_)->Hash(hash));
    EXPECT_EQ(hash, HashKind::None);
    StoreRun run = RunIn("/here");
    for (const HashKind kind : {HashKind::Sha256, HashKind::Xxh3}) {
        run.hash = kind;
        Scan(*store_, {}, run);
        Scan(*store_, {});
        EXPECT_TRUE(OpenQuery(file_)->Hash(hash));
        EXPECT_EQ(hash, kind);
    }
}

TEST_F(Query, CountsFilesByTheirAnswers) {
    Record unusual = MadeRecord("b");
    unusual.answer.warnings = FIID_WARN_EXTENSION;
    Record empty = MadeRecord("c");
    empty.answer.size = 0;
    Record other = MadeRecord("d");
    other.answer.fiid = 1999;
    other.answer.size = FIID_SIZE_UNKNOWN;
    Scan(*store_,
         {MadeRecord("a"), unusual, empty, MadeRecord("a2"), other, MadeFailure("e", "No"), MadeFailure("f", "Never")});
    query_ = OpenQuery(file_);
    std::vector<AnswerCount> counts;
    EXPECT_TRUE(query_->CountAnswers([&](const AnswerCount& count) { counts.push_back(count); }));
    const auto filesWith = [&](std::uint16_t fiid, std::uint32_t warnings, std::uint64_t size) {
        AnswerCount found;
        for (const AnswerCount& count : counts) {
            const fiid_result& answer = count.record.answer;
            if (answer.fiid == fiid && answer.warnings == warnings && answer.size == size) found = count;
        }
        return found;
    };
    ASSERT_EQ(counts.size(), 5U);
    EXPECT_EQ(filesWith(1503, 0, FIID_SIZE_UNKNOWN).files, 2U);
    EXPECT_EQ(filesWith(1503, 0, FIID_SIZE_UNKNOWN).bytes, 200U);
    EXPECT_STREQ(filesWith(1503, 0, FIID_SIZE_UNKNOWN).record.answer.name, "GIF image");
    EXPECT_EQ(filesWith(1503, FIID_WARN_EXTENSION, FIID_SIZE_UNKNOWN).bytes, 100U);
    EXPECT_EQ(filesWith(1503, 0, 0).files, 1U);
    EXPECT_EQ(filesWith(1999, 0, FIID_SIZE_UNKNOWN).bytes, 0U);
    EXPECT_EQ(filesWith(0, 0, FIID_SIZE_UNKNOWN).files, 2U);
    EXPECT_TRUE(filesWith(0, 0, FIID_SIZE_UNKNOWN).record.error.has_value());
}

TEST_F(Query, WhoeverTakesMayStop) {
    Scan(*store_, {Copy("a", 1, '1'), Copy("b", 1, '1')});
    Scan(*store_, {Copy("c", 1, '1'), Copy("d", 1, '1')});
    query_ = OpenQuery(file_);
    for (const Question question : {&StoreQuery::Files, &StoreQuery::Changes, &StoreQuery::Duplicates}) {
        int taken = 0;
        EXPECT_TRUE(((*query_).*question)([&](const Record&) { return ++taken < 1; }));
        EXPECT_EQ(taken, 1);
    }
    EXPECT_EQ(Ask(*query_, &StoreQuery::Files).size(), 4U);
}

// An answer is that of one moment, and holds nobody up.
TEST_F(Query, WritingGoesOnBesideAnAnswer) {
    Scan(*store_, {MadeRecord("a"), MadeRecord("b")});
    query_ = OpenQuery(file_);
    Begin(*store_, RunIn("/here"));
    Paths told;
    EXPECT_TRUE(query_->Files([&](const Record& record) {
        told.push_back(record.path);
        EXPECT_TRUE(store_->Put(MadeRecord(record.path + "+"), lookedAt) && store_->Put(MadeRecord("b", 5), lookedAt) &&
                    store_->Commit());
        return true;
    }));
    EXPECT_EQ(told, (Paths{"a", "b"}));
    End(*store_);
    EXPECT_EQ(PathsOf(Ask(*query_, &StoreQuery::Files)), (Paths{"a", "a+", "b", "b+"}));
}

TEST_F(Query, ViewTellsFieldsInWords) {
    Record record = MadeRecord("a", 0);
    record.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_SEVERAL;
    record.hash = std::string(64, 'a');
    Record other = MadeRecord("b\xE4");
    other.answer.warnings = FIID_WARN_CUT;
    other.hash = "00000000000000ff";
    Scan(*store_, {record, other, MadeFailure("c", "No")});
    Database database;
    ASSERT_TRUE(database.Open(file_, SQLITE_OPEN_READWRITE));
    const auto read = [&](const std::string& sql) {
        Statement statement;
        EXPECT_TRUE(statement.Prepare(database.Connection(), sql.c_str())) << sql;
        EXPECT_EQ(statement.Step(), SQLITE_ROW);
        return std::string(statement.Text(0));
    };
    EXPECT_EQ(read("SELECT path || '|' || fiid || '|' || name || '|' || basis || '|' || warning || '|' || size || '|' "
                   "|| mtime || '|' || "
                   "sha256 || '|' || run FROM records WHERE path_hex IS NULL AND further IS NULL AND version IS NULL"),
              "a|1503|GIF image|signature|extension several|100|1970-01-01T00:00:00Z|" + std::string(64, 'a') + "|1");
    EXPECT_EQ(
        read("SELECT path_hex || '|' || warning || '|' || xxh3 FROM records WHERE sha256 IS NULL AND error IS NULL"),
        "62e4|cut|00000000000000ff");
    EXPECT_EQ(read("SELECT path || '|' || error FROM records WHERE fiid IS NULL AND warning IS NULL"), "c|No");
}

}  // namespace
