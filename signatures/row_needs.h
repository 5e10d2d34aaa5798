// row_needs.h - what a row needs of a file's bytes, worked out from its bytecode by the compiler.
//
// A row is run as the interpreter would run it, with all files at once: each test of a byte takes from the values that
// its offset may have those that do not pass. A row's own tests come first, then what the routine needs that it calls.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "signatures/bytecode.h"
#include "signatures/notation.h"
#include "signatures/routine_needs.h"

// A byte's value, or that the file has ended there.
inline constexpr std::uint16_t pastEnd = 256;
inline constexpr std::uint16_t byteValues = 257;

// A set of the 257 values.
struct FIByteSet {
    std::array<std::uint64_t, 5> words;

    constexpr void Add(std::uint16_t first, std::uint16_t last) {
        for (std::uint16_t value = first; value <= last; ++value) words[value / 64U] |= std::uint64_t{1} << value % 64U;
    }
    constexpr bool Holds(std::uint16_t value) const { return (words[value / 64U] >> value % 64U & 1) != 0; }
    constexpr bool operator==(const FIByteSet&) const = default;
};

constexpr FIByteSet FIAllValues() {
    return {{~std::uint64_t{0}, ~std::uint64_t{0}, ~std::uint64_t{0}, ~std::uint64_t{0}, 1}};
}

// Values from low to high, which the end of the file is not.
constexpr FIByteSet FIByteRange(std::uint8_t low, std::uint8_t high) {
    FIByteSet set = {{0, 0, 0, 0, 0}};
    set.Add(low, high);
    return set;
}

// The offsets from the start of the file that every row is judged by.
inline constexpr std::size_t firstOffsets = 4;

// A file that is longer than its head has to show this many bytes.
inline constexpr std::uint32_t leastFilterBytes = 2048;

// One more place: the byte there is from low to high, the file does not end in front of it.
struct FIFarNeed {
    std::uint16_t offset;  // 0 for none
    std::uint8_t low;
    std::uint8_t high;

    constexpr std::uint32_t Width() const { return offset == 0 ? byteValues : std::uint32_t{high} - low; }
};

struct FIRowNeeds {
    std::array<FIByteSet, firstOffsets> first;
    FIFarNeed far;      // of the places behind them, the one with the fewest values
    bool needsClassId;  // and so a storage
};

// Every field is filled in by hand: g++ 12 leaves out default member initialisers in arrays that consteval functions
// return.
constexpr FIRowNeeds FINoNeeds() {
    return {{FIAllValues(), FIAllValues(), FIAllValues(), FIAllValues()}, {0, 0, 0}, false};
}

// Runs bytecode and takes down what it needs.
struct FINeedsRun {
    FIRowNeeds needs;
    std::uint32_t position;
    bool positionKnown;

    constexpr void Take(const FIByteSet& allowed, std::uint8_t low, std::uint8_t high) {
        const std::uint32_t offset = position++;
        if (!positionKnown) return;
        if (offset < firstOffsets) {
            for (std::size_t word = 0; word < allowed.words.size(); ++word) {
                needs.first[offset].words[word] &= allowed.words[word];
            }
            return;
        }
        const FIFarNeed here = {static_cast<std::uint16_t>(offset), low, high};
        if (offset < leastFilterBytes && !allowed.Holds(pastEnd) && here.Width() < needs.far.Width()) needs.far = here;
    }
    constexpr void TakeRange(std::uint8_t low, std::uint8_t high) { Take(FIByteRange(low, high), low, high); }
    constexpr void TakeNot(std::uint8_t refused) {
        FIByteSet allowed = FIByteRange(0, 0xFF);
        allowed.words[refused / 64U] &= ~(std::uint64_t{1} << refused % 64U);
        Take(allowed, refused == 0 ? 1 : 0, refused == 0xFF ? 0xFE : 0xFF);
    }
    constexpr void TakeEither(std::uint8_t one, std::uint8_t other) {
        FIByteSet allowed = FIByteRange(one, one);
        allowed.Add(other, other);
        Take(allowed, one < other ? one : other, one < other ? other : one);
    }
    // Of a word outside a range the low half may be any byte, but not the end of the file. The high half may be that too.
    constexpr void TakeOutside() {
        TakeRange(0, 0xFF);
        Take(FIAllValues(), 0, 0xFF);
    }
    constexpr void GoTo(std::uint32_t offset) {
        position = offset;
        positionKnown = true;
    }
};

