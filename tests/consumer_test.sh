#!/bin/bash
# Installs a build tree, moves the installation and uses it from outside.
#
#   consumer_test.sh BUILD_DIR WORK_DIR LIBDIR      (CXX and CXXFLAGS from the environment)
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/consumer/use.sh"

build=$1
work=$2
libdir=$3
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/staging" > "$work/install.log" || {
    cat "$work/install.log"
    fail "cmake --install"
}
mv "$work/staging" "$work/prefix"
use_installation "$work/prefix" "$libdir" "$work" "$version"

command=$work/prefix/bin/vpath
if [ -e "$build/bin/vpath" ]; then
    echo "== $command"
    env -u LD_LIBRARY_PATH "$command" --help > /dev/null || fail "$command --help"
    for file in vpath/schema.json man/man1/vpath.1 bash-completion/completions/vpath \
        zsh/site-functions/_vpath fish/vendor_completions.d/vpath.fish; do
        [ -s "$work/prefix/share/$file" ] || fail "no $file"
    done
fi
