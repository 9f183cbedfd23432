#compdef kel-record
# The program itself tells what a word may become.
_kel_record()
{
    local -a offered
    offered=(${(f)"$(${(Q)words[1]} --complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)"})
    if [[ $offered[1] == @files ]]; then
        _files
        return
    fi
    offered=("${(@)offered//:/\\:}") # a colon parts a word from what it is for
    offered=("${(@)offered/$'\t'/:}")
    _describe -V 'kel-record' offered
}
_kel_record "$@"
