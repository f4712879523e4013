// The toolbox cache: writing its file, reading it, loading a path from it, look-ups in it.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "measures.h"
#include "support/generated_tree.h"
#include "support/host_calls.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

// One tree, and its cache file in a folder that goes with it.
class CacheCase {
  public:
    explicit CacheCase(size_t directories)
        : tree(TreeShape{.root = "cache" + std::to_string(directories),
                         .directories = directories,
                         .privateDirectories = true}),
          list(tree.pathString()),
          root("/opt/cache" + std::to_string(directories)) {
        TreeHost::add(tree);
        char folder[] = "/tmp/vpath_bench.XXXXXX";
        if (mkdtemp(folder) == nullptr) throw std::runtime_error("no folder for the cache file");
        folder_ = folder;
        file = folder_ + "/cache";
        path = newPath();
        load(path);
        if (!vpWritePathToCacheFile(path, file.c_str())) throw std::runtime_error("not written");
        std::ifstream text(file);
        bytes.assign(std::istreambuf_iterator<char>(text), {});
        const auto lines = static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
        const size_t elements = directories + (directories + 9) / 10;
        if (lines != tree.fileCount() + 2 * elements + 2) throw std::runtime_error("lines missing");
    }
    ~CacheCase() {
        vpRemovePath(path);
        std::filesystem::remove_all(folder_);
    }
    CacheCase(const CacheCase&) = delete;
    CacheCase& operator=(const CacheCase&) = delete;

    // A path whose directories are read frozen.
    vpPath newPath() const {
        static int number = 0;
        Install(TreeHost::functions());
        return vpCreatePathWithPreFrozen(0, ("cache" + std::to_string(++number)).c_str(),
                                         (root + "/toolbox").c_str(), vpCaseDefault, false);
    }
    void load(const vpPath& into) const { vpAddDirsString(into, list.c_str(), vpAddAtEnd); }
    void use(const vpPath& by) const {
        vpUseToolboxCache(by, file.c_str(), root.c_str(), false);
        if (!vpInToolboxCacheMode()) throw std::runtime_error("the cache was not loaded");
    }
    double perFile(double nanoseconds) const {
        return nanoseconds / static_cast<double>(tree.fileCount());
    }

    GeneratedTree tree;
    std::string list;
    std::string root;
    std::string file;
    std::string bytes;  // of the file
    vpPath path;        // read from the host

  private:
    std::string folder_;
};

std::vector<Contender> Read(size_t directories) {
    const auto of = std::make_shared<CacheCase>(directories);
    return {{"library",
             [of] {
                 const double time = Nanoseconds([&] { of->use(of->path); });
                 vpRevertFromToolboxCache(of->path);
                 return of->perFile(time);
             }},
            {"fgets", [of] {
                 return of->perFile(Nanoseconds([&] {
                     char line[4096];
                     FILE* const stream = std::fopen(of->file.c_str(), "r");
                     while (std::fgets(line, sizeof line - 1, stream) != nullptr) {
                         benchmark::DoNotOptimize(line[0]);
                     }
                     std::fclose(stream);
                 }));
             }}};
}

// The names of a tree, each distinct one in a block of its own made when it came first, and the
// lines for them put together and written.
class NameLines {
  public:
    explicit NameLines(const GeneratedTree& tree) {
        std::unordered_map<std::string, const std::string*> known;
        for (const GeneratedTree::Directory& directory : tree.directories) {
            for (const std::string& entry : directory.entries) {
                const std::string*& name = known[entry];
                if (name == nullptr) {
                    blocks_.push_back(std::make_unique<std::string>(entry));
                    name = blocks_.back().get();
                }
                names_.push_back(name);
            }
        }
    }
    void write(const std::string& fileName) const {
        std::string text;
        for (const std::string* const name : names_) {
            text.append("  <F name=\"").append(*name).append("\"/>\n");
        }
        std::ofstream(fileName) << text;
    }

  private:
    std::vector<std::unique_ptr<std::string>> blocks_;
    std::vector<const std::string*> names_;  // of the files in order
};

