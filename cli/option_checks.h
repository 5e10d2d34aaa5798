// option_checks.h - what options mean together, and what does not go together.
#pragma once

#include <string>
#include <vector>

#include "cli/options.h"

inline constexpr unsigned mostJobs = 1024;

// What the command line says, in its own words.
struct OptionWords {
    std::string format = "text";
    bool formatGiven = false;  // --format stands there
    bool mime = false;
    bool print0 = false;
    bool noText = false;
    bool noFurther = false;
    bool unsorted = false;
    bool progress = false;
    bool noProgress = false;
    bool hidden = true;
    bool mismatch = false;
    bool summary = false;
    std::vector<std::string> match;
    std::vector<std::string> excludeFormat;
    std::vector<std::string> globs;
    std::vector<std::string> excludes;
    std::string minSize;
    std::string maxSize;
    std::string fields;
    std::string hash;
    std::string by;
    std::string query;
};

// Reads those words that have a grammar of their own - filters, sizes, fields, the hash - into the options, and looks for
// what does not go together. Returns what is wrong, for people, or nothing.
std::string CheckOptions(const OptionWords& words, Options& options);
