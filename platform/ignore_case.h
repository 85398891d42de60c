// Comparison without case, as Windows compares file, section, key and class names. ASCII letters
// alone are folded: the names that occur here are plain, and the result must not depend on the C
// locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace zelk::host {

template <class Char>
constexpr Char FoldCase(Char letter) {
  return letter >= Char('A') && letter <= Char('Z') ? Char(letter - Char('A') + Char('a')) : letter;
}

template <class Char>
bool EqualIgnoringCase(std::basic_string_view<Char> left, std::basic_string_view<Char> right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](Char a, Char b) { return FoldCase(a) == FoldCase(b); });
}

inline bool EqualIgnoringCase(std::string_view left, std::string_view right) {
  return EqualIgnoringCase<char>(left, right);
}

}  // namespace zelk::host
