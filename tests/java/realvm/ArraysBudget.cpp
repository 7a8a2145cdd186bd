// What vectors cost compared with JNI's copies of a region and the memory for them: java_arrays_budget [ROUNDS].
#include <cstdlib>
#include <memory>
#include <vector>

#include "java/realvm/Fixtures.h"
#include "java/realvm/Measure.h"

namespace tests {
namespace {

struct Arrays {
  static constexpr char JavaName[] = "fixture/Arrays";
};
constexpr java::StaticMethod<jint(const std::vector<jint>&)> Size{"fixture/Arrays", "size"};
constexpr java::StaticMethod<std::vector<jint>(java::Ref<java::Array<jint>>)> Same{"fixture/Arrays", "same"};

void Run(int rounds) {
  const java::Vm vm = java::StartVm(FixtureSettings());
  const java::Thread thread;
  JNIEnv* const env = thread.Env();
  const auto type = java::detail::ClassOf<Arrays>(env);
  const jmethodID size = env->GetStaticMethodID(type, "size", "([I)I");
  const jmethodID same = env->GetStaticMethodID(type, "same", "([I)[I");
  for (const jsize count : {16, 1024, 100000}) {
    const std::vector<jint> values(static_cast<std::size_t>(count), 7);
    const auto array = java::NewArray(values);
    const auto ints = static_cast<jintArray>(array.Get());
    const std::string of = " of " + std::to_string(count) + " jint";
    const int times = count > 10000 ? 20 : 1000;
    const auto in = [=, &values] {
      jintArray const made = env->NewIntArray(count);
      if (made == nullptr) std::abort();
      env->SetIntArrayRegion(made, 0, count, values.data());
      return made;
    };
    const auto out = [=](jintArray from) {
      const jsize length = env->GetArrayLength(from);
      const std::unique_ptr<jint[]> to(new jint[static_cast<std::size_t>(length)]);
      env->GetIntArrayRegion(from, 0, length, to.get());
      sink = to[0];
    };
    Measure("in and out" + of, rounds, times,
            {{"NewIntArray, regions, new jint[n]", Loop([=](int) {
                jintArray const made = in();
                out(made);
                env->DeleteLocalRef(made);
              })},
             {"NewArray, Copy", Loop([&](int) { sink = java::Copy<std::vector<jint>>(java::NewArray(values))[0]; })}});
    Measure("in" + of, rounds, times,
            {{"NewIntArray, SetIntArrayRegion", Loop([=](int) { env->DeleteLocalRef(in()); })},
             {"NewArray", Loop([&](int) { java::NewArray(values); })}});
    Measure("out" + of, rounds, times,
            {{"new jint[n], GetIntArrayRegion", Loop([=](int) { out(ints); })},
             {"Copy", Loop([&](int) { sink = java::Copy<std::vector<jint>>(array)[0]; })}});
    Measure("argument" + of, rounds, times,
            {{"by JNI", Loop([=](int) {
                jintArray const made = in();
                sink = env->CallStaticIntMethod(type, size, made);
                Check(env);
                env->DeleteLocalRef(made);
              })},
             {"Size(thread, values)", Loop([&](int) { sink = Size(thread, values); })}});
    Measure("result" + of, rounds, times,
            {{"by JNI", Loop([=](int) {
                const auto result = static_cast<jintArray>(env->CallStaticObjectMethod(type, same, ints));
                Check(env);
                out(result);
                env->DeleteLocalRef(result);
              })},
             {"Same(thread, array)", Loop([&](int) { sink = Same(thread, array)[0]; })}});
    Measure("in place" + of, rounds, times,
            {{"GetIntArrayElements", Loop([=](int) {
                jint* const elements = env->GetIntArrayElements(ints, nullptr);
                elements[0] = 7;
                env->ReleaseIntArrayElements(ints, elements, 0);
              })},
             {"Elements", Loop([&](int) { java::Elements<jint>(array).At(0) = 7; })},
             {"CriticalElements", Loop([&](int) { java::CriticalElements<jint>(array).At(0) = 7; })}});
  }
}

}  // namespace
}  // namespace tests

int main(int argc, char** argv) {
  tests::Run(argc > 1 ? std::atoi(argv[1]) : 201);
  return 0;
}
