// captured_output.h - what a function writes to standard output.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "support/temporary_directory.h"

// Standard error is closed meanwhile.
template <typename Function>
std::string WrittenBy(Function write) {
    const TemporaryDirectory directory;
    const std::string path = directory.At("written");
    const int output = dup(STDOUT_FILENO);
    const int messages = dup(STDERR_FILENO);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, STDOUT_FILENO);
    close(STDERR_FILENO);
    write();
    dup2(output, STDOUT_FILENO);
    dup2(messages, STDERR_FILENO);
    for (const int descriptor : {output, messages, file}) close(descriptor);
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}
