#!/usr/bin/env bash
# require_host.sh NAME: prints the readout, and fails unless the session's panel hosts it.
set -euo pipefail
kestro-readout --once
hosted=$(dbus-send --session --print-reply=literal --dest=kestro.Readout /kestro/Readout \
    org.freedesktop.DBus.Properties.Get string:kestro.Readout string:Hosted)
if [[ $hosted != *'boolean true'* ]]; then
    printf '%s: the panel does not host the readout: %s\n' "$1" "$hosted" >&2
    exit 1
fi
