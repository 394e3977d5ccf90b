#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""What plays on vesk-host, and its buttons, for Snapcast: a stream plug-in, which Snapserver starts for a stream with controlscript=meta_vesk.py.

Both sides speak JSON-RPC: Snapserver a message a line over standard input and output, the host over HTTP and a WebSocket. The host is at the address
of --url or, because Snapserver 0.26 gives no arguments, of VESK_URL; it has to be on the same machine, where no pairing is needed."""

import argparse
import http.client
import json
import os
import sys
import threading
import time
import urllib.parse

import websocket

MAX_LINE = 1 << 20
MAX_ANSWER = 1 << 20
PATIENCE = 10  # seconds for an answer
MAX_WAIT = 10  # seconds between two attempts to reach the host
PLAYING, PAUSED = 2, 3
STATUS = {0: "stopped", 1: "playing", 2: "playing", 3: "paused"}


class HostError(Exception):
    pass


class Refused(Exception):
    def __init__(self, code, message):
        super().__init__(message)
        self.code = code


class Host:
    """The host's methods. Any thread."""

    def __init__(self, url):
        self.url = urllib.parse.urlsplit(url)
        if self.url.scheme != "http" or not self.url.hostname:
            raise ValueError(f"{url}: not an http address")

    def call(self, method, params=None):
        """The method's result; raises HostError with words."""
        message = json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, "params": params or {}})
        connection = http.client.HTTPConnection(self.url.hostname, self.url.port, timeout=PATIENCE)
        try:
            connection.request("POST", self.url.path.rstrip("/") + "/jsonrpc", message, {"Content-Type": "application/json"})
            answer = json.loads(connection.getresponse().read(MAX_ANSWER))
        except (OSError, http.client.HTTPException, ValueError) as problem:
            raise HostError(f"vesk-host at {self.url.netloc}: {problem}") from problem
        finally:
            connection.close()
        if not isinstance(answer, dict) or not isinstance(answer.get("result"), dict):
            error = answer.get("error") if isinstance(answer, dict) else None
            raise HostError(str(error.get("message")) if isinstance(error, dict) else "vesk-host sent no result")
        return answer["result"]

    def notifications(self):
        """Yields "connected", then the notifications, until the connection is lost."""
        address = self.url._replace(scheme="ws", path=self.url.path.rstrip("/") + "/ws").geturl()
        # What plays is not asked of a proxy. The host that is silent for long is asked whether it is there.
        connection = websocket.create_connection(address, timeout=30, suppress_origin=True, http_no_proxy=["*"])
        try:
            yield {"method": "connected"}
            while True:
                try:
                    text = connection.recv()
                except websocket.WebSocketTimeoutException:
                    connection.ping()
                    continue
                if not text:
                    return
                message = json.loads(text)
                if isinstance(message, dict):
                    yield message
        finally:
            connection.close()


def number(value):
    """A finite number that is no truth value; else None."""
    is_number = isinstance(value, (int, float)) and not isinstance(value, bool)
    return value if is_number and abs(value) < float("inf") else None


def text(value):
    return value if isinstance(value, str) else ""


def metadata(state):
    """What plays, under the names that Snapcast took from MPRIS."""
    title, on_air = text(state.get("title")), text(state.get("streamTitle"))
    artist, dash, track = on_air.partition(" - ")
    shown = {
        "trackId": text(state.get("path")),
        "title": (track if dash else on_air) or title,
        "artist": [artist] if dash and artist else [],
        # A station where others have an album, so that clients show it.
        "album": title if on_air else text(state.get("description")),
        "artUrl": text(state.get("icon")) if text(state.get("icon")).startswith(("http://", "https://")) else "",
        "url": text(state.get("uri")),
        "duration": number(state.get("duration")),
    }
    return {name: value for name, value in shown.items() if value}


def properties(state, presets):
    """The state of the host's player as properties of a Snapcast stream."""
    now = state.get("state")
    plays = now in (1, 2, 3)
    shown = {
        "playbackStatus": STATUS.get(now if isinstance(now, int) else 0, "stopped"),
        "loopStatus": "none",
        "shuffle": False,
        "rate": 1.0,
        "canGoNext": presets > 0,
        "canGoPrevious": presets > 0,
        "canPlay": now == PAUSED,
        "canPause": now in (1, PLAYING),
        "canSeek": plays and state.get("seekable") is True,
        "canControl": True,
        "metadata": metadata(state) if plays else {},
    }
    if number(state.get("volume")) is not None:
        shown["volume"] = int(state["volume"])
    if isinstance(state.get("mute"), bool):
        shown["mute"] = state["mute"]
    if plays and number(state.get("position")) is not None:
        shown["position"] = float(state["position"])
    return shown


