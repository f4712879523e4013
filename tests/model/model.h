// A path as plain trees, for the library to be held against: nothing is indexed, every question is
// answered by going through all there is. It obeys the commands of PathTest's scripts and asks the
// fake host what the library has to ask it, in the same order.
#pragma once

#include <functional>

#include "model/searches.h"

// What a command answers; what it asked its host, told its listeners and said meanwhile.
struct Outcome {
    std::string answer, calls;
};

class Model : public Searches {
  public:
    explicit Model(FakeHost& fake) : Searches(fake) {}

    // What the command must come to. `found` is what it came to in the library, for searches whose
    // way is not known any more.
    Outcome step(const std::string& command, const Outcome& found) {
        std::vector<std::string> words;
        std::istringstream stream(command);
        for (std::string word; stream >> word;) words.push_back(word == "''" ? "" : word);
        calls.clear();
        std::string answer;
        const bool isSearch = obeySearch(words, found, answer);
        words.resize(4);
        if (!isSearch) answer = obey(words[0], words[1], words[2], words[3]);
        return {answer, calls};
    }

    const std::vector<Node::Ptr>& onPath() const { return tops; }
    bool hasCache() const { return written.has_value(); }  // in a file

    std::vector<Node::Ptr> directories() const override {
        std::vector<Node::Ptr> all;
        const std::function<void(const Node::Ptr&)> take = [&](const Node::Ptr& dir) {
            all.push_back(dir);
            for (const Node::Ptr& kid : dir->specials()) take(kid);
        };
        for (const Node::Ptr& top : tops) take(top);
        return all;
    }

  private:
    using Strings = std::vector<std::string>;

    std::string obey(const std::string& op, const std::string& name, const std::string& second,
                     const std::string& third) {
        const auto nameOf = [](const Node* node) { return node != nullptr ? node->full : ""; };
        Node* const node = find(name);
        // Questions
        if (op == "find") return kindOf(node) + nameOf(node);
        if (op == "frozen") return node && node->state == Node::kFrozen ? "yes" : "no";
        if (op == "keep") return keep(name, find(second)), "";
        if (op == "kept") return kept(name);
        if (op == "walk") return walk(name, second);
        ++version;
        // The path
        if (op == "path") return create(second, third != "1"), "";
        if (op == "sensitive") return caseSensitive = name == "1", "";
        if (op == "add") return nameOf(add(name, true));
        if (op == "first") return nameOf(add(name, false));
        if (op == "list" || op == "listfirst") return addAll(Elements(name), op == "list");
        if (op == "replace") return replace(Elements(name)) ? "yes" : "no";
        if (op == "cwd") return setCurrent(name);
        if (op == "hide") return hide(name == "1"), "";
        if (op == "listen") return listen(name), "";
        if (op == "unlisten" && interests_.count(name) != 0)
            return listeners[interests_[name]] = "-", "";
        if (op == "cacheload") return cache = written, "";
        if (op == "cacherevert") return cache.reset(), written.reset(), "";
        if (op == "remove" && node && node->kind == Node::kTop && node != tops[0].get())
            remove(node->shared_from_this());
        const std::vector<Node::Ptr> before = tops;
        for (const Node::Ptr& top : before) {
            if (op == "refreshall") refresh(*top, std::stoi(name));
            if (op == "prune" && top != tops[0] && !isDirectory(top->full)) remove(top);
        }
        if (op == "cachewrite") written.emplace();
        for (const Node::Ptr& top : tops) {
            const bool isWritten = op == "cachewrite" && top->state == Node::kFrozen;
            if (isWritten && isUnderRoot(top->full)) writeCache(*top);
        }
        // Directories
        if (op == "mark") return mark(name) ? "yes" : "no";
        if (op == "refresh" && node != nullptr) refresh(*node, std::stoi(second));
        if (op == "freeze" && node != nullptr && node != tops[0].get()) freeze(*node);
        if (op == "unfreeze" && node != nullptr) unfreeze(*node);
        for (const Node::Ptr& dir : directories()) {
            if (op == "markall") markChanged(*dir);
            if (op == "unknown" && dir->state == Node::kRead) dir->state = Node::kToBeTested;
        }
        return op == "refresh" || op == "refreshall" ? listed() : "";
    }

