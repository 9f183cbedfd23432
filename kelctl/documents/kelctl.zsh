#compdef kelctl
# The program itself lists the possible words. It must not wait for a tracing daemon.
_kelctl()
{
    local -a offered
    offered=(${(f)"$(LTTNG_UST_REGISTER_TIMEOUT=0 ${(Q)words[1]} --complete "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" \
        2>/dev/null)"})
    if [[ $offered[1] == @files ]]; then
        _files
        return
    fi
    offered=("${(@)offered//:/\\:}") # a colon parts a word from what it is for
    offered=("${(@)offered/$'\t'/:}")
    _describe -V 'kelctl' offered -M 'm:{[:lower:][:upper:]}={[:upper:][:lower:]}'
}
_kelctl "$@"
