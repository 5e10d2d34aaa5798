// help_text.h - what --help tells in front of the options and behind them.
#pragma once

extern const char* const helpDescription;
extern const char* const helpFooter;
