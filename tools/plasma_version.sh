#!/usr/bin/env bash
# plasma_version.sh: prints the major version of the Plasma that is installed, otherwise of the one in this release of
# Debian, otherwise 6.
set -euo pipefail

# Plasma's entries for the login screen contain it. Plasmashell itself crashes without a session bus.
version=$(grep -hsoP '^X-KDE-PluginInfo-Version=\K[0-9]+' /usr/share/{wayland-sessions,xsessions}/plasma*.desktop |
    sort -n | tail -n 1 || true)
if [ -z "$version" ] && grep -qsx 'VERSION_CODENAME=bookworm' /etc/os-release; then
    version=5
fi
printf '%s\n' "${version:-6}"