    // FROM NAME [EXTENSION,...] [csN] [verify]
    Question question(const Strings& words) const {
        Question ask;
        ask.kind = words[1][0];
        std::string from = words[1].size() > 2 ? words[1].substr(2) : "";
        if (ask.kind == 'F')
            from.erase(std::min(from.size(), from.rfind('/')));  // as its directory
        if (words[2] != "NULL") ask.name = words[2];
        ask.caseSensitive = caseSensitive;
        for (size_t at = 3; at < words.size(); ++at) {
            const std::string& word = words[at];
            const bool isRule = word.rfind("cs", 0) == 0;
            if (isRule && word != "cs3") ask.caseSensitive = word == "cs0" || word == "cs2";
            if (word == "verify") ask.verify = true;
            if (isRule || word == "verify") continue;
            std::istringstream list(word + ",");
            for (std::string text; std::getline(list, text, ',');) ask.extensions.push_back(text);
        }
        if (Node* const at = find(from)) ask.from = at->shared_from_this();
        ask.isNull = ask.kind == 'N' && ask.from == nullptr;
        if (ask.kind == 'N') ask.kind = 'D';
        if (ask.kind == 'W' || ask.kind == 'F') ask.kind = 'V';
        if (ask.kind == 'V' && ask.name.find('/') != ask.name.npos) ask.kind = 'A';
        return ask;
    }

    bool obeySearch(const Strings& words, const Outcome& found, std::string& answer) {
        const std::string& op = words[0];
        const Strings verbs = {"files", "any", "subs", "dirs"};
        for (const Want want : kWants) {
            if (op == verbs[want]) return answer = drain(question(words), want), true;
        }
        if (op == "one") {
            OpenSearch search = begin(question(words));
            answer = next(search, kFiles);
        } else if (op == "swap") {
            std::swap(open_[0], open_[std::stoul(words[1]) % 3 + 1]);
        } else if (op == "open") {
            const Question ask = question(words);
            open_[0].reset();
            if (!ask.isNull) open_[0] = begin(ask);
            for (const Want want : kWants) {
                const bool isNewName = want == kDirs && open_[0] && open_[0]->ask.given;
                if (open_[0] && open_[0]->hasRecord && !isNewName)
                    open_[0]->due[want] = hitsNow(ask, want);
            }
        } else if (op == "next" || op == "bounded") {
            const bool isBounded = op == "bounded";
            if (!open_[0]) return answer = isBounded ? "0:untouched" : "null", true;
            OpenSearch& search = *open_[0];
            const auto want = static_cast<Want>(isBounded ? 0 : words[1][0] - '0');
            const bool isSame = search.version == version && search.want.value_or(want) == want;
            if (!search.isExact || !isSame)
                return answer = judge(search, want, isBounded, found.answer, found.calls), true;
            answer = isBounded ? bounded(search) : next(search, want);
            search.version = version;  // what it has passed itself is no change
            if (search.ask.verify) forgetLapsed(search, want);
            if (answer.empty() || answer == "0:") return true;
            ++search.given[answer];
            search.right[answer].insert(search.current->item);
        } else {
            return false;
        }
        return true;
    }

    static Strings Elements(const std::string& list) {
        Strings names(1);
        for (const char c : list) c == ':' || c == ';' ? names.emplace_back() : names.back() += c;
        if (names.back().empty()) names.pop_back();
        return names;
    }

    bool isUnderRoot(const std::string& name) const {
        return root_ && Same(name.substr(0, root_->size()), *root_, caseSensitive);
    }

    Node::Ptr makeTop(const std::string& name) {
        const auto made = std::make_shared<Node>();
        made->full = name;
        made->leaf = made->base = LeafOf(name);
        made->linked = ++links;
        made->underRoot = isUnderRoot(name);
        return made;
    }

