// A host's library that shows all of its symbols and has a copy of the layer. Two are made of this source.
#include <torvan/Java.h>

#include <cstdio>
#include <utility>
#include <vector>

// Not in the unnamed namespace: what the compiler makes for it has the same name in both libraries.
struct Natives {
  static constexpr char JavaName[] = "fixture/Natives";
};

namespace {

namespace java = torvan::java;

constexpr java::StaticMethod<java::Local<java::Class>(std::string_view)> CopyOf{"fixture/Strict", "copyOf"};
constexpr java::StaticMethod<jint(jint, jlong, double)> Add{"fixture/Natives", "add"};
constexpr java::NativeMethod<jint(jint, jlong, double)> Native{"fixture/Natives", "add"};

}  // namespace

// The class of a tag as this library keeps it.
extern "C" jclass KeptClass(JavaVM* vm) {
  java::JoinVm(vm);
  return java::detail::ClassOf<Natives>(java::detail::Env());
}

// How many objects there are in a map from and to Natives of the class that this library knows.
extern "C" jint CountNatives(JavaVM* vm, jobject map) try {
  java::JoinVm(vm);
  jint count = 0;
  for (const auto& [key, value] : java::Each<std::pair<Natives, Natives>>(map)) count += key && value ? 2 : 0;
  const auto values = java::Call<java::Local<>>(map, "values");
  for (const java::Local<Natives>& value : java::Each<Natives>(values)) count += value ? 1 : 0;
  return count;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return -1;
}

// Binds as many native methods to functions of one type, and returns how many of them answer as they should.
extern "C" jint BindMethods(JavaVM* vm, jint count) try {
  java::JoinVm(vm);
  static std::vector<java::Global<java::Class>>& types = *new std::vector<java::Global<java::Class>>;
  jint (*const sum)(jint, jlong, double) = [](jint a, jlong b, double) { return a + static_cast<jint>(b); };
  jint right = 0;
  for (jint i = 0; i < count; ++i) {
    types.emplace_back(CopyOf("fixture.Natives"));
    Native.In(types.back()).Bind(sum);
    right += Add.In(types.back())(i, 1, 0.0) == i + 1 ? 1 : 0;
  }
  return right;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return -1;
}
