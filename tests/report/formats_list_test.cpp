// The list of formats in each form, against what a reader of JSON makes of it.
#include "report/formats_list.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "report/json_text.h"
#include "report/value_text.h"
#include "support/captured_output.h"

namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> WordsOf(const char* text) {
    std::istringstream words(text);
    std::vector<std::string> list;
    for (std::string word; words >> word;) list.push_back(word);
    return list;
}

std::vector<fiid_format> AllFormats() {
    std::vector<fiid_format> formats(fiid_format_count());
    for (std::uint32_t index = 0; index < formats.size(); ++index) fiid_format_at(index, &formats[index]);
    return formats;
}

std::string Line(const std::vector<std::string>& fields, const LineForm& form) {
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line += form.separator;
        form.appendText(line, field);
    }
    return line + std::string(form.end);
}

std::string ListOf(OutputFormat form) {
    return WrittenBy([form] { WriteFormatsList(form); });
}

TEST(FormatsList, IsTextForPeople) {
    std::string expected;
    for (const fiid_format& format : AllFormats()) expected += std::to_string(format.id) + "  " + format.name + "\n";
    EXPECT_TRUE(ListOf(OutputFormat::Text) == expected);
    EXPECT_TRUE(expected.starts_with("1000  "));
}

TEST(FormatsList, IsJson) {
    std::string lines;
    std::string items;
    for (const fiid_format& format : AllFormats()) {
        const Json tree = {{"fiid", format.id},
                           {"name", format.name},
                           {"mime", format.mime},
                           {"puid", WordsOf(format.puids)},
                           {"extensions", WordsOf(format.extensions)},
                           {"family", format.family}};
        lines += tree.dump() + "\n";
        items += (items.empty() ? "\n" : ",\n") + tree.dump();
    }
    EXPECT_TRUE(ListOf(OutputFormat::Ndjson) == lines);
    EXPECT_TRUE(ListOf(OutputFormat::Json) == "[" + items + "\n]\n");
}

TEST(FormatsList, IsLines) {
    for (const auto& [output, form] : {std::pair(OutputFormat::Csv, csvForm), std::pair(OutputFormat::Tsv, tsvForm)}) {
        std::string expected = Line({"fiid", "name", "mime", "puid", "extensions", "family"}, form);
        for (const fiid_format& format : AllFormats()) {
            expected += Line(
                {std::to_string(format.id), format.name, format.mime, format.puids, format.extensions, format.family},
                form);
        }
        EXPECT_TRUE(ListOf(output) == expected);
    }
}

TEST(FormatsList, HasNoOtherForm) {
    for (const OutputFormat form :
         {OutputFormat::Mime, OutputFormat::Path, OutputFormat::Droid, OutputFormat::Siegfried, OutputFormat::Html}) {
        EXPECT_EQ(ListOf(form), "");
    }
}

}  // namespace
