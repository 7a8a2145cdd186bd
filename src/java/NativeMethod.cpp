#include <torvan/java/NativeMethod.h>

#include <torvan/java/Cast.h>
#include <torvan/java/Error.h>
#include <torvan/java/LocalFrame.h>
#include <torvan/java/Method.h>
#include <torvan/java/Weak.h>
#include <torvan/java/detail/Member.h>

#include <mutex>
#include <optional>
#include <vector>

#include "java/Handler.h"
#include "java/HandlerNatives.h"
#include "java/Reflection.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

namespace {

struct ReflectedMethod {
  static constexpr char JavaName[] = "java/lang/reflect/Method";
};
constexpr Method<ReflectedMethod, Local<Class>()> GetDeclaringClass{"getDeclaringClass"};

// The slots' bindings. Never destroyed: Java calls until the process ends.
std::mutex& SlotsLock() {
  static std::mutex& lock = *new std::mutex;
  return lock;
}

// A function that has arguments of more special classes than Java's. The classes are not kept alive by it.
class TestedFunction final : public Callback {
 public:
  using Tests = std::vector<std::pair<std::size_t, Weak<Class>>>;

  TestedFunction(std::shared_ptr<Callback> function, std::size_t count, Tests tests)
      : Callback(&EnterCallback<TestedFunction>),
        m_function(std::move(function)),
        m_count(count),
        m_tests(std::move(tests)) {}

  jlong Call(JNIEnv* env, const FromJava& given, const char* name) override {
    for (const auto& [index, type] : m_tests) {
      const Local<Class> wanted = type.Lock();
      CheckPending(env);
      jobject const object = ObjectOf(given.At(index, m_count));
      if (object != nullptr && wanted) RequireInstance(env, object, static_cast<jclass>(wanted.Get()));
    }
    return m_function->Call(env, given, name);
  }

 private:
  std::shared_ptr<Callback> m_function;
  std::size_t m_count;  // of its arguments
  Tests m_tests;
};

// A function that is bound, as long as the class that it is bound in.
struct NativeBinding final : OwnedByJava {
  ~NativeBinding() override {
    if (slot == nullptr) return;  // there was none for it
    const std::lock_guard<std::mutex> guard(SlotsLock());
    if (slot->binding.load(std::memory_order_relaxed) == this) slot->binding.store(nullptr, std::memory_order_relaxed);
  }

  std::shared_ptr<Callback> function;
  std::string name;  // for messages
  std::string member;
  Weak<Class> type;
  NativeSlot* slot = nullptr;
  HandledFunction handled{};
};

// Puts the binding into the slot that the method has already, or into a free one. Gives its index and what was there.
std::pair<std::size_t, const void*> TakeSlot(JNIEnv* env, NativeBinding& binding, jclass type,
                                             const NativeSlots& slots) {
  const std::lock_guard<std::mutex> guard(SlotsLock());
  std::size_t taken = slots.count;
  for (std::size_t i = 0; i < slots.count; ++i) {
    const auto* const other = static_cast<const NativeBinding*>(slots.slots[i].binding.load(std::memory_order_relaxed));
    if (other == nullptr) {
      if (taken == slots.count) taken = i;
    } else if (other->member == binding.member) {
      const Local<Class> its = other->type.Lock();
      CheckPending(env);
      if (env->IsSameObject(its.Get(), type) == JNI_FALSE) continue;
      taken = i;
      break;
    }
  }
  if (taken == slots.count) {
    throw Misuse("java/NativeMethod", __LINE__,
                 binding.name + " cannot be bound: " + std::to_string(slots.count) +
                     " native methods have functions of this C++ type; give a lambda expression of its own");
  }
  binding.slot = &slots.slots[taken];
  return {taken, binding.slot->binding.exchange(&binding, std::memory_order_acq_rel)};
}

// What is wrong with the method; null where nothing is, and where there is no such method. Told by reflection, so that
// the class is not initialised.
const char* WrongOf(JNIEnv* env, jclass type, const MemberName& name, bool& isThere) {
  const LocalFrame frame(512);
  const DescriptorParts parts = Split(name.descriptor);
  std::vector<std::string> arguments;
  for (const std::string& argument : parts.arguments) arguments.push_back(SpellType(argument));
  for (const Candidate& candidate : CandidatesOf(env, type, MemberKind::Method, name.name)) {
    if (candidate.arguments != arguments || candidate.result != SpellType(parts.result)) continue;
    isThere = true;
    if ((candidate.modifiers & NativeModifier) == 0) return " is not native";
    if (!Same(GetDeclaringClass(Ref<ReflectedMethod>(candidate.reflected.Get())), Ref<Class>(type))) {
      return " is inherited: bind it in the class that declares it";
    }
    if (candidate.kind == name.kind) return nullptr;
    return IsStatic(candidate.kind) ? " is static: NativeMethod takes no tag for it"
                                    : " is not static: give NativeMethod the tag of its class as second argument";
  }
  return nullptr;
}

// The VM looks neither whether a method is static nor in which class it is.
void RequireNative(JNIEnv* env, jclass type, const MemberName& name) {
  bool isThere = false;
  const char* const wrong = WrongOf(env, type, name, isThere);
  if (wrong != nullptr) throw Misuse("java/NativeMethod", __LINE__, SpellWithClass(name) + wrong);
  if (!isThere) FindId(env, type, name);  // says what there is
}

TestedFunction::Tests TestsOf(JNIEnv* env, jclass type, const MemberName& name) {
  TestedFunction::Tests tests;
  if (name.descriptor == name.own) return tests;
  const DescriptorParts given = Split(name.descriptor);
  const DescriptorParts own = Split(name.own);
  const Local<Object> its = LoaderOf(type);
  jobject const loader = its ? its.Get() : KeptLoader();
  for (std::size_t i = 0; i < own.arguments.size(); ++i) {
    const std::string& wanted = own.arguments[i];
    if (wanted == given.arguments[i] || wanted == "Ljava/lang/Object;") continue;
    const std::string loaded = wanted[0] == 'L' ? wanted.substr(1, wanted.size() - 2) : wanted;
    const Local<Class> found = Own<Class>(env, LoadClass(env, loader, loaded.c_str()));
    tests.emplace_back(name.kind == MemberKind::StaticMethod ? i : i + 1, Weak<Class>(found));
  }
  return tests;
}

}  // namespace

