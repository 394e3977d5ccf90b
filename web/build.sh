#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# Fetches the page's libraries, if they are not there, and bundles the page into the folder $1.
# Without a registry to fetch from there is no page, which is no failure of the build.
set -eu
cd "$(dirname "$0")"
: "${NODE:=node}" "${NPM:=npm}" "${FLOCK:=flock}"

# Several build folders share the libraries, and may be built at the same time.
export NPM
# shellcheck disable=SC2016 # the inner shell expands it
if ! "$FLOCK" package-lock.json sh -c '
    [ node_modules/.package-lock.json -nt package-lock.json ] || "$NPM" ci >/dev/null'; then
    echo "The page's libraries cannot be fetched with npm: vesk-host is built without its page." >&2
    echo "Build again once npm's registry can be reached." >&2
    exit 0
fi
exec "$NODE" build.mjs --out "$1"
