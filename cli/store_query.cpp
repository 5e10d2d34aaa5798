// store_query.cpp - answers from a store, without a scan.
#include "cli/store_query.h"

#include <memory>
#include <string>

#include "cli/asked_facts.h"
#include "cli/scan_output.h"
#include "report/escape_text.h"
#include "report/output.h"
#include "report/report_writer.h"
#include "report/summary.h"
#include "scan/interrupt.h"
#include "store/store.h"

namespace {

bool AskForRecords(StoreQuery& store, StoreQueryKind kind, const StoreQuery::Take& take) {
    switch (kind) {
        case StoreQueryKind::Mismatch:
            return store.Mismatch(take);
        case StoreQueryKind::Changes:
            return store.Changes(take);
        case StoreQueryKind::Errors:
            return store.Errors(take);
        case StoreQueryKind::Duplicates:
            return store.Duplicates(take);
        case StoreQueryKind::Files:
        case StoreQueryKind::Summary:
            break;
    }
    return store.Files(take);
}

// An error that is asked for is an answer and no failure.
bool IsTold(const Options& options, const Record& record) {
    return record.error.has_value() || options.formats.Takes(record.answer);
}

// What lines for people and lists of paths leave to the messages of a scan is asked for here: --query errors has no other
// answers.
void AppendFailure(const Options& options, const Record& record, std::string& rendered) {
    if (!record.error.has_value() || !rendered.empty()) return;
    if (options.report.format == OutputFormat::Path && options.query == StoreQueryKind::Errors) {
        rendered += record.path;
        rendered += options.report.pathEnd;
    } else if (options.report.format == OutputFormat::Text) {
        AppendEscapedText(rendered, record.path);
        rendered += ": ";
        AppendEscapedText(rendered, *record.error);
        rendered += '\n';
    }
}

// What a report tells of the scan itself: when it was, where its paths start, and which hashes there are, unless fields
// have chosen one. In lines for people hashes are there where they show what belongs together.
bool ReadFactsOfScan(StoreQuery& store, ReportOptions& report) {
    StoredRun run;
    HashKind hash = HashKind::None;
    if (!store.LastRun(run) || !store.Hash(hash)) return false;
    if (run.run > 0) report.startedSeconds = run.startedSeconds;
    report.directory = run.directory;
    if (report.hash == HashKind::None && (report.format != OutputFormat::Text || report.withCopies)) report.hash = hash;
    return true;
}

bool WriteRecords(const Options& options, StoreQuery& store) {
    ReportOptions report = options.report;
    if (!ReadFactsOfScan(store, report)) return false;
    const std::unique_ptr<ReportWriter> writer = MakeReportWriter(report);
    writer->Begin(BeginRecord());
    EndRecord();
    std::string rendered;
    Record record;
    const bool done = AskForRecords(store, *options.query, [&](const Record& stored) {
        if (!IsTold(options, stored)) return true;
        record = stored;
        KeepAskedFacts(report, record);
        rendered.clear();
        writer->Render(record, rendered);
        AppendFailure(options, record, rendered);
        writer->Place(record, rendered, BeginRecord());
        EndRecord();
        return !Interrupted();
    });
    writer->End(BeginRecord(), Interrupted());
    EndRecord();
    return done;
}

// Rows of one answer are counted by the store, where their paths don't matter.
bool WriteSummary(const Options& options, StoreQuery& store) {
    Summary summary(*options.summary);
    bool done = true;
    if (summary.Key() == SummaryKey::Extension || summary.Key() == SummaryKey::Directory) {
        done = store.Files([&](const Record& record) {
            if (IsTold(options, record)) summary.Add(record);
            return !Interrupted();
        });
    } else {
        done = store.CountAnswers([&](const AnswerCount& answer) {
            if (IsTold(options, answer.record)) summary.AddMany(answer.record, {answer.files, answer.bytes});
        });
    }
    if (done) WriteSummaryOf(summary, options);
    return done;
}

}  // namespace

bool RunStoreQuery(const Options& options) {
    std::string mistake;
    const std::unique_ptr<StoreQuery> store = StoreQuery::Open(*options.store, mistake);
    if (store == nullptr) {
        WriteMessage(mistake);
        return false;
    }
    const bool done =
        options.query == StoreQueryKind::Summary ? WriteSummary(options, *store) : WriteRecords(options, *store);
    FlushOutput();
    if (!done) WriteMessage(store->Mistake());
    return done;
}
