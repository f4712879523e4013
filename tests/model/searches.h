// The model's searches: candidates in their order, and the tests that they are put to.
#pragma once

#include <algorithm>
#include <sstream>

#include "model/contents.h"

struct Question {
    char kind = 'A';
    Node::Ptr from;  // null: the null directory
    std::string name;
    std::vector<std::string> extensions;
    bool verify = false, caseSensitive = true;
    bool isNull = false;   // a search that is not made
    bool isWhole = false;  // directories were asked for: a dot is part of the name ever after

    // The name taken apart
    std::string base, directory;
    std::optional<std::string> given;  // its extension
    char mark = '\0';
    long separators = 0;

    void takeApart(Want want) {
        isWhole |= want == kDirs;
        base = name;
        given.reset();
        const size_t dot = name.rfind('.'), end = name.size();
        if (dot != name.npos && dot > 0 && name.find('/', dot) == name.npos) {
            if (dot + 1 < end && !isWhole) given = name.substr(dot + 1);
            if (dot + 1 == end || !isWhole) base.erase(dot);
        }
        separators = base.empty() ? 0 : std::count(base.begin() + 1, base.end(), '/');
        directory = separators > 0 ? base.substr(0, base.rfind('/')) : "";
        if (separators > 0) base = LeafOf(base);
        mark = base[0] == '@' || base[0] == '+' ? base[0] : '\0';
        if (mark != '\0') base.erase(0, 1);
    }

    // Which extension accepts that of a file, from 1; 0 for none.
    unsigned accepts(const std::optional<std::string>& found) const {
        if (given && !(found && Same(*found, *given, caseSensitive))) return 0;
        for (unsigned at = 0; at < extensions.size(); ++at) {
            const std::string wanted = extensions[at].substr(extensions[at][0] == '.' ? 1 : 0);
            const bool byName = wanted.empty() && given;
            if (byName || Same(wanted, found.value_or(""), caseSensitive)) return at + 1;
        }
        return extensions.empty() ? 0xFFFFFFFF : 0;
    }

    // Whether the directory part is the end of where `full` lies, but for marks it leaves out.
    bool liesThere(const std::string& full) const {
        const auto isMark = [](char c) { return c == '@' || c == '+'; };
        size_t at = full.rfind('/'), left = directory.size();
        for (; left > 0; --at) {
            if (at == 0 || at == full.npos) return false;
            if (isMark(full[at - 1]) && !isMark(directory[left - 1])) continue;
            if (!Same({full[at - 1]}, {directory[left - 1]}, caseSensitive)) return false;
            --left;
        }
        if (!directory.empty() && at > 0 && isMark(full[at - 1])) --at;
        return directory.empty() || at == 0 || full[at - 1] == '/';
    }
};

struct Candidate {
    Node::Ptr item;
    bool isScoped;  // how deep it lies counts
};

// A search that is under way. While nothing changes, its next answer is known exactly. Afterwards
// an answer has to be right at that moment, and not given before; and what was right from the
// beginning to the end must have been given.
struct OpenSearch {
    Question ask;
    std::optional<Want> want;
    bool hasRecord = false;
    long version = 0;  // of the model, when it was last known exactly
    std::vector<Candidate> candidates;
    size_t at = 0;
    std::optional<Candidate> current;
    const Node* lastHolder = nullptr;
    bool holdsBack = false;

    bool isExact = true, isMixed = false;
    bool placesChanged = false;                             // of what it walks over
    std::vector<std::pair<Node::Ptr, std::string>> due[4];  // by Want
    std::map<std::string, std::set<Node::Ptr>> right;
    std::map<std::string, size_t> given;
};

class Searches : public Contents {
  protected:
    using Contents::Contents;
    static constexpr Want kWants[] = {kFiles, kUnspecified, kSubdirectories, kDirs};

    virtual std::vector<Node::Ptr> directories() const = 0;  // all, in path order, preorder

    OpenSearch begin(const Question& ask) const {
        OpenSearch search;
        search.ask = ask;
        search.version = version;
        search.ask.takeApart(kFiles);
        search.hasRecord = hasRecord(search.ask);
        return search;
    }

    std::string next(OpenSearch& search, Want want) {
        if (!search.want) {
            search.want = want;
            const bool isNewName = want == kDirs && search.ask.given;
            search.ask.takeApart(want);
            if (isNewName) search.hasRecord = hasRecord(search.ask);
            if (search.hasRecord) search.candidates = candidates(search.ask, want);
        }
        while (true) {
            if (!std::exchange(search.holdsBack, false)) search.current.reset();
            while (!search.current && search.at < search.candidates.size()) {
                const Candidate& candidate = search.candidates[search.at++];
                if (candidate.item->alive && confirm(*candidate.item)) search.current = candidate;
            }
            if (!search.current) return "";
            const std::string hit = test(search.ask, want, *search.current);
            if (hit.empty()) continue;
            search.lastHolder = &search.current->item->holder();
            return hit;
        }
    }

