// hash.cpp - the names of hashes, and the libraries behind them, if the program has them (CMake option FIID_HASHES).
#include "scan/hash.h"

#include <array>
#include <cstdint>
#include <new>

#ifdef FIID_HAS_HASHES
#include <nettle/sha2.h>
#include <xxhash.h>
#endif

namespace {

struct NamedHash {
    HashKind kind;
    std::string_view name;
};

constexpr NamedHash namedHashes[] = {{HashKind::Sha256, "sha256"}, {HashKind::Xxh3, "xxh3"}};

}  // namespace

std::string_view NameOf(HashKind kind) {
    for (const NamedHash& hash : namedHashes) {
        if (hash.kind == kind) return hash.name;
    }
    return "";
}

std::string HashKindOfName(std::string_view name, HashKind& kind) {
    for (const NamedHash& hash : namedHashes) {
        if (hash.name != name) continue;
#ifdef FIID_HAS_HASHES
        kind = hash.kind;
        return "";
#else
        static_cast<void>(kind);
        return "hashes were left out of this build";
#endif
    }
    return "is none of sha256, xxh3";
}

#ifdef FIID_HAS_HASHES

namespace {

std::string HexOf(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

struct Xxh3Freed {
    void operator()(XXH3_state_t* state) const { XXH3_freeState(state); }
};

}  // namespace

// Of the two the kind's own is in use.
struct Hasher::State {
    HashKind kind;
    sha256_ctx sha256;
    std::unique_ptr<XXH3_state_t, Xxh3Freed> xxh3;
};

Hasher::Hasher(HashKind kind) : state_(std::make_unique_for_overwrite<State>()) {
    state_->kind = kind;
    if (kind == HashKind::Sha256) {
        sha256_init(&state_->sha256);
    } else {
        state_->xxh3.reset(XXH3_createState());
        if (state_->xxh3 == nullptr) throw std::bad_alloc();
        XXH3_64bits_reset(state_->xxh3.get());
    }
}

void Hasher::Update(std::span<const std::byte> bytes) {
    if (state_->kind == HashKind::Sha256) {
        sha256_update(&state_->sha256, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    } else {
        XXH3_64bits_update(state_->xxh3.get(), bytes.data(), bytes.size());
    }
}

std::string Hasher::Hex() {
    if (state_->kind == HashKind::Sha256) {
        std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest;
        sha256_digest(&state_->sha256, digest.size(), digest.data());
        return HexOf(digest);
    }
    XXH64_canonical_t canonical;
    XXH64_canonicalFromHash(&canonical, XXH3_64bits_digest(state_->xxh3.get()));
    return HexOf(canonical.digest);
}

#else

struct Hasher::State {};

Hasher::Hasher(HashKind) {}

void Hasher::Update(std::span<const std::byte>) {}

std::string Hasher::Hex() { return ""; }

#endif

Hasher::~Hasher() = default;
