// What comes to standard error while a run goes on, byte by byte, with a clock that the tests turn.
#include "cli/progress.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using std::chrono::milliseconds;

Record ReadRecord(std::uint64_t size) {
    Record record = {};
    record.answer.size = size;
    return record;
}

Record FailedRecord() {
    Record record = {};
    record.error = "is a directory";
    return record;
}

class ProgressLines : public testing::Test {
 protected:
    Progress& Start(ProgressMode mode, bool terminal) {
        ProgressOptions options;
        options.mode = mode;
        options.terminal = terminal;
        options.write = [this](std::string_view text) { written_ += text; };
        options.columns = [this] { return columns_; };
        progress_ = std::make_unique<Progress>(options, At(0));
        return *progress_;
    }
    // A time so long behind the start of the run.
    static Progress::Time At(std::int64_t count) { return Progress::Time(milliseconds(86400000 + count)); }
    void CountFiles(int count, std::uint64_t size = 0) {
        for (int index = 0; index < count; ++index) progress_->Count(ReadRecord(size));
    }
    // What has been written since the last call.
    std::string Written() { return std::exchange(written_, ""); }
    std::string AfterTick(std::int64_t count) {
        progress_->Tick(At(count));
        return Written();
    }
    std::string AfterFinish(std::int64_t count) {
        progress_->Finish(At(count));
        return Written();
    }

    std::unique_ptr<Progress> progress_;
    std::uint32_t columns_ = 80;
    std::string written_;
};

TEST_F(ProgressLines, OnATerminalOneLineIsDrawnAgainAndAgain) {
    Start(ProgressMode::On, true);
    EXPECT_EQ(AfterTick(0), "\r0 files  0/s  0 B  0 errors  0:00:00\x1B[K");
    CountFiles(1, 1536);
    progress_->Count(FailedRecord());
    EXPECT_EQ(AfterTick(199), "");
    EXPECT_EQ(AfterTick(200), "\r2 files  10/s  1.5 KiB  1 error  0:00:00\x1B[K");
    CountFiles(1232);
    progress_->Count(FailedRecord());
    EXPECT_EQ(AfterTick(399), "");
    EXPECT_EQ(AfterTick(2000), "\r1,235 files  618/s  1.5 KiB  2 errors  0:00:02\x1B[K");
    EXPECT_EQ(AfterFinish(3723000), "\r1,235 files  0/s  1.5 KiB  2 errors  1:02:03\x1B[K\n");
}

TEST_F(ProgressLines, OneFileIsOneFile) {
    Start(ProgressMode::On, true);
    CountFiles(1);
    EXPECT_EQ(AfterTick(1000), "\r1 file  1/s  0 B  0 errors  0:00:01\x1B[K");
}

TEST_F(ProgressLines, AutoBeginsBehindASecondAndLeavesNothing) {
    Start(ProgressMode::Auto, true);
    EXPECT_EQ(AfterTick(1000), "");
    EXPECT_EQ(AfterTick(1001), "\r0 files  0/s  0 B  0 errors  0:00:01\x1B[K");
    EXPECT_EQ(AfterFinish(1002), "\r\x1B[K");
}

TEST_F(ProgressLines, AutoOfAShortRunWritesNothing) {
    Start(ProgressMode::Auto, true);
    EXPECT_EQ(AfterTick(900), "");
    EXPECT_EQ(AfterFinish(950), "");
}

TEST_F(ProgressLines, AutoNeedsATerminal) {
    Start(ProgressMode::Auto, false);
    EXPECT_EQ(AfterTick(60000), "");
    EXPECT_EQ(AfterFinish(70000), "");
}

TEST_F(ProgressLines, OffWritesNothing) {
    for (const bool terminal : {false, true}) {
        Start(ProgressMode::Off, terminal);
        CountFiles(1);
        EXPECT_EQ(AfterTick(60000), "");
        progress_->Hide();
        EXPECT_EQ(AfterFinish(70000), "");
    }
}

TEST_F(ProgressLines, ElsewhereALineIsAddedEveryTenSeconds) {
    Start(ProgressMode::On, false);
    columns_ = 10;  // counts on terminals alone
    CountFiles(20);
    EXPECT_EQ(AfterTick(9999), "");
    EXPECT_EQ(AfterTick(10000), "fiid: 20 files  2/s  0 B  0 errors  0:00:10\n");
    EXPECT_EQ(AfterTick(19999), "");
    EXPECT_EQ(AfterTick(20000), "fiid: 20 files  0/s  0 B  0 errors  0:00:20\n");
    progress_->Hide();
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(AfterFinish(20001), "fiid: 20 files  1/s  0 B  0 errors  0:00:20\n");
}

