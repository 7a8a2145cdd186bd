// Uses the installed torvan::java as a host does. Runs Java as a process and as a VM when it finds a runtime. The exit
// code is 0 when everything works.
#include <torvan/Java.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace java = torvan::java;

namespace {

template <typename Expected, typename Function>
bool Says(const char* start, Function function) {
  try {
    function();
  } catch (const Expected& failure) {
    if (std::strncmp(failure.what(), start, std::strlen(start)) == 0) return true;
    std::printf("java: %s\n", failure.what());
    return false;
  }
  std::printf("java: nothing thrown instead of: %s\n", start);
  return false;
}

struct Operator {
  static constexpr char JavaName[] = "java/util/function/IntUnaryOperator";
};
struct Numbers {
  static constexpr char JavaName[] = "java/util/stream/IntStream";
};
constexpr java::StaticMethod<java::Local<Numbers>(jint, jint)> Range{"java/util/stream/IntStream", "range"};
constexpr java::Method<Numbers, java::Local<Numbers>(java::Ref<Operator>)> Map{"map"};
constexpr java::Method<Numbers, jint()> Sum{"sum"};

constexpr java::StaticMethod<std::vector<jint>(std::vector<jint>, jint)> CopyOf{"java/util/Arrays", "copyOf"};
constexpr java::StaticMethod<void(java::Ref<java::Array<jint>>)> Sort{"java/util/Arrays", "sort"};
constexpr java::Method<java::ByteBuffer, jbyte(jint)> GetByte{"get"};

// Copied, in place, and shared.
bool UsesMemory() {
  const auto numbers = java::NewArray(CopyOf(std::vector<jint>{3, 1}, 3));
  Sort(numbers);
  for (jint& number : java::Elements<jint>(numbers)) number *= 10;
  const auto bytes = std::make_shared<std::vector<std::byte>>(2, std::byte{5});
  const java::ByteBuffer buffer(bytes->data(), bytes->size(), bytes);
  java::ViewOf(buffer).At(1) = std::byte{6};
  return java::Copy<std::vector<jint>>(numbers) == std::vector<jint>{0, 10, 30} && GetByte(buffer, 1) == 6;
}

bool UsesALoader() {
  const auto loader = java::ClassLoader::OfJars({"."}, java::ClassLoader::Platform());
  const java::ContextClassLoader scope(loader);
  const bool found = java::IsInstance<java::Class>(loader.FindClass("java/util/ArrayList"));
  loader.Close();
  return found;
}

// Java in its own process.
bool RunsJava() { return java::Run(java::Program::MainClass("no.Such").Option("-version")).exitCode == 0; }

bool StartsAVm() {
  java::Vm vm = java::StartVm(java::VmSettings().MaximumHeap("64m"));
  const java::Global<java::String> text(java::Adopt<java::String>(java::Thread().Env()->NewStringUTF("text")));
  const bool found = java::IsInstance<java::String>(text) && java::Handle(text).CallIntMethod("length", "()I") == 4;
  // The Java class that this needs is in the library.
  const bool called = Sum(Map(Range(0, 5), [](jint number) { return 10 * number; })) == 100;
  return found && called && UsesMemory() && UsesALoader() &&
         Says<java::Error>("java.lang.NoClassDefFoundError: no/Such",
                           [&] { java::Guard([&] { vm.Handle().FindClass("no/Such"); }); }) &&
         vm.End() == java::VmEnd::Destroyed;
}

}  // namespace

int main() try {
  bool good = Says<java::Misuse>("No Java VM runs: call StartVm or JoinVm first", [] { const java::Thread thread; });
  good = good && Says<java::StartFailure>("The Java runtime no/such/home is not there", [] {
           const java::Vm vm = java::StartVm(java::VmSettings().Runtime("no/such/home"));
         });
  const bool runs = !java::FindRuntimes().found.empty();
  good = good && (!runs || (RunsJava() && StartsAVm()));
  std::printf("java: %s%s\n", good ? "as it should be" : "not as it should be", runs ? ", in a VM" : ", without a VM");
  return good ? 0 : 1;
} catch (const java::Failure& failure) {
  std::printf("java: %s\n", failure.what());
  return 1;
}
