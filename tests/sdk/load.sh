#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# load.sh HOST VESKCTL PLUGIN: the host loads the plug-in, and veskctl sees its row.
set -eu
folder=$(mktemp -d)
host=
trap '[ -z "$host" ] || kill "$host"; rm -rf "$folder"' EXIT
mkfifo "$folder/out"
"$1" --plugin "$3" --listen 127.0.0.1:0 --state-dir "$folder/state" --audio null >"$folder/out" &
host=$!
read -r ready <"$folder/out"
"$2" --host "${ready##* }" ls Hello: | tee "$folder/ls"
grep -q 'Hello from elsewhere' "$folder/ls"
