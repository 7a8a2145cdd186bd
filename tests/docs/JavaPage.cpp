// The programs of docs/java.md, which quotes them from here.
// clang-format off
#include <torvan/Java.h>
#include <cstdio>
#include <thread>

namespace java = torvan::java;

struct Collection { static constexpr char JavaName[] = "java/util/Collection"; };
struct List { static constexpr char JavaName[] = "java/util/List"; using Super = Collection; };
struct ArrayList { static constexpr char JavaName[] = "java/util/ArrayList"; using Super = List; };
struct Point { static constexpr char JavaName[] = "java/awt/Point"; };
struct Comparator { static constexpr char JavaName[] = "java/util/Comparator"; };
struct Iterator { static constexpr char JavaName[] = "java/util/Iterator"; };
struct Consumer { static constexpr char JavaName[] = "java/util/function/Consumer"; };

constexpr java::StaticMethod<jint(jint, jint)> Max{"java/lang/Math", "max"};
constexpr java::StaticMethod<jint(std::string_view)> ParseInt{"java/lang/Integer", "parseInt"};
constexpr java::StaticMethod<std::optional<std::string>(std::string_view)> GetProperty{"java/lang/System", "getProperty"};
constexpr java::Constructor<ArrayList(jint)> NewList;
constexpr java::Method<Collection, jint()> Size{"size"};
constexpr java::Method<List, bool(java::Ref<java::Object>)> Add{"add"};
constexpr java::Method<List, std::string(jint)> GetText{"get", "(I)Ljava/lang/Object;"};
constexpr java::StaticField<jint> Largest{"java/lang/Integer", "MAX_VALUE"};
constexpr java::Method<List, void(java::Ref<Comparator>)> Sort{"sort"};
constexpr java::Method<Iterator, void(java::Ref<Consumer>)> ForEachRemaining{"forEachRemaining"};

// A type of the host's own, by one specialisation.
struct Money { jlong cents; };
template <>
struct torvan::java::Convert<Money> : ConvertAs<jlong> {
  static jlong To(const Money& money) { return money.cents; }
  static Money From(jlong cents) { return {cents}; }
};
constexpr java::StaticMethod<Money(Money, Money)> AddMoney{"java/lang/Math", "addExact"};

using namespace torvan::jni;

namespace {

void ConvertValues() {
  const Money sum = AddMoney(Money{40}, Money{2});
  std::printf("%d %s\n", static_cast<int>(sum.cents), GetProperty("no.such").value_or("none").c_str());
}

void SortByAFunction() {
  const auto list = NewList(4);
  for (const char* const word : {"pear", "fig", "apple"}) Add(list, word);
  Sort(list, [](std::string_view left, std::string_view right) { return left.compare(right); });
  std::printf("%s\n", GetText(list, 0).c_str());
}

void ImplementAnInterface() {
  int next = 0;
  const auto numbers = java::Implement<Iterator>()
                           .On("hasNext", [&] { return next < 3; })
                           .On("next", [&] { return std::optional<jint>(++next); })
                           .New();
  jint sum = 0;
  ForEachRemaining(numbers, [&](jint number) { sum += number; });  // a default method of Java's
  std::printf("%d\n", static_cast<int>(sum));
}

void CallAStaticMethod(const CJavaVm& vm) {
  const jint before = vm.FindClass("java/lang/Math").CallStaticIntMethod("max", "(II)I", jint{3}, jint{4});
  const jint after = Max(3, 4);
  std::printf("%d %d\n", static_cast<int>(before), static_cast<int>(after));
}

void MakeAnObject(const CJavaVm& vm) {
  const CJavaClass type = vm.FindClass("java/util/ArrayList");
  const CJavaObject before = type.NewObject("(I)V", jint{16});
  before.CallBooleanMethod("add", "(Ljava/lang/Object;)Z", static_cast<jobject>(vm.NewString(RX_TEXT("text"))));
  const auto after = NewList(16);
  Add(after, "text");
  std::printf("%d %d\n", static_cast<int>(before.CallIntMethod("size", "()I")), static_cast<int>(Size(after)));
}

void ReadAText(const CJavaVm& vm) {
  const CJavaClass system = vm.FindClass("java/lang/System");
  const CJavaString version = system.CallStaticObjectMethod("getProperty", "(Ljava/lang/String;)Ljava/lang/String;",
                                                            static_cast<jobject>(vm.NewString(RX_TEXT("java.vm.name"))));
  const std::string before = static_cast<const char*>(static_cast<mirel::base::CUnicodeString>(version).ToUTF8());
  const std::string after = GetProperty("java.vm.name").value();
  std::printf("%s\n", before == after ? "the same" : "different");
}

void ReadAField(const CJavaVm& vm) {
  const jint before = vm.FindClass("java/lang/Integer").GetStaticIntField("MAX_VALUE", "I");
  std::printf("%s\n", before == Largest.Get() ? "the same" : "different");
}

void KnowWhyJavaRefused(const CJavaVm& vm) {
  try {
    const CJavaString text = vm.NewString(RX_TEXT("x"));
    vm.FindClass("java/lang/Integer").CallStaticIntMethod("parseInt", "(Ljava/lang/String;)I", static_cast<jobject>(text));
  } catch (const CJniException&) {
    vm.Attach()->ExceptionClear();  // HotSpot lost the reason, unless MakeFailuresReadable() was called
  }
  try {
    ParseInt("x");
  } catch (const java::Error& error) {
    std::printf("%s\n", error.what());
  }
}

void GuardCalls(const CJavaVm& vm) {
  try {
    java::Guard([&] { vm.FindClass("no/Such"); });
  } catch (const java::Error& error) {
    std::printf("%s\n", error.ClassName().c_str());
  }
}

void UseAnObjectOfTheOtherSide(const CJavaVm& vm) {
  const CJavaObject handle = vm.FindClass("java/util/ArrayList").NewObject("()V");
  const java::Local<List> list(handle);  // the class is tested here, once
  Add(list, "text");
  std::printf("%d\n", static_cast<int>(java::Handle(list).CallIntMethod("size", "()I")));
}

void WorkOnAnotherThread() {
  const java::Global<List> shared(NewList(4));
  std::thread([shared] { Add(shared, "from there"); }).join();
  std::printf("%s\n", GetText(shared, 0).c_str());
}

void CallOften(const CJavaVm& vm) {
  for (int i = 0; i < 1000; ++i) {
    const java::LocalFrame frame(16);  // the fixed interface leaves its local references
    vm.NewString(RX_TEXT("text"));
  }
  const java::Thread thread;
  for (int i = 0; i < 1000; ++i) java::NewString("text");  // nothing is left
  std::printf("%d\n", static_cast<int>(Max(thread, 1, 2)));
}

void CallOnce() {
  std::printf("%s\n", java::Call<std::string>(java::New<ArrayList>(), "toString").c_str());
}

}  // namespace
// clang-format on

int main() {
  const java::Vm owner = java::StartVm(java::VmSettings());
  const CJavaVm vm = owner.Handle();
  ConvertValues();
  SortByAFunction();
  ImplementAnInterface();
  CallAStaticMethod(vm);
  MakeAnObject(vm);
  ReadAText(vm);
  ReadAField(vm);
  KnowWhyJavaRefused(vm);
  GuardCalls(vm);
  UseAnObjectOfTheOtherSide(vm);
  WorkOnAnotherThread();
  CallOften(vm);
  CallOnce();
}
