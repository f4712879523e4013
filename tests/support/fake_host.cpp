#include "support/fake_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include <hostkit/hostkit.h>

namespace {

FakeHost* theHost = nullptr;

std::string ParentOf(const std::string& name) {
    const size_t slash = name.rfind('/');
    return slash == 0 ? "/" : name.substr(0, slash);
}

std::string Below(const std::string& directory, const std::string& name) {
    return directory == "/" ? "/" + name : directory + "/" + name;
}

std::string LeafOf(const std::string& name) { return name.substr(name.rfind('/') + 1); }

}  // namespace

FakeHost::FakeHost() : blocksBefore_(TheLedger().blocks) {
    theHost = this;
    nodes_["/"].isDirectory = true;
    add({"/cwd/"});
    install();
    vpSetMessageFcns(onError, onWarning, onInfo);
}

FakeHost::~FakeHost() {
    onCall = onListed = nullptr;
    TheLedger().failAt = 0;
    vpTerminate();
    vpSetMessageFcns(nullptr, nullptr, nullptr);
    EXPECT_EQ(TheLedger().blocks - blocksBefore_, 0) << "blocks kept by the library";
    EXPECT_EQ(TheLedger().listings.size(), 0U) << "listings not freed";
    theHost = nullptr;
}

FakeHost* FakeHost::current() { return theHost; }

void FakeHost::install() {
    vpSetDefaultIOFcnsNew(list, accessibility, isReadable, isDir, modificationTime, changeDir);
}

std::string FakeHost::resolve(const std::string& name) const {
    std::string full = name.empty() || name[0] != '/' ? Below(cwd, name) : name;
    while (full.size() > 1 && full.back() == '/') full.pop_back();
    return full;
}

const FakeHost::Node* FakeHost::find(const std::string& name) const {
    const auto node = nodes_.find(resolve(name));
    return node == nodes_.end() ? nullptr : &node->second;
}

void FakeHost::add(const std::vector<std::string>& names) {
    for (const std::string& given : names) {
        const std::string name = resolve(given);
        std::vector<std::string> missing;
        for (std::string at = name; nodes_.count(at) == 0; at = ParentOf(at)) missing.push_back(at);
        for (auto at = missing.rbegin(); at != missing.rend(); ++at) {
            nodes_[*at].isDirectory = given.back() == '/' || *at != name;
            nodes_[ParentOf(*at)].entries.push_back(LeafOf(*at));
        }
    }
}

void FakeHost::remove(const std::string& given) {
    std::vector<std::string> pending = {resolve(given)};
    std::vector<std::string>& siblings = nodes_.at(ParentOf(pending[0])).entries;
    siblings.erase(std::find(siblings.begin(), siblings.end(), LeafOf(pending[0])));
    while (!pending.empty()) {
        const std::string at = pending.back();
        pending.pop_back();
        for (const std::string& entry : nodes_.at(at).entries) pending.push_back(Below(at, entry));
        nodes_.erase(at);
    }
}

void FakeHost::reset() {
    for (const std::string& name : entries("/")) remove("/" + name);
    accessAnswers.clear();
    directoryAnswers.clear();
    denied.clear();
    cwd = "/cwd";
    add({"/cwd/"});
}

void FakeHost::setWord(const std::string& name, int word) { nodes_.at(resolve(name)).word = word; }

void FakeHost::setTime(const std::string& name, long time) { nodes_.at(resolve(name)).time = time; }

bool FakeHost::isDirectory(const std::string& name) const {
    const Node* node = find(name);
    return node != nullptr && node->isDirectory;
}

std::vector<std::string> FakeHost::entries(const std::string& directory) const {
    const Node* node = find(directory);
    return node == nullptr ? std::vector<std::string>{} : node->entries;
}

std::string FakeHost::take(Lines* lines, const char* between) {
    std::string text;
    for (const std::string& line : *lines) text += (text.empty() ? "" : between) + line;
    lines->clear();
    return text;
}

