#compdef veskctl
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# Completion of veskctl in zsh: veskctl says what fits. zsh quotes what is inserted.

local value description typed=${(Q)PREFIX} unlike=
local -a values shown
while IFS=$'\t' read -r value description; do
    if [[ $value == :files ]]; then
        _files
        return
    fi
    [[ $value == "$typed"* ]] || unlike=yes
    values+=("$value")
    shown+=("$value  $description")
done < <(command veskctl complete -- "${(@Q)words[2,CURRENT-1]}" "$typed" 2>/dev/null)
(( $#values )) || return 1
# Rows that were asked for by their titles: what is typed is replaced by one that is alone, or is chosen.
[[ -n $unlike ]] && (( $#values > 1 )) && compstate[insert]=menu
compadd -U -l -d shown -a values
