#!/usr/bin/env bash
# consumers.sh PREFIX CC CXX [SANITIZERS]: programs in C and C++ that somebody else writes must compile against what is
# installed under PREFIX, link with it shared and static, and tell a file: by CMake, by pkg-config and by the bare compiler.
set -euo pipefail
prefix=$1 cc=$2 cxx=$3 sanitizers=${4:-}
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/consumer" && pwd)
for libraries in "$prefix"/lib "$prefix"/lib/*-linux-*; do
    [ ! -e "$libraries/libfiid-detect.so" ] || break
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
printf 'GIF89a' >a.gif
flags=()
[ -z "$sanitizers" ] || flags=("-fsanitize=$sanitizers")
c=("$cc" -std=c99 -Wall -Wextra -Wpedantic -Werror "${flags[@]}" "$source/tell.c")
cxx=("$cxx" -std=c++17 -Wall -Wextra -Wpedantic -Werror "${flags[@]}" "$source/tell.cpp")
run=("-Wl,-rpath,$libraries")

# tells WAY PROGRAM: the program must tell the file.
tells() {
    [ "$("$2" a.gif)" = "1503 image/gif" ] || { echo "consumers.sh: $1 does not tell the file" >&2; exit 1; }
    echo "$1 tells the file"
}

# stands_alone PROGRAM: nothing of what is installed may be needed when it runs.
stands_alone() {
    if readelf --dynamic "$1" | grep 'NEEDED.*libfiid'; then
        echo "consumers.sh: a static program needs a shared library" >&2
        exit 1
    fi
}

by_compiler() {
    local places=("-I$prefix/include" "-L$libraries")
    "${c[@]}" "${places[@]}" "${run[@]}" -lfiid-detect -o bare_c
    tells "C, bare compiler, shared" ./bare_c
    "${cxx[@]}" "${places[@]}" "${run[@]}" -lfiid-detect -lfiid -lfiid-platform -o bare_cxx
    tells "C++, bare compiler, shared" ./bare_cxx
    "${c[@]}" "${places[@]}" "$libraries/libfiid-detect.a" -lexpat -lz -lstdc++ -o bare_static
    stands_alone bare_static
    tells "C, bare compiler, static" ./bare_static
    "${cxx[@]}" "${places[@]}" "$libraries/libfiid-detect.a" "$libraries/libfiid.a" "$libraries/libfiid-platform.a" \
        -lexpat -lz -o bare_static_cxx
    stands_alone bare_static_cxx
    tells "C++, bare compiler, static" ./bare_static_cxx
}

# What pkg-config prints is for a shell to read: blanks of the prefix are escaped there.
by_pkg_config() {
    local words
    export PKG_CONFIG_PATH="$libraries/pkgconfig"
    eval "words=($(pkg-config --cflags --libs fiid-detect))"
    "${c[@]}" "${words[@]}" "${run[@]}" -o pc_c
    tells "C, pkg-config, shared" ./pc_c
    eval "words=($(pkg-config --cflags --libs fiid-detect fiid))"
    "${cxx[@]}" "${words[@]}" "${run[@]}" -o pc_cxx
    tells "C++, pkg-config, shared" ./pc_cxx
    [ -z "$sanitizers" ] || return 0  # their runtime libraries are shared
    eval "words=($(pkg-config --static --cflags --libs fiid-detect))"
    "${c[@]}" "${words[@]}" -static -o pc_static
    tells "C, pkg-config, static" ./pc_static
}

by_cmake() {
    local name
    CC=$cc CXX=${cxx[0]} CFLAGS=${flags[*]} CXXFLAGS=${flags[*]} cmake -S "$source" -B "$1" -G "$generator" \
        -DCMAKE_PREFIX_PATH="$prefix" -DWITH_CXX="$2" >/dev/null
    cmake --build "$1" >/dev/null
    for name in "$1"/tell_*_static; do stands_alone "$name"; done
    for name in "$1"/tell_*; do tells "CMake, $name" "./$name"; done
}

generator="Unix Makefiles"
! command -v ninja >/dev/null || generator=Ninja
by_compiler
by_pkg_config
by_cmake c_alone OFF
by_cmake both ON
