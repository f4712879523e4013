#!/bin/bash
# Drives the command on a real terminal, of tmux: what pipes cannot show.
#
#   terminal_test.sh VPATH      exits with 77 where there is no tmux
set -euo pipefail

command -v tmux > /dev/null || exit 77
vpath=$(realpath "$1")
work=$(mktemp -d)
mkdir -p "$work"/{a/@Shape,b,"sp ace"} && cd "$work"
work=$PWD
touch a/{foo,food,bar}.v b/foo.v a/@Shape/area.v
trap 'tmux -S "$work/tmux" kill-server 2> /dev/null || true; rm -rf "$work"' EXIT

terminal() { tmux -S "$work/tmux" -f /dev/null "$@"; }
keys() { terminal send-keys -t t "$@"; }
screen() { terminal capture-pane -p "$@" -t t; }

# Waits until the screen shows a line that matches; with -e colours too.
expect() {
    local text
    for ((i = 0; i < 1000; ++i)); do
        text=$(screen "${@:2}")
        ! grep -qE -- "$1" <<< "$text" || return 0
        sleep 0.02
    done
    printf 'line %s: no line matches %s:\n%s\n' "${BASH_LINENO[0]}" "$1" "$text" >&2
    exit 1
}

# Starts a command on a clear screen.
start() { keys "clear; echo started; $1" Enter && expect '^started$'; }

fresh() { keys C-l && expect '^vpath>$'; }

terminal new-session -d -s t -x 80 -y 24 \
    "env -i PATH='$PATH' HOME='$work' TERM=screen LANG=C.UTF-8 PS1='$ ' sh"
expect '^\$$'

# A prompt; answers in colours; Ctrl-C ends a line, and the shell goes on.
keys "'$vpath' --path a:b shell" Enter
expect '^vpath>$'
keys 'which foo' Enter
expect "^.\[34m$work/a/.\[39mfoo.v" -e
keys 'which no one' && expect '^vpath> which no one$'
keys C-c
expect '\^C$'
expect '^vpath>$'
keys 'which --stdin' Enter && expect 'which --stdin$'
keys foo Enter && expect "^$work/a/foo.v$"
keys C-c
expect '^\^C$'
fresh

# Completion of commands, options, names, directories on the path and others, with quotes.
keys whi Tab
expect '^vpath> which$'
keys -- --st Tab
expect '^vpath> which --stdin$'
keys C-u && keys -- --js Tab sh Tab && expect '^vpath> --json shadows$'
keys C-u fr Tab a Tab && expect '^vpath> freeze a/$'
keys C-u 'which f' Tab Tab && expect '^foo +food$'
keys C-u 'methods ' Tab && expect '^vpath> methods Shape$'
keys C-u 'ls ' Tab && expect "^vpath> ls $work$" && keys /b Tab && expect "^vpath> ls $work/b$"
keys C-u 'add a:s' Tab && expect '^vpath> add a:sp\\ ace/$'
keys C-u 'cd "sp' Tab '"' Enter && expect '^vpath> cd "sp ace/"$' && expect '^vpath>$'
keys dirs Enter && expect "^0\s+current\s+0\s+0\s+$work/sp ace$"
fresh

# The next shell knows the lines of this one. Ctrl-D ends it.
keys C-d && expect '^\$$'
start "NO_COLOR=1 '$vpath' --path a shell; echo status \$?" && expect '^vpath>$'
keys Up && expect '^vpath> dirs$'
keys C-u 'which foo' Enter
expect "^$work/a/foo.v$" -e
keys quit Enter && expect '^status 0$'
[ "$(stat -c %a .local/state/vpath/history)" = 600 ]
start "chmod a-w .local/state/vpath; XDG_STATE_HOME=/dev/null '$vpath' shell"
expect '^vpath>$'
keys 'classes' Enter && expect '^vpath> classes$' && keys quit Enter && expect '^\$$'

# A load that goes on shows so; interrupted, it leaves nothing but its status.
mkfifo slow
start "trap : INT; '$vpath' --path-file slow shell; echo status \$?"
{
    echo a
    sleep 0.7
    echo b
    expect 'reading: 3 directories, [0-9]+ a second'
    keys C-c
    expect '^(\^C)?status 130$'
} > slow
! screen | grep -q reading
