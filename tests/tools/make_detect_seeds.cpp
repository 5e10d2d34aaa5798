// make_detect_seeds.cpp - writes inputs for the fuzz target detect_fuzz: make_detect_seeds DIRECTORY.
//
// One for each routine of the second table: the smallest file that fits the first row that calls it, behind the two bytes
// of an input's head. The others in fuzz/seeds/detect are samples behind such a head, which have versions, and packages
// (fuzz/make_package_seeds.py).
#include <cstdio>
#include <fstream>
#include <set>
#include <string>

#include "further/table.h"
#include "support/skeleton.h"
#include "support/storage_writer.h"

namespace {

// Flags, of which 4 asks for an explanation, and the length of the name that follows.
std::string HeadOf(const std::string& name) {
    constexpr char flags = 4;
    constexpr std::size_t nameFollows = 128;
    return std::string{flags, static_cast<char>(nameFollows + name.size())} + name;
}

std::string BytesOf(const Skeleton& skeleton) {
    if (!skeleton.isStorage) return skeleton.bytes;
    StorageWriter storage;
    storage.SetClassId(skeleton.classId);
    return storage.Write().bytes;
}

bool WriteSeed(const std::string& directory, const FIFurtherRow& row) {
    const Skeleton skeleton = FIMakeSkeleton(row.signature);
    std::ofstream file(directory + "/routine-" + std::to_string(row.result.number), std::ios::binary);
    file << HeadOf(skeleton.name) << BytesOf(skeleton);
    return static_cast<bool>(file);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: make_detect_seeds DIRECTORY\n");
        return 2;
    }
    std::set<std::uint16_t> called;
    for (std::uint16_t number = 1; number <= furtherRowCount; ++number) {
        const FIFurtherRow& row = *FIFindFurtherRow(number);
        if (row.result.opcode != FIOpcode::Call || !called.insert(row.result.number).second) continue;
        if (WriteSeed(arguments[1], row)) continue;
        std::fprintf(stderr, "make_detect_seeds: %s can't be written to\n", arguments[1]);
        return 1;
    }
    return 0;
}
