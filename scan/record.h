// record.h - what the program says about one path.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "fiid/detect.h"

struct Record {
    std::string_view path;             // as given or as found, any bytes; they are the caller's
    std::optional<std::string> error;  // in plain words, when the path could not be read
    fiid_result answer;                // of no meaning when there is an error
};
