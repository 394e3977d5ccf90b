# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Completion of veskctl in bash: veskctl says what fits. Nothing of it is ever evaluated.

_veskctl()
{
    COMPREPLY=()
    # Words of the line up to the cursor. bash also ends words at colons and equals signs; they are one word here.
    local -a words=()
    local rest=${COMP_LINE:0:COMP_POINT} part raw='' i
    for ((i = 0; i <= COMP_CWORD; i++)); do
        part=${COMP_WORDS[i]}
        if [[ $rest == [[:space:]]* ]] || ((i == 0)); then
            rest=${rest#"${rest%%[![:space:]]*}"}
            words+=('')
            raw=''
        fi
        ((i == COMP_CWORD)) && part=$rest
        rest=${rest#"$part"}
        raw+=$part
        part=${part//[\'\"\\]/}
        words[${#words[@]} - 1]+=$part
    done
    local typed=${words[${#words[@]} - 1]}

    local -a values=() shown=()
    local value description unlike=
    while IFS=$'\t' read -r value description; do
        if [[ $value == :files ]]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$typed")
            compopt -o filenames 2>/dev/null
            return
        fi
        [[ $value == "$typed"* ]] || unlike=yes
        values+=("$value")
        shown+=("$value  $description")
    done < <(command veskctl complete -- "${words[@]:1}" 2>/dev/null)
    ((${#values[@]})) || return

    # A list is only looked at. One of rows that were asked for by their titles replaces nothing either.
    if [[ ${COMP_TYPE:-9} == 63 ]] || { [[ $unlike ]] && ((${#values[@]} > 1)); }; then
        COMPREPLY=("${shown[@]}" ' ')
        return
    fi
    # What bash regards as other words is there already.
    local known=
    [[ $typed == *[:=]* && $COMP_WORDBREAKS == *:* ]] && known=${typed%"${typed##*[:=]}"}
    [[ $unlike ]] && known=
    for value in "${values[@]}"; do
        value=${value#"$known"}
        [[ $raw == [\'\"]* ]] || printf -v value %q "$value"
        COMPREPLY+=("$value")
    done
    # Rows follow a place, and words "search:".
    [[ ${#values[@]} == 1 && ${values[0]} == *[/:] ]] && compopt -o nospace 2>/dev/null
}
complete -F _veskctl veskctl
