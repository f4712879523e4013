#!/bin/bash
# Runs each example and compares what it prints with its expected.txt.
#
#   examples_test.sh EXAMPLES BIN_DIR WORK_DIR      EXAMPLES: the folder of their sources
#
# VPATH_WRITE_EXPECTED=1 writes what they print into these files, to be looked over.
set -uo pipefail
examples=$(realpath "$1")
bin=$(realpath "$2")
work=$3
status=0

for folder in "$examples"/*/; do
    folder=${folder%/}
    name=$(basename "$folder")
    rm -rf "$work/$name"
    mkdir -p "$work/$name"
    cd "$work/$name" || exit 1
    run=("$bin/example_$name")
    [ ! -x "$folder/run.sh" ] || run=("$folder/run.sh" "${run[@]}")
    timeout 60 "${run[@]}" > ../printed 2>&1 || echo "ended with $?" >> ../printed
    sed -i "s|$PWD/||g; s|$folder/||g" ../printed
    [ -z "${VPATH_WRITE_EXPECTED:-}" ] || cp ../printed "$folder/expected.txt"
    diff -u "$folder/expected.txt" ../printed || status=1
    cd - > /dev/null || exit 1
done
exit $status
