#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""hostile_look.py BIN PLUGIN: what somebody sees who looks the host over: one port, and TLS of today."""

import contextlib
import os
import pathlib
import re
import select
import socket
import ssl
import subprocess
import sys
import warnings

import besieged

PORTS = range(1, 65536)
AT_ONCE = 500


def open_ports(address, family):
    """Those of all ports that take a connection."""
    found = []
    for first in range(PORTS.start, PORTS.stop, AT_ONCE):
        waiting = {}
        for port in range(first, min(first + AT_ONCE, PORTS.stop)):
            connection = socket.socket(family)
            connection.setblocking(False)
            connection.connect_ex((address, port))
            waiting[connection.fileno()] = (connection, port)
        poll = select.poll()
        for number in waiting:
            poll.register(number, select.POLLOUT)
        while waiting:
            ready = poll.poll(5000)
            if not ready:
                raise AssertionError(f"ports without an answer: {[port for _, port in waiting.values()]}")
            for number, _ in ready:
                poll.unregister(number)
                connection, port = waiting.pop(number)
                if connection.getsockopt(socket.SOL_SOCKET, socket.SO_ERROR) == 0:
                    found.append(port)
                connection.close()
    return found


class Look(besieged.Siege):
    def handshake(self, context):
        """The connection; raises ssl.SSLError when there is none."""
        connection = self.machine.connect()
        try:
            return context.wrap_socket(connection)
        except OSError:
            connection.close()
            raise

    def context(self, version=None, ciphers=None):
        """A client that would take everything."""
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        context.check_hostname = False
        context.verify_mode = ssl.CERT_NONE
        context.set_ciphers(ciphers or "ALL:COMPLEMENTOFALL:@SECLEVEL=0")
        with warnings.catch_warnings(action="ignore"):  # of versions that nobody should speak
            context.minimum_version = version or ssl.TLSVersion.MINIMUM_SUPPORTED
            context.maximum_version = version or ssl.TLSVersion.MAXIMUM_SUPPORTED
        return context

    def test_one_port_is_open(self):
        self.assertEqual(self.machine.do(open_ports, besieged.ADDRESS, socket.AF_INET), [besieged.PORT])
        self.assertEqual(self.machine.do(open_ports, besieged.ADDRESS6, socket.AF_INET6), [besieged.PORT])

    def test_nothing_of_the_host_waits_for_datagrams(self):
        host = self.programs.running["host"].pid
        children = [file.read_text().split() for file in pathlib.Path(f"/proc/{host}/task").glob("*/children")]
        processes = [host, *(int(child) for each in children for child in each)]
        self.assertGreater(len(processes), 1)
        sockets = set()
        for process in processes:
            for file in os.scandir(f"/proc/{process}/fd"):
                with contextlib.suppress(OSError):
                    sockets |= set(re.findall(r"^socket:\[(\d+)\]$", os.readlink(file.path)))
        self.assertTrue(sockets)
        for kind in ("udp", "udp6", "raw", "raw6"):
            with open(f"/proc/net/{kind}") as table:
                waiting = {line.split()[9]: line for line in table.readlines()[1:]}
            self.assertEqual(sockets & waiting.keys(), set(), kind)

    def test_old_versions_are_refused(self):
        for version in (ssl.TLSVersion.SSLv3, ssl.TLSVersion.TLSv1, ssl.TLSVersion.TLSv1_1):
            with self.assertRaises((OSError, ValueError), msg=version):
                self.handshake(self.context(version))
        for version in (ssl.TLSVersion.TLSv1_2, ssl.TLSVersion.TLSv1_3):
            with self.handshake(self.context(version)) as connection:
                self.assertIn(connection.version(), ("TLSv1.2", "TLSv1.3"))

    def test_what_the_client_says_of_old_versions_is_understood(self):
        """The refusal is the server's own, of the version: an alert, not a connection that ends."""
        run = self.machine.run
        for version in ("-tls1", "-tls1_1"):
            with self.assertRaises(subprocess.CalledProcessError) as refused:
                run(["openssl", "s_client", "-connect", besieged.NAME, version, "-cipher", "ALL:@SECLEVEL=0"])
            self.assertIn("alert protocol version", refused.exception.stderr)

    def test_only_ciphers_with_forward_secrecy_and_authenticated_encryption_are_taken(self):
        every = subprocess.run(["openssl", "ciphers", "-tls1_2", "ALL:COMPLEMENTOFALL:@SECLEVEL=0"], check=True, capture_output=True, text=True).stdout.strip().split(":")
        taken = set()
        for cipher in every:
            if cipher.startswith("TLS_"):
                continue
            with contextlib.suppress(OSError):
                with self.handshake(self.context(ssl.TLSVersion.TLSv1_2, f"{cipher}:@SECLEVEL=0")) as connection:
                    taken.add(connection.cipher()[0])
        self.assertTrue(taken)
        for cipher in taken:
            self.assertRegex(cipher, r"^ECDHE-.*(GCM|CHACHA20)")

    def test_what_the_host_speaks_is_http_1_1(self):
        context = self.context()
        context.set_alpn_protocols(["h2", "http/1.1"])
        with self.handshake(context) as connection:
            self.assertEqual(connection.selected_alpn_protocol(), "http/1.1")
        context = self.context()
        context.set_alpn_protocols(["h2", "smtp"])
        with self.assertRaises(OSError):
            self.handshake(context)

    def test_renegotiation_and_early_data_are_refused(self):
        told = self.machine.run(["sh", "-c", f"printf 'R\\n' | openssl s_client -connect {besieged.NAME} -tls1_2 2>&1 || true"])
        self.assertIn("RENEGOTIATING", told)
        self.assertRegex(told, "no renegotiation|alert handshake failure")
        # Until the host closes: the session comes before its answer, however late that is.
        ask = f"GET /pair HTTP/1.1\\r\\nHost: {besieged.NAME}\\r\\nConnection: close\\r\\n\\r\\n"
        told = self.machine.run(["sh", "-c", f"printf '{ask}' | openssl s_client -connect {besieged.NAME} -tls1_3 -ign_eof 2>&1 || true"])
        self.assertIn("Max Early Data: 0", told)
        self.assertIn("Compression: NONE", told)

    def test_what_is_no_tls_and_no_http_is_closed(self):
        for begin in (b"SSH-2.0-x\r\n\r\n", b"\x80\x2e\x01\x00\x02" + bytes(40), b"EHLO x\r\n\r\n", b"\x16\x03\x01\xff\xff" + bytes(70_000), b"\x15\x03\x03\x00\x02\x01\x00"):
            with contextlib.closing(self.machine.connect()) as connection:
                with contextlib.suppress(OSError):
                    connection.sendall(begin)
                    connection.shutdown(socket.SHUT_WR)
                answer = besieged.everything(connection)
            self.assertNotIn(b"200", answer[:20])
        self.served()

    def test_answers_tell_nothing_of_what_runs_here(self):
        for response in (self.stranger().get("/"), self.stranger().get("/pair"), self.stranger().get("/nothing")):
            headers = {name.lower() for name, _ in response.getheaders()}
            self.assertFalse(headers & {"server", "x-powered-by"})
            self.assertEqual(response.getheader("X-Content-Type-Options"), "nosniff")
            self.assertIn("default-src", response.getheader("Content-Security-Policy"))


if __name__ == "__main__":
    besieged.main(sys.argv)
