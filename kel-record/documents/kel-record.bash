# bash completion for kel-record: the program itself tells what a word may become.
_kel_record()
{
    local cur words cword
    _get_comp_words_by_ref -n =: cur words cword
    mapfile -t COMPREPLY <<<"$("$1" --complete "${words[@]:1:cword-1}" "$cur" 2>/dev/null)"
    case ${COMPREPLY-} in
    @files) compopt -o default ;&
    '') COMPREPLY=() ;; # a here-string has a line, even of nothing
    esac
    COMPREPLY=("${COMPREPLY[@]%%$'\t'*}")
}
complete -o nosort -F _kel_record kel-record
