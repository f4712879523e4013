#!/bin/bash
# libvpath.so shows what the public headers declare: nothing else, nothing less; and libvpath(3) names
# it all, as do the calls that the tests of re-entry go through.
#
#   exported_symbols_test.sh LIBRARY HEADER_DIR MANUAL CALLS...
set -euo pipefail
export LC_ALL=C

library=$1
headers=$2
manual=$3
calls=("${@:4}")
status=0

report() {  # TITLE NAMES: fails the test unless NAMES is empty
    [ -n "$2" ] || return 0
    printf '%s:\n%s\n' "$1" "$2"
    status=1
}

# Declarations as one line each: comments and preprocessor lines gone, statements split at ';'.
statements() {
    cat "$@" | sed -e 's,//.*,,' -e '/^ *#/d' | tr '\n{}' ' ;;' | sed -e 's/  */ /g' | tr ';' '\n'
}
declared_in() {  # HEADER...: functions and data, sorted
    local all
    all=$(statements "$@")
    {
        grep -oP 'VP_EXPORT\b[^(]*?\b\w+(?= ?\()' <<< "$all" | grep -oP '\w+$'
        grep -oP 'VP_EXPORT extern [^()]*\b\K\w+(?= *$)' <<< "$all"
    } | sort
}
classes=$(statements "$headers"/*.h | grep -oP '\bclass VP_EXPORT \K\w+')
declared=$(declared_in "$headers"/*.h)

# Demangled names of what is exported, without argument lists; overloads give a line each.
exported=$(nm -DC --defined-only "$library" | cut -d ' ' -f 3- | sed -e 's/(.*//' | sort)
plain=$(grep -v '::' <<< "$exported")
members=$(grep '::' <<< "$exported" | uniq)

# Compared as lists: an overload that only one side has shows too.
report "exported, but not declared in a public header" \
    "$(comm -23 <(echo "$plain") <(echo "$declared"))"
report "declared in a public header, but not exported" \
    "$(comm -13 <(echo "$plain") <(echo "$declared"))"

report "exported, but no member of a public class" "$(
    while read -r member; do
        name=${member##*::}
        name=${name#\~}
        [[ $name != operator* ]] || name=operator
        grep -qx -- "${member%%::*}" <<< "$classes" && grep -qw -- "$name" "$headers"/*.h ||
            echo "$member"
    done <<< "$members")"

for header in path search pathname; do
    named=$(sed -n "/^\.SS <vpath\/$header.h>/,/^\.S[SH]/{s/\\\\f[BR]/ /g;s/^\.B //p}" "$manual" |
        grep -oE '(vp[A-Z]|libvpath_)\w+' | sort)
    report "differs between $header.h and its section in libvpath(3)" \
        "$(comm -3 <(declared_in "$headers/$header.h" | uniq) <(echo "$named"))"
done

# vpDisableToolboxCache lasts for the process; what works on strings alone calls nobody.
report "not among the calls of ${calls[*]##*/}" \
    "$(comm -23 <(declared_in "$headers"/{path,search}.h | grep '^vp' | uniq) \
        <(grep -how 'vp[A-Z]\w*' "${calls[@]}" | sort -u) | grep -vx vpDisableToolboxCache)"

# The host's utility calls must stay replaceable, and the library known under its own name.
dynamic=$(readelf -dW "$library")
grep -q 'SONAME.*\[libvpath\.so\.1\]' <<< "$dynamic" || report "SONAME" "not libvpath.so.1"
grep -q 'NEEDED.*\[libhostkit\.so\.1\]' <<< "$dynamic" || report "NEEDED" "no libhostkit.so.1"
! grep -w 'SYMBOLIC' <<< "$dynamic" || report "FLAGS" "linked with -Bsymbolic"

exit $status
