// Makes any text safe to pass to a program that is launched.
#pragma once

#include <rx/Text.h>

#include <string>

// Gives the text that the launcher's quoting rule turns back into the original.
// The rule puts a text with a space between double quotes and escapes nothing; so quotes and the backslashes before
// them are escaped here, and what else would be split, expanded or lost gets quotes of its own. Serves arguments,
// jar paths and values of system properties.
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
