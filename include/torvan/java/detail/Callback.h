// C++ functions that Java calls: their types, and how arguments arrive and results leave.
#pragma once

#include <torvan/java/detail/ArrayRow.h>
#include <torvan/java/detail/Row.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace torvan::java::detail {

template <typename A>
using Declared = std::remove_cv_t<std::remove_reference_t<A>>;

// References and numbers travel as a long: a reference is its address.
inline jlong BitsOf(const void* address) noexcept {
  return static_cast<jlong>(reinterpret_cast<std::intptr_t>(address));
}
inline void* AddressOf(jlong bits) noexcept {
  const auto raw = static_cast<std::intptr_t>(bits);
  void* address = nullptr;
  std::memcpy(&address, &raw, sizeof address);
  return address;
}
inline jobject ObjectOf(jlong bits) noexcept { return static_cast<jobject>(AddressOf(bits)); }

// The arguments that Java passes to a function: up to three in registers, which is faster; for more, the address of an
// array.
struct FromJava {
  static constexpr std::size_t InRegisters = 3;

  // Of an array that has three at least.
  static FromJava Of(const jlong* all, std::size_t count) {
    return {count > InRegisters ? BitsOf(all) : all[0], all[1], all[2]};
  }

  jlong At(std::size_t i, std::size_t count) const {
    if (count > InRegisters) return static_cast<const jlong*>(AddressOf(a))[i];
    return i == 0 ? a : i == 1 ? b : c;
  }

  jlong a;
  jlong b;
  jlong c;
};

struct HandledFunction;

// A C++ function with its types erased.
class Callback {
 public:
  // Calls it for Java, with the parameters of a native method, so that a native method only has to jump here.
  using Entry = jlong (*)(JNIEnv* env, jobject, const HandledFunction* function, jlong a, jlong b, jlong c);

  explicit Callback(Entry entry) : m_entry(entry) {}
  virtual ~Callback() = default;

  Entry ItsEntry() const noexcept { return m_entry; }

  // Calls it. A reference that is returned is a new local one. `name` is what Java calls. Throws what the function
  // throws, and Misuse for a null that the C++ type cannot be.
  virtual jlong Call(JNIEnv* env, const FromJava& given, const char* name) = 0;

 private:
  Entry m_entry;
};

class OwnedByJava;

// A C++ function as a Java object or a native method knows it: by the address of this.
struct HandledFunction {
  Callback::Entry entry;
  Callback* function;
  const char* name;     // for messages
  const char* letters;  // of the C++ types: the result, then the arguments; null of a native method
  const OwnedByJava* owner;
};

// Makes the C++ exception that is being handled the one that is pending in Java: an Error the object that it is, any
// other a RuntimeException with its text. A failure of the fixed interface that left Java's own exception pending
// leaves it so.
void ThrowIntoJava(JNIEnv* env) noexcept;

// The entry of a class of callbacks.
template <typename C>
jlong EnterCallback(JNIEnv* env, jobject, const HandledFunction* function, jlong a, jlong b, jlong c) {
  try {
    return static_cast<C*>(function->function)->C::Call(env, {a, b, c}, function->name);
  } catch (...) {
    ThrowIntoJava(env);
    return 0;
  }
}

// Throws Misuse "argument 1 of java.util.Comparator.compare(...) is null, which its C++ type cannot be".
// The path names an element of the argument, such as "[2]".
[[noreturn]] void ThrowNullArgument(const char* name, std::size_t number, const std::string& path = {});

// The bits as Java's doubleToRawLongBits and floatToRawIntBits make them.
template <char Letter>
typename Jni<Letter>::Type FromBits(jlong bits) noexcept {
  using Type = typename Jni<Letter>::Type;
  if constexpr (Letter == 'Z') {
    return bits != 0 ? JNI_TRUE : JNI_FALSE;
  } else if constexpr (std::is_floating_point_v<Type>) {
    const auto raw = static_cast<std::conditional_t<Letter == 'F', jint, jlong>>(bits);
    Type number;
    std::memcpy(&number, &raw, sizeof number);
    return number;
  } else {
    return static_cast<Type>(bits);
  }
}
template <char Letter>
jlong ToBits(typename Jni<Letter>::Type number) noexcept {
  if constexpr (std::is_floating_point_v<decltype(number)>) {
    std::conditional_t<Letter == 'F', jint, jlong> raw;
    std::memcpy(&raw, &number, sizeof raw);
    return raw;
  } else {
    return static_cast<jlong>(number);
  }
}

// An argument of Java's as a C++ value, which lives as long as the call.
template <typename A>
class Arrived {
 public:
  Arrived(JNIEnv* env, jlong value, const char* name, std::size_t number) : m_value(Take(env, value, name, number)) {}
  A&& Get() { return std::move(m_value); }

