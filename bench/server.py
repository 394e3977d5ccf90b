#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""server.py BUILD: measures the HTTP and WebSocket server of a build folder's host, which has TuneIn's plug-in and the local directory.

Memory (PSS of the host's process) ten seconds after the start and with open WebSockets; how long getRows takes over one.
With --paired the host listens on an address beyond loopback as well, in a network namespace of its own, and the WebSockets are those
of a paired device, over TLS.
"""

import argparse
import base64
import contextlib
import http.client
import json
import os
import pathlib
import re
import resource
import socket
import ssl
import statistics
import struct
import subprocess
import sys
import tempfile
import time

ROUNDS = 500
UNMEASURED = 50
SETTLE_SECONDS = 10
LOOPBACK_SOCKETS = 60
SCREENS = {"host:services": "host:services", "a list of TuneIn": "TuneIn:browse/uri/Search.ashx?query=a"}
BEYOND = "10.0.0.1"  # an address of the namespace
CLIENTS_PER_ADDRESS = 10


@contextlib.contextmanager
def started(*command):
    """The address with which a program says that it is up, and its process."""
    process = subprocess.Popen(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        line = process.stdout.readline()
        address = re.search(r"https?://([^/]*)/", line)
        if not address:
            sys.exit(f"{command[0]} did not start: {line}")
        yield address.group(1), process
    finally:
        process.terminate()
        process.wait()


class WebSocket:
    """A client that does no more than it has to, so that the host is what is measured."""

    def __init__(self, host, port, token=None, source=None, path="/ws"):
        self._socket = socket.create_connection((host, port), 30, (source, 0) if source else None)
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        if token:
            self._socket = CLIENT_TLS.wrap_socket(self._socket)
        self._bytes = b""
        headers = [f"GET {path} HTTP/1.1", f"Host: {host}:{port}", "Upgrade: websocket", "Connection: Upgrade",
                   "Sec-WebSocket-Version: 13", "Sec-WebSocket-Key: " + base64.b64encode(os.urandom(16)).decode()]
        headers += [f"Authorization: Bearer {token}"] if token else []
        self._socket.sendall(("\r\n".join(headers) + "\r\n\r\n").encode())
        head = self._until(b"\r\n\r\n")
        if not head.startswith(b"HTTP/1.1 101 "):
            raise OSError(head.split(b"\r\n")[0].decode())

    def call(self, method, **params):
        message = json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, "params": params}).encode()
        length = bytes([0x80 | len(message)]) if len(message) < 126 else struct.pack(">BH", 0x80 | 126, len(message))
        self._socket.sendall(b"\x81" + length + b"\0\0\0\0" + message)
        while True:
            opcode, payload = self._frame()
            # Notifications have no id.
            if opcode == 1 and b'"id"' in payload:
                return payload

    def is_open(self):
        self._socket.settimeout(0)
        try:
            return bool(self._socket.recv(4096))
        except (BlockingIOError, ssl.SSLWantReadError):
            return True
        except OSError:
            return False

    def close(self):
        self._socket.close()

    def _receive(self):
        received = self._socket.recv(65536)
        if not received:
            raise OSError("the host closed the connection")
        self._bytes += received

    def _until(self, end):
        while end not in self._bytes:
            self._receive()
        head, self._bytes = self._bytes.split(end, 1)
        return head

    def _take(self, count):
        while len(self._bytes) < count:
            self._receive()
        taken, self._bytes = self._bytes[:count], self._bytes[count:]
        return taken

    def _frame(self):
        first, length = self._take(2)
        if length == 126:
            length, = struct.unpack(">H", self._take(2))
        elif length == 127:
            length, = struct.unpack(">Q", self._take(8))
        return first & 15, self._take(length)


CLIENT_TLS = ssl.create_default_context()
CLIENT_TLS.check_hostname = False  # the host's certificate is of its own making
CLIENT_TLS.verify_mode = ssl.CERT_NONE


def memory(process):
    """In KB, each shared page divided among those that share it."""
    rollup = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text()
    return int(re.search(r"^Pss:\s+(\d+)", rollup, re.M).group(1))


def latencies(websocket, label):
    for name, path in SCREENS.items():
        size = len(websocket.call("getRows", path=path))
        times = []
        for _ in range(ROUNDS):
            begin = time.perf_counter()
            websocket.call("getRows", path=path)
            times.append((time.perf_counter() - begin) * 1000)
        times = sorted(times[UNMEASURED:])
        print(f"getRows of {name}, {label}, {size} bytes: p50 {statistics.median(times):.3f} ms, p99 {times[len(times) * 99 // 100]:.3f} ms")


def open_all(count, opened, process, label):
    """The memory that so many more WebSockets take."""
    before = memory(process)
    begin = time.perf_counter()
    sockets = [opened(i) for i in range(count)]
    seconds = time.perf_counter() - begin
    time.sleep(SETTLE_SECONDS)
    after = memory(process)
    still = sum(each.is_open() for each in sockets)
    print(f"{still} of {count} WebSockets open, {label}: {after / 1000:.2f} MB, {(after - before) / count:.1f} KB each, opened in {seconds:.1f} s")
    for each in sockets:
        each.close()


def pair(loopback, port):
    """The token of a device that was paired just now."""
    started_pairing = json.loads(loopback.call("pairing.start", role="owner"))
    connection = http.client.HTTPSConnection(BEYOND, port, context=CLIENT_TLS)
    body = json.dumps({"code": started_pairing["result"]["code"], "name": "bench", "bearer": True})
    connection.request("POST", "/pair", body, {"Content-Type": "application/json"})
    answer = connection.getresponse()
    if answer.status != 200:
        sys.exit(f"pairing failed: {answer.status} {answer.read()}")
    return json.loads(answer.read())["token"]


def measure(build, paired):
    with contextlib.ExitStack() as stack:
        state = stack.enter_context(tempfile.TemporaryDirectory())
        directory, _ = stack.enter_context(started(build / "bin/tunein-directory", "--listen", "127.0.0.1:0"))
        listen = ["--listen", "127.0.0.1:0"]
        if paired:
            listen = ["--listen", "127.0.0.1:8765", "--listen", f"{BEYOND}:8765", "--connections", paired + 2 * LOOPBACK_SOCKETS]
        address, process = stack.enter_context(started(
            build / "bin/vesk-host", *listen, "--state-dir", state, "--audio", "null",
            "--plugin", build / "lib/vesk/plugins/libvesk_cb_tunein.so", "--connect-to", "opml.radiotime.com:80:" + directory,
            "--set", "network:connected=true", "--set", "settings:tunein/partnerId=local"))
        host, port = address.split(":")
        time.sleep(SETTLE_SECONDS)
        print(f"idle, no client: {memory(process) / 1000:.2f} MB")
        loopback = WebSocket(host, int(port))
        for _ in range(2):
            latencies(loopback, "loopback")
        open_all(LOOPBACK_SOCKETS, lambda _: WebSocket(host, int(port)), process, "loopback")
        if not paired:
            return
        token = pair(loopback, int(port))
        remote = WebSocket(BEYOND, int(port), token)
        for _ in range(2):
            latencies(remote, "paired, TLS")
        open_all(paired, lambda i: WebSocket(BEYOND, int(port), token, f"10.0.{1 + i // 2500}.{1 + i // CLIENTS_PER_ADDRESS % 250}"), process, "paired, TLS")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("build", type=lambda folder: pathlib.Path(folder).resolve())
    parser.add_argument("--paired", type=int, default=0, metavar="COUNT", help="measure this many WebSockets of a paired device")
    parser.add_argument("--in-namespace", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.paired and not options.in_namespace:
        os.execvp("unshare", ["unshare", "-rn", sys.executable, *sys.argv, "--in-namespace"])
    if options.in_namespace:
        # Every address of 10.0.0.0/16 is this machine's.
        for command in ("link set lo up", "route add local 10.0.0.0/16 dev lo"):
            subprocess.run(["ip", *command.split()], check=True)
    _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
    measure(options.build, options.paired)


if __name__ == "__main__":
    main()