constexpr std::uint32_t FINeedsDWord(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

// An XML namespace is looked for behind the start of an XML declaration alone (package/xml_namespace.cpp).
constexpr void FINeedXmlDeclaration(FINeedsRun& run) {
    constexpr std::string_view declarationStart = "<?xml";
    run.GoTo(0);
    for (const char character : declarationStart) {
        run.TakeRange(static_cast<std::uint8_t>(character), static_cast<std::uint8_t>(character));
    }
    run.positionKnown = false;
}

// Takes an operation whose operand starts at code. Returns the operand's length.
constexpr std::size_t FINeedOperation(FIOpcode opcode, const std::uint8_t* code, FINeedsRun& run) {
    switch (opcode) {
        case FIOpcode::Seek:
            run.GoTo(FINeedsDWord(code));
            return 4;
        case FIOpcode::Rewind:
            run.GoTo(0);
            return 0;
        case FIOpcode::SeekEnd:
            run.positionKnown = false;
            return 4;
        case FIOpcode::Not:
            run.TakeNot(code[0]);
            return 1;
        case FIOpcode::Range:
            for (std::uint8_t taken = 0; taken < code[0]; ++taken) run.TakeRange(code[1], code[2]);
            return 3;
        case FIOpcode::Outside:
            for (std::uint8_t taken = 0; taken < code[0]; ++taken) run.TakeOutside();
            return 5;
        case FIOpcode::Skip:
            for (std::uint8_t taken = 0; taken < code[0]; ++taken) run.TakeRange(0, 0xFF);
            return 1;
        case FIOpcode::Either:
            run.TakeEither(code[0], code[1]);
            return 2;
        case FIOpcode::Ext:
            return std::size_t{1} + code[0];
        case FIOpcode::ClassId:
            run.needs.needsClassId = true;
            return classIdSize;
        case FIOpcode::XmlNs: {
            FINeedXmlDeclaration(run);
            std::size_t length = 0;
            while (code[length] != 0) ++length;
            return length + 1;
        }
        case FIOpcode::Literal:
            run.TakeRange(opcodePrefix, opcodePrefix);
            return 0;
        case FIOpcode::Call:
            return 1;  // of an unknown routine: the interpreter goes on behind one byte
        default:
            return 0;
    }
}

// Runs size bytes of bytecode. The result at their end is not among them.
constexpr void FINeedCode(const std::uint8_t* code, std::size_t size, FINeedsRun& run) {
    const std::uint8_t* const end = code + size;
    while (code < end) {
        const std::uint8_t byte = *code++;
        if (byte != opcodePrefix) {
            run.TakeRange(byte, byte);
            continue;
        }
        const auto opcode = static_cast<FIOpcode>(*code++);
        code += FINeedOperation(opcode, code, run);
    }
}

constexpr FIRowNeeds FINeedsOfSignature(std::string_view signature) {
    constexpr std::size_t longestSignature = 512;  // in bytecode; a longer one does not compile
    std::array<std::uint8_t, longestSignature> bytes = {};
    FICodeWriter code = {bytes.data()};
    FIAssembleSignature(signature, code);
    FINeedsRun run = {FINoNeeds(), 0, false};
    FINeedCode(bytes.data(), code.count, run);
    return run.needs;
}

// What all of several ways need: the values of an offset that one of them allows.
constexpr void FIWiden(FIRowNeeds& needs, const FIRowNeeds& other) {
    for (std::size_t offset = 0; offset < firstOffsets; ++offset) {
        for (std::size_t word = 0; word < needs.first[offset].words.size(); ++word) {
            needs.first[offset].words[word] |= other.first[offset].words[word];
        }
    }
    needs.far = {0, 0, 0};
}

// What a routine needs: one of its ways.
constexpr FIRowNeeds FINeedsOfRoutine(std::uint16_t number) {
    constexpr std::string_view between = " or ";
    for (const FIRoutineNeeds& routine : routineNeeds) {
        if (routine.number != number) continue;
        std::string_view ways = routine.needs;
        FIRowNeeds needs = FINeedsOfSignature(ways.substr(0, ways.find(between)));
        while (ways.find(between) != std::string_view::npos) {
            ways.remove_prefix(ways.find(between) + between.size());
            FIWiden(needs, FINeedsOfSignature(ways.substr(0, ways.find(between))));
        }
        return needs;
    }
    FINotationError("a routine that is not known");
}

constexpr FIRowNeeds FINeedsOfRow(const FISignatureRow& row) {
    FIRowNeeds needs = FINeedsOfSignature(row.signature);
    if (row.result.opcode != FIOpcode::Call) return needs;
    const FIRowNeeds called = FINeedsOfRoutine(row.result.number);
    for (std::size_t offset = 0; offset < firstOffsets; ++offset) {
        for (std::size_t word = 0; word < needs.first[offset].words.size(); ++word) {
            needs.first[offset].words[word] &= called.first[offset].words[word];
        }
    }
    if (called.far.Width() < needs.far.Width()) needs.far = called.far;
    return needs;
}
