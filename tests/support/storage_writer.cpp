// storage_writer.cpp - measuring the parts of a compound file, giving them their sectors, and writing them.
#include "support/storage_writer.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t headerFatCount = 109;
constexpr std::size_t entryBytes = 128;
constexpr std::size_t miniSectorBytes = 64;
constexpr std::size_t numberBytes = 4;
constexpr std::uint32_t difatMark = 0xFFFFFFFC;
constexpr std::uint32_t fatMark = 0xFFFFFFFD;
constexpr std::uint8_t storageType = 1;
constexpr std::uint8_t streamType = 2;
constexpr std::uint8_t rootType = 5;
constexpr std::uint8_t black = 1;

std::size_t UnitsFor(std::size_t bytes, std::size_t unit) { return (bytes + unit - 1) / unit; }

void PutNumber(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (std::size_t index = 0; index < size; ++index) {
        bytes.at(offset + index) = static_cast<char>(value >> (8 * index) & 0xFF);
    }
}

// The order of the format: shorter names first, equal lengths by their upper-cased units.
bool ComesBefore(const std::u16string& left, const std::u16string& right) {
    if (left.size() != right.size()) return left.size() < right.size();
    const auto upper = [](char16_t unit) {
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
    };
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [&](char16_t first, char16_t second) { return upper(first) < upper(second); });
}

}  // namespace

// The file while it is put together.
class StorageImage {
 public:
    explicit StorageImage(const StorageWriter& writer)
        : entries_(writer.entries_), sectorBytes_(std::size_t{1} << writer.layout_.sectorShift) {
        written_.layout = writer.layout_;
        written_.streams.resize(entries_.size());
    }

    WrittenStorage Make() {
        MeasureStreams();
        const std::size_t sectors = MeasureTables();
        next_.resize(sectors, storageNone);
        TakeSectors(sectors);
        written_.bytes.assign((sectors + 1) * sectorBytes_, '\0');
        WriteStreams();
        WriteDirectory();
        WriteTable(written_.miniFat, nextMini_);
        WriteTable(written_.fat, next_);
        WriteDifat();
        WriteHeader();
        return std::move(written_);
    }

 private:
    bool IsMini(const StorageWriter::Entry& entry) const {
        return entry.bytes.size() < written_.layout.miniStreamCutoff;
    }

