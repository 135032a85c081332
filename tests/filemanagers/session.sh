#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# session.sh MODULES SYSTEM-FOLDER COMMAND…: runs a command where file managers find the modules that were built in
# place of those that are installed. The command gets a user's rights, as file managers warn root, and whatever it
# starts ends with it.
set -eu
if [ "$1" != --inside ]; then
  as_root=
  [ "$(id -u)" -eq 0 ] || as_root="--user --map-root-user"
  # shellcheck disable=SC2086 # no word, or two
  exec unshare $as_root --mount --pid --fork --kill-child --mount-proc "$0" --inside "$@"
fi
shift
mkdir -p "$2"
mount --bind "$1" "$2"
shift 2
# This shell stays: somebody has to take leave of what the bus has started when it ends.
unshare --user --map-user=1000 --map-group=1000 "$@"
