// Vectors as Java arrays: the rows of the conversion table for them, and the one algorithm of each direction.
#pragma once

#include <torvan/java/Array.h>
#include <torvan/java/Failure.h>
#include <torvan/java/detail/Classes.h>
#include <torvan/java/detail/JniArray.h>
#include <torvan/java/detail/Row.h>

#include <cstddef>
#include <vector>

namespace torvan::java::detail {

// An element that is null where the C++ type has no null. A caller that knows where the array comes from
// rethrows it as a Misuse that says so; otherwise the text is "element [3] of a Java array is null, ...".
class TORVAN_JAVA_VISIBLE NullElement : public Misuse {
 public:
  explicit NullElement(std::size_t index, const std::string& inside = {});

  // "[3]", or of an array in an array "[0][3]".
  const std::string& Path() const noexcept { return m_path; }

 private:
  explicit NullElement(const std::string& path);

  std::string m_path;
};

// Lengths as JNI counts. Throws Misuse for one that no Java array has.
jsize ArraySize(std::size_t size);

// Returns the new array that JNI has made. Throws Error and std::bad_alloc where it has made none.
jobject NewArrayOf(JNIEnv* env, jobject made);
jobject NewObjects(JNIEnv* env, std::size_t size, jclass type);

// Sets an element. Throws Error where the array takes no such object.
void SetElement(JNIEnv* env, jobject array, jsize index, jobject element);

// An element of an array, as a new local reference. Throws NullElement unless null is allowed.
jobject GetElement(JNIEnv* env, jobject array, jsize index, bool hasNull);

template <typename T>
constexpr bool IsVector = false;
template <typename E, typename A>
constexpr bool IsVector<std::vector<E, A>> = true;

// Whether an element may be null where a value's own type has no null.
template <typename T, typename = void>
constexpr bool HasElements = IsVector<T>;
template <typename E>
constexpr bool HasElements<std::optional<E>, void> = HasElements<E>;
template <typename T>
constexpr bool HasElements<T, std::void_t<typename Convert<T>::Through>> = HasElements<typename Convert<T>::Through>;

// The tag of the array that a vector of E is.
template <char Letter, typename Tag>
struct ElementTag {
  using Type = typename Jni<Letter>::Type;
};
template <typename Tag>
struct ElementTag<'L', Tag> {
  using Type = Tag;
};
template <>
struct ElementTag<'\0', void> {};
template <typename E>
using ArrayOf = Array<typename ElementTag<Row<E>::Letter, typename Row<E>::Tag>::Type>;

// Whether a vector's memory is an array of what JNI has. A bool of C++ may be anything but 0 and 1 to Java.
template <typename E>
constexpr bool IsJniMemory() {
  if constexpr (NumberLetter<E>() == 0 || NumberLetter<E>() == 'Z') {
    return false;
  } else {
    return sizeof(E) == sizeof(typename Jni<NumberLetter<E>()>::Type);
  }
}

// What is converted on the stack at a time.
constexpr jsize PieceSize = 1024;
constexpr jsize PieceOf(jsize left) { return left < PieceSize ? left : PieceSize; }

template <typename V>
Passed WriteNumbers(JNIEnv* env, const V& values) {
  using E = typename V::value_type;
  using Access = JniArray<Row<E>::Letter>;
  using Type = typename Jni<Row<E>::Letter>::Type;
  const jsize size = ArraySize(values.size());
  Passed array(env, NewArrayOf(env, Access::New(env, size)));
  if constexpr (IsJniMemory<E>()) {
    if (size != 0) Access::Write(env, array.Get(), 0, size, reinterpret_cast<const Type*>(values.data()));
  } else {
    Type piece[PieceSize];
    auto next = values.begin();
    for (jsize from = 0; from < size;) {
      const jsize count = PieceOf(size - from);
      for (jsize i = 0; i < count; ++i, ++next) piece[i] = JniNumber<Row<E>::Letter>(Row<E>::Value(*next));
      Access::Write(env, array.Get(), from, count, piece);
      from += count;
    }
  }
  return array;
}

// Not from the array's own memory: some VMs do not collect garbage meanwhile, and where several threads read again and
// again, others find no memory in a heap that is nearly empty.
template <typename V>
V ReadNumbers(JNIEnv* env, jobject array) {
  using E = typename V::value_type;
  using Access = JniArray<Row<E>::Letter>;
  using Type = typename Jni<Row<E>::Letter>::Type;
  const jsize size = env->GetArrayLength(static_cast<jarray>(array));
  if constexpr (IsJniMemory<E>()) {
    V values(static_cast<std::size_t>(size));
    if (size != 0) Access::Read(env, array, 0, size, reinterpret_cast<Type*>(values.data()));
    return values;
  } else {
    V values;
    values.reserve(static_cast<std::size_t>(size));
    Type piece[PieceSize];
    for (jsize from = 0; from < size;) {
      const jsize count = PieceOf(size - from);
      Access::Read(env, array, from, count, piece);
      for (jsize i = 0; i < count; ++i) values.push_back(Row<E>::Take(piece[i]));
      from += count;
    }
    return values;
  }
}

template <typename V>
Passed WriteObjects(JNIEnv* env, const V& values, jclass type) {
  using E = typename V::value_type;
  Passed array(env, NewObjects(env, values.size(), type));
  jsize index = 0;
  for (const E& value : values) {
    const auto passed = Row<E>::Pass(env, value);
    SetElement(env, array.Get(), index++, passed.Get());
  }
  return array;
}

// One element of an array of objects.
template <typename E>
E ReadObject(JNIEnv* env, jobject array, jsize index) {
  jobject const local = GetElement(env, array, index, Row<E>::HasNull);
  if constexpr (!HasElements<E>) {
    return Row<E>::Take(env, local);
  } else {
    try {
      return Row<E>::Take(env, local);
    } catch (const NullElement& inner) {
      throw NullElement(static_cast<std::size_t>(index), inner.Path());
    }
  }
}

template <typename T>
constexpr bool IsLocal = false;
template <typename T>
constexpr bool IsLocal<Local<T>> = true;

template <typename V>
V ReadObjects(JNIEnv* env, jobject array) {
  const jsize size = env->GetArrayLength(static_cast<jarray>(array));
  // A VM that has less room than it is asked for makes some more anyway, as all do.
  if constexpr (IsLocal<typename V::value_type>) {
    if (env->EnsureLocalCapacity(size) != JNI_OK) env->ExceptionClear();
  }
  V values;
  values.reserve(static_cast<std::size_t>(size));
  for (jsize i = 0; i < size; ++i) values.push_back(ReadObject<typename V::value_type>(env, array, i));
  return values;
}

template <typename V>
Passed WriteArray(JNIEnv* env, const V& values) {
  using E = typename V::value_type;
  if constexpr (Row<E>::Letter == 'L') {
    return WriteObjects(env, values, ClassOf<typename Row<E>::Tag>(env));
  } else {
    return WriteNumbers(env, values);
  }
}
template <typename V>
V ReadArray(JNIEnv* env, jobject array) {
  if constexpr (Row<typename V::value_type>::Letter == 'L') {
    return ReadObjects<V>(env, array);
  } else {
    return ReadNumbers<V>(env, array);
  }
}

template <typename E, typename A>
struct Row<std::vector<E, A>, std::enable_if_t<Row<E>::Letter != 0 && Row<E>::Letter != 'V'>> {
  static constexpr char Letter = 'L';
  using Tag = ArrayOf<E>;
  static constexpr bool IsResult = Row<E>::IsResult;
  static constexpr bool HasNull = false;
  static Passed Pass(JNIEnv* env, const std::vector<E, A>& values) { return WriteArray(env, values); }
  static std::vector<E, A> Take(JNIEnv* env, jobject local) {
    const LocalScope array(env, local);
    return ReadArray<std::vector<E, A>>(env, local);
  }
};

}  // namespace torvan::java::detail
