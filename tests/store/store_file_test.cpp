// The file of a store: what is refused in its place, who may write, and what is left when a scan is killed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>

#include "store/database.h"
#include "store/made_records.h"
#include "support/random_numbers.h"
#include "support/temporary_directory.h"

namespace {

std::string CreateMistake(const std::string& file) {
    std::string mistake;
    EXPECT_EQ(Store::Create(file, mistake), nullptr);
    return mistake;
}

std::string QueryMistake(const std::string& file) {
    std::string mistake;
    EXPECT_EQ(StoreQuery::Open(file, mistake), nullptr);
    return mistake;
}

std::int64_t ReadFrom(const std::string& file, const char* sql) {
    Database database;
    std::int64_t number = -1;
    EXPECT_TRUE(database.Open(file, SQLITE_OPEN_READWRITE) && database.ReadNumber(sql, number))
        << database.Mistake(file);
    return number;
}

std::string Integrity(const std::string& file) {
    Database database;
    Statement check;
    if (!database.Open(file, SQLITE_OPEN_READWRITE) ||
        !check.Prepare(database.Connection(), "PRAGMA integrity_check")) {
        return database.Mistake(file);
    }
    return check.Step() == SQLITE_ROW ? std::string(check.Text(0)) : database.Mistake(file);
}

// Runs in a process of its own, which ends by its result.
int InAnotherProcess(const std::function<int()>& run) {
    const pid_t child = fork();
    if (child == 0) _exit(run());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StoreFile, RefusesWhatIsNoStore) {
    const TemporaryDirectory directory;
    const std::string text = directory.At("text");
    directory.Write("text", "This is a letter, and no database at all.\n");
    EXPECT_EQ(CreateMistake(text), text + " is no store: it is not a database of SQLite");
    EXPECT_EQ(QueryMistake(text), text + " is no store: it is not a database of SQLite");
    EXPECT_EQ(std::filesystem::file_size(text), 42U);
    const std::string below = directory.At("below");
    ASSERT_EQ(mkdir(below.c_str(), 0700), 0);
    EXPECT_EQ(CreateMistake(below), below + " is a directory");
    EXPECT_EQ(QueryMistake(below), below + " is a directory");
    const std::string fifo = directory.At("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(CreateMistake(fifo), fifo + " is not a regular file");
    EXPECT_EQ(CreateMistake(""), "a store needs a name");
    const std::string nowhere = directory.At("nowhere/store");
    EXPECT_EQ(CreateMistake(nowhere), nowhere + " can't be opened: No such file or directory");
    EXPECT_EQ(QueryMistake(directory.At("missing")),
              directory.At("missing") + " can't be opened: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(directory.At("missing")));
    EXPECT_FALSE(std::filesystem::exists(text + "-lock"));
}

TEST(StoreFile, NamesThatSqliteTakesForSomethingElseAreFiles) {
    const TemporaryDirectory directory;
    EXPECT_EQ(InAnotherProcess([&] {
                  if (chdir(directory.At("").c_str()) != 0) return 1;
                  Scan(*OpenStore(":memory:"), {MadeRecord("a")});
                  Scan(*OpenStore("file:x?mode=memory"), {MadeRecord("a")});
                  return 0;
              }),
              0);
    EXPECT_TRUE(std::filesystem::exists(directory.At(":memory:")));
    EXPECT_TRUE(std::filesystem::exists(directory.At("file:x?mode=memory")));
}

TEST(StoreFile, EmptyFileBecomesAStore) {
    const TemporaryDirectory directory;
    directory.Write("store", "");
    EXPECT_EQ(QueryMistake(directory.At("store")),
              directory.At("store") + " is an empty store: nothing was scanned into it");
    EXPECT_EQ(Scan(*OpenStore(directory.At("store")), {MadeRecord("a")}).fresh, 1U);
}

TEST(StoreFile, DamagedStoreIsToldInWords) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    std::vector<Record> records;
    for (int number = 0; number < 2000; ++number) records.push_back(MadeRecord("file " + std::to_string(number)));
    Scan(*OpenStore(file), records);
    const int descriptor = open(file.c_str(), O_WRONLY);
    const std::string zeros(4096, '\xAA');
    for (off_t page = 3; page < static_cast<off_t>(std::filesystem::file_size(file) / 4096); ++page) {
        ASSERT_EQ(pwrite(descriptor, zeros.data(), zeros.size(), page * 4096), 4096);
    }
    close(descriptor);
    std::string mistake;
    const std::unique_ptr<StoreQuery> query = StoreQuery::Open(file, mistake);
    ASSERT_NE(query, nullptr) << mistake;
    EXPECT_FALSE(query->Files([](const Record&) { return true; }));
    EXPECT_EQ(query->Mistake(), file + " is damaged (database disk image is malformed)");
    const std::unique_ptr<Store> store = OpenStore(file);
    EXPECT_FALSE(store->BeginRun(RunIn("/here"), mistake));
    EXPECT_EQ(mistake, file + " is damaged (database disk image is malformed)");
    EXPECT_FALSE(store->Put(MadeRecord("a"), lookedAt));
    EXPECT_FALSE(store->Commit());
}

TEST(StoreFile, AnswerThatIsNotThereIsDamage) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    Scan(*OpenStore(file), {MadeRecord("a")});
    {
        Database database;
        ASSERT_TRUE(database.Open(file, SQLITE_OPEN_READWRITE) && database.Run("DELETE FROM answers"));
    }
    const std::unique_ptr<StoreQuery> query = OpenQuery(file);
    EXPECT_FALSE(query->Files([](const Record&) { return true; }));
    EXPECT_EQ(query->Mistake(), file + " is damaged (a file's answer is not there)");
    EXPECT_FALSE(query->CountAnswers([](const AnswerCount&) {}));
    EXPECT_EQ(query->Mistake(), file + " is damaged (a file's answer is not there)");
    const std::unique_ptr<Store> store = OpenStore(file);
    Begin(*store, RunIn("/here"));
    std::string mistake;
    EXPECT_FALSE(store->OpenReader(mistake)->Find("a", MadeRecord("a").state));
    EXPECT_TRUE(store->Put(MadeRecord("a"), lookedAt));  // which mends it
    End(*store);
    EXPECT_EQ(PathsOf(Ask(*query, &StoreQuery::Files)), std::vector<std::string>{"a"});
}

TEST(StoreFile, OneProcessScansAtATime) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    std::unique_ptr<Store> store = OpenStore(file);
    const std::string words = file + " is being written by another fiid (process " + std::to_string(getpid()) + ")";
    EXPECT_EQ(CreateMistake(file), words);
    EXPECT_EQ(InAnotherProcess([&] { return CreateMistake(file) == words ? 0 : 1; }), 0);
    ASSERT_EQ(symlink("store", directory.At("link").c_str()), 0);
    EXPECT_EQ(CreateMistake(directory.At("link")),
              directory.At("link") + " is being written by another fiid (process " + std::to_string(getpid()) + ")");
    store.reset();
    EXPECT_FALSE(std::filesystem::exists(file + "-lock"));
    EXPECT_NE(OpenStore(directory.At("link")), nullptr);
}

