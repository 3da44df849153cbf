#!/usr/bin/env bash
# require_host.sh NAME: prints the readout, and fails unless the session's panel hosts it.
set -euo pipefail
kestro-readout --once
hosted=$(gdbus call --session --dest kestro.Readout --object-path /kestro/Readout \
    --method org.freedesktop.DBus.Properties.Get kestro.Readout Hosted)
if [ "$hosted" != '(<true>,)' ]; then
    printf '%s: the panel does not host the readout: %s\n' "$1" "$hosted" >&2
    exit 1
fi
