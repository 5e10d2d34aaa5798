// Runs into a store: what is kept, what is found again, what changed, what is gone.
#include "store/store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "store/made_records.h"
#include "support/temporary_directory.h"

namespace {

using Paths = std::vector<std::string>;

class StoreOfRuns : public testing::Test {
 protected:
    // What a reader of a new run finds for a file as a record has it.
    std::optional<Record> Found(const Record& record, StoreRun run = RunIn("/here"), const std::string& path = "") {
        Begin(*store_, run);
        std::optional<Record> found;
        {
            std::string mistake;
            const std::unique_ptr<StoreReader> reader = store_->OpenReader(mistake);
            EXPECT_EQ(mistake, "");
            found = reader->Find(path.empty() ? record.path : path, record.state);
            if (found) {
                found_ = found->answer.name;  // goes with the reader
                found->answer.name = found_.c_str();
            }
        }
        counts_ = End(*store_, RunEnd::Interrupted);
        return found;
    }

    std::vector<Record> Asked(Question question) {
        query_ = OpenQuery(file_);
        return Ask(*query_, question);
    }

    TemporaryDirectory directory_;
    std::string file_ = directory_.At("store");
    std::unique_ptr<Store> store_ = OpenStore(file_);
    std::unique_ptr<StoreQuery> query_;
    std::string found_;
    StoreCounts counts_;
};

TEST_F(StoreOfRuns, KeepsAllThatARecordTells) {
    Record record = MadeRecord("a");
    fiid_result& answer = record.answer;
    answer.further = 20101;
    answer.row = 404;
    answer.further_row = 7;
    answer.basis = FIID_BASIS_TEXT;
    answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_SEVERAL;
    answer.modified_seconds = record.state.modifiedSeconds = -5;
    answer.modified_nanoseconds = record.state.modifiedNanoseconds = 999'999'999;
    answer.bytes_read = 8192;
    answer.calls = 3;
    answer.mime = "image/gif";
    answer.version = "89a";
    answer.puids = "fmt/3 fmt/4";
    answer.extensions = "gif giff";
    answer.signature = ">0 \"GIF8\"";
    answer.further_signature = ">6 01";
    answer.routine = "FIRoutine";
    answer.family = "image";
    std::snprintf(answer.explanation, sizeof(answer.explanation), "bytes at 0");
    record.state.inode = UINT64_MAX;
    record.hash = "00ff00ff00ff00ff";
    Scan(*store_, {record});
    const std::vector<Record> told = Asked(&StoreQuery::Files);
    ASSERT_EQ(told.size(), 1U);
    const Record& kept = told[0];
    EXPECT_EQ(kept.path, "a");
    EXPECT_EQ(kept.error, std::nullopt);
    EXPECT_EQ(kept.hash, "00ff00ff00ff00ff");
    EXPECT_EQ(kept.state.inode, UINT64_MAX);
    EXPECT_EQ(kept.state.device, 9U);
    EXPECT_EQ(kept.state.size, 100U);
    EXPECT_EQ(kept.state.modifiedSeconds, -5);
    EXPECT_EQ(kept.state.modifiedNanoseconds, 999'999'999U);
    EXPECT_EQ(kept.change.kind, ChangeKind::None);
    EXPECT_EQ(kept.copies, 0U);
    EXPECT_EQ(kept.answer.fiid, 1503);
    EXPECT_EQ(kept.answer.further, 20101);
    EXPECT_EQ(kept.answer.row, 404);
    EXPECT_EQ(kept.answer.further_row, 7);
    EXPECT_EQ(kept.answer.basis, FIID_BASIS_TEXT);
    EXPECT_EQ(kept.answer.warnings, std::uint32_t{FIID_WARN_EXTENSION | FIID_WARN_SEVERAL});
    EXPECT_EQ(kept.answer.size, 100U);
    EXPECT_EQ(kept.answer.modified_known, 1U);
    EXPECT_EQ(kept.answer.modified_seconds, -5);
    EXPECT_EQ(kept.answer.modified_nanoseconds, 999'999'999U);
    EXPECT_EQ(kept.answer.bytes_read, 8192U);
    EXPECT_EQ(kept.answer.calls, 3U);
    EXPECT_STREQ(kept.answer.name, "GIF image");
    EXPECT_STREQ(kept.answer.mime, "image/gif");
    EXPECT_STREQ(kept.answer.version, "89a");
    EXPECT_STREQ(kept.answer.puids, "fmt/3 fmt/4");
    EXPECT_STREQ(kept.answer.extensions, "gif giff");
    EXPECT_STREQ(kept.answer.signature, ">0 \"GIF8\"");
    EXPECT_STREQ(kept.answer.further_signature, ">6 01");
    EXPECT_STREQ(kept.answer.routine, "FIRoutine");
    EXPECT_STREQ(kept.answer.family, "image");
    EXPECT_STREQ(kept.answer.explanation, "bytes at 0");
}

TEST_F(StoreOfRuns, KeepsWhatIsNotKnown) {
    Record stream = MadeRecord("fifo");
    stream.state = {};
    stream.answer.modified_known = 0;
    stream.answer.size = FIID_SIZE_UNKNOWN;
    stream.answer.basis = FIID_BASIS_NONE;
    Scan(*store_, {stream, MadeFailure("locked", "Permission denied: \xE4")});
    const std::vector<Record> told = Asked(&StoreQuery::Files);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].answer.size, FIID_SIZE_UNKNOWN);
    EXPECT_EQ(told[0].answer.modified_known, 0U);
    EXPECT_EQ(told[0].answer.basis, FIID_BASIS_NONE);
    EXPECT_FALSE(told[0].state.known);
    EXPECT_EQ(told[1].error, "Permission denied: \xEF\xBF\xBD");
    EXPECT_EQ(told[1].answer.fiid, 0);
    EXPECT_EQ(told[1].answer.size, FIID_SIZE_UNKNOWN);
    EXPECT_STREQ(told[1].answer.name, "");
}