TEST(StoreFile, LockOfADeadProcessHindersNobody) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    EXPECT_EQ(InAnotherProcess([&] {
                  OpenStore(file).release();
                  return 7;
              }),
              7);
    EXPECT_TRUE(std::filesystem::exists(file + "-lock"));
    EXPECT_EQ(Scan(*OpenStore(file), {MadeRecord("a")}).fresh, 1U);
    EXPECT_FALSE(std::filesystem::exists(file + "-lock"));
}

TEST(StoreFile, LockOfALaterStoreOfTheNameStays) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    std::unique_ptr<Store> first = OpenStore(file);
    for (const char* const suffix : {"", "-wal", "-shm", "-lock"}) std::filesystem::remove(file + suffix);
    const std::unique_ptr<Store> second = OpenStore(file);
    first.reset();
    EXPECT_TRUE(std::filesystem::exists(file + "-lock"));
}

// Whether it was removed, or another file was put in its place.
TEST(StoreFile, StoreThatIsTakenAwayEndsTheRunInWords) {
    for (const bool isReplaced : {false, true}) {
        const TemporaryDirectory directory;
        const std::string file = directory.At("store");
        const std::unique_ptr<Store> store = OpenStore(file);
        Begin(*store, RunIn("/here"));
        EXPECT_TRUE(store->Put(MadeRecord("a"), lookedAt));
        EXPECT_TRUE(store->Commit());
        std::filesystem::rename(file, file + ".old");
        if (isReplaced) std::ofstream(file) << "another";
        EXPECT_TRUE(store->Put(MadeRecord("b"), lookedAt));
        EXPECT_FALSE(store->Commit());
        EXPECT_FALSE(store->Put(MadeRecord("c"), lookedAt));
        EXPECT_EQ(store->Mistake(), file + " is not there any more: it was moved or removed while it was written");
    }
}

