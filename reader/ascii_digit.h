// ascii_digit.h - the ten decimal digits.
#pragma once

constexpr bool FIIsDigit(char character) { return character >= '0' && character <= '9'; }
