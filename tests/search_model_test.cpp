// Searches beside a model of them: flat lists made from the fake host's tree, walked in full for
// every question. Trees, paths and questions are random, from seeds that a failure prints.
#include <strings.h>

#include <algorithm>
#include <optional>
#include <random>

#include "support/path_test.h"

namespace {

using Strings = std::vector<std::string>;

bool Same(const std::string& a, const std::string& b, bool caseSensitive) {
    return caseSensitive ? a == b : strcasecmp(a.c_str(), b.c_str()) == 0;
}

std::string Leaf(const std::string& name) { return name.substr(name.rfind('/') + 1); }

// By category, the place among what one directory holds: files, packages, classes, private, plain.
constexpr int kRank[] = {0, 0, 0, 4, 3, 1, 2, 4, 1, 2, 9};

struct Item {
    int category;
    std::string holder, leaf, base;  // holder's full name, name on disk, name as searches see it
    std::optional<std::string> extension;
    int in, depth;  // category of the holder, steps from there to the directory of the path
    long linked;    // later items are larger
    std::string full() const { return category == 10 ? leaf : holder + "/" + leaf; }
};

struct Top {  // a directory of the path
    std::string name;
    bool frozen;
    std::vector<Item> items;  // itself, and the others in the order in which they came to be
};

struct Question {
    char kind;
    const Top* top;  // where to search from, null for the null directory
    std::string from, name;
    Strings exts;
    bool verify, caseSensitive;
};

class Model {
  public:
    explicit Model(FakeHost& fake) : host(fake) {}

    FakeHost& host;
    bool caseSensitive = true, frozen = false, hideCwd = false;
    std::vector<Top> path;  // the current directory first

    Top open(const std::string& name) {
        Top top{name, frozen && !path.empty(), {}};  // the first has no setting to take over
        reread(top);
        return top;
    }

    void reread(Top& top) {
        std::vector<Item> old;
        old.swap(top.items);
        top.items.push_back({10, "", top.name, Leaf(top.name), {}, 10, 0, 0});
        read(top, old, top.items[0], -1);
        std::sort(top.items.begin(), top.items.end(),
                  [](const Item& a, const Item& b) { return a.linked < b.linked; });
    }

    std::string answer(const Question& ask, Want want) const;

  private:
    long links_ = 0;

