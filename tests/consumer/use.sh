# Sourced by the tests that use an installation from outside: builds and runs the consumers.

consumer=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# check_run FOLDER VERSION: what the programs in it print.
check_run() {
    echo "== $1"
    "$1/consumer" > "$1/output.txt" || fail "$1/consumer ended with $?"
    sed "s/@VERSION@/$2/" "$consumer/expected.txt" | diff -u - "$1/output.txt" ||
        fail "$1/consumer: not the expected output"
    "$1/posix_consumer" | grep -qx "version $2" || fail "$1/posix_consumer"
}

# cmake_build SOURCE BUILD OPTION...
cmake_build() {
    local log=$2.log
    { cmake -S "$1" -B "$2" -G Ninja -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF "${@:3}" &&
        cmake --build "$2" --parallel 2; } > "$log" 2>&1 || {
        cat "$log"
        fail "$1 does not build"
    }
}

# use_installation PREFIX LIBDIR WORK VERSION: with find_package, and with pkg-config and make.
use_installation() {
    cmake_build "$consumer" "$3/cmake" -DCMAKE_PREFIX_PATH="$1"
    check_run "$3/cmake" "$4"

    mkdir -p "$3/make"
    PKG_CONFIG_PATH=$1/$2/pkgconfig make -C "$consumer" BUILD="$3/make"
    check_run "$3/make" "$4"

    # The utility calls are for C programs too.
    echo "#include <hostkit/hostkit.h>" |
        "$CXX" -x c -std=c11 -Wall -Wextra -Werror -fsyntax-only -I"$1/include" - ||
        fail "hostkit.h is no C header"
}
