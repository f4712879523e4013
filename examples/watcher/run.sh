#!/bin/bash
# Changes a directory under the watcher's eyes, and prints what was done and what it told.
#
#   run.sh WATCHER      in an empty directory
set -euo pipefail

mkdir -p lib/@Shape
touch -d '2020-01-01' lib/plot.v lib/trim.v lib/@Shape/area.v
coproc watcher { exec "$1" 3600 "$PWD/lib"; }
pid=$watcher_PID

change() {
    echo "\$ $*"
    "$@"
    echo >&"${watcher[1]}"
    while read -r -t 60 line <&"${watcher[0]}" && [ "$line" != . ]; do echo "$line"; done
}

change true  # it answers: what there is has been read
change touch -d 2020-01-03 lib/fit.v
change rm lib/trim.v
change touch -d 2020-01-02 lib/plot.v
change mv lib/@Shape/area.v lib/@Shape/length.v
change mkdir lib/private
change touch -d 2020-01-03 lib/private/scale.v
change true
change rm -r lib/@Shape
exec {watcher[1]}>&-
wait "$pid"
