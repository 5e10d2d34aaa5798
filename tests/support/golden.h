// golden.h - files of expected lines, kept beside the tests. scripts/accept rewrites those that tests make.
#pragma once

#include <string>
#include <vector>

// The lines of tests/golden/NAME without those that start with '#'. Fails the test when there are none.
std::vector<std::string> FIReadGolden(const std::string& name);

// Compares lines with those of tests/golden/NAME and names the first that differs. With FIID_ACCEPT set in the
// environment the file is rewritten instead, its comment lines kept.
void FIExpectGolden(const std::string& name, const std::vector<std::string>& lines);
