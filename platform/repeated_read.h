// repeated_read.h - reads of something that may deliver less than it is asked for, repeated until all has come.
#pragma once

#include <cstdint>

// Calls readOn(at, wanted, came) until size bytes have come or it brings none: it is to read up to wanted bytes behind
// the at bytes that came already. count receives what came. A failure counts when nothing came in front of it; the
// next read from there tells it.
template <typename ReadOn>
std::int32_t UTRepeatRead(std::uint32_t size, std::uint32_t& count, ReadOn readOn) {
    count = 0;
    while (count < size) {
        std::uint32_t came = 0;
        const std::int32_t status = readOn(count, size - count, came);
        if (status != 0) return count > 0 ? 0 : status;
        if (came == 0) break;
        count += came;
    }
    return 0;
}
