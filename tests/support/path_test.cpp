#include "support/path_test.h"

#include <cstring>
#include <sstream>

#include <vpath/pathname.h>

std::string OnPath(const vpPath& path) {
    std::string names;
    for (vpDir at = vpGetNextPathDir(vpGetNullDir(path)); vpGetDirType(at) != vpDirTypeNone;
         at = vpGetNextPathDir(at)) {
        if (!names.empty()) names += ' ';
        names += NameOf(at);
    }
    return names;
}

std::string NextHit(vpSearch* search, Want want) {
    using Find = unsigned int (*)(vpSearch*, vpDir*, char*);
    const Find findDir = [](vpSearch* from, vpDir* at, char* name) {
        const unsigned int result = vpFindNextDir(from, at);
        vpGetDirName(*at, name);
        return result;
    };
    const Find finds[] = {vpFindNextFile, vpFindNextUnspecified, vpFindNextSubdirectory, findDir};
    char name[10000] = "untouched", joined[10000];
    vpDir at;
    const unsigned int result = finds[want](search, &at, name);
    EXPECT_EQ(result == 0, vpGetDirType(at) == vpDirTypeNone);
    EXPECT_EQ(result == 0, *name == '\0') << name;
    if (result == 0) return "";
    if (want != kDirs) {
        EXPECT_STREQ(vpConcatDirName(at, vpSeparatePathName(name, nullptr), joined), name);
    }
    return (result == 0xFFFFFFFF ? "*:" : std::to_string(result) + ":") + name;
}

std::string HitsOf(vpSearch* search, Want want) {
    if (search == nullptr) return "null";
    std::string hits;
    for (std::string hit = NextHit(search, want); !hit.empty(); hit = NextHit(search, want)) {
        hits += (hits.empty() ? "" : " ") + hit;
        if (hits.size() > 1000000) return "without end: " + hits.substr(0, 1000);
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
    char found[10000];
    const unsigned int result =
        asked.kind == 'A'
            ? vpFindFirstFileInAll(path, asked.name, asked.exts.data(), asked.check, nullptr, found)
            : vpFindFirstFileVisibleToDir(dir(asked.from), asked.name, asked.exts.data(),
                                          asked.check, nullptr, found);
    if (result == 0) return "";
    return (result == 0xFFFFFFFF ? "*:" : std::to_string(result) + ":") + found;
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
        vpRegisterPathInterest(path, FakeHost::listener);
        return forget(), "";
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
    // Searches
    const char* const wants[] = {"files", "any", "subs", "dirs"};
    for (const Want want : {kFiles, kUnspecified, kSubdirectories, kDirs}) {
        if (op == wants[want]) return HitsOf(makeSearch(given), want);
    }
    if (op == "one") return firstHit(given);
    if (op == "open") return vpDestroySearch(&search_), search_ = makeSearch(given), "";
    if (op == "next" && search_ == nullptr) return "null";
    if (op == "next") return NextHit(search_, static_cast<Want>(name.empty() ? kFiles : number));
    if (op == "bounded") {
        char found[10000] = "untouched";
        vpDir at;
        const unsigned int result = vpFindNextFileBounded(search_, &at, found);
        EXPECT_EQ(result == 0, vpGetDirType(at) == vpDirTypeNone);
        return (result == 0xFFFFFFFF ? "*:" : std::to_string(result) + ":") + found;
    }
    if (op == "rest") return HitsOf(std::exchange(search_, nullptr));
    ADD_FAILURE() << "no such command: " << command;
    return "";
}
