// Gives each file of a corpus to the fuzz target once, for builds without libFuzzer; or inputs made
// at random:
//
//     NAME_fuzz --random FIRST COUNT [ALPHABET]
//
// of the bytes of the alphabet, or of any; where the target has a mutator, by that from nothing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size,
                                                                size_t maxSize, unsigned seed);

namespace {

// Quick to seed: an input takes no longer than its making.
class Random {
  public:
    explicit Random(uint64_t seed) : engine_(seed) { engine_.discard(2); }
    size_t below(size_t limit) { return (engine_() >> 32U) % limit; }

  private:
    std::linear_congruential_engine<uint64_t, 6364136223846793005U, 1442695040888963407U, 0>
        engine_;
};

Random theRandom(0);

size_t MakeInput(unsigned seed, const std::string& alphabet, std::vector<uint8_t>& bytes) {
    theRandom = Random(seed);
    if (LLVMFuzzerCustomMutator == nullptr) {
        // Short ones as often as long ones.
        const size_t size = theRandom.below(size_t{4} << theRandom.below(9));
        std::generate_n(bytes.begin(), size, [&] {
            if (alphabet.empty()) return static_cast<uint8_t>(theRandom.below(256));
            return static_cast<uint8_t>(alphabet[theRandom.below(alphabet.size())]);
        });
        return size;
    }
    size_t size = 0;
    for (size_t left = theRandom.below(12); left > 0; --left) {
        const auto next = static_cast<unsigned>(theRandom.below(1U << 31U));
        size = LLVMFuzzerCustomMutator(bytes.data(), size, bytes.size(), next);
    }
    return size;
}

void RunRandom(unsigned first, unsigned count, const std::string& alphabet) {
    std::vector<uint8_t> bytes(8192);
    for (unsigned seed = first; seed - first < count; ++seed) {
        if ((seed - first) % 1000 == 0) {
            std::printf("random inputs from %u on\n", seed);
            std::fflush(stdout);  // from there on one crashed
        }
        const size_t size = MakeInput(seed, alphabet, bytes);
        LLVMFuzzerTestOneInput(bytes.data(), size);
    }
}

}  // namespace

// libFuzzer's for its own builds; here one byte changes, comes or goes.
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize) {
    const size_t at = theRandom.below(size + 1);
    const size_t choice = theRandom.below(3);
    if (choice == 0 && size < maxSize) {
        std::copy_backward(data + at, data + size, data + size + 1);
        ++size;
    } else if (choice == 1 && at < size) {
        std::copy(data + at + 1, data + size, data + at);
        return size - 1;
    }
    if (at < size) data[at] = static_cast<uint8_t>(theRandom.below(256));
    return size;
}

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "--random") {
        if (argc < 4) return 2;
        RunRandom(static_cast<unsigned>(std::stoul(argv[2])),
                  static_cast<unsigned>(std::stoul(argv[3])), argc > 4 ? argv[4] : "");
        return 0;
    }
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) continue;
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);  // the last name printed is the input that crashed
            std::ifstream file(entry.path(), std::ios::binary);
            std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed == 0 ? 1 : 0;
}
