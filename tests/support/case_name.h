// case_name.h - the cases of a test's table told by their names: in the names of the tests, and where one fails.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

template <typename Case>
concept NamedCase = requires(const Case& namedCase, std::ostream& out) {
    out << namedCase.name;
};

// GoogleTest looks for it where the case's type is: a test whose cases are in its unnamed namespace says using ::PrintTo.
template <NamedCase Case>
void PrintTo(const Case& namedCase, std::ostream* out) {
    *out << namedCase.name;
}

// For INSTANTIATE_TEST_SUITE_P.
inline constexpr auto FICaseName = [](const auto& info) { return std::string(info.param.name); };
