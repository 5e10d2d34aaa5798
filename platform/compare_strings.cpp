// compare_strings.cpp - comparison without regard to the case of ASCII letters.
#include <cstdint>

#include "platform/base_utility.h"
#include "reader/ascii_case.h"

namespace {

// As a byte: letters above ASCII come behind all others, whatever char is.
std::uint8_t UTLowerByte(char character) { return static_cast<std::uint8_t>(FILowerAscii(character)); }

}  // namespace

extern "C" std::int32_t lstrcmpiA(const char* first, const char* second) {
    while (*first != '\0' && UTLowerByte(*first) == UTLowerByte(*second)) {
        ++first;
        ++second;
    }
    return UTLowerByte(*first) - UTLowerByte(*second);
}
