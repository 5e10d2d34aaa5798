// hash.h - hashes of whole files, by libraries.
#pragma once

enum class HashKind { None, Sha256, Xxh3 };
