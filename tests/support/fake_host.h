// A host in memory: a tree of directories, a clock, and a record of all that the library asks for.
//
// The library's callbacks carry no context, so a FakeHost installs itself as the current one. Its
// end removes every path, and fails the test when the library has kept memory or a listing.
//
// The calls of the library that have a stand-in here: time, hkMalloc, hkRealloc, hkFree (and with
// them hkCalloc and hkStrdup), hkPrintf, hkGetcwd, hkOutOfMemoryCheck. Without a FakeHost they do
// what the originals do.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include <vpath/path.h>

class FakeHost {
  public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;
    static FakeHost* current();

    // The tree. A final '/' makes a directory; those above come to be as they are needed. Listings
    // keep the order in which names were added. Relative names are relative to `cwd` everywhere.
    void add(const std::vector<std::string>& names);
    void remove(const std::string& name);  // with all beneath
    void reset();                          // all but an empty /cwd; answers and denials too
    bool exists(const std::string& name) const { return find(name) != nullptr; }
    bool isDirectory(const std::string& name) const;
    std::vector<std::string> entries(const std::string& directory) const;
    void setWord(const std::string& name, int word);
    void setTime(const std::string& name, long time);

    bool words = true;  // listings bring a word for each entry
    std::string cwd = "/cwd";
    bool cwdUnknown = false;                       // hkGetcwd fails
    std::map<std::string, int> accessAnswers;      // by name; else by what the tree holds
    std::map<std::string, bool> directoryAnswers;  // the same
    std::set<std::string> denied;                  // files that may not be read
    long now = 1000;  // stands still; files and directories are as old as 10

    // What happened since the last take, joined by '|': callbacks as "access /w", "list", "isdir",
    // "read", "time", "chdir"; messages as "error: ..."; events as "5 /w", those of the second
    // listener as "B5 /w"; what hkPrintf printed, as it is. `onCall` runs inside each callback,
    // event, message and print that is recorded.
    std::string takeCalls() { return take(&calls_, "|"); }
    std::string takeCalls(const std::string& kind);  // the names alone, joined by blanks
    std::string takeMessages() { return take(&messages_, "|"); }
    std::string takeEvents() { return take(&events_, "|"); }
    std::string takePrinted() { return take(&printed_, ""); }
    bool recording = true;
    std::function<void(const std::string&)> onCall;
    std::function<void(const std::string&)> onListed;  // a directory's listing has just been taken

    // The callbacks and listeners themselves; `install` makes the callbacks the default ones.
    static void install();
    static char* list(vpPath path, const char* name, unsigned int** wordsOut);
    static vpDirAccessibility accessibility(vpPath path, const char* name);
    static bool isReadable(const char* name);
    static bool isDir(vpPath path, const char* name);
    static long modificationTime(vpPath path, const char* name);
    static int changeDir(const char* name);
    static bool isClass(const char* name);  // every file is
    static void onError(const char* text) { say("error: ", text); }
    static void onWarning(const char* text) { say("warning: ", text); }
    static void onInfo(const char* text) { say("info: ", text); }
    static void listener(vpEventType type, vpDir dir) { tell("", type, dir); }
    static void secondListener(vpEventType type, vpDir dir) { tell("B", type, dir); }
    void notePrinted(const char* text) { note(&printed_, text); }

  private:
    struct Node {
        bool isDirectory = false;
        long time = 10;
        int word = -1;  // -1: by what it is
        std::vector<std::string> entries;
    };
    using Lines = std::vector<std::string>;

    std::string resolve(const std::string& name) const;
    const Node* find(const std::string& name) const;
    void note(Lines* lines, const std::string& line);
    static FakeHost& noteCall(const char* kind, const char* name);
    static void say(const char* channel, const char* text);
    static void tell(const char* mark, vpEventType type, const vpDir& dir);
    static std::string take(Lines* lines, const char* between);

    std::unordered_map<std::string, Node> nodes_;
    Lines calls_, messages_, events_, printed_;
    long blocksBefore_;
};

// What the stand-ins for the allocator have counted.
struct Ledger {
    long blocks = 0;                 // allocated and not yet freed
    long allocations = 0;            // ever
    long failAt = 0;                 // the allocation that many calls ahead fails; 0: none
    bool failsOn = false;            // and all after it: failAt is -1 then
    std::set<const void*> listings;  // handed out by FakeHost::list and not yet freed
};
Ledger& TheLedger();

std::string NameOf(const vpDir& dir);  // its full name; "-" for a null handle
