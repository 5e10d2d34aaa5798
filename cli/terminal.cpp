// terminal.cpp - what is known of terminals.
#include "cli/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

std::uint32_t ColumnsOfTerminal(int descriptor) {
    winsize size = {};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool IsDrawingTerminal(int descriptor) {
    const char* const kind = std::getenv("TERM");
    return isatty(descriptor) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}
