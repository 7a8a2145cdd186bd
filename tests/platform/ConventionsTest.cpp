#include "platform/Conventions.h"

#include <gtest/gtest.h>

#include "ThisSystem.h"
#include "fakes/WideText.h"

namespace tests {
namespace {

using namespace torvan::platform;

struct Convention {
  const char* name;
  const RX::UniChar* text;
  const char* windows;
  const char* others;
};

// Made before any initialiser of ordinary priority runs.
struct Early {
  const RX::UniChar* separator = PathSeparator;
  const RX::UniChar* library = ServerLibrary;
};
const Early g_early __attribute__((init_priority(101)));

TEST(ConventionsTest, EachSystemHasItsOwnPaths) {
  // clang-format off
  const Convention conventions[] = {
      {"PathSeparator",       PathSeparator,       "\\",                        "/"},
      {"PathListSeparator",   PathListSeparator,   ";",                         ":"},
      {"JavaProgram",         JavaProgram,         "bin\\java.exe",             "bin/java"},
      {"WindowedJavaProgram", WindowedJavaProgram, "bin\\javaw.exe",            "bin/java"},
      {"ClassicLibrary",      ClassicLibrary,      "\\bin\\classic\\jvm.dll",     "/lib/classic/libjvm.so"},
      {"ClientLibrary",       ClientLibrary,       "\\bin\\client\\jvm.dll",      "/lib/client/libjvm.so"},
      {"ServerLibrary",       ServerLibrary,       "\\jre\\bin\\server\\jvm.dll", "/jre/lib/server/libjvm.so"},
  };
  // clang-format on
  for (const Convention& convention : conventions) {
    EXPECT_EQ(OnThisSystem(convention.windows, convention.others), Narrow(convention.text)) << convention.name;
  }
}

TEST(ConventionsTest, TheConstantsAreThereForTheFirstInitialiser) {
  EXPECT_EQ(PathSeparator, g_early.separator);
  EXPECT_EQ(ServerLibrary, g_early.library);
}

}  // namespace
}  // namespace tests
