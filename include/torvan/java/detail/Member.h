// What members are, how they are found, and what is kept of them.
#pragma once

#include <torvan/java/Global.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/Utf.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace torvan::java::detail {

enum class MemberKind { Method, StaticMethod, SuperMethod, Constructor, Field, StaticField };

constexpr bool IsStatic(MemberKind kind) { return kind == MemberKind::StaticMethod || kind == MemberKind::StaticField; }
constexpr bool IsField(MemberKind kind) { return kind == MemberKind::Field || kind == MemberKind::StaticField; }
constexpr bool HasObject(MemberKind kind) { return !IsStatic(kind) && kind != MemberKind::Constructor; }

// What a member was declared as. `own` is the descriptor that the C++ types make, `descriptor` that or the one given.
struct MemberName {
  MemberKind kind;
  const char* type;  // with slashes or dots
  const char* name;
  const char* descriptor;
  const char* own;
};

// The classes of a given descriptor where the C++ types have others. JNI does not test them, so this does.
struct ClassTests {
  std::vector<std::pair<std::size_t, Global<Class>>> arguments;
  Global<Class> result;  // null where nothing has to be tested
};

// Finds a member in a class. Throws Error, whose text says what the class has instead.
void* FindId(JNIEnv* env, jclass type, const MemberName& name);
// The same; null, and nothing pending, when there is no such member.
void* FindIdOrNull(JNIEnv* env, jclass type, const MemberName& name);

// The tests that the given descriptor of a member asks for; null where it asks for none. `all` asks for one of each
// class in it: where the member is of another loader, the tags' names say too little.
std::unique_ptr<const ClassTests> FindTests(JNIEnv* env, jclass type, const MemberName& name, bool all);

// Test an object, the arguments and a result, which is deleted when it is wrong. Throw Misuse.
void TestObject(JNIEnv* env, jobject object, jclass type, const MemberName& name);
void TestArguments(JNIEnv* env, const ClassTests& tests, const jvalue* values, const MemberName& name);
void TestResult(JNIEnv* env, const ClassTests& tests, jobject local, const MemberName& name);

// Throw Misuse: "null is given as the object of java.util.List.add(java.lang.Object)" and the like.
[[noreturn]] void ThrowNullObject(const MemberName& name);
[[noreturn]] void ThrowNullResult(const MemberName& name);
[[noreturn]] void ThrowNullElement(const MemberName& name, const std::string& path);
// Throws Misuse "invalid UTF-8 at byte 3 in argument 1 of java.util.List.add(java.lang.Object)". The first has index 0.
[[noreturn]] void ThrowInvalidText(const MemberName& name, std::size_t index, const InvalidUtf8& invalid);

// A class by its name, found once through the kept loader and never released. Throws Error.
jclass KeptClass(JNIEnv* env, const char* name);

// Set as soon as a member was bound to a class of another loader than the kept one. Only then can an object's tag have
// the right name and mean another class, so only then do calls pay for a test.
extern std::atomic<bool> otherLoaders;

// Keeps a member of the class that the kept loader finds, looked up by the first thread that needs it. IDs and classes
// are never released. A copy looks up its own.
class SharedPlace {
 public:
  constexpr SharedPlace() noexcept = default;
  constexpr SharedPlace(const SharedPlace&) noexcept {}
  SharedPlace& operator=(const SharedPlace&) = delete;

  // The jmethodID or jfieldID. Call it before the others.
  template <typename NameMaker>
  void* Id(JNIEnv* env, const NameMaker& name) const {
    void* const id = m_id.load(std::memory_order_acquire);
    return id != nullptr ? id : Bind(env, name());
  }
  jclass Type() const noexcept { return m_type.load(std::memory_order_relaxed); }
  const ClassTests* Tests() const noexcept { return m_tests.load(std::memory_order_relaxed); }  // null mostly
  static bool TestsObjects() noexcept { return otherLoaders.load(std::memory_order_relaxed); }

 private:
  void* Bind(JNIEnv* env, const MemberName& name) const;

  mutable std::atomic<void*> m_id{nullptr};  // published last
  mutable std::atomic<jclass> m_type{nullptr};
  mutable std::atomic<const ClassTests*> m_tests{nullptr};
};

// Keeps a member of a class that the host has passed, looked up when it was bound. Copies share it.
class BoundPlace {
 public:
  BoundPlace(JNIEnv* env, const Ref<Class>& type, MemberName name);

  template <typename NameMaker>
  void* Id(JNIEnv*, const NameMaker&) const noexcept {
    return m_id;
  }
  jclass Type() const noexcept { return static_cast<jclass>(m_type.Get()); }
  const ClassTests* Tests() const noexcept { return m_tests.get(); }
  static bool TestsObjects() noexcept { return true; }

 private:
  Global<Class> m_type;
  void* m_id;
  std::shared_ptr<const ClassTests> m_tests;
};

// What all members are declared with. The texts are the host's, mostly literals.
template <MemberKind Kind, typename T, typename Place>
class Declaration {
 protected:
  constexpr Declaration(const char* owner, const char* name, const char* descriptor)
      : m_owner(owner), m_name(name), m_descriptor(descriptor) {}
  Declaration(const Declaration<Kind, T, SharedPlace>& declared, Place place)
      : m_owner(declared.m_owner),
        m_name(declared.m_name),
        m_descriptor(declared.m_descriptor),
        m_place(std::move(place)) {}

  // `own` is the descriptor that the C++ types make.
  MemberName Named(const char* own) const {
    const char* const descriptor = m_descriptor != nullptr ? m_descriptor : own;
    if constexpr (std::is_void_v<T>) {
      return {Kind, m_owner, m_name, descriptor, own};
    } else if constexpr (RequireTag<T>()) {
      return {Kind, T::JavaName, m_name, descriptor, own};
    } else {
      return {Kind, m_owner, m_name, descriptor, own};
    }
  }

  const Place& ItsPlace() const { return m_place; }

 private:
  template <MemberKind, typename, typename>
  friend class Declaration;

  const char* m_owner;
  const char* m_name;
  const char* m_descriptor;  // null when it is made of the C++ types
  Place m_place;
};

}  // namespace torvan::java::detail
