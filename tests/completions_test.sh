#!/bin/bash
# The completions offer what there is, in each shell that is installed, and vpath(1) tells of it.
#
#   completions_test.sh VPATH BUILD_DIR WORK_DIR
set -euo pipefail

vpath=$1
completions=$2/completions
manual=$2/man/vpath.1
work=$3
pages=$(cd "$(dirname "${BASH_SOURCE[0]}")/../docs/man" && pwd)
status=0

rm -rf "$work"
mkdir -p "$work/home" "$work/dir one/inner" "$work/tree"
cd "$work"
touch file.txt
export HOME=$work/home TERM=dumb

fail() {
    echo "FAILED: $*"
    status=1
}

# --- the shells: offered_by_SHELL LINE prints what is offered at the end of the line

offered_by_bash() {
    bash --norc -c '
        compopt() { :; }  # works under readline alone
        source "$1/vpath"
        read -ra COMP_WORDS <<< "${2//=/ = }"
        [[ $2 != *" " ]] || COMP_WORDS+=("")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        _vpath && printf "%s\n" "${COMPREPLY[@]}"' - "$completions" "$1"
}

offered_by_fish() { fish -N -c "source '$completions/vpath.fish'; complete -C '$1'" | cut -f 1; }

# zsh completes in its line editor alone: one in a pseudo-terminal writes what is to be added.
offered_by_zsh() {
    zsh -f -c '
        zmodload zsh/zpty
        zpty shell zsh -f -i
        zpty -w shell "PS1= fpath=($1 \$fpath); autoload -Uz compinit; compinit -C -d $3.dump
            compadd() {
                local -a hits
                [[ \${@[1,(i)(-|--)]} == *-[a-zA-Z]#[OAD]* ]] || {
                    builtin compadd -A hits \"\$@\"; print -rl -- \$hits >> $3.zsh }
                builtin compadd \"\$@\"
            }
            done-with-it() { : >> $3.done }; zle -N done-with-it; bindkey ^X done-with-it"
        zpty -w -n shell "$2"$'\''\t\x18'\''
        for i in {1..200}; do [[ -e $3.done ]] && break; sleep 0.05; done
        zpty -d shell' - "$completions" "$1" "$work/offered"
    cat "$work/offered.zsh" 2> /dev/null || true
    rm -f "$work"/offered.{zsh,done}
}

# --- what there is

options_of() {  # COMMAND...
    local pattern='^  (-[a-z0-9],)?--[a-z-]+'
    [ $# -gt 0 ] || pattern='^  (-[a-z],)?--[a-z-]+|  --[a-z-]+  '
    "$vpath" "$@" --help | grep -oE -- "$pattern" | tr ', ' '\n\n' | grep -e -
}
names() { "$vpath" "$@" --help | sed -n '/^Commands/,/^[A-Z]/{s/^  //p}' | grep -oE '^[a-z-]+|  [a-z-]+  '; }

mapfile -t commands < <(echo; names | tr -d ' ')
for inner in $(names cache); do commands+=("cache $inner"); done
[ ${#commands[@]} -gt 15 ] || fail "only ${#commands[@]} commands found"

for shell in bash zsh fish; do
    command -v $shell > /dev/null || continue
    expect() {  # LINE WORD...: that all of the words are offered
        local offered word
        offered=$("offered_by_$shell" "$1" | sed -E 's,^--color=,,; s,\\ , ,g; s,/$,,')
        for word in "${@:2}"; do
            grep -qxF -e "$word" <<< "$offered" ||
                fail "$shell: '$1' does not offer '$word' but" $offered
        done
    }
    expect "vpath " $(printf '%s\n' "${commands[@]}" | grep -v ' ')
    expect "vpath --path a cache " write check show
    for command in "${commands[@]}"; do
        expect "vpath ${command:+$command }--" $(options_of $command | grep -e --)
    done
    expect "vpath --color " auto always never
    expect "vpath which --color=" auto always never
    expect "vpath ls dir" "dir one"
    expect "vpath --root d" "dir one"
    expect "vpath --path d" "dir one"
    [ $shell != fish ] || expect "vpath --path=tree:d" "--path=tree:dir one"
    expect "vpath cache show f" file.txt
    expect "vpath report -o f" file.txt
    [ -z "$("offered_by_$shell" "vpath which f")" ] || fail "$shell: offers something for NAME"
done

# --- the manual page

for command in "${commands[@]}"; do
    for word in $(options_of $command); do
        grep -qF -e "${word//-/\\-}" "$manual" || fail "vpath(1) says nothing of $command $word"
    done
done
for word in $(options_of); do
    sed -n '/^.SH OPTIONS/,/^.SH [^O]/p' "$manual" | grep -qF -e "${word//-/\\-}" ||
        [ "$word" = --help ] || fail "OPTIONS of vpath(1) says nothing of $word"
done
! grep -q '@COMMANDS@' "$manual" || fail "no commands in vpath(1)"
if command -v mandoc > /dev/null; then
    for page in "$manual" "$pages"/*.[35]; do
        mandoc -Tlint -W warning "$page" || fail "mandoc"
    done
fi

exit $status
