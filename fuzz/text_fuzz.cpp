// text_fuzz.cpp - fuzz target for the text probes: header lines, mail, encoded text and extended text identification.
//
// The first byte of the input chooses the file's extension and the capacity of the lines read; the rest is the file.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "catalogue/format_not_known.h"
#include "fuzz/laws.h"
#include "reader/header_line.h"
#include "reader/reader.h"
#include "text/encoded_text.h"
#include "text/mail.h"

namespace {

struct FileName {
    const char* name;
    const char* extension;
};

constexpr FileName fileNames[] = {
    {"", ""},           {"f.eml", "EML"}, {"f.nws", "NWS"}, {"f.mht", "MHT"},
    {"f.mhtm", "MHTM"}, {"f.uue", "UUE"}, {"f.hqx", "HQX"}, {"f.txt", "TXT"},
};

constexpr std::uint64_t mailBytes = 300 * 1024 + FIReaderBufferSize;
// Each of the 4,096 positions of a sample takes two bytes at most, when it is a CR behind a CR.
constexpr std::uint64_t sampleBytes = 2 * 4096 + FIReaderBufferSize;

FIID RunEncodedText(FIReader& reader, const char*) { return FIProbeEncodedText(reader); }

FIID RunExtendedText(FIReader& reader, const char*) {
    FIID answer = 0;
    FuzzRequire(FIExtTextID(&reader, &answer) == 0, "extended text", "a status of failure");
    return answer;
}

const FuzzRoutine routines[] = {
    // clang-format off
    {"mail",          FIProbeMail,     0, FuzzReading::throughReader, mailBytes,
                      {1132, 1187, 1192, 1193, 1194, 1195, 1198, 1817}},
    {"encoded text",  RunEncodedText,  0, FuzzReading::throughReader, fuzzUnbounded,
                      {4050, 4051, 4052, 4053, 4054, 4055, 4056, 4057}},
    {"extended text", RunExtendedText, 0, FuzzReading::throughReader, sampleBytes, {1184, 4005, 4022, formatNotKnown}},
    // clang-format on
};

// Every byte comes once: in a line, or as a part of a line end.
void CheckHeaderLines(std::string_view bytes, std::uint16_t capacity) {
    FuzzHandle handle = FuzzMakeHandle(bytes);
    FIReader reader;
    FIReaderStart(reader, &handle.file);
    char line[headerLineBufferSize];
    std::uint64_t stored = 0;
    while (FIReaderTell(reader) < bytes.size()) {
        const std::uint16_t length = FIReadHeaderLine(line, capacity, reader);
        FuzzRequire(length < capacity && line[length] == '\0', "header line", "too long or without an end");
        FuzzRequire(std::memchr(line, '\n', length) == nullptr && std::memchr(line, '\r', length) == nullptr,
                    "header line", "holds a line end");
        stored += length;
    }
    const auto isLineEnd = [](char byte) { return byte == '\r' || byte == '\n'; };
    const auto lineEnds = static_cast<std::uint64_t>(std::count_if(bytes.begin(), bytes.end(), isLineEnd));
    FuzzRequire(stored + lineEnds == bytes.size(), "header line", "lost a byte");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    constexpr std::uint16_t capacities[] = {2, 3, 4, 16, 46, 64, 128, headerLineCapacity};
    const FileName& fileName = fileNames[data[0] % std::size(fileNames)];
    const std::uint16_t capacity = capacities[data[0] / std::size(fileNames) % std::size(capacities)];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    CheckHeaderLines(bytes, capacity);
    FuzzCheckRoutines(routines, {bytes, fileName.name, fileName.extension});
    return 0;
}