TEST_F(ProgressLines, FinishHasALineOfItsOwnAlsoWhereNoneWasDrawn) {
    Start(ProgressMode::On, true);
    CountFiles(5);
    EXPECT_EQ(AfterFinish(0), "\r5 files  0/s  0 B  0 errors  0:00:00\x1B[K\n");
    EXPECT_EQ(AfterFinish(1000), "");
    EXPECT_EQ(AfterTick(2000), "");
    progress_->Hide();
    EXPECT_EQ(Written(), "");
}

TEST_F(ProgressLines, HideTakesTheLineAwayUntilTheNextDrawing) {
    Start(ProgressMode::On, true);
    progress_->Hide();
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(AfterTick(0), "\r0 files  0/s  0 B  0 errors  0:00:00\x1B[K");
    progress_->Hide();
    EXPECT_EQ(Written(), "\r\x1B[K");
    progress_->Hide();
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(AfterTick(199), "");
    EXPECT_EQ(AfterTick(200), "\r0 files  0/s  0 B  0 errors  0:00:00\x1B[K");
    progress_->Hide();
    EXPECT_EQ(Written(), "\r\x1B[K");
    EXPECT_EQ(AfterFinish(300), "\r0 files  0/s  0 B  0 errors  0:00:00\x1B[K\n");
}

TEST_F(ProgressLines, AutoThatIsHiddenIsNotHiddenAgainAtTheEnd) {
    Start(ProgressMode::Auto, true);
    AfterTick(2000);
    progress_->Hide();
    Written();
    EXPECT_EQ(AfterFinish(2001), "");
}

TEST_F(ProgressLines, SizesThatAreNotKnownAreNotCounted) {
    Start(ProgressMode::On, true);
    progress_->Count(ReadRecord(FIID_SIZE_UNKNOWN));
    Record failed = FailedRecord();
    failed.answer.size = 5;  // of no meaning
    progress_->Count(failed);
    EXPECT_EQ(AfterTick(1000), "\r2 files  2/s  0 B  1 error  0:00:01\x1B[K");
    CountFiles(2, UINT64_MAX - 1);
    EXPECT_EQ(AfterTick(2000), "\r4 files  2/s  16.0 EiB  1 error  0:00:02\x1B[K");
}

// The newest sample that is at least five seconds old.
TEST_F(ProgressLines, TheRateIsThatOfTheLastSeconds) {
    Start(ProgressMode::On, true);
    for (int second = 1; second <= 10; ++second) {
        CountFiles(1000);
        AfterTick(1000 * second);
    }
    CountFiles(5);
    EXPECT_EQ(AfterTick(14999), "\r10,005 files  168/s  0 B  0 errors  0:00:14\x1B[K");  // 1,005 in 5.999 s
    EXPECT_EQ(AfterTick(15200), "\r10,005 files  1/s  0 B  0 errors  0:00:15\x1B[K");    // 5 in 5.2 s
    EXPECT_EQ(AfterTick(21000), "\r10,005 files  0/s  0 B  0 errors  0:00:21\x1B[K");
    EXPECT_EQ(AfterFinish(21000), "\r10,005 files  476/s  0 B  0 errors  0:00:21\x1B[K\n");
}

// ---- The time left ----------------------------------------------------------------------------------------------------

class TimeLeft : public ProgressLines {
 protected:
    void SetUp() override { Start(ProgressMode::On, true); }
    // What stands behind "left " after a tick, or "".
    std::string LeftAt(std::int64_t count) {
        const std::string line = AfterTick(count);
        const std::size_t place = line.find("  left ");
        if (place == std::string::npos) return "";
        return line.substr(place + 7, line.size() - place - 7 - std::strlen("\x1B[K"));
    }
};

TEST_F(TimeLeft, IsToldWhereTheListIsKnown) {
    progress_->SetList(0, 400);
    EXPECT_EQ(LeftAt(1000), "");  // nothing is done yet
    progress_->SetList(100, 400);
    EXPECT_EQ(AfterTick(10000), "\r0 files  0/s  0 B  0 errors  0:00:10  left 0:00:30\x1B[K");
    progress_->SetList(399, 400);
    EXPECT_EQ(LeftAt(11000), "0:00:01");
    progress_->SetList(400, 400);
    EXPECT_EQ(LeftAt(12000), "");  // the list is read, and how many files are under way is not known
    progress_->SetList(500, 400);
    EXPECT_EQ(LeftAt(13000), "");
    EXPECT_EQ(AfterFinish(14000), "\r0 files  0/s  0 B  0 errors  0:00:14\x1B[K\n");
}

TEST_F(TimeLeft, IsNotToldAtTheEnd) {
    progress_->SetList(100, 400);
    EXPECT_EQ(AfterFinish(10000), "\r0 files  0/s  0 B  0 errors  0:00:10\x1B[K\n");
}