    void read(Top& top, const std::vector<Item>& old, const Item of, int depth) {
        const std::string dir = of.full();
        const bool inPath = of.category == 10, inPackage = kRank[of.category] == 1;
        Strings names = host.entries(dir);
        const std::string& cwd = path.empty() ? top.name : path[0].name;
        if (hideCwd && Same(dir, cwd, caseSensitive)) names.clear();
        std::vector<Item> kept;  // special directories that were there before are read afterwards
        for (const std::string& name : names) {
            Item item{0, dir, name, name, {}, of.category, depth + 1, 0};
            if (!host.isDirectory(dir + "/" + name)) {
                item.category = inPath ? 0 : of.category == 4 ? 1 : 2;
                const size_t dot = name.rfind('.');
                item.base = name.substr(0, dot);
                if (dot != name.npos) item.extension = name.substr(dot + 1);
            } else if (name[0] == '@' || name[0] == '+') {
                item.category = (name[0] == '@' ? 6 : 5) + (inPath ? 0 : 3);
                item.base = name.substr(1);
            } else {
                item.category = Same(name, "private", false) ? 4 : 3;
                const size_t dot = name.rfind('.');
                if (dot != name.npos) item.extension = name.substr(dot);  // with its dot
            }
            const int rank = kRank[item.category];
            if (rank != 0 && !inPath && !(inPackage && rank != 4) &&
                !(kRank[of.category] == 2 && rank == 3)) {
                continue;
            }
            // The one private directory is known by its kind, whatever its spelling has become.
            const auto known = std::find_if(old.begin(), old.end(), [&](const Item& each) {
                return each.category == item.category && each.holder == dir &&
                       (rank == 3 || each.leaf == name);
            });
            if (known == old.end()) item.linked = ++links_;
            top.items.push_back(known == old.end() ? item : *known);
            if (rank == 0 || rank == 4) continue;
            if (known == old.end()) read(top, old, item, depth + 1);
            if (known != old.end()) kept.push_back(*known);
        }
        std::sort(kept.begin(), kept.end(), [](const Item& a, const Item& b) {
            return std::pair(kRank[a.category], a.linked) < std::pair(kRank[b.category], b.linked);
        });
        for (const Item& item : kept) read(top, old, item, depth + 1);
    }
};

// Which extension of the question accepts `found`, from 1; 0 for none.
unsigned Accepts(const Question& ask, const std::optional<std::string>& given,
                 const std::optional<std::string>& found) {
    if (given && !(found && Same(*found, *given, ask.caseSensitive))) return 0;
    for (unsigned at = 0; at < ask.exts.size(); ++at) {
        const std::string wanted = ask.exts[at].substr(ask.exts[at][0] == '.' ? 1 : 0);
        const bool byName = wanted.empty() && given;
        if (byName || Same(wanted, found.value_or(""), ask.caseSensitive)) return at + 1;
    }
    return ask.exts.empty() ? 0xFFFFFFFF : 0;
}

bool LiesIn(const std::string& full, const std::string& part, bool caseSensitive) {
    const auto isMark = [](char c) { return c == '@' || c == '+'; };
    size_t at = full.rfind('/'), left = part.size();
    if (at == full.npos) return false;
    while (left > 0) {
        if (at == 0) return false;
        if (Same(full.substr(at - 1, 1), part.substr(left - 1, 1), caseSensitive)) {
            --left;
        } else if (!isMark(full[at - 1]) || isMark(part[left - 1])) {
            return false;
        }
        --at;
    }
    if (at > 0 && isMark(full[at - 1])) --at;
    return at == 0 || full[at - 1] == '/';
}

std::string Model::answer(const Question& ask, Want want) const {
    std::string name = ask.name, dirPart;
    std::optional<std::string> given;
    const size_t dot = name.rfind('.');
    if (dot != name.npos && dot > 0 && name.find('/', dot) == name.npos) {
        const bool empty = dot + 1 == name.size();
        if (!empty && want != kDirs) given = name.substr(dot + 1);
        if (empty || want != kDirs) name.erase(dot);  // else it is part of the name
    }
    const auto separators = std::count(name.begin() + 1, name.end(), '/');
    std::string base = separators > 0 ? Leaf(name) : name;
    if (separators > 0) dirPart = name.substr(0, name.rfind('/'));
    const char mark = base[0] == '@' || base[0] == '+' ? base[0] : '\0';
    if (mark != '\0') base.erase(0, 1);

    std::string hits;
    const auto consider = [&](const Top& top, const Item& item, bool scoped) {
        const bool isFile = item.category <= 2;
        const std::string full = item.full();
        const size_t at = full.size() - base.size() - 1;  // where a mark would stand
        unsigned result = want == kDirs ? 1 : 0xFFFFFFFF;
        if (isFile) result = Accepts(ask, given, item.extension);
        if (result == 0 || !Same(item.base, base, ask.caseSensitive) ||
            (want == kSubdirectories && isFile) || (scoped && item.depth > separators) ||
            (isFile && ask.verify && !top.frozen && host.denied.count(full) != 0) ||
            (mark != '\0' && (at < 1 || at >= full.size() || full[at] != mark)) ||
            (!dirPart.empty() && !LiesIn(full, dirPart, ask.caseSensitive))) {
            return;
        }
        if (!hits.empty()) hits += ' ';
        hits.append(result == 0xFFFFFFFF ? "*" : std::to_string(result)).append(":").append(full);
    };

    const char scope = ask.kind == 'V' && ask.name.find('/') != name.npos ? 'A' : ask.kind;
    const std::vector<int> admitted =
        std::vector<std::vector<int>>{{0, 1, 2}, {0, 3}, {3}, {4, 5, 6, 8, 9, 10}}[want];
    const auto walkPath = [&](const std::vector<int>& categories) {
        for (const int category : categories) {
            const bool wanted = std::count(admitted.begin(), admitted.end(), category) != 0;
            for (size_t top = 0; wanted && top < path.size(); ++top) {
                const std::vector<Item>& items = path[top].items;
                for (auto item = items.rbegin(); item != items.rend(); ++item) {
                    const bool inCwd = top == 0 && item->depth == 0;
                    if (item->category != category || (scope == 'O' && inCwd)) continue;
                    consider(path[top], *item, true);
                }
            }
        }
    };
    const auto walkDirectory = [&](const std::string& directory) {
        for (const int rank : {0, 1, 2, 3, 4}) {
            const bool wanted = want == kDirs ? rank >= 1 && rank <= 3
                                              : rank == 4 || (rank == 0 && want != kSubdirectories);
            for (const Item& item : ask.top->items) {
                if (!wanted || item.holder != directory || kRank[item.category] != rank) continue;
                if (want != kFiles || rank == 0) consider(*ask.top, item, false);
            }
        }
    };
    if (scope == 'D' && ask.top != nullptr) walkDirectory(ask.from);
    for (size_t at = 0; (scope == 'P' || scope == 'V') && ask.top && at < ask.top->items.size();
         ++at) {
        const Item& item = ask.top->items[at];
        if (item.category == 4 && item.holder == ask.from) walkDirectory(item.full());
    }
    for (size_t top = 0; scope == 'V' && want == kFiles && top < path.size(); ++top) {
        const std::vector<Item>& items = path[top].items;
        for (auto item = items.rbegin(); item != items.rend(); ++item) {
            const bool isConstructor = item->category == 2 && kRank[item->in] == 2 &&
                                       Same(Leaf(item->holder).substr(1), base, ask.caseSensitive);
            if (isConstructor) consider(path[top], *item, false);
        }
    }
    if (scope == 'V') walkPath({0, 10, 3, 5, 6});
    if (scope == 'M') walkPath({2, 6});
    if (scope == 'A' || scope == 'O') walkPath({0, 2, 1, 3, 5, 6, 8, 9, 10, 4});
    return hits;
}

class SearchModel : public PathTest, public testing::WithParamInterface<int> {
  protected:
    size_t below(size_t count) {
        return std::uniform_int_distribution<size_t>(0, count - 1)(random);
    }
    const std::string& one(const Strings& of) { return of[below(of.size())]; }

