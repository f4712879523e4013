// First-match look-ups, beside the flat index and a standard map that answer the same questions.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <vpath/search.h>

#include "measures.h"
#include "support/flat_index.h"
#include "support/generated_tree.h"
#include "support/host_calls.h"
#include "support/map_index.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

const char* theExtensions[] = {"v", "p", nullptr};

constexpr size_t kQuestions = 65536;
constexpr size_t kQuestionsARound = 8192;

struct Question {
    const char* name;
    vpDir from;               // visible look-ups
    uint32_t fromNumber = 0;  // the same directory in the flat index
};

// What stands between a name and its file in any index whose files can go, and whose directories
// can change places: an item for the file and a directory that it points at, each a line of memory.
class ItemsBetween {
  public:
    ItemsBetween(size_t files, size_t directories) : items_(files), directories_(directories) {
        std::mt19937_64 random(7);
        for (Item& item : items_) item.directory = random() % directories;
    }
    // Reads both for the file that was found under a full name.
    size_t touch(const char* fullName) const {
        uint64_t text = 0;
        std::memcpy(&text, fullName + std::strlen(fullName) - sizeof text, sizeof text);
        const size_t place = (text * 0x9E3779B97F4A7C15U >> 20) % items_.size();
        return directories_[items_[place].directory].order;
    }

  private:
    struct alignas(64) Item {
        size_t directory;
    };
    struct alignas(64) Directory {
        size_t order = 0;
    };
    std::vector<Item> items_;
    std::vector<Directory> directories_;
};

// One tree behind the library and both indexes.
struct LookupCase {
    explicit LookupCase(size_t directories)
        : tree(TreeShape{.root = "lookup" + std::to_string(directories),
                         .directories = directories,
                         .privateDirectories = true}),
          flat(tree.baseNames.size()),
          flatPrivate(directories),
          between(tree.fileCount(), directories) {
        TreeHost::add(tree);
        path = NewPath(TreeHost::functions());
        vpAddDirsString(path, tree.pathString().c_str(), vpAddAtEnd);
        for (const auto& directory : tree.directories) {
            const uint32_t number = flat.addDirectory(directory.name);
            flatPrivate.addDirectory(directory.name + "/private");
            const size_t mapNumber = map.addDirectory(directory.name);
            for (const std::string& entry : directory.entries) {
                if (entry == "private") continue;
                flat.add(number, entry);
                map.add(mapNumber, entry);
            }
            for (const std::string& file : directory.privateFiles) {
                flatPrivate.add(number, file, number);
            }
        }
    }

    GeneratedTree tree;
    vpPath path;
    FlatIndex flat;
    FlatIndex flatPrivate;  // files of private directories, each under its directory's number
    MapIndex map;
    ItemsBetween between;
};

// Kept: a tree of 10,000 directories takes longer to make than to measure.
std::shared_ptr<LookupCase> CaseOf(size_t directories) {
    static std::map<size_t, std::shared_ptr<LookupCase>> cases;
    std::shared_ptr<LookupCase>& found = cases[directories];
    if (found == nullptr) found = std::make_shared<LookupCase>(directories);
    return found;
}

enum class Ask {
    kHit,
    kMiss,
    kEverywhere,   // names that every directory holds
    kPrivate,      // from a directory whose private directory holds the name
    kPastPrivate,  // from a directory whose private directory does not
};

// From the directories with a private directory, which are every tenth.
Question FromPrivate(LookupCase& lookup, std::mt19937_64& random, bool held,
                     std::vector<std::string>& texts) {
    const size_t tenths = (lookup.tree.directories.size() + 9) / 10;
    const size_t number = random() % tenths * 10;
    const GeneratedTree::Directory& directory = lookup.tree.directories[number];
    const vpDir from = vpFindDirFullName(lookup.path, directory.name.c_str());
    const auto flatNumber = static_cast<uint32_t>(number + 1);
    if (!held) {
        const auto& names = lookup.tree.baseNames;
        return {names[random() % names.size()].c_str(), from, flatNumber};
    }
    const std::string& file = directory.privateFiles[random() % directory.privateFiles.size()];
    texts.push_back(file.substr(0, file.rfind('.')));
    return {texts.back().c_str(), from, flatNumber};
}

