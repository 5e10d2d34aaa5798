// output.cpp - standard output and standard error.
#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr int failedExitStatus = 1;

[[noreturn]] void EndAfterFailedWrite() {
    const int reason = errno;
    if (reason != EPIPE) WriteMessage(std::string("standard output: ") + std::strerror(reason));
    std::_Exit(failedExitStatus);
}

}  // namespace

void WriteOutput(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) EndAfterFailedWrite();
}

void FlushOutput() {
    if (std::fflush(stdout) != 0) EndAfterFailedWrite();
}

void WriteMessage(std::string_view message) {
    std::fflush(stdout);  // results in front of the message come first on a terminal
    std::fprintf(stderr, "fiid: %.*s\n", static_cast<int>(message.size()), message.data());
}
