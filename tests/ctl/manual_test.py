#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""Compares a manual page with the help of its program: each option of one is in the other.

usage: manual_test.py PROGRAM PAGE
"""

import pathlib
import re
import subprocess
import sys


def main():
    program, page = sys.argv[1:]
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    told = set(re.findall(r"^  (?:-\w,)?--([a-z-]+)", text, re.M))
    commands = set(re.findall(r"^  ([a-z]+)  ", text.partition("Subcommands:")[2].partition("\n\n")[0], re.M))
    lines = pathlib.Path(page).read_text(encoding="utf-8").replace("\\-", "-").split("\n")
    # Options of commands are described after the first command.
    first = next((i for i, line in enumerate(lines) if line.startswith(".It Ic ")), len(lines))
    described = {name for line in lines[:first] if line.startswith(".It Fl ") for name in re.findall(r"Fl -([a-z-]+)", line)}
    assert len(told) > 3 and told == described, f"{program}: {told ^ described} are in the help or the page only"
    listed = {line.split()[2] for line in lines if line.startswith(".It Ic ")}
    assert commands == listed, f"{program}: {commands ^ listed} are in the help or the page only"
    used = {name for line in lines for name in re.findall(r"^\.Oo Fl -([a-z-]+)", line)}
    assert used == told - {"help", "version"}, f"{program}: the synopsis has {used}"


main()
