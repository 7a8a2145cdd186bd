// Fields: one algorithm for those of objects and of classes.
#pragma once

#include <torvan/java/detail/Function.h>

namespace torvan::java::detail {

template <MemberKind Kind, typename T, typename V, typename Place = SharedPlace>
class FieldAccess : private Declaration<Kind, T, Place> {
  static_assert(RequireDeclared<V>());
  static_assert(!std::is_void_v<V>, "torvan::java: a field has a value");

 public:
  constexpr FieldAccess(const char* owner, const char* name, const char* descriptor)
      : FieldAccess::Declaration(owner, name, descriptor) {
    if (descriptor != nullptr) CheckFieldDescriptor(descriptor, Row<V>::Letter);
  }
  FieldAccess(const Declaration<Kind, T, SharedPlace>& declared, Place place)
      : FieldAccess::Declaration(declared, std::move(place)) {}

  // Reads: Get([thread,] object), or Get([thread]) of a static field.
  template <typename... U>
  V Get(const U&... given) const {
    static_assert(CountOf<U...>() == HasObject(Kind),
                  "torvan::java: Get takes the object that has the field, if it is not static");
    if constexpr (CountOf<U...>() == HasObject(Kind)) {
      return Enter(
          CallEnv, [this](JNIEnv* env, const auto&... rest) { return this->Read(env, rest...); }, given...);
    } else {
      std::abort();
    }
  }

  // Writes: Set([thread,] object, value), or Set([thread,] value) of a static field.
  template <typename... U>
  void Set(const U&... given) const {
    static_assert(CountOf<U...>() == HasObject(Kind) + 1,
                  "torvan::java: Set takes the object that has the field, if it is not static, and the value");
    if constexpr (CountOf<U...>() == HasObject(Kind) + 1) {
      Enter(
          CallEnv, [this](JNIEnv* env, const auto&... rest) { this->Write(env, rest...); }, given...);
    }
  }

  // As a method's In.
  FieldAccess<Kind, T, V, BoundPlace> In(const Ref<Class>& type) const {
    return {*this, BoundPlace(CallEnv(), type, Name())};
  }

 private:
  using Access = Jni<Row<V>::Letter>;

  MemberName Name() const {
    static constexpr auto own = TypeDescriptor<V>();
    return FieldAccess::Declaration::Named(own.data);
  }
  jfieldID Id(JNIEnv* env) const {
    return static_cast<jfieldID>(this->ItsPlace().Id(env, [this] { return Name(); }));
  }

  // The object, tested.
  template <typename Self>
  jobject ObjectOf(JNIEnv* env, const Self& self) const {
    jobject const object = Ref<Object>(self).Get();
    if (object == nullptr) ThrowNullObject(Name());
    if (IsUnknown<Given<Self>> || Place::TestsObjects()) TestObject(env, object, this->ItsPlace().Type(), Name());
    return object;
  }

  V Read(JNIEnv* env) const {
    const jfieldID id = Id(env);
    return Take(env, Access::GetStatic(env, this->ItsPlace().Type(), id));
  }
  template <typename Self>
  V Read(JNIEnv* env, const Self& self) const {
    if constexpr (ObjectFits<T, Self>()) {
      const jfieldID id = Id(env);
      return Take(env, Access::Get(env, ObjectOf(env, self), id));
    } else {
      std::abort();
    }
  }
  template <typename Value>
  V Take(JNIEnv* env, Value value) const {
    if constexpr (Row<V>::Letter == 'L') {
      return TakeResult<V>(env, value, this->ItsPlace().Tests(), [this] { return Name(); });
    } else {
      return Row<V>::Take(value);
    }
  }

  template <typename U>
  void Write(JNIEnv* env, const U& value) const {
    if constexpr (ArgumentsFit(Types<V>(), Types<Plain<U>>())) {
      const jfieldID id = Id(env);
      const auto passed = PassTo<V, Plain<U>>([this] { return Name(); }, 0, env, value);
      Access::SetStatic(env, this->ItsPlace().Type(), id, Tested(env, ValueOf(passed)));
    }
  }
  template <typename Self, typename U>
  void Write(JNIEnv* env, const Self& self, const U& value) const {
    if constexpr (ObjectFits<T, Self>() && ArgumentsFit(Types<V>(), Types<Plain<U>>())) {
      const jfieldID id = Id(env);
      jobject const object = ObjectOf(env, self);
      const auto passed = PassTo<V, Plain<U>>([this] { return Name(); }, 0, env, value);
      Access::Set(env, object, id, Tested(env, ValueOf(passed)));
    }
  }
  jvalue Tested(JNIEnv* env, jvalue value) const {
    const ClassTests* const tests = this->ItsPlace().Tests();
    if (tests != nullptr) TestArguments(env, *tests, &value, Name());
    return value;
  }
};

}  // namespace torvan::java::detail
