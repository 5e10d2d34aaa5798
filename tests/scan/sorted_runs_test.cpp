// More records than the memory for them, in both orders, with files that fail. The linker wraps pwrite and pread (see
// CMakeLists.txt).
#include "scan/sorted_runs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <string>
#include <vector>

#include "support/temporary_directory.h"

namespace {

std::size_t writesLeft = SIZE_MAX;  // then the disk is full
std::size_t readsLeft = SIZE_MAX;   // then they fail
std::size_t largestPart = SIZE_MAX;
std::size_t interruptions = 0;
std::size_t writes = 0;

bool IsInterrupted() {
    if (interruptions == 0) return false;
    --interruptions;
    errno = EINTR;
    return true;
}

}  // namespace

extern "C" {

ssize_t __real_pwrite(int descriptor, const void* bytes, size_t size, off_t place);
ssize_t __real_pread(int descriptor, void* bytes, size_t size, off_t place);

ssize_t __wrap_pwrite(int descriptor, const void* bytes, size_t size, off_t place) {
    if (IsInterrupted()) return -1;
    ++writes;
    if (writesLeft-- > 0) return __real_pwrite(descriptor, bytes, std::min(size, largestPart), place);
    writesLeft = 0;
    errno = ENOSPC;
    return -1;
}
ssize_t __wrap_pread(int descriptor, void* bytes, size_t size, off_t place) {
    if (IsInterrupted()) return -1;
    if (readsLeft-- > 0) return __real_pread(descriptor, bytes, std::min(size, largestPart), place);
    readsLeft = 0;
    errno = EIO;
    return -1;
}

}  // extern "C"

namespace {

using Records = std::vector<std::string>;

class SortedRunsOf : public testing::Test {
 protected:
    SortedRunsOf() { setenv("TMPDIR", directory_.At("").c_str(), 1); }
    ~SortedRunsOf() override {
        unsetenv("TMPDIR");
        writesLeft = readsLeft = largestPart = SIZE_MAX;
        interruptions = writes = 0;
    }

    static Records Random(std::size_t count, std::size_t longest) {
        std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same records each time
        Records records(count);
        for (std::string& record : records) {
            record.resize(random() % (longest + 1));
            for (char& byte : record) byte = static_cast<char>(random());
        }
        return records;
    }
    static Records InOrder(Records records, RecordOrder order) {
        if (order == RecordOrder::Sorted) std::ranges::sort(records);
        return records;
    }
    static void Fill(SortedRuns& runs, const Records& records) {
        for (const std::string& record : records) runs.Add(record);
        runs.Finish();
    }
    static Records Take(SortedRuns& runs, std::size_t count = SIZE_MAX) {
        Records records;
        std::string_view record;
        while (count-- > 0 && runs.Next(record)) records.emplace_back(record);
        return records;
    }
    // All of them through a memory of some bytes, which is not outgrown.
    static Records Through(std::size_t memory, const Records& records, RecordOrder order) {
        SortedRuns runs(memory, order);
        std::size_t most = 0;
        for (const std::string& record : records) {
            runs.Add(record);
            most = std::max(most, runs.Memory());
        }
        runs.Finish();
        Records all;
        for (std::string_view record; runs.Next(record);) {
            all.emplace_back(record);
            most = std::max(most, runs.Memory());
            EXPECT_EQ(runs.IsAtEnd(), all.size() == records.size());
        }
        EXPECT_LE(most, std::max<std::size_t>(memory, 8192));
        EXPECT_EQ(runs.Error(), 0);
        return all;
    }