std::string FakeHost::takeCalls(const std::string& kind) {
    Lines names;
    for (const std::string& call : calls_) {
        if (call.rfind(kind + " ", 0) == 0) names.push_back(call.substr(kind.size() + 1));
    }
    calls_.clear();
    return take(&names, " ");
}

void FakeHost::note(Lines* lines, const std::string& line) {
    if (!recording) return;
    lines->push_back(line);
    const auto call = onCall;  // which may replace itself
    if (call) call(line);
}

std::string NameOf(const vpDir& dir) {
    if (dir.get() == nullptr) return "-";
    std::string name(static_cast<size_t>(vpGetDirNameLen(dir)) + 1, '#');
    EXPECT_EQ(vpGetDirName(dir, name.data()), name.data());
    EXPECT_EQ(name.find('\0'), name.size() - 1);
    name.pop_back();
    return name;
}

void FakeHost::tell(const char* mark, vpEventType type, const vpDir& dir) {
    const std::string name = NameOf(dir);
    theHost->note(&theHost->events_,
                  mark + std::to_string(type) + (name.empty() ? "" : " ") + name);
}

void FakeHost::say(const char* channel, const char* text) {
    theHost->note(&theHost->messages_, channel + std::string(text));
}

FakeHost& FakeHost::noteCall(const char* kind, const char* name) {
    theHost->note(&theHost->calls_, kind + std::string(" ") + name);
    return *theHost;
}

// The callbacks. Each is noted, and `onCall` run, before the tree is looked at.

char* FakeHost::list(vpPath, const char* name, unsigned int** wordsOut) {
    FakeHost& host = noteCall("list", name);
    const Node* node = host.find(name);
    if (node == nullptr) return nullptr;
    std::string names;
    std::vector<unsigned> words;
    for (const std::string& entry : node->entries) {
        const Node* child = host.find(Below(host.resolve(name), entry));
        names += entry + '\0';
        words.push_back(child->word >= 0     ? static_cast<unsigned>(child->word)
                        : child->isDirectory ? 0x4000
                                             : 0x8000);
    }
    const long failAt = std::exchange(TheLedger().failAt, 0);  // not our own allocations
    auto* listing = static_cast<char*>(hkMalloc(names.size() + 1));
    std::copy_n(names.c_str(), names.size() + 1, listing);
    TheLedger().listings.insert(listing);
    if (host.words) {
        *wordsOut = static_cast<unsigned*>(hkMalloc(words.size() * sizeof(unsigned)));
        std::copy(words.begin(), words.end(), *wordsOut);
        TheLedger().listings.insert(*wordsOut);
    }
    TheLedger().failAt = failAt;
    if (host.onListed) host.onListed(name);
    return listing;
}

vpDirAccessibility FakeHost::accessibility(vpPath, const char* name) {
    FakeHost& host = noteCall("access", name);
    const auto answer = host.accessAnswers.find(name);
    if (answer == host.accessAnswers.end()) {
        return host.isDirectory(name) ? vpDirAccessible : vpDirNonexistent;
    }
    return static_cast<vpDirAccessibility>(answer->second);
}

bool FakeHost::isReadable(const char* name) {
    FakeHost& host = noteCall("read", name);
    return host.exists(name) && host.denied.count(name) == 0;
}

bool FakeHost::isClass(const char* name) {
    noteCall("isclass", name);
    return true;
}

bool FakeHost::isDir(vpPath, const char* name) {
    FakeHost& host = noteCall("isdir", name);
    const auto answer = host.directoryAnswers.find(name);
    return answer == host.directoryAnswers.end() ? host.isDirectory(name) : answer->second;
}

long FakeHost::modificationTime(vpPath, const char* name) {
    FakeHost& host = noteCall("time", name);
    const Node* node = host.find(name);
    return node == nullptr ? 0 : node->time;
}

int FakeHost::changeDir(const char* name) {
    FakeHost& host = noteCall("chdir", name);
    if (*name == '\0' || !host.isDirectory(name)) return -1;
    host.cwd = host.resolve(name);
    return 0;
}
