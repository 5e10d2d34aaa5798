// package_facts.cpp - opening a file's archive and reading what tells its kind.
#include "further/package_facts.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>
#include <type_traits>

#include "platform/base_utility.h"
#include "platform/zip/archive.h"

namespace {

constexpr FIMainPart noMainPart = {};

// The facts of a file that is an archive; null when it is none or memory is exhausted.
FIPackageFacts* FIFindPackage(FILook& look) {
    if (look.package == nullptr) {
        void* const block = HeapAlloc(GetProcessHeap(), 0, sizeof(FIPackageFacts));
        if (block == nullptr) {
            look.outOfMemory = true;
            return nullptr;
        }
        look.package = new (block) FIPackageFacts();
        look.package->archive = UTOpenArchive(*look.file);
    }
    return look.package->archive != nullptr ? look.package : nullptr;
}

std::string_view FITrimmed(std::string_view text) {
    while (!text.empty() && FIIsTypeSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && FIIsTypeSpace(text.back())) text.remove_suffix(1);
    return text;
}

void FIReadMimetype(FIPackageFacts& facts) {
    UTHandle* const member = UTOpenMember(*facts.archive, "mimetype");
    if (member == nullptr) return;
    std::uint32_t size = 0;
    if (UTReadAt(*member, 0, facts.mimetypeText.data(), mimetypeBytes, size) != 0) size = 0;
    UTCloseHandle(*member);
    facts.mimetype = FITrimmed({facts.mimetypeText.data(), size});
}

// One walk with its questions, each a bit. Most names are of other lengths than those that are asked for whole.
struct FINameWalk {
    std::span<const FINameQuestion> questions;
    std::uint32_t enough;
    std::uint32_t answered = 0;
    std::uint32_t ofLength = 0;     // questions that only names of some lengths answer
    std::uint32_t ofAnyLength = 0;  // the others
    std::uint64_t lengths = 0;      // those lengths, each a bit
};

void FISortQuestions(FINameWalk& walk) {
    std::uint32_t bit = 1;
    for (const FINameQuestion& question : walk.questions) {
        if (question.test == FINameTest::Is && question.text.size() < std::numeric_limits<std::uint64_t>::digits) {
            walk.ofLength |= bit;
            walk.lengths |= std::uint64_t{1} << question.text.size();
        } else {
            walk.ofAnyLength |= bit;
        }
        bit <<= 1;
    }
}

bool FIAnswersName(const FINameQuestion& question, std::string_view name) {
    switch (question.test) {
        case FINameTest::Is:
            return name == question.text;
        case FINameTest::Begins:
            return name.starts_with(question.text);
        case FINameTest::Contains:
            break;
    }
    return name.find(question.text) != std::string_view::npos;
}

bool FIPutQuestions(void* context, std::string_view name) {
    auto& walk = *static_cast<FINameWalk*>(context);
    std::uint32_t open = walk.ofAnyLength;
    if (name.size() < std::numeric_limits<std::uint64_t>::digits && (walk.lengths >> name.size() & 1) != 0) {
        open |= walk.ofLength;
    }
    for (open &= ~walk.answered; open != 0; open &= open - 1) {
        const auto place = static_cast<std::size_t>(std::countr_zero(open));
        if (FIAnswersName(walk.questions[place], name)) walk.answered |= std::uint32_t{1} << place;
    }
    return (walk.answered & walk.enough) == 0;
}

}  // namespace

void FIFreePackageFacts(FIPackageFacts& facts) {
    if (facts.archive != nullptr) UTCloseHandle(*facts.archive);
    static_assert(std::is_trivially_destructible_v<FIPackageFacts>);
    HeapFree(GetProcessHeap(), 0, &facts);
}

UTHandle* FIArchiveOf(FILook& look) {
    const FIPackageFacts* const facts = FIFindPackage(look);
    return facts != nullptr ? facts->archive : nullptr;
}

std::string_view FIMimetypeOf(FILook& look) {
    FIPackageFacts* const facts = FIFindPackage(look);
    if (facts == nullptr) return {};
    if (!facts->mimetypeRead) FIReadMimetype(*facts);
    facts->mimetypeRead = true;
    return facts->mimetype;
}

const FIMainPart& FIMainPartOf(FILook& look) {
    FIPackageFacts* const facts = FIFindPackage(look);
    if (facts == nullptr) return noMainPart;
    if (!facts->mainPartSought && !FIFindMainPart(*facts->archive, facts->main)) look.outOfMemory = true;
    facts->mainPartSought = true;
    return facts->main;
}

std::uint32_t FIAskNames(FILook& look, std::span<const FINameQuestion> questions, std::uint32_t enough) {
    UTHandle* const archive = FIArchiveOf(look);
    if (archive == nullptr) return 0;
    FINameWalk walk = {questions.first(std::min(questions.size(), mostNameQuestions)), enough};
    FISortQuestions(walk);
    static_cast<void>(
        UTVisitMembers(*archive, FIPutQuestions, &walk));  // where it breaks off, what was answered counts
    return walk.answered;
}
