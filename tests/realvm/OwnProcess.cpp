#include "realvm/OwnProcess.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <dlfcn.h>
#endif

#include "ChildProcess.h"

namespace tests {
namespace {

// An unloaded VM library would leave memory whose owner a leak checker cannot name, so it stays loaded.
void KeepRuntimeMapped() {
#if defined(__SANITIZE_ADDRESS__)
  EXPECT_NE(dlopen(Narrow(RuntimePath().c_str()).c_str(), RTLD_LAZY | RTLD_NODELETE), nullptr);
#endif
}

[[noreturn]] void RunAndExit(const std::function<void()>& body) {
  KeepRuntimeMapped();
  torvan::Initialize();
  try {
    body();
  } catch (const mirel::base::CException& exception) {
    const char* message = exception.GetMessageText();
    ADD_FAILURE() << "thrown: " << exception.GetClass()->GetName() << " " << (message != nullptr ? message : "");
  }
  torvan::Terminate();
  ExitWithTheResult();
}

// Never destroyed: the VM's threads go on to print while the process ends.
struct VmOutput {
  std::mutex mutex;
  std::string text;
};
VmOutput& TheVmOutput() {
  static VmOutput& output = *new VmOutput;
  return output;
}

}  // namespace

void InOwnProcess(const std::function<void()>& body, int exitCode) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the child is started anew, as it must be on Windows
  EXPECT_EXIT(RunAndExit(body), testing::ExitedWithCode(exitCode), "");
}

int TakeVmText(FILE*, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length < 0) return length;
  std::vector<char> text(static_cast<std::size_t>(length) + 1);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  VmOutput& output = TheVmOutput();
  const std::lock_guard<std::mutex> guard(output.mutex);
  output.text += text.data();
  return length;
}

std::string VmText() {
  VmOutput& output = TheVmOutput();
  const std::lock_guard<std::mutex> guard(output.mutex);
  return output.text;
}

torvan::jni::options::COptions With(const torvan::jni::options::COption& option) {
  torvan::jni::options::COptions options;
  AddOptionFromEnvironment(options);
  options.AddOption(option);
  return options;
}

}  // namespace tests
