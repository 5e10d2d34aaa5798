// function_codes.cpp - word-processor text told by its function codes alone.
//
// The format has no magic number. Bytes below 188 are text; a byte of 188 or more is a function code, and most codes
// open a group of fixed length that closes with the same code again. The walk goes from offset 0 until a budget of
// 3,072 is used up, and six points decide. A group that does not close ends it at once with the answer 0: that
// strictness is what keeps random bytes out.
//
// Two dialects share the codes and differ in the length of some groups. A group that only one of them has, or that has
// the length of one of them, is a sign of that dialect:
//
//   Signs seen     Answer
//   none, first      1023   WordPerfect 4 (PRONOM fmt/949)
//   second           1035   WordPerfect for Macintosh
//   both                0
//
// The steps of a group, in the words of the table of codes below:
//
//   any, skip n   bytes that are passed over; the file must not end in them
//   close         a byte that must be the code itself
//   fork          a byte that, when it is the code itself, closes the group of the first dialect; when it is another,
//                 more steps follow, which make the longer group of the second dialect
//   pair          a block with its length at both ends, which only the second dialect has
//
// Reads each byte once, in order, except that a block which turns out to be no pair is read again.
#include "wordproc/function_codes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "reader/head.h"
#include "reader/reader.h"

namespace {

constexpr FIID wordPerfect4 = 1023;
constexpr FIID wordPerfectMacintosh = 1035;

constexpr std::uint16_t firstFunctionCode = 188;
constexpr std::uint16_t lastFunctionCode = 255;
constexpr std::uint16_t budget = 3072;
constexpr std::int16_t decidingScore = 6;
constexpr std::int16_t firmScore = 10;  // a pair, and the second half of a group in two halves: decide by themselves
constexpr std::size_t recentCodes = 6;

enum class FIDialect : std::uint8_t { none, first, second };
enum class FIEnding : std::uint8_t { close, fork };
using enum FIDialect;
using enum FIEnding;

struct FICodeWalk {
    FIReader& reader;
    std::uint16_t code = 0;  // the byte of this step; some rules replace it by one that they took later
    std::int16_t score = 0;
    std::uint16_t count = 0;  // budget used; not the file offset, for some groups use less than they have, or none
    bool showsFirst = false;  // signs of the dialects
    bool showsSecond = false;
    bool scored194 = false;
    bool open209 = false;  // groups in two halves of which the first was met
    bool open210 = false;
    bool open226 = false;
    bool open242 = false;
    std::uint16_t recent[recentCodes] = {};  // the codes of the steps before this one, newest first
};

struct FICodeRow;

// Takes a group from behind its code. Returns false when it is malformed, which ends the walk with the answer 0.
using FICodeRule = bool (*)(FICodeWalk& walk, const FICodeRow& row);

// One group of codes that follow the same rule. The columns from body on are the steps of FITakeBody and what they
// earn; a row without them has a rule that does without FITakeBody.
struct FICodeRow {
    std::uint8_t codes[8];  // unused places hold 0
    FICodeRule rule;
    FIDialect notBehind = none;   // malformed behind a sign of this dialect
    std::uint8_t body = 0;        // bytes to skip
    FIEnding ending = close;      // what comes behind them
    std::uint8_t longerBody = 0;  // bytes to skip behind the fork in the longer group, in front of its close
    FIDialect shows = none;
    std::uint8_t score = 0;
    std::uint8_t count = 0;
};

void FIAddScore(FICodeWalk& walk, std::int16_t points) { walk.score = static_cast<std::int16_t>(walk.score + points); }

void FIAddCount(FICodeWalk& walk, std::uint16_t bytes) { walk.count = static_cast<std::uint16_t>(walk.count + bytes); }

void FIShow(FICodeWalk& walk, FIDialect dialect) {
    if (dialect == first) walk.showsFirst = true;
    if (dialect == second) walk.showsSecond = true;
}

bool FIHasShown(const FICodeWalk& walk, FIDialect dialect) {
    return (dialect == first && walk.showsFirst) || (dialect == second && walk.showsSecond);
}

// ---- The steps ------------------------------------------------------------------------------------------------------

bool FISkip(FICodeWalk& walk, std::uint16_t bytes) { return FIReaderSkip(bytes, walk.reader) == 0; }

bool FIAny(FICodeWalk& walk) { return FISkip(walk, 1); }

bool FITake(FICodeWalk& walk, std::uint16_t& byte) {
    byte = FIReaderGetByte(walk.reader);
    return byte != endOfFile;
}

bool FIMustBe(FICodeWalk& walk, std::uint16_t byte) { return FIReaderGetByte(walk.reader) == byte; }

bool FIClose(FICodeWalk& walk) { return FIMustBe(walk, walk.code); }

bool FIFork(FICodeWalk& walk, std::uint16_t longerBody) {
    if (FIReaderGetByte(walk.reader) == walk.code) {
        FIShow(walk, first);
        return true;
    }
    if (!FISkip(walk, longerBody) || !FIClose(walk)) return false;
    FIShow(walk, second);
    return true;
}

bool FIPair(FICodeWalk& walk) {
    if (!FICheckLengthPair(walk.reader)) return false;
    FIShow(walk, second);
    FIAddScore(walk, firmScore);
    return true;
}

// Ends a group in two halves if it is open. Codes 210, 226 and 242 take no steps there: the code alone scores.
bool FICloseOpenGroup(FICodeWalk& walk, bool& open) {
    if (!open) return false;
    open = false;
    FIShow(walk, first);
    FIAddScore(walk, firmScore);
    return true;
}

// ---- The rules of the codes -----------------------------------------------------------------------------------------

bool FIRefuse(FICodeWalk&, const FICodeRow&) { return false; }

bool FITakeNothing(FICodeWalk&, const FICodeRow&) { return true; }

// The steps that the row's columns tell.
bool FITakeBody(FICodeWalk& walk, const FICodeRow& row) {
    if (!FISkip(walk, row.body)) return false;
    if (row.ending == fork ? !FIFork(walk, row.longerBody) : !FIClose(walk)) return false;
    FIShow(walk, row.shows);
    FIAddScore(walk, row.score);
    FIAddCount(walk, row.count);
    return true;
}

// Quirk: a wrong closing code costs nothing, and the group uses up no budget.
bool FITake188(FICodeWalk& walk, const FICodeRow&) {
    std::uint16_t enclosed;
    if (!FITake(walk, enclosed)) {
        walk.count = budget;
    } else if (FIClose(walk)) {
        FIAddScore(walk, 1);
    }
    return true;
}

bool FITake194(FICodeWalk& walk, const FICodeRow& row) {
    if (!FITakeBody(walk, row)) return false;
    if (!walk.scored194) FIAddScore(walk, 1);
    walk.scored194 = true;
    return true;
}

// A code that is met for the fourth time within seven steps is taken for a run of other data, not for a document.
bool FIIsRun(const FICodeWalk& walk) {
    constexpr std::ptrdiff_t run = 3;
    return std::count(std::begin(walk.recent), std::end(walk.recent), walk.code) >= run;
}

bool FITake195(FICodeWalk& walk, const FICodeRow& row) {
    constexpr std::uint16_t usualKinds = 4;
    std::uint16_t kind;
    if (FIIsRun(walk) || !FITake(walk, kind) || !FITakeBody(walk, row)) return false;
    if (kind < usualKinds) FIAddScore(walk, 2);
    return true;
}

// A kind of 128 or more makes a group that is not closed, and earns nothing. The end of the file is -1 here, and then
// fails in the body.
bool FITake196(FICodeWalk& walk, const FICodeRow& row) {
    constexpr std::int16_t unclosedKinds = 128;
    constexpr std::uint16_t unclosedBody = 3;
    if (FIIsRun(walk)) return false;
    const auto kind = static_cast<std::int16_t>(FIReaderGetByte(walk.reader));
    return kind < unclosedKinds ? FITakeBody(walk, row) : FISkip(walk, unclosedBody);
}

bool FITake201(FICodeWalk& walk, const FICodeRow& row) { return FIPair(walk) || FITakeBody(walk, row); }

// A byte that is the code itself earns nothing: a run of one byte is no sign of the format.
bool FITake205(FICodeWalk& walk, const FICodeRow& row) {
    std::uint16_t enclosed;
    if (!FITake(walk, enclosed) || !FITakeBody(walk, row)) return false;
    if (enclosed != walk.code) FIAddScore(walk, 1);
    return true;
}

// The first half of a group in two halves: the second half begins with 255 and ends in 209. A 255 as the fifth byte of
// the first half is the beginning of the second already.
// Quirk: the fifth byte replaces the code, a second 209 opens the group anew, and the short form is neither scored nor
// a sign of the first dialect.
bool FITake209(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t halfMark = 255;
    if (FIPair(walk)) {
        walk.open209 = false;
        return true;
    }
    walk.open209 = true;
    const std::uint16_t group = walk.code;
    if (!FIAny(walk) || !FIAny(walk) || !FIMustBe(walk, halfMark) || !FIMustBe(walk, halfMark)) return false;
    if (!FITake(walk, walk.code) || !FIAny(walk)) return false;
    if (walk.code != halfMark) return true;
    walk.open209 = false;
    return FIAny(walk) && FIMustBe(walk, group);
}

// The second half of a group of code 209. With no such group open it is no code at all: it ends the walk like the end
// of the file.
bool FITake255(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t group = 209;
    if (!walk.open209) {
        walk.count = budget;
        return true;
    }
    return FIAny(walk) && FIAny(walk) && FIMustBe(walk, group) && FICloseOpenGroup(walk, walk.open209);
}

bool FITake210(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t bodyMark = 255;
    if (FICloseOpenGroup(walk, walk.open210)) return true;
    walk.open210 = true;
    return FIAny(walk) && FIAny(walk) && FIMustBe(walk, bodyMark) && FIAny(walk) && FIAny(walk);
}

bool FITake242(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t bodyMark = 0;
    if (FICloseOpenGroup(walk, walk.open242)) return true;
    walk.open242 = true;
    return FIAny(walk) && FIAny(walk) && FIAny(walk) && FIMustBe(walk, bodyMark);
}

// A group of any length from 7 bytes on, the closing code included.
// Quirk: when the budget runs out in it, it costs 2 points and counts as closed.
bool FITakeLongGroup(FICodeWalk& walk) {
    constexpr std::uint16_t shortest = 7;
    std::uint16_t byte = FIReaderGetByte(walk.reader);
    if (byte == walk.code) return false;
    std::uint16_t length = 1;
    do {
        if (byte == endOfFile) return false;
        byte = FIReaderGetByte(walk.reader);
        ++length;
        if (++walk.count > budget) {
            FIAddScore(walk, -2);
            break;
        }
    } while (byte != walk.code);
    return length >= shortest;
}

bool FITake215(FICodeWalk& walk, const FICodeRow&) {
    if (!FITakeLongGroup(walk)) return false;
    FIShow(walk, first);
    return true;
}

// The byte behind the group belongs to it, unless it is a function code, which is then read again as the next step.
// Quirk: it takes the place of the code all the same, so that such a code stands among the recent ones twice.
bool FITake220(FICodeWalk& walk, const FICodeRow&) {
    static constexpr std::uint16_t usualFollowers[] = {11, 12, 175, 176};
    if (!FITakeLongGroup(walk)) return false;
    FIShow(walk, first);
    if (!FITake(walk, walk.code)) {
        walk.count = budget;
        return true;
    }
    if (std::ranges::find(usualFollowers, walk.code) != std::end(usualFollowers)) FIAddScore(walk, 2);
    if (walk.code >= firstFunctionCode) {
        const std::uint32_t follower = FIReaderTell(walk.reader) - 1;
        static_cast<void>(FIReaderSeek(walk.reader, follower));  // a failure shows in the next read
    }
    return true;
}

bool FITake218(FICodeWalk& walk, const FICodeRow& row) {
    constexpr std::uint16_t kinds = 4;
    std::uint16_t kind;
    if (!FIAny(walk) || !FITake(walk, kind) || !FITakeBody(walk, row)) return false;
    if (kind < kinds) FIAddScore(walk, 1);
    return true;
}

// A group of any length. Quirk: when the budget runs out in it, it costs 2 points and counts as closed.
bool FITake237(FICodeWalk& walk, const FICodeRow&) {
    std::uint16_t byte = FIReaderGetByte(walk.reader);
    while (byte != walk.code) {
        if (byte == endOfFile) return false;
        byte = FIReaderGetByte(walk.reader);
        if (++walk.count > budget) {
            FIAddScore(walk, -2);
            break;
        }
    }
    FIShow(walk, first);
    return true;
}

bool FITake223(FICodeWalk& walk, const FICodeRow& row) {
    if (FIPair(walk)) return true;
    return !walk.showsSecond && FITake237(walk, row);
}

// The list in the first half of a group of code 226: bytes up to a 255, which stands among the first 16, and then two
// bytes of which the second is not below the first.
// Quirk: a longer list, or one that outruns the budget, is no mistake: it ends the walk, and the score decides.
bool FITakeList226(FICodeWalk& walk) {
    constexpr std::uint16_t listEnd = 255;
    constexpr std::uint16_t longestList = 16;
    if (!FITake(walk, walk.code)) return false;
    for (std::uint16_t taken = 1; walk.code != listEnd; ++taken) {
        if (!FITake(walk, walk.code)) return false;
        if (++walk.count > budget || taken >= longestList) {
            walk.count = budget;
            walk.code = listEnd;
            return true;
        }
    }
    if (walk.count >= budget) return true;
    std::uint16_t last;
    if (!FITake(walk, walk.code) || !FITake(walk, last) || last < walk.code) return false;
    FIAddCount(walk, 3);
    return true;
}

bool FITake226(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t noKind = 255;
    constexpr std::uint16_t bytesBeforeList = 5;
    if (FICloseOpenGroup(walk, walk.open226)) return true;
    walk.open226 = true;
    if (FIPair(walk)) return true;
    std::uint16_t kind;
    if (!FITake(walk, kind) || kind == noKind) return false;
    return FISkip(walk, bytesBeforeList) && FITakeList226(walk);
}

// A group of any length which holds a 0 in the first dialect and a 255 in the second; the one that comes first decides.
// Quirk: an empty group passes, and so does one in which the budget runs out before either came.
bool FITake234(FICodeWalk& walk, const FICodeRow&) {
    constexpr std::uint16_t firstDialectMark = 0;
    constexpr std::uint16_t secondDialectMark = 255;
    std::uint16_t byte = FIReaderGetByte(walk.reader);
    if (byte == walk.code) return true;
    bool undecided = true;
    do {
        if (undecided && byte == firstDialectMark) {
            undecided = false;
            FIShow(walk, first);
        } else if (undecided && byte == secondDialectMark) {
            undecided = false;
            FIShow(walk, second);
            FIAddScore(walk, 2);
        }
        if (byte == endOfFile) return false;
        if (++walk.count > budget) return true;
        byte = FIReaderGetByte(walk.reader);
    } while (byte != walk.code);
    return !undecided;
}

bool FITake245(FICodeWalk& walk, const FICodeRow&) { return FIPair(walk); }

// ---- The codes, by the lowest of each row ---------------------------------------------------------------------------

constexpr FICodeRow codeRows[] = {
    // clang-format off
    // codes                                      rule           not     body  ending  longer  shows   score  count
    //                                                           behind                body
    {{188, 189},                                  FITake188},
    {{190, 191},                                  FITakeNothing},
    {{192, 197},                                  FITakeBody,    none,      4, fork,        3, none,       2,     6},
    {{193, 198, 211, 212, 213, 217, 219, 224},    FITakeBody,    none,      2, close,       0, none,       0,     4},
    {{194},                                       FITake194,     none,      1, fork,        0, none,       0,     3},  // +1 once
    {{195},                                       FITake195,     none,      2, fork,        1, none,       1,     7},  // +2 by its kind
    {{196},                                       FITake196,     none,      2, fork,        1, none,       1,     7},
    {{199, 203, 208, 214, 240},                   FITakeBody,    none,      4, close,       0, none,       1,     6},
    {{200},                                       FITakeBody,    none,      6, close,       0, none,       1,     8},
    {{201},                                       FITake201,     none,     40, close,       0, first,      5,    42},  // or a pair
    {{202},                                       FITakeBody,    none,      1, fork,        0, none,       1,     3},
    {{204, 206, 222},                             FITakeBody,    none,      2, fork,        1, none,       2,     4},
    {{205, 207, 225, 231},                        FITake205,     none,      0, close,       0, none,       0,     3},  // +1 by its byte
    {{209},                                       FITake209},
    {{210},                                       FITake210,     second},
    {{215},                                       FITake215,     second},
    {{216},                                       FITakeBody,    second,    2, close,       0, first,      1,     4},
    {{218},                                       FITake218,     none,      0, close,       0, none,       0,     4},  // +1 by its kind
    {{220},                                       FITake220,     second},
    {{221},                                       FITakeBody,    none,     22, close,       0, none,       1,    24},
    {{223},                                       FITake223},                  // a pair, or not behind the second dialect
    {{226},                                       FITake226},
    {{227},                                       FITakeBody,    none,    148, close,       0, none,       1,   150},
    {{228},                                       FITakeBody,    none,      4, fork,        0, none,       0,     6},
    {{229},                                       FITakeBody,    none,     21, close,       0, none,       1,    23},
    {{230},                                       FITakeBody,    none,      9, close,       0, none,       1,    11},
    {{232},                                       FITakeBody,    none,      1, close,       0, none,       0,     3},
    {{233},                                       FITakeBody,    none,      6, close,       0, none,       0,     8},
    {{234},                                       FITake234},
    {{235},                                       FITakeBody,    none,     30, close,       0, none,       1,    32},
    {{236},                                       FITakeBody,    none,      2, fork,        0, none,       1,     4},
    {{237},                                       FITake237,     second},
    {{238},                                       FITakeBody,    none,     42, close,       0, none,       1,    44},
    {{239},                                       FITakeBody,    none,     16, close,       0, none,       1,    18},
    {{241},                                       FITakeBody,    none,    104, close,       0, none,       1,   106},
    {{242},                                       FITake242,     second},
    {{243},                                       FITakeBody,    none,     98, fork,       95, none,       1,   100},
    {{244, 247, 248, 251},                        FITakeBody,    first,     2, close,       0, second,     1,     4},
    {{245, 250, 254},                             FITake245},                  // Quirk: passes behind the first dialect
    {{246, 252, 253},                             FIRefuse},                   // codes of neither dialect
    {{249},                                       FITakeBody,    none,      6, close,       0, second,     1,     8},
    {{255},                                       FITake255},
    // clang-format on
};

constexpr std::ptrdiff_t FIRowsWithCode(std::uint16_t code) {
    return std::ranges::count_if(codeRows,
                                 [code](const FICodeRow& row) { return std::ranges::count(row.codes, code) > 0; });
}

constexpr std::uint16_t FIFirstCodeWithoutOneRow() {
    for (std::uint16_t code = firstFunctionCode; code <= lastFunctionCode; ++code) {
        if (FIRowsWithCode(code) != 1) return code;
    }
    return 0;
}
static_assert(FIFirstCodeWithoutOneRow() == 0, "each function code stands in one row");

// The row of each code, so that a code costs one look.
constexpr auto rowOfCode = [] {
    std::array<const FICodeRow*, lastFunctionCode - firstFunctionCode + 1> rows{};
    for (const FICodeRow& row : codeRows) {
        for (const std::uint8_t code : row.codes) {
            if (code != 0) rows[code - firstFunctionCode] = &row;
        }
    }
    return rows;
}();

// ---- The walk -------------------------------------------------------------------------------------------------------

bool FITakeGroup(FICodeWalk& walk) {
    const FICodeRow& row = *rowOfCode[walk.code - firstFunctionCode];
    if (FIHasShown(walk, row.notBehind) || !row.rule(walk, row)) return false;
    if (walk.score >= decidingScore) walk.count = budget;
    return true;
}

// One step: a byte of text, a group, or the end of the file. False at a malformed group.
bool FIWalkStep(FICodeWalk& walk) {
    walk.code = FIReaderGetByte(walk.reader);
    if (walk.code == endOfFile) {
        walk.count = budget;  // the end between two groups: the score decides
        return true;
    }
    if (walk.code >= firstFunctionCode) return FITakeGroup(walk);
    ++walk.count;
    return true;
}

// The first byte that is no text, or end. Eight bytes without a top bit are passed over at once.
const std::uint8_t* FIFindFunctionCode(const std::uint8_t* byte, const std::uint8_t* end) {
    constexpr std::uint64_t topBits = 0x8080808080808080;
    for (; byte < end; ++byte) {
        std::uint64_t eight = 0;
        while (end - byte >= static_cast<std::ptrdiff_t>(sizeof(eight))) {
            std::memcpy(&eight, byte, sizeof(eight));
            if ((eight & topBits) != 0) break;
            byte += sizeof(eight);
        }
        if (byte == end || *byte >= firstFunctionCode) break;
    }
    return byte;
}

void FIRememberCode(FICodeWalk& walk) {
    std::shift_right(std::begin(walk.recent), std::end(walk.recent), 1);
    walk.recent[0] = walk.code;
}

// Takes the text bytes that the reader has buffered, up to the budget. Each of them would be a step that counts one and
// remembers it, and does nothing else.
void FIPassOverText(FICodeWalk& walk) {
    FIReader& reader = walk.reader;
    const auto most = std::min<std::int32_t>(reader.bytesLeft, budget - walk.count);
    if (most <= 0) return;
    const std::uint8_t* const start = reader.cursor;
    const std::uint8_t* const end = FIFindFunctionCode(start, start + most);
    FIAddCount(walk, static_cast<std::uint16_t>(end - start));
    const std::uint8_t* const firstRemembered = end - std::min<std::ptrdiff_t>(end - start, recentCodes);
    for (const std::uint8_t* byte = firstRemembered; byte < end; ++byte) {
        walk.code = *byte;
        FIRememberCode(walk);
    }
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - (end - start));
    reader.cursor += end - start;
}

