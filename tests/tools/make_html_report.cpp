// make_html_report.cpp - an HTML report of files, as the program writes it, with columns that need a store.
//
//   make_html_report [--format html] [--all-columns] PATH...
//
// Directories are walked, in the order of their names. With --all-columns each record also has a hash, copies, a change
// and what was looked at, made up of its number.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "fiid/detect.h"
#include "report/html_report.h"

namespace {

namespace fs = std::filesystem;

void CollectFiles(const fs::path& path, std::vector<std::string>& files) {
    if (!fs::is_directory(path)) {
        files.push_back(path.native());
        return;
    }
    std::vector<fs::path> entries(fs::directory_iterator(path), fs::directory_iterator{});
    std::sort(entries.begin(), entries.end());
    for (const fs::path& entry : entries) CollectFiles(entry, files);
}

Record RecordOf(const std::string& path, std::size_t number, bool allColumns) {
    Record record;
    record.path = path;
    fiid_options options = {sizeof(fiid_options), allColumns ? std::uint32_t{FIID_EXPLAIN} : 0};
    const std::int32_t status = fiid_detect_path(path.c_str(), &options, &record.answer);
    const int reason = record.answer.system_error;
    if (status != FIID_OK) record.error = reason != 0 ? std::strerror(reason) : fiid_error_text(status);
    if (!allColumns) return record;
    constexpr ChangeKind kinds[] = {ChangeKind::New, ChangeKind::Changed, ChangeKind::Gone};
    record.hash = std::string(63, 'a') + static_cast<char>('0' + number % 10);
    record.copies = 2 + number % 3;
    record.change = {kinds[number % 3], 7, 1700000000 + static_cast<std::int64_t>(number),
                     number % 3 != 0 ? "Portable Network Graphics" : ""};
    return record;
}

void Write(std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    text.clear();
}

}  // namespace

int main(int count, char** arguments) {
    ReportOptions options;
    options.format = OutputFormat::Html;
    options.startedSeconds = std::time(nullptr);
    std::vector<std::string> files;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        if (argument == "--all-columns") {
            options.explain = options.withExtensions = options.withChanges = options.withCopies = true;
            options.hash = HashKind::Sha256;
        } else if (argument != "--format" && argument != "html") {
            options.title += (options.title.empty() ? "" : " ") + argument;
            CollectFiles(argument, files);
        }
    }
    const std::unique_ptr<ReportWriter> writer = MakeHtmlWriter(options);
    std::string out;
    writer->Begin(out);
    for (std::size_t number = 0; number < files.size(); ++number) {
        const Record record = RecordOf(files[number], number, options.explain);
        std::string rendered;
        writer->Render(record, rendered);
        writer->Place(record, rendered, out);
        Write(out);
    }
    writer->End(out, false);
    Write(out);
    return 0;
}
