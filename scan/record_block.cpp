// record_block.cpp - many byte strings in memory, at little more than their bytes.
//
// The bytes lie in chunks, so that nothing is copied when more come and no room is kept for what never comes. A place
// is the number of a chunk in its upper 14 bits and an offset in that chunk in its lower 18. A chunk is left when a
// record does not fit, so at worst half of each is used: 1 GiB takes 8,192 of 16,384.
#include "scan/record_block.h"

#include <algorithm>

namespace {

constexpr std::uint32_t offsetBits = 18;
constexpr std::size_t chunkBytes = std::size_t{1} << offsetBits;
constexpr std::uint8_t lengthBits = 7;
constexpr std::uint8_t lengthGoesOn = 0x80;
constexpr std::size_t longestLength = (sizeof(std::size_t) * 8 + lengthBits - 1) / lengthBits;  // in bytes

// Eight bytes of a record from an offset on as a number. Records that are equal in front of them are in the order of these
// numbers, where they differ.
std::uint64_t SortKeyOf(std::string_view record, std::size_t offset) {
    const std::string_view bytes = record.substr(offset, sizeof(std::uint64_t));
    std::uint64_t key = 0;
    for (std::size_t index = 0; index < sizeof(key); ++index) {
        key = (key << 8) | (index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0U);
    }
    return key;
}

std::size_t CommonBytes(std::string_view left, std::string_view right) {
    return static_cast<std::size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
}

std::uint32_t PlaceOf(std::size_t chunk, std::size_t offset) {
    return static_cast<std::uint32_t>((chunk << offsetBits) | offset);
}

}  // namespace

std::size_t RecordBytes(std::size_t length) {
    std::size_t bytes = 1 + length;
    while ((length >>= lengthBits) != 0) ++bytes;
    return bytes;
}

void AppendRecord(std::vector<char>& bytes, std::string_view record) {
    std::size_t length = record.size();
    for (; length >= lengthGoesOn; length >>= lengthBits) {
        bytes.push_back(static_cast<char>(length | lengthGoesOn));
    }
    bytes.push_back(static_cast<char>(length));
    bytes.insert(bytes.end(), record.begin(), record.end());
}

bool TakeRecord(std::string_view bytes, std::string_view& record) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < std::min(bytes.size(), longestLength); ++at) {
        const auto byte = static_cast<std::uint8_t>(bytes[at]);
        length |= std::size_t{byte & (lengthGoesOn - 1U)} << (at * lengthBits);
        if ((byte & lengthGoesOn) != 0) continue;
        record = bytes.substr(at + 1, length);
        return record.size() == length;
    }
    return false;
}

void RecordBlock::Add(std::string_view record) {
    const std::size_t needed = RecordBytes(record.size());
    if (chunks_.empty() || chunks_.back().size() + needed > chunkBytes) {
        chunks_.emplace_back();
        // The first grows with what comes: most directories have a few names.
        if (chunks_.size() > 1) chunks_.back().reserve(std::max(chunkBytes, needed));
    }
    AppendRecord(chunks_.back(), record);
    bytes_ += needed;
    ++count_;
}

void RecordBlock::Finish(RecordOrder order) {
    order_ = order;
    if (chunks_.empty()) return;
    chunks_.back().shrink_to_fit();
    end_ = PlaceOf(chunks_.size(), 0);
    if (order == RecordOrder::Sorted) SortIndex();
}

bool RecordBlock::Next(std::string_view& record) {
    if (IsAtEnd()) return false;
    if (order_ == RecordOrder::Sorted) {
        record = RecordAt(index_[next_++]);
    } else {
        record = RecordAt(next_);
        next_ = PlaceBehind(next_, record.size());
    }
    return true;
}

// Sorted by keys that mostly decide: names of one directory have long beginnings in common, behind which they soon differ.
void RecordBlock::SortIndex() {
    struct Keyed {
        std::uint64_t key;
        Place place;
    };
    const std::string_view first = RecordAt(0);
    std::size_t common = first.size();
    std::vector<Keyed> keyed;
    keyed.reserve(count_);
    std::string_view record;
    for (Place place = 0; place != end_; place = PlaceBehind(place, record.size())) {
        record = RecordAt(place);
        common = CommonBytes(first.substr(0, common), record);
        keyed.push_back({0, place});
    }
    for (Keyed& entry : keyed) entry.key = SortKeyOf(RecordAt(entry.place), common);
    std::sort(keyed.begin(), keyed.end(), [this](const Keyed& left, const Keyed& right) {
        return left.key != right.key ? left.key < right.key : RecordAt(left.place) < RecordAt(right.place);
    });
    index_.reserve(count_);
    for (const Keyed& entry : keyed) index_.push_back(entry.place);
    end_ = static_cast<Place>(index_.size());
}

std::string_view RecordBlock::RecordAt(Place place) const {
    const std::vector<char>& chunk = chunks_[place >> offsetBits];
    const std::size_t offset = place % chunkBytes;
    std::string_view record;
    TakeRecord({chunk.data() + offset, chunk.size() - offset}, record);
    return record;
}

RecordBlock::Place RecordBlock::PlaceBehind(Place place, std::size_t length) const {
    const std::size_t chunk = place >> offsetBits;
    const std::size_t offset = place % chunkBytes + RecordBytes(length);
    return offset == chunks_[chunk].size() ? PlaceOf(chunk + 1, 0) : PlaceOf(chunk, offset);
}
