#include "support/path_test.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>

#include <vpath/pathname.h>

#include "support/check_invariants.h"

void CheckTable(const vpPath& path) {
    if (path.get() != nullptr) {
        EXPECT_EQ(CheckInvariants(*path.get()), "");
    }
}

std::string OnPath(const vpPath& path) {
    std::string names;
    for (vpDir at = vpGetNextPathDir(vpGetNullDir(path)); vpGetDirType(at) != vpDirTypeNone;
         at = vpGetNextPathDir(at)) {
        if (!names.empty()) names += ' ';
        names += NameOf(at);
    }
    return names;
}

namespace {

// For a full name of any length that a test's host lists, whatever it holds beforehand.
std::unique_ptr<char[]> Room() {
    std::unique_ptr<char[]> room(new char[80000]);
    std::strcpy(room.get(), "untouched");
    return room;
}

std::string HitText(unsigned int result, const char* name) {
    return (result == 0xFFFFFFFF ? "*:" : std::to_string(result) + ":") + name;
}

}  // namespace

std::string NextHit(vpSearch* search, Want want) {
    using Find = unsigned int (*)(vpSearch*, vpDir*, char*);
    const Find findDir = [](vpSearch* from, vpDir* at, char* name) {
        const unsigned int result = vpFindNextDir(from, at);
        vpGetDirName(*at, name);
        return result;
    };
    const Find finds[] = {vpFindNextFile, vpFindNextUnspecified, vpFindNextSubdirectory, findDir};
    const auto name = Room(), joined = Room();
    vpDir at;
    const unsigned int result = finds[want](search, &at, name.get());
    EXPECT_EQ(result == 0, vpGetDirType(at) == vpDirTypeNone);
    EXPECT_EQ(result == 0, name[0] == '\0') << name.get();
    if (result == 0) return "";
    if (want != kDirs) {
        const char* const leaf = vpSeparatePathName(name.get(), nullptr);
        EXPECT_STREQ(vpConcatDirName(at, leaf, joined.get()), name.get());
    }
    return HitText(result, name.get());
}

std::string HitsOf(vpSearch* search, Want want) {
    if (search == nullptr) return "null";
    std::string hits;
    for (std::string hit = NextHit(search, want); !hit.empty(); hit = NextHit(search, want)) {
        hits += (hits.empty() ? "" : " ") + hit;
        if (hits.size() > 10000000) return "without end: " + hits.substr(0, 1000);
    }
    EXPECT_EQ(NextHit(search, want), "") << "after the end";
    vpDestroySearch(&search);
    EXPECT_EQ(search, nullptr);
    return hits;
}

vpSearch* MakeSearch(const vpPath& path, char kind, const char* from, const char* name,
                     const char** exts, vpReadCheck check, vpCaseSensitivity rule) {
    const bool plain = rule == vpCaseOfPath;
    const auto on = [&](auto create, auto createIterator, auto... where) {
        return plain ? create(where..., name, exts, check)
                     : createIterator(where..., name, exts, check, rule);
    };
    const vpDir dir = vpFindDirFullName(path, from);
    // clang-format off
    switch (kind) {
        case 'A': return on(vpCreateAllSearch, vpCreateAllSearchIterator, path);
        case 'V': return on(vpCreateVisibleSearch, vpCreateVisibleSearchIterator, dir);
        case 'P': return on(vpCreatePrivateSearch, vpCreatePrivateSearchIterator, dir);
        case 'D': return on(vpCreateDirSearch, vpCreateDirSearchIterator, dir);
        case 'M': return on(vpCreateMethodSearch, vpCreateMethodSearchIterator, path);
        case 'N': return on(vpCreateDirnameSearch, vpCreateDirnameSearchIterator, path, from);
        case 'O':
            return on(vpCreatePathOnlySearch, vpCreatePathOnlySearchIterator, path, vpPath());
        case 'W':
            return on(vpCreateDirnameVisibleSearch, vpCreateDirnameVisibleSearchIterator, path,
                      from);
        default:
            return on(vpCreateFilenameVisibleSearch, vpCreateFilenameVisibleSearchIterator, path,
                      from);
    }
    // clang-format on
}

void PathTest::forget() {
    host.takeCalls(), host.takeMessages(), host.takeEvents(), host.takePrinted();
}

void PathTest::run(const char* script) {
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        for (size_t end = 0; end != line.npos; line.erase(0, end == line.npos ? end : end + 3)) {
            end = line.find(" ; ");
            const std::string command = line.substr(0, end);
            const size_t arrow = command.find(" =>");
            std::string answer = step(command.substr(0, arrow));
            while (!answer.empty() && answer.back() == ' ') answer.pop_back();
            if (arrow != command.npos) {
                const bool none = arrow + 3 == command.size();
                EXPECT_EQ(answer, none ? "" : command.substr(arrow + 4)) << command;
            }
            CheckTable(path);
        }
    }
}

