// compare_strings.cpp - comparison without regard to the case of ASCII letters.
#include <cstdint>

#include "platform/base_utility.h"

namespace {

std::int32_t UTLowerAscii(char character) {
    const auto byte = static_cast<std::uint8_t>(character);
    return byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
}

}  // namespace

extern "C" std::int32_t lstrcmpiA(const char* first, const char* second) {
    while (*first != '\0' && UTLowerAscii(*first) == UTLowerAscii(*second)) {
        ++first;
        ++second;
    }
    return UTLowerAscii(*first) - UTLowerAscii(*second);
}
