// bytes.h - test files written in a notation that a person can read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The bytes that a notation stands for. Items are separated by white space:
//   1A FF          bytes in hexadecimal pairs
//   "text"         the bytes of the text; a quote can't stand in it
//   00*512         an item any number of times; also "ab"*3 and (...)*3
//   (1A "x")       a group
//   w:513 W:513    a 16-bit number, least (w) or most (W) significant byte first; decimal, or 0x and hexadecimal
//   d:70000 D:7    a 32-bit number, likewise
//   >512           zero bytes up to that offset of the whole; a mistake when the offset is already behind
// A mistake in the notation ends the test program with a message.
std::string FIBytes(std::string_view notation);

// The bytes so many times, one behind the other.
std::string FIRepeat(std::string_view bytes, std::size_t times);

// A number in so many bytes, the most significant first.
std::string FIBigEndian(std::uint64_t number, std::size_t size);
