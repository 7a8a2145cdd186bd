#include <torvan/java/Version.h>

#include <torvan/java/Failure.h>

#include <algorithm>
#include <limits>

namespace torvan::java {
namespace {

constexpr std::string_view Digits = "0123456789";
constexpr std::string_view Alphanumerics = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view ExtraCharacters = "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
// Builds of Java 8 followed no grammar: "-8u292-b10-0ubuntu1~20.04-b10", "-b10_openj9-0.23.0".
constexpr std::string_view TailCharacters = "+-._~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

constexpr std::size_t MostShown = 80;  // of a text that is no version

bool IsMadeOf(std::string_view text, std::string_view characters) {
  return text.find_first_not_of(characters) == std::string_view::npos;
}

// Takes the longest run of the characters off the front of the text.
std::string_view Take(std::string_view& text, std::string_view characters) {
  const std::string_view taken = text.substr(0, text.find_first_not_of(characters));
  text.remove_prefix(taken.size());
  return taken;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return false;
  text.remove_prefix(prefix.size());
  return true;
}

// Nothing where there are no digits or Java's int has no room for them.
std::optional<int> ToNumber(std::string_view digits) {
  if (digits.empty()) return std::nullopt;
  int number = 0;
  for (const char digit : digits) {
    const int value = digit - '0';
    if (number > (std::numeric_limits<int>::max() - value) / 10) return std::nullopt;
    number = number * 10 + value;
  }
  return number;
}

bool HasLeadingZero(std::string_view digits) { return digits.size() > 1 && digits.front() == '0'; }

// Appends the numbers of "17.0.15" and takes them off the front.
bool TakeNumbers(std::string_view& text, std::vector<int>& numbers) {
  do {
    const std::string_view digits = Take(text, Digits);
    const std::optional<int> number = ToNumber(digits);
    if (!number || HasLeadingZero(digits)) return false;
    numbers.push_back(*number);
  } while (TakePrefix(text, "."));
  return true;
}

// One that is missing is 0.
int NumberAt(const std::vector<int>& numbers, std::size_t index) { return index < numbers.size() ? numbers[index] : 0; }

int OrderOf(bool isLess, bool isGreater) { return isLess ? -1 : isGreater ? 1 : 0; }

int CompareNumbers(const std::vector<int>& a, const std::vector<int>& b, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const int x = NumberAt(a, i);
    const int y = NumberAt(b, i);
    if (x != y) return OrderOf(x<y, x> y);
  }
  return 0;
}

// Digits count as a number of any length, and come before words.
int ComparePreReleases(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return OrderOf(!a.empty(), !b.empty());  // a release is above
  const bool isNumberA = IsMadeOf(a, Digits);
  const bool isNumberB = IsMadeOf(b, Digits);
  if (isNumberA != isNumberB) return OrderOf(isNumberA, isNumberB);
  if (isNumberA) {
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    if (a.size() != b.size()) return OrderOf(a.size() < b.size(), a.size() > b.size());
  }
  return OrderOf(a<b, a> b);
}

}  // namespace

Version Version::Parse(std::string_view text) {
  if (std::optional<Version> version = TryParse(text)) return *version;
  std::string shown(text.substr(0, MostShown));
  if (text.size() > MostShown) shown += "...";
  throw Misuse("java/Version", __LINE__, '"' + shown + "\" is not a version of Java");
}

std::optional<Version> Version::TryParse(std::string_view text) {
  Version version;
  if (!version.ReadFormOfEight(text)) {
    version = Version();
    if (!version.ReadCurrentForm(text)) return std::nullopt;
  }
  version.m_text = text;
  return version;
}

// NUMBERS[-PRE][+BUILD][-EXTRA], where without a build EXTRA comes after PRE or after a bare "+".
bool Version::ReadCurrentForm(std::string_view text) {
  if (!TakeNumbers(text, m_numbers) || m_numbers.front() == 0) return false;
  if (TakePrefix(text, "-")) {
    m_preRelease = Take(text, Alphanumerics);
    if (m_preRelease.empty()) return false;
  }
  const bool hasPlus = TakePrefix(text, "+");
  if (hasPlus) {
    const std::string_view digits = Take(text, Digits);
    m_build = ToNumber(digits);
    if (!digits.empty() && (!m_build || HasLeadingZero(digits))) return false;
  }
  if (text.empty()) return !hasPlus || m_build.has_value();
  if (hasPlus && !m_build && !m_preRelease.empty()) return false;
  if (!TakePrefix(text, "-") || text.empty()) return false;
  m_extra = text;
  return IsMadeOf(m_extra, ExtraCharacters);
}

// "1.8.0_391-b13", also "1.8.0.391", and "8u391-b13": numbers that mean 8.0.391.
bool Version::ReadFormOfEight(std::string_view text) {
  if (TakePrefix(text, "1.")) {
    if (!TakeNumbers(text, m_numbers) || m_numbers.front() == 0) return false;
    if (TakePrefix(text, "_")) {
      const std::optional<int> update = ToNumber(Take(text, Digits));
      if (!update || m_numbers.size() != 2) return false;
      m_numbers.push_back(*update);
    }
  } else {
    const std::optional<int> feature = ToNumber(Take(text, Digits));
    if (!feature || *feature == 0 || !TakePrefix(text, "u")) return false;
    const std::optional<int> update = ToNumber(Take(text, Digits));
    if (!update) return false;
    m_numbers = {*feature, 0, *update};
  }
  return ReadTailOfEight(text);
}

// "-ea", "-b13", "-ea-b13", or anything with a build at its end: "-8u292-b10-0ubuntu1-b10".
bool Version::ReadTailOfEight(std::string_view tail) {
  if (tail.empty()) return true;
  if ((tail.front() != '-' && tail.front() != '_' && tail.front() != '+') || tail.size() == 1) return false;
  if (!IsMadeOf(tail, TailCharacters)) return false;
  for (const std::string_view word : {"-ea", "-internal"}) {
    if (tail == word || tail.substr(0, word.size() + 1) == std::string(word) + '-') {
      m_preRelease = word.substr(1);
      tail.remove_prefix(word.size());
      break;
    }
  }
  const std::size_t build = tail.rfind("-b");
  if (build != std::string_view::npos && IsMadeOf(tail.substr(build + 2), Digits)) {
    m_build = ToNumber(tail.substr(build + 2));
    if (m_build) tail = tail.substr(0, build);
  }
  if (!tail.empty()) m_extra = tail.substr(1);
  return true;
}

bool Version::Fits(std::string_view wanted) const { return Fits(Parse(wanted)); }

bool Version::Fits(const Version& wanted) const {
  if (CompareNumbers(m_numbers, wanted.m_numbers, wanted.m_numbers.size()) != 0) return false;
  if (!wanted.m_preRelease.empty() && ComparePreReleases(m_preRelease, wanted.m_preRelease) != 0) return false;
  if (wanted.m_build && wanted.m_build != m_build) return false;
  return wanted.m_extra.empty() || wanted.m_extra == m_extra;
}

int Version::Compare(const Version& other) const noexcept {
  if (const int order =
          CompareNumbers(m_numbers, other.m_numbers, std::max(m_numbers.size(), other.m_numbers.size()))) {
    return order;
  }
  if (const int order = ComparePreReleases(m_preRelease, other.m_preRelease)) return order;
  if (m_build != other.m_build) return OrderOf(m_build<other.m_build, m_build> other.m_build);
  return OrderOf(m_extra<other.m_extra, m_extra> other.m_extra);
}

}  // namespace torvan::java
