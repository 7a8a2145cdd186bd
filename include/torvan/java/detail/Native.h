// Native methods: functions that JNI can call, for C++ functions of any kind.
#pragma once

#include <torvan/java/Failure.h>
#include <torvan/java/detail/Callback.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace torvan::java::detail {

struct NativeName {
  const char* type;  // null: the tag's
  const char* name;
  const char* descriptor;  // null: made of the C++ types
  const char* tag;         // the name of its class; null: the method is static
};

// What one entry point of JNI's calls. JNI passes nothing that tells the methods of a class apart, so each has one.
struct NativeSlot {
  std::atomic<const void*> binding{nullptr};
};

// Calls the function of a slot for Java.
jlong CallNative(JNIEnv* env, const NativeSlot& slot, const FromJava& given);

// The entry points and slots of functions of one type.
struct NativeSlots {
  NativeSlot* slots;
  void* const* entries;
  std::size_t count;
};

// Binds a function. `type` is the class, or null for the one of that name. Throws as NativeMethod::Bind.
void BindNative(const NativeName& name, const Ref<Class>* type, const char* own, std::shared_ptr<Callback> function,
                const NativeSlots& slots);

template <char Letter>
struct NativeType {
  using Type = typename Jni<Letter>::Type;
};
template <>
struct NativeType<'V'> {
  using Type = void;
};

template <char Letter>
jlong NativeBits(typename NativeType<Letter>::Type argument) noexcept {
  if constexpr (Letter == 'L') {
    return BitsOf(argument);
  } else {
    return ToBits<Letter>(argument);
  }
}

// Of each library its own, as the layer's copy is that it belongs to: copies do not know of each other's locks.
template <typename F, typename T>
struct NativeBinder;

template <typename R, typename... A, typename T>
struct TORVAN_JAVA_HIDDEN NativeBinder<R(A...), T> {
  static constexpr void CheckDescriptor(const char* descriptor) {
    CheckMethodDescriptor(descriptor, Row<Declared<R>>::Letter, Row<Declared<A>>::Letter...);
  }

  template <typename F, typename Class>
  static void Bind(const NativeName& name, const Class& type, F function) {
    using Signature = std::conditional_t<std::is_void_v<T>, R(A...), R(Ref<T>, A...)>;
    using Maker = CallbackMaker<Signature, F, std::is_void_v<T> ? 1 : 0>;
    if constexpr (Maker::IsGood()) {
      NativeName full = name;
      if constexpr (!std::is_void_v<T>) {
        full.tag = T::JavaName;
        if (full.type == nullptr) full.type = full.tag;
      }
      auto callback = Maker::Make(std::move(function), name.name);
      constexpr bool isNamed = std::is_null_pointer_v<Class>;
      const auto bind = [&](const Ref<java::Class>* own) {
        BindNative(full, own, CallbackMaker<R(A...), F>::Own(), std::move(callback), Entries<F>::All());
      };
      if constexpr (isNamed) {
        bind(nullptr);
      } else {
        const Ref<java::Class> own(type);
        bind(&own);
      }
    }
  }

 private:
  static constexpr char letter = Row<Declared<R>>::Letter;
  using Result = typename NativeType<letter>::Type;
  static constexpr std::size_t Count = 64;

  template <typename F>
  struct TORVAN_JAVA_HIDDEN Entries {
    static inline NativeSlot slots[Count];

    template <std::size_t I>
    static Result JNICALL Enter(JNIEnv* env, jobject self,
                                typename NativeType<Row<Declared<A>>::Letter>::Type... arguments) {
      constexpr bool isStatic = std::is_void_v<T>;
      const jlong bits[sizeof...(A) + 1 + FromJava::InRegisters] = {BitsOf(self),
                                                                    NativeBits<Row<Declared<A>>::Letter>(arguments)...};
      [[maybe_unused]] const jlong result =
          CallNative(env, slots[I], FromJava::Of(bits + isStatic, sizeof...(A) + !isStatic));
      if constexpr (letter == 'L') {
        return ObjectOf(result);
      } else if constexpr (letter != 'V') {
        return FromBits<letter>(result);
      }
    }

    static NativeSlots All() { return All(std::make_index_sequence<Count>()); }

   private:
    template <std::size_t... I>
    static NativeSlots All(std::index_sequence<I...>) {
      static void* const entries[] = {reinterpret_cast<void*>(&Enter<I>)...};
      return {slots, entries, Count};
    }
  };
};

}  // namespace torvan::java::detail
