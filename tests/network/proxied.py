#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""proxied.py DOCUMENT BIN PLUGIN: a host behind nginx, both started as the section "Behind nginx" of docs/network.md says, in a network of the test's
own; and what the host believes of headers that a proxy sends, or somebody who would like to be taken for one."""

import hashlib
import pathlib
import re
import socket
import subprocess
import sys
import time
import unittest
import urllib.parse

import house

SERVER, PROXY, TABLET, STRANGER = "10.77.0.1", "10.77.0.2", "10.77.0.20", "10.77.0.30"
SITE = "https://radio.example"
PORT = 8765

# What somebody sends who wants to pass for a program on the host's machine.
DISGUISES = [
    {},
    {"X-Forwarded-For": "127.0.0.1"},
    {"X-Forwarded-For": "::1"},
    {"X-Forwarded-For": ""},
    {"X-Forwarded-For": "unknown"},
    {"X-Forwarded-For": ["127.0.0.1", "127.0.0.1"]},
    {"X-Forwarded-For": "127.0.0.1, 127.0.0.1", "X-Forwarded-Proto": "http"},
    {"Forwarded": "for=127.0.0.1;host=localhost;proto=http"},
    {"X-Real-IP": "127.0.0.1", "X-Forwarded-Host": "127.0.0.1:8765"},
    {"Host": "127.0.0.1"},
    {"Host": "127.0.0.1:8765"},
    {"Host": "localhost"},
    {"Host": "[::1]:8765", "X-Forwarded-For": "::1"},
]


def section(document, heading):
    """{first word behind the backticks: text} of the blocks of a section."""
    text = re.split(r"^## ", document.read_text(encoding="utf-8"), flags=re.MULTILINE)
    (own,) = [part for part in text if part.startswith(heading + "\n")]
    return dict(re.findall(r"^```(\w+)\n(.*?)^```$", own, re.MULTILINE | re.DOTALL))


def named_files(html):
    """The addresses that a page loads, as they are written there."""
    return re.findall(r"""<(?:script|link)\b[^>]*?\b(?:src|href)="([^"]+)""", html)


class House(unittest.TestCase):
    """A directory, a host that browses it, and somebody on the host's machine."""

    LISTENS = []

    @classmethod
    def setUpClass(cls):
        cls.programs = cls.enterClassContext(house.Programs())
        cls.certificate = house.Certificate(cls.programs.folder, "radio.example")
        directory = cls.programs.start_ready("directory", BIN / "tunein-directory", "--listen", "127.0.0.1:0")
        cls.directory = urllib.parse.urlsplit(directory).netloc
        hosts = subprocess.run([BIN / "tunein-directory", "--list-hosts"], check=True, capture_output=True, text=True).stdout.split()
        url = house.vesk_host(
            cls.programs, BIN, "--plugin", PLUGIN, "--connect-to", f"opml.radiotime.com:80:{cls.directory}",
            *(word for host in hosts for word in ("--connect-to", f"{host}:{cls.directory}")),
            "--set", "network:connected=true", "--set", "settings:tunein/partnerId=test", *cls.host_arguments(),
        )  # fmt: skip
        if url != f"http://127.0.0.1:{PORT}/":
            raise AssertionError(url)
        cls.owner = house.Visitor(("127.0.0.1", PORT), f"127.0.0.1:{PORT}")

    def setUp(self):
        for device in self.devices().values():
            self.owner.call("devices.revoke", {"id": device["id"]})

    def devices(self):
        """Those that are paired, by name."""
        return {device["name"]: device for device in self.owner.call("devices.list")["devices"]}

    def pair(self, visitor, device, base="/", role="listener"):
        response = visitor.pair(self.owner.call("pairing.start", {"role": role})["code"], device, base)
        self.assertEqual(response.status, 200, response.content)
        return response

    def assert_nobody(self, visitor, base="/", disguises=DISGUISES):
        """No call, no WebSocket, no picture and no file gets through to somebody without a token. visitor() makes one for each disguise: an address
        that asks for so much is soon told that it asks for too much."""
        for disguise in disguises:
            with self.subTest(headers=disguise):
                somebody = visitor()
                call = {"jsonrpc": "2.0", "id": 1, "method": "getRows", "params": {"path": "host:services"}}
                answers = [somebody.request("POST", f"{base}jsonrpc", call, **disguise)]
                answers += [somebody.get(base + path, **disguise) for path in ("", "favicon.svg", "artwork/" + "0" * 64)]
                for answer in answers:
                    self.assertIn(answer.status, (303, 401, 403))
                    self.assertNotIn(b"result", answer.content)
                self.assert_refused(somebody, f"{base}ws", (401, 403), **disguise)

    def assert_refused(self, visitor, path, statuses, **headers):
        with self.assertRaises(house.Refused) as refused, visitor.websocket(path, **headers):
            pass
        self.assertIn(refused.exception.status, statuses)


