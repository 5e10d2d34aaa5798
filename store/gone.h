// gone.h - whether what a store tells of a path is still there.
#pragma once

#include <string>

// What a look at a path says. A path may be of any length.
enum class Presence {
    File,  // something that a walk looks at; also what can't be told, as behind a directory that may not be entered
    Directory,  // a directory, or a link to one
    Nothing,    // no such path, a link that leads nowhere, or what a walk passes over: a FIFO, a socket, a device
};

Presence PresenceOf(const std::string& path);
