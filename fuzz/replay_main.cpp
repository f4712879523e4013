// Gives each file of a corpus to the fuzz target once, for builds without libFuzzer; or inputs made
// at random:
//
//     NAME_fuzz --random FIRST COUNT
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

static int RunRandom(unsigned first, unsigned count) {
    for (unsigned seed = first; seed - first < count; ++seed) {
        if ((seed - first) % 1000 == 0) std::printf("random inputs from %u on\n", seed);
        std::fflush(stdout);  // from there on one crashed
        std::mt19937 random(seed);
        std::vector<uint8_t> bytes(random() % 600);
        for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    return 0;
}

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "--random") {
        return RunRandom(static_cast<unsigned>(std::stoul(argv[2])),
                         static_cast<unsigned>(std::stoul(argv[3])));
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