    void create(const std::string& root, bool sensitive) {
        if (root != "-") root_ = root;
        caseSensitive = sensitive;
        isAccessible(host.cwd);
        tops = {makeTop(host.cwd)};
        read(*tops[0], false);
        listen("A");
    }

    Node* findAdded(const std::string& name) const {
        for (size_t at = 1; at < tops.size(); ++at) {
            if (Same(tops[at]->full, name, caseSensitive)) return tops[at].get();
        }
        return nullptr;
    }

    // Special directories come first, then those that were added, then the current one.
    Node* find(const std::string& name) const {
        Node* found = findAdded(name);
        const bool isCurrent = !tops.empty() && Same(tops[0]->full, name, caseSensitive);
        if (found == nullptr && isCurrent) found = tops[0].get();
        for (const Node::Ptr& dir : directories()) {
            if (dir->isSpecial() && Same(dir->full, name, caseSensitive)) return dir.get();
        }
        return found;
    }

    Node* add(const std::string& name, bool atEnd) {
        const std::string leaf = LeafOf(name),
                          notAllowed = " directories not allowed in VESPRA path";
        const auto sort = [&](const char* what) { return what + notAllowed; };
        std::string why;
        if (findAdded(name) != nullptr) {
            why = "Duplicate directory name";
        } else if (IsMarked(leaf) || Same(leaf, "private", caseSensitive)) {
            why = sort(leaf[0] == '@' ? "Method" : leaf[0] == '+' ? "Package" : "Private");
        } else if (!isAccessible(name)) {
            why = "Name is nonexistent or not a directory";
        }
        if (!why.empty()) {
            note("warning: " + why + ": " + name);
            return nullptr;
        }
        const auto isIt = [&](const auto& each) { return Same(each->full, name, caseSensitive); };
        const auto known = std::find_if(known_.begin(), known_.end(), isIt);
        const bool isNew = known == known_.end();
        const Node::Ptr dir = isNew ? makeTop(name) : *known;
        if (isNew) known_.push_back(dir);
        for (auto& search : open_) {  // it may be the one where a walk stands
            if (!isNew && search && search->ask.name.empty()) search->placesChanged = true;
        }
        dir->alive = true;
        dir->linked = ++links;
        tops.insert(atEnd ? tops.end() : tops.begin() + 1, dir);
        read(*dir, dir->underRoot);
        if (isNew) tell(vpEventDirAdded, dir.get());
        return dir.get();
    }

    std::string addAll(const Strings& names, bool atEnd) {
        Strings added;
        for (const std::string& name : names) {
            const Node* const dir = name.empty() ? nullptr : add(name, atEnd);
            added.push_back(dir != nullptr ? dir->full : "");
        }
        return added.empty() ? "" : atEnd ? added.front() : added.back();
    }

    void remove(const Node::Ptr& top) {
        kill(*top);
        top->state = Node::kNeverRead;
        std::erase(tops, Node::Ptr(top));
    }

    bool replace(const Strings& names) {
        tell(vpEventReplaceBegin, nullptr);
        const std::vector<Node::Ptr> before(tops.begin() + 1, tops.end());
        std::set<Node::Ptr> marked(before.begin(), before.end());
        bool all = true;
        for (const std::string& name : names) {
            Node* const known = findAdded(name);
            const Node::Ptr kept = known != nullptr ? known->shared_from_this() : nullptr;
            if (marked.erase(kept) != 0) {
                std::erase(tops, kept);
                tops.push_back(kept);
            } else if (!name.empty()) {
                all &= add(name, true) != nullptr || known != nullptr;
            }
        }
        for (const Node::Ptr& top : before) {
            if (marked.count(top) != 0) remove(top);
        }
        for (auto& search : open_) {
            if (search) search->placesChanged = true;
        }
        tell(vpEventReplaceEnd, nullptr);
        return all;
    }

