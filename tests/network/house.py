# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""A house's network inside this machine, for tests: a namespace with addresses of its own, from which nothing gets out, programs in it, and clients
that come from the address that the test chooses."""

import base64
import contextlib
import hashlib
import http.client
import ipaddress
import json
import os
import pathlib
import re
import signal
import socket
import ssl
import struct
import subprocess
import sys
import tempfile
import time

PATIENCE = 60
MARK = "VESK_TEST_HOUSE"


# ctest's word for a test that cannot run here.
SKIPPED = 77


def enter():
    """Goes on as root of new user, network and mount namespaces, with the loopback interface up. Where the system allows none, as in
    some containers, ends the program with SKIPPED."""
    if MARK not in os.environ:
        apart = ["unshare", "--user", "--map-root-user", "--net", "--mount"]
        trial = subprocess.run([*apart, "ip", "link", "add", "trial", "type", "veth", "peer", "name", "trial-end"], capture_output=True, text=True)
        if trial.returncode:
            print(f"No network of the test's own can be made here: {trial.stderr.strip()}")
            sys.exit(SKIPPED)
        os.environ[MARK] = "1"
        os.execvp("unshare", [*apart, sys.executable, *sys.argv])
    ip("link", "set", "lo", "up")


def ip(*arguments):
    subprocess.run(["ip", *arguments], check=True)


def strangers(network):
    """Addresses of a network of which this machine has all, one after the other, each from which nobody has come yet."""
    ip("route", "add", "local", network, "dev", "lo")
    return map(str, ipaddress.ip_network(network).hosts())


def wire(name, *addresses):
    """An interface with these addresses. It has another end, so that it has a carrier."""
    ip("link", "add", name, "type", "veth", "peer", "name", f"{name}-end")
    for address in addresses:
        # Addresses count at once, without a look for others that have them.
        ip("address", "add", address, "dev", name, *(["nodad"] if ":" in address else []))
    ip("link", "set", f"{name}-end", "up")
    ip("link", "set", name, "up")


def until(condition, what, patience=PATIENCE):
    """What condition() returns, once that is true."""
    end = time.monotonic() + patience
    while not (outcome := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {patience} s")
        time.sleep(0.02)
    return outcome


class Programs:
    """Programs with a folder for their files, which end with the block that they are in. What they write to standard error is in NAME.log."""

    def __enter__(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.temporary.name)
        self.running = {}
        return self

    def __exit__(self, kind, *_):
        for name in reversed(list(self.running)):
            self.end(name)
        if kind:
            for log in sorted(self.folder.glob("*.log")):
                print(f"--- {log.name}\n{log.read_text(errors='replace')[-8000:]}", file=sys.stderr)
        self.temporary.cleanup()

    def start(self, name, *command, environment=()):
        """Returns the process; its standard output is a pipe."""
        with open(self.log(name), "ab") as log:
            process = subprocess.Popen(
                [str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=log, env=os.environ | dict(environment)
            )
        self.running[name] = process
        return process

    def start_ready(self, name, *command, environment=()):
        """The address that the program says it is ready at."""
        line = self.start(name, *command, environment=environment).stdout.readline().decode()
        match = re.search(r" ready at (\S+)", line)
        if not match:
            raise AssertionError(f"{name} is not ready but says {line!r}")
        return match[1]

    def log(self, name):
        return self.folder / f"{name}.log"

    def signal(self, name, number):
        self.running[name].send_signal(number)

    def end(self, name):
        """Its exit status."""
        process = self.running.pop(name)
        process.send_signal(signal.SIGCONT)
        process.terminate()
        with process.stdout:
            try:
                return process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                raise AssertionError(f"{name} does not end") from None


def vesk_host(programs, bin_folder, *arguments, name="host", audio="null", environment=()):
    """Starts a host with a state folder of its own; returns its address on this machine."""
    state = programs.folder / f"{name}-state"
    return programs.start_ready(
        name, bin_folder / "vesk-host", "--state-dir", state, "--audio", audio, "--log-level", "debug", *arguments, environment=environment
    )


class Certificate:
    """A certificate for the names, and the authority that it comes from."""

    def __init__(self, folder, *names):
        self.authority, self.file, self.key = folder / "ca.pem", folder / "cert.pem", folder / "key.pem"
        new_key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
        self._openssl(folder, "req", "-x509", *new_key, "-days", "2", "-subj", "/CN=Test", "-keyout", "ca-key.pem", "-out", "ca.pem")
        self._openssl(folder, "req", *new_key, "-subj", f"/CN={names[0]}", "-keyout", "key.pem", "-out", "request.pem")
        (folder / "extensions").write_text("subjectAltName=" + ",".join(f"DNS:{name}" for name in names) + "\n")
        self._openssl(folder, "x509", "-req", "-in", "request.pem", "-CA", "ca.pem", "-CAkey", "ca-key.pem", "-days", "2", "-out", "cert.pem",
                      "-extfile", "extensions")  # fmt: skip

    @staticmethod
    def _openssl(folder, *arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)


class Visitor:
    """A client at an address of its own, with its own cookie. Connections go to `to`, (address, port), whatever the URL's name is; `tls` is an
    SSLContext, or None for plain HTTP; `name` is what it asks for."""

    def __init__(self, to, name, tls=None, address=None, headers=()):
        self.to, self.name, self.tls = to, name, tls
        self.address, self.headers = address, dict(headers)
        self.cookie, self.cookie_path = None, "/"

    def connect(self):
        plain = socket.create_connection(self.to, PATIENCE, source_address=(self.address, 0) if self.address else None)
        if not self.tls:
            return plain
        return self.tls.wrap_socket(plain, server_hostname=self.name.rsplit(":", 1)[0])

    def request(self, method, path, body=None, **headers):
        """The response, read; headers are given as X_Forwarded_For."""
        sent = {"Host": self.name} | self.headers | self.cookies(path) | {name.replace("_", "-"): value for name, value in headers.items()}
        if body is not None:
            body = json.dumps(body).encode()
            sent.setdefault("Content-Type", "application/json")
        connection = http.client.HTTPConnection(self.to[0], self.to[1], timeout=PATIENCE)
        connection.sock = self.connect()
        with contextlib.closing(connection):
            connection.putrequest(method, path, skip_host=True, skip_accept_encoding=True)
            for name, value in sent.items():
                for one in value if isinstance(value, list) else [value]:
                    connection.putheader(name, one)
            if body is not None:
                connection.putheader("Content-Length", str(len(body)))
            connection.endheaders(body)
            response = connection.getresponse()
            response.content = response.read()
            return response

    def get(self, path, **headers):
        return self.request("GET", path, **headers)

    def call(self, method, params=None, base="/", **headers):
        """The result of a JSON-RPC call by POST; raises what is none."""
        message = {"jsonrpc": "2.0", "id": 1, "method": method, "params": params or {}}
        response = self.request("POST", f"{base}jsonrpc", message, **headers)
        if response.status != 200:
            raise AssertionError(f"{method}: {response.status} {response.content[:200]}")
        return result_of(method, json.loads(response.content))

    def pair(self, code, device, base="/"):
        """Enters the code; keeps the cookie. Returns the response."""
        response = self.request("POST", f"{base}pair", {"code": code, "name": device})
        if cookie := response.getheader("Set-Cookie"):
            self.cookie, *attributes = cookie.split(";")
            (self.cookie_path,) = [part.partition("=")[2] for part in attributes if part.strip().lower().startswith("path=")]
        return response

    def cookies(self, path):
        """The cookie, if it is for this path (RFC 6265, section 5.1.4)."""
        is_below = path == self.cookie_path or path.startswith(self.cookie_path.rstrip("/") + "/")
        return {"Cookie": self.cookie} if self.cookie and is_below else {}

    def websocket(self, path, **headers):
        return WebSocket(self, path, {name.replace("_", "-"): value for name, value in headers.items()})


def result_of(method, answer):
    if "error" in answer:
        raise AssertionError(f"{method}: {answer['error']}")
    return answer["result"]


class Refused(Exception):
    """The server's response to a handshake that was none."""

    def __init__(self, status):
        super().__init__(status)
        self.status = status


