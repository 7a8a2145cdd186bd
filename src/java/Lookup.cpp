#include <torvan/java/detail/Member.h>

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/Descriptor.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/StringText.h>

#include <map>
#include <mutex>
#include <string>

#include "java/ClassNames.h"
#include "java/ErrorReader.h"
#include "java/Reflection.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

std::atomic<bool> otherLoaders{false};

namespace {

// What is found once for all members. Never destroyed, because calls may come from static destructors.
struct KeptClasses {
  std::mutex mutex;
  std::map<std::string, jclass> classes;                                 // by name
  std::map<std::string, const std::unique_ptr<const ClassTests>> tests;  // by given and own descriptor
};
KeptClasses& TheKeptClasses() {
  static KeptClasses& kept = *new KeptClasses;
  return kept;
}

// A text of the host's as JNI expects it.
std::string JniText(const char* text) { return IsPlainAscii(text) ? text : ToModifiedUtf8(ToUtf16(text)); }

void* Ask(JNIEnv* env, jclass type, const MemberName& name) {
  const std::string called = JniText(name.name);
  const std::string descriptor = JniText(name.descriptor);
  switch (name.kind) {
    case MemberKind::StaticMethod:
      return env->GetStaticMethodID(type, called.c_str(), descriptor.c_str());
    case MemberKind::Field:
      return env->GetFieldID(type, called.c_str(), descriptor.c_str());
    case MemberKind::StaticField:
      return env->GetStaticFieldID(type, called.c_str(), descriptor.c_str());
    default:
      return env->GetMethodID(type, called.c_str(), descriptor.c_str());
  }
}

bool IsOf(JNIEnv* env, jthrowable thrown, const char* type) {
  const LocalScope wanted(env, LoadClass(env, nullptr, type));
  return env->IsInstanceOf(thrown, static_cast<jclass>(wanted.Get())) != JNI_FALSE;
}

// Clears and returns what is pending after a member was not found.
jthrowable TakeThrown(JNIEnv* env) {
  const jthrowable thrown = env->ExceptionOccurred();
  env->ExceptionClear();
  return thrown;
}

bool IsMissingMember(JNIEnv* env, jthrowable thrown) {
  return IsOf(env, thrown, "java/lang/NoSuchMethodError") || IsOf(env, thrown, "java/lang/NoSuchFieldError");
}

// The name of a class by which a loader finds it.
std::string LoadedName(const std::string& descriptor) {
  return descriptor[0] == 'L' ? descriptor.substr(1, descriptor.size() - 2) : descriptor;
}

[[noreturn]] void ThrowWrongClass(JNIEnv* env, jobject object, jclass wanted, const std::string& what) {
  const LocalScope type(env, env->GetObjectClass(object));
  const std::string own = NameOf(env, static_cast<jclass>(type.Get()));
  const std::string needed = NameOf(env, wanted);
  const char* const loader = own == needed ? " of another class loader" : "";
  throw Misuse("java/Lookup", __LINE__, "a " + own + " " + what + " needs a " + needed + loader);
}

// Which value of a member it is, counted from 0.
std::string PlaceOf(const MemberName& name, std::size_t index) {
  return IsField(name.kind) ? "the value" : "argument " + std::to_string(index + 1);
}

bool IsReference(const std::string& descriptor) { return descriptor[0] == 'L' || descriptor[0] == '['; }

}  // namespace

void* FindIdOrNull(JNIEnv* env, jclass type, const MemberName& name) {
  void* const id = Ask(env, type, name);
  if (id != nullptr) return id;
  const LocalScope thrown(env, TakeThrown(env));
  const auto throwable = static_cast<jthrowable>(thrown.Get());
  if (throwable != nullptr && IsMissingMember(env, throwable)) return nullptr;
  if (throwable != nullptr) env->Throw(throwable);
  ThrowPending(env);
}

