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

// Leaves the reader behind the "=" of the attribute. False when the file or the kilobyte ends first.
bool FIFindAttribute(FIReader& reader, TextBuffer& word) {
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
