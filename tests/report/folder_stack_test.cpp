// The folders that files lie in, as they come.
#include "report/folder_stack.h"

#include <gtest/gtest.h>

namespace {

// The folders and files that paths make: "NUMBER<PARENT PATH", folders with a slash behind their absolute path.
std::string NumbersOf(const std::vector<std::string>& paths, const std::vector<std::string>& named,
                      const std::string& workingDirectory = "/w") {
    FolderStack stack(named, workingDirectory);
    std::string told;
    const auto tell = [&](std::uint64_t number, std::uint64_t parent, std::string_view path) {
        told += std::to_string(number) + "<" + std::to_string(parent) + " " + std::string(path) + "\n";
    };
    for (const std::string& path : paths) {
        const std::uint64_t parent = stack.FolderOf(
            path, [&](const Folder& folder) { tell(folder.number, folder.parent, std::string(folder.path) + "/"); });
        tell(stack.NextNumber(), parent, path);
    }
    return told;
}

TEST(FolderStack, KeepsWhatLiesAboveTheLastFile) {
    EXPECT_EQ(NumbersOf({"t/a/1", "t/a/2", "t/a/b/c/3", "t/a/4", "t/ab/5", "t/6"}, {"t"}),
              "1<0 /w/t/\n2<1 /w/t/a/\n3<2 t/a/1\n"
              "4<2 t/a/2\n"
              "5<2 /w/t/a/b/\n6<5 /w/t/a/b/c/\n7<6 t/a/b/c/3\n"
              "8<2 t/a/4\n"
              "9<1 /w/t/ab/\n10<9 t/ab/5\n"
              "11<1 t/6\n");
}

TEST(FolderStack, NumbersAnewWhatIsComeBackTo) {
    EXPECT_EQ(NumbersOf({"t/a/1", "t/b/2", "t/a/3"}, {"t"}),
              "1<0 /w/t/\n2<1 /w/t/a/\n3<2 t/a/1\n4<1 /w/t/b/\n5<4 t/b/2\n6<1 /w/t/a/\n7<6 t/a/3\n");
}

TEST(FolderStack, StartsAtTheOutermostNamedFolder) {
    EXPECT_EQ(NumbersOf({"/s/t/u/1"}, {"/s/t/"}), "1<0 /s/t/\n2<1 /s/t/u/\n3<2 /s/t/u/1\n");
    EXPECT_EQ(NumbersOf({"/s/t/u/1"}, {"/s/t/u", "/s/t"}), "1<0 /s/t/\n2<1 /s/t/u/\n3<2 /s/t/u/1\n");
    EXPECT_EQ(NumbersOf({"./a/1"}, {"."}), "1<0 /w/\n2<1 /w/a/\n3<2 ./a/1\n");
    EXPECT_EQ(NumbersOf({"../x/1"}, {".."}, "/v/w"), "1<0 /v/\n2<1 /v/x/\n3<2 ../x/1\n");
    EXPECT_EQ(NumbersOf({"/1", "/a/2"}, {"/"}), "1<0 /\n2<1 /1\n3<1 /a/\n4<3 /a/2\n");
}

TEST(FolderStack, StartsBelowTheWorkingDirectoryOrTheRootWithoutOne) {
    EXPECT_EQ(NumbersOf({"1", "a/b/2", "/s/t/3", "/4"}, {}),
              "1<0 1\n2<0 /w/a/\n3<2 /w/a/b/\n4<3 a/b/2\n5<0 /s/\n6<5 /s/t/\n7<6 /s/t/3\n8<0 /4\n");
    EXPECT_EQ(NumbersOf({"/wx/1"}, {"t"}), "1<0 /wx/\n2<1 /wx/1\n");
    EXPECT_EQ(NumbersOf({"a/1"}, {}, ""), "1<0 /a/\n2<1 a/1\n");
    EXPECT_EQ(NumbersOf({"1"}, {}, ""), "1<0 1\n");
}

TEST(FolderStack, LeavesNamedFilesOutsideOfFolders) {
    EXPECT_EQ(NumbersOf({"a/1", "a/b/2", "a/3"}, {"a/1", "a/b"}),
              "1<0 a/1\n2<0 /w/a/b/\n3<2 a/b/2\n4<0 /w/a/\n5<4 a/3\n");
}

TEST(FolderStack, GoesFromOneNamedFolderToAnother) {
    EXPECT_EQ(NumbersOf({"a/b/1", "c/2", "a/b/3"}, {"a/b", "c"}),
              "1<0 /w/a/b/\n2<1 a/b/1\n3<0 /w/c/\n4<3 c/2\n5<0 /w/a/b/\n6<5 a/b/3\n");
}

TEST(FolderStack, KnowsADirectoryByItsAbsolutePath) {
    EXPECT_EQ(NumbersOf({"a/1", "./a/2", "a/../a//3", "/w/a/4"}, {"a"}),
              "1<0 /w/a/\n2<1 a/1\n3<1 ./a/2\n4<1 a/../a//3\n5<1 /w/a/4\n");
}

}  // namespace
