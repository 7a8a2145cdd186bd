// Which versions of Java will do.
#pragma once

#include <torvan/java/Version.h>

#include <optional>
#include <string>
#include <string_view>

namespace torvan::java {

// The versions of Java that a host can work with; without bounds, all of them.
// A bound is a feature number or a version text: AtLeast(11).AtMost(21), AtLeast("17.0.9"). A text that is no version,
// a number below 1, and an empty range are a Misuse.
class VersionRange {
 public:
  VersionRange& AtLeast(int feature);
  VersionRange& AtLeast(std::string_view version);
  // Takes everything that the bound fits: AtMost(21) takes every 21.x.
  VersionRange& AtMost(int feature);
  VersionRange& AtMost(std::string_view version);

  bool Contains(const Version& version) const;

  // For people: "at least 11 and at most 21", "any version".
  std::string ToString() const;

 private:
  void RequireSense() const;

  std::optional<Version> m_least;
  std::optional<Version> m_most;
};

inline VersionRange AtLeast(int feature) { return VersionRange().AtLeast(feature); }
inline VersionRange AtLeast(std::string_view version) { return VersionRange().AtLeast(version); }
inline VersionRange AtMost(int feature) { return VersionRange().AtMost(feature); }
inline VersionRange AtMost(std::string_view version) { return VersionRange().AtMost(version); }

}  // namespace torvan::java
