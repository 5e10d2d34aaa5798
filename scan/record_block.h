// record_block.h - many byte strings in memory, at little more than their bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// A record stands in memory and in files as its length, seven bits in a byte, the lowest first, with the highest bit
// set in all but the last; then its bytes.
std::size_t RecordBytes(std::size_t length);  // what a record of a length takes so
void AppendRecord(std::vector<char>& bytes, std::string_view record);

// Takes the record that bytes begin with. Returns false when they end within it.
bool TakeRecord(std::string_view bytes, std::string_view& record);

enum class RecordOrder {
    Sorted,  // by their bytes, unsigned
    AsAdded,
};

// Records go in, then come out in their order. There is room for largestMemory in any case.
class RecordBlock {
 public:
    static constexpr std::size_t largestMemory = std::size_t{1} << 30;
    using Place = std::uint32_t;  // among the records, in their order

    void Add(std::string_view record);

    // Once, behind all Adds and in front of all else. While it sorts it takes 16 bytes for each record beside them.
    void Finish(RecordOrder order);

    // Returns false when there are no more. The record lives as long as the block.
    bool Next(std::string_view& record);

    bool IsAtEnd() const { return next_ == end_; }
    Place Here() const { return next_; }
    void GoTo(Place place) { next_ = place; }

    // In bytes, with the index of four bytes for each record.
    std::size_t Memory() const { return bytes_ + count_ * sizeof(Place); }
    std::size_t MemoryWith(std::size_t length) const { return Memory() + RecordBytes(length) + sizeof(Place); }

 private:
    std::string_view RecordAt(Place place) const;
    Place PlaceBehind(Place place, std::size_t length) const;
    void SortIndex();

    std::vector<std::vector<char>> chunks_;  // of chunkBytes, or of one longer record
    std::vector<Place> index_;               // Sorted: where the records begin
    std::size_t count_ = 0;
    std::size_t bytes_ = 0;
    Place next_ = 0;  // Sorted: in the index; else where the record begins
    Place end_ = 0;
    RecordOrder order_ = RecordOrder::AsAdded;
};
