// Apart from the rest of the support: it needs the library's internals.
#include "support/check_invariants.h"
#include "support/path_test.h"

void CheckTable(const vpPath& path) {
    if (path.get() != nullptr) {
        EXPECT_EQ(CheckInvariants(*path.get()), "");
    }
}
