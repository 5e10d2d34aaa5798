// interrupt.cpp - a signal is noted, and looked for between records and where the program waits.
#include "cli/interrupt.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t signalThatCame = 0;

extern "C" void NoteSignal(int number) {
    if (signalThatCame == 0) {
        signalThatCame = number;
        return;
    }
    std::signal(number, SIG_DFL);
    raise(number);  // it is blocked while its handler runs, and ends the program behind it
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
    if (!Interrupted()) return;
    const int number = signalThatCame;
    std::signal(number, SIG_DFL);
    raise(number);
}
