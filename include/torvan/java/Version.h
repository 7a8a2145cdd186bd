// Versions of Java.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torvan::java {

// A version of Java, compared as java.lang.Runtime.Version compares them.
// A value: copies are independent, and different threads may use different copies.
class Version {
 public:
  // Reads a version text.
  // Takes what Java prints: "17.0.15+6-Debian-1", "25-ea", "21-internal+0-adhoc", and the forms of Java 8 and before,
  // "1.8.0_391-b13" and "8u391", which mean feature 8, update 391. Zeros at the end are allowed: "17.0" equals "17".
  // Throws Misuse for everything else: "\"abc\" is not a version of Java".
  static Version Parse(std::string_view text);
  // The same, but returns nothing instead of throwing Misuse.
  static std::optional<Version> TryParse(std::string_view text);

  // The number that a Java release goes by: 17, or 8 for "1.8.0_391".
  int Feature() const noexcept { return m_numbers.front(); }

  // Returns whether this version matches the text, however exact that is.
  // "17" fits 17.0.15, "17.0.15" fits 17.0.15+6, and "17.0.15+6" needs exactly that build. Throws Misuse for a text
  // that is no version.
  bool Fits(std::string_view wanted) const;
  bool Fits(const Version& wanted) const;

  // The text that was read, unchanged, in UTF-8.
  const std::string& ToString() const noexcept { return m_text; }

  // Negative, zero or positive, by Java's order. Numbers decide first, one that is missing being 0; then an
  // early-access version such as "25-ea" is below "25"; then the build, and last the text after it.
  int Compare(const Version& other) const noexcept;

  friend bool operator==(const Version& a, const Version& b) noexcept { return a.Compare(b) == 0; }
  friend bool operator!=(const Version& a, const Version& b) noexcept { return a.Compare(b) != 0; }
  friend bool operator<(const Version& a, const Version& b) noexcept { return a.Compare(b) < 0; }
  friend bool operator<=(const Version& a, const Version& b) noexcept { return a.Compare(b) <= 0; }
  friend bool operator>(const Version& a, const Version& b) noexcept { return a.Compare(b) > 0; }
  friend bool operator>=(const Version& a, const Version& b) noexcept { return a.Compare(b) >= 0; }

 private:
  Version() = default;
  bool ReadCurrentForm(std::string_view text);
  bool ReadFormOfEight(std::string_view text);
  bool ReadTailOfEight(std::string_view tail);

  std::string m_text;
  std::vector<int> m_numbers;  // never empty in a version that was read
  std::string m_preRelease;    // "ea"; empty in a release
  std::optional<int> m_build;
  std::string m_extra;  // what follows the build
};

}  // namespace torvan::java
