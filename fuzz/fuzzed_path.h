// A path on a host in memory whose every structure can be walked.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include <vpath/path.h>
#include <vpath/search.h>

#include "input.h"
#include "support/check_invariants.h"
#include "support/fake_host.h"

// Outlives a fake host, which finds what was not given back.
struct NothingFailed {
    ~NothingFailed() { CHECK(!testing::UnitTest::GetInstance()->Failed()); }
};

class FuzzedPath {
    NothingFailed atTheEnd_;

  public:
    explicit FuzzedPath(const char* preFrozenRoot = nullptr) {
        host.recording = false;
        path = vpCreatePathWithPreFrozen(0, "fuzz", preFrozenRoot, vpCaseSensitive, false);
    }

    void check() const {
        const std::string fault = CheckInvariants(*path.get());
        if (!fault.empty()) std::fprintf(stderr, "%s\n", fault.c_str());
        CHECK(fault.empty());
    }

    // How many answers a search has; more than there can be mean that it does not end.
    static size_t Drain(vpSearch* search, size_t limit = 10000) {
        size_t hits = 0;
        char name[2 * 4352];
        vpDir dir;
        while (vpFindNextUnspecified(search, &dir, name) != 0) CHECK(++hits <= limit);
        vpDestroySearch(&search);
        return hits;
    }

    FakeHost host;
    vpPath path;
};
