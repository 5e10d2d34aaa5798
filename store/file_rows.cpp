// file_rows.cpp - binds what there is of a record, and compares it with what there was.
#include "store/file_rows.h"

#include <limits>

#include "store/store_reader.h"

namespace {

constexpr std::uint64_t largestColumn = std::numeric_limits<std::int64_t>::max();

void SetSizeAndTime(const Record& record, FileRow& row) {
    const FileState& state = record.state;
    const fiid_result& answer = record.answer;
    const bool told = !record.error;
    if (told ? answer.size <= largestColumn : state.known) {
        row.size = static_cast<std::int64_t>(told ? answer.size : state.size);
    }
    if (told && answer.modified_known != 0) {
        row.mtime = answer.modified_seconds;
        row.mtimeNs = answer.modified_nanoseconds;
    } else if (state.known) {
        row.mtime = state.modifiedSeconds;
        row.mtimeNs = state.modifiedNanoseconds;
    }
    if (state.known) row.inode = static_cast<std::int64_t>(state.inode);
    // A file that grows while it is looked at, or one of /proc that tells no size, is looked at again.
    row.seenAtRest = told && state.known && row.size == static_cast<std::int64_t>(state.size) &&
                     row.mtime == state.modifiedSeconds && row.mtimeNs == state.modifiedNanoseconds;
}

std::optional<std::int64_t> NumberIfAny(const Statement& row, int column) {
    return row.IsNull(column) ? std::nullopt : std::optional(row.Number(column));
}

}  // namespace

FileRow MakeFileRow(const Record& record, std::int64_t lookedSeconds) {
    FileRow row;
    row.key = KeyOfPath(NormalisedPath(record.path));
    row.hash = BytesOfHex(record.hash);
    row.seen = lookedSeconds;
    if (record.error) row.error = KeyOfPath(*record.error).text;  // it may name a path
    SetSizeAndTime(record, row);
    return row;
}

void BindIfAny(Statement& statement, int parameter, const std::optional<std::int64_t>& number) {
    if (number) {
        statement.Bind(parameter, *number);
    } else {
        statement.BindNull(parameter);
    }
}

void BindTextIfAny(Statement& statement, int parameter, bool any, std::string_view text) {
    if (any) {
        statement.BindText(parameter, text);
    } else {
        statement.BindNull(parameter);
    }
}

void BindFile(Statement& statement, const Record& record, const FileRow& row) {
    const bool told = !record.error;
    statement.BindText(1, row.key.text);
    statement.BindText(2, row.key.hex);
    BindIfAny(statement, 3, told ? std::optional(row.answer) : std::nullopt);
    BindTextIfAny(statement, 4, !told, told ? std::string_view() : *row.error);
    statement.Bind(5, told ? record.answer.warnings : 0);
    BindIfAny(statement, 6, row.size);
    BindIfAny(statement, 7, row.mtime);
    BindIfAny(statement, 8, row.mtime ? std::optional<std::int64_t>(row.mtimeNs) : std::nullopt);
    if (row.hash.empty()) {
        statement.BindNull(11);
    } else {
        statement.BindBlob(11, row.hash);
    }
}

void BindLook(Statement& statement, const Record& record, const FileRow& row) {
    const bool told = !record.error;
    const auto ifTold = [told](std::uint64_t number) {
        return told ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
    };
    BindIfAny(statement, 9, row.inode);
    BindIfAny(statement, 10,
              record.state.known ? std::optional(static_cast<std::int64_t>(record.state.device)) : std::nullopt);
    BindTextIfAny(statement, 12, told && record.answer.explanation[0] != '\0', record.answer.explanation);
    BindIfAny(statement, 13, ifTold(record.answer.bytes_read));
    BindIfAny(statement, 14, ifTold(record.answer.calls));
    BindIfAny(statement, 15, row.seenAtRest ? std::optional(row.seen) : std::nullopt);
}

Earlier ReadEarlier(const Statement& row, const Record& record, const FileRow& now) {
    Earlier earlier;
    earlier.answer = NumberIfAny(row, 0);
    earlier.error = row.Text(1);
    earlier.hash = row.Bytes(6);
    earlier.run = row.Number(8);
    earlier.sameState = NumberIfAny(row, 2) == now.size && NumberIfAny(row, 3) == now.mtime &&
                        (!now.mtime || row.Number(4) == now.mtimeNs) && NumberIfAny(row, 5) == now.inode;
    if (earlier.answer && !record.error) {
        earlier.sameAnswer = row.Number(9) == record.answer.fiid && row.Number(10) == record.answer.further &&
                             row.Text(11) == record.answer.version;
    }
    earlier.hashHolds = earlier.sameState && !row.IsNull(7) && row.Number(3) < row.Number(7) - coarsestClock;
    return earlier;
}

bool IsUnchanged(const Earlier& earlier, const FileRow& now) {
    if (!earlier.answer || now.error) return !earlier.answer && now.error == earlier.error;
    const bool otherHash = earlier.hash.size() == now.hash.size() && earlier.hash != now.hash;
    return earlier.sameState && earlier.sameAnswer && !otherHash;
}
