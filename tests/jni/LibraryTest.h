// What the tests of runtime libraries share: a fake operating system, the debug stream, the library's files.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <torvan/JavaRuntimeException.h>
#include <torvan/jni/DynamicJavaRuntime.h>
#include <torvan/jni/JniTypes.h>

#include <string>
#include <vector>

#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "fakes/FakeSystem.h"

namespace tests {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using VmVendor = CDynamicJavaRuntime::VmVendor;
using VmType = CDynamicJavaRuntime::VmType;
constexpr VmVendor Sun = CDynamicJavaRuntime::Sun;
constexpr VmType Default = CDynamicJavaRuntime::Default;

constexpr const char* LocationTag = "jni/WinJavaRuntimeLibraryImpl";
constexpr const char* PoolTag = "jni/JavaRuntimeLibraryPool";

// The entry points of a runtime library that is not there: they remember their arguments and answer as told.
struct EntryPoints {
  static jint JNICALL CreateJavaVm(JavaVM** vm, void** env, void* initArgs) {
    lastVm = vm;
    lastEnv = env;
    lastInitArgs = initArgs;
    return answer;
  }
  static jint JNICALL GetCreatedJavaVms(JavaVM** buffer, jsize bufferLength, jsize* count) {
    lastVm = buffer;
    lastBufferLength = bufferLength;
    lastCount = count;
    return answer;
  }

  static inline jint answer = 0;
  static inline JavaVM** lastVm = nullptr;
  static inline void** lastEnv = nullptr;
  static inline void* lastInitArgs = nullptr;
  static inline jsize lastBufferLength = 0;
  static inline jsize* lastCount = nullptr;
};

inline FakeSystem::Symbols AllSymbols() {
  return {{"JNI_CreateJavaVM", reinterpret_cast<void*>(&EntryPoints::CreateJavaVm)},
          {"JNI_GetCreatedJavaVMs", reinterpret_cast<void*>(&EntryPoints::GetCreatedJavaVms)}};
}

inline FakeSystem::Symbols SymbolsWithout(const std::string& name) {
  FakeSystem::Symbols symbols = AllSymbols();
  symbols.erase(name);
  return symbols;
}

// A fake system in which one kind of question can throw.
class ThrowingSystem : public FakeSystem {
 public:
  void (*onOpenKey)() = nullptr;
  void (*onLoadModule)() = nullptr;
  void (*onUnloadModule)() = nullptr;

  Status OpenKey(torvan::platform::RegistryKey root, const RX::UniChar* subKey, unsigned int access,
                 torvan::platform::RegistryKey* key) override {
    if (onOpenKey != nullptr) onOpenKey();
    return FakeSystem::OpenKey(root, subKey, access, key);
  }
  torvan::platform::Module LoadModule(const RX::UniChar* path) override {
    if (onLoadModule != nullptr) onLoadModule();
    return FakeSystem::LoadModule(path);
  }
  void UnloadModule(torvan::platform::Module module) override {
    FakeSystem::UnloadModule(module);
    if (onUnloadModule != nullptr) onUnloadModule();
  }
};

class LibraryTest : public ::testing::Test {
 protected:
  ThrowingSystem system;
  torvan::platform::SystemScope scope{system};
  DebugOut debugOut;
};

}  // namespace tests
