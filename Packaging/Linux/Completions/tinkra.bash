# Completion of tinkra(1) for bash.

_tinkra_identifiers() {
    # The last column; identifiers may hold spaces, so it is taken from the JSON form.
    tinkra calendars --json 2>/dev/null | grep -o '"id":"[^"\\]*"' | sed 's/^"id":"//; s/"$//'
}

# Not through compgen -W, which carries out what stands in its words; whoever shares a calendar chooses its name.
_tinkra_complete_identifier() {
    local identifier quoted
    while IFS= read -r identifier; do
        printf -v quoted %q "$identifier"
        [[ $identifier == "$1"* || $quoted == "$1"* ]] && COMPREPLY+=("$quoted")
    done < <(_tinkra_identifiers)
}

_tinkra() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "calendars select deselect upcoming sync pending occurrences test-alarm doctor help --help --version" -- "$current")
        return
    fi
    case $previous in
    --days | --from | --to) return ;;
    esac
    local options="--help"
    case $command in
    calendars | sync | pending | doctor) options+=" --json" ;;
    upcoming) options+=" --json --days" ;;
    occurrences) options+=" --json --from --to" ;;
    select | deselect)
        if [[ $current != -* ]]; then
            _tinkra_complete_identifier "$current"
            return
        fi
        ;;
    esac
    if [[ $current == -* || $command != occurrences ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}

complete -F _tinkra tinkra
