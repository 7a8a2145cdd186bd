// What members cost compared with JNI by hand that caches its IDs and checks for an exception after each call:
// java_members_budget [ROUNDS]. Interleaved rounds, medians of the ratios of a round.
#include <cstdlib>
#include <memory>
#include <string>

#include "java/realvm/Fixtures.h"
#include "java/realvm/Measure.h"

namespace tests {
namespace {

using java::Field;
using java::Global;
using java::Local;
using java::Method;
using java::Object;
using java::StaticMethod;

struct Budget {
  static constexpr char JavaName[] = "fixture/Budget";
};
constexpr StaticMethod<jint(jint, jint)> Add{"fixture/Budget", "add"};
constexpr Method<Budget, jint(jint)> Inc{"inc"};
constexpr Field<Budget, jint> TheField{"field"};
constexpr Method<Budget, Local<Object>()> Self{"self"};
constexpr Method<Budget, jint(std::string_view)> Length{"length"};

void Run(int rounds) {
  const java::Vm vm = java::StartVm(FixtureSettings());
  const java::Thread thread;
  JNIEnv* const env = thread.Env();
  const Global<Budget> global(java::New<Budget>());
  jobject const object = global.Get();
  const auto type = java::detail::ClassOf<Budget>(env);
  const jmethodID add = env->GetStaticMethodID(type, "add", "(II)I");
  const jmethodID inc = env->GetMethodID(type, "inc", "(I)I");
  const jmethodID self = env->GetMethodID(type, "self", "()Ljava/lang/Object;");
  const jmethodID length = env->GetMethodID(type, "length", "(Ljava/lang/String;)I");
  const jfieldID field = env->GetFieldID(type, "field", "I");

  Measure("static int call", rounds, 5000,
          {{"JNI and ExceptionCheck", Loop([=](int i) {
              sink = env->CallStaticIntMethod(type, add, i, 3);
              Check(env);
            })},
           {"JNI, ExceptionCheck before and after", Loop([=](int i) {
              Check(env);
              sink = env->CallStaticIntMethod(type, add, i, 3);
              Check(env);
            })},
           {"Add(thread, i, 3)", Loop([&](int i) { sink = Add(thread, i, 3); })},
           {"Add(i, 3)", Loop([](int i) { sink = Add(i, 3); })}});
  Measure("int call on an object", rounds, 5000,
          {{"JNI and ExceptionCheck", Loop([=](int i) {
              sink = env->CallIntMethod(object, inc, i);
              Check(env);
            })},
           {"Inc(thread, global, i)", Loop([&](int i) { sink = Inc(thread, global, i); })},
           {"Inc(global, i)", Loop([&](int i) { sink = Inc(global, i); })}});
  Measure("object result", rounds, 5000,
          {{"JNI, ExceptionCheck, DeleteLocalRef", Loop([=](int) {
              jobject const result = env->CallObjectMethod(object, self);
              Check(env);
              env->DeleteLocalRef(result);
            })},
           {"Self(thread, global)", Loop([&](int) { Self(thread, global); })},
           {"Self(global)", Loop([&](int) { Self(global); })}});
  Measure("int field", rounds, 20000,
          {{"JNI", Loop([=](int) { sink = env->GetIntField(object, field); })},
           {"TheField.Get(thread, global)", Loop([&](int) { sink = TheField.Get(thread, global); })},
           {"TheField.Get(global)", Loop([&](int) { sink = TheField.Get(global); })}});
  for (const char* name : {"text16", "text1024", "wide1024"}) {
    const Method<Budget, std::u16string()> units{name};
    const Method<Budget, std::string()> utf8{name};
    const jmethodID get = env->GetMethodID(type, name, "()Ljava/lang/String;");
    const auto text = static_cast<jstring>(env->CallObjectMethod(object, get));
    Measure(std::string("text out: ") + name, rounds, 1000,
            {{"GetStringRegion to new char16_t[n]", Loop([=](int) {
                const jsize size = env->GetStringLength(text);
                const std::unique_ptr<char16_t[]> to(new char16_t[static_cast<std::size_t>(size)]);
                env->GetStringRegion(text, 0, size, reinterpret_cast<jchar*>(to.get()));
                sink = to[0];
              })},
             {"ReadUtf16", Loop([=](int) { sink = java::detail::ReadUtf16(env, text).front(); })},
             {"ReadUtf8", Loop([=](int) { sink = java::detail::ReadUtf8(env, text).front(); })},
             {"GetStringUTFChars to std::string", Loop([=](int) {
                const char* const chars = env->GetStringUTFChars(text, nullptr);
                sink = std::string(chars).front();
                env->ReleaseStringUTFChars(text, chars);
              })}});
    Measure(std::string("text result: ") + name, rounds, 1000,
            {{"JNI to std::u16string by hand", Loop([=](int) {
                const auto result = static_cast<jstring>(env->CallObjectMethod(object, get));
                Check(env);
                const jsize size = env->GetStringLength(result);
                std::u16string to(static_cast<std::size_t>(size), u'\0');
                env->GetStringRegion(result, 0, size, reinterpret_cast<jchar*>(to.data()));
                env->DeleteLocalRef(result);
                sink = to[0];
              })},
             {"std::u16string", Loop([&](int) { sink = units(thread, global).front(); })},
             {"std::string", Loop([&](int) { sink = utf8(thread, global).front(); })}});
    env->DeleteLocalRef(text);
  }
  for (const std::size_t size : {16u, 1024u}) {
    const std::string ascii(size, 'x');
    const std::u16string units(size, u'x');
    Measure("text argument of " + std::to_string(size), rounds, 1000,
            {{"NewString, call, ExceptionCheck", Loop([&](int) {
                const jstring text =
                    env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.size()));
                sink = env->CallIntMethod(object, length, text);
                Check(env);
                env->DeleteLocalRef(text);
              })},
             {"NewStringUTF, call, ExceptionCheck", Loop([&](int) {
                const jstring text = env->NewStringUTF(ascii.c_str());
                sink = env->CallIntMethod(object, length, text);
                Check(env);
                env->DeleteLocalRef(text);
              })},
             {"Length(thread, global, ascii)", Loop([&](int) { sink = Length(thread, global, ascii); })},
             {"Length(thread, global, units)", Loop([&](int) { sink = Length(thread, global, units); })}});
    Measure("text in of " + std::to_string(size), rounds, 1000,
            {{"NewString", Loop([&](int) {
                env->DeleteLocalRef(
                    env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.size())));
              })},
             {"NewText(ascii)", Loop([&](int) { env->DeleteLocalRef(java::detail::NewText(env, ascii)); })}});
  }
}

}  // namespace
}  // namespace tests

int main(int argc, char** argv) {
  tests::Run(argc > 1 ? std::atoi(argv[1]) : 201);
  return 0;
}
