// Texts of torvan::java. This source is also compiled in C++23, where the memory of a text need not be cleared first.
#include <memory>
#include <string>

#include "Host.h"

namespace bench {
namespace {

#ifdef __cpp_lib_string_resize_and_overwrite
constexpr char Units[] = "std::u16string, C++23";
#else
constexpr char Units[] = "std::u16string, C++17";
#endif

constexpr java::Method<Subject, jint(std::string_view)> Length{"length"};

long NewUnits(JNIEnv* env, jstring text) {
  const jsize size = env->GetStringLength(text);
  const std::unique_ptr<char16_t[]> to(new char16_t[static_cast<std::size_t>(size)]);
  env->GetStringRegion(text, 0, size, reinterpret_cast<jchar*>(to.get()));
  return size + to[0];
}

void AddOut(const char* name, const char* title) {
  JNIEnv* const env = TheHost().env;
  jobject const object = TheHost().rawSubject;
  const java::Method<Subject, std::u16string()> units{name};
  const java::Method<Subject, std::string()> utf8{name};
  static const java::Thread thread;
  static const java::Global<Subject> global(java::Ref<Subject>(TheHost().subject));
  const jmethodID get = env->GetMethodID(TheHost().rawClass, name, "()Ljava/lang/String;");
  const auto text = static_cast<jstring>(env->NewGlobalRef(env->CallObjectMethod(object, get)));

  Add("java texts", std::string(title) + " out",
      {Batched("GetStringRegion to new char16_t[n]", [=](long) { return NewUnits(env, text); }),
       Batched(Units, [text](long) {
         const std::u16string to = java::ToUnits(text);
         return static_cast<long>(to.size()) + to[0];
       })});
  Add("java texts", std::string(title) + " out as UTF-8",
      {Batched("GetStringUTFChars to std::string",
               [=](long) {
                 const char* const chars = env->GetStringUTFChars(text, nullptr);
                 const std::string to(chars);
                 env->ReleaseStringUTFChars(text, chars);
                 return static_cast<long>(to.size());
               }),
       Batched("std::string", [text](long) { return static_cast<long>(java::ToText(text).size()); })});
  Add("java texts", std::string(title) + " as a result",
      {Batched("raw",
               [=](long) {
                 const auto result = static_cast<jstring>(env->CallObjectMethod(object, get));
                 Check(env);
                 const long size = NewUnits(env, result);
                 env->DeleteLocalRef(result);
                 return size;
               }),
       Batched(Units, [units](long) {
         const std::u16string to = units(thread, global);
         return static_cast<long>(to.size()) + to[0];
       })});
}

void AddIn(std::size_t size, const char* title) {
  JNIEnv* const env = TheHost().env;
  jobject const object = TheHost().rawSubject;
  const jmethodID length = env->GetMethodID(TheHost().rawClass, "length", "(Ljava/lang/String;)I");
  const std::string ascii(size, 'x');
  const std::u16string units(size, u'x');
  static const java::Thread thread;
  static const java::Global<Subject> global(java::Ref<Subject>(TheHost().subject));
  const auto made = [env, units](long) {
    return env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.size()));
  };
  Add("java texts", std::string(title) + " in",
      {Batched("NewString",
               [env, made](long i) {
                 jstring const text = made(i);
                 Require(text != nullptr);
                 env->DeleteLocalRef(text);
                 return 1;
               }),
       Batched("NewString(std::string_view)", [ascii](long) { return java::NewString(ascii) ? 1 : 0; })});
  Add("java texts", std::string(title) + " as an argument",
      {Batched("raw",
               [=](long i) {
                 jstring const text = made(i);
                 const jint result = env->CallIntMethod(object, length, text);
                 Check(env);
                 env->DeleteLocalRef(text);
                 return result;
               }),
       Batched("std::string_view", [ascii](long) { return Length(thread, global, ascii); })});
}

}  // namespace

void AddJavaTexts() {
  AddOut("text16", "16 units");
  AddOut("text1024", "1,024 units");
  AddOut("wide1024", "1,024 units that are not Latin");
  AddIn(16, "16 units of ASCII");
  AddIn(1024, "1,024 units of ASCII");
}

}  // namespace bench