    std::string bounded(OpenSearch& search) {
        if (search.holdsBack || !search.current) return "0:";
        const Node* const holder = search.lastHolder;
        const std::string hit = next(search, kFiles);
        if (!hit.empty() && search.lastHolder == holder) return hit;
        search.holdsBack = true;
        return "0:";
    }

    std::string drain(const Question& ask, Want want) {
        if (ask.isNull) return "null";
        OpenSearch search = begin(ask);
        std::string hits;
        for (std::string hit = next(search, want); !hit.empty(); hit = next(search, want))
            hits += (hits.empty() ? "" : " ") + hit;
        return hits;
    }

    std::vector<std::pair<Node::Ptr, std::string>> hitsNow(Question ask, Want want) {
        std::vector<std::pair<Node::Ptr, std::string>> hits;
        dry = true;
        ask.takeApart(want);
        for (const Candidate& candidate : candidates(ask, want)) {
            const std::string hit =
                confirm(*candidate.item) ? test(ask, want, candidate) : std::string();
            if (!hit.empty()) hits.emplace_back(candidate.item, hit);
        }
        dry = false;
        return hits;
    }

    // The library's answer of a search whose way is not known any more, or what is wrong with it.
    // What the library has asked its host on the way, the model takes as asked.
    std::string judge(OpenSearch& search, Want want, bool isBounded, const std::string& answer,
                      const std::string& asked) {
        search.isExact = false;
        if (search.want.value_or(want) != want) search.isMixed = true;
        search.want = want;
        search.ask.takeApart(want);
        std::istringstream lines(asked);
        for (std::string line; std::getline(lines, line, '|');) {
            for (const Node::Ptr& dir : directories()) {
                const std::vector<Node::Ptr> files = dir->kids[Node::kFile];
                for (const Node::Ptr& file : files) {
                    if (!file->confirmed && line == "isdir " + file->full) confirm(*file);
                }
            }
        }
        calls = asked;
        const auto now = hitsNow(search.ask, want);
        bool isRight = false;
        for (const auto& [item, hit] : now) {
            search.right[hit].insert(item);
            isRight |= hit == answer;
        }
        // What a bounded call has held back is given to whatever call comes next.
        for (const Want other : search.isMixed ? std::vector(std::begin(kWants), std::end(kWants))
                                               : std::vector<Want>()) {
            for (const auto& [item, hit] : hitsNow(search.ask, other)) isRight |= hit == answer;
        }
        const bool isEnd = answer == (isBounded ? "0:" : "");
        if (!isEnd && !isRight) return "nothing that is not there now";
        if (search.isMixed || search.placesChanged) return answer;
        if (!isEnd && ++search.given[answer] > search.right[answer].size()) return "nothing twice";
        forgetLapsed(search, want);
        for (const auto& due : isEnd && !isBounded ? search.due[want] : decltype(now)()) {
            if (search.given[due.second] == 0) return due.second + ", there all along";
        }
        return answer;
    }

    // What is not right at the moment may have been passed over, and need not be given later.
    void forgetLapsed(OpenSearch& search, Want want) {
        const auto now = hitsNow(search.ask, want);
        std::erase_if(search.due[want], [&](const auto& due) {
            return std::count(now.begin(), now.end(), due) == 0;
        });
    }

  private:
    // What each retrieving call admits: places in the name table, lists of a directory.
    static bool TakesPlace(Want want, int category) {
        static const std::set<int> places[] = {
            {0, 1, 2}, {0, 3, 7}, {0, 1, 2, 3, 7}, {4, 5, 6, 8, 9, 10}};
        return places[want].count(category) != 0;
    }
    static bool TakesList(Want want, int kind) {
        static const std::set<int> lists[] = {
            {Node::kFile},
            {Node::kFile, Node::kPlain},
            {Node::kPlain},
            {Node::kPackage, Node::kClass, Node::kPrivate, Node::kPlain}};
        return lists[want].count(kind) != 0;
    }

    // Whether anything has the name; a search that is opened when nothing has finds nothing ever.
    bool hasRecord(const Question& ask) const {
        bool isThere = ask.name.empty();
        const auto look = [&](const Node& node) { isThere |= Same(node.base, ask.base, false); };
        for (const Node::Ptr& dir : directories()) {
            look(*dir);
            for (const auto& list : dir->kids) {
                for (const Node::Ptr& kid : list) look(*kid);
            }
        }
        return isThere;
    }

