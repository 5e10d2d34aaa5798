// help_text.cpp - what --help tells in front of the options and behind them.
#include "cli/help_text.h"

const char* const helpDescription =
    R"(fiid tells the format of files by their content: it answers with one of about 430 format identifiers, which never
change, and where they leave something open with one of a further table, which grows.)";

const char* const helpFooter =
    R"(Examples:
  fiid report.doc                               the format of one file
  fiid --format csv /srv/archive > formats.csv  everything below a directory
  fiid --summary /srv/archive                   how many files of which format
  fiid --mismatch /srv/archive                  files whose extension is unusual
  fiid --match image --print0 . | xargs -0 ls   all images
  fiid --format html /srv/archive > report.html
  fiid --store scan.db /srv/archive             keep the scan; again: go on, or look at what is new or changed
  fiid --store scan.db --query changes          what was new, changed and gone
  find . -type f -print0 | fiid -0 --files-from - --format ndjson
  gpg -d message.gpg | fiid -                   standard input
  fiid --explain drawing.dwg                    the row that decided and what it looked at, too
  fiid --mime picture.jxl                       PATH: image/jxl
  fiid --formats --format tsv                   all formats that fiid knows

Paths: a directory is walked recursively, in sorted order; symbolic links to directories are followed only when they
are named on the command line or in a list. FIFOs, sockets, character devices and links that lead nowhere are passed
over there; one that is named is a failure, but for a FIFO, which is read to its end and into a temporary file.
Standard input (-) is read likewise: a pipe there is copied whole, whatever its size, to a temporary file in TMPDIR (or
/tmp). A file there is not copied, and is taken from its start, wherever it has been read to. An empty entry of a list
is passed over; one of more than 65,536 bytes is a failure that shows its beginning.

Filters: --match and --exclude-format take identifiers (1557), PRONOM identifiers (fmt/19), media types (image/*) and
families (document, spreadsheet, presentation, database, image, drawing, audio, video, archive, mail, text, code,
system, unknown), separated by commas. Globs are of the kind that .gitignore has; they and --max-depth count for what
is met below a directory. Files that can't be read are failures whatever the filters for formats say.

Output formats: text (PATH: NAME [FIID], or PATH: NAME [FIID, FURTHER] where the further table is more precise),
ndjson (a JSON object a line), json (one array), csv (RFC 4180), tsv (tab, line feed, carriage return and backslash
are escaped); path writes paths alone; droid and siegfried write the csv columns of those programs; html writes one
page for people, with charts and a table that sorts and filters.
Records hold path, fiid, name, mime and puid (a list; separated by blanks in csv and tsv), or path and error; and
behind them further, version, basis, warning (a list: extension for one that is unusual for the format, cut for a file
that ends too early, several for more than one puid), size in bytes and mtime (UTC). Name, mime and puid are those of
the most precise answer. What there is not to tell is left out in JSON and empty in csv and tsv. A path that is not
UTF-8 has its bytes in path_hex in JSON, and the replacement character in path. --fields may also name family,
extensions (usual ones), sha256 or xxh3 with --hash, with --explain row, signature, routine, further_row,
further_signature, looked_at, bytes_read and calls, with --query changes change, run, run_time and before, and with
--query duplicates copies.
In text and in messages a backslash of a path is doubled; control characters, also those from U+0080 to U+009F,
bidirectional controls and line separators are escaped byte by byte (\x1B).

Output is handed over by whole records, so that several processes can share one output (in a pipe: up to 4,096 bytes
a record), and record by record when the paths of --files-from come through a pipe: a program may write a path and
wait for its record. ndjson, csv and tsv serve such a program: behind the header of csv and tsv they hold a line for
each path, also for a failure (csv more of them where a path holds line feeds); text writes failures to standard
error only. A directory gives 0 to n records.

Store: with --store records are written only where --format or another option asks for them. A run that was
interrupted or killed is gone on with by running it again: at most the last second is done once more. Others may ask
(--query) while one process scans.

Signals: SIGINT, SIGTERM and SIGHUP end fiid behind a whole record, with the array of json closed, or after two seconds
where it is inside a long identification or nobody reads its output; a second one ends it at once.

Exit status: 0; 1 if any path could not be read or the output not be written; 2 for wrong usage; a signal ends fiid
as that signal does (130 in a shell for SIGINT).

The manual page, fiid(1), tells more.
)";
