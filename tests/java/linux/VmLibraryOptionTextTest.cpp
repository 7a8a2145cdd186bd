// Options in the encoding of the environment's locale.
#include <ThisSystem.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "java/VmLibrary.h"

namespace tests {
namespace {

using torvan::java::detail::OptionText;

// Sets the locale of the environment while it lives.
class Locale {
 public:
  explicit Locale(const char* name) {
    if (const char* const before = std::getenv("LC_ALL")) m_before = before;
    SetVariable("LC_ALL", name);
  }
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;
  ~Locale() {
    if (m_before) {
      SetVariable("LC_ALL", m_before->c_str());
    } else {
      unsetenv("LC_ALL");
    }
  }

 private:
  std::optional<std::string> m_before;
};

TEST(VmLibraryOptionTextTest, IsUnchangedWhereTheLocaleHasIt) {
  const Locale locale("C.UTF-8");
  std::string reason;
  EXPECT_EQ(OptionText("-Da=Z\xC3\xBCrich", reason), "-Da=Z\xC3\xBCrich");
  EXPECT_EQ(OptionText("", reason), "");
  EXPECT_EQ(reason, "");
}

TEST(VmLibraryOptionTextTest, WhatJavaWouldNotGetHasAReason) {
  for (const char* const name : {"C", "POSIX", "no_SUCH.UTF-8"}) {
    SCOPED_TRACE(name);
    const Locale locale(name);
    std::string reason;
    EXPECT_EQ(OptionText("-Da=b", reason), "-Da=b");
    // The VM itself takes the bytes.
    EXPECT_EQ(OptionText("-agentpath:/Z\xC3\xBCrich.so", reason), "-agentpath:/Z\xC3\xBCrich.so");
    EXPECT_EQ(reason, "");
    for (const std::string option :
         {"-Djava.class.path=Z\xC3\xBCrich.jar", "--module-path=\xE6\x95\xB0", "-javaagent:/Z\xC3\xBCrich.jar"}) {
      EXPECT_EQ(OptionText(option, reason), std::nullopt) << option;
      EXPECT_EQ(reason,
                "has a character that ASCII, the encoding of this process's locale, in which Java takes its options, "
                "has not: set LC_ALL to a locale in UTF-8, such as C.UTF-8");
      reason.clear();
    }
  }
}

}  // namespace
}  // namespace tests
