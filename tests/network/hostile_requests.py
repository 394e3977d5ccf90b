#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""hostile_requests.py BIN PLUGIN: requests that two readers could read differently are refused, and what may follow them is not read."""

import contextlib
import os
import sys

import besieged
from besieged import CHANGE_BODY, JSON

HOST = f"Host: {besieged.NAME}\r\n".encode()
LENGTH = b"Content-Length: %d\r\n" % len(CHANGE_BODY)
CHUNKED = b"%x\r\n%s\r\n0\r\n\r\n" % (len(CHANGE_BODY), CHANGE_BODY)
LINE = b"POST /jsonrpc HTTP/1.1\r\n"


def smuggled(token):
    """A whole request that changes the setting; what hides behind another."""
    return LINE + HOST + token + JSON + LENGTH + b"Connection: close\r\n\r\n" + CHANGE_BODY


def requests(token):
    """{what: (bytes, status)}; each holds the change in a place that only a wrong reading finds."""
    start = LINE + HOST + token + JSON
    hidden = smuggled(token)
    both = b"Content-Length: 4\r\nTransfer-Encoding: chunked\r\n"
    return {
        "two different lengths": start + b"Content-Length: 0\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "two different lengths, the longer first": start + LENGTH + b"Content-Length: 0\r\n\r\n" + CHANGE_BODY,
        "two equal lengths": start + LENGTH + LENGTH + b"\r\n" + CHANGE_BODY,
        "a list of lengths": start + b"Content-Length: %d, %d\r\n\r\n" % (len(CHANGE_BODY), len(CHANGE_BODY)) + CHANGE_BODY,
        "a length with a sign": start + b"Content-Length: +%d\r\n\r\n" % len(CHANGE_BODY) + CHANGE_BODY,
        "a length below zero": start + b"Content-Length: -1\r\n\r\n" + CHANGE_BODY,
        "a length in hexadecimal": start + b"Content-Length: 0x%x\r\n\r\n" % len(CHANGE_BODY) + CHANGE_BODY,
        "a length beyond 64 bits": start + b"Content-Length: %d\r\n\r\n" % (2**64 + len(CHANGE_BODY)) + CHANGE_BODY,
        "no length at all": start + b"Content-Length: \r\n\r\n" + CHANGE_BODY,
        "length and chunked": start + both + b"\r\n" + b"0\r\n\r\n" + hidden,
        "chunked and length": start + b"Transfer-Encoding: chunked\r\nContent-Length: 4\r\n\r\n0\r\n\r\n" + hidden,
        "another coding": start + b"Transfer-Encoding: xchunked\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "another coding alone": start + b"Transfer-Encoding: gzip\r\n\r\n" + CHANGE_BODY,
        "two codings": start + b"Transfer-Encoding: gzip, chunked\r\n\r\n" + CHUNKED,
        "two coding headers": start + b"Transfer-Encoding: chunked\r\nTransfer-Encoding: identity\r\n\r\n" + CHUNKED,
        "chunked twice": start + b"Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n" + CHUNKED,
        "an empty coding": start + b"Transfer-Encoding: \r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a space before the colon": start + b"Transfer-Encoding : chunked\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a tab before the colon": start + b"Content-Length\t: 5\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a line feed for all ends of lines": (start + LENGTH + b"\r\n").replace(b"\r\n", b"\n") + CHANGE_BODY,
        "a line feed in a header": start + b"X-A: 1\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a header behind a line feed": start + b"X-A: 1\nTransfer-Encoding: chunked\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a carriage return in a header": start + b"X-A: 1\rContent-Length: 0\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a line feed at the end of the head": start + LENGTH + b"\n" + CHANGE_BODY,
        "a folded header": start + b"X-A: 1\r\n Content-Length: 0\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a folded coding": start + LENGTH + b"Transfer-Encoding:\r\n chunked\r\n\r\n" + CHANGE_BODY,
        "a first header that is folded": LINE + b" X-A: 1\r\n" + HOST + token + JSON + LENGTH + b"\r\n" + CHANGE_BODY,
        "NUL in a value": start + b"X-A: a\0b\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "NUL in a name": start + b"X\0A: a\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "NUL in Host": LINE + HOST.replace(b"\r", b"\0.evil\r") + token + JSON + LENGTH + b"\r\n" + CHANGE_BODY,
        "NUL in the target": start.replace(b"/jsonrpc", b"/jsonrpc\0") + LENGTH + b"\r\n" + CHANGE_BODY,
        "a header without a colon": start + b"nonsense\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a header without a name": start + b": nonsense\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a second Host": start + b"Host: evil.example\r\n" + LENGTH + b"\r\n" + CHANGE_BODY,
        "a second Host, first": LINE + b"Host: evil.example\r\n" + HOST + token + JSON + LENGTH + b"\r\n" + CHANGE_BODY,
        "the same Host twice": start + HOST + LENGTH + b"\r\n" + CHANGE_BODY,
        "no Host": LINE + token + JSON + LENGTH + b"\r\n" + CHANGE_BODY,
        "the address of another host": start.replace(b" /", b" http://evil.example/") + LENGTH + b"\r\n" + CHANGE_BODY,
        "no version": b"POST /jsonrpc\r\n" + HOST + token + JSON + LENGTH + b"\r\n" + CHANGE_BODY,
        "another version": start.replace(b"HTTP/1.1", b"HTTP/3.1") + LENGTH + b"\r\n" + CHANGE_BODY,
        "the beginning of HTTP/2": b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n" + hidden,
        "a chunk of 2^64 and some bytes": start + b"Transfer-Encoding: chunked\r\n\r\n1%016x\r\n" % len(CHANGE_BODY) + CHUNKED.split(b"\r\n", 1)[1],
        "a chunk with a sign": start + b"Transfer-Encoding: chunked\r\n\r\n+" + CHUNKED,
        "a chunk with 0x": start + b"Transfer-Encoding: chunked\r\n\r\n0x" + CHUNKED,
        "a chunk without an end of line": start + b"Transfer-Encoding: chunked\r\n\r\n" + CHUNKED.replace(b"}\r\n0", b"}0"),
        "a chunk's extension without end": start + b"Transfer-Encoding: chunked\r\n\r\n%x;" % len(CHANGE_BODY) + b"x" * 100_000,
        "trailers without end": start + b"Transfer-Encoding: chunked\r\n\r\n0\r\n" + b"X-A: b\r\n" * 20_000,
        "a body beyond the bound, in chunks": start + b"Transfer-Encoding: chunked\r\n\r\n" + (b"8000\r\n" + b" " * 0x8000 + b"\r\n") * 4,
        "a body that is announced beyond the bound": start + b"Content-Length: 10000000000\r\n\r\n" + b" " * 100_000,
        "a header beyond the bound": start + b"X-A: " + b"a" * 1_000_000,
        "headers beyond the bound": start + b"".join(b"X-%d: a\r\n" % i for i in range(50_000)),
        "a target beyond the bound": b"GET /" + b"a" * 1_000_000,
        "no HTTP at all": b"\x00\xff\xfe random \r\n\r\n" + os.urandom(2000) + hidden,
    }


