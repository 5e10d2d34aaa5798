// zip_writer.h - ZIP archives for tests, well-formed or wrong in a chosen place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::uint16_t zipStored = 0;
inline constexpr std::uint16_t zipDeflated = 8;
inline constexpr std::uint16_t zipEncryptedFlag = 1;

// One member. What is not set follows from the rest.
struct ZipMember {
    std::string name;
    std::string bytes = "";
    std::uint16_t method = zipStored;
    std::uint16_t flags = 0;
    bool descriptor = false;                           // sizes and checksum behind the data, zeros in the local header
    bool zip64 = false;                                // the directory tells the sizes and the offset in a zip64 block
    std::optional<std::string> packed = std::nullopt;  // the packed bytes, in place of the method's
    std::optional<std::uint32_t> checksumTold = std::nullopt;
    std::optional<std::uint64_t> sizeTold = std::nullopt;
    std::optional<std::uint64_t> packedSizeTold = std::nullopt;
    std::optional<std::uint64_t> headerOffsetTold = std::nullopt;
    std::string extra = "";  // of the directory entry, in front of a zip64 block
    std::string comment = "";
};

// The archive around the members.
struct ZipLayout {
    std::vector<std::size_t> directoryOrder = {};  // numbers of members; empty for all, in the order of their data
    std::string directoryTail = "";                // counted into the directory, behind its entries
    bool zip64 = false;                            // a zip64 end record and its locator; the plain one tells FFFFFFFF
    std::optional<std::uint32_t> countTold = std::nullopt;
    std::optional<std::uint64_t> directorySizeTold = std::nullopt;
    std::optional<std::uint64_t> directoryOffsetTold = std::nullopt;
    std::string comment = "";
    std::optional<std::uint16_t> commentLengthTold = std::nullopt;
};

std::string FIWriteZip(const std::vector<ZipMember>& members, const ZipLayout& layout = {});

// Raw deflate data, and the packed form of a stored block alone, of at most 65,535 bytes, not marked as the last.
std::string FIDeflate(std::string_view bytes);
std::string FIStoredBlock(std::string_view bytes);

// What raw deflate data hold, up to their end or to damage. Returns whether they end properly.
bool FIInflate(std::string_view packed, std::string& bytes);
