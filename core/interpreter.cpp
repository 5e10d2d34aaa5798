// interpreter.cpp - the signature bytecode machine.
#include "core/interpreter.h"

#include <algorithm>

#include "core/routines.h"
#include "reader/file_end.h"
#include "reader/little_endian.h"
#include "reader/reader.h"

namespace {

// The literal FF is compared with the 16-bit value, so the end of the file, whose low byte is FF, does not pass.
bool FITakeLiteral(FIReader& reader, std::uint8_t literal) { return FIReaderGetByte(reader) == literal; }

bool FITakeNot(FIReader& reader, std::uint8_t refused) {
    const std::uint16_t byte = FIReaderGetByte(reader);
    return byte != refused && byte != endOfFile;
}

bool FITakeRange(FIReader& reader, const std::uint8_t* operand) {
    const std::uint8_t count = operand[0];
    for (std::uint8_t taken = 0; taken < count; ++taken) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte < operand[1] || byte > operand[2]) return false;  // the end of the file is above every bound
    }
    return true;
}

// Both halves are always taken. With the end of the file in the high half the word is 0xFF00 with the low byte, and it
// is compared like any other; in the low half the word is 0xFFFF, which never passes.
bool FITakeOutside(FIReader& reader, const std::uint8_t* operand) {
    const std::uint8_t count = operand[0];
    const std::uint16_t low = FILoadWordLE(operand + 1);
    const std::uint16_t high = FILoadWordLE(operand + 3);
    for (std::uint8_t taken = 0; taken < count; ++taken) {
        const std::uint16_t first = FIReaderGetByte(reader);
        const std::uint16_t second = FIReaderGetByte(reader);
        const auto word = static_cast<std::uint16_t>(first | second << 8);
        if (word == endOfFile || (word >= low && word <= high)) return false;
    }
    return true;
}

bool FITakeEither(FIReader& reader, const std::uint8_t* operand) {
    const std::uint16_t byte = FIReaderGetByte(reader);
    return byte == operand[0] || byte == operand[1];
}

// Asks the handle for the place, and lets the reader go there: in its buffer if it can.
bool FISeekFromEnd(FIReader& reader, std::int32_t offset) {
    std::uint32_t position = 0;
    return FITellFromEnd(reader.file, offset, position) && FIReaderSeek(reader, position) == 0;
}

// Compares the text with the start of the extension and moves on in it: a longer extension passes, a shorter one fails
// on its NUL.
bool FITakeExtension(const char*& extension, const std::uint8_t* text, std::uint8_t count) {
    for (std::uint8_t index = 0; index < count; ++index) {
        if (static_cast<std::uint8_t>(*extension) != text[index]) return false;
        ++extension;
    }
    return true;
}

// Compares the operand with the file's XML namespace, for equality. Returns the operand's length with its NUL, or 0
// when they differ. namespaceOperandLimit units that match without a terminator count as a whole match.
std::size_t FITakeNamespace(FIReader& reader, std::uint16_t* units, const std::uint8_t* operand) {
    if (units[0] == xmlNamespaceNotScanned) FIScanXmlNamespace(reader, units);
    if (units[0] == xmlNamespaceNotFound) return 0;
    for (std::size_t index = 0; index < namespaceOperandLimit; ++index) {
        if (units[index] != operand[index]) return 0;
        if (operand[index] == 0) return index + 1;
    }
    return namespaceOperandLimit;
}

// Runs a test: the opcode's operand starts at code, which is moved behind it. Returns whether the test passed.
inline bool FITakeItem(FIOpcode opcode, const std::uint8_t*& code, FIReader& reader, FIRequest& request,
                       const char*& extension) {
    const std::uint8_t* const operand = code;
    switch (opcode) {
        case FIOpcode::Seek:
            code += 4;
            return FIReaderSeek(reader, FILoadDWordLE(operand)) == 0;
        case FIOpcode::Not:
            code += 1;
            return FITakeNot(reader, *operand);
        case FIOpcode::Range:
            code += 3;
            return FITakeRange(reader, operand);
        case FIOpcode::Outside:
            code += 5;
            return FITakeOutside(reader, operand);
        case FIOpcode::Skip:
            code += 1;
            return FIReaderSkip(*operand, reader) == 0;
        case FIOpcode::Rewind:
            return FIReaderSeek(reader, 0) == 0;
        case FIOpcode::Either:
            code += 2;
            return FITakeEither(reader, operand);
        case FIOpcode::Ext:
            code += 1 + *operand;
            return FITakeExtension(extension, operand + 1, *operand);
        case FIOpcode::SeekEnd:
            code += 4;
            return FISeekFromEnd(reader, static_cast<std::int32_t>(FILoadDWordLE(operand)));
        case FIOpcode::ClassId:
            code += classIdSize;
            return request.hasClassId && std::equal(operand, operand + classIdSize, request.classId);
        case FIOpcode::XmlNs: {
            const std::size_t length = FITakeNamespace(reader, request.xmlNamespace, operand);
            code += length;
            return length != 0;
        }
        case FIOpcode::Literal:
            return FITakeLiteral(reader, opcodePrefix);
        default:  // RowEnd, TableEnd and what is no opcode
            return true;
    }
}

}  // namespace

FIID FIRunSignature(const std::uint8_t* row, FIReader& reader, FIRequest& request) {
    const char* extension = request.extension;
    const std::uint8_t* code = row;
    while (true) {
        if (*code != opcodePrefix) {
            if (!FITakeLiteral(reader, *code)) return 0;
            ++code;
            continue;
        }
        const auto opcode = static_cast<FIOpcode>(code[1]);
        code += 2;
        if (opcode == FIOpcode::Id) return FILoadWordLE(code);
        if (opcode == FIOpcode::Call) {
            const FIRoutine* const routine = FIFindRoutine(FILoadWordLE(code));
            if (routine != nullptr) {
                const bool ruledOut =
                    request.head != nullptr && routine->gate != nullptr && !routine->gate(*request.head);
                return ruledOut ? FIID{0} : FIRunRoutine(*routine, reader, extension);
            }
            if (request.calls != nullptr) return request.calls->call(*request.calls, FILoadWordLE(code));
            // Quirk: the number's high byte is taken as the start of the next item. The three rows for PICT data hold
            // FF 0C 00 FF 08: a call of the unknown routine 0xFF00, whose high byte then reads as the FF of Id.
            code += 1;
            continue;
        }
        if (!FITakeItem(opcode, code, reader, request, extension)) return 0;
    }
}
