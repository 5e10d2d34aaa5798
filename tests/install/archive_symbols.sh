#!/usr/bin/env bash
# archive_symbols.sh ARCHIVE EXPECTED: fails unless the symbols that a static library defines for others are exactly the
# expected ones (a list with version nodes, which an archive has not), and it asks for none of the project's own.
set -euo pipefail
symbols=$(nm --defined-only --extern-only --format=posix "$1" | sed '/:$/d;/^$/d' | cut -d' ' -f1 | LC_ALL=C sort)
diff <(echo "$symbols") <(sed 's/@.*//;/^FIID_/d' "$2")
! nm --undefined-only --format=posix "$1" | grep -E '^(FI|UT|IO|PKG|CF|ZA)[A-Za-z]' || exit 1
