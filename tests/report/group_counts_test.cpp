// Counts under names, in a table and beyond it, against a plain map.
#include "report/group_counts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "support/random_numbers.h"

// Reads of the temporary file fail while this is set.
static bool readsFail = false;

extern "C" {
ssize_t __real_pread(int descriptor, void* bytes, size_t count, off_t offset);

ssize_t __wrap_pread(int descriptor, void* bytes, size_t count, off_t offset) {
    if (!readsFail) return __real_pread(descriptor, bytes, count, offset);
    errno = EIO;
    return -1;
}
}

namespace {

struct Group {
    std::string name;
    FileCount count;

    bool operator==(const Group&) const = default;
};

// How a failed comparison shows a group.
void PrintTo(const Group& group, std::ostream* out) {
    *out << testing::PrintToString(group.name) << " " << group.count.files << " " << group.count.bytes;
}

std::vector<Group> Finished(GroupCounts& counts) {
    counts.Finish();
    std::vector<Group> groups;
    Group group;
    while (counts.Next(group.name, group.count)) groups.push_back(group);
    EXPECT_EQ(counts.Failure(), "");
    return groups;
}

// Budgets in which all fits, some, and a single name.
constexpr std::size_t budgets[] = {1 << 20, 4096, 0};

TEST(GroupCounts, OfNothingAreNone) {
    for (const std::size_t budget : budgets) {
        GroupCounts counts(budget);
        EXPECT_EQ(Finished(counts), std::vector<Group>());
    }
}

TEST(GroupCounts, AreAddedUpAndComeOutTheLargestFirst) {
    for (const std::size_t budget : budgets) {
        GroupCounts counts(budget);
        counts.Add("b", {1, 10});
        counts.Add("a", {1, 20});
        counts.Add("z", {2, 0});
        counts.Add("", {1, 5});
        counts.Add("b", {1, 30});
        counts.Add("ab", {1, 7});
        EXPECT_EQ(Finished(counts),
                  (std::vector<Group>{{"b", {2, 40}}, {"z", {2, 0}}, {"", {1, 5}}, {"a", {1, 20}}, {"ab", {1, 7}}}))
            << budget;
    }
}

TEST(GroupCounts, TakeNamesOfAnyBytes) {
    using namespace std::string_literals;
    const std::vector<std::string> names = {"\0"s,  "\0\0"s, "\0\1"s, "\1"s, "\1\0"s, "\1\1"s, "\2"s,   "a"s,
                                            "a\0"s, "a\0b"s, "a\1"s,  "ab"s, "\x7F"s, "\x80"s, "\xFF"s, "\xFF\xFF"s};
    for (const std::size_t budget : budgets) {
        GroupCounts counts(budget);
        std::vector<Group> expected;
        for (std::size_t index = 0; index < names.size(); ++index) {
            counts.Add(names[names.size() - 1 - index], {3, 1});
            counts.Add(names[index], {4, 1});
            expected.push_back({names[index], {7, 2}});
        }
        EXPECT_EQ(Finished(counts), expected) << budget;
    }
}

TEST(GroupCounts, EndAtTheLargestNumber) {
    for (const std::size_t budget : budgets) {
        GroupCounts counts(budget);
        counts.Add("a", {UINT64_MAX - 1, UINT64_MAX});
        counts.Add("b", {1, 1});
        counts.Add("a", {1, 1});
        counts.Add("b", {UINT64_MAX, 0});
        EXPECT_EQ(Finished(counts), (std::vector<Group>{{"a", {UINT64_MAX, UINT64_MAX}}, {"b", {UINT64_MAX, 1}}}))
            << budget;
    }
}

TEST(GroupCounts, OfManyNamesAreThoseOfAPlainMap) {
    for (const std::size_t budget : {std::size_t{1} << 24, std::size_t{300000}, std::size_t{50000}}) {
        GroupCounts counts(budget);
        std::map<std::string, FileCount> plain;
        RandomNumbers random(7);
        for (int index = 0; index < 10000; ++index) {
            std::string name = "directory/" + std::to_string(random.Below(4000));
            if (index % 3 == 0) name += "/with a name that is longer than the others have";
            const FileCount count = {1 + random.Below(3), random.Below(1 << 20)};
            counts.Add(name, count);
            plain[name] += count;
        }
        std::vector<Group> expected;
        for (const auto& [name, count] : plain) expected.push_back({name, count});
        std::stable_sort(expected.begin(), expected.end(),
                         [](const Group& a, const Group& b) { return a.count.files > b.count.files; });
        EXPECT_EQ(Finished(counts), expected) << budget;
    }
}

// What comes behind a name that is longer than the whole budget, and such a name.
TEST(GroupCounts, TakeNamesThatAreLongerThanTheBudget) {
    GroupCounts counts(1000);
    const std::string name(100000, 'n');
    for (int index = 0; index < 3; ++index) {
        counts.Add(name, {1, 1});
        counts.Add("short", {2, 2});
    }
    EXPECT_EQ(Finished(counts), (std::vector<Group>{{"short", {6, 6}}, {name, {3, 3}}}));
}

// In either of the two sorts; what is missing is told.
TEST(GroupCounts, TellThatTheTemporaryFileCouldNotBeRead) {
    constexpr std::uint64_t names = 20000;
    for (const bool inTheSecond : {false, true}) {
        GroupCounts counts(50000);
        for (std::uint64_t index = 0; index < names; ++index) counts.Add("name " + std::to_string(index), {1, 1});
        readsFail = !inTheSecond;
        counts.Finish();
        readsFail = true;
        Group group;
        std::uint64_t came = 0;
        while (counts.Next(group.name, group.count)) ++came;
        readsFail = false;
        EXPECT_LT(came, names);
        EXPECT_EQ(counts.Failure(), "temporary file: Input/output error");
    }
}

}  // namespace