void* FindId(JNIEnv* env, jclass type, const MemberName& name) {
  void* const id = Ask(env, type, name);
  if (id != nullptr) return id;
  const LocalScope thrown(env, TakeThrown(env));
  const auto throwable = static_cast<jthrowable>(thrown.Get());
  std::string addition;
  try {
    if (IsMissingMember(env, throwable)) addition = Instead(env, type, name);
  } catch (const Failure&) {  // its members cannot be listed: its name is used instead
    addition = " (" + SpellWithClass(name) + ")";
  }
  env->Throw(throwable);
  ThrowPending(env, addition);
}

std::unique_ptr<const ClassTests> FindTests(JNIEnv* env, jclass type, const MemberName& name, bool all) {
  if (name.descriptor == name.own && !all) return nullptr;
  const DescriptorParts given = Split(name.descriptor);
  const DescriptorParts own = Split(name.own);
  // The loader of the VM's own classes does not find the host's.
  const Local<Object> other = all ? LoaderOf(type) : Local<Object>();
  jobject const loader = all ? other.Get() : KeptLoader();
  const auto load = [&](const std::string& descriptor) {
    return Own<Class>(env, LoadClass(env, loader, LoadedName(descriptor).c_str()));
  };
  const auto asksForTest = [all](const std::string& needed, const std::string& known) {
    if (!IsReference(needed) || needed == "Ljava/lang/Object;") return false;
    return needed != known || (all && needed.compare(0, 6, "Ljava/") != 0);
  };

  auto tests = std::make_unique<ClassTests>();
  const bool isField = *name.descriptor != '(';  // its one type is that of what is written and of what is read
  const std::vector<std::string>& needed = isField ? std::vector<std::string>{given.result} : given.arguments;
  const std::vector<std::string>& known = isField ? std::vector<std::string>{own.result} : own.arguments;
  for (std::size_t i = 0; i < needed.size(); ++i) {
    if (asksForTest(needed[i], known[i])) tests->arguments.emplace_back(i, load(needed[i]));
  }
  if (asksForTest(own.result, given.result)) {
    const Local<Class> wanted = load(own.result);
    const Local<Class> declared = load(given.result);
    const bool always =
        env->IsAssignableFrom(static_cast<jclass>(declared.Get()), static_cast<jclass>(wanted.Get())) != JNI_FALSE;
    if (!always) tests->result = Global<Class>(wanted);
  }
  if (tests->arguments.empty() && !tests->result) return nullptr;
  return tests;
}

void TestObject(JNIEnv* env, jobject object, jclass type, const MemberName& name) {
  if (env->IsInstanceOf(object, type) != JNI_FALSE) return;
  ThrowWrongClass(env, object, type, "is given as the object of " + SpellWithClass(name) + ", which");
}

void TestArguments(JNIEnv* env, const ClassTests& tests, const jvalue* values, const MemberName& name) {
  for (const auto& [index, type] : tests.arguments) {
    jobject const object = values[index].l;
    const auto wanted = static_cast<jclass>(type.Get());
    if (object == nullptr || env->IsInstanceOf(object, wanted) != JNI_FALSE) continue;
    const std::string place = PlaceOf(name, index) + " of " + SpellWithClass(name);
    ThrowWrongClass(env, object, wanted, "is given as " + place + ", which");
  }
}

void TestResult(JNIEnv* env, const ClassTests& tests, jobject local, const MemberName& name) {
  if (local == nullptr || !tests.result) return;
  const auto wanted = static_cast<jclass>(tests.result.Get());
  if (env->IsInstanceOf(local, wanted) != JNI_FALSE) return;
  const LocalScope scope(env, local);
  ThrowWrongClass(env, local, wanted, "comes from " + SpellWithClass(name) + ", whose C++ type");
}