// What a directory holds, in stored order: "a.v b | sub | +p @c private".
std::string PathTest::contents(const std::string& name) {
    std::string text;
    for (const Want want : {kFiles, kSubdirectories, kDirs}) {
        std::istringstream hits(HitsOf(MakeSearch(path, 'D', name.c_str(), nullptr), want));
        for (std::string hit; hits >> hit;) text += hit.substr(hit.rfind('/') + 1) + " ";
        text += want == kDirs ? "" : "| ";
    }
    text.pop_back();
    return text;
}

// KIND[:FROM] NAME [EXTENSION,...] [csN] [verify]
PathTest::Asked::Asked(const std::vector<std::string>& words)
    : kind(words[1][0]),
      from(words[1].size() > 2 ? words[1].substr(2) : ""),
      name(words[2] == "NULL" ? nullptr : words[2].c_str()) {
    for (size_t at = 3; at < words.size(); ++at) {
        if (words[at] == "verify") {
            check = vpReadCheckVerify;
        } else if (words[at].rfind("cs", 0) == 0) {
            rule = static_cast<vpCaseSensitivity>(std::stoi(words[at].substr(2)));
        } else {
            std::istringstream list(words[at] + ",");
            for (std::string text; std::getline(list, text, ',');) texts.push_back(text);
        }
    }
    for (const std::string& text : texts) exts.push_back(text.c_str());
    exts.push_back(nullptr);
}

vpSearch* PathTest::makeSearch(const std::vector<std::string>& words) {
    Asked asked(words);
    return MakeSearch(path, asked.kind, asked.from == "NULL" ? nullptr : asked.from.c_str(),
                      asked.name, asked.exts.data(), asked.check, asked.rule);
}

// The first hit, in one call.
std::string PathTest::firstHit(const std::vector<std::string>& words) {
    Asked asked(words);
    const auto found = Room();
    const unsigned int result =
        asked.kind == 'A'
            ? vpFindFirstFileInAll(path, asked.name, asked.exts.data(), asked.check, nullptr,
                                   found.get())
            : vpFindFirstFileVisibleToDir(dir(asked.from), asked.name, asked.exts.data(),
                                          asked.check, nullptr, found.get());
    return result == 0 ? "" : HitText(result, found.get());
}

