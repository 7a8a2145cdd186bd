// Java objects whose methods are C++ functions.
#pragma once

#include <torvan/java/detail/Callback.h>
#include <torvan/java/detail/Pending.h>

#include <string>
#include <utility>
#include <vector>

namespace torvan::java {

// An interface and the C++ functions for its methods. Implement begins it, On adds functions, and New makes Java
// objects; it can also be passed as it is where an object of T is expected.
//
//   const auto listener = java::Implement<Listener>()
//                             .On("warning", [&](std::string text) { log.Add(text); })
//                             .On("ask", [](java::Ref<Question> question) { return Ask(question); })
//                             .New();
//
// A function's types are those of the conversion table; an argument may also be a std::string_view. The method declares
// the same types, or objects where the function takes numbers (Integer for jint), or more general classes, as a generic
// interface does: then each object is tested, and a wrong one is a ClassCastException in Java. The function's types
// choose among several methods of one name. A null for a type without null is an exception in Java that names the
// argument: a NullPointerException for numbers, else a RuntimeException.
//
// Java may call on any thread, and on several at once. A function lives until its Java object is collected and no call
// of it runs; then a thread of Java's destroys it. It is never destroyed when Java has no java.lang.ref.Cleaner (before
// version 9), or when its object still exists at the end of the VM. References passed to it as Ref and Local end when
// it returns. It may keep a Global or a Weak, but no Local and no Ref: these are of one thread and its scope. Let a
// function refer to its object by a Weak: with a Global the two keep each other, and neither is ever destroyed. In a
// process that ends without the end of the VM, Java goes on calling and destroying functions while static objects are
// destroyed: end the VM before, or keep what the functions use out of static objects that are destroyed.
//
// What it throws is thrown into Java: an Error as its Java object, any other std::exception as a RuntimeException with
// what() as its message, any other mirel::base::CException as what the fixed interface left pending, else as a
// RuntimeException with its message; anything else as a RuntimeException that names its type, or says that it is of an
// unknown type where the compiler does not tell (the Microsoft ABI). A checked exception that the method does not
// declare arrives as UndeclaredThrowableException. Running out of stack is a StackOverflowError.
//
// A method without a function runs its default, or else throws an UnsupportedOperationException that names it. If none
// is added for them, equals and hashCode go by identity, and toString names the interface.
template <typename T = Object>
class Implementation {
 public:
  // Adds the function for the method of that name. Its types are its own, or stated: On<void(jint)>("set", function).
  // The JNI descriptor selects one of several methods that would fit.
  // Throws Misuse when the function is an empty std::function or null.
  template <typename Signature = void, typename F>
  Implementation& On(std::string name, F function, const char* descriptor = nullptr) & {
    using Own = std::conditional_t<std::is_void_v<Signature>, typename detail::SignatureOf<F>::Type, Signature>;
    using Maker = detail::CallbackMaker<Own, F>;
    if constexpr (Maker::IsGood()) {
      if (m_place != nullptr) m_place = detail::NewPlanPlace();
      auto callback = Maker::Make(std::move(function), name);
      m_functions.push_back(
          {std::move(name), Maker::Own(), descriptor != nullptr ? descriptor : "", std::move(callback)});
    }
    return *this;
  }
  template <typename Signature = void, typename F>
  Implementation On(std::string name, F function, const char* descriptor = nullptr) && {
    On<Signature>(std::move(name), std::move(function), descriptor);
    return std::move(*this);
  }

  // Makes a Java object. All objects share the same functions, which live as long as the last one.
  // The first one looks the methods up by reflection, which takes many times as long as the rest. Of an interface that
  // goes by its name that is done once for functions of the same types; of one that goes by its class, once for this
  // object and its copies, so keep it and call New() again.
  // Throws Misuse when the type is no interface, when it has no method for one of the functions ("java.util.Iterator
  // has no ...; it has ..."), or several, and when two functions are for one method; Error, and as Thread() does.
  Local<T> New() const {
    JNIEnv* const env = detail::Env();
    detail::CheckPending(env);
    return detail::Own<T>(env, New(env));
  }

 private:
  template <typename>
  friend class Implementation;
  template <typename U>
  friend Implementation<U> Implement();
  template <typename U>
  friend Implementation<U> Implement(const Ref<Class>& type);
  friend Implementation<Object> Implement(std::string name);
  friend Implementation<Object> Implement(const Ref<Class>& type);
  friend struct detail::Row<Implementation>;

  explicit Implementation(std::string name) : m_name(std::move(name)) {}
  explicit Implementation(const Ref<Class>& type)
      : m_name(T::JavaName), m_type(type), m_place(detail::NewPlanPlace()) {}

  jobject New(JNIEnv* env) const {
    return detail::NewImplementation(env, {m_name.c_str(), static_cast<jclass>(m_type.Get()), m_place.get()},
                                     m_functions);
  }

  std::string m_name;
  Global<Class> m_type;
  std::shared_ptr<detail::PlanPlace> m_place;
  std::vector<detail::GivenFunction> m_functions;
};

// Begins an implementation of the interface that tag T names, or of the one with that name: "java/util/Comparator".
template <typename T>
Implementation<T> Implement() {
  return Implementation<T>(T::JavaName);
}
inline Implementation<Object> Implement(std::string name) { return Implementation<Object>(std::move(name)); }

// Begins an implementation of an interface of another class loader. New() throws Misuse when the class is null, and
// when the tag names neither it nor a type that it extends ("... cannot be implemented: the tag names ..."). A function
// that returns an array of references to such classes returns Local<Array<T>>, made with NewArray(vector, class): a
// vector becomes an array of the class that the class path has.
template <typename T>
Implementation<T> Implement(const Ref<Class>& type) {
  return Implementation<T>(type);
}
inline Implementation<Object> Implement(const Ref<Class>& type) { return Implementation<Object>(type); }

namespace detail {

template <typename T>
struct Row<Implementation<T>> {
  static constexpr char Letter = 'L';
  using Tag = T;
  static constexpr bool IsResult = false;
  static constexpr bool HasNull = true;
  static Passed Pass(JNIEnv* env, const Implementation<T>& implementation) {
    return Passed(env, implementation.New(env));
  }
};

}  // namespace detail

}  // namespace torvan::java
