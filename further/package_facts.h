// package_facts.h - what the second table asks about ZIP archives.
#pragma once

struct FIPackageFacts;

void FIFreePackageFacts(FIPackageFacts& facts);
