// file_classes.h - the classes of files that are measured by themselves, told by what decided the identification.
#pragma once

#include <string>

// Prints a line for the file: its class, the deciding row (0 for none), the identifier, and the path, between tabs.
// docs/PERFORMANCE.md tells what each class holds.
void PrintClass(const std::string& path);
