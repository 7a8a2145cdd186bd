// Makes any text safe to pass to a Java program that is launched.
#pragma once

#include <rx/Text.h>

#include <string>

// Returns the text that the launcher's quoting rule turns back into the original. For arguments and values of system
// properties; a jar's path needs SafeJarPath.
// The rule puts a text with a space between double quotes and escapes nothing; so quotes and the backslashes before
// them are escaped here, and what else would be split, expanded or lost gets its own quotes.
inline std::basic_string<RX::UniChar> SafeArgument(const std::basic_string<RX::UniChar>& text) {
  using Units = std::basic_string<RX::UniChar>;
  const bool isQuotedByRule = text.find(RX_TEXT(' ')) != Units::npos;
  const bool needsQuotes = text.empty() || text.find_first_of(RX_TEXT("\t\r\n\v\f*?")) != Units::npos;
  Units safe;
  std::size_t backslashes = 0;
  for (const RX::UniChar unit : text) {
    // Backslashes that come before a quote are doubled, and one more makes the quote a character.
    if (unit == RX_TEXT('"')) safe.append(backslashes + 1, RX_TEXT('\\'));
    backslashes = unit == RX_TEXT('\\') ? backslashes + 1 : 0;
    safe += unit;
  }
  if (!isQuotedByRule && !needsQuotes) return safe;
  safe.append(backslashes, RX_TEXT('\\'));
  return isQuotedByRule ? safe : RX_TEXT("\"") + safe + RX_TEXT("\"");
}

// Returns a path that Java takes for the path of a file. For entries of a class path, which cannot be escaped: they
// must not hold double quotes, tabs or line ends.
// Java takes what begins with - for an option, and what begins with @ for the name of a file with more of them.
inline std::basic_string<RX::UniChar> SafePath(const std::basic_string<RX::UniChar>& path) {
  const bool isMistaken = !path.empty() && (path[0] == RX_TEXT('-') || path[0] == RX_TEXT('@'));
  return isMistaken ? RX_TEXT("./") + path : path;
}

// Returns what to pass to CJarOption.
inline std::basic_string<RX::UniChar> SafeJarPath(const std::basic_string<RX::UniChar>& path) {
  return SafeArgument(SafePath(path));
}
