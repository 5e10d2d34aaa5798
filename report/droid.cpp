// droid.cpp - rows of files and folders.
#include "report/droid.h"

#include <optional>

#include "report/folder_stack.h"
#include "report/path_parts.h"
#include "report/record_facts.h"
#include "report/value_text.h"

namespace {

constexpr std::string_view columnsBeforeHash[] = {"ID",   "PARENT_ID", "URI",           "FILE_PATH",
                                                  "NAME", "METHOD",    "STATUS",        "SIZE",
                                                  "TYPE", "EXT",       "LAST_MODIFIED", "EXTENSION_MISMATCH"};
constexpr std::string_view columnsBehindHash[] = {"FORMAT_COUNT", "PUID", "MIME_TYPE", "FORMAT_NAME", "FORMAT_VERSION"};

constexpr std::string_view standardInput = "-";

std::string_view HashColumn(HashKind hash) {
    switch (hash) {
        case HashKind::None:
            break;
        case HashKind::Sha256:
            return "SHA256_HASH";
        case HashKind::Xxh3:
            return "XXH3_HASH";
    }
    return "HASH";
}

// A field that is not the first of its row.
void AppendNext(std::string& out, std::string_view text) {
    out += ',';
    AppendQuotedCsvText(out, text);
}

void AppendNext(std::string& out, std::optional<std::uint64_t> number) {
    out += ",\"";
    if (number.has_value()) AppendNumber(out, *number);
    out += '"';
}

void AppendNumbers(std::string& out, std::uint64_t number, std::uint64_t parent) {
    out += '"';
    AppendNumber(out, number);
    out += '"';
    AppendNext(out, parent != 0 ? std::optional(parent) : std::nullopt);
}

// In the three words that DROID has. What text and structure tell is told by the contents, as a signature does. What PRONOM
// has no identifier for is not identified there.
std::string_view MethodOf(const fiid_result& answer) {
    if (answer.puids[0] == '\0') return "";
    switch (answer.basis) {
        case FIID_BASIS_NONE:
            return "";
        case FIID_BASIS_STORAGE:
        case FIID_BASIS_PACKAGE:
            return "Container";
        case FIID_BASIS_EXTENSION:
            return "Extension";
        default:
            return "Signature";
    }
}

std::string_view StatusOf(const Record& record) {
    if (record.change.kind == ChangeKind::Gone) return "Not found";
    if (!record.error.has_value()) return "Done";
    const std::string_view error = *record.error;
    if (error.ends_with("Permission denied") || error.ends_with("Operation not permitted")) return "Access denied";
    if (error.ends_with("No such file or directory") || error.ends_with("leads nowhere")) return "Not found";
    return "Error";
}

// The fields of a file that are the same in each of its rows, behind the two numbers. A stream has no place.
void AppendFile(std::string& out, const Record& record, std::string_view workingDirectory) {
    const std::string_view name = NameOf(record.path);
    if (record.path == standardInput) {
        AppendNext(out, "");
        AppendNext(out, standardInput);
    } else {
        const std::string absolute = AbsolutePath(workingDirectory, record.path);
        out += ",\"";
        AppendFileUri(out, absolute);
        out += '"';
        AppendNext(out, absolute);
    }
    AppendNext(out, name);
    AppendNext(out, HasAnswer(record) ? MethodOf(record.answer) : "");
    AppendNext(out, StatusOf(record));
    AppendNext(out, SizeOf(record));
    AppendNext(out, "File");
    AppendNext(out, ExtensionOf(name));
    out += ",\"";
    const std::optional<std::int64_t> modified = ModifiedSecondsOf(record);
    if (modified.has_value()) AppendTimeWithoutZone(out, *modified);
    out += '"';
    AppendNext(out, HasAnswer(record) && (record.answer.warnings & FIID_WARN_EXTENSION) != 0 ? "true" : "false");
    AppendNext(out, record.hash);
}

struct Identification {
    std::optional<std::uint64_t> count;
    std::string_view puid;
    std::string_view mime;
    std::string_view name;
    std::string_view version;
};

void AppendIdentification(std::string& out, const Identification& told) {
    AppendNext(out, told.count);
    AppendNext(out, told.puid);
    AppendNext(out, told.mime);
    AppendNext(out, told.name);
    AppendNext(out, told.version);
    out += '\n';
}

std::uint64_t CountWords(std::string_view words) {
    std::uint64_t count = 0;
    for (; !words.empty(); ++count) TakeWord(words);
    return count;
}

void AppendFolder(std::string& out, const Folder& folder) {
    AppendNumbers(out, folder.number, folder.parent);
    out += ",\"";
    AppendFileUri(out, folder.path);
    out += "/\"";
    const std::string_view root = "/";
    AppendNext(out, folder.path.empty() ? root : folder.path);
    AppendNext(out, folder.path.empty() ? root : NameOf(folder.path));
    for (const std::string_view field : {"", "Done", "", "Folder", "", "", "false", ""}) AppendNext(out, field);
    AppendIdentification(out, {std::nullopt, "", "", "", ""});
}

// Takes the first row of some. A line feed inside of quotation marks ends none.
std::string_view TakeRow(std::string_view& rows) {
    bool quoted = false;
    std::size_t size = 0;
    while (quoted || rows[size] != '\n') quoted ^= rows[size++] == '"';
    const std::string_view row = rows.substr(0, size + 1);
    rows.remove_prefix(size + 1);
    return row;
}

class DroidWriter : public ReportWriter {
 public:
    explicit DroidWriter(const ReportOptions& options)
        : hash_(options.hash),
          workingDirectory_(options.directory.empty() ? WorkingDirectory() : options.directory),
          folders_(options.named, workingDirectory_) {}