    TemporaryDirectory directory_;
};

constexpr RecordOrder bothOrders[] = {RecordOrder::Sorted, RecordOrder::AsAdded};

TEST_F(SortedRunsOf, NothingIsNothing) {
    for (const RecordOrder order : bothOrders) {
        SortedRuns runs(1000, order);
        runs.Finish();
        EXPECT_TRUE(runs.IsAtEnd());
        EXPECT_EQ(Take(runs), Records());
        runs.SpillRest();
        EXPECT_EQ(Take(runs), Records());
    }
    EXPECT_EQ(writes, 0U);
}

TEST_F(SortedRunsOf, FewRecordsTakeNoFile) {
    for (const RecordOrder order : bothOrders) {
        EXPECT_EQ(Through(36, {"b", "", "a", "b", "\xFF", "A"}, order),
                  InOrder({"b", "", "a", "b", "\xFF", "A"}, order));
    }
    EXPECT_EQ(writes, 0U);
    Through(34, {"b", "", "a", "b", "\xFF", "A"}, RecordOrder::Sorted);
    EXPECT_GT(writes, 0U);
}

// From two runs to some thousand, which takes passes: two runs at once where the memory holds but two buffers.
TEST_F(SortedRunsOf, AnyMemoryGivesTheSame) {
    const Records records = Random(3000, 60);
    for (const RecordOrder order : bothOrders) {
        const Records expected = InOrder(records, order);
        for (const std::size_t memory : {1000000, 100000, 30000, 9000, 1000, 100, 0}) {
            EXPECT_TRUE(Through(memory, records, order) == expected) << memory;
        }
    }
}

TEST_F(SortedRunsOf, EqualRecordsAllComeOut) {
    const Records records(5000, "equal");
    EXPECT_EQ(Through(4096, records, RecordOrder::Sorted), records);
}

TEST_F(SortedRunsOf, LongRecordsComeWhole) {
    const Records records = Random(40, 200000);
    for (const RecordOrder order : bothOrders) {
        SortedRuns runs(500000, order);
        Fill(runs, records);
        EXPECT_TRUE(Take(runs) == InOrder(records, order));
        SortedRuns small(1000, order);
        Fill(small, records);
        EXPECT_TRUE(Take(small) == InOrder(records, order));
    }
}

TEST_F(SortedRunsOf, RestMayBeSpilledAtAnyTime) {
    const Records records = Random(300, 60);
    for (const RecordOrder order : bothOrders) {
        const Records expected = InOrder(records, order);
        for (const std::size_t memory : {100000, 5000, 100}) {
            for (const std::size_t first : {0, 1, 150, 299, 300}) {
                SortedRuns runs(memory, order);
                Fill(runs, records);
                Records all = Take(runs, first);
                for (std::size_t turn = 0; turn < 3; ++turn) {
                    runs.SpillRest();
                    EXPECT_EQ(runs.IsAtEnd(), all.size() == records.size());
                    EXPECT_EQ(runs.Memory(), 0U);
                    for (const std::string& record : Take(runs, turn)) all.push_back(record);
                }
                for (const std::string& record : Take(runs)) all.push_back(record);
                EXPECT_TRUE(all == expected) << memory << " " << first;
            }
        }
    }
}

TEST_F(SortedRunsOf, FileIsSharedAndItsRoomGivenBack) {
    const Records records = Random(1000, 60);
    const auto file = std::make_shared<SpillFile>();
    {
        SortedRuns above(20000, RecordOrder::Sorted, file);
        Fill(above, records);
        const std::uint64_t end = file->End();
        EXPECT_GT(end, 0U);
        const Records first = Take(above, 500);
        for (int turn = 0; turn < 3; ++turn) {
            SortedRuns below(20000, RecordOrder::AsAdded, file);
            Fill(below, records);
            EXPECT_TRUE(Take(below) == records);
        }
        EXPECT_EQ(file->End(), end);
        Records all = first;
        for (const std::string& record : Take(above)) all.push_back(record);
        EXPECT_TRUE(all == InOrder(records, RecordOrder::Sorted));
    }
    EXPECT_EQ(file->End(), 0U);
}

TEST_F(SortedRunsOf, PartsOfTheFileInAnyOrderAreGivenBack) {
    const auto file = std::make_shared<SpillFile>();
    ASSERT_TRUE(file->Add("012345"));
    SpilledPart first(file, 0, 2);
    SpilledPart second(file, 2, 4);
    const SpilledPart third(file, 4, 6);
    second = SpilledPart();
    char bytes[2];
    EXPECT_EQ(file->Read(4, bytes), 0);
    EXPECT_EQ(std::string(bytes, 2), "45");
    EXPECT_EQ(file->End(), 6U);
    first = std::move(second);
    EXPECT_EQ(file->Read(4, bytes), 0);
    EXPECT_EQ(std::string(bytes, 2), "45");
    EXPECT_EQ(file->Read(5, bytes), EIO) << "the end";
}

TEST_F(SortedRunsOf, WithoutATemporaryDirectoryAllStaysInMemory) {
    setenv("TMPDIR", directory_.At("missing").c_str(), 1);
    const Records records = Random(3000, 60);
    for (const RecordOrder order : bothOrders) {
        SortedRuns runs(1000, order);
        Fill(runs, records);
        EXPECT_GT(runs.Memory(), 90000U);
        Records all = Take(runs, 1500);
        runs.SpillRest();
        for (const std::string& record : Take(runs)) all.push_back(record);
        EXPECT_TRUE(all == InOrder(records, order));
        EXPECT_EQ(runs.Error(), 0);
    }
}

// At each write in its turn: of a run, of a pass, and of what is left.
TEST_F(SortedRunsOf, FullDiskLosesNothing) {
    const Records records = Random(400, 60);
    for (const RecordOrder order : bothOrders) {
        const Records expected = InOrder(records, order);
        for (std::size_t room = 0; room < 40; ++room) {
            writesLeft = room;
            SortedRuns runs(1000, order);
            Fill(runs, records);
            Records all = Take(runs, 200);
            runs.SpillRest();
            for (const std::string& record : Take(runs)) all.push_back(record);
            EXPECT_TRUE(all == expected) << room;
            EXPECT_EQ(runs.Error(), 0);
        }
        writesLeft = SIZE_MAX;
    }
}

TEST_F(SortedRunsOf, ShortAndInterruptedCallsAreContinued) {
    const Records records = Random(1000, 60);
    largestPart = 100;
    interruptions = 5;
    EXPECT_TRUE(Through(9000, records, RecordOrder::Sorted) == InOrder(records, RecordOrder::Sorted));
    EXPECT_EQ(interruptions, 0U);
    SortedRuns runs(9000);
    Fill(runs, records);
    interruptions = 5;
    EXPECT_EQ(Take(runs).size(), records.size());
    EXPECT_EQ(interruptions, 0U);
}

TEST_F(SortedRunsOf, FailedReadIsToldAndTheOthersComeOut) {
    const Records records = Random(1000, 60);
    for (const RecordOrder order : bothOrders) {
        for (const std::size_t memory : {9000, 1000}) {  // the latter in passes, where the order asks for them
            SortedRuns runs(memory, order);
            for (const std::string& record : records) runs.Add(record);
            readsLeft = 1;
            runs.Finish();
            EXPECT_LT(Take(runs).size(), records.size());
            EXPECT_EQ(runs.Error(), EIO);
            EXPECT_TRUE(runs.IsAtEnd());
            readsLeft = SIZE_MAX;
        }
    }
}

TEST_F(SortedRunsOf, NothingStaysBehind) {
    const std::ptrdiff_t before = CountOpenDescriptors();
    Through(1000, Random(1000, 60), RecordOrder::Sorted);
    EXPECT_EQ(CountOpenDescriptors(), before);
    EXPECT_TRUE(std::filesystem::is_empty(directory_.At("")));
}

}  // namespace
