// run_program.h - runs the program as a user runs it, from a shell, and tells all that came of it.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

struct ProgramRun {
    std::string output;    // standard output
    std::string messages;  // standard error
    int exitStatus = -1;   // -1 when a signal ended it
};

inline std::string ReadWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Runs a bash command in a directory; $FIID in it stands for the program. The script and standard error go through
// temporary files.
inline ProgramRun RunShell(const std::string& directory, const std::string& command) {
    ProgramRun run;
    const std::string files = testing::TempDir() + "fiid-run-" + std::to_string(getpid());
    const std::string script = files + ".script";
    const std::string messages = files + ".messages";
    std::ofstream(script) << "FIID='" FIID_PROGRAM "'\ncd '" << directory << "'\n{ " << command << "\n} 2>'" << messages
                          << "'\n";
    std::FILE* const pipe = popen(("bash '" + script + "'").c_str(), "r");
    char block[4096];
    for (std::size_t came = 0; (came = std::fread(block, 1, sizeof(block), pipe)) > 0;) run.output.append(block, came);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) run.exitStatus = WEXITSTATUS(status);
    run.messages = ReadWholeFile(messages);
    std::remove(messages.c_str());
    std::remove(script.c_str());
    return run;
}