    void grow(const std::string& parent, int depth) {
        for (size_t count = below(7); count > 0; --count) {
            const bool isDirectory = below(2) == 0;
            std::string name =
                parent + "/" + one({"", "", "", "@", "@", "+", "+", "@+"}) + one(names);
            if (!isDirectory) name += one({"", ".v", ".v", ".p", ".V", ".", ".longer", ".@v"});
            // One private directory is all that a directory has.
            const bool isPrivate = Same(Leaf(name), "private", false);
            const bool second = isPrivate && (host.isDirectory(parent + "/private") ||
                                              host.isDirectory(parent + "/Private"));
            if (!host.exists(name) && !second) host.add({name + (isDirectory ? "/" : "")});
            if (!isDirectory && below(6) == 0) host.denied.insert(name);
            if (host.isDirectory(name) && depth < 4) grow(name, depth + 1);
        }
    }

    void change(Model& model);
    void compare(const Model& model);

    std::mt19937 random;
    const Strings names = {"a", "a", "A", "b", "a.b", "private", "Private"};
    const Strings roots = {"/w/a", "/w/b", "/v/A", "/v/a.b", "/w/a/b", "rel", "/v/c1", "/gone"};
};

void SearchModel::change(Model& model) {
    std::vector<Top>& tops = model.path;
    const std::string root = one(roots);
    const auto known = std::find_if(tops.begin() + 1, tops.end(),
                                    [&](const Top& top) { return top.name == root; });
    switch (below(10)) {
        case 0: {
            const bool atEnd = below(2) == 0;
            step((atEnd ? "add " : "first ") + root);
            if (!host.isDirectory(root) || known != tops.end()) break;
            tops.insert(atEnd ? tops.end() : tops.begin() + 1, model.open(root));
            break;
        }
        case 1:
            if (known == tops.end()) break;
            step("remove " + root);
            tops.erase(known);
            break;
        case 2:
        case 3: {
            Strings order;
            for (size_t at = tops.size(); --at >= 1;) order.push_back(tops[at].name);  // reversed
            if (order.empty() || below(2) == 0) order = roots;
            if (order == roots) std::shuffle(order.begin(), order.end(), random);
            order.resize(1 + below(order.size()));
            std::string list;
            std::vector<Top> now = {tops[0]};
            for (const std::string& name : order) {
                list += name + (below(2) == 0 ? ":" : ";");
                const auto old = std::find_if(tops.begin() + 1, tops.end(),
                                              [&](const Top& top) { return top.name == name; });
                if (old != tops.end()) {
                    now.push_back(*old);
                } else if (host.isDirectory(name)) {
                    now.push_back(model.open(name));
                }
            }
            step("replace " + list);
            tops = now;
            break;
        }
        case 4:
            tops[0].name = one({"/cwd", "/w/b", "/c1", "/v"});
            EXPECT_EQ(step("cwd " + tops[0].name), "");
            tops[0] = model.open(tops[0].name);
            for (Top& top : tops) {
                if (top.name[0] != '/') model.reread(top);
            }
            break;
        case 5:
            model.hideCwd = !model.hideCwd;
            step(model.hideCwd ? "hide 1" : "hide 0");
            if (model.hideCwd) tops[0].items.resize(1);
            break;
        default:  // the disk changes, and everything is read again
            for (const std::string& entry : host.entries(root)) {
                if (below(3) == 0) host.remove(root + "/" + entry);
            }
            if (host.isDirectory(root)) grow(root, 1 + static_cast<int>(below(3)));
            step("refreshall 3");
            for (Top& top : tops) {
                top.frozen = model.frozen;
                model.reread(top);
            }
    }
    CheckTable(path);
}

void SearchModel::compare(const Model& model) {
    Question ask{"AAAVVVOMPD"[below(10)], nullptr, "", "", {}, below(2) == 0, false};
    if (below(5) != 0) {
        ask.top = &model.path[below(model.path.size())];
        const Item& at = ask.top->items[below(ask.top->items.size())];
        ask.from = kRank[at.category] % 4 == 0 ? ask.top->name : at.full();
        // Where one name stands for two directories the other one may be found.
        if (NameOf(dir(ask.from)) != ask.from) return;
        for (const Top& top : model.path) {
            if (&top != &model.path[0] && top.name == model.path[0].name) return;
        }
    }
    for (size_t parts = below(3) == 0 ? 1 + below(2) : 0; parts > 0; --parts) {
        ask.name += one({"private/", "@a/", "a/", "a/", "A/", "w/a/", "/w/", "rel/", "@a.b/"});
    }
    ask.name += one({"", "", "", "@", "+"}) + one({"a", "a", "A", "b", "a.b", "private", "rel"}) +
                one({"", "", "", ".v", ".p", ".", ".b", ".@v"});
    std::string list;
    for (size_t count = below(4); count > 0; --count) {
        ask.exts.push_back(one({"v", ".p", ".", "V", "longer", "b", "@v"}));
        list += (list.empty() ? "" : ",") + ask.exts.back();
    }
    const size_t rule = below(5);
    ask.caseSensitive = rule == 0 || rule == 2 || (rule == 3 && model.caseSensitive);
    const std::string search = std::string(1, ask.kind) + ":" + ask.from + " " + ask.name + " " +
                               list + " cs" + std::to_string(rule) + (ask.verify ? " verify" : "");
    SCOPED_TRACE(search + ", path " + OnPath(path));
    EXPECT_EQ(step("files " + search), model.answer(ask, kFiles));
    EXPECT_EQ(step("any " + search), model.answer(ask, kUnspecified));
    EXPECT_EQ(step("subs " + search), model.answer(ask, kSubdirectories));
    EXPECT_EQ(step("dirs " + search), model.answer(ask, kDirs));
    if (rule == 3 && (ask.kind == 'A' || (ask.kind == 'V' && !ask.name.empty()))) {
        const std::string hits = model.answer(ask, kFiles);
        EXPECT_EQ(step("one " + search), hits.substr(0, hits.find(' '))) << "in one call";
    }
    // The same files by a random mix of bounded and unbounded calls.
    step("open " + search);
    const auto directory = [](const std::string& hit) {
        return hit.substr(hit.find(':') + 1, hit.rfind('/') - hit.find(':'));
    };
    std::string hits, last, hit = "0:";
    for (bool refused = false; !hit.empty();) {
        const bool bounded = below(2) == 0;
        hit = step(bounded ? "bounded" : "next");
        if (hit == "0:") {
            refused = true;
        } else if (!hit.empty()) {
            EXPECT_TRUE(!bounded || (!refused && directory(hit) == directory(last))) << hit;
            hits += (hits.empty() ? "" : " ") + hit;
            last = hit;
            refused = false;
        }
    }
    EXPECT_EQ(hits, model.answer(ask, kFiles));
}

TEST_P(SearchModel, AnswersAlike) {
    for (int seed = GetParam() * 250; seed < (GetParam() + 1) * 250 && !HasFailure(); ++seed) {
        random.seed(static_cast<unsigned>(seed));
        vpTerminate();
        host.reset();
        for (const std::string name : {"/cwd", "/cwd/rel", "/w/a", "/w/b", "/w/a/b", "/v/A",
                                       "/v/a.b", "/v/c1", "/c1", "/c1/rel"}) {
            if (!host.exists(name)) host.add({name + "/"});
            if (host.isDirectory(name)) grow(name, 0);
        }
        Model model(host);
        model.caseSensitive = below(2) == 0;
        model.frozen = below(4) == 0;
        path = vpCreatePathWithPreFrozen(0, "model", model.frozen ? "" : nullptr,
                                         model.caseSensitive ? vpCaseSensitive : vpCaseInsensitive,
                                         /*suppressChangeNotify=*/false);
        model.path.push_back(model.open("/cwd"));
        for (int round = 0; round < 50 && !HasFailure(); ++round) {
            if (round % 5 == 0) change(model);
            compare(model);
        }
        EXPECT_FALSE(HasFailure()) << "seed " << seed << "\n" << host.dump();
        forget();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchModel, testing::Range(0, 6));

}  // namespace
