// A Java runtime library made of scripts.
#pragma once

#include <gtest/gtest.h>
#include <jni.h>

#include <functional>
#include <string>
#include <vector>

#include "fakes/FakeSystem.h"

namespace tests {

// The arguments of one JNI_CreateJavaVM.
struct InitArguments {
  jint version = 0;
  jboolean ignoreUnrecognized = JNI_FALSE;
  const JavaVMOption* options = nullptr;
  std::vector<std::string> texts;  // one that is null shows as "(null)"
  std::vector<void*> extraInfos;
};

// A module of a fake system whose two entry points are scripts. One at a time; it must outlive its callers.
class FakeRuntimeLibrary {
 public:
  FakeRuntimeLibrary(FakeSystem& system, const std::string& path) {
    s_current = this;
    system.AddModule(path, {{"JNI_CreateJavaVM", reinterpret_cast<void*>(&Create)},
                            {"JNI_GetCreatedJavaVMs", reinterpret_cast<void*>(&List)}});
  }
  ~FakeRuntimeLibrary() { s_current = nullptr; }
  FakeRuntimeLibrary(const FakeRuntimeLibrary&) = delete;
  FakeRuntimeLibrary& operator=(const FakeRuntimeLibrary&) = delete;

  // Without a script a call fails the test.
  std::function<jint(JavaVM**, void**)> create;
  std::function<jint(JavaVM**, jsize, jsize*)> list;

  // The arguments of each creation, in order.
  const std::vector<InitArguments>& Created() const { return m_created; }

  // Scripts both for one VM, which can be created or exists already.
  void Serve(JavaVM* vm, JNIEnv* env) {
    create = [=](JavaVM** vmPlace, void** envPlace) {
      *vmPlace = vm;
      *envPlace = env;
      return JNI_OK;
    };
    list = [=](JavaVM** buffer, jsize length, jsize* count) {
      if (length > 0) buffer[0] = vm;
      *count = 1;
      return JNI_OK;
    };
  }

 private:
  static jint JNICALL Create(JavaVM** vm, void** env, void* arguments) {
    const auto& given = *static_cast<const JavaVMInitArgs*>(arguments);
    InitArguments copy;
    copy.version = given.version;
    copy.ignoreUnrecognized = given.ignoreUnrecognized;
    copy.options = given.options;
    for (jint i = 0; i < given.nOptions; ++i) {
      const char* const text = given.options[i].optionString;
      copy.texts.emplace_back(text != nullptr ? text : "(null)");
      copy.extraInfos.push_back(given.options[i].extraInfo);
    }
    s_current->m_created.push_back(copy);
    if (s_current->create) return s_current->create(vm, env);
    ADD_FAILURE() << "unexpected call: JNI_CreateJavaVM";
    return JNI_ERR;
  }
  static jint JNICALL List(JavaVM** buffer, jsize length, jsize* count) {
    if (s_current->list) return s_current->list(buffer, length, count);
    ADD_FAILURE() << "unexpected call: JNI_GetCreatedJavaVMs";
    return JNI_ERR;
  }

  static inline FakeRuntimeLibrary* s_current = nullptr;

  std::vector<InitArguments> m_created;
};

}  // namespace tests
