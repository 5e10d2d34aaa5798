// key_tests.cpp - documents, fonts and keys that a pattern can't tell.
#include "further/key_tests.h"

#include "further/look_numbers.h"
#include "further/searches.h"

FIID FITellDvi(FILook& look) { return FIEndsWith(look, 4, "\xDF\xDF\xDF\xDF") ? FIID{20256} : FIID{0}; }

FIID FITellTrueType(FILook& look) {
    constexpr std::size_t leastSize = 28;
    constexpr std::size_t directoryOffset = 12;
    constexpr std::size_t entryBytes = 16;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() < leastSize) return 0;
    const std::uint16_t tables = FIWordBE(bytes, 4);
    if (tables < 4 || tables > 64 || bytes.size() < directoryOffset + entryBytes * tables) return 0;
    bool hasHead = false;
    bool hasOther = false;
    for (std::size_t offset = directoryOffset; offset < directoryOffset + entryBytes * tables; offset += entryBytes) {
        hasHead = hasHead || FIStandsAt(bytes, offset, "head");
        for (const std::string_view tag : {"glyf", "cmap", "bloc", "name"}) {
            hasOther = hasOther || FIStandsAt(bytes, offset, tag);
        }
    }
    return hasHead && hasOther ? FIID{20258} : FIID{0};
}

FIID FITellCms(FILook& look) {
    constexpr std::string_view pkcs7Content("\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x07", 10);
    constexpr std::string_view timeStamped("\x06\x0B\x2A\x86\x48\x86\xF7\x0D\x01\x09\x10", 11);
    return FIHeadHolds(look, 2, 6, pkcs7Content) || FIHeadHolds(look, 2, 6, timeStamped) ? FIID{20267} : FIID{0};
}

FIID FITellPkcs12(FILook& look) {
    constexpr std::string_view version3("\x02\x01\x03", 3);
    constexpr std::string_view pkcs7Data("\x06\x09\x2A\x86\x48\x86\xF7\x0D\x01\x07\x01", 11);
    return FIHeadHolds(look, 2, 5, version3) && FIHeadHolds(look, 7, 14, pkcs7Data) ? FIID{20268} : FIID{0};
}

FIID FITellWebVtt(FILook& look) {
    constexpr std::size_t markBytes = 6;
    const FIBytes bytes = FILookAtStart(look);
    if (bytes.size() <= markBytes) return 20278;  // the row has met the mark
    const std::uint8_t behind = bytes[markBytes];
    return behind == '\n' || behind == '\r' || behind == ' ' || behind == '\t' ? FIID{20278} : FIID{0};
}
