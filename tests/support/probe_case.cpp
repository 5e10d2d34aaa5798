#include "support/probe_case.h"

#include <algorithm>
#include <functional>

#include "core/driver.h"
#include "platform/base_utility.h"
#include "reader/reader.h"

namespace {

using Probe = std::function<FIID(FIReader&)>;

FIID RunOver(const Probe& probe, TestHandle& handle, std::uint32_t start) {
    const std::size_t blocksBefore = FIHeapBlocks();
    FIReader* const reader = FIReaderNew(FIFileOf(handle));
    if (start > 0) static_cast<void>(FIReaderSeek(*reader, start));
    const FIID answer = probe(*reader);
    EXPECT_EQ(FIReaderFree(*reader), FIFileOf(handle));
    EXPECT_EQ(FIHeapBlocks(), blocksBefore) << "the routine leaked a heap block";
    EXPECT_EQ(handle.openChildren, 0U) << "the routine left a sub-object open";
    return answer;
}

// Failing at the first reads and at a spread of later ones; every run must come back.
void RunOverFailingHandles(const Probe& probe, std::string_view bytes, std::uint32_t start, std::uint32_t readsNeeded) {
    const std::uint32_t step = std::max<std::uint32_t>(1, readsNeeded / 8);
    for (std::uint32_t failing = 0; failing < readsNeeded; failing += step) {
        const auto handle = FIMakeTestHandle(std::string(bytes));
        handle->failReadsFrom = failing;
        handle->lineFeedAfterEmptyReads = 65536;
        static_cast<void>(RunOver(probe, *handle, start));
    }
    for (std::uint32_t failing = 0; failing < 4; ++failing) {
        const auto handle = FIMakeTestHandle(std::string(bytes));
        handle->failSeeksFrom = failing;
        handle->lineFeedAfterEmptyReads = 65536;
        static_cast<void>(RunOver(probe, *handle, start));
    }
}

FIID RunEverywhere(const Probe& probe, std::string_view bytes, std::uint32_t start, bool sameByByte) {
    const auto plain = FIMakeTestHandle(std::string(bytes));
    plain->lineFeedAfterEmptyReads = 65536;
    const FIID answer = RunOver(probe, *plain, start);

    const auto slow = FIMakeTestHandle(std::string(bytes));
    slow->bytesPerRead = 1;
    slow->lineFeedAfterEmptyReads = 65536;
    const FIID slowAnswer = RunOver(probe, *slow, start);
    if (sameByByte) {
        EXPECT_EQ(slowAnswer, answer) << "another answer when reads deliver one byte each";
    }
    RunOverFailingHandles(probe, bytes, start, std::min<std::uint32_t>(plain->reads, 64));
    return answer;
}

FIVerdict Identify(HIOFILE handle, std::uint32_t flags, FIWalk walk) {
    FIVerdict verdict = {0, 0};
    EXPECT_EQ(FIIdHandleWithRow(handle, flags, verdict, walk), 0);
    std::uint32_t position = 1;
    EXPECT_EQ(handle->operations.IOTell(handle, &position), 0);
    EXPECT_EQ(position, 0U) << "the handle was not moved back to its start";
    return verdict;
}

}  // namespace

FIID FIAnswerOf(FIProbe probe, std::string_view bytes, std::uint32_t start) {
    return RunEverywhere(probe, bytes, start, true);
}

FIID FIAnswerOf(FIProbeWithExtension probe, std::string_view bytes, const char* extension) {
    return RunEverywhere([&](FIReader& reader) { return probe(reader, extension); }, bytes, 0, true);
}

FIID FIAnswerOfBlockReader(FIProbe probe, std::string_view bytes, std::uint32_t start) {
    return RunEverywhere(probe, bytes, start, false);
}

FIID FIAnswerOver(FIProbe probe, TestHandle& handle, std::uint32_t start) { return RunOver(probe, handle, start); }

FIID FIAnswerOver(FIProbeWithExtension probe, TestHandle& handle, const char* extension) {
    return RunOver([&](FIReader& reader) { return probe(reader, extension); }, handle, 0);
}

FIVerdict FIIdentifyBothWays(HIOFILE handle, std::uint32_t flags) {
    const FIVerdict byHead = Identify(handle, flags, FIWalk::byHead);
    const FIVerdict plain = Identify(handle, flags, FIWalk::plain);
    EXPECT_EQ(byHead.fiid, plain.fiid) << "another answer when every row is run in full";
    EXPECT_EQ(byHead.row, plain.row) << "another row decides when every row is run in full";
    return byHead;
}

FIID FIIdentifyBytes(std::string_view bytes, const char* name, std::uint32_t flags, std::uint16_t* row) {
    const IOMemorySpec memory = {bytes.data(), bytes.size(), name};
    HIOFILE handle = nullptr;
    EXPECT_EQ(IOOpen(&handle, IOSpecMemory, &memory, IOOpenRead), 0);
    const FIVerdict verdict = FIIdentifyBothWays(handle, flags);
    EXPECT_EQ(handle->operations.IOClose(handle), 0);
    if (row != nullptr) *row = verdict.row;
    return verdict.fiid;
}
