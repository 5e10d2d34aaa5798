// notation.h - the notation that signature rows are written in, and its assembler, which runs in the compiler.
//
//   Written            Bytecode (FIOpcode)
//   0A FF              literal bytes in hexadecimal pairs; FF becomes FF FF
//   "text"             literal bytes of the text, case as shown
//   >0                 Rewind
//   >512               Seek to a decimal offset
//   >end-128           SeekEnd with the offset -128
//   +4                 Skip 4
//   [00-1F]  [..]*2    Range with the count 1, or with the count behind the star
//   (37/39)            Either
//   !00                Not
//   out[0000-0006]     Outside with the count 1; two words
//   ext "TGA"          Ext
//   {registry form}    ClassId; the 16 bytes are the GUID's memory form, the first three groups reversed
//   xmlns H1 /path     XmlNs; the web address of host H1, H2 or H3 and the path
//   noop(FF 0C 00)     the three bytes FF 0C 00: a call of an unknown routine, which the interpreter turns into nothing
//   (always)           no test
//
// Items are separated by blanks. A row's result follows its items as Id or Call, then FF E0. A mistake in the notation
// stops the compilation, with the reason as the argument of FINotationError.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "signatures/bytecode.h"
#include "signatures/namespace_hosts.h"
#include "signatures/routine_needs.h"

// How a row ends: with an identifier, or with a call of a special routine.
struct FIRowResult {
    FIOpcode opcode;
    std::uint16_t number;
};

consteval FIRowResult Id(std::uint16_t identifier) { return {FIOpcode::Id, identifier}; }
consteval FIRowResult Call(std::uint16_t routine) { return {FIOpcode::Call, routine}; }

// One row of the table, as a reader compares it.
struct FISignatureRow {
    std::uint16_t row;           // 1 to 404, without a gap
    std::string_view signature;  // in the notation above
    FIRowResult result;
    std::string_view format;  // what the signature is, as far as it says so itself; empty where it says nothing more
};

// Not constexpr, so that the compiler stops at a wrong notation and shows the reason.
[[noreturn]] void FINotationError(const char* reason);

// Where assembled bytes go: nowhere, when only their number is wanted.
struct FICodeWriter {
    std::uint8_t* bytes = nullptr;
    std::size_t count = 0;

    constexpr void Byte(std::uint8_t byte) {
        if (bytes != nullptr) bytes[count] = byte;
        ++count;
    }
    constexpr void Opcode(FIOpcode opcode) {
        Byte(opcodePrefix);
        Byte(static_cast<std::uint8_t>(opcode));
    }
    constexpr void Word(std::uint16_t word) {
        Byte(static_cast<std::uint8_t>(word & 0xFF));
        Byte(static_cast<std::uint8_t>(word >> 8));
    }
    constexpr void DWord(std::uint32_t value) {
        Word(static_cast<std::uint16_t>(value & 0xFFFF));
        Word(static_cast<std::uint16_t>(value >> 16));
    }
    constexpr void Literal(std::uint8_t byte) {
        if (byte == opcodePrefix) Byte(opcodePrefix);
        Byte(byte);
    }
    constexpr void Text(std::string_view text) {
        for (const char character : text) Byte(static_cast<std::uint8_t>(character));
    }
};

// The rest of a row's notation that is still to be assembled.
struct FINotation {
    std::string_view rest;

    constexpr bool Take(std::string_view expected) {
        if (!rest.starts_with(expected)) return false;
        rest.remove_prefix(expected.size());
        return true;
    }
    constexpr void Expect(std::string_view expected) {
        if (!Take(expected)) FINotationError("a sign that belongs here is missing");
    }
    constexpr bool AtDigit() const { return !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; }

