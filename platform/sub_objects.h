// sub_objects.h - the operation that opens an object inside another: slot 6 of every handle's table.
#pragma once

#include <cstdint>

#include "fiid.h"

// IOOpenSub of the handles of this layer: see IOOperations. Refuses a parent that is not of this layer.
std::int32_t UTOpenSubObject(HIOFILE* out, std::uint32_t kind, const void* specification, std::uint32_t flags);
