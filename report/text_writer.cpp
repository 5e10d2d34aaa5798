// text_writer.cpp - text, mime and path.
#include "report/text_writer.h"

#include "report/escape_text.h"
#include "report/independent_records.h"
#include "report/record_facts.h"
#include "report/value_text.h"

namespace {

// A row of a table and its notation.
void AppendRow(std::string& out, std::string_view label, std::uint16_t row, std::string_view signature) {
    out += label;
    AppendNumber(out, row);
    if (!signature.empty()) {
        out += ": ";
        out += signature;
    }
}

void AppendExplanation(std::string& out, const fiid_result& answer) {
    out += " (";
    if (answer.row != 0) {
        AppendRow(out, "row ", answer.row, answer.signature);
    } else {
        out += "no row";
    }
    if (answer.further_row != 0) AppendRow(out, "; further row ", answer.further_row, answer.further_signature);
    if (answer.routine[0] != '\0') {
        out += "; ";
        out += answer.routine;
    }
    if (answer.explanation[0] != '\0') {
        out += "; looked at ";
        out += answer.explanation;
    }
    out += "; ";
    AppendNumber(out, answer.bytes_read);
    out += answer.bytes_read == 1 ? " byte in " : " bytes in ";
    AppendNumber(out, answer.calls);
    out += answer.calls == 1 ? " call)" : " calls)";
}

void AppendAnswer(std::string& out, const fiid_result& answer) {
    out += answer.name;
    out += " [";
    AppendNumber(out, answer.fiid);
    if (answer.further != 0) {
        out += ", ";
        AppendNumber(out, answer.further);
    }
    out += ']';
}

void AppendRun(std::string& out, std::string_view words, const Change& change) {
    out += words;
    AppendNumber(out, static_cast<std::uint64_t>(change.run));
}

void AppendBefore(std::string& out, const Change& change) {
    if (change.before.empty()) return;
    out += ", was ";
    AppendEscapedText(out, change.before);
}

void AppendChange(std::string& out, const Change& change) {
    out += " (";
    AppendRun(out, change.kind == ChangeKind::New ? "new in run " : "changed in run ", change);
    AppendBefore(out, change);
    out += ')';
}

// What is gone has the answer that it had.
void AppendGone(std::string& out, const Record& record) {
    AppendRun(out, "gone in run ", record.change);
    if (record.error.has_value()) {
        out += ", was ";
        AppendEscapedText(out, *record.error);
    } else if (HasAnswer(record)) {
        out += ", was ";
        AppendAnswer(out, record.answer);
    } else {
        AppendBefore(out, record.change);
    }
}

class TextWriter : public IndependentRecords {
 public:
    explicit TextWriter(const ReportOptions& options) : options_(options) {}

    void Render(const Record& record, std::string& out) const override {
        const bool gone = record.change.kind == ChangeKind::Gone;
        if (!gone && (record.error.has_value() || !HasAnswer(record))) return;
        AppendEscapedText(out, record.path);
        out += ": ";
        if (gone) {
            AppendGone(out, record);
        } else {
            AppendAnswer(out, record.answer);
            AppendRemarks(out, record);
        }
        out += '\n';
    }

 private:
    void AppendRemarks(std::string& out, const Record& record) const {
        const fiid_result& answer = record.answer;
        if (options_.explain) AppendExplanation(out, answer);
        if (options_.withExtensions && answer.extensions[0] != '\0') {
            out += " (usual extensions: ";
            out += answer.extensions;
            out += ')';
        }
        if (options_.hash != HashKind::None && !record.hash.empty()) {
            out += options_.hash == HashKind::Sha256 ? " (sha256: " : " (xxh3: ";
            out += record.hash;
            out += ')';
        }
        if (options_.withChanges && record.change.kind != ChangeKind::None) AppendChange(out, record.change);
        if (options_.withCopies && record.copies != 0) {
            out += " (";
            AppendNumber(out, record.copies);
            out += record.copies == 1 ? " copy)" : " copies)";
        }
    }

    ReportOptions options_;
};

class MimeWriter : public IndependentRecords {
 public:
    explicit MimeWriter(bool explain) : explain_(explain) {}

    // The type of an empty file is what other programs say.
    void Render(const Record& record, std::string& out) const override {
        if (!HasAnswer(record)) return;
        const std::string_view mime = record.answer.mime;
        AppendEscapedText(out, record.path);
        out += ": ";
        if (record.answer.size == 0) {
            out += "inode/x-empty";
        } else {
            out += mime.empty() ? "application/octet-stream" : mime;
        }
        if (explain_) AppendExplanation(out, record.answer);
        out += '\n';
    }

 private:
    bool explain_;
};

class PathWriter : public IndependentRecords {
 public:
    explicit PathWriter(char end) : end_(end) {}

    // The bytes as they are: other programs open them.
    void Render(const Record& record, std::string& out) const override {
        if (record.error.has_value()) return;
        out += record.path;
        out += end_;
    }

 private:
    char end_;
};

}  // namespace

std::unique_ptr<ReportWriter> MakeTextWriter(const ReportOptions& options) {
    if (options.format == OutputFormat::Mime) return std::make_unique<MimeWriter>(options.explain);
    if (options.format == OutputFormat::Path) return std::make_unique<PathWriter>(options.pathEnd);
    return std::make_unique<TextWriter>(options);
}
