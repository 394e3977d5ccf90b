#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""rooms.py BIN PLUGIN SCRIPT: a host that plays into Debian's Snapserver, and what its clients in two rooms then hear, in a network of the test's own."""

import array
import json
import operator
import os
import pathlib
import signal
import socket
import statistics
import subprocess
import sys
import threading
import time
import unittest

import house

RATE, FRAME = 48000, 4
STEP = 8  # recordings are compared at an eighth of that rate, which is finer than what is asked for
TRIES = 12
SONG = {"screen": "TuneIn:browse/uri/Search.ashx?query=trial%2001", "row": 0}


class Room:
    """A snapclient, and when each piece of what it plays came out, on the clock that all rooms share."""

    def __init__(self, programs, name, *arguments):
        self.pieces = []  # (seconds, bytes)
        self.lock = threading.Lock()
        process = programs.start(name, "snapclient", "--host", "127.0.0.1", "--hostID", name, "--player", "file:filename=stdout",
                                 "--mixer", "none", "--logsink", "stderr", *arguments)
        threading.Thread(target=self.record, args=[process.stdout], daemon=True).start()

    def record(self, output):
        descriptor = output.fileno()
        try:
            while data := os.read(descriptor, 1 << 16):
                with self.lock:
                    self.pieces.append((time.monotonic(), data))
        except (OSError, ValueError):
            pass  # closed at the end of the test

    def heard(self, seconds, end=None):
        """What came out in the seconds before \a end (the clock's; left out: now), as mono samples at RATE / STEP, and when the first of them came
        out. A piece can come late but not early: the earliest tells the time of all."""
        end = end or time.monotonic()
        with self.lock:
            pieces = [piece for piece in self.pieces if end - seconds <= piece[0] < end]
        begins, frames = [], 0
        for at, data in pieces:
            frames += len(data) // FRAME
            begins.append(at - frames / RATE)
        samples = array.array("h", b"".join(data for _, data in pieces))
        mono = list(map(operator.add, samples[0::2], samples[1::2]))
        sums = [mono[i::STEP] for i in range(STEP)]
        return [sum(group) / STEP for group in zip(*sums)], min(begins, default=0)

    def is_loud(self):
        samples, _ = self.heard(1)
        return len(samples) > RATE // STEP // 2 and all(loudness(samples[i:i + 800]) > 300 for i in range(0, len(samples) - 800, 800))


def loudness(samples):
    return (sum(x * x for x in samples) / max(1, len(samples))) ** 0.5


def delay(first, second, end, seconds=3.5):
    """By how many seconds the second room is behind the first, from where their recordings fit best; and how well they fit, up to 1."""
    (a, a_begins), (b, b_begins) = first.heard(seconds, end), second.heard(seconds, end)
    rate = RATE / STEP
    start, reach, length = int(0.6 * rate), int(0.15 * rate), int(2 * rate)
    piece = a[start:start + length]
    expected = start + round((a_begins - b_begins) * rate)
    places = range(max(0, expected - reach), min(len(b) - length, expected + reach))
    if len(piece) < length or not places:
        return 0, 0  # nothing to compare: an interruption
    best, place = max((sum(map(operator.mul, piece, b[at:at + length])), at) for at in places)
    fit = best / (loudness(piece) * loudness(b[place:place + length]) * length + 1)
    return (b_begins + place / rate) - (a_begins + start / rate), fit


class Snapserver:
    """With one stream."""

    def __init__(self, programs, source):
        self.programs, self.source = programs, source
        self.start()

    def start(self):
        data = self.programs.folder / "snapserver-data"
        data.mkdir(exist_ok=True)
        self.programs.start("snapserver", "snapserver", "--config", "/dev/null", "--server.datadir", data, "--stream.source", self.source,
                            "--http.enabled", "0", "--tcp.bind_to_address", "127.0.0.1", "--stream.bind_to_address", "127.0.0.1",
                            "--logging.sink", "stderr", environment={"HOME": str(data)})
        house.until(self.is_up, "Snapserver is up")

    def is_up(self):
        try:
            return bool(self.call("Server.GetRPCVersion"))
        except OSError:
            return False

    def end(self):
        self.programs.end("snapserver")

    def call(self, method, params=None):
        """Over TCP, a message a line. Notifications come in between."""
        message = {"id": 1, "jsonrpc": "2.0", "method": method} | ({"params": params} if params else {})
        with socket.create_connection(("127.0.0.1", 1705), house.PATIENCE) as connection, connection.makefile("rw") as lines:
            lines.write(json.dumps(message) + "\r\n")
            lines.flush()
            answer = next((answer for answer in map(json.loads, lines) if answer.get("id") == 1), None)
        if not answer or "error" in answer:
            raise AssertionError(f"{method}: {answer}")
        return answer["result"]

    def stream(self):
        (stream,) = self.call("Server.GetStatus")["server"]["streams"]
        return stream

    def properties(self):
        return self.stream().get("properties", {})


