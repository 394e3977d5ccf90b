#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""walk.py DOCUMENT EXAMPLE PREFIX FOLDER cmake|make: does what the walk-through of docs/sdk.md says, word for word.

Everything between the headings "The walk-through" and "Reference" counts; the first word behind a block's "```" says what it is:

    sh                  commands; the block fails when one of them does
    sh values           the variables that a reader sets to values of his own; here they get the test's
    sh terminal=NAME    a program that stays; it replaces the one of that terminal, which gets a Ctrl-C
    sh cmake STEP       a step of the build, for the argument "cmake"
    sh make STEP        the same for the argument "make"; it stands for all later blocks "sh cmake STEP", too
    text                what the commands before it print, on a terminal
    diff                changes to files, for patch(1)
    cpp, cmake, json, make, xml FILE    a whole file

At the end the files have to be those of the EXAMPLE, but for the lines about their copyright, and what was heard has to be music.
FOLDER is made empty at first. The compiler is CXX of the environment.
"""

import contextlib
import fcntl
import os
import pathlib
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import termios
import threading
import traceback

PATIENCE = 400
FILES = ("cpp", "cmake", "json", "make", "xml")


class Trouble(Exception):
    pass


def blocks(document):
    """(line number, words behind the backticks, text) of each block of the walk-through."""
    lines = document.read_text(encoding="utf-8").splitlines()
    found, inside, walk = [], None, False
    for number, line in enumerate(lines, 1):
        if inside is None and line.startswith("## "):
            walk = line == "## The walk-through"
        if not line.startswith("```"):
            if inside is not None:
                inside[2].append(line)
        elif inside is None:
            inside = (number, line[3:].split(), [])
        else:
            if walk:
                found.append((inside[0], inside[1], "".join(text + "\n" for text in inside[2])))
            inside = None
    if inside is not None:
        raise Trouble(f"the block of line {inside[0]} does not end")
    if not found:
        raise Trouble("there is no walk-through")
    return found


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def in_session(work):
    """The exit status of work(), done by a process with a controlling terminal, by which veskctl knows what it showed last."""
    child = os.fork()
    if child:
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
    os.setsid()
    _, terminal = os.openpty()
    fcntl.ioctl(terminal, termios.TIOCSCTTY, 0)
    status = 1
    try:
        status = work()
    except Exception:
        traceback.print_exc()
    finally:
        sys.stdout.flush()
        sys.stderr.flush()
        os._exit(status)


class Terminal:
    """Runs commands with their output on a terminal, as a reader sees it."""

    def __init__(self, folder, environment):
        self.folder, self.environment = folder, environment
        self.stays = {}

    def run(self, text):
        ours, theirs = os.openpty()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 100, 0, 0))
        process = subprocess.Popen(
            ["sh", "-e", "-c", text], cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, stdout=theirs, stderr=theirs
        )
        os.close(theirs)
        output = []

        def read():
            with contextlib.suppress(OSError), open(ours, "rb", closefd=True) as stream:
                while some := stream.read1():
                    output.append(some)

        reader = threading.Thread(target=read)
        reader.start()
        try:
            status = process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            raise Trouble(f"takes longer than {PATIENCE} s") from None
        reader.join()
        output = b"".join(output).decode().replace("\r\n", "\n")
        if status:
            raise Trouble(f"ends with status {status}:\n{output}")
        return output

    def stay(self, name, text):
        self.end(name)
        process = subprocess.Popen(
            ["sh", "-e", "-c", "exec " + text],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=open(self.folder / f"{name}.log", "ab"),
        )
        self.stays[name] = process
        watchdog = threading.Timer(PATIENCE, process.kill)
        watchdog.start()
        line = process.stdout.readline().decode()
        watchdog.cancel()
        if "ready at" not in line:
            raise Trouble(f"is not ready but says: {line!r}\n{(self.folder / f'{name}.log').read_text()}")

    def end(self, name):
        if process := self.stays.pop(name, None):
            process.send_signal(signal.SIGINT)
            with process.stdout:
                status = process.wait(PATIENCE)
            if status:
                raise Trouble(f"the program of terminal {name} ended with status {status}")

    def end_all(self):
        for name in list(self.stays):
            self.end(name)

    def kill_all(self):
        for process in self.stays.values():
            process.kill()
            process.wait()


def check_values(text, values):
    names = re.findall(r"^export (\w+)=", text, re.MULTILINE)
    if sorted(names) != sorted(values) or len(names) != len(text.splitlines()):
        raise Trouble(f"sets {names} where the test knows {sorted(values)}")


def patch(folder, text):
    run = subprocess.run(["patch", "-p0", "--fuzz=0"], cwd=folder, input=text, text=True, capture_output=True)
    if run.returncode or "offset" in run.stdout:
        raise Trouble(f"does not fit what is there:\n{run.stdout}{run.stderr}")


def walk(document, folder, values, environment, way, terminal):
    written = set()
    printed = None
    makes = {}
    for number, words, text in blocks(document):
        kind, arguments = words[0] if words else "", words[1:]
        try:
            if kind == "text" and not arguments:
                if printed is None or printed != text:
                    raise Trouble(f"what is printed is this:\n{printed}")
                printed = None
            elif kind == "diff" and not arguments:
                patch(folder, text)
                written |= set(re.findall(r"^\+\+\+ (\S+)", text, re.MULTILINE))
            elif kind in FILES and len(arguments) == 1:
                (folder / arguments[0]).write_text(text, encoding="utf-8")
                written.add(arguments[0])
            elif words == ["sh", "values"]:
                check_values(text, values)
            elif kind == "sh" and len(arguments) == 2 and arguments[0] in ("cmake", "make"):
                if arguments[0] == "make":
                    makes[arguments[1]] = text
                command = text if arguments[0] == way else makes.get(arguments[1]) if way == "make" else None
                if command:
                    terminal.run(command)
            elif words == ["sh"]:
                printed = terminal.run(text)
            elif kind == "sh" and len(arguments) == 1 and arguments[0].startswith("terminal="):
                terminal.stay(arguments[0].removeprefix("terminal="), text)
            else:
                raise Trouble(f"is of no kind that is known: {' '.join(words)}")
        except Trouble as trouble:
            raise Trouble(f"{document.name}:{number}: {trouble}") from None
        print(f"{document.name}:{number}: {' '.join(words)}", flush=True)
    return written


def without_copyright(text):
    """The file without its first lines about copyright and license, and the empty line behind them."""
    lines = text.splitlines(keepends=True)
    heads = [line for line in lines[:2] if "SPDX-" in line]
    rest = lines[len(heads) :]
    return "".join(rest[1:] if heads and rest and rest[0] == "\n" else rest)


def compare(written, folder, example):
    there = {path.name for path in example.iterdir()}
    if written != there:
        raise Trouble(f"the document makes {sorted(written)}, the example has {sorted(there)}")
    for name in sorted(there):
        if (folder / name).read_text(encoding="utf-8") != without_copyright((example / name).read_text(encoding="utf-8")):
            raise Trouble(f"{name} of the document is not that of the example:\n" + difference(folder / name, example / name))


def difference(made, wanted):
    return subprocess.run(["diff", "-u", made, wanted], text=True, capture_output=True).stdout


def check_sound(file):
    """At least half a second in the file is as loud as the stations' notes are."""
    samples = memoryview(file.read_bytes()[44:])
    loud = sum(1 for (value,) in struct.iter_unpack("<h", samples[: len(samples) // 2 * 2]) if abs(value) > 1000)
    if loud < 22050:
        raise Trouble(f"{file.name} has {loud} loud samples")


def main():
    document, example, prefix, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
    way = sys.argv[5]
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "home").mkdir(parents=True)
    values = {"VESK": str(prefix), "VESK_HOST": f"127.0.0.1:{free_port()}", "RADIO": f"127.0.0.1:{free_port()}"}
    hidden = {"HOME": str(folder / "home"), "NO_COLOR": "1", "LC_ALL": "C.UTF-8", "TERM": "dumb"}
    environment = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "VESK"))} | hidden | values
    work = folder / "mystations"
    work.mkdir()
    terminal = Terminal(work, environment)
    try:
        written = walk(document, work, values, environment, way, terminal)
        terminal.end_all()
        compare(written, work, example)
        check_sound(work / "heard.wav")
    except Trouble as trouble:
        print(trouble, file=sys.stderr)
        return 1
    finally:
        terminal.kill_all()
    return 0


if __name__ == "__main__":
    sys.exit(in_session(main))
