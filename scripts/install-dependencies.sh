#!/usr/bin/env bash
# Installs what building, running and testing need from Debian's packages; does nothing when all
# of it is there. Usage: scripts/install-dependencies.sh [run|test|package|players]
#   run: to build and run; test: the default, also to test; package: to build, pack and check a
#   package; players: also the players that scripts/bench.sh sets ours beside
set -euo pipefail

build_packages=(
  cmake ninja-build g++ ccache pkg-config
  qtbase5-dev qtbase5-private-dev qtdeclarative5-dev qtdeclarative5-dev-tools qtmultimedia5-dev
  libqt5svg5-dev
  libxcb1-dev libgl-dev libtbb-dev libvlc-dev
  libvips-dev libraw-dev libjpeg-dev libexiv2-dev
)
run_packages=(
  libqt5sql5-sqlite libgl1-mesa-dri fonts-dejavu-core
  qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-controls
  qml-module-qtquick-dialogs qml-module-qtquick-privatewidgets qml-module-qtquick-layouts
  qml-module-qtgraphicaleffects qml-module-qtmultimedia
  qml-module-qt-labs-folderlistmodel qml-module-qt-labs-settings
  vlc-plugin-base libvlc-bin libqt5multimedia5-plugins gstreamer1.0-plugins-good gstreamer1.0-libav
  xvfb xauth imagemagick x11-utils
)
test_packages=(
  clang libclang-rt-14-dev clang-format clang-tidy
  qml-module-qttest libqt5quicktest5
  libgtest-dev libgmock-dev libbenchmark-dev
  ffmpeg libavformat-dev g++-mingw-w64-x86-64-posix
  xdotool openbox python3
  exiv2 libimage-exiftool-perl libvips-tools libomp-14-dev openssl dbus-daemon
)
package_packages=(
  appstream desktop-file-utils libxml2-utils man-db librsvg2-bin dpkg-dev file debootstrap dbus
)
players_packages=(mpv vlc-bin vlc-plugin-video-output util-linux)

packages=("${build_packages[@]}" "${run_packages[@]}")
case "${1:-test}" in
  run) ;;
  package) packages+=("${package_packages[@]}") ;;
  players) packages+=("${test_packages[@]}" "${players_packages[@]}") ;;
  *) packages+=("${test_packages[@]}") ;;
esac
# Breakpad's sources come through npm, which need not be Debian's.
command -v npm >/dev/null || packages+=(nodejs npm)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" = 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
