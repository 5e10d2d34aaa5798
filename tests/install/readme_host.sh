#!/usr/bin/env bash
# readme_host.sh BUILD COMPILER README SANITIZERS: the example of the README, compiled by its own line against an
# installed build under a prefix of its own, must start and tell a file. It calls nothing but entries of libfiid, and is
# also linked without the sibling library in its own list, which libfiid must find by itself.
set -euo pipefail
build=$1 compiler=$2 readme=$3 sanitizers=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
libraries=$(dirname "$(find "$work/prefix" -name 'libfiid.so')")
readelf --dynamic "$libraries/libfiid.so" | grep -qF 'RUNPATH' && readelf --dynamic "$libraries/libfiid.so" | grep -qF '[$ORIGIN]'
cd "$work"
[ "$libraries" = "$work/prefix/lib" ] || ln -s "$libraries" "$work/prefix/lib"
sed -n '/^```c$/,/^```$/p' "$readme" | sed '1d;$d' >tell.c
line=$(sed -n 's/^    cc \(tell\.c.*\)$/\1/p' "$readme")
[ -s tell.c ] && [ -n "$line" ]
read -r -a words <<<"${line//DIR/$work/prefix}"
[ -z "$sanitizers" ] || words+=("-fsanitize=$sanitizers")
printf 'GIF89a' >a.gif
for more in "-Wl,--no-as-needed" "-Wl,--as-needed"; do
    "$compiler" "$more" "${words[@]}"
    [ "$(./tell a.gif)" = "1503 GIF image" ] || { ./tell a.gif; exit 1; }
done