    constexpr std::uint32_t Decimal() {
        if (!AtDigit()) FINotationError("a decimal number is missing");
        std::uint32_t value = 0;
        while (AtDigit()) {
            value = value * 10 + static_cast<std::uint32_t>(rest.front() - '0');
            rest.remove_prefix(1);
        }
        return value;
    }
    constexpr std::uint8_t DecimalByte() {
        const std::uint32_t value = Decimal();
        if (value > 0xFF) FINotationError("a count is above 255");
        return static_cast<std::uint8_t>(value);
    }
    constexpr std::uint8_t HexDigit() {
        const char digit = rest.empty() ? ' ' : rest.front();
        rest.remove_prefix(rest.empty() ? 0 : 1);
        if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
        if (digit < 'A' || digit > 'F') FINotationError("a hexadecimal digit is missing");
        return static_cast<std::uint8_t>(digit - 'A' + 10);
    }
    constexpr std::uint8_t HexByte() {
        const std::uint8_t high = HexDigit();
        return static_cast<std::uint8_t>(high << 4 | HexDigit());
    }
    constexpr std::uint16_t HexWord() {
        const std::uint8_t high = HexByte();
        return static_cast<std::uint16_t>(high << 8 | HexByte());
    }
    // The text up to the next sign given, which is taken too.
    constexpr std::string_view UpTo(char sign) {
        const std::size_t length = rest.find(sign);
        if (length == std::string_view::npos) FINotationError("a closing sign is missing");
        const std::string_view text = rest.substr(0, length);
        rest.remove_prefix(length + 1);
        return text;
    }
};

constexpr void FIAssembleSeek(FINotation& notation, FICodeWriter& code) {
    if (notation.Take("end-")) {
        code.Opcode(FIOpcode::SeekEnd);
        code.DWord(~notation.Decimal() + 1);  // the negative offset in 32 bits
        return;
    }
    const std::uint32_t offset = notation.Decimal();
    if (offset == 0) {
        code.Opcode(FIOpcode::Rewind);
        return;
    }
    code.Opcode(FIOpcode::Seek);
    code.DWord(offset);
}

constexpr void FIAssembleRange(FINotation& notation, FICodeWriter& code) {
    const std::uint8_t low = notation.HexByte();
    notation.Expect("-");
    const std::uint8_t high = notation.HexByte();
    notation.Expect("]");
    if (high < low) FINotationError("a range that nothing can pass");
    code.Opcode(FIOpcode::Range);
    code.Byte(notation.Take("*") ? notation.DecimalByte() : std::uint8_t{1});
    code.Byte(low);
    code.Byte(high);
}

constexpr void FIAssembleOutside(FINotation& notation, FICodeWriter& code) {
    code.Opcode(FIOpcode::Outside);
    code.Byte(1);
    code.Word(notation.HexWord());
    notation.Expect("-");
    code.Word(notation.HexWord());
    notation.Expect("]");
}

constexpr void FIAssembleEither(FINotation& notation, FICodeWriter& code) {
    code.Opcode(FIOpcode::Either);
    code.Byte(notation.HexByte());
    notation.Expect("/");
    code.Byte(notation.HexByte());
    notation.Expect(")");
}

constexpr void FIAssembleExtension(FINotation& notation, FICodeWriter& code) {
    const std::string_view text = notation.UpTo('"');
    code.Opcode(FIOpcode::Ext);
    code.Byte(static_cast<std::uint8_t>(text.size()));
    code.Text(text);
}

// {33221100-5544-7766-8899-AABBCCDDEEFF} lies in memory as 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF.
constexpr void FIAssembleClassId(FINotation& notation, FICodeWriter& code) {
    code.Opcode(FIOpcode::ClassId);
    const std::uint16_t high = notation.HexWord();
    code.Word(notation.HexWord());
    code.Word(high);
    for (std::size_t group = 0; group < 2; ++group) {
        notation.Expect("-");
        code.Word(notation.HexWord());
    }
    notation.Expect("-");
    for (std::size_t index = 0; index < 8; ++index) {
        if (index == 2) notation.Expect("-");
        code.Byte(notation.HexByte());
    }
    notation.Expect("}");
}

constexpr void FIAssembleNamespace(FINotation& notation, FICodeWriter& code) {
    const std::uint32_t host = notation.Decimal();
    notation.Expect(" ");
    if (host < 1 || host > std::size(namespaceHosts)) FINotationError("a host that is not known");
    const std::string_view path = notation.rest;
    notation.rest = {};
    if (namespaceHosts[host - 1].size() + path.size() >= namespaceOperandLimit) {
        FINotationError("a namespace of 255 bytes or more");
    }
    code.Opcode(FIOpcode::XmlNs);
    code.Text(namespaceHosts[host - 1]);
    code.Text(path);
    code.Byte(0);
}

