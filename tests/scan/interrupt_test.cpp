// Signals that end the program: noted once, fatal twice or at the deadline, and never slept over.
#include "scan/interrupt.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "scan/descriptors.h"

namespace {

// The statements run in processes of their own, which exit with 0 when what is expected holds.
void ExitWith(bool holds) { _exit(holds ? 0 : 1); }

class InterruptDeathTest : public testing::TestWithParam<int> {};

TEST_P(InterruptDeathTest, FirstSignalIsNotedAndEndsTheProgramWhenItIsAskedTo) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            if (Interrupted()) _exit(2);
            EndIfInterrupted();
            raise(number);
            if (!Interrupted()) _exit(3);
            EndIfInterrupted();
            _exit(4);
        },
        testing::KilledBySignal(number), "");
}

TEST_P(InterruptDeathTest, SecondSignalEndsTheProgramAtOnce) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            raise(SIGTERM);
            raise(number);
            _exit(1);
        },
        testing::KilledBySignal(number), "");
}

TEST_P(InterruptDeathTest, IgnoredSignalStaysIgnored) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            std::signal(number, SIG_IGN);
            CatchInterrupts();
            raise(number);
            ExitWith(!Interrupted());
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(InterruptDeathTest, SignalEndsTheWaitingWheneverItComes) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            int ends[2];
            if (pipe(ends) != 0) _exit(2);
            CatchInterrupts();
            const pid_t waiting = getpid();
            if (fork() == 0) {
                kill(waiting, number);
                _exit(0);
            }
            if (WaitForInput(ends[0])) _exit(3);
            char block[1];
            ExitWith(ReadAvailable(ends[0], block) == -1 && errno == EINTR);
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(InterruptDeathTest, FirstSignalSetsTheDeadline) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            if (alarm(0) != 0) _exit(2);
            raise(number);
            ExitWith(alarm(0) != 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_P(InterruptDeathTest, DeadlineEndsTheProgramByTheFirstSignal) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            raise(number);
            raise(SIGALRM);
            _exit(1);
        },
        testing::KilledBySignal(number), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptDeathTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

// What is under way never looks whether a signal has come.
[[noreturn]] void NeverEnd() {
    alarm(60);  // the signal sets its own; without it this one ends the test
    raise(SIGTERM);
    while (true) pause();
}

TEST(DeadlineDeathTest, OneSignalEndsWhatDoesNotLookForIt) {
    EXPECT_EXIT(
        {
            CatchInterrupts();
            NeverEnd();
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST(DeadlineDeathTest, ComesToAProgramThatWasStartedWithTheAlarmBlockedOrIgnored) {
    EXPECT_EXIT(
        {
            sigset_t blocked;
            sigemptyset(&blocked);
            sigaddset(&blocked, SIGALRM);
            sigprocmask(SIG_BLOCK, &blocked, nullptr);
            std::signal(SIGALRM, SIG_IGN);
            CatchInterrupts();
            raise(SIGTERM);
            raise(SIGALRM);
            _exit(1);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST(DeadlineDeathTest, AlarmOfTheCallerEndsTheProgramAsBefore) {
    EXPECT_EXIT(
        {
            CatchInterrupts();
            raise(SIGALRM);
            _exit(1);
        },
        testing::KilledBySignal(SIGALRM), "");
}

TEST(Waiting, EndsWithInputAndAtTheEnd) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "a", 1), 1);
    EXPECT_TRUE(WaitForInput(ends[0]));
    char block[2];
    EXPECT_EQ(ReadAvailable(ends[0], block), 1);
    close(ends[1]);
    EXPECT_TRUE(WaitForInput(ends[0]));
    EXPECT_EQ(ReadAvailable(ends[0], block), 0);
    close(ends[0]);
    EXPECT_EQ(ReadAvailable(ends[0], block), -1);
    EXPECT_EQ(errno, EBADF);
}

}  // namespace
