// Version texts: three of them, a line each.
#include <torvan/java/Failure.h>
#include <torvan/java/Version.h>

#include <algorithm>

#include "fuzz/Fuzz.h"

using tests::Require;
using torvan::java::Misuse;
using torvan::java::Version;

namespace {

bool Parses(std::string_view text) {
  try {
    Version::Parse(text);
    return true;
  } catch (const Misuse&) {
    return false;
  }
}

void RequireSense(const Version& version, std::string_view text) {
  Require(version.ToString() == text, "the text is kept");
  Require(version.Feature() > 0, "a feature number is positive");
  Require(version.Compare(version) == 0, "a version is equal to itself");
  Require(version.Fits(version), "a version fits itself");
  Require(version.Fits(std::to_string(version.Feature())), "a version fits its feature");
}

std::string_view TakeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::string_view input = tests::Input(data, size);
  const std::string_view first = TakeLine(input);
  const auto a = Version::TryParse(first);
  const auto b = Version::TryParse(TakeLine(input));
  const auto c = Version::TryParse(TakeLine(input));
  Require(Parses(first) == a.has_value(), "both ways of parsing agree");
  if (a) RequireSense(*a, first);
  if (!a || !b) return 0;
  Require(a->Compare(*b) == -b->Compare(*a), "the order is the same from both sides");
  Require(a->Feature() == b->Feature() || (a->Feature() < b->Feature()) == (*a < *b), "features come first");
  if (*a == *b) Require(a->Fits(*b) && b->Fits(*a), "what is equal fits");
  if (!c) return 0;
  Require(a->Compare(*b) > 0 || b->Compare(*c) > 0 || a->Compare(*c) <= 0, "the order goes on from one to the next");
  return 0;
}
