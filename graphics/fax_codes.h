// fax_codes.h - the run-length codes of one-dimensional Group 3 fax, and what a decoder derives from them.
//
// A row of pixels is a sequence of runs, white first, then black and white in turn. A run below 64 is one terminating
// code. A longer run is make-up codes, each a multiple of 64, and one terminating code for the rest.
//
// Source: ITU-T T.4, tables 2/T.4 (terminating codes), 3a/T.4 (make-up codes) and 3b/T.4 (extended make-up codes, which
// are the same for both colours).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

struct FIFaxRun {
    std::uint16_t pixels;
    std::string_view white;  // the codes as the stream holds them, first bit first
    std::string_view black;
};

inline constexpr std::size_t faxCodeCount = 104;
inline constexpr std::uint32_t faxFirstMakeUp = 64;  // as an index; the terminating codes stand below
inline constexpr std::uint32_t faxMakeUpStep = 64;

// The pixels of the run whose code has this index.
constexpr std::uint32_t FIGetFaxRunPixels(std::uint32_t index) {
    return index < faxFirstMakeUp ? index : (index - (faxFirstMakeUp - 1)) * faxMakeUpStep;
}

// By index: 0 to 63 the terminating codes of runs 0 to 63; 64 to 90 the make-up codes of 64 to 1728 in steps of 64; 91
// to 103 the extended make-up codes of 1792 to 2560.
inline constexpr FIFaxRun faxRuns[] = {
    // clang-format off
    // run   white        black
    // Table 2/T.4
    {   0, "00110101",  "0000110111"},
    {   1, "000111",    "010"},
    {   2, "0111",      "11"},
    {   3, "1000",      "10"},
    {   4, "1011",      "011"},
    {   5, "1100",      "0011"},
    {   6, "1110",      "0010"},
    {   7, "1111",      "00011"},
    {   8, "10011",     "000101"},
    {   9, "10100",     "000100"},
    {  10, "00111",     "0000100"},
    {  11, "01000",     "0000101"},
    {  12, "001000",    "0000111"},
    {  13, "000011",    "00000100"},
    {  14, "110100",    "00000111"},
    {  15, "110101",    "000011000"},
    {  16, "101010",    "0000010111"},
    {  17, "101011",    "0000011000"},
    {  18, "0100111",   "0000001000"},
    {  19, "0001100",   "00001100111"},
    {  20, "0001000",   "00001101000"},
    {  21, "0010111",   "00001101100"},
    {  22, "0000011",   "00000110111"},
    {  23, "0000100",   "00000101000"},
    {  24, "0101000",   "00000010111"},
    {  25, "0101011",   "00000011000"},
    {  26, "0010011",   "000011001010"},
    {  27, "0100100",   "000011001011"},
    {  28, "0011000",   "000011001100"},
    {  29, "00000010",  "000011001101"},
    {  30, "00000011",  "000001101000"},
    {  31, "00011010",  "000001101001"},
    {  32, "00011011",  "000001101010"},
    {  33, "00010010",  "000001101011"},
    {  34, "00010011",  "000011010010"},
    {  35, "00010100",  "000011010011"},
    {  36, "00010101",  "000011010100"},
    {  37, "00010110",  "000011010101"},
    {  38, "00010111",  "000011010110"},
    {  39, "00101000",  "000011010111"},
    {  40, "00101001",  "000001101100"},
    {  41, "00101010",  "000001101101"},
    {  42, "00101011",  "000011011010"},
    {  43, "00101100",  "000011011011"},
    {  44, "00101101",  "000001010100"},
    {  45, "00000100",  "000001010101"},
    {  46, "00000101",  "000001010110"},
    {  47, "00001010",  "000001010111"},
    {  48, "00001011",  "000001100100"},
    {  49, "01010010",  "000001100101"},
    {  50, "01010011",  "000001010010"},
    {  51, "01010100",  "000001010011"},
    {  52, "01010101",  "000000100100"},
    {  53, "00100100",  "000000110111"},
    {  54, "00100101",  "000000111000"},
    {  55, "01011000",  "000000100111"},
    {  56, "01011001",  "000000101000"},
    {  57, "01011010",  "000001011000"},
    {  58, "01011011",  "000001011001"},
    {  59, "01001010",  "000000101011"},
    {  60, "01001011",  "000000101100"},
    {  61, "00110010",  "000001011010"},
    {  62, "00110011",  "000001100110"},
    {  63, "00110100",  "000001100111"},
    // Table 3a/T.4
    {  64, "11011",     "0000001111"},
    { 128, "10010",     "000011001000"},
    { 192, "010111",    "000011001001"},
    { 256, "0110111",   "000001011011"},
    { 320, "00110110",  "000000110011"},
    { 384, "00110111",  "000000110100"},
    { 448, "01100100",  "000000110101"},
    { 512, "01100101",  "0000001101100"},
    { 576, "01101000",  "0000001101101"},
    { 640, "01100111",  "0000001001010"},
    { 704, "011001100", "0000001001011"},
    { 768, "011001101", "0000001001100"},
    { 832, "011010010", "0000001001101"},
    { 896, "011010011", "0000001110010"},
    { 960, "011010100", "0000001110011"},
    {1024, "011010101", "0000001110100"},
    {1088, "011010110", "0000001110101"},
    {1152, "011010111", "0000001110110"},
    {1216, "011011000", "0000001110111"},
    {1280, "011011001", "0000001010010"},
    {1344, "011011010", "0000001010011"},
    {1408, "011011011", "0000001010100"},
    {1472, "010011000", "0000001010101"},
    {1536, "010011001", "0000001011010"},
    {1600, "010011010", "0000001011011"},
    {1664, "011000",    "0000001100100"},
    {1728, "010011011", "0000001100101"},
    // Table 3b/T.4
    {1792, "00000001000",  "00000001000"},
    {1856, "00000001100",  "00000001100"},
    {1920, "00000001101",  "00000001101"},
    {1984, "000000010010", "000000010010"},
    {2048, "000000010011", "000000010011"},
    {2112, "000000010100", "000000010100"},
    {2176, "000000010101", "000000010101"},
    {2240, "000000010110", "000000010110"},
    {2304, "000000010111", "000000010111"},
    {2368, "000000011100", "000000011100"},
    {2432, "000000011101", "000000011101"},
    {2496, "000000011110", "000000011110"},
    {2560, "000000011111", "000000011111"},
    // clang-format on
};
static_assert(std::size(faxRuns) == faxCodeCount);

