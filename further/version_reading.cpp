// version_reading.cpp - lists of versions, and looks at bytes.
#include "further/version_reading.h"

#include <algorithm>

bool FITakeVersion(std::span<const FIVersion> list, std::string_view text, FIVersion& version) {
    const auto place = std::ranges::find(list, text, &FIVersion::version);
    if (place == list.end()) return false;
    version = *place;
    return true;
}

bool FITakeVersion(std::span<const FINamedVersion> list, std::string_view name, FIVersion& version) {
    const auto place = std::ranges::find(list, name, &FINamedVersion::name);
    if (place == list.end()) return false;
    version = place->version;
    return true;
}

bool FITakeVersion(std::span<const FINumberedVersion> list, std::uint32_t number, FIVersion& version) {
    const auto place = std::ranges::find(list, number, &FINumberedVersion::number);
    if (place == list.end()) return false;
    version = place->version;
    return true;
}

bool FITakeNumberLE(const FILook& look, std::uint32_t offset, std::uint32_t size,
                    std::span<const FINumberedVersion> list, FIVersion& version) {
    const std::string_view bytes = FIStartText(look, offset, size);
    return bytes.size() == size && FITakeVersion(list, FINumberLE(bytes), version);
}

bool FITakeNumberBE(const FILook& look, std::uint32_t offset, std::uint32_t size,
                    std::span<const FINumberedVersion> list, FIVersion& version) {
    const std::string_view bytes = FIStartText(look, offset, size);
    return bytes.size() == size && FITakeVersion(list, FINumberBE(bytes), version);
}

bool FITakeText(const FILook& look, std::uint32_t offset, std::uint32_t size, std::span<const FIVersion> list,
                FIVersion& version) {
    const std::string_view bytes = FIStartText(look, offset, size);
    return bytes.size() == size && FITakeVersion(list, bytes, version);
}

std::string_view FIStartText(const FILook& look, std::size_t offset, std::size_t size) {
    const std::string_view start = FITextOf(FILookAtStart(look));
    return start.substr(std::min(offset, start.size()), size);
}

std::string_view FIPieceAt(FILook& look, std::uint64_t offset, std::span<char> buffer) {
    const std::uint64_t end = offset + buffer.size();
    const std::string_view known = FITextOf(look.wide != nullptr ? FILookAtHead(look) : FILookAtStart(look));
    if (look.size <= known.size() || (end >= offset && end <= known.size())) {
        return known.substr(static_cast<std::size_t>(std::min<std::uint64_t>(offset, known.size())), buffer.size());
    }
    std::uint32_t count = 0;
    const std::int32_t status =
        UTReadAt(*look.file, offset, buffer.data(), static_cast<std::uint32_t>(buffer.size()), count);
    return {buffer.data(), status == 0 ? count : 0};
}