# What may be carried out: there is one reading of it. What follows is not read.
WELL_FORMED = {
    "a request in a request's body": lambda token: LINE + HOST + token + JSON + b"Content-Length: %d\r\n\r\n" % len(smuggled(token)) + smuggled(token),
    "a second request": lambda token: b"GET / HTTP/1.1\r\n" + HOST + token + b"\r\n" + smuggled(token),
    "a second request behind a GET with a body": lambda token: b"GET / HTTP/1.1\r\n" + HOST + token + b"Content-Length: 1\r\n\r\nx" + smuggled(token),
    "a second request behind a POST": lambda token: LINE + HOST + token + JSON + b"Content-Length: 2\r\n\r\n{}" + smuggled(token),
    "an upgrade to HTTP/2": lambda token: b"GET / HTTP/1.1\r\n" + HOST + token + b"Connection: Upgrade, HTTP2-Settings\r\nUpgrade: h2c\r\nHTTP2-Settings: AAMAAABkAAQAAP__\r\n\r\n"
    + smuggled(token),
    "an upgrade that is none": lambda token: b"GET /ws HTTP/1.1\r\n" + HOST + token + b"Connection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 777\r\n\r\n" + smuggled(token),
}


class Requests(besieged.Siege):
    def who(self):
        """(who, their token's header)"""
        return [("a stranger", b""), ("a paired device", f"Authorization: Bearer {self.tokens['owner']}\r\n".encode())]

    def assert_unchanged(self, what):
        self.assertNotEqual(self.setting(), besieged.STOLEN, what)

    def test_what_can_be_read_in_two_ways_is_refused(self):
        for who, token in self.who():
            for what, data in requests(token).items():
                found = besieged.statuses(self.raw(data))
                # A connection that is closed while bytes arrive may lose the answer.
                self.assertTrue(len(found) <= 1 and all(status in (400, 401, 403, 411, 413, 415, 429, 431, 501, 505) for status in found), f"{what}, {who}: {found}")
                if len(data) < 10_000:
                    self.assertEqual(len(found), 1, f"{what}, {who}")
                self.assert_unchanged(f"{what}, {who}")
        self.served()

    def test_a_second_request_on_the_way_is_not_read(self):
        for who, token in self.who():
            for what, data in WELL_FORMED.items():
                found = besieged.statuses(self.raw(data(token)))
                self.assertEqual(len(found), 1, f"{what}, {who}: {found}")
                self.assert_unchanged(f"{what}, {who}")

    def test_they_are_refused_on_this_machine_too(self):
        here = f"Host: 127.0.0.1:{besieged.PORT}\r\n".encode()
        for what, data in requests(b"").items():
            with contextlib.closing(self.owner.connect()) as connection:
                with contextlib.suppress(*besieged.GONE):
                    connection.sendall(data.replace(HOST, here))
                found = besieged.statuses(besieged.everything(connection))
            self.assertTrue(len(found) <= 1 and all(status >= 400 for status in found), f"{what}: {found}")
            self.assert_unchanged(what)

    def test_well_formed_chunks_are_read(self):
        token = f"Authorization: Bearer {self.tokens['owner']}\r\n".encode()
        body = b'{"jsonrpc": "2.0", "id": 1, "method": "getRows", "params": {"path": "host:services"}}'
        pieces = b"".join(b"1;name=value\r\n%c\r\n" % byte for byte in body)
        answer = self.raw(LINE + HOST + token + JSON + b"Transfer-Encoding: chunked\r\n\r\n" + pieces + b"0\r\nX-A: b\r\n\r\n")
        self.assertEqual(besieged.statuses(answer), [200])
        self.assertIn(b'"rows"', answer)


