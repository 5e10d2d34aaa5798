// csv_text.cpp - reading a text as records with quoted fields.
//
// A record ends at CR LF, CR or LF outside quotation marks; a line without a byte is none. A field is quoted if its first
// byte is a quotation mark: in it separators and line ends are its own and two marks are one. What stands behind the
// closing mark belongs to the field. A quoted field that is never closed goes to the end.
#include "further/csv_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "further/clean_text.h"

namespace {

constexpr std::size_t sampleSize = 20000;
constexpr std::uint32_t comparedRecords = 20;
constexpr std::string_view separators = ",;\t|";

enum class FIFieldPlace : std::uint8_t {
    AtStart,
    Inside,
    InQuotes,
    BehindMark,  // in quotes, behind a mark that closes them unless another one follows
};

struct FIRecords {
    std::uint32_t count;
    std::uint32_t fieldsOfFirst;
};

// Counts a record that ends. Returns false when it has another number of fields than the first, or is the first and has
// but one.
bool FITakeRecord(FIRecords& records, std::uint32_t fields) {
    if (records.count == 0) records.fieldsOfFirst = fields;
    ++records.count;
    return fields >= 2 && fields == records.fieldsOfFirst;
}

bool FIIsTable(std::string_view text, char separator, bool isLastCut) {
    FIRecords records = {};
    FIFieldPlace place = FIFieldPlace::AtStart;
    std::uint32_t fields = 1;
    bool isBlank = true;
    for (const char character : text) {
        if (place != FIFieldPlace::InQuotes && (character == '\n' || character == '\r')) {
            if (!isBlank && !FITakeRecord(records, fields)) return false;
            if (records.count == comparedRecords) return true;
            place = FIFieldPlace::AtStart;
            fields = 1;
            isBlank = true;
            continue;
        }
        isBlank = false;
        if (place == FIFieldPlace::InQuotes) {
            if (character == '"') place = FIFieldPlace::BehindMark;
        } else if (character == separator) {
            place = FIFieldPlace::AtStart;
            ++fields;
        } else {
            const bool isQuoted = character == '"' && place != FIFieldPlace::Inside;
            place = isQuoted ? FIFieldPlace::InQuotes : FIFieldPlace::Inside;
        }
    }
    if (!isBlank && !isLastCut && !FITakeRecord(records, fields)) return false;
    return records.count >= 2;
}

}  // namespace

bool FIIsCsv(FILook& look) {
    if (!FIIsCleanText(look)) return false;
    const std::span<const std::uint8_t> head = FILookAtHead(look);
    const std::size_t size = std::min<std::size_t>(sampleSize, head.size() - FICountEndMarks(look));
    const std::string_view text(reinterpret_cast<const char*>(head.data()), size);
    return std::ranges::any_of(
        separators, [&look, text](char separator) { return FIIsTable(text, separator, look.size > sampleSize); });
}
