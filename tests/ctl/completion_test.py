#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""Completes lines in a shell, with a veskctl that offers what shells treat specially.

usage: completion_test.py bash|zsh|fish FOLDER, where FOLDER has the scripts.
"""

import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

HOSTILE = ["pulse:a b", "pulse:$(touch ran)", "pulse:`touch ran`", "pulse:it's", 'pulse:"quoted"', "pulse:back\\slash", "pulse:Küche;touch ran", "pulse:*"]


def replies(shell, scripts, folder, line):
    """What the shell would insert for the end of the line."""
    env = dict(os.environ, PATH=f"{folder}:{os.environ['PATH']}", HOME=str(folder), LC_ALL="C.UTF-8")
    words = shlex.split(line) + ([""] if line.endswith(" ") else [])
    if shell == "bash":
        parts = shlex.join([w for word in words for w in (["pulse", ":"] + ([word[6:]] if word[6:] else []) if word.startswith("pulse:") else [word])])
        code = f"""source {scripts}/veskctl.bash
            COMP_WORDS=({parts}); COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); COMP_LINE={shlex.quote(line)}; COMP_POINT=${{#COMP_LINE}}; COMP_TYPE=9
            _veskctl 2>/dev/null; printf '%s\\n' "${{COMPREPLY[@]}}" """
        args = ["bash", "--norc", "-c", code]
    elif shell == "fish":
        args = ["fish", "--no-config", "-c", f"source {scripts}/veskctl.fish; complete -C {shlex.quote(line)}"]
    else:
        # The last part of zsh's own work is replaced: what it would insert is printed, quoted as it does.
        body = pathlib.Path(scripts, "veskctl.zsh").read_text(encoding="utf-8")
        code = f"""compadd() {{ print -rl -- "${{(@q)values}}" }}; _files() {{ print FILES }}
            typeset -A compstate; words=({shlex.join(words)}); CURRENT=$#words; PREFIX=${{(q)words[CURRENT]}}
            _veskctl() {{ {body}
            }}; _veskctl"""
        args = ["zsh", "-f", "-c", code]
    done = subprocess.run(args, env=env, cwd=folder, capture_output=True, text=True, timeout=30, check=False)
    if done.stderr:
        sys.exit(f"{shell} complained: {done.stderr}")
    return [text for text in done.stdout.split("\n") if text]


def main():
    shell, scripts = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        fake = folder / "veskctl"
        rows = "".join(f"{text}\tA title $(touch ran)\n" for text in HOSTILE)
        (folder / "rows").write_text(rows, encoding="utf-8")
        fake.write_text('#!/bin/sh\nprintf "%s|" "$@" > asked\necho noise >&2\ncat rows\n', encoding="utf-8")
        fake.chmod(0o755)

        found = replies(shell, scripts, folder, "veskctl outputs --choose ")
        if shell == "fish":  # which quotes what it inserts by itself
            inserted = [line.split("\t")[0] for line in found]
        else:
            inserted = []
            for word in found:
                # The shell itself reads back what was inserted.
                read = subprocess.run([shell, "-c", f"printf %s {word}"], cwd=folder, capture_output=True, text=True, check=True)
                inserted.append(read.stdout)
        assert sorted(inserted) == sorted(HOSTILE), f"{inserted} instead of {HOSTILE}"
        asked = (folder / "asked").read_text(encoding="utf-8")
        assert asked == "complete|--|outputs|--choose||", asked

        # A colon is a part of the word.
        replies(shell, scripts, folder, "veskctl outputs --choose pulse:a")
        asked = (folder / "asked").read_text(encoding="utf-8")
        assert asked == "complete|--|outputs|--choose|pulse:a|", asked

        (folder / "rows").write_text("", encoding="utf-8")
        assert not replies(shell, scripts, folder, "veskctl outputs --choose ")
        assert not (folder / "ran").exists(), "a name was executed"
    print(f"{shell}: ok")


main()