 private:
  static A Take([[maybe_unused]] JNIEnv* env, jlong value, [[maybe_unused]] const char* name,
                [[maybe_unused]] std::size_t number) {
    if constexpr (Row<A>::Letter != 'L') {
      return Row<A>::Take(FromBits<Row<A>::Letter>(value));
    } else {
      if constexpr (!Row<A>::HasNull) {
        if (value == 0) ThrowNullArgument(name, number);
      }
      if constexpr (!HasElements<A>) {
        return Row<A>::Take(env, ObjectOf(value));
      } else {
        try {
          return Row<A>::Take(env, ObjectOf(value));
        } catch (const NullElement& null) {
          ThrowNullArgument(name, number, null.Path());
        }
      }
    }
  }

  A m_value;
};
template <typename Unit>
class Arrived<std::basic_string_view<Unit>> {
 public:
  Arrived(JNIEnv* env, jlong value, const char* name, std::size_t number) : m_text(env, value, name, number) {}
  std::basic_string_view<Unit> Get() { return static_cast<const std::basic_string<Unit>&>(m_text.Get()); }

 private:
  Arrived<std::basic_string<Unit>> m_text;
};
template <typename T>
class Arrived<Ref<T>> {
 public:
  Arrived(JNIEnv* env, jlong value, const char*, std::size_t) noexcept : m_own(Own<T>(env, ObjectOf(value))) {}
  ~Arrived() { static_cast<void>(m_own.Release()); }
  Ref<T> Get() const noexcept { return m_own; }

 private:
  Local<T> m_own;
};

// Whether a value of the type can come from Java, or go to it.
template <typename A>
constexpr bool Arrives() {
  if constexpr (Row<A>::Letter == 0 || Row<A>::Letter == 'V') {
    return false;
  } else {
    return Row<A>::IsResult || std::is_same_v<A, std::string_view> || std::is_same_v<A, std::u16string_view> ||
           std::is_same_v<A, Ref<typename Row<A>::Tag>>;
  }
}

template <typename R>
jlong Leave([[maybe_unused]] JNIEnv* env, R&& result) {
  using Type = Declared<R>;
  if constexpr (Row<Type>::Letter != 'L') {
    constexpr char letter = Row<Type>::Letter;
    return ToBits<letter>(static_cast<typename Jni<letter>::Type>(Row<Type>::Value(result)));
  } else if constexpr (std::is_same_v<R, Local<typename Row<Type>::Tag>>) {
    return BitsOf(result.Release());
  } else {
    const auto passed = Row<Type>::Pass(env, result);
    return passed.Get() != nullptr ? BitsOf(NewLocal(env, passed.Get())) : 0;
  }
}

// `First` is the number of the first argument in messages: 0 of a native method's own object.
template <typename F, std::size_t First, typename R, typename... A>
class CallbackOf final : public Callback {
 public:
  explicit CallbackOf(F function) : Callback(&EnterCallback<CallbackOf>), m_function(std::move(function)) {}

  jlong Call(JNIEnv* env, const FromJava& given, const char* name) override {
    return Run(env, given, name, std::index_sequence_for<A...>());
  }

 private:
  // In one expression: what a result refers to may be an argument.
  template <std::size_t... I>
  jlong Run([[maybe_unused]] JNIEnv* env, [[maybe_unused]] const FromJava& given, [[maybe_unused]] const char* name,
            std::index_sequence<I...>) {
    constexpr std::size_t count = sizeof...(A);
    if constexpr (std::is_void_v<R>) {
      static_cast<void>(m_function(Arrived<Declared<A>>(env, given.At(I, count), name, I + First).Get()...));
      return 0;
    } else {
      return Leave<R>(env, m_function(Arrived<Declared<A>>(env, given.At(I, count), name, I + First).Get()...));
    }
  }

  F m_function;
};

// The types of a function that has one set of them: R(A...), or void of anything else.
template <typename F, typename = void>
struct SignatureOf {
  using Type = void;
};
template <typename M>
struct SignatureOfMember;
// clang-format off
template <typename C, typename R, typename... A> struct SignatureOfMember<R (C::*)(A...)>                { using Type = R(A...); };
template <typename C, typename R, typename... A> struct SignatureOfMember<R (C::*)(A...) const>          { using Type = R(A...); };
template <typename C, typename R, typename... A> struct SignatureOfMember<R (C::*)(A...) noexcept>       { using Type = R(A...); };
template <typename C, typename R, typename... A> struct SignatureOfMember<R (C::*)(A...) const noexcept> { using Type = R(A...); };
template <typename R, typename... A> struct SignatureOf<R (*)(A...)>          { using Type = R(A...); };
template <typename R, typename... A> struct SignatureOf<R (*)(A...) noexcept> { using Type = R(A...); };
// clang-format on
template <typename F>
struct SignatureOf<F, std::void_t<decltype(&F::operator())>> : SignatureOfMember<decltype(&F::operator())> {};

