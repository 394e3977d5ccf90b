#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""services.py BUILD: measures the host with all plug-ins of a build folder, each in a process of its own.

A search in Radio Browser, among 20,000 stations of its stand-in, beside one in TuneIn whose answer has the same size; and what the idle
host and its processes take: memory, each shared page counted once, and context switches in a minute.
"""

import contextlib
import json
import pathlib
import random
import re
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request

ROUNDS = 120
STATIONS = 20_000
IDLE_SECONDS = 60
ALL_ROWS = 999


@contextlib.contextmanager
def started(*command):
    """The address with which a program says that it is up, and its process."""
    process = subprocess.Popen(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        line = process.stdout.readline()
        address = re.search(r"https?://[^/]*/", line)
        if not address:
            sys.exit(f"{command[0]} did not start: {line}")
        yield address.group(), process
    finally:
        process.terminate()
        process.wait()


def fetch(url):
    with urllib.request.urlopen(url) as answer:
        return answer.read()


def rows(host, path, last):
    params = {"path": path, "first": 0, "last": last, "refresh": True}
    call = {"jsonrpc": "2.0", "id": 1, "method": "getRows", "params": params}
    request = urllib.request.Request(host + "jsonrpc", json.dumps(call).encode(), {"Content-Type": "application/json"})
    with urllib.request.urlopen(request) as answer:
        return json.load(answer)["result"]["rows"]


def median_ms(works):
    """The median of each piece of work, interleaved in random order."""
    times = [[] for _ in works]
    for _ in range(ROUNDS):
        for i in random.sample(range(len(works)), len(works)):
            begin = time.perf_counter()
            works[i]()
            times[i].append(time.perf_counter() - begin)
    return [statistics.median(each) * 1000 for each in times]


def search(host, tunein, radiobrowser):
    size = len(fetch(tunein + "Search.ashx?render=json&query=a&formats=mp3,aac,ogg,hls,opus,flac"))
    order = "order=clickcount&reverse=true&hidebroken=true"
    count = 1
    while len(fetch(f"{radiobrowser}json/stations/search?name=a&{order}&limit={count}")) < size:
        count += 1
    theirs, ours = "TuneIn:browse/uri/Search.ashx?query=a", "RadioBrowser:stations?name=a"
    if len(rows(host, ours, count - 1)) != count or not rows(host, theirs, ALL_ROWS):
        sys.exit("A search finds too little.")
    floor, measured = median_ms([lambda: rows(host, theirs, ALL_ROWS), lambda: rows(host, ours, count - 1)])
    print(f"search of {size // 1000} KB, p50: Radio Browser {measured:.1f} ms, TuneIn {floor:.1f} ms, ratio {measured / floor:.2f}")


def switches(pid):
    tasks = pathlib.Path(f"/proc/{pid}/task").glob("*/status")
    return sum(int(n) for task in tasks for n in re.findall(r"voluntary_ctxt_switches:\s+(\d+)", task.read_text()))


def idle(process):
    children = subprocess.run(["pgrep", "-P", str(process.pid)], capture_output=True, text=True).stdout.split()
    rollups = [pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text() for pid in children + [process.pid]]
    sizes = [int(re.search(r"^Pss:\s+(\d+)", text, re.M).group(1)) / 1000 for text in rollups]
    before = [switches(pid) for pid in children]
    time.sleep(IDLE_SECONDS)
    woken = sum(switches(pid) for pid in children) - sum(before)
    print(f"{len(children)} plug-in processes {sum(sizes[:-1]):.1f} MB, the host {sizes[-1]:.1f} MB; "
          f"the former switched {woken} times in {IDLE_SECONDS} s")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    data = pathlib.Path(__file__).resolve().parent.parent / "src/radiodirectory/data/stations.json"
    with contextlib.ExitStack() as stack:
        state = stack.enter_context(tempfile.TemporaryDirectory())
        tunein, _ = stack.enter_context(started(build / "bin/tunein-directory", "--listen", "127.0.0.1:0"))
        radiobrowser, _ = stack.enter_context(
            started(build / "bin/radiobrowser-directory", "--port", 0, "--stations", STATIONS, "--data", data))
        plugins = [option for file in sorted((build / "lib/vesk/plugins").glob("*.so")) for option in ("--plugin", file)]
        host, process = stack.enter_context(started(
            build / "bin/vesk-host", "--listen", "127.0.0.1:0", "--state-dir", state, "--audio", "null", *plugins,
            "--connect-to", "opml.radiotime.com:80:" + tunein.split("/")[2], "--set", "network:connected=true",
            "--set", "settings:tunein/partnerId=local", "--set", "settings:radiobrowser/server=" + radiobrowser))
        search(host, tunein, radiobrowser)
        idle(process)


if __name__ == "__main__":
    main()
