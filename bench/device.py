#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""device.py BUILD [--mopidy FOLDER] [--seconds SECONDS] [--ghz NUMBER]: what a radio takes from a small device.

The host of a build folder with all its plug-ins, MPD, and Mopidy, which is in the Debian system FOLDER (scripts/chroot make bookworm FOLDER mopidy
mopidy-mpd), if one is given. Each plays the same MP3 stream of the local directory to no device, alone on processor 0, within so many
cycles a second (1 GHz) by a quota of the kernel's. Of all processes of a player together: memory, as if
nothing else ran, idle and playing; processor time, which other programs on the machine hardly change; and how often it had used up its quota.
"""

import argparse
import contextlib
import json
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import time
import urllib.request

from resume import address_of, local_directory, wait_for

SETTLE_SECONDS = 10
PERIOD_US = 100_000
TICKS = os.sysconf("SC_CLK_TCK")
ROOT = pathlib.Path(__file__).resolve().parent.parent


class Quota:
    """A group of processes that gets a part of one processor: cpu.max, or its predecessors of cgroup v1."""

    def __init__(self, share):
        v1 = pathlib.Path("/sys/fs/cgroup/cpu")
        self._folder = (v1 if v1.is_dir() else pathlib.Path("/sys/fs/cgroup")) / f"vesk-device-{os.getpid()}"
        self._folder.mkdir()
        microseconds = int(share * PERIOD_US)
        if v1.is_dir():
            (self._folder / "cpu.cfs_period_us").write_text(str(PERIOD_US))
            (self._folder / "cpu.cfs_quota_us").write_text(str(microseconds))
        else:
            (self._folder / "cpu.max").write_text(f"{microseconds} {PERIOD_US}")

    def enter(self):
        """In the process that is about to become the player."""
        (self._folder / "cgroup.procs").write_text(str(os.getpid()))
        os.sched_setaffinity(0, {0})

    def throttled(self):
        return int(re.search(r"^nr_throttled (\d+)", (self._folder / "cpu.stat").read_text(), re.M)[1])

    def leave(self):
        wait_for("end of the players", lambda: not (self._folder / "cgroup.procs").read_text())
        self._folder.rmdir()


def tree(pid):
    """The process and all below it."""
    pids = [pid]
    for each in pids:
        with contextlib.suppress(FileNotFoundError):
            for task in pathlib.Path(f"/proc/{each}/task").iterdir():
                pids += map(int, (task / "children").read_text().split())
    return pids


def megabytes(pid):
    """What the processes take where nobody else shares a page of a file with them, each of these pages counted once."""
    anonymous, of_files = 0, {}
    for each in tree(pid):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            text = pathlib.Path(f"/proc/{each}/smaps").read_text()
            for place, inode, resident, own in re.findall(
                    r"^[0-9a-f]+-[0-9a-f]+ \S+ ([0-9a-f]+ \S+) (\d+).*?^Rss:\s+(\d+).*?^Anonymous:\s+(\d+)", text, re.M | re.S):
                anonymous += int(own)
                key = place, inode
                of_files[key] = max(of_files.get(key, 0), int(resident) - int(own)) if inode != "0" else 0
    return (anonymous + sum(of_files.values())) / 1000


def cpu_seconds(pid):
    """Of the processes that there are; those that have ended are in their parents' sums."""
    ticks = 0
    for each in tree(pid):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            ticks += sum(map(int, pathlib.Path(f"/proc/{each}/stat").read_text().rpartition(")")[2].split()[11:15]))
    return ticks / TICKS


class Vesk:
    def __init__(self, build, folder, directory, services="*"):
        files = sorted((build / "lib/vesk/plugins").glob(f"libvesk_cb_{services}.so"))
        self.name = f"vesk-host, services: {len(files)}"
        plugins = [option for file in files for option in ("--plugin", file)]
        self.command = [
            build / "bin/vesk-host", "--listen", "127.0.0.1:0", "--state-dir", folder / "vesk", "--audio", "null", "--log-level", "error", *plugins,
            "--connect-to", "opml.radiotime.com:80:" + directory.split("/")[2], "--set", "network:connected=true",
            "--set", "settings:tunein/partnerId=local"]
        if len(files) > 1:
            self.command += ["--set", "settings:radiobrowser/server=http://127.0.0.1:1"]
        self._address = None

    def wait_ready(self, process):
        self._address = address_of(process)

    def call(self, method, **params):
        request = urllib.request.Request(self._address + "jsonrpc", json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, "params": params}).encode(),
                                         {"Content-Type": "application/json"})
        with urllib.request.urlopen(request) as answer:
            return json.load(answer)["result"]

    def play(self, _uri):
        screen = "TuneIn:browse/uri/Search.ashx?query=jazz"
        self.call("getRows", path=screen, first=0, last=9)
        self.call("player.play", screen=screen, row=0)
        wait_for("sound of the host's", lambda: self.call("player.state")["state"] == 2)

    def stream(self):
        return self.call("player.state")["uri"]


