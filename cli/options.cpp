// options.cpp - the command line, by CLI11.
#include "cli/options.h"

#include <sched.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ctime>
#include <map>
#include <sstream>
#include <thread>

#include "cli/help_text.h"
#include "cli/option_checks.h"
#include "fiid/detect.h"
#include "report/escape_text.h"
#include "report/output.h"

namespace {

constexpr int usageExitStatus = 2;

const std::map<std::string, OutputFormat> formatNames = {
    {"text", OutputFormat::Text},   {"ndjson", OutputFormat::Ndjson},
    {"json", OutputFormat::Json},   {"csv", OutputFormat::Csv},
    {"tsv", OutputFormat::Tsv},     {"path", OutputFormat::Path},
    {"droid", OutputFormat::Droid}, {"siegfried", OutputFormat::Siegfried},
    {"html", OutputFormat::Html},
};

const std::map<std::string, SummaryKey> summaryKeys = {
    {"format", SummaryKey::Format},       {"family", SummaryKey::Family},       {"mime", SummaryKey::Mime},
    {"extension", SummaryKey::Extension}, {"directory", SummaryKey::Directory},
};

const std::map<std::string, StoreQueryKind> queryNames = {
    {"summary", StoreQueryKind::Summary}, {"mismatch", StoreQueryKind::Mismatch},
    {"changes", StoreQueryKind::Changes}, {"errors", StoreQueryKind::Errors},
    {"files", StoreQueryKind::Files},     {"duplicates", StoreQueryKind::Duplicates},
};

// The cores that the process may use, as taskset and containers leave them; else those of the machine.
unsigned CoresOfProcess() {
    cpu_set_t cores;
    const bool isTold = sched_getaffinity(0, sizeof(cores), &cores) == 0;
    const unsigned count = isTold ? static_cast<unsigned>(CPU_COUNT(&cores)) : std::thread::hardware_concurrency();
    return std::clamp(count, 1U, mostJobs);
}

// A variable of a shell that is not set must not take a limit away.
std::string RequireText(const std::string& text) { return text.empty() ? "needs a value, and has an empty one" : ""; }

void AddPathOptions(CLI::App& app, Options& options) {
    app.add_flag("--formats", options.listFormats, "List all formats and end");
    app.option_defaults()->group("Paths");
    app.add_option("--files-from", options.filesFrom, "Read the paths from FILE, one a line; - for standard input")
        ->check(RequireText)
        ->type_name("FILE");
    app.add_flag("-0,--null", options.nulSeparated, "The list of --files-from is separated by NUL bytes");
}

void AddAnswerOptions(CLI::App& app, Options& options, OptionWords& words) {
    app.option_defaults()->group("Answers");
    app.add_flag("--no-text", words.noText, "Do not tell text by its characters: such files are not known then");
    app.add_flag("--no-further", words.noFurther, "Leave out the further table and versions");
    app.add_flag("--explain", options.report.explain, "Also tell what decided, what it looked at, and what that cost");
    app.add_option("--hash", words.hash, "Also tell a hash of each file, which is read whole: sha256 or xxh3")
        ->check(RequireText)
        ->type_name("KIND");
}

void AddOutputOptions(CLI::App& app, OptionWords& words) {
    app.option_defaults()->group("Output");
    app.add_option("--format", words.format, "Form of the output")
        ->capture_default_str()
        ->check(CLI::IsMember(formatNames))
        ->type_name("FORMAT");
    app.add_flag(
        "--mime", words.mime,
        "Write PATH: TYPE/SUBTYPE; application/octet-stream where none is known, inode/x-empty for an empty file");
    app.add_flag("--print0", words.print0, "Write paths alone, each ended by NUL: --format path for xargs -0");
    app.add_option("--fields", words.fields, "Fields of csv, tsv, json and ndjson in this order, separated by commas")
        ->check(RequireText)
        ->type_name("LIST");
    app.add_flag("--summary", words.summary, "Write how many files there are of which format, in place of records");
    app.add_option("--by", words.by, "Sum up by this; implies --summary")
        ->check(CLI::IsMember(summaryKeys))
        ->type_name("KEY");
}

// An option that may stand there again and again, with one text each time: the words behind that are paths.
CLI::Option* AddRepeated(CLI::App& app, const char* name, std::vector<std::string>& texts, const char* description) {
    return app.add_option(name, texts, description)->allow_extra_args(false);
}

void AddWalkOptions(CLI::App& app, Options& options, OptionWords& words) {
    app.option_defaults()->group("Which files");
    AddRepeated(app, "--match", words.match,
                "Only files of these formats: identifiers, PRONOM identifiers, media types (image/*) or families")
        ->type_name("WHAT");
    AddRepeated(app, "--exclude-format", words.excludeFormat, "No files of these formats")->type_name("WHAT");
    app.add_flag("--mismatch", words.mismatch, "Only files whose extension is unusual for what they are");
    AddRepeated(app, "--glob", words.globs, "Only files with such a name, as *.doc or src/**; !GLOB leaves files out")
        ->type_name("GLOB");
    AddRepeated(app, "--exclude", words.excludes, "Leave out files and directories with such a name")
        ->type_name("GLOB");
    // Of the two the last one counts.
    app.add_flag_callback(
           "--hidden", [&words] { words.hidden = true; },
           "Look at names that begin with a full stop, which is the default")
        ->trigger_on_parse();
    app.add_flag_callback(
           "--no-hidden", [&words] { words.hidden = false; }, "Leave out names that begin with a full stop")
        ->trigger_on_parse();
    app.add_option("--max-depth", options.maxDepth, "Go down so many levels; 1: what lies in a directory itself")
        ->check(RequireText)
        ->type_name("N");
    app.add_flag("--one-file-system", options.oneFileSystem, "Do not enter directories of other file systems");
    app.add_option("--min-size", words.minSize, "Only files of at least so many bytes; K, M, G and T count in 1,024")
        ->check(RequireText)
        ->type_name("SIZE");
    app.add_option("--max-size", words.maxSize, "Only files of at most so many bytes")
        ->check(RequireText)
        ->type_name("SIZE");
}

void AddRunOptions(CLI::App& app, Options& options, OptionWords& words) {
    app.option_defaults()->group("Run");
    app.add_option("-j,--jobs", options.jobs, "Files looked at at the same time; by default one for each core")
        ->check(CLI::Range(1U, mostJobs))
        ->type_name("N");
    app.add_flag("--unsorted", words.unsorted, "Take directories in the order of the file system");
    app.add_flag("--progress", words.progress,
                 "Show progress on standard error; on a terminal it is shown by itself after a second");
    app.add_flag("--no-progress", words.noProgress, "Never show progress");
    app.add_flag("-v,--verbose", options.verbose, "Tell on standard error what is passed over");
}

void AddStoreOptions(CLI::App& app, Options& options, OptionWords& words) {
    app.option_defaults()->group("Store");
    app.add_option("--store", options.store, "Keep the scan in FILE (SQLite), and look only at what is new or changed")
        ->check(RequireText)
        ->type_name("FILE");
    app.add_flag("--prune", options.prune, "Take out of the store what is gone");
    app.add_flag("--rescan", options.rescan, "Look at all files again");
    app.add_flag("--refresh", options.refresh, "Look again where an older fiid may have answered otherwise");
    app.add_option("--query", words.query, "Answer from the store, without a scan")
        ->check(CLI::IsMember(queryNames))
        ->type_name("QUERY");
}

// The words behind options, as what they stand for; each is known to be one of its map.
void TakeWords(const OptionWords& words, Options& options) {
    options.report.format = words.mime ? OutputFormat::Mime : formatNames.at(words.format);
    if (words.print0) {
        options.report.format = OutputFormat::Path;
        options.report.pathEnd = '\0';
    }
    if (!words.by.empty()) {
        options.summary = summaryKeys.at(words.by);
    } else if (words.summary) {
        options.summary = SummaryKey::Format;
    }
    if (!words.query.empty()) options.query = queryNames.at(words.query);
    if (options.query == StoreQueryKind::Summary && !options.summary.has_value()) {
        options.summary = SummaryKey::Format;
    }
    options.extendedText = !words.noText;
    options.further = !words.noFurther;
    options.sorted = !words.unsorted;
    if (words.progress) options.progress = ProgressMode::On;
    if (words.noProgress) options.progress = ProgressMode::Off;
}

// What a report tells of the run itself.
void NameRun(Options& options) {
    options.report.startedSeconds = std::time(nullptr);
    options.report.named = options.paths;
    for (const std::string& path : options.paths) {
        if (!options.report.title.empty()) options.report.title += ' ';
        options.report.title += path;
    }
    if (options.filesFrom.has_value()) options.report.title += (options.paths.empty() ? "" : " ") + *options.filesFrom;
    if (options.query.has_value()) options.report.title = *options.store;
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
    OptionWords words;
    options.jobs = CoresOfProcess();
    options.arguments.assign(argv + std::min(argc, 1), argv + argc);
    CLI::App app(helpDescription, "fiid");
    app.set_version_flag("-V,--version", std::string("fiid ") + fiid_version());
    app.footer(helpFooter);
    AddPathOptions(app, options);
    AddWalkOptions(app, options, words);
    AddAnswerOptions(app, options, words);
    AddOutputOptions(app, words);
    AddStoreOptions(app, options, words);
    AddRunOptions(app, options, words);
    app.add_option("PATH", options.paths, "Files and directories; - for standard input")->type_name("");
    app.positionals_at_end(false);
    try {
        app.parse(argc, argv);
        words.formatGiven = app.count("--format") > 0;
        TakeWords(words, options);
        const std::string mistake = CheckOptions(words, options);
        if (!mistake.empty()) throw CLI::ValidationError(mistake);
        NameRun(options);
    } catch (const CLI::ParseError& error) {
        exitStatus = TellEarlyEnd(app, error);
        return std::nullopt;
    }
    return options;
}
