// make_storage_seeds.cpp - writes the seeds of the fuzz target storage_fuzz: make_storage_seeds fuzz/seeds/storage.
//
// Small compound files of every layout, each with streams that a routine looks into, and a few with damage that a
// reader has to come back from.
#include <cstdio>
#include <fstream>
#include <string>

#include "support/bytes.h"
#include "support/storage_writer.h"

namespace {

struct Stream {
    const char* name;
    const char* bytes;  // in the notation of FIBytes
};

// One file for each: the streams that the routines read, as short as they may be.
const Stream streams[] = {
    {"PowerPoint Document", "w:3"},
    {"WordDocument", "EC A5 6A 00 00 60"},
    {"PerfectOffice_MAIN", R"(FF "WPC" w:0 00*3 0A)"},
    {"Workbook", "00*8 w:6214 w:1997"},
    {"NativeContent_MAIN", R"(01 00 0E 00 "QPW9")"},
    {"FileHeader", R"("HWP Document File")"},
    {"EncryptedPackage", "00"},
    {"\005SummaryInformation", R"(FE FF 00 00 >44 d:48 d:24 00*4 d:18 d:16 d:30 d:20 "Microsoft Word 10.0")"},
    {"VisioDocument", "00*24 d:0x000B0000"},
    {"DesignerDoc", "00*13 w:5"},
};

bool WriteSeed(const std::string& directory, const std::string& name, const std::string& bytes) {
    std::ofstream file(directory + "/" + name, std::ios::binary);
    file << bytes;
    return static_cast<bool>(file);
}

// All streams at once, a large one and a storage within a storage.
StorageWriter FullStorage(const StorageLayout& layout) {
    StorageWriter writer(layout);
    for (const Stream& stream : streams)
        static_cast<void>(writer.AddStream(FIWiden(stream.name), FIBytes(stream.bytes)));
    const std::uint32_t sub = writer.AddStorage(u"PP97_DUALSTORAGE");
    const std::uint32_t inner = writer.AddStorage(u"inner", sub);
    static_cast<void>(writer.AddStream(u"deep", "deep", inner));
    static_cast<void>(writer.AddStream(u"large", std::string(4500, 'L'), sub));
    return writer;
}

bool WriteLayouts(const std::string& directory) {
    for (const bool version4 : {false, true}) {
        for (const bool scattered : {false, true}) {
            StorageLayout layout;
            layout.majorVersion = version4 ? 4 : 3;
            layout.scattered = scattered;
            layout.tree = scattered ? StorageTree::LeftChain : StorageTree::Balanced;
            const std::string name = std::string(version4 ? "version4" : "version3") + (scattered ? "_scattered" : "");
            if (!WriteSeed(directory, name, FullStorage(layout).Write().bytes)) return false;
        }
    }
    StorageLayout largeSectors;
    largeSectors.sectorShift = 12;
    StorageWriter writer(largeSectors);
    static_cast<void>(writer.AddStream(u"WordDocument", FIBytes(streams[1].bytes)));
    return WriteSeed(directory, "sectors_of_4096", writer.Write().bytes);
}

bool WriteSingles(const std::string& directory) {
    std::uint32_t number = 0;
    for (const Stream& stream : streams) {
        StorageWriter writer;
        static_cast<void>(writer.AddStream(FIWiden(stream.name), FIBytes(stream.bytes)));
        if (!WriteSeed(directory, "stream" + std::to_string(number++), writer.Write().bytes)) return false;
    }
    StorageWriter inner;
    static_cast<void>(inner.AddStream(u"Book", "inner"));
    StorageWriter outer;
    static_cast<void>(outer.AddStream(u"nested", inner.Write().bytes));
    return WriteSeed(directory, "nested", outer.Write().bytes);
}

bool WriteDamaged(const std::string& directory) {
    const StorageWriter writer = FullStorage({});
    WrittenStorage loop = writer.Write();
    loop.Put32(loop.FatOffset(loop.directory[2]), loop.directory[0]);
    loop.Put32(loop.MiniFatOffset(0), 0);
    WrittenStorage tree = writer.Write();
    tree.Put32(tree.EntryOffset(1) + storage_offsets::left, 2);
    tree.Put32(tree.EntryOffset(2) + storage_offsets::right, 1);
    WrittenStorage shortFile = writer.Write();
    shortFile.bytes.resize(shortFile.EntryOffset(3) + 100);
    return WriteSeed(directory, "damaged_chains", loop.bytes) && WriteSeed(directory, "damaged_tree", tree.bytes) &&
           WriteSeed(directory, "short", shortFile.bytes);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: make_storage_seeds DIRECTORY\n");
        return 2;
    }
    const std::string directory = arguments[1];
    if (WriteLayouts(directory) && WriteSingles(directory) && WriteDamaged(directory)) return 0;
    std::fprintf(stderr, "make_storage_seeds: %s can't be written to\n", arguments[1]);
    return 1;
}
