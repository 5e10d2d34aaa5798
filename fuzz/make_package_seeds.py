#!/usr/bin/env python3
"""Writes the seeds of the package fuzz target into the directory fuzz/seeds/package beside this script."""
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
