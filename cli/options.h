// options.h - the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/report_writer.h"

struct Options {
    OutputFormat format = OutputFormat::Text;
    bool extendedText = true;
    bool further = true;
    bool explain = false;
    bool mime = false;
    bool listFormats = false;
    bool nulSeparated = false;
    std::optional<std::string> filesFrom;  // "-" for standard input
    std::vector<std::string> paths;        // "-" for standard input
};

// Reads the command line. When the program is to end at once (help, version, wrong usage) the text is printed and the
// exit status is in exitStatus.
std::optional<Options> ParseOptions(int argc, char** argv, int& exitStatus);
