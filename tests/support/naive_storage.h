// naive_storage.h - a second reader of compound files for tests: it takes everything in at once and follows the rules
// one after the other, so that the reader under test has something obvious to agree with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// An object of a storage.
struct NaiveObject {
    std::u16string name;
    bool isStorage;
    std::uint64_t size;   // of a stream, as its entry tells it
    std::string bytes;    // of a stream, up to where it ends or breaks off
    std::string classId;  // of a storage
    std::uint32_t entry;
};

// A compound file, or what only looks like one.
class NaiveStorage {
 public:
    explicit NaiveStorage(const std::string& bytes);

    bool IsStorage() const { return isStorage_; }
    std::string ClassId() const;

    // The streams and storages of the file's storage, or of the one with the entry, in the order of a walk over the
    // tree: each object before those to its left, and those before the ones to its right.
    std::vector<NaiveObject> List(std::uint32_t entry = 0) const;

 private:
    std::uint64_t Number(std::size_t offset, std::size_t size) const;
    std::size_t SectorOffset(std::uint32_t sector) const;
    bool IsSector(std::uint32_t sector) const;
    std::string SectorBytes(std::uint32_t sector) const;
    std::vector<std::uint32_t> ReadFatSectors() const;
    std::string FollowFat(std::uint32_t first) const;
    std::string FollowMiniFat(std::uint32_t first) const;

    const std::string& bytes_;
    bool isStorage_ = false;
    std::size_t sectorSize_ = 0;
    std::vector<std::uint32_t> fatSectors_;
    std::string directory_;
    std::string miniFat_;
    std::string miniStream_;
};
