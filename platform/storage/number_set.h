// number_set.h - a set of 32-bit numbers that takes memory for the stretches it holds numbers of, not for the range.
//
// Walks over damaged files keep the sectors or entries they have met in one, so that a loop ends them. The numbers of a
// file lie close together: a page of 512 of them takes 64 bytes. Most sets of small files need no second page: the first
// one lies in the set itself.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <utility>

#include "platform/heap_allocator.h"

class UTNumberSet {
 public:
    UTNumberSet() = default;
    UTNumberSet(const UTNumberSet&) = delete;
    UTNumberSet& operator=(const UTNumberSet&) = delete;

    // Adds a number. Returns false when the set holds it already. Throws std::bad_alloc, with the set as it was.
    bool Add(std::uint32_t number) {
        Page& page = PageOf(number / pageSize);
        const std::size_t place = number % pageSize;
        if (page.test(place)) return false;
        page.set(place);
        return true;
    }

    bool Holds(std::uint32_t number) const {
        const std::uint32_t pageNumber = number / pageSize;
        if (pageNumber == firstNumber_) return first_.test(number % pageSize);
        if (pages_.empty()) return false;
        const auto found = pages_.find(pageNumber);
        return found != pages_.end() && found->second.test(number % pageSize);
    }

 private:
    static constexpr std::uint32_t pageSize = 512;
    using Page = std::bitset<pageSize>;
    using Allocator = UTHeapAllocator<std::pair<const std::uint32_t, Page>>;

    Page& PageOf(std::uint32_t pageNumber) {
        // The page used last is used next: references into the map stay good while it grows.
        if (lastPage_ == nullptr) {
            firstNumber_ = lastNumber_ = pageNumber;
            lastPage_ = &first_;
        }
        if (lastNumber_ != pageNumber) {
            lastPage_ = pageNumber == firstNumber_ ? &first_ : &pages_[pageNumber];
            lastNumber_ = pageNumber;
        }
        return *lastPage_;
    }

    std::unordered_map<std::uint32_t, Page, std::hash<std::uint32_t>, std::equal_to<std::uint32_t>, Allocator> pages_;
    static constexpr std::uint32_t noPage = 0xFFFFFFFF;  // no number lies on it

    Page first_;
    std::uint32_t firstNumber_ = noPage;
    std::uint32_t lastNumber_ = noPage;
    Page* lastPage_ = nullptr;  // null while the set is empty
};