TEST(StoreFile, NothingLiesBesideAStoreThatIsClosed) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    const std::ptrdiff_t descriptors = CountOpenDescriptors();
    {
        const std::unique_ptr<Store> store = OpenStore(file);
        Scan(*store, {MadeRecord("a")});
        Begin(*store, RunIn("/here"));
        std::string mistake;
        EXPECT_NE(store->OpenReader(mistake), nullptr);
        EXPECT_EQ(PathsOf(Ask(*OpenQuery(file), &StoreQuery::Files)), std::vector<std::string>{"a"});
        End(*store);
    }
    EXPECT_EQ(CountOpenDescriptors(), descriptors);
    const std::filesystem::directory_iterator entries(directory.At(""));
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

// Whoever runs the tests as root may write everywhere, so the reader becomes somebody else.
int AsNobody(const std::function<int()>& run) {
    return InAnotherProcess([&] { return getuid() == 0 && setuid(65534) != 0 ? 9 : run(); });
}

class ReadOnlyStore : public testing::Test {
 protected:
    void SetUp() override {
        Scan(*OpenStore(file_), {MadeRecord("a")});
        Protect();
    }
    void TearDown() override { EXPECT_EQ(chmod(directory_.At("").c_str(), 0700), 0); }

    void Protect() {
        for (const auto& entry : std::filesystem::directory_iterator(directory_.At(""))) {
            ASSERT_EQ(chmod(entry.path().c_str(), 0444), 0);
        }
        ASSERT_EQ(chmod(directory_.At("").c_str(), 0555), 0);
    }

    TemporaryDirectory directory_;
    std::string file_ = directory_.At("a store?%#");
};

TEST_F(ReadOnlyStore, AnswersWhereNothingCanBeWritten) {
    EXPECT_EQ(AsNobody([&] { return PathsOf(Ask(*OpenQuery(file_), &StoreQuery::Files)).size() == 1 ? 0 : 1; }), 0);
}

TEST_F(ReadOnlyStore, AnswersByARelativeName) {
    EXPECT_EQ(AsNobody([&] {
                  if (chdir(directory_.At("").c_str()) != 0) return 2;
                  return PathsOf(Ask(*OpenQuery("a store?%#"), &StoreQuery::Files)).size() == 1 ? 0 : 1;
              }),
              0);
}

TEST_F(ReadOnlyStore, IsNotScannedInto) {
    EXPECT_EQ(AsNobody([&] {
                  return CreateMistake(file_) == file_ + " can't be written: " + file_ + "-lock: Permission denied" ? 0
                                                                                                                    : 1;
              }),
              0);
}

