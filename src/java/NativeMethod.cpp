#include <torvan/java/NativeMethod.h>

#include <torvan/java/Cast.h>
#include <torvan/java/Error.h>
#include <torvan/java/LocalFrame.h>
#include <torvan/java/Method.h>
#include <torvan/java/Weak.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Member.h>
#include <torvan/java/detail/Shared.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "java/ClassNames.h"
#include "java/Handler.h"
#include "java/HandlerNatives.h"
#include "java/Reflection.h"
#include "java/Spelling.h"

namespace torvan::java::detail {

namespace {

constexpr Method<ReflectedMethod, Local<Class>()> GetDeclaringClass{"getDeclaringClass"};

// The slots' bindings. Never destroyed: Java calls until the process ends.
std::mutex& SlotsLock() {
  static std::mutex& lock = *new std::mutex;
  return lock;
}

// The class that a value must have. Does not keep the class alive.
struct Test {
  Share type;  // a weak reference
  std::string name;
};

// Throws Java's ClassCastException unless the value is null or of the wanted class. `textOf` makes the message from the
// name of the value's own class.
template <typename TextOf>
void RequireClass(JNIEnv* env, jobject value, const Test& wanted, TextOf textOf) {
  if (value == nullptr) return;
  // No object is left of a class that is gone.
  const LocalScope type(env, env->NewLocalRef(wanted.type.Get()));
  if (type.Get() != nullptr && env->IsInstanceOf(value, static_cast<jclass>(type.Get())) != JNI_FALSE) return;
  const LocalScope ownType(env, env->GetObjectClass(value));
  std::string own = NameOf(env, static_cast<jclass>(ownType.Get()));
  if (own == wanted.name) own += " of another class loader";
  ThrowNew(env, TheHandlerClass(env).classCastException, textOf(own));
  ThrowPending(env);
}

std::string ArgumentText(std::size_t number, const std::string& name, const std::string& own,
                         const std::string& wanted) {
  return "argument " + std::to_string(number) + " of " + name + " is a " + own + ", and the C++ function takes a " +
         wanted;
}

// Checks the objects that a native method takes and returns. The VM does not check what it returns, nor its arguments
// where C++ has a more special class than Java declares: a wrong object would show only where it crashes.
class TestedFunction final : public Callback {
 public:
  using Arguments = std::vector<std::pair<std::size_t, Test>>;  // by their numbers, from 0

  TestedFunction(std::shared_ptr<Callback> function, std::size_t first, std::size_t count, Arguments arguments,
                 std::optional<Test> result)
      : Callback(&EnterCallback<TestedFunction>),
        m_function(std::move(function)),
        m_first(first),
        m_count(count),
        m_arguments(std::move(arguments)),
        m_result(std::move(result)) {}

  jlong Call(JNIEnv* env, const FromJava& given, const char* name) override {
    for (const auto& [number, test] : m_arguments) {
      jobject const argument = ObjectOf(given.At(m_first + number, m_first + m_count));
      const auto textOf = [&, number = number, &wanted = test.name](const std::string& own) {
        return ArgumentText(number + 1, name, own, wanted);
      };
      RequireClass(env, argument, test, textOf);
    }
    const jlong result = m_function->Call(env, given, name);
    if (!m_result || env->ExceptionCheck() != JNI_FALSE) return result;
    RequireClass(env, ObjectOf(result), *m_result, [&](const std::string& own) {
      return "the C++ function of " + std::string(name) + " returned a " + own + ", and the method returns a " +
             m_result->name;
    });
    return result;
  }

 private:
  std::shared_ptr<Callback> m_function;
  std::size_t m_first;  // where the arguments begin: 1 when the object comes before them
  std::size_t m_count;
  Arguments m_arguments;
  std::optional<Test> m_result;
};

struct NativeBinding;

// The bindings that Java calls, one for each bound method. Guarded by SlotsLock(), never destroyed.
std::vector<NativeBinding*>& Called() {
  static std::vector<NativeBinding*>& called = *new std::vector<NativeBinding*>;
  return called;
}

// A C++ function that is bound to a native method. Lives as long as the class of that method.
struct NativeBinding final : OwnedByJava {
  ~NativeBinding() override {
    if (slot == nullptr) return;  // it was never registered
    const std::lock_guard<std::mutex> guard(SlotsLock());
    if (slot->binding.load(std::memory_order_relaxed) == this) slot->binding.store(nullptr, std::memory_order_relaxed);
    Called().erase(std::remove(Called().begin(), Called().end(), this), Called().end());
  }

