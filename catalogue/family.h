// family.h - families of formats: the one word by which people sort files.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// A family is what a format is for: what a person does with its files. How they are stored does not count. So a drawing
// that is written in XML is a drawing, a contact that is written in lines is mail, and a package of parts what the parts
// make up. Rules for a new format, besides what stands at the families:
//
// - Templates, add-ins, themes, stencils and charts go with what their program makes: a chart of Excel is a spreadsheet.
// - A format that encrypts goes with what it encrypts where the format tells that, and is unknown where it does not.
// - Of an office file that does not tell its kind, a document.
// - Of a medium that may hold sound or pictures or both, a video.
// - Of a picture of which nothing is known but its mark, an image, unless it is known to be made of records of shapes.
// - Software in packages and installers is an archive; what a machine or an interpreter runs as it is, is of the system.
enum class FIFamily : std::uint8_t {
    // Text with a form, to be read: word processing, page descriptions (PDF, PostScript, XPS, DVI), pages of HTML and WML,
    // e-books, help, notes, desktop publishing, formulas; and text that is formatted to be read (RTF, LaTeX, roff,
    // interchange text). Not mail.
    Document,
    // Cells, workbooks, charts.
    Spreadsheet,
    // Slides.
    Presentation,
    // Records, tables and arrays for programs that ask them: databases, library records, plans of projects, statistics,
    // measurements and other data of science, geography (shapes, features, maps), stores of passwords.
    Database,
    // Pixels: photographs, scans, icons and cursors, textures, brushes, pictures of medicine and astronomy.
    Image,
    // Shapes: vector drawings, metafiles (also where they hold pixels), illustrations in PostScript or PDF, CAD, plotter
    // files, diagrams, graphs, models in three dimensions, clouds of points.
    Drawing,
    // Sound and music, also as notes.
    Audio,
    // Moving pictures with or without sound: animations and interactive movies too, but not an image that may move (GIF,
    // HEIF, a cursor).
    Video,
    // What holds other files, whole: archives, compressed files, packages, archives of the web, containers of signed files,
    // disk images and volumes with what describes them; and files in an encoding for transport (uuencode, BinHex).
    Archive,
    // What a mail program keeps: messages, mailboxes, news, and a person's contacts and calendars.
    Mail,
    // Characters that are read as they are: plain text, Markdown, logs, subtitles, playlists, settings, and data in text
    // (XML, JSON, YAML, CSV) that is of no other family. CSV is data that spreadsheets read, but no spreadsheet: it has
    // neither formulas nor formats.
    Text,
    // What programmers write: sources, scripts, queries, style sheets, patches, notebooks.
    Code,
    // What machines and programs need: executables, libraries and bytecode, fonts, keys, certificates and signatures,
    // colour profiles and palettes, settings of systems, shortcuts, logs of systems and networks.
    System,
    // Nothing tells what it is for: not known, encrypted, known by a mark alone; an empty file; a compound storage of a
    // kind that is not known, which is some program's document and no archive.
    Unknown,
};

// In the order of the families.
inline constexpr std::array<const char*, 14> familyWords = {
    "document", "spreadsheet", "presentation", "database", "image", "drawing", "audio",
    "video",    "archive",     "mail",         "text",     "code",  "system",  "unknown",
};
static_assert(familyWords.size() == static_cast<std::size_t>(FIFamily::Unknown) + 1);

// The word of a family, as fiid/detect.h tells it. Static.
constexpr const char* FIWordOf(FIFamily family) { return familyWords[static_cast<std::size_t>(family)]; }
