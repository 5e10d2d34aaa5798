// package_facts.cpp - what the second table asks about ZIP archives.
#include "further/package_facts.h"

void FIFreePackageFacts(FIPackageFacts&) {}
