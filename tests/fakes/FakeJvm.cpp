#include "fakes/FakeJvm.h"

#include <cstdint>
#include <cstring>

namespace tests {
namespace {

// Locals and globals of one object share its index.
std::size_t IndexOf(jobject object) { return (reinterpret_cast<std::uintptr_t>(object) & ~GlobalBit) - FirstLocal - 1; }

jobject GlobalOf(jobject object) {
  return reinterpret_cast<jobject>(reinterpret_cast<std::uintptr_t>(object) | GlobalBit);
}

bool IsGlobal(jobject object) { return (reinterpret_cast<std::uintptr_t>(object) & GlobalBit) != 0; }

std::u16string Widen(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

template <typename Interface, typename Self, std::size_t Index>
jlong JNICALL FakeJvm::Unexpected(Self* self) {
  const std::string name = SlotName(Index, static_cast<const Interface*>(nullptr));
  Of(self).Enter("unexpected " + name);
  ADD_FAILURE() << "unexpected call: " << name;
  return 0;
}

template <typename Interface, typename Self, std::size_t... Index>
void FakeJvm::FailEverySlot(Interface& table, std::index_sequence<Index...>) {
  jlong(JNICALL* const functions[])(Self*) = {&Unexpected<Interface, Self, Index>...};
  static_assert(sizeof(functions) == sizeof(Interface), "a function table holds nothing but slots");
  std::memcpy(&table, functions, sizeof(functions));
}

FakeJvm::FakeJvm() {
  FailEverySlot<Jni, JNIEnv>(m_environmentTable, std::make_index_sequence<sizeof(Jni) / sizeof(void*)>());
  FailEverySlot<Invocation, JavaVM>(m_invocationTable, std::make_index_sequence<sizeof(Invocation) / sizeof(void*)>());
  m_vm.functions = &m_invocationTable;
  m_vm.jvm = this;
  m_environment.functions = &m_environmentTable;
  m_environment.jvm = this;
}

bool FakeJvm::Enter(const std::string& call) {
  m_calls.push_back(call);
  if (m_watch) m_watch();
  const auto answer = m_nullAnswers.find(call);
  return answer != m_nullAnswers.end() && --answer->second == 0;
}

void FakeJvm::AnswerNull(const std::string& call, unsigned int occurrence) { m_nullAnswers[call] = occurrence; }

void FakeJvm::AnswerAttachment() {
  On<&Invocation::AttachCurrentThread>([this](void** env, void*) {
    *env = Env();
    return JNI_OK;
  });
  Return<&Invocation::DetachCurrentThread>(JNI_OK);
}

void FakeJvm::AnswerLookups() {
  const auto newClass = [this](auto...) { return static_cast<jclass>(NewObject()); };
  const auto method = [this](jclass, const char* name, const char* descriptor) { return Method(name, descriptor); };
  const auto field = [this](jclass, const char* name, const char* descriptor) { return Field(name, descriptor); };
  On<&Jni::FindClass>(newClass);
  On<&Jni::GetObjectClass>(newClass);
  On<&Jni::GetMethodID>(method);
  On<&Jni::GetStaticMethodID>(method);
  On<&Jni::GetFieldID>(field);
  On<&Jni::GetStaticFieldID>(field);
}

void FakeJvm::AnswerGlobals() {
  On<&Jni::NewGlobalRef>([this](jobject object) { return *m_globals.insert(GlobalOf(object)); });
  On<&Jni::DeleteGlobalRef>([this](jobject object) {
    const auto global = m_globals.find(object);
    if (global == m_globals.end() || !IsGlobal(object)) {
      ADD_FAILURE() << "no global reference: " << Describe(object);
    } else {
      m_globals.erase(global);
    }
  });
}

void FakeJvm::AnswerWeaks() {
  On<&Jni::NewWeakGlobalRef>([this](jobject object) { return static_cast<jweak>(*m_weaks.insert(object)); });
  On<&Jni::DeleteWeakGlobalRef>([this](jweak object) {
    const auto weak = m_weaks.find(object);
    if (weak == m_weaks.end()) {
      ADD_FAILURE() << "no weak reference: " << Describe(object);
    } else {
      m_weaks.erase(weak);
    }
  });
}

void FakeJvm::AnswerCheck() {
  On<&Jni::ExceptionOccurred>([this] { return m_pending; });
}

void FakeJvm::AnswerStrings() {
  On<&Jni::NewString>([this](const jchar* text, jsize length) {
    const jobject string = NewObject();
    At(string).text.assign(text, text + length);
    return static_cast<jstring>(string);
  });
  On<&Jni::GetStringChars>([this](jstring string, jboolean*) {
    // HotSpot, too, appends a zero to the units.
    const std::u16string& text = At(string).text;
    std::unique_ptr<jchar[]> chars(new jchar[text.size() + 1]);
    std::copy(text.c_str(), text.c_str() + text.size() + 1, chars.get());
    const jchar* key = chars.get();
    return m_chars.emplace(key, std::move(chars)).first->first;
  });
  On<&Jni::ReleaseStringChars>([this](jstring, const jchar* chars) {
    if (m_chars.erase(chars) == 0) ADD_FAILURE() << "these characters are not the VM's, or are released twice";
  });
}

void FakeJvm::AnswerReads() {
  On<&Jni::CallObjectMethodV>([this](jobject object, jmethodID method, auto) -> jobject {
    const auto& results = At(object).results;
    const auto result = results.find(reinterpret_cast<const FakeMember*>(method)->name);
    return result == results.end() ? nullptr : result->second;
  });
  On<&Jni::GetArrayLength>([this](jarray array) { return static_cast<jsize>(At(array).elements.size()); });
  On<&Jni::GetObjectArrayElement>(
      [this](jobjectArray array, jsize index) { return At(array).elements.at(static_cast<std::size_t>(index)); });
}

void FakeJvm::AnswerAll() {
  AnswerAttachment();
  AnswerLookups();
  AnswerGlobals();
  AnswerWeaks();
  AnswerCheck();
  AnswerStrings();
  AnswerReads();
}

jobject FakeJvm::NewObject() {
  m_objects.emplace_back();
  return reinterpret_cast<jobject>(FirstLocal + m_objects.size());
}

jstring FakeJvm::NewText(const std::string& text) {
  const jobject string = NewObject();
  At(string).text = Widen(text);
  return static_cast<jstring>(string);
}

FakeObject& FakeJvm::At(jobject object) { return m_objects.at(IndexOf(object)); }

jmethodID FakeJvm::Method(const std::string& name, const std::string& descriptor) {
  FakeMember& member = m_members.try_emplace({name, descriptor}, FakeMember{name, descriptor}).first->second;
  return reinterpret_cast<jmethodID>(&member);
}

jfieldID FakeJvm::Field(const std::string& name, const std::string& descriptor) {
  FakeMember& member = m_members.try_emplace({name, descriptor}, FakeMember{name, descriptor}).first->second;
  return reinterpret_cast<jfieldID>(&member);
}

jthrowable FakeJvm::Throw(const FakeException& exception) {
  const jobject throwable = NewObject();
  const jobject classObject = NewObject();
  At(classObject).results["getName"] = NewText(exception.className);
  const jobject trace = NewObject();
  for (const std::string& text : exception.trace) {
    const jobject element = NewObject();
    const jstring string = NewText(text);
    At(element).results["toString"] = string;
    At(trace).elements.push_back(element);
  }
  const jstring message = NewText(exception.message);
  At(throwable).results = {{"getClass", classObject}, {"getMessage", message}, {"getStackTrace", trace}};
  m_pending = static_cast<jthrowable>(throwable);
  return m_pending;
}

}  // namespace tests