TEST_F(StoreOfRuns, FindsAnUnchangedFileByAnySpellingOfItsPath) {
    const Record record = MadeRecord("d/a");
    EXPECT_EQ(Scan(*store_, {record}).fresh, 1U);
    const std::optional<Record> found = Found(record, RunIn("/here"), "./d//a");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path, "./d//a");
    EXPECT_EQ(found->answer.fiid, 1503);
    EXPECT_STREQ(found->answer.name, "GIF image");
    EXPECT_TRUE(found->state.known);
    EXPECT_FALSE(Found(record, RunIn("/here"), "d/b"));
}

TEST_F(StoreOfRuns, FindsPathsOfAnyBytes) {
    const Record record = MadeRecord("d\xE4");
    Scan(*store_, {record, MadeRecord("d\xE5")});
    EXPECT_TRUE(Found(record));
    EXPECT_FALSE(Found(record, RunIn("/here"), "d\xE6"));
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Files)), (Paths{"d\xE4", "d\xE5"}));
}

TEST_F(StoreOfRuns, FindsNoChangedFile) {
    const Record record = MadeRecord("a");
    Scan(*store_, {record});
    Record other = record;
    other.state.size = 101;
    EXPECT_FALSE(Found(other));
    other = record;
    other.state.modifiedSeconds += 1;
    EXPECT_FALSE(Found(other));
    other = record;
    other.state.modifiedNanoseconds = 1;
    EXPECT_FALSE(Found(other));
    other = record;
    other.state.inode = 8;
    EXPECT_FALSE(Found(other));
    other = record;
    other.state.known = false;
    EXPECT_FALSE(Found(other));
    other = record;
    other.state.device = 10;
    EXPECT_TRUE(Found(other));
}

