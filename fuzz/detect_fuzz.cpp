// detect_fuzz.cpp - whole answers of both tables, through memory, descriptors and sources of every kind.
//
// An input is a byte of flags, a byte that chooses the file's name and the file's contents:
//
//   Flags  1, 2, 4  FIID_NO_TEXT, FIID_NO_FURTHER, FIID_EXPLAIN
//          8, 16    none: the contents are the file; 8: they are repeated to behind 64 KiB; 16: their halves stand at the
//                   ends of a longer file, with blanks between them; both: with zero bytes between them
//   Name   the place of an extension in a list; behind them none; from 128 on the length of a name that follows, and 128
//
// The laws, besides that nothing crashes, hangs or leaks:
//
// - The same bytes under the same name have the same answer the second time, of a descriptor, and of a source that delivers
//   what is asked for or fewer bytes.
// - The answer of the signature table is that of its own walk, also without the further table.
// - An explanation changes no other answer.
// - Identifiers are those of the lists of formats, names and families are theirs, and PRONOM identifiers some of theirs.
// - Only over a format that is open stands more than the signature table's answer.
// - A source is asked for ranges that it has, for none again and again that it delivered in full, and for not
//   much more than it has.
// - A source that fails or lies may spoil the answer, but none that has not come to do so.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fiid/detect.h"
#include "fuzz/laws.h"
#include "platform/base_utility.h"