struct Questions {
    std::vector<Question> questions;
    std::vector<std::string> texts;
};

std::shared_ptr<Questions> Choose(LookupCase& lookup, Ask ask) {
    auto chosen = std::make_shared<Questions>();
    chosen->texts.reserve(kQuestions);  // questions point into it
    std::mt19937_64 random(5);
    const auto any = [&random](const auto& names) { return names[random() % std::size(names)]; };
    for (size_t i = 0; i < kQuestions; ++i) {
        if (ask == Ask::kPrivate || ask == Ask::kPastPrivate) {
            chosen->questions.push_back(
                FromPrivate(lookup, random, ask == Ask::kPrivate, chosen->texts));
            continue;
        }
        // A copy, so that no name lies beside the file that it finds.
        chosen->texts.push_back(ask == Ask::kEverywhere ? any(kCommonNames)
                                : ask == Ask::kMiss     ? any(lookup.tree.absentNames)
                                                        : any(lookup.tree.baseNames));
        chosen->questions.push_back({chosen->texts.back().c_str(), vpDir()});
    }
    return chosen;
}

// Asks the next 8,192 questions of the list; nanoseconds for each.
template <class Find>
std::function<double()> Asking(std::shared_ptr<LookupCase> lookup,
                               std::shared_ptr<Questions> questions, Find find) {
    return [lookup, questions, find, next = size_t{0}]() mutable {
        char fullName[8192];
        const Question* const first = questions->questions.data() + next;
        next = (next + kQuestionsARound) % kQuestions;
        return Nanoseconds([&] {
                   for (const Question* q = first; q != first + kQuestionsARound; ++q) {
                       benchmark::DoNotOptimize(find(*lookup, *q, fullName));
                       benchmark::ClobberMemory();
                   }
               }) /
               static_cast<double>(kQuestionsARound);
    };
}

// Every contender has to give the same answer to every question.
template <class Find, class Other>
void Agree(LookupCase& lookup, const Questions& questions, Find find, Other other, bool finds) {
    char one[8192], two[8192];
    for (const Question& question : questions.questions) {
        *one = *two = '\0';
        const unsigned int found = find(lookup, question, one);
        if (found != other(lookup, question, two) || std::string(one) != two ||
            (found != 0) != finds) {
            throw std::runtime_error(std::string("different answers for ") + question.name +
                                     ": \"" + one + "\", \"" + two + "\"");
        }
    }
}

unsigned int FindInMap(LookupCase& lookup, const Question& question, char* fullName) {
    return lookup.map.find(question.name, theExtensions, fullName);
}

unsigned int FindInFlat(LookupCase& lookup, const Question& question, char* fullName) {
    if (question.fromNumber != 0) {
        const unsigned int found =
            lookup.flatPrivate.find(question.name, theExtensions, fullName, question.fromNumber);
        if (found != 0) return found;
    }
    return lookup.flat.find(question.name, theExtensions, fullName);
}

unsigned int FindInFlatByItem(LookupCase& lookup, const Question& question, char* fullName) {
    const unsigned int found = FindInFlat(lookup, question, fullName);
    if (found != 0) benchmark::DoNotOptimize(lookup.between.touch(fullName));
    return found;
}

template <vpReadCheck kCheck>
unsigned int FindInPath(LookupCase& lookup, const Question& question, char* fullName) {
    vpDir directory;
    if (question.fromNumber != 0) {
        return vpFindFirstFileVisibleToDir(question.from, question.name, theExtensions, kCheck,
                                           &directory, fullName);
    }
    return vpFindFirstFileInAll(lookup.path, question.name, theExtensions, kCheck, &directory,
                                fullName);
}

template <unsigned int (*kFind)(LookupCase&, const Question&, char*)>
unsigned int WithAccess(LookupCase& lookup, const Question& question, char* fullName) {
    const unsigned int found = kFind(lookup, question, fullName);
    if (found != 0) benchmark::DoNotOptimize(access(fullName, R_OK));
    return found;
}

