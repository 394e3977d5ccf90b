#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""script.py BUILD: processor time that TuneIn's plug-in takes for a screen, beside a Python script that reads the same one.

The script gets the answer of the local directory over a connection that is kept, parses it and makes a dictionary of each row, with the
values that the page shows. The plug-in's time is that of its whole process, as it serves a client of the host.
"""

import contextlib
import http.client
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time

from server import WebSocket, started

ROUNDS = 300
SCREEN = "/Search.ashx?query=a"


def processor_seconds(pid):
    """Of all threads, with the kernel's nanoseconds."""
    tasks = pathlib.Path(f"/proc/{pid}/task").glob("*/schedstat")
    return sum(int(task.read_text().split()[0]) for task in tasks) / 1e9


def read_rows(connection, target):
    connection.request("GET", target)
    answer = json.loads(connection.getresponse().read())
    return [{"title": each["text"], "description": each.get("subtext"), "icon": each.get("image"), "type": each["type"], "url": each["URL"],
             "id": each.get("guide_id"), "bitrate": int(each.get("bitrate", 0)) * 1000, "genre": each.get("genre_id")} for each in answer["body"]
            if "URL" in each]


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    with contextlib.ExitStack() as stack:
        state = stack.enter_context(tempfile.TemporaryDirectory())
        log = pathlib.Path(state) / "requests"
        directory, _ = stack.enter_context(started(build / "bin/tunein-directory", "--listen", "127.0.0.1:0", "--request-log", log))
        address, process = stack.enter_context(started(
            build / "bin/vesk-host", "--listen", "127.0.0.1:0", "--state-dir", state, "--audio", "null",
            "--plugin", build / "lib/vesk/plugins/libvesk_cb_tunein.so", "--connect-to", "opml.radiotime.com:80:" + directory,
            "--set", "network:connected=true", "--set", "settings:tunein/partnerId=local"))
        host, port = address.split(":")
        plugin = int(subprocess.run(["pgrep", "-P", str(process.pid), "vesk-plugin"], capture_output=True, text=True, check=True).stdout)
        client = WebSocket(host, int(port))
        path = "TuneIn:browse/uri" + SCREEN
        shown = json.loads(client.call("getRows", path=path))["result"]["rowsCount"]
        target = re.findall(rf"GET ({re.escape(SCREEN)}\S*)", log.read_text())[-1]
        connection = http.client.HTTPConnection(directory)
        read = len(read_rows(connection, target))
        ours = theirs = 0
        for _ in range(ROUNDS):
            before = processor_seconds(plugin)
            client.call("getRows", path=path)
            ours += processor_seconds(plugin) - before
            before = time.process_time()
            read_rows(connection, target)
            theirs += time.process_time() - before
        print(f"a screen of {shown} rows ({read} by the script): plug-in {ours / ROUNDS * 1000:.2f} ms of processor time, "
              f"Python {theirs / ROUNDS * 1000:.2f} ms, ratio {ours / theirs:.2f}")


if __name__ == "__main__":
    main()
