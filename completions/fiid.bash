# Completion of fiid for bash. Needs nothing of bash-completion but that it loads this.
_fiid() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    [ "$word" != = ] || word=  # behind --format= the equals sign is a word of its own
    [ "$before" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}
    COMPREPLY=()
    case "$before" in
        --format)
            mapfile -t COMPREPLY < <(compgen -W 'text ndjson json csv tsv' -- "$word")
            return
            ;;
        --files-from)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
    esac
    case "$word" in
        -*)
            mapfile -t COMPREPLY < <(compgen -W '-h --help -V --version --format --mime --no-text --no-further
                --explain --files-from -0 --null --formats' -- "$word")
            ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
}
complete -o filenames -F _fiid fiid
