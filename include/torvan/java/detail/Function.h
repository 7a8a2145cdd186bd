// Methods and constructors: one algorithm for all kinds.
#pragma once

#include <torvan/java/Thread.h>
#include <torvan/java/detail/Fit.h>
#include <torvan/java/detail/Member.h>
#include <torvan/java/detail/NewObject.h>

#include <cstdlib>
#include <type_traits>
#include <utility>

namespace torvan::java::detail {

// Tests, owns and converts Java's result. `name` makes the member's name, which few results need.
template <typename R, typename NameMaker>
R TakeResult(JNIEnv* env, jobject local, const ClassTests* tests, [[maybe_unused]] const NameMaker& name) {
  if constexpr (!Row<R>::HasNull) {
    if (local == nullptr) ThrowNullResult(name());
  }
  if (tests != nullptr) TestResult(env, *tests, local, name());
  if constexpr (!HasElements<R>) {
    return Row<R>::Take(env, local);
  } else {
    try {
      return Row<R>::Take(env, local);
    } catch (const NullElement& null) {
      ThrowNullElement(name(), null.Path());
    }
  }
}

// Calls `use` with the environment (of the Thread, if that comes first, else what `env` returns) and the values.
template <typename Use>
decltype(auto) Enter(JNIEnv* env(), const Use& use) {
  return use(env());
}
template <typename Use, typename First, typename... Rest>
decltype(auto) Enter(JNIEnv* env(), const Use& use, const First& first, const Rest&... rest) {
  if constexpr (std::is_same_v<First, Thread>) {
    return use(first.Env(), rest...);
  } else {
    return use(env(), first, rest...);
  }
}
// How many values are given, not counting a Thread.
template <typename... U>
constexpr std::size_t CountOf() {
  return (0 + ... + (std::is_same_v<U, Thread> ? 0 : 1));
}

// Converts an argument or the value of a field; `name` makes the member's name where text is not UTF-8. The first
// argument has index 0.
template <typename A, typename U, typename NameMaker>
auto PassTo(const NameMaker& name, std::size_t index, JNIEnv* env, const U& given) {
  if constexpr (Row<A>::Letter == 'L' && std::is_void_v<typename TagOf<U>::Type>) {
    try {
      return Pass<A, U>(env, given);
    } catch (const InvalidUtf8& invalid) {
      ThrowInvalidText(name(), index, invalid);
    }
  } else {
    return Pass<A, U>(env, given);
  }
}

template <typename F>
constexpr bool RequireSignature() {
  static_assert(IsNever<F>,
                "torvan::java: a method is declared with its result and arguments, R(A...), as in "
                "Method<List, jint(std::string_view)>");
  return true;
}

// T is the class's tag, or void where the member names its class itself; T is complete when a call is compiled.
template <MemberKind Kind, typename T, typename F, typename Place = SharedPlace>
class Function {
  static_assert(RequireSignature<F>());

 public:
  using Arguments = Types<>;
  static constexpr MemberKind kind = Kind;

  constexpr Function(const char*, const char*, const char*) {}
  template <typename... U>
  std::decay_t<F> operator()(const U&... given) const;
};

template <MemberKind Kind, typename T, typename R, typename... A, typename Place>
class Function<Kind, T, R(A...), Place> : private Declaration<Kind, T, Place> {
  static_assert(RequireDeclared<R, Declared<A>...>());

 public:
  using Arguments = Types<Declared<A>...>;
  static constexpr MemberKind kind = Kind;

  constexpr Function(const char* owner, const char* name, const char* descriptor)
      : Function::Declaration(owner, name, descriptor) {
    if (descriptor != nullptr) CheckMethodDescriptor(descriptor, ResultLetter, Row<Declared<A>>::Letter...);
  }
  Function(const Declaration<Kind, T, SharedPlace>& declared, Place place)
      : Function::Declaration(declared, std::move(place)) {}

  // Calls. A Thread, if given, comes first, then the object of an instance method, then the arguments.
  template <typename... U>
  R operator()(const U&... given) const {
    return Enter(
        CallEnv, [this](JNIEnv* env, const auto&... rest) -> R { return this->On(env, rest...); }, given...);
  }

