// Bytes that the library holds for each file, beside the flat index and the bare names.
//
// hkMalloc and its kin are this program's own. Outside the memory measure they only forward.
#include <malloc.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include <hostkit/hostkit.h>

#include "measures.h"
#include "support/flat_index.h"
#include "support/generated_tree.h"
#include "support/host_calls.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

bool counting = false;

// Blocks that were taken since counting began and are still held, with the size asked for.
std::unordered_map<void*, size_t>& Held() {
    static std::unordered_map<void*, size_t> held;
    return held;
}

}  // namespace

void* hkMalloc(size_t size) {
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (counting && block != nullptr) Held()[block] = size;
    return block;
}

void* hkRealloc(void* old, size_t size) {
    if (counting) Held().erase(old);
    void* const block = std::realloc(old, size == 0 ? 1 : size);
    if (counting && block != nullptr) Held()[block] = size;
    return block;
}

void hkFree(void* block) {
    if (counting) Held().erase(block);
    std::free(block);
}

namespace {

constexpr size_t kChunkHead = sizeof(size_t);  // of the C library's allocator, in front of a block

struct Sizes {
    double requested = 0, taken = 0, blocks = 0;  // each for one file
};

Sizes HeldAfterLoading(const GeneratedTree& tree) {
    const vpPath path = NewPath(TreeHost::functions());
    const std::string list = tree.pathString();
    counting = true;
    vpAddDirsString(path, list.c_str(), vpAddAtEnd);
    counting = false;
    Sizes sizes;
    for (const auto& [block, requested] : Held()) {
        sizes.requested += static_cast<double>(requested);
        sizes.taken += static_cast<double>(malloc_usable_size(block) + kChunkHead);
    }
    const auto files = static_cast<double>(tree.fileCount());
    sizes.requested /= files;
    sizes.taken /= files;
    sizes.blocks = static_cast<double>(Held().size()) / files;
    return sizes;
}

double FlatBytes(const GeneratedTree& tree) {
    FlatIndex flat(tree.baseNames.size());
    for (const auto& directory : tree.directories) {
        const uint32_t number = flat.addDirectory(directory.name);
        for (const std::string& entry : directory.entries) flat.add(number, entry);
    }
    return static_cast<double>(flat.bytes());
}

double NameBytes(const GeneratedTree& tree) {
    size_t bytes = 0;
    for (const auto& directory : tree.directories) {
        for (const std::string& entry : directory.entries) bytes += entry.size() + 1;
    }
    return static_cast<double>(bytes);
}

void Run(benchmark::State& state, size_t directories) {
    const GeneratedTree tree(TreeShape{.root = "memory", .directories = directories});
    TreeHost::add(tree);
    try {
        const auto files = static_cast<double>(tree.fileCount());
        const std::vector<double> held = InChild([&]() -> std::vector<double> {
            const Sizes sizes = HeldAfterLoading(tree);
            return {sizes.requested, sizes.taken, sizes.blocks};
        });
        const double flat = FlatBytes(tree) / files;
        const double names = NameBytes(tree) / files;
        for (auto _ : state) state.SetIterationTime(0);
        ReportFigures(state, "bytes/file",
                      {{"requested", held[0], 0},
                       {"with the allocator's share", held[1], 0},
                       {"flat", flat, held[0] / flat},
                       {"names", names, held[0] / names},
                       {"blocks/file", held[2], 0}});
    } catch (const std::runtime_error& failure) {
        state.SkipWithError(failure.what());
    }
}

}  // namespace

void RegisterMemoryMeasures() {
    for (const size_t directories : {1000U, 10000U}) {
        benchmark::RegisterBenchmark(
            ("memory/" + std::to_string(directories)).c_str(),
            [directories](benchmark::State& state) { Run(state, directories); })
            ->Iterations(1)
            ->UseManualTime();
    }
}
