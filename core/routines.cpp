// routines.cpp - the index of all special routines: number, function, and the file in which it is told.
//
// A number is a name. It usually equals an identifier that the routine returns, but a routine may answer for several
// formats, and routine 1999 never returns 1999.
#include "core/routines.h"

#include <algorithm>
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
#include "signatures/routine_numbers.h"
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
    {1003, FIProbeHighBitWords, nullptr},                                               // wordproc/code_statistics.h
    {1007, FIProbeBlockHeader, nullptr},                                                // wordproc/block_structures.h
    {1010, FIProbeWordChecksum, nullptr},                                               // wordproc/trailers.h
    {1018, FIProbeMirroredLengths, nullptr},                                            // wordproc/block_structures.h
    {1019, FIProbeEscapeHeader, nullptr},                                               // wordproc/trailers.h
    {1020, FIProbeLayoutTrailer, nullptr},                                              // wordproc/trailers.h
    {1021, [](FIReader& reader) { return FIProbePipeCodes(reader, 1021); }, nullptr},   // wordproc/trailers.h
    {1023, FIProbeFunctionCodes, nullptr},                                              // wordproc/function_codes.h
    {1025, FIProbeBlockList, nullptr},                                                  // wordproc/block_structures.h
    {1034, FIProbeCommandCounts, nullptr},                                              // wordproc/code_statistics.h
    {1041, FIProbeEntryTable, nullptr},                                                 // wordproc/block_structures.h
    {1057, FIProbeVersionSections, nullptr},                                            // wordproc/version_sections.h
    {1077, [](FIReader& reader) { return FIProbePipeCodes(reader, 1077); }, nullptr},   // wordproc/trailers.h
    {1082, FIProbeBookStorage, nullptr},                                                // storage/named_streams.h
    {1108, FIProbeWordPro, nullptr},                                                    // wordproc/word_pro.h
    {1132, FIProbeMemoHeader, nullptr},                                                 // text/memo_headers.h
    {1141, FIProbeVCard, nullptr},                                                      // text/vcard.h
    {1146, FIProbeWordStorage, nullptr},                                                // storage/word_storage.h
    {1168, FIProbeMif, nullptr},                                                        // graphics/drawings.h
    {1187, nullptr, FIProbeMail},                                                       // text/mail.h
    {1190, FIProbeMarkup, nullptr},                                                     // package/markup.h
    {1201, FIProbeXBaseTable, nullptr},                                                 // sheets/table_headers.h
    {1206, FIProbeFieldTable, nullptr},                                                 // sheets/table_headers.h
    {1210, FIProbeLinkedRecords, nullptr},                                              // sheets/rbf_records.h
    {1212, FIProbeRepeatedName, nullptr},                                               // sheets/table_headers.h
    {1213, FIProbeSlotMarker, nullptr},                                                 // sheets/rbf_records.h
    {1416, FIProbeWorksheetRecords, nullptr},                                           // sheets/worksheet_records.h
    {1445, FIProbeNativeContentStorage, nullptr},                                       // storage/named_streams.h
    {1446, FIProbeWorkbookStorage, nullptr},                                            // storage/workbook_storage.h
    {1447, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1447); }, nullptr}, // storage/named_streams.h
    {1450, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1450); }, nullptr}, // storage/named_streams.h
    {1453, [](FIReader& reader) { return FIProbePerfectOfficeStorage(reader, 1453); }, nullptr}, // storage/named_streams.h
    {1504, FIProbeEpsPreview, nullptr},                                                 // graphics/eps_preview.h
    {1505, FIProbeRawFax, nullptr},                                                     // graphics/raw_fax.h
    {1515, FIProbeIconFile, nullptr},                                                   // graphics/icons.h
    {1518, FIProbeMacPaint, nullptr},                                                   // graphics/macpaint.h
    {1528, FIProbeCgm, nullptr},                                                        // graphics/cgm.h
    {1535, FIProbeJpeg, nullptr},                                                       // graphics/jpeg.h
    {1544, FIProbeDxf, nullptr},                                                        // graphics/drawings.h
    {1557, FIProbePdf, nullptr},                                                        // graphics/drawings.h
    {1569, FIProbeIges, nullptr},                                                       // graphics/card_images.h
    {1570, FIProbeMarkedRecords, nullptr},                                              // graphics/marked_records.h
    {1571, FIProbeXbm, nullptr},                                                        // graphics/x_images.h
    {1572, FIProbeXpm, nullptr},                                                        // graphics/x_images.h
    {1575, FIProbeXwd, nullptr},                                                        // graphics/x_dumps.h
    {1579, FIProbeDesignerStorage, nullptr},                                            // storage/named_streams.h
    {1580, FIProbePostScript, nullptr},                                                 // graphics/postscript.h
    {1588, FIProbeNetpbm, nullptr},                                                     // graphics/netpbm.h
    {1597, FIProbeVisioStorage, nullptr},                                               // storage/named_streams.h
    {1598, FIProbeCorelRiff, nullptr},                                                  // graphics/corel.h
    {1601, FIProbeClassRecords, nullptr},                                               // graphics/class_records.h
    {1631, FIProbeVisioStorage, nullptr},                                               // storage/named_streams.h
    {1705, FIProbeQuickTime, nullptr},                                                  // media/quicktime.h
    {1708, FIProbeId3Trailer, nullptr},                                                 // media/mpeg_audio.h
    {1709, FIProbeId3Header, nullptr},                                                  // media/mpeg_audio.h
    {1710, FIProbeMpegAudio, nullptr},                                                  // media/mpeg_audio.h
    {1802, FIProbePackage, nullptr},                                                    // package/package_probe.h
    {1803, FIProbeZipStub, nullptr},                                                    // media/archives.h
    {1807, FIProbeTar, nullptr},                                                        // media/archives.h
    {1814, FIProbeLhaStub, nullptr},                                                    // media/archives.h
    {1999, nullptr, FIProbeStorage},                                                    // storage/storage_dispatcher.h
    {4050, FIProbeEncodedText, nullptr},                                                // text/encoded_text.h
    // clang-format on
};

static_assert(std::ranges::is_sorted(routineNumbers));
static_assert(std::ranges::equal(routines, routineNumbers, {}, &FIRoutine::number));

}  // namespace

const FIRoutine* FIFindRoutine(std::uint16_t number) {
    const FIRoutine* const found =
        std::lower_bound(std::begin(routines), std::end(routines), number,
                         [](const FIRoutine& routine, std::uint16_t wanted) { return routine.number < wanted; });
    return found != std::end(routines) && found->number == number ? found : nullptr;
}

FIID FIRunRoutine(const FIRoutine& routine, FIReader& reader, const char* extension) {
    if (routine.probeWithExtension != nullptr) return routine.probeWithExtension(reader, extension);
    return routine.probe(reader);
}