    void MeasureStreams() {
        std::uint32_t miniSectors = 0;
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            const std::size_t size = entries_[index].bytes.size();
            if (!IsMini(entries_[index])) {
                written_.streams[index].resize(UnitsFor(size, sectorBytes_));
                continue;
            }
            written_.streams[index].resize(UnitsFor(size, miniSectorBytes));
            for (std::uint32_t& sector : written_.streams[index]) sector = miniSectors++;
        }
        nextMini_.resize(miniSectors, storageNone);
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            if (!IsMini(entries_[index])) continue;
            if (written_.layout.scattered) {
                for (std::uint32_t& sector : written_.streams[index]) sector = miniSectors - 1 - sector;
            }
            Link(written_.streams[index], nextMini_);
        }
        written_.miniStream.resize(UnitsFor(miniSectors * miniSectorBytes, sectorBytes_));
        written_.miniFat.resize(UnitsFor(miniSectors * numberBytes, sectorBytes_));
        written_.directory.resize(UnitsFor(entries_.size() * entryBytes, sectorBytes_));
    }

    // Finds out how many sectors there are of all. The FAT has to tell of its own sectors too.
    std::size_t MeasureTables() {
        std::size_t others = written_.miniStream.size() + written_.miniFat.size() + written_.directory.size();
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            if (!IsMini(entries_[index])) others += written_.streams[index].size();
        }
        std::size_t fat = 0;
        std::size_t difat = 0;
        while (true) {
            const std::size_t total = others + fat + difat;
            const std::size_t fatNeeded = UnitsFor(total * numberBytes, sectorBytes_);
            const std::size_t further = fatNeeded > headerFatCount ? fatNeeded - headerFatCount : 0;
            const std::size_t difatNeeded = UnitsFor(further, sectorBytes_ / numberBytes - 1);
            if (fatNeeded == fat && difatNeeded == difat) {
                written_.fat.resize(fat);
                written_.difat.resize(difat);
                return total;
            }
            fat = fatNeeded;
            difat = difatNeeded;
        }
    }

    // Gives each part its sectors, and links those that are chains.
    void TakeSectors(std::size_t sectors) {
        std::uint32_t taken = 0;
        const auto take = [&](std::vector<std::uint32_t>& part) {
            for (std::uint32_t& sector : part) {
                sector = written_.layout.scattered ? static_cast<std::uint32_t>(sectors) - 1 - taken : taken;
                ++taken;
            }
            Link(part, next_);
        };
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            if (!IsMini(entries_[index])) take(written_.streams[index]);
        }
        take(written_.miniStream);
        take(written_.miniFat);
        take(written_.directory);
        take(written_.fat);
        take(written_.difat);
        for (const std::uint32_t sector : written_.fat) next_[sector] = fatMark;
        for (const std::uint32_t sector : written_.difat) next_[sector] = difatMark;
    }

    static void Link(const std::vector<std::uint32_t>& chain, std::vector<std::uint32_t>& next) {
        for (std::size_t index = 0; index < chain.size(); ++index) {
            next[chain[index]] = index + 1 < chain.size() ? chain[index + 1] : storageEndOfChain;
        }
    }

    void WriteStreams() {
        for (std::size_t index = 0; index < entries_.size(); ++index) {
            const std::string& bytes = entries_[index].bytes;
            const bool mini = IsMini(entries_[index]);
            const std::size_t unit = mini ? miniSectorBytes : sectorBytes_;
            for (std::size_t place = 0; place < written_.streams[index].size(); ++place) {
                const std::uint32_t sector = written_.streams[index][place];
                const std::size_t offset = mini ? written_.MiniSectorOffset(sector) : written_.SectorOffset(sector);
                const std::string piece = bytes.substr(place * unit, unit);
                written_.bytes.replace(offset, piece.size(), piece);
            }
        }
    }

    void WriteDirectory() {
        const std::size_t room = written_.directory.size() * (sectorBytes_ / entryBytes);
        for (std::uint32_t entry = 0; entry < room; ++entry) {
            const std::size_t offset = written_.EntryOffset(entry);
            written_.Put32(offset + storage_offsets::left, storageNone);
            written_.Put32(offset + storage_offsets::right, storageNone);
            written_.Put32(offset + storage_offsets::child, storageNone);
            if (entry < entries_.size()) WriteEntry(entry, offset);
        }
        for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
            std::vector<std::uint32_t> children = entries_[entry].children;
            std::stable_sort(children.begin(), children.end(), [&](std::uint32_t left, std::uint32_t right) {
                return ComesBefore(entries_[left].name, entries_[right].name);
            });
            written_.Put32(written_.EntryOffset(entry) + storage_offsets::child, WriteTree(children));
        }
    }

    void WriteEntry(std::uint32_t number, std::size_t offset) {
        const StorageWriter::Entry& entry = entries_[number];
        for (std::size_t index = 0; index < entry.name.size(); ++index) {
            written_.Put16(offset + index * sizeof(char16_t), entry.name[index]);
        }
        const std::size_t lengthWithNul = std::min<std::size_t>((entry.name.size() + 1) * sizeof(char16_t), 64);
        written_.Put16(offset + storage_offsets::nameLength, static_cast<std::uint16_t>(lengthWithNul));
        written_.bytes[offset + storage_offsets::type] = static_cast<char>(entry.type);
        written_.bytes[offset + storage_offsets::type + 1] = black;
        written_.bytes.replace(offset + storage_offsets::classId, entry.classId.size(), entry.classId);
        const std::vector<std::uint32_t>& sectors = number == 0 ? written_.miniStream : written_.streams[number];
        const std::size_t size = number == 0 ? nextMini_.size() * miniSectorBytes : entry.bytes.size();
        if (entry.type != storageType) {
            written_.Put32(offset + storage_offsets::firstSector, sectors.empty() ? storageEndOfChain : sectors[0]);
            written_.Put64(offset + storage_offsets::size, size);
        }
    }

    // Hangs siblings together and returns the one on top.
    std::uint32_t WriteTree(const std::vector<std::uint32_t>& siblings) {
        if (siblings.empty()) return storageNone;
        if (written_.layout.tree == StorageTree::Balanced) return WriteBalanced(siblings.data(), siblings.size());
        const bool toTheLeft = written_.layout.tree == StorageTree::LeftChain;
        for (std::size_t index = 0; index + 1 < siblings.size(); ++index) {
            const std::size_t field = toTheLeft ? storage_offsets::left : storage_offsets::right;
            written_.Put32(written_.EntryOffset(siblings[index]) + field, siblings[index + 1]);
        }
        return siblings[0];
    }

    std::uint32_t WriteBalanced(const std::uint32_t* siblings, std::size_t count) {
        if (count == 0) return storageNone;
        const std::size_t middle = count / 2;
        const std::size_t offset = written_.EntryOffset(siblings[middle]);
        written_.Put32(offset + storage_offsets::left, WriteBalanced(siblings, middle));
        written_.Put32(offset + storage_offsets::right, WriteBalanced(siblings + middle + 1, count - middle - 1));
        return siblings[middle];
    }

    // Writes the numbers of a table into its sectors; what is left of the last sector stands for free sectors.
    void WriteTable(const std::vector<std::uint32_t>& tableSectors, const std::vector<std::uint32_t>& numbers) {
        static_assert(storageNone == 0xFFFFFFFF);
        for (const std::uint32_t sector : tableSectors) {
            written_.bytes.replace(written_.SectorOffset(sector), sectorBytes_, sectorBytes_, '\xFF');
        }
        const std::size_t perSector = sectorBytes_ / numberBytes;
        for (std::size_t index = 0; index < numbers.size(); ++index) {
            const std::size_t offset = written_.SectorOffset(tableSectors[index / perSector]);
            written_.Put32(offset + index % perSector * numberBytes, numbers[index]);
        }
    }

    void WriteDifat() {
        const std::size_t perSector = sectorBytes_ / numberBytes - 1;
        for (std::size_t index = 0; index < written_.difat.size(); ++index) {
            const std::size_t offset = written_.SectorOffset(written_.difat[index]);
            for (std::size_t place = 0; place < perSector; ++place) {
                const std::size_t fatIndex = headerFatCount + index * perSector + place;
                written_.Put32(offset + place * numberBytes,
                               fatIndex < written_.fat.size() ? written_.fat[fatIndex] : storageNone);
            }
            const bool last = index + 1 == written_.difat.size();
            written_.Put32(offset + perSector * numberBytes, last ? storageEndOfChain : written_.difat[index + 1]);
        }
    }

    void WriteHeader() {
        constexpr std::uint64_t signature = 0xE11AB1A1E011CFD0;
        constexpr std::uint16_t minorVersion = 0x3E;
        const auto first = [](const std::vector<std::uint32_t>& part) {
            return part.empty() ? storageEndOfChain : part.front();
        };
        written_.Put64(0, signature);
        written_.Put16(24, minorVersion);
        written_.Put16(storage_offsets::majorVersion, written_.layout.majorVersion);
        written_.Put16(storage_offsets::byteOrder, 0xFFFE);
        written_.Put16(storage_offsets::sectorShift, written_.layout.sectorShift);
        written_.Put16(storage_offsets::miniSectorShift, 6);
        if (written_.layout.majorVersion == 4)
            written_.Put32(40, static_cast<std::uint32_t>(written_.directory.size()));
        written_.Put32(storage_offsets::fatCount, static_cast<std::uint32_t>(written_.fat.size()));
        written_.Put32(storage_offsets::firstDirectorySector, first(written_.directory));
        written_.Put32(storage_offsets::miniStreamCutoff, written_.layout.miniStreamCutoff);
        written_.Put32(storage_offsets::firstMiniFatSector, first(written_.miniFat));
        written_.Put32(storage_offsets::miniFatCount, static_cast<std::uint32_t>(written_.miniFat.size()));
        written_.Put32(storage_offsets::firstDifatSector, first(written_.difat));
        written_.Put32(storage_offsets::difatCount, static_cast<std::uint32_t>(written_.difat.size()));
        for (std::size_t index = 0; index < headerFatCount; ++index) {
            written_.Put32(storage_offsets::fatSectors + index * numberBytes,
                           index < written_.fat.size() ? written_.fat[index] : storageNone);
        }
    }

    const std::vector<StorageWriter::Entry>& entries_;
    std::size_t sectorBytes_;
    std::vector<std::uint32_t> next_;
    std::vector<std::uint32_t> nextMini_;
    WrittenStorage written_;
};

