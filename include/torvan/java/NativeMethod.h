// C++ functions as the native methods that Java classes declare.
#pragma once

#include <torvan/java/detail/Native.h>

namespace torvan::java {

// A native method of a Java class, with its C++ signature; with the class's tag as second argument it is an instance
// method, and the function takes the object first, as Ref<T>:
//
//   java::NativeMethod<jint(jint)>("plugin/Host", "version").Bind([](jint level) { return level + 1; });
//   java::NativeMethod<void(std::string_view), Host>("log").Bind([](java::Ref<Host> self, std::string_view text) {});
//
// The types, and the descriptor as the last argument where Java declares other classes, are those of a Method. Objects
// of a more specific C++ class than Java's are tested, and so is each object that is returned, which has to be of the
// class that Java declares: a wrong one is a ClassCastException in Java that names both classes. Names are literals.
//
// Bind may be called before the class is initialised, and again: the function is replaced. It lives as long as the
// class, and so does one that was replaced, which may still run. Functions of classes on the class path, and all of
// them before Java 9, which has no Cleaner, are never destroyed. Java may call it on any thread, and on several at
// once. What it throws goes to Java as from a function of Implement. Up to 64 methods can be bound to functions of one
// and the same C++ type, such as function pointers of one signature; each lambda expression has its own type.
//
// A class that another method of the class names may be missing; Java lists no methods then, and Bind initialises the
// class to find this one.
//
// Bind throws Error when there is no such class or method ("... (plugin.Host has no ...; it has ...)"), Misuse when the
// method is not native, static where an instance method was declared or the other way round, or belongs to a class
// whose objects are not of the tag's; and as Thread() does.
template <typename F, typename T = void>
class NativeMethod;

template <typename R, typename... A, typename T>
class NativeMethod<R(A...), T> {
  using Binder = detail::NativeBinder<R(A...), T>;

 public:
  constexpr NativeMethod(const char* type, const char* name, const char* descriptor = nullptr)
      : m_name{type, name, descriptor, nullptr} {
    if (descriptor != nullptr) Binder::CheckDescriptor(descriptor);
  }
  // Of the class that the tag names.
  constexpr explicit NativeMethod(const char* name) : m_name{nullptr, name, nullptr, nullptr} {
    static_assert(!std::is_void_v<T>, "torvan::java: a static native method needs the name of its class and its own");
  }

  template <typename F>
  TORVAN_JAVA_HIDDEN void Bind(F function) const {
    Binder::Bind(m_name, nullptr, std::move(function));
  }

  // The same method of a class of another loader.
  class Bound {
   public:
    template <typename F>
    TORVAN_JAVA_HIDDEN void Bind(F function) const {
      Binder::Bind(m_name, m_type, std::move(function));
    }

   private:
    friend class NativeMethod;
    Bound(const detail::NativeName& name, const Ref<Class>& type) : m_name(name), m_type(type) {}

    detail::NativeName m_name;
    Global<Class> m_type;
  };
  // Throws as Global does. Binding throws Misuse when the class is null.
  Bound In(const Ref<Class>& type) const { return {m_name, type}; }

 private:
  detail::NativeName m_name;
};

}  // namespace torvan::java
