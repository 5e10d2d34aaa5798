#!/usr/bin/env bash
# exported_symbols.sh LIBRARY EXPECTED: fails unless the library's dynamic symbols are exactly the expected ones, and its
# soname is set.
set -euo pipefail
diff <(nm --dynamic --defined-only --format=posix "$1" | cut -d' ' -f1 | LC_ALL=C sort) "$2"
readelf --dynamic "$1" | grep -q 'Library soname: \[libfiid.so.1\]'
readelf --dynamic "$1" | grep -q 'Shared library: \[libfiid-platform.so.1\]'
