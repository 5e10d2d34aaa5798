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
static_assert(std::max({FICheckRows<classRows>(firstClassRow), FICheckRows<documentRows>(firstDocumentRow),
                        FICheckRows<mediaRows>(firstMediaRow), FICheckRows<sheetRows>(firstSheetRow)}) == 0,
              "the row of this number breaks a rule of FIIsGoodRow; scripts/renumber closes gaps");
static_assert(firstSheetRow + std::size(sheetRows) == signatureEntryCount,
              "signatureRowCount in table.h is the number of rows; scripts/renumber sets it");

constexpr std::size_t documentStart = classCode.bytes.size();
constexpr std::size_t mediaStart = documentStart + documentCode.bytes.size();
constexpr std::size_t sheetStart = mediaStart + mediaCode.bytes.size();
constexpr std::size_t tableEndStart = sheetStart + sheetCode.bytes.size();
constexpr std::size_t tableEndBytes = 2;
constexpr std::size_t tableBytes = tableEndStart + tableEndBytes;
static_assert(tableBytes <= 0xFFFF, "a start is told in 16 bits");

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
    const auto put = [&block](const auto& bytes, std::size_t start) {
        std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(start));
    };
    put(classCode.bytes, 0);
    put(documentCode.bytes, documentStart);
    put(mediaCode.bytes, mediaStart);
    put(sheetCode.bytes, sheetStart);
    block[tableEndStart] = opcodePrefix;
    block[tableEndStart + 1] = static_cast<std::uint8_t>(FIOpcode::TableEnd);
    put(binHexClass, binHexStart);
    put(uuClass, uuStart);
    put(xxClass, xxStart);
    put(failedRow, failedRowStart);
    return block;
}

constexpr std::array<std::uint8_t, blockBytes> block = FIJoinBlock();

// Where each entry starts in the block, the closing one last.
consteval std::array<std::uint16_t, signatureEntryCount> FIJoinStarts() {
    std::array<std::uint16_t, signatureEntryCount> starts = {};
    std::size_t entry = 0;
    const auto put = [&](const auto& family, std::size_t familyStart) {
        for (const std::uint16_t start : family.starts) {
            starts[entry++] = static_cast<std::uint16_t>(familyStart + start);
        }
    };
    put(classCode, 0);
    put(documentCode, documentStart);
    put(mediaCode, mediaStart);
    put(sheetCode, sheetStart);
    starts[entry] = static_cast<std::uint16_t>(tableEndStart);
    return starts;
}

constexpr std::array<std::uint16_t, signatureEntryCount> entryStarts = FIJoinStarts();

}  // namespace

void FINotationError(const char*) { std::abort(); }

const std::uint8_t* FISignatureTable() { return block.data(); }

std::size_t FISignatureTableSize() { return tableBytes; }

const std::uint8_t* FISignatureEntry(std::uint16_t number) { return block.data() + entryStarts[number - 1U]; }

const FISignatureRow* FIFindSignatureRow(std::uint16_t number) {
    if (number >= firstSheetRow && number <= signatureRowCount) return &sheetRows[number - firstSheetRow];
    if (number >= firstSheetRow || number == 0) return nullptr;
    if (number >= firstMediaRow) return &mediaRows[number - firstMediaRow];
    if (number >= firstDocumentRow) return &documentRows[number - firstDocumentRow];
    return &classRows[number - firstClassRow];
}
