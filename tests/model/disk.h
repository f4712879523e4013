// What the model asks its host: the fake host's own callbacks, noted in the order in which they
// have to be called; in cache mode, what a cache file makes of them.
#pragma once

#include <strings.h>

#include <map>
#include <optional>

#include <hostkit/hostkit.h>

#include "support/path_test.h"

inline bool Same(const std::string& a, const std::string& b, bool caseSensitive) {
    return caseSensitive ? a == b : strcasecmp(a.c_str(), b.c_str()) == 0;
}
inline std::string LeafOf(const std::string& name) { return name.substr(name.rfind('/') + 1); }

// A last component that makes a directory special.
inline bool IsMarked(const std::string& leaf) {
    return leaf.size() > 1 && (leaf[0] == '@' || leaf[0] == '+');
}
inline bool IsPrivate(const std::string& leaf) { return Same(leaf, "private", false); }

class Disk {
  protected:
    struct Entry {
        std::string name;
        unsigned word;
    };
    using Cache = std::map<std::string, std::vector<Entry>>;  // by full name

    explicit Disk(FakeHost& fake) : host(fake) {}

    template <class Call>
    auto quietly(Call call) {
        host.recording = false;
        const auto answer = call();
        host.recording = true;
        return answer;
    }

    void note(const std::string& call) { calls += (calls.empty() ? "" : "|") + call; }

    std::vector<Entry> listing(const std::string& name) {
        if (cache && cache->count(name) != 0) return cache->at(name);
        note("list " + name);
        std::vector<Entry> entries;
        unsigned int* words = nullptr;
        char* const names = quietly([&] { return FakeHost::list(vpPath(), name.c_str(), &words); });
        for (const char* at = names; at && *at != '\0'; at += entries.back().name.size() + 1)
            entries.push_back({at, words != nullptr ? words[entries.size()] : 0});
        hkFree(names);
        hkFree(words);
        return entries;
    }

    bool isDirectory(const std::string& name) {
        const std::string leaf = LeafOf(name);
        if (cache && name.rfind("/t/toolbox/", 0) == 0) {
            if (leaf.find('.') != leaf.npos) return false;
            if (cache->count(name) != 0) return true;
        }
        if (cache && (leaf[0] == '@' || IsPrivate(leaf))) return true;
        note("isdir " + name);
        return host.isDirectory(name);
    }

    bool isAccessible(const std::string& name) {
        if (cache && isDirectory(name)) return true;
        note("access " + name);
        return host.isDirectory(name);
    }

    long time(const std::string& name) {
        std::string above = name.substr(0, name.size() - LeafOf(name).size());
        if (above.size() > 1) above.pop_back();
        if (cache && (isDirectory(name) || isDirectory(above))) return 0;
        note("time " + name);
        return quietly([&] { return FakeHost::modificationTime(vpPath(), name.c_str()); });
    }

    bool isReadable(const std::string& name) {
        if (!dry) note("read " + name);
        return host.exists(name) && host.denied.count(name) == 0;
    }

    FakeHost& host;
    std::string calls;  // events and messages, joined by '|'
    bool dry = false;   // asks nobody and changes nothing
    std::optional<Cache> written, cache;
};
