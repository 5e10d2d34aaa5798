// size_text.cpp - sizes as people write them.
#include "scan/size_text.h"

#include <charconv>
#include <system_error>

namespace {

// The unit with index n has 1024 to the power of n + 1 bytes.
constexpr std::string_view unitLetters = "KMGTPE";
constexpr unsigned bitsOfStep = 10;

char UpperCase(char letter) { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter; }

// Takes a letter from the beginning of a text, if it stands there, capital or small.
bool TakeLetter(std::string_view& text, char capital) {
    if (text.empty() || UpperCase(text.front()) != capital) return false;
    text.remove_prefix(1);
    return true;
}

// Takes a unit from the beginning of a text and returns how many bits further left its count stands; 0 if there is
// none.
unsigned TakeUnit(std::string_view& text) {
    for (std::size_t index = 0; index < unitLetters.size(); ++index) {
        if (TakeLetter(text, unitLetters[index])) return static_cast<unsigned>(index + 1) * bitsOfStep;
    }
    return 0;
}

}  // namespace

std::optional<std::uint64_t> ParseSize(std::string_view text) {
    std::uint64_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, failure] = std::from_chars(text.data(), end, count);
    if (failure != std::errc()) return std::nullopt;

    std::string_view rest(behind, static_cast<std::size_t>(end - behind));
    const unsigned bits = TakeUnit(rest);
    const bool binary = bits != 0 && TakeLetter(rest, 'I');
    const bool inBytes = TakeLetter(rest, 'B');
    if (!rest.empty() || (binary && !inBytes)) return std::nullopt;
    if (count > UINT64_MAX >> bits) return std::nullopt;
    return count << bits;
}
