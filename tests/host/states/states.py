#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""states.py check BUILD: starts the host of a build folder with the state of each released version, and looks for all that it held.
states.py keep BUILD VERSION: makes the folder VERSION here, for each release: the state of that build's host, and what the host answers with it.

A folder has "state", and "expected.json": "answers", each a method with its parameters and result, of which a later host may answer more,
not less; "streams", the content of streams.json; and "tables", rows of library.sqlite that no method shows. Everything in it is made up by
the local directories or here; the token of the paired device is thrown away.
"""

import contextlib
import json
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

HERE = pathlib.Path(__file__).resolve().parent
PATIENCE_SECONDS = 30
SETTINGS = {
    "settings:player/resume": "never",
    "settings:player/seamless": False,
    "settings:tunein/partnerId": "made-up",
    "settings:tunein/enabledFixItWizard": False,
    "settings:radiobrowser/server": "http://127.0.0.1:1",
}
STATIONS = "#EXTM3U\n#EXTINF:-1 group-title=\"Mornings\",Example One\nhttp://radio.example/one\n#EXTINF:-1,Example Two\nhttp://radio.example/two\n"
SCREENS = ["host:favorites", "host:recents", "RadioBrowser:favorites"]
TABLES = ["places", "night"]
LAST_ROW = 99
#: The state in player.state.
PLAYING = 2


@contextlib.contextmanager
def started(*command):
    """The address with which a program says that it is up."""
    process = subprocess.Popen(list(map(str, command)), stdout=subprocess.PIPE, text=True)
    try:
        line = process.stdout.readline()
        address = re.search(r"https?://([^/]*)/", line)
        if not address:
            sys.exit(f"{command[0]} did not start: {line}")
        yield address.group(1)
    finally:
        process.terminate()
        if process.wait(PATIENCE_SECONDS) != 0:
            sys.exit(f"{command[0]} ended with {process.returncode}")


def post(address, target, content):
    request = urllib.request.Request(f"http://{address}/{target}", json.dumps(content).encode(), {"Content-Type": "application/json"})
    with urllib.request.urlopen(request, timeout=PATIENCE_SECONDS) as answer:
        return json.load(answer)


def call(host, method, **params):
    answer = post(host, "jsonrpc", {"jsonrpc": "2.0", "id": 1, "method": method, "params": params})
    if "result" not in answer:
        sys.exit(f"{method} {params}: {answer}")
    return answer["result"]


def row(screen, number):
    """As the methods take rows, once the screen was read."""
    return {"screen": screen, "row": number}


def rows(host, screen):
    return call(host, "getRows", path=screen, first=0, last=LAST_ROW, roles=["path"])["rows"]


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE_SECONDS
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"There is no {what} after {PATIENCE_SECONDS} s.")
        time.sleep(0.1)


def table(state, name):
    with contextlib.closing(sqlite3.connect(f"file:{state}/library.sqlite?mode=ro&immutable=1", uri=True)) as library:
        return [list(each) for each in library.execute(f"SELECT * FROM {name} ORDER BY 1, 2")]


def host_command(build, state, *more):
    plugins = [part for name in ("tunein", "radiobrowser", "stations") for part in ("--plugin", build / f"lib/vesk/plugins/libvesk_cb_{name}.so")]
    return [build / "bin/vesk-host", "--state-dir", state, "--audio", "null", "--log-level", "warn", *plugins, *more]


def offline(build, state):
    return host_command(build, state, "--listen", "127.0.0.1:0", "--set", "network:connected=false")


def fill(build, state):
    """What a listener does in an afternoon."""
    with contextlib.ExitStack() as stack:
        tunein = stack.enter_context(started(build / "bin/tunein-directory", "--listen", "127.0.0.1:0"))
        radiobrowser = stack.enter_context(started(build / "bin/radiobrowser-directory", "--streams", f"http://{tunein}"))
        host = stack.enter_context(started(*host_command(
            build, state, "--listen", "0.0.0.0:0", "--plain-http", "--connect-to", f"opml.radiotime.com:80:{tunein}",
            "--set", "network:connected=true", "--set", "settings:tunein/partnerId=local", "--set", f"settings:radiobrowser/server=http://{radiobrowser}")))

        def play(screen, number):
            rows(host, screen)
            call(host, "player.play", **row(screen, number))
            wait_for(f"sound of {screen}", lambda: call(host, "player.state")["state"] == PLAYING)

        def veskctl(*words):
            subprocess.run([str(build / "bin/veskctl"), "--host", f"http://{host}/", *words], check=True, timeout=PATIENCE_SECONDS, stdout=subprocess.DEVNULL)

        jazz = "TuneIn:browse?query=jazz&veskTuneInMethod=search"
        play(jazz, 1)
        veskctl("streams", "--choose", "1")
        wait_for("recent row", lambda: rows(host, "host:recents"))
        call(host, "favorites.add", **row(jazz, 0))
        call(host, "presets.save", number=3, **row(jazz, 2))
        call(host, "alarms.set", preset=3, time="06:45", days=[1, 2, 3, 4, 5], enabled=False, volume=35, fade=20)
        veskctl("volume", "42")
        show = rows(host, "TuneIn:browse?query=podcast&veskTuneInMethod=search")[0][0]
        veskctl("play", "--wait", show)
        veskctl("seek", "45")  # not too close to the beginning
        wait_for("sound at another place", lambda: call(host, "player.state")["state"] == PLAYING)
        call(host, "player.stop")
        rows(host, "RadioBrowser:stations?name=jazz")
        veskctl("favorite", "add", "RadioBrowser:stations?name=jazz#1")
        with tempfile.NamedTemporaryFile("w", suffix=".m3u") as stations:
            stations.write(STATIONS)
            stations.flush()
            veskctl("import", "--in", "stations", stations.name)
        code = call(host, "pairing.start", role="owner")["code"]
        post(host, "pair", {"code": code, "name": "Kitchen tablet", "bearer": True})
    if not table(state, "places"):
        sys.exit("No place in an episode was kept.")
    with started(*offline(build, state)) as host:
        for path, value in SETTINGS.items():
            call(host, "setData", path=path, role="value", value=value)


def questions():
    for path in [*SETTINGS, "system:memberId", "Stations:export?format=m3u"]:
        yield "getData", {"path": path, "roles": ["value"]}
    for screen in SCREENS:
        yield "getRows", {"path": screen, "first": 0, "last": LAST_ROW, "roles": ["title", "description", "path"]}
    for method in ("devices.list", "presets.list", "alarms.list", "library.export", "player.volume"):
        yield method, {}


def keep(build, version):
    folder = HERE / version
    shutil.rmtree(folder, ignore_errors=True)
    state = folder / "state"
    fill(build, state)
    with started(*offline(build, state)) as host:
        answers = [{"method": method, "params": params, "result": call(host, method, **params)} for method, params in questions()]
    expected = {"answers": answers, "streams": json.loads((state / "streams.json").read_text()), "tables": {name: table(state, name) for name in TABLES}}
    (folder / "expected.json").write_text(json.dumps(expected, indent=1, ensure_ascii=False, sort_keys=True) + "\n")


def differences(wanted, found, where):
    """Where something that was wanted is not found."""
    if isinstance(wanted, dict) and isinstance(found, dict):
        return [each for name, value in wanted.items()
                for each in (differences(value, found[name], f"{where}.{name}") if name in found else [f"{where}.{name} is gone"])]
    if isinstance(wanted, list) and isinstance(found, list) and len(wanted) == len(found):
        return [each for i, value in enumerate(wanted) for each in differences(value, found[i], f"{where}[{i}]")]
    return [] if wanted == found else [f"{where} is {found!r}, not {wanted!r}"]


def check_one(build, version):
    expected = json.loads((version / "expected.json").read_text())
    errors = []
    with tempfile.TemporaryDirectory() as folder:
        state = pathlib.Path(folder) / "state"
        shutil.copytree(version / "state", state)
        for _ in range(2):  # as it was, and as it was brought up to date
            with started(*offline(build, state)) as host:
                for each in expected["answers"]:
                    found = call(host, each["method"], **each["params"])
                    errors += differences(each["result"], found, f"{version.name}: {each['method']} {each['params']}")
        errors += differences(expected["streams"], json.loads((state / "streams.json").read_text()), f"{version.name}: streams.json")
        for name, wanted in expected["tables"].items():
            errors += differences(wanted, table(state, name), f"{version.name}: {name}")
        errors += [f"{version.name}: there is {file.relative_to(state)}" for file in state.rglob("*.damaged*")]
    return errors


def check(build):
    versions = sorted(file.parent for file in HERE.glob("*/expected.json"))
    errors = [error for version in versions for error in check_one(build, version)]
    for error in errors:
        print(error, file=sys.stderr)
    print(f"{len(versions)} states of released versions, {len(errors)} differences")
    return 1 if errors or not versions else 0


def main():
    arguments = sys.argv[1:]
    if len(arguments) == 3 and arguments[0] == "keep":
        return keep(pathlib.Path(arguments[1]).resolve(), arguments[2])
    if len(arguments) == 2 and arguments[0] == "check":
        return check(pathlib.Path(arguments[1]).resolve())
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main())