std::vector<Contender> Unverified(size_t directories, Ask ask) {
    const auto lookup = CaseOf(directories);
    const auto questions = Choose(*lookup, ask);
    const auto library = FindInPath<vpReadCheckSkip>;
    TreeHost::readCost = TreeHost::ReadCost::kNothing;
    Agree(*lookup, *questions, library, FindInFlat, ask != Ask::kMiss);
    std::vector<Contender> contenders = {
        {"library", Asking(lookup, questions, library)},
        {"flat", Asking(lookup, questions, FindInFlat)},
    };
    if (ask == Ask::kHit || ask == Ask::kMiss || ask == Ask::kEverywhere) {
        Agree(*lookup, *questions, library, FindInMap, ask != Ask::kMiss);
        contenders.push_back({"map", Asking(lookup, questions, FindInMap)});
    }
    if (ask == Ask::kEverywhere && directories > 10) {
        const auto few = CaseOf(10);
        contenders.push_back({"at 10", Asking(few, Choose(*few, ask), library)});
    }
    return contenders;
}

// Floors are measured apart: two contenders on one index keep it in the caches for each other.
std::vector<Contender> ByItem(size_t directories) {
    const auto lookup = CaseOf(directories);
    const auto questions = Choose(*lookup, Ask::kHit);
    return {{"library", Asking(lookup, questions, FindInPath<vpReadCheckSkip>)},
            {"flat by item", Asking(lookup, questions, FindInFlatByItem)}};
}

std::vector<Contender> AccessOutside(size_t directories) {
    const auto lookup = CaseOf(directories);
    const auto questions = Choose(*lookup, Ask::kHit);
    TreeHost::readCost = TreeHost::ReadCost::kAccess;
    return {{"library", Asking(lookup, questions, FindInPath<vpReadCheckVerify>)},
            {"hit+access", Asking(lookup, questions, WithAccess<FindInPath<vpReadCheckSkip>>)}};
}

// The host's answer to the read check costs nothing but the call, or one access(2).
std::vector<Contender> Verified(size_t directories, TreeHost::ReadCost cost) {
    const auto lookup = CaseOf(directories);
    const auto questions = Choose(*lookup, Ask::kHit);
    const auto library = FindInPath<vpReadCheckVerify>;
    TreeHost::readCost = cost;
    Agree(*lookup, *questions, library, FindInFlat, true);
    const bool asks = cost == TreeHost::ReadCost::kAccess;
    return {
        {"library", Asking(lookup, questions, library)},
        asks ? Contender{"flat+access", Asking(lookup, questions, WithAccess<FindInFlat>)}
             : Contender{"flat", Asking(lookup, questions, FindInFlat)},
        asks ? Contender{"map+access", Asking(lookup, questions, WithAccess<FindInMap>)}
             : Contender{"map", Asking(lookup, questions, FindInMap)},
    };
}

}  // namespace

void RegisterLookupMeasures() {
    struct Kind {
        const char* name;
        Ask ask;
    };
    constexpr Kind kKinds[] = {{"hit", Ask::kHit},
                               {"miss", Ask::kMiss},
                               {"everywhere", Ask::kEverywhere},
                               {"visible_private", Ask::kPrivate},
                               {"visible_path", Ask::kPastPrivate}};
    for (const size_t directories : {10U, 100U, 1000U, 10000U}) {
        const std::string size = std::string("/").append(std::to_string(directories));
        for (const Kind& kind : kKinds) {
            RegisterMeasure({std::string("lookup/").append(kind.name) + size, "ns",
                             [=] { return Unverified(directories, kind.ask); }});
        }
        RegisterMeasure({"lookup/hit_by_item" + size, "ns", [=] { return ByItem(directories); }});
        RegisterMeasure(
            {"lookup/hit_access_outside" + size, "ns", [=] { return AccessOutside(directories); }});
        RegisterMeasure({"lookup/hit_verified" + size, "ns",
                         [=] { return Verified(directories, TreeHost::ReadCost::kNothing); }});
        RegisterMeasure({"lookup/hit_verified_access" + size, "ns",
                         [=] { return Verified(directories, TreeHost::ReadCost::kAccess); }});
    }
}
