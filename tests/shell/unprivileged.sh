#!/bin/sh
# Runs a test as an unprivileged user when started as root, whom folder permissions don't bind.
# Exits 77 (skipped) when that user can't reach the test executable.
if [ "$(id -u)" != 0 ]; then exec "$@"; fi
as_nobody="setpriv --reuid=65534 --regid=65534 --clear-groups"
$as_nobody test -x "$1" || exit 77
exec $as_nobody "$@"
