#include <torvan/java/Elements.h>

#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>

#include <limits>
#include <new>
#include <string>

#include "java/ClassNames.h"

namespace torvan::java::detail {

namespace {

// Says what to do where the array's class and the element's have one name.
[[noreturn]] void ThrowNotStored(JNIEnv* env, jobject array, jobject element) {
  const LocalScope thrown(env, env->ExceptionOccurred());
  env->ExceptionClear();
  const auto nameOf = [env](jobject object) {
    const LocalScope type(env, env->GetObjectClass(object));
    return NameOf(env, static_cast<jclass>(type.Get()));
  };
  std::string addition;
  try {
    if (element != nullptr && nameOf(array) == "[L" + nameOf(element) + ";") {
      addition = " (of another class loader: make the array with NewArray(vector, class))";
    }
  } catch (const Failure&) {  // Java's own message is used alone
  }
  env->Throw(static_cast<jthrowable>(thrown.Get()));
  ThrowPending(env, addition);
}

}  // namespace

NullElement::NullElement(std::size_t index, const std::string& inside)
    : NullElement("[" + std::to_string(index) + "]" + inside) {}

NullElement::NullElement(const std::string& path)
    : Misuse("java/Arrays", __LINE__,
             "element " + path +
                 " of a Java array is null, which its C++ type cannot be: declare the element as std::optional"),
      m_path(path) {}

jsize ArraySize(std::size_t size) {
  if (size > static_cast<std::size_t>(std::numeric_limits<jsize>::max())) {
    throw Misuse("java/Arrays", __LINE__,
                 "an array of " + std::to_string(size) + " elements is longer than a Java array can be");
  }
  return static_cast<jsize>(size);
}

jobject NewArrayOf(JNIEnv* env, jobject made) {
  if (made == nullptr) ThrowOutOfMemory(env);
  return made;
}

jobject NewObjects(JNIEnv* env, std::size_t size, jclass type) {
  return NewArrayOf(env, env->NewObjectArray(ArraySize(size), type, nullptr));
}

void SetElement(JNIEnv* env, jobject array, jsize index, jobject element) {
  env->SetObjectArrayElement(static_cast<jobjectArray>(array), index, element);
  if (env->ExceptionCheck() != JNI_FALSE) ThrowNotStored(env, array, element);
}

jobject GetElement(JNIEnv* env, jobject array, jsize index, bool hasNull) {
  jobject const local = env->GetObjectArrayElement(static_cast<jobjectArray>(array), index);
  CheckPending(env);
  if (local == nullptr && !hasNull) throw NullElement(static_cast<std::size_t>(index));
  return local;
}

void ThrowOutOfMemory(JNIEnv* env) {
  CheckPending(env);
  throw std::bad_alloc();
}

jsize RequiredArraySize(JNIEnv* env, jobject array) {
  if (array == nullptr) throw Misuse("java/Arrays", __LINE__, "null is given for a Java array");
  return env->GetArrayLength(static_cast<jarray>(array));
}

jclass RequiredClass(const Ref<Class>& type) {
  if (!type) throw Misuse("java/Arrays", __LINE__, "null is given as the class of an array's elements");
  return static_cast<jclass>(type.Get());
}

void ThrowOutside(std::size_t index, std::size_t size) {
  throw Misuse("java/Arrays", __LINE__,
               "index " + std::to_string(index) + " is outside an array of " + std::to_string(size));
}

}  // namespace torvan::java::detail
