// string_service.cpp - the strings that are told by keys: the display names of the format identifiers.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "catalogue/format_catalogue.h"
#include "platform/base_utility.h"

extern "C" std::int16_t UTGetString(std::uint32_t key, char* buffer, std::uint16_t size, std::uint32_t) {
    if ((key & ~std::uint32_t{0xFFFF}) != UTStringKeyFormat) return -1;
    const FIFormatRecord* const record = FIFindFormatRecord(static_cast<std::uint16_t>(key & 0xFFFF));
    if (record == nullptr) return -1;
    if (buffer == nullptr || size == 0) return 0;  // the string is there, and there is no room for any of it
    const std::size_t length = std::min<std::size_t>(std::strlen(record->name), size - 1U);
    std::memcpy(buffer, record->name, length);
    buffer[length] = '\0';
    return 0;
}
