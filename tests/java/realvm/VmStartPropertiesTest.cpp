// System properties with characters that the encoding lacks in which a VM takes its options.
#include <ThisSystem.h>

#include <optional>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::StartFailure;
using java::StartVm;
using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

std::string Property(const char* name) {
  const auto value = java::CallStatic<std::optional<std::string>>("java/lang/System", "getProperty", name);
  return value.value_or("(null)");
}

// A character that the locale "C" lacks, and a code page of Windows unless it is UTF-8.
constexpr const char* Number = "\xE6\x95\xB0";

TEST(VmStartPropertiesTest, APropertyOfTheHostThatTheEncodingLacksIsSetWhenTheVmRuns) {
  InOwnProcess([] {
    SetVariable("LC_ALL", "C");
    const std::string name = std::string("fixture.") + Number;
    const java::Vm vm = StartVm(FixtureSettings()
                                    .Property("fixture.text", Number)
                                    .Option(std::string("-Dfixture.option=a=") + Number)
                                    .Option("-D" + name)
                                    .Property("fixture.first", Number)
                                    .Property("fixture.first", "a")
                                    .Property("fixture.last", "a")
                                    .Property("fixture.last", std::string("a") + Number)
                                    .Property("fixture.last", Number)
                                    .Property("fixture.", Number));
    EXPECT_EQ(Property("fixture.text"), Number);
    EXPECT_EQ(Property("fixture.option"), std::string("a=") + Number);
    EXPECT_EQ(Property(name.c_str()), "");
    EXPECT_EQ(Property("fixture.first"), "a");
    EXPECT_EQ(Property("fixture.last"), Number);
    EXPECT_EQ(Property("fixture."), Number);
  });
}

TEST(VmStartPropertiesTest, APropertyOfJavasOwnThatTheEncodingLacksIsRefused) {
  if (OnWindows) GTEST_SKIP() << "the code page may have all characters";
  for (const char* const name :
       {"awt.a", "com.sun.a", "file.a", "java.io.tmpdir", "javax.a", "jdk.a", "sun.a", "user.home"}) {
    InOwnProcess([name] {
      SetVariable("LC_ALL", "C");
      const std::string option = std::string("The option -D") + name + "=" + Number + " has a character that ";
      const auto text =
          WhatOf<StartFailure>([&] { const java::Vm vm = StartVm(FixtureSettings().Property(name, Number)); });
      EXPECT_THAT(text, AllOf(StartsWith(option), EndsWith("set LC_ALL to a locale in UTF-8, such as C.UTF-8")));
    });
  }
}

TEST(VmStartPropertiesTest, APropertyThatIsNoUtf8IsRefusedBeforeThereIsAVm) {
  InOwnProcess([] {
    SetVariable("LC_ALL", "C");
    EXPECT_EQ(
        WhatOf<java::Misuse>([] { const java::Vm vm = StartVm(FixtureSettings().Property("fixture.a", "\xFF")); }),
        "an option of the Java VM: invalid UTF-8 at byte 12");
    const java::Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(Property("fixture.a"), "(null)");
  });
}

}  // namespace
}  // namespace tests