    std::vector<Candidate> candidates(const Question& ask, Want want) const {
        std::vector<Candidate> found;
        const auto isNamed = [&](const Node& item) {
            return ask.name.empty() || Same(item.base, ask.base, ask.caseSensitive);
        };
        const auto takeDirectory = [&](const Node& dir, auto takes) {
            for (int kind = Node::kFile; kind <= Node::kPlain; ++kind) {
                for (const Node::Ptr& kid : dir.kids[kind]) {
                    if (TakesList(want, kind) && takes(kind) && isNamed(*kid))
                        found.push_back({kid, false});
                }
            }
        };
        const auto all = [](int) { return true; };
        const char scope = ask.kind;
        if (scope == 'D' && ask.from) takeDirectory(*ask.from, all);
        if ((scope == 'P' || scope == 'V') && ask.from) {
            for (const Node::Ptr& dir : ask.from->kids[Node::kPrivate]) takeDirectory(*dir, all);
        }
        if (scope == 'D' || scope == 'P') return found;
        for (const Node::Ptr& dir : ask.name.empty() ? directories() : std::vector<Node::Ptr>()) {
            if (scope == 'V' && dir->kind != Node::kTop) continue;
            if (scope == 'O' && dir == tops[0]) continue;
            if (scope == 'M' && dir->kind == Node::kPrivate) continue;
            const int ofMethods = dir->kind == Node::kClass ? Node::kFile : Node::kClass;
            takeDirectory(*dir, [&](int kind) {
                return scope == 'V' ? kind != Node::kPrivate : scope != 'M' || kind == ofMethods;
            });
        }
        if (ask.name.empty()) return found;

        // Everything of that name in path order; of one directory of the path, the latest first.
        std::map<const Node*, std::vector<Node::Ptr>> byTop;
        for (const Node::Ptr& dir : directories()) {
            if (dir->kind == Node::kTop && isNamed(*dir)) byTop[dir->top].push_back(dir);
            for (const auto& list : dir->kids) {
                for (const Node::Ptr& kid : list) {
                    if (isNamed(*kid)) byTop[dir->top].push_back(kid);
                }
            }
        }
        std::vector<Node::Ptr> named;
        for (const Node::Ptr& top : tops) {
            std::vector<Node::Ptr>& items = byTop[top.get()];
            std::sort(items.begin(), items.end(),
                      [](const auto& a, const auto& b) { return a->linked > b->linked; });
            named.insert(named.end(), items.begin(), items.end());
        }
        for (const Node::Ptr& item : named) {
            const bool isConstructor = item->category() == 2 &&
                                       item->parent->kind == Node::kClass && isNamed(*item->parent);
            if (scope == 'V' && TakesPlace(want, 2) && isConstructor)
                found.push_back({item, false});
        }
        const std::vector<int> order = scope == 'V'   ? std::vector{0, 10, 3, 5, 6}
                                       : scope == 'M' ? std::vector{2, 6}
                                                      : std::vector{0, 2, 1, 3, 5, 6, 8, 9, 10, 4};
        for (const int category : order) {
            for (const Node::Ptr& item : named) {
                const bool isLeftOut = scope == 'O' && &item->holder() == tops[0].get();
                if (TakesPlace(want, category) && item->category() == category && !isLeftOut)
                    found.push_back({item, true});
            }
        }
        return found;
    }

    // The hit that a candidate makes; "" when it is rejected.
    std::string test(const Question& ask, Want want, const Candidate& candidate) {
        const Node& item = *candidate.item;
        const bool isFile = item.kind == Node::kFile, isPlain = item.kind == Node::kPlain;
        if (want == kDirs && (isFile || isPlain)) return "";
        const unsigned any = want == kDirs ? 1 : 0xFFFFFFFF;
        const unsigned result = isFile ? ask.accepts(item.extension) : any;
        if (result == 0 || (candidate.isScoped && item.depth > ask.separators)) return "";
        const bool isChecked = isFile && ask.verify && item.holder().state != Node::kFrozen;
        if (isChecked && !isReadable(item.full)) return "";
        if (want == kSubdirectories && !isPlain) return "";
        const size_t behind = ask.base.size() + 1;  // from the place of a mark
        const bool isLong = item.full.size() > behind;
        if (ask.mark != '\0' && !(isLong && item.full[item.full.size() - behind] == ask.mark))
            return "";
        if (!ask.liesThere(item.full)) return "";
        return (result == 0xFFFFFFFF ? "*:" : std::to_string(result) + ":") + item.full;
    }
};
