// routines.cpp - the index of all special routines: number, function, and the file in which it is told.
//
// A number is a name. It usually equals an identifier that the routine returns, but a routine may answer for several
// formats, and routine 1999 never returns 1999.
#include "core/routines.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>

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
#include "media/archives.h"
#include "media/mpeg_audio.h"
#include "media/quicktime.h"
#include "package/markup.h"
#include "package/package_probe.h"
#include "sheets/rbf_records.h"
#include "sheets/table_headers.h"
#include "sheets/worksheet_records.h"
#include "signatures/routine_needs.h"
#include "storage/named_streams.h"
#include "storage/storage_dispatcher.h"
#include "storage/word_storage.h"
#include "storage/workbook_storage.h"
#include "text/encoded_text.h"
#include "text/mail.h"
#include "text/memo_headers.h"
#include "text/vcard.h"
#include "wordproc/block_structures.h"
#include "wordproc/code_statistics.h"
#include "wordproc/function_codes.h"
#include "wordproc/trailers.h"
#include "wordproc/version_sections.h"
#include "wordproc/word_pro.h"

namespace {

constexpr FIRoutine routines[] = {
    // clang-format off
    {1003, FIProbeHighBitWords, nullptr, FIMayBeHighBitWords},                          // wordproc/code_statistics.h
    {1007, FIProbeBlockHeader},                                                         // wordproc/block_structures.h
    {1010, FIProbeWordChecksum},                                                        // wordproc/trailers.h
    {1018, FIProbeMirroredLengths},                                                     // wordproc/block_structures.h
    {1019, FIProbeEscapeHeader},                                                        // wordproc/trailers.h
    {1020, FIProbeLayoutTrailer, nullptr, FIMayBeLayoutTrailer},                        // wordproc/trailers.h
    {1021, [](FIReader& reader) { return FIProbePipeCodes(reader, 1021); }},            // wordproc/trailers.h
    {1023, FIProbeFunctionCodes, nullptr, FIMayHaveFunctionCodes},                      // wordproc/function_codes.h
    {1025, FIProbeBlockList},                                                           // wordproc/block_structures.h
    {1034, FIProbeCommandCounts, nullptr, FIMayHaveCommandCounts},                      // wordproc/code_statistics.h
    {1041, FIProbeEntryTable},                                                          // wordproc/block_structures.h
    {1057, FIProbeVersionSections},                                                     // wordproc/version_sections.h
    {1077, [](FIReader& reader) { return FIProbePipeCodes(reader, 1077); }},            // wordproc/trailers.h
    {1082, FIProbeBookStorage},                                                         // storage/named_streams.h
    {1108, FIProbeWordPro},                                                             // wordproc/word_pro.h
    {1132, FIProbeMemoHeader, nullptr, FIMayBeMemo},                                    // text/memo_headers.h
    {1141, FIProbeVCard},                                                               // text/vcard.h
    {1146, FIProbeWordStorage},                                                         // storage/word_storage.h
    {1168, FIProbeMif},                                                                 // graphics/drawings.h
    {1187, nullptr, FIProbeMail, FIMayBeMail},                                          // text/mail.h
    {1190, FIProbeMarkup},                                                              // package/markup.h
    {1201, FIProbeXBaseTable},                                                          // sheets/table_headers.h
    {1206, FIProbeFieldTable},                                                          // sheets/table_headers.h
    {1210, FIProbeLinkedRecords},                                                       // sheets/rbf_records.h
    {1212, FIProbeRepeatedName},                                                        // sheets/table_headers.h
    {1213, FIProbeSlotMarker},                                                          // sheets/rbf_records.h
    {1416, FIProbeWorksheetRecords},                                                    // sheets/worksheet_records.h
    {1445, FIProbeNativeContentStorage},                                                // storage/named_streams.h
    {1446, FIProbeWorkbookStorage},                                                     // storage/workbook_storage.h
    {1447, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1447); }}, // storage/named_streams.h
    {1450, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1450); }}, // storage/named_streams.h
    {1453, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1453); }}, // storage/named_streams.h
    {1504, FIProbeEpsPreview},                                                          // graphics/eps_preview.h
    {1505, FIProbeRawFax, nullptr, FIMayBeRawFax},                                      // graphics/raw_fax.h
    {1515, FIProbeIconFile},                                                            // graphics/icons.h
    {1518, FIProbeMacPaint},                                                            // graphics/macpaint.h
    {1528, FIProbeCgm},                                                                 // graphics/cgm.h
    {1535, FIProbeJpeg},                                                                // graphics/jpeg.h
    {1544, FIProbeDxf},                                                                 // graphics/drawings.h
    {1557, FIProbePdf, nullptr, FIMayBePdf},                                            // graphics/drawings.h
    {1569, FIProbeIges},                                                                // graphics/card_images.h
    {1570, FIProbeMarkedRecords},                                                       // graphics/marked_records.h
    {1571, FIProbeXbm},                                                                 // graphics/x_images.h
    {1572, FIProbeXpm},                                                                 // graphics/x_images.h
    {1575, FIProbeXwd},                                                                 // graphics/x_dumps.h
    {1579, FIProbeDesignerStorage},                                                     // storage/named_streams.h
    {1580, FIProbePostScript},                                                          // graphics/postscript.h
    {1588, FIProbeNetpbm},                                                              // graphics/netpbm.h
    {1597, FIProbeVisioStorage},                                                        // storage/named_streams.h
    {1598, FIProbeCorelRiff},                                                           // graphics/corel.h
    {1601, FIProbeClassRecords},                                                        // graphics/class_records.h
    {1631, FIProbeVisioStorage},                                                        // storage/named_streams.h
    {1705, FIProbeQuickTime},                                                           // media/quicktime.h
    {1708, FIProbeId3Trailer},                                                          // media/mpeg_audio.h
    {1709, FIProbeId3Header},                                                           // media/mpeg_audio.h
    {1710, FIProbeMpegAudio},                                                           // media/mpeg_audio.h
    {1802, FIProbePackage},                                                             // package/package_probe.h
    {1803, FIProbeZipStub, nullptr, FIMayBeZipStub},                                    // media/archives.h
    {1807, FIProbeTar, nullptr, FIMayBeTar},                                            // media/archives.h
    {1814, FIProbeLhaStub, nullptr, FIMayBeLhaStub},                                    // media/archives.h
    {1999, nullptr, FIProbeStorage},                                                    // storage/storage_dispatcher.h
    {4050, FIProbeEncodedText, nullptr, FIMayBeEncodedText},                            // text/encoded_text.h
    // clang-format on
};

