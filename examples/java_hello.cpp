// The first program of the README: finds words with Java, and prints what Java says of a mistake.
// clang-format off
#include <torvan/Java.h>
#include <cstdio>

namespace java = torvan::java;

struct Pattern { static constexpr char JavaName[] = "java/util/regex/Pattern"; };
struct Matcher { static constexpr char JavaName[] = "java/util/regex/Matcher"; };

constexpr java::StaticMethod<java::Local<Pattern>(std::string_view)> Compile{"java/util/regex/Pattern", "compile"};
constexpr java::Method<Pattern, java::Local<Matcher>(std::string_view)> Match{"matcher",
    "(Ljava/lang/CharSequence;)Ljava/util/regex/Matcher;"};
constexpr java::Method<Matcher, bool()> Find{"find"};
constexpr java::Method<Matcher, std::string()> Group{"group"};

int main() try {
  const java::Vm vm = java::StartVm(java::VmSettings().MaximumHeap("64m"));
  const auto matcher = Match(Compile("\\p{Lu}\\p{L}*"), "from Zürich to Ōsaka");
  while (Find(matcher)) std::printf("%s\n", Group(matcher).c_str());
  Compile("a(b");
} catch (const java::Error& error) {
  std::printf("%s\n", error.what());
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 1;
}
