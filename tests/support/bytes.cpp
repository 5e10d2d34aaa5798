#include "support/bytes.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

class BytesParser {
 public:
    explicit BytesParser(std::string_view notation) : notation_(notation), rest_(notation) {}

    std::string ParseAll() {
        std::string bytes;
        ParseItems(bytes);
        if (!rest_.empty()) Fail("a ) too many");
        return bytes;
    }

 private:
    [[noreturn]] void Fail(const char* reason) const {
        std::fprintf(stderr, "FIBytes: %s at \"%.*s\" in: %.*s\n", reason, static_cast<int>(rest_.size()), rest_.data(),
                     static_cast<int>(notation_.size()), notation_.data());
        std::abort();
    }

    bool Take(char sign) {
        if (rest_.empty() || rest_.front() != sign) return false;
        rest_.remove_prefix(1);
        return true;
    }

    void ParseItems(std::string& bytes) {
        while (true) {
            while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_.front())) != 0)
                rest_.remove_prefix(1);
            if (rest_.empty() || rest_.front() == ')') return;
            if (Take('>')) {
                const std::uint64_t offset = Number();
                if (offset < bytes.size()) Fail("an offset that is already behind");
                bytes.resize(offset, '\0');
                continue;
            }
            const std::string item = ParseItem();
            const std::uint64_t count = Take('*') ? Number() : 1;
            for (std::uint64_t index = 0; index < count; ++index) bytes += item;
        }
    }

    std::string ParseItem() {
        if (Take('"')) {
            const std::size_t end = rest_.find('"');
            if (end == std::string_view::npos) Fail("a text without an end");
            std::string text(rest_.substr(0, end));
            rest_.remove_prefix(end + 1);
            return text;
        }
        if (Take('(')) {
            std::string group;
            ParseItems(group);
            if (!Take(')')) Fail("a group without an end");
            return group;
        }
        if (rest_.size() > 1 && rest_[1] == ':') return ParseNumberItem();
        const int high = HexDigit();
        return std::string(1, static_cast<char>(high << 4 | HexDigit()));
    }

    std::string ParseNumberItem() {
        const char kind = rest_.front();
        rest_.remove_prefix(2);
        const std::uint64_t value = Number();
        const std::size_t size = kind == 'w' || kind == 'W' ? 2 : 4;
        if (kind != 'w' && kind != 'W' && kind != 'd' && kind != 'D') Fail("an item that is not known");
        if (value >> (8 * size) != 0) Fail("a number that is too large");
        std::string bytes(size, '\0');
        for (std::size_t index = 0; index < size; ++index) {
            const std::size_t place = kind == 'w' || kind == 'd' ? index : size - 1 - index;
            bytes[place] = static_cast<char>(value >> (8 * index) & 0xFF);
        }
        return bytes;
    }

    std::uint64_t Number() {
        const bool hexadecimal = rest_.starts_with("0x");
        if (hexadecimal) rest_.remove_prefix(2);
        std::uint64_t value = 0;
        bool any = false;
        while (!rest_.empty() && std::isxdigit(static_cast<unsigned char>(rest_.front())) != 0) {
            if (!hexadecimal && std::isdigit(static_cast<unsigned char>(rest_.front())) == 0) break;
            value = value * (hexadecimal ? 16 : 10) + static_cast<std::uint64_t>(HexDigit());
            any = true;
        }
        if (!any) Fail("a number is missing");
        return value;
    }

    int HexDigit() {
        if (rest_.empty() || std::isxdigit(static_cast<unsigned char>(rest_.front())) == 0) {
            Fail("a hexadecimal digit is missing");
        }
        const char digit = rest_.front();
        rest_.remove_prefix(1);
        if (digit <= '9') return digit - '0';
        return (digit & 0xDF) - 'A' + 10;
    }

    std::string_view notation_;
    std::string_view rest_;
};

}  // namespace

std::string FIBytes(std::string_view notation) { return BytesParser(notation).ParseAll(); }

std::string FIRepeat(std::string_view bytes, std::size_t times) {
    std::string all;
    all.reserve(bytes.size() * times);
    for (std::size_t time = 0; time < times; ++time) all += bytes;
    return all;
}

std::string FIBigEndian(std::uint64_t number, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t place = size; place-- > 0; number >>= 8) bytes[place] = static_cast<char>(number & 0xFF);
    return bytes;
}