class Frames(besieged.Siege):
    """WebSockets of a paired device, and frames that are none of RFC 6455's or too many."""

    def websocket(self):
        return self.paired().websocket("/ws")

    def closed_with(self, *frames):
        with self.websocket() as websocket:
            with contextlib.suppress(*besieged.GONE):
                for each in frames:
                    websocket.socket.sendall(each)
            return besieged.end_of(websocket)

    def test_a_frame_that_is_against_the_rules_closes_the_websocket(self):
        frame = besieged.frame
        for what, data, codes in [
            ("unmasked", frame(1, CHANGE_BODY, masked=False), {1002}),
            ("reserved bits", bytes([0xF1, 0x80, 0, 0, 0, 0]), {1002}),
            ("reserved opcode", frame(3, b"x"), {1002}),
            ("reserved control opcode", frame(11, b"x"), {1002}),
            ("a continuation of nothing", frame(0, CHANGE_BODY), {1002}),
            ("a message within a message", frame(1, b"{", final=False) + frame(1, b"{"), {1002}),
            ("a ping that is too long", frame(9, b"x" * 126), {1002}),
            ("a ping in pieces", frame(9, b"x", final=False), {1002}),
            ("not UTF-8", frame(1, b"\xff\xff"), {1007}),
            ("half a character", frame(1, b"\xc3"), {1007}),
            ("binary", frame(2, CHANGE_BODY), {1003}),
            ("a code for nobody", frame(8, b"\x03\xed"), {1002}),
            ("a code of one byte", frame(8, b"\x03"), {1002}),
            ("a length below zero", b"\x81\xff" + b"\xff" * 8 + b"\0" * 4, {1002, 1009, None}),
            ("a length of 2^62", b"\x81\xff\x40" + b"\0" * 7 + b"\0" * 4, {1009, None}),
            ("a length of 2 bytes that fits 1", b"\x81\xfe\x00\x02\0\0\0\0{}", {1002}),
            ("a message of 65 KiB", frame(1, b" " * (65 * 1024)), {1009}),
            ("a message of 4 MiB", frame(1, b" " * (4 << 20)), {1009, None}),
            ("a message of 4 MiB in pieces", frame(1, b" ", final=False) + frame(0, b" " * 65_000, final=False) * 64, {1009, None}),
        ]:
            self.assertIn(self.closed_with(data), codes, what)
        self.assertNotEqual(self.setting(), besieged.STOLEN)
        self.served()

    def test_small_frames_without_end_are_bounded(self):
        self.assertIn(self.closed_with(besieged.frame(1, b" ", final=False), besieged.frame(0, b"", final=False) * 400_000), {1008, 1009, None})
        # Who reads no answers to pings is read no more, or dropped, whichever comes first.
        with contextlib.suppress(TimeoutError):
            self.assertIn(self.closed_with(besieged.frame(9, b"x" * 100) * 20_000), {1008, 1009, None})
        self.served()

    def test_requests_without_end_are_bounded(self):
        """What is sent without reading the answers stops being read, or ends the WebSocket; others are served meanwhile."""
        with self.websocket() as websocket:
            websocket.socket.settimeout(2)
            ask = besieged.frame(1, b'{"jsonrpc": "2.0", "id": 1, "method": "getRows", "params": {"path": "TuneIn:browse/uri/Search.ashx?query=a"}}')
            with contextlib.suppress(TimeoutError, *besieged.GONE):
                for _ in range(2000):
                    websocket.socket.sendall(ask)
            self.served()


if __name__ == "__main__":
    besieged.main(sys.argv)