class Stream:
    """Between the two. What comes from Snapserver is handled on the main thread, what comes from the host on another."""

    def __init__(self, host, output):
        self.host = host
        self.output = output
        self.writing = threading.Lock()
        self.told = None

    def send(self, message):
        with self.writing:
            self.output.write(json.dumps({"jsonrpc": "2.0"} | message) + "\n")
            self.output.flush()

    def log(self, severity, words):
        self.send({"method": "Plugin.Stream.Log", "params": {"severity": severity, "message": words}})

    # From the host.

    def presets(self):
        """The numbers of those that are taken; none on a host that has no presets."""
        try:
            entries = self.host.call("presets.list").get("presets")
        except HostError:
            return []
        entries = entries if isinstance(entries, list) else []
        return sorted(entry["number"] for entry in entries if isinstance(entry, dict) and isinstance(entry.get("number"), int))

    def properties(self):
        return properties(self.host.call("player.state"), len(self.presets()))

    def tell(self):
        """Tells Snapserver what is, if it does not know."""
        now = self.properties()
        if now != self.told:
            self.told = now
            self.send({"method": "Plugin.Stream.Player.Properties", "params": now})

    def follow(self):
        wait = 1
        while True:
            try:
                for message in self.host.notifications():
                    wait = 1
                    if message.get("method") in ("connected", "player.changed", "presets.changed"):
                        self.tell()
                problem = "the connection has ended"
            except (OSError, HostError, ValueError, websocket.WebSocketException) as error:
                problem = str(error)
            if self.told != {}:
                # Told once, and that nothing is known any more.
                self.log("warning", f"vesk-host: {problem}")
                self.told = {}
                self.send({"method": "Plugin.Stream.Player.Properties", "params": properties({}, 0)})
            time.sleep(wait)
            wait = min(2 * wait, MAX_WAIT)

    # From Snapserver.

    def control(self, params):
        command, given = params.get("command"), params.get("params")
        given = given if isinstance(given, dict) else {}
        simple = {"play": "player.resume", "pause": "player.pause", "stop": "player.stop"}
        if command in simple:
            self.host.call(simple[command])
        elif command == "playPause":
            paused = self.host.call("player.state").get("state") == PAUSED
            self.host.call("player.resume" if paused else "player.pause")
        elif command in ("next", "previous"):
            self.step(1 if command == "next" else -1)
        elif command == "seek" and number(given.get("offset")) is not None:
            self.host.call("player.seek", {"offset": given["offset"]})
        elif command == "setPosition" and number(given.get("position")) is not None:
            self.host.call("player.seek", {"position": given["position"]})
        else:
            raise Refused(-32602, "unknown command, or one without its parameter")

    def step(self, direction):
        """To the preset after or before the one that plays; else to the first or the last."""
        entries = [entry for entry in self.host.call("presets.list").get("presets") or [] if isinstance(entry, dict)]
        if not entries:
            raise HostError("There are no presets.")
        path = self.host.call("player.state").get("path")
        places = [place for place, entry in enumerate(entries) if entry.get("path") == path]
        place = (places[0] + direction) % len(entries) if places else (0 if direction > 0 else -1)
        self.host.call("presets.play", {"number": entries[place].get("number")})

    def set_property(self, params):
        for name, value in params.items():
            if name == "volume" and number(value) is not None:
                self.host.call("player.volume", {"volume": max(0, min(100, round(value)))})
            elif name == "mute" and isinstance(value, bool):
                self.host.call("player.volume", {"mute": value})
            else:
                raise Refused(-32602, f"the property {name[:40]} cannot be set")

    def answer(self, request):
        method, params = request.get("method"), request.get("params")
        params = params if isinstance(params, dict) else {}
        if method == "Plugin.Stream.Player.GetProperties":
            try:
                return self.properties()
            except HostError:
                return properties({}, 0)  # the host may come yet
        if method == "Plugin.Stream.Player.Control":
            self.control(params)
        elif method == "Plugin.Stream.Player.SetProperty":
            self.set_property(params)
        else:
            raise Refused(-32601, "unknown method")
        return "ok"

    def handle(self, line):
        try:
            request = json.loads(line)
        except ValueError:
            return self.send({"id": None, "error": {"code": -32700, "message": "not JSON"}})
        if not isinstance(request, dict):
            return self.send({"id": None, "error": {"code": -32600, "message": "not a request"}})
        reply = {"id": request.get("id")}
        try:
            reply["result"] = self.answer(request)
        except HostError as problem:
            reply["error"] = {"code": -32000, "message": str(problem)}
        except Refused as problem:
            reply["error"] = {"code": problem.code, "message": str(problem)}
        if "id" in request:
            self.send(reply)

    def run(self, requests):
        """Until Snapserver closes its end."""
        threading.Thread(target=self.follow, name="host", daemon=True).start()
        self.send({"method": "Plugin.Stream.Ready"})
        while line := requests.readline(MAX_LINE):
            if line.strip():
                self.handle(line)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--url", default=os.environ.get("VESK_URL", "http://127.0.0.1:8765/"), help="where the host is (%(default)s)")
    # What Snapserver says of itself is not needed; later versions say more.
    arguments, _ = parser.parse_known_args()
    try:
        host = Host(arguments.url)
    except ValueError as problem:
        parser.error(str(problem))
    Stream(host, sys.stdout).run(sys.stdin)


if __name__ == "__main__":
    main()
