#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""output.py BUILD: what it costs that a plug-in's log comes from a process of its own.

Two hosts of a build folder, one with TuneIn's plug-in in its process, get the first 100 rows of a screen of 1 MB in turn: at the log's most
detailed level, and, at the usual one, of a screen that ends too soon, of which the log has the whole.
"""

import contextlib
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

from server import WebSocket, started

ROUNDS = 10
UNMEASURED = 2
CASES = {"everything is logged": ("trace", "g1"), "a damaged answer is logged": ("info", "g3"), "nothing is logged": ("info", "g1")}


@contextlib.contextmanager
def host(build, folder, server, *options):
    plugin = build / "lib/vesk/plugins/libvesk_cb_tunein.so"
    with started(build / "bin/vesk-host", "--listen", "127.0.0.1:0", "--state-dir", folder, "--log-file", folder / "log", "--audio", "null",
                 "--plugin", plugin, "--connect-to", "opml.radiotime.com:80:" + server, "--set", "network:connected=true",
                 "--set", "settings:tunein/partnerId=local", *options) as (address, _):
        name, port = address.split(":")
        yield WebSocket(name, int(port))


def measure(build, server, level, screen):
    with contextlib.ExitStack() as stack:
        folders = [pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory())) for _ in range(2)]
        clients = [stack.enter_context(host(build, folder, server, "--log-level", level, *options))
                   for folder, options in zip(folders, ([], ["--in-process"]))]
        times = [[], []]
        for _ in range(ROUNDS):
            for client, taken in zip(clients, times):
                begin = time.perf_counter()
                client.call("getRows", path=f"TuneIn:browse/uri/Browse.ashx?id={screen}", first=0, last=99)
                taken.append((time.perf_counter() - begin) * 1000)
        own, shared = (statistics.median(taken[UNMEASURED:]) for taken in times)
        logs = [(folder / "log").stat().st_size // 1000 for folder in folders]
        return f"process of its own {own:.1f} ms, in the host's {shared:.1f} ms, ratio {own / shared:.2f} (logs of {logs[0]} and {logs[1]} KB)"


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    with subprocess.Popen([build / "bin/vesk-bench", "--serve"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as server:
        address = f"127.0.0.1:{int(server.stdout.readline())}"
        for what, (level, screen) in CASES.items():
            print(f"{what}: {measure(build, address, level, screen)}")
        server.stdin.close()


if __name__ == "__main__":
    main()