std::vector<Contender> Write(size_t directories) {
    const auto of = std::make_shared<CacheCase>(directories);
    const auto lines = std::make_shared<NameLines>(of->tree);
    return {{"library",
             [of] {
                 return of->perFile(Nanoseconds([&] {
                     if (!vpWritePathToCacheFile(of->path, of->file.c_str())) std::abort();
                 }));
             }},
            {"name lines",
             [of, lines] { return of->perFile(Nanoseconds([&] { lines->write(of->file); })); }},
            {"one buffer", [of] {
                 return of->perFile(Nanoseconds([&] {
                     const int file = open(of->file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
                     const ssize_t written = write(file, of->bytes.data(), of->bytes.size());
                     if (written != static_cast<ssize_t>(of->bytes.size())) std::abort();
                     close(file);
                 }));
             }}};
}

// Each round is a fresh process.
std::vector<Contender> Load(size_t directories) {
    const auto of = std::make_shared<CacheCase>(directories);
    const auto loading = [of](bool fromCache) {
        return of->perFile(InChild([&]() -> std::vector<double> {
            const vpPath path = of->newPath();
            return {Nanoseconds([&] {
                if (fromCache) of->use(path);
                of->load(path);
            })};
        })[0]);
    };
    return {{"library", [loading] { return loading(true); }},
            {"callbacks", [loading] { return loading(false); }}};
}

enum class Order { kOfFile, kRandom, kAbsent };

// Look-ups are made by asking for a directory's time, which takes one and little else: it is 0 when
// the cache knows the directory, and when the host, who is asked then, says that it is one.
struct LookupCase {
    LookupCase(size_t directories, Order order) : of(directories) {
        const auto isDirectory = [](vpPath, const char*) { return true; };
        HostFunctions host = TreeHost::functions();
        host.isDirectory = isDirectory;
        Install(host);
        cached = vpCreatePathWithPreFrozen(0, "cached", nullptr, vpCaseDefault, false);
        plain = vpCreatePathWithPreFrozen(0, "plain", nullptr, vpCaseDefault, false);
        const char* const first = of.tree.directories[0].name.c_str();
        plainDir = vpAddDir(plain, first, vpAddAtEnd);
        cachedDir = vpAddDir(cached, first, vpAddAtEnd);
        of.use(cached);
        for (const GeneratedTree::Directory& directory : of.tree.directories) {
            numbers.emplace(directory.name, static_cast<uint32_t>(numbers.size()));
            names.push_back(directory.name);
        }
        if (order == Order::kRandom) std::shuffle(names.begin(), names.end(), std::mt19937_64(3));
        for (std::string& name : names) {
            if (order == Order::kAbsent) name.back() = 'x';
        }
    }
    ~LookupCase() {
        vpRevertFromToolboxCache(cached);
        vpRemovePath(cached);
        vpRemovePath(plain);
    }

    double time(const vpDir& dir) const {
        return each([&](const std::string& name) {
            vpTimeStamp_tag stamp;
            return vpGetTimeStampFromDir(dir, name.c_str(), &stamp);
        });
    }
    template <class Ask>
    double each(Ask ask) const {
        return Nanoseconds([&] {
                   for (const std::string& name : names) benchmark::DoNotOptimize(ask(name));
               }) /
               static_cast<double>(names.size());
    }

    CacheCase of;
    vpPath cached, plain;
    vpDir cachedDir, plainDir;
    std::vector<std::string> names;
    std::unordered_map<std::string, uint32_t> numbers;
};

std::vector<Contender> Lookup(size_t directories, Order order) {
    const auto of = std::make_shared<LookupCase>(directories, order);
    return {{"library", [of] { return of->time(of->cachedDir); }},
            {"host's map", [of] { return of->time(of->plainDir); }},
            {"map", [of] {
                 return of->each([&](const std::string& name) { return of->numbers.count(name); });
             }}};
}

}  // namespace

void RegisterCacheMeasures() {
    for (const size_t directories : {100U, 1000U, 10000U}) {
        const std::string size = std::string("/").append(std::to_string(directories));
        RegisterMeasure({"cache/read" + size, "ns/file", [=] { return Read(directories); }});
        RegisterMeasure({"cache/write" + size, "ns/file", [=] { return Write(directories); }});
        RegisterMeasure({"cache/load" + size, "ns/file", [=] { return Load(directories); }});
        RegisterMeasure({"cache/lookup_in_order" + size, "ns",
                         [=] { return Lookup(directories, Order::kOfFile); }});
        RegisterMeasure({"cache/lookup_random" + size, "ns",
                         [=] { return Lookup(directories, Order::kRandom); }});
        RegisterMeasure({"cache/lookup_absent" + size, "ns",
                         [=] { return Lookup(directories, Order::kAbsent); }});
    }
}
