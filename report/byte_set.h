// byte_set.h - sets of bytes: those that a format does not take as they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class ByteSet {
 public:
    constexpr explicit ByteSet(std::string_view bytes) {
        for (const char byte : bytes) holds_[static_cast<std::uint8_t>(byte)] = true;
    }
    // The same set with those from first to last.
    constexpr ByteSet With(std::uint8_t first, std::uint8_t last) const {
        ByteSet set = *this;
        for (std::size_t byte = first; byte <= last; ++byte) set.holds_[byte] = true;
        return set;
    }

    constexpr bool Holds(char byte) const { return holds_[static_cast<std::uint8_t>(byte)]; }

    // Appends the bytes in front of the first one of the set, and removes them. Returns whether there is such a one:
    // text begins with it.
    bool AppendUpTo(std::string& out, std::string_view& text) const {
        std::size_t count = 0;
        while (count < text.size() && !Holds(text[count])) ++count;
        out.append(text.data(), count);
        text.remove_prefix(count);
        return !text.empty();
    }

 private:
    std::array<bool, 256> holds_ = {};
};
