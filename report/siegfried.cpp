// siegfried.cpp - what we know in siegfried's words.
#include "report/siegfried.h"

#include <algorithm>
#include <optional>

#include "report/independent_records.h"
#include "report/path_parts.h"
#include "report/record_facts.h"
#include "report/value_text.h"

namespace {

// The columns namespace to warning of a file that has no answer.
constexpr std::string_view noIdentification = ",,,,,,,,";

std::string_view HashColumn(HashKind hash) {
    switch (hash) {
        case HashKind::None:
            break;
        case HashKind::Sha256:
            return "sha256,";
        case HashKind::Xxh3:
            return "xxh3,";
    }
    return "";
}

// PRONOM's word for the kind of a format, where a family has one.
struct FamilyClass {
    std::string_view family;
    std::string_view word;
};

constexpr FamilyClass classes[] = {
    {"archive", "Aggregate"},    {"audio", "Audio"}, {"database", "Database"},         {"drawing", "Image (Vector)"},
    {"image", "Image (Raster)"}, {"mail", "Email"},  {"presentation", "Presentation"}, {"spreadsheet", "Spreadsheet"},
    {"video", "Video"},
};

std::string_view ClassOf(std::string_view family) {
    for (const FamilyClass& entry : classes) {
        if (entry.family == family) return entry.word;
    }
    return "";
}

// The first words are siegfried's, by which programs tell what decided.
std::string_view MatchOf(std::int32_t basis) {
    switch (basis) {
        case FIID_BASIS_SIGNATURE:
            return "byte match";
        case FIID_BASIS_STORAGE:
            return "container match (compound storage)";
        case FIID_BASIS_PACKAGE:
            return "container match (package)";
        case FIID_BASIS_STRUCTURE:
            return "byte match (structure)";
        case FIID_BASIS_STATISTICS:
            return "byte match (statistics)";
        case FIID_BASIS_TEXT:
            return "text match";
        default:
            return "";
    }
}

char LowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// The one of some words in lower case that an extension is, or "".
std::string_view FindWord(std::string_view words, std::string_view extension) {
    while (!words.empty()) {
        const std::string_view word = TakeWord(words);
        const bool same = std::equal(word.begin(), word.end(), extension.begin(), extension.end(),
                                     [](char letter, char other) { return letter == LowerCase(other); });
        if (same) return word;
    }
    return "";
}

// Appends texts with "; " between two.
class Phrases {
 public:
    explicit Phrases(std::string& out) : out_(out), start_(out.size()) {}
    void Add(std::string_view phrase) { Add(phrase, ""); }
    void Add(std::string_view phrase, std::string_view rest) {
        if (phrase.empty()) return;
        if (out_.size() > start_) out_ += "; ";
        out_ += phrase;
        out_ += rest;
    }

 private:
    std::string& out_;
    std::size_t start_;
};

// What was looked at may hold anything, and stands last.
void AppendBasis(std::string& out, const Record& record, std::string_view usualExtension) {
    const std::string_view lookedAt = record.answer.explanation;
    if (!lookedAt.empty()) out += '"';
    Phrases phrases(out);
    if (!usualExtension.empty()) phrases.Add("extension match ", usualExtension);
    phrases.Add(MatchOf(record.answer.basis));
    if (lookedAt.empty()) return;
    phrases.Add("looked at ");
    AppendDoubled(out, lookedAt);
    out += '"';
}

void AppendWarning(std::string& out, const fiid_result& answer, bool hasUsualExtension) {
    Phrases phrases(out);
    if (answer.puids[0] == '\0') phrases.Add("no match");
    if (answer.basis == FIID_BASIS_EXTENSION) phrases.Add("match on extension only");
    if (answer.basis == FIID_BASIS_TEXT && !hasUsualExtension) phrases.Add("match on text only");
    if ((answer.warnings & FIID_WARN_EXTENSION) != 0) phrases.Add("extension mismatch");
    if ((answer.warnings & FIID_WARN_CUT) != 0) phrases.Add("file is cut");
}

// A size that is not known is 0 there.
void AppendFile(std::string& out, const Record& record, HashKind hash) {
    AppendCsvText(out, record.path);
    out += ',';
    AppendNumber(out, SizeOf(record).value_or(0));
    out += ',';
    const std::optional<std::int64_t> modified = ModifiedSecondsOf(record);
    if (modified.has_value()) AppendTime(out, *modified);
    out += ',';
    if (record.error.has_value()) AppendCsvText(out, *record.error);
    if (hash == HashKind::None) return;
    out += ',';
    out += record.hash;
}

void AppendIdentifier(std::string& out, std::string_view identifier) {
    out += ",pronom,";
    out += identifier;
}

// What stands behind the identifier.
void AppendFormat(std::string& out, const Record& record) {
    const fiid_result& answer = record.answer;
    const bool known = answer.basis != FIID_BASIS_NONE;
    const std::string_view extension = FindWord(answer.extensions, ExtensionOf(record.path));
    out += ',';
    AppendCsvText(out, known ? answer.name : "");
    out += ',';
    AppendCsvText(out, answer.version);
    out += ',';
    AppendCsvText(out, known ? answer.mime : "");
    out += ',';
    if (answer.puids[0] != '\0') out += ClassOf(answer.family);
    out += ',';
    AppendBasis(out, record, extension);
    out += ',';
    AppendWarning(out, answer, !extension.empty());
    out += '\n';
}

class SiegfriedWriter : public IndependentRecords {
 public:
    explicit SiegfriedWriter(HashKind hash) : hash_(hash) {}

    void Begin(std::string& out) override {
        out += "filename,filesize,modified,errors,";
        out += HashColumn(hash_);
        out += "namespace,id,format,version,mime,class,basis,warning\n";
    }

    void Render(const Record& record, std::string& out) const override {
        const std::size_t fileStart = out.size();
        AppendFile(out, record, hash_);
        const std::size_t fileSize = out.size() - fileStart;
        if (!HasAnswer(record)) {
            out += noIdentification;
            out += '\n';
            return;
        }
        std::string_view puids = record.answer.puids;
        AppendIdentifier(out, puids.empty() ? "UNKNOWN" : TakeWord(puids));
        const std::size_t formatStart = out.size();
        AppendFormat(out, record);
        const std::size_t formatSize = out.size() - formatStart;
        while (!puids.empty()) {
            out.append(out, fileStart, fileSize);
            AppendIdentifier(out, TakeWord(puids));
            out.append(out, formatStart, formatSize);
        }
    }

 private:
    HashKind hash_;
};

}  // namespace

std::unique_ptr<ReportWriter> MakeSiegfriedWriter(const ReportOptions& options) {
    return std::make_unique<SiegfriedWriter>(options.hash);
}
