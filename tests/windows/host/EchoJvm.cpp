// A Java runtime library without Java. Fields hold what was stored last, one value for each type; methods return
// their argument. Members and classes named "missing" are not found; a method named "fail" leaves an exception pending.
#define _JNI_IMPLEMENTATION_  // the entry points are exported, not imported
#include <jni.h>

#include <cstdarg>
#include <cstring>

namespace {

int s_globals = 0;
bool s_pending = false;

// What a reference points to. All references are of one kind.
struct Thing {
  const jchar* text;
};

constexpr jchar ClassName[] = {'e', 'c', 'h', 'o', 0};
constexpr jchar Message[] = {'f', 'a', 'i', 'l', 'e', 'd', 0};
constexpr jchar Place[] = {'h', 'e', 'r', 'e', 0};
Thing s_object{nullptr};
Thing s_className{ClassName};
Thing s_message{Message};
Thing s_place{Place};
Thing s_failure{nullptr};
jchar s_madeText[64];
Thing s_made{s_madeText};

jobject Reference(Thing& thing) { return reinterpret_cast<jobject>(&thing); }
const Thing& ThingOf(jobject reference) { return *reinterpret_cast<const Thing*>(reference); }

// IDs are the members' names.
char s_names[64][32];
template <class Id>
Id Lookup(const char* name) {
  if (std::strcmp(name, "missing") == 0) return nullptr;
  for (char(&place)[32] : s_names) {
    if (*place == 0) std::strcpy(place, name);
    if (std::strcmp(place, name) == 0) return reinterpret_cast<Id>(place);
  }
  return nullptr;
}
bool Is(jmethodID method, const char* name) { return std::strcmp(reinterpret_cast<const char*>(method), name) == 0; }

template <class T>
T s_field{};

// How a value travels among variable arguments.
template <class T>
struct Promoted {
  using Type = int;
};
template <>
struct Promoted<jlong> {
  using Type = jlong;
};
template <>
struct Promoted<jfloat> {
  using Type = double;
};
template <>
struct Promoted<jdouble> {
  using Type = double;
};

template <class T>
T Echo(jmethodID method, va_list arguments) {
  if (Is(method, "fail")) s_pending = true;
  return static_cast<T>(va_arg(arguments, typename Promoted<T>::Type));
}
template <>
jobject Echo(jmethodID method, va_list arguments) {
  if (Is(method, "getClass")) return Reference(s_object);
  if (Is(method, "getName")) return Reference(s_className);
  if (Is(method, "getMessage")) return Reference(s_message);
  if (Is(method, "getStackTrace")) return Reference(s_object);
  if (Is(method, "toString")) return Reference(s_place);
  return va_arg(arguments, jobject);
}
template <>
void Echo(jmethodID method, va_list arguments) {
  s_field<jint> = Echo<jint>(method, arguments);
}

template <class T>
T JNICALL Get(JNIEnv*, jobject, jfieldID) {
  return s_field<T>;
}
template <class T>
void JNICALL Set(JNIEnv*, jobject, jfieldID, T value) {
  s_field<T> = value;
}
template <class T>
T JNICALL GetStatic(JNIEnv*, jclass, jfieldID) {
  return s_field<T>;
}
template <class T>
void JNICALL SetStatic(JNIEnv*, jclass, jfieldID, T value) {
  s_field<T> = value;
}
template <class T>
T JNICALL Call(JNIEnv*, jobject, jmethodID method, va_list arguments) {
  return Echo<T>(method, arguments);
}
template <class T>
T JNICALL CallNonvirtual(JNIEnv*, jobject, jclass, jmethodID method, va_list arguments) {
  return Echo<T>(method, arguments);
}
template <class T>
T JNICALL CallStatic(JNIEnv*, jclass, jmethodID method, va_list arguments) {
  return Echo<T>(method, arguments);
}

template <class Id>
Id JNICALL GetId(JNIEnv*, jclass, const char* name, const char*) {
  return Lookup<Id>(name);
}
jclass JNICALL FindClass(JNIEnv*, const char* name) {
  return std::strcmp(name, "missing") == 0 ? nullptr : static_cast<jclass>(Reference(s_object));
}
jclass JNICALL GetObjectClass(JNIEnv*, jobject) { return static_cast<jclass>(Reference(s_object)); }
jboolean JNICALL IsInstanceOf(JNIEnv*, jobject, jclass) { return JNI_TRUE; }
jboolean JNICALL IsSameObject(JNIEnv*, jobject left, jobject right) { return left == right; }
jobject JNICALL NewGlobalRef(JNIEnv*, jobject object) {
  ++s_globals;
  return object;
}
void JNICALL DeleteGlobalRef(JNIEnv*, jobject) { --s_globals; }
jthrowable JNICALL ExceptionOccurred(JNIEnv*) {
  return s_pending ? static_cast<jthrowable>(Reference(s_failure)) : nullptr;
}
void JNICALL ExceptionClear(JNIEnv*) { s_pending = false; }
jobject JNICALL AllocObject(JNIEnv*, jclass) { return Reference(s_object); }
jobject JNICALL NewObject(JNIEnv*, jclass, jmethodID, va_list arguments) {
  s_field<jint> = va_arg(arguments, jint);
  return Reference(s_object);
}
jsize JNICALL GetArrayLength(JNIEnv*, jarray) { return 1; }
jobject JNICALL GetObjectArrayElement(JNIEnv*, jobjectArray, jsize) { return Reference(s_object); }

jstring JNICALL NewString(JNIEnv*, const jchar* text, jsize length) {
  std::memcpy(s_madeText, text, static_cast<size_t>(length) * sizeof(jchar));
  s_madeText[length] = 0;
  return static_cast<jstring>(Reference(s_made));
}
jsize JNICALL GetStringLength(JNIEnv*, jstring string) {
  jsize length = 0;
  while (ThingOf(string).text[length] != 0) ++length;
  return length;
}
const jchar* JNICALL GetStringChars(JNIEnv*, jstring string, jboolean*) { return ThingOf(string).text; }
void JNICALL ReleaseStringChars(JNIEnv*, jstring, const jchar*) {}

#define FIELDS(Name, T)                         \
  table.Get##Name##Field = &Get<T>;             \
  table.Set##Name##Field = &Set<T>;             \
  table.GetStatic##Name##Field = &GetStatic<T>; \
  table.SetStatic##Name##Field = &SetStatic<T>;
#define METHODS(Name, T)                                    \
  table.Call##Name##MethodV = &Call<T>;                     \
  table.CallNonvirtual##Name##MethodV = &CallNonvirtual<T>; \
  table.CallStatic##Name##MethodV = &CallStatic<T>;
#define MEMBERS(Name, T) FIELDS(Name, T) METHODS(Name, T)

const JNINativeInterface_* Functions() {
  static JNINativeInterface_ table{};
  MEMBERS(Object, jobject)
  MEMBERS(Boolean, jboolean)
  MEMBERS(Byte, jbyte)
  MEMBERS(Char, jchar)
  MEMBERS(Short, jshort)
  MEMBERS(Int, jint)
  MEMBERS(Long, jlong)
  MEMBERS(Float, jfloat)
  MEMBERS(Double, jdouble)
  METHODS(Void, void)
  table.GetMethodID = &GetId<jmethodID>;
  table.GetStaticMethodID = &GetId<jmethodID>;
  table.GetFieldID = &GetId<jfieldID>;
  table.GetStaticFieldID = &GetId<jfieldID>;
  table.FindClass = &FindClass;
  table.GetObjectClass = &GetObjectClass;
  table.IsInstanceOf = &IsInstanceOf;
  table.IsSameObject = &IsSameObject;
  table.NewGlobalRef = &NewGlobalRef;
  table.DeleteGlobalRef = &DeleteGlobalRef;
  table.ExceptionOccurred = &ExceptionOccurred;
  table.ExceptionClear = &ExceptionClear;
  table.AllocObject = &AllocObject;
  table.NewObjectV = &NewObject;
  table.GetArrayLength = &GetArrayLength;
  table.GetObjectArrayElement = &GetObjectArrayElement;
  table.NewString = &NewString;
  table.GetStringLength = &GetStringLength;
  table.GetStringChars = &GetStringChars;
  table.ReleaseStringChars = &ReleaseStringChars;
  return &table;
}

#undef MEMBERS
#undef METHODS
#undef FIELDS

JNIEnv* Environment() {
  static JNIEnv environment{Functions()};
  return &environment;
}

jint JNICALL Attach(JavaVM*, void** environment, void*) {
  *environment = Environment();
  return JNI_OK;
}
jint JNICALL Detach(JavaVM*) { return JNI_OK; }

JavaVM* Machine() {
  static JNIInvokeInterface_ table{};
  static JavaVM machine{&table};
  table.AttachCurrentThread = &Attach;
  table.DetachCurrentThread = &Detach;
  return &machine;
}

}  // namespace

// The number of options and the version decide the answer, so that a host sees what was passed on.
jint JNICALL JNI_CreateJavaVM(JavaVM** vm, void** environment, void* arguments) {
  const auto* init = static_cast<const JavaVMInitArgs*>(arguments);
  if (init->version != JNI_VERSION_1_6) return JNI_EVERSION;
  if (init->nOptions != 1 || std::strcmp(init->options[0].optionString, "-echo") != 0) return JNI_EINVAL;
  *vm = Machine();
  *environment = Environment();
  return JNI_OK;
}

jint JNICALL JNI_GetCreatedJavaVMs(JavaVM** vms, jsize room, jsize* count) {
  if (room > 0) vms[0] = Machine();
  *count = 1;
  return JNI_OK;
}

extern "C" __declspec(dllexport) int EchoLiveGlobals() { return s_globals; }