class ByMpdProtocol:
    """MPD, and what speaks its protocol."""

    def __init__(self, name, command, place):
        self.name = name
        self.command = command
        self._place = place

    def _say(self, *lines):
        kind = socket.AF_UNIX if isinstance(self._place, str) else socket.AF_INET
        with socket.socket(kind) as client:
            client.connect(self._place)
            client.sendall("".join(f"{line}\n" for line in (*lines, "close")).encode())
            answer = b""
            while part := client.recv(4096):
                answer += part
        return answer.decode()

    def _answers(self):
        with contextlib.suppress(OSError):
            return "OK" in self._say("status")
        return False

    def wait_ready(self, _process):
        wait_for(f"answer of {self.name}", self._answers)

    def play(self, uri):
        self._say(f'add "{uri}"', "play")
        wait_for(f"sound of {self.name}", lambda: float((re.search(r"^elapsed: ([\d.]+)", self._say("status"), re.M) or [0, 0])[1]) > 0)


def mpd(folder):
    (folder / "music").mkdir()
    config = folder / "mpd.conf"
    config.write_text(f"""
        music_directory "{folder}/music"
        state_file "{folder}/mpd.state"
        log_file "{folder}/mpd.log"
        bind_to_address "{folder}/mpd.socket"
        zeroconf_enabled "no"
        audio_output {{
            type "null"
            name "null"
        }}
        """)
    return ByMpdProtocol("MPD", ["mpd", "--no-daemon", config], f"{folder}/mpd.socket")


def mopidy(system, folder):
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        port = free.getsockname()[1]
    options = {"audio/output": "fakesink sync=true", "mpd/port": port, "mpd/hostname": "127.0.0.1", "http/enabled": "false", "file/enabled": "false",
               "m3u/enabled": "false", "softwaremixer/enabled": "true", "core/cache_dir": "/tmp/cache", "core/data_dir": "/tmp/data"}
    words = [word for name, value in options.items() for word in ("--option", f"{name}={value}")]
    return ByMpdProtocol("Mopidy", [ROOT / "scripts/chroot", "run", system, "mopidy", "--quiet", *words], ("127.0.0.1", port))


def measure(player, uri, quota, seconds, ghz, clock):
    """Returns the address that was played."""
    process = subprocess.Popen(list(map(str, player.command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, preexec_fn=quota.enter)
    try:
        begin = time.monotonic()
        player.wait_ready(process)
        ready = time.monotonic() - begin
        started = cpu_seconds(process.pid)
        time.sleep(SETTLE_SECONDS)
        idle = megabytes(process.pid)
        before = cpu_seconds(process.pid)
        time.sleep(seconds)
        waiting = cpu_seconds(process.pid) - before
        player.play(uri)
        time.sleep(SETTLE_SECONDS)
        before, throttled = cpu_seconds(process.pid), quota.throttled()
        time.sleep(seconds)
        used = cpu_seconds(process.pid) - before
        playing = megabytes(process.pid)
        share = 100 * clock / ghz / seconds
        print(f"{player.name}: {idle:.1f} MB idle, {playing:.1f} MB playing; ready after {started:.2f} s of processor time ({ready:.1f} s); "
              f"idle {waiting * share:.2f} % and playing {used * share:.1f} % of a processor of {ghz:g} GHz, "
              f"quota used up {quota.throttled() - throttled} times in {seconds} s", flush=True)
        return uri or player.stream()
    finally:
        process.terminate()
        try:
            process.wait(SETTLE_SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()  # unshare(1) waits for Mopidy, and takes it along only this way
            process.wait()


def main():
    arguments = argparse.ArgumentParser(usage=__doc__)
    arguments.add_argument("build", type=pathlib.Path)
    arguments.add_argument("--mopidy", type=pathlib.Path)
    arguments.add_argument("--seconds", type=int, default=60)
    arguments.add_argument("--ghz", type=float, default=1)
    given = arguments.parse_args()
    build = given.build.resolve()
    clock = max(float(mhz) for mhz in re.findall(r"^cpu MHz\s*: ([\d.]+)", pathlib.Path("/proc/cpuinfo").read_text(), re.M)) / 1000
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        address = stack.enter_context(local_directory(build))
        quota = Quota(min(1, given.ghz / clock))
        stack.callback(quota.leave)
        print(f"processor 0 of {clock:.2f} GHz, {100 * min(1, given.ghz / clock):.0f} % of it", flush=True)
        uri = measure(Vesk(build, folder, address), None, quota, given.seconds, given.ghz, clock)
        uri = uri.replace("http://opml.radiotime.com/", address)
        print(f"the stream: {uri}", flush=True)
        for player in [mpd(folder), *([mopidy(given.mopidy.resolve(), folder)] if given.mopidy else [])]:
            measure(player, uri, quota, given.seconds, given.ghz, clock)


if __name__ == "__main__":
    sys.exit(main())
