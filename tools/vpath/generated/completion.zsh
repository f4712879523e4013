#compdef vpath

# Global: the first call puts the functions below in the place of this file.
typeset -ga _vpath_global=(
  {{#commands}}
  {{#globals}}
  {{{words}}}
  {{/globals}}
  {{/commands}}
)
{{#commands}}

_vpath{{id}}() {
  {{#innerCommands}}
  local curcontext=$curcontext state ret=1
  local -a commands=(
    {{#commandNames}}
    '{{name}}:{{about}}'
    {{/commandNames}}
  )
  _arguments -C -s $_vpath_global '1: :->command' '*:: :->rest' && ret=0
  case $state in
    command) _describe command commands && ret=0 ;;
    rest) (( $+functions[_vpath{{id}}_$words[1]] )) && _vpath{{id}}_$words[1] && ret=0 ;;
  esac
  return ret
  {{/innerCommands}}
  {{#leaf}}
  _arguments -s $_vpath_global{{#owns}} \
    {{{words}}}{{/owns}}
  {{/leaf}}
}
{{/commands}}

_vpath "$@"
