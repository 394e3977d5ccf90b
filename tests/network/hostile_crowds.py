#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""hostile_crowds.py BIN PLUGIN: many connections, and clients that read or write slowly; this machine and paired devices are served meanwhile."""

import contextlib
import select
import ssl
import sys
import time

import besieged
import house

CROWD = 1000
# The time that a request may take, and some.
READ_SECONDS = 30
SOON = READ_SECONDS + 10


def is_closed(connection):
    """Whether the host has ended it, as far as that is known by now."""
    while select.select([connection], [], [], 0)[0]:
        try:
            if not connection.recv(65536):
                return True
        except (ssl.SSLWantReadError, BlockingIOError):
            return False
        except OSError:
            return True
    return False


class Crowds(besieged.Siege):
    def setUp(self):
        self.crowd = contextlib.ExitStack()
        self.addCleanup(self.crowd.close)

    def join(self, connection):
        return self.crowd.enter_context(contextlib.closing(connection))

    def crowd_of(self, count, address, begin=b""):
        crowd = []
        for i in range(count):
            connection = self.join(self.machine.connect(source=address(i)))
            with contextlib.suppress(OSError):
                connection.sendall(begin)
            crowd.append(connection)
        return crowd

    def assert_held_off(self, crowd, most):
        """At most so many stay, and everybody else is served at once."""
        for _ in range(3):
            self.served()
        house.until(lambda: sum(not is_closed(each) for each in crowd) <= most, f"at most {most} stay")

    def test_a_thousand_silent_connections_of_one_address(self):
        self.assert_held_off(self.crowd_of(CROWD, lambda _: besieged.INTRUDER), 16)

    def test_a_thousand_silent_connections_of_many_addresses(self):
        self.assert_held_off(self.crowd_of(CROWD, lambda i: f"10.77.1.{1 + i % 250}"), 32)

    def test_a_thousand_beginnings_of_tls(self):
        # A record with a handshake that announces more than comes.
        self.assert_held_off(self.crowd_of(CROWD, lambda i: f"10.77.1.{1 + i % 250}", b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03"), 32)

    def test_a_websocket_that_is_open_survives_a_crowd(self):
        with self.paired().websocket("/ws") as remote, self.owner.websocket("/ws") as local:
            self.crowd_of(CROWD, lambda i: f"10.77.1.{1 + i % 250}")
            for websocket in (remote, local):
                self.assertIn("rows", websocket.call("getRows", {"path": "host:services"}))

    def test_a_crowd_that_asks_for_pairing(self):
        """Faster than an address may ask: it is told so, and the others are served."""
        told = []
        # In each second that this takes, five more may come.
        while len(told) < 1000 and 429 not in told:
            told.append(self.stranger(address="10.77.1.7").request("POST", "/pair", {"code": "000000", "name": "x"}).status)
        self.assertIn(429, told)
        self.served()

    def test_slow_writers_are_dropped_in_time(self):
        """A byte each second counts as nothing: the time is that of the whole request."""
        token = f"Authorization: Bearer {self.tokens['owner']}\r\n".encode()
        head = f"Host: {besieged.NAME}\r\n".encode()
        body = b"POST /jsonrpc HTTP/1.1\r\n" + head + token + besieged.JSON + b"Content-Length: 1000\r\n\r\n"
        slow = {
            "silent": self.join(self.machine.connect()),
            "in TLS": self.join(self.machine.connect()),
            "in the head": self.join(self.stranger().connect()),
            "in the body": self.join(self.stranger().connect()),
            "in a chunk's size": self.join(self.stranger().connect()),
            "here, in the head": self.join(self.owner.connect()),
        }
        slow["in the head"].sendall(b"GET / HTTP/1.1\r\n" + head + b"X-A: ")
        slow["in the body"].sendall(body)
        slow["in a chunk's size"].sendall(body.replace(b"Content-Length: 1000", b"Transfer-Encoding: chunked"))
        slow["here, in the head"].sendall(b"GET / HTTP/1.1\r\nX-A: ")
        slow["in TLS"].sendall(b"\x16\x03\x01\x40\x00\x01\x00\x3f\xfc\x03\x03")
        begin = time.monotonic()
        ended = {}
        while len(ended) < len(slow) and time.monotonic() - begin < SOON:
            for what in slow.keys() - ended.keys():
                with contextlib.suppress(OSError):
                    if what != "silent":
                        slow[what].sendall(b"0")
                if is_closed(slow[what]):
                    ended[what] = time.monotonic() - begin
            time.sleep(1)
        self.assertEqual(ended.keys(), slow.keys())
        self.served()

    def test_a_slow_reader_is_dropped_in_time_and_holds_nobody_up(self):
        """A page's file, of which the client takes nothing: what does not fit the buffers of TCP waits, but not for ever."""
        reader = self.join(self.paired().connect())
        with self.paired().websocket("/ws") as websocket:
            ask = besieged.frame(1, b'{"jsonrpc": "2.0", "id": 1, "method": "getRows", "params": {"path": "TuneIn:browse/uri/Search.ashx?query=a"}}')
            # Answers of 140 KB each, beyond what is queued for a client.
            with contextlib.suppress(OSError):
                for _ in range(100):
                    websocket.socket.sendall(ask)
                    self.served()
            house.until(lambda: "the client does not read what it is sent" in self.log(), "the WebSocket is dropped")
        reader.close()
        self.served()


if __name__ == "__main__":
    besieged.main(sys.argv)
