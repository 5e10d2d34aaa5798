// docs/store.md tells the schema as it is, and its statements run.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "store/database.h"
#include "store/made_records.h"
#include "support/temporary_directory.h"

namespace {

class StoreDocument : public testing::Test {
 protected:
    void SetUp() override {
        std::ifstream file(FIID_STORE_DOCUMENT);
        std::ostringstream text;
        text << file.rdbuf();
        text_ = text.str();
        const std::string stored = directory_.At("store");
        Record copied = MadeRecord("d/b.txt");
        copied.hash = std::string(64, 'a');
        Record copy = copied;
        copy.path = "d/c";
        copy.state.inode = 8;
        copy.answer.warnings = FIID_WARN_EXTENSION | FIID_WARN_CUT;
        Scan(*OpenStore(stored), {MadeRecord("a"), copied, copy, MadeFailure("e", "No")});
        Scan(*OpenStore(stored), {MadeRecord("a", 5), MadeRecord("f")});
        ASSERT_TRUE(database_.Open(stored, SQLITE_OPEN_READWRITE));
    }

    std::vector<std::string> Statements() const {
        constexpr std::string_view start = "```sql\n";
        std::vector<std::string> statements;
        for (std::size_t place = text_.find(start); place != std::string::npos; place = text_.find(start, place)) {
            place += start.size();
            statements.push_back(text_.substr(place, text_.find("```", place) - place));
        }
        return statements;
    }

    TemporaryDirectory directory_;
    std::string text_;
    Database database_;
};

TEST_F(StoreDocument, StatementsRun) {
    const std::vector<std::string> statements = Statements();
    EXPECT_GE(statements.size(), 10U);
    for (const std::string& sql : statements) {
        Statement statement;
        ASSERT_TRUE(statement.Prepare(database_.Connection(), sql.c_str())) << sql << database_.Mistake("store");
        EXPECT_TRUE(statement.Run()) << sql << database_.Mistake("store");
    }
}

TEST_F(StoreDocument, TellsEveryColumn) {
    Statement columns;
    ASSERT_TRUE(columns.Prepare(database_.Connection(),
                                "SELECT t.name, c.name FROM sqlite_schema AS t, pragma_table_info(t.name) AS c "
                                "WHERE t.type IN ('table', 'view')"));
    int count = 0;
    while (columns.Step() == SQLITE_ROW) {
        const std::string heading = "### `" + std::string(columns.Text(0)) + "`\n";
        const std::size_t start = text_.find(heading);
        ASSERT_NE(start, std::string::npos) << heading;
        const std::string chapter = text_.substr(start, text_.find("\n### ", start + 1) - start);
        EXPECT_NE(chapter.find('`' + std::string(columns.Text(1)) + '`'), std::string::npos)
            << columns.Text(0) << '.' << columns.Text(1);
        ++count;
    }
    EXPECT_GT(count, 70);
}

}  // namespace
