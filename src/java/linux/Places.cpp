#include "java/runtimes/Places.h"

#include "java/runtimes/BinaryHeader.h"

namespace torvan::java::detail {
namespace {

#if defined(__GLIBC__)
constexpr const char* ForeignLibc = "musl";
#else
constexpr const char* ForeignLibc = "gnu";
#endif

}  // namespace

const Places& UsualPlaces() {
  static const Places s_places{
      false,
      '/',
      {},
      {},
      {
          {"/usr", {"lib/jvm/*", "lib64/jvm/*", "java/*", "local/lib/jvm/*", "local/java/*", "local/openjdk*"}},
          {"/opt", {"*", "java/*", "jdk/*", "jvm/*"}},
          {"/snap", {"openjdk/current/jdk"}},
          {"$SDKMAN_CANDIDATES_DIR", {"java/*"}},
          {"$SDKMAN_DIR", {"candidates/java/*"}},
          {"$GRADLE_USER_HOME", {"jdks/*", "jdks/*/*"}},
          {"$ASDF_DATA_DIR", {"installs/java/*"}},
          {"$MISE_DATA_DIR", {"installs/java/*"}},
          {"$HOMEBREW_PREFIX", {"opt/openjdk*/libexec"}},
          {"/home/linuxbrew/.linuxbrew", {"opt/openjdk*/libexec"}},
          {"$HOME",
           {".sdkman/candidates/java/*", ".jdks/*", ".gradle/jdks/*", ".gradle/jdks/*/*", ".jbang/cache/jdks/*",
            ".jabba/jdk/*", ".asdf/installs/java/*", ".local/share/mise/installs/java/*", ".jenv/versions/*"}},
      },
  };
  return s_places;
}

const Layout& UsualLayout() {
  // Up to version 8 the libraries are in a folder named after the CPU, in a kit below its own runtime.
  static const Layout s_layout{
      "bin/java",
      "bin/javac",
      "libjvm.so",
      {"lib", "jre/lib/amd64", "lib/amd64", "jre/lib/aarch64", "lib/aarch64", "jre/lib/i386", "lib/i386", "jre/lib/arm",
       "lib/arm"},
      "ELF",
      CpuOfElf,
      ForeignLibc,
  };
  return s_layout;
}

}  // namespace torvan::java::detail