std::size_t WrittenStorage::SectorOffset(std::uint32_t sector) const {
    return (std::size_t{sector} + 1) << layout.sectorShift;
}

std::size_t WrittenStorage::MiniSectorOffset(std::uint32_t miniSector) const {
    const std::size_t place = std::size_t{miniSector} * miniSectorBytes;
    const std::size_t sectorBytes = std::size_t{1} << layout.sectorShift;
    return SectorOffset(miniStream.at(place / sectorBytes)) + place % sectorBytes;
}

std::size_t WrittenStorage::EntryOffset(std::uint32_t entry) const {
    const std::size_t perSector = (std::size_t{1} << layout.sectorShift) / entryBytes;
    return SectorOffset(directory.at(entry / perSector)) + entry % perSector * entryBytes;
}

std::size_t WrittenStorage::FatOffset(std::uint32_t sector) const {
    const std::size_t perSector = (std::size_t{1} << layout.sectorShift) / numberBytes;
    return SectorOffset(fat.at(sector / perSector)) + sector % perSector * numberBytes;
}

std::size_t WrittenStorage::MiniFatOffset(std::uint32_t miniSector) const {
    const std::size_t perSector = (std::size_t{1} << layout.sectorShift) / numberBytes;
    return SectorOffset(miniFat.at(miniSector / perSector)) + miniSector % perSector * numberBytes;
}

