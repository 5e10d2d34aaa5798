// xml_namespace.cpp - the first xmlns= at the head of an XML text. Deliberately not an XML parser.
//
//   Offset     What                  Accepted
//        0     declaration           "<?xml", byte for byte: no mark or blank in front, no 16-bit text
//   5 - 1023   bytes up to the "="   the first "=" that stands right behind the whole word "xmlns"
//        -     one byte              the quote " or ', right behind the "="
//        -     the value             0 to 255 bytes up to the same quote
//
// A word is a run of the ASCII letters, the digits and . - _ : so that neither xmlns:w= nor "xmlns =" counts.
//
// Quirk: quotes, comments and element boundaries mean nothing here. An xmlns= in a comment or in another attribute's
// value wins too, if it comes first.
#include "package/xml_namespace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "reader/reader.h"
#include "reader/text_line.h"

namespace {

constexpr std::string_view declarationStart = "<?xml";
constexpr std::string_view attributeName = "xmlns";
constexpr std::uint32_t scanLimit = 1024;                   // bytes of the file that are looked at for the attribute
constexpr std::size_t longestText = xmlNamespaceUnits - 1;  // of a word and of a value; a 0 unit comes behind it

// Holds the word, then the value.
using TextBuffer = std::array<char, longestText + 1>;

bool FIIsWordCharacter(std::uint16_t byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           byte == '.' || byte == '-' || byte == '_' || byte == ':';
}

// Characters of a word in front of a place, back to the first of the text.
std::size_t FIMeasureWordBefore(std::string_view text, std::size_t place) {
    std::size_t length = 0;
    while (length < place && FIIsWordCharacter(static_cast<std::uint8_t>(text[place - length - 1]))) ++length;
    return length;
}

void FITakeBuffered(FIReader& reader, std::size_t count) {
    reader.cursor += count;
    reader.bytesLeft = static_cast<std::int16_t>(reader.bytesLeft - static_cast<std::int16_t>(count));
}

enum class FIBufferSearch : std::uint8_t { found, notThere, undecided };

// FIFindAttribute for what the reader has buffered: looks at the "=" alone, of which there are few. Undecided, with nothing
// taken, when the search would go on behind the buffer.
//
// The same, for the word in front of an "=" is the one that FIFindAttribute has in its buffer then: the name is its last
// five characters, and the word has started over as often as 255 goes into its length.
FIBufferSearch FISearchBuffer(FIReader& reader) {
    constexpr std::size_t most = scanLimit - declarationStart.size();
    if (reader.bytesLeft <= 0) return FIBufferSearch::undecided;
    const std::size_t size = std::min<std::size_t>(static_cast<std::size_t>(reader.bytesLeft), most);
    const std::string_view text(reinterpret_cast<const char*>(reader.cursor), size);
    for (std::size_t place = text.find('='); place != std::string_view::npos; place = text.find('=', place + 1)) {
        if (!text.substr(0, place).ends_with(attributeName)) continue;
        if (FIMeasureWordBefore(text, place) % longestText != attributeName.size()) continue;
        FITakeBuffered(reader, place + 1);
        return FIBufferSearch::found;
    }
    if (size < most) return FIBufferSearch::undecided;
    FITakeBuffered(reader, size);
    return FIBufferSearch::notThere;
}

// Leaves the reader behind the "=" of the attribute. False when the file or the kilobyte ends first.
bool FIFindAttribute(FIReader& reader, TextBuffer& word) {
    const FIBufferSearch search = FISearchBuffer(reader);
    if (search != FIBufferSearch::undecided) return search == FIBufferSearch::found;
    std::size_t length = 0;
    for (std::uint32_t bytesRead = declarationStart.size(); bytesRead < scanLimit; ++bytesRead) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == endOfFile) return false;
        if (FIIsWordCharacter(byte)) {
            word[length++] = static_cast<char>(byte);
            // Quirk: a word of 255 bytes starts over, so that its next five characters can be a whole "xmlns" again.
            if (length == longestText) length = 0;
        } else {
            if (byte == '=' && std::string_view(word.data(), length) == attributeName) return true;
            length = 0;
        }
    }
    return false;
}

// Reads a quoted value and stores its length. False when it doesn't begin with a quote or doesn't end in time.
bool FIReadQuotedValue(FIReader& reader, TextBuffer& value, std::size_t& length) {
    const std::uint16_t quote = FIReaderGetByte(reader);
    if (quote != '"' && quote != '\'') return false;
    length = 0;
    while (true) {
        const std::uint16_t byte = FIReaderGetByte(reader);
        if (byte == quote) return true;
        if (byte == endOfFile || length == longestText) return false;
        value[length++] = static_cast<char>(byte);
    }
}

}  // namespace

void FIScanXmlNamespace(FIReader& reader, std::uint16_t* namespaceUnits) {
    namespaceUnits[0] = xmlNamespaceNotFound;
    if (FIReaderSeek(reader, 0) != 0 || !FITakeText(reader, declarationStart)) return;
    TextBuffer text;
    std::size_t length = 0;
    if (!FIFindAttribute(reader, text) || !FIReadQuotedValue(reader, text, length)) return;
    for (std::size_t index = 0; index < length; ++index) {
        namespaceUnits[index] = static_cast<std::uint8_t>(text[index]);
    }
    namespaceUnits[length] = 0;
}
