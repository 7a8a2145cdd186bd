// Java objects whose methods are C++ functions.
#pragma once

#include <torvan/java/detail/Callback.h>
#include <torvan/java/detail/Pending.h>

#include <string>
#include <utility>
#include <vector>

namespace torvan::java {

// An interface and the C++ functions for its methods: made by Implement, completed by On, and then New makes Java
// objects of it, or it is given as it is where an object of T is wanted.
//
//   const auto listener = java::Implement<Listener>()
//                             .On("warning", [&](std::string text) { log.Add(text); })
//                             .On("ask", [](java::Ref<Question> question) { return Ask(question); })
//                             .New();
//
// A function's types are those of the conversion table, its arguments also std::string_view. A method has them as they
// are, or as objects where the function takes numbers (Integer for jint), or with a more general class, as a generic
// interface has: then each object is tested, and a wrong one is Java's ClassCastException. Among several methods of one
// name the function's types choose. A null for a type that has none is an exception in Java that names the argument: a
// NullPointerException for numbers, else a RuntimeException.
//
// Java may call on any thread, and on several at once. A function lives until its Java object is collected and does not
// run any more; then a thread of Java's destroys it. Where Java has no java.lang.ref.Cleaner, before version 9, and for
// objects that are there when the VM ends, it is never destroyed. References that it takes as Ref and Local are gone
// when it returns. A function that holds a Global of its own object keeps both for good: let it hold a Weak. In a
// process that ends without the end of the VM, Java goes on calling and destroying functions while static objects are
// destroyed: what they use of these has to be kept from that, or the VM ended before.
//
// What it throws goes to Java: an Error as the Java object that it is, any other std::exception as a RuntimeException
// with its what() as message, the rest as a RuntimeException that names its type. An exception that Java checks and the
// method does not declare arrives as UndeclaredThrowableException. Stack that runs out is a StackOverflowError.
//
// A method that no function is given for runs its default, else it throws an UnsupportedOperationException that names
// it. equals and hashCode tell objects apart, and toString says the interface, unless functions are given for them.
template <typename T = Object>
class Implementation {
 public:
  // Gives the function for the method of that name. Its types are its own, or said: On<void(jint)>("set", function).
  // The descriptor (JNI's) names one of several methods that would fit.
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

  // Makes a Java object. Each has the same functions, not copies of them; they live as long as the last.
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
  explicit Implementation(const Ref<Class>& type) : m_type(type), m_place(detail::NewPlanPlace()) {}

  jobject New(JNIEnv* env) const {
    return detail::NewImplementation(env, {m_name.c_str(), static_cast<jclass>(m_type.Get()), m_place.get()},
                                     m_functions);
  }

  std::string m_name;
  Global<Class> m_type;  // null: it goes by its name
  std::shared_ptr<detail::PlanPlace> m_place;
  std::vector<detail::GivenFunction> m_functions;
};

// Begins an implementation of the interface that tag T names, or of the one with that name: "java/util/Comparator".
template <typename T>
Implementation<T> Implement() {
  return Implementation<T>(T::JavaName);
}
inline Implementation<Object> Implement(std::string name) { return Implementation<Object>(std::move(name)); }

// Begins an implementation of an interface that another class loader has. Its objects throw Misuse when the
// class is null.
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
