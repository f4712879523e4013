#!/bin/bash
# Whatever happens to `vpath cache write`, the file is the old one or the new one, whole: each of its
# system calls fails in its turn, or is the last one before it is killed; and it is killed at random
# moments.
#
#   cache_write_faults_test.sh VPATH WORK_DIR [KILLS]     default: 40 random moments
set -euo pipefail
export LC_ALL=C

vpath=$1
work=$2
kills=${3:-40}

strace -o /dev/null true 2> /dev/null || {
    echo "strace is not there, or may not trace"
    exit 77
}
rm -rf "$work"
mkdir -p "$work"/{inst/toolbox/{alpha/{@C,private},beta},files}
cd "$work"
touch inst/toolbox/alpha/{,@C/,private/}name{1..30}.v inst/toolbox/beta/name{1..30}.v

write=("$vpath" cache write files/cache --root inst)
contents() { tail -n +2 files/cache | md5sum; }  # the first line has the date
"${write[@]}" > out
old=$(contents)
cp files/cache old
mkdir inst/toolbox/gamma
touch inst/toolbox/gamma/name.v
"${write[@]}" > out
new=$(contents)
[ "$old" != "$new" ]

runs=0
check() {  # WHAT STATUS: after a run that began with the old file
    local now
    now=$(contents) || now=none
    runs=$((runs + 1))
    if [ "$now" != "$new" ] && { [ "$now" != "$old" ] || [ "$2" -eq 0 ]; }; then
        echo "$1: exit status $2, the file is neither the old nor the new one"
        exit 1
    fi
    rm -rf files
    mkdir files
    cp old files/cache
}

# Until a run has fewer such calls; one that is not reached changes nothing.
each_call() {  # CALL HOW
    local nth=0 status
    while nth=$((nth + 1)); do
        # The shell would tell of each kill.
        (
            strace -f -o trace -e "trace=$1" -e "inject=$1:$2:when=$nth" "${write[@]}" > out 2>&1
            echo $? > code
        ) 2> /dev/null || true
        status=$(< code)
        check "$1 number $nth: $2" "$status"
        grep -qE 'INJECTED|killed by' trace || break
        [ -z "$(find files -name '*.*')" ] || [[ $1 = unlink* || $2 = signal* ]] || {
            echo "$1 number $nth: $2: leaves files behind"
            exit 1
        }
    done
}
rm -rf files
mkdir files
cp old files/cache
for call in $(strace -f -c "${write[@]}" 2>&1 > out |
    awk '$NF ~ /^(write|writev|pwrite64|fsync|fdatasync|fchmod|fchown|ftruncate|rename|renameat|renameat2|link|linkat|unlink|unlinkat)$/ { print $NF }'); do
    each_call "$call" error=EIO
    each_call "$call" signal=KILL
done
each_call write error=ENOSPC
each_call write retval=1
each_call openat error=EMFILE
each_call openat signal=KILL
each_call close error=EIO
each_call getdents64 error=EIO

# What may not be read is left out, and said; what cannot be read just now stops the write.
says() {  # PLACE ERROR STATUS TEXT [OPTION]
    local status=0
    strace -f -o trace -P "$PWD/inst/$1" -e trace=openat -e "inject=openat:error=$2" \
        "${write[@]}" "${@:5}" > out 2>&1 || status=$?
    if [ "$status" -ne "$3" ] || ! grep -qF "$PWD/inst/$1$4" out; then
        echo "$2 for $1: exit status $status, says"
        cat out
        exit 1
    fi
    cp old files/cache
}
says toolbox EACCES 2 ': Permission denied'
says toolbox/beta EACCES 0 ": cannot be read: Permission denied; $PWD/inst/toolbox/beta is left out"
says toolbox/beta EACCES 1 ': cannot be read: Permission denied; ' --strict
says toolbox/alpha/@C ENOENT 0 ': cannot be read: No such file or directory; '
says toolbox/alpha EMFILE 2 ': Too many open files'
strace -f -o trace -P "$PWD" -e trace=openat -e inject=openat:error=ESTALE "${write[@]}" > out 2>&1
grep -q "cannot list $PWD: Stale" out
cp old files/cache

for ((i = 0; i < kills; ++i)); do
    status=0
    "${write[@]}" > out 2>&1 &
    sleep "0.0$(printf '%03d' $((RANDOM % 400)))"
    kill -KILL $! 2> /dev/null || true
    wait $! 2> /dev/null || status=$?
    check "killed at a random moment" "$status"
done
echo "$runs runs"
