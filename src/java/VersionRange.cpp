#include <torvan/java/VersionRange.h>

#include <torvan/java/Failure.h>

namespace torvan::java {

VersionRange& VersionRange::AtLeast(int feature) { return AtLeast(std::to_string(feature)); }

VersionRange& VersionRange::AtLeast(std::string_view version) {
  VersionRange changed = *this;
  changed.m_least = Version::Parse(version);
  changed.RequireSense();
  return *this = changed;
}

VersionRange& VersionRange::AtMost(int feature) { return AtMost(std::to_string(feature)); }

VersionRange& VersionRange::AtMost(std::string_view version) {
  VersionRange changed = *this;
  changed.m_most = Version::Parse(version);
  changed.RequireSense();
  return *this = changed;
}

bool VersionRange::Contains(const Version& version) const {
  if (m_least && version < *m_least) return false;
  return !m_most || version <= *m_most || version.Fits(*m_most);
}

std::string VersionRange::ToString() const {
  if (!m_least && !m_most) return "any version";
  std::string text;
  if (m_least) text = "at least " + m_least->ToString();
  if (m_least && m_most) text += " and ";
  if (m_most) text += "at most " + m_most->ToString();
  return text;
}

void VersionRange::RequireSense() const {
  if (!m_least || !m_most || *m_least <= *m_most || m_least->Fits(*m_most)) return;
  throw Misuse("java/VersionRange", __LINE__, "No version of Java is " + ToString());
}

}  // namespace torvan::java
