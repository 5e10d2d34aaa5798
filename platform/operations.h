// operations.h - the operations of the platform layer's handles, put together: what handle.h has for all of them, the
// storages in their bytes, and the objects that can be opened in them.
#pragma once

#include "platform/handle.h"

// Gives a handle that was opened outside any other all operations of the layer. What is opened in it has them from it.
void UTGiveOperations(UTHandle& handle);
