// explanation.cpp - the words of an explanation: places that a row looks at, what a routine is about, what was opened.
#include "detect/explanation.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>

#include "core/driver.h"
#include "core/routine_facts.h"
#include "further/package_facts.h"
#include "further/routines.h"
#include "further/table.h"
#include "signatures/table.h"

namespace {

// Text that is put together in a result. What does not fit is left out.
class FIWords {
 public:
    FIWords(char* text, std::size_t capacity) : next_(text), end_(text + capacity - 1) { *next_ = '\0'; }

    void Add(std::string_view words) {
        for (const char character : words) Put(character);
    }

    void Add(std::uint64_t number) {
        char digits[20];
        char* const end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
        Add(std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }

    // Bytes from the file, of which those that are no printable ASCII are escaped, and so is the backslash.
    void AddEscaped(std::string_view bytes) {
        constexpr std::string_view hexDigits = "0123456789ABCDEF";
        for (const char byte : bytes) {
            if (byte >= ' ' && byte <= '~' && byte != '\\') {
                Put(byte);
                continue;
            }
            const auto value = static_cast<std::uint8_t>(byte);
            const char escaped[] = {'\\', 'x', hexDigits[value >> 4], hexDigits[value & 0x0F]};
            if (end_ - next_ < std::ssize(escaped)) return;
            Add(std::string_view(escaped, sizeof(escaped)));
        }
    }

    // The next thing is the first of its kind: nothing separates it.
    void Begin() { begun_ = false; }

    // What separates this thing from those before it, if there are any.
    void Separate(std::string_view separator) {
        if (begun_) Add(separator);
        begun_ = true;
    }

 private:
    void Put(char character) {
        if (next_ == end_) return;
        *next_++ = character;
        *next_ = '\0';
    }

    char* next_;
    char* end_;
    bool begun_ = false;
};

// ---- Rows ----------------------------------------------------------------------------------------------------------

// Takes the item that the notation begins with: up to a blank that stands outside of text.
std::string_view FITakeItem(std::string_view& notation) {
    std::size_t size = 0;
    bool inText = false;
    for (; size < notation.size() && (inText || notation[size] != ' '); ++size) {
        if (notation[size] == '"') inText = !inText;
    }
    const std::string_view item = notation.substr(0, size);
    notation.remove_prefix(std::min(size + 1, notation.size()));
    return item;
}

constexpr std::string_view fromEnd = ">end-";

void FIAddPlace(FIWords& words, std::string_view item, bool& bytes) {
    words.Separate(bytes ? ", " : "; ");
    if (!bytes) words.Add("bytes at ");
    bytes = true;
    if (item.starts_with(fromEnd)) {
        words.Add("the end - ");
        words.Add(item.substr(fromEnd.size()));
    } else {
        words.Add(item.substr(1));
    }
}

// The places, the extension, the class and the namespace that a row asks for.
void FIAddRow(FIWords& words, std::string_view notation) {
    bool bytes = false;
    while (!notation.empty()) {
        const std::string_view item = FITakeItem(notation);
        if (item.starts_with('>')) {
            FIAddPlace(words, item, bytes);
        } else if (item == "ext") {
            words.Separate("; ");
            words.Add("extension ");
            words.Add(FITakeItem(notation));
            bytes = false;
        } else if (item == "xmlns") {
            words.Separate("; ");
            words.Add("the XML namespace of the first element");
            bytes = false;
        }
    }
}

// ---- Storages ------------------------------------------------------------------------------------------------------

void FIAddClass(FIWords& words, const std::uint8_t (&id)[IOClassIdBytes]) {
    // The first three groups are numbers in little-endian order.
    constexpr std::uint8_t order[IOClassIdBytes] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    words.Separate("; ");
    words.Add("class {");
    for (std::size_t index = 0; index < IOClassIdBytes; ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) words.Add("-");
        words.Add(hexDigits.substr(id[order[index]] >> 4, 1));
        words.Add(hexDigits.substr(id[order[index]] & 0x0F, 1));
    }
    words.Add("}");
}

void FIAddStorage(FIWords& words, UTHandle& file) {
    std::uint8_t classId[IOClassIdBytes] = {};
    const HIOFILE handle = UTHandleFile(file);
    if (handle->operations.IOGetInfo(handle, IOInfoClassId, classId) == 0) FIAddClass(words, classId);
    if (file.opened == nullptr) return;
    for (std::uint32_t index = 0; index < file.opened->count; ++index) {
        const UTOpenedObject& object = file.opened->objects[index];
        words.Separate(", ");
        words.Add(object.kind == IOSUB_STREAM ? "stream " : "sub-storage ");
        words.AddEscaped(object.name);
    }
}

// ---- Packages ------------------------------------------------------------------------------------------------------

void FIAddPart(FIWords& words, const char* label, std::string_view text) {
    if (text.empty()) return;
    words.Separate(", ");
    words.Add(label);
    words.AddEscaped(text);
}

// The member or the main part by which a package is told. It is read if nobody has asked for it yet.
void FIAddPackage(FIWords& words, FILook& look) {
    const FIMainPart& main = FIMainPartOf(look);
    if (main.relationship != FIMainRelationship::None) {
        FIAddPart(words, "main part ", FITextOf(main.name));
        FIAddPart(words, "content type ", FITextOf(main.contentType));
    } else {
        FIAddPart(words, "member mimetype ", FIMimetypeOf(look));
    }
}

// ---- Text ----------------------------------------------------------------------------------------------------------

constexpr std::uint64_t textBytes = 4096;  // that are looked at

void FIAddText(FIWords& words, std::uint64_t size) {
    words.Separate("; ");
    words.Add("the characters of the first ");
    words.Add(std::min(size, textBytes));
    words.Add(" bytes");
}

void FIAddSignatureTable(FIWords& words, const fiid_result& result) {
    const FISignatureRow* const row = FIFindSignatureRow(result.row);
    if (row == nullptr) return;
    FIAddRow(words, row->signature);
    const FIRoutineFacts* const facts = FIFactsOfRow(*row);
    if (facts == nullptr) return;
    words.Separate("; ");
    words.Add(facts->looksAt);
}

void FIAddFurtherTable(FIWords& words, const fiid_result& result) {
    const FIFurtherRow* const row = FIFindFurtherRow(result.further_row);
    if (row == nullptr) return;
    words.Separate("; ");
    words.Add("then ");
    words.Begin();
    FIAddRow(words, row->signature);
    const FIFurtherRoutine* const routine =
        row->result.opcode == FIOpcode::Call ? FIFindFurtherRoutine(row->result.number) : nullptr;
    if (routine == nullptr) return;
    words.Separate("; ");
    words.Add(routine->looksAt);
}

bool FIIsPackage(const FIVerdict& verdict, const fiid_result& result) {
    return result.basis == FIID_BASIS_PACKAGE || FIBasisOfVerdict(verdict) == FIBasis::Package;
}

}  // namespace

void FIExplain(FILook& look, fiid_result& result) {
    FIWords words(result.explanation, sizeof(result.explanation));
    const FIVerdict verdict = {result.fiid, result.row};
    FIAddSignatureTable(words, result);
    if (FIBasisOfVerdict(verdict) == FIBasis::Text) FIAddText(words, look.size);
    FIAddFurtherTable(words, result);
    FIAddStorage(words, *look.file);
    if (FIIsPackage(verdict, result)) FIAddPackage(words, look);
}
