// Which names a walk takes: --glob, --exclude and --no-hidden, alone and together.
#include "scan/name_filter.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace {

struct Filtered {
    std::vector<const char*> globs;
    std::vector<const char*> excludes;
    bool hidden = true;
};

NameFilter FilterOf(const Filtered& filtered) {
    NameFilter filter;
    for (const char* glob : filtered.globs) EXPECT_EQ(filter.AddGlob(glob), "");
    for (const char* glob : filtered.excludes) EXPECT_EQ(filter.AddExclude(glob), "");
    filter.SetHidden(filtered.hidden);
    return filter;
}

using Paths = std::vector<std::string>;

// Those of the paths that are taken.
Paths FilesOf(const NameFilter& filter, std::initializer_list<const char*> paths) {
    Paths taken;
    for (const char* path : paths) {
        if (filter.TakesFile(path)) taken.emplace_back(path);
    }
    return taken;
}

Paths DirectoriesOf(const NameFilter& filter, std::initializer_list<const char*> paths) {
    Paths entered;
    for (const char* path : paths) {
        if (filter.EntersDirectory(path)) entered.emplace_back(path);
    }
    return entered;
}

TEST(NameFilter, TakesAllByItself) {
    const NameFilter filter;
    EXPECT_EQ(FilesOf(filter, {"a", ".a", "x/.a", "\xFF"}), (Paths{"a", ".a", "x/.a", "\xFF"}));
    EXPECT_EQ(DirectoriesOf(filter, {"a", ".a", "x/.a"}), (Paths{"a", ".a", "x/.a"}));
}

TEST(NameFilter, FileMatchesAnIncludingGlob) {
    const NameFilter filter = FilterOf({{"*.c", "/a"}, {}});
    EXPECT_EQ(FilesOf(filter, {"a.c", "x/b.c", "a", "x/a", "a.h", ".c"}), (Paths{"a.c", "x/b.c", "a", ".c"}));
}

TEST(NameFilter, IncludingGlobsLeaveNoDirectoryOut) {
    const NameFilter filter = FilterOf({{"*.c", "src/**"}, {}});
    EXPECT_EQ(DirectoriesOf(filter, {"a", "a/b", "src", "x.c"}), (Paths{"a", "a/b", "src", "x.c"}));
}

TEST(NameFilter, NameOfADirectoryTakesNothingBelowIt) {
    EXPECT_EQ(FilesOf(FilterOf({{"src"}, {}}), {"src/a", "src"}), (Paths{"src"}));
    EXPECT_EQ(FilesOf(FilterOf({{"src/**"}, {}}), {"src/a", "src/x/a", "x/src/a", "src"}), (Paths{"src/a", "src/x/a"}));
}

TEST(NameFilter, TrailingSlashTakesWhatIsBelow) {
    const NameFilter filter = FilterOf({{"src/", "/a/b/"}, {}});
    EXPECT_EQ(FilesOf(filter, {"src", "src/a", "x/src/y/a", "a/b/f", "a/b", "x/a/b/f", "f"}),
              (Paths{"src/a", "x/src/y/a", "a/b/f"}));
}

TEST(NameFilter, ExclamationMarkExcludes) {
    const NameFilter filter = FilterOf({{"!*.o", "!build/"}, {}});
    EXPECT_EQ(FilesOf(filter, {"a.o", "x/a.o", "a", "build"}), (Paths{"a", "build"}));
    EXPECT_EQ(DirectoriesOf(filter, {"x.o", "build", "x/build", "a"}), (Paths{"a"}));
}

TEST(NameFilter, EscapedExclamationMarkIncludes) {
    EXPECT_EQ(FilesOf(FilterOf({{"\\!a"}, {}}), {"!a", "a", "b"}), (Paths{"!a"}));
    EXPECT_EQ(FilesOf(FilterOf({{"!!a"}, {}}), {"!a", "a", "b"}), (Paths{"a", "b"}));
}

TEST(NameFilter, LastGlobThatMatchesDecides) {
    EXPECT_EQ(FilesOf(FilterOf({{"*.c", "!test_*"}, {}}), {"a.c", "test_a.c", "test_a", "b"}), (Paths{"a.c"}));
    EXPECT_EQ(FilesOf(FilterOf({{"!test_*", "*.c"}, {}}), {"a.c", "test_a.c", "test_a", "b"}),
              (Paths{"a.c", "test_a.c"}));
    EXPECT_EQ(FilesOf(FilterOf({{"*", "!*.c", "a.*", "!a.c"}, {}}), {"x", "b.c", "a.x", "a.c"}), (Paths{"x", "a.x"}));
}

