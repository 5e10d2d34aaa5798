#include "support/skeleton.h"

#include <cstdio>
#include <cstdlib>
#include <regex>

#include "signatures/namespace_hosts.h"

namespace {

using Match = std::cmatch;

std::uint32_t Decimal(const std::string& text) { return static_cast<std::uint32_t>(std::stoul(text)); }
std::uint32_t Hex(const std::string& text) { return static_cast<std::uint32_t>(std::stoul(text, nullptr, 16)); }
char HexByte(const std::string& text) { return static_cast<char>(Hex(text)); }

// A place in a file that is told from the start or from the end.
struct Builder {
    Skeleton skeleton;
    std::size_t position = 0;

    void Grow(std::size_t size) {
        if (skeleton.bytes.size() < size) skeleton.bytes.resize(size, '\0');
    }
    // Puts a byte that the row tests; wrong is a value that the row refuses there.
    void Put(char byte, char wrong) {
        Grow(position + 1);
        skeleton.bytes[position] = byte;
        skeleton.changes.push_back({position, std::string(1, wrong)});
        ++position;
    }
    void PutLiteral(char byte) { Put(byte, static_cast<char>(byte ^ 0x01)); }
    void Skip(std::size_t count) {
        position += count;
        Grow(position);
    }
};

// A value that is neither of two.
char NeitherOf(char first, char second) {
    char wrong = 0x01;
    while (wrong == first || wrong == second) ++wrong;
    return wrong;
}

void PutRange(Builder& builder, const Match& match) {
    const std::uint32_t low = Hex(match[1]);
    const std::uint32_t high = Hex(match[2]);
    const std::uint32_t count = match[3].matched ? Decimal(match[3]) : 1;
    const std::uint32_t wrong = high < 0xFF ? high + 1 : low - 1;
    for (std::uint32_t index = 0; index < count; ++index) {
        builder.Put(static_cast<char>(low), static_cast<char>(wrong));
        // The other side of the range is a change of its own.
        if (low > 0)
            builder.skeleton.changes.push_back({builder.position - 1, std::string(1, static_cast<char>(low - 1))});
    }
}

void PutOutside(Builder& builder, const Match& match) {
    const std::uint32_t high = Hex(match[2]);
    builder.Grow(builder.position + 2);
    builder.skeleton.bytes[builder.position] = static_cast<char>((high + 1) & 0xFF);
    builder.skeleton.bytes[builder.position + 1] = static_cast<char>((high + 1) >> 8);
    for (const std::uint32_t inside : {Hex(match[1]), high, 0xFFFFU}) {
        const std::string word = {static_cast<char>(inside & 0xFF), static_cast<char>(inside >> 8)};
        builder.skeleton.changes.push_back({builder.position, word});
    }
    builder.position += 2;
}

void SetClassId(Builder& builder, const Match& match) {
    const std::string groups = match[1].str() + match[2].str() + match[3].str() + match[4].str() + match[5].str();
    constexpr std::size_t order[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    builder.skeleton.isStorage = true;
    for (const std::size_t index : order) builder.skeleton.classId += HexByte(groups.substr(index * 2, 2));
}

void PutNamespace(Builder& builder, const Match& match) {
    const std::string head = "<?xml version=\"1.0\"?><a xmlns=\"";
    builder.skeleton.bytes = head;
    builder.position = head.size();
    for (const char character : std::string(namespaceHosts[Decimal(match[1]) - 1]) + match[2].str()) {
        builder.PutLiteral(character);
    }
    builder.PutLiteral('"');
    builder.skeleton.bytes += "/>";
}

// One item of the notation: how it is written, and what it makes.
struct Item {
    std::regex pattern;
    void (*apply)(Builder& builder, const Match& match);
};

const std::vector<Item>& Items() {
    static const std::vector<Item> items = {
        {std::regex(R"(>end-(\d+))"),
         [](Builder& builder, const Match& match) {
             builder.Grow(Decimal(match[1]));
             builder.position = builder.skeleton.bytes.size() - Decimal(match[1]);
         }},
        {std::regex(R"(>(\d+))"), [](Builder& builder, const Match& match) { builder.position = Decimal(match[1]); }},
        {std::regex(R"(\+(\d+))"), [](Builder& builder, const Match& match) { builder.Skip(Decimal(match[1])); }},
        {std::regex(R"(ext "([^"]*)\")"),
         [](Builder& builder, const Match& match) { builder.skeleton.name = "file." + match[1].str(); }},
        {std::regex(R"("([^"]*)\")"),
         [](Builder& builder, const Match& match) {
             for (const char character : match[1].str()) builder.PutLiteral(character);
         }},
        {std::regex(R"(out\[(\w{4})-(\w{4})\])"), PutOutside},
        {std::regex(R"(\[(\w\w)-(\w\w)\](?:\*(\d+))?)"), PutRange},
        {std::regex(R"(\((\w\w)/(\w\w)\))"),
         [](Builder& builder, const Match& match) {
             builder.Put(HexByte(match[2]), NeitherOf(HexByte(match[1]), HexByte(match[2])));
         }},
        {std::regex(R"(!(\w\w))"),
         [](Builder& builder, const Match& match) {
             builder.Put(static_cast<char>(HexByte(match[1]) ^ 0x01), HexByte(match[1]));
         }},
        {std::regex(R"(\{(\w{8})-(\w{4})-(\w{4})-(\w{4})-(\w{12})\})"), SetClassId},
        {std::regex(R"(xmlns H(\d) (\S+))"), PutNamespace},
        {std::regex(R"(noop\(FF 0C 00\)|\(always\))"), [](Builder&, const Match&) {}},
        {std::regex(R"(([0-9A-F]{2}))"),
         [](Builder& builder, const Match& match) { builder.PutLiteral(HexByte(match[1])); }},
    };
    return items;
}

const char* ApplyItem(Builder& builder, const char* start, const char* end) {
    for (const Item& item : Items()) {
        Match match;
        if (!std::regex_search(start, end, match, item.pattern, std::regex_constants::match_continuous)) continue;
        item.apply(builder, match);
        return match[0].second;
    }
    std::fprintf(stderr, "FIMakeSkeleton: not known: %s\n", std::string(start, end).c_str());
    std::abort();
}

}  // namespace

Skeleton FIMakeSkeleton(std::string_view notation) {
    Builder builder;
    const char* const end = notation.data() + notation.size();
    for (const char* item = notation.data(); item < end;) {
        item = ApplyItem(builder, item, end);
        while (item < end && *item == ' ') ++item;
    }
    return builder.skeleton;
}

std::unique_ptr<TestHandle> FIOpenSkeleton(const Skeleton& skeleton) {
    auto handle = FIMakeTestHandle(skeleton.bytes, skeleton.name);
    handle->lineFeedAfterEmptyReads = 65536;
    handle->isStorage = skeleton.isStorage;
    if (skeleton.isStorage) handle->classId = skeleton.classId;
    return handle;
}
