// Records of a store come in the order of a sorted walk, whatever the bytes of their paths.
#include "store/ordered_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "store/path_key.h"
#include "store/record_rows.h"
#include "store/walk_order.h"
#include "support/random_numbers.h"
#include "support/temporary_directory.h"

namespace {

using Paths = std::vector<std::string>;

TEST(WalkOrder, SlashIsInFrontOfAllOtherBytes) {
    const Paths ordered = {"",   "a",   "a/",    "a/b", "a/b/c", "a/b.c", "a\x01", "a ",
                           "a-", "a.b", "a.b/c", "a0",  "a\x7F", "a\x80", "b"};
    for (std::size_t first = 0; first < ordered.size(); ++first) {
        for (std::size_t second = 0; second < ordered.size(); ++second) {
            const int order = CompareInWalkOrder(ordered[first], ordered[second]);
            EXPECT_EQ(order < 0, first < second) << ordered[first] << " " << ordered[second];
            EXPECT_EQ(order > 0, first > second) << ordered[first] << " " << ordered[second];
        }
    }
}

constexpr const char* textSql =
    "SELECT path, path_hex FROM files WHERE path >= ?1 AND path < ?2 AND path_hex = '' ORDER BY path";
constexpr const char* hexSql =
    "SELECT path, path_hex FROM files WHERE path_hex >= ?1 AND path_hex < ?2 AND path_hex <> '' ORDER BY path_hex";

class OrderedRowsOfAStore : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(database_.Open(directory_.At("paths"), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
        ASSERT_TRUE(
            database_.Run("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY;"
                          "CREATE TABLE files (path TEXT, path_hex TEXT, PRIMARY KEY (path, path_hex)) WITHOUT ROWID"));
    }

    void Insert(const Paths& paths) {
        Statement add;
        ASSERT_TRUE(add.Prepare(database_.Connection(), "INSERT INTO files VALUES (?1, ?2)"));
        for (const std::string& path : paths) {
            const PathKey key = KeyOfPath(path);
            add.BindText(1, key.text);
            add.BindText(2, key.hex);
            ASSERT_TRUE(add.Run());
        }
    }

    // The paths as they are told when a table was filled with them in the order given.
    Paths Told(const Paths& paths) {
        EXPECT_TRUE(database_.Run("BEGIN"));
        Insert(paths);
        Paths told;
        Statement texts;
        Statement others;
        EXPECT_TRUE(texts.Prepare(database_.Connection(), textSql) && others.Prepare(database_.Connection(), hexSql));
        MergedRows rows(texts, others, [](const Statement& row, Record& record) {
            record.path = PathOfRow(row);
            return true;
        });
        Record* record = nullptr;
        while (rows.Next(record) == SQLITE_ROW) told.push_back(record->path);
        EXPECT_EQ(rows.Next(record), SQLITE_DONE);
        texts.Reset();
        others.Reset();
        EXPECT_TRUE(database_.Run("ROLLBACK"));
        return told;
    }

    void ExpectOrder(const Paths& ordered) {
        EXPECT_EQ(Told(ordered), ordered);
        EXPECT_EQ(Told(Paths(ordered.rbegin(), ordered.rend())), ordered);
    }

    TemporaryDirectory directory_;
    Database database_;
};

TEST_F(OrderedRowsOfAStore, DirectoryComesInFrontOfNamesThatGoOn) {
    ExpectOrder({});
    ExpectOrder({"a"});
    ExpectOrder({"a/x", "a-b"});
    ExpectOrder({"a/x", "a/y", "a-b", "a.c", "a0"});
    ExpectOrder({"a-b", "a-c", "a.c", "b"});
    ExpectOrder({"a", "a/x", "a-b"});
    ExpectOrder({"a/x", "a-b/y", "a-b.c"});
    ExpectOrder({"a/b/c", "a/b-d", "a/b.e/x", "a-f", "a.b/c", "a.b.c"});
    ExpectOrder({".a/x", ".a-b", ".b"});
    ExpectOrder({"/a/x", "/a-b"});
    ExpectOrder({"a-1", "a-2", "a-3", "b"});
    ExpectOrder({"photo 1/x", "photo 1.jpg", "photo 10.jpg", "photo 2.jpg"});
}

TEST_F(OrderedRowsOfAStore, DirectoriesLieWithinOneAnother) {
    ExpectOrder({"a/a/a/x", "a/a/a-", "a/a/a.", "a/a-", "a/a.", "a-", "a."});
    ExpectOrder({"a/x", "a-/x", "a--/x", "a---"});
    ExpectOrder({"a/a-/x", "a/a--", "a-/x", "a--"});
}

TEST_F(OrderedRowsOfAStore, BytesThatAreNoTextStandWhereTheyBelong) {
    ExpectOrder({"a/x", "a/\xE4", "a-\xE4", "b", "\x7F", "\xC3\xA4/x", "\xE4/a/x", "\xE4/a-b", "\xE4-", "\xEF\xBF\xBD",
                 "\xF6/a"});
}

// As a slow and obvious form tells it.
TEST_F(OrderedRowsOfAStore, AnyPathsAreSorted) {
    RandomNumbers random(14);
    for (int round = 0; round < 1000; ++round) {
        std::set<std::string> paths;
        const std::uint32_t count = random.Below(60);
        for (std::uint32_t index = 0; index < count; ++index) {
            std::string path(1, random.Of("ab"));
            const std::uint32_t size = random.Below(8);
            for (std::uint32_t place = 0; place < size; ++place) path += random.Of(std::string("ab//--..\x01z\xE4"));
            paths.insert(path.back() == '/' || path.find("//") != std::string::npos ||
                                 path.find("/.") != std::string::npos
                             ? "c"
                             : path);
        }
        Paths ordered(paths.begin(), paths.end());
        std::ranges::sort(ordered, [](auto& one, auto& other) { return CompareInWalkOrder(one, other) < 0; });
        EXPECT_EQ(Told(Paths(paths.begin(), paths.end())), ordered);
    }
}

}  // namespace
