# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# Completion of veskctl in fish: veskctl says what fits. fish quotes what is inserted.

function __veskctl_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    set -l found (command veskctl complete -- $words[2..-1] "$typed" 2>/dev/null)
    if test "$found" = :files
        __fish_complete_path "$typed"
    else if set -q found[1]
        printf '%s\n' $found
    end
end
complete -c veskctl -f -a '(__veskctl_complete)'
