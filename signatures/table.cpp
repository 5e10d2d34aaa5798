// table.cpp - the signature table as one block of bytes, with everything that has to lie behind it.
#include "signatures/table.h"

#include <algorithm>
#include <cstdlib>

#include "signatures/character_classes.h"
#include "signatures/class_rows.h"
#include "signatures/document_rows.h"
#include "signatures/media_rows.h"
#include "signatures/sheet_rows.h"

namespace {

// One evaluation per family keeps g++ and clang within their default limits.
constexpr auto classCode = FIAssembleRows<classRows>();
constexpr auto documentCode = FIAssembleRows<documentRows>();
constexpr auto mediaCode = FIAssembleRows<mediaRows>();
constexpr auto sheetCode = FIAssembleRows<sheetRows>();

constexpr std::uint16_t firstClassRow = 1;
constexpr std::uint16_t firstDocumentRow = firstClassRow + std::size(classRows);
constexpr std::uint16_t firstMediaRow = firstDocumentRow + std::size(documentRows);
constexpr std::uint16_t firstSheetRow = firstMediaRow + std::size(mediaRows);
static_assert(FIFirstRowOutOfOrder<classRows>(firstClassRow) == 0, "rows are numbered without a gap");
static_assert(FIFirstRowOutOfOrder<documentRows>(firstDocumentRow) == 0, "rows are numbered without a gap");
static_assert(FIFirstRowOutOfOrder<mediaRows>(firstMediaRow) == 0, "rows are numbered without a gap");
static_assert(FIFirstRowOutOfOrder<sheetRows>(firstSheetRow) == 0, "rows are numbered without a gap");
static_assert(firstSheetRow + std::size(sheetRows) - 1 == signatureRowCount, "404 rows and the closing entry");

static_assert(FIFirstRowHoldingRowEnd<classRows>() == 0, "FF E0 or FF E1 as data stops the scan for the next row");
static_assert(FIFirstRowHoldingRowEnd<documentRows>() == 0, "FF E0 or FF E1 as data stops the scan for the next row");
static_assert(FIFirstRowHoldingRowEnd<mediaRows>() == 0, "FF E0 or FF E1 as data stops the scan for the next row");
static_assert(FIFirstRowHoldingRowEnd<sheetRows>() == 0, "FF E0 or FF E1 as data stops the scan for the next row");

static_assert(FIFirstRowCallingUnknown<classRows>() == 0, "Call of a number that core/routines has not");
static_assert(FIFirstRowCallingUnknown<documentRows>() == 0, "Call of a number that core/routines has not");
static_assert(FIFirstRowCallingUnknown<mediaRows>() == 0, "Call of a number that core/routines has not");
static_assert(FIFirstRowCallingUnknown<sheetRows>() == 0, "Call of a number that core/routines has not");

static_assert(FIFirstRowWithoutResult<classRows>() == 0, "every row ends in Id or Call");
static_assert(FIFirstRowWithoutResult<documentRows>() == 0, "every row ends in Id or Call");
static_assert(FIFirstRowWithoutResult<mediaRows>() == 0, "every row ends in Id or Call");
static_assert(FIFirstRowWithoutResult<sheetRows>() == 0, "every row ends in Id or Call");

constexpr std::size_t rowBytes = classCode.size() + documentCode.size() + mediaCode.size() + sheetCode.size();
constexpr std::size_t tableEndBytes = 2;
constexpr std::size_t tableBytes = rowBytes + tableEndBytes;

// Behind everything: should a file ever hold the nine zero bytes and then what the class tables spell as a row, the
// closing entry ends here as a failed row. Whatever item the byte in front leaves open, the zeros close it.
constexpr std::array<std::uint8_t, 24> failedRow = {0, 0, 0, 0, 0, 0, 0, 0, 0,    0,    0, 0,
                                                    0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0x08, 0, 0};

constexpr std::size_t binHexStart = tableBytes + zeroBytesBehindTable;
constexpr std::size_t uuStart = binHexStart + binHexClass.size();
constexpr std::size_t xxStart = uuStart + uuClass.size();
constexpr std::size_t failedRowStart = xxStart + xxClass.size();
constexpr std::size_t blockBytes = failedRowStart + failedRow.size();

// The table, nine zero bytes, binHexClass, uuClass and xxClass, in this order and with nothing between them.
consteval std::array<std::uint8_t, blockBytes> FIJoinBlock() {
    std::array<std::uint8_t, blockBytes> block = {};
    auto end = std::copy(classCode.begin(), classCode.end(), block.begin());
    end = std::copy(documentCode.begin(), documentCode.end(), end);
    end = std::copy(mediaCode.begin(), mediaCode.end(), end);
    end = std::copy(sheetCode.begin(), sheetCode.end(), end);
    *end++ = opcodePrefix;
    *end = static_cast<std::uint8_t>(FIOpcode::TableEnd);
    std::copy(binHexClass.begin(), binHexClass.end(), block.begin() + binHexStart);
    std::copy(uuClass.begin(), uuClass.end(), block.begin() + uuStart);
    std::copy(xxClass.begin(), xxClass.end(), block.begin() + xxStart);
    std::copy(failedRow.begin(), failedRow.end(), block.begin() + failedRowStart);
    return block;
}

constexpr std::array<std::uint8_t, blockBytes> block = FIJoinBlock();

constexpr std::uint8_t FILookUpSigned(std::size_t tableStart, char character) {
    // char is read as signed on every machine: 0x80 to 0xFF are -128 to -1.
    const auto index = static_cast<std::int8_t>(character);
    return block[static_cast<std::size_t>(static_cast<std::ptrdiff_t>(tableStart) + index)];
}

// The bytes of 128 and above that pass for BinHex characters because the tail of the signature table lies there.
constexpr std::uint8_t passingHighBytes[] = {
    0x81, 0x82, 0x83, 0x87, 0x89, 0x8D, 0x92, 0x93, 0x97, 0x98, 0x9A, 0x9B, 0x9C, 0xA0, 0xA9, 0xAB, 0xAF, 0xB1,
    0xB5, 0xB7, 0xBB, 0xBD, 0xC1, 0xC2, 0xC7, 0xC9, 0xCD, 0xCE, 0xD3, 0xD5, 0xD9, 0xDB, 0xDF, 0xE5, 0xE6, 0xE7,
    0xE9, 0xEA, 0xEC, 0xED, 0xEE, 0xF0, 0xF1, 0xF2, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,
};

// The first byte of 128 and above that passes and is not listed, or is listed and does not pass; 0 when all agree.
consteval std::uint32_t FIFirstWrongHighByte() {
    constexpr std::uint8_t highestValue = 63;
    for (std::uint32_t byte = 0x80; byte <= 0xFF; ++byte) {
        const bool passes = FILookUpSigned(binHexStart, static_cast<char>(byte)) <= highestValue;
        const bool listed =
            std::find(std::begin(passingHighBytes), std::end(passingHighBytes), byte) != std::end(passingHighBytes);
        if (passes != listed) return byte;
    }
    return 0;
}
static_assert(FIFirstWrongHighByte() == 0, "the tail of the signature table decides which high bytes pass for BinHex");

}  // namespace

void FINotationError(const char*) { std::abort(); }

const std::uint8_t* FISignatureTable() { return block.data(); }

std::size_t FISignatureTableSize() { return tableBytes; }

const FISignatureRow* FIFindSignatureRow(std::uint16_t number) {
    if (number >= firstSheetRow && number <= signatureRowCount) return &sheetRows[number - firstSheetRow];
    if (number >= firstSheetRow || number == 0) return nullptr;
    if (number >= firstMediaRow) return &mediaRows[number - firstMediaRow];
    if (number >= firstDocumentRow) return &documentRows[number - firstDocumentRow];
    return &classRows[number - firstClassRow];
}

std::uint8_t FIBinHexClass(char character) { return FILookUpSigned(binHexStart, character); }
std::uint8_t FIUuClass(char character) { return FILookUpSigned(uuStart, character); }
std::uint8_t FIXxClass(char character) { return FILookUpSigned(xxStart, character); }
