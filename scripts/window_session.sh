# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The Pallimo authors
#
# A screen of one's own and the real program on it, for scripts that look at the window. Sourced by
# take_pictures, measure_window and soak, which set $pallimo. What was started is ended with the script.
# shellcheck shell=bash disable=SC2154

session=$(mktemp -d)
session_processes=""
# A helper ends by itself when its app is gone.
end_session() {
  local process
  for process in $session_processes; do
    kill "$process" 2>/dev/null || true
    kill -CONT "$process" 2>/dev/null || true
    wait "$process" 2>/dev/null || true
  done
  rm -rf "$session"
}
trap end_session EXIT
trap 'exit 1' INT TERM

# keep PROCESS: it is ended with the script.
keep() { session_processes="$1 $session_processes"; }
# forget PROCESS: it has ended, and its number may be another's by now.
forget() {
  session_processes=" $session_processes"
  session_processes=${session_processes/ $1 / }
}

# Nothing of the user's desktop: no session bus, no settings, no theme, one font.
prepare_environment() {
  unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME
  unset QT_SCALE_FACTOR QT_STYLE_OVERRIDE KDE_SESSION_VERSION XDG_CURRENT_DESKTOP
  export LC_ALL=C.UTF-8 DO_NOT_TRACK=1
  export XDG_RUNTIME_DIR="$session/runtime" XDG_CONFIG_HOME="$session/config"
  export FONTCONFIG_FILE="$session/fonts.conf"
  mkdir -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME"
  cat >"$FONTCONFIG_FILE" <<'FONTS'
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <include ignore_missing="yes">/etc/fonts/fonts.conf</include>
  <match target="pattern">
    <test name="family"><string>sans-serif</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>Inter</string></edit>
  </match>
  <match target="pattern">
    <test name="family"><string>Sans Serif</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>Inter</string></edit>
  </match>
</fontconfig>
FONTS
}

# Qt takes the colours of a KDE desktop from a file, without any package of KDE's.
use_dark_desktop() {
  export QT_QPA_PLATFORMTHEME=kde KDE_SESSION_VERSION=5
  local part
  for part in Window Button View; do
    printf '[Colors:%s]\nBackgroundNormal=30,30,31\nForegroundNormal=242,242,242\n' "$part"
  done >"$XDG_CONFIG_HOME/kdeglobals"
}

use_light_desktop() { unset QT_QPA_PLATFORMTHEME KDE_SESSION_VERSION; }

# start_screen SIZE [OPTION...]: DISPLAY names it.
start_screen() {
  local size=$1
  shift
  rm -f "$session/display"
  # Without a reset: it would send away whoever connects while its last client leaves.
  Xvfb -displayfd 7 -screen 0 "${size}x24" -nolisten tcp -noreset "$@" 7>"$session/display" \
    2>"$session/xvfb.log" &
  keep $!
  until [ -s "$session/display" ]; do
    kill -0 $! 2>/dev/null || {
      cat "$session/xvfb.log" >&2
      return 1
    }
    sleep 0.05
  done
  DISPLAY=":$(cat "$session/display")"
  export DISPLAY
}

# window_of PROCESS: the number of its window, once it can be seen.
window_of() { timeout 30 xdotool search --sync --onlyvisible --pid "$1" | tail -n 1; }

height_of() { xdotool getwindowgeometry --shell "$1" | sed -n 's/^HEIGHT=//p'; }

# start_pallimo NAME SETTINGS [OPTION...]: with a state folder of its own, NAME in $session, and
# beside it what it says, NAME.log and NAME.errors; $app and $window name the program's process and
# its window, which shows the install screen unless that folder holds a helper.
start_pallimo() {
  state="$session/$1"
  mkdir -p "$state"
  printf '[General]\n%s\n' "$2" >"$state/settings.ini"
  shift 2
  "$pallimo" --state-dir "$state" "$@" >"$state.log" 2>"$state.errors" &
  app=$!
  keep "$app"
  window=$(window_of "$app")
}

# install_helper RATIO: presses the button, RATIO pixels a point, until the panels are there.
install_helper() {
  local left top tries=0
  while [ "$(height_of "$window")" -lt $((600 * $1)) ]; do
    eval "$(xdotool getwindowgeometry --shell "$window" | grep '^[XY]=')"
    left=$X top=$Y
    xdotool mousemove $((left + 190 * $1)) $((top + 185 * $1)) click 1
    sleep 0.3
    [ "$((tries += 1))" -lt 100 ] || {
      say "The install screen stays."
      return 1
    }
  done
  xdotool mousemove $((left + 600 * $1)) $((top + 20 * $1))
}

# The helper is found by the file that it runs, in the state folder.
helper_of() { # STATE
  local process
  for process in /proc/[0-9]*; do
    case "$(readlink "$process/exe" 2>/dev/null)" in
      "$1"/*) echo "${process#/proc/}" ;;
    esac
  done
}

end_pallimo() {
  kill "$app"
  wait "$app" || true
}
