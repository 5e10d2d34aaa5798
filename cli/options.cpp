// options.cpp - the command line, by CLI11.
#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

namespace {

constexpr int usageExitStatus = 2;

constexpr const char* description =
    R"(fiid tells the format of files by their content: it answers with one of about 430 format identifiers.
A directory is walked recursively, in sorted order; symbolic links to directories are followed only when they are
named on the command line.)";

constexpr const char* footer =
    R"(Output formats: text (PATH: NAME [FIID]; control characters and backslashes of a path are escaped), ndjson (a JSON
object a line), json (one array), csv (RFC 4180), tsv (tab, line feed, carriage return and backslash are escaped).
Records hold path, fiid, name, mime and puid (a list; separated by blanks in csv and tsv), or path and error. A path
that is not UTF-8 has its bytes in path_hex in JSON, and the replacement character in path.

Exit status: 0; 1 if any path could not be read; 2 for wrong usage.

Examples:
  fiid report.doc                              the format of one file
  fiid --format csv /srv/archive > formats.csv  everything below a directory
  find . -type f -print0 | fiid -0 --files-from - --format ndjson
  fiid --explain drawing.dwg                   the row of the signature table that decided, too
  gpg -d message.gpg | fiid -                  standard input
  fiid --formats --format tsv                  all formats that fiid knows
)";

const std::map<std::string, OutputFormat> formatNames = {
    {"text", OutputFormat::Text}, {"ndjson", OutputFormat::Ndjson}, {"json", OutputFormat::Json},
    {"csv", OutputFormat::Csv},   {"tsv", OutputFormat::Tsv},
};

std::string CheckOptions(const Options& options) {
    const bool named = !options.paths.empty() || options.filesFrom.has_value();
    if (!options.listFormats && !named) return "no path given";
    if (options.listFormats && named) return "--formats takes no paths";
    if (options.nulSeparated && !options.filesFrom.has_value()) return "-0 goes with --files-from";
    const auto standardInputs = std::count(options.paths.begin(), options.paths.end(), "-");
    const bool listFromStandardInput = options.filesFrom == "-";
    if (standardInputs > 1 || (standardInputs == 1 && listFromStandardInput)) return "standard input can be read once";
    return "";
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv, int& exitStatus) {
    Options options;
    bool noText = false;
    std::string format = "text";
    CLI::App app(description, "fiid");
    app.set_version_flag("-V,--version", "fiid " FIID_VERSION);
    app.footer(footer);
    app.add_option("--format", format, "Output: text, ndjson, json, csv or tsv")
        ->capture_default_str()
        ->check(CLI::IsMember(formatNames))
        ->type_name("FORMAT");
    app.add_flag("--no-text", noText, "Do not tell text by its characters: such files are not known then");
    app.add_flag("--explain", options.explain, "Also tell the row of the signature table that decided");
    app.add_option("--files-from", options.filesFrom, "Read the paths from FILE, one a line; - for standard input")
        ->type_name("FILE");
    app.add_flag("-0,--null", options.nulSeparated, "The list of --files-from is separated by NUL bytes");
    app.add_flag("--formats", options.listFormats, "List all formats and end");
    app.add_option("PATH", options.paths, "Files and directories; - for standard input")->type_name("");
    app.positionals_at_end(false);
    try {
        app.parse(argc, argv);
        const std::string mistake = CheckOptions(options);
        if (!mistake.empty()) throw CLI::ValidationError(mistake);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : usageExitStatus;
        return std::nullopt;
    }
    options.format = formatNames.at(format);
    options.extendedText = !noText;
    return options;
}
