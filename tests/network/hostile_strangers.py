#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""hostile_strangers.py BIN PLUGIN: without a token nothing gets through but the pairing; with one, nothing that another site has sent."""

import hashlib
import subprocess
import sys

import besieged
import house

METHODS = """access.info cancel devices.list devices.rename devices.revoke devices.setRole getData getRows pairing.start pairing.state
 pairing.stop player.pause player.play player.resume player.state player.stop setData subscribe unsubscribe""".split()
PATHS = ["/", "/index.html", "/jsonrpc", "/ws", "/favicon.ico", "/manifest.webmanifest", "/app.js", "/artwork/" + "0" * 64, "/devices", "/nothing"]
# Ways around a rule for "/pair".
AROUND = ["/pair/../jsonrpc", "/pair/..%2fjsonrpc", "/pair/%2e%2e/jsonrpc", "/pair%2f..%2fjsonrpc", "//jsonrpc", "/./jsonrpc", "/jsonrpc/", "/jsonrpc?/pair",
          "/jsonrpc#/pair", "/jsonrpc%00/pair", "/%6asonrpc", "/JSONRPC", "/pairing", "/pair\\..\\jsonrpc", "/jsonrpc;/pair", f"http://{besieged.NAME}/jsonrpc"]  # fmt: skip
# What makes a request look as if it came from this machine, or from somebody who may come in.
DISGUISES = [
    {"X-Forwarded-For": "127.0.0.1"}, {"X-Forwarded-For": "127.0.0.1", "X-Forwarded-Proto": "https"}, {"X-Real-IP": "127.0.0.1"},
    {"Forwarded": "for=127.0.0.1;proto=https"}, {"Via": "1.1 localhost"}, {"X-Forwarded-Host": "localhost"}, {"X-Original-URL": "/pair"}, {"X-Rewrite-URL": "/pair"},
    {"X-HTTP-Method-Override": "GET"}, {"Authorization": "Bearer"}, {"Authorization": "Bearer null"}, {"Authorization": "Basic cm9vdDpyb290"},
    {"Cookie": "vesk-token="}, {"Cookie": "vesk-token=; vesk-token="}, {"Cookie": "vesk-token=undefined"}, {"Origin": f"https://{besieged.NAME}"},
]  # fmt: skip
NAMES = ["localhost", "127.0.0.1", "[::1]", f"localhost:{besieged.PORT}", f"127.0.0.1:{besieged.PORT}"]
FOREIGN_NAMES = ["evil.example", f"evil.example:{besieged.PORT}", f"{besieged.ADDRESS}.evil.example", "10.77.0.3", f"{besieged.ADDRESS}:80", "", "local", ".local",
                 "0.0.0.0", f"[::ffff:{besieged.ADDRESS}]"]  # fmt: skip
FOREIGN_ORIGINS = ["https://evil.example", "null", f"http://{besieged.NAME}", f"https://{besieged.NAME}.evil.example", f"https://{besieged.ADDRESS}",
                   f"https://{besieged.ADDRESS}:80", f"https://evil.example/{besieged.NAME}", "file://", ""]  # fmt: skip


def house_runs(command):
    subprocess.run(command, check=True, capture_output=True)


