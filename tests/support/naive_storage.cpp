// naive_storage.cpp - everything at once: whole chains as strings, sets of what was seen, no order of need.
#include "support/naive_storage.h"

#include <algorithm>
#include <set>

#include "support/storage_writer.h"

namespace {

constexpr std::uint32_t firstReserved = 0xFFFFFFFA;
constexpr std::size_t entryBytes = 128;
constexpr std::size_t miniSectorBytes = 64;

std::uint64_t NumberIn(const std::string& bytes, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < size; ++index) {
        value |= std::uint64_t{static_cast<unsigned char>(bytes.at(offset + index))} << (8 * index);
    }
    return value;
}

std::u16string NameOf(const std::string& entry) {
    std::u16string name;
    const std::size_t length = std::min<std::size_t>(NumberIn(entry, storage_offsets::nameLength, 2), 64);
    for (std::size_t place = 0; place + 2 <= length; place += 2) {
        const auto unit = static_cast<char16_t>(NumberIn(entry, place, 2));
        if (unit == 0) break;
        name += unit;
    }
    return name;
}

}  // namespace

NaiveStorage::NaiveStorage(const std::string& bytes) : bytes_(bytes) {
    if (bytes.size() < 512 || bytes.compare(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") != 0) return;
    const std::uint64_t major = Number(storage_offsets::majorVersion, 2);
    const std::uint64_t shift = Number(storage_offsets::sectorShift, 2);
    if ((major != 3 && major != 4) || (shift != 9 && shift != 12)) return;
    if (Number(storage_offsets::byteOrder, 2) != 0xFFFE || Number(storage_offsets::miniSectorShift, 2) != 6) return;
    sectorSize_ = std::size_t{1} << shift;
    fatSectors_ = ReadFatSectors();
    directory_ = FollowFat(static_cast<std::uint32_t>(Number(storage_offsets::firstDirectorySector, 4)));
    if (directory_.size() < entryBytes || directory_[storage_offsets::type] != 5) return;
    isStorage_ = true;
    miniFat_ = FollowFat(static_cast<std::uint32_t>(Number(storage_offsets::firstMiniFatSector, 4)));
    miniStream_ = FollowFat(static_cast<std::uint32_t>(NumberIn(directory_, storage_offsets::firstSector, 4)));
}

std::string NaiveStorage::ClassId() const { return directory_.substr(storage_offsets::classId, 16); }

std::vector<NaiveObject> NaiveStorage::List(std::uint32_t storage) const {
    std::vector<NaiveObject> objects;
    std::set<std::uint32_t> seen;
    std::vector<std::uint32_t> pending = {
        static_cast<std::uint32_t>(NumberIn(directory_, storage * entryBytes + storage_offsets::child, 4))};
    while (!pending.empty()) {
        const std::uint32_t number = pending.back();
        pending.pop_back();
        if (number >= firstReserved || (number + std::size_t{1}) * entryBytes > directory_.size()) continue;
        if (!seen.insert(number).second) continue;
        const std::string entry = directory_.substr(number * entryBytes, entryBytes);
        pending.push_back(static_cast<std::uint32_t>(NumberIn(entry, storage_offsets::right, 4)));
        pending.push_back(static_cast<std::uint32_t>(NumberIn(entry, storage_offsets::left, 4)));
        const char type = entry[storage_offsets::type];
        if (type != 1 && type != 2) continue;
        NaiveObject object = {NameOf(entry), type == 1, 0, "", entry.substr(storage_offsets::classId, 16), number};
        if (type == 2) {
            const std::size_t sizeBytes = Number(storage_offsets::majorVersion, 2) == 3 ? 4 : 8;
            object.size = NumberIn(entry, storage_offsets::size, sizeBytes);
            const auto first = static_cast<std::uint32_t>(NumberIn(entry, storage_offsets::firstSector, 4));
            const bool mini = object.size < Number(storage_offsets::miniStreamCutoff, 4);
            object.bytes = (mini ? FollowMiniFat(first) : FollowFat(first)).substr(0, object.size);
        }
        objects.push_back(object);
    }
    return objects;
}

std::uint64_t NaiveStorage::Number(std::size_t offset, std::size_t size) const {
    return NumberIn(bytes_, offset, size);
}

std::size_t NaiveStorage::SectorOffset(std::uint32_t sector) const { return (std::size_t{sector} + 1) * sectorSize_; }

bool NaiveStorage::IsSector(std::uint32_t sector) const {
    return sector < firstReserved && SectorOffset(sector) < bytes_.size();
}

std::string NaiveStorage::SectorBytes(std::uint32_t sector) const {
    return bytes_.substr(SectorOffset(sector), sectorSize_);
}

std::vector<std::uint32_t> NaiveStorage::ReadFatSectors() const {
    std::vector<std::uint32_t> sectors;
    for (std::size_t index = 0; index < 109; ++index) {
        sectors.push_back(static_cast<std::uint32_t>(Number(storage_offsets::fatSectors + index * 4, 4)));
    }
    std::set<std::uint32_t> seen;
    auto next = static_cast<std::uint32_t>(Number(storage_offsets::firstDifatSector, 4));
    while (IsSector(next) && seen.insert(next).second) {
        const std::string bytes = SectorBytes(next);
        for (std::size_t place = 0; place + 4 <= bytes.size() && place + 4 < sectorSize_; place += 4) {
            sectors.push_back(static_cast<std::uint32_t>(NumberIn(bytes, place, 4)));
        }
        if (bytes.size() < sectorSize_) break;
        next = static_cast<std::uint32_t>(NumberIn(bytes, sectorSize_ - 4, 4));
    }
    return sectors;
}

std::string NaiveStorage::FollowFat(std::uint32_t first) const {
    std::string chain;
    std::set<std::uint32_t> seen;
    std::uint32_t sector = first;
    while (IsSector(sector) && seen.insert(sector).second) {
        chain += SectorBytes(sector);
        const std::size_t perSector = sectorSize_ / 4;
        if (chain.size() % sectorSize_ != 0 || sector / perSector >= fatSectors_.size()) break;
        const std::uint32_t fatSector = fatSectors_[sector / perSector];
        if (!IsSector(fatSector)) break;
        const std::size_t offset = SectorOffset(fatSector) + sector % perSector * 4;
        if (offset + 4 > bytes_.size()) break;
        sector = static_cast<std::uint32_t>(Number(offset, 4));
    }
    return chain;
}

std::string NaiveStorage::FollowMiniFat(std::uint32_t first) const {
    std::string chain;
    std::set<std::uint32_t> seen;
    std::uint64_t sector = first;
    while (sector < firstReserved && sector * miniSectorBytes < miniStream_.size() &&
           seen.insert(static_cast<std::uint32_t>(sector)).second) {
        chain += miniStream_.substr(sector * miniSectorBytes, miniSectorBytes);
        if (chain.size() % miniSectorBytes != 0 || (sector + 1) * 4 > miniFat_.size()) break;
        sector = NumberIn(miniFat_, sector * 4, 4);
    }
    return chain;
}
