// How many threads and tasks a scan has under way.
#include "cli/scan_limits.h"

#include <gtest/gtest.h>

namespace {

unsigned ThreadsFor(std::uint64_t descriptors, bool readsStore) {
    return LimitsOfScan({1024, false, readsStore, descriptors}).threads;
}

TEST(ScanLimits, ThreadsAsAskedForWhereThereAreDescriptors) {
    for (const unsigned jobs : {1U, 2U, 64U, 1024U}) {
        EXPECT_EQ(LimitsOfScan({jobs, false, true, UINT64_MAX}).threads, jobs);
    }
}

TEST(ScanLimits, OneThreadWhateverTheDescriptors) {
    for (const std::uint64_t descriptors : {0U, 8U, 13U, 17U}) EXPECT_EQ(ThreadsFor(descriptors, false), 1U);
    EXPECT_EQ(ThreadsFor(26, true), 1U);
}

TEST(ScanLimits, ThreadsShareHalfOfTheDescriptors) {
    EXPECT_EQ(ThreadsFor(20, false), 1U);
    EXPECT_EQ(ThreadsFor(21, false), 2U);
    EXPECT_EQ(ThreadsFor(256, false), 60U);
    EXPECT_EQ(ThreadsFor(36, true), 1U);
    EXPECT_EQ(ThreadsFor(37, true), 2U);
    EXPECT_EQ(ThreadsFor(256, true), 29U);
}

TEST(ScanLimits, TasksUnderWayStayTheSameForManyThreads) {
    EXPECT_EQ(LimitsOfScan({2, false, false, UINT64_MAX}).batchTasks, 64U);
    EXPECT_EQ(LimitsOfScan({31, false, false, UINT64_MAX}).batchTasks, 64U);
    EXPECT_EQ(LimitsOfScan({32, false, false, UINT64_MAX}).batchTasks, 63U);
    for (const unsigned jobs : {1U, 31U, 32U, 64U, 1024U}) {
        const OrderedLimits limits = LimitsOfScan({jobs, false, false, UINT64_MAX});
        EXPECT_GE(limits.batches, 4 * jobs);
        EXPECT_LE(limits.batches * limits.batchTasks, 8200U);
    }
}

TEST(ScanLimits, OneTaskAtATimeForThoseWhoWait) {
    EXPECT_EQ(LimitsOfScan({2, true, false, UINT64_MAX}).batchTasks, 1U);
}

TEST(ScanLimits, ProcessHasDescriptors) { EXPECT_GE(DescriptorsOfProcess(), 8U); }

}  // namespace
