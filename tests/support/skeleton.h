// skeleton.h - the smallest file that fits a signature row, built from the row's notation.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/test_handle.h"

// Bytes of a skeleton that a row tests, and what they are changed to so that the row does not match any more.
struct SkeletonChange {
    std::size_t offset;
    std::string bytes;
};

struct Skeleton {
    std::string bytes;
    std::string name;  // the file's name, with the extension that the row asks for
    bool isStorage = false;
    std::string classId;  // 16 bytes in memory form, for a storage
    std::vector<SkeletonChange> changes;
};

// Builds the skeleton of a notation; hosts are those that the signature table was compiled with. Ends the test program
// for a notation it does not know: this reader of the notation is written apart from the assembler.
Skeleton FIMakeSkeleton(std::string_view notation);

// A handle over a skeleton.
std::unique_ptr<TestHandle> FIOpenSkeleton(const Skeleton& skeleton);
