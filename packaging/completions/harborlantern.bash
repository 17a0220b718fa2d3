# Completes command lines of harborlantern in bash. -s must come first; without it the line asks for the window.
# shellcheck shell=bash

_harborlantern() {
    local word=${COMP_WORDS[COMP_CWORD]} index options="-- -TLMODUS"
    # To bash, "=" is a separate word.
    local option=${COMP_WORDS[*]:COMP_CWORD-2:2}
    if [[ $word == = ]]; then option=${COMP_WORDS[COMP_CWORD - 1]}\ = word=; fi
    for ((index = 1; index < COMP_CWORD; index++)); do
        [[ ${COMP_WORDS[index]} == -- ]] && word=./ && break
    done
    if ((COMP_CWORD == 1)); then
        options+=" -s -h --help --version"
    elif [[ ${COMP_WORDS[1]} == -s* ]]; then
        options+=" -d0 -d1 -d2 -d3 --format=csv --format=txt --format=json --format=nul --balance --find="
        options+=" --exclude= --exclude-from= --exclude-caches --format=jsonl --format=ncdu --format=scan"
        options+=" --no-names --progress=json --compare= --grown= --open="
    fi
    # Names are left to bash, which knows how to quote them.
    COMPREPLY=()
    if [[ $option == '--format =' && $word != ./ ]]; then
        mapfile -t COMPREPLY < <(compgen -W "csv txt json nul" -- "$word")
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    fi
}
complete -o filenames -o default -F _harborlantern harborlantern