jclass KeptClass(JNIEnv* env, const char* name) {
  const std::string dotted = Dotted(name);
  KeptClasses& kept = TheKeptClasses();
  {
    const std::lock_guard lock(kept.mutex);
    const auto found = kept.classes.find(dotted);
    if (found != kept.classes.end()) return found->second;
  }
  // Not under the lock: a class's initialiser may call this, or wait for another thread that does.
  std::atomic<jclass> place{nullptr};
  jclass const made = KeepClass(env, name, place);
  const std::lock_guard lock(kept.mutex);
  const auto [entry, isNew] = kept.classes.emplace(dotted, made);
  if (!isNew) env->DeleteGlobalRef(made);
  return entry->second;
}

namespace {

jclass KeptTypeOf(JNIEnv* env, const MemberName& name) {
  try {
    return KeptClass(env, name.type);
  } catch (const Error& error) {
    ErrorReader::ThrowFor(error, SpellWithClass(name));
  }
}

// Not kept by the member: one that is declared inside a function ends with each call.
const ClassTests* KeptTests(JNIEnv* env, jclass type, const MemberName& name) {
  if (name.descriptor == name.own) return nullptr;
  const std::string key = std::string(name.descriptor) + ' ' + name.own;
  KeptClasses& kept = TheKeptClasses();
  {
    const std::lock_guard lock(kept.mutex);
    const auto found = kept.tests.find(key);
    if (found != kept.tests.end()) return found->second.get();
  }
  std::unique_ptr<const ClassTests> tests = FindTests(env, type, name, false);  // loads classes: see KeptClass
  const std::lock_guard lock(kept.mutex);
  return kept.tests.try_emplace(key, std::move(tests)).first->second.get();
}

}  // namespace

void* SharedPlace::Bind(JNIEnv* env, const MemberName& name) const {
  jclass const type = KeptTypeOf(env, name);
  void* const id = FindId(env, type, name);
  m_tests.store(KeptTests(env, type, name), std::memory_order_relaxed);
  m_type.store(type, std::memory_order_relaxed);
  m_id.store(id, std::memory_order_release);
  return id;
}

BoundPlace::BoundPlace(JNIEnv* env, const Ref<Class>& type, MemberName name) {
  if (!type) {
    throw Misuse("java/Lookup", __LINE__, "null is given as the class that " + SpellWithClass(name) + " is bound to");
  }
  m_type = Global<Class>(type);
  const auto raw = static_cast<jclass>(m_type.Get());
  m_id = FindId(env, raw, name);
  if (name.kind == MemberKind::Constructor) {
    const std::string misfit = MisfitOf(env, raw, name.type);
    if (!misfit.empty()) {
      throw Misuse("java/Lookup", __LINE__, SpellWithClass(name) + " cannot make objects of this class: " + misfit);
    }
  }
  const bool isOther = IsOtherLoader(LoaderOf(type));
  m_tests = FindTests(env, raw, name, isOther);
  if (isOther) otherLoaders.store(true, std::memory_order_relaxed);
}

void ThrowNullObject(const MemberName& name) {
  throw Misuse("java/Lookup", __LINE__, "null is given as the object of " + SpellWithClass(name));
}

void ThrowNullResult(const MemberName& name) {
  const std::string own = SpellWithClass(name);
  const std::string what = IsField(name.kind) ? "the value of " + own + " is" : own + " returned";
  throw Misuse("java/Lookup", __LINE__, what + " null, which its C++ type cannot be: declare it as std::optional");
}

void ThrowNullElement(const MemberName& name, const std::string& path) {
  const std::string place = IsField(name.kind) ? " of the value of " : " of what was returned by ";
  const std::string element = "element " + path + place + SpellWithClass(name);
  throw Misuse("java/Lookup", __LINE__,
               element + " is null, which its C++ type cannot be: declare the element as std::optional");
}

void ThrowInvalidText(const MemberName& name, std::size_t index, const InvalidUtf8& invalid) {
  throw Misuse("java/Lookup", __LINE__,
               invalid.what() + (" in " + PlaceOf(name, index)) + " of " + SpellWithClass(name));
}

}  // namespace torvan::java::detail