// A function with the names that Java finds its method by.
struct GivenFunction {
  std::string name;        // empty: the only abstract method of the interface
  const char* own;         // the descriptor that the C++ types make
  std::string descriptor;  // the one given, or empty
  std::shared_ptr<Callback> function;
};

// Throws Misuse "an empty function is given for compare".
[[noreturn]] void ThrowEmptyFunction(const std::string& name);

template <typename F>
void RequireNotEmpty([[maybe_unused]] const F& function, [[maybe_unused]] const std::string& name) {
  // A function pointer and a std::function may be empty; a lambda expression is turned into a pointer in vain.
  if constexpr (std::is_pointer_v<F>) {
    if (function == nullptr) ThrowEmptyFunction(name);
  } else if constexpr (std::is_constructible_v<F, std::nullptr_t> && std::is_constructible_v<bool, const F&>) {
    if (!static_cast<bool>(function)) ThrowEmptyFunction(name);
  }
}

template <typename Signature, typename F, std::size_t First = 1>
struct CallbackMaker {
  static constexpr bool IsGood() {
    static_assert(!std::is_void_v<Signature>,
                  "torvan::java: this is no function, or one of several types: say which, On<R(A...)>(name, function)");
    static_assert(std::is_void_v<Signature>,
                  "torvan::java: the types of a function are given as R(A...), as in On<void(std::string)>");
    return false;
  }
};
template <typename R, typename... A, typename F, std::size_t First>
struct CallbackMaker<R(A...), F, First> {
  static constexpr bool IsGood() {
    constexpr bool arrive = (Arrives<Declared<A>>() && ... && true);
    constexpr bool leaves = Row<Declared<R>>::Letter != 0;
    static_assert(arrive,
                  "torvan::java: an argument of this function has a C++ type that does not come from Java; take a "
                  "number, text, Ref<T> or Local<T>, or specialise torvan::java::Convert");
    static_assert(leaves,
                  "torvan::java: no Java type corresponds to the C++ type of this function's result; specialise "
                  "torvan::java::Convert for a type of your own");
    if constexpr (arrive && leaves) {
      constexpr bool callable = std::is_invocable_r_v<R, F&, decltype(std::declval<Arrived<Declared<A>>>().Get())...>;
      static_assert(callable,
                    "torvan::java: this function does not take these arguments or does not return this result");
      return callable;
    }
    return false;
  }

  // The descriptor of its types, which are complete where it is given.
  static const char* Own() {
    static constexpr auto own =
        Join(Fixed("("), TypeDescriptor<Declared<A>>()..., Fixed(")"), TypeDescriptor<Declared<R>>());
    return own.data;
  }

  static std::shared_ptr<Callback> Make(F function, const std::string& name) {
    RequireNotEmpty(function, name);
    // Shared by its base class, which is compiled once and not for each function.
    return std::unique_ptr<Callback>(new CallbackOf<F, First, R, A...>(std::move(function)));
  }
};

// Where an implementation of a class keeps what was found out about its functions.
struct PlanPlace;
std::shared_ptr<PlanPlace> NewPlanPlace();

// An interface by its name, found through the kept loader, or by its class.
struct Interface {
  const char* name;  // of a class, what its tag names
  jclass type;
  PlanPlace* place;  // null: by name
};

// Makes a Java object of the interface whose methods are the functions: a new local reference.
// Throws Misuse when the type is no interface or has no method for a function, and Error.
jobject NewImplementation(JNIEnv* env, const Interface& type, const std::vector<GivenFunction>& functions);

// The same of one function, passed where an object of T's interface is expected.
template <typename T, typename F>
jobject NewFunctionObject(JNIEnv* env, const F& function) {
  using Maker = CallbackMaker<typename SignatureOf<F>::Type, F>;
  static_assert(std::is_copy_constructible_v<F>,
                "torvan::java: Java calls a copy of this function, which cannot be copied; move it into "
                "Implement<T>().On(name, std::move(function))");
  if constexpr (std::is_copy_constructible_v<F>) {
    if constexpr (Maker::IsGood()) {
      return NewImplementation(env, {T::JavaName, nullptr, nullptr},
                               {{{}, Maker::Own(), {}, Maker::Make(function, T::JavaName)}});
    }
  }
  std::abort();
}

}  // namespace torvan::java::detail
