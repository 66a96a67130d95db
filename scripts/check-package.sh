#!/usr/bin/env bash
# Installs the package into a clean Debian 12 system, starts it there, plays the samples, and
# removes it again. Needs root and the network; the system lies in a folder of its own and is
# entered by chroot. The X server stands outside of it, so that it hides no missing dependency.
#   scripts/check-package.sh [PACKAGE]     the newest of build/package if none is named
# ORBILENS_CHECK_FOLDER: where the system is put (/var/tmp/orbilens-package-check); what was fetched
# is kept there for the next run. ORBILENS_MIRROR: Debian's archive (http://deb.debian.org).
# The screenshots are left in build/package/screenshots.
set -euo pipefail
cd "$(dirname "$0")/.."
[ "$(id -u)" = 0 ] || { echo "This needs root."; exit 1; }

# Everything that is mounted below goes with this process.
if [ "${ORBILENS_CHECK_INNER:-}" != 1 ]; then
  scripts/install-dependencies.sh package
  scripts/install-dependencies.sh test
  ORBILENS_CHECK_INNER=1 exec unshare --mount --propagation private "$0" "$@"
fi

package=$(realpath "${1:-$(ls -t build/package/orbilens-player_*.deb | head -1)}")
folder=${ORBILENS_CHECK_FOLDER:-/var/tmp/orbilens-package-check}
mirror=${ORBILENS_MIRROR:-http://deb.debian.org}
base=$folder/base
root=$folder/root
pictures=$PWD/build/package/screenshots
mkdir -p "$folder" "$pictures"

step() { echo "== $*"; }
fail() { echo "FAILED: $*"; exit 1; }

. scripts/lib/headless.sh
quiet_environment
start_display 1280x800x24
openbox 2>/dev/null &
window_manager=$!
trap 'kill "$window_manager" 2>/dev/null; stop_display' EXIT

if [ ! -e "$base/etc/debian_version" ]; then
  step "fetching a base system"
  rm -rf "$base"
  debootstrap --variant=minbase bookworm "$base" "$mirror/debian" >"$folder/debootstrap.log"
fi
step "a clean system"
rm -rf "$root"
cp -a "$base" "$root"
cat >"$root/etc/apt/sources.list" <<END
deb $mirror/debian bookworm main
deb $mirror/debian bookworm-updates main
deb $mirror/debian-security bookworm-security main
END
# How this machine reaches the archive holds inside as well.
cp /etc/resolv.conf "$root/etc/resolv.conf"
for file in $(grep -lis '^[[:space:]]*acquire::.*proxy' /etc/apt/apt.conf /etc/apt/apt.conf.d/*); do
  cp "$file" "$root/etc/apt/apt.conf.d/"
done
mkdir -p "$folder/archives" "$root/var/cache/apt/archives" "$root/tmp/.X11-unix"
mount --bind "$folder/archives" "$root/var/cache/apt/archives"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount --bind /dev/shm "$root/dev/shm"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 \
  DEBIAN_FRONTEND=noninteractive "$@"; }
quietly() { "$@" >"$folder/log" 2>&1 || { cat "$folder/log"; fail "$*"; }; }
# What changes with every use of the system says nothing of the package.
files() {
  (cd "$root" && find . -xdev \( -path ./tmp -o -path ./proc -o -path ./dev -o -path ./home \
    -o -path ./var/cache -o -path ./var/log -o -path ./var/lib/apt -o -path ./var/lib/dpkg \) \
    -prune -o -print | sort)
}

step "what the package depends on"
quietly inside apt-get update
quietly inside apt-get install -y --no-install-recommends shared-mime-info desktop-file-utils
quietly inside apt-get satisfy -y --no-install-recommends "$(dpkg-deb -f "$package" Depends)"
inside useradd --create-home visitor
files >"$folder/before"

step "installing"
cp "$package" "$root/tmp/player.deb"
quietly inside apt-get install -y --no-install-recommends /tmp/player.deb
samples=/usr/share/doc/orbilens-player/examples
printf 'pcm.!default { type null }\nctl.!default { type null }\n' >"$root/tmp/asound.conf"
chmod 644 "$root/tmp/asound.conf"

as_visitor() { chroot --userspec=visitor "$root" env -i PATH=/usr/bin:/bin HOME=/home/visitor \
  LANG=C.UTF-8 DISPLAY="$DISPLAY" ALSA_CONFIG_PATH=/tmp/asound.conf XDG_RUNTIME_DIR=/home/visitor/run \
  "$@"; }
inside install -d -o visitor -m 700 /home/visitor/run

[ "$(as_visitor orbilens-player --version)" = "Orbilens Player $(dpkg-deb -f "$package" Version)" ] ||
  fail "the version is another one"
[ "$(inside update-mime-database -V /usr/share/mime >/dev/null 2>&1; grep -c orbilens "$root/usr/share/mime/globs2")" = 1 ] ||
  fail "playlists have no type"
grep -q '^application/x-orbilens-playlist=orbilens-player.desktop' \
  "$root/usr/share/applications/mimeinfo.cache" || fail "nobody opens playlists"

player=
window=
start() { # name of the log, arguments
  local log=$folder/$1.log
  shift
  as_visitor orbilens-player "$@" >"$log" 2>&1 &
  player=$!
  window=
  for _ in $(seq 200); do
    window=$(xdotool search --onlyvisible --name '^Orbilens Player' 2>/dev/null | tail -1 || true)
    [ -n "$window" ] && return
    kill -0 "$player" 2>/dev/null || { cat "$log"; fail "the player ended by itself"; }
    sleep 0.1
  done
  fail "no window came"
}
colours() { convert "$1" -crop 900x500+190+150 -format '%k' info:; }
shows() { # picture
  for _ in $(seq 60); do
    import -window root "$pictures/$1.png"
    [ "$(colours "$pictures/$1.png")" -gt 2000 ] && return
    sleep 0.5
  done
  fail "the picture '$1' does not show: $pictures/$1.png"
}
close() { # name of the log
  local status=0
  xdotool windowactivate --sync "$window" key alt+F4
  wait "$player" || status=$?
  [ "$status" = 0 ] || fail "the player ended with $status"
  if grep -v '^Crash dump path : ' "$folder/$1.log"; then
    fail "the player had something to say"
  fi
}

step "playing the samples"
start playlist "$samples/samples.orpl"
shows still
close playlist
# Read by libvips alone, behind a plug-in of the player's.
convert "$root$samples/panorama.jpg" "$root/tmp/still.tif"
chmod 644 "$root/tmp/still.tif"
start plugin /tmp/still.tif
shows plugin
close plugin
start film "$samples/turning.mp4"
shows film
sleep 1.5
import -window root "$pictures/film-later.png"
changed=$(compare -metric AE "$pictures/film.png" "$pictures/film-later.png" null: 2>&1 || true)
[ "${changed%%.*}" -gt 10000 ] || fail "the film stands still"
close film
[ -e "$root/home/visitor/.config/Orvex/Orbilens Player 2.3.conf" ] || fail "no settings were kept"
grep -q 'application/x-orbilens-playlist' "$root/home/visitor/.local/share/recently-used.xbel" ||
  fail "the playlist is not among the recent files"

step "crashing"
start crash "$samples/panorama.jpg"
shows before-the-crash
kill -SEGV "$(xdotool getwindowpid "$window")"
wait "$player" 2>/dev/null || true
reporter=
for _ in $(seq 100); do
  reporter=$(xdotool search --onlyvisible --class KCrashReporter 2>/dev/null | tail -1 || true)
  [ -n "$reporter" ] && break
  sleep 0.1
done
[ -n "$reporter" ] || fail "no reporter came"
sleep 1
import -window root "$pictures/reporter.png"
kill "$(xdotool getwindowpid "$reporter")"
ls "$root"/tmp/*.dmp >/dev/null || fail "no dump was left"

step "removing"
quietly inside apt-get purge -y orbilens-player
files >"$folder/after"
diff "$folder/before" "$folder/after" || fail "these files differ after the removal"
for file in $(grep -rlsi orbilens "$root/etc" "$root/usr" "$root/var/lib" --exclude-dir=apt || true); do
  fail "left behind in $file"
done
echo "The package is sound. Screenshots: $pictures"
