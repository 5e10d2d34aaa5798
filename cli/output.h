// output.h - standard output: buffered, and quiet when its reader has gone.
#pragma once

#include <string_view>

// Writes to standard output. When the other end of a pipe is closed the program ends at once, without a word; any other
// failure, such as a full disk, ends it with a message and the exit status 1.
void WriteOutput(std::string_view text);

// Hands over what is still buffered; failures as above.
void FlushOutput();

// Writes "fiid: " and a message to standard error, with a line end.
void WriteMessage(std::string_view message);