static_assert(std::ranges::is_sorted(routineNeeds, {}, &FIRoutineNeeds::number));
static_assert(std::ranges::equal(routines, routineNeeds, {}, &FIRoutine::number, &FIRoutineNeeds::number));

constexpr std::uint8_t noRoutine = 0xFF;
static_assert(std::size(routines) < noRoutine);

// The index of each routine by its number, so that a row's call costs one look.
constexpr auto routineOfNumber = [] {
    std::array<std::uint8_t, routineNeeds[std::size(routineNeeds) - 1].number + std::size_t{1}> indices = {};
    for (std::uint8_t& index : indices) index = noRoutine;
    for (std::uint8_t index = 0; index < std::size(routineNeeds); ++index) {
        indices[routineNeeds[index].number] = index;
    }
    return indices;
}();

}  // namespace

std::span<const FIRoutine> FIAllRoutines() { return routines; }

const FIRoutine* FIFindRoutine(std::uint16_t number) {
    if (number >= std::size(routineOfNumber)) return nullptr;
    const std::uint8_t index = routineOfNumber[number];
    return index != noRoutine ? &routines[index] : nullptr;
}

FIID FIRunRoutine(const FIRoutine& routine, FIReader& reader, const char* extension) {
    if (routine.probeWithExtension != nullptr) return routine.probeWithExtension(reader, extension);
    return routine.probe(reader);
}
