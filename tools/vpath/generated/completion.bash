# bash completion for vpath

# Sets `kind` to what the value of an option is; fails for an option without a value.
_vpath_option() {  # COMMAND OPTION
    case "$1:$2" in
        {{#commands}}
        {{#valueOptions}}
        {{{scope}}}:{{long}}{{#short}} | {{{scope}}}:{{short}}{{/short}}) kind='{{kind}}' ;;
        {{/valueOptions}}
        {{/commands}}
        *) return 1 ;;
    esac
}

# Sets `kind` to what an argument is.
_vpath_argument() {  # COMMAND PLACE
    kind=
    case "$1:$2" in
        {{#commands}}
        {{#arguments}}
        '{{command}}':{{place}}) kind='{{kind}}' ;;
        {{/arguments}}
        {{/commands}}
    esac
}

# Sets `commands` to what may follow a command.
_vpath_commands() {  # COMMAND
    commands=
    case "$1" in
        {{#commands}}
        {{#inner}}
        '{{command}}') commands='{{inner}}' ;;
        {{/inner}}
        {{/commands}}
    esac
}

_vpath_options() {  # COMMAND
    options='{{globalOptions}}'
    case "$1" in
        {{#commands}}
        {{#own}}
        '{{command}}') options+=' {{own}}' ;;
        {{/own}}
        {{/commands}}
    esac
}

_vpath_offer() {  # KIND
    local word=${cur##*[=:]}
    case $1 in
        file)
            compopt -o filenames && mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            COMPREPLY=("${COMPREPLY[@]#"${cur%"$word"}"}")
            ;;
        directory | directories)
            compopt -o filenames && mapfile -t COMPREPLY < <(compgen -d -- "$word")
            ;;
        *) mapfile -t COMPREPLY < <(compgen -W "$1" -- "$word") ;;
    esac
}

_vpath() {
    local cur=${COMP_WORDS[COMP_CWORD]} command= waiting= kind commands options word glue=
    local -a words=()
    local -i at place=0 ended=0
    COMPREPLY=()

    # bash takes "--path=a:b" apart into "--path", "=", "a", ":" and "b".
    for ((at = 1; at <= COMP_CWORD; at++)); do
        word=${COMP_WORDS[at]}
        if [[ $glue || $word =~ ^[=:]+$ && ${#words[@]} -gt 0 ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
        glue=
        [[ $word =~ ^[=:]+$ ]] && glue=1
    done

    for word in "${words[@]:0:${#words[@]}-1}"; do
        if [[ $waiting ]]; then
            waiting=
        elif ((!ended)) && [[ $word == -- ]]; then
            ended=1
        elif ((!ended)) && [[ $word == -* ]]; then
            _vpath_option "$command" "$word" && waiting=$word
        else
            _vpath_commands "$command"
            if [[ " $commands " == *" $word "* ]]; then
                command=${command:+$command }$word
            else
                place+=1
            fi
        fi
    done

    word=${words[-1]}
    if [[ $waiting ]]; then
        _vpath_option "$command" "$waiting" && cur=$word && _vpath_offer "$kind"
    elif ((!ended)) && [[ $word == --*=* ]]; then
        _vpath_option "$command" "${word%%=*}" && cur=${word#*=} && _vpath_offer "$kind"
    elif ((!ended)) && [[ $word == -* ]]; then
        _vpath_options "$command"
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    else
        _vpath_commands "$command"
        _vpath_argument "$command" "$place"
        [[ $kind ]] || _vpath_argument "$command" many
        cur=$word
        _vpath_offer "${commands:-$kind}"
    fi
}

complete -F _vpath vpath