TEST_F(ReadOnlyStore, LogOfAKilledScanIsNotPassedOver) {
    ASSERT_EQ(chmod(directory_.At("").c_str(), 0700), 0);
    ASSERT_EQ(chmod(file_.c_str(), 0600), 0);
    EXPECT_EQ(InAnotherProcess([&] {
                  Scan(*OpenStore(file_).release(), {MadeRecord("b")});
                  return 0;
              }),
              0);
    ASSERT_TRUE(std::filesystem::remove(file_ + "-shm"));
    Protect();
    EXPECT_EQ(AsNobody([&] {
                  return QueryMistake(file_) == file_ +
                                                    " can't be read in a directory that is read-only: beside it is the "
                                                    "log of a scan that was killed"
                             ? 0
                             : 1;
              }),
              0);
}

// A file that may grow no further, as on a full disk.
TEST(StoreFile, FullDiskEndsTheRunInWords) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    EXPECT_EQ(InAnotherProcess([&] {
                  const std::unique_ptr<Store> store = OpenStore(file);
                  Begin(*store, RunIn("/here"));
                  if (!store->Put(MadeRecord("kept"), lookedAt) || !store->Commit()) return 1;
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit = {100'000, 100'000};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  bool kept = true;
                  for (int number = 0; kept && number < 100'000; ++number) {
                      kept = store->Put(MadeRecord("file " + std::to_string(number)), lookedAt) &&
                             (number % 100 != 0 || store->Commit());
                  }
                  if (kept || store->Commit() || store->Put(MadeRecord("a"), lookedAt)) return 2;
                  StoreCounts counts;
                  if (store->EndRun(RunEnd::Failed, counts)) return 3;
                  return store->Mistake().starts_with(file + ": disk I/O error") ||
                                 store->Mistake() == file + " can't grow: the disk is full"
                             ? 0
                             : 4;
              }),
              0);
    EXPECT_EQ(Integrity(file), "ok");
    EXPECT_EQ(ReadFrom(file, "SELECT count(*) FROM files WHERE path = 'kept'"), 1);
}

// A scan that is killed at any moment has what it had committed, each path once, and the next one goes on.
TEST(StoreFile, KilledScansLoseNothingThatWasCommitted) {
    const TemporaryDirectory directory;
    const std::string file = directory.At("store");
    RandomNumbers random(9);
    std::int64_t committed = 0;
    for (int round = 0; round < 10; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            const std::unique_ptr<Store> store = OpenStore(file);
            Begin(*store, RunIn("/here"));
            for (std::int64_t number = 0;; ++number) {
                if (!store->Put(MadeRecord("file " + std::to_string(number)), lookedAt)) _exit(1);
                if (number % 50 != 49) continue;
                const std::int64_t count = number + 1;
                if (!store->Commit() || write(ends[1], &count, sizeof(count)) != sizeof(count)) _exit(1);
            }
        }
        close(ends[1]);
        std::int64_t told = 0;
        const std::uint32_t batches = 1 + random.Below(20);
        for (std::uint32_t batch = 0; batch < batches; ++batch)
            ASSERT_EQ(read(ends[0], &told, sizeof(told)), sizeof(told));
        usleep(random.Below(2000));
        kill(child, SIGKILL);
        while (read(ends[0], &told, sizeof(told)) == sizeof(told)) continue;
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        committed = std::max(committed, told);
        EXPECT_EQ(Integrity(file), "ok");
        EXPECT_GE(ReadFrom(file, "SELECT count(*) FROM files"), committed);
        EXPECT_EQ(ReadFrom(file, "SELECT count(*) FROM files WHERE answer IS NULL"), 0);
        EXPECT_EQ(ReadFrom(file, "SELECT count(*) FROM changes"), 0);
    }
    EXPECT_EQ(ReadFrom(file, "SELECT count(*) FROM runs WHERE state IN ('killed', 'running')"), 10);
    EXPECT_EQ(Scan(*OpenStore(file), {MadeRecord("file 0"), MadeRecord("other")}).fresh, 1U);
    EXPECT_EQ(ReadFrom(file, "SELECT count(*) FROM runs WHERE state = 'killed'"), 10);
}

}  // namespace
