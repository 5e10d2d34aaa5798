#!/usr/bin/env python3
"""Writes the seeds of the package fuzz target into the directory fuzz/seeds/package beside this script, and those of
detect_fuzz that are packages into fuzz/seeds/detect."""
import io
import pathlib
import zipfile

SEEDS = pathlib.Path(__file__).parent / "seeds" / "package"
STANDARD = "http://schemas.openxmlformats.org"
MICROSOFT = "http://schemas.microsoft.com"
MAIN_PART = STANDARD + "/officeDocument/2006/relationships/officeDocument"
FIXED_PAGES = MICROSOFT + "/xps/2005/06/fixedrepresentation"
OPEN_DOCUMENT = "application/vnd.oasis.opendocument."


def archive(members, method=zipfile.ZIP_DEFLATED, comment=b""):
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", method) as target:
        for name, text in members:
            target.writestr(zipfile.ZipInfo(name), text, method)
        target.comment = comment
    return out.getvalue()


def relationships(kind, target, more=""):
    return (f"<?xml version='1.0'?><Relationships xmlns='{STANDARD}/package/2006/relationships'>{more}"
            f"<Relationship Id='r' Type='{kind}' Target='{target}'/></Relationships>")


def package(kind, target, part):
    return [("_rels/.rels", relationships(kind, target)), (target.strip("/"), part)]


def element(path, name):
    return f"<x:{name} xmlns:x='{STANDARD}{path}'><x:body/></x:{name}>"


document = element("/wordprocessingml/2006/main", "document")
seeds = {
    "word.zip": archive(package(MAIN_PART, "word/document.xml", document)),
    "word-stored.zip": archive(package(MAIN_PART, "/word/document.xml", document), zipfile.ZIP_STORED),
    "slides.zip": archive(package(MAIN_PART, "ppt/p.xml", element("/presentationml/2006/main", "presentation"))),
    "sheets.zip": archive(package(MAIN_PART, "xl/w.xml", element("/spreadsheetml/2006/main", "workbook")), zipfile.ZIP_STORED),
    "records.zip": archive(package(MAIN_PART, "xl/w.bin", bytes.fromhex("830100800132")), zipfile.ZIP_STORED),
    "pages.zip": archive(package(FIXED_PAGES, "f.fdseq", "<s/>"), zipfile.ZIP_STORED),
    "mimetype.zip": archive([("a", "b"), ("mimetype", OPEN_DOCUMENT + "text-template")], zipfile.ZIP_STORED),
    "mimetype-packed.zip": archive([("a", "b"), ("mimetype", OPEN_DOCUMENT + "graphics")], comment=b"comment"),
    "bzip2.zip": archive(package(MAIN_PART, "d.xml", document), zipfile.ZIP_BZIP2),
    "two-archives.zip": archive([("a", "b")]) + archive(package(MAIN_PART, "d.xml", document)),
    "utf16.zip": archive([("_rels/.rels", relationships(MAIN_PART, "d.xml").encode("utf-16")), ("d.xml", document)]),
    "entities.xml": b"X<!DOCTYPE a [<!ENTITY e '<a/>&#65;'><!ATTLIST a b CDATA 'c'>]><a xmlns='n'>&e;<document/></a>",
    "markup.xml": b"X<?xml version='1.0' encoding='UTF-8'?><p:a xmlns:p='n'><!-- c --><![CDATA[d]]><p:b p:c='&lt;'/></p:a>",
}

SEEDS.mkdir(parents=True, exist_ok=True)
for name, content in seeds.items():
    (SEEDS / name).write_bytes(content)


def content_types(*lines):
    return ("[Content_Types].xml",
            f"<Types xmlns='{STANDARD}/package/2006/content-types'>{''.join(lines)}</Types>")


def override(part, kind):
    return f"<Override PartName='{part}' ContentType='{kind}'/>"


def default(extension, kind):
    return f"<Default Extension='{extension}' ContentType='{kind}'/>"


MACRO_DOCUMENT = "application/vnd.ms-word.document.macroEnabled.main+xml"
VISIO_DRAWING = "application/vnd.ms-visio.drawing.main+xml"
STRICT = "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument"
VISIO = MICROSOFT + "/visio/2010/relationships/document"
OPEN_XPS = "http://schemas.openxps.org/oxps/v1.0/fixedrepresentation"

word = package(MAIN_PART, "word/document.xml", document)
details = {
    "override": archive([content_types(override("/word/document.xml", MACRO_DOCUMENT)), *word]),
    "override-stored": archive([content_types(override("/WORD/Document.xml", MACRO_DOCUMENT)), *word], zipfile.ZIP_STORED),
    "default": archive([content_types(default("XML", MACRO_DOCUMENT + "; charset=x")), *word], zipfile.ZIP_STORED),
    "both": archive([content_types(default("xml", "text/xml"), override("/word/document.xml", MACRO_DOCUMENT)), *word],
                    zipfile.ZIP_STORED),
    "comment": archive([content_types("<!-- c -->", "<![CDATA[d]]>", default("&#120;ml", MACRO_DOCUMENT)), *word],
                       zipfile.ZIP_STORED),
    "utf16": archive([("[Content_Types].xml", content_types(override("/word/document.xml", MACRO_DOCUMENT))[1].encode("utf-16")),
                      *word]),
    "behind-slash": archive([("/" + name, text) for name, text in
                             [content_types(override("/word/document.xml", MACRO_DOCUMENT)), *word]], zipfile.ZIP_STORED),
    "visio": archive([content_types(override("/visio/d.xml", VISIO_DRAWING)), *package(VISIO, "visio/d.xml", "<d/>")]),
    "strict": archive([content_types(override("/d.xml", "application/vnd.openxmlformats-officedocument."
                                              "wordprocessingml.document.main+xml")), *package(STRICT, "./d.xml", document)]),
    "open-pages": archive([content_types(default("fdseq", "application/vnd.ms-package.xps-fixeddocumentsequence+xml")),
                           *package(OPEN_XPS, "f.fdseq", "<s/>")], zipfile.ZIP_STORED),
    "two-relations": archive([content_types(override("/b.xml", VISIO_DRAWING)),
                              ("_rels/.rels", relationships(VISIO, "\\.\\b.xml", "<Relationship Type='" + OPEN_XPS +
                                                            "' Target='a' TargetMode='External'/>")), ("b.xml", "<b/>")],
                             zipfile.ZIP_STORED),
    "epub": archive([("mimetype", " application/epub+zip\n"), ("META-INF/container.xml", "<c/>")], zipfile.ZIP_STORED),
    "names": archive([("META-INF/MANIFEST.MF", ""), ("AndroidManifest.xml", ""), ("resources.arsc", "")], zipfile.ZIP_STORED),
    "pieces": archive([("Payload/a.app/Info.plist", ""), ("b.dist-info/WHEEL", ""), ("thumbs/", ""), ("index.xml", "")],
                      zipfile.ZIP_STORED),
}
DETECT_SEEDS = SEEDS.parent / "detect"
DETECT_SEEDS.mkdir(parents=True, exist_ok=True)
EXPLAIN = b"\x04"
NAME = b"file.key"
for name, content in details.items():
    (DETECT_SEEDS / f"package-{name}").write_bytes(EXPLAIN + bytes([128 + len(NAME)]) + NAME + content)
