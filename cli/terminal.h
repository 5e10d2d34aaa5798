// terminal.h - what is known of terminals.
#pragma once

#include <cstdint>

// The columns of a terminal; 0 where a descriptor is none, or does not tell.
std::uint32_t ColumnsOfTerminal(int descriptor);

// Whether a descriptor is a terminal that knows how to erase a line: any that does not say "dumb".
bool IsDrawingTerminal(int descriptor);
