# Completion of sensorctl for bash. The program itself says how a word can go on, so that this file need not know it.
# shellcheck shell=bash

_sensorctl() {
    local program=${1/#\~/$HOME}
    mapfile -t COMPREPLY < <("$program" --complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    if [[ -e ${COMPREPLY[0]-} ]]; then
        compopt -o filenames 2>/dev/null # quotes blanks, and shows no folders in front
    fi
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *[/=] ]]; then
        compopt -o nospace 2>/dev/null # more follows
    fi
}

complete -F _sensorctl sensorctl