// Bits of the longest code, and so of the key of a lookup.
inline constexpr std::uint32_t faxLongestCode = 13;

// Entry n has the lowest n bits set.
inline constexpr std::array<std::uint16_t, 9> faxBitMask = {0x00, 0x01, 0x03, 0x07, 0x0F, 0x1F, 0x3F, 0x7F, 0xFF};

using FIFaxBytes = std::array<std::uint8_t, faxCodeCount>;

// A code as a number. A byte holds every one of them, since the codes of more than 8 bits start with zeros.
constexpr std::uint16_t FIGetFaxCodeValue(std::string_view code) {
    std::uint16_t value = 0;
    for (const char bit : code) value = static_cast<std::uint16_t>(value << 1 | (bit == '1' ? 1 : 0));
    return value;
}

constexpr FIFaxBytes FIMakeFaxCodes(std::string_view FIFaxRun::*colour) {
    FIFaxBytes values{};
    for (std::size_t index = 0; index < faxCodeCount; ++index) {
        values[index] = static_cast<std::uint8_t>(FIGetFaxCodeValue(faxRuns[index].*colour));  // checked below
    }
    return values;
}

constexpr FIFaxBytes FIMakeFaxLengths(std::string_view FIFaxRun::*colour) {
    FIFaxBytes lengths{};
    for (std::size_t index = 0; index < faxCodeCount; ++index) {
        lengths[index] = static_cast<std::uint8_t>((faxRuns[index].*colour).size());  // checked below
    }
    return lengths;
}

