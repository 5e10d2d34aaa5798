// The routines that read one block of the handle itself, and their handles.
#include <cstdint>
#include <string>

#include "graphics/marked_records.h"
#include "graphics/x_images.h"
#include "support/probe_case.h"

namespace {

struct BlockReader {
    const char* name;
    FIProbe probe;
    const char* bytes;
    FIID answer;
    std::uint64_t blockSize;
};

const BlockReader blockReaders[] = {
    // clang-format off
    {"marked records", FIProbeMarkedRecords, R"(02 02 02 7E)",                                                            1570, 2000},
    {"XBM",            FIProbeXbm,           R"("#define w 8 #define h 8 static char b[] = { 0 1 2 3 ")",                 1571, 4096},
    {"XPM",            FIProbeXpm,           R"("/* XPM */" 0A)",                                                         1572, 4096},
    // clang-format on
};

TEST(BlockReaders, ReadOneBlockFromTheStartWhereverTheReaderStands) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes) + std::string(10000, ' '));
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle, 3), reader.answer) << reader.name;
        EXPECT_EQ(handle->reads, 1U) << reader.name;
        EXPECT_EQ(handle->bytesDelivered, reader.blockSize) << reader.name;
    }
}

TEST(BlockReaders, FailingSeekIsNoAnswer) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes));
        handle->failSeeksFrom = 0;
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), 0U) << reader.name;
        EXPECT_EQ(handle->reads, 0U) << reader.name;
    }
}

TEST(BlockReaders, FailingReadIsNoAnswer) {
    for (const BlockReader& reader : blockReaders) {
        const auto handle = FIMakeTestHandle(FIBytes(reader.bytes));
        handle->failReadsFrom = 0;
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), 0U) << reader.name;
    }
}

TEST(BlockReaders, ShortReadIsAllThatIsLookedAt) {
    for (const BlockReader& reader : blockReaders) {
        const std::string bytes = FIBytes(reader.bytes);
        const auto handle = FIMakeTestHandle(bytes + bytes);
        handle->bytesPerRead = static_cast<std::uint32_t>(bytes.size());
        EXPECT_EQ(FIAnswerOver(reader.probe, *handle), reader.answer) << reader.name;
        EXPECT_EQ(handle->reads, 1U) << reader.name;
        const auto oneByte = FIMakeTestHandle(bytes + bytes);
        oneByte->bytesPerRead = 1;
        EXPECT_EQ(FIAnswerOver(reader.probe, *oneByte), 0U) << reader.name;
    }
}

}  // namespace
