#!/bin/bash
# Installs a build tree, moves the installation, and builds and runs tests/consumer against it with
# CMake and with pkg-config.
#
#   consumer_test.sh BUILD_DIR WORK_DIR LIBDIR      (CXX and CXXFLAGS from the environment)
set -euo pipefail

build=$1
work=$2
libdir=$3
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/consumer" && pwd)
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

check_run() {
    echo "== $1"
    "$1/consumer" > "$work/output.txt" || fail "$1/consumer ended with $?"
    sed "s/@VERSION@/$version/" "$source/expected.txt" | diff -u - "$work/output.txt" ||
        fail "$1/consumer: not the expected output"
    "$1/posix_consumer" | grep -qx "version $version" || fail "$1/posix_consumer"
}

rm -rf "$work"
mkdir -p "$work/make"
cmake --install "$build" --prefix "$work/staging" > "$work/install.log" || {
    cat "$work/install.log"
    fail "cmake --install"
}
mv "$work/staging" "$work/prefix"

cmake -S "$source" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" \
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
cmake --build "$work/cmake"
check_run "$work/cmake"

export PKG_CONFIG_PATH=$work/prefix/$libdir/pkgconfig

# The utility calls are for C programs too.
echo "#include <hostkit/hostkit.h>" |
    "$CXX" -x c -std=c11 -Wall -Wextra -Werror -fsyntax-only -I"$work/prefix/include" - ||
    fail "hostkit.h is no C header"

make -C "$source" BUILD="$work/make"
check_run "$work/make"

command=$work/prefix/bin/vpath
if [ -e "$build/bin/vpath" ]; then
    echo "== $command"
    env -u LD_LIBRARY_PATH "$command" --help > /dev/null || fail "$command --help"
    for file in vpath/schema.json man/man1/vpath.1 bash-completion/completions/vpath \
        zsh/site-functions/_vpath fish/vendor_completions.d/vpath.fish; do
        [ -s "$work/prefix/share/$file" ] || fail "no $file"
    done
fi
