// descriptors.h - reading and writing through file descriptors.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

// Closes what it holds; -1 is nothing.
class OwnedDescriptor {
 public:
    explicit OwnedDescriptor(int number = -1) : number_(number) {}
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
    ~OwnedDescriptor();

    int Number() const { return number_; }

 private:
    int number_;
};

// Opens the descriptors 0, 1 and 2 where the caller has closed them: else the next file that is opened would be taken
// for standard input or output. They can't be read or written then, as before: that fails with EBADF.
void FillStandardDescriptors();

// Whether a descriptor is open and can be read; standard input can't when the caller has closed it.
bool IsOpenForReading(int descriptor);

// Opens a file, without waiting for the other end of a FIFO. Returns the descriptor, or -1 with errno set.
int OpenForReading(const std::string& path);

// The same for a path that begins at an open directory, or at the working directory for AT_FDCWD.
int OpenForReading(int directory, const char* path);

// A block that takes whatever a pipe holds in one read.
inline constexpr std::size_t readBlockBytes = 65536;

// Reads what there is, and waits when there is nothing yet. Returns the count of bytes, 0 at the end, or -1 with errno
// set: EINTR only when a signal ends the program.
ssize_t ReadAvailable(int descriptor, std::span<char> block);

// Writes all bytes, in one call where the system takes them so. Returns false with errno set.
bool WriteFully(int descriptor, std::string_view bytes);
