// random_numbers.h - numbers for tests that try many inputs: the same in every run.
#pragma once

#include <cstdint>
#include <iterator>
#include <random>

class RandomNumbers {
 public:
    explicit RandomNumbers(std::uint32_t seed) : engine_(seed) {}
    // From 0 to limit - 1.
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine_() % limit); }
    // True once in so many times.
    bool OneIn(std::uint32_t times) { return Below(times) == 0; }
    // A character of a text, or an item of a list.
    template <typename List>
    const auto& Of(const List& list) {
        return list[Below(static_cast<std::uint32_t>(std::size(list)))];
    }

 private:
    std::mt19937 engine_;
};
