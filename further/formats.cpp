// formats.cpp - the records of the second table, checked by the compiler and found by their identifiers.
#include "further/formats.h"

#include <algorithm>
#include <string_view>

#include "further/format_records.h"

static_assert(std::ranges::is_sorted(furtherFormatRecords, std::ranges::less_equal{}, &FIFormatRecord::fiid) &&
              std::ranges::adjacent_find(furtherFormatRecords, {}, &FIFormatRecord::fiid) ==
                  std::ranges::end(furtherFormatRecords));
static_assert(furtherFormatRecords[0].fiid >= firstFurtherFormat);
static_assert(std::ranges::all_of(furtherFormatRecords, [](const FIFormatRecord& format) {
    const std::string_view name = format.name;
    return !name.empty() && name.size() <= longestFormatName;
}));

std::span<const FIFormatRecord> FIFurtherFormats() { return furtherFormatRecords; }

const FIFormatRecord* FIFindFurtherFormat(std::uint16_t identifier) {
    const auto place = std::ranges::lower_bound(furtherFormatRecords, identifier, {}, &FIFormatRecord::fiid);
    return place != std::ranges::end(furtherFormatRecords) && place->fiid == identifier ? place : nullptr;
}
