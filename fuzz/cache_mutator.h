// Cache files taken apart at their elements and put together otherwise: most of what comes of it is
// still read, which bytes changed at random are not.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

class CacheMutator {
  public:
    CacheMutator(const std::string& file, unsigned seed) : random_(seed) {
        random_.discard(3);
        for (size_t at = 0; at < file.size();) {
            const size_t end = std::min(file.find('>', at), file.size() - 1) + 1;
            pieces_.push_back(file.substr(at, end - at));
            at = end;
        }
        if (pieces_.size() < 2) pieces_ = {"<L>", "</L>"};
    }

    void mutate() {
        const size_t at = between(1, pieces_.size() - 1);  // before the last, which ends the file
        const size_t choice = below(48);
        if (choice < 12) {  // what follows, or nothing, comes to stand in a directory
            insert(at, {"<D name=\"" + name(0, below(2) == 0 ? kDirectories : kNames) + "\">"});
            insert(between(at + 1, pieces_.size() - 1), {"</D>"});
        } else if (choice < 16) {
            insert(at, elementAt(between(1, pieces_.size() - 1)));
        } else if (choice < 20) {
            rename(pieces_[at - 1]);
        } else if (choice == 20 && pieces_.size() > 2) {
            pieces_.erase(pieces_.begin() + static_cast<int>(at - 1));
        } else if (choice == 21) {
            std::swap(pieces_[at - 1], pieces_[below(pieces_.size())]);
        } else if (choice == 22) {
            damage(pieces_[at - 1]);
        } else {
            insert(at, {item()});
        }
    }

    std::string file() const {
        std::string file;
        for (const std::string& piece : pieces_) file += piece;
        return file;
    }

  private:
    size_t below(size_t limit) { return random_() % limit; }
    size_t between(size_t least, size_t end) { return least + below(end - least + 1); }

    // Those of directories, some of which are asked for, come first.
    static constexpr size_t kDirectories = 8;
    static constexpr size_t kNames = 26;
    std::string name(size_t first = 0, size_t end = kNames) {
        const char* const names[kNames - 1] = {
            "a",   "b",   "a/c", "a/private", "a/@C",    "a/+p", "a/+p/@C", "a\\c", "A",
            "f.v", "f.p", "F.V", "f",         "private", "@C",   "+p",      "x.",   ".h",
            "C.v", "C",   "C.p", "g.tar.gz",  "",        "+",    "@"};
        const size_t choice = between(first, end - 1);
        return choice == kNames - 1 ? std::string(4350 + below(5), 'n') : names[choice];
    }
    std::string item() {
        const char letter = "FCNUdDx"[below(70) < 64 ? below(5) : below(7)];
        return std::string("<") + letter + " name=\"" + name(below(32) == 0 ? 0 : kDirectories) +
               "\"/>";
    }
    // With all that is in it.
    std::vector<std::string> elementAt(size_t first) {
        std::vector<std::string> element;
        int depth = 0;
        do {
            const std::string& piece = pieces_[first++];
            depth += piece.find("<D") != piece.npos ? 1 : piece.find("</") != piece.npos ? -1 : 0;
            element.push_back(piece);
        } while (depth > 0 && first < pieces_.size() && element.size() < 30);
        return depth == 0 ? element : std::vector<std::string>();
    }
    void insert(size_t at, const std::vector<std::string>& some) {
        pieces_.insert(pieces_.begin() + static_cast<int>(std::min(at, pieces_.size())),
                       some.begin(), some.end());
    }
    void rename(std::string& piece) {
        const size_t begin = piece.find('"');
        const size_t end = piece.find('"', begin + 1);
        if (end != std::string::npos) piece.replace(begin + 1, end - begin - 1, name());
    }
    void damage(std::string& piece) {
        const size_t size = piece.size();
        piece.resize(size + 16);
        piece.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(piece.data()), size, size + 16));
    }

    std::minstd_rand random_;          // quick to seed
    std::vector<std::string> pieces_;  // each up to a '>'
};
