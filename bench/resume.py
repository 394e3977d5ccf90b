#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""resume.py BUILD [ROUNDS]: measures how soon there is sound again after kill -9 and another start.

The host of a build folder, with TuneIn's plug-in and the local directory, beside MPD with the same stream and a state file that it writes
each second. Both play to a file; the time is that from the start of the program to the first sample that is not silence.
"""

import contextlib
import json
import pathlib
import re
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request

PATIENCE_SECONDS = 30
#: From the first sound on, until the program is killed: MPD has to have written its state.
LISTEN_SECONDS = 2.5
WAV_HEADER = 44


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.002)
    sys.exit(f"There is no {what} after {PATIENCE_SECONDS} s.")


def has_sound(file, skipped):
    try:
        return any(file.read_bytes()[skipped:])
    except FileNotFoundError:
        return False


def address_of(process):
    """Where a program that says so on its standard output is up."""
    line = process.stdout.readline()
    address = re.search(r"https?://[^/]*/", line)
    if not address:
        sys.exit(f"a program did not start: {line}")
    return address.group()


@contextlib.contextmanager
def local_directory(build):
    """The address of a local directory that runs meanwhile."""
    with subprocess.Popen([build / "bin/tunein-directory", "--listen", "127.0.0.1:0"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True) as process:
        try:
            yield address_of(process)
        finally:
            process.terminate()


class Vesk:
    name = "vesk-host"

    def __init__(self, build, folder, directory):
        self.output = folder / "vesk.wav"
        self._process = None
        self._command = [
            build / "bin/vesk-host", "--listen", "127.0.0.1:0", "--state-dir", folder / "vesk", "--audio", f"wav:{self.output}",
            "--plugin", build / "lib/vesk/plugins/libvesk_cb_tunein.so", "--connect-to", "opml.radiotime.com:80:" + directory.split("/")[2],
            "--set", "network:connected=true", "--set", "settings:tunein/partnerId=local"]

    def start(self):
        self._process = subprocess.Popen(list(map(str, self._command)), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)

    def _call(self, address, method, params):
        call = {"jsonrpc": "2.0", "id": 1, "method": method, "params": params}
        request = urllib.request.Request(address + "jsonrpc", json.dumps(call).encode(), {"Content-Type": "application/json"})
        with urllib.request.urlopen(request) as answer:
            return json.load(answer)["result"]

    def play(self):
        """Plays a station, and returns the address of its stream."""
        address = address_of(self._process)
        self._call(address, "player.play", {"screen": "TuneIn:browse/uri/Search.ashx?query=a", "row": 0})
        wait_for("sound of the host's", self.sounds)
        return self._call(address, "player.state", {})["uri"]

    def sounds(self):
        return has_sound(self.output, WAV_HEADER)

    def kill(self):
        self._process.send_signal(signal.SIGKILL)
        self._process.wait()
        self._process.stdout.close()


class Mpd:
    name = "mpd"

    def __init__(self, folder):
        self.output = folder / "mpd.pcm"
        self._socket = folder / "mpd.socket"
        self._process = None
        (folder / "music").mkdir()
        self._config = folder / "mpd.conf"
        self._config.write_text(f"""
            music_directory "{folder}/music"
            state_file "{folder}/mpd.state"
            state_file_interval "1"
            log_file "{folder}/mpd.log"
            bind_to_address "{self._socket}"
            zeroconf_enabled "no"
            audio_output {{
                type "pipe"
                name "file"
                format "44100:16:2"
                command "cat > {self.output}"
            }}
            """)

    def start(self):
        self._process = subprocess.Popen(["mpd", "--no-daemon", self._config], stderr=subprocess.DEVNULL)

    def play(self, uri):
        wait_for("socket of MPD's", self._socket.exists)
        with socket.socket(socket.AF_UNIX) as client:
            client.connect(str(self._socket))
            client.sendall(f'add "{uri}"\nplay\nclose\n'.encode())
            while client.recv(4096):
                pass
        wait_for("sound of MPD's", self.sounds)

    def sounds(self):
        return has_sound(self.output, 0)

    def kill(self):
        self._process.send_signal(signal.SIGKILL)
        self._process.wait()


def restart_seconds(player):
    time.sleep(LISTEN_SECONDS)
    player.kill()
    player.output.unlink(missing_ok=True)
    begin = time.monotonic()
    player.start()
    wait_for(f"sound of {player.name}'s", player.sounds)
    return time.monotonic() - begin


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 11
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        address = stack.enter_context(local_directory(build))
        vesk, mpd = Vesk(build, folder, address), Mpd(folder)
        vesk.start()
        stack.callback(vesk.kill)
        uri = vesk.play()
        mpd.start()
        stack.callback(mpd.kill)
        # The host is told where the directory is; MPD has no such option.
        mpd.play(uri.replace("http://opml.radiotime.com/", address))
        times = {player.name: [] for player in (vesk, mpd)}
        for _ in range(rounds):
            for player in (vesk, mpd):
                times[player.name].append(restart_seconds(player))
        for name, each in times.items():
            print(f"{name}: kill -9 and start to sound, p50 of {rounds}: {statistics.median(each) * 1000:.0f} ms, longest {max(each) * 1000:.0f} ms")


if __name__ == "__main__":
    main()