    // The library's own change of the process's directory has come before.
    std::string setCurrent(const std::string& name) {
        note("chdir " + name);
        if (!isAccessible(name)) {
            note("chdir " + host.cwd);
            return "Name is nonexistent or not a directory";
        }
        tell(vpEventCWDChangeBegin, nullptr);
        const Node::Ptr made = makeTop(name), old = std::exchange(tops[0], made);
        kill(*old);
        read(*made, old->underRoot);
        tell(vpEventDirAdded, made.get());
        const std::vector<Node::Ptr> before = tops;
        for (const Node::Ptr& top : before) {
            if (top->full[0] != '/') revalidate(*top);
        }
        tell(vpEventCWDChangeEnd, nullptr);
        return "";
    }

    void hide(bool isHidden) {
        const bool wasHidden = std::exchange(hidesCurrent, isHidden);
        if (isHidden) clear(*tops[0]);
        if (isHidden || wasHidden) tops[0]->state = Node::kChanged;
    }

    void listen(const std::string& who) {
        const auto free = std::find(listeners.begin(), listeners.end(), "-");
        interests_[who] = static_cast<size_t>(free - listeners.begin());
        listeners.resize(std::max(listeners.size(), interests_[who] + 1));
        listeners[interests_[who]] = who == "A" ? "" : who;
    }

    // A special directory that is not known changes what holds it.
    bool mark(const std::string& name) {
        if (Node* const node = find(name)) return markChanged(*node);
        const size_t slash = name.rfind('/');
        const std::string leaf = LeafOf(name);
        if (slash == name.npos || !(IsMarked(leaf) || Same(leaf, "private", caseSensitive)))
            return false;
        return mark(name.substr(0, slash));
    }

    std::string listed() const {
        std::string names;
        std::istringstream lines(calls);
        for (std::string line; std::getline(lines, line, '|');) {
            if (line.rfind("list ", 0) == 0) names += (names.empty() ? "" : " ") + line.substr(5);
        }
        return names;
    }

    std::string kindOf(const Node* node) const {
        const char* const kinds[] = {"", "3", "4", "5", "", "2"};
        return node == nullptr ? "0" : node == tops[0].get() ? "1" : kinds[node->kind];
    }

    void keep(const std::string& handle, Node* node) {
        kept_[handle] = node != nullptr ? node->shared_from_this() : nullptr;
    }
    std::string kept(const std::string& handle) const {
        const auto found = kept_.find(handle);
        if (found == kept_.end()) return "dead -";
        const Node::Ptr node = found->second;
        const bool isAlive = node != nullptr ? node->alive : !tops.empty();
        return (isAlive ? "alive " : "dead ") + (node != nullptr ? node->full : "");
    }

    // "walk methods", "walk class NAME", "walk classes DIR", "walk packages DIR"
    std::string walk(const std::string& what, const std::string& name) const {
        std::vector<Node::Ptr> found;
        const bool inOne = what == "classes" || what == "packages";
        const Node* const dir = inOne ? find(name) : nullptr;
        if (dir != nullptr) found = dir->kids[what == "classes" ? Node::kClass : Node::kPackage];
        for (const Node::Ptr& top : inOne ? std::vector<Node::Ptr>() : tops) {
            std::vector<Node::Ptr> classes = top->kids[Node::kClass];
            if (what == "class") std::reverse(classes.begin(), classes.end());  // latest first
            for (const Node::Ptr& each : classes) {
                if (what == "methods" || Same(each->base, name, caseSensitive))
                    found.push_back(each);
            }
        }
        std::string names;
        for (const Node::Ptr& each : found) names += (names.empty() ? "" : " ") + each->full;
        return names;
    }

    std::vector<Node::Ptr> known_;  // every directory that was ever added
    std::optional<std::string> root_;
    std::map<std::string, size_t> interests_;
    std::map<std::string, Node::Ptr> kept_;
    std::optional<OpenSearch> open_[4];  // the open one, and those put aside
};