TEST_F(StoreOfRuns, LooksAgainAtWhatWasModifiedAsItWasLookedAt) {
    const Record atRest = MadeRecord("a", lookedAt - 3);
    const Record inMotion = MadeRecord("b", lookedAt - 2);
    const Record fromTheFuture = MadeRecord("c", lookedAt + 100);
    Record grown = MadeRecord("d");
    grown.answer.size = 101;
    Record touched = MadeRecord("e");
    touched.answer.modified_nanoseconds = 1;
    Scan(*store_, {atRest, inMotion, fromTheFuture, grown, touched});
    EXPECT_TRUE(Found(atRest));
    EXPECT_FALSE(Found(inMotion));
    EXPECT_FALSE(Found(fromTheFuture));
    EXPECT_FALSE(Found(grown));
    EXPECT_FALSE(Found(touched));
}

TEST_F(StoreOfRuns, LooksAgainAtFailures) {
    Record failure = MadeFailure("a", "Permission denied");
    failure.state = MadeRecord("a").state;
    EXPECT_EQ(Scan(*store_, {failure}).unreadable, 1U);
    EXPECT_FALSE(Found(failure));
}

TEST_F(StoreOfRuns, FindsWhatWasToldWithTheSameFlags) {
    const Record record = MadeRecord("a");
    StoreRun plain = RunIn("/here");
    plain.flags = FIID_NO_FURTHER;
    Scan(*store_, {record}, plain);
    EXPECT_FALSE(Found(record));
    EXPECT_TRUE(Found(record, plain));
    plain.flags = FIID_NO_FURTHER | FIID_NO_TEXT;
    EXPECT_FALSE(Found(record, plain));
    plain.flags = FIID_NO_FURTHER | FIID_DESCRIPTOR_IS_READABLE;
    EXPECT_TRUE(Found(record, plain));
}

TEST_F(StoreOfRuns, FindsExplanationsForThoseWhoAsk) {
    Record explained = MadeRecord("a");
    std::snprintf(explained.answer.explanation, sizeof(explained.answer.explanation), "bytes at 0");
    const Record bare = MadeRecord("b");
    Scan(*store_, {explained, bare});
    StoreRun explain = RunIn("/here");
    explain.flags = FIID_EXPLAIN;
    EXPECT_STREQ(Found(explained)->answer.explanation, "");
    EXPECT_STREQ(Found(explained, explain)->answer.explanation, "bytes at 0");
    EXPECT_FALSE(Found(bare, explain));
}

TEST_F(StoreOfRuns, FindsWhatHasTheHashThatIsAsked) {
    Record record = MadeRecord("a");
    record.hash = std::string(64, 'e');
    StoreRun hashes = RunIn("/here");
    hashes.hash = HashKind::Sha256;
    Scan(*store_, {record, MadeRecord("b")}, hashes);
    EXPECT_EQ(Found(record)->hash, "");
    EXPECT_EQ(Found(record, hashes)->hash, record.hash);
    EXPECT_FALSE(Found(MadeRecord("b"), hashes));
    hashes.hash = HashKind::Xxh3;
    EXPECT_FALSE(Found(record, hashes));
}

TEST_F(StoreOfRuns, HashStaysWithAFileThatIsAsItWas) {
    Record atRest = MadeRecord("a");
    Record inMotion = MadeRecord("b", lookedAt);
    Record touched = MadeRecord("c");
    atRest.hash = inMotion.hash = touched.hash = std::string(64, 'e');
    Scan(*store_, {atRest, inMotion, touched});
    Scan(*store_, {MadeRecord("a"), MadeRecord("b", lookedAt), MadeRecord("c", 5)});
    const std::vector<Record> told = Asked(&StoreQuery::Files);
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0].hash, atRest.hash);
    EXPECT_EQ(told[1].hash, "");
    EXPECT_EQ(told[2].hash, "");
}

