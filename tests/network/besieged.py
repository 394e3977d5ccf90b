# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""A host in a house's network, and another machine there that means it ill: a second network namespace, joined to the host's by a wire."""

import concurrent.futures
import contextlib
import ctypes
import json
import os
import pathlib
import re
import socket
import ssl
import struct
import subprocess
import sys
import time
import unittest

import house

PORT = 8765
ADDRESS, ADDRESS6 = "10.77.0.1", "fd77::1"
NAME = f"{ADDRESS}:{PORT}"
INTRUDER, INTRUDER6 = "10.77.0.2", "fd77::2"
# What an intruder would change, and to what.
SETTING, STOLEN = "settings:ui/language", "fr-FR"
CHANGE = {"jsonrpc": "2.0", "id": 1, "method": "setData", "params": {"path": SETTING, "role": "value", "value": STOLEN}}
CHANGE_BODY = json.dumps(CHANGE).encode()
JSON = b"Content-Type: application/json\r\n"
CLONE_NEWNET = 0x40000000
# What a client gets whose connection was ended.
GONE = (ConnectionError, ssl.SSLError)


class Machine:
    """Another machine on the wire. Its sockets are opened by a thread that is in its namespace, and may be used by any."""

    def __init__(self):
        self._holder = subprocess.Popen(["unshare", "--net", "sleep", "infinity"])
        namespace = pathlib.Path(f"/proc/{self._holder.pid}/ns/net")
        own = os.readlink("/proc/self/ns/net")
        house.until(lambda: os.readlink(namespace) != own, "a second namespace")
        house.ip("link", "add", "house", "type", "veth", "peer", "name", "wire", "netns", str(self._holder.pid))
        for words in (f"address add {ADDRESS}/16 dev house", f"address add {ADDRESS6}/64 dev house nodad", "link set house up"):
            house.ip(*words.split())
        self._open = concurrent.futures.ThreadPoolExecutor(1, initializer=self._enter, initargs=(namespace,))
        # All of 10.77.1.0/24 is this machine's, too.
        for words in ("link set lo up", f"address add {INTRUDER}/16 dev wire", f"address add {INTRUDER6}/64 dev wire nodad", "link set wire up",
                      "route add local 10.77.1.0/24 dev lo"):  # fmt: skip
            self.run(["ip", *words.split()])

    @staticmethod
    def _enter(namespace):
        with open(namespace, "rb") as file:
            if ctypes.CDLL(None, use_errno=True).setns(file.fileno(), CLONE_NEWNET) != 0:
                raise OSError(ctypes.get_errno(), "setns")

    def run(self, command):
        return self._open.submit(subprocess.run, command, check=True, capture_output=True, text=True).result().stdout

    def connect(self, to=(ADDRESS, PORT), source=None, patience=house.PATIENCE):
        return self._open.submit(socket.create_connection, to, patience, (source, 0) if source else None).result()

    def do(self, work, *arguments):
        return self._open.submit(work, *arguments).result()

    def end(self):
        self._open.shutdown()
        self._holder.kill()
        self._holder.wait()


class Visitor(house.Visitor):
    """A client on the other machine."""

    def __init__(self, machine, to=(ADDRESS, PORT), name=NAME, tls=None, address=None, token=None):
        super().__init__(to, name, tls, address, {"Authorization": f"Bearer {token}"} if token else {})
        self.machine = machine

    def connect(self):
        plain = self.machine.connect(self.to, self.address)
        return self.tls.wrap_socket(plain, server_hostname=self.name.rsplit(":", 1)[0]) if self.tls else plain


def everything(connection, patience=house.PATIENCE):
    """What comes until the host closes the connection."""
    connection.settimeout(patience)
    received = b""
    with contextlib.suppress(*GONE):
        while some := connection.recv(65536):
            received += some
    return received


def statuses(received):
    """Of each response in the bytes; interim ones are left out."""
    found = []
    while received:
        head, _, rest = received.partition(b"\r\n\r\n")
        match = re.match(rb"HTTP/1\.1 (\d{3}) ", head)
        if not match:
            raise AssertionError(f"no response: {received[:200]}")
        status = int(match[1])
        if status >= 200:
            found.append(status)
        length = re.search(rb"(?i)\r\ncontent-length: (\d+)", head)
        received = rest[int(length[1]) if length and status >= 200 else 0 :]
    return found