class Strangers(besieged.Siege):
    def setUp(self):
        self.visits = 0

    def tearDown(self):
        self.assertNotEqual(self.setting(), besieged.STOLEN)

    def visitor(self, **arguments):
        """From an address of its own for every few requests, because each address may send so many only."""
        self.visits += 1
        return self.stranger(address=f"10.77.1.{1 + self.visits // 20 % 250}", **arguments)

    def assert_refused(self, response, what, expected=(401,)):
        self.assertIn(response.status, expected, what)
        self.assertNotIn(b"result", response.content, what)
        self.assertLess(len(response.content), 200, what)
        self.assertIsNone(response.getheader("Set-Cookie"), what)
        self.assertIsNone(response.getheader("Access-Control-Allow-Origin"), what)

    def test_what_a_stranger_tries_is_what_an_owner_can(self):
        before = self.setting()
        self.paired().call("setData", besieged.CHANGE["params"])
        self.assertEqual(self.setting(), besieged.STOLEN)
        self.owner.call("setData", besieged.CHANGE["params"] | {"value": before})
        with self.owner.websocket("/ws") as websocket:
            for method in METHODS:
                try:
                    websocket.call(method)
                except AssertionError as answer:
                    self.assertNotIn("-32601", str(answer), "there is no such method")

    def test_no_call_gets_through_without_a_token(self):
        for method in METHODS:
            call = besieged.CHANGE if method == "setData" else {"jsonrpc": "2.0", "id": 1, "method": method, "params": {}}
            for body in (call, [call, call]):
                self.assert_refused(self.visitor().request("POST", "/jsonrpc", body), method)

    def test_no_path_answers_any_method_without_a_token(self):
        for path in PATHS:
            for method in ("GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS", "PATCH", "TRACE", "PROPFIND", "get"):
                expected = (303,) if path == "/" and method == "GET" else (401,)
                self.assert_refused(self.visitor().request(method, path, besieged.CHANGE), f"{method} {path}", expected)

    def test_no_other_way_of_writing_a_path_gets_around_the_token(self):
        for path in AROUND:
            for method in ("GET", "POST"):
                response = self.visitor().request(method, path, besieged.CHANGE if method == "POST" else None)
                self.assert_refused(response, f"{method} {path}", (400, 401, 404, 405))

    def test_no_disguise_helps(self):
        for disguise in DISGUISES:
            headers = {name.replace("-", "_"): value for name, value in disguise.items()}
            self.assert_refused(self.visitor().request("POST", "/jsonrpc", besieged.CHANGE, **headers), disguise)
            with self.assertRaises(house.Refused, msg=disguise) as refused:
                self.visitor().websocket("/ws", **headers)
            self.assertEqual(refused.exception.status, 401)

    def test_calling_the_host_by_a_name_of_loopback_does_not_help(self):
        for name in NAMES:
            self.assert_refused(self.visitor(name=name).request("POST", "/jsonrpc", besieged.CHANGE), name, (403,))

    def test_a_websocket_needs_a_token(self):
        for path in ("/ws", "/ws?token=x", "/ws/", "/pair/ws", "/pair/../ws"):
            with self.assertRaises(house.Refused, msg=path) as refused:
                self.visitor().websocket(path)
            self.assertIn(refused.exception.status, (400, 401, 404, 405))

    def test_a_picture_that_there_is_needs_a_token(self):
        rows = self.paired().call("getRows", {"path": "TuneIn:browse/uri/Search.ashx?query=a", "roles": ["icon"]})["rows"]
        icon = next(row[0] for row in rows if row[0])
        path = "/artwork/" + hashlib.sha256(icon.encode()).hexdigest()
        self.assertNotIn(self.paired().get(path).status, (401, 404))
        self.assert_refused(self.visitor().get(path), path)

    def test_without_tls_there_is_nothing_but_the_way_to_it(self):
        for token in (None, self.tokens["owner"]):
            for path in PATHS:
                response = self.visitor(tls=None, token=token).get(path)
                self.assertEqual((response.status, response.getheader("Location")), (308, f"https://{besieged.NAME}{path}"))
            self.assert_refused(self.visitor(tls=None, token=token).request("POST", "/jsonrpc", besieged.CHANGE), "POST", (403,))
            with self.assertRaises(house.Refused):
                self.visitor(tls=None, token=token).websocket("/ws")

    def test_the_ipv6_address_is_no_other_way_in(self):
        to, name = (besieged.ADDRESS6, besieged.PORT), f"[{besieged.ADDRESS6}]:{besieged.PORT}"
        self.assert_refused(self.stranger(to=to, name=name).request("POST", "/jsonrpc", besieged.CHANGE), "IPv6")
        self.assertIn("rows", self.paired(to=to, name=name).call("getRows", {"path": "host:services"}))

    def test_a_way_to_the_loopback_address_makes_nobody_an_owner(self):
        """As some routers and containers make one: what counts is where a connection comes from, and not only where it goes."""
        try:
            for machine, wire in ((self.machine.run, "wire"), (house_runs, "house")):
                machine(["sh", "-c", f"echo 1 >/proc/sys/net/ipv4/conf/{wire}/route_localnet"])
        except subprocess.CalledProcessError:
            self.skipTest("/proc/sys is not to be written here")
        self.machine.run(["ip", "route", "delete", "local", "127.0.0.0/8", "dev", "lo", "table", "local"])
        self.machine.run(["ip", "route", "delete", "local", "127.0.0.1", "dev", "lo", "table", "local"])
        self.machine.run(["ip", "route", "add", "127.0.0.1/32", "via", besieged.ADDRESS, "dev", "wire", "src", besieged.INTRUDER])
        to, name = ("127.0.0.1", besieged.PORT), f"127.0.0.1:{besieged.PORT}"
        self.assert_refused(self.stranger(to=to, name=name, tls=None).request("POST", "/jsonrpc", besieged.CHANGE), "plain", (403,))
        self.assert_refused(self.stranger(to=to, name=name).request("POST", "/jsonrpc", besieged.CHANGE), "TLS")

    def test_a_foreign_name_is_refused_with_a_token_too(self):
        for name in FOREIGN_NAMES:
            for visitor in (self.paired(), self.stranger()):
                self.assert_refused(visitor.request("POST", "/jsonrpc", besieged.CHANGE, Host=name), name, (403,))
            with self.assertRaises(house.Refused, msg=name) as refused:
                self.paired().websocket("/ws", Host=name)
            self.assertEqual(refused.exception.status, 403)

    def test_a_page_of_another_site_is_refused_with_a_token_too(self):
        for origin in FOREIGN_ORIGINS:
            self.assert_refused(self.paired().request("POST", "/jsonrpc", besieged.CHANGE, Origin=origin), origin, (403,))
            self.assert_refused(self.stranger().request("POST", "/pair", {"code": "000000", "name": "x"}, Origin=origin), origin, (403,))
            with self.assertRaises(house.Refused, msg=origin) as refused:
                self.paired().websocket("/ws", Origin=origin)
            self.assertEqual(refused.exception.status, 403)

    def test_what_a_form_of_another_site_can_send_is_refused(self):
        for kind in ("text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x", "", "text/plain; application/json", "application/json-patch"):
            self.assert_refused(self.paired().request("POST", "/jsonrpc", besieged.CHANGE, Content_Type=kind), kind, (415,))
        for method in ("GET", "HEAD", "OPTIONS", "PUT"):
            self.assert_refused(self.paired().request(method, "/jsonrpc", besieged.CHANGE), method, (405,))

    def test_a_listener_changes_no_setting(self):
        with self.assertRaisesRegex(AssertionError, "-32007"):
            self.paired("listener").call("setData", besieged.CHANGE["params"])
        for method in METHODS:
            if method.startswith(("pairing.", "devices.")):
                with self.assertRaisesRegex(AssertionError, "-32007|-32602", msg=method):
                    self.paired("listener").call(method)


if __name__ == "__main__":
    besieged.main(sys.argv)
