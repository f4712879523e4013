#include "commands/verdicts.h"

#include <filesystem>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <hostkit/hostkit.h>
#include <vpath/search.h>

#include "commands/names_on_path.h"
#include "loading/path_names.h"

namespace {

std::string Folded(std::string text) {
    hkLowerCase(text.data());
    return text;
}

// The name without the extension that it spells out, as searches take it apart; the final dot keeps
// another dot from being taken for an extension's.
std::string WithoutExtension(const std::string& name) {
    const size_t dot = name.rfind('.');
    const size_t slash = name.rfind('/');
    const bool has =
        dot != std::string::npos && dot > 0 && (slash == std::string::npos || dot > slash);
    return (has ? name.substr(0, dot) : name) + ".";
}

std::string StemOfName(const std::string& name) {
    std::string stem = LastComponent(WithoutExtension(name));
    stem.pop_back();
    if (!stem.empty() && (stem[0] == '@' || stem[0] == '+')) stem.erase(0, 1);
    return stem;
}

std::string ExtensionOf(const std::string& file) {
    return LastComponent(file).substr(StemOf(file).size());  // with its dot
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

// The name by which the file is asked for: as deep as it lies, and with its extension where a dot
// before that would be taken for the extension's.
std::string OwnName(const Candidate& candidate, bool withExtension = false) {
    std::string name = StemOf(candidate.file);
    if (withExtension || name.find('.') != std::string::npos) name += ExtensionOf(candidate.file);
    vpDir at = candidate.dir;
    for (; vpGetDirType(at) >= vpDirTypePackage; at = vpGetParentDir(at)) {
        const char* mark = vpGetDirType(at) == vpDirTypePackage ? "+"
                           : vpGetDirType(at) == vpDirTypeClass ? "@"
                                                                : "";
        name = std::string(mark).append(vpGetBaseDirName(at)).append("/").append(name);
    }
    return name;
}

// Searches take the files of a lower number first.
int Category(const std::string& name, const vpDir& dir) {
    const bool nameSpellsDirectory = name.find('/') != std::string::npos;
    switch (vpGetDirType(dir)) {
        case vpDirTypePrivate:
            return nameSpellsDirectory ? 3 : 1;
        case vpDirTypeClass:
        case vpDirTypePackage:
            return 2;
        default:
            return nameSpellsDirectory ? 1 : 3;
    }
}

bool IsOfOtherCategory(const std::string& name, const Candidate& a, const Candidate& b) {
    return Category(name, a.dir) != Category(name, b.dir);
}

}  // namespace

Record CandidateRecord(const std::string& name, const std::string& file, const Verdict& verdict) {
    Record record("candidate");
    record.field("name", name)
        .column("verdict", verdict.words, verdict.wins() ? Style::kName : Style::kNote)
        .column("file", file, Style::kFile);
    return verdict.wins() ? record.field("advice", nullptr)
                          : record.column("advice", verdict.advice);
}

Judge::Judge(const vpPath& path, const vpDir& from, vpReadCheck readCheck,
             const ExtensionArray& extensions)
    : path_(path),
      from_(from),
      readCheck_(readCheck),
      extensions_(extensions),
      query_(path, from, readCheck, extensions),
      looseQuery_(path, from, vpReadCheckSkip, ExtensionArray()) {}

std::vector<Candidate> Judge::candidates(const std::string& name) {
    ask(name);
    if (!index_) readIndex();
    std::vector<Candidate> found = considered_;
    for (const Candidate& candidate : (*index_)[Folded(StemOfName(name))]) {
        if (positions_.count(candidate.file) == 0) found.push_back(candidate);
    }
    return found;
}

Verdict Judge::verdict(const std::string& name, const Candidate& candidate) {
    ask(name);
    std::error_code failed;
    if (std::filesystem::is_directory(candidate.file, failed)) {
        return {"became a directory", "refresh the path or write its cache file anew"};
    }
    if (matches_.count(candidate.file) != 0) {
        if (winner_->file == candidate.file) return {"wins", std::nullopt};
        return {hiddenWords(name, candidate), unhide(name, candidate)};
    }
    if (!fits(candidate, Rule::kStem)) {
        return {"another name", "ask for " + Quoted(OwnName(candidate))};
    }
    return refusal(name, candidate);
}

// On a file that is called like the name and yet not among its matches: the first thing that stands
// in the way, and how to clear all of them away.
Verdict Judge::refusal(const std::string& name, const Candidate& candidate) {
    const std::string leaf = LastComponent(name);
    const std::string extension = ExtensionOf(candidate.file);
    const auto position = positions_.find(candidate.file);
    const bool isReached = position != positions_.end();
    const bool isPrivate = vpGetDirType(candidate.dir) == vpDirTypePrivate;
    const bool spellsDirectory = leaf.size() != name.size();

    const bool fitsOwnExtension = fits(candidate, Rule::kOwnExtension);
    const bool fitsExtensions = fits(candidate, Rule::kExtensions) && isListedInItsCase(extension);
    // Directories that the name spells out differ in case too, and so do classes of that name.
    const bool fitsCase =
        (isReached ? reachedByCase_.count(candidate.file) != 0 : fits(candidate, Rule::kCase)) &&
        (!fitsOwnExtension || fits(candidate, Rule::kOwnExtensionCase));
    const bool isReadable = fits(candidate, Rule::kReadCheck);

    const char* words = !fitsCase                              ? "differs in case"
                        : !fitsOwnExtension || !fitsExtensions ? "extension refused"
                        : isReached                            ? "unreadable"
                        : isPrivate                            ? "private to another directory"
                        : vpGetDirType(candidate.dir) >= vpDirTypePackage
                            ? "deeper than the name spells out"
                            : "elsewhere than the name spells out";

    std::vector<std::string> steps;
    if (!fitsExtensions) {
        steps.push_back(extension.empty() ? "list an empty extension in --ext"
                                          : "list " + Quoted(extension.substr(1)) + " in --ext");
    }
    if (!isReadable) steps.emplace_back("let it be read or leave out --verify");
    const bool otherName = !fitsCase || !fitsOwnExtension;
    const std::string ownName =
        OwnName(candidate, /*withExtension=*/leaf + "." != WithoutExtension(leaf));
    if (!isReached && isPrivate) {
        const std::string asked =
            otherName || spellsDirectory ? "for " + Quoted(LastComponent(ownName)) + " " : "";
        steps.push_back("ask " + asked + "--from " + FullNameOf(vpGetParentDir(candidate.dir)));
    } else if (otherName || !isReached) {
        const bool caseAlone = isReached && fitsOwnExtension && !winner_;
        steps.push_back("ask for " + Quoted(ownName) + (caseAlone ? " or use --ignore-case" : ""));
    } else if (winner_ && positions_.at(winner_->file) < position->second) {
        steps.push_back(unhide(name, candidate));
    }
    std::string advice;
    for (const std::string& step : steps) advice += (advice.empty() ? "" : "; ") + step;
    return {words, advice};
}

bool Judge::isKnown(const Candidate& candidate) const {
    const std::string name = StemOf(candidate.file) + ".";
    const Search search(vpCreateDirSearchIterator(candidate.dir, name.c_str(), nullptr,
                                                  vpReadCheckSkip, vpCaseSensitive));
    for (const Candidate& found : read(search)) {
        if (found.file == candidate.file) return true;
    }
    return false;
}

// What a search answers, each file once.
std::vector<Candidate> Judge::read(const Search& search) const {
    std::vector<Candidate> found;
    std::unordered_set<std::string> seen;
    char file[kNameRoom];
    vpDir dir;
    while (vpFindNextFile(search.get(), &dir, file) != 0) {
        std::string fullName = FullFileName(file);
        if (seen.insert(fullName).second) found.push_back({std::move(fullName), dir});
    }
    return found;
}

void Judge::ask(const std::string& name) {
    if (asked_ == name) return;
    asked_ = name;
    const std::vector<Candidate> matches = read(query_.search(name));
    winner_ = matches.empty() ? std::nullopt : std::optional(matches[0]);
    matches_.clear();
    for (const Candidate& match : matches) matches_.insert(match.file);
    considered_ = read(looseQuery_.searchAnyCase(WithoutExtension(name)));
    reachedByCase_.clear();
    for (Candidate& candidate : read(looseQuery_.search(WithoutExtension(name)))) {
        reachedByCase_.insert(std::move(candidate.file));
    }
    fitting_.clear();
    positions_.clear();
    for (const Candidate& candidate : considered_) {
        positions_.emplace(candidate.file, positions_.size());
    }
}

// Whether a search of its directory alone, by that one of the rules, answers the file. The answers
// are kept: a directory may hold many files of one name.
bool Judge::fits(const Candidate& candidate, Rule rule) {
    const auto [at, isNew] = fitting_.try_emplace({candidate.dir.get(), rule});
    if (isNew) {
        const std::string leaf = LastComponent(*asked_);
        const bool withExtension = rule == Rule::kOwnExtension || rule == Rule::kOwnExtensionCase;
        const bool byCase = rule == Rule::kCase || rule == Rule::kOwnExtensionCase;
        const std::string name = withExtension ? leaf : WithoutExtension(leaf);
        ExtensionArray extensions = rule == Rule::kExtensions ? extensions_ : ExtensionArray();
        const Search search(
            vpCreateDirSearchIterator(candidate.dir, name.c_str(), extensions.data(),
                                      rule == Rule::kReadCheck ? readCheck_ : vpReadCheckSkip,
                                      byCase ? vpCaseOfPath : vpCaseInsensitive));
        for (Candidate& found : read(search)) at->second.insert(std::move(found.file));
    }
    return at->second.count(candidate.file) != 0;
}

// Whether an extension that is listed, whatever the case, is so in its own as well.
bool Judge::isListedInItsCase(const std::string& extension) const {
    ExtensionArray extensions = extensions_;
    const char** listed = extensions.data();
    if (listed == nullptr || extension.empty() || !vpGetPathCaseSensitivity(path_)) return true;
    bool differs = false;
    for (; *listed != nullptr; ++listed) {
        const std::string dotted = std::string(**listed == '.' ? "" : ".").append(*listed);
        if (dotted == extension) return true;
        differs = differs || Folded(dotted) == Folded(extension);
    }
    return !differs;
}

const char* Judge::hiddenWords(const std::string& name, const Candidate& hidden) const {
    return IsOfOtherCategory(name, *winner_, hidden) ? "lower category" : "later on the path";
}

// What would put a file before the winner.
std::string Judge::unhide(const std::string& name, const Candidate& hidden) const {
    const vpDir winnerDir = vpGetPathDir(winner_->dir);
    const vpDir hiddenDir = vpGetPathDir(hidden.dir);
    if (IsOfOtherCategory(name, *winner_, hidden)) return "remove " + winner_->file;
    if (vpIsSameDir(winner_->dir, hidden.dir)) {
        return "ask for " + Quoted(OwnName(hidden, /*withExtension=*/true));
    }
    if (vpGetDirType(winnerDir) == vpDirTypeCurrent || vpIsSameDir(winnerDir, hiddenDir)) {
        return "remove " + winner_->file;
    }
    return "put " + FullNameOf(hiddenDir) + " before " + FullNameOf(winnerDir) + " on the path";
}

void Judge::readIndex() {
    index_.emplace();
    const Search all(vpCreateAllSearch(path_, nullptr, nullptr, vpReadCheckSkip));
    for (Candidate& candidate : read(all)) {
        (*index_)[Folded(StemOf(candidate.file))].push_back(std::move(candidate));
    }
}
