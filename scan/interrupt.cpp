// interrupt.cpp - a signal is noted, and looked for between records and where the program waits; an alarm ends the
// program where it does not look.
#include "scan/interrupt.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr unsigned deadlineSeconds = 2;

volatile std::sig_atomic_t signalThatCame = 0;

void EndBy(int number) {
    std::signal(number, SIG_DFL);
    raise(number);  // one that is blocked, as a signal is while its handler runs, ends the program behind that
}

extern "C" void EndAtTheDeadline(int) { EndBy(signalThatCame); }

// A file may take long to identify, and a reader may have stopped reading. No record is torn by that: a write to a pipe
// that waits for room, of PIPE_BUF bytes at most, has written nothing yet.
void SetDeadline() {
    // Not caught earlier: an alarm that the caller set before it started the program is to end it as ever.
    struct sigaction action = {};
    action.sa_handler = EndAtTheDeadline;
    sigaction(SIGALRM, &action, nullptr);
    alarm(deadlineSeconds);
}

extern "C" void NoteSignal(int number) {
    if (signalThatCame != 0) return EndBy(number);
    signalThatCame = number;
    SetDeadline();
}

}  // namespace

void CatchInterrupts() {
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
    sigprocmask(SIG_UNBLOCK, &deadline, nullptr);  // the caller may have blocked it
}

bool Interrupted() { return signalThatCame != 0; }

bool WaitForInput(int descriptor) {
    // The signals are let through by ppoll alone: one that came between the look at it and the waiting would be slept
    // over.
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    for (const int number : endingSignals) sigaddset(&blocked, number);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    pollfd waiting = {descriptor, POLLIN, 0};
    while (!Interrupted() && ppoll(&waiting, 1, nullptr, &before) < 0 && errno == EINTR) continue;
    const bool interrupted = Interrupted();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return !interrupted;
}

void EndIfInterrupted() {
    if (Interrupted()) EndBy(signalThatCame);
}
