# Completion of fiid for bash. Needs nothing of bash-completion but that it loads this.
_fiid() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} words=
    [ "$word" != = ] || word=  # behind --format= the equals sign is a word of its own
    [ "$before" != = ] || before=${COMP_WORDS[COMP_CWORD - 2]}
    COMPREPLY=()
    case "$before" in
        --format) words='text ndjson json csv tsv path droid siegfried html' ;;
        --by) words='format family mime extension directory' ;;
        --hash) words='sha256 xxh3' ;;
        --query) words='files summary mismatch changes errors duplicates' ;;
        --match | --exclude-format)
            words='document spreadsheet presentation database image drawing audio video archive mail text code system unknown'
            ;;
        --files-from | --store)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        --fields | --glob | --exclude | --max-depth | --min-size | --max-size | -j | --jobs) return ;;
    esac
    if [ -n "$words" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
        return
    fi
    case "$word" in
        -*)
            mapfile -t COMPREPLY < <(compgen -W '-h --help -V --version --format --mime --print0 --fields --summary --by
                --progress --no-progress -v --verbose --no-text --no-further --explain --hash --files-from -0 --null
                --formats --match --exclude-format --mismatch --glob --exclude --hidden --no-hidden --max-depth
                --one-file-system --min-size --max-size -j --jobs --unsorted --store --prune --rescan --refresh
                --query' -- "$word")
            ;;
        *) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    esac
}
complete -o filenames -F _fiid fiid
