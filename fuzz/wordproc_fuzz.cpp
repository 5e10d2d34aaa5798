// wordproc_fuzz.cpp - fuzz target for the routines of word-processor formats without magic. Each input is a file.
#include "fuzz/laws.h"
#include "text/memo_headers.h"
#include "text/vcard.h"
#include "wordproc/block_structures.h"
#include "wordproc/code_statistics.h"
#include "wordproc/function_codes.h"
#include "wordproc/trailers.h"
#include "wordproc/version_sections.h"
#include "wordproc/word_pro.h"

namespace {

template <FIID (*probe)(FIReader& reader)>
FIID Run(FIReader& reader, const char*) {
    return probe(reader);
}

template <FIID number>
FIID RunPipeCodes(FIReader& reader, const char*) {
    return FIProbePipeCodes(reader, number);
}

const FuzzRoutine routines[] = {
    // clang-format off
    {"1003", Run<FIProbeHighBitWords>,    0, FuzzReading::throughReader, 2 * 2048,      {1003}},
    {"1007", Run<FIProbeBlockHeader>,     0, FuzzReading::throughReader, 6 * 2048,      {1006, 1007, 1039}},
    {"1010", Run<FIProbeWordChecksum>,    0, FuzzReading::throughReader, fuzzUnbounded, {1010}},
    {"1018", Run<FIProbeMirroredLengths>, 0, FuzzReading::throughReader, 9 * 2048,      {1018}},
    {"1019", Run<FIProbeEscapeHeader>,    0, FuzzReading::throughReader, fuzzUnbounded, {1019}},
    {"1020", Run<FIProbeLayoutTrailer>,   0, FuzzReading::throughReader, fuzzUnbounded, {1020, 1024}},
    {"1021", RunPipeCodes<1021>,          0, FuzzReading::throughReader, 2 * 2048,      {1021}},
    {"1023", Run<FIProbeFunctionCodes>,   0, FuzzReading::throughReader, fuzzUnbounded, {1023, 1035}},
    {"1025", Run<FIProbeBlockList>,       0, FuzzReading::throughReader, 4 * 2048,      {1025}},
    {"1034", Run<FIProbeCommandCounts>,   0, FuzzReading::throughReader, fuzzUnbounded, {1022, 1033, 1034}},
    {"1041", Run<FIProbeEntryTable>,      0, FuzzReading::throughReader, 4 * 2048,      {1041}},
    {"1057", Run<FIProbeVersionSections>, 0, FuzzReading::throughReader, fuzzUnbounded, {1056, 1057}},
    {"1077", RunPipeCodes<1077>,          0, FuzzReading::throughReader, 2 * 2048,      {1077}},
    {"1108", Run<FIProbeWordPro>,         0, FuzzReading::throughReader, 3 * 2048,      {1108, 1145, 1999}},
    {"1132", Run<FIProbeMemoHeader>,      0, FuzzReading::throughReader, 9 * 2048,      {1132}},
    {"1141", Run<FIProbeVCard>,           0, FuzzReading::throughReader, fuzzUnbounded, {1141, 1196}},
    // clang-format on
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzCheckRoutines(routines, {{reinterpret_cast<const char*>(data), size}});
    return 0;
}