TEST_F(TimeLeft, GoesWithTheLastMinute) {
    for (int second = 1; second <= 10; ++second) {  // 1,000 a second
        progress_->SetList(static_cast<std::uint64_t>(1000 * second), 20000);
        AfterTick(1000 * second);
    }
    EXPECT_EQ(LeftAt(20000), "0:00:20");             // 10,000 in 20 s
    for (int second = 21; second <= 80; ++second) {  // 10 a second
        progress_->SetList(static_cast<std::uint64_t>(10000 + 10 * (second - 20)), 20000);
        AfterTick(1000 * second);
    }
    EXPECT_EQ(LeftAt(80500), "0:15:48");  // 9,400 at 600 in 60.5 s, though the first seconds did more
}

TEST_F(TimeLeft, OfAListThatStandsStillGoesWithTheWholeRun) {
    progress_->SetList(1000, 2000);
    for (int second = 1; second <= 100; ++second) AfterTick(1000 * second);
    EXPECT_EQ(LeftAt(100500), "0:01:41");  // 1,000 in 100.5 s
}

TEST_F(TimeLeft, BeyondAllSenseIsNotTold) {
    progress_->SetList(1, UINT64_MAX);
    EXPECT_EQ(LeftAt(1000), "");
    progress_->SetList(1, 360001);
    EXPECT_EQ(LeftAt(2000), "200:00:00");
}

// ---- Narrow terminals -------------------------------------------------------------------------------------------------

class NarrowTerminal : public ProgressLines {
 protected:
    std::string LineAt(std::uint32_t columns) {
        Start(ProgressMode::On, true);
        columns_ = columns;
        for (int index = 0; index < 12341; ++index) progress_->Count(ReadRecord(104405));
        for (int index = 0; index < 4; ++index) progress_->Count(FailedRecord());
        progress_->SetList(12, 77);
        const std::string line = AfterTick(12000);
        EXPECT_EQ(line.front(), '\r');
        EXPECT_LT(line.size() - std::strlen("\r\x1B[K"), columns);
        return line.substr(1, line.size() - 1 - std::strlen("\x1B[K"));
    }
};

TEST_F(NarrowTerminal, LeavesPartsOut) {
    const std::string whole = "12,345 files  1,029/s  1.2 GiB  4 errors  0:00:12  left 0:01:05";
    EXPECT_EQ(LineAt(200), whole);
    EXPECT_EQ(LineAt(80), whole);
    EXPECT_EQ(LineAt(64), whole);
    EXPECT_EQ(LineAt(63), "12,345 files  1,029/s  4 errors  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(55), "12,345 files  1,029/s  4 errors  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(54), "12,345 files  4 errors  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(46), "12,345 files  4 errors  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(45), "12,345 files  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(40), "12,345 files  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(36), "12,345 files  0:00:12  left 0:01:05");
    EXPECT_EQ(LineAt(35), "12,345 files  left 0:01:05");
    EXPECT_EQ(LineAt(27), "12,345 files  left 0:01:05");
    EXPECT_EQ(LineAt(26), "12,345 files");
    EXPECT_EQ(LineAt(20), "12,345 files");
    EXPECT_EQ(LineAt(13), "12,345 files");
    EXPECT_EQ(LineAt(12), "12,345 file");
    EXPECT_EQ(LineAt(2), "1");
    EXPECT_EQ(LineAt(1), "");
}

// A line of 79 characters fits into 80 columns, and one of 80 does not.
TEST_F(NarrowTerminal, WithoutAWidthIsTakenFor80) {
    constexpr std::int64_t longAfter = 3600000000000;
    for (const bool told : {false, true}) {
        Start(ProgressMode::On, true);
        columns_ = told ? 80 : 0;
        AfterTick(longAfter - 5000);
        CountFiles(1, 102400);
        for (int index = 0; index < 20000; ++index) progress_->Count(FailedRecord());
        progress_->SetList(3601, 4600);
        EXPECT_EQ(AfterTick(longAfter),
                  "\r20,001 files  4,000/s  100 KiB  20,000 errors  1000000:00:00  left 277422:56:18\x1B[K");
        CountFiles(1, 102400 * 9);
        EXPECT_EQ(AfterTick(longAfter + 200),
                  "\r20,002 files  3,847/s  20,000 errors  1000000:00:00  left 277422:56:18\x1B[K");
    }
}

TEST(Progress, WithoutAFunctionForTheWidthTakesItFor80) {
    std::string written;
    ProgressOptions options;
    options.mode = ProgressMode::On;
    options.terminal = true;
    options.write = [&](std::string_view text) { written += text; };
    Progress progress(options, Progress::Time());
    progress.Tick(Progress::Time());
    EXPECT_EQ(written, "\r0 files  0/s  0 B  0 errors  0:00:00\x1B[K");
}

}  // namespace