  std::shared_ptr<Callback> function;
  std::string name;  // for messages
  std::string member;
  Weak<Class> type;
  NativeSlot* slot = nullptr;
  HandledFunction handled{};
  bool mayRun = false;  // although its registration failed
};

// Whether the other binding is of the same method of the same class.
bool IsOfSameMethod(JNIEnv* env, const NativeBinding& other, const NativeBinding& binding, jclass type) {
  if (other.member != binding.member) return false;
  const Local<Class> its = other.type.Lock();
  CheckPending(env);
  return env->IsSameObject(its.Get(), type) != JNI_FALSE;
}

// Returns the slot that the method already has, or else a free one.
std::size_t FindSlot(JNIEnv* env, const NativeBinding& binding, jclass type, const NativeSlots& slots) {
  std::size_t found = slots.count;
  for (std::size_t i = 0; i < slots.count; ++i) {
    const auto* const other = static_cast<const NativeBinding*>(slots.slots[i].binding.load(std::memory_order_relaxed));
    if (other == nullptr) {
      if (found == slots.count) found = i;
    } else if (IsOfSameMethod(env, *other, binding, type)) {
      return i;
    }
  }
  if (found == slots.count) {
    const std::string cannot = binding.name + " cannot be bound: " + std::to_string(slots.count);
    throw Misuse("java/NativeMethod", __LINE__,
                 cannot + " native methods have functions of this C++ type; pass a separate lambda expression");
  }
  return found;
}

// Returns the method's place in Called(), or the end where it is new there.
std::size_t FindCalled(JNIEnv* env, const NativeBinding& binding, jclass type) {
  std::vector<NativeBinding*>& called = Called();
  for (std::size_t i = 0; i < called.size(); ++i) {
    if (IsOfSameMethod(env, *called[i], binding, type)) return i;
  }
  called.reserve(called.size() + 1);  // nothing may fail once Java has the function
  return called.size();
}

// Makes Java call the binding from now on. When this throws, Java goes on calling what it called before. Where another
// copy of the layer, or raw JNI, has registered a function meanwhile, Java may call the one before once more.
void Register(JNIEnv* env, NativeBinding& binding, jclass type, const MemberName& name, const NativeSlots& slots) {
  jint status = JNI_OK;
  {
    // Held during the call of JNI, which runs no Java here: another thread sees the method either bound or not.
    const std::lock_guard<std::mutex> guard(SlotsLock());
    const std::size_t found = FindSlot(env, binding, type, slots);
    const std::size_t place = FindCalled(env, binding, type);
    std::vector<NativeBinding*>& called = Called();
    NativeSlot& slot = slots.slots[found];
    const void* const before = slot.binding.load(std::memory_order_relaxed);
    // A method that comes to this slot may be called before RegisterNative() returns, and the slot may still have an
    // earlier function of the method.
    const bool comesHere = place == called.size() || called[place]->slot != &slot;
    if (comesHere) slot.binding.store(&binding, std::memory_order_release);
    status = RegisterNative(env, type, name.name, name.descriptor, slots.entries[found]);
    slot.binding.store(status == JNI_OK ? &binding : before, std::memory_order_release);
    if (status == JNI_OK) {
      binding.slot = &slot;
      if (place == called.size()) called.push_back(nullptr);
      called[place] = &binding;
    } else {
      // A thread that had entered the slot before that may have found the function there.
      binding.mayRun = comesHere && before != nullptr;
    }
  }
  RequireRegistered(env, status, name.name, name.descriptor);
}

Test TestFor(JNIEnv* env, jobject type, std::string name) {
  return {Share(MakeShared(env, type, true)), std::move(name)};
}

// A native method that Java declares.
struct DeclaredNative {
  bool isThere = false;
  const char* wrong = nullptr;  // what is wrong with it
  std::optional<Test> result;   // absent where the method may return any object, or none
};

// Lists methods by reflection, which does not initialise the class. Where that fails because another method names a
// missing class, finds the one method by its ID instead.
std::vector<Candidate> MethodsOf(JNIEnv* env, jclass type, const MemberName& name) {
  try {
    return CandidatesOf(env, type, MemberKind::Method, name.name);
  } catch (const Error& error) {
    if (error.ClassName() != "java.lang.NoClassDefFoundError") throw;
  }
  std::vector<Candidate> methods;
  methods.push_back(CandidateOf(env, type, name));
  return methods;
}

DeclaredNative FindNative(JNIEnv* env, jclass type, const MemberName& name) {
  const LocalFrame frame(512);
  DeclaredNative found;
  const DescriptorParts parts = Split(name.descriptor);
  std::vector<std::string> arguments;
  for (const std::string& argument : parts.arguments) arguments.push_back(SpellType(argument));
  for (const Candidate& candidate : MethodsOf(env, type, name)) {
    if (candidate.arguments != arguments || candidate.result != SpellType(parts.result)) continue;
    found.isThere = true;
    if ((candidate.modifiers & NativeModifier) == 0) {
      found.wrong = " is not native";
    } else if (!Same(GetDeclaringClass(Ref<ReflectedMethod>(candidate.reflected.Get())), Ref<Class>(type))) {
      found.wrong = " is inherited: bind it in the class that declares it";
    } else if (candidate.kind != name.kind) {
      found.wrong = IsStatic(candidate.kind)
                        ? " is static: NativeMethod takes no tag for it"
                        : " is not static: give NativeMethod the tag of its class as second argument";
    } else if (LetterOf(candidate.result) == 'L' && candidate.result != "java.lang.Object") {
      found.result = TestFor(env, candidate.resultClass.Get(), candidate.result);
    }
    break;
  }
  return found;
}

// The VM checks neither whether a method is static nor in which class it is. Returns the test of what it returns.
std::optional<Test> RequireNative(JNIEnv* env, jclass type, const MemberName& name) {
  DeclaredNative found = FindNative(env, type, name);
  if (found.wrong != nullptr) throw Misuse("java/NativeMethod", __LINE__, SpellWithClass(name) + found.wrong);
  if (!found.isThere) FindId(env, type, name);  // says what there is
  return std::move(found.result);
}

// The function takes each object as one of the tag's class, and nothing tests that again.
void RequireTag(JNIEnv* env, jclass type, const char* tag, const MemberName& name) {
  const std::string misfit = MisfitOf(env, type, tag);
  if (!misfit.empty()) throw Misuse("java/NativeMethod", __LINE__, Spell(name) + " cannot be bound: " + misfit);
}

TestedFunction::Arguments ArgumentsOf(JNIEnv* env, jclass type, const MemberName& name) {
  TestedFunction::Arguments tests;
  if (name.descriptor == name.own) return tests;
  const DescriptorParts given = Split(name.descriptor);
  const DescriptorParts own = Split(name.own);
  const Local<Object> its = LoaderOf(type);
  jobject const loader = IsOtherLoader(its) ? its.Get() : KeptLoader();
  for (std::size_t i = 0; i < own.arguments.size(); ++i) {
    const std::string& wanted = own.arguments[i];
    if (wanted == given.arguments[i] || wanted == "Ljava/lang/Object;") continue;
    const std::string loaded = wanted[0] == 'L' ? wanted.substr(1, wanted.size() - 2) : wanted;
    const Local<Class> found = Own<Class>(env, LoadClass(env, loader, loaded.c_str(), false));
    tests.emplace_back(i, TestFor(env, found.Get(), SpellType(wanted)));
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
  const bool isStatic = given.tag == nullptr;
  const MemberName name{isStatic ? MemberKind::StaticMethod : MemberKind::Method, given.type, given.name, descriptor,
                        own};
  const std::string spelled = SpellWithClass(name);
  if (type != nullptr && !*type) {
    throw Misuse("java/NativeMethod", __LINE__, "null is given as the class that " + spelled + " is bound in");
  }
  // Not initialised: its static initialiser may call the method.
  const Local<Class> found =
      type != nullptr ? Local<Class>(*type) : Own<Class>(env, LoadClass(env, KeptLoader(), given.type, false));
  const auto raw = static_cast<jclass>(found.Get());

  std::optional<Test> result = RequireNative(env, raw, name);
  if (!isStatic) RequireTag(env, raw, given.tag, name);
  auto binding = std::make_unique<NativeBinding>();
  TestedFunction::Arguments arguments = ArgumentsOf(env, raw, name);
  if (!arguments.empty() || result) {
    function =
        std::make_shared<TestedFunction>(std::move(function), isStatic ? 0 : 1, Split(descriptor).arguments.size(),
                                         std::move(arguments), std::move(result));
  }
  binding->function = std::move(function);
  binding->name = spelled;
  binding->member = std::string(given.name) + descriptor;
  binding->type = Weak<Class>(found);
  binding->handled = {binding->function->ItsEntry(), binding->function.get(), binding->name.c_str(), nullptr,
                      binding.get()};
  // Java owns it before any thread can call it: from then on it lives as long as the class.
  GiveToJava(env, raw, binding.get());
  NativeBinding& bound = *binding.release();
  try {
    Register(env, bound, raw, name, slots);
  } catch (...) {
    // Java keeps the binding as long as the class, but does not call it: what it holds is dropped.
    if (!bound.mayRun) bound.function.reset();
    bound.type.Reset();
    Released(static_cast<OwnedByJava*>(&bound));
    throw;
  }
  Released(static_cast<OwnedByJava*>(&bound));  // Java keeps the class, and so the binding, until here
}

}  // namespace torvan::java::detail
