#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""mpd.py BUILD [STARTS]: the host of a build folder, with TuneIn's plug-in in a process of its own, beside MPD.

How soon each responds after its start, alternating; what memory all of its processes take while idle and while playing the same stream of the
local directory to no device, as if nothing else ran; and how often their threads wake up, per minute while idle and per second while playing.
"""

import contextlib
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time

from device import Vesk, megabytes, mpd, tree
from resume import local_directory

SETTLE_SECONDS = 15
#: The host's spare decoder, for a switch of stations, is gone after a minute.
PLAY_SETTLE_SECONDS = 75
IDLE_SECONDS = 60
PLAY_SECONDS = 30


def wake_ups(pid):
    tasks = [task for each in tree(pid) for task in pathlib.Path(f"/proc/{each}/task").glob("*/status")]
    return sum(int(count) for task in tasks for count in re.findall(r"^voluntary_ctxt_switches:\s+(\d+)", task.read_text(), re.M))


@contextlib.contextmanager
def running(player):
    """The process of a player that responds, and the milliseconds that took."""
    begin = time.monotonic()
    process = subprocess.Popen(list(map(str, player.command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        player.wait_ready(process)
        yield process, (time.monotonic() - begin) * 1000
    finally:
        process.terminate()
        process.wait()
        process.stdout.close()


def ready(players, starts):
    times = {player.name: [] for player in players}
    for _ in range(starts):
        for player in players:
            with running(player) as (_, milliseconds):
                times[player.name].append(milliseconds)
    return {name: statistics.median(each) for name, each in times.items()}


def measure(player, uri):
    """Memory idle and playing, wake-ups a minute and a second, and the address that was played."""
    with running(player) as (process, _):
        time.sleep(SETTLE_SECONDS)
        idle, before = megabytes(process.pid), wake_ups(process.pid)
        time.sleep(IDLE_SECONDS)
        woken = wake_ups(process.pid) - before
        player.play(uri)
        time.sleep(PLAY_SETTLE_SECONDS)
        before = wake_ups(process.pid)
        time.sleep(PLAY_SECONDS)
        return idle, megabytes(process.pid), woken, (wake_ups(process.pid) - before) / PLAY_SECONDS, uri or player.stream()


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    starts = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        address = stack.enter_context(local_directory(build))
        ours, theirs = Vesk(build, folder, address, "tunein"), mpd(folder)
        times = ready([ours, theirs], starts)
        *figures, uri = measure(ours, None)
        *floors, _ = measure(theirs, uri.replace("http://opml.radiotime.com/", address))
        whats = ["idle, MB", "playing, MB", f"idle, wake-ups in {IDLE_SECONDS} s", "playing, wake-ups a second"]
        rows = [("ready after, ms", times[ours.name], times[theirs.name]), *zip(whats, figures, floors)]
        print("| what | host | MPD | ratio |")
        for what, figure, floor in rows:
            print(f"| {what} | {figure:.1f} | {floor:.1f} | {figure / floor if floor else float('inf'):.2f} |")


if __name__ == "__main__":
    main()
