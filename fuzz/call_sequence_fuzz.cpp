// Commands in any order on a host that may do anything: give kinds and times that are not so, list
// what is not there, otherwise each time, throw, and call back in. The structures hold throughout,
// every search ends, and what was allocated is given back.
#include <gtest/gtest-spi.h>

#include <climits>
#include <optional>
#include <stdexcept>

#include <hostkit/hostkit.h>

#include "fuzzed_path.h"
#include "support/path_test.h"
#include "support/steps.h"

namespace {

class Hostile : public PathTest {
  public:
    explicit Hostile(Input& input) : input_(input) {
        theHost_ = this;
        vpSetDefaultIOFcnsNew(List, Accessibility, IsReadable, IsDirectory, Time,
                              FakeHost::changeDir);
        host.onCall = [this](const std::string&) { answer(); };
        steps_.emplace(
            host, [this](size_t n) { return input_.below(n); }, [this] { return known(); });
        isWild_ = true;
    }
    ~Hostile() override {
        isWild_ = false;
        step("cacherevert");
    }
    void TestBody() override {}

    void next() {
        const std::string command = steps_->next();
        path = vpLookupPath("p");
        if (!Steps::IsPossible(host, path.get() != nullptr, command)) return;
        // Names that no disk holds are not put together from their parts.
        testing::TestPartResultArray ignored;
        const testing::ScopedFakeTestPartResultReporter ignoring(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &ignored);
        CHECK(step(command).rfind("without end", 0) != 0);
        forget();
        const vpPath live = vpLookupPath("p");
        if (live.get() != nullptr) CHECK(CheckInvariants(*live.get()).empty());
        if (live.get() == nullptr) step("path - " + steps_->expand("$A"));
    }

  private:
    bool oneIn(size_t count) { return isWild_ && input_.below(count) == 0; }

    // What a callback or a listener does before it answers: mostly nothing.
    void answer() {
        const size_t choice = isWild_ ? input_.below(64) : 0;
        if (choice == 1) throw std::runtime_error("from the host");
        if (choice == 2) vpRemovePath(vpLookupPath("p"));
        if (choice == 3) host.now += static_cast<long>(input_.below(9)) - 4;
        if (choice < 4 || choice > 9 || depth_ > 2) return;
        ++depth_;
        const std::string command = steps_->next();
        path = vpLookupPath("p");
        if (Steps::IsPossible(host, path.get() != nullptr, command)) step(command);
        --depth_;
    }

    std::vector<std::string> known() {
        std::vector<std::string> names;
        for (vpDir at = vpGetNextPathDir(vpGetNullDir(path)); vpGetDirType(at) != vpDirTypeNone;
             at = vpGetNextPathDir(at)) {
            names.push_back(NameOf(at));
            for (const vpDir& in :
                 {vpGetMethodDirs(at, at), vpGetPackageDirs(at, at), vpGetPrivateDir(at)}) {
                if (vpGetDirType(in) != vpDirTypeNone) names.push_back(NameOf(in));
            }
        }
        return names;
    }

    static char* List(vpPath on, const char* name, unsigned int** wordsOut) {
        Hostile& self = *theHost_;
        if (!self.oneIn(4)) return FakeHost::list(on, name, wordsOut);
        std::string names;
        const size_t count = self.input_.below(12);
        auto* const words =
            static_cast<unsigned int*>(hkMalloc((count + 1) * sizeof(unsigned int)));
        for (size_t at = 0; at < count; ++at) {
            const char* const odd[] = {"a/b", "..",      "/",        "@", "+",
                                       "x.",  "PRIVATE", "\xFF\xC3", "@a"};
            const size_t choice = self.input_.below(128);
            std::string entry =
                choice < std::size(odd) ? odd[choice] : self.steps_->expand("$M$b$e");
            if (choice == 126) entry = self.input_.text();
            if (choice == 127) entry += std::string(65536 - entry.size(), 'x');
            names += entry + '\0';
            const unsigned int kinds[] = {0, 0x4000, 0x8000, 0x8001, 0x8002, 0xC003, UINT_MAX};
            words[at] = kinds[self.input_.below(std::size(kinds))];
        }
        *wordsOut = words;
        if (count == 0) return nullptr;
        auto* const listing = static_cast<char*>(hkMalloc(names.size() + 1));
        std::copy_n(names.c_str(), names.size() + 1, listing);
        return listing;
    }
    static vpDirAccessibility Accessibility(vpPath on, const char* name) {
        const bool isOdd = theHost_->oneIn(8);
        return isOdd ? static_cast<vpDirAccessibility>(theHost_->input_.below(6))
                     : FakeHost::accessibility(on, name);
    }
    static bool IsReadable(const char* name) {
        return FakeHost::isReadable(name) != theHost_->oneIn(8);
    }
    static bool IsDirectory(vpPath on, const char* name) {
        return FakeHost::isDir(on, name) != theHost_->oneIn(4);
    }
    static long Time(vpPath on, const char* name) {
        const long odd[] = {LONG_MIN, -1, 0, theHost_->host.now, theHost_->host.now + 9, LONG_MAX};
        const long time = FakeHost::modificationTime(on, name);
        return theHost_->oneIn(4) ? odd[theHost_->input_.below(std::size(odd))] : time;
    }

    static inline Hostile* theHost_ = nullptr;
    Input& input_;
    std::optional<Steps> steps_;
    bool isWild_ = false;
    int depth_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, std::min<size_t>(size, 4096));
    const NothingFailed atTheEnd;
    Hostile host(input);
    while (!input.empty()) host.next();
    return 0;
}