class Nginx(House):
    """The document's own configuration."""

    BASE = "/radio/"

    @classmethod
    def host_arguments(cls):
        command, *arguments = section(DOCUMENT, "Behind nginx")["sh"].split()
        if command != "vesk-host":
            raise AssertionError(f"{DOCUMENT.name} starts {command}")
        return arguments

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_nginx(section(DOCUMENT, "Behind nginx")["nginx"])

    @classmethod
    def start_nginx(cls, text):
        if "nginx" in cls.programs.running:
            cls.programs.end("nginx")
        text = re.sub(r"(ssl_certificate\s+)[^;]+", rf"\g<1>{cls.certificate.file}", text)
        text = re.sub(r"(ssl_certificate_key\s+)[^;]+", rf"\g<1>{cls.certificate.key}", text)
        folder = cls.programs.folder
        places = "".join(f"{kind}_temp_path {folder}/{kind};\n" for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        (folder / "nginx.conf").write_text(
            f"user root;\ndaemon off;\npid {folder}/nginx.pid;\nerror_log stderr;\nevents {{}}\nhttp {{\naccess_log off;\n{places}{text}}}\n"
        )
        nginx = cls.programs.start("nginx", "nginx", "-p", folder, "-e", "stderr", "-c", folder / "nginx.conf")

        def listens():
            if nginx.poll() is not None:
                raise AssertionError("nginx has ended: " + cls.programs.log("nginx").read_text())
            with socket.socket() as probe:
                return probe.connect_ex((SERVER, 443)) == 0

        house.until(listens, "nginx listens")

    def visitor(self, address, name="radio.example"):
        return house.Visitor((SERVER, 443), name, house.trust(self.certificate.authority), address)

    def stranger(self):
        return self.visitor(next(STRANGERS))

    def get_with_files(self, visitor, path):
        """A page, after all that it loads has come as well, by the addresses in it."""
        page = visitor.get(path)
        self.assertEqual((page.status, page.getheader("Content-Type").split(";")[0]), (200, "text/html"))
        files = named_files(page.content.decode())
        self.assertTrue(files)
        for file in files:
            whole = urllib.parse.urlsplit(urllib.parse.urljoin(SITE + path, file))
            self.assertTrue(whole.path.startswith(self.BASE), file)
            self.assertEqual(visitor.get(whole.path).status, 200, file)
        return page

    def test_a_browser_is_led_to_the_page_that_takes_the_code(self):
        tablet = self.visitor(TABLET)
        without_slash = tablet.get("/radio", Accept="text/html")
        self.assertEqual(without_slash.status, 301)
        self.assertEqual(urllib.parse.urljoin(f"{SITE}/radio", without_slash.getheader("Location")), f"{SITE}/radio/")
        led = tablet.get("/radio/", Accept="text/html,application/xhtml+xml")
        self.assertEqual(led.status, 303)
        self.assertEqual(urllib.parse.urljoin(f"{SITE}/radio/", led.getheader("Location")), f"{SITE}/radio/pair")
        self.get_with_files(tablet, "/radio/pair")

    def test_a_device_is_paired_and_browses_and_sees_pictures(self):
        tablet = self.visitor(TABLET)
        cookie = self.pair(tablet, "Tablet", self.BASE).getheader("Set-Cookie")
        attributes = {part.strip().lower() for part in cookie.split(";")[1:]}
        self.assertLessEqual({"path=/radio", "httponly", "samesite=strict", "secure"}, attributes)
        self.get_with_files(tablet, "/radio/")
        with tablet.websocket("/radio/ws", Origin=SITE) as socket:
            self.assertIn("TuneIn", [row[0] for row in socket.call("getRows", {"path": "host:services", "roles": ["title"]})["rows"]])
            screen = {"path": "TuneIn:browse/uri/Search.ashx?query=jazz", "roles": ["title", "icon"]}
            icons = [icon for _, icon in socket.call("getRows", screen)["rows"] if icon and icon.startswith("http")]
            self.assertTrue(icons)
            picture = tablet.get("/radio/artwork/" + hashlib.sha256(icons[0].encode()).hexdigest())
            self.assertEqual((picture.status, picture.getheader("Content-Type").split("/")[0]), (200, "image"))
            self.assertTrue(picture.content)
            # What the host says by itself gets through as well.
            socket.call("subscribe", {"path": "settings:ui/language"})
            for language in ("de-DE", "en-US"):
                self.owner.call("setData", {"path": "settings:ui/language", "role": "value", "value": language})
                while (message := socket.message())["method"] != "changed":
                    pass
                self.assertEqual(message["params"]["kind"], "valueChanged")

    def test_a_revoked_device_is_out_at_once(self):
        tablet = self.visitor(TABLET)
        self.pair(tablet, "Tablet", self.BASE)
        with tablet.websocket("/radio/ws", Origin=SITE) as socket:
            socket.call("player.state")
            began = time.monotonic()
            self.owner.call("devices.revoke", {"id": self.devices()["Tablet"]["id"]})
            with self.assertRaises(EOFError):
                while True:
                    socket.message()
            took = time.monotonic() - began
        print(f"the WebSocket of a revoked device was closed {1000 * took:.0f} ms after the call was sent", flush=True)
        self.assertLess(took, 10)
        self.assertEqual(tablet.get("/radio/", Accept="text/html").status, 303)
        self.assert_refused(tablet, "/radio/ws", [401], Origin=SITE)

    def test_nobody_comes_in_without_a_token_whatever_the_headers_say(self):
        self.assert_nobody(self.stranger, self.BASE)

    def test_the_address_is_that_of_the_client(self):
        text = section(DOCUMENT, "Behind nginx")["nginx"]
        appending = text.replace("$remote_addr", "$proxy_add_x_forwarded_for")
        self.assertNotEqual(text, appending)
        for configuration in (appending, text):
            self.start_nginx(configuration)
            for number, disguise in enumerate(({}, {"X-Forwarded-For": STRANGER}, {"X-Forwarded-For": "127.0.0.1"})):
                tablet = self.visitor(TABLET)
                tablet.headers = disguise
                self.pair(tablet, f"Tablet {number}", self.BASE)
                self.assertEqual(self.devices()[f"Tablet {number}"]["address"], TABLET)
                tablet.call("player.state", base=self.BASE)
                self.assertEqual(self.devices()[f"Tablet {number}"]["address"], TABLET)

    def test_lines_that_were_forgotten_let_nobody_in(self):
        text = section(DOCUMENT, "Behind nginx")["nginx"]
        shorter = {
            lines: re.sub(rf"^ *proxy_set_header {lines} .*\n", "", text, flags=re.MULTILINE)
            for lines in ("X-Forwarded-For", "X-Forwarded-Proto", "Host", "[HX].*", "[A-Z].*")
        }
        # With nothing but the host's address, which looks like another path to the host.
        shorter["all"] = re.sub(r"(location /radio/ {).*?}", r"\1 proxy_pass http://127.0.0.1:8765/; }", text, flags=re.DOTALL)
        try:
            for lines, configuration in shorter.items():
                self.assertNotEqual(text, configuration)
                self.start_nginx(configuration)
                with self.subTest(lines=lines):
                    self.assert_nobody(self.stranger, self.BASE, [{}, {"Host": f"127.0.0.1:{PORT}"}])
        finally:
            self.start_nginx(text)

    def test_only_pages_of_the_site_may_open_a_websocket(self):
        tablet = self.visitor(TABLET)
        self.pair(tablet, "Tablet", self.BASE)
        for origin in ("https://elsewhere.example", "http://radio.example", "https://radio.example:444", "null", "http://127.0.0.1:8765"):
            with self.subTest(origin=origin):
                self.assert_refused(tablet, "/radio/ws", [403], Origin=origin)
        other = self.visitor(TABLET, "other.example")
        other.cookie = tablet.cookie
        other.tls.check_hostname = False
        self.assertEqual(other.get("/radio/").status, 403)


class Headers(House):
    """Beyond loopback, without a proxy in between; but there may be one at times."""

    @classmethod
    def host_arguments(cls):
        return [
            "--listen", f"127.0.0.1:{PORT}", "--listen", f"{SERVER}:{PORT}", "--trust-proxy", PROXY,
            "--base-path", "/radio", "--allow-origin", "https://panel.example",
        ]  # fmt: skip

    def visitor(self, address):
        return house.Visitor((SERVER, PORT), f"{SERVER}:{PORT}", house.trust_anybody(), address)

    def test_only_a_trusted_peer_is_believed_who_its_client_is(self):
        for address, header, known in [
            (PROXY, STRANGER, STRANGER),
            (PROXY, f"127.0.0.1, {STRANGER}", STRANGER),
            (PROXY, f"{STRANGER}, {PROXY}", STRANGER),
            (PROXY, [TABLET, STRANGER], STRANGER),
            (PROXY, "127.0.0.1", "127.0.0.1"),
            (PROXY, "nonsense", PROXY),
            (STRANGER, TABLET, STRANGER),
            (STRANGER, "127.0.0.1", STRANGER),
        ]:
            with self.subTest(address=address, header=header):
                visitor = self.visitor(address)
                visitor.headers = {"X-Forwarded-For": header}
                self.pair(visitor, "Visitor")
                device = self.devices()["Visitor"]
                self.assertEqual(device["address"], known)
                self.owner.call("devices.revoke", {"id": device["id"]})

    def test_nobody_comes_in_from_the_network_without_a_token(self):
        self.assert_nobody(lambda: self.visitor(next(STRANGERS)))
        self.assert_nobody(lambda: self.visitor(PROXY))

    def test_on_the_machine_whoever_comes_for_somebody_else_needs_a_token(self):
        forwarded = [headers for headers in DISGUISES if {"X-Forwarded-For", "Forwarded", "X-Real-IP"} & headers.keys()]
        self.assert_nobody(lambda: house.Visitor(("127.0.0.1", PORT), f"127.0.0.1:{PORT}"), "/", forwarded)

    def test_a_device_is_paired_at_each_address_that_it_may_be_told(self):
        urls = [urllib.parse.urlsplit(url) for url in self.owner.call("access.info")["urls"] if "panel.example" not in url]
        self.assertIn(f"{SERVER}:{PORT}", [url.netloc for url in urls])
        for url in urls:
            with self.subTest(url=url.geturl()):
                tablet = self.visitor(TABLET)
                tablet.name = url.netloc
                self.pair(tablet, "Tablet", url.path)
                self.assertEqual(tablet.get(url.path).status, 200)
                with tablet.websocket(f"{url.path}ws", Origin=f"https://{tablet.name}") as socket:
                    self.assertEqual(socket.call("access.info")["device"]["name"], "Tablet")

    def test_another_origin_may_be_allowed(self):
        tablet = self.visitor(TABLET)
        self.pair(tablet, "Tablet", "/radio/")
        with tablet.websocket("/radio/ws", Origin="https://panel.example") as socket:
            self.assertEqual(socket.call("access.info")["device"]["name"], "Tablet")
        self.assert_refused(tablet, "/radio/ws", [403], Origin="https://elsewhere.example")


del House  # It is no test by itself.


if __name__ == "__main__":
    house.enter()
    DOCUMENT, BIN, PLUGIN = pathlib.Path(sys.argv.pop(1)), pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1)
    house.wire("house", *(f"{address}/24" for address in (SERVER, PROXY, TABLET, STRANGER)))
    STRANGERS = house.strangers("10.78.0.0/16")
    unittest.main(verbosity=2)