// The codes as numbers, and their lengths in bits.
inline constexpr FIFaxBytes faxWhiteCodes = FIMakeFaxCodes(&FIFaxRun::white);
inline constexpr FIFaxBytes faxBlackCodes = FIMakeFaxCodes(&FIFaxRun::black);
inline constexpr FIFaxBytes faxWhiteLengths = FIMakeFaxLengths(&FIFaxRun::white);
inline constexpr FIFaxBytes faxBlackLengths = FIMakeFaxLengths(&FIFaxRun::black);

// The index of the code that the next 13 bits of a stream start with, or faxNoCode.
using FIFaxLookup = std::array<std::uint8_t, std::size_t{1} << faxLongestCode>;
inline constexpr std::uint8_t faxNoCode = 0xFF;

constexpr FIFaxLookup FIMakeFaxLookup(const FIFaxBytes& codes, const FIFaxBytes& lengths) {
    FIFaxLookup lookup{};
    for (std::uint8_t& entry : lookup) entry = faxNoCode;
    for (std::size_t index = 0; index < faxCodeCount; ++index) {
        const std::uint32_t freeBits = faxLongestCode - lengths[index];
        const std::size_t first = std::size_t{codes[index]} << freeBits;
        for (std::size_t key = first; key < first + (std::size_t{1} << freeBits); ++key) {
            lookup[key] = static_cast<std::uint8_t>(index);  // below 104
        }
    }
    return lookup;
}

inline constexpr FIFaxLookup faxWhiteLookup = FIMakeFaxLookup(faxWhiteCodes, faxWhiteLengths);
inline constexpr FIFaxLookup faxBlackLookup = FIMakeFaxLookup(faxBlackCodes, faxBlackLengths);

// ---- Checks: each gives the index of the first row that breaks the rule, or faxCodeCount ----------------------------

constexpr std::size_t FIFirstFaxRunOutOfOrder() {
    std::uint32_t index = 0;
    while (index < faxCodeCount && faxRuns[index].pixels == FIGetFaxRunPixels(index)) ++index;
    return index;
}

// A code is 1 to 13 characters '0' and '1', and its value fits in a byte.
constexpr bool FIIsFaxCode(std::string_view code) {
    return !code.empty() && code.size() <= faxLongestCode && code.find_first_not_of("01") == std::string_view::npos &&
           FIGetFaxCodeValue(code) <= 0xFF;
}

constexpr std::size_t FIFirstFaxRunMisspelled() {
    std::size_t index = 0;
    while (index < faxCodeCount && FIIsFaxCode(faxRuns[index].white) && FIIsFaxCode(faxRuns[index].black)) ++index;
    return index;
}

// No code of a colour is the start of another one.
constexpr std::size_t FIFirstFaxPrefix(std::string_view FIFaxRun::*colour) {
    for (std::size_t index = 0; index < faxCodeCount; ++index) {
        for (std::size_t other = 0; other < faxCodeCount; ++other) {
            if (other != index && (faxRuns[other].*colour).starts_with(faxRuns[index].*colour)) return index;
        }
    }
    return faxCodeCount;
}

// The Kraft sum of a colour in units of 2 to the -13: how many of the 8,192 keys have a code. It stays below all of
// them, because the end-of-line mark must start like no code.
constexpr std::size_t FICountFaxKeys(const FIFaxBytes& lengths) {
    std::size_t keys = 0;
    for (const std::uint8_t length : lengths) keys += std::size_t{1} << (faxLongestCode - length);
    return keys;
}

static_assert(FIFirstFaxRunOutOfOrder() == faxCodeCount, "a run that its index does not tell");
static_assert(FIFirstFaxRunMisspelled() == faxCodeCount, "a code is up to 13 bits, with a value below 256");
static_assert(FIFirstFaxPrefix(&FIFaxRun::white) == faxCodeCount, "a white code starts another white code");
static_assert(FIFirstFaxPrefix(&FIFaxRun::black) == faxCodeCount, "a black code starts another black code");
static_assert(FICountFaxKeys(faxWhiteLengths) < faxWhiteLookup.size());
static_assert(FICountFaxKeys(faxBlackLengths) < faxBlackLookup.size());
static_assert(faxWhiteLookup[0] == faxNoCode && faxBlackLookup[0] == faxNoCode, "the mark's zeros are no code");
