// Which fields there are, which a report has, and what is wrong with a choice.
#include "report/record_columns.h"

#include <gtest/gtest.h>

#include "support/report_text.h"

namespace {

constexpr OutputFormat everyFormat[] = {
    OutputFormat::Text, OutputFormat::Ndjson, OutputFormat::Json,  OutputFormat::Csv,       OutputFormat::Tsv,
    OutputFormat::Mime, OutputFormat::Path,   OutputFormat::Droid, OutputFormat::Siegfried, OutputFormat::Html};

const std::string defaultKeys = "path fiid name mime puid error further version basis warning size mtime";
const std::string explainKeys = " row signature routine further_row further_signature looked_at bytes_read calls";

std::string KeysOf(const ReportOptions& options) {
    std::string keys;
    for (const RecordColumn* const column : ColumnsOf(options)) {
        keys += (keys.empty() ? "" : " ") + std::string(column->key);
    }
    return keys;
}

ReportOptions OptionsWith(const std::vector<std::string>& fields) {
    ReportOptions options = OptionsFor(OutputFormat::Csv);
    options.fields = fields;
    return options;
}

std::string MistakeIn(const std::vector<std::string>& fields) { return CheckFields(OptionsWith(fields)); }

TEST(RecordColumns, AreTheseByDefault) {
    EXPECT_EQ(KeysOf(OptionsFor(OutputFormat::Csv)), defaultKeys);
    EXPECT_EQ(KeysOf(OptionsFor(OutputFormat::Tsv)), defaultKeys);
    const std::string inJson = "path path_hex" + defaultKeys.substr(4);
    EXPECT_EQ(KeysOf(OptionsFor(OutputFormat::Json)), inJson);
    EXPECT_EQ(KeysOf(OptionsFor(OutputFormat::Ndjson)), inJson);
}

TEST(RecordColumns, AreMoreWithOptions) {
    const auto with = [](auto set) {
        ReportOptions options = OptionsFor(OutputFormat::Csv);
        set(options);
        return KeysOf(options);
    };
    EXPECT_EQ(with([](ReportOptions& o) { o.explain = true; }), defaultKeys + explainKeys);
    EXPECT_EQ(with([](ReportOptions& o) { o.hash = HashKind::Sha256; }), defaultKeys + " sha256");
    EXPECT_EQ(with([](ReportOptions& o) { o.hash = HashKind::Xxh3; }), defaultKeys + " xxh3");
    EXPECT_EQ(with([](ReportOptions& o) { o.withExtensions = true; }), defaultKeys + " extensions");
    EXPECT_EQ(with([](ReportOptions& o) { o.withChanges = true; }), defaultKeys + " change run run_time before");
    EXPECT_EQ(with([](ReportOptions& o) { o.withCopies = true; }), defaultKeys + " copies");
    EXPECT_EQ(with([](ReportOptions& o) {
                  o.explain = o.withExtensions = o.withChanges = o.withCopies = true;
                  o.hash = HashKind::Sha256;
              }),
              defaultKeys + explainKeys + " extensions sha256 change run run_time before copies");
}

TEST(RecordColumns, AreThoseNamedInTheirOrder) {
    EXPECT_EQ(KeysOf(OptionsWith({"puid", "path_hex", "family", "extensions", "path"})),
              "puid path_hex family extensions path");
    ReportOptions options = OptionsWith({"calls"});
    options.explain = true;
    EXPECT_EQ(KeysOf(options), "calls");
}

TEST(CheckFields, RefusesUnknownFieldsAndListsAll) {
    EXPECT_EQ(MistakeIn({"path", "colour"}),
              "--fields: no field is called \"colour\"; there are path, path_hex, fiid, name, mime, puid, error, "
              "further, version, basis, warning, size, mtime, row, signature, routine, further_row, "
              "further_signature, looked_at, bytes_read, calls, family, extensions, sha256, xxh3, change, run, "
              "run_time, before, copies");
    EXPECT_TRUE(MistakeIn({""}).starts_with("--fields: no field is called \"\"; "));
    EXPECT_TRUE(MistakeIn({"Path"}).starts_with("--fields: no field is called \"Path\"; "));
}

TEST(CheckFields, RefusesAFieldTwice) {
    EXPECT_EQ(MistakeIn({"path", "name", "path"}), "--fields: path is named more than once");
    EXPECT_EQ(MistakeIn({"path", "name"}), "");
}

TEST(CheckFields, RefusesFieldsWithoutTheirOption) {
    for (const char* const key :
         {"row", "signature", "routine", "further_row", "further_signature", "looked_at", "bytes_read", "calls"}) {
        EXPECT_EQ(MistakeIn({key}), "--fields: " + std::string(key) + " goes with --explain");
    }
    EXPECT_EQ(MistakeIn({"sha256"}), "--fields: sha256 goes with --hash sha256");
    EXPECT_EQ(MistakeIn({"xxh3"}), "--fields: xxh3 goes with --hash xxh3");
    for (const char* const key : {"change", "run", "run_time", "before"}) {
        EXPECT_EQ(MistakeIn({key}), "--fields: " + std::string(key) + " goes with --query changes");
    }
    EXPECT_EQ(MistakeIn({"copies"}), "--fields: copies goes with --query duplicates");
    ReportOptions options = OptionsWith({"row", "sha256", "change", "copies"});
    options.explain = options.withChanges = options.withCopies = true;
    options.hash = HashKind::Sha256;
    EXPECT_EQ(CheckFields(options), "");
    options.fields = {"xxh3"};
    EXPECT_EQ(CheckFields(options), "--fields: xxh3 goes with --hash xxh3");
}

TEST(CheckFields, RefusesFieldsWhereThereAreNone) {
    for (const OutputFormat format : everyFormat) {
        ReportOptions options = OptionsFor(format);
        EXPECT_EQ(CheckFields(options), "");
        options.fields = {"path"};
        const bool has = format == OutputFormat::Csv || format == OutputFormat::Tsv || format == OutputFormat::Json ||
                         format == OutputFormat::Ndjson;
        EXPECT_EQ(CheckFields(options), has ? "" : "--fields goes with the formats csv, tsv, json and ndjson");
    }
}

// A record with something under each key.
Record FullRecord() {
    Record record = RecordOf("a\xFF", 4022, "Shell script");
    record.answer.family = "code";
    record.answer.extensions = "sh bash";
    record.hash = "0123abcd";
    record.change = {ChangeKind::Changed, 7, 86400, "Plain text [4022]"};
    record.copies = 3;
    return record;
}

ReportOptions FullOptions(OutputFormat format, const std::vector<std::string>& fields) {
    ReportOptions options = OptionsFor(format);
    options.hash = HashKind::Sha256;
    options.withChanges = options.withCopies = true;
    options.fields = fields;
    return options;
}

TEST(RecordColumns, TellWhatIsThere) {
    const std::vector<std::string> fields = {"path_hex", "family",   "extensions", "sha256", "change",
                                             "run",      "run_time", "before",     "copies"};
    EXPECT_EQ(ReportOf({FullRecord()}, FullOptions(OutputFormat::Csv, fields)),
              "path_hex,family,extensions,sha256,change,run,run_time,before,copies\r\n"
              "61ff,code,sh bash,0123abcd,changed,7,1970-01-02T00:00:00Z,Plain text [4022],3\r\n");
    EXPECT_EQ(ReportOf({FullRecord()}, FullOptions(OutputFormat::Ndjson, fields)),
              R"({"path_hex":"61ff","family":"code","extensions":["sh","bash"],"sha256":"0123abcd",)"
              R"("change":"changed","run":7,"run_time":"1970-01-02T00:00:00Z","before":"Plain text [4022]",)"
              "\"copies\":3}\n");
}

TEST(RecordColumns, TellNothingOfWhatIsNot) {
    const Record bare = RecordOf("a", 1999, "");
    const std::vector<std::string> fields = {"path_hex", "family",   "extensions", "sha256", "change",
                                             "run",      "run_time", "before",     "copies"};
    EXPECT_EQ(ReportOf({bare}, FullOptions(OutputFormat::Ndjson, fields)), "{}\n");
    EXPECT_EQ(ReportOf({bare}, FullOptions(OutputFormat::Tsv, {"family", "run", "copies", "fiid"})),
              "family\trun\tcopies\tfiid\n\t\t\t1999\n");
    Record late = FullRecord();
    late.change.seconds = 253402300800;
    EXPECT_EQ(ReportOf({late}, FullOptions(OutputFormat::Ndjson, {"run", "run_time"})), "{\"run\":7}\n");
}

TEST(RecordColumns, TellChangesOfFilesWithoutAnAnswer) {
    Record failed = FailedRecord("a", "Permission denied");
    failed.change = {ChangeKind::New, 1, 0, ""};
    Record gone = RecordOf("b", 0, "");
    gone.change = {ChangeKind::Gone, 2, 0, "GIF image [1503]"};
    ReportOptions options = OptionsFor(OutputFormat::Ndjson);
    options.withChanges = true;
    EXPECT_EQ(ReportOf({failed, gone}, options),
              R"({"path":"a","error":"Permission denied","change":"new","run":1,"run_time":"1970-01-01T00:00:00Z"})"
              "\n"
              R"({"path":"b","change":"gone","run":2,"run_time":"1970-01-01T00:00:00Z","before":"GIF image [1503]"})"
              "\n");
}

}  // namespace
