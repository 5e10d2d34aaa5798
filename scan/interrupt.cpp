// interrupt.cpp - a signal is noted, and looked for between records and where the program waits; an alarm ends the
// program where it does not look.
//
// The system hands a signal to any one thread, but all threads that wait are to come back. So its handler writes into a
// pipe that all of them poll and none of them reads: what lies in it wakes those, too, that begin to wait later, and
// nothing is slept over between a look at the note and the waiting.
#include "scan/interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr unsigned deadlineSeconds = 2;

// Signals that come as close to the first one as this are the same wish: timeout(1) sends its signal to the program and
// then to its group, and others send SIGTERM and SIGHUP together.
constexpr std::uint32_t sameWishMilliseconds = 100;

// Written by handlers, read by all threads.
std::atomic<int> signalThatCame = 0;
std::atomic<std::uint32_t> firstCameAt = 0;  // in milliseconds of a clock that runs on; 0 before it is noted
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free,
              "a handler may not take a lock");

// Filled before the handlers are set, and never changed then.
int wakingEnd = -1;
int noteEnd = -1;

void EndBy(int number) {
    std::signal(number, SIG_DFL);
    raise(number);  // one that is blocked, as a signal is while its handler runs, ends the program behind that
}

extern "C" void EndAtTheDeadline(int) { EndBy(signalThatCame.load()); }

// A file may take long to identify, and a reader may have stopped reading. No record is torn by that: a write to a pipe
// that waits for room, of PIPE_BUF bytes at most, has written nothing yet.
void SetDeadline() {
    // Not caught earlier: an alarm that the caller set before it started the program is to end it as ever.
    struct sigaction action = {};
    action.sa_handler = EndAtTheDeadline;
    sigaction(SIGALRM, &action, nullptr);
    alarm(deadlineSeconds);
}

// They begin anew every 49 days: what lies between two of them is right all the same.
std::uint32_t MillisecondsNow() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(now.tv_sec) * 1000U + static_cast<std::uint32_t>(now.tv_nsec / 1'000'000);
}

bool CameWithTheFirst() {
    const std::uint32_t first = firstCameAt.load();
    return first == 0 || MillisecondsNow() - first < sameWishMilliseconds;
}

// Two signals may come at the same moment, to two threads: one of them is the first.
extern "C" void NoteSignal(int number) {
    int none = 0;
    if (!signalThatCame.compare_exchange_strong(none, number)) {
        if (!CameWithTheFirst()) EndBy(number);
        return;
    }
    firstCameAt = MillisecondsNow();
    const int reason = errno;
    const char note = 0;
    [[maybe_unused]] const ssize_t noted =
        write(noteEnd, &note, sizeof(note));  // the thread here wakes without it, too
    SetDeadline();
    errno = reason;
}

void OpenWakingPipe() {
    int ends[2];
    if (wakingEnd >= 0 || pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
    wakingEnd = ends[0];
    noteEnd = ends[1];
}

}  // namespace

void CatchInterrupts() {
    OpenWakingPipe();
    for (const int number : endingSignals) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = NoteSignal;
        action.sa_flags = SA_RESTART;  // a write under way is finished, so that no record is torn
        sigaction(number, &action, nullptr);
    }
    sigset_t deadline;
    sigemptyset(&deadline);
    sigaddset(&deadline, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &deadline, nullptr);  // the caller may have blocked it
}

bool Interrupted() { return signalThatCame.load() != 0; }

int InterruptDescriptor() { return wakingEnd; }

bool WaitForInput(int descriptor) {
    pollfd waiting[] = {{descriptor, POLLIN, 0}, {wakingEnd, POLLIN, 0}};
    while (!Interrupted() && poll(waiting, 2, -1) < 0 && errno == EINTR) continue;
    return !Interrupted();
}

void EndIfInterrupted() {
    if (Interrupted()) EndBy(signalThatCame.load());
}
