// package_kinds.cpp - asking the lines of package_lines.h, which the compiler takes apart.
#include "further/package_kinds.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <optional>

#include "further/package_facts.h"
#include "further/package_lines.h"

namespace {

constexpr std::size_t mostAlternatives = 2;

// One alternative. What is empty, None or 0 is not asked.
struct FIPackageTest {
    std::string_view contentTypes;  // with a bar between two
    FIMainRelationship relationship = FIMainRelationship::None;
    std::string_view mimetypes;  // likewise
    std::string_view extension;
    std::uint32_t names = 0;  // bits of questions that names must have answered
};

struct FIAssembledLine {
    std::array<FIPackageTest, mostAlternatives> tests;
    std::size_t count = 0;  // of tests
};

struct FIAssembledLines {
    std::array<FIAssembledLine, std::size(packageLines)> lines;
    std::array<FINameQuestion, mostNameQuestions> questions;
    std::size_t questionCount = 0;
};

// ---- Assembling the lines ------------------------------------------------------------------------------------------

// Not constexpr, so that a line which calls it does not compile.
void FIRefuseLine(const char* reason) { static_cast<void>(reason); }

// Cuts off what stands in front of a separator, or all.
constexpr std::string_view FICutPiece(std::string_view& rest, std::string_view separator) {
    const std::size_t end = rest.find(separator);
    const std::string_view piece = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + separator.size());
    return piece;
}

constexpr std::uint32_t FIAddQuestion(FIAssembledLines& assembled, FINameTest test, std::string_view text) {
    std::size_t place = 0;
    while (place < assembled.questionCount &&
           (assembled.questions[place].test != test || assembled.questions[place].text != text)) {
        ++place;
    }
    if (place == mostNameQuestions) FIRefuseLine("too many questions about names");
    if (place == assembled.questionCount) assembled.questions[assembled.questionCount++] = {test, text};
    return std::uint32_t{1} << place;
}

constexpr bool FITakeStart(std::string_view& term, std::string_view start) {
    if (!term.starts_with(start)) return false;
    term.remove_prefix(start.size());
    if (term.empty()) FIRefuseLine("a term without a value");
    return true;
}

constexpr void FIAddTerm(FIAssembledLines& assembled, FIPackageTest& test, std::string_view term) {
    if (FITakeStart(term, "opc:")) {
        test.contentTypes = term;
    } else if (term == "rel:strict") {
        test.relationship = FIMainRelationship::OfficeStrict;
    } else if (term == "rel:oxps") {
        test.relationship = FIMainRelationship::OpenXps;
    } else if (FITakeStart(term, "zipmime:")) {
        test.mimetypes = term;
    } else if (FITakeStart(term, "ext:")) {
        test.extension = term;
    } else if (FITakeStart(term, "zip:")) {
        test.names |= FIAddQuestion(assembled, FINameTest::Is, term);
    } else if (FITakeStart(term, "zip^")) {
        test.names |= FIAddQuestion(assembled, FINameTest::Begins, term);
    } else if (FITakeStart(term, "zip~")) {
        test.names |= FIAddQuestion(assembled, FINameTest::Contains, term);
    } else {
        FIRefuseLine("no such term");
    }
}

constexpr FIAssembledLines FIAssembleLines() {
    FIAssembledLines assembled;
    for (std::size_t place = 0; place < std::size(packageLines); ++place) {
        FIAssembledLine& line = assembled.lines[place];
        for (std::string_view rest = packageLines[place].test; !rest.empty();) {
            std::string_view alternative = FICutPiece(rest, " ; ");
            if (line.count == mostAlternatives) FIRefuseLine("too many alternatives");
            FIPackageTest& test = line.tests[line.count++];
            while (!alternative.empty()) FIAddTerm(assembled, test, FICutPiece(alternative, " + "));
        }
    }
    return assembled;
}

constexpr FIAssembledLines assembledLines = FIAssembleLines();

// The first line that asks about names. Where the names answer it, no other is asked: the walk may end.
constexpr std::uint32_t FIFindEnough() {
    const auto asksNames = [](const FIAssembledLine& line) { return line.tests[0].names != 0; };
    const FIAssembledLine& first = *std::ranges::find_if(assembledLines.lines, asksNames);
    const FIPackageTest& test = first.tests[0];
    return first.count == 1 && test.extension.empty() ? test.names : 0;
}

constexpr std::uint32_t enoughNames = FIFindEnough();
static_assert(std::has_single_bit(enoughNames), "only one name settles the matter by itself");

// ---- Asking them ---------------------------------------------------------------------------------------------------

// What one look at a package's names has told, once they were asked.
struct FIPackageLook {
    FILook* look;
    std::optional<std::uint32_t> names;
};

bool FIHasNames(FIPackageLook& package, std::uint32_t names) {
    if (names == 0) return true;
    if (!package.names) {
        const std::span<const FINameQuestion> questions(assembledLines.questions);
        package.names = FIAskNames(*package.look, questions.first(assembledLines.questionCount), enoughNames);
    }
    return (*package.names & names) == names;
}

bool FIIsSame(std::string_view one, std::string_view other) { return one == other; }

bool FIHasOneOf(std::string_view values, std::string_view value, bool (*equals)(std::string_view, std::string_view)) {
    while (!values.empty()) {
        if (equals(FICutPiece(values, "|"), value)) return true;
    }
    return false;
}

bool FIHasMainPart(FILook& look, const FIPackageTest& test) {
    if (test.contentTypes.empty()) return true;
    const FIMainPart& part = FIMainPartOf(look);
    if (part.contentType.size == 0 || part.contentType.cut) return false;
    if (test.relationship != FIMainRelationship::None && test.relationship != part.relationship) return false;
    return FIHasOneOf(test.contentTypes, FITextOf(part.contentType), FIEqualsAnyCase);
}

bool FIHoldsTest(FIPackageLook& package, const FIPackageTest& test) {
    FILook& look = *package.look;
    return FIHasMainPart(look, test) &&
           (test.mimetypes.empty() || FIHasOneOf(test.mimetypes, FIMimetypeOf(look), FIIsSame)) &&
           (test.extension.empty() || test.extension == FIExtensionOf(look)) && FIHasNames(package, test.names);
}

bool FIHoldsLine(FIPackageLook& package, const FIAssembledLine& line) {
    return std::any_of(line.tests.begin(), line.tests.begin() + line.count,
                       [&package](const FIPackageTest& test) { return FIHoldsTest(package, test); });
}

}  // namespace

std::span<const FIPackageLine> FIPackageLines() { return packageLines; }

FIID FITellPackageKind(FILook& look) {
    FIPackageLook package = {&look, std::nullopt};
    for (std::size_t place = 0; place < std::size(packageLines); ++place) {
        if (packageLines[place].over != look.fiid) continue;
        if (FIHoldsLine(package, assembledLines.lines[place])) return packageLines[place].identifier;
    }
    return 0;
}
