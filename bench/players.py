#!/usr/bin/env python3
"""Sets the player beside mpv and VLC on the same spherical clip: time from the start to the first
picture on the screen, processor time of what then plays, peak memory. Each looks through a flat
window of 90 degrees: mpv through a filter, VLC by itself where the file says that it is spherical.

Usage: players.py PLAYER CLIP SECONDS, on a display whose frame buffer lies in $FRAMEBUFFER
(Xvfb -fbdir) and which shows nothing else.
"""

import mmap
import os
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time

PATIENCE = 60.0
STARTS = 5


class Screen:
    """The X server's memory, looked into without asking the server."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self.memory[:100])
        self.pixels = header[0] + header[19] * 12
        self.width, self.height, self.stride = header[4], header[5], header[12]

    def shows_picture(self):
        """Whether a quarter of the window's middle has colours, which no start screen has."""
        coloured = 0
        for y in range(20):
            for x in range(20):
                at = (self.pixels + (self.height // 3 + y * self.height // 60) * self.stride
                      + (self.width // 3 + x * self.width // 60) * 4)
                blue, green, red = self.memory[at:at + 3]
                coloured += max(red, green, blue) - min(red, green, blue) > 50
        return coloured >= 100


def processor_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def peak_megabytes(pid):
    with open(f"/proc/{pid}/status", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("VmHWM")) / 1024


def play(command, home, screen, seconds):
    """(seconds to the first picture, processor seconds per second played, peak megabytes)"""
    environment = dict(os.environ, HOME=home)
    while screen.shows_picture():
        time.sleep(0.05)
    begin = time.monotonic()
    with open(os.path.join(home, "log"), "wb") as log:
        process = subprocess.Popen(command, env=environment, stdout=log, stderr=log,
                                   stdin=subprocess.DEVNULL)
    try:
        while not screen.shows_picture():
            if process.poll() is not None or time.monotonic() > begin + PATIENCE:
                with open(os.path.join(home, "log"), encoding="utf-8", errors="replace") as log:
                    sys.exit(f"{command[0]} showed no picture:\n{log.read()}")
            time.sleep(0.002)
        first = time.monotonic() - begin
        before, since = processor_seconds(process.pid), time.monotonic()
        time.sleep(seconds)
        load = (processor_seconds(process.pid) - before) / (time.monotonic() - since)
        return first, load, peak_megabytes(process.pid)
    finally:
        process.kill()
        process.wait()


def main(player, clip, seconds):
    screen = Screen(os.environ["FRAMEBUFFER"])
    clip = os.path.abspath(clip)
    size = f"{screen.width}x{screen.height}"
    # VLC does not run as the superuser.
    other_user = ["setpriv", "--reuid=65534", "--clear-groups"] if os.geteuid() == 0 else []
    commands = {
        "Orbilens Player": [os.path.abspath(player), clip],
        "mpv": ["mpv", "--no-config", "--vo=gpu", "--gpu-sw=yes", "--no-audio", "--loop", "--geometry=" + size,
                "--vf=lavfi=[v360=e:flat:h_fov=90:v_fov=59:w=1280:h=720]", clip],
        "VLC": other_user + ["cvlc", "--no-audio", "--loop", "--no-video-title-show",
                              "--avcodec-hw=none", "--width=1280", "--height=720", clip],
    }
    commands = {name: command for name, command in commands.items()
                if shutil.which(command[0] if name != "VLC" else "cvlc")}
    results = {name: [] for name in commands}
    homes = {name: tempfile.mkdtemp(dir=os.environ["HOME"]) for name in commands}
    for home in homes.values():
        os.chmod(home, 0o777)
    for turn in range(STARTS):
        for name, command in commands.items():
            # Only the last of each plays for long; the first fills the caches.
            length = seconds if turn == STARTS - 1 else 0.2
            results[name].append(play(command, homes[name], screen, length))
    print(f"{'player':<18}{'first picture':>15}{'processors':>12}{'peak memory':>14}")
    for name, runs in results.items():
        first = statistics.median(run[0] for run in runs[1:])
        print(f"{name:<18}{first * 1e3:>12.0f} ms{runs[-1][1]:>12.2f}{runs[-1][2]:>11.0f} MB")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], float(sys.argv[3]))
