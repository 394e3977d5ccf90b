#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""hours.py BUILD HOURS FILE: memory of the host of a build folder, with all of its processes, over hours of playing.

It plays stations of the local directory to no device, another one every ten minutes, and browses now and then, as a listener does. FILE gets a
line each half minute: the hours since the start, and megabytes, as if nothing else ran (device.py).
"""

import contextlib
import pathlib
import subprocess
import sys
import tempfile
import time

from device import Vesk, megabytes
from resume import local_directory, wait_for

SAMPLE_SECONDS = 30
SWITCH_SECONDS = 600
STATIONS = "TuneIn:browse/uri/Search.ashx?query=jazz"
SCREENS = ["TuneIn:browse", "TuneIn:browse/uri/Browse.ashx?c=music", "TuneIn:browse/uri/Search.ashx?query=a"]


def play(host, number):
    rows = host.call("getRows", path=STATIONS, first=0, last=99)["rowsCount"]
    host.call("player.play", screen=STATIONS, row=number % rows)
    wait_for("sound", lambda: host.call("player.state")["state"] == 2)


def main():
    build, hours, file = pathlib.Path(sys.argv[1]).resolve(), float(sys.argv[2]), pathlib.Path(sys.argv[3])
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        output = stack.enter_context(file.open("w", encoding="ascii"))
        host = Vesk(build, folder, stack.enter_context(local_directory(build)), "tunein")
        process = subprocess.Popen(list(map(str, host.command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        stack.callback(process.terminate)
        host.wait_ready(process)
        begin = time.monotonic()
        played = 0
        while (elapsed := time.monotonic() - begin) < hours * 3600:
            if elapsed >= played * SWITCH_SECONDS:
                play(host, played)
                played += 1
            host.call("getRows", path=SCREENS[int(elapsed / SAMPLE_SECONDS) % len(SCREENS)], first=0, last=99)
            print(f"{elapsed / 3600:.4f} {megabytes(process.pid):.2f}", file=output, flush=True)
            time.sleep(SAMPLE_SECONDS)


if __name__ == "__main__":
    main()
