// output.cpp - standard output and standard error.
#include "report/output.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "report/escape_text.h"
#include "scan/descriptors.h"

namespace {

// A write to a pipe is atomic up to here. Larger ones to a file would save little beside the cost of opening the files
// that the records tell of.
constexpr std::size_t gatheredBytes = PIPE_BUF;

std::string gathered;        // whole records, and behind them the one that is put together
std::size_t wholeBytes = 0;  // of the whole ones
bool flushEachRecord = false;

void WriteMessageLine(std::string_view message) { WriteErrorText("fiid: " + EscapeForText(message) + "\n"); }

[[noreturn]] void EndAfterFailedWrite() {
    const int reason = errno;
    if (reason == EBADF) {
        WriteMessageLine("standard output is closed");
    } else if (reason != EPIPE) {
        WriteMessageLine(std::string("standard output: ") + std::strerror(reason));
    }
    std::_Exit(failedExitStatus);
}

}  // namespace

std::string& BeginRecord() {
    gathered.resize(wholeBytes);
    return gathered;
}

void EndRecord() {
    if (gathered.size() > gatheredBytes) FlushOutput();  // those in front of this one
    wholeBytes = gathered.size();
    if (flushEachRecord) FlushOutput();
}

void WriteRecord(std::string_view record) {
    BeginRecord() += record;
    EndRecord();
}

void FlushEachRecord() { flushEachRecord = true; }

void FlushOutput() {
    if (!WriteFully(STDOUT_FILENO, std::string_view(gathered).substr(0, wholeBytes))) EndAfterFailedWrite();
    gathered.erase(0, wholeBytes);
    wholeBytes = 0;
}

void WriteMessage(std::string_view message) {
    FlushOutput();  // results in front of the message come first on a terminal
    WriteMessageLine(message);
}

void WriteErrorText(std::string_view text) {
    // There is no other place to tell that this failed.
    static_cast<void>(WriteFully(STDERR_FILENO, text));
}
