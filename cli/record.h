// record.h - what the program says about one path.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fiid.h"

struct Record {
    std::string_view path;             // as given or as found, any bytes; they are the caller's
    FIID fiid = 0;                     // 0 when there is an error
    std::uint16_t row = 0;             // the deciding row of the signature table, 0 when no row decided
    std::optional<std::string> error;  // in plain words, when the path could not be read
};