TEST_F(StoreOfRuns, OlderTablesAreUsedAndCounted) {
    Record further = MadeRecord("a");
    further.answer.further = 20101;
    StoreRun older = RunIn("/here");
    older.tables = "0.9";
    Scan(*store_, {further}, older);
    EXPECT_TRUE(Found(further));
    EXPECT_EQ(counts_.older, 1U);
    EXPECT_TRUE(Found(further, older));
    EXPECT_EQ(counts_.older, 0U);
    StoreRun refresh = RunIn("/here");
    refresh.refresh = true;
    EXPECT_FALSE(Found(further, refresh));
    EXPECT_EQ(counts_.older, 0U);
}

// The library's own record of a format that its tables say no more about.
fiid_format ClosedFormat() {
    fiid_format format = {};
    for (std::uint32_t index = 0; fiid_format_at(index, &format) == FIID_OK; ++index) {
        if ((format.flags & FIID_FORMAT_IS_OPEN) == 0 && format.id < 20000 && *format.puids != '\0') break;
    }
    return format;
}

TEST_F(StoreOfRuns, RefreshRenamesWhatTablesCantTellOtherwise) {
    const fiid_format format = ClosedFormat();
    Record closed = MadeRecord("a");
    closed.answer.fiid = format.id;
    closed.answer.name = "what it was called";
    closed.answer.extensions = format.extensions;
    closed.answer.puids = format.puids;
    Record renamed = closed;
    renamed.path = "b";
    renamed.answer.extensions = "another";
    StoreRun older = RunIn("/here");
    older.tables = "0.9";
    Scan(*store_, {closed, renamed}, older);
    EXPECT_STREQ(Found(closed)->answer.name, "what it was called");
    EXPECT_EQ(counts_.older, 0U);
    StoreRun refresh = RunIn("/here");
    refresh.refresh = true;
    EXPECT_STREQ(Found(closed, refresh)->answer.name, format.name);
    EXPECT_FALSE(Found(renamed, refresh));
    const std::vector<Record> told = Asked(&StoreQuery::Files);
    EXPECT_STREQ(told[0].answer.name, format.name);
    EXPECT_STREQ(told[0].answer.mime, format.mime);
    EXPECT_STREQ(told[1].answer.name, "what it was called");
}

TEST_F(StoreOfRuns, RescanFindsNothingAndCountsWhatChanged) {
    Scan(*store_, {MadeRecord("a"), MadeRecord("b")});
    StoreRun rescan = RunIn("/here");
    rescan.rescan = true;
    EXPECT_FALSE(Found(MadeRecord("a"), rescan));
    Record other = MadeRecord("b");
    other.answer.fiid = 1504;
    const StoreCounts counts = Scan(*store_, {MadeRecord("a"), other}, rescan);
    EXPECT_EQ(counts.Files(), 2U);
    EXPECT_EQ(counts.unchanged, 1U);
    EXPECT_EQ(counts.changed, 1U);
}

TEST_F(StoreOfRuns, EveryDifferenceIsAChange) {
    Record hashed = MadeRecord("hash");
    hashed.hash = std::string(64, '0');
    const std::vector<Record> before = {MadeRecord("answer"),       MadeRecord("error"), hashed,
                                        MadeRecord("inode"),        MadeRecord("same"),  MadeRecord("size"),
                                        MadeFailure("still", "No"), MadeRecord("time"),  MadeRecord("version"),
                                        MadeFailure("words", "No")};
    std::vector<Record> after = before;
    after[0].answer.further = 20101;
    after[1] = MadeFailure("error", "Input/output error");
    after[2].hash = std::string(64, '1');
    after[3].state.inode = 8;
    after[5].state.size = after[5].answer.size = 99;
    after[7].state.modifiedNanoseconds = after[7].answer.modified_nanoseconds = 1;
    after[8].answer.version = "2";
    after[9] = MadeFailure("words", "Other");
    Scan(*store_, before);
    const StoreCounts counts = Scan(*store_, after);
    EXPECT_EQ(counts.unchanged, 2U);
    EXPECT_EQ(counts.changed, 8U);
    EXPECT_EQ(counts.unreadable, 3U);
    const std::vector<Record> changes = Asked(&StoreQuery::Changes);
    EXPECT_EQ(PathsOf(changes), (Paths{"answer", "error", "hash", "inode", "size", "time", "version", "words"}));
    EXPECT_EQ(changes[0].change.kind, ChangeKind::Changed);
    EXPECT_EQ(changes[0].change.run, 2);
    EXPECT_GT(changes[0].change.seconds, lookedAt);
    EXPECT_EQ(changes[0].change.before, "GIF image");
    EXPECT_EQ(changes[0].answer.further, 20101);
    EXPECT_EQ(changes[1].error, "Input/output error");
    EXPECT_EQ(changes[7].change.before, "No");
}

