// A host in about a hundred lines: the directories are an in-memory tree, the time a counter, and
// the library sees them through callbacks. Shows what a host must bring, how a name is found, and
// how a change travels from the tree to a listener.
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <hostkit/hostkit.h>
#include <vpath/path.h>
#include <vpath/search.h>

namespace {

struct Entry {
    std::string name;
    bool isDirectory;
};
struct Directory {
    std::vector<Entry> entries;
    long changed;  // seconds
};

// Long ago, so that the library trusts the times: one of this second or the one before could hide
// a second change.
long now = 1000;

std::map<std::string, Directory>& Tree() {
    static std::map<std::string, Directory> tree;
    return tree;
}

// Adds a file, or a directory when the name ends in '/'; the directory above changes with it.
void Add(std::string name) {
    const bool isDirectory = name.back() == '/';
    if (isDirectory) name.pop_back();
    const size_t slash = name.rfind('/');
    Directory& parent = Tree()[name.substr(0, slash)];
    parent.entries.push_back({name.substr(slash + 1), isDirectory});
    parent.changed = ++now;
    if (isDirectory) Tree()[name].changed = now;
}

// --- the callbacks

// Names one after another, and a word for each that saves the library from asking what it is. Both
// blocks are the library's afterwards, which frees them with hkFree.
char* List(vpPath, const char* name, unsigned int** words) {
    const auto found = Tree().find(name);
    if (found == Tree().end()) return nullptr;
    const std::vector<Entry>& entries = found->second.entries;
    std::string names;
    for (const Entry& entry : entries) names.append(entry.name).push_back('\0');
    auto* block = static_cast<char*>(hkMalloc(names.size() + 1));
    *words = static_cast<unsigned int*>(hkMalloc(entries.size() * sizeof(unsigned int)));
    hkOutOfMemoryCheck(block);
    hkOutOfMemoryCheck(*words);
    std::memcpy(block, names.c_str(), names.size() + 1);
    for (size_t i = 0; i < entries.size(); ++i) {
        (*words)[i] = entries[i].isDirectory ? 0x4000 : 0x8000;
    }
    return block;
}

vpDirAccessibility Accessibility(vpPath, const char* name) {
    return Tree().count(name) != 0 ? vpDirAccessible : vpDirNonexistent;
}

bool IsReadable(const char*) { return true; }
bool IsDirectory(vpPath, const char* name) { return Tree().count(name) != 0; }

long ModificationTime(vpPath, const char* name) {
    const auto found = Tree().find(name);
    return found == Tree().end() ? 0 : found->second.changed;
}

int ChangeDirectory(const char* name) { return Tree().count(name) != 0 ? 0 : -1; }

// --- what the host hears

void OnError(const char* text) { std::printf("error: %s\n", text); }
void OnWarning(const char* text) { std::printf("warning: %s\n", text); }

const char* TextOf(vpEventType event) {
    switch (event) {
        case vpEventDirAdded:
            return "added";
        case vpEventDirReread:
            return "read again";
        case vpEventReplaceBegin:
            return "the path will be replaced";
        case vpEventReplaceEnd:
            return "the path is replaced";
        case vpEventPathRemoved:
            return "the path goes";
        default:
            return "other";
    }
}

// The directory is the null one where the event is about the path; its name is then empty.
void OnEvent(vpEventType event, vpDir dir) {
    char name[4097];
    const bool ofPath = vpGetDirType(dir) == vpDirTypeNone;
    std::printf("event: %s%s%s\n", TextOf(event), ofPath ? "" : " ", vpGetDirName(dir, name));
}

void Find(const vpPath& path, const char* name) {
    const char* extensions[] = {"v", nullptr};
    vpDir where;
    char file[8192];
    const bool found =
        vpFindFirstFileInAll(path, name, extensions, vpReadCheckVerify, &where, file) != 0;
    std::printf("%s: %s\n", name, found ? file : "not found");
}

}  // namespace

int main() {
    for (const char* name : {"/lib/", "/lib/plot.v", "/lib/@Shape/", "/lib/@Shape/area.v",
                             "/lib/private/", "/lib/private/trim.v", "/tools/", "/tools/plot.v"}) {
        Add(name);
    }
    vpSetMessageFcns(OnError, OnWarning, nullptr);
    vpSetDefaultIOFcnsNew(List, Accessibility, IsReadable, IsDirectory, ModificationTime,
                          ChangeDirectory);
    // The root null: no directory counts as a toolbox directory, which would never be looked at
    // again.
    vpPath path = vpCreatePathWithPreFrozen(0, "main", nullptr, vpCaseDefault, false);
    vpRegisterPathInterest(path, OnEvent);
    vpAddDirsString(path, "/lib:/nowhere:/tools", vpAddAtEnd);
    Find(path, "plot");
    Find(path, "@Shape/area");
    Find(path, "trim");

    std::puts("-- the tree changes, the path does not know");
    Add("/tools/trim.v");
    Find(path, "trim");
    std::puts("-- it is asked to look");
    vpRefreshAllDirectories(path, vpRefreshIfChanged);
    Find(path, "trim");

    std::puts("-- another order");
    vpReplacePath(path, "/tools:/lib");
    Find(path, "plot");
    vpRemovePath(path);
}
