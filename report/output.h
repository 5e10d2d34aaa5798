// output.h - standard output by whole records, standard error by whole lines.
#pragma once

#include <string>
#include <string_view>

// How the program ends when a path could not be read or the output not be written.
inline constexpr int failedExitStatus = 1;

// Begins a record, or anything else that must stay in one piece on standard output, and returns the text that it is to be
// appended to, behind what is gathered already. A record that is begun and not ended is never handed over.
std::string& BeginRecord();

// Ends the record that was begun. Records are gathered and handed over in calls that end behind a whole record, so that processes which share an output do not tear each other's
// records: always in a file, and in a pipe up to 4,096 bytes (PIPE_BUF) a record. When the other end of a pipe is
// closed the program ends at once, without a word; any other failure, such as a full disk, ends it with a message and
// failedExitStatus.
void EndRecord();

// Begins and ends a record of this text.
void WriteRecord(std::string_view record);

// From here on each record is handed over by itself, for readers that wait for it.
void FlushEachRecord();

// Hands over what is still gathered; failures as above.
void FlushOutput();

// Writes "fiid: " and a message to standard error, with a line end. What could steer a terminal is escaped.
void WriteMessage(std::string_view message);

// Writes a text to standard error as it is.
void WriteErrorText(std::string_view text);
