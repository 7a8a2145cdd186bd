// The programs of docs/java.md, which quotes them from here.
// clang-format off
#include <torvan/Java.h>
#include <cstdio>
#include <map>
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
constexpr java::Method<java::String, std::vector<std::string>(std::string_view)> Split{"split"};
constexpr java::StaticMethod<void(java::Ref<java::Array<jint>>)> SortArray{"java/util/Arrays", "sort"};
constexpr java::StaticMethod<std::vector<jint>(std::vector<jint>, jint)> CopyOf{"java/util/Arrays", "copyOf"};
constexpr java::Method<java::ByteBuffer, jint(jint)> GetInt{"getInt"};
constexpr java::StaticMethod<java::Local<java::ByteBuffer>(jint)> AllocateDirect{"java/nio/ByteBuffer", "allocateDirect"};
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

void UseArrays() {
  const std::vector<std::string> words = Split(java::NewString("to be or not"), " ");
  const std::vector<jint> longer = CopyOf(std::vector<jint>{1, 2}, 4);
  std::printf("%s %d\n", words.back().c_str(), static_cast<int>(longer.size()));

  const auto numbers = java::NewArray(std::vector<jint>{3, 1, 2});  // kept in Java
  SortArray(numbers);
  for (jint& number : java::Elements<jint>(numbers)) number *= 10;
  std::printf("%d\n", static_cast<int>(java::Elements<const jint>(numbers).At(0)));

  java::Elements<java::String> texts(java::NewArray<java::String>(2));  // objects one by one
  texts.Set(0, "first");
  std::printf("%s\n", texts.At(1) ? "something" : "null");
}

void WalkThroughCollections() {
  const auto list = NewList(4);
  Add(list, "red");
  Add(list, "green");
  for (const std::string& color : java::Each<std::string>(list)) std::printf("%s\n", color.c_str());
  const auto properties = java::CallStatic<java::Local<>>("java/lang/System", "getProperties");
  const auto all = java::Copy<std::map<std::string, std::string>>(properties);
  std::printf("%s\n", all.at("java.specification.name").c_str());
}

void ShareMemory() {
  auto pixels = std::make_shared<std::vector<std::int32_t>>(3, 7);
  const java::ByteBuffer buffer(pixels->data(), pixels->size() * sizeof(std::int32_t), pixels);  // owned by both
  std::printf("%d\n", static_cast<int>(GetInt(buffer.Order(java::NativeByteOrder()), 4)));

  const java::BufferView view = java::ViewOf(AllocateDirect(16));
  view.Put(4, std::int32_t{258});  // in the order of the buffer
  std::printf("%d %d\n", static_cast<int>(view.At(6)), static_cast<int>(view.At(7)));
}

void LoadClassesFromElsewhere() {
  const auto loader = java::ClassLoader::OfJars({"."}, java::ClassLoader::Platform());  // which hides the class path
  const java::ContextClassLoader scope(loader);  // for libraries that find services by it, until the scope ends
  const auto list = java::Constructor<ArrayList()>().In(loader.FindClass("java/util/ArrayList"))();
  const java::Weak<java::Object> watched = loader.WeakReference();  // null once Java has let all of its classes go
  std::printf("%d %s\n", static_cast<int>(Size(list)), watched.Lock() ? "in use" : "collected");
  loader.Close();
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

void WorkOnAnotherThread(const CJavaVm& vm) {
  const CJavaObject before = vm.FindClass("java/util/ArrayList").NewObject("()V");
  std::thread([&] {  // while this one only waits
    before.CallBooleanMethod("add", "(Ljava/lang/Object;)Z", static_cast<jobject>(vm.NewString(RX_TEXT("from there"))));
    vm.Detach();
  }).join();
  const java::Global<List> shared(NewList(4));
  std::thread([shared] { Add(shared, "from there"); }).join();
  std::printf("%d %s\n", static_cast<int>(before.CallIntMethod("size", "()I")), GetText(shared, 0).c_str());
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

void CallOnce(const CJavaVm& vm) {
  const CJavaObject list = vm.NewObject("java/util/ArrayList", "()V");
  const CJavaString before = list.CallObjectMethod("toString", "()Ljava/lang/String;");
  const std::string after = java::Call<std::string>(java::New<ArrayList>(), "toString");
  std::printf("%d %s\n", static_cast<int>(before.CallIntMethod("length", "()I")), after.c_str());
}

void EndTheVm(const CJavaVm& vm) {
  // Before: no call ends a CJavaVm; shutdown hooks run only if Java itself ends the process.
  const java::VmEnd end = java::EndVm(vm);
  std::printf("%s\n", end == java::VmEnd::Destroyed ? "ended" : "left running");
}

}  // namespace
// clang-format on

int main() {
  const java::Vm owner = java::StartVm(java::VmSettings());
  const CJavaVm vm = owner.Handle();
  ConvertValues();
  UseArrays();
  WalkThroughCollections();
  ShareMemory();
  LoadClassesFromElsewhere();
  SortByAFunction();
  ImplementAnInterface();
  CallAStaticMethod(vm);
  MakeAnObject(vm);
  ReadAText(vm);
  ReadAField(vm);
  KnowWhyJavaRefused(vm);
  GuardCalls(vm);
  UseAnObjectOfTheOtherSide(vm);
  WorkOnAnotherThread(vm);
  CallOften(vm);
  CallOnce(vm);
  EndTheVm(vm);
}
