// package_lines.h - the lines that tell the kinds of ZIP archives and packages, in the order in which they are asked. See
// package_kinds.h for the notation.
//
// A kind told by a content type goes before one told by a name: macros make another file of a document, whatever else the
// package holds. Among the names special ones stand before general ones: an Android package or a browser extension has
// META-INF/MANIFEST.MF too.
//
// Sources: ISO/IEC 29500-1 and -2 (ECMA-376), [MS-OFFMACRO], [MS-VSDX], ECMA-388, ISO/IEC 26300-2, EPUB OCF, KS X 6101, PEP 427,
// and the container signatures of PRONOM for what has no public specification.
#pragma once

#include "further/package_kinds.h"

inline constexpr FIPackageLine packageLines[] = {
    // clang-format off
    {20401, 1312, "opc:application/vnd.ms-word.document.macroEnabled.main+xml"},
    {20402, 1312, "opc:application/vnd.openxmlformats-officedocument.wordprocessingml.template.main+xml"},
    {20403, 1312, "opc:application/vnd.ms-word.template.macroEnabledTemplate.main+xml"},
    {20404, 1455, "opc:application/vnd.ms-excel.sheet.macroEnabled.main+xml"},
    {20405, 1455, "opc:application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml"},
    {20406, 1455, "opc:application/vnd.ms-excel.template.macroEnabled.main+xml"},
    {20407, 1455, "opc:application/vnd.ms-excel.addin.macroEnabled.main+xml"},
    {20409, 1635, "opc:application/vnd.ms-powerpoint.presentation.macroEnabled.main+xml"},
    {20410, 1635, "opc:application/vnd.openxmlformats-officedocument.presentationml.slideshow.main+xml"},
    {20411, 1635, "opc:application/vnd.ms-powerpoint.slideshow.macroEnabled.main+xml"},
    {20412, 1635, "opc:application/vnd.openxmlformats-officedocument.presentationml.template.main+xml"},
    {20413, 1635, "opc:application/vnd.ms-powerpoint.template.macroEnabled.main+xml"},
    {20414, 1635, "opc:application/vnd.ms-powerpoint.addin.macroEnabled.main+xml"},
    {20417, 1802, "opc:application/vnd.ms-visio.drawing.main+xml"},
    {20418, 1802, "opc:application/vnd.ms-visio.drawing.macroEnabled.main+xml"},
    {20419, 1802, "opc:application/vnd.ms-visio.stencil.main+xml"},
    {20420, 1802, "opc:application/vnd.ms-visio.stencil.macroEnabled.main+xml"},
    {20421, 1802, "opc:application/vnd.ms-visio.template.main+xml"},
    {20422, 1802, "opc:application/vnd.ms-visio.template.macroEnabled.main+xml"},
    {20423, 1802, "opc:application/vnd.openxmlformats-officedocument.themeManager+xml|application/vnd.ms-office.themeManager+xml"},
    {20424, 1802, "opc:application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml + rel:strict"},
    {20425, 1802, "opc:application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml + rel:strict"},
    {20426, 1802, "opc:application/vnd.openxmlformats-officedocument.presentationml.presentation.main+xml + rel:strict"},
    {20427, 1802, "opc:application/vnd.ms-package.xps-fixeddocumentsequence+xml + rel:oxps"},
    {20431, 1309, "zipmime:application/vnd.oasis.opendocument.text-template"},
    {20432, 1454, "zipmime:application/vnd.oasis.opendocument.spreadsheet-template"},
    {20433, 1633, "zipmime:application/vnd.oasis.opendocument.presentation-template"},
    {20434, 1632, "zipmime:application/vnd.oasis.opendocument.graphics-template"},
    {20441, 1802, "zipmime:application/vnd.adobe.air-application-installer-package+zip"},
    {20442, 1802, "zipmime:application/vnd.bdoc-1.0"},
    {20443, 1802, "zipmime:application/vnd.makemusic.notation"},
    {20444, 1802, "zipmime:application/vnd.recordare.musicxml"},
    {20340, 1802, "zipmime:application/epub+zip"},
    {20341, 1802, "zipmime:application/x-ibooks+zip"},
    {20342, 1802, "zipmime:application/vnd.oasis.opendocument.base|application/vnd.oasis.opendocument.database"},
    {20343, 1802, "zipmime:application/vnd.oasis.opendocument.formula"},
    {20344, 1802, "zipmime:application/vnd.oasis.opendocument.chart"},
    {20345, 1802, "zipmime:application/vnd.oasis.opendocument.image"},
    {20347, 1802, "zipmime:application/vnd.adobe.indesign-idml-package"},
    {20348, 1802, "zipmime:application/vnd.etsi.asic-e+zip"},
    {20349, 1802, "zipmime:application/vnd.etsi.asic-s+zip"},
    {20350, 1802, "zipmime:image/openraster"},
    {20351, 1802, "zipmime:application/x-krita"},
    {20352, 1802, "zipmime:application/hwp+zip"},
    {20353, 1802, "zip:mimetype"},
    {20361, 1802, "zip:AndroidManifest.xml + zip:classes.dex ; zip:AndroidManifest.xml + zip:resources.arsc"},
    {20362, 1802, "zip:install.rdf ; zip:META-INF/mozilla.rsa"},
    {20363, 1802, "zip:META-INF/application.xml"},
    {20365, 1802, "zip:META-INF/MANIFEST.MF"},
    {20366, 1802, "zip:doc.kml"},
    {20367, 1802, "zip:Index/Document.iwa + ext:pages ; zip:index.xml + ext:pages"},
    {20368, 1802, "zip:Index/Document.iwa + ext:numbers ; zip:index.xml + ext:numbers"},
    {20369, 1802, "zip:Index/Document.iwa + ext:key ; zip:index.apxl"},
    {20370, 1802, "zip:Index/Document.iwa ; zip:index.xml + zip^thumbs/"},
    {20371, 1802, "zip:3D/3dmodel.model"},
    {20372, 1802, "zip:datapackage.json + zip^archive/"},
    {20374, 1802, "zip~.dist-info/WHEEL"},
    {20375, 1802, "zip^Payload/ + zip~.app/Info.plist"},
    // clang-format on
};