  // The same member of a class of another loader, looked up here. The result keeps the class alive, may be copied and
  // shared by threads, and tests each object that it is called on. A vector of references becomes an array of the class
  // that the class path has: take a Ref<Array<T>> instead, and make it with NewArray(vector, class). Throws as a call
  // does, and Misuse for a constructor of a class that is none of the tag's.
  Function<Kind, T, R(A...), BoundPlace> In(const Ref<Class>& type) const {
    return {*this, BoundPlace(CallEnv(), type, Name())};
  }

 private:
  static constexpr char ResultLetter = Kind == MemberKind::Constructor ? 'V' : Row<R>::Letter;

  MemberName Name() const {
    using Result = std::conditional_t<Kind == MemberKind::Constructor, void, R>;
    static constexpr auto own =
        Join(Fixed("("), TypeDescriptor<Declared<A>>()..., Fixed(")"), TypeDescriptor<Result>());
    return Function::Declaration::Named(own.data);
  }
  template <typename... U>
  R On(JNIEnv* env, const U&... given) const {
    if constexpr (!HasObject(Kind)) {
      if constexpr (ArgumentsFit(Arguments(), Types<Plain<U>...>())) {
        return PassAll(std::index_sequence_for<A...>(), env, nullptr, Id(env), given...);
      } else {
        std::abort();
      }
    } else {
      static_assert(sizeof...(U) != 0, "torvan::java: the first argument of a method is the object that has it");
      if constexpr (sizeof...(U) != 0) {
        return OnObject(env, given...);
      } else {
        std::abort();
      }
    }
  }
  template <typename Self, typename... U>
  R OnObject(JNIEnv* env, const Self& self, const U&... given) const {
    if constexpr (ObjectFits<T, Self>() && ArgumentsFit(Arguments(), Types<Plain<U>...>())) {
      jobject const object = Ref<Object>(self).Get();
      if (object == nullptr) ThrowNullObject(Name());
      const jmethodID id = Id(env);
      if (IsUnknown<Given<Self>> || Place::TestsObjects()) TestObject(env, object, this->ItsPlace().Type(), Name());
      return PassAll(std::index_sequence_for<A...>(), env, object, id, given...);
    } else {
      std::abort();
    }
  }

  jmethodID Id(JNIEnv* env) const {
    return static_cast<jmethodID>(this->ItsPlace().Id(env, [this] { return Name(); }));
  }

  template <std::size_t... I, typename... U>
  R PassAll(std::index_sequence<I...>, JNIEnv* env, jobject object, jmethodID id, const U&... given) const {
    [[maybe_unused]] const auto name = [this] { return Name(); };
    return Invoke(env, object, id, PassTo<Declared<A>, Plain<U>>(name, I, env, given)...);
  }

  // The arguments live until the call returns.
  template <typename... Passed>
  R Invoke(JNIEnv* env, jobject object, jmethodID id, const Passed&... passed) const {
    const jvalue values[sizeof...(Passed) + 1] = {ValueOf(passed)...};
    const ClassTests* const tests = this->ItsPlace().Tests();
    if (tests != nullptr) TestArguments(env, *tests, values, Name());
    if constexpr (Kind == MemberKind::Constructor) {
      jobject const made = NewObject(env, this->ItsPlace().Type(), id, values);
      return Row<R>::Take(env, made);
    } else {
      using Result = Jni<ResultLetter>;
      const auto call = [&] {
        if constexpr (Kind == MemberKind::StaticMethod) {
          return Result::CallStatic(env, this->ItsPlace().Type(), id, values);
        } else if constexpr (Kind == MemberKind::SuperMethod) {
          return Result::CallSuper(env, object, this->ItsPlace().Type(), id, values);
        } else {
          return Result::Call(env, object, id, values);
        }
      };
      if constexpr (ResultLetter == 'V') {
        call();
        CheckPending(env);
      } else {
        const auto result = call();
        if constexpr (ResultLetter == 'L') {
          CheckPending(env, result);
          return TakeResult<R>(env, result, tests, [this] { return Name(); });
        } else {
          CheckPending(env);
          return Row<R>::Take(result);
        }
      }
    }
  }
};

}  // namespace torvan::java::detail
