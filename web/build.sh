#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
# Gets the page's libraries, if they are not there, and bundles the page into the folder $1.
#
# The libraries come from npm, where it is installed, or else from its registry; with VENDOR from that folder or tarball
# (scripts/vendor-web makes it), without the network. DEV=true takes those for the tests as well. Everything else can be
# built where the registry cannot be reached: then the file no-page beside $1 says why there is no page, which is a
# failure only with REQUIRED=true.
set -eu
cd "$(dirname "$0")"
: "${NODE:=node}" "${NPM:=}" "${FLOCK:=flock}" "${VENDOR:=}" "${DEV:=false}" "${REQUIRED:=false}"
dev=
[ "$DEV" = false ] || dev=--dev

libraries()
{
    if [ -n "$VENDOR" ] && [ -d "$VENDOR" ]; then
        "$NODE" fetch.mjs $dev --from "$VENDOR"
    elif [ -n "$VENDOR" ]; then
        tarballs=$(mktemp -d) || return
        status=0
        { tar -xf "$VENDOR" -C "$tarballs" --strip-components=1 && "$NODE" fetch.mjs $dev --from "$tarballs"; } || status=$?
        rm -rf "$tarballs"
        return "$status"
    elif [ -n "$NPM" ]; then
        "$NPM" ci >/dev/null
    else
        registry=${npm_config_registry:-$(../scripts/npm-registry)}
        "$NODE" fetch.mjs $dev --registry "$registry"
    fi
}

have_libraries()
{
    [ -n "$(find node_modules/.package-lock.json -newer package-lock.json 2>/dev/null)" ] || return
    [ "$DEV" = false ] || [ -d node_modules/typescript ]
}

reason=$(dirname "$1")/no-page
# Several build folders share the libraries, and may be built at the same time.
exec 9<package-lock.json
"$FLOCK" 9
if ! have_libraries && ! libraries; then
    [ "$REQUIRED" = false ] || exit 1
    mkdir -p "$(dirname "$reason")"
    echo "its libraries cannot be fetched from npm's registry. Build again once it can be reached." >"$reason"
    echo "vesk-host is built without its page: $(cat "$reason")" >&2
    exit 0
fi
exec 9<&-
rm -f "$reason"
exec "$NODE" build.mjs --out "$1"