class WebSocket:
    """Text messages (RFC 6455). Raises Refused when the server refuses it."""

    def __init__(self, visitor, path, headers):
        self.socket = visitor.connect()
        self.buffer = b""
        self.ids = 0
        key = base64.b64encode(os.urandom(16)).decode()
        sent = {"Host": visitor.name, "Upgrade": "websocket", "Connection": "Upgrade", "Sec-WebSocket-Version": "13", "Sec-WebSocket-Key": key}
        sent |= visitor.headers | visitor.cookies(path) | headers
        head = f"GET {path} HTTP/1.1\r\n" + "".join(f"{name}: {value}\r\n" for name, value in sent.items())
        self.socket.sendall(head.encode() + b"\r\n")
        while b"\r\n\r\n" not in self.buffer:
            self._receive()
        head, self.buffer = self.buffer.split(b"\r\n\r\n", 1)
        status = int(head.split()[1])
        if status != 101:
            self.socket.close()
            raise Refused(status)
        accepted = base64.b64encode(hashlib.sha1(key.encode() + b"258EAFA5-E914-47DA-95CA-C5AB0DC85B11").digest())
        if accepted not in head:
            raise AssertionError(f"a handshake for another key: {head}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()

    def _receive(self):
        some = self.socket.recv(65536)
        if not some:
            raise EOFError("the server has closed the connection")
        self.buffer += some

    def _take(self, count):
        while len(self.buffer) < count:
            self._receive()
        taken, self.buffer = self.buffer[:count], self.buffer[count:]
        return taken

    def _send(self, opcode, payload):
        size = len(payload)
        length = bytes([0x80 | size]) if size < 126 else struct.pack("!BH", 0xFE, size) if size < 65536 else struct.pack("!BQ", 0xFF, size)
        mask = os.urandom(4)
        self.socket.sendall(bytes([0x80 | opcode]) + length + mask + bytes(byte ^ mask[i % 4] for i, byte in enumerate(payload)))

    def message(self):
        """The next message; EOFError at the end."""
        text = b""
        while True:
            first, second = self._take(2)
            size = second & 0x7F
            if size == 126:
                (size,) = struct.unpack("!H", self._take(2))
            elif size == 127:
                (size,) = struct.unpack("!Q", self._take(8))
            payload = self._take(size)
            opcode = first & 0x0F
            if opcode == 8:
                raise EOFError(f"closed: {payload[:2].hex()}")
            if opcode == 9:
                self._send(10, payload)
            elif opcode in (0, 1):
                text += payload
                if first & 0x80:
                    return json.loads(text)

    def call(self, method, params=None):
        self.ids += 1
        self._send(1, json.dumps({"jsonrpc": "2.0", "id": self.ids, "method": method, "params": params or {}}).encode())
        while (answer := self.message()).get("id") != self.ids:
            pass
        return result_of(method, answer)


def trust(authority):
    return ssl.create_default_context(cafile=authority)


def trust_anybody():
    context = ssl.create_default_context()
    context.check_hostname = False
    context.verify_mode = ssl.CERT_NONE
    return context
