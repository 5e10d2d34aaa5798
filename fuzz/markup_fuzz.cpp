// markup_fuzz.cpp - fuzz target for XML and HTML text: the namespace scan, the prolog, the tags and the probe over
// both.
//
// The first byte of the input chooses the file's extension; the rest is the file.
#include <algorithm>
#include <iterator>

#include "fuzz/laws.h"
#include "package/html_tags.h"
#include "package/markup.h"
#include "package/xml_namespace.h"
#include "package/xml_prolog.h"
#include "reader/reader.h"

namespace {

constexpr const char* names[] = {"", "f.xml", "f.htm", "f.html", "f.svg", "f.wml", "f.txt", "f.xhtm"};

// The scans look at a few hundred bytes. Steps back near the end of a short file read its last stretch again.
constexpr std::uint64_t scanBytes = 16 * FIReaderBufferSize;

template <FIID (*probe)(FIReader& reader)>
FIID Run(FIReader& reader, const char*) {
    return probe(reader);
}

// The namespace is ended inside its units, and its units are bytes; told as an answer by a sum of them.
FIID RunNamespaceScan(FIReader& reader, const char*) {
    std::uint16_t units[xmlNamespaceUnits] = {xmlNamespaceNotScanned};
    FIScanXmlNamespace(reader, units);
    if (units[0] == xmlNamespaceNotFound) return 0;
    std::uint16_t* const end = std::find(std::begin(units), std::end(units), 0);
    FuzzRequire(end != std::end(units), "namespace", "has no end");
    FuzzRequire(std::all_of(std::begin(units), end, [](std::uint16_t unit) { return unit <= 0xFF; }), "namespace",
                "holds a unit that is no byte");
    return 1;
}

const FuzzRoutine routines[] = {
    // clang-format off
    {"namespace", RunNamespaceScan,      0, FuzzReading::throughReader, scanBytes,     {1}},
    {"prolog",    Run<FIScanXmlProlog>,  0, FuzzReading::throughReader, scanBytes,     {1150, 1151, 1182}},
    {"tags",      Run<FIScanHtmlTags>,   0, FuzzReading::throughReader, scanBytes,     {1101, 1147, 1148, 1149, 1181}},
    {"markup",    Run<FIProbeMarkup>,    0, FuzzReading::throughReader, 2 * scanBytes, {1101, 1147, 1148, 1149, 1150, 1151, 1181}},
    // clang-format on
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char* const name = names[data[0] % std::size(names)];
    FuzzCheckRoutines(routines, {{reinterpret_cast<const char*>(data) + 1, size - 1}, name});
    return 0;
}
