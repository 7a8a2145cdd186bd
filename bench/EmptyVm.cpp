// A VM library whose VM does nothing: what is left of a call is the cost of making it.
#include <jni.h>

namespace {

JNINativeInterface_ s_functions{};
JNIInvokeInterface_ s_invocation{};
JNIEnv s_env{&s_functions};
JavaVM s_vm{&s_invocation};

// What all references and identifiers are, but for strings.
int s_thing = 0;
template <typename T>
T Thing() {
  return reinterpret_cast<T>(&s_thing);
}

jint s_field = 0;

void FillFunctions() {
  s_invocation.AttachCurrentThread = [](JavaVM*, void** env, void*) -> jint {
    *env = &s_env;
    return JNI_OK;
  };
  s_functions.GetJavaVM = [](JNIEnv*, JavaVM** vm) -> jint {
    *vm = &s_vm;
    return JNI_OK;
  };
  s_functions.PushLocalFrame = [](JNIEnv*, jint) -> jint { return JNI_OK; };
  s_functions.PopLocalFrame = [](JNIEnv*, jobject result) { return result; };
  s_functions.NewGlobalRef = [](JNIEnv*, jobject object) { return object; };
  s_functions.DeleteGlobalRef = [](JNIEnv*, jobject) {};
  s_functions.ExceptionOccurred = [](JNIEnv*) -> jthrowable { return nullptr; };

  s_functions.FindClass = [](JNIEnv*, const char*) { return Thing<jclass>(); };
  s_functions.GetObjectClass = [](JNIEnv*, jobject) { return Thing<jclass>(); };
  s_functions.IsInstanceOf = [](JNIEnv*, jobject, jclass) -> jboolean { return JNI_TRUE; };
  s_functions.IsSameObject = [](JNIEnv*, jobject left, jobject right) -> jboolean { return left == right; };
  s_functions.AllocObject = [](JNIEnv*, jclass) { return Thing<jobject>(); };
  s_functions.NewObjectV = [](JNIEnv*, jclass, jmethodID, va_list) { return Thing<jobject>(); };

  s_functions.GetMethodID = [](JNIEnv*, jclass, const char*, const char*) { return Thing<jmethodID>(); };
  s_functions.GetStaticMethodID = s_functions.GetMethodID;
  s_functions.GetFieldID = [](JNIEnv*, jclass, const char*, const char*) { return Thing<jfieldID>(); };
  s_functions.CallObjectMethodV = [](JNIEnv*, jobject object, jmethodID, va_list) { return object; };
  s_functions.CallIntMethodV = [](JNIEnv*, jobject, jmethodID, va_list arguments) { return va_arg(arguments, jint); };
  s_functions.CallStaticIntMethodV = [](JNIEnv*, jclass, jmethodID, va_list arguments) {
    return va_arg(arguments, jint);
  };
  s_functions.GetIntField = [](JNIEnv*, jobject, jfieldID) { return s_field; };
  s_functions.SetIntField = [](JNIEnv*, jobject, jfieldID, jint value) { s_field = value; };

  // A string is the text that it was made of, which must stay.
  s_functions.NewString = [](JNIEnv*, const jchar* text, jsize) {
    return reinterpret_cast<jstring>(const_cast<jchar*>(text));
  };
  s_functions.GetStringChars = [](JNIEnv*, jstring string, jboolean*) {
    return reinterpret_cast<const jchar*>(string);
  };
  s_functions.ReleaseStringChars = [](JNIEnv*, jstring, const jchar*) {};
}

}  // namespace

extern "C" JNIEXPORT jint JNICALL JNI_GetCreatedJavaVMs(JavaVM** vms, jsize size, jsize* count) {
  FillFunctions();
  if (size > 0) *vms = &s_vm;
  *count = 1;
  return JNI_OK;
}
extern "C" JNIEXPORT jint JNICALL JNI_CreateJavaVM(JavaVM**, void**, void*) { return JNI_EEXIST; }
extern "C" JNIEXPORT jint JNICALL JNI_GetDefaultJavaVMInitArgs(void*) { return JNI_OK; }