TEST_F(StoreOfRuns, NewFilesAreChangesBehindACompleteRun) {
    Begin(*store_, RunIn("/here"));
    EXPECT_TRUE(store_->Put(MadeRecord("a"), lookedAt));
    End(*store_, RunEnd::Interrupted);
    Scan(*store_, {MadeRecord("b")});
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Changes)), Paths());
    Scan(*store_, {MadeRecord("a"), MadeRecord("c")});
    Scan(*store_, {MadeRecord("d/x"), MadeRecord("d-")});
    const std::vector<Record> changes = Asked(&StoreQuery::Changes);
    EXPECT_EQ(PathsOf(changes), (Paths{"d/x", "d-", "c"}));
    EXPECT_EQ(changes[0].change.kind, ChangeKind::New);
    EXPECT_EQ(changes[0].change.before, "");
    EXPECT_EQ(changes[0].change.run, 4);
    EXPECT_EQ(changes[2].change.run, 3);
}

// The later record is the one that is kept, and what was before the run stays what was before.
TEST_F(StoreOfRuns, PathThatComesTwiceInARunCountsOnce) {
    Record first = MadeRecord("a");
    first.answer.name = "another name";
    first.answer.fiid = 1504;
    Scan(*store_, {MadeRecord("a")});
    const StoreCounts counts =
        Scan(*store_, {first, MadeRecord("./a", 5), MadeFailure("b", "No"), MadeFailure("b", "No")});
    EXPECT_EQ(counts.fresh, 1U);
    EXPECT_EQ(counts.changed, 1U);
    EXPECT_EQ(counts.Files(), 2U);
    EXPECT_EQ(counts.unreadable, 1U);
    const std::vector<Record> changes = Asked(&StoreQuery::Changes);
    EXPECT_EQ(PathsOf(changes), (Paths{"a", "b"}));
    EXPECT_EQ(changes[0].change.before, "GIF image");
    EXPECT_EQ(changes[0].answer.modified_seconds, 5);
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Files)), (Paths{"a", "b"}));
}

TEST_F(StoreOfRuns, RelativePathsBelongToADirectory) {
    Scan(*store_, {MadeRecord("/a")}, RunIn("/first"));
    Scan(*store_, {MadeRecord("/b")}, RunIn("/second"));
    Scan(*store_, {MadeRecord("-a")}, RunIn("/third"));
    std::string mistake;
    EXPECT_FALSE(store_->BeginRun(RunIn("/first"), mistake));
    EXPECT_EQ(mistake, file_ + " has paths that start from /third: run fiid there");
    mistake.clear();
    EXPECT_EQ(Scan(*store_, {MadeRecord("/c")}, RunIn("/third")).fresh, 1U);
    EXPECT_EQ(store_->Mistake(), "");
    StoredRun last;
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.run, 4);  // the one that was refused is none
}

