#include "support/steps.h"

#include <algorithm>

namespace {

using Texts = std::vector<std::string>;

// What "$X" stands for: one of these. Those that are not here depend on what there is.
//
// Steps: 0 at first, 1 any later one; d the disk changes, t and its time with it, p the path
// changes, r refreshes, marks and freezing, s searches, o handles, walks and listeners, f a file
// becomes a directory, u a file becomes unreadable, x the case rule changes. Of a search: S all of
// it, k its kind, q the name, v extensions and readability, c the case rule, n what is asked of it.
// Pieces of names: P directory part, M mark, b base, e extension, N an entry, X a listed extension.
// Directories: R that may be added, C current ones, Z any; L path strings. A what a path is made
// with, B a listener, H a kept handle, T a type of refresh.
const std::map<char, Texts> kGrammar = {
    {'0',
     {"tree $R/", "tree $R/$N", "tree $R/$N", "tree $R/@a/$N", "tree $R/+b/$N", "tree $R/+b/@a/$N",
      "tree $R/private/$N", "tree $R/+b/private/$N"}},
    {'1', {"$d", "$d", "$d", "now $W", "$p", "$p", "$r", "$r", "$s", "$s", "$s", "$s", "$o"}},
    {'d',
     {"tree $E/$N ; $t", "tree $E/$N ; $t", "tree $E/$N", "rm $F ; $t", "rm $F ; $t", "rm $F",
      "rm $E ; tree $R/", "deny $F", "$f ; $t", "$u"}},
    {'t', {"time $E $w", "time $E $w", "time $E $w ; refreshall 1"}},
    {'p',
     {"add $R", "add $R", "add $Z", "first $R", "first $R", "list $L", "listfirst $L", "remove $D",
      "remove $D", "replace $L", "replace $L", "cwd $C", "hide 0", "hide 1", "$x", "prune"}},
    {'r',
     {"refreshall $T", "refreshall $T", "refreshall 1", "refreshall 1", "refresh $D $T",
      "refresh $D $T", "mark $D", "mark $D/@b", "markall", "unknown", "freeze $D", "freeze $D",
      "unfreeze $D"}},
    {'s',
     {"files $S", "files $S", "any $S", "subs $S", "dirs $S", "one A $q$v", "one V:$D $q$v",
      "open $S ; next $n", "open $S ; next 0", "swap $T", "bounded", "next 0", "next 0", "next 0",
      "next 0", "next $n"}},
    {'o',
     {"keep $H $D", "keep $H $D", "kept $H", "kept $H", "find $D", "find $D/@a", "frozen $D",
      "walk methods", "walk class $b", "walk classes $D", "walk packages $D", "listen $B",
      "unlisten $B"}},
    {'S', {"$k:$D $q$v$c", "$k:$D $q$v$c", "$k:$D $q$v$c", "F:$D/f.v $q$v", "$k:$D NULL$v"}},
    {'q', {"$b", "$b", "$b$e", "$M$b$e", "$P$M$b$e", "$P$P$b"}},
    {'v', {"", " verify", " $X", " $X,$X verify", " $X,$X,$X"}},
    {'c', {"", "", " cs0", " cs1", " cs2", " cs3", " cs4"}},
    {'X', {"v", ".p", ".", "V", "longer", "b", "@v"}},
    {'P', {"private/", "@a/", "a/", "a/", "A/", "w/a/", "/w/", "rel/", "+b/"}},
    {'N', {"$M$b/", "$M$b/", "$b$e", "$b$e", "$M$b$e"}},
    {'M', {"", "", "", "@", "@", "+", "+", "@+"}},
    {'b', {"a", "a", "A", "b", "a.b", "private", "Private"}},
    {'e', {"", ".v", ".v", ".p", ".V", ".", ".longer", ".@v"}},
    {'R',
     {"/w/a", "/w/b", "/v/A", "/v/a.b", "/w/a/b", "/v/c1", "rel", "/gone", "/t/toolbox/x",
      "/t/toolbox/y"}},
    {'C', {"/cwd", "/cwd", "/v", "/gone", "/w/b", "/v/c1"}},
    {'Z', {"$C", "$D"}},
    {'L', {"''", "$R:", "$R:$R;$R", ":$R::$R", "$O", "$O", "$O$R"}},
    {'k', {"A", "A", "V", "V", "V", "O", "M", "P", "D", "N", "W"}},
    {'x', {"sensitive 0", "sensitive 1"}},
    {'f', {"rm $F ; tree $F/"}},
    {'u', {"deny $F"}},
    {'A', {"- 0", "/t/toolbox 0", "/t/toolbox 1", "- 1", "/ 0", "/ 1"}},
    {'B', {"A", "B"}},
    {'H', {"I", "J", "K"}},
    {'T', {"0", "1", "2", "3", "4"}},
    {'n', {"0", "1", "2", "3"}},
};

}  // namespace

