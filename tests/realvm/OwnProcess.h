// Tests that need their own VM: a process can create one VM, once.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "realvm/RealRuntime.h"

namespace tests {

// Runs the body in its own process, which must end with the exit code. A body that returns ends its process with
// 0, or else, when one of its expectations failed or it threw, with another code; what failed is printed.
void InOwnProcess(const std::function<void()>& body, int exitCode = 0);

// Text that the VM prints, taken by CVfprintfHook(&TakeVmText).
int TakeVmText(FILE* stream, const char* format, va_list arguments);
std::string VmText();

// Options with this one, and with what AddOptionFromEnvironment() adds.
torvan::jni::options::COptions With(const torvan::jni::options::COption& option);

}  // namespace tests
