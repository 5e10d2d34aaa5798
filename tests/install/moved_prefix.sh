#!/usr/bin/env bash
# moved_prefix.sh BUILD CC CXX SANITIZERS: installs a build, moves the prefix to a place with an odd name, and builds the
# programs of consumers.sh against it there.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$1" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/an odd préfix"
if grep -rlF "$work/first" "$work/an odd préfix"; then
    echo "moved_prefix.sh: these name the place where they were installed" >&2
    exit 1
fi
"$here/consumers.sh" "$work/an odd préfix" "$2" "$3" "$4"
