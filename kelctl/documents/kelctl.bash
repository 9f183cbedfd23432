# bash completion for kelctl: the program itself lists the possible words. It must not wait for a tracing daemon.
_kelctl()
{
    local cur words cword
    _get_comp_words_by_ref -n =: cur words cword
    mapfile -t COMPREPLY <<<"$(LTTNG_UST_REGISTER_TIMEOUT=0 "$1" --complete "${words[@]:1:cword-1}" "$cur" 2>/dev/null)"
    case ${COMPREPLY-} in
    @files) compopt -o default ;&
    '') COMPREPLY=() ;; # a here-string has a line, even of nothing
    esac
    COMPREPLY=("${COMPREPLY[@]%%$'\t'*}")
    COMPREPLY=("${COMPREPLY[@]#"${cur%"${cur##*["$COMP_WORDBREAKS"]}"}"}") # bash replaces what follows the last of these
}
complete -o nosort -F _kelctl kelctl
