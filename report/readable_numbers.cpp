// readable_numbers.cpp - digits, commas and units.
#include "report/readable_numbers.h"

#include <string_view>

namespace {

constexpr std::string_view units[] = {"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};

// A size in a unit of 1 << shift bytes, above 0.
struct Scaled {
    std::uint64_t tenths;
    std::uint64_t whole;
};

Scaled Scale(std::uint64_t bytes, unsigned shift) {
    const std::uint64_t whole = bytes >> shift;
    const std::uint64_t rest = bytes & ((std::uint64_t{1} << shift) - 1);
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    // rest is below 1 << 60, so that ten times as much and a half fit.
    return {whole * 10 + ((rest * 10 + half) >> shift), whole + (rest >= half ? 1 : 0)};
}

void AppendTenths(std::string& out, std::uint64_t tenths) {
    out += std::to_string(tenths / 10);
    out += '.';
    out += static_cast<char>('0' + tenths % 10);
}

}  // namespace

void AppendGroupedNumber(std::string& out, std::uint64_t number) {
    const std::string digits = std::to_string(number);
    for (std::size_t index = 0; index < digits.size(); ++index) {
        if (index != 0 && (digits.size() - index) % 3 == 0) out += ',';
        out += digits[index];
    }
}

void AppendReadableSize(std::string& out, std::uint64_t bytes) {
    std::size_t unit = 0;
    while (unit + 1 < std::size(units) && bytes >> (10 * unit) >= 1024) ++unit;
    if (unit == 0) {
        out += std::to_string(bytes);
    } else {
        Scaled scaled = Scale(bytes, static_cast<unsigned>(10 * unit));
        if (scaled.whole == 1024) {  // only rounding reaches it, and never in the last unit
            ++unit;
            scaled = {10, 1};
        }
        if (scaled.tenths < 1000) {
            AppendTenths(out, scaled.tenths);
        } else {
            out += std::to_string(scaled.whole);
        }
    }
    out += ' ';
    out += units[unit];
}

std::uint64_t RoundedShare(std::uint64_t part, std::uint64_t whole, std::uint32_t steps) {
    if (whole == 0) return 0;
    // So that the products fit; what is lost is not told.
    while (whole >= std::uint64_t{1} << 40) {
        whole >>= 1;
        part >>= 1;
    }
    return (2 * part * steps + whole) / (2 * whole);
}

void AppendPercent(std::string& out, std::uint64_t part, std::uint64_t whole) {
    AppendTenths(out, RoundedShare(part, whole, 1000));
    out += '%';
}