FIID FIJudgeWalk(const FICodeWalk& walk) {
    if (walk.score < decidingScore) return 0;
    if (!walk.showsSecond) return wordPerfect4;
    return walk.showsFirst ? 0 : wordPerfectMacintosh;
}

}  // namespace

std::int32_t FIReadLength32(FIReader& reader) {
    constexpr std::uint32_t lengthBytes = 4;
    std::uint32_t length = 0;
    for (std::uint32_t index = 0; index < lengthBytes; ++index) {
        // The end of the file is extended with its sign: with all bits set behind it the length is a negative number.
        const auto byte = static_cast<std::int16_t>(FIReaderGetByte(reader));
        length = length << 8 | static_cast<std::uint32_t>(byte);
    }
    return static_cast<std::int32_t>(length);
}

bool FICheckLengthPair(FIReader& reader) {
    constexpr std::int32_t longest = 3071;
    const std::uint32_t start = FIReaderTell(reader);
    const std::int32_t length = FIReadLength32(reader);
    if (length >= 1 && length <= longest) {
        const std::uint32_t behind = FIReaderTell(reader) + static_cast<std::uint32_t>(length);
        const bool reached = FIReaderSeek(reader, behind) == 0;
        if (FIReadLength32(reader) == length && reached) return true;
    }
    static_cast<void>(FIReaderSeek(reader, start));  // a failure shows in the next read
    return false;
}

// Text alone, each byte of which uses one of the budget, earns nothing.
bool FIMayHaveFunctionCodes(FIHead& head) { return FIAnyInHead(head, budget, FIHighBytes); }

FIID FIProbeFunctionCodes(FIReader& reader) {
    if (FIReaderSeek(reader, 0) != 0) return 0;
    FICodeWalk walk{reader};
    while (true) {
        FIPassOverText(walk);
        if (walk.count >= budget) break;
        if (!FIWalkStep(walk)) return 0;
        FIRememberCode(walk);
        if (walk.count >= budget) break;
    }
    return FIJudgeWalk(walk);
}
