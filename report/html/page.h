// page.h - the style and the script of the HTML report, as they stand in report.css and report.js beside this file.
#pragma once

#include <string_view>

extern const std::string_view pageStyle;
extern const std::string_view pageScript;

// Their SHA-256, as sources of a Content-Security-Policy ("sha256-" and base64).
extern const std::string_view pageStyleHash;
extern const std::string_view pageScriptHash;
