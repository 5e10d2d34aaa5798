// The program on a terminal and beside one: progress is shown on standard error and mixes with no results.
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>

#include "support/program_directory.h"

namespace {

class ShowingProgress : public ProgramDirectory {
 protected:
    ShowingProgress() {
        MakeDirectory("d");
        for (int index = 0; index < 300; ++index) Write("d/" + std::to_string(index) + ".gif", "GIF89a");
    }
};

// Runs a bash command whose standard error, input and output are a terminal of 100 columns; tells what came there.
std::string RunOnTerminal(const std::string& directory, const std::string& command) {
    winsize size = {30, 100, 0, 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        setenv("TERM", "xterm", 1);
        if (chdir(directory.c_str()) != 0) _exit(9);
        const std::string script = "FIID='" FIID_PROGRAM "'; " + command;
        execlp("bash", "bash", "-c", script.c_str(), nullptr);
        _exit(9);
    }
    std::string shown;
    char block[4096];
    for (ssize_t came = 0; (came = read(terminal, block, sizeof(block))) > 0;) {
        shown.append(block, static_cast<std::size_t>(came));
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    return shown;
}

// The lines that stand on a terminal in the end: carriage returns and "erase in line" have done their work.
std::vector<std::string> LinesShown(const std::string& shown) {
    std::vector<std::string> lines(1);
    std::size_t column = 0;
    for (std::size_t at = 0; at < shown.size(); ++at) {
        std::string& line = lines.back();
        if (shown[at] == '\r') {
            column = 0;
        } else if (shown[at] == '\n') {
            lines.emplace_back();
            column = 0;
        } else if (shown[at] == '\x1b' && at + 1 < shown.size() && shown[at + 1] == '[') {
            at += 2;
            std::string parameters;
            while (at < shown.size() && (shown[at] < '@' || shown[at] > '~')) parameters += shown[at++];
            if (shown[at] == 'K') line.resize(parameters == "2" ? 0 : std::min(column, line.size()));
            if (shown[at] == 'K' && parameters == "2") line.resize(column, ' ');
        } else {
            if (line.size() <= column) line.resize(column + 1, ' ');
            line[column++] = shown[at];
        }
    }
    return lines;
}

std::vector<std::string> WithoutEmptyLines(std::vector<std::string> lines) {
    std::erase_if(lines, [](const std::string& line) { return line.find_first_not_of(' ') == std::string::npos; });
    return lines;
}

TEST_F(ShowingProgress, BesideATerminalNothingIsShownUnasked) {
    for (const char* options : {"", "--no-progress", "--format json", "--summary"}) {
        EXPECT_EQ(Run(std::string("$FIID d ") + options).messages, "") << options;
    }
}

TEST_F(ShowingProgress, GoesToStandardErrorAlone) {
    for (const char* options :
         {"", "--format json", "--format csv", "--print0", "--summary", "-j 1", "--files-from list"}) {
        Run("ls d/* > list");
        const ProgramRun plain = Run(std::string("$FIID d ") + options);
        const ProgramRun shown = Run(std::string("$FIID --progress d ") + options);
        EXPECT_EQ(shown.output, plain.output) << options;
        EXPECT_NE(shown.messages, "") << options;
        EXPECT_NE(shown.messages.find(std::string(options).starts_with("--files") ? "600" : "300"), std::string::npos)
            << "how many files are done: " << shown.messages;
        EXPECT_EQ(shown.messages.back(), '\n') << options;
        EXPECT_EQ(shown.exitStatus, 0) << options;
    }
}

TEST_F(ShowingProgress, MessagesOfFailuresStayWholeLines) {
    const ProgramRun run = Run("$FIID --progress --format path missing d gone");
    EXPECT_EQ(run.exitStatus, 1);
    const std::vector<std::string> lines = LinesShown(run.messages);
    for (const char* message : {"fiid: missing: No such file or directory", "fiid: gone: No such file or directory"}) {
        EXPECT_NE(std::find(lines.begin(), lines.end(), message), lines.end()) << run.messages;
    }
}

TEST_F(ShowingProgress, ShortRunsOnATerminalShowNothing) {
    EXPECT_EQ(RunOnTerminal(directory_, "$FIID --format path d > out"), "");
    EXPECT_EQ(PartsOf(ReadWholeFile(directory_ + "/out")).size(), 300U);
    EXPECT_EQ(RunOnTerminal(directory_, "$FIID --no-progress --format path d > out"), "");
}

TEST_F(ShowingProgress, ResultsAndProgressShareATerminal) {
    const std::vector<std::string> paths = PartsOf(Run("$FIID --format path d").output);
    EXPECT_EQ(WithoutEmptyLines(LinesShown(RunOnTerminal(directory_, "$FIID --no-progress --format path d"))), paths);
    const std::vector<std::string> lines = LinesShown(RunOnTerminal(directory_, "$FIID --progress --format path d"));
    std::size_t found = 0;
    for (const std::string& line : lines) {
        if (found < paths.size() && line == paths[found]) ++found;
    }
    EXPECT_EQ(found, paths.size()) << "whole lines in their order";
    EXPECT_LE(WithoutEmptyLines(lines).size(), paths.size() + 2) << "and at most one line of progress that stays";
}

TEST_F(ShowingProgress, ProgressOnATerminalLeavesTheOutputAlone) {
    const std::string plain = Run("$FIID --format csv d").output;
    const std::string shown = RunOnTerminal(directory_, "$FIID --progress --format csv d > out");
    EXPECT_NE(shown, "");
    EXPECT_EQ(ReadWholeFile(directory_ + "/out"), plain);
    for (const std::string& line : LinesShown(shown)) EXPECT_LE(line.size(), 100U) << "it fits the terminal's width";
}

TEST_F(ShowingProgress, NamesDoNotSteerTheTerminal) {
    Write("d/\x1b[2J\x07.gif", "GIF89a");
    Run("mkdir $'d/\\e[31m'; chmod 0 $'d/\\e[31m'");
    const std::string shown =
        RunOnTerminal(directory_, WithoutPrivileges() + "$FIID --progress --verbose d $'\\e[32m'");
    for (const char* sequence : {"\x1b[2J", "\x1b[31m", "\x1b[32m", "\x07"}) {
        EXPECT_EQ(shown.find(sequence), std::string::npos) << sequence + 1;
    }
}

TEST_F(ShowingProgress, SummaryFitsTheTerminal) {
    const std::string shown = RunOnTerminal(directory_, "stty cols 60; $FIID --summary --by format d");
    EXPECT_NE(shown.find("GIF image"), std::string::npos);
    for (const std::string& line : LinesShown(shown)) {
        // Characters, not bytes: bars are drawn.
        const auto characters =
            std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
        EXPECT_LE(characters, 60) << line;
    }
    EXPECT_EQ(Run("$FIID --summary d | grep -c $'\\e'").output, "0\n") << "none of it in a pipe";
}

}  // namespace
