// sparse_source.h - sources for tests: bytes at chosen places of something large, and awkward ways to deliver them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "fiid/detect.h"

// Zeros, but for the pieces. Counts what is asked for.
struct SparseSource {
    std::uint64_t size = 0;
    std::map<std::uint64_t, std::string> pieces = {};  // by their offsets; they do not overlap
    std::uint32_t mostBytes = UINT32_MAX;              // that one call delivers
    std::uint64_t failFrom = UINT64_MAX;               // bytes from here on can't be read
    std::uint32_t countLie = 0;                        // added to the count that is told
    std::uint64_t endsAt = UINT64_MAX;                 // the source delivers nothing from here on
    std::string name = "";
    std::uint32_t preferredBlock = 0;

    struct Call {
        std::uint64_t offset;
        std::uint32_t size;
    };
    std::vector<Call> calls = {};

    fiid_source Told() { return {this, ReadAt, size, name.c_str(), preferredBlock, 0}; }

    std::uint64_t BytesAsked() const {
        std::uint64_t bytes = 0;
        for (const Call& call : calls) bytes += call.size;
        return bytes;
    }

 private:
    static std::int32_t ReadAt(void* context, std::uint64_t offset, void* buffer, std::uint32_t size,
                               std::uint32_t* count) {
        auto& source = *static_cast<SparseSource*>(context);
        source.calls.push_back({offset, size});
        if (offset >= source.failFrom) return 77;
        const std::uint64_t end = std::min({source.size, source.endsAt, source.failFrom, offset + size});
        const auto came =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(end > offset ? end - offset : 0, source.mostBytes));
        std::memset(buffer, 0, came);
        for (const auto& [start, bytes] : source.pieces) {
            const std::uint64_t first = std::max(start, offset);
            const std::uint64_t behind = std::min(start + bytes.size(), offset + came);
            if (first >= behind) continue;
            std::memcpy(static_cast<char*>(buffer) + (first - offset), bytes.data() + (first - start), behind - first);
        }
        *count = came + source.countLie;
        return 0;
    }
};

// A source of these bytes alone.
inline SparseSource FISourceOf(std::string bytes, std::string name = "") {
    SparseSource source;
    source.size = bytes.size();
    source.pieces[0] = std::move(bytes);
    source.name = std::move(name);
    return source;
}

// The source with so many zeros put in at an offset of its only piece.
inline SparseSource FIStretch(const std::string& bytes, std::size_t place, std::uint64_t zeros) {
    SparseSource source;
    source.size = bytes.size() + zeros;
    source.pieces[0] = bytes.substr(0, place);
    source.pieces[place + zeros] = bytes.substr(place);
    return source;
}
