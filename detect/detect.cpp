// detect.cpp - the entries of libfiid-detect that identify: what they are given, checked and opened.
#include "fiid/detect.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>

#include "detect/answer.h"
#include "platform/byte_objects.h"
#include "platform/operations.h"
#include "platform/source.h"

namespace {

constexpr std::uint32_t largestOptions = 4096;
constexpr std::uint32_t commonFlags = FIID_NO_TEXT | FIID_NO_FURTHER | FIID_EXPLAIN;

bool FIIsZero(const unsigned char* bytes, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        if (bytes[index] != 0) return false;
    }
    return true;
}

// Copies as many fields as both sides know. Returns false for what can't be done as asked.
bool FIReadOptions(const fiid_options* given, std::uint32_t flagsAllowed, fiid_options& options) {
    options = {sizeof(options), 0};
    if (given == nullptr) return true;
    const std::uint32_t size = given->size;
    if (size < sizeof(given->size) || size > largestOptions) return false;
    if (size > sizeof(options)) {
        const auto* const bytes = reinterpret_cast<const unsigned char*>(given);
        if (!FIIsZero(bytes + sizeof(options), size - sizeof(options))) return false;
    }
    std::memcpy(&options, given, size < sizeof(options) ? size : sizeof(options));
    return (options.flags & ~flagsAllowed) == 0;
}

// Clears the result and reads the options. Returns false when the call is not one.
bool FIBegin(const fiid_options* given, std::uint32_t flagsAllowed, fiid_options& options, fiid_result* result) {
    if (result == nullptr) return false;
    FIClearResult(*result);
    return FIReadOptions(given, flagsAllowed, options);
}

std::int32_t FIStatusOfError(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return FIID_ERROR_NOT_FOUND;
        case EACCES:
        case EPERM:
            return FIID_ERROR_ACCESS;
        case EISDIR:
            return FIID_ERROR_DIRECTORY;
        case EINVAL:  // of the platform layer, for what is no file
        case ENXIO:   // of the system, for a socket
            return FIID_ERROR_NOT_A_FILE;
        case EBADF:
            return FIID_ERROR_DESCRIPTOR;
        case ENOMEM:
            return FIID_ERROR_MEMORY;
        default:
            return FIID_ERROR_OPEN;
    }
}

// Answers and closes an object that was opened, or tells why it was not: errno says so.
std::int32_t FIAnswerOpened(UTHandle* file, const fiid_options& options, fiid_result& result) {
    if (file == nullptr) {
        result.system_error = errno;
        return FIStatusOfError(errno);
    }
    UTGiveOperations(*file);
    const std::int32_t status = FIAnswerHandle(*file, options.flags, result);
    UTCloseHandle(*file);
    return status;
}

}  // namespace

extern "C" {

std::int32_t fiid_detect_path(const char* path, const fiid_options* options, fiid_result* result) {
    fiid_options known;
    if (!FIBegin(options, commonFlags, known, result) || path == nullptr) return FIID_ERROR_ARGUMENT;
    return FIAnswerOpened(UTOpenPath(path), known, *result);
}

std::int32_t fiid_detect_memory(const void* data, std::uint64_t size, const char* name, const fiid_options* options,
                                fiid_result* result) {
    fiid_options known;
    if (!FIBegin(options, commonFlags, known, result)) return FIID_ERROR_ARGUMENT;
    if ((data == nullptr && size > 0) || size > std::numeric_limits<std::size_t>::max()) return FIID_ERROR_ARGUMENT;
    return FIAnswerOpened(UTOpenMemory({data, size, name}), known, *result);
}

std::int32_t fiid_detect_descriptor(int descriptor, const char* name, const fiid_options* options,
                                    fiid_result* result) {
    fiid_options known;
    if (!FIBegin(options, commonFlags | FIID_DESCRIPTOR_IS_READABLE, known, result)) return FIID_ERROR_ARGUMENT;
    if ((known.flags & FIID_DESCRIPTOR_IS_READABLE) == 0 && !UTIsReadable(descriptor)) {
        result->system_error = errno;
        return FIID_ERROR_DESCRIPTOR;
    }
    return FIAnswerOpened(UTOpenReadableDescriptor({descriptor, name}), known, *result);
}

std::int32_t fiid_detect_source(const fiid_source* source, const fiid_options* options, fiid_result* result) {
    fiid_options known;
    if (!FIBegin(options, commonFlags, known, result)) return FIID_ERROR_ARGUMENT;
    if (source == nullptr || source->read_at == nullptr || source->size == FIID_SIZE_UNKNOWN || source->reserved != 0)
        return FIID_ERROR_ARGUMENT;
    const std::int32_t status = FIAnswerOpened(
        UTOpenSource({source->context, source->read_at, source->size, source->name, source->preferred_block}), known,
        *result);
    if (status == FIID_OK && result->size < source->size) result->warnings |= FIID_WARN_CUT;
    return status;
}

}  // extern "C"