def frame(opcode, payload, final=True, masked=True):
    """A WebSocket's frame (RFC 6455, section 5.2); the mask is 0."""
    size, mask = len(payload), 0x80 if masked else 0
    length = bytes([mask | size]) if size < 126 else struct.pack("!BH", mask | 126, size) if size < 65536 else struct.pack("!BQ", mask | 127, size)
    return bytes([opcode | (0x80 if final else 0)]) + length + (b"\0\0\0\0" if masked else b"") + payload


def end_of(websocket, patience=house.PATIENCE):
    """The code with which the host closes it, or None when it ends without one."""
    websocket.socket.settimeout(patience)
    try:
        while True:
            websocket.message()
    except EOFError as end:
        code = re.search(r"closed: ([0-9a-f]{4})", str(end))
        return int(code[1], 16) if code else None
    except GONE:
        return None


class Siege(unittest.TestCase):
    """One host for all tests of a class, at loopback and at two addresses of the house, with TuneIn's plug-in and the local directory."""

    BIN = PLUGIN = None  # of the command line
    ARGUMENTS = ()

    @classmethod
    def setUpClass(cls):
        cls.programs = cls.enterClassContext(house.Programs())
        cls.machine = Machine()
        cls.addClassCleanup(cls.machine.end)
        directory = cls.programs.start_ready("directory", cls.BIN / "tunein-directory", "--listen", "127.0.0.1:0").split("/")[2]
        house.vesk_host(cls.programs, cls.BIN, "--listen", f"127.0.0.1:{PORT}", "--listen", NAME, "--listen", f"[{ADDRESS6}]:{PORT}",
                        "--plugin", cls.PLUGIN, "--connect-to", f"opml.radiotime.com:80:{directory}", "--set", "network:connected=true",
                        "--set", "settings:tunein/partnerId=local", *cls.ARGUMENTS)  # fmt: skip
        cls.anybody = house.trust_anybody()
        cls.owner = house.Visitor(("127.0.0.1", PORT), f"127.0.0.1:{PORT}")
        cls.tokens = {role: cls.pair(role)["token"] for role in ("listener", "owner")}

    def run(self, result=None):
        """Shows what the host has logged meanwhile, when the test fails."""
        before, logged = len(result.failures) + len(result.errors), len(self.log())
        super().run(result)
        if len(result.failures) + len(result.errors) > before:
            print(f"--- host.log\n{self.log()[logged:][-8000:]}", file=sys.stderr)
        return result

    @classmethod
    def pair(cls, role, address=None):
        """Pairs a device; what the host answered it: "token" and "device"."""
        code = cls.owner.call("pairing.start", {"role": role})["code"]
        response = cls.stranger(address=address).request("POST", "/pair", {"code": code, "name": f"a {role}", "bearer": True})
        if response.status != 200:
            raise AssertionError(f"pairing: {response.status} {response.content}")
        return json.loads(response.content)

    @classmethod
    def stranger(cls, **arguments):
        """Over TLS."""
        return Visitor(cls.machine, **{"tls": cls.anybody} | arguments)

    @classmethod
    def paired(cls, role="owner", **arguments):
        return cls.stranger(token=cls.tokens[role], **arguments)

    @classmethod
    def setting(cls):
        """What it is now."""
        return cls.owner.call("getData", {"path": SETTING, "roles": ["value"]})["values"][0]["string_"]

    @classmethod
    def log(cls):
        return cls.programs.log("host").read_text(errors="replace")

    @classmethod
    def raw(cls, data, tls=True, patience=house.PATIENCE):
        """What the host answers to these bytes until it closes the connection."""
        with contextlib.closing(cls.stranger(tls=cls.anybody if tls else None).connect()) as connection:
            with contextlib.suppress(*GONE):
                connection.sendall(data)
            return everything(connection, patience)

    def served(self, patience=10.0):
        """Fails unless a program on this machine and a paired device get their answers now."""
        for visitor in (self.owner, self.paired()):
            begin = time.monotonic()
            visitor.call("getRows", {"path": "host:services"})
            self.assertLess(time.monotonic() - begin, patience)


def main(arguments):
    """BIN PLUGIN [tests...]"""
    Siege.BIN, Siege.PLUGIN = pathlib.Path(arguments[1]), pathlib.Path(arguments[2])
    house.enter()
    unittest.main(argv=[arguments[0], *arguments[3:]], verbosity=2)
