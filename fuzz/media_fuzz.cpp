// media_fuzz.cpp - fuzz target for the routines of databases, worksheets, media and archives.
//
// The first byte of the input chooses the file's extension; the rest is the file.
#include <iterator>

#include "fuzz/laws.h"
#include "media/archives.h"
#include "media/mpeg_audio.h"
#include "media/quicktime.h"
#include "sheets/rbf_records.h"
#include "sheets/table_headers.h"
#include "sheets/worksheet_records.h"

namespace {

constexpr const char* names[] = {"", "f.rbf", "f.dbf", "f.mp3", "f.mov", "f.tar", "f.exe", "f.wks"};

template <FIID (*probe)(FIReader& reader)>
FIID Run(FIReader& reader, const char*) {
    return probe(reader);
}

const FuzzRoutine routines[] = {
    // clang-format off
    {"xBase table",       Run<FIProbeXBaseTable>,       0, FuzzReading::throughReader, 2 * 2048, {1201, 1202}},
    {"field table",       Run<FIProbeFieldTable>,       0, FuzzReading::throughReader, 2048,     {1206, 1207, 1217}},
    {"repeated name",     Run<FIProbeRepeatedName>,     0, FuzzReading::throughReader, 4 * 2048, {1212}},
    {"linked records",    Run<FIProbeLinkedRecords>,    0, FuzzReading::throughReader, 9 * 2048, {1210}},
    {"slot marker",       Run<FIProbeSlotMarker>,       0, FuzzReading::throughReader, 2048,     {1213}},
    {"worksheet records", Run<FIProbeWorksheetRecords>, 4, FuzzReading::throughReader, 7 * 2048, {1416}},
    {"MPEG audio",        Run<FIProbeMpegAudio>,        0, FuzzReading::throughReader, 4 * 2048,
                          {1706, 1710, 1711, 1712, 1713, 1714, 1715}},
    {"ID3 header",        Run<FIProbeId3Header>,        0, FuzzReading::throughReader, 3 * 2048, {1707, 1709}},
    {"ID3 trailer",       Run<FIProbeId3Trailer>,       0, FuzzReading::throughReader, 2048,     {1706, 1708}},
    {"QuickTime",         Run<FIProbeQuickTime>,        0, FuzzReading::throughReader, 4 * 2048, {1705}},
    {"ZIP stub",          Run<FIProbeZipStub>,          0, FuzzReading::throughReader, 20 * 2048, {1803}},
    {"tar",               Run<FIProbeTar>,              0, FuzzReading::inBlocks,      512,      {1807}},
    {"LHA stub",          Run<FIProbeLhaStub>,          0, FuzzReading::inBlocks,      4096,     {1814}},
    // clang-format on
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const char* const name = names[data[0] % std::size(names)];
    FuzzCheckRoutines(routines, {{reinterpret_cast<const char*>(data) + 1, size - 1}, name});
    return 0;
}
