#!/usr/bin/env bash
# exported_symbols.sh LIBRARY EXPECTED [SIBLING]: fails unless the library's dynamic symbols, with their version nodes,
# are exactly the expected ones, its soname is set, and it needs its sibling library, if one is named.
set -euo pipefail
symbols=$(nm --dynamic --defined-only --with-symbol-versions --format=posix "$1" | cut -d' ' -f1 | LC_ALL=C sort)
diff <(echo "$symbols") "$2"
[ -z "${3:-}" ] || readelf --dynamic "$1" | grep -qF "Shared library: [$3]"
readelf --dynamic "$1" | grep -qF "Library soname: [$(basename "$1" | sed 's/\.so.*/.so.1/')]"
# The one import that a sibling of the host's own may leave out.
[ -z "${3:-}" ] || nm --dynamic "$1" | grep -qE '^ +w UTGetHead(@|$)'
