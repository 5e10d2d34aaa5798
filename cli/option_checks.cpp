// option_checks.cpp - what options mean together, and what does not go together.
#include "cli/option_checks.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "scan/size_text.h"

namespace {

// What is wrong, or nothing.
using Mistake = std::string;

Mistake ReadSize(const std::string& text, const char* option, std::uint64_t& size) {
    if (text.empty()) return "";
    const std::optional<std::uint64_t> number = ParseSize(text);
    if (!number.has_value()) return std::string(option) + ": " + text + " is no size, as 4096, 10K or 2G are";
    size = *number;
    return "";
}

Mistake ReadNameFilter(const OptionWords& words, Options& options) {
    for (const std::string& glob : words.globs) {
        const Mistake mistake = options.names.AddGlob(glob);
        if (!mistake.empty()) return "--glob: " + mistake;
    }
    for (const std::string& glob : words.excludes) {
        const Mistake mistake = options.names.AddExclude(glob);
        if (!mistake.empty()) return "--exclude: " + mistake;
    }
    options.names.SetHidden(words.hidden);
    options.filtersNames = !words.globs.empty() || !words.excludes.empty() || !words.hidden;
    return "";
}

Mistake ReadFormatFilter(const OptionWords& words, Options& options) {
    for (const std::string& pattern : words.match) {
        const Mistake mistake = options.formats.AddMatch(pattern);
        if (!mistake.empty()) return "--match: " + mistake;
    }
    for (const std::string& pattern : words.excludeFormat) {
        const Mistake mistake = options.formats.AddExclude(pattern);
        if (!mistake.empty()) return "--exclude-format: " + mistake;
    }
    if (words.mismatch) options.formats.OnlyMismatch();
    options.report.withExtensions = words.mismatch || options.query == StoreQueryKind::Mismatch;
    return "";
}

Mistake ReadHash(const OptionWords& words, Options& options) {
    if (words.hash.empty()) return "";
    const Mistake mistake = HashKindOfName(words.hash, options.hash);
    options.report.hash = options.hash;
    return mistake.empty() ? "" : "--hash: " + words.hash + " " + mistake;
}

// The hash of a store that fields ask for.
HashKind HashAmong(const std::vector<std::string>& fields) {
    for (const std::string& field : fields) {
        if (field == "sha256") return HashKind::Sha256;
        if (field == "xxh3") return HashKind::Xxh3;
    }
    return HashKind::None;
}

Mistake ReadFields(const OptionWords& words, Options& options) {
    for (std::string_view rest = words.fields; !rest.empty();) {
        const std::size_t size = std::min(rest.find(','), rest.size());
        options.report.fields.emplace_back(rest.substr(0, size));
        rest.remove_prefix(std::min(size + 1, rest.size()));
    }
    options.report.withChanges = options.query == StoreQueryKind::Changes;
    options.report.withCopies = options.query == StoreQueryKind::Duplicates;
    if (options.query.has_value()) options.report.hash = HashAmong(options.report.fields);
    return CheckFields(options.report);
}

// The formats that lists and summaries have, too.
bool IsDataFormat(OutputFormat format) {
    constexpr OutputFormat formats[] = {OutputFormat::Text, OutputFormat::Json, OutputFormat::Ndjson, OutputFormat::Csv,
                                        OutputFormat::Tsv};
    return std::ranges::find(formats, format) != std::end(formats);
}

Mistake CheckOutput(const OptionWords& words, const Options& options) {
    if (words.mime && words.format != "text") return "--mime is an output format of its own";
    if (words.print0 && (words.mime || (words.format != "text" && words.format != "path"))) {
        return "--print0 goes with --format path alone";
    }
    if (options.listFormats && words.mime) return "--formats goes without --mime";
    if (options.listFormats && !IsDataFormat(options.report.format))
        return "--formats goes with text, json, ndjson, csv and tsv";
    if (options.summary.has_value() && !IsDataFormat(options.report.format)) {
        return "a summary goes with text, json, ndjson, csv and tsv; html has one of its own";
    }
    if (options.summary.has_value() && !words.fields.empty()) return "--fields goes without --summary";
    if (words.progress && words.noProgress) return "--progress and --no-progress contradict each other";
    if (options.minSize > options.maxSize) return "--min-size is larger than --max-size";
    return "";
}

Mistake CheckPaths(const Options& options) {
    const bool named = !options.paths.empty() || options.filesFrom.has_value();
    if (options.listFormats && named) return "--formats takes no paths";
    if (options.query.has_value() && named) return "--query takes no paths: it answers from the store";
    const bool needsPaths = !options.listFormats && !options.query.has_value() && !options.prune;
    if (needsPaths && !named) return "no path given";
    if (options.nulSeparated && !options.filesFrom.has_value()) return "-0 goes with --files-from";
    const auto standardInputs = std::ranges::count(options.paths, "-");
    const bool listFromStandardInput = options.filesFrom == "-";
    if (standardInputs > 1 || (standardInputs == 1 && listFromStandardInput)) return "standard input can be read once";
    return "";
}

// Options that choose what a scan looks at, and how.
bool HasOptionsOfAScan(const OptionWords& words, const Options& options) {
    return !words.globs.empty() || !words.excludes.empty() || !words.hidden || options.maxDepth != UINT32_MAX ||
           options.oneFileSystem || !words.minSize.empty() || !words.maxSize.empty() || words.noText ||
           words.noFurther || words.unsorted;
}

Mistake CheckQuery(const OptionWords& words, const Options& options) {
    if (options.prune || options.rescan || options.refresh) {
        return "--query goes without --prune, --rescan and --refresh";
    }
    if (!words.hash.empty()) return "--hash goes with a scan";
    if (options.query != StoreQueryKind::Summary && options.summary.has_value()) {
        return "--summary and --by go with --query summary";
    }
    if (HasOptionsOfAScan(words, options)) {
        return "--query answers for the whole store: only --match, --exclude-format and --mismatch choose among its "
               "files";
    }
    return "";
}

Mistake CheckStore(const OptionWords& words, const Options& options) {
    const bool changes = options.prune || options.rescan || options.refresh;
    if ((changes || options.query.has_value()) && !options.store.has_value()) {
        return "--prune, --rescan, --refresh and --query go with --store";
    }
    if (options.listFormats && options.store.has_value()) return "--formats goes without --store";
    if (options.store.has_value() && options.store->empty()) return "--store needs a name";
    if (options.rescan && options.refresh) return "--rescan looks at all files; --refresh adds nothing to it";
    if (options.prune && options.filesFrom.has_value()) return "--prune goes with paths, or without any";
    return options.query.has_value() ? CheckQuery(words, options) : "";
}

// With a store, records are written only where the command line speaks of them.
bool WritesRecords(const OptionWords& words, const Options& options) {
    if (!options.store.has_value() || options.query.has_value()) return true;
    return words.formatGiven || words.mime || words.print0 || !words.fields.empty() || options.report.explain ||
           !words.match.empty() || !words.excludeFormat.empty() || words.mismatch;
}

}  // namespace

std::string CheckOptions(const OptionWords& words, Options& options) {
    Mistake mistake = CheckPaths(options);
    if (mistake.empty()) mistake = ReadSize(words.minSize, "--min-size", options.minSize);
    if (mistake.empty()) mistake = ReadSize(words.maxSize, "--max-size", options.maxSize);
    if (mistake.empty()) mistake = CheckStore(words, options);
    if (mistake.empty()) mistake = CheckOutput(words, options);
    if (mistake.empty()) mistake = ReadNameFilter(words, options);
    if (mistake.empty()) mistake = ReadFormatFilter(words, options);
    if (mistake.empty()) mistake = ReadHash(words, options);
    if (mistake.empty()) mistake = ReadFields(words, options);
    options.writesRecords = !options.summary.has_value() && WritesRecords(words, options);
    return mistake;
}
