# Sourced by the scripts that need a screen where there may be none.
# start_display [SIZE [XVFB OPTIONS...]]: an X server of our own on a free display, ended when the
# script ends.
# quiet_environment: what Qt and libvlc need on a machine with no session and no sound device.

headless_folder=$(mktemp -d)
headless_server=

stop_display() {
  if [ -n "$headless_server" ]; then
    kill "$headless_server" 2>/dev/null || true
    wait "$headless_server" 2>/dev/null || true
  fi
  rm -rf "$headless_folder"
}
trap stop_display EXIT

quiet_environment() {
  export LANG=C.UTF-8
  export XDG_RUNTIME_DIR="$headless_folder/runtime"
  mkdir -p -m 700 "$XDG_RUNTIME_DIR"
  printf 'pcm.!default { type null }\nctl.!default { type null }\n' >"$headless_folder/asound.conf"
  export ALSA_CONFIG_PATH="$headless_folder/asound.conf"
  export QT_QPA_PLATFORM=xcb
}

start_display() {
  local size=${1:-3840x2160x24}
  Xvfb -displayfd 3 -noreset -screen 0 "$size" -nolisten tcp "${@:2}" 3>"$headless_folder/display" 2>"$headless_folder/xvfb.log" &
  headless_server=$!
  for _ in $(seq 100); do
    [ -s "$headless_folder/display" ] && break
    sleep 0.1
  done
  if [ ! -s "$headless_folder/display" ]; then
    cat "$headless_folder/xvfb.log" >&2
    echo "No X server could be started." >&2
    return 1
  fi
  export DISPLAY=":$(cat "$headless_folder/display")"
  unset WAYLAND_DISPLAY
}
