// What the VM prints when C++ has no memory.
#include "java/VmHooks.h"

#include <cstdarg>
#include <cstdio>

#include "java/realvm/FewAllocations.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using Printing = jint(JNICALL*)(FILE*, const char*, va_list);

jint Call(Printing hook, FILE* stream, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const jint length = hook(stream, format, arguments);
  va_end(arguments);
  return length;
}

TEST(VmHooksMemoryTest, WhatTheVmPrintsWithoutMemoryGoesToItsStream) {
  if (OnWindows) GTEST_SKIP() << "the C++ library is a DLL, with its own operator new";
  const std::string text(1000, 'x');
  const std::string expected = "5 " + text + " 0.5\n";
  InOwnProcess(
      [&] {
        std::vector<JavaVMOption> options;
        options.reserve(3 * java::detail::HookCount);
        java::detail::BeginStart({}, options);
        ASSERT_STREQ(options[0].optionString, "vfprintf");
        const auto hook = reinterpret_cast<Printing>(options[0].extraInfo);
        const auto print = [&](long allocations) {
          const FewAllocations few(allocations);
          return Call(hook, stderr, "%d %s %.1f\n", 5, text.c_str(), 0.5);
        };
        EXPECT_EQ(print(0), static_cast<jint>(expected.size()));  // none for the text
        EXPECT_EQ(java::detail::TakeKept(), "");
        java::detail::BeginStart({}, options);
        EXPECT_EQ(print(1), static_cast<jint>(expected.size()));  // none to keep it
        EXPECT_EQ(java::detail::TakeKept(), "");
        java::detail::BeginStart({}, options);
        EXPECT_EQ(print(100), static_cast<jint>(expected.size()));
        EXPECT_EQ(java::detail::TakeKept(), expected);
      },
      {0, testing::HasSubstr(expected + expected)});
}

}  // namespace
}  // namespace tests