namespace {

// ---- Inputs --------------------------------------------------------------------------------------------------------

constexpr std::uint8_t repeated = 8;
constexpr std::uint8_t stretched = 16;
constexpr std::uint8_t nameFollows = 128;

// Those that rows, package lines and texts ask for, and a few that warnings come of.
constexpr const char* extensions[] = {
    "c",   "css", "csv", "h",   "html", "ini", "java", "js",  "json", "log", "md", "pl", "py",  "sh",  "sql", "tab",
    "tsv", "yml", "svg", "txt", "TXT",  "xml", "docx", "dwg", "epub", "mif", "pk", "m4", "rst", "zip", "x.y", "",
};

struct Input {
    std::uint32_t flags;
    std::string name;
    std::string bytes;
};

std::string TakeName(std::string_view& rest) {
    const auto choice = static_cast<std::uint8_t>(rest.front());
    rest.remove_prefix(1);
    if (choice < std::size(extensions)) return std::string("file.") + extensions[choice];
    if (choice < nameFollows) return "";
    const std::string name(rest.substr(0, choice - nameFollows));
    rest.remove_prefix(name.size());
    return name.substr(0, name.find('\0'));
}

// Files that go on behind the 64 KiB that patterns look at.
std::string Lengthen(std::string_view bytes, std::uint8_t flags) {
    const std::size_t more = 60000 + FuzzHash(bytes) % 16384;
    std::string longer;
    if ((flags & stretched) == 0) {
        while (longer.size() < more && !bytes.empty()) longer += bytes;
        return longer;
    }
    const std::size_t half = bytes.size() / 2;
    longer += bytes.substr(0, half);
    longer.append(more, (flags & repeated) != 0 ? '\0' : ' ');
    longer += bytes.substr(half);
    return longer;
}

Input TakeInput(std::string_view rest) {
    const auto flags = static_cast<std::uint8_t>(rest.front());
    rest.remove_prefix(1);
    std::string name = TakeName(rest);
    const bool longer = (flags & (repeated | stretched)) != 0;
    return {flags & std::uint32_t{FIID_NO_TEXT | FIID_NO_FURTHER | FIID_EXPLAIN}, std::move(name),
            longer ? Lengthen(rest, flags) : std::string(rest)};
}

// ---- Answers -------------------------------------------------------------------------------------------------------

struct Answer {
    std::int32_t status;
    fiid_result result;
};

void RequireResult(bool holds, const char* law) { FuzzRequire(holds, "fiid_result", law); }

// With another value in all of it, so that what a call leaves out is seen.
fiid_result UnfilledResult() {
    fiid_result result;
    std::memset(&result, 0xA5, sizeof(result));
    return result;
}

Answer DetectMemory(const Input& input, std::uint32_t flags) {
    Answer answer = {0, UnfilledResult()};
    const fiid_options options = {sizeof(options), flags};
    answer.status =
        fiid_detect_memory(input.bytes.data(), input.bytes.size(), input.name.c_str(), &options, &answer.result);
    return answer;
}

bool AreSameTexts(const fiid_result& one, const fiid_result& other) {
    const std::pair<const char*, const char*> texts[] = {
        {one.name, other.name},
        {one.mime, other.mime},
        {one.version, other.version},
        {one.puids, other.puids},
        {one.extensions, other.extensions},
        {one.signature, other.signature},
        {one.further_signature, other.further_signature},
        {one.routine, other.routine},
        {one.family, other.family},
    };
    return std::ranges::all_of(texts, [](const auto& pair) { return std::strcmp(pair.first, pair.second) == 0; });
}

// All that tells of the format.
bool TellTheSame(const fiid_result& one, const fiid_result& other) {
    return one.fiid == other.fiid && one.further == other.further && one.row == other.row &&
           one.further_row == other.further_row && one.basis == other.basis && one.warnings == other.warnings &&
           one.size == other.size && AreSameTexts(one, other);
}

bool AreSameExplanations(const fiid_result& one, const fiid_result& other) {
    return std::strcmp(one.explanation, other.explanation) == 0;
}

bool HaveSameCost(const fiid_result& one, const fiid_result& other) {
    return one.modified_seconds == other.modified_seconds && one.modified_nanoseconds == other.modified_nanoseconds &&
           one.modified_known == other.modified_known && one.bytes_read == other.bytes_read &&
           one.calls == other.calls && one.system_error == other.system_error && one.source_error == other.source_error;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

std::vector<std::string_view> Words(std::string_view list) {
    std::vector<std::string_view> words;
    while (!list.empty()) {
        const std::size_t size = std::min(list.find(' '), list.size());
        words.push_back(list.substr(0, size));
        list.remove_prefix(std::min(size + 1, list.size()));
    }
    return words;
}

void CheckTexts(const fiid_result& result) {
    for (const char* text : {result.name, result.mime, result.version, result.puids, result.extensions,
                             result.signature, result.further_signature, result.routine, result.family}) {
        RequireResult(text != nullptr && IsAscii(text), "a text that is none");
    }
    for (const char* text : result.reserved_texts) RequireResult(text != nullptr && *text == '\0', "a reserved text");
    for (const std::uint32_t number : result.reserved_numbers) RequireResult(number == 0, "a reserved number");
    RequireResult(std::memchr(result.explanation, 0, sizeof(result.explanation)) != nullptr, "an endless explanation");
    RequireResult(IsAscii(result.explanation), "an explanation that is not ASCII");
}

// The format is one of the lists', and what the answer tells of it is theirs, or less.
void CheckFormat(const fiid_result& result) {
    fiid_format format;
    RequireResult(result.fiid < 20000 && (result.further == 0 || result.further >= 20000), "an identifier of nobody");
    RequireResult(fiid_format_find(result.fiid, &format) == FIID_OK, "an unknown answer of the signature table");
    RequireResult((format.flags & FIID_FORMAT_IS_OPEN) != 0 || (result.further == 0 && result.version[0] == '\0'),
                  "an answer that is not open and has more");
    RequireResult((result.further == 0) == (result.further_row == 0), "half an answer of the further table");
    if (result.further != 0) {
        RequireResult(fiid_format_find(result.further, &format) == FIID_OK, "an unknown answer of the further table");
    }
    RequireResult(std::strcmp(result.name, format.name) == 0 && std::strcmp(result.mime, format.mime) == 0 &&
                      std::strcmp(result.extensions, format.extensions) == 0 &&
                      std::strcmp(result.family, format.family) == 0,
                  "what the list of formats does not tell");
    const std::vector<std::string_view> all = Words(format.puids);
    const std::vector<std::string_view> left = Words(result.puids);
    for (const std::string_view one : left) {
        RequireResult(std::ranges::find(all, one) != all.end(), "a PRONOM identifier that is not the format's");
    }
    RequireResult(((result.warnings & FIID_WARN_SEVERAL) != 0) == (left.size() > 1), "a warning that does not fit");
    RequireResult(result.version[0] == '\0' || !left.empty(), "a version that leaves no identifier");
    RequireResult(result.basis >= FIID_BASIS_NONE && result.basis <= FIID_BASIS_TEXT, "a basis that is none");
}

void CheckAnswer(const Answer& answer, std::uint32_t flags) {
    const fiid_result& result = answer.result;
    CheckTexts(result);
    if (answer.status == FIID_OK) {
        CheckFormat(result);
    } else {
        RequireResult(answer.status == FIID_ERROR_READ, "a failure for no reason");
        RequireResult(result.fiid == 0 && result.further == 0 && result.name[0] == '\0' && result.family[0] == '\0',
                      "a failure that tells more");
    }
    if ((flags & FIID_NO_FURTHER) != 0) {
        RequireResult(result.further == 0 && result.version[0] == '\0', "of the further table, unasked");
    }
    if ((flags & FIID_EXPLAIN) == 0) RequireResult(result.explanation[0] == '\0', "an explanation, unasked");
}

// ---- Sources -------------------------------------------------------------------------------------------------------

enum class Mischief : std::uint8_t {
    None,
    FailsOnce,
    FailsFromThen,
    TellsTooMany,  // more bytes than were asked for
    EndsEarly,     // with a count of 0, from then on
    ChangesBytes,  // from then on
    IsShorter,     // than its size tells, at all times
    IsLonger,
    MischiefCount,
};

struct Range {
    std::uint64_t offset;
    std::uint32_t size;

    bool operator==(const Range&) const = default;
};

// A directory of an archive that was not found is looked for again by the next routine that wants it.
constexpr std::ptrdiff_t mostRepeats = 4;

struct Source {
    std::string_view bytes;
    std::uint64_t size;  // as told
    std::uint32_t mostPerRead;
    Mischief mischief;
    std::uint32_t failsAt;  // this many reads come before the mischief
    std::uint32_t reads;
    std::uint64_t delivered;
    bool misbehaved;
    std::vector<Range> whole;  // ranges that were delivered in full
};

constexpr std::int32_t sourceFailure = 77;

void RequireSource(bool holds, const char* law) { FuzzRequire(holds, "fiid_source", law); }

void Deliver(Source& source, std::uint64_t offset, std::uint8_t* buffer, std::uint32_t size, std::uint32_t& count) {
    const std::uint64_t left = source.bytes.size() - std::min<std::uint64_t>(offset, source.bytes.size());
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>({left, size, source.mostPerRead}));
    // A source may use all of the buffer.
    std::memset(buffer, 0xEE, size);
    if (count > 0) std::memcpy(buffer, source.bytes.data() + offset, count);
}

// What the source's mischief makes of a read. Returns its status.
std::int32_t Misbehave(Source& source, std::uint8_t* buffer, std::uint32_t size, std::uint32_t& count) {
    source.misbehaved = true;
    switch (source.mischief) {
        case Mischief::TellsTooMany:
            count = size + 1 + source.failsAt;
            return 0;
        case Mischief::EndsEarly:
            count = 0;
            return 0;
        case Mischief::ChangesBytes:
            for (std::uint32_t place = 0; place < count; place += 7) buffer[place] ^= 0x5A;
            return 0;
        default:
            count = UINT32_MAX;
            return sourceFailure;
    }
}

bool MisbehavesNow(const Source& source) {
    switch (source.mischief) {
        case Mischief::FailsOnce:
        case Mischief::TellsTooMany:
            return source.reads == source.failsAt;
        case Mischief::FailsFromThen:
        case Mischief::EndsEarly:
        case Mischief::ChangesBytes:
            return source.reads >= source.failsAt;
        default:
            return false;
    }
}

std::int32_t ReadSource(void* context, std::uint64_t offset, void* buffer, std::uint32_t size, std::uint32_t* count) {
    auto& source = *static_cast<Source*>(context);
    RequireSource(size >= 1 && size <= 65536, "a read of a size that can't be");
    RequireSource(offset < source.size && size <= source.size - offset, "a read behind the end");
    const auto repeats = std::ranges::count(source.whole, Range{offset, size});
    RequireSource(source.misbehaved || repeats <= mostRepeats, "a range that was delivered again and again");
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    Deliver(source, offset, bytes, size, *count);
    const bool misbehaves = MisbehavesNow(source);
    ++source.reads;
    if (misbehaves) {
        const std::int32_t status = Misbehave(source, bytes, size, *count);
        if (status != 0 || *count > size) return status;
    }
    source.delivered += *count;
    if (*count == size) source.whole.push_back({offset, size});
    return 0;
}

Answer DetectSource(const Input& input, Source& source, std::uint32_t flags, std::uint32_t block) {
    Answer answer = {0, UnfilledResult()};
    const fiid_options options = {sizeof(options), flags};
    const fiid_source told = {&source, ReadSource, source.size, input.name.c_str(), block, 0};
    answer.status = fiid_detect_source(&told, &options, &answer.result);
    CheckAnswer(answer, flags);
    RequireSource(answer.result.calls == source.reads, "calls that are not counted");
    return answer;
}

Source MakeSource(const Input& input, std::uint32_t mostPerRead) {
    return {input.bytes, input.bytes.size(), mostPerRead, Mischief::None, 0, 0, 0, false, {}};
}

// A file is read once or twice, but the directories of archives and storages that are at odds with themselves lead back
// and forth.
void CheckWork(const Input& input, const Source& source) {
    const bool isContainer =
        input.bytes.find("PK\5\6") != std::string::npos || input.bytes.starts_with("\xD0\xCF\x11\xE0");
    constexpr std::uint64_t windows = 131072;
    if (!isContainer) RequireSource(source.delivered <= 4 * (input.bytes.size() + windows), "read over and over");
}

// Sources that behave, with many bytes for each read and with few.
void CheckSources(const Input& input, const Answer& answer, std::uint32_t chosen) {
    constexpr std::uint32_t blocks[] = {0, 1, 4096, 5000, 16384, 65536, UINT32_MAX};
    constexpr std::uint32_t counts[] = {UINT32_MAX, 4096, 8191, 1000, 257, 61};
    const std::uint32_t block = blocks[chosen % std::size(blocks)];
    for (const std::uint32_t most : {UINT32_MAX, counts[chosen / 8 % std::size(counts)]}) {
        Source source = MakeSource(input, most);
        const Answer other = DetectSource(input, source, input.flags, block);
        RequireSource(other.status == FIID_OK && TellTheSame(other.result, answer.result), "another answer");
        RequireSource(AreSameExplanations(other.result, answer.result), "another explanation");
        RequireSource(other.result.bytes_read == source.delivered, "bytes that are not counted");
        RequireSource(other.result.source_error == 0 && other.result.system_error == 0, "a failure that was none");
        CheckWork(input, source);
    }
}

void CheckMischief(const Input& input, const Answer& answer, std::uint32_t chosen) {
    constexpr std::uint32_t mischiefs = static_cast<std::uint32_t>(Mischief::MischiefCount) - 1;
    Source source = MakeSource(input, chosen % 3 == 0 ? 1500 : UINT32_MAX);
    source.mischief = static_cast<Mischief>(chosen / 4 % mischiefs + 1);
    // Most files are told by their first read.
    source.failsAt = chosen / 64 % 4 == 0 ? 0 : chosen / 256 % 8;
    if (source.mischief == Mischief::IsShorter) source.size += 1 + chosen % 100000;
    if (source.mischief == Mischief::IsLonger) source.size -= std::min<std::uint64_t>(chosen % 1000, source.size);
    source.misbehaved = source.size != input.bytes.size();
    const Answer other = DetectSource(input, source, input.flags, 0);
    if (source.misbehaved) {
        const bool fails = source.mischief == Mischief::FailsOnce || source.mischief == Mischief::FailsFromThen;
        if (fails) RequireSource(other.result.source_error == sourceFailure, "a failure that is not told");
        if (source.mischief == Mischief::TellsTooMany)
            RequireSource(other.result.source_error == -1, "a lie that is not told");
        return;
    }
    RequireSource(other.status == FIID_OK && TellTheSame(other.result, answer.result), "another answer");
}

// ---- Other ways to the same answer ---------------------------------------------------------------------------------

void CheckDescriptor(const Input& input, const Answer& answer) {
    const int descriptor = memfd_create("input", MFD_CLOEXEC);
    const auto size = static_cast<ssize_t>(input.bytes.size());
    const bool written = descriptor >= 0 && write(descriptor, input.bytes.data(), input.bytes.size()) == size;
    FuzzRequire(written, "memfd_create", "a file in memory");
    Answer other = {0, UnfilledResult()};
    const fiid_options options = {sizeof(options), input.flags};
    other.status = fiid_detect_descriptor(descriptor, input.name.c_str(), &options, &other.result);
    FuzzRequire(other.status == FIID_OK && TellTheSame(other.result, answer.result), "fiid_detect_descriptor",
                "another answer");
    close(descriptor);
}

void CheckSignatureTable(const Input& input, const Answer& answer) {
    const IOMemorySpec memory = {input.bytes.data(), input.bytes.size(), input.name.c_str()};
    HIOFILE file = nullptr;
    FuzzRequire(IOOpen(&file, IOSpecMemory, &memory, IOOpenRead) == 0, "IOOpen", "a block of memory opens");
    FIVerdict verdict = {0, 0};
    const std::uint32_t flags = (input.flags & FIID_NO_TEXT) == 0 ? std::uint32_t{FIFlagExtendedText} : 0;
    FuzzRequire(FIIdHandleWithRow(file, flags, verdict) == 0, "FIIdHandle", "a status of failure");
    file->operations.IOClose(file);
    RequireResult(verdict.fiid == answer.result.fiid && verdict.row == answer.result.row, "another signature");
}

void CheckOtherFlags(const Input& input, const Answer& answer) {
    const std::uint32_t explained = input.flags ^ FIID_EXPLAIN;
    const Answer other = DetectMemory(input, explained);
    CheckAnswer(other, explained);
    RequireResult(TellTheSame(other.result, answer.result), "an explanation that changes the answer");
    const std::uint32_t alone = input.flags ^ FIID_NO_FURTHER;
    const Answer third = DetectMemory(input, alone);
    CheckAnswer(third, alone);
    RequireResult(third.result.fiid == answer.result.fiid && third.result.row == answer.result.row,
                  "a further table that changes the signature table's answer");
}

void CheckInput(const Input& input) {
    const Answer answer = DetectMemory(input, input.flags);
    RequireResult(answer.status == FIID_OK, "memory that can't be read");
    RequireResult(answer.result.size == input.bytes.size(), "a size that is not the file's");
    RequireResult(answer.result.bytes_read == 0 && answer.result.calls == 0, "memory that is read");
    CheckAnswer(answer, input.flags);
    const std::uint32_t chosen = FuzzHash(input.bytes);
    CheckSources(input, answer, chosen);
    CheckMischief(input, answer, chosen);
    switch (chosen / 4096 % 4) {
        case 0:
            return CheckSignatureTable(input, answer);
        case 1:
            return CheckOtherFlags(input, answer);
        case 2:
            return CheckDescriptor(input, answer);
        default:
            break;
    }
    const Answer again = DetectMemory(input, input.flags);
    RequireResult(TellTheSame(again.result, answer.result) && AreSameExplanations(again.result, answer.result) &&
                      HaveSameCost(again.result, answer.result),
                  "another answer the second time");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t headSize = 2;
    if (size >= headSize) CheckInput(TakeInput({reinterpret_cast<const char*>(data), size}));
    return 0;
}
