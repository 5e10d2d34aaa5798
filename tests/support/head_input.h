// head_input.h - heads for tests: of any file, and cut anywhere, so that a few bytes are a head of a longer file.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "reader/head.h"
#include "support/random_numbers.h"

// The head of a file, up to size bytes of it. The file must outlive it.
inline FIHead FIHeadOf(std::string_view file, std::size_t size = largestHead) {
    FIHead head;
    head.bytes = reinterpret_cast<const std::uint8_t*>(file.data());
    head.size = static_cast<std::uint32_t>(std::min(file.size(), size));
    head.fileSize = file.size();
    head.maskedBytes = 0;
    return head;
}

// Asks a gate about a file by a head that is cut somewhere, in a block of its own, so that the sanitizer sees a look
// behind it.
template <typename Gate>
bool FIAskGate(Gate gate, const std::string& file, std::size_t size) {
    FIHead head = FIHeadOf(file, size);
    const auto block = std::make_unique<std::uint8_t[]>(head.size);
    std::copy_n(head.bytes, head.size, block.get());
    head.bytes = block.get();
    return gate(head);
}

// Whatever the gate rules out by a head of any size must be nothing for the routine, which is given as a function of the
// file. Returns how often the gate was closed by a head of less than the file.
template <typename Gate, typename Routine>
std::uint32_t FIExpectGateHolds(Gate gate, Routine routine, const std::string& file, RandomNumbers& random) {
    const FIID answer = routine(file);
    const std::size_t largest = std::min<std::size_t>(file.size(), largestHead);
    EXPECT_TRUE(answer == 0 || FIAskGate(gate, file, largest)) << testing::PrintToString(file);
    std::uint32_t closed = 0;
    for (std::uint32_t cut = 0; cut < 3; ++cut) {
        const std::size_t size = random.Below(static_cast<std::uint32_t>(largest + 1));
        if (FIAskGate(gate, file, size)) continue;
        ++closed;
        EXPECT_EQ(answer, 0) << size << " bytes of " << testing::PrintToString(file);
    }
    return closed;
}
