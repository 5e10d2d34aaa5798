// record_facts.cpp - what a record has to tell.
#include "report/record_facts.h"

#include "report/value_text.h"

bool HasAnswer(const Record& record) { return !record.error.has_value() && record.answer.fiid != 0; }

std::optional<std::uint64_t> SizeOf(const Record& record) {
    if (HasAnswer(record) && record.answer.size != FIID_SIZE_UNKNOWN) return record.answer.size;
    return record.state.known ? std::optional(record.state.size) : std::nullopt;
}

std::optional<std::int64_t> ModifiedSecondsOf(const Record& record) {
    const bool answered = HasAnswer(record) && record.answer.modified_known != 0;
    if (!answered && !record.state.known) return std::nullopt;
    const std::int64_t seconds = answered ? record.answer.modified_seconds : record.state.modifiedSeconds;
    return TimeHasAForm(seconds) ? std::optional(seconds) : std::nullopt;
}

std::string_view WordOf(ChangeKind kind) {
    switch (kind) {
        case ChangeKind::None:
            break;
        case ChangeKind::New:
            return "new";
        case ChangeKind::Changed:
            return "changed";
        case ChangeKind::Gone:
            return "gone";
    }
    return "";
}
