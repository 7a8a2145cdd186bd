// A Java VM made of scripts.
#pragma once

#include <gtest/gtest.h>

#include <any>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fakes/JniSlots.h"

namespace tests {

using Jni = JNINativeInterface_;
using Invocation = JNIInvokeInterface_;

// A Java object, with the parts that tests need. Each may be changed.
struct FakeObject {
  std::u16string text;                     // of a string
  std::vector<jobject> elements;           // of an array
  std::map<std::string, jobject> results;  // what its methods return, by method name
};

// A Java exception to throw; `trace` holds the texts of its stack trace elements.
struct FakeException {
  std::string className;
  std::string message;
  std::vector<std::string> trace;
};

// Fills in JNI's real function tables.
// A slot without a script fails the test when it is called. Every call is logged with its arguments, in order:
//
//   FakeJvm jvm;
//   jvm.AnswerAll();                                       // or the groups below, one by one
//   jvm.On<&Jni::GetIntField>([](jobject, jfieldID) { return 7; });
//   jvm.AnswerNull("GetFieldID(local:1, \"x\", \"I\")");  // this call alone returns null instead
//   EXPECT_THAT(jvm.Calls(), ElementsAre("AttachCurrentThread(null)", "GetObjectClass(global:1)", ...));
//
// Locals count from local:1 in the order in which they are made; the global of local:5 is global:5. Scripts may throw.
class FakeJvm {
 public:
  FakeJvm();
  FakeJvm(const FakeJvm&) = delete;
  FakeJvm& operator=(const FakeJvm&) = delete;

  JavaVM* Vm() { return &m_vm; }
  JNIEnv* Env() { return &m_environment; }

  // Scripts a slot. The script takes the slot's arguments after the environment and returns its result.
  template <auto Slot, typename Script>
  void On(Script script);
  template <auto Slot, typename Result>
  void Return(Result result) {
    On<Slot>([result](auto...) { return result; });
  }

  // Scripts groups of slots as a working VM would answer.
  void AnswerAttachment();  // AttachCurrentThread, DetachCurrentThread
  void AnswerLookups();     // FindClass, GetObjectClass and the four lookups of IDs
  void AnswerGlobals();     // NewGlobalRef, DeleteGlobalRef
  void AnswerWeaks();       // NewWeakGlobalRef, DeleteWeakGlobalRef; a weak reference looks as its object
  void AnswerCheck();       // ExceptionOccurred
  void AnswerStrings();     // NewString, GetStringChars, ReleaseStringChars
  void AnswerReads();       // CallObjectMethodV, GetArrayLength, GetObjectArrayElement, from the objects' parts
  void AnswerAll();

  // The call with this text in the log returns null, zero or false without running its script: the first such call, the
  // second, and so on.
  void AnswerNull(const std::string& call, unsigned int occurrence = 1);

  // Makes objects that Java could have made.
  jobject NewObject();
  jstring NewText(const std::string& text);
  FakeObject& At(jobject object);
  jmethodID Method(const std::string& name, const std::string& descriptor);
  jfieldID Field(const std::string& name, const std::string& descriptor);

  // Leaves a new exception pending.
  jthrowable Throw(const FakeException& exception);
  jthrowable Pending() const { return m_pending; }
  void ClearPending() { m_pending = nullptr; }

  // Is run at the start of every call.
  void OnEachCall(std::function<void()> watch) { m_watch = std::move(watch); }

  const std::vector<std::string>& Calls() const { return m_calls; }
  std::vector<std::string> TakeCalls() { return std::exchange(m_calls, {}); }

  std::size_t LiveGlobals() const { return m_globals.size(); }
  std::size_t LiveWeaks() const { return m_weaks.size(); }
  std::size_t HeldStringChars() const { return m_chars.size(); }

 private:
  struct Machine : JavaVM {
    FakeJvm* jvm;
  };
  struct Environment : JNIEnv {
    FakeJvm* jvm;
  };
  static FakeJvm& Of(JavaVM* vm) { return *static_cast<Machine*>(vm)->jvm; }
  static FakeJvm& Of(JNIEnv* env) { return *static_cast<Environment*>(env)->jvm; }

  template <auto Slot, typename Type = decltype(Slot)>
  struct Thunk;
  template <typename Interface, typename Self, std::size_t Index>
  static jlong JNICALL Unexpected(Self* self);
  template <typename Interface, typename Self, std::size_t... Index>
  static void FailEverySlot(Interface& table, std::index_sequence<Index...>);

  Jni& TableOf(const Jni*) { return m_environmentTable; }
  Invocation& TableOf(const Invocation*) { return m_invocationTable; }

  // Logs a call; true if it is to return null.
  bool Enter(const std::string& call);

  // Adds an argument to a call's text; a variable argument list is read by the descriptor of the call's method.
  template <typename Argument>
  static void AppendArgument(std::string& list, const Argument& argument, const FakeMember*) {
    AppendText(list, Describe(argument));
  }
  static void AppendArgument(std::string& list, va_list arguments, const FakeMember* method) {
    if (method != nullptr) AppendText(list, DescribeArguments(method->descriptor, arguments));
  }
  static void AppendText(std::string& list, const std::string& text) {
    if (!list.empty() && !text.empty()) list += ", ";
    list += text;
  }

  Invocation m_invocationTable;
  Jni m_environmentTable;
  Machine m_vm;
  Environment m_environment;
  std::map<std::string, std::any> m_scripts;
  std::vector<std::string> m_calls;
  std::function<void()> m_watch;
  std::map<std::string, unsigned int> m_nullAnswers;
  std::vector<FakeObject> m_objects;
  std::map<std::pair<std::string, std::string>, FakeMember> m_members;
  std::multiset<jobject> m_globals;
  std::multiset<jobject> m_weaks;
  std::map<const jchar*, std::unique_ptr<jchar[]>> m_chars;
  jthrowable m_pending = nullptr;
};

#if defined(__GNUC__)
#pragma GCC diagnostic push
// va_list is an attributed type on some systems, and slots that take one are template arguments here.
#pragma GCC diagnostic ignored "-Wignored-attributes"
#endif

// The function in a scripted slot.
template <auto Slot, typename Interface, typename Result, typename Self, typename... Arguments>
struct FakeJvm::Thunk<Slot, Result (JNICALL* Interface::*)(Self*, Arguments...)> {
  using Script = std::function<Result(Arguments...)>;

  static std::string Name() { return SlotName(SlotIndex(Slot), static_cast<const Interface*>(nullptr)); }
  static Interface* Table() { return nullptr; }

  static Result JNICALL Call(Self* self, Arguments... arguments) {
    FakeJvm& jvm = Of(self);
    [[maybe_unused]] const FakeMember* method = nullptr;
    (RememberMethod(method, arguments), ...);
    std::string list;
    (AppendArgument(list, arguments, method), ...);
    if (jvm.Enter(list.empty() ? Name() : Name() + "(" + list + ")")) return Result();
    return std::any_cast<const Script&>(jvm.m_scripts.at(Name()))(arguments...);
  }

  static void RememberMethod(const FakeMember*& method, jmethodID id) {
    method = reinterpret_cast<const FakeMember*>(id);
  }
  template <typename Other>
  static void RememberMethod(const FakeMember*&, const Other&) {}
};

template <auto Slot, typename Script>
void FakeJvm::On(Script script) {
  using SlotThunk = Thunk<Slot>;
  TableOf(SlotThunk::Table()).*Slot = &SlotThunk::Call;
  m_scripts[SlotThunk::Name()] = typename SlotThunk::Script(std::move(script));
}

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace tests