Steps::Steps(const FakeHost& host, std::function<size_t(size_t)> below,
             std::function<Texts()> directories)
    : host_(host), below_(std::move(below)), directories_(std::move(directories)) {
    if (below_(3) == 0) {
        // Entries of which nobody has told what they are. The current directory is never one of the
        // others too: one could not tell which of the two was asked about.
        if (below_(2) == 0) pending_.push_back("words 0");
        instead_['u'] = {"word $F 0"};
        instead_['C'] = {"/cwd", "/v"};
        instead_['Z'] = {"$R"};
    } else if (below_(3) == 0) {
        // No open searches: what they ask a cache about, nobody hears.
        instead_['s'] = {"files $S", "files $S", "any $S", "subs $S", "dirs $S", "one V:$D $q$v"};
        instead_['x'] = {"cachewrite", "cacheload", "cacheload", "cacherevert"};
        instead_['p'] = kGrammar.at('p');
        instead_['p'].insert(instead_['p'].end(), 4, "$x");
        instead_['A'] = {"/t/toolbox 0"};
    }
    for (size_t count = below_(40); count > 0; --count) pending_.push_back(expand("$0"));
    pending_.push_back("path - " + expand("$A"));
    for (size_t count = below_(4); count > 0; --count) pending_.push_back(expand("add $R"));
}

std::string Steps::next() {
    while (pending_.empty()) {
        const std::string commands = expand("$1") + " ; ";
        for (size_t at = 0; at < commands.size(); at = commands.find(" ; ", at) + 3)
            pending_.push_back(commands.substr(at, commands.find(" ; ", at) - at));
    }
    std::string command = pending_.front();
    pending_.pop_front();
    return command;
}

bool Steps::IsPossible(const FakeHost& host, bool hasPath, const std::string& command) {
    const std::string op = command.substr(0, command.find(' '));
    const std::string rest = command.substr(std::min(op.size() + 1, command.size()));
    const std::string name = rest.substr(0, rest.find(' '));
    if (op == "path") return !hasPath;
    if (op == "rm" || op == "time" || op == "word") return host.exists(name);
    if (op == "words" || op == "now" || op == "deny") return true;
    if (op != "tree") return hasPath;
    for (size_t at = name.find('/', 1); at < name.size() - 1; at = name.find('/', at + 1)) {
        const std::string above = name.substr(0, at);
        if (host.exists(above) && !host.isDirectory(above)) return false;
    }
    return true;
}

std::string Steps::expand(const std::string& text) {
    std::string expanded;
    for (size_t at = 0; at < text.size(); ++at)
        expanded += text[at] == '$' ? symbol(text[++at]) : std::string(1, text[at]);
    return expanded;
}

std::string Steps::symbol(char name) {
    const Texts known = name == 'D' || name == 'O' ? directories_() : Texts();
    switch (name) {
        case 'D':  // a directory that is known
            return known.empty() || below_(12) == 0 ? expand("$R") : one(known);
        case 'O': {  // what is on the path, or most of it, the other way round
            std::string list;
            for (auto each = known.rbegin(); each != known.rend(); ++each) {
                const std::string leaf = each->substr(each->rfind('/') + 1);
                const bool isSpecial =
                    leaf[0] == '@' || leaf[0] == '+' || leaf == "private" || leaf == "Private";
                if (!isSpecial && *each != known.front() && below_(4) != 0) list += *each + ":";
            }
            return list + ":";
        }
        case 'E':
            return onDisk(true);
        case 'F':
            return onDisk(false);
        case 'w':
            return std::to_string(host_.now);
        case 'W':
            return std::to_string(host_.now + 1 + static_cast<long>(below_(3)));
        default:
            return expand(one(instead_.count(name) != 0 ? instead_[name] : kGrammar.at(name)));
    }
}

// A directory that is there, or something in one.
std::string Steps::onDisk(bool isDirectory) {
    std::string at = below_(8) == 0 ? "/cwd" : expand("$R");
    while (true) {
        const Texts entries = host_.entries(at);
        if (entries.empty()) return at;
        std::string entry = at + "/" + one(entries);
        if (!isDirectory && below_(3) == 0) return entry;
        if (!host_.isDirectory(entry) || below_(3) == 0) return isDirectory ? at : entry;
        at = entry;
    }
}
