# fish completion for vpath

# The command given so far, as "cache write", and how many arguments follow it.
function __vpath_given
    set -l valued{{#commands}}{{#valueOptions}} {{long}}{{#short}} {{short}}{{/short}}{{/valueOptions}}{{/commands}}
    set -l given
    set -l waits 0
    for word in (commandline -opc)[2..]
        if test $waits = 1
            set waits 0
        else if contains -- $word $valued
            set waits 1
        else if not string match -q -- '-*' $word
            set -a given $word
        end
    end
    string join ' ' -- $given
end

# Whether what was given is that command, and perhaps arguments.
function __vpath_in
    string match -q -r "^$argv[1]( |\$)" -- "$(__vpath_given)"
end

# Whether it is that command and no more.
function __vpath_at
    test "$(__vpath_given)" = "$argv[1]"
end

# The last directory of a list, behind those before it.
function __vpath_directories
    set -l list (string replace -r -- '^--[a-z-]+=' '' (commandline -ct))
    set -l before "$(string match -r -- '^.*[:;]' $list)"
    string join \n -- $before(__fish_complete_directories (string replace -r -- '^.*[:;]' '' $list))
end

complete -c vpath -f
{{#commands}}
{{#innerCommands}}
{{#commandNames}}
complete -c vpath -n '__vpath_at "{{command}}"' -a '{{name}}' -d '{{about}}'
{{/commandNames}}
{{/innerCommands}}
{{#options}}
complete -c vpath{{{condition}}}{{{names}}}{{{value}}} -d '{{about}}'
{{/options}}
{{#offers}}
complete -c vpath -n '__vpath_in "{{command}}"'{{{value}}}
{{/offers}}
{{/commands}}
