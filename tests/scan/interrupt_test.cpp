// Signals that end the program: noted once, fatal twice or at the deadline, and never slept over by any thread.
#include "scan/interrupt.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

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
            usleep(110'000);
            raise(number);
            _exit(1);
        },
        testing::KilledBySignal(number), "");
}

// As timeout(1) sends it, to the program and to its group.
TEST_P(InterruptDeathTest, SignalThatComesTwiceAtATimeIsOne) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            raise(number);
            raise(number);
            raise(SIGTERM);
            if (!Interrupted()) _exit(2);
            EndIfInterrupted();
            _exit(3);
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

// What the threads of a program see of a signal, which waits for input that never comes.
[[noreturn]] void WaitInThreads(int number) {
    int ends[2];
    if (pipe(ends) != 0) _exit(2);
    CatchInterrupts();
    std::atomic<int> toldInput = 0;
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([&] { toldInput += WaitForInput(ends[0]) ? 1 : 0; });
    }
    kill(getpid(), number);
    for (std::thread& thread : threads) thread.join();
    _exit(toldInput == 0 && !WaitForInput(ends[0]) ? 0 : 1);
}

// Whichever thread has the signal; those that begin to wait behind it do not sleep either.
TEST_P(InterruptDeathTest, SignalEndsTheWaitingOfAllThreads) {
    EXPECT_EXIT(WaitInThreads(GetParam()), testing::ExitedWithCode(0), "");
}

bool CanBeRead(int descriptor) {
    pollfd told = {descriptor, POLLIN, 0};
    return poll(&told, 1, 0) == 1 && told.revents == POLLIN;
}

TEST_P(InterruptDeathTest, DescriptorTellsTheSignalForGood) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            if (InterruptDescriptor() != -1) _exit(2);
            CatchInterrupts();
            if (CanBeRead(InterruptDescriptor())) _exit(3);
            raise(number);
            ExitWith(CanBeRead(InterruptDescriptor()) && CanBeRead(InterruptDescriptor()));
        },
        testing::ExitedWithCode(0), "");
}

// What waits for something else may look at errno between two calls.
TEST_P(InterruptDeathTest, SignalLeavesErrnoAlone) {
    const int number = GetParam();
    EXPECT_EXIT(
        {
            CatchInterrupts();
            close(InterruptDescriptor());  // so that the note can't be written
            std::signal(SIGPIPE, SIG_IGN);
            errno = ENOTDIR;
            raise(number);
            ExitWith(errno == ENOTDIR && Interrupted());
        },
        testing::ExitedWithCode(0), "");
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

// Whichever thread has the alarm.
[[noreturn]] void NeverEndInThreads() {
    CatchInterrupts();
    const auto sleep = [] {
        while (true) pause();
    };
    std::thread first(sleep);
    std::thread second(sleep);
    kill(getpid(), SIGINT);
    while (!Interrupted()) usleep(1000);
    kill(getpid(), SIGALRM);
    sleep();
    _exit(1);
}

TEST(DeadlineDeathTest, EndsThreadsThatDoNotLookForTheSignal) {
    EXPECT_EXIT(NeverEndInThreads(), testing::KilledBySignal(SIGINT), "");
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

// No child of the program holds the pipe, and a handler never waits.
TEST(InterruptPipeDeathTest, IsClosedInProgramsThatAreStartedAndDoesNotBlock) {
    EXPECT_EXIT(
        {
            CatchInterrupts();
            const int descriptor = InterruptDescriptor();
            if ((fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0) _exit(2);
            char byte;
            ExitWith(read(descriptor, &byte, 1) == -1 && errno == EAGAIN);
        },
        testing::ExitedWithCode(0), "");
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
