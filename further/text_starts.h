// text_starts.h - texts told by how they begin, where that is more than a row of bytes.
//
// All look at the first 8,192 bytes only; where a rule allows an end, the end of these is one too. "White space" is 09 to
// 0D and 20. Each can be asked about any file; the first bytes told here are those without which it answers 0.
#pragma once

#include "fiid.h"
#include "further/look.h"

// 20042, portable float map: P, F or f, and three lines of numbers. First bytes: "PF" 0A or "Pf" 0A.
FIID FITellFloatMap(FILook& look);

// 20270, PKCS #7 or CMS data. First bytes: "-----BEGIN PKCS7-----", "-----BEGIN CMS-----" or "-----BEGIN PKCS #7 ".
FIID FITellPemMessage(FILook& look);

// 20276, private key. First bytes: "-----BEGIN ".
FIID FITellPemPrivateKey(FILook& look);

// 20277, other PEM data: requests, revocation lists, public keys, parameters. First bytes: "-----BEGIN ".
FIID FITellOtherPem(FILook& look);

// 20279, SubRip subtitles: a number line and a time range. First bytes: EF BB BF, white space or a digit.
FIID FITellSubRip(FILook& look);

// Interpreter line: shell 20281, Python 20282, Perl 20283, Ruby 20284, Node 20285, Awk 20287, another one 20289. First
// bytes: "#!".
FIID FITellInterpreter(FILook& look);

// 20291, LaTeX: \documentclass or \documentstyle, at once or on a line behind a comment or another command. First bytes:
// EF BB BF, white space, "%" or "\".
FIID FITellLatex(FILook& look);

// 20293, unified diff. First bytes: "diff --git ", "Index: " or "--- ".
FIID FITellDiff(FILook& look);

// 20300, SVG without an XML declaration: the element, or a comment and the element. First bytes: EF BB BF, white space or
// "<".
FIID FITellSvg(FILook& look);

// 20302, Windows batch file: "@echo off" or, on a line of its own, "echo off", in letters of either case. First bytes: "@",
// "E" or "e".
FIID FITellBatch(FILook& look);

// 20303, desktop entry: "[Desktop Entry]". First bytes: EF BB BF, white space or "[".
FIID FITellDesktopEntry(FILook& look);

// 20306, Graphviz: "graph" or "digraph", maybe "strict", with or without a name, and a brace. First bytes: white space,
// "s", "d" or "g".
FIID FITellGraphviz(FILook& look);
