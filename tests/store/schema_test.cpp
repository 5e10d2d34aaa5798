// Which databases are stores, and how an earlier store gets today's tables.
#include "store/schema.h"

#include <gtest/gtest.h>

#include "support/temporary_directory.h"

namespace {

constexpr SchemaStep first[] = {{1, "CREATE TABLE one (a)"}};
constexpr SchemaStep both[] = {{1, "CREATE TABLE one (a)"}, {2, "ALTER TABLE one ADD COLUMN b; CREATE TABLE two (c)"}};
constexpr SchemaStep broken[] = {{1, "CREATE TABLE one (a)"}, {2, "CREATE TABLE two (c); CREATE TABLE one (a)"}};

class Schema : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(database_.Open(directory_.At("d"), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE));
    }

    std::string Bring(std::span<const SchemaStep> steps) { return BringToSchema(database_, steps, "FILE"); }
    std::string Check(std::span<const SchemaStep> steps) { return CheckSchema(database_, steps, "FILE"); }
    std::int64_t Number(const char* sql) {
        std::int64_t number = -1;
        EXPECT_TRUE(database_.ReadNumber(sql, number));
        return number;
    }

    TemporaryDirectory directory_;
    Database database_;
};

TEST_F(Schema, NewStoreGoesThroughAllSteps) {
    EXPECT_EQ(Check(both), "FILE is an empty store: nothing was scanned into it");
    EXPECT_EQ(Bring(both), "");
    EXPECT_EQ(Check(both), "");
    EXPECT_EQ(Number("PRAGMA user_version"), 2);
    EXPECT_EQ(Number("PRAGMA application_id"), storeApplicationId);
    EXPECT_TRUE(database_.Run("SELECT b, c FROM one, two"));
    EXPECT_EQ(Bring(both), "");
}

TEST_F(Schema, EarlierStoreIsBroughtUpToDate) {
    EXPECT_EQ(Bring(first), "");
    EXPECT_TRUE(database_.Run("INSERT INTO one VALUES (7)"));
    EXPECT_EQ(Check(both), "FILE was made by an earlier fiid; the next scan into it brings it up to date");
    EXPECT_EQ(Bring(both), "");
    EXPECT_EQ(Check(both), "");
    EXPECT_EQ(Number("SELECT a FROM one WHERE b IS NULL"), 7);
}

TEST_F(Schema, StepThatFailsLeavesTheStoreAsItWas) {
    EXPECT_EQ(Bring(first), "");
    EXPECT_EQ(Bring(broken), "FILE: table one already exists");
    EXPECT_EQ(Check(first), "");
    EXPECT_EQ(Number("SELECT count(*) FROM sqlite_schema"), 1);
}

TEST_F(Schema, LaterStoreIsRefused) {
    EXPECT_EQ(Bring(both), "");
    EXPECT_EQ(Bring(first), "FILE was made by a later fiid (version 2 of the tables; this one knows 1)");
    EXPECT_EQ(Check(first), "FILE was made by a later fiid (version 2 of the tables; this one knows 1)");
}

TEST_F(Schema, OtherDatabasesAreRefused) {
    EXPECT_TRUE(database_.Run("CREATE TABLE theirs (a)"));
    EXPECT_EQ(Bring(first), "FILE is a database of another program");
    EXPECT_EQ(Check(first), "FILE is a database of another program");
    EXPECT_EQ(Number("SELECT count(*) FROM sqlite_schema"), 1);
}

TEST_F(Schema, EmptyDatabaseOfAnotherProgramIsRefused) {
    EXPECT_TRUE(database_.Run("PRAGMA application_id = 5"));
    EXPECT_EQ(Bring(first), "FILE is a database of another program");
}

TEST_F(Schema, VersionsCountFromOne) {
    std::int64_t version = 0;
    for (const SchemaStep& step : StoreSchema()) EXPECT_EQ(step.version, ++version);
    EXPECT_EQ(version, 1);
    EXPECT_EQ(Bring(StoreSchema()), "");
}

}  // namespace
