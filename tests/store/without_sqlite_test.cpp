// The store of a program that was built without SQLite.
#include <gtest/gtest.h>

#include "store/store.h"

namespace {

TEST(WithoutSqlite, OpeningSaysSo) {
    EXPECT_FALSE(HasStore());
    std::string mistake;
    EXPECT_EQ(Store::Create("scan.db", mistake), nullptr);
    EXPECT_EQ(mistake, "scan.db: this fiid was built without SQLite");
    mistake.clear();
    EXPECT_EQ(StoreQuery::Open("scan.db", mistake), nullptr);
    EXPECT_EQ(mistake, "scan.db: this fiid was built without SQLite");
}

}  // namespace