TEST(NameFilter, LaterGlobsTakeDirectoriesBackIn) {
    const NameFilter filter = FilterOf({{"!*/", "src", "lib/"}, {}});
    EXPECT_EQ(DirectoriesOf(filter, {"a", "src", "lib", "lib/a", "src/a", "x/src"}),
              (Paths{"src", "lib", "lib/a", "x/src"}));
    EXPECT_EQ(DirectoriesOf(FilterOf({{"src", "!s*"}, {}}), {"src", "a"}), (Paths{"a"}));
}

TEST(NameFilter, WhatIsBelowADirectoryDoesNotTakeItBackIn) {
    EXPECT_EQ(DirectoriesOf(FilterOf({{"!src", "src/**"}, {}}), {"src"}), Paths());
}

TEST(NameFilter, ExcludesStandAboveGlobs) {
    for (const char* including : {"*", "*.o", "a.o"}) {
        const NameFilter filter = FilterOf({{including}, {"*.o", "/b/"}});
        EXPECT_EQ(FilesOf(filter, {"a.o", "x/a.o"}), Paths()) << including;
        EXPECT_EQ(DirectoriesOf(filter, {"x.o", "b", "x/b"}), (Paths{"x/b"})) << including;
    }
}

TEST(NameFilter, ExcludesLeaveTheRest) {
    const NameFilter filter = FilterOf({{}, {"node_modules", "build/", "doc/**"}});
    EXPECT_EQ(FilesOf(filter, {"a", "node_modules", "build", "doc", "doc/a", "x/doc/a"}),
              (Paths{"a", "build", "doc", "x/doc/a"}));
    EXPECT_EQ(DirectoriesOf(filter, {"a", "x/node_modules", "x/build", "doc", "doc/a"}), (Paths{"a", "doc"}));
}

TEST(NameFilter, ExclamationMarkOfAnExcludeIsPartOfTheName) {
    EXPECT_EQ(FilesOf(FilterOf({{}, {"!a"}}), {"!a", "a", "b"}), (Paths{"a", "b"}));
}

TEST(NameFilter, HiddenNamesBeginWithAFullStop) {
    const NameFilter filter = FilterOf({{}, {}, false});
    EXPECT_EQ(FilesOf(filter, {".a", "x/.a", "a.", "a.b", "x/a", "...", ".x/a"}), (Paths{"a.", "a.b", "x/a", ".x/a"}));
    EXPECT_EQ(DirectoriesOf(filter, {".a", "x/.a", "a.", "x/a"}), (Paths{"a.", "x/a"}));
}

TEST(NameFilter, GlobsDoNotTakeHiddenNamesBackIn) {
    const NameFilter filter = FilterOf({{"*.txt", ".*"}, {}, false});
    EXPECT_EQ(FilesOf(filter, {"a.txt", ".a.txt", ".b"}), (Paths{"a.txt"}));
    EXPECT_EQ(DirectoriesOf(filter, {".b", "b"}), (Paths{"b"}));
}

TEST(NameFilter, LaterSettingOfHiddenWins) {
    NameFilter filter;
    filter.SetHidden(false);
    filter.SetHidden(true);
    EXPECT_TRUE(filter.TakesFile(".a"));
    filter.SetHidden(false);
    EXPECT_FALSE(filter.TakesFile(".a"));
}

TEST(NameFilter, FailuresNameTheGlob) {
    NameFilter filter;
    EXPECT_EQ(filter.AddGlob("a["), R"(a[: [ has no ] that closes it; \[ stands for the character itself)");
    EXPECT_EQ(filter.AddGlob("!a{"), R"(!a{: { has no } that closes it; \{ stands for the character itself)");
    EXPECT_EQ(filter.AddExclude("../a"), "../a: has a .. in it, which no path below a directory has");
    EXPECT_EQ(filter.AddGlob("!"), "!: names no file");
    EXPECT_EQ(filter.AddGlob(""), "an empty glob names no file");
    EXPECT_EQ(filter.AddExclude(""), "an empty glob names no file");
    EXPECT_EQ(filter.AddGlob(std::string(65537, 'a')), std::string(100, 'a') + "...: is longer than 65,536 bytes");
    EXPECT_TRUE(filter.TakesFile("a")) << "what is refused changes nothing";
}

TEST(NameFilter, MarkDoesNotCountForTheLength) {
    NameFilter filter;
    EXPECT_EQ(filter.AddGlob("!" + std::string(65536, 'a')), "");
    EXPECT_FALSE(filter.TakesFile(std::string(65536, 'a')));
    EXPECT_TRUE(filter.TakesFile(std::string(65535, 'a')));
}

}  // namespace
