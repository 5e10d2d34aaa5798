// Threads: requests on different handles share nothing that changes.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/probe_case.h"

namespace {

constexpr int threadCount = 4;
constexpr int rounds = 50;

struct Answered {
    const char* bytes;
    FIID fiid;
};

const Answered files[] = {
    {R"("GIF89a")", 1503},
    {R"("plain text" 0D 0A)", 4022},
    {R"("<?xml version='1.0'?><d xmlns='http://www.lotus.com/dxl'/>")", 2007},
    {R"("MIME-Version: 1.0" 0A "Subject: x" 0A)", 1187},
    {R"("PK" 03 04 00*100)", 1802},
    {"(00 02)*4", 1018},
};

TEST(Threads, IdentifyDifferentHandlesAtOnce) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([] {
            for (int round = 0; round < rounds; ++round) {
                for (const Answered& file : files) EXPECT_EQ(FIIdentifyBytes(FIBytes(file.bytes)), file.fiid);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
