#!/usr/bin/env bash
# Runs a Windows program under Wine, on an invisible screen, with a Wine prefix of this project.
#
#   scripts/wine.sh PROGRAM.exe [ARGUMENT...]
#   scripts/wine.sh --session COMMAND [ARGUMENT...]
#
# The second form runs a command of this system while the screen and the Wine server stay up, so
# that the many Windows programs it starts begin in about 10 ms instead of 700 ms.
#
# Any number may run side by side: all share one screen and one prefix; the first starts them, the
# last ends them. The exit code is the program's; 124 when it ran into its time limit.
#
#   TIMEOUT      limit in seconds for PROGRAM, 600 if unset
#   WINE_HOME    folder of prefix, locks and logs, build/wine of this checkout if unset
#   WINE_DISPLAY a display to use instead of the invisible one, to watch the boxes: WINE_DISPLAY=:0

# shellcheck disable=SC2317  # it takes the functions that the trap reaches for unreachable
set -uo pipefail

usage() { sed -n '2,/^$/s/^# \{0,1\}//p' "$0"; }
die() { echo "wine.sh: $*" >&2; exit 125; }

session=
case "${1-}" in
  '' | -h | --help) usage; exit 0 ;;
  --session) session=1; shift; (($#)) || die "--session needs a command" ;;
esac

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
home=${WINE_HOME:-$root/build/wine}
mkdir -p "$home" || die "cannot create $home"
home=$(cd "$home" && pwd)

export WINEPREFIX=$home/prefix
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# No offers to download the .NET and HTML engines, no menu entries or file types for the desktop.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
# The same code page (1252) and file names in UTF-8, whatever the caller's locale.
export LC_ALL=C.UTF-8
unset WAYLAND_DISPLAY

# Debian's wrapper /usr/bin/wine warns about a missing 32-bit Wine; the loader itself does not.
loader=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver64
[[ -x $loader ]] || loader=$(command -v wine64 || command -v wine) || die "Wine is missing: run scripts/setup.sh"
[[ -x $wineserver ]] || wineserver=$(command -v wineserver) || die "wineserver is missing: run scripts/setup.sh"
# The loader is linked to 0x7d000000, and the system puts its heap at random into the gigabyte above: once in some
# thousand runs onto 0x7ffe0000, which every Windows program must have. Wine then ends it with code 1, without a word.
wine=(setarch --addr-no-randomize "$loader")
command -v Xvfb >/dev/null || die "Xvfb is missing: run scripts/setup.sh"

# 8: held while starting or ending the shared parts. 9: held, shared, by everyone who uses them.
exec 8>"$home/start.lock" 9>"$home/users.lock" || die "cannot write to $home"

lock_start() { flock -w 180 8 || die "another run holds $home/start.lock for over 180 s"; }

screen_runs() {
  local pid
  pid=$(cat "$home/screen.pid" 2>/dev/null) && [[ $(ps -o comm= -p "$pid" 2>/dev/null) == Xvfb ]]
}

start_screen() {
  [[ -z ${WINE_DISPLAY:-} ]] || { DISPLAY=$WINE_DISPLAY; return; }
  if ! screen_runs; then
    rm -f "$home/display"
    # -displayfd: the server itself picks a free number and writes it once it is ready.
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp \
      3>"$home/display" 8>&- 9>&- </dev/null >"$home/screen.log" 2>&1 &
    echo $! >"$home/screen.pid"
    disown
    for _ in {1..200}; do
      [[ -s $home/display ]] && break
      sleep 0.05
    done
    [[ -s $home/display ]] || die "Xvfb did not start: $(tail -n 3 "$home/screen.log")"
  fi
  DISPLAY=:$(cat "$home/display")
}

registry() {  # KEY NAME TEXT
  timeout -k 5 60 "${wine[@]}" reg add "$1" /v "$2" /d "$3" /f 8>&- 9>&- </dev/null \
    >>"$home/prefix.log" 2>&1 || die "cannot set up the Wine prefix"
}

create_prefix() {
  local stamp=$home/prefix.ready.2  # with a new number the prefix is made anew
  [[ -e $stamp ]] && return
  # Not under the feet of programs that run with an older one.
  [[ -d $WINEPREFIX ]] && ! flock -n -x 9 && return
  rm -rf "$WINEPREFIX"
  timeout -k 5 120 "${wine[@]}" wineboot -i 8>&- 9>&- </dev/null >"$home/prefix.log" 2>&1 \
    || die "cannot create the Wine prefix: $(tail -n 3 "$home/prefix.log")"
  # A crashing program ends at once with the low byte of the exception code. Wine's own debugger
  # would wait in a dialog, and end the program with code 0.
  registry 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' Debugger none
  # The screen has no window manager: Wine would wait 2 s for its answer each time a box closes.
  registry 'HKCU\Software\Wine\X11 Driver' Managed N
  timeout -k 5 60 "$wineserver" -w 8>&- 9>&-  # until the registry is on disk
  # The user's folders become folders of the prefix, not links into the home folder.
  local link
  find "$WINEPREFIX/drive_c/users" -type l | while read -r link; do
    rm -f "$link" && mkdir -p "$link"
  done
  touch "$stamp"
}

join() {
  lock_start
  start_screen
  export DISPLAY
  create_prefix
  flock -s 9
  flock -u 8
}

# One program that waits for its input to end keeps the Wine server, the services and the desktop up.
# Without it the programs that find none start them, and whoever reads their output waits for these to close it, which
# may be never; cmd by itself would not wait until the desktop is there.
hold_wine() {
  session_log=$home/session.$$.log
  exec 7> >(exec "${wine[@]}" cmd 8>&- 9>&- >"$session_log" 2>&1)
  echo 'start /wait rundll32 user32,GetDesktopWindow & echo up' >&7
  for _ in {1..600}; do
    grep -qs '>up' "$session_log" && return
    sleep 0.1
  done
  die "Wine does not start: $(tail -n 3 "$session_log")"
}

leave() {
  if [[ -n $session ]]; then
    exec 7>&-
    rm -f "$session_log"
  fi
  lock_start
  flock -u 9
  if flock -n -x 9; then  # nobody else is left
    "$wineserver" -k 8>&- 9>&- 2>/dev/null && timeout 10 "$wineserver" -w 8>&- 9>&- 2>/dev/null
    if screen_runs; then kill "$(cat "$home/screen.pid")"; fi
    rm -f "$home/screen.pid" "$home/display"
  fi
  flock -u 9
  flock -u 8
}

program=$1
if [[ -z $session ]]; then
  [[ $program != */* || -f $program ]] || die "no such program: $program"
  set -- timeout --foreground -k 5 "${TIMEOUT:-600}" "${wine[@]}" "$@"
fi

join
trap leave EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
[[ -z $session ]] || hold_wine

# In the background, so that a signal reaches this shell at once; standard input is kept.
(exec "$@" 7>&- 8>&- 9>&-) <&0 &
child=$!
trap 'kill "$child" 2>/dev/null; exit 143' TERM
trap 'kill "$child" 2>/dev/null; exit 130' INT
wait "$child"
code=$?
if ((code == 124 || code == 137)) && [[ -z $session ]]; then
  echo "wine.sh: $program was ended after ${TIMEOUT:-600} s" >&2
  code=124
fi
exit "$code"
