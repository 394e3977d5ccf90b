#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""outputs.py BIN PLUGIN: a host that plays to a PulseAudio daemon of the test's own, with sinks that come, go and hang, and to ALSA's plug-ins."""

import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

import house

SONG = {"screen": "TuneIn:browse/uri/Search.ashx?query=trial%2001", "row": 0}
SINKS = """load-module module-native-protocol-unix
load-module module-null-sink sink_name=kitchen sink_properties=device.description=Kitchen
load-module module-null-sink sink_name=bath
"""
ALSA = """pcm.!default {{ type null }}
pcm.silent {{ type null }}
pcm.recorder {{ type file slave.pcm silent file "{file}" format raw }}
"""


class Outputs(unittest.TestCase):
    def setUp(self):
        self.programs = self.enterContext(house.Programs())
        folder = self.programs.folder
        (folder / "default.pa").write_text(SINKS)
        # For a build with the leak checker: each time GStreamer's provider lists PulseAudio's sinks, it forgets the 88 bytes of an operation.
        (folder / "leaks").write_text("leak:libpulse\n")
        self.recording = folder / "recording"
        (folder / "asound.conf").write_text(ALSA.format(file=self.recording))
        self.environment = {
            "XDG_RUNTIME_DIR": str(folder), "HOME": str(folder), "PULSE_SERVER": f"unix:{folder}/pulse/native",
            "LSAN_OPTIONS": f"suppressions={folder}/leaks",
            "ALSA_CONFIG_PATH": f"/usr/share/alsa/alsa.conf:{folder}/asound.conf",
        }  # fmt: skip
        self.directory = self.programs.start_ready("directory", BIN / "tunein-directory", "--listen", "127.0.0.1:0").split("/")[2]
        self.hosts = subprocess.run([BIN / "tunein-directory", "--list-hosts"], check=True, capture_output=True, text=True).stdout.split()

    def start_daemon(self):
        self.programs.start("pulseaudio", "pulseaudio", "-n", "-F", self.programs.folder / "default.pa", "--daemonize=no", "--exit-idle-time=-1",
                            "--use-pid-file=no", environment=self.environment)
        house.until(lambda: self.pulse("info", check=False), "PulseAudio is up")

    def pulse(self, *words, check=True):
        run = subprocess.run(["pactl", *words], env=os.environ | self.environment, capture_output=True, text=True, check=check, timeout=house.PATIENCE)
        return run.stdout

    def playing_to(self):
        """The names of the sinks that somebody plays to."""
        names = {line.split()[0]: line.split()[1] for line in self.pulse("list", "short", "sinks").splitlines()}
        return [names.get(line.split()[1]) for line in self.pulse("list", "short", "sink-inputs").splitlines()]

    def start_host(self, *arguments, audio="null"):
        house.vesk_host(
            self.programs, BIN, "--plugin", PLUGIN, "--listen", "127.0.0.1:8765", "--set", "network:connected=true",
            "--connect-to", f"opml.radiotime.com:80:{self.directory}",
            *(word for host in self.hosts for word in ("--connect-to", f"{host}:{self.directory}")), *arguments, audio=audio,
            environment=self.environment,
        )  # fmt: skip
        self.visitor = house.Visitor(("127.0.0.1", 8765), "127.0.0.1:8765")

    def call(self, method, **params):
        return self.visitor.call(method, params)

    def play(self):
        self.call("player.play", **SONG)
        house.until(lambda: self.call("player.state")["state"] == 2, "it plays")

    def listed(self):
        return {each["output"]: each for each in self.call("outputs.list")["outputs"]}

    def test_sound_goes_where_it_is_led(self):
        self.start_daemon()
        self.start_host()
        outputs = self.listed()
        self.assertLessEqual({"auto", "null", "pulse:kitchen", "pulse:bath"}, outputs.keys())
        self.assertEqual(outputs["pulse:kitchen"]["name"], "Kitchen")
        self.assertTrue(outputs["null"]["current"])
        self.play()
        for room in ("kitchen", "bath", "kitchen"):
            self.call("outputs.choose", output=f"pulse:{room}")
            house.until(lambda: self.playing_to() == [room], f"sound in {room} alone, not in {self.playing_to()}")
            self.assertEqual(self.call("player.state")["output"], f"pulse:{room}")
            self.assertEqual(self.call("player.state")["state"], 2)
        with self.assertRaisesRegex(AssertionError, "There is no sound device"):
            self.call("outputs.choose", output="pulse:garden")
        self.assertEqual(self.playing_to(), ["kitchen"])
        self.assertEqual(self.programs.end("host"), 0)

    def test_a_daemon_that_goes_is_told_and_taken_again(self):
        self.start_daemon()
        self.start_host(audio="pulse:bath")
        self.play()
        house.until(lambda: self.playing_to() == ["bath"], "sound in the bath")
        self.programs.end("pulseaudio")
        house.until(lambda: self.call("player.state")["outputProblem"], "the fault is told")
        self.assertIn("has gone or does not work", self.call("player.state")["outputProblem"])
        self.assertFalse(self.listed()["pulse:bath"]["available"])
        self.start_daemon()
        house.until(lambda: self.playing_to() == ["bath"], "sound in the bath again")
        house.until(lambda: self.call("player.state")["state"] == 2, "it plays again")
        self.assertEqual(self.call("player.state")["outputProblem"], "")

    def test_a_daemon_that_hangs_holds_nobody_up(self):
        self.start_daemon()
        self.start_host(audio="pulse:bath")
        self.play()
        house.until(lambda: self.playing_to() == ["bath"], "sound in the bath")
        self.listed()
        self.programs.signal("pulseaudio", signal.SIGSTOP)
        began = time.monotonic()
        self.assertTrue(self.listed()["pulse:kitchen"]["available"], "as far as is known")
        self.assertLess(time.monotonic() - began, 6)
        for _ in range(20):
            began = time.monotonic()
            self.call("player.state")
            self.assertLess(time.monotonic() - began, 2)
        self.programs.signal("pulseaudio", signal.SIGCONT)
        house.until(lambda: self.playing_to() == ["bath"], "sound in the bath")

    def test_alsas_devices_are_played_to(self):
        self.start_host(audio="alsa:recorder")
        self.play()
        house.until(lambda: self.recording.exists() and self.recording.stat().st_size > 400000, "a recording by ALSA")
        # Clients cannot have ALSA write files.
        with self.assertRaisesRegex(AssertionError, "can only be given when"):
            self.call("outputs.choose", output=f"alsa:file:{self.programs.folder}/evil,raw")
        self.assertFalse((self.programs.folder / "evil").exists())


if __name__ == "__main__":
    house.enter()
    BIN, PLUGIN = pathlib.Path(sys.argv.pop(1)), sys.argv.pop(1)
    unittest.main(verbosity=2)
