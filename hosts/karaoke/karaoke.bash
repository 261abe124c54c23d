# Completion of karaoke's command line in bash: commands, options, their words, and songs. What there is to
# complete is read off the program's own help.

# _karaoke_words WORDS: the words that go on as the current one does
_karaoke_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

# _karaoke_files ENDINGS: folders, and files with such an ending; without endings all files
_karaoke_files() {
    local file
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        if [ -z "$1" ] || [ -d "$file" ] || [[ ${file,,} =~ \.($1)$ ]]; then
            COMPREPLY+=("$file")
        fi
    done < <(compgen -f -- "$current")
}

# _karaoke_value OPTION: what an option takes; fails when it takes nothing
_karaoke_value() {
    local type
    type=$(sed -nE "s/^  (-[a-z],)?$1 ([^ ]+).*/\2/p; s/^  $1,--[a-z-]+ ([^ ]+).*/\1/p" <<<"$help")
    case $1:$type in
    *:) return 1 ;;
    --soundfont:*) _karaoke_files 'sf2|sf3' ;;
    *:FILE) _karaoke_files '' ;;
    --encoding:*) _karaoke_words "$(iconv -l 2>/dev/null | tr -d '/,')" ;;
    *:*[A-Z]*) ;;
    *:*\|*) _karaoke_words "${type//|/ }" ;;
    esac
}

_karaoke() {
    local program=${1/#\~/$HOME} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command="" word help
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
        -*) ;;
        *) command=$word && break ;;
        esac
    done
    help=$("$program" ${command:+"$command"} --help 2>/dev/null) || return
    if [[ $previous == -* ]] && _karaoke_value "$previous"; then
        return
    fi
    if [[ $current == -* ]]; then
        _karaoke_words "$(sed -nE 's/^  (-[a-z],)?(--[a-z-]+).*/\2/p' <<<"$help")"
    elif [ -z "$command" ]; then
        _karaoke_words "$(sed -n '/^Subcommands:/,$s/^  \([a-z][a-z-]*\) .*/\1/p' <<<"$help")"
    elif [ "$command" = check-log ]; then
        _karaoke_files ''
    elif [ "$command" != devices ]; then
        _karaoke_files 'mid|midi|kar|rmi|smf'
    fi
}

complete -F _karaoke karaoke
