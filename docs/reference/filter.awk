# Turns the comments of a public header, which are written to be read as they stand, into what Doxygen
# takes for documentation:
# - the comment at the top describes the file;
# - a comment after a rule opens a section, a group of its own up to the next;
# - a comment before declarations is about all of them, up to the next empty line, but for those that
#   have one of their own behind them;
# - a comment behind a declaration is about that one.
# In comments no character is a command; what is indented by four more blanks is code.

# Escapes what Doxygen would take for a command. In a text in double quotes, which may run over lines,
# it does not look for any.
function commands_escaped(text,    parts, count, i, result) {
    gsub(/'"'/, "\001", text)
    count = split(text, parts, "\"")
    for (i = 1; i <= count; ++i) {
        if (i > 1) {
            result = result "\""
            in_string = !in_string
        }
        if (!in_string) gsub(/[\\@%<>&#]/, "\\\\&", parts[i])
        result = result parts[i]
    }
    gsub(/\001/, "'\"'", result)
    return result
}

# The same outside of back quotes, which may run over lines.
function escaped(text,    parts, count, i, result) {
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i) {
        if (i > 1) {
            result = result "`"
            quoted = !quoted
        }
        if (!quoted) {
            gsub(/NOLINT:? ?/, "", parts[i])
            parts[i] = commands_escaped(parts[i])
        }
        result = result parts[i]
    }
    return result
}

function comment_text(line) {
    sub(/^ *\/\/ ?/, "", line)
    return line ~ /^    / ? line : escaped(line)
}

function open_section(title,    rest, id) {
    if (match(title, /[.:] /)) {
        rest = toupper(substr(title, RSTART + 2, 1)) substr(title, RSTART + 3)
        title = substr(title, 1, RSTART - 1)
    }
    sub(/[.:]$/, "", title)
    id = title
    gsub(/[^a-zA-Z]/, "_", id)
    print "/// \\defgroup " id " " title "\n///\n/// " rest
    in_section = section_comment = 1
}

function close_section() {
    if (in_section) print "/// \\}"
    in_section = 0
}

BEGIN {
    at_top = 1
    print "/// \\file"
}
/^\/\/ ---/ {
    close_section()
    opens_section = 1
    next
}
/^ *\/\// && opens_section {
    open_section(comment_text($0))
    opens_section = 0
    next
}
/^ *\/\// && (section_comment || at_top) {
    print "/// " comment_text($0)
    next
}
/^ *\/\// {
    if (depth == 0) {
        about = about "/// " comment_text($0) "\n"
        fresh = 1
    } else {
        print "/// " comment_text($0)
    }
    next
}
section_comment {
    print "/// \\{"
    section_comment = 0
}
/^$/ || /^#/ || /^extern "C" \{/ || (depth == 0 && /^\}( +\/\/ .*)?$/) {
    at_top = quoted = in_string = 0
    if (/^#define/) printf "%s", about
    if (depth == 0 && !/^extern/) about = ""
    print /^\}/ ? "}" : $0
    next
}
{
    line = $0
    behind = ""
    if (match(line, /  \/\/ .*/)) {
        behind = comment_text(substr(line, RSTART + 2))
        line = substr(line, 1, RSTART - 1)
    }
    if (behind != "" && line ~ /\{ *$/) {
        about = about "/// " behind "\n"
        behind = ""
    }
    if (depth == 0 && !continued && (fresh || behind == "")) printf "%s", about
    fresh = 0
    print line (behind != "" ? "  ///< " behind : "")
    depth += gsub(/\{/, "{", line) - gsub(/\}/, "}", line)
    continued = line !~ /[;}] *$/
}
END { close_section() }
