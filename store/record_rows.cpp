// record_rows.cpp - reads records from rows.
#include "store/record_rows.h"

#include <algorithm>
#include <cstring>

#include "store/path_key.h"

namespace {

enum Column {
    Path,
    PathHex,
    Answer,
    Error,
    Warnings,
    Size,
    Mtime,
    MtimeNs,
    Inode,
    Device,
    Hash,
    LookedAt,
    BytesRead,
    Calls,
};
static_assert(Calls + 1 == recordColumnCount);

void ReadState(const Statement& row, Record& record) {
    record.state = {};
    record.state.known = !row.IsNull(Inode);
    if (!record.state.known) return;
    record.state.size = FromColumn(row.Number(Size));
    record.state.modifiedSeconds = row.Number(Mtime);
    record.state.modifiedNanoseconds = static_cast<std::uint32_t>(row.Number(MtimeNs));
    record.state.inode = FromColumn(row.Number(Inode));
    record.state.device = FromColumn(row.Number(Device));
}

// What is told of the file itself and of the look at it.
void ReadFacts(const Statement& row, fiid_result& answer) {
    answer.warnings = static_cast<std::uint32_t>(row.Number(Warnings));
    if (!row.IsNull(Size)) answer.size = FromColumn(row.Number(Size));
    answer.modified_known = row.IsNull(Mtime) ? 0 : 1;
    answer.modified_seconds = row.Number(Mtime);
    answer.modified_nanoseconds = static_cast<std::uint32_t>(row.Number(MtimeNs));
    answer.bytes_read = FromColumn(row.Number(BytesRead));
    answer.calls = FromColumn(row.Number(Calls));
    const std::string_view explanation = row.Text(LookedAt);
    const std::size_t size = std::min(explanation.size(), sizeof(answer.explanation) - 1);
    if (size != 0) std::memcpy(answer.explanation, explanation.data(), size);
}

}  // namespace

std::string PathOfRow(const Statement& row) { return PathOfKey(row.Text(Path), row.Text(PathHex)); }

std::int64_t ToColumn(std::uint64_t number) { return static_cast<std::int64_t>(number); }

std::uint64_t FromColumn(std::int64_t number) { return static_cast<std::uint64_t>(number); }

bool ReadRecord(const Statement& row, AnswerTexts& answers, Record& record) {
    record.path = PathOfRow(row);
    record.error.reset();
    record.change = {};
    record.copies = 0;
    record.hash = HexOf(row.Bytes(Hash));
    ReadState(row, record);
    if (row.IsNull(Answer)) {
        ClearResult(record.answer);
        record.error = row.Text(Error);
        return true;
    }
    const StoredAnswer* const answer = answers.Find(row.Number(Answer));
    if (answer == nullptr) return false;
    FillResult(*answer, record.answer);
    ReadFacts(row, record.answer);
    return true;
}
