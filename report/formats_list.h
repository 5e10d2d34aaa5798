// formats_list.h - the list of all formats that the program knows.
#pragma once

#include "report/report_writer.h"

// Writes all formats of both tables to standard output, in ascending order of identifiers: as text, csv, tsv, json or ndjson;
// nothing in any other form.
void WriteFormatsList(OutputFormat form);
