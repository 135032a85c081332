#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# user-manager.sh ROOT COMMAND…: runs a command in an empty home, under a systemd for users and with the bus that this
# starts, which know what is installed below ROOT. Whatever they start ends with the command.
set -eu
if [ "$1" != --inside ]; then
  as_root=
  [ "$(id -u)" -eq 0 ] || as_root="--user --map-root-user"
  # shellcheck disable=SC2086 # no word, or two
  exec unshare $as_root --mount --pid --fork --kill-child --mount-proc "$0" --inside "$@"
fi
root=$2
shift 2
HOME=$(getent passwd 0 | cut -d : -f 6)
mount -t tmpfs none "$HOME"
mount -t tmpfs none /run
mkdir -p /run/systemd/system # as where systemd has started the system
export HOME XDG_RUNTIME_DIR=/run XDG_DATA_DIRS="$root/usr/share:/usr/share" DBUS_SESSION_BUS_ADDRESS=unix:path=/run/bus
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME DISPLAY WAYLAND_DISPLAY
program=usr/libexec/sprig/sprig-extension
override=$HOME/.config/systemd/user/com.kestrel.Sprig.Extension.service.d/program.conf
mkdir -p "${override%/*}"
printf '[Service]\nExecStart=\nExecStart=%s\n' "$root/$program" >"$override"
SYSTEMD_UNIT_PATH=$root/usr/lib/systemd/user: /usr/lib/systemd/systemd --user --log-target=console --unit=dbus.socket &
until [ -S /run/bus ]; do
  kill -0 $! # it has not ended
  sleep 0.05
done
"$@"