void WrittenStorage::Put16(std::size_t offset, std::uint16_t value) { PutNumber(bytes, offset, value, sizeof(value)); }
void WrittenStorage::Put32(std::size_t offset, std::uint32_t value) { PutNumber(bytes, offset, value, sizeof(value)); }
void WrittenStorage::Put64(std::size_t offset, std::uint64_t value) { PutNumber(bytes, offset, value, sizeof(value)); }

StorageWriter::StorageWriter(const StorageLayout& layout) : layout_(layout) {
    entries_.push_back({u"Root Entry", rootType, "", std::string(16, '\0'), {}});
}

std::uint32_t StorageWriter::AddStream(std::u16string_view name, std::string bytes, std::uint32_t parent) {
    return Add(name, streamType, std::move(bytes), parent);
}

std::uint32_t StorageWriter::AddStorage(std::u16string_view name, std::uint32_t parent) {
    return Add(name, storageType, "", parent);
}

void StorageWriter::SetClassId(std::string_view classId, std::uint32_t entry) { entries_.at(entry).classId = classId; }

WrittenStorage StorageWriter::Write() const { return StorageImage(*this).Make(); }

std::uint32_t StorageWriter::Add(std::u16string_view name, std::uint8_t type, std::string bytes, std::uint32_t parent) {
    const auto number = static_cast<std::uint32_t>(entries_.size());
    entries_.push_back({std::u16string(name), type, std::move(bytes), std::string(16, '\0'), {}});
    entries_.at(parent).children.push_back(number);
    return number;
}

std::u16string FIWiden(std::string_view text) {
    std::u16string wide;
    for (const char character : text) wide += static_cast<unsigned char>(character);
    return wide;
}
