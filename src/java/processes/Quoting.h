// A Windows command line.
#pragma once

#include <cstddef>
#include <string>

namespace torvan::java::detail {

// Adds an argument to a command line so that the program gets it as it is.
// Programs of the C runtime and java.exe split the line by the same rules as far as these quotes go: a backslash counts
// only before a quote. Whatever is between quotes is not expanded as a wildcard either.
template <class Text>
void AppendQuoted(Text& line, const Text& argument) {
  using Unit = typename Text::value_type;
  constexpr auto Quote = Unit('"');
  constexpr auto Backslash = Unit('\\');
  if (!line.empty()) line += Unit(' ');
  line += Quote;
  std::size_t backslashes = 0;
  for (const Unit unit : argument) {
    if (unit == Quote) line.append(backslashes + 1, Backslash);
    backslashes = unit == Backslash ? backslashes + 1 : 0;
    line += unit;
  }
  line.append(backslashes, Backslash);
  line += Quote;
}

}  // namespace torvan::java::detail
