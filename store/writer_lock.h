// writer_lock.h - one process at a time scans into a store.
#pragma once

#include <string>

// A lock on a file beside the store, named as it is with "-lock" behind. The system releases it with the process,
// however that ends, so what is left of a dead one hinders nobody. The file holds the process's number, for the words
// alone. (A lock on the store itself would be one of SQLite's: closing any descriptor of the file takes all of a
// process's away.)
class WriterLock {
 public:
    WriterLock() = default;
    WriterLock(const WriterLock&) = delete;
    WriterLock& operator=(const WriterLock&) = delete;
    ~WriterLock();  // takes the file away

    // store is the path of the store without symbolic links, told its name in the words. "" or what is wrong.
    std::string Take(const std::string& store, const std::string& told);

 private:
    std::string file_;
    int descriptor_ = -1;
};
