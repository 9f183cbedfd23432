#compdef kel-trace
# The program itself lists the possible words.
_kel_trace()
{
    local -a offered
    offered=(${(f)"$(${(Q)words[1]} --complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)"})
    if [[ $offered[1] == @files ]]; then
        _files
        return
    fi
    offered=("${(@)offered//:/\\:}") # a colon parts a word from what it is for
    offered=("${(@)offered/$'\t'/:}")
    _describe -V 'kel-trace' offered
}
_kel_trace "$@"
