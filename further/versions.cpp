// versions.cpp - which rule reads the version of which format.
#include "further/versions.h"

#include <algorithm>

#include "further/data_versions.h"
#include "further/document_versions.h"
#include "further/drawing_versions.h"
#include "further/image_versions.h"
#include "further/markup_versions.h"
#include "further/media_versions.h"

namespace {

struct FIVersionRule {
    std::uint16_t identifier;
    bool (*read)(FILook& look, FIVersion& version);
};

// In the order of the identifiers.
constexpr FIVersionRule rules[] = {
    // clang-format off
    { 1028, FIReadRtfVersion},
    { 1101, FIReadHtmlVersion},
    { 1147, FIReadHtmlVersion},               // exported by Word
    { 1150, FIReadXmlVersion},
    { 1502, FIReadPcxVersion},
    { 1503, FIReadGifVersion},
    { 1504, FIReadEpsWithPreviewVersion},
    { 1528, FIReadCgmVersion},
    { 1535, FIReadJpegVersion},
    { 1544, FIReadDxfVersion},
    { 1545, FIReadBinaryDxfVersion},
    { 1554, FIReadPostScriptVersion},         // with the Adobe comment
    { 1557, FIReadPdfVersion},
    { 1564, FIReadEnhancedMetafileVersion},
    { 1580, FIReadPostScriptVersion},
    { 1587, FIReadDrawingVersion},
    { 1591, FIReadPhotoshopVersion},
    { 1599, FIReadJpegVersion},               // progressive
    { 1700, FIReadWaveVersion},
    { 1704, FIReadFlashVersion},              // version 4 to 7
    {20068, FIReadInDesignVersion},
    {20107, FIReadRealAudioVersion},
    {20112, FIReadFlashVersion},
    {20113, FIReadFlashVersion},              // compressed
    {20120, FIReadMxfVersion},
    {20134, FIReadRarVersion},
    {20145, FIReadRpmVersion},
    {20167, FIReadArcVersion},
    {20184, FIReadPythonVersion},
    {20188, FIReadProgramDatabaseVersion},
    {20207, FIReadSasDataVersion},
    {20210, FIReadStataVersion},
    {20229, FIReadOutlookExpressVersion},
    {20241, FIReadEarlyDrawingVersion},
    {20250, FIReadBlenderVersion},
    {20252, FIReadSketchUpVersion},
    {20262, FIReadEmbeddedFontVersion},
    {20300, FIReadSvgVersion},
    {20378, FIReadInDesignLibraryVersion},
    {20380, FIReadSasCatalogueVersion},
    // clang-format on
};
static_assert(std::ranges::adjacent_find(rules, std::ranges::greater_equal(), &FIVersionRule::identifier) ==
              std::ranges::end(rules));

// The rule of a format, or null.
const FIVersionRule* FIFindRule(std::uint16_t identifier) {
    const auto* const rule = std::ranges::lower_bound(rules, identifier, {}, &FIVersionRule::identifier);
    return rule != std::ranges::end(rules) && rule->identifier == identifier ? rule : nullptr;
}

}  // namespace

bool FIReadVersion(FILook& look, std::uint16_t identifier, FIVersion& version) {
    // Rules take what is missing for a sign, too: bytes that can't be read are none.
    if (look.startIsCut) return false;
    const FIVersionRule* const rule = FIFindRule(identifier);
    return rule != nullptr && rule->read(look, version);
}

bool FIHasVersionRule(std::uint16_t identifier) { return FIFindRule(identifier) != nullptr; }