jlong CallNative(JNIEnv* env, const NativeSlot& slot, const FromJava& given) {
  const auto* const binding = static_cast<const NativeBinding*>(slot.binding.load(std::memory_order_acquire));
  return CallForJava(env, nullptr, binding->handled, given);
}

void BindNative(const NativeName& given, const Ref<Class>* type, const char* own, std::shared_ptr<Callback> function,
                const NativeSlots& slots) {
  JNIEnv* const env = Env();
  CheckPending(env);
  const char* const descriptor = given.descriptor != nullptr ? given.descriptor : own;
  const MemberName name{given.isStatic ? MemberKind::StaticMethod : MemberKind::Method, given.type, given.name,
                        descriptor, own};
  if (type != nullptr && !*type) {
    throw Misuse("java/NativeMethod", __LINE__,
                 "null is given as the class that " + SpellWithClass(name) + " is bound in");
  }
  // Not initialised: its static initialiser may call the method.
  const Local<Class> found =
      type != nullptr ? Local<Class>(*type) : Own<Class>(env, LoadClass(env, KeptLoader(), given.type, false));
  const auto raw = static_cast<jclass>(found.Get());

  RequireNative(env, raw, name);

  auto binding = std::make_unique<NativeBinding>();
  TestedFunction::Tests tests = TestsOf(env, raw, name);
  if (!tests.empty()) {
    const std::size_t count = Split(descriptor).arguments.size() + (given.isStatic ? 0 : 1);
    function = std::make_shared<TestedFunction>(std::move(function), count, std::move(tests));
  }
  binding->function = std::move(function);
  binding->name = SpellWithClass(name);
  binding->member = std::string(given.name) + descriptor;
  binding->type = Weak<Class>(found);
  binding->handled = {binding->function->ItsEntry(), binding->function.get(), binding->name.c_str(), nullptr,
                      binding.get()};
  // Java's before any thread can call it: from then on it lives as long as the class.
  GiveToJava(env, raw, binding.get());
  NativeBinding& bound = *binding.release();
  std::optional<std::pair<std::size_t, const void*>> taken;
  try {
    taken = TakeSlot(env, bound, raw, slots);
    RegisterNative(env, raw, name.name, name.descriptor, slots.entries[taken->first]);
  } catch (...) {
    const void* const before = taken ? taken->second : nullptr;
    const void* expected = &bound;
    bool isOurs = false;
    if (taken) {
      const std::lock_guard<std::mutex> guard(SlotsLock());
      // Another thread may have bound the method meanwhile; its function stays.
      isOurs = bound.slot->binding.compare_exchange_strong(expected, before, std::memory_order_acq_rel);
    }
    // No Java code could call it. Outside of the lock: its destructor may bind functions.
    if (!taken || (isOurs && before == nullptr)) bound.function.reset();
    throw;
  }
}

}  // namespace torvan::java::detail
