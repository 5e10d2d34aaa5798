// options.cpp - the command line, by CLI11.
#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>

#include "fiid/detect.h"
#include "report/escape_text.h"
#include "report/output.h"

namespace {

constexpr int usageExitStatus = 2;

constexpr const char* description =
    R"(fiid tells the format of files by their content: it answers with one of about 430 format identifiers, which never
change, and where they leave something open with one of a further table, which grows.
A directory is walked recursively, in sorted order; symbolic links to directories are followed only when they are
named on the command line or in a list. So are FIFOs read, to their end and into a temporary file; below a directory
a FIFO is a failure. Standard input (-) is read likewise: a pipe there is copied whole, whatever its size, to a
temporary file in TMPDIR (or /tmp). A file there is not copied, and is taken from its start, wherever it has been
read to.)";

constexpr const char* footer =
    R"(Output formats: text (PATH: NAME [FIID], or PATH: NAME [FIID, FURTHER] where the further table is more precise),
ndjson (a JSON object a line), json (one array), csv (RFC 4180), tsv (tab, line feed, carriage return and backslash
are escaped). Records hold path, fiid, name, mime and puid (a list; separated by blanks in csv and tsv), or path and
error; and behind them further, version, basis, warning (a list: extension for one that is unusual for the format, cut
for a file that ends too early, several for more than one puid), size in bytes and mtime (UTC). Name, mime and puid
are those of the most precise answer. What there is not to tell is left out in JSON and empty in csv and tsv. A path
that is not UTF-8 has its bytes in path_hex in JSON, and the replacement character in path.
In text and in messages a backslash of a path is doubled; control characters, also those from U+0080 to U+009F,
bidirectional controls and line separators are escaped byte by byte (\x1B).

Output is handed over by whole records, so that several processes can share one output (in a pipe: up to 4,096 bytes
a record), and record by record when the paths of --files-from come through a pipe: a program may write a path and
wait for its record. ndjson, csv and tsv serve such a program: behind the header of csv and tsv they hold a line for
each path, also for a failure (csv more of them where a path holds line feeds); text writes failures to standard
error only. A directory gives 0 to n records, an empty entry none. An entry of more than 65,536 bytes is a failure
that shows its beginning.

SIGINT, SIGTERM and SIGHUP end fiid behind a whole record, with the array of json closed, or after two seconds where
it is inside a long identification or nobody reads its output; a second one ends it at once.

Exit status: 0; 1 if any path could not be read or the output not be written; 2 for wrong usage; a signal ends fiid
as that signal does (130 in a shell for SIGINT).

Examples:
  fiid report.doc                              the format of one file
  fiid --format csv /srv/archive > formats.csv  everything below a directory
  find . -type f -print0 | fiid -0 --files-from - --format ndjson
  fiid --explain drawing.dwg                   the row that decided and what it looked at, too
  fiid --mime picture.jxl                      PATH: image/jxl
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
    if (options.format != OutputFormat::Text && options.mime) return "--mime is an output format of its own";
    if (options.listFormats && options.mime) return "--formats goes without --mime";
    if (options.nulSeparated && !options.filesFrom.has_value()) return "-0 goes with --files-from";
    const auto standardInputs = std::count(options.paths.begin(), options.paths.end(), "-");
    const bool listFromStandardInput = options.filesFrom == "-";
    if (standardInputs > 1 || (standardInputs == 1 && listFromStandardInput)) return "standard input can be read once";
    return "";
}

// Prints what was asked for or what is wrong, and returns the exit status. What is wrong may quote the command line.
int TellEarlyEnd(const CLI::App& app, const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
        WriteErrorText(EscapeForText(error.what()) + "\nRun with --help for more information.\n");
        return usageExitStatus;
    }
    std::ostringstream text;
    app.exit(error, text, text);
    WriteRecord(text.str());
    FlushOutput();
    return 0;
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv, int& exitStatus) {
    Options options;
    bool noText = false;
    bool noFurther = false;
    std::string format = "text";
    CLI::App app(description, "fiid");
    app.set_version_flag("-V,--version", std::string("fiid ") + fiid_version());
    app.footer(footer);
    app.add_option("--format", format, "Output: text, ndjson, json, csv or tsv")
        ->capture_default_str()
        ->check(CLI::IsMember(formatNames))
        ->type_name("FORMAT");
    app.add_flag("--no-text", noText, "Do not tell text by its characters: such files are not known then");
    app.add_flag("--no-further", noFurther, "Leave out the further table and versions");
    app.add_flag(
        "--mime", options.mime,
        "Write PATH: TYPE/SUBTYPE; application/octet-stream where none is known, inode/x-empty for an empty file");
    app.add_flag("--explain", options.explain, "Also tell what decided, what it looked at, and what that cost");
    app.add_option("--files-from", options.filesFrom, "Read the paths from FILE, one a line; - for standard input")
        ->type_name("FILE");
    app.add_flag("-0,--null", options.nulSeparated, "The list of --files-from is separated by NUL bytes");
    app.add_flag("--formats", options.listFormats, "List all formats and end");
    app.add_option("PATH", options.paths, "Files and directories; - for standard input")->type_name("");
    app.positionals_at_end(false);
    try {
        app.parse(argc, argv);
        options.format = formatNames.at(format);
        const std::string mistake = CheckOptions(options);
        if (!mistake.empty()) throw CLI::ValidationError(mistake);
    } catch (const CLI::ParseError& error) {
        exitStatus = TellEarlyEnd(app, error);
        return std::nullopt;
    }
    options.extendedText = !noText;
    options.further = !noFurther;
    if (options.mime) options.format = OutputFormat::Mime;
    return options;
}