TEST_F(StoreOfRuns, PruneTakesOutWhatIsGone) {
    directory_.Write("there", "");
    ASSERT_EQ(mkdir(directory_.At("directory").c_str(), 0700), 0);
    Paths paths;
    std::vector<Record> records;
    for (const char* const name : {"directory", "gone", "gone/x", "there", "there/x"})
        records.push_back(MadeRecord(directory_.At(name)));
    records.push_back(MadeRecord(directory_.At("gone\xE4")));
    Scan(*store_, records);
    Begin(*store_, RunIn("/here"));
    EXPECT_TRUE(store_->Prune({}, [] { return true; }));
    EXPECT_EQ(End(*store_).gone, 5U);
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Files)), (Paths{directory_.At("there")}));
    const std::vector<Record> changes = Asked(&StoreQuery::Changes);
    ASSERT_EQ(changes.size(), 5U);
    EXPECT_EQ(changes[0].path, directory_.At("directory"));
    EXPECT_EQ(changes[0].change.kind, ChangeKind::Gone);
    EXPECT_EQ(changes[0].change.before, "GIF image");
    EXPECT_EQ(changes[0].answer.size, 100U);
    EXPECT_EQ(changes[3].path, directory_.At("gone\xE4"));
}

TEST_F(StoreOfRuns, PruneStaysBelowWhatIsNamed) {
    const std::string top = directory_.At("");
    std::vector<Record> records;
    for (const char* const name : {"a", "a/b", "a/b/c", "a/bc", "a\xE4/x", "a\xE5/x", "a-"})
        records.push_back(MadeRecord(top + name));
    const auto prune = [&](const Paths& below) {
        Begin(*store_, RunIn("/here"));
        EXPECT_TRUE(store_->Prune(below, [] { return true; }));
        return End(*store_).gone;
    };
    Scan(*store_, records);
    EXPECT_EQ(prune({top + "b"}), 0U);
    EXPECT_EQ(prune({top + "a/b/"}), 2U);
    EXPECT_EQ(prune({top + "a\xE4"}), 1U);
    EXPECT_EQ(prune({top + "a", top + "a/bc"}), 2U);
    EXPECT_EQ(prune({"."}), 0U);
    EXPECT_EQ(prune({"/"}), 2U);
}

TEST_F(StoreOfRuns, PruneTellsRelativePathsApart) {
    Scan(*store_,
         {MadeRecord("/nothing/a"), MadeRecord("nothing/b"), MadeRecord("../nothing/c"), MadeRecord("-nothing")});
    Begin(*store_, RunIn("/here"));
    EXPECT_TRUE(store_->Prune({"./"}, [] { return true; }));
    EXPECT_EQ(End(*store_).gone, 2U);
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Files)), (Paths{"../nothing/c", "/nothing/a"}));
}

TEST_F(StoreOfRuns, PruneGoesThroughMoreThanOneBatch) {
    std::vector<Record> records;
    for (int number = 0; number < 2500; ++number) records.push_back(MadeRecord("/nothing/" + std::to_string(number)));
    Scan(*store_, records);
    Begin(*store_, RunIn("/here"));
    int asked = 0;
    EXPECT_TRUE(store_->Prune({}, [&] { return ++asked <= 1; }));
    EXPECT_TRUE(store_->Prune({}, [&] { return asked < 100; }));
    EXPECT_EQ(End(*store_).gone, 2500U);
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Files)), Paths());
}

TEST_F(StoreOfRuns, FailureOfADirectoryGoesWithIt) {
    ASSERT_EQ(mkdir(directory_.At("readable").c_str(), 0700), 0);
    directory_.Write("file", "");
    const std::vector<Record> failures = {MadeFailure(directory_.At("file"), "No"),
                                          MadeFailure(directory_.At("nothing"), "No"),
                                          MadeFailure(directory_.At("readable"), "No")};
    Scan(*store_, failures);
    EXPECT_EQ(Asked(&StoreQuery::Errors).size(), 3U);  // its own run has just told them
    Begin(*store_, RunIn("/here"));
    End(*store_, RunEnd::Interrupted);
    EXPECT_EQ(Asked(&StoreQuery::Errors).size(), 3U);
    Scan(*store_, {});
    EXPECT_EQ(PathsOf(Asked(&StoreQuery::Errors)), (Paths{directory_.At("file"), directory_.At("nothing")}));
}