class Rooms(unittest.TestCase):
    def setUp(self):
        self.programs = self.enterContext(house.Programs())
        self.directory = self.programs.start_ready("directory", BIN / "tunein-directory", "--listen", "127.0.0.1:0").split("/")[2]
        self.hosts = subprocess.run([BIN / "tunein-directory", "--list-hosts"], check=True, capture_output=True, text=True).stdout.split()

    def start_host(self, output):
        url = house.vesk_host(
            self.programs, BIN, "--plugin", PLUGIN, "--listen", "127.0.0.1:8765", "--set", "network:connected=true",
            "--connect-to", f"opml.radiotime.com:80:{self.directory}",
            *(word for host in self.hosts for word in ("--connect-to", f"{host}:{self.directory}")), audio=output,
        )  # fmt: skip
        self.visitor = house.Visitor(("127.0.0.1", 8765), "127.0.0.1:8765")
        return url

    def play(self):
        self.visitor.call("player.play", SONG)
        self.wait_for_state(2)

    def state(self):
        return self.visitor.call("player.state")

    def wait_for_state(self, state):
        house.until(lambda: self.state()["state"] == state, f"state {state}, not {self.state()}")

    def room(self, name, *arguments):
        """Instead of an earlier one of that name."""
        if name in self.programs.running:
            self.programs.end(name)
        room = Room(self.programs, name, *arguments)
        house.until(room.is_loud, f"sound in the {name}")
        return room

    def behind(self, first, second):
        """By how many seconds the second room is behind: the middle one of some measurements; None if they do not hear the same. Compared
        afterwards, so that nothing is kept from being recorded."""
        time.sleep(3)  # in which clients get to know the server's clock
        begin = time.monotonic()
        time.sleep(13)
        measured = [delay(first, second, begin + at) for at in range(4, 14, 2)]
        print("ms behind, and the fit:", *(f"{1000 * each:.1f} ({fit:.2f})" for each, fit in measured), file=sys.stderr)
        fits = [each for each, fit in measured if fit > 0.9]
        return statistics.median(fits) if len(fits) > len(measured) / 2 else None

    def assert_behind(self, first, make_second, expected, within=0.005):
        """A client that is kept waiting when it begins is some milliseconds off, and stays so; no player has a part in that. Another one is tried then."""
        found = []
        for _ in range(TRIES):
            second = make_second()
            found.append(self.behind(first, second))
            if found[-1] is not None and abs(found[-1] - expected) < within:
                return second
        self.fail(f"{found} s behind, not {expected} (None: the rooms do not hear the same)")

    def two_rooms(self):
        """That are together."""
        kitchen = self.room("kitchen")
        return kitchen, self.assert_behind(kitchen, lambda: self.room("bath"), 0)

    def test_two_rooms_by_a_pipe_are_together(self):
        fifo = self.programs.folder / "fifo"
        self.start_host(f"pipe:{fifo}")
        server = Snapserver(self.programs, f"pipe://{fifo}?name=Vesk")
        self.play()
        rooms = self.two_rooms()
        self.assertEqual(server.stream()["status"], "playing")

        # What is measured is what is heard: a room that is late on purpose is found out, even if its client is off as well.
        self.assert_behind(rooms[0], lambda: self.room("cellar", "--instance", "2", "--latency", "-100"), 0.1, within=0.01)

        self.visitor.call("player.pause")
        house.until(lambda: not any(room.is_loud() for room in rooms), "silence in both rooms")
        self.visitor.call("player.resume")
        house.until(lambda: all(room.is_loud() for room in rooms), "sound in both rooms again")

    def test_two_rooms_by_tcp_are_together_also_after_the_server_was_away(self):
        self.start_host("tcp:localhost:4953")
        self.play()
        server = Snapserver(self.programs, "tcp://127.0.0.1:4953?name=Vesk&mode=server")
        rooms = self.two_rooms()
        server.end()
        house.until(lambda: not any(room.is_loud() for room in rooms), "silence without the server")
        self.assertEqual(self.state()["state"], 2)
        server.start()
        house.until(lambda: all(room.is_loud() for room in rooms), "sound in both rooms again")

    def test_snapcast_shows_what_plays_and_its_buttons_work(self):
        fifo = self.programs.folder / "fifo"
        # Snapserver is there before the host.
        server = Snapserver(self.programs, f"pipe://{fifo}?name=Vesk&controlscript={SCRIPT}")
        house.until(lambda: server.properties().get("canControl"), "the plug-in is there")
        self.assertEqual(server.properties()["playbackStatus"], "stopped")
        self.start_host(f"pipe:{fifo}")
        self.play()
        status = lambda wanted: house.until(lambda: server.properties().get("playbackStatus") == wanted, f"{wanted}, not {server.properties()}")
        status("playing")
        house.until(lambda: server.properties()["metadata"].get("title"), "a title")
        properties, state = server.properties(), self.state()
        self.assertIn(state["title"], (properties["metadata"]["title"], properties["metadata"].get("album")))
        self.assertEqual(properties["metadata"]["url"], state["uri"])
        self.assertTrue(properties["canPause"])
        self.assertFalse(properties["canPlay"])

        control = lambda command, **params: server.call("Stream.Control", {"id": "Vesk", "command": command, "params": params})
        control("pause")
        self.wait_for_state(3)
        status("paused")
        control("play")
        self.wait_for_state(2)
        status("playing")
        control("playPause")
        self.wait_for_state(3)
        with self.assertRaises(AssertionError):
            control("next")  # there are no presets
        control("stop")
        self.wait_for_state(0)
        status("stopped")
        self.assertEqual(server.properties()["metadata"], {})

        self.programs.end("host")
        self.programs.running.pop("host", None)
        house.until(lambda: "vesk-host" in self.programs.log("snapserver").read_text(), "the end of the host is logged")
        self.start_host(f"pipe:{fifo}")
        self.play()
        status("playing")

    def test_a_fifo_that_nobody_reads_holds_nothing_up(self):
        fifo = self.programs.folder / "fifo"
        self.start_host(f"pipe:{fifo}")
        self.play()
        house.until(lambda: "Nobody reads" in self.state()["outputProblem"], "that nobody reads is told")
        # Somebody who opens it and reads nothing.
        idle = os.open(fifo, os.O_RDONLY | os.O_NONBLOCK)
        time.sleep(3)
        self.assertEqual(self.state()["state"], 2)
        # What came late is gone: the reader gets what is played now, in real time.
        os.set_blocking(idle, True)
        os.read(idle, 1 << 16)
        house.until(lambda: not self.state()["outputProblem"], "that somebody reads is told")
        self.assertEqual(self.programs.log("host").read_text().count("Nobody reads"), 1)
        begin, size = time.monotonic(), 0
        while time.monotonic() - begin < 3:
            size += len(os.read(idle, 1 << 16))
        seconds = size / FRAME / RATE
        self.assertGreater(seconds, 2.5)
        self.assertLess(seconds, 3.8)
        os.close(idle)
        began = time.monotonic()
        self.visitor.call("player.stop")
        self.wait_for_state(0)
        self.assertLess(time.monotonic() - began, 3)
        self.assertEqual(self.programs.end("host"), 0)

    def test_a_name_server_that_hangs_holds_nobody_up(self):
        silent = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(silent.close)
        silent.bind(("127.0.0.1", 53))
        config = self.programs.folder / "resolv.conf"
        config.write_text("nameserver 127.0.0.1\noptions timeout:30 attempts:1\n")
        subprocess.run(["mount", "--bind", config, "/etc/resolv.conf"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/etc/resolv.conf"], check=True)
        self.start_host("tcp:music.example:4953")
        self.play()
        self.assertTrue(silent.recv(4096), "the name is looked for")
        began = time.monotonic()
        self.assertEqual(self.state()["state"], 2)
        self.visitor.call("player.stop")
        self.wait_for_state(0)
        self.assertEqual(self.programs.end("host"), 0)
        self.assertLess(time.monotonic() - began, 5)


if __name__ == "__main__":
    house.enter()
    BIN, PLUGIN, SCRIPT = pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1), sys.argv.pop(1)
    unittest.main(verbosity=2)