constexpr void FIAssembleNoop(FICodeWriter& code) {
    code.Opcode(FIOpcode::Call);
    code.Byte(0);
}

constexpr void FIAssembleText(FINotation& notation, FICodeWriter& code) {
    for (const char character : notation.UpTo('"')) code.Literal(static_cast<std::uint8_t>(character));
}

constexpr void FIAssembleItem(FINotation& notation, FICodeWriter& code) {
    if (notation.Take(">")) return FIAssembleSeek(notation, code);
    if (notation.Take("\"")) return FIAssembleText(notation, code);
    if (notation.Take("[")) return FIAssembleRange(notation, code);
    if (notation.Take("out[")) return FIAssembleOutside(notation, code);
    if (notation.Take("(always)")) return;
    if (notation.Take("(")) return FIAssembleEither(notation, code);
    if (notation.Take("ext \"")) return FIAssembleExtension(notation, code);
    if (notation.Take("{")) return FIAssembleClassId(notation, code);
    if (notation.Take("xmlns H")) return FIAssembleNamespace(notation, code);
    if (notation.Take("noop(FF 0C 00)")) return FIAssembleNoop(code);
    if (notation.Take("+")) {
        code.Opcode(FIOpcode::Skip);
        return code.Byte(notation.DecimalByte());
    }
    if (notation.Take("!")) {
        code.Opcode(FIOpcode::Not);
        return code.Byte(notation.HexByte());
    }
    code.Literal(notation.HexByte());
}

// Assembles a row's items; the result and the row end come behind them.
constexpr void FIAssembleSignature(std::string_view signature, FICodeWriter& code) {
    FINotation notation = {signature};
    while (true) {
        FIAssembleItem(notation, code);
        if (notation.rest.empty()) return;
        notation.Expect(" ");
    }
}

// Rows of a table are FISignatureRow, or what a further table makes of it: they have a signature and a result.
template <typename Row>
constexpr void FIAssembleRow(const Row& row, FICodeWriter& code) {
    FIAssembleSignature(row.signature, code);
    code.Opcode(row.result.opcode);
    code.Word(row.result.number);
    code.Opcode(FIOpcode::RowEnd);
}

template <const auto& rows>
consteval std::size_t FIMeasureRows() {
    FICodeWriter code;
    for (const auto& row : rows) FIAssembleRow(row, code);
    return code.count;
}

// The bytecode of a family of rows, and where in it each row starts.
template <std::size_t rowCount, std::size_t byteCount>
struct FIAssembledRows {
    std::array<std::uint8_t, byteCount> bytes;
    std::array<std::uint16_t, rowCount> starts;
};

template <const auto& rows>
consteval auto FIAssembleRows() {
    FIAssembledRows<std::size(rows), FIMeasureRows<rows>()> assembled = {};
    static_assert(FIMeasureRows<rows>() <= 0xFFFF, "a start is told in 16 bits");
    FICodeWriter code = {assembled.bytes.data()};
    std::size_t index = 0;
    for (const auto& row : rows) {
        assembled.starts[index++] = static_cast<std::uint16_t>(code.count);
        FIAssembleRow(row, code);
    }
    return assembled;
}

// Whether a row may stand under a number: numbers have no gap, an identifier of 0 would be a row that fails, and a
// routine that is called stands in routineNeeds.
constexpr bool FIIsGoodRow(const FISignatureRow& row, std::uint16_t number) {
    if (row.row != number || row.result.number == 0) return false;
    if (row.result.opcode == FIOpcode::Id) return true;
    if (row.result.opcode != FIOpcode::Call) return false;
    for (const FIRoutineNeeds& routine : routineNeeds) {
        if (routine.number == row.result.number) return true;
    }
    return false;
}

// Checks a family of rows, the first of which has the number first. Returns 0, or the first row that is not good.
template <const auto& rows>
consteval std::uint16_t FICheckRows(std::uint16_t first) {
    for (const FISignatureRow& row : rows) {
        if (!FIIsGoodRow(row, first)) return first;
        ++first;
    }
    return 0;
}