FileState StateOf(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    FileState state;
    state.known = true;
    state.inode = status.st_ino;
    state.device = status.st_dev;
    return state;
}

TEST_F(StoreOfRuns, KnowsItsOwnFiles) {
    directory_.Write("other", "");
    ASSERT_EQ(link(file_.c_str(), directory_.At("second name").c_str()), 0);
    Begin(*store_, RunIn("/here"));
    for (const char* const name : {"store", "store-wal", "store-shm", "store-lock", "second name"}) {
        EXPECT_TRUE(store_->IsOwnFile(StateOf(directory_.At(name)))) << name;
    }
    EXPECT_FALSE(store_->IsOwnFile(StateOf(directory_.At("other"))));
    FileState state = StateOf(file_);
    state.device += 1;
    EXPECT_FALSE(store_->IsOwnFile(state));
    state = StateOf(file_);
    state.known = false;
    EXPECT_FALSE(store_->IsOwnFile(state));
    End(*store_);
}

TEST_F(StoreOfRuns, ThreadsReadWhileOneWrites) {
    std::vector<Record> records;
    for (int number = 0; number < 400; ++number) records.push_back(MadeRecord("file " + std::to_string(number)));
    Scan(*store_, records);
    Begin(*store_, RunIn("/here"));
    std::atomic<int> found = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&] {
            std::string mistake;
            const std::unique_ptr<StoreReader> reader = store_->OpenReader(mistake);
            for (const Record& record : records) found += reader->Find(record.path, record.state) ? 1 : 0;
        });
    }
    for (int number = 0; number < 400; ++number) {
        EXPECT_TRUE(store_->Put(MadeRecord("other " + std::to_string(number)), lookedAt));
        EXPECT_TRUE(number % 40 != 0 || store_->Commit());
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found, 1200);
    EXPECT_EQ(End(*store_).fresh, 400U);
}

TEST_F(StoreOfRuns, CommitsWhenItIsDue) {
    Begin(*store_, RunIn("/here"));
    EXPECT_TRUE(store_->CommitIfDue());  // there is nothing to commit
    EXPECT_TRUE(store_->Put(MadeRecord("a"), lookedAt));
    EXPECT_EQ(Asked(&StoreQuery::Files).size(), 0U);
    usleep(760'000);
    EXPECT_TRUE(store_->CommitIfDue());
    EXPECT_EQ(Asked(&StoreQuery::Files).size(), 1U);
    End(*store_);
}

TEST_F(StoreOfRuns, CommitsWhenThereIsMuch) {
    Begin(*store_, RunIn("/here"));
    for (int number = 0; number < 8191; ++number)
        EXPECT_TRUE(store_->Put(MadeRecord(std::to_string(number)), lookedAt));
    EXPECT_TRUE(store_->CommitIfDue());
    EXPECT_EQ(Asked(&StoreQuery::Files).size(), 0U);
    EXPECT_TRUE(store_->Put(MadeRecord("one more"), lookedAt));
    EXPECT_TRUE(store_->CommitIfDue());
    EXPECT_EQ(Asked(&StoreQuery::Files).size(), 8192U);
    End(*store_);
}

TEST_F(StoreOfRuns, EndIsTold) {
    StoredRun last;
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.run, 0);
    StoreRun run = RunIn("/here");
    run.arguments = "[\"a\"]";
    Begin(*store_, run);
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.run, 1);
    EXPECT_EQ(last.state, "running");
    EXPECT_EQ(last.arguments, "[\"a\"]");
    EXPECT_EQ(last.directory, "/here");
    End(*store_, RunEnd::Failed);
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.state, "failed");
    Begin(*store_, run);
    store_.reset();
    store_ = OpenStore(file_);
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.state, "running");  // until the next run looks
    Begin(*store_, run);
    End(*store_, RunEnd::Interrupted);
    EXPECT_TRUE(OpenQuery(file_)->LastRun(last));
    EXPECT_EQ(last.state, "interrupted");
    EXPECT_EQ(last.run, 3);
}

}  // namespace
