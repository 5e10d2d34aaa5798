// path_list.h - lists of paths in files.
#pragma once

#include <functional>
#include <optional>
#include <string>

// Calls visit for each path of a list, as it is read: one a line, or NUL-separated. Empty entries are passed over. An
// entry that is longer than longestPath comes cut one byte behind that, which WalkPath takes for a failure; its rest is
// passed over, however much it is. file is "-" for standard input. Returns the reason when the list can't be read to its
// end; a signal that ends the program ends the list, without a reason.
std::optional<std::string> ReadPathList(const std::string& file, bool nulSeparated,
                                        const std::function<void(const std::string&)>& visit);

// Whether the paths of a list come through a pipe, a FIFO, a socket or a terminal: whoever writes them may wait for the
// answer to one path before the next.
bool PathsComeOneByOne(const std::string& file);