    void Begin(std::string& out) override {
        const std::size_t start = out.size();
        for (const std::string_view column : columnsBeforeHash) AppendNext(out, column);
        AppendNext(out, HashColumn(hash_));
        for (const std::string_view column : columnsBehindHash) AppendNext(out, column);
        out.erase(start, 1);  // the first comma
        out += '\n';
    }

    // Rows without the two numbers at their start, which Place knows.
    void Render(const Record& record, std::string& out) const override {
        const std::size_t start = out.size();
        AppendFile(out, record, workingDirectory_);
        if (!HasAnswer(record)) return AppendIdentification(out, {std::nullopt, "", "", "", ""});
        const fiid_result& answer = record.answer;
        if (answer.basis == FIID_BASIS_NONE) return AppendIdentification(out, {0, "", "", "", ""});
        std::string_view puids = answer.puids;
        Identification told = {CountWords(puids), "", answer.mime, answer.name, answer.version};
        if (!puids.empty()) told.puid = TakeWord(puids);
        const std::size_t size = out.size() - start;
        AppendIdentification(out, told);
        while (!puids.empty()) {
            told.puid = TakeWord(puids);
            out.append(out, start, size);
            AppendIdentification(out, told);
        }
    }

    void Place(const Record& record, std::string_view rendered, std::string& out) override {
        const bool isStream = record.path == standardInput;
        const std::uint64_t parent =
            isStream ? 0 : folders_.FolderOf(record.path, [&](const Folder& folder) { AppendFolder(out, folder); });
        const std::uint64_t number = folders_.NextNumber();
        while (!rendered.empty()) {
            AppendNumbers(out, number, parent);
            out += TakeRow(rendered);
        }
    }

    void End(std::string&, bool) override {}

 private:
    HashKind hash_;
    std::string workingDirectory_;
    FolderStack folders_;
};

}  // namespace

std::unique_ptr<ReportWriter> MakeDroidWriter(const ReportOptions& options) {
    return std::make_unique<DroidWriter>(options);
}
