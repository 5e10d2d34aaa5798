// Parts and forms of paths.
#include "report/path_parts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/temporary_directory.h"

namespace {

TEST(PathParts, Names) {
    EXPECT_EQ(NameOf("a"), "a");
    EXPECT_EQ(NameOf("a/b.c"), "b.c");
    EXPECT_EQ(NameOf("/"), "");
    EXPECT_EQ(NameOf(""), "");
}

TEST(PathParts, Extensions) {
    EXPECT_EQ(ExtensionOf("a"), "");
    EXPECT_EQ(ExtensionOf("a.b/c"), "");
    EXPECT_EQ(ExtensionOf("a/b.tar.GZ"), "GZ");
    EXPECT_EQ(ExtensionOf(".profile"), "profile");
    EXPECT_EQ(ExtensionOf("a."), "");
}

TEST(PathParts, AbsolutePaths) {
    EXPECT_EQ(AbsolutePath("/w", "a"), "/w/a");
    EXPECT_EQ(AbsolutePath("/w", "./a//b/"), "/w/a/b");
    EXPECT_EQ(AbsolutePath("/w/x", "../a/../b"), "/w/b");
    EXPECT_EQ(AbsolutePath("/w", "../../../a"), "/a");
    EXPECT_EQ(AbsolutePath("/w", "."), "/w");
    EXPECT_EQ(AbsolutePath("/w", ""), "/w");
    EXPECT_EQ(AbsolutePath("/w", "/a/./b"), "/a/b");
    EXPECT_EQ(AbsolutePath("/w", "//"), "");
    EXPECT_EQ(AbsolutePath("/w", "/.."), "");
    EXPECT_EQ(AbsolutePath("", "a"), "/a");
    EXPECT_EQ(AbsolutePath("", "..."), "/...");
}

TEST(PathParts, FileUris) {
    std::string uri;
    AppendFileUri(uri, "/aZ09-._~!$&'()*+,;=:@/b");
    EXPECT_EQ(uri, "file:/aZ09-._~!$&'()*+,;=:@/b");
    uri.clear();
    AppendFileUri(uri, "/ \"#%?[\\]^`{|}<>\n\x7F\xC3\xA9\xFF");
    EXPECT_EQ(uri, "file:/%20%22%23%25%3F%5B%5C%5D%5E%60%7B%7C%7D%3C%3E%0A%7F%C3%A9%FF");
    uri.clear();
    AppendFileUri(uri, std::string_view("/\0", 2));
    EXPECT_EQ(uri, "file:/%00");
}

TEST(PathParts, WorkingDirectories) {
    const std::string before = WorkingDirectory();
    EXPECT_TRUE(before.starts_with('/'));
    ASSERT_EQ(chdir("/"), 0);
    EXPECT_EQ(WorkingDirectory(), "");
    {
        const TemporaryDirectory directory;
        ASSERT_EQ(chdir(directory.At("").c_str()), 0);
        EXPECT_EQ(WorkingDirectory() + "/", directory.At(""));
    }
    EXPECT_EQ(WorkingDirectory(), "");
    ASSERT_EQ(chdir(before.c_str()), 0);
}

}  // namespace
