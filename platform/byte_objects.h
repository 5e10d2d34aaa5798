// byte_objects.h - handles over plain files, open descriptors, blocks of memory and other handles.
#pragma once

#include "platform/base_utility.h"
#include "platform/handle.h"

// Each returns null with errno set when the object can't be opened, or is of a kind that is refused.
UTHandle* UTOpenPath(const char* path);
UTHandle* UTOpenDescriptor(const IODescriptorSpec& specification);
// Whether a caller's descriptor can be read from; sets errno if not. One that was opened for writing alone, or as a mere
// place in the file system, would open and then look like a file that fails or is empty. So would one of unbuffered
// reads (O_DIRECT), which takes whole blocks and aligned memory only.
bool UTIsReadable(int descriptor);
// UTOpenDescriptor for a descriptor that its owner has opened for reading, as UTOpenPath does: without the call that asks for that.
UTHandle* UTOpenReadableDescriptor(const IODescriptorSpec& specification);
UTHandle* UTOpenMemory(const IOMemorySpec& specification);
UTHandle* UTOpenForeign(HIOFILE file);

// When the file of a path or descriptor was last modified, as it told when it was opened: seconds since 1970-01-01 UTC and
// nanoseconds behind them. Returns false for an object of another kind.
bool UTTellModified(const UTHandle& handle, std::int64_t& seconds, std::uint32_t& nanoseconds);
