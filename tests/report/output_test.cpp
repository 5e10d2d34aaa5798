// Whole records on standard output.
#include "report/output.h"

#include <gtest/gtest.h>

#include "support/captured_output.h"

namespace {

TEST(Output, HandsOverNoRecordThatWasNotEnded) {
    EXPECT_EQ(WrittenBy([] {
                  WriteRecord("whole\n");
                  BeginRecord() += "half";
                  FlushOutput();
                  BeginRecord() += "next\n";
                  EndRecord();
                  BeginRecord() += "half";
                  FlushOutput();
                  FlushOutput();
                  static_cast<void>(BeginRecord());
              }),
              "whole\nnext\n");
}

}  // namespace
