#!/bin/bash
# Unpacks the Debian packages that scripts/package has built into an empty folder and uses them: the
# command, its pages, programs built against them, the examples that they bring, another libhostkit
# in place of theirs. Then builds a program that takes the library in by its sources. Not one of the
# quick tests; .ci/run runs it.
#
#   package_test.sh PACKAGES_DIR WORK_DIR
set -euo pipefail
export CXX=${CXX:-g++} CXXFLAGS=${CXXFLAGS:-}
tests=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$tests/consumer/use.sh"

packages=$(realpath "$1")
work=$2
version=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' "$tests/../CMakeLists.txt")
rm -rf "$work"
mkdir -p "$work/root"
cd "$work"
work=$PWD

for package in "libvpath${version%%.*}" libvpath-dev vpath; do
    file=$(echo "$packages/${package}_$version"-*.deb)
    [ -f "$file" ] || fail "no package $package $version in $packages"
    dpkg-deb --fsys-tarfile "$file" | tar -t | grep -v '/$' >> files
    dpkg -x "$file" root
    for text in changelog.gz changelog.Debian.gz copyright; do
        [ -s "root/usr/share/doc/$package/$text" ] || fail "$package has no $text"
    done
done
sort files | uniq -d > twice
[ ! -s twice ] || fail "in two packages: $(cat twice)"

# Installed, the linker knows the folder.
libdir=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
export LD_LIBRARY_PATH=$work/root/usr/$libdir
! readelf -d root/usr/bin/vpath "$LD_LIBRARY_PATH"/*.so | grep -E 'R(UN)?PATH' || fail "an rpath"
[ "$(root/usr/bin/vpath --version)" = "vpath $version" ] || fail "vpath --version"
for page in man1/vpath.1 man3/libvpath.3 man5/vpath-cache.5; do
    zcat "root/usr/share/man/$page.gz" | mandoc -T utf8 | tail -n 1 | grep -q "vpath $version" ||
        fail "$page does not say its version"
done
for file in bash-completion/completions/vpath zsh/vendor-completions/_vpath \
    fish/vendor_completions.d/vpath.fish vpath/schema.json; do
    [ -s "root/usr/share/$file" ] || fail "no $file"
done

use_installation "$work/root/usr" "$libdir" "$work" "$version"
examples=root/usr/share/doc/libvpath-dev/examples
cmake_build "$examples" "$work/examples" -DCMAKE_PREFIX_PATH="$work/root/usr"
"$tests/examples_test.sh" "$examples" "$work/examples" "$work/run" || fail "examples"

# A host's own libhostkit, found before the packaged one.
mkdir own
"$CXX" -x c -shared -fPIC -Wl,-soname,libhostkit.so.1 -I root/usr/include \
    "$examples/own_hostkit/hostkit.c" -o own/libhostkit.so.1
LD_LIBRARY_PATH=$work/own:$LD_LIBRARY_PATH
ldd cmake/consumer | grep -F "$work/own/libhostkit.so.1" || fail "the packaged libhostkit is taken"
check_run "$work/cmake" "$version"

cmake_build "$consumer" "$work/sources" -DVPATH_SOURCE="$tests/.."
unset LD_LIBRARY_PATH
check_run "$work/sources" "$version"
echo "package_test: all well"
