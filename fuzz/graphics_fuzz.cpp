// graphics_fuzz.cpp - fuzz target for the routines of the graphics formats. Each input is a file.
#include "fuzz/laws.h"
#include "graphics/card_images.h"
#include "graphics/cgm.h"
#include "graphics/class_records.h"
#include "graphics/corel.h"
#include "graphics/drawings.h"
#include "graphics/eps_preview.h"
#include "graphics/icons.h"
#include "graphics/jpeg.h"
#include "graphics/macpaint.h"
#include "graphics/marked_records.h"
#include "graphics/netpbm.h"
#include "graphics/postscript.h"
#include "graphics/raw_fax.h"
#include "graphics/x_dumps.h"
#include "graphics/x_images.h"

namespace {

template <FIID (*probe)(FIReader& reader)>
FIID Run(FIReader& reader, const char*) {
    return probe(reader);
}

const FuzzRoutine routines[] = {
    // clang-format off
    {"raw fax",        Run<FIProbeRawFax>,        0, FuzzReading::inBlocks,      2048,          {1505}},
    {"IGES",           Run<FIProbeIges>,          0, FuzzReading::inBlocks,      fuzzUnbounded, {1569}},
    {"marked records", Run<FIProbeMarkedRecords>, 0, FuzzReading::inBlocks,      2000,          {1570}},
    {"XBM",            Run<FIProbeXbm>,           0, FuzzReading::inBlocks,      4096,          {1571}},
    {"XPM",            Run<FIProbeXpm>,           0, FuzzReading::inBlocks,      4096,          {1572}},
    {"Netpbm",         Run<FIProbeNetpbm>,        0, FuzzReading::throughReader, fuzzUnbounded, {1588, 1589, 1590}},
    {"EPS preview",    Run<FIProbeEpsPreview>,    0, FuzzReading::throughReader, 2048,          {1504}},
    {"icon",           Run<FIProbeIconFile>,      0, FuzzReading::throughReader, 3 * 2048,      {1515, 1516}},
    {"JPEG",           Run<FIProbeJpeg>,          3, FuzzReading::throughReader, fuzzUnbounded, {1535, 1599, jpegSeekFailed}},
    {"XWD",            Run<FIProbeXwd>,           0, FuzzReading::throughReader, 2048,          {1575}},
    {"Corel RIFF",     Run<FIProbeCorelRiff>,     0, FuzzReading::throughReader, 2048,
                       {1521, 1537, 1541, 1582, 1583, 1596, 1598, 1629, 1630}},
    {"class records",  Run<FIProbeClassRecords>,  0, FuzzReading::throughReader, 6 * 2048,      {1601}},
    {"DXF",            Run<FIProbeDxf>,           0, FuzzReading::throughReader, fuzzUnbounded, {1544}},
    {"MIF",            Run<FIProbeMif>,           8, FuzzReading::throughReader, fuzzUnbounded,
                       {1129, 1130, 1131, 1135, 1136, 1137, 1166, 1167, 1168}},
    {"PDF",            Run<FIProbePdf>,           0, FuzzReading::throughReader, 2048,          {1557}},
    {"MacPaint",       Run<FIProbeMacPaint>,      0, FuzzReading::throughReader, 2 * 2048,      {1518}},
    {"CGM",            Run<FIProbeCgm>,           0, FuzzReading::throughReader, fuzzUnbounded, {1528}},
    {"PostScript",     Run<FIProbePostScript>,    0, FuzzReading::throughReader, 2 * 2048,      {1580}},
    // clang-format on
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzCheckRoutines(routines, {{reinterpret_cast<const char*>(data), size}});
    return 0;
}
