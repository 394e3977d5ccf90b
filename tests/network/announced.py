#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""announced.py BIN PLUGIN: hosts are announced by a real Avahi daemon, on a message bus and in a network of the test's own."""

import os
import pathlib
import signal
import socket
import subprocess
import sys
import time
import unittest

import house

ADDRESS = "10.77.0.1"
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path=/run/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>
"""
NAME = f"Vesk ({socket.gethostname()})"


def set_up_machine():
    """The daemon's user is the only one there is in this namespace, and nothing of the machine's own bus is seen."""
    subprocess.run(["mount", "-t", "tmpfs", "none", "/run"], check=True)
    for name, text in {"passwd": "root:x:0:0::/:/bin/sh\navahi:x:0:0::/:/bin/sh\n", "group": "root:x:0:\navahi:x:0:\n", "bus.conf": BUS}.items():
        pathlib.Path("/run", name).write_text(text)
    for name in ("passwd", "group"):
        subprocess.run(["mount", "--bind", f"/run/{name}", f"/etc/{name}"], check=True)
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/run/bus"
    house.wire("house", f"{ADDRESS}/24")


def unescaped(text):
    """avahi-browse writes what is no letter or digit as backslash and three decimal digits."""
    parts = text.split("\\")
    return parts[0] + "".join(chr(int(part[:3])) + part[3:] for part in parts[1:])


def announced(kind):
    """{name: (port, TXT records)} of what is announced in the house."""
    run = subprocess.run(["avahi-browse", "--resolve", "--terminate", "--parsable", "--no-db-lookup", kind], capture_output=True, text=True, timeout=house.PATIENCE)
    found = {}
    for line in run.stdout.splitlines():
        fields = line.split(";")
        if fields[0] == "=" and fields[1:3] == ["house", "IPv4"]:
            if fields[7] != ADDRESS:
                raise AssertionError(f"announced elsewhere: {line}")
            found[unescaped(fields[3])] = (int(fields[8]), set(fields[9].strip('"').split('" "')))
    return found


class Announced(unittest.TestCase):
    def setUp(self):
        self.programs = self.enterContext(house.Programs())
        self.programs.start("bus", "dbus-daemon", "--config-file=/run/bus.conf", "--nofork", "--nopidfile", "--print-address=1").stdout.readline()

    def start_daemon(self):
        self.programs.start("avahi", "avahi-daemon", "--no-drop-root", "--no-chroot", "--no-rlimits", "--file=/dev/null")

    def start_host(self, name, *arguments):
        """The port, which all addresses share."""
        url = house.vesk_host(self.programs, BIN, "--plugin", PLUGIN, *arguments, name=name)
        return int(url.rsplit(":", 1)[1].rstrip("/"))

    def wait_for(self, kind, wanted):
        """Until these names are announced, and no others."""
        return house.until(lambda: (found := announced(kind)).keys() == wanted and (found or True), f"{kind}: {wanted}, not {announced(kind).keys()}")

    def test_a_host_in_the_network_is_announced_as_what_it_is(self):
        self.start_daemon()
        port = self.start_host("host", "--listen", f"{ADDRESS}:8765", "--base-path", "/radio")
        found = self.wait_for("_vesk._tcp", {NAME})
        self.assertEqual(found[NAME][0], port)
        self.assertEqual({text.split("=")[0] for text in found[NAME][1]}, {"path", "tls", "version"})
        self.assertLess({"path=/radio/", "tls=1"}, found[NAME][1])
        self.assertEqual(self.wait_for("_http._tcp", {NAME}), {NAME: (port, {"path=/radio/"})})
        self.programs.end("host")
        self.wait_for("_vesk._tcp", set())
        self.wait_for("_http._tcp", set())

    def test_hosts_on_one_machine_have_different_names(self):
        self.start_daemon()
        first = self.start_host("first", "--listen", f"{ADDRESS}:8765", "--plain-http")
        self.wait_for("_vesk._tcp", {NAME})
        second = self.start_host("second", "--listen", f"{ADDRESS}:8766")
        found = self.wait_for("_vesk._tcp", {NAME, f"{NAME} #2"})
        self.assertEqual((found[NAME][0], found[f"{NAME} #2"][0]), (first, second))
        self.assertNotIn("tls=1", found[NAME][1])
        self.wait_for("_http._tcp", {NAME, f"{NAME} #2"})

    def test_a_host_on_loopback_is_not_announced(self):
        self.start_daemon()
        self.start_host("quiet", "--listen", "127.0.0.1:8766")
        # One that is announced later shows that the daemon has had the time.
        self.start_host("host", "--listen", f"{ADDRESS}:8765")
        self.wait_for("_http._tcp", {NAME})
        self.assertEqual(announced("_vesk._tcp").keys(), {NAME})
        self.assertNotIn("announced", self.programs.log("quiet").read_text())

    def test_the_daemon_may_come_later_hang_and_be_restarted(self):
        port = self.start_host("host", "--listen", f"{ADDRESS}:8765")
        self.start_daemon()
        self.wait_for("_vesk._tcp", {NAME})

        self.programs.signal("avahi", signal.SIGSTOP)
        began = time.monotonic()
        self.start_host("second", "--listen", f"{ADDRESS}:8766")
        for _ in range(20):
            visitor = house.Visitor(("127.0.0.1", port), f"127.0.0.1:{port}")
            self.assertTrue(visitor.call("getRows", {"path": "host:services"})["rows"])
        self.assertEqual(self.programs.end("host"), 0)
        # A call that waits for the daemon would take 25 s.
        self.assertLess(time.monotonic() - began, 20)
        self.programs.signal("avahi", signal.SIGCONT)
        self.wait_for("_vesk._tcp", {NAME})

        self.programs.end("avahi")
        self.start_daemon()
        self.wait_for("_vesk._tcp", {NAME})

    def test_a_bus_that_hangs_holds_nobody_up(self):
        self.programs.signal("bus", signal.SIGSTOP)
        port = self.start_host("host", "--listen", f"{ADDRESS}:8765")
        visitor = house.Visitor(("127.0.0.1", port), f"127.0.0.1:{port}")
        self.assertTrue(visitor.call("getRows", {"path": "host:services"})["rows"])
        self.programs.signal("bus", signal.SIGCONT)
        self.start_daemon()
        self.wait_for("_vesk._tcp", {NAME})
        self.programs.signal("bus", signal.SIGSTOP)
        self.assertEqual(self.programs.end("host"), 0)

    def test_the_host_outlives_the_bus(self):
        self.start_daemon()
        port = self.start_host("host", "--listen", f"{ADDRESS}:8765")
        self.wait_for("_vesk._tcp", {NAME})
        self.programs.end("bus")
        house.until(lambda: "the system bus has ended" in self.programs.log("host").read_text(), "the end of the bus is logged")
        visitor = house.Visitor(("127.0.0.1", port), f"127.0.0.1:{port}")
        self.assertTrue(visitor.call("getRows", {"path": "host:services"})["rows"])


if __name__ == "__main__":
    house.enter()
    BIN, PLUGIN = pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1)
    set_up_machine()
    unittest.main(verbosity=2)
