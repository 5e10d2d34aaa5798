// hash.h - hashes of whole files, by libraries: SHA-256 of libnettle, and XXH3 of libxxhash, 64 bits of it.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

enum class HashKind { None, Sha256, Xxh3 };

// What a kind is called, on the command line and as a field: "sha256", "xxh3"; "" for None. Static.
std::string_view NameOf(HashKind kind);

// The kind of a name, in kind. Returns "", or what is wrong with the name; kind is then left as it is. The program may have
// been built without hashes: it knows the names and says so.
std::string HashKindOfName(std::string_view name, HashKind& kind);

// The hash of bytes that come piece by piece. For one kind other than None, and only in a program that was built with
// hashes: HashKindOfName gives no other.
class Hasher {
 public:
    explicit Hasher(HashKind kind);
    Hasher(const Hasher&) = delete;
    Hasher& operator=(const Hasher&) = delete;
    ~Hasher();

    void Update(std::span<const std::byte> bytes);

    // The hash in lower-case hexadecimal, 64 digits of SHA-256 and 16 of XXH3, the highest byte first, as `sha256sum` and
    // `xxhsum -H3` print it. Called once, at the end.
    std::string Hex();

 private:
    struct State;
    std::unique_ptr<State> state_;
};
