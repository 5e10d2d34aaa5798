#!/usr/bin/env bash
# c_host.sh BUILD COMPILER SOURCE SANITIZERS: installs a build, compiles a C99 host against it, and runs the host.
set -euo pipefail
build=$1 compiler=$2 source=$3 sanitizers=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
libraries=$(dirname "$(find "$work/prefix" -name 'libfiid.so')")
flags=(-std=c99 -Wall -Wextra -Wpedantic -Werror)
[ -z "$sanitizers" ] || flags+=("-fsanitize=$sanitizers")
"$compiler" "${flags[@]}" -I"$work/prefix/include" "$source" -o "$work/host" -L"$libraries" -lfiid -lfiid-platform \
    -Wl,-rpath,"$libraries"
printf 'GIF89a' >"$work/a.gif"
"$work/host" "$work/a.gif"
