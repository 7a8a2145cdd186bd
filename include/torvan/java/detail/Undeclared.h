// Calls whose method is chosen at run time.
#pragma once

#include <torvan/java/detail/Function.h>

#include <cstddef>
#include <string>

namespace torvan::java::detail {

// An argument as it is given.
struct GivenArgument {
  char letter;
  const char* descriptor;  // null where only the object itself tells its class
  jvalue value;
};

struct UndeclaredCall {
  MemberKind kind;       // Method, StaticMethod or Constructor
  jclass type;           // null where it is still to be found by its name
  const char* typeName;  // null where only the object, or the class that is given, tells
  jobject object;        // of a Method
  const char* name;
  const GivenArgument* arguments = nullptr;  // without their values as long as these are not passed
  std::size_t count = 0;
  const char* result = nullptr;  // the descriptor of the C++ type, "V" for any
  bool resultHasNull = true;
};

// Chooses the method and calls it. The result is of the type asked for, a reference a new local one. Throws as Call().
jvalue CallUndeclared(JNIEnv* env, const UndeclaredCall& call);

// Finds the class of a call, unless it is known. Throws Misuse "null is given as the object of
// java.util.List.get(int)", and Error that names the member where there is no such class.
jclass TypeOf(JNIEnv* env, const UndeclaredCall& call);

// Throws Misuse "invalid UTF-8 at byte 3 in argument 1 of java.util.List.add(java.lang.String)". The first has index 0.
[[noreturn]] void ThrowInvalidText(JNIEnv* env, const UndeclaredCall& call, std::size_t index,
                                   const InvalidUtf8& invalid);

template <typename U>
GivenArgument Describe(const jvalue& value) {
  using G = Given<U>;
  if constexpr (G::Letter != 'L') {
    static constexpr FixedText<1> text{{G::Letter, 0}};
    return {G::Letter, text.data, value};
  } else if constexpr (IsUnknown<G>) {
    return {'L', nullptr, value};
  } else {
    static constexpr auto text = ClassDescriptor<typename G::Tag>();
    return {'L', text.data, value};
  }
}

// The type of the table that a given value is passed as.
template <typename U>
constexpr bool MayBeGiven() {
  static_assert(!IsFunction<U>,
                "torvan::java: a function is given, but nothing says for which interface: declare the method, or give "
                "Implement<T>().On(name, function)");
  static_assert((Given<U>::Letter != 0 && Given<U>::Letter != 'V') || IsFunction<U>,
                "torvan::java: no conversion of this C++ type to Java; cast it to one that Java has, or specialise "
                "torvan::java::Convert for it");
  return Given<U>::Letter != 0 && Given<U>::Letter != 'V';
}
template <typename U>
auto PassUndeclared(JNIEnv* env, const U& given) {
  using P = Plain<U>;
  using G = Given<P>;
  if constexpr (G::Letter != 'L') {
    jvalue value{};
    Jni<G::Letter>::In(value) = JniNumber<G::Letter>(G::Value(given));
    return value;
  } else if constexpr (IsUnknown<G>) {
    return Pass<Ref<Object>, P>(env, given);
  } else {
    return G::Pass(env, given);
  }
}

template <typename R, std::size_t... I, typename... U>
R CallWith(std::index_sequence<I...>, JNIEnv* env, UndeclaredCall call, const U&... given) {
  static_assert(RequireDeclared<R>());
  if constexpr ((MayBeGiven<Plain<U>>() && ... && true)) {
    const GivenArgument types[sizeof...(U) + 1] = {Describe<Plain<U>>(jvalue{})...};
    call.arguments = types;
    call.count = sizeof...(U);
    call.type = TypeOf(env, call);
    [[maybe_unused]] const auto pass = [&](std::size_t index, const auto& each) {
      try {
        return PassUndeclared(env, each);
      } catch (const InvalidUtf8& invalid) {
        ThrowInvalidText(env, call, index, invalid);
      }
    };
    const auto run = [&](const auto&... passed) -> R {
      const GivenArgument arguments[sizeof...(U) + 1] = {Describe<Plain<U>>(ValueOf(passed))...};
      constexpr bool isVoid = std::is_void_v<R>;
      static constexpr auto result = TypeDescriptor<R>();
      if constexpr (Row<R>::Letter == 'L') call.resultHasNull = Row<R>::HasNull;
      call.arguments = arguments;
      call.result = result.data;
      jvalue value = CallUndeclared(env, call);
      if constexpr (isVoid) {
        static_cast<void>(value);
      } else if constexpr (Row<R>::Letter == 'L') {
        return Row<R>::Take(env, value.l);
      } else {
        return Row<R>::Take(Jni<Row<R>::Letter>::In(value));
      }
    };
    return run(pass(I, given)...);
  } else {
    std::abort();
  }
}

// The name of a reference's class; null where its type is any object's.
template <typename U>
constexpr const char* TagName() {
  using T = typename TagOf<U>::Type;
  if constexpr (std::is_void_v<T> || std::is_same_v<T, Object>) {
    return nullptr;
  } else if constexpr (RequireTag<T>()) {
    return T::JavaName;
  } else {
    return nullptr;
  }
}

template <typename R, typename Self, typename... U>
R CallNamed(JNIEnv* env, const Self& self, const std::string& name, const U&... given) {
  jobject const object = Ref<Object>(self).Get();
  const LocalScope type(env, object != nullptr ? env->GetObjectClass(object) : nullptr);
  return CallWith<R>(
      std::index_sequence_for<U...>(), env,
      {MemberKind::Method, static_cast<jclass>(type.Get()), TagName<Plain<Self>>(), object, name.c_str()}, given...);
}

template <typename R, typename Type, typename... U>
R CallStaticNamed(JNIEnv* env, const Type& type, const std::string& name, const U&... given) {
  UndeclaredCall call{MemberKind::StaticMethod, nullptr, nullptr, nullptr, name.c_str()};
  if constexpr (std::is_convertible_v<const Type&, std::string>) {
    const std::string typeName = type;
    call.typeName = typeName.c_str();
    return CallWith<R>(std::index_sequence_for<U...>(), env, call, given...);
  } else {
    call.type = static_cast<jclass>(Ref<Class>(type).Get());
    return CallWith<R>(std::index_sequence_for<U...>(), env, call, given...);
  }
}

template <typename T, typename... U>
Local<T> NewTagged(JNIEnv* env, const U&... given) {
  if constexpr (RequireTag<T>()) {
    return CallWith<Local<T>>(std::index_sequence_for<U...>(), env,
                              {MemberKind::Constructor, nullptr, T::JavaName, nullptr, "<init>"}, given...);
  } else {
    std::abort();
  }
}

}  // namespace torvan::java::detail
