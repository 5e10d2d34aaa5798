// Hashes of whole files: names, known answers, and pieces of any size.
#include "scan/hash.h"

#include <gtest/gtest.h>

namespace {

std::string NameOrError(std::string_view name) {
    HashKind kind = HashKind::None;
    const std::string error = HashKindOfName(name, kind);
    return error.empty() ? std::string(NameOf(kind)) : error;
}

TEST(HashNames, AreKnownInBothDirections) {
    for (const char* const name : {"sha256", "xxh3"}) EXPECT_EQ(NameOrError(name), name);
    EXPECT_EQ(NameOf(HashKind::None), "");
    EXPECT_EQ(NameOf(HashKind::Sha256), "sha256");
    EXPECT_EQ(NameOf(HashKind::Xxh3), "xxh3");
}

TEST(HashNames, OthersAreToldAndLeaveTheKind) {
    for (const char* const name : {"", "sha1", "SHA256", "sha256 ", "blake3"}) {
        HashKind kind = HashKind::Xxh3;
        EXPECT_EQ(HashKindOfName(name, kind), "is none of sha256, xxh3") << name;
        EXPECT_EQ(kind, HashKind::Xxh3) << name;
    }
}

std::string HashOf(HashKind kind, std::string_view bytes, std::size_t pieceSize = SIZE_MAX) {
    Hasher hasher(kind);
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, pieceSize);
        hasher.Update(std::as_bytes(std::span(piece)));
        bytes.remove_prefix(piece.size());
    }
    return hasher.Hex();
}

std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return bytes;
}

struct KnownHash {
    std::string bytes;
    const char* sha256;
    const char* xxh3;
};

// As sha256sum and xxhsum -H3 print them.
const KnownHash knownHashes[] = {
    {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855", "2d06800538d394c2"},
    {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", "78af5f94892f3950"},
    {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
     "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1", "5bbcbbabcdcc3d3f"},
    {EveryByte(), "40aff2e9d2d8922e47afd4648e6967497158785fbd1da870e7110266bf944880", "9408a4433b952d71"},
    {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0", "b1fd6fae5285c4eb"},
};

TEST(Hash, HasKnownAnswers) {
    for (const KnownHash& known : knownHashes) {
        EXPECT_EQ(HashOf(HashKind::Sha256, known.bytes), known.sha256) << known.bytes.size() << " bytes";
        EXPECT_EQ(HashOf(HashKind::Xxh3, known.bytes), known.xxh3) << known.bytes.size() << " bytes";
    }
}

TEST(Hash, IsTheSameInPiecesOfAnySize) {
    for (const KnownHash& known : knownHashes) {
        for (const std::size_t size : {63U, 64U, 65U, 256U, 1000U}) {
            EXPECT_EQ(HashOf(HashKind::Sha256, known.bytes, size), known.sha256) << size;
            EXPECT_EQ(HashOf(HashKind::Xxh3, known.bytes, size), known.xxh3) << size;
        }
    }
}

}  // namespace