std::string PathTest::step(const std::string& command) {
    std::vector<std::string> words;
    std::istringstream stream(command);
    for (std::string word; stream >> word;) words.push_back(word == "''" ? "" : word);
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    const std::vector<std::string> given = words;
    words.resize(4);
    const std::string &op = words[0], &name = words[1];
    const char* const text = name == "NULL" ? nullptr : name.c_str();
    const int number = std::atoi((words[2].empty() ? name : words[2]).c_str());
    const auto yes = [](bool answer) { return std::string(answer ? "yes" : "no"); };
    const auto each = [&](const std::function<std::string(const char*)>& answer) {
        std::string answers;
        for (const std::string& one : rest) {
            if (!answers.empty()) answers += ' ';
            answers += answer(one == "NULL" ? nullptr : one.c_str());
        }
        return answers;
    };
    const auto type = static_cast<vpDirRefreshType>(number);

    // The host
    if (op == "tree") return host.add(rest), "";
    if (op == "rm") return host.remove(name), "";
    if (op == "word") return host.setWord(name, std::stoi(words[2], nullptr, 16)), "";
    if (op == "time") return host.setTime(name, number), "";
    if (op == "now") return host.now = number, "";
    if (op == "words") return host.words = number != 0, "";
    if (op == "access") return host.accessAnswers[name] = number, "";
    if (op == "isdir") return host.directoryAnswers[name] = number != 0, "";
    if (op == "deny") return host.denied.insert(name), "";
    if (op == "calls") return name.empty() ? host.takeCalls() : host.takeCalls(name);
    if (op == "messages") return host.takeMessages();
    if (op == "events") return host.takeEvents();
    if (op == "printed") return host.takePrinted();
    if (op == "forget") return forget(), "";
    // The path
    if (op == "path") {
        const bool rooted = !words[2].empty() && words[2] != "-";
        const auto rule = static_cast<vpCaseSensitivity>(std::atoi(words[3].c_str()));
        path = vpCreatePathWithPreFrozen(0, "p", rooted ? words[2].c_str() : nullptr, rule, false);
        if (name != "-") vpAddDirsString(path, text, vpAddAtEnd);
        return step("listen A"), forget(), "";
    }
    if (op == "removepath") return vpRemovePath(path), "";
    if (op == "terminate") return yes(vpTerminate());
    if (op == "sensitive") return vpSetCaseSensitivity(path, number != 0), "";
    if (op == "add") return NameOf(vpAddDir(path, text, vpAddAtEnd));
    if (op == "tryadd") return step("add " + name).append(host.takeMessages());
    if (op == "first") return NameOf(vpAddDir(path, text, vpAddAtBeginning));
    if (op == "list") return NameOf(vpAddDirsString(path, text, vpAddAtEnd));
    if (op == "listfirst") return NameOf(vpAddDirsString(path, text, vpAddAtBeginning));
    if (op == "remove") return vpRemoveDir(dir(name)), "";
    if (op == "prune") return vpDeleteNonExistentDirectories(path), "";
    if (op == "replace") return yes(vpReplacePath(path, text));
    if (op == "on") return OnPath(path);
    if (op == "count") return std::to_string(vpGetNumPathDirs(path));
    if (op == "find") {
        return each([&](const char* one) {
            const vpDir found = vpFindDirFullName(path, one);
            return std::to_string(vpGetDirType(found)) + NameOf(found);
        });
    }
    if (op == "checkdir")
        return each([&](const char* one) { return yes(vpCheckIsDir(path, one)); });
    if (op == "cwd") {
        const char* failure = vpSetCWDName(path, text);
        return failure == nullptr ? "" : failure;
    }
    // Listeners A and B, and a cache file of this test's own
    if (op == "listen") {
        const bool isSecond = name == "B";
        const auto listener = isSecond ? FakeHost::secondListener : FakeHost::listener;
        return interests_[name] = vpRegisterPathInterest(path, listener), "";
    }
    if (op == "unlisten") return vpCancelPathInterest(interests_[name]), "";
    const std::string cache = testing::TempDir() + "vpath_cache_" + std::to_string(getpid());
    if (op == "cachewrite") return vpWritePathToCacheFile(path, cache.c_str()), "";
    if (op == "cacheload") return vpUseToolboxCache(path, cache.c_str(), "/t", false), "";
    if (op == "cacherevert") return vpRevertFromToolboxCache(path), std::remove(cache.c_str()), "";
    if (op == "hide") return vpHideCWD(path, number != 0), "";
    if (op == "cwdonpath") return yes(vpIsCWDOnPath(path));
    // Directories; "keep H NAME" holds on to one
    if (op == "keep") return kept_[name] = dir(words[2]), "";
    if (op == "kept") {
        return (vpIsDirHandleValid(kept_[name]) ? "alive " : "dead ") + NameOf(kept_[name]);
    }
    if (op == "same") return yes(vpIsSameDir(kept_[name], dir(words[2])));
    if (op == "holds") return contents(name);
    if (op == "refresh")
        return forget(), vpRefreshDirectory(dir(name), type), host.takeCalls("list");
    if (op == "refreshall")
        return forget(), vpRefreshAllDirectories(path, type), host.takeCalls("list");
    if (op == "mark") return yes(vpSetDirChanged(path, text));
    if (op == "markall") return vpSetAllChanged(path), "";
    if (op == "unknown") return vpChangedUnknownDir(path), "";
    if (op == "freeze") return vpFreeze(dir(name)), "";
    if (op == "unfreeze") return vpUnFreeze(dir(name)), "";
    if (op == "frozen") return each([&](const char* one) { return yes(vpIsFrozen(dir(one))); });
    // "walk methods", "walk class NAME", "walk classes DIR", "walk packages DIR"
    if (op == "walk") {
        const bool isOfOne = name == "classes" || name == "packages";
        const vpDir from = isOfOne ? dir(words[2]) : vpGetNullDir(path);
        std::string found;
        for (vpDir at = from;;) {
            at = name == "methods"   ? vpGetNextMethodDir(at)
                 : name == "class"   ? vpGetNextMethodClassDir(at, words[2].c_str())
                 : name == "classes" ? vpGetMethodDirs(from, at)
                                     : vpGetPackageDirs(from, at);
            if (vpGetDirType(at) == vpDirTypeNone) return found;
            found += (found.empty() ? "" : " ") + NameOf(at);
        }
    }
    // Searches
    const char* const wants[] = {"files", "any", "subs", "dirs"};
    for (const Want want : {kFiles, kUnspecified, kSubdirectories, kDirs}) {
        if (op == wants[want]) return HitsOf(makeSearch(given), want);
    }
    if (op == "one") return firstHit(given);
    if (op == "open") return vpDestroySearch(&search_), search_ = makeSearch(given), "";
    if (op == "swap") return std::swap(search_, parked_[number % 3]), "";
    if (op == "next" && search_ == nullptr) return "null";
    if (op == "next") return NextHit(search_, static_cast<Want>(name.empty() ? kFiles : number));
    if (op == "bounded") {
        const auto found = Room();
        vpDir at;
        const unsigned int result = vpFindNextFileBounded(search_, &at, found.get());
        EXPECT_EQ(result == 0, vpGetDirType(at) == vpDirTypeNone);
        return HitText(result, found.get());
    }
    if (op == "rest") return HitsOf(std::exchange(search_, nullptr));
    ADD_FAILURE() << "no such command: " << command;
    return "";
}
