// A program that was built without hashes knows their names, and says why it has none.
#include <gtest/gtest.h>

#include "scan/hash.h"

namespace {

TEST(LeftOutHashes, AreKnownByNameAndRefused) {
    for (const char* const name : {"sha256", "xxh3"}) {
        HashKind kind = HashKind::None;
        EXPECT_EQ(HashKindOfName(name, kind), "hashes were left out of this build");
        EXPECT_EQ(kind, HashKind::None);
    }
    HashKind kind = HashKind::None;
    EXPECT_EQ(HashKindOfName("md5", kind), "is none of sha256, xxh3");
    EXPECT_EQ(NameOf(HashKind::Xxh3), "xxh3");
}

}  // namespace
